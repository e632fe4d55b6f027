#include "storage/ModuloInternet.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "fixtures/ProgramFolder.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

struct FtpTest : testing::Test {
  FtpTest() {
    FtpServers = {
        {"Home", "ftp.example.com", "anna", "secret", 1}, {"Work", "ftp.example.org", "", "", 0}, {}};
    Language = 1;
    Errors_Alert_Mode = 0;
    Email_Action = Log_Show_Window = 0;
    CreaListaLog();
  }
  int connect(int server, bool silent) {
    return Connetti_Al_Server_FTP(static_cast<std::int16_t>(server), message, failed, silent);
  }
  static int count(std::string_view text) {
    return static_cast<int>(std::ranges::count_if(
        ListaLog, [text](const std::string& line) { return line.find(text) != std::string::npos; }));
  }

  test::ProgramFolder program;
  test::ScriptedScreen& screen = program.screen;
  std::string message;
  bool failed = false;
};
using Connetti_Al_Server_FTPTest = FtpTest;
using AvvisoConnessionePersaTest = FtpTest;
using TestoErroreInternetTest = FtpTest;

TEST_F(Connetti_Al_Server_FTPTest, An_empty_server_table_is_told_even_when_silent) {
  FtpServers = {{}};
  EXPECT_EQ(connect(0, true), -1);
  FtpServers.clear();
  EXPECT_EQ(connect(-1, false), -1);
  ASSERT_EQ(screen.boxes.size(), 2U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(342));
  EXPECT_EQ(screen.boxes[0].style, StileInformazione);
  EXPECT_FALSE(failed);
  EXPECT_FALSE(ConnessioneFallita);
  EXPECT_EQ(message, "");
}

TEST_F(Connetti_Al_Server_FTPTest, No_chosen_server_means_the_first) {
  connect(-1, true);
  EXPECT_EQ(count(Messaggio(343) + " 'Home'"), 1);
}

TEST_F(Connetti_Al_Server_FTPTest, The_chosen_server_is_named_in_a_banner) {
  connect(1, true);
  EXPECT_EQ(count("      " + Messaggio(343) + " 'Work'"), 1);
}

TEST_F(Connetti_Al_Server_FTPTest, A_number_outside_the_table_fails_like_any_server) {
  EXPECT_GT(connect(7, true), 0);
  EXPECT_GT(connect(-2, true), 0);
  FtpServers[0].Ftp_Description.clear();
  EXPECT_GT(connect(-1, true), 0);
}

TEST_F(Connetti_Al_Server_FTPTest, Offline_the_text_is_message_354) {
  EXPECT_EQ(connect(0, false), 12007);
  EXPECT_TRUE(failed);
  EXPECT_TRUE(ConnessioneFallita);
  EXPECT_EQ(message, Messaggio(354));
  EXPECT_EQ(count(Messaggio(354)), 1);
  EXPECT_EQ(count("This version reaches no FTP server yet"), 1);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(354));
  EXPECT_EQ(screen.boxes[0].style, StileInformazione);
  EXPECT_TRUE(screen.balloons.empty());
}

TEST_F(Connetti_Al_Server_FTPTest, A_second_call_tries_anew) {
  connect(0, true);
  connect(0, true);
  EXPECT_EQ(count("This version reaches no FTP server yet"), 2);
}

TEST_F(Connetti_Al_Server_FTPTest, A_silent_call_and_errors_told_at_the_end_show_no_box) {
  connect(0, true);
  Errors_Alert_Mode = 1;
  connect(0, false);
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(Connetti_Al_Server_FTPTest, A_hidden_program_gets_a_balloon) {
  ApplicazioneNascosta = true;
  connect(0, true);
  EXPECT_TRUE(screen.boxes.empty());
  ASSERT_EQ(screen.balloons.size(), 1U);
  EXPECT_EQ(screen.balloons[0].testo, Messaggio(354));
  EXPECT_EQ(screen.balloons[0].titolo, TitoloApplicazione);
  EXPECT_EQ(screen.balloons[0].icona, 4);
}

TEST_F(Connetti_Al_Server_FTPTest, No_session_ever_opens) {
  connect(0, true);
  EXPECT_FALSE(InternetConnesso());
  EXPECT_FALSE(ServerConnesso(""));
  EXPECT_FALSE(ServerConnesso("Home"));
  DisconnettiServer("Home");
  DisconnettiServer("");
  EXPECT_FALSE(ServerConnesso("Home"));
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
