// Connecting, folders and single files.

#include <gtest/gtest.h>

#include "platform/ftpclient.h"

namespace tandemize::platform {
namespace {

using test::FtpServer;

TEST(FtpConnect, Logs_in_at_every_server) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    const FtpServer server(kind);
    FtpClient client(server);
    EXPECT_EQ(client.connect(), kNoError);
    EXPECT_TRUE(client.session.isOpen());
    client.session.close();
    EXPECT_FALSE(client.session.isOpen());
    EXPECT_EQ(server.connections(), 1);
  }
}

TEST(FtpConnect, Works_over_ipv6_with_both_modes) {
  if (TcpListener().listen("::1") != kNoError) return;  // a machine without it
  const FtpServer server({"ipv6"});
  for (const bool passive : {true, false}) {
    FtpClient client(server, passive);
    client.connected();
    EXPECT_EQ(client.upload("/a", "over six"), kNoError) << client.session.lastReply();
    std::string content;
    EXPECT_EQ(client.download("/a", content), kNoError);
    EXPECT_EQ(content, "over six");
  }
  EXPECT_EQ(server.count("EPRT"), 2);
}

struct Refusal {
  std::vector<std::string> faults;
  ErrorCode error;
};

TEST(FtpConnect, Tells_user_password_and_any_other_refusal_apart) {
  const std::vector<Refusal> known = {
      {{"refuse USER 530 Not you"}, kFtpWrongUser},
      {{"refuse PASS 530 Not that"}, kFtpWrongPassword},
      {{"refuse USER 500 What?"}, kFtpLoginFailed},
      {{"refuse USER 332 Account, please"}, kFtpLoginFailed},
      {{"refuse PASS 332 Account, please"}, kFtpLoginFailed},
      {{"refuse PASS 550 Locked"}, kFtpLoginFailed},
      {{"refuse USER 421 Too many"}, kFtpConnectionLost},
      {{"refuse PASS 421 Too many"}, kFtpConnectionLost},
      {{"hang-up USER"}, kFtpConnectionLost},
  };
  FtpServer server;
  for (const Refusal& refusal : known) {
    server.become(refusal.faults);
    FtpClient client(server);
    EXPECT_EQ(client.connect(), refusal.error) << refusal.faults[0];
    EXPECT_FALSE(client.session.isOpen());
  }
}

TEST(FtpConnect, A_wrong_password_is_told_without_naming_it) {
  const FtpServer server;
  FtpClient client(server);
  client.login.password = "sesam-7";
  EXPECT_EQ(client.connect(), kFtpWrongPassword);
  EXPECT_EQ(client.session.lastReply().substr(0, 3), "530");

  const FtpServer chatty(FtpServer::Kind::Script, {"on PASS '530 Not sesam-7, go away\\r\\n'"});
  FtpClient second(chatty);
  second.login.password = "sesam-7";
  EXPECT_EQ(second.connect(), kFtpWrongPassword);
  EXPECT_EQ(second.session.lastReply(), "530 Not ***, go away");
  second.login.password = "go";
  EXPECT_EQ(second.connect(), kFtpWrongPassword);
  EXPECT_EQ(second.session.lastReply(), "530");
}

TEST(FtpConnect, A_name_or_password_that_would_be_a_second_command_is_not_sent) {
  const FtpServer server;
  FtpClient client(server);
  client.login.user = "anna\r\nDELE x";
  EXPECT_EQ(client.connect(), kFtpWrongUser);
  client.login.user = FtpServer::User;
  client.login.password = std::string("x\0y", 3);
  EXPECT_EQ(client.connect(), kFtpWrongPassword);
  EXPECT_EQ(server.connections(), 0);
}

TEST(FtpConnect, Tells_a_closed_port_a_silent_server_and_an_unknown_name) {
  FtpClient closed([]() -> FtpServer& {
    static FtpServer server;
    return server;
  }());
  TcpListener listener;
  ASSERT_EQ(listener.listen("127.0.0.1"), kNoError);
  closed.login.port = listener.address().port;
  FtpLimits limits = shortLimits();
  limits.silence = 100;
  closed.session.setLimits(limits);
  EXPECT_EQ(closed.connect(), kFtpTimedOut);
  listener.close();
  EXPECT_EQ(closed.connect(), kFtpCannotConnect);
  closed.login.host = "no-such-host.invalid";
  EXPECT_EQ(closed.connect(), kFtpNameNotResolved);
}

TEST(FtpConnect, A_greeting_that_takes_its_time_is_waited_for) {
  const FtpServer server(FtpServer::Kind::Script,
                         {"greeting '120 Soon\\r\\n220-Hello\\r\\n 220 not yet\\r\\n220 now\\r\\n'"});
  FtpClient client(server);
  EXPECT_EQ(client.connect(), kNoError);
}

TEST(FtpConnect, A_server_that_takes_one_command_at_a_time_is_asked_one_by_one) {
  const FtpServer server({"one-at-a-time"});
  server.write("a", "abc");
  FtpClient client(server);
  FtpLimits limits = shortLimits();
  limits.silence = 500;
  client.session.setLimits(limits);
  FtpSession& session = client.connected();
  EXPECT_EQ(server.connections(), 2);
  bool exists = false;
  EXPECT_EQ(session.folderExists("/", exists), kNoError);
  EXPECT_TRUE(exists);
  for (int i = 0; i < 2; ++i) {
    std::string content;
    EXPECT_EQ(client.download("/a", content), kNoError);
    EXPECT_EQ(content, "abc");
  }
}

TEST(FtpConnect, Connecting_anew_ends_the_session_before) {
  const FtpServer server;
  FtpClient client(server);
  client.connected();
  FtpData data;
  ASSERT_EQ(client.session.openWrite("/a", data), kNoError);
  client.connected();
  EXPECT_EQ(data.write("x", 1), kFtpConnectionLost);
  EXPECT_EQ(data.close(), kFtpConnectionLost);
  EXPECT_EQ(client.upload("/b", "x"), kNoError);
}

TEST(FtpSession, Without_a_connection_every_call_says_so) {
  FtpSession session;
  std::string path;
  FtpData data;
  FtpSearch search;
  FtpEntry entry;
  EXPECT_EQ(session.currentFolder(path), kFtpConnectionLost);
  EXPECT_EQ(session.deleteFile("/a"), kFtpConnectionLost);
  EXPECT_EQ(session.removeFolder("/a"), kFtpConnectionLost);
  EXPECT_EQ(session.rename("/a", "/b"), kFtpConnectionLost);
  EXPECT_EQ(session.command("NOOP"), kFtpConnectionLost);
  EXPECT_EQ(session.openRead("/a", data), kFtpConnectionLost);
  EXPECT_EQ(session.openSearch(search, entry), kFtpConnectionLost);
  EXPECT_EQ(session.lastReply(), "");
}

TEST(FtpFolders, Are_made_found_left_and_removed) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    const FtpServer server(kind);
    FtpClient client(server);
    FtpSession& session = client.connected();
    const std::string folder = server.path("new folder");
    bool exists = true;
    EXPECT_EQ(session.folderExists(folder, exists), kNoError);
    EXPECT_FALSE(exists);
    EXPECT_EQ(session.createFolder(folder + "/"), kNoError) << session.lastReply();
    EXPECT_EQ(session.createFolder(folder + "/inner"), kNoError);
    EXPECT_EQ(session.folderExists(folder + "/", exists), kNoError);
    EXPECT_TRUE(exists);
    EXPECT_EQ(session.setCurrentFolder(folder), kNoError);
    std::string current;
    EXPECT_EQ(session.currentFolder(current), kNoError);
    EXPECT_EQ(current, folder);
    EXPECT_EQ(session.setCurrentFolder("inner"), kNoError);
    EXPECT_EQ(session.currentFolder(current), kNoError);
    EXPECT_EQ(current, folder + "/inner");
    EXPECT_EQ(session.setCurrentFolder(server.path()), kNoError);
    EXPECT_EQ(session.removeFolder(folder), kFtpRefused);  // not empty
    EXPECT_EQ(session.removeFolder(folder + "/inner/"), kNoError);
    EXPECT_EQ(session.removeFolder(folder), kNoError);
    EXPECT_FALSE(server.folder().exists("new folder"));
  }
}

TEST(FtpFolders, Looking_whether_one_exists_leaves_the_current_one) {
  const FtpServer server;
  server.folder().makeFolder("here");
  server.folder().makeFolder("there");
  FtpClient client(server);
  FtpSession& session = client.connected();
  ASSERT_EQ(session.setCurrentFolder("/here"), kNoError);
  for (const std::string folder : {"/there", "/nowhere", "/here"}) {
    bool exists = false;
    EXPECT_EQ(session.folderExists(folder, exists), kNoError);
    EXPECT_EQ(exists, folder != "/nowhere");
    EXPECT_EQ(client.upload("in " + folder.substr(1), "x"), kNoError);
    EXPECT_TRUE(server.folder().exists("here/in " + folder.substr(1)));
  }
}

TEST(FtpFolders, One_whose_way_back_is_gone_counts_as_missing) {
  FtpServer server;
  server.folder().makeFolder("here");
  server.folder().makeFolder("there");
  FtpClient client(server);
  FtpSession& session = client.connected();
  ASSERT_EQ(session.setCurrentFolder("/here"), kNoError);
  server.become({"refuse-name CWD here 550 Gone"});
  bool exists = true;
  EXPECT_EQ(session.folderExists("/there", exists), kNoError);
  EXPECT_FALSE(exists);
  std::string current;
  EXPECT_EQ(session.currentFolder(current), kNoError);
  EXPECT_EQ(current, "/there");
}

TEST(FtpFolders, A_removed_current_folder_is_asked_for_anew) {
  const FtpServer server;
  FtpClient client(server);
  FtpSession& session = client.connected();
  ASSERT_EQ(session.createFolder("/a"), kNoError);
  ASSERT_EQ(session.setCurrentFolder("/a"), kNoError);
  const int before = server.count("PWD");
  ASSERT_EQ(session.removeFolder("/a"), kNoError);
  std::string current;
  EXPECT_EQ(session.currentFolder(current), kNoError);
  EXPECT_EQ(server.count("PWD"), before + 1);
}

TEST(FtpFolders, Quotes_in_their_names_come_through) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    const FtpServer server(kind);
    FtpClient client(server);
    FtpSession& session = client.connected();
    ASSERT_EQ(session.createFolder(server.path("say \"hi\"")), kNoError);
    ASSERT_EQ(session.setCurrentFolder(server.path()), kNoError);
    ASSERT_EQ(session.setCurrentFolder("say \"hi\""), kNoError);
    std::string current;
    EXPECT_EQ(session.currentFolder(current), kNoError);
    EXPECT_EQ(current, server.path("say \"hi\""));
  }
}

const std::vector<std::string>& oddNames() {
  static const std::vector<std::string> names = {
      "with blank", " leading",       "trailing ", "  both  ", "quote\"d\"", "'single'",  "àèìòù €",
      "日本語",     "semi;colon=",    "a -> b",    "%41",      "~home",      "star*?",    "[brackets]",
      "(12 bytes)", "Jan 31  2023 x", ".hidden",   "..dots",   "#hash",      "UPPER.Case"};
  return names;
}

TEST(FtpNames, Odd_ones_go_up_are_listed_come_down_and_are_deleted) {
  std::vector<std::vector<std::string>> variants{{}, {"mlsd off"}};
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    for (const std::vector<std::string>& faults : variants) {
      const FtpServer server(kind, faults);
      FtpClient client(server);
      FtpSession& session = client.connected();
      for (const std::string& name : oddNames()) {
        ASSERT_EQ(client.upload(server.path(name), name), kNoError) << name << session.lastReply();
        EXPECT_EQ(server.folder().read(name), name);
      }
      std::vector<std::string> names = client.names(server.path());
      std::vector<std::string> expected = oddNames();
      std::sort(names.begin(), names.end());
      std::sort(expected.begin(), expected.end());
      EXPECT_EQ(names, expected);
      for (const std::string& name : names) {
        std::string content;
        EXPECT_EQ(client.download(server.path(name), content), kNoError) << name << session.lastReply();
        EXPECT_EQ(content, name);
        EXPECT_EQ(session.deleteFile(server.path(name)), kNoError) << name;
      }
      EXPECT_TRUE(client.names(server.path()).empty());
    }
  }
}

TEST(FtpNames, Line_ends_and_nul_never_reach_the_server) {
  FtpServer server;
  server.write("victim", "x");
  FtpClient client(server);
  FtpSession& session = client.connected();
  server.forgetCommands();
  for (const std::string& tail :
       {std::string("\r\nDELE victim"), std::string("\n"), std::string("\r"), std::string("\0", 1)}) {
    const std::string name = "/a" + tail;
    FtpData data;
    FtpSearch search;
    FtpEntry entry;
    bool exists = true;
    EXPECT_EQ(session.setCurrentFolder(name), kInvalidName);
    EXPECT_EQ(session.folderExists(name, exists), kInvalidName);
    EXPECT_FALSE(exists);
    EXPECT_EQ(session.createFolder(name), kInvalidName);
    EXPECT_EQ(session.removeFolder(name), kInvalidName);
    EXPECT_EQ(session.deleteFile(name), kInvalidName);
    EXPECT_EQ(session.rename(name, "/b"), kInvalidName);
    EXPECT_EQ(session.rename("/victim", name), kInvalidName);
    EXPECT_EQ(session.fileStatus(name, entry), kInvalidName);
    EXPECT_EQ(session.command("NOOP" + tail), kInvalidName);
    EXPECT_EQ(session.openRead(name, data, {true, true}), kInvalidName);
    EXPECT_EQ(session.openWrite(name, data), kInvalidName);
    EXPECT_EQ(session.openCommand("RETR " + name, FtpType::Binary, data), kInvalidName);
    EXPECT_EQ(session.openSearch(name, search, entry), kInvalidName);
  }
  EXPECT_EQ(server.commands(), std::vector<std::string>());
  EXPECT_EQ(client.upload("/b", "the session lives"), kNoError);
  EXPECT_TRUE(server.folder().exists("victim"));
}

TEST(FtpNames, The_byte_255_is_doubled) {
  const FtpServer server(FtpServer::Kind::Script);
  FtpClient client(server);
  FtpSession& session = client.connected();
  EXPECT_EQ(session.deleteFile("/a\xFF\x62"), kNoError);
  EXPECT_EQ(server.commands().back(), "DELE /a\xFF\xFF\x62");
}

TEST(FtpFiles, Are_renamed_and_deleted) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    const FtpServer server(kind);
    server.write("old", "x");
    FtpClient client(server);
    FtpSession& session = client.connected();
    EXPECT_EQ(session.rename(server.path("old"), server.path("new")), kNoError);
    EXPECT_EQ(server.folder().read("new"), "x");
    EXPECT_EQ(session.rename(server.path("old"), server.path("x")), kFtpRefused);
    EXPECT_EQ(session.deleteFile(server.path("new")), kNoError);
    EXPECT_EQ(session.deleteFile(server.path("new")), kFtpRefused);
    EXPECT_EQ(session.lastReply().substr(0, 3), "550");
    EXPECT_TRUE(session.isOpen());
  }
}

TEST(FtpFiles, Tell_size_and_date_by_whatever_the_server_offers) {
  std::vector<std::vector<std::string>> variants{{}, {"mlsd off"}, {"feat off", "refuse MLST 500 What?"}};
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    for (const std::vector<std::string>& faults : variants) {
      const FtpServer server(kind, faults);
      server.write("a", "12345");
      server.setTime("a", 1706704215);
      FtpClient client(server);
      FtpSession& session = client.connected();
      FtpEntry entry;
      ASSERT_EQ(session.fileStatus(server.path("a"), entry), kNoError);
      EXPECT_TRUE(entry.hasSize);
      EXPECT_EQ(entry.size, 5U);
      EXPECT_EQ(entry.precision, TimePrecision::Second);
      EXPECT_EQ(entry.lastWrite, (FileTime{1706704215, 0}));
      EXPECT_EQ(session.fileStatus(server.path("nothing"), entry), kFtpRefused);
    }
  }
}

TEST(FtpFiles, A_server_that_knows_neither_size_nor_date_says_nothing_of_them) {
  const FtpServer server({"mlsd off", "refuse SIZE 500 What?", "refuse MDTM 502 What?"});
  server.write("a", "12345");
  FtpClient client(server);
  FtpSession& session = client.connected();
  for (int i = 0; i < 2; ++i) {
    FtpEntry entry;
    EXPECT_EQ(session.fileStatus("/a", entry), kNoError);
    EXPECT_FALSE(entry.hasSize);
    EXPECT_EQ(entry.precision, TimePrecision::None);
  }
  EXPECT_EQ(server.count("SIZE") + server.count("MDTM"), 2);  // asked once, then never again
}

TEST(FtpCommand, A_refusal_has_the_servers_words_and_the_session_lives) {
  const FtpServer server;
  FtpClient client(server);
  FtpSession& session = client.connected();
  EXPECT_EQ(session.command("SITE NONSENSE"), kFtpRefused);
  EXPECT_EQ(session.lastReply().substr(0, 3), "500");
  EXPECT_EQ(session.command("NOOP"), kNoError);
}

TEST(FtpSession, A_connection_lost_between_two_calls_is_noticed_and_stays_lost) {
  for (const std::string fault : {"hang-up DELE", "refuse DELE 421 Good night"}) {
    FtpServer server;
    server.write("a", "x");
    FtpClient client(server);
    FtpSession& session = client.connected();
    server.become({fault});
    EXPECT_EQ(session.deleteFile("/a"), kFtpConnectionLost) << fault;
    server.become({});
    EXPECT_EQ(session.deleteFile("/a"), kFtpConnectionLost);
    EXPECT_FALSE(session.isOpen());
    EXPECT_EQ(client.connect(), kNoError);
    EXPECT_EQ(session.deleteFile("/a"), kNoError);
  }
}

TEST(FtpSession, Drops_after_any_number_of_commands_are_told_and_end_nothing_else) {
  for (int commands = 1; commands <= 14; ++commands) {
    const FtpServer server({"hang-up-after " + std::to_string(commands)});
    server.write("a", "x");
    FtpClient client(server);
    ErrorCode error = client.connect();
    std::string content;
    for (int i = 0; i < 8 && error == kNoError; ++i) error = client.download("/a", content);
    EXPECT_TRUE(error == kFtpConnectionLost || error == kFtpConnectionReset) << commands << ": " << error;
    EXPECT_EQ(client.session.deleteFile("/a"), kFtpConnectionLost);
  }
}

TEST(FtpSession, A_stop_ends_the_wait_for_a_silent_server) {
  FtpServer server;
  server.write("a", "x");
  FtpClient client(server);
  FtpSession& session = client.connected();
  server.become({"silent DELE"});
  int looks = 0;
  session.setKeepGoing([&] { return ++looks < 5; });
  EXPECT_EQ(session.deleteFile("/a"), kFtpStopped);
  EXPECT_EQ(looks, 5);
}

TEST(FtpSession, A_reply_that_comes_late_is_not_taken_for_the_next_commands) {
  // The reply to the first DELE comes only after it has been given up.
  const FtpServer server(FtpServer::Kind::Script,
                         {"on DELE ''", "on DELE '550 of the first\\r\\n250 of the second\\r\\n'"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  FtpLimits limits = shortLimits();
  limits.silence = 50;
  session.setLimits(limits);
  EXPECT_EQ(session.deleteFile("/a"), kFtpTimedOut);
  limits.silence = 5'000;
  session.setLimits(limits);
  std::string current;
  EXPECT_TRUE(session.isOpen());
  int looks = 0;
  session.setKeepGoing([&] { return ++looks < 3; });
  EXPECT_EQ(session.deleteFile("/b"), kFtpStopped);  // waits for what is owed, sends nothing
  EXPECT_EQ(server.count("DELE"), 1);
}

TEST(FtpSession, Replies_that_nobody_asked_for_are_dropped) {
  const FtpServer server(FtpServer::Kind::Script,
                         {"on DELE '250 done\\r\\n550 out of step\\r\\n'", "on DELE '250 done\\r\\n'"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  EXPECT_EQ(session.deleteFile("/a"), kNoError);
  EXPECT_EQ(session.deleteFile("/b"), kNoError);
  EXPECT_EQ(session.lastReply(), "250 done");
}

TEST(FtpSession, Events_may_close_it_in_the_middle_of_a_call) {
  FtpServer server;
  server.write("a", "x");
  FtpClient client(server);
  FtpSession& session = client.connected();
  server.become({"silent DELE"});
  ErrorCode inside = kNoError;
  session.setKeepGoing([&] {
    inside = session.deleteFile("/b");
    session.close();
    return true;
  });
  EXPECT_EQ(session.deleteFile("/a"), kFtpStopped);
  EXPECT_EQ(inside, kFtpBusy);
  EXPECT_FALSE(session.isOpen());
  EXPECT_EQ(session.deleteFile("/a"), kFtpConnectionLost);
}

}  // namespace
}  // namespace tandemize::platform
