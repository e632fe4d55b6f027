#include "errors/ErrorsTest.h"
#include "errors/ModuloGestioneErrori.h"
#include "presentation/Avvisi.h"

namespace tandemize {
namespace {

using test::Lines;
using ErroreRipetibileTest = test::ErrorsTest;
using NotificaRipristinoTest = test::ErrorsTest;

TEST_F(ErroreRipetibileTest, A_failed_system_call_is_logged_to_the_letter) {
  std::uint8_t attempt = 0;
  EXPECT_TRUE(ErroreRipetibileApi(attempt, 5, "EliminaFile", "File Name: < C:\\a >"));
  EXPECT_EQ(ListaLog,
            (Lines{"", "Tetativo N° 0 relativo alla routine 'EliminaFile' errore numero 5", "", ""}));
  EXPECT_EQ(attempt, 1);
}

TEST_F(ErroreRipetibileTest, A_run_time_error_tells_its_line_too) {
  std::uint8_t attempt = 0;
  EXPECT_TRUE(ErroreRipetibileVb(attempt, 53, "Apri", "detail", 42));
  EXPECT_EQ(
      ListaLog,
      (Lines{"", "Tetativo N° 0 relativo alla routine 'Apri' errore numero 53 Numero Riga = 42", "", ""}));
}

TEST_F(ErroreRipetibileTest, Three_repeats_are_three_attempts_in_all) {
  std::uint8_t attempt = 0;
  EXPECT_TRUE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_TRUE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_EQ(count("Fatal Error:"), 0);
  EXPECT_FALSE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_EQ(count("Tetativo N° 2"), 1);
  EXPECT_EQ(count("Fatal Error:"), 1);
  EXPECT_EQ(attempt, 3);
}

TEST_F(ErroreRipetibileTest, Without_correction_the_first_failure_is_final) {
  Errors_Correction = 0;
  std::uint8_t attempt = 0;
  EXPECT_FALSE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_EQ(count("Tetativo N° 0"), 1);
  EXPECT_EQ(count("Tetativo"), 1);
  EXPECT_EQ(count("Fatal Error:"), 1);
  EXPECT_TRUE(screen.balloons.empty());
  EXPECT_EQ(screen.events, 0);
}

TEST_F(ErroreRipetibileTest, Correction_with_0_repeats_is_no_correction) {
  Errors_Repeat = 0;
  std::uint8_t attempt = 0;
  EXPECT_FALSE(ErroreRipetibileVb(attempt, 53, "R", "d", 1));
  EXPECT_EQ(count("Tetativo N° 0"), 1);
  EXPECT_EQ(count("Fatal Error:"), 1);
}

TEST_F(ErroreRipetibileTest, The_count_never_wraps) {
  Errors_Repeat = 255;
  std::uint8_t attempt = 254;
  EXPECT_FALSE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_EQ(attempt, 255);
  EXPECT_FALSE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_EQ(attempt, 255);
}

TEST_F(ErroreRipetibileTest, The_notice_names_the_active_window_and_stays_ten_seconds) {
  FinestraOperazione window("FrmScan");
  std::uint8_t attempt = 0;
  EXPECT_TRUE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  ASSERT_EQ(screen.balloons.size(), 1U);
  EXPECT_EQ(screen.balloons[0].nomeForm, "FrmScan");
  EXPECT_EQ(screen.balloons[0].testo, MessaggioRiprova);
  EXPECT_FALSE(MessaggioRiprova.empty());
  EXPECT_EQ(screen.balloons[0].titolo, "Attenzione");
  EXPECT_EQ(screen.balloons[0].icona, 4);
  EXPECT_EQ(screen.balloons[0].secondi, 10);
}

TEST_F(ErroreRipetibileTest, A_system_call_s_notice_comes_on_every_round) {
  std::uint8_t attempt = 0;
  EXPECT_TRUE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_TRUE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_EQ(screen.balloons.size(), 2U);
}

TEST_F(ErroreRipetibileTest, A_run_time_error_s_notice_waits_for_the_balloon_that_is_up) {
  screen.balloonsStay = true;
  std::uint8_t attempt = 0;
  EXPECT_TRUE(ErroreRipetibileVb(attempt, 53, "R", "d", 1));
  ASSERT_EQ(screen.balloons.size(), 1U);
  MostraBalloon("Frm", "another", "title", 0, 0, false, false);
  EXPECT_TRUE(ErroreRipetibileVb(attempt, 53, "R", "d", 1));
  EXPECT_EQ(screen.balloons.size(), 2U);
  screen.ChiudiBalloon();
  Errors_Repeat = 9;
  EXPECT_TRUE(ErroreRipetibileVb(attempt, 53, "R", "d", 1));
  EXPECT_EQ(screen.balloons.size(), 3U);
}

TEST_F(ErroreRipetibileTest, The_first_round_s_notice_replaces_the_balloon_that_is_up) {
  screen.balloonsStay = true;
  MostraBalloon("Frm", "another", "title", 0, 0, false, false);
  std::uint8_t attempt = 0;
  EXPECT_TRUE(ErroreRipetibileVb(attempt, 53, "R", "d", 1));
  ASSERT_EQ(screen.balloons.size(), 2U);
  EXPECT_EQ(screen.balloons[1].testo, MessaggioRiprova);
}

TEST_F(ErroreRipetibileTest, A_hidden_program_shows_no_notice) {
  ApplicazioneNascosta = true;
  std::uint8_t attempt = 0;
  EXPECT_TRUE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_TRUE(ErroreRipetibileVb(attempt, 53, "R", "d", 1));
  EXPECT_TRUE(screen.balloons.empty());
}

TEST_F(ErroreRipetibileTest, A_stop_during_the_pause_is_used_up_and_ends_the_attempts_without_a_report) {
  screen.onEvents = [] { AnnullamentoRichiesto = true; };
  std::uint8_t attempt = 0;
  EXPECT_FALSE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_FALSE(AnnullamentoRichiesto);
  EXPECT_EQ(count("Fatal Error:"), 0);
  attempt = 0;
  EXPECT_FALSE(ErroreRipetibileVb(attempt, 53, "R", "d", 1));
  EXPECT_FALSE(AnnullamentoRichiesto);
}

TEST_F(ErroreRipetibileTest, A_stop_is_not_used_up_by_the_failure_that_is_final) {
  AnnullamentoRichiesto = true;
  Errors_Correction = 0;
  std::uint8_t attempt = 0;
  EXPECT_FALSE(ErroreRipetibileApi(attempt, 5, "R", "d"));
  EXPECT_TRUE(AnnullamentoRichiesto);
}

TEST_F(NotificaRipristinoTest, Shows_message_65_for_seven_seconds) {
  NotificaRipristino("Frm");
  ASSERT_EQ(screen.balloons.size(), 1U);
  EXPECT_EQ(screen.balloons[0].nomeForm, "Frm");
  EXPECT_EQ(screen.balloons[0].testo, Messaggio(65));
  EXPECT_EQ(screen.balloons[0].titolo, Messaggio(66));
  EXPECT_EQ(screen.balloons[0].secondi, 7);
}

TEST_F(NotificaRipristinoTest, Is_not_shown_by_a_hidden_program) {
  ApplicazioneNascosta = true;
  NotificaRipristino("Frm");
  EXPECT_TRUE(screen.balloons.empty());
}

}  // namespace
}  // namespace tandemize
