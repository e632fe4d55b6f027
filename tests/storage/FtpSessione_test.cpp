// The session against a server: connecting, the list of servers, and what ends a wait.
#include <gtest/gtest.h>

#include "fixtures/PlainFtpServer.h"
#include "platform/environment.h"
#include "storage/File_System.h"
#include "storage/FtpProgram.h"
#include "storage/Unita.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::PlainFtpServer;
using test::retryWithoutPause;

class FtpSessione : public testing::Test {
 protected:
  FtpSessione() {
    program.define({"Home", home.name(), "anna", "se?cret", 1});
    program.define({"Work", work.name(), "bob", "", 1});
  }

  // A server that answers `reply` to every line that begins with `word`.
  static void answer(PlainFtpServer& server, const std::string& word, const std::string& reply) {
    server.answer([word, reply](const std::string& line) {
      return line.starts_with(word) ? std::optional(reply) : std::nullopt;
    });
  }

  PlainFtpServer home, work;
  test::FtpProgram program;
  test::ScriptedScreen& screen = program.screen;
};
using FtpVerifica = FtpSessione;
using FtpArresto = FtpSessione;

TEST_F(FtpSessione, A_connect_opens_the_session_and_lists_the_server) {
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_FALSE(program.failed);
  EXPECT_EQ(program.message, "");
  EXPECT_NE(HInternet, 0);
  EXPECT_NE(HSessioneFtp, 0);
  EXPECT_TRUE(ServerConnesso(""));
  EXPECT_TRUE(ServerConnesso("Home"));
  EXPECT_FALSE(ServerConnesso("home"));
  EXPECT_FALSE(ServerConnesso("Work"));
  ASSERT_EQ(ServerConnessi.size(), 2U);
  EXPECT_EQ(ServerConnessi[0].Handle, HSessioneFtp);
  EXPECT_EQ(home.commands("USER"), std::vector<std::string>{"USER anna"});
  EXPECT_EQ(home.commands("PASS"), std::vector<std::string>{"PASS se?cret"});
}

TEST_F(FtpSessione, A_server_that_is_connected_is_not_connected_again) {
  EXPECT_EQ(program.connect(0), 0);
  const std::int32_t session = HSessioneFtp;
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_EQ(HSessioneFtp, session);
  EXPECT_EQ(home.connections(), 1);
  EXPECT_EQ(countInLog(Messaggio(343) + " 'Home'"), 1);
}

TEST_F(FtpSessione, The_second_of_two_servers_takes_the_session_and_the_first_counts_as_connected) {
  work.root().makeFolder("at work");
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_EQ(program.connect(1), 0);
  EXPECT_TRUE(ServerConnesso("Home"));
  EXPECT_TRUE(ServerConnesso("Work"));
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_EQ(home.connections(), 1);
  EXPECT_TRUE(EsisteCartella("/at work"));
}

TEST_F(FtpSessione, Closing_by_any_description_closes_the_session) {
  EXPECT_EQ(program.connect(0), 0);
  DisconnettiServer("nobody");
  EXPECT_EQ(HInternet, 0);
  EXPECT_EQ(HSessioneFtp, 0);
  EXPECT_EQ(ServerConnessi[0].Descrizione, "Home");
  EXPECT_EQ(program.connect(0), 0);
  DisconnettiServer("Home");
  EXPECT_EQ(ServerConnessi.size(), 3U);
  EXPECT_EQ(ServerConnessi[0].Descrizione, "");
  EXPECT_EQ(ServerConnessi[1].Handle, 0);
  DisconnettiServer("");
  EXPECT_EQ(ServerConnessi.size(), 1U);
}

TEST_F(FtpSessione, A_description_taken_from_the_list_itself_may_be_closed) {
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_EQ(program.connect(1), 0);
  EXPECT_EQ(ServerConnessi.size(), 3U);
  DisconnettiServer(ServerConnessi[0].Descrizione);
  EXPECT_EQ(ServerConnessi[0].Descrizione, "");
  EXPECT_EQ(ServerConnessi[1].Descrizione, "Work");
}

TEST_F(FtpSessione, A_refused_login_has_the_sentence_of_its_number) {
  const std::string server = " '" + home.name() + "' ";
  struct Row {
    std::string word, reply;
    std::int32_t code;
    std::string message;
  };
  const Row rows[] = {
      {"USER", "530 No.", 12013, Messaggio(344) + " 'anna' " + Messaggio(345) + server + Messaggio(346)},
      {"PASS", "530 No.", 12014, Messaggio(347) + " 'se?cret' " + Messaggio(345) + server + Messaggio(346)},
      {"PASS", "532 No.", 12015, Messaggio(348) + server + Messaggio(349)},
      {"USER", "500 No.", 12015, Messaggio(348) + server + Messaggio(349)}};
  for (const Row& row : rows) {
    answer(home, row.word, row.reply);
    EXPECT_EQ(program.connect(0), row.code);
    EXPECT_EQ(program.message, row.message);
    EXPECT_TRUE(program.failed);
    EXPECT_FALSE(ServerConnesso(""));
  }
}

TEST_F(FtpSessione, The_password_stands_in_the_sentence_about_it_and_nowhere_else) {
  answer(home, "PASS", "532 se?cret is not enough.");
  EXPECT_EQ(program.connect(0, false), 12015);
  home.answer({});
  EXPECT_EQ(program.connect(0, false), 0);
  EXPECT_EQ(countInLog("se?cret"), 0);
  for (const test::ShownBox& box : screen.boxes) EXPECT_EQ(box.text.find("se?cret"), std::string::npos);
}

TEST_F(FtpSessione, A_silent_server_gives_12002) {
  answer(home, "", PlainFtpServer::Stall);
  SessioneFtp().setLimits({.silence = 50});
  EXPECT_EQ(program.connect(0), 12002);
  EXPECT_EQ(program.message, Messaggio(350) + " '" + home.name() + "' " + Messaggio(351));
}

TEST_F(FtpSessione, After_a_failure_the_same_server_is_tried_anew) {
  answer(home, "USER", "530 No.");
  EXPECT_EQ(program.connect(0), 12013);
  home.answer({});
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_TRUE(ServerConnesso("Home"));
}

TEST_F(FtpSessione, A_failed_connect_closes_the_session_to_another_server) {
  EXPECT_EQ(program.connect(0), 0);
  answer(work, "USER", "530 No.");
  EXPECT_EQ(program.connect(1), 12013);
  EXPECT_FALSE(ServerConnesso(""));
  EXPECT_EQ(HSessioneFtp, 0);
}

TEST_F(FtpSessione, The_hourglass_stays_when_the_server_counts_as_connected) {
  struct Pointers : test::ScriptedScreen {
    void MousePointer(Puntatore pointer) override { last = pointer; }
    Puntatore last = Puntatore::Normale;
  } pointers;
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_EQ(pointers.last, Puntatore::Normale);
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_EQ(pointers.last, Puntatore::Clessidra);
  UsaSchermo(&screen);
}

TEST_F(FtpSessione, Passive_mode_that_is_refused_is_12112_and_no_other_is_tried) {
  home.root().write("file", "1");
  home.answer([](const std::string& line) {
    return line == "EPSV" || line == "PASV" ? std::optional<std::string>("502 No.") : std::nullopt;
  });
  ASSERT_EQ(program.connect(0), 0);
  HandleRicerca handle = 0;
  RecordRicerca record;
  EXPECT_TRUE(DirFile(handle, record, "/*.*", false).fallita());
  EXPECT_EQ(countInLog(test::retryLine(0, "DirFile", 12112)), 1);
  EXPECT_TRUE(home.commands("PORT").empty());
  EXPECT_TRUE(home.commands("EPRT").empty());
}

// --- what ends a wait

TEST_F(FtpArresto, A_stop_ends_a_connect_to_a_silent_server_without_a_report) {
  answer(home, "", PlainFtpServer::Stall);
  FinestraOperazione window("FrmScan");
  screen.onEvents = [this, &window] {
    if (home.connections() > 0) window.Annulla(true);
  };
  EXPECT_EQ(program.connect(0, false), 12017);
  EXPECT_TRUE(program.failed);
  EXPECT_FALSE(ConnessioneFallita);
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_EQ(countInLog("Fatal Error"), 0);
  EXPECT_EQ(HSessioneFtp, 0);
}

TEST_F(FtpArresto, A_stop_ends_an_operation_without_a_retry_and_without_a_report) {
  ASSERT_EQ(program.connect(0), 0);
  answer(home, "MKD", PlainFtpServer::Stall);
  retryWithoutPause(5);
  FinestraOperazione window("FrmScan");
  screen.onEvents = [this, &window] {
    if (!home.commands("MKD").empty()) window.Annulla(true);
  };
  EXPECT_FALSE(CreaDirectory("/new"));
  EXPECT_EQ(home.commands("MKD").size(), 1U);
  EXPECT_EQ(countInLog("Tetativo"), 0);
  EXPECT_EQ(countInLog("Fatal Error"), 0);
}

TEST_F(FtpArresto, A_stop_of_an_operation_that_is_over_does_not_end_the_next_one) {
  AnnullamentoRichiesto = true;
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_TRUE(CreaDirectory("/new"));
}

TEST_F(FtpArresto, What_cleans_up_after_a_stop_is_not_stopped_itself) {
  home.root().write("part", "1");
  ASSERT_EQ(program.connect(0), 0);
  FinestraOperazione window("FrmFileTransfer");
  window.ProcessoAnnullato = true;
  const PuliziaFtp cleaning;
  EXPECT_TRUE(EliminaFile("/part"));
  EXPECT_FALSE(home.root().exists("part"));
}

// --- the check of a path

TEST_F(FtpVerifica, A_folder_on_the_server_is_usable_or_8_and_the_session_is_closed) {
  home.root().makeFolder("public");
  EXPECT_EQ(VerificaPercorso("/public", 0), 0);
  EXPECT_FALSE(ServerConnesso(""));
  EXPECT_EQ(VerificaPercorso("/none", 0), 8);
  ASSERT_EQ(program.connect(0), 0);
  EXPECT_EQ(VerificaPercorso("/public/", 0), 0);
  EXPECT_FALSE(ServerConnesso(""));
  EXPECT_EQ(home.connections(), 3);
}

TEST_F(FtpVerifica, A_failed_connect_is_9_and_shows_no_box) {
  answer(home, "USER", "530 No.");
  EXPECT_EQ(VerificaPercorso("/public", 0), 9);
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(FtpVerifica, The_server_of_the_row_is_the_one_that_is_asked) {
  work.root().makeFolder("at work");
  EXPECT_EQ(VerificaPercorsi({{"/at work", "1"}}, 32, 0), 0);
  EXPECT_EQ(VerificaPercorsi({{"/at work", "0"}}, 32, 0), 8);
}

TEST_F(FtpVerifica, Without_a_server_any_path_on_ftp_passes) {
  FtpServers = {{"Home", "", "", "", 1}, {}};
  EXPECT_EQ(VerificaPercorso("/none", 0), 0);
}

}  // namespace
}  // namespace tandemize
