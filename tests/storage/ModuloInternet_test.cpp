#include "storage/ModuloInternet.h"

#include <gtest/gtest.h>

#include "errors/ModuloLog.h"
#include "platform/environment.h"
#include "storage/FtpProgram.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::ScopedVariable;

struct Connetti_Al_Server_FTPTest : testing::Test {
  // A name that no name service knows, and a port on which nobody listens.
  Connetti_Al_Server_FTPTest() {
    program.define({"Home", "nowhere.invalid", "anna", "secret", 1});
    program.define({"Work", "127.0.0.1:1", "", "", 0});
  }

  test::FtpProgram program;
  test::ScriptedScreen& screen = program.screen;
};
using AvvisoConnessionePersaTest = Connetti_Al_Server_FTPTest;
using TestoErroreInternetTest = Connetti_Al_Server_FTPTest;

TEST_F(Connetti_Al_Server_FTPTest, An_empty_server_table_is_told_even_when_silent) {
  FtpServers = {{}};
  EXPECT_EQ(program.connect(0, true), -1);
  FtpServers.clear();
  EXPECT_EQ(program.connect(-1, false), -1);
  ASSERT_EQ(screen.boxes.size(), 2U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(342));
  EXPECT_EQ(screen.boxes[0].style, StileInformazione);
  EXPECT_FALSE(program.failed);
  EXPECT_FALSE(ConnessioneFallita);
  EXPECT_EQ(program.message, "");
}

TEST_F(Connetti_Al_Server_FTPTest, No_chosen_server_means_the_first) {
  program.connect(-1);
  EXPECT_EQ(countInLog(Messaggio(343) + " 'Home'"), 1);
}

TEST_F(Connetti_Al_Server_FTPTest, The_chosen_server_is_named_in_a_banner) {
  program.connect(1);
  EXPECT_EQ(countInLog("      " + Messaggio(343) + " 'Work'"), 1);
}

TEST_F(Connetti_Al_Server_FTPTest, A_number_outside_the_table_fails_like_any_server) {
  EXPECT_GT(program.connect(7), 0);
  EXPECT_GT(program.connect(-2), 0);
  FtpServers[0].Ftp_Description.clear();
  EXPECT_GT(program.connect(-1), 0);
}

TEST_F(Connetti_Al_Server_FTPTest, A_name_that_cannot_be_resolved_gives_12007_and_its_sentence) {
  EXPECT_EQ(program.connect(0, false), 12007);
  EXPECT_TRUE(program.failed);
  EXPECT_TRUE(ConnessioneFallita);
  EXPECT_EQ(program.message, Messaggio(352) + " 'nowhere.invalid' " + Messaggio(353));
  EXPECT_EQ(countInLog(program.message), 1);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, program.message);
  EXPECT_EQ(screen.boxes[0].style, StileInformazione);
  EXPECT_TRUE(screen.balloons.empty());
}

TEST_F(Connetti_Al_Server_FTPTest, A_failed_server_stands_in_the_list_without_a_session) {
  program.connect(0);
  ASSERT_EQ(ServerConnessi.size(), 2U);
  EXPECT_EQ(ServerConnessi[0].Descrizione, "Home");
  EXPECT_EQ(ServerConnessi[0].Handle, 0);
  EXPECT_EQ(ServerConnessi[1].Descrizione, "");
  EXPECT_EQ(HInternet, 0);
  EXPECT_EQ(HSessioneFtp, 0);
  EXPECT_FALSE(ServerConnesso("Home"));
  EXPECT_FALSE(ServerConnesso(""));
}

TEST_F(Connetti_Al_Server_FTPTest, Offline_the_text_is_message_354) {
  const ScopedVariable network("TANDEMIZE_NETWORK", "down");
  EXPECT_FALSE(InternetConnesso());
  EXPECT_EQ(program.connect(0, false), 12007);
  EXPECT_EQ(program.message, Messaggio(354));
  EXPECT_EQ(countInLog(Messaggio(354)), 1);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(354));
}

TEST_F(Connetti_Al_Server_FTPTest, A_second_call_tries_anew) {
  program.connect(0);
  program.connect(0);
  EXPECT_EQ(countInLog(Messaggio(343) + " 'Home'"), 2);
}

TEST_F(Connetti_Al_Server_FTPTest, A_silent_call_and_errors_told_at_the_end_show_no_box) {
  program.connect(0, true);
  Errors_Alert_Mode = 1;
  program.connect(0, false);
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(Connetti_Al_Server_FTPTest, A_hidden_program_gets_a_balloon) {
  ApplicazioneNascosta = true;
  program.connect(0);
  EXPECT_TRUE(screen.boxes.empty());
  ASSERT_EQ(screen.balloons.size(), 1U);
  EXPECT_EQ(screen.balloons[0].testo, program.message);
  EXPECT_EQ(screen.balloons[0].titolo, TitoloApplicazione);
  EXPECT_EQ(screen.balloons[0].icona, 4);
}

// A number without a sentence of its own goes through the fatal report, which alerts even a silent call.
TEST_F(Connetti_Al_Server_FTPTest, An_error_outside_the_sentences_is_a_fatal_report) {
  const ScopedVariable network("TANDEMIZE_NETWORK", "down");
  EXPECT_EQ(program.connect(1, true), 12029);
  EXPECT_TRUE(program.failed);
  EXPECT_TRUE(ConnessioneFallita);
  EXPECT_EQ(program.message, TestoErroreInternet(12029));
  EXPECT_EQ(countInLog("Routine Name: < Connetti_Al_Server_FTP >"), 1);
  EXPECT_EQ(countInLog("Error Number: < 12029 >"), 1);
  EXPECT_EQ(countInLog("La connessione al server '127.0.0.1:1' non è riuscita."), 1);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(340));
  EXPECT_EQ(HInternet, 0);
  EXPECT_EQ(HSessioneFtp, 0);
  EXPECT_EQ(ServerConnessi.size(), 1U);
}

TEST_F(AvvisoConnessionePersaTest, Asks_whether_to_go_on_telling) {
  screen.answers = {Risposta::Sì, Risposta::No};
  AvvisoConnessionePersa(true, "lost");
  EXPECT_EQ(Errors_Alert_Mode, 0);
  EXPECT_TRUE(ConnessioneFallita);
  AvvisoConnessionePersa(true, "lost");
  EXPECT_EQ(Errors_Alert_Mode, 1);
  AvvisoConnessionePersa(true, "lost");
  ASSERT_EQ(screen.boxes.size(), 2U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(341) + "lost");
  EXPECT_EQ(screen.boxes[0].style, StileSìNoInformazione);
}

TEST_F(AvvisoConnessionePersaTest, A_hidden_program_tells_once_by_a_balloon) {
  ApplicazioneNascosta = true;
  AvvisoConnessionePersa(true, "lost");
  AvvisoConnessionePersa(true, "lost again");
  EXPECT_EQ(Errors_Alert_Mode, 1);
  ASSERT_EQ(screen.balloons.size(), 1U);
  EXPECT_EQ(screen.balloons[0].testo, "lost");
  EXPECT_EQ(screen.balloons[0].icona, 4);
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(AvvisoConnessionePersaTest, Without_a_failure_nothing_is_told) {
  AvvisoConnessionePersa(false, "text");
  EXPECT_FALSE(ConnessioneFallita);
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_EQ(Errors_Alert_Mode, 0);
}

TEST_F(AvvisoConnessionePersaTest, Errors_told_at_the_end_are_not_asked_about) {
  Errors_Alert_Mode = 1;
  AvvisoConnessionePersa(true, "lost");
  EXPECT_TRUE(ConnessioneFallita);
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(TestoErroreInternetTest, Has_92_texts) {
  int texts = 0;
  for (int code = 11900; code < 12300; ++code) {
    if (TestoErroreInternet(code).empty()) continue;
    EXPECT_TRUE(code >= 12001 && code <= 12174) << code;
    ++texts;
  }
  EXPECT_EQ(texts, 92);
}

TEST_F(TestoErroreInternetTest, Gives_the_text_of_a_number) {
  EXPECT_EQ(TestoErroreInternet(12001), "No more handles could be generated at this time.");
  EXPECT_EQ(TestoErroreInternet(12029), "The attempt to connect to the server failed.");
  EXPECT_EQ(TestoErroreInternet(12056), "SSL certificate had no REV");
  EXPECT_EQ(TestoErroreInternet(12043), "The application is posting data to a sever that is not secure.");
  EXPECT_EQ(TestoErroreInternet(12157),
            "'The application experienced an internal error loading the SSL libraries.");
  EXPECT_TRUE(TestoErroreInternet(12174).ends_with(
      "INTERNET_ERROR_MASK_LOGIN_FAILURE_DISPLAY_ENTITY_BODY has been set."));
  EXPECT_TRUE(TestoErroreInternet(12038).starts_with(
      "SSL certificate common name (host name field) is incorrect - for example"));
}

TEST_F(TestoErroreInternetTest, Numbers_that_the_table_skips_have_no_text) {
  for (const int code : {0, -1, 12000, 12035, 12051, 12058, 12109, 12113, 12139, 12175})
    EXPECT_EQ(TestoErroreInternet(code), "") << code;
}

}  // namespace
}  // namespace tandemize
