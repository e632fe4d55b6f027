#include "presentation/windows/FrmTipMessageWindow.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "fixtures/windows/Desktop.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

using test::click;
using test::control;
using test::text;

class FrmTipMessageWindowTest : public ::testing::Test {
 protected:
  void show(std::function<void(QWidget&)> act) {
    desktop.whenShown("FrmTipMessage", [this, act = std::move(act)](QWidget& card) {
      ++shown;
      act(card);
    });
    FrmTipMessage::Init("Paths added", "Both <b>paths</b> are there.", MostraFrmTipMessage);
  }
  std::string settings() { return desktop.folder.home().read("GlobalSetting.dat"); }

  test::Desktop desktop;
  int shown = 0;
};

TEST_F(FrmTipMessageWindowTest, A_card_shows_its_texts_and_is_modal) {
  show([](QWidget& card) {
    EXPECT_TRUE(card.isModal());
    EXPECT_EQ(card.windowTitle().toStdString(), Messaggio(365));
    EXPECT_EQ(text(*control<QLabel>(card, "LblTitolo")), "Paths added ...");
    EXPECT_EQ(text(*control<QLabel>(card, "LblTip")), "Both <b>paths</b> are there.");
    EXPECT_EQ(control<QLabel>(card, "LblTip")->textFormat(), Qt::PlainText);
    EXPECT_EQ(text(*control<QCheckBox>(card, "Chk")), Messaggio(367));
    EXPECT_TRUE(control<QCheckBox>(card, "Chk")->isChecked());
    EXPECT_EQ(text(*control<QPushButton>(card, "cmdclose")), "&OK");
    EXPECT_TRUE(control<QPushButton>(card, "cmdclose")->isDefault());
    card.close();
  });
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(FormDiNome("FrmTipMessage"), nullptr);
}

TEST_F(FrmTipMessageWindowTest, With_the_box_on_closing_changes_nothing) {
  const std::string before = settings();
  show([](QWidget& card) { click(*control<QPushButton>(card, "cmdclose")); });
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(Help_TipMessage, 1);
  EXPECT_EQ(settings(), before);
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(FrmTipMessageWindowTest, With_the_box_off_the_settings_get_one_line_and_a_box_says_so) {
  std::string expected = settings();
  expected.replace(expected.find("Help_TipMessage = 1"), 19, "Help_TipMessage = 0");
  show([](QWidget& card) {
    control<QCheckBox>(card, "Chk")->click();
    click(*control<QPushButton>(card, "cmdclose"));
  });
  EXPECT_EQ(settings(), expected);
  EXPECT_EQ(Help_TipMessage, 0);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].text, Messaggio(413));
  show([](QWidget&) {});
  EXPECT_EQ(shown, 1) << "no card is shown from now on";
}

TEST_F(FrmTipMessageWindowTest, The_Escape_key_closes_as_the_button_does) {
  show([](QWidget& card) {
    control<QCheckBox>(card, "Chk")->click();
    static_cast<QDialog&>(card).reject();
  });
  EXPECT_EQ(Help_TipMessage, 0);
}

TEST_F(FrmTipMessageWindowTest, A_card_whose_owner_ends_meanwhile_changes_nothing) {
  auto owner = std::make_unique<QWidget>();
  ImpostaFinestraPrincipale(owner.get());
  show([&](QWidget&) { owner.reset(); });
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(Help_TipMessage, 1);
}

}  // namespace
}  // namespace tandemize
