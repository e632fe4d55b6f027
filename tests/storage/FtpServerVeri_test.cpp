// The operations on paths against servers of the field, each with its own forms of listing and of dates.
#include <gtest/gtest.h>

#include <set>

#include "fixtures/FtpServer.h"
#include "storage/File_System.h"
#include "storage/FtpProgram.h"
#include "storage/Unita.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::FtpServer;
using Names = std::multiset<std::string>;

constexpr std::int64_t SomeMoment = 1'700'000'040;  // a whole minute, which is all that LIST tells of an age

struct ServerKind {
  const char* name;
  FtpServer::Kind kind;
  std::vector<std::string> faults;
};

class FtpServerVeri : public testing::TestWithParam<ServerKind> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(GetParam().kind != FtpServer::Kind::Vsftpd || FtpServer::hasVsftpd());
    server = std::make_unique<FtpServer>(GetParam().kind, GetParam().faults);
    program.define({"Home", server->name(), server->user(), FtpServer::Password, 1});
    ASSERT_EQ(program.connect(0), 0) << program.message;
  }
  [[nodiscard]] std::string path(std::string_view relative) const { return server->path(relative); }
  Names list(const std::string& folder) {
    Names names;
    HandleRicerca handle = 0;
    RispostaDir found = DirFile(handle, record, folder + "/*.*", false);
    for (; !found.fallita() && !found.fine(); found = DirFile(handle, record, "", false))
      names.insert(found.nome() + ((record.dwFileAttributes & platform::kDirectory) != 0 ? "/" : ""));
    if (found.fallita()) names.insert("<failed>");
    return names;
  }

  test::FtpProgram program;
  std::unique_ptr<FtpServer> server;
  RecordRicerca record;
};

TEST_P(FtpServerVeri, Lists_names_of_every_kind) {
  for (const char* name : {"a/one.txt", "a/ leading", "a/tèst 'q' \"d\"", "a/.hidden", "a/sub/x"})
    server->write(name, "12345");
  EXPECT_EQ(list(path("a")), (Names{"one.txt", " leading", "tèst 'q' \"d\"", ".hidden", "sub/"}));
}

TEST_P(FtpServerVeri, An_empty_folder_lists_nothing_and_fails_nothing) {
  server->folder().makeFolder("a");
  EXPECT_EQ(list(path("a")), Names{});
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST_P(FtpServerVeri, A_file_has_its_size_and_its_date_in_local_time) {
  server->write("a/one.txt", "12345");
  server->setTime("a/one.txt", SomeMoment);
  HandleRicerca handle = 0;
  ASSERT_EQ(DirFile(handle, record, path("a") + "/*.*", false).nome(), "one.txt");
  ChiudiRicerca(handle);
  EXPECT_EQ(DimensioneFile(record), 5);
  EXPECT_EQ(DataFileDaRicerca(path("a/one.txt")), TestoDataFile(SomeMoment));
}

TEST_P(FtpServerVeri, Folders_are_found_and_the_current_one_stays) {
  server->write("a/one.txt", "1");
  server->folder().makeFolder("b");
  EXPECT_EQ(list(path("a")), Names{"one.txt"});
  EXPECT_TRUE(EsisteCartella(path("b")));
  EXPECT_FALSE(EsisteCartella(path("c")));
  EXPECT_FALSE(EsisteCartella(path("a/one.txt")));
  EXPECT_TRUE(EsisteFile(path("a/none")));
  EXPECT_EQ(Restituisci_NumeroFile_Cartella(path("b")), 1);
  EXPECT_EQ(Restituisci_NumeroFile_Cartella(path("b")), 0);
}

TEST_P(FtpServerVeri, Checksums_agree_with_local_ones) {
  std::string bytes(300'000, 'x');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 255);
  server->write("a/big", bytes);
  server->write("a/empty", "");
  program.work().write("big", bytes);
  EXPECT_EQ(CalcolaCRC(path("a/big"), true).valore, CalcolaCRC(program.program("big"), false).valore);
  EXPECT_EQ(CalcolaCRC(path("a/empty"), true).valore, -771559539);
  EXPECT_EQ(list(path("a")), (Names{"big", "empty"}));
}

TEST_P(FtpServerVeri, The_check_of_a_path_tells_a_missing_folder) {
  server->folder().makeFolder("a");
  EXPECT_EQ(VerificaPercorso(path("a"), 0), 0);
  EXPECT_EQ(VerificaPercorso(path("b"), 0), 8);
  EXPECT_FALSE(ServerConnesso(""));
}

TEST_P(FtpServerVeri, Folders_and_files_come_and_go) {
  server->write("a/one.txt", "1");
  EXPECT_TRUE(CreaSottoCartelle(path("a/b/c")));
  EXPECT_TRUE(server->folder().exists("a/b/c"));
  EXPECT_EQ(list(path("a")), (Names{"one.txt", "b/"}));
  EXPECT_TRUE(EliminaFile(path("a/one.txt")));
  EXPECT_FALSE(server->folder().exists("a/one.txt"));
  EXPECT_FALSE(EliminaCartella(path("a/b/c")));
  EXPECT_FALSE(server->folder().exists("a/b/c"));
  EXPECT_FALSE(EliminaCartella(path("a")));
  EXPECT_TRUE(server->folder().exists("a/b"));
  EXPECT_EQ(countInLog("Server Reply: < 550"), 1);
}

INSTANTIATE_TEST_SUITE_P(Every, FtpServerVeri,
                         testing::Values(ServerKind{"Mlsd", FtpServer::Kind::Scriptable, {}},
                                         ServerKind{"List", FtpServer::Kind::Scriptable, {"mlsd off"}},
                                         ServerKind{"Vsftpd", FtpServer::Kind::Vsftpd, {}}),
                         [](const testing::TestParamInfo<ServerKind>& tested) {
                           return std::string(tested.param.name);
                         });

// --- servers that misbehave

struct Ill : testing::Test {
  void connect(const std::vector<std::string>& faults) {
    ASSERT_EQ(program.connect(0), 0);
    server.become(faults);
  }
  Ill() { program.define({"Home", server.name(), FtpServer::User, FtpServer::Password, 1}); }

  FtpServer server;
  test::FtpProgram program;
};
using FtpServerCattivo = Ill;

TEST_F(FtpServerCattivo, One_that_ends_the_session_is_reported_after_the_last_attempt) {
  connect({"hang-up MKD"});
  test::retryWithoutPause(3);
  EXPECT_FALSE(CreaDirectory("/a"));
  EXPECT_EQ(countInLog("relativo alla routine 'CreaDirectory' errore numero 1203"), 3);
  EXPECT_TRUE(ServerConnesso("Home"));
  DisconnettiServer("");
  server.become({});
  EXPECT_EQ(program.connect(0), 0);
  EXPECT_TRUE(CreaDirectory("/d"));
}

TEST_F(FtpServerCattivo, One_that_is_silent_once_is_asked_again) {
  SessioneFtp().setLimits({.silence = 200});
  connect({"first 1 silent MKD"});
  test::retryWithoutPause(3);
  // What was never answered leaves the session out of step, so that every attempt runs into the silence.
  static_cast<void>(CreaDirectory("/a"));
  EXPECT_GE(countInLog("relativo alla routine 'CreaDirectory' errore numero 12002"), 1);
}

TEST_F(FtpServerCattivo, A_listing_of_ten_thousand_entries_is_whole) {
  connect({"entries 10000"});
  HandleRicerca handle = 0;
  RecordRicerca record;
  int count = 0;
  RispostaDir found = DirFile(handle, record, "/*.*", false);
  for (; !found.fallita() && !found.fine(); found = DirFile(handle, record, "", false)) ++count;
  EXPECT_FALSE(found.fallita());
  EXPECT_EQ(count, 10000);
}

TEST_F(FtpServerCattivo, A_wrong_user_and_a_wrong_password_are_told_apart_where_the_server_does) {
  FtpServers[0].Ftp_Password = "wrong";
  EXPECT_EQ(program.connect(0), 12014);
  server.become({"refuse USER 530 Who?"});
  EXPECT_EQ(program.connect(0), 12013);
}

}  // namespace
}  // namespace tandemize
