// Servers that mean harm, or speak no FTP.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "platform/ftpclient.h"

namespace tandemize::platform {
namespace {

using test::FtpServer;
constexpr FtpServer::Kind kScript = FtpServer::Kind::Script;

// Somebody at another address than the server's.
class Stranger {
 public:
  ~Stranger() {
    if (socket_ >= 0) ::close(socket_);
  }
  void connect(std::uint16_t port) {
    if (port == 0) return;
    socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(socket_, address("127.0.0.2", 0), sizeof(sockaddr_in)), 0);
    ASSERT_EQ(::connect(socket_, address("127.0.0.1", port), sizeof(sockaddr_in)), 0);
  }
  [[nodiscard]] bool connected() const { return socket_ >= 0; }
  [[nodiscard]] bool wasDropped() const {
    char byte = 0;
    const ssize_t got = socket_ < 0 ? 1 : ::recv(socket_, &byte, 1, MSG_DONTWAIT);
    return got == 0 || (got < 0 && errno == ECONNRESET);
  }

 private:
  const sockaddr* address(const char* ip, std::uint16_t port) {
    address_.sin_family = AF_INET;
    address_.sin_port = htons(port);
    ::inet_pton(AF_INET, ip, &address_.sin_addr);
    return reinterpret_cast<const sockaddr*>(&address_);
  }

  sockaddr_in address_{};
  int socket_ = -1;
};

// Of "EPRT |1|127.0.0.1|PORT|".
std::uint16_t portOf(const std::vector<std::string>& commands) {
  for (const std::string& command : commands) {
    if (!command.starts_with("EPRT ")) continue;
    const std::size_t end = command.rfind('|'), start = command.rfind('|', end - 1);
    return static_cast<std::uint16_t>(std::stoi(command.substr(start + 1, end - start - 1)));
  }
  return 0;
}

TEST(FtpHostile, A_reply_line_without_end_is_given_up) {
  const FtpServer server(kScript, {"fill DELE '" + std::string(1000, 'x') + "' 0"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  EXPECT_EQ(session.deleteFile("/a"), kFtpBadReply);
  EXPECT_FALSE(session.isOpen());
  EXPECT_LE(session.lastReply().size(), 1000U);
}

TEST(FtpHostile, A_reply_of_endless_lines_or_preliminaries_is_given_up) {
  for (const std::string line : {"250-more\\r\\n", "150 soon\\r\\n", "   \\r\\n"}) {
    const FtpServer server(kScript, {"fill DELE '" + line + "' 0"});
    FtpClient client(server);
    FtpSession& session = client.connected();
    EXPECT_EQ(session.deleteFile("/a"), kFtpBadReply) << line;
    EXPECT_FALSE(session.isOpen());
  }
}

TEST(FtpHostile, A_greeting_that_is_no_ftp_is_told) {
  for (const std::string greeting : {"SSH-2.0-x\\r\\n", "HTTP/1.0 400 Bad\\r\\n", "\\x00\\x01\\x02\\n"}) {
    const FtpServer server(kScript, {"greeting '" + greeting + "'"});
    FtpClient client(server);
    EXPECT_EQ(client.connect(), kFtpBadReply) << greeting;
  }
}

TEST(FtpHostile, Garbage_anywhere_ends_the_session_and_nothing_else) {
  for (const std::string command : {"USER", "PASS", "FEAT", "TYPE", "PWD", "EPSV", "RETR", "LIST", "CWD"}) {
    const FtpServer server(kScript, {"on " + command + " 'garbage\\r\\n'"});
    FtpClient client(server);
    ErrorCode error = client.connect();
    std::string content;
    if (error == kNoError) error = client.download("/a", content);
    if (error == kNoError) static_cast<void>(client.list("/", error));
    EXPECT_EQ(error, kFtpBadReply) << command;
  }
}

TEST(FtpHostile, Passive_replies_without_a_port_are_told) {
  for (const std::string reply : {"229 Go", "229 Go (|||0|)", "229 Go (|||99999|)", "227 Go (1,2,3)"}) {
    const FtpServer server(kScript, {"on EPSV '" + reply + "\\r\\n'"});
    FtpClient client(server);
    FtpSession& session = client.connected();
    FtpData data;
    EXPECT_EQ(session.openRead("/a", data), kFtpBadReply) << reply;
    EXPECT_EQ(session.deleteFile("/a"), kNoError);
  }
}

TEST(FtpHostile, A_pwd_reply_without_a_path_is_told) {
  for (const std::string reply : {"257 none", "250 Done", "257 \"open"}) {
    const FtpServer server(kScript, {"on PWD '" + reply + "\\r\\n'"});
    FtpClient client(server);
    std::string current;
    EXPECT_EQ(client.connected().currentFolder(current), kFtpBadReply) << reply;
  }
}

TEST(FtpHostile, A_folder_named_by_a_line_end_cannot_be_gone_back_to) {
  const FtpServer server(kScript, {"on PWD '257-\"/a\\r\\nDELE x\" \\r\\n257 end\\r\\n'"});
  FtpClient client(server);
  bool exists = true;
  EXPECT_EQ(client.connected().folderExists("/b", exists), kFtpBadReply);
  EXPECT_EQ(server.count("DELE"), 0);
}

TEST(FtpHostile, An_endless_listing_is_given_up_at_the_limit) {
  FtpServer server;
  for (const std::vector<std::string>& faults :
       {std::vector<std::string>{"endless"}, std::vector<std::string>{"endless", "mlsd off"}}) {
    server.become(faults);
    FtpClient client(server);
    FtpLimits limits = shortLimits();
    limits.listingEntries = 5'000;
    client.session.setLimits(limits);
    FtpSession& session = client.connected();
    FtpSearch search;
    FtpEntry entry;
    EXPECT_EQ(session.openSearch("/", search, entry), kFtpBadReply);
    limits.listingEntries = 1'000'000;
    limits.listingBytes = 1'000'000;
    session.setLimits(limits);
    EXPECT_EQ(session.openSearch("/", search, entry), kFtpBadReply);
    server.become({});
    EXPECT_EQ(session.command("NOOP"), kNoError);
  }
}

TEST(FtpHostile, A_listing_of_one_endless_line_is_given_up) {
  const FtpServer server(kScript, {"data '" + std::string(1000, 'x') + "' 0"});
  FtpClient client(server);
  FtpSearch search;
  FtpEntry entry;
  EXPECT_EQ(client.connected().openSearch("/", search, entry), kFtpBadReply);
}

TEST(FtpHostile, A_stop_ends_an_endless_listing) {
  const FtpServer server({"endless"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  int looks = 0;
  session.setKeepGoing([&] { return ++looks < 3; });
  FtpSearch search;
  FtpEntry entry;
  EXPECT_EQ(session.openSearch("/", search, entry), kFtpStopped);
  EXPECT_FALSE(search.isOpen());
}

TEST(FtpHostile, A_size_that_is_none_is_not_believed) {
  for (const std::string reply : {"213 x", "213 -1", "250 5", "213 "}) {
    const FtpServer server(kScript, {"on SIZE '" + reply + "\\r\\n'", "on MDTM '213 2024\\r\\n'"});
    FtpClient client(server);
    FtpEntry entry;
    EXPECT_EQ(client.connected().fileStatus("/a", entry), kNoError);
    EXPECT_FALSE(entry.hasSize) << reply;
    EXPECT_EQ(entry.precision, TimePrecision::None);
  }
}

TEST(FtpHostile, A_reset_is_told_as_such) {
  const FtpServer server(kScript, {"reset DELE"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  const ErrorCode error = session.deleteFile("/a");
  EXPECT_TRUE(error == kFtpConnectionReset || error == kFtpConnectionLost) << error;
  EXPECT_FALSE(session.isOpen());
}

TEST(FtpHostile, In_active_mode_a_stranger_gets_nothing) {
  // The server says that it begins and never connects; another one connects from a different address.
  const FtpServer server(kScript, {"on EPRT '200 Done\\r\\n'", "on STOR '150 Go\\r\\n'"});
  FtpClient client(server, false);
  FtpSession& session = client.connected();
  Stranger stranger;
  bool dropped = false;
  session.setKeepGoing([&] {
    if (!stranger.connected()) stranger.connect(portOf(server.commands()));
    dropped = stranger.wasDropped();
    return !dropped;
  });
  FtpData data;
  EXPECT_EQ(session.openWrite("/a", data), kFtpStopped);
  EXPECT_FALSE(data.isOpen());
  EXPECT_TRUE(dropped);
}

}  // namespace
}  // namespace tandemize::platform
