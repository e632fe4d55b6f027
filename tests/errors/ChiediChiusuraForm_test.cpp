#include "errors/ErrorsTest.h"
#include "errors/ModuloGestioneErrori.h"

namespace tandemize {
namespace {

using ChiediChiusuraFormTest = test::ErrorsTest;

TEST_F(ChiediChiusuraFormTest, An_error_goes_to_the_window_s_fields) {
  FinestraOperazione window("Frm");
  std::int16_t cancel = 0;
  bool running = false, changes = false;
  ChiediChiusuraForm(cancel, &window, running, true, changes, "");
  EXPECT_TRUE(window.ErroreInCorso);
  window.ErroreInCorso_Descrizione = "older";
  ChiediChiusuraForm(cancel, &window, running, true, changes, "");
  EXPECT_EQ(window.ErroreInCorso_Descrizione, "older");
  ChiediChiusuraForm(cancel, &window, running, true, changes, "newer");
  EXPECT_EQ(window.ErroreInCorso_Descrizione, "newer");
  ChiediChiusuraForm(cancel, nullptr, running, true, changes, "text");
  EXPECT_EQ(cancel, 0);
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(ChiediChiusuraFormTest, The_answer_no_keeps_the_window_and_clears_the_caller_s_variable) {
  FinestraOperazione window("Frm");
  std::int16_t cancel = 0;
  bool running = true, changes = true;
  screen.answers = {Risposta::No};
  ChiediChiusuraForm(cancel, &window, running, false, changes, "");
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(326));
  EXPECT_EQ(screen.boxes[0].style, StileSìNo);
  EXPECT_EQ(cancel, 1);
  EXPECT_FALSE(running);
  EXPECT_FALSE(AnnullamentoRichiesto);
  EXPECT_FALSE(window.ProcessoAnnullato);
  EXPECT_EQ(count(Messaggio(329)), 0);
}

TEST_F(ChiediChiusuraFormTest, The_answer_yes_stops_the_operation_and_logs_it) {
  FinestraOperazione window("Frm");
  std::int16_t cancel = 0;
  bool running = true, changes = false;
  screen.answers = {Risposta::Sì};
  ChiediChiusuraForm(cancel, &window, running, false, changes, "");
  EXPECT_EQ(cancel, 0);
  EXPECT_TRUE(running);
  EXPECT_TRUE(AnnullamentoRichiesto);
  EXPECT_TRUE(window.ProcessoAnnullato);
  EXPECT_TRUE(logged("- " + Messaggio(329) + " -"));
}

TEST_F(ChiediChiusuraFormTest, A_stop_without_a_window_is_logged_all_the_same) {
  std::int16_t cancel = 0;
  bool running = true, changes = false;
  screen.answers = {Risposta::Sì};
  ChiediChiusuraForm(cancel, nullptr, running, false, changes, "");
  EXPECT_TRUE(AnnullamentoRichiesto);
  EXPECT_EQ(count(Messaggio(329)), 1);
}

TEST_F(ChiediChiusuraFormTest, Unsaved_changes_are_asked_about) {
  FinestraOperazione window("Frm");
  for (const Risposta answer : {Risposta::No, Risposta::Sì}) {
    std::int16_t cancel = 0;
    bool running = false, changes = true;
    screen.boxes.clear();
    screen.answers = {answer};
    ChiediChiusuraForm(cancel, &window, running, false, changes, "");
    ASSERT_EQ(screen.boxes.size(), 1U);
    EXPECT_EQ(screen.boxes[0].text, Messaggio(327));
    EXPECT_EQ(screen.boxes[0].style, StileSìNo);
    EXPECT_EQ(cancel, answer == Risposta::No ? 1 : 0);
    EXPECT_EQ(changes, answer == Risposta::Sì);
  }
}

TEST_F(ChiediChiusuraFormTest, A_window_that_is_not_visible_is_not_asked_about_changes) {
  FinestraOperazione window("Frm");
  window.Visible = false;
  std::int16_t cancel = 0;
  bool running = false, changes = true;
  ChiediChiusuraForm(cancel, &window, running, false, changes, "");
  EXPECT_TRUE(screen.boxes.empty());
  ChiediChiusuraForm(cancel, nullptr, running, false, changes, "");
  EXPECT_EQ(screen.boxes.size(), 1U);
}

TEST_F(ChiediChiusuraFormTest, An_agreed_stop_asks_nothing) {
  FinestraOperazione window("Frm");
  std::int16_t cancel = 0;
  bool running = true, changes = true;
  ChiediChiusuraForm(cancel, &window, running, false, changes, "", true);
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_EQ(cancel, 0);
  EXPECT_TRUE(window.ProcessoAnnullato);
  EXPECT_TRUE(AnnullamentoRichiesto);
  EXPECT_EQ(count(Messaggio(329)), 1);
}

}  // namespace
}  // namespace tandemize
