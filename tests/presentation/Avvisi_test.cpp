#include "presentation/Avvisi.h"

#include <gtest/gtest.h>

#include "errors/ModuloGestioneErrori.h"
#include "fixtures/ScriptedScreen.h"
#include "platform/machine.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

class AvvisiTest : public ::testing::Test {
 protected:
  AvvisiTest() { reset(); }
  ~AvvisiTest() override { reset(); }
  static void reset() {
    BalloonCorrente.clear();
    AnnullamentoRichiesto = false;
    ApplicazioneNascosta = false;
    platform::clearStopRequest();
  }
  static void show(std::string_view text, bool wait = false, bool onlyHidden = false) {
    MostraBalloon("FrmStart", text, "Title", 4, 10, wait, onlyHidden);
  }
  test::ScriptedScreen screen;
};

using MostraBalloonTest = AvvisiTest;
using AttendiTest = AvvisiTest;

TEST_F(MostraBalloonTest, A_notice_carries_what_it_was_given) {
  MostraBalloon("FrmScan", "Text", "Title", 4, 7, false, false);
  ASSERT_EQ(screen.balloons.size(), 1U);
  const Avviso& notice = screen.balloons[0];
  EXPECT_EQ(notice.nomeForm, "FrmScan");
  EXPECT_EQ(notice.testo, "Text");
  EXPECT_EQ(notice.titolo, "Title");
  EXPECT_EQ(notice.icona, 4);
  EXPECT_EQ(notice.secondi, 7);
}

TEST_F(MostraBalloonTest, Zero_seconds_leave_the_notice_up_until_it_is_closed) {
  MostraBalloon("", "Text", "", 0, 0, false, false);
  EXPECT_EQ(screen.balloons.at(0).secondi, 0);
}

TEST_F(MostraBalloonTest, Shows_only_in_the_one_state_that_the_flag_names) {
  for (const bool hidden : {false, true}) {
    for (const bool onlyHidden : {false, true}) {
      screen.balloons.clear();
      ApplicazioneNascosta = hidden;
      show("Text", false, onlyHidden);
      EXPECT_EQ(screen.balloons.size(), hidden == onlyHidden ? 1U : 0U) << hidden << onlyHidden;
    }
  }
}

TEST_F(MostraBalloonTest, The_same_text_is_not_shown_twice_while_it_is_up) {
  screen.balloonsStay = true;
  show("Text");
  show("Text");
  EXPECT_EQ(screen.balloons.size(), 1U);
  screen.ChiudiBalloon();
  show("Text");
  EXPECT_EQ(screen.balloons.size(), 2U);
}

TEST_F(MostraBalloonTest, A_new_text_takes_the_place_of_the_old_one) {
  screen.balloonsStay = true;
  show("One");
  show("Two");
  EXPECT_EQ(screen.balloons.size(), 2U);
  EXPECT_EQ(BalloonCorrente, "Two");
}

TEST_F(MostraBalloonTest, A_notice_that_waits_lets_events_run_until_the_one_before_it_has_closed) {
  screen.balloonsStay = true;
  show("One");
  screen.onEvents = [this] {
    if (screen.events == 3) screen.ChiudiBalloon();
  };
  show("Two", true);
  EXPECT_EQ(screen.events, 3);
  EXPECT_EQ(BalloonCorrente, "Two");
}

TEST_F(MostraBalloonTest, A_stop_ends_the_wait_for_the_notice_before) {
  screen.balloonsStay = true;
  show("One");
  screen.onEvents = [] { AnnullamentoRichiesto = true; };
  show("Two", true);
  EXPECT_EQ(BalloonCorrente, "Two");
}

TEST_F(AttendiTest, No_time_still_lets_events_run_once) {
  Attendi(0, true);
  EXPECT_EQ(screen.events, 1);
}

TEST_F(AttendiTest, A_negative_time_ends_at_once) {
  Attendi(-5, true);
  EXPECT_EQ(screen.events, 1);
}

TEST_F(AttendiTest, Without_events_none_run) {
  Attendi(0.01, false);
  EXPECT_EQ(screen.events, 0);
}

TEST_F(AttendiTest, Lasts_as_long_as_it_was_told) {
  const auto start = platform::monotonicMilliseconds();
  Attendi(0.01, true);
  EXPECT_GE(platform::monotonicMilliseconds() - start, 10U);
}

TEST_F(AttendiTest, Sleeps_between_the_events_instead_of_spinning) {
  Attendi(0.02, true);
  EXPECT_LE(screen.events, 8);
}

TEST_F(AttendiTest, A_stop_that_comes_during_the_wait_ends_it) {
  screen.onEvents = [this] { AnnullamentoRichiesto = screen.events == 2; };
  Attendi(3600, true);
  EXPECT_EQ(screen.events, 2);
}

TEST_F(AttendiTest, A_stop_from_before_does_not_cut_the_wait_short) {
  AnnullamentoRichiesto = true;
  const auto start = platform::monotonicMilliseconds();
  Attendi(0.01, true);
  EXPECT_GE(platform::monotonicMilliseconds() - start, 10U);
}

}  // namespace
}  // namespace tandemize
