#include "shell/windows/FrmChooseOperation.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QRadioButton>

#include "fixtures/windows/CutText.h"
#include "fixtures/windows/Desktop.h"
#include "presentation/windows/ModuloGrafica.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

using test::control;
using Scelta = FrmChooseOperation::Scelta;

class FrmChooseOperationTest : public testing::Test {
 protected:
  [[nodiscard]] Scelta chosenBy(const std::function<void(QWidget&)>& act) {
    FrmChooseOperation choice(nullptr);
    desktop_.whenShown("FrmChooseOperation", act);
    PresentaModale(choice);
    return choice.Selezionata();
  }
  test::Desktop desktop_;
};

TEST_F(FrmChooseOperationTest, Says_in_both_languages_what_it_asks) {
  for (const char* language : {"0", "1"}) {
    desktop_.folder.setting("Language", language);
    FrmChooseOperation choice(nullptr);
    choice.show();
    EXPECT_EQ(choice.windowTitle().toStdString(), Messaggio(372));
    EXPECT_EQ(control<PicIntestazione>(choice, "PicIntestazioneFrm(0)")->Titolo().toStdString(),
              Messaggio(373));
    EXPECT_EQ(test::text(*control<QRadioButton>(choice, "OptOperation(0)")), Messaggio(370));
    EXPECT_EQ(test::text(*control<QRadioButton>(choice, "OptOperation(1)")), Messaggio(371));
    test::letEventsRun();
    EXPECT_TRUE(test::cutTexts(choice).empty());
  }
}

TEST_F(FrmChooseOperationTest, Has_texts_of_its_own_for_a_table_without_them) {
  Messaggi[370].clear();
  Messaggi[371].clear();
  const FrmChooseOperation choice(nullptr);
  auto& window = const_cast<FrmChooseOperation&>(choice);
  EXPECT_EQ(test::text(*control<QRadioButton>(window, "OptOperation(0)")),
            "Sincronizzazione (confronta due o più percorsi e li rende identici)");
  EXPECT_EQ(test::text(*control<QRadioButton>(window, "OptOperation(1)")),
            "Backup (copia il contenuto di uno o più percorsi in altri percorsi)");
}

TEST_F(FrmChooseOperationTest, The_confirmation_selects_by_the_option) {
  for (const int option : {0, 1}) {
    const Scelta choice = chosenBy([option](QWidget& window) {
      test::click(*control<QRadioButton>(window, "OptOperation(" + std::to_string(option) + ")"));
      test::click(*control<QPushButton>(window, "Cmd(0)"));
    });
    EXPECT_EQ(choice, option == 0 ? Scelta::Sincronizzazione : Scelta::Diagramma);
  }
}

TEST_F(FrmChooseOperationTest, Any_other_way_out_selects_nothing) {
  EXPECT_EQ(chosenBy([](QWidget& window) { test::click(*control<QPushButton>(window, "Cmd(1)")); }),
            Scelta::Nessuna);
  EXPECT_EQ(chosenBy([](QWidget& window) { window.close(); }), Scelta::Nessuna);
  EXPECT_EQ(chosenBy([](QWidget& window) {
              QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
              QCoreApplication::sendEvent(&window, &escape);
            }),
            Scelta::Nessuna);
}

TEST_F(FrmChooseOperationTest, The_enter_key_confirms) {
  EXPECT_EQ(chosenBy([](QWidget& window) {
              QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
              QCoreApplication::sendEvent(&window, &enter);
            }),
            Scelta::Sincronizzazione);
}

}  // namespace
}  // namespace tandemize
