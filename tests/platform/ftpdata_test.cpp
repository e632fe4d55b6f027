// Files on their way: whole, given up, broken off, refused.

#include <gtest/gtest.h>

#include "platform/ftpclient.h"

namespace tandemize::platform {
namespace {

using test::FtpServer;

TEST(FtpData, Files_of_every_size_go_up_and_come_down_in_both_modes) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    for (const bool passive : {true, false}) {
      const FtpServer server(kind);
      FtpClient client(server, passive);
      client.connected();
      for (const std::size_t size : {0U, 1U, 1023U, 1024U, 1025U, 65536U, 3'000'000U}) {
        const std::string content = pattern(size);
        ASSERT_EQ(client.upload(server.path("a"), content), kNoError) << client.session.lastReply();
        EXPECT_EQ(server.folder().read("a"), content) << size;
        std::string back;
        ASSERT_EQ(client.download(server.path("a"), back, 1024), kNoError) << client.session.lastReply();
        EXPECT_EQ(back, content) << size;
      }
    }
  }
}

TEST(FtpData, A_read_fills_its_block_and_only_the_last_is_short) {
  const FtpServer server;
  server.write("a", pattern(100'000));
  FtpClient client(server);
  FtpData data;
  ASSERT_EQ(client.connected().openRead("/a", data), kNoError);
  std::string block(30'000, '\0');
  std::vector<std::size_t> sizes;
  for (std::size_t got = block.size(); got == block.size();) {
    ASSERT_EQ(data.read(block.data(), block.size(), got), kNoError);
    sizes.push_back(got);
  }
  EXPECT_EQ(sizes, (std::vector<std::size_t>{30'000, 30'000, 30'000, 10'000}));
  std::size_t got = 1;
  EXPECT_EQ(data.read(block.data(), block.size(), got), kNoError);
  EXPECT_EQ(got, 0U);
  EXPECT_EQ(data.close(), kNoError);
}

TEST(FtpData, An_older_file_is_replaced_even_by_a_shorter_one) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    const FtpServer server(kind);
    server.write("a", "a longer content");
    FtpClient client(server);
    client.connected();
    EXPECT_EQ(client.upload(server.path("a"), "short"), kNoError);
    EXPECT_EQ(server.folder().read("a"), "short");
  }
}

TEST(FtpData, Opening_what_is_not_there_is_refused_with_words_and_the_session_lives) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    for (const bool passive : {true, false}) {
      const FtpServer server(kind);
      FtpClient client(server, passive);
      FtpSession& session = client.connected();
      for (int i = 0; i < 3; ++i) {
        FtpData data;
        EXPECT_EQ(session.openRead(server.path("nothing"), data), kFtpRefused);
        EXPECT_FALSE(data.isOpen());
        EXPECT_EQ(session.lastReply().substr(0, 3), "550");
        EXPECT_EQ(session.openWrite(server.path("no/such/folder"), data), kFtpRefused);
        EXPECT_EQ(client.upload(server.path("a"), "x"), kNoError);
      }
    }
  }
}

TEST(FtpData, Chosen_names_are_refused_and_the_others_go_through) {
  const FtpServer server({"refuse-name STOR b 552 Quota", "refuse-name RETR c 450 Busy"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  EXPECT_EQ(client.upload("/a", "x"), kNoError);
  EXPECT_EQ(client.upload("/b", "x"), kFtpRefused);
  EXPECT_EQ(session.lastReply(), "552 Quota");
  EXPECT_EQ(client.upload("/c", "x"), kNoError);
  std::string content;
  EXPECT_EQ(client.download("/c", content), kFtpRefused);
  EXPECT_EQ(session.lastReply(), "450 Busy");
  EXPECT_EQ(client.download("/a", content), kNoError);
}

TEST(FtpData, A_download_given_up_anywhere_leaves_the_session_in_step) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    for (const bool passive : {true, false}) {
      const FtpServer server(kind);
      server.write("big", pattern(8'000'000));
      server.write("small", "abc");
      FtpClient client(server, passive);
      FtpSession& session = client.connected();
      std::string block(1000, '\0');
      for (const int blocks : {0, 1, 7}) {
        FtpData data;
        ASSERT_EQ(session.openRead(server.path("big"), data), kNoError);
        std::size_t got = 0;
        for (int i = 0; i < blocks; ++i) ASSERT_EQ(data.read(block.data(), block.size(), got), kNoError);
        EXPECT_EQ(data.close(), kNoError);
        std::string content;
        EXPECT_EQ(client.download(server.path("small"), content), kNoError) << session.lastReply();
        EXPECT_EQ(content, "abc");
      }
      EXPECT_EQ(server.connections(), 1);
    }
  }
}

TEST(FtpData, A_server_that_does_not_notice_the_end_is_told_by_abor) {
  FtpServer server({"freeze RETR 100000"});
  server.write("big", pattern(8'000'000));
  server.write("small", "abc");
  FtpClient client(server);
  FtpSession& session = client.connected();
  FtpData data;
  ASSERT_EQ(session.openRead("/big", data), kNoError);
  std::string block(100'000, '\0');
  std::size_t got = 0;
  ASSERT_EQ(data.read(block.data(), block.size(), got), kNoError);
  EXPECT_EQ(data.close(), kNoError);
  server.become({});
  std::string content;
  EXPECT_EQ(client.download("/small", content), kNoError) << session.lastReply();
  EXPECT_EQ(content, "abc");
  EXPECT_EQ(server.count("ABOR"), 1);
  EXPECT_EQ(server.connections(), 1);
}

TEST(FtpData, An_upload_given_up_leaves_a_part_that_can_be_deleted) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    const FtpServer server(kind);
    FtpClient client(server);
    FtpSession& session = client.connected();
    {
      FtpData data;
      ASSERT_EQ(session.openWrite(server.path("a"), data), kNoError);
      const std::string content = pattern(1'000'000);
      ASSERT_EQ(data.write(content.data(), content.size()), kNoError);
    }
    EXPECT_EQ(session.deleteFile(server.path("a")), kNoError) << session.lastReply();
    EXPECT_FALSE(server.folder().exists("a"));
  }
}

TEST(FtpData, A_download_cut_at_every_tenth_is_told_when_it_is_closed) {
  const std::string content = pattern(1'000'000);
  FtpServer server;
  server.write("a", content);
  for (std::size_t tenth = 0; tenth < 10; ++tenth) {
    const std::size_t cut = tenth * content.size() / 10;
    for (const std::string kind : {"cut", "die"}) {
      server.become({kind + " RETR " + std::to_string(cut)});
      FtpClient client(server);
      FtpSession& session = client.connected();
      FtpData data;
      ASSERT_EQ(session.openRead("/a", data), kNoError);
      std::string back(content.size(), '\0');
      std::size_t got = 0;
      const ErrorCode read = data.read(back.data(), back.size(), got);
      const ErrorCode closed = data.close();
      EXPECT_EQ(got, cut) << kind;
      if (kind == "cut") {
        EXPECT_EQ(read, kNoError);
        EXPECT_EQ(closed, kFtpRefused);
        EXPECT_EQ(session.lastReply().substr(0, 3), "426");
        EXPECT_EQ(session.command("NOOP"), kNoError);
      } else {
        EXPECT_EQ(closed, kFtpConnectionLost);
        EXPECT_EQ(session.command("NOOP"), kFtpConnectionLost);
      }
    }
  }
}

TEST(FtpData, An_upload_cut_at_every_tenth_fails) {
  const std::string content = pattern(4'000'000);
  FtpServer server;
  for (std::size_t tenth = 0; tenth < 10; ++tenth) {
    const std::string at = std::to_string(tenth * content.size() / 10);
    for (const std::string kind : {"cut", "die"}) {
      server.become({kind + " STOR " + at});
      FtpClient client(server);
      FtpSession& session = client.connected();
      FtpData data;
      ASSERT_EQ(session.openWrite("/a", data), kNoError);
      const ErrorCode written = data.write(content.data(), content.size());
      const ErrorCode closed = data.close();
      EXPECT_TRUE(written != kNoError || closed != kNoError) << kind << at;
      if (kind == "cut") {
        EXPECT_EQ(closed, kFtpRefused) << at;
        EXPECT_EQ(session.lastReply().substr(0, 3), "426");
        EXPECT_EQ(session.deleteFile("/a"), kNoError);
      } else {
        EXPECT_TRUE(closed == kFtpConnectionLost || closed == kFtpConnectionReset) << closed;
      }
    }
  }
}

TEST(FtpData, The_words_of_a_server_that_gives_up_an_upload_reach_the_caller) {
  // Data nobody reads, and a refusal beside it.
  const FtpServer server(FtpServer::Kind::Script, {"on STOR '150 Go\\r\\n552 Disc full\\r\\n'"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  FtpData data;
  ASSERT_EQ(session.openWrite("/a", data), kNoError);
  const std::string block = pattern(1'000'000);
  ErrorCode error = kNoError;
  for (int i = 0; i < 1000 && error == kNoError; ++i) error = data.write(block.data(), block.size());
  EXPECT_EQ(error, kFtpRefused);
  EXPECT_EQ(session.lastReply(), "552 Disc full");
  EXPECT_EQ(data.close(), kFtpRefused);
  EXPECT_EQ(session.deleteFile("/a"), kNoError);
}

TEST(FtpData, Stalls_are_told_in_both_directions) {
  FtpServer server;
  const std::string content = pattern(40'000'000);
  server.write("a", content);
  FtpLimits limits = shortLimits();
  limits.silence = 200;
  for (const std::string kind : {"RETR", "STOR"}) {
    server.become({"freeze " + kind + " 100000"});
    FtpClient client(server);
    FtpSession& session = client.connected();
    FtpData data;
    ASSERT_EQ(kind == "RETR" ? session.openRead("/a", data) : session.openWrite("/b", data), kNoError);
    session.setLimits(limits);
    std::string back(content.size(), '\0');
    std::size_t got = 0;
    EXPECT_EQ(kind == "RETR" ? data.read(back.data(), back.size(), got)
                             : data.write(content.data(), content.size()),
              kFtpTimedOut);
    data.abandon();
    session.setLimits(shortLimits());
    server.become({});
    EXPECT_EQ(client.upload("/c", "the session lives"), kNoError) << session.lastReply();
  }
}

TEST(FtpData, A_stop_is_seen_in_every_wait_and_what_is_left_can_be_cleaned_up) {
  FtpServer server;
  const std::string content = pattern(40'000'000);
  server.write("a", content);
  for (const std::string fault :
       {"freeze RETR 100000", "freeze STOR 100000", "silent EPSV", "silent RETR", "silent STOR"}) {
    FtpClient client(server);
    FtpSession& session = client.connected();
    server.become({fault});
    int looks = 0;
    session.setKeepGoing([&] { return ++looks < 4; });
    const bool up = fault.find("STOR") != std::string::npos;
    FtpData data;
    ErrorCode error = up ? session.openWrite("/b", data) : session.openRead("/a", data);
    std::string back(content.size(), '\0');
    std::size_t got = 0;
    if (error == kNoError)
      error = up ? data.write(content.data(), content.size()) : data.read(back.data(), back.size(), got);
    EXPECT_EQ(error, kFtpStopped) << fault;
    data.abandon();
    server.become({});
    session.setKeepGoing({});
    // A server that froze with its data answers again; one that swallowed a command never will.
    if (fault.starts_with("silent")) continue;
    EXPECT_EQ(session.command("NOOP"), kNoError) << fault;
  }
}

TEST(FtpData, Events_run_while_data_flows_without_a_wait) {
  const FtpServer server(FtpServer::Kind::Script, {"data '" + std::string(1000, 'x') + "' 0"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  int looks = 0;
  session.setKeepGoing([&] { return ++looks < 3; });
  FtpData data;
  ASSERT_EQ(session.openRead("/endless", data), kNoError);
  std::string block(65536, '\0');
  ErrorCode error = kNoError;
  for (std::size_t got = 0; error == kNoError;) error = data.read(block.data(), block.size(), got);
  EXPECT_EQ(error, kFtpStopped);
  EXPECT_EQ(looks, 3);
}

TEST(FtpData, While_one_is_open_every_other_call_is_refused_as_busy) {
  const FtpServer server;
  FtpClient client(server);
  FtpSession& session = client.connected();
  FtpData data, second;
  ASSERT_EQ(session.openWrite("/a", data), kNoError);
  FtpSearch search;
  FtpEntry entry;
  std::string path;
  bool exists = false;
  EXPECT_EQ(session.openRead("/a", second), kFtpBusy);
  EXPECT_EQ(session.openWrite("/b", second), kFtpBusy);
  EXPECT_EQ(session.openCommand("LIST", FtpType::Ascii, second), kFtpBusy);
  EXPECT_EQ(session.openSearch("/", search, entry), kFtpBusy);
  EXPECT_EQ(session.currentFolder(path), kFtpBusy);
  EXPECT_EQ(session.folderExists("/", exists), kFtpBusy);
  EXPECT_EQ(session.deleteFile("/a"), kFtpBusy);
  EXPECT_EQ(session.command("NOOP"), kFtpBusy);
  EXPECT_EQ(data.write("x", 1), kNoError);
  EXPECT_EQ(data.close(), kNoError);
  EXPECT_EQ(data.close(), kFtpConnectionLost);
  EXPECT_EQ(session.deleteFile("/a"), kNoError);
}

TEST(FtpData, Reading_an_upload_and_writing_to_a_download_is_refused) {
  const FtpServer server;
  server.write("a", "abc");
  FtpClient client(server);
  FtpSession& session = client.connected();
  char byte = 0;
  std::size_t got = 0;
  FtpData data;
  ASSERT_EQ(session.openWrite("/b", data), kNoError);
  EXPECT_EQ(data.read(&byte, 1, got), kFtpWrongHandle);
  data.abandon();
  ASSERT_EQ(session.openRead("/a", data), kNoError);
  EXPECT_EQ(data.write("x", 1), kFtpWrongHandle);
}

TEST(FtpData, Commands_of_the_callers_own_give_data) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    const FtpServer server(kind);
    server.write("in/a", "abc");
    server.write("in/b", "def");
    FtpClient client(server);
    FtpSession& session = client.connected();
    ASSERT_EQ(session.setCurrentFolder(server.path("in")), kNoError);
    FtpData data;
    ASSERT_EQ(session.openCommand("LIST", FtpType::Ascii, data), kNoError);
    std::string text(1U << 20U, '\0');
    std::size_t got = 0;
    EXPECT_EQ(data.read(text.data(), text.size(), got), kNoError);
    EXPECT_EQ(data.close(), kNoError);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 2);
    ASSERT_EQ(session.openCommand("RETR " + server.path("in/b"), FtpType::Binary, data), kNoError);
    EXPECT_EQ(data.read(text.data(), text.size(), got), kNoError);
    EXPECT_EQ(text.substr(0, got), "def");
    EXPECT_EQ(data.close(), kNoError);
    // The type goes back and forth with the commands.
    const std::vector<std::string> commands = server.commands();
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "TYPE A"), 1);
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "TYPE I"), 2);
  }
}

TEST(FtpData, Opening_a_download_can_tell_size_and_date) {
  std::vector<std::vector<std::string>> variants{{}, {"mlsd off"}};
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    for (const std::vector<std::string>& faults : variants) {
      const FtpServer server(kind, faults);
      server.write("a", "12345");
      server.setTime("a", 1706704215);
      FtpClient client(server);
      FtpSession& session = client.connected();
      for (int i = 0; i < 3; ++i) {
        FtpData data;
        ASSERT_EQ(session.openRead(server.path("a"), data, {true, true}), kNoError);
        EXPECT_EQ(data.size(), 5U);
        EXPECT_EQ(data.time(), (FileTime{1706704215, 0}));
        data.abandon();
      }
    }
  }
}

TEST(FtpModes, Passive_mode_falls_back_to_pasv_but_never_to_active) {
  FtpServer server({"refuse EPSV 500 What?"});
  FtpClient client(server);
  client.connected();
  EXPECT_EQ(client.upload("/a", "x"), kNoError);
  EXPECT_EQ(client.upload("/b", "x"), kNoError);
  EXPECT_EQ(server.count("EPSV"), 1);
  EXPECT_EQ(server.count("PASV"), 2);
  EXPECT_EQ(server.count("PORT") + server.count("EPRT"), 0);
}

TEST(FtpModes, Passive_mode_on_a_server_without_it_is_told_and_the_session_lives) {
  const FtpServer server({"refuse EPSV 500 What?", "refuse PASV 502 Not here"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  FtpData data;
  EXPECT_EQ(session.openWrite("/a", data), kFtpNoPassiveMode);
  FtpSearch search;
  FtpEntry entry;
  EXPECT_EQ(session.openSearch("/", search, entry), kFtpNoPassiveMode);
  EXPECT_EQ(server.count("PORT") + server.count("EPRT") + server.count("STOR"), 0);
  EXPECT_EQ(session.command("NOOP"), kNoError);
}

TEST(FtpModes, Passive_mode_lost_in_the_middle_is_told_by_the_servers_words) {
  FtpServer server;
  FtpClient client(server);
  FtpSession& session = client.connected();
  ASSERT_EQ(client.upload("/a", "x"), kNoError);
  server.become({"refuse EPSV 425 No port left"});
  FtpData data;
  EXPECT_EQ(session.openWrite("/b", data), kFtpRefused);
  EXPECT_EQ(session.lastReply(), "425 No port left");
}

TEST(FtpModes, Active_mode_falls_back_to_port_but_never_to_passive) {
  FtpServer server({"refuse EPRT 500 What?"});
  server.write("a", "abc");
  FtpClient client(server, false);
  FtpSession& session = client.connected();
  std::string content;
  EXPECT_EQ(client.download("/a", content), kNoError);
  EXPECT_EQ(content, "abc");
  EXPECT_EQ(server.count("PORT"), 1);
  server.become({"refuse EPRT 500 What?", "refuse PORT 500 Not here"});
  EXPECT_EQ(client.download("/a", content), kFtpRefused);
  EXPECT_EQ(session.lastReply(), "500 Not here");
  EXPECT_EQ(session.command("NOOP"), kNoError);
  EXPECT_EQ(server.count("PASV") + server.count("EPSV"), 0);
}

TEST(FtpModes, The_address_of_a_pasv_reply_is_not_used) {
  const FtpServer server(
      FtpServer::Kind::Script,
      {"on EPSV '500 What?\\r\\n'", "on PASV '227 Go (192,0,2,1,{p1},{p2})\\r\\n'", "data 'abc' 1"});
  FtpClient client(server);
  client.connected();
  std::string content;
  EXPECT_EQ(client.download("/a", content), kNoError);
  EXPECT_EQ(content, "abc");
}

TEST(FtpModes, A_port_for_data_that_is_closed_is_told) {
  const FtpServer server(FtpServer::Kind::Script, {"on EPSV '229 Go (|||1|)\\r\\n'"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  FtpData data;
  EXPECT_EQ(session.openRead("/a", data), kFtpCannotConnect);
  EXPECT_EQ(session.deleteFile("/a"), kNoError);
}

// The commands that it takes to move files, once the first of them has shown what the server can.
TEST(FtpCommands, Two_a_file_going_up_and_two_coming_down) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    for (const bool passive : {true, false}) {
      FtpServer server(kind);
      FtpClient client(server, passive);
      client.connected();
      ASSERT_EQ(client.upload(server.path("first"), "x"), kNoError);
      server.forgetCommands();
      for (int i = 0; i < 100; ++i)
        ASSERT_EQ(client.upload(server.path("up" + std::to_string(i)), "x"), kNoError);
      EXPECT_EQ(server.commands().size(), 200U);
      server.forgetCommands();
      std::string content;
      for (int i = 0; i < 100; ++i)
        ASSERT_EQ(client.download(server.path("up" + std::to_string(i)), content), kNoError);
      EXPECT_EQ(server.commands().size(), 200U);
    }
  }
}

TEST(FtpCommands, One_more_where_the_date_or_the_size_is_asked_too) {
  for (const FtpServer::Kind kind : FtpServer::installed()) {
    FtpServer server(kind);
    server.write("a", "abc");
    FtpClient client(server);
    FtpSession& session = client.connected();
    for (int i = 0; i < 11; ++i) {
      if (i == 1) server.forgetCommands();
      FtpData data;
      ASSERT_EQ(session.openRead(server.path("a"), data, {true, true}), kNoError);
      char block[10];
      std::size_t got = 0;
      ASSERT_EQ(data.read(block, sizeof block, got), kNoError);
      ASSERT_EQ(data.close(), kNoError);
    }
    EXPECT_EQ(server.commands().size(), 30U);
  }
}

}  // namespace
}  // namespace tandemize::platform
