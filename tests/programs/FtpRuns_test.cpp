// Both jobs from end to end with real servers: the program as its user starts it.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <tuple>

#include "fixtures/FtpServer.h"
#include "fixtures/LogLines.h"
#include "fixtures/RunProgram.h"
#include "fixtures/SyncProfile.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ConsoleFolder;
using test::describeTree;
using test::Diagram;
using test::FtpServer;
using test::ProgramResult;
using test::RunProgram;
using test::SyncProfile;

class FtpConsole : public ConsoleFolder {
 public:
  explicit FtpConsole(const FtpServer& server) {
    define(0, "Home", server, FtpServer::Password);
    work().makeFolder("here");
  }
  void define(int number, const std::string& description, const FtpServer& server,
              const std::string& password) const {
    const std::string n = std::to_string(number);
    setting("Ftp_Description" + n, description);
    setting("Ftp_Server_Name" + n, server.name());
    setting("Ftp_User" + n, server.user());
    setting("Ftp_Password" + n, password);
    setting("Ftp_PassiveMode" + n, "1");
  }
  // A path that begins with "/" lies on the server of that description.
  void copying(const std::string& source, const std::string& destination,
               const std::string& sourceServer = "Home",
               const std::string& destinationServer = "Home") const {
    Diagram plan;
    plan.source("Source", source);
    onServer(plan, source, sourceServer);
    plan.destination("Destination", destination, {"Source"});
    onServer(plan, destination, destinationServer);
    diagram(plan);
  }
  ProgramResult start(const std::vector<std::string>& command) const {
    RunProgram program(words(command));
    return program.set("TANDEMIZE_NETWORK", "up").run();
  }
  [[nodiscard]] int logged(const std::string& text) const {
    return static_cast<int>(test::countLinesWith(logLines(), text));
  }

 private:
  static void onServer(Diagram& plan, const std::string& path, const std::string& description) {
    if (!path.starts_with('/')) return;
    plan.last().BackFigura = 2;
    plan.last().BackFtpServerDescription = description;
  }
};

// The same runs against each kind of server that is installed.
class Servers : public testing::TestWithParam<FtpServer::Kind> {
 protected:
  Servers() {
    console.work().write("here/letters/anna.txt", "Dear Anna");
    console.work().write("here/2024 – Città/piazza.jpg", std::string(300'000, 'p'));
    console.work().write("here/ leading", "blank in front");
    console.work().write("here/it's 100%", "odd");
    console.work().write("here/empty", "");
    server.folder().makeFolder("there");
  }
  std::string here() { return describeTree(console.work().host("here")); }
  std::string there() { return describeTree(server.folder().host("there")); }
  FtpServer server{GetParam()};
  FtpConsole console{server};
};

TEST_P(Servers, A_backup_to_the_server_and_one_from_it_bring_everything_back) {
  console.copying(console.program("here"), server.path("there"));
  const ProgramResult up = console.start({"backup"});
  EXPECT_EQ(up.status, 0) << up.err << console.log();
  EXPECT_EQ(there(), here());
  console.work().makeFolder("back");
  console.copying(server.path("there"), console.program("back"));
  const ProgramResult down = console.start({"backup"});
  EXPECT_EQ(down.status, 0) << down.err << console.log();
  EXPECT_EQ(describeTree(console.work().host("back")), here());
}

TEST_P(Servers, What_a_server_dates_comes_back_with_that_date) {
  server.write("there/a", "text");
  server.setTime("there/a", 1'600'000'020);
  console.copying(server.path("there"), console.program("here"));
  EXPECT_EQ(console.start({"backup"}).status, 0);
  const auto modified = fs::last_write_time(console.work().host("here/a"));
  const auto seconds =
      std::chrono::time_point_cast<std::chrono::seconds>(std::chrono::file_clock::to_sys(modified));
  EXPECT_EQ(seconds.time_since_epoch().count(), 1'600'000'020);
}

TEST_P(Servers, A_backup_from_server_to_server_goes_through_this_machine) {
  server.write("from/deep/a", std::string(200'000, 'x'));
  server.write("from/b", "b");
  console.copying(server.path("from"), server.path("there"));
  const ProgramResult result = console.start({"backup"});
  EXPECT_EQ(result.status, 0) << result.err << console.log();
  EXPECT_EQ(there(), describeTree(server.folder().host("from")));
  EXPECT_FALSE(console.home().exists("Transfer.tmp"));
}

TEST_P(Servers, A_preview_of_a_backup_transfers_nothing) {
  server.write("there/a", "text");
  console.copying(server.path("there"), console.program("back"));
  console.work().makeFolder("back");
  const ProgramResult result = console.start({"backup", "--preview"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, server.path("there/a") + "\t" + console.program("back") + "\\a\n");
  EXPECT_EQ(describeTree(console.work().host("back")), "");
}

TEST_P(Servers, A_full_and_an_incremental_backup_from_the_server_copy_what_is_new) {
  server.write("there/a", "1");
  server.setTime("there/a", 1'600'000'020);
  console.work().makeFolder("back");
  console.copying(server.path("there"), console.program("back"));
  EXPECT_EQ(console.start({"backup", "--type", "full"}).status, 0);
  server.write("there/b", "2");
  const ProgramResult preview = console.start({"backup", "--type", "incremental", "--preview"});
  EXPECT_EQ(preview.out, server.path("there/b") + "\t" + console.program("back") + "\\b\n");
}

TEST_P(Servers, The_accurate_test_reads_the_files_of_the_server) {
  server.write("there/a", "text");
  console.copying(server.path("there"), console.program("here"));
  const ProgramResult result = console.start({"backup", "--mode", "1"});
  EXPECT_EQ(result.status, 0) << result.err << console.log();
  EXPECT_EQ(console.logged("'" + server.path("there/a") + "' ... OK."), 1) << console.log();
}

TEST_P(Servers, A_synchronisation_fills_each_side_with_what_it_lacks) {
  SyncProfile profile;
  server.write("there/only there.txt", "there");
  profile.paths = {console.program("here") + "\\", server.path("there") + "/"};
  profile.servers = {"", "Home"};
  profile.write(console.home().host("Config.cfg"));
  const ProgramResult result = console.start({"sync"});
  EXPECT_EQ(result.status, 0) << result.err << console.log();
  EXPECT_EQ(there(), here());
  EXPECT_EQ(console.work().read("here/only there.txt"), "there");
}

INSTANTIATE_TEST_SUITE_P(Installed, Servers, testing::ValuesIn(FtpServer::installed()));

// --- single files

TEST(FtpRuns, Single_files_of_the_server_land_directly_under_the_destination) {
  const FtpServer server;
  server.write("in/deep/a", "the right one");
  server.write("in/deep/0", "another");
  const FtpConsole console(server);
  Diagram plan;
  plan.files("Source", {"/in/deep/a"});
  plan.last().BackFtpServerDescription = "Home";
  plan.destination("Destination", console.program("here"), {"Source"});
  console.diagram(plan);
  const ProgramResult result = console.start({"backup"});
  EXPECT_EQ(result.status, 0) << result.err << console.log();
  FtpConsole& folder = const_cast<FtpConsole&>(console);
  EXPECT_EQ(describeTree(folder.work().host("here")), "a = the right one\n");
}

TEST(FtpRuns, A_single_file_that_the_server_has_not_stops_the_run) {
  const FtpServer server;
  server.write("in/other", "other");
  const FtpConsole console(server);
  Diagram plan;
  plan.files("Source", {"/in/a"});
  plan.last().BackFtpServerDescription = "Home";
  plan.destination("Destination", console.program("here"), {"Source"});
  console.diagram(plan);
  EXPECT_EQ(console.start({"backup"}).status, 4);
  EXPECT_EQ(console.logged("'/in/a' ... " + console.message(137)), 1) << console.log();
}

// --- what goes wrong

TEST(FtpRuns, A_refused_login_refuses_the_run_and_says_why) {
  FtpServer server;
  server.folder().makeFolder("there");
  FtpConsole console(server);
  console.define(0, "Home", server, "wrong");
  console.work().write("here/a", "text");
  console.copying(console.program("here"), "/there");
  const ProgramResult result = console.start({"backup"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(console.message(347)), std::string::npos) << result.err;
  EXPECT_EQ(server.count("STOR"), 0);
}

TEST(FtpRuns, A_server_that_is_not_there_refuses_the_run) {
  auto gone = std::make_unique<FtpServer>();
  FtpConsole console(*gone);
  gone.reset();
  console.work().write("here/a", "text");
  console.copying(console.program("here"), "/there");
  EXPECT_EQ(console.start({"backup"}).status, 4);
}

TEST(FtpRuns, A_name_that_the_server_refuses_is_told_and_the_others_arrive) {
  FtpServer server({"refuse-name STOR b 553 Not that one"});
  server.folder().makeFolder("there");
  FtpConsole console(server);
  console.setting("Errors_Try_Next", "1");
  for (const char* name : {"a", "b", "c"}) console.work().write("here/" + std::string(name), name);
  console.copying(console.program("here"), "/there");
  const ProgramResult result = console.start({"backup"});
  EXPECT_EQ(result.status, 2) << result.err;
  EXPECT_EQ(describeTree(server.folder().host("there")), "a = a\nc = c\n");
  EXPECT_EQ(console.logged("553 Not that one"), 1) << console.log();
}

TEST(FtpRuns, Without_try_next_the_run_stops_at_a_refused_name) {
  FtpServer server({"refuse STOR 553 Not that one"});
  server.folder().makeFolder("there");
  FtpConsole console(server);
  console.setting("Errors_Try_Next", "0");
  for (const char* name : {"a", "b", "c"}) console.work().write("here/" + std::string(name), name);
  console.copying(console.program("here"), "/there");
  EXPECT_EQ(console.start({"backup"}).status, 2);
  EXPECT_EQ(server.count("STOR"), 1);
}

TEST(FtpRuns, Retries_by_the_settings_get_a_file_through) {
  FtpServer server({"first 2 refuse STOR 450 Busy"});
  server.folder().makeFolder("there");
  FtpConsole console(server);
  console.setting("Errors_Correction", "1");
  console.setting("Errors_Repeat", "3");
  console.setting("Errors_Seconds", "0");
  console.work().write("here/a", "text");
  console.copying(console.program("here"), "/there");
  EXPECT_EQ(console.start({"backup"}).status, 0);
  EXPECT_EQ(server.count("STOR"), 3);
  EXPECT_EQ(describeTree(server.folder().host("there")), "a = text\n");
}

TEST(FtpRuns, A_connection_lost_in_the_scan_is_told) {
  FtpServer server({"hang-up MLSD"});
  server.write("there/a", "text");
  FtpConsole console(server);
  console.setting("Errors_Alert_Mode", "0");
  console.copying("/there", console.program("here"));
  const ProgramResult result = console.start({"backup"});
  EXPECT_NE(result.status, 0);
  EXPECT_NE(result.err.find(console.message(274)), std::string::npos) << result.err;
  EXPECT_EQ(describeTree(console.work().host("here")), "");
}

TEST(FtpRuns, A_stop_while_the_server_is_silent_ends_the_run) {
  FtpServer server({"silent RETR"});
  server.write("there/a", "text");
  FtpConsole console(server);
  console.copying("/there", console.program("here"));
  RunProgram program(console.words({"backup"}));
  program.set("TANDEMIZE_NETWORK", "up").start();
  ASSERT_TRUE(program.reaches([&] { return server.count("RETR") > 0; }));
  program.signal(SIGINT);
  EXPECT_EQ(program.wait().status, 1);
  EXPECT_EQ(describeTree(console.work().host("here")), "");
}

TEST(FtpRuns, The_password_stands_in_no_log_and_no_output) {
  FtpServer server({"refuse STOR 553 No"});
  server.folder().makeFolder("there");
  FtpConsole console(server);
  console.work().write("here/a", "text");
  console.copying(console.program("here"), "/there");
  const ProgramResult result = console.start({"backup"});
  for (const std::string& text : {result.out, result.err, console.log()})
    EXPECT_EQ(text.find(FtpServer::Password), std::string::npos) << text;
}

TEST(FtpRuns, Names_of_a_hostile_listing_write_nothing_outside_the_destination) {
  FtpServer server({R"(besides line type=file;size=4;modify=20240131123015; ../evil)",
                    R"(besides line type=file;size=4;modify=20240131123015; /etc/evil)",
                    R"(besides line type=file;size=4;modify=20240131123015; ..\\evil)"});
  server.write("there/a", "text");
  server.write("evil", "evil");
  FtpConsole console(server);
  console.copying("/there", console.program("here"));
  static_cast<void>(console.start({"backup"}));
  EXPECT_EQ(describeTree(console.work().path()), "here = <folder>\nhere/a = text\n");
}

}  // namespace
}  // namespace tandemize
