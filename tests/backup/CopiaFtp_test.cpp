// One file on its way to or from a server.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "backup/BackupRun.h"
#include "fixtures/FtpServer.h"
#include "fixtures/PlainFtpServer.h"
#include "platform/environment.h"
#include "profile/ModuloProfilo.h"
#include "storage/ModuloInternet.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::FtpServer;
using test::PlainFtpServer;

// A started program with the server as its first.
class FtpFolder : public test::BackupFolder {
 public:
  explicit FtpFolder(const std::string& serverName, const std::string& password = "secret") {
    AzzeraInternet();
    define(0, "Home", serverName, password);
    setting("Errors_Alert_Mode", "1");
    work().makeFolder("here");
  }
  ~FtpFolder() {
    forgetHooks();
    AzzeraInternet();
  }
  void define(int number, const std::string& description, const std::string& serverName,
              const std::string& password = "secret") {
    const std::string n = std::to_string(number);
    setting("Ftp_Description" + n, description);
    setting("Ftp_Server_Name" + n, serverName);
    setting("Ftp_User" + n, "anna");
    setting("Ftp_Password" + n, password);
    setting("Ftp_PassiveMode" + n, "1");
  }
  void retries(int times) {
    setting("Errors_Correction", "1");
    setting("Errors_Repeat", std::to_string(times));
    setting("Errors_Seconds", "0");
  }
  [[nodiscard]] int logged(const std::string& text) const {
    return static_cast<int>(test::countLinesWith(logLines(), text));
  }

 private:
  test::ScopedVariable network_{"TANDEMIZE_NETWORK", "up"};
};

class CopiaFtp : public testing::Test {
 protected:
  CopiaFtp() { server.root().makeFolder("there"); }

  EsitoTrasferimento run() {
    FrmFileTransfer transfer;
    transfer.Init(0, false, false);
    return transfer.EsitoCopia;
  }
  EsitoTrasferimento upload(const std::string& name, double size = 1) {
    test::addTransfer(program.program("here/" + name), "/there/" + name, size);
    return run();
  }
  EsitoTrasferimento download(const std::string& name, double size = 1) {
    test::addTransfer("/there/" + name, program.program("here/" + name), size);
    return run();
  }
  void refuse(const std::string& beginning, int times) {
    server.answer([beginning, times](const std::string& line) mutable {
      return line.starts_with(beginning) && times-- > 0 ? std::optional<std::string>("553 Not that one.")
                                                        : std::nullopt;
    });
  }
  std::string here() { return test::describeTree(program.work().host("here")); }
  std::string there() { return test::describeTree(server.root().host("there")); }

  PlainFtpServer server;
  FtpFolder program{server.name()};
};

std::string content(std::size_t size) {
  std::string text(size, '\0');
  for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i * 7 % 26);
  return text;
}

TEST_F(CopiaFtp, Files_of_any_length_go_up_and_come_down_whole) {
  for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U, 131072U, 200000U}) {
    const std::string name = "of " + std::to_string(size);
    program.work().write("here/" + name, content(size));
    EXPECT_EQ(upload(name), EsitoTrasferimento::Nessuno) << size;
    EXPECT_EQ(server.root().read("there/" + name), content(size)) << size;
    fs::remove(program.work().host("here/" + name));
    EXPECT_EQ(download(name), EsitoTrasferimento::Nessuno) << size;
    EXPECT_EQ(program.work().read("here/" + name), content(size)) << size;
  }
  EXPECT_EQ(program.logged("- OK -"), 14 * 2);  // of each connection and each file
}

TEST_F(CopiaFtp, A_download_gets_the_date_that_the_server_tells_of_the_file) {
  server.root().write("there/a", "text");
  fs::last_write_time(
      server.root().host("there/a"),
      fs::file_time_type::clock::from_sys(std::chrono::sys_seconds(std::chrono::seconds(1'600'000'001))));
  EXPECT_EQ(download("a"), EsitoTrasferimento::Nessuno);
  struct stat status = {};
  ASSERT_EQ(::stat(program.work().host("here/a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtime, 1'600'000'001);
}

TEST_F(CopiaFtp, A_server_that_tells_no_date_leaves_that_of_the_listing) {
  server.machineListing = false;
  refuse("MDTM", 100);
  server.root().write("there/a", "text");
  test::addTransfer("/there/a", program.program("here/a")).Sorgente.Data = 1'500'000'000;
  EXPECT_EQ(run(), EsitoTrasferimento::Nessuno);
  struct stat status = {};
  ASSERT_EQ(::stat(program.work().host("here/a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtime, 1'500'000'000);
}

TEST_F(CopiaFtp, Names_with_blanks_accents_and_quotes_travel_both_ways) {
  for (const std::string name :
       {"a b", " leading", "trailing ", "è ü ß", "it's", "100%", "[x] {y}", "#1;2"}) {
    program.work().write("here/" + name, name);
    EXPECT_EQ(upload(name), EsitoTrasferimento::Nessuno) << name;
    EXPECT_EQ(server.root().read("there/" + name), name);
    fs::remove(program.work().host("here/" + name));
    EXPECT_EQ(download(name), EsitoTrasferimento::Nessuno) << name;
    EXPECT_EQ(program.work().read("here/" + name), name);
  }
  // What the program shows in another form stands in that form on the server, and comes back as it was.
  program.work().write("here/a \"b\"", "quotes");
  test::addTransfer(program.program("here") +
                        "\\a \xEF\x80\xA2"
                        "b\xEF\x80\xA2",
                    "/there/a \xEF\x80\xA2"
                    "b\xEF\x80\xA2");
  EXPECT_EQ(run(), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(server.root().read("there/a \xEF\x80\xA2"
                               "b\xEF\x80\xA2"),
            "quotes");
}

TEST_F(CopiaFtp, A_path_with_a_line_end_is_refused_before_anything_of_it_is_sent) {
  program.work().write("here/a", "text");
  server.root().write("there/victim", "mine");
  test::addTransfer(program.program("here/a"), "/there/x\r\nDELE /there/victim");
  EXPECT_EQ(run(), EsitoTrasferimento::ErroreSuperato);
  EXPECT_EQ(server.commands("DELE"), std::vector<std::string>());
  EXPECT_EQ(server.commands("STOR"), std::vector<std::string>());
  EXPECT_EQ(there(), "victim = mine\n");
}

TEST_F(CopiaFtp, A_name_that_the_server_refuses_costs_no_older_copy_of_it) {
  program.work().write("here/a", "new");
  server.root().write("there/a", "old");
  refuse("STOR", 100);
  EXPECT_EQ(upload("a"), EsitoTrasferimento::ErroreSuperato);
  EXPECT_EQ(there(), "a = old\n");
  EXPECT_EQ(server.commands("DELE"), std::vector<std::string>());
  EXPECT_EQ(program.logged("relativo alla routine 'InviaFileAlServer' errore numero 12003"), 1);
  EXPECT_GE(program.logged("553 Not that one."), 1);
}

TEST_F(CopiaFtp, Without_try_next_a_transfer_given_up_ends_the_run) {
  program.setting("Errors_Try_Next", "0");
  program.work().write("here/a", "1");
  program.work().write("here/b", "2");
  refuse("STOR /there/a", 100);
  test::addTransfer(program.program("here/a"), "/there/a");
  EXPECT_EQ(upload("b"), EsitoTrasferimento::ErroreSuperato);
  EXPECT_EQ(there(), "");
}

TEST_F(CopiaFtp, With_try_next_the_others_are_transferred) {
  program.setting("Errors_Try_Next", "1");
  program.work().write("here/a", "1");
  program.work().write("here/b", "2");
  refuse("STOR /there/a", 100);
  test::addTransfer(program.program("here/a"), "/there/a");
  EXPECT_EQ(upload("b"), EsitoTrasferimento::ErroreSuperato);
  EXPECT_EQ(there(), "b = 2\n");
}

TEST_F(CopiaFtp, A_transfer_is_tried_as_often_as_the_settings_say) {
  program.retries(3);
  program.work().write("here/a", "1");
  refuse("STOR", 2);
  EXPECT_EQ(upload("a"), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(there(), "a = 1\n");
  EXPECT_EQ(server.commands("STOR").size(), 3U);
  EXPECT_EQ(program.logged("Tetativo N°"), 2);
  refuse("RETR", 3);
  EXPECT_EQ(download("a"), EsitoTrasferimento::ErroreSuperato);
  EXPECT_EQ(server.commands("RETR").size(), 3U);
}

TEST_F(CopiaFtp, A_download_cut_at_any_tenth_leaves_the_older_copy_and_nothing_else) {
  server.root().write("there/a", content(100'000));
  program.work().write("here/a", "old copy");
  for (int tenth = 0; tenth < 10; ++tenth) {
    server.cutAfter = tenth * 10'000;
    EXPECT_EQ(download("a"), EsitoTrasferimento::ErroreSuperato) << tenth;
    EXPECT_EQ(here(), "a = old copy\n") << tenth;
  }
  server.cutAfter = -1;
  EXPECT_EQ(download("a"), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(program.work().read("here/a"), content(100'000));
}

TEST_F(CopiaFtp, A_download_gets_through_an_older_copy_that_is_read_only) {
  server.root().write("there/a", "new");
  program.work().write("here/a", "old");
  fs::permissions(program.work().host("here/a"), fs::perms::owner_read);
  EXPECT_EQ(download("a"), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(here(), "a = new\n");
}

TEST_F(CopiaFtp, A_source_that_is_not_there_fails_without_a_word_to_the_server) {
  server.root().write("there/a", "old");
  EXPECT_EQ(upload("a"), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(there(), "a = old\n");
  EXPECT_EQ(server.commands("STOR"), std::vector<std::string>());
  EXPECT_EQ(program.logged("==> Error While Reading File : " + program.program("here/a")), 1);
}

TEST_F(CopiaFtp, A_download_that_finds_a_folder_in_its_place_fails_and_the_run_goes_on) {
  server.root().write("there/a", "1");
  server.root().write("there/b", "2");
  program.work().write("here/a/mine", "mine");
  test::addTransfer("/there/a", program.program("here/a"));
  EXPECT_EQ(download("b"), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(program.work().read("here/a/mine"), "mine");
  EXPECT_EQ(program.work().read("here/b"), "2");
  EXPECT_EQ(program.logged("==> Error While Writing File : " + program.program("here/a")), 1);
}

TEST_F(CopiaFtp, A_stop_ends_a_wait_for_a_silent_server) {
  server.root().write("there/a", "1");
  bool silent = false;
  server.answer([&silent](const std::string& line) {
    silent = silent || line.starts_with("RETR");
    return silent ? std::optional<std::string>(PlainFtpServer::Stall) : std::nullopt;
  });
  test::addTransfer("/there/a", program.program("here/a"));
  FrmFileTransfer transfer;
  program.screen.onEvents = [&] {
    if (!server.commands("RETR").empty()) transfer.Annulla(true);
  };
  transfer.Init(0, false, false);
  program.forgetHooks();
  EXPECT_EQ(transfer.EsitoCopia, EsitoTrasferimento::Annullato);
  EXPECT_EQ(here(), "");
  EXPECT_EQ(program.logged("Copy interrupt by user."), 1);
  EXPECT_EQ(program.logged("Tetativo N°"), 0);
}

TEST_F(CopiaFtp, A_stop_in_an_upload_removes_what_the_server_has_of_it) {
  program.work().write("here/a", content(400'000));
  server.root().write("there/other", "other");
  test::addTransfer(program.program("here/a"), "/there/a", 400'000);
  FrmFileTransfer transfer;
  program.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.byteCopiati > 0) transfer.Annulla(true);
  };
  transfer.Init(0, false, false);
  program.forgetHooks();
  EXPECT_EQ(transfer.EsitoCopia, EsitoTrasferimento::Annullato);
  EXPECT_EQ(there(), "other = other\n");
}

TEST_F(CopiaFtp, An_upload_costs_two_commands_and_the_look_at_its_folder) {
  for (int i = 0; i < 20; ++i) program.work().write("here/" + std::to_string(i), "text");
  for (int i = 1; i < 20; ++i)
    test::addTransfer(program.program("here/" + std::to_string(i)), "/there/" + std::to_string(i));
  EXPECT_EQ(upload("0"), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(server.commands("STOR").size() + server.commands("EPSV").size(), 40U);
  EXPECT_LE(server.commands().size(), 20U * 2 + 20U * 3 + 12U);
}

TEST_F(CopiaFtp, A_download_costs_two_commands_and_the_question_for_its_date) {
  for (int i = 0; i < 20; ++i) server.root().write("there/" + std::to_string(i), "text");
  for (int i = 1; i < 20; ++i)
    test::addTransfer("/there/" + std::to_string(i), program.program("here/" + std::to_string(i)));
  EXPECT_EQ(download("0"), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(server.commands("RETR").size() + server.commands("EPSV").size(), 40U);
  EXPECT_LE(server.commands().size(), 20U * 4 + 12U);
}

// --- from server to server

class FraServer : public CopiaFtp {
 protected:
  FraServer() {
    server.root().makeFolder("from");
    server.root().write("from/a", content(70'000));
  }
  EsitoTrasferimento runBetween(const std::string& first, const std::string& second) {
    test::Diagram diagram = test::Diagram::copying("/from", "/there");
    program.use(diagram);
    LeggiFileProfilo(FileProfilo);
    ArrayOggetti[1].BackFtpServerDescription = first;
    ArrayOggetti[2].BackFtpServerDescription = second;
    test::addTransfer("/from/a", "/there/a", 70'000);
    return run();
  }
};

TEST_F(FraServer, A_record_within_one_server_passes_through_a_file_of_this_machine_that_goes) {
  EXPECT_EQ(runBetween("Home", "Home"), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(server.root().read("there/a"), content(70'000));
  EXPECT_FALSE(fs::exists(program.host("Transfer.tmp")));
}

TEST_F(FraServer, A_record_between_two_servers_fails_with_a_clear_text) {
  PlainFtpServer other;
  program.define(1, "Away", other.name());
  EXPECT_EQ(runBetween("Home", "Away"), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(program.logged(Language == 0 ? "server FTP diversi" : "different FTP servers"), 1);
  EXPECT_EQ(there(), "");
  EXPECT_EQ(server.commands("RETR"), std::vector<std::string>());
  EXPECT_FALSE(fs::exists(program.host("Transfer.tmp")));
}

// --- uploads that break off

class Spezzati : public testing::TestWithParam<int> {};

TEST_P(Spezzati, What_an_upload_cut_at_any_tenth_has_left_on_the_server_is_removed) {
  FtpServer server({"cut STOR " + std::to_string(GetParam() * 30'000)});
  server.folder().makeFolder("there");
  FtpFolder program(server.name(), FtpServer::Password);
  program.work().write("here/a", content(300'000));
  test::addTransfer(program.program("here/a"), "/there/a", 300'000);
  FrmFileTransfer transfer;
  transfer.Init(0, false, false);
  EXPECT_EQ(transfer.EsitoCopia, EsitoTrasferimento::ErroreSuperato);
  EXPECT_EQ(test::describeTree(server.folder().host("there")), "") << program.log();
  EXPECT_EQ(program.logged("relativo alla routine 'InviaFileAlServer'"), 1);
}

INSTANTIATE_TEST_SUITE_P(Tenths, Spezzati, testing::Range(0, 10));

TEST(UploadCut, An_upload_cut_once_goes_through_at_the_second_attempt) {
  FtpServer server({"first 1 cut STOR 100000"});
  server.folder().makeFolder("there");
  FtpFolder program(server.name(), FtpServer::Password);
  program.retries(3);
  program.work().write("here/a", content(300'000));
  test::addTransfer(program.program("here/a"), "/there/a", 300'000);
  FrmFileTransfer transfer;
  transfer.Init(0, false, false);
  EXPECT_EQ(transfer.EsitoCopia, EsitoTrasferimento::Nessuno) << program.log();
  EXPECT_EQ(server.folder().read("there/a"), content(300'000));
  EXPECT_EQ(program.screen.lastTransfer.byteCopiati, 300'000);
}

TEST(UploadCut, With_the_session_gone_the_log_says_what_may_be_left) {
  FtpServer server({"die STOR 100000"});
  server.folder().makeFolder("there");
  FtpFolder program(server.name(), FtpServer::Password);
  program.setting("Errors_Try_Next", "1");
  for (const std::string name : {"a", "b"}) {
    program.work().write("here/" + name, content(300'000));
    test::addTransfer(program.program("here/" + name), "/there/" + name, 300'000);
  }
  FrmFileTransfer transfer;
  transfer.Init(0, false, false);
  EXPECT_EQ(transfer.EsitoCopia, EsitoTrasferimento::ErroreSuperato);
  EXPECT_EQ(transfer.NumeroFalliti, 2U);
  EXPECT_GE(program.logged("sul server: '/there/a'") + program.logged("on the server: '/there/a'"), 1);
  EXPECT_FALSE(server.folder().exists("there/b"));
}

}  // namespace
}  // namespace tandemize
