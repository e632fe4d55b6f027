#include "shell/Schermo.h"

#include <gtest/gtest.h>

#include "fixtures/ScriptedScreen.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

TEST(Schermo, Without_a_screen_nobody_agrees_to_anything) {
  UsaSchermo(nullptr);
  EXPECT_EQ(MsgBox("?", StileSìNo), Risposta::No);
  EXPECT_EQ(MsgBox("?", StileSìNoInformazione), Risposta::No);
  EXPECT_EQ(MsgBox("?", StileSìNoAnnulla), Risposta::Annulla);
  EXPECT_EQ(MsgBox("!", StileCritico), Risposta::Ok);
  EXPECT_FALSE(schermo().BalloonAperto());
  DoEvents();
}

TEST(Schermo, The_silent_screen_ends_the_process_with_the_status) {
  UsaSchermo(nullptr);
  EXPECT_EXIT(schermo().FineProgramma(4), ::testing::ExitedWithCode(4), "");
}

TEST(Schermo, A_screen_in_use_gets_the_boxes_and_the_events) {
  test::ScriptedScreen screen;
  screen.answers = {Risposta::Sì};
  EXPECT_EQ(MsgBox("Sure?", StileSìNo), Risposta::Sì);
  DoEvents();
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, "Sure?");
  EXPECT_EQ(screen.boxes[0].style, StileSìNo);
  EXPECT_EQ(screen.events, 1);
}

TEST(Schermo, Boxes_carry_the_title_of_the_application) {
  struct TitleScreen : test::ScriptedScreen {
    Risposta MsgBox(std::string_view, int, std::string_view given) override {
      title = given;
      return Risposta::Ok;
    }
    std::string title;
  } screen;
  MsgBox("x", 0);
  EXPECT_EQ(screen.title, "Tandemize Backup");
}

}  // namespace
}  // namespace tandemize
