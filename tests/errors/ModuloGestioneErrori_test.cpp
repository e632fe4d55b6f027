#include "errors/ModuloGestioneErrori.h"

#include "errors/ErrorsTest.h"

namespace tandemize {
namespace {

using FineOperazioneTest = test::ErrorsTest;

TEST_F(FineOperazioneTest, Without_a_fault_it_succeeds_in_silence) {
  program.setting("Errors_Alert_Mode", "1");
  program.setting("Log_Show_Window", "2");
  bool error = false, stopped = false;
  EXPECT_TRUE(FineOperazione(error, "text", stopped));
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_EQ(screen.logReloads, 0);
}

TEST_F(FineOperazioneTest, An_error_is_told_by_its_description_or_message_328) {
  program.setting("Errors_Alert_Mode", "1");
  bool error = true, stopped = false;
  EXPECT_FALSE(FineOperazione(error, "what went wrong", stopped));
  EXPECT_FALSE(error);
  error = true;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  ASSERT_EQ(screen.boxes.size(), 2U);
  EXPECT_EQ(screen.boxes[0].text, "what went wrong");
  EXPECT_EQ(screen.boxes[1].text, Messaggio(328));
}

TEST_F(FineOperazioneTest, A_stop_wins_over_an_error) {
  program.setting("Errors_Alert_Mode", "1");
  bool error = true, stopped = true;
  EXPECT_FALSE(FineOperazione(error, "what went wrong", stopped));
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(329));
  EXPECT_FALSE(error);
  EXPECT_FALSE(stopped);
}

TEST_F(FineOperazioneTest, A_stop_without_an_error_is_no_success_and_shows_nothing) {
  program.setting("Errors_Alert_Mode", "1");
  program.setting("Log_Show_Window", "2");
  bool error = false, stopped = true;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_EQ(screen.logReloads, 0);
  EXPECT_FALSE(stopped);
}

TEST_F(FineOperazioneTest, Errors_told_as_they_happen_are_not_told_again) {
  program.setting("Errors_Alert_Mode", "0");
  bool error = true, stopped = false;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(FineOperazioneTest, The_log_window_is_filled_afresh_when_the_settings_ask_for_it) {
  program.setting("Log_Show_Window", "2");
  bool error = true, stopped = false;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_EQ(screen.logReloads, 1);
}

TEST_F(FineOperazioneTest, A_hidden_program_shows_neither_box_nor_log_and_still_fails) {
  program.setting("Errors_Alert_Mode", "1");
  program.setting("Log_Show_Window", "2");
  ApplicazioneNascosta = true;
  bool error = true, stopped = false;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_EQ(screen.logReloads, 0);
}

TEST_F(FineOperazioneTest, A_failed_connection_counts_as_an_error) {
  ConnessioneFallita = true;
  bool error = false, stopped = false;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_FALSE(error);
  EXPECT_FALSE(ConnessioneFallita);
}

TEST_F(FineOperazioneTest, Settings_changed_meanwhile_rule_the_report) {
  program.setting("Errors_Alert_Mode", "1");
  Errors_Alert_Mode = 0;
  bool error = true, stopped = false;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_EQ(Errors_Alert_Mode, 1);
  EXPECT_EQ(screen.boxes.size(), 1U);
}

TEST_F(FineOperazioneTest, The_settings_window_s_own_end_does_not_read_them_again) {
  program.setting("Errors_Alert_Mode", "1");
  FinestraOperazione window("FrmGlobalSetting");
  Errors_Alert_Mode = 0;
  bool error = true, stopped = false;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_EQ(Errors_Alert_Mode, 0);
}

TEST_F(FineOperazioneTest, Settings_that_do_not_convert_are_told_in_the_log_and_change_no_result) {
  program.home().write("GlobalSetting.dat", "Errors_Repeat = many\r\n");
  bool error = false, stopped = false;
  EXPECT_TRUE(FineOperazione(error, "", stopped));
  EXPECT_EQ(count("Errors_Repeat"), 1);
}

}  // namespace
}  // namespace tandemize
