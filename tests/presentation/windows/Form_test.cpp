#include "presentation/windows/Form.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <functional>
#include <utility>

#include "errors/ModuloGestioneErrori.h"
#include "fixtures/windows/Desktop.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

class AskingForm : public Form {
 public:
  AskingForm() : Form("FrmAsking") {}
  bool mayClose = true;
  int asked = 0;

 protected:
  bool QueryUnload() override {
    ++asked;
    return mayClose;
  }
};

// Does something as soon as it is shown, as a window does whose first question lets others act.
class ActingForm : public AskingForm {
 public:
  std::function<void()> act;
  int shown = 0;
  void setVisible(bool visible) override {
    AskingForm::setVisible(visible);
    if (!visible) return;
    ++shown;
    if (act) std::exchange(act, nullptr)();
  }
};

TEST(FormTest, Closing_and_the_Escape_key_ask_and_a_refusal_keeps_the_window) {
  const test::Desktop desktop;
  AskingForm form;
  Presenta(form);
  form.mayClose = false;
  form.close();
  EXPECT_TRUE(form.isVisible());
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(&form, &escape);
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(form.asked, 2);
  form.mayClose = true;
  QApplication::sendEvent(&form, &escape);
  EXPECT_FALSE(form.isVisible());
}

TEST(FormTest, A_window_is_loaded_until_it_is_closed) {
  const test::Desktop desktop;
  EXPECT_EQ(FormDiNome("FrmAsking"), nullptr);
  AskingForm form;
  Presenta(form);
  EXPECT_EQ(FormDiNome("FrmAsking"), &form);
  EXPECT_EQ(FormDiNome("frmasking"), nullptr);
  form.close();
  EXPECT_FALSE(FormAperto("FrmAsking"));
  Presenta(form);
  EXPECT_TRUE(FormAperto("FrmAsking"));
}

TEST(FormTest, An_engine_without_a_display_counts_as_open) {
  const test::Desktop desktop;
  const FinestraOperazione engine("FrmScan");
  EXPECT_TRUE(FormAperto("FrmScan"));
  EXPECT_EQ(FormDiNome("FrmScan"), nullptr);
}

TEST(FormTest, Unloading_by_name_asks_nothing) {
  const test::Desktop desktop;
  auto* form = new AskingForm;
  form->mayClose = false;
  const QPointer<QWidget> pointer = form;
  Presenta(*form);
  ScaricaForm("FrmAsking");
  EXPECT_FALSE(FormAperto("FrmAsking"));
  EXPECT_TRUE(test::reached([&] { return pointer == nullptr; }));
}

TEST(FormTest, A_modal_window_comes_back_when_it_is_closed) {
  test::Desktop desktop;
  AskingForm form;
  desktop.whenShown("FrmAsking", [](QWidget& shown) { shown.close(); });
  PresentaModale(form);
  EXPECT_EQ(form.asked, 1);
  EXPECT_FALSE(form.isVisible());
}

TEST(FormTest, While_the_program_is_hidden_a_window_waits_to_be_shown) {
  const test::Desktop desktop;
  ApplicazioneNascosta = true;
  AskingForm form;
  Presenta(form);
  EXPECT_FALSE(form.isVisible());
  EXPECT_TRUE(FormAperto("FrmAsking"));
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_TRUE(form.isVisible());
}

TEST(FormTest, A_window_that_is_destroyed_while_it_is_shown_does_no_harm) {
  const test::Desktop desktop;
  auto* form = new ActingForm;
  form->act = [form] { delete form; };
  Presenta(*form);
  EXPECT_FALSE(FormAperto("FrmAsking"));
  AskingForm other;
  auto* waiting = new ActingForm;
  waiting->act = [waiting] { delete waiting; };
  ApplicazioneNascosta = true;
  Presenta(*waiting);
  Presenta(other);
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_TRUE(other.isVisible());
}

TEST(FormTest, Windows_go_on_waiting_when_the_program_is_hidden_while_others_are_shown) {
  const test::Desktop desktop;
  ActingForm first;
  AskingForm second;
  ApplicazioneNascosta = true;
  Presenta(first);
  Presenta(second);
  first.act = [] {
    NascondiForm(false);
    ApplicazioneNascosta = true;
  };
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_FALSE(first.isVisible() || second.isVisible());
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_TRUE(first.isVisible() && second.isVisible());
}

TEST(FormTest, A_window_that_is_presented_twice_while_the_program_is_hidden_is_shown_once) {
  const test::Desktop desktop;
  ActingForm form;
  ApplicazioneNascosta = true;
  Presenta(form);
  Presenta(form);
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_EQ(form.shown, 1);
}

TEST(FormTest, A_window_that_waited_is_centred_at_its_first_showing_only) {
  const test::Desktop desktop;
  QWidget main;
  main.setGeometry(100, 50, 500, 400);
  main.show();
  AskingForm form;
  form.resize(200, 100);
  ImpostaFinestraPrincipale(&main);
  form.setParent(&main, form.windowFlags());
  ApplicazioneNascosta = true;
  Presenta(form);
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_EQ(form.pos(), main.frameGeometry().center() - form.rect().center());
  form.move(7, 8);
  NascondiForm(false);
  MostraForm();
  EXPECT_EQ(form.pos(), QPoint(7, 8));
  form.setParent(nullptr);
  ImpostaFinestraPrincipale(nullptr);
}

TEST(FormTest, Centring_keeps_the_size_that_a_window_has_set_and_else_gives_it_that_of_its_contents) {
  const test::Desktop desktop;
  AskingForm sized, fitted;
  (new QVBoxLayout(&sized))->addSpacerItem(new QSpacerItem(100, 50));
  sized.resize(460, 300);
  CentraForm(sized);
  EXPECT_EQ(sized.size(), QSize(460, 300));
  for (const int width : {321, 543}) {
    delete fitted.layout();
    auto* layout = new QVBoxLayout(&fitted);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addSpacerItem(new QSpacerItem(width, 222));
    CentraForm(fitted);
    EXPECT_EQ(fitted.size(), QSize(width, 222));
  }
}

TEST(FormTest, Windows_vanish_and_come_back_as_they_were) {
  const test::Desktop desktop;
  AskingForm normal, large, closed;
  Presenta(normal);
  Presenta(large);
  large.showMaximized();
  NascondiForm(false);
  EXPECT_FALSE(normal.isVisible() || large.isVisible() || closed.isVisible());
  MostraForm();
  EXPECT_TRUE(normal.isVisible());
  EXPECT_FALSE(normal.isMaximized());
  EXPECT_TRUE(large.isVisible());
  EXPECT_TRUE(large.isMaximized());
  EXPECT_FALSE(closed.isVisible());
}

TEST(FormTest, A_window_that_went_while_it_was_hidden_does_not_come_back) {
  const test::Desktop desktop;
  AskingForm form;
  {
    AskingForm gone;
    Presenta(form);
    Presenta(gone);
    NascondiForm(false);
    form.close();
  }
  MostraForm();
  EXPECT_FALSE(form.isVisible());
}

TEST(FormTest, A_modal_window_stays_since_somebody_waits_for_its_answer) {
  test::Desktop desktop;
  AskingForm form;
  desktop.whenShown("FrmAsking", [](QWidget& shown) {
    NascondiForm(false);
    EXPECT_TRUE(shown.isVisible());
    shown.close();
  });
  PresentaModale(form);
}

TEST(FormTest, Without_a_tray_the_main_window_is_left_to_the_task_bar) {
  const test::Desktop desktop;
  QWidget main;
  main.setObjectName("FrmStart");
  ImpostaFinestraPrincipale(&main);
  Presenta(main);
  NascondiForm(true);
  EXPECT_TRUE(main.isMinimized());
  MostraForm();
  EXPECT_FALSE(main.isMinimized());
  EXPECT_TRUE(main.isVisible());
}

}  // namespace
}  // namespace tandemize
