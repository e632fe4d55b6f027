// TCP connections that never hold up the program: every call either gives at once what is there, or waits in
// short steps between which a callback lets events run.
//
// Failures are numbers of errors.h or one of those below, by which the field knows the failures of sockets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize::platform {

inline constexpr ErrorCode kSocketInvalid = 10022;      // an argument no socket takes, a channel not open
inline constexpr ErrorCode kSocketWouldBlock = 10035;   // nothing to read, or no room to write, just now
inline constexpr ErrorCode kSocketUnreachable = 10051;  // no way to that network
inline constexpr ErrorCode kSocketAborted = 10053;      // the connection has been given up on this side
inline constexpr ErrorCode kSocketReset = 10054;        // the other side dropped the connection
inline constexpr ErrorCode kSocketTimedOut = 10060;
inline constexpr ErrorCode kSocketRefused = 10061;
inline constexpr ErrorCode kHostNotFound = 11001;  // the name is not known
inline constexpr ErrorCode kHostTryAgain = 11002;  // the name service did not answer

// Lets events run; false ends the wait that called it, which then gives kStopped. Waits call it every 20 ms,
// however long they last, and not at all when what they wait for is there already. An empty one is never
// called.
using KeepGoing = std::function<bool()>;

// One end of a connection, as numbers: "192.0.2.1", "2001:db8::1", "fe80::1%eth0".
struct NetworkAddress {
  std::string ip;
  std::uint16_t port = 0;
  [[nodiscard]] bool isV6() const { return ip.find(':') != std::string::npos; }
  friend bool operator==(const NetworkAddress&, const NetworkAddress&) = default;
};

// "host:port" as server names are stored, "[2001:db8::1]:port" for an address that has colons itself. Without
// a port, or with one that is no number from 1 to 65535, the whole text is the host and `defaultPort` stands.
[[nodiscard]] NetworkAddress splitHostAndPort(std::string_view text, std::uint16_t defaultPort);

// Something that can be waited for.
class Waitable {
 public:
  Waitable() = default;
  virtual ~Waitable() = default;
  Waitable(const Waitable&) = delete;
  Waitable& operator=(const Waitable&) = delete;

  [[nodiscard]] virtual int handle() const = 0;  // the host's, -1 when not open
  // Bytes have arrived that the handle no longer shows, so that a wait for reading ends at once.
  [[nodiscard]] virtual bool hasBuffered() const { return false; }
};

// A stream of bytes both ways. TCP is one; a cipher over TCP may be another.
class ByteChannel : public Waitable {
 public:
  // Takes what is there, at most `size` bytes, and never waits. kNoError with `got` 0: the other side has
  // ended its stream. kSocketWouldBlock: nothing is there yet.
  [[nodiscard]] virtual ErrorCode read(void* buffer, std::size_t size, std::size_t& got) = 0;
  // Hands over what can go out now, and never waits. kSocketWouldBlock with `taken` 0: no room.
  [[nodiscard]] virtual ErrorCode write(const void* bytes, std::size_t size, std::size_t& taken) = 0;
  // No more will be written: the other side reads an end. What was written still goes out.
  virtual void endWriting() = 0;
  // Closes. What was written goes out, unless `dropAtOnce`: then it is thrown away and the other side sees a
  // reset. The destructor closes like `close(false)`.
  virtual void close(bool dropAtOnce) = 0;

  [[nodiscard]] virtual NetworkAddress localAddress() const = 0;
  [[nodiscard]] virtual NetworkAddress peerAddress() const = 0;

  [[nodiscard]] bool isOpen() const { return handle() >= 0; }
};

class TcpListener;

class TcpChannel final : public ByteChannel {
 public:
  TcpChannel() = default;
  ~TcpChannel() override;

  // Resolves the name off this thread (numbers need no resolving) and connects to the first of its addresses
  // that answers; a second address is tried beside the first when that takes longer than a moment. Small
  // writes go out at once (TCP_NODELAY). `milliseconds` is the limit for all of it: kSocketTimedOut.
  // kHostNotFound, kHostTryAgain, kSocketRefused, kSocketUnreachable..., kStopped. Closes what was open
  // before; after a failure the channel is not open.
  [[nodiscard]] ErrorCode connect(const std::string& host, std::uint16_t port, unsigned milliseconds,
                                  const KeepGoing& keepGoing);

  [[nodiscard]] int handle() const override { return socket_; }
  [[nodiscard]] ErrorCode read(void* buffer, std::size_t size, std::size_t& got) override;
  [[nodiscard]] ErrorCode write(const void* bytes, std::size_t size, std::size_t& taken) override;
  void endWriting() override;
  void close(bool dropAtOnce) override;
  [[nodiscard]] NetworkAddress localAddress() const override;
  [[nodiscard]] NetworkAddress peerAddress() const override;

  // From now on every way of closing drops the connection at once (a linger time of 0 seconds).
  void dropWhenClosed();
  // The host looks now and then whether an idle connection still lives.
  void keepAlive();
  [[nodiscard]] bool readableNow() const;  // a read would give bytes, the end or a failure
  [[nodiscard]] bool writableNow() const;  // a write would take bytes or give a failure

 private:
  friend class TcpListener;
  void adopt(int socket);

  int socket_ = -1;
};

// Takes connections, for what the other side opens towards this one.
class TcpListener : public Waitable {
 public:
  TcpListener() = default;
  ~TcpListener() override;

  // Listens on a port of the host's choice at a local address (numbers).
  [[nodiscard]] ErrorCode listen(const std::string& ip);
  [[nodiscard]] NetworkAddress address() const;
  // Takes a connection that is there; kSocketWouldBlock if none is.
  [[nodiscard]] ErrorCode accept(TcpChannel& channel);
  void close();

  [[nodiscard]] int handle() const override { return socket_; }

 private:
  int socket_ = -1;
};

// What to wait for, and what came.
struct Awaited {
  const Waitable* what = nullptr;
  bool toRead = false, toWrite = false;
  bool readable = false, writable = false;  // results; a failed or ended connection is both
};

// Waits until one of them is ready: kNoError. kSocketTimedOut after `milliseconds`; with 0 it only looks.
// kStopped when `keepGoing` says so. Those that are not open are never ready.
[[nodiscard]] ErrorCode waitForAny(std::span<Awaited> awaited, unsigned milliseconds,
                                   const KeepGoing& keepGoing);
[[nodiscard]] ErrorCode waitToRead(const Waitable& what, unsigned milliseconds, const KeepGoing& keepGoing);
[[nodiscard]] ErrorCode waitToWrite(const Waitable& what, unsigned milliseconds, const KeepGoing& keepGoing);

// Writes all of it, waiting while there is no room. kSocketTimedOut when nothing was taken for that long.
[[nodiscard]] ErrorCode writeAll(ByteChannel& channel, std::string_view bytes, unsigned milliseconds,
                                 const KeepGoing& keepGoing);

}  // namespace tandemize::platform
