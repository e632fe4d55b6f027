#include "platform/sockets.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

namespace tandemize::platform {
namespace {

constexpr unsigned kLong = 10'000;  // never reached

// Two ends of one connection on the loopback.
struct Pair {
  explicit Pair(const std::string& ip = "127.0.0.1") {
    TcpListener listener;
    EXPECT_EQ(listener.listen(ip), kNoError);
    EXPECT_EQ(near.connect(ip, listener.address().port, kLong, {}), kNoError);
    EXPECT_EQ(waitToRead(listener, kLong, {}), kNoError);
    EXPECT_EQ(listener.accept(far), kNoError);
  }
  TcpChannel near, far;
};

std::string readSome(TcpChannel& channel) {
  std::array<char, 4096> buffer{};
  std::size_t got = 0;
  EXPECT_EQ(waitToRead(channel, kLong, {}), kNoError);
  EXPECT_EQ(channel.read(buffer.data(), buffer.size(), got), kNoError);
  return {buffer.data(), got};
}

// A port of the loopback that nobody listens at.
std::uint16_t closedPort() {
  TcpListener listener;
  EXPECT_EQ(listener.listen("127.0.0.1"), kNoError);
  return listener.address().port;
}

TEST(SplitHostAndPort, Understands_what_is_stored) {
  const std::vector<std::pair<std::string, NetworkAddress>> known = {
      {"ftp.example.org", {"ftp.example.org", 21}},
      {"ftp.example.org:2121", {"ftp.example.org", 2121}},
      {"127.0.0.1:65535", {"127.0.0.1", 65535}},
      {"[::1]:2121", {"::1", 2121}},
      {"[2001:db8::1]", {"2001:db8::1", 21}},
      {"2001:db8::1", {"2001:db8::1", 21}},
      {"", {"", 21}},
  };
  for (const auto& [text, address] : known) EXPECT_EQ(splitHostAndPort(text, 21), address) << text;
}

TEST(SplitHostAndPort, Takes_a_port_that_is_none_as_part_of_the_name) {
  for (const std::string text : {"host:", "host:0", "host:65536", "host:21x", ":21", "[::1]:x", "[::1"})
    EXPECT_EQ(splitHostAndPort(text, 21), (NetworkAddress{text, 21})) << text;
}

TEST(TcpChannel, Carries_bytes_both_ways) {
  for (const std::string ip : {"127.0.0.1", "::1"}) {
    if (ip == "::1" && TcpListener().listen(ip) != kNoError) continue;  // a machine without it
    Pair pair(ip);
    EXPECT_EQ(writeAll(pair.near, "there", kLong, {}), kNoError);
    EXPECT_EQ(readSome(pair.far), "there");
    EXPECT_EQ(writeAll(pair.far, "back", kLong, {}), kNoError);
    EXPECT_EQ(readSome(pair.near), "back");
    EXPECT_EQ(pair.near.peerAddress(), pair.far.localAddress());
    EXPECT_EQ(pair.near.localAddress().ip, ip);
  }
}

TEST(TcpChannel, A_name_is_resolved) {
  TcpListener listener;
  ASSERT_EQ(listener.listen("127.0.0.1"), kNoError);
  TcpChannel channel;
  EXPECT_EQ(channel.connect("localhost", listener.address().port, kLong, {}), kNoError);
}

TEST(TcpChannel, Reading_tells_nothing_there_from_the_end) {
  Pair pair;
  char byte = 0;
  std::size_t got = 1;
  EXPECT_EQ(pair.near.read(&byte, 1, got), kSocketWouldBlock);
  EXPECT_EQ(got, 0U);
  EXPECT_FALSE(pair.near.readableNow());
  pair.far.close(false);
  EXPECT_EQ(waitToRead(pair.near, kLong, {}), kNoError);
  EXPECT_EQ(pair.near.read(&byte, 1, got), kNoError);
  EXPECT_EQ(got, 0U);
}

TEST(TcpChannel, What_was_written_before_the_end_still_arrives) {
  Pair pair;
  ASSERT_EQ(writeAll(pair.near, "last words", kLong, {}), kNoError);
  pair.near.endWriting();
  EXPECT_EQ(readSome(pair.far), "last words");
  EXPECT_EQ(readSome(pair.far), "");
}

TEST(TcpChannel, Dropping_resets_the_other_side) {
  for (const bool byClose : {true, false}) {
    Pair pair;
    if (!byClose) pair.near.dropWhenClosed();
    pair.near.close(byClose);
    ASSERT_EQ(waitToRead(pair.far, kLong, {}), kNoError);
    char byte = 0;
    std::size_t got = 0;
    EXPECT_EQ(pair.far.read(&byte, 1, got), kSocketReset);
  }
}

TEST(TcpChannel, Writing_without_room_says_so_and_waiting_finds_the_room) {
  Pair pair;
  EXPECT_TRUE(pair.near.writableNow());
  const std::string block(1U << 20U, 'x');
  std::size_t taken = 0, all = 0;
  while (pair.near.write(block.data(), block.size(), taken) == kNoError) all += taken;
  EXPECT_FALSE(pair.near.writableNow());
  EXPECT_EQ(waitToWrite(pair.near, 0, {}), kSocketTimedOut);
  while (all > 0) all -= readSome(pair.far).size();
  EXPECT_EQ(waitToWrite(pair.near, kLong, {}), kNoError);
}

TEST(TcpChannel, A_closed_channel_takes_and_gives_nothing) {
  TcpChannel channel;
  std::size_t count = 0;
  char byte = 0;
  EXPECT_FALSE(channel.isOpen());
  EXPECT_EQ(channel.read(&byte, 1, count), kSocketInvalid);
  EXPECT_EQ(channel.write(&byte, 1, count), kSocketInvalid);
  EXPECT_EQ(channel.peerAddress(), NetworkAddress());
  EXPECT_FALSE(channel.writableNow());
}

TEST(TcpConnect, Tells_a_closed_port) {
  TcpChannel channel;
  EXPECT_EQ(channel.connect("127.0.0.1", closedPort(), kLong, {}), kSocketRefused);
  EXPECT_FALSE(channel.isOpen());
}

TEST(TcpConnect, Tells_a_name_that_nobody_knows) {
  TcpChannel channel;
  for (const std::string& name :
       {std::string("no-such-host.invalid"), std::string(), std::string("local\0host", 10)}) {
    const ErrorCode error = channel.connect(name, 21, kLong, {});
    // A machine without a name service gets no answer at all.
    EXPECT_TRUE(error == kHostNotFound || error == kHostTryAgain) << name << ": " << error;
  }
}

TEST(TcpConnect, Ends_when_the_callback_says_so) {
  // The queue of a listener that nobody accepts from holds two; a third waits in vain.
  TcpListener full;
  ASSERT_EQ(full.listen("127.0.0.1"), kNoError);
  std::array<TcpChannel, 2> first;
  for (TcpChannel& channel : first)
    ASSERT_EQ(channel.connect("127.0.0.1", full.address().port, kLong, {}), kNoError);
  int calls = 0;
  TcpChannel channel;
  EXPECT_EQ(channel.connect("127.0.0.1", full.address().port, kLong, [&] { return ++calls < 3; }), kStopped);
  EXPECT_EQ(calls, 3);
  EXPECT_FALSE(channel.isOpen());
  EXPECT_EQ(channel.connect("127.0.0.1", full.address().port, 30, {}), kSocketTimedOut);
}

TEST(Wait, Calls_back_while_nothing_comes_and_not_when_it_is_there) {
  Pair pair;
  int calls = 0;
  const KeepGoing count = [&] { return ++calls < 4; };
  EXPECT_EQ(waitToRead(pair.near, kLong, count), kStopped);
  EXPECT_EQ(calls, 4);
  ASSERT_EQ(writeAll(pair.far, "x", kLong, {}), kNoError);
  ASSERT_EQ(waitToRead(pair.near, kLong, {}), kNoError);
  calls = 0;
  EXPECT_EQ(waitToRead(pair.near, kLong, count), kNoError);
  EXPECT_EQ(calls, 0);
}

TEST(Wait, Tells_which_of_several_is_ready) {
  Pair one, two;
  ASSERT_EQ(writeAll(two.far, "x", kLong, {}), kNoError);
  TcpChannel closed;
  std::array<Awaited, 4> all{Awaited{&one.near, true}, Awaited{&two.near, true}, Awaited{&closed, true},
                             Awaited{nullptr, true}};
  EXPECT_EQ(waitForAny(all, kLong, {}), kNoError);
  EXPECT_FALSE(all[0].readable);
  EXPECT_TRUE(all[1].readable);
  EXPECT_FALSE(all[2].readable);
  EXPECT_FALSE(all[3].readable);
}

TEST(Wait, The_callback_may_close_what_is_waited_for) {
  Pair pair;
  int calls = 0;
  const KeepGoing closing = [&] {
    pair.near.close(false);
    return ++calls < 3;
  };
  EXPECT_EQ(waitToRead(pair.near, kLong, closing), kStopped);
}

TEST(TcpListener, Gives_no_connection_that_is_not_there) {
  TcpListener listener;
  TcpChannel channel;
  EXPECT_EQ(listener.accept(channel), kSocketInvalid);
  ASSERT_EQ(listener.listen("127.0.0.1"), kNoError);
  EXPECT_NE(listener.address().port, 0);
  EXPECT_EQ(listener.accept(channel), kSocketWouldBlock);
  EXPECT_EQ(listener.listen("no address"), kSocketInvalid);
}

}  // namespace
}  // namespace tandemize::platform
