#include "platform/sockets.h"

#include <netinet/tcp.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/posix/socketaddress.h"

namespace tandemize::platform {

namespace {

bool readyNow(int socket, short event) {
  pollfd entry{socket, event, 0};
  return socket >= 0 && ::poll(&entry, 1, 0) > 0 && entry.revents != 0;
}

void turnOn(int socket, int level, int option) {
  const int on = 1;
  static_cast<void>(::setsockopt(socket, level, option, &on, sizeof on));
}

template <typename Name>
NetworkAddress addressOf(int socket, Name name) {
  SocketAddress address;
  address.length = sizeof address.storage;
  if (socket < 0 || name(socket, address.get(), &address.length) != 0) return {};
  return toNetworkAddress(address);
}

}  // namespace

TcpChannel::~TcpChannel() {
  close(false);
}

void TcpChannel::adopt(int socket) {
  close(false);
  socket_ = socket;
  turnOn(socket_, IPPROTO_TCP, TCP_NODELAY);
}

ErrorCode TcpChannel::read(void* buffer, std::size_t size, std::size_t& got) {
  got = 0;
  if (socket_ < 0 || size == 0) return kSocketInvalid;
  for (;;) {
    const ssize_t count = ::recv(socket_, buffer, size, 0);
    if (count >= 0) {
      got = static_cast<std::size_t>(count);
      return kNoError;
    }
    if (errno != EINTR) return socketError(errno);
  }
}

ErrorCode TcpChannel::write(const void* bytes, std::size_t size, std::size_t& taken) {
  taken = 0;
  if (socket_ < 0) return kSocketInvalid;
  for (;;) {
    const ssize_t count = ::send(socket_, bytes, size, MSG_NOSIGNAL);
    if (count >= 0) {
      taken = static_cast<std::size_t>(count);
      return kNoError;
    }
    if (errno != EINTR) return socketError(errno);
  }
}

void TcpChannel::endWriting() {
  if (socket_ >= 0) static_cast<void>(::shutdown(socket_, SHUT_WR));
}

void TcpChannel::close(bool dropAtOnce) {
  if (socket_ < 0) return;
  if (dropAtOnce) makeLingerZero(socket_);
  ::close(std::exchange(socket_, -1));
}

NetworkAddress TcpChannel::localAddress() const {
  return addressOf(socket_, ::getsockname);
}

NetworkAddress TcpChannel::peerAddress() const {
  return addressOf(socket_, ::getpeername);
}

void TcpChannel::dropWhenClosed() {
  if (socket_ >= 0) makeLingerZero(socket_);
}

void TcpChannel::keepAlive() {
  if (socket_ >= 0) turnOn(socket_, SOL_SOCKET, SO_KEEPALIVE);
}

bool TcpChannel::readableNow() const {
  return readyNow(socket_, POLLIN);
}

bool TcpChannel::writableNow() const {
  return readyNow(socket_, POLLOUT);
}

TcpListener::~TcpListener() {
  close();
}

ErrorCode TcpListener::listen(const std::string& ip) {
  close();
  SocketAddress address;
  if (!toSocketAddress(ip, 0, address)) return kSocketInvalid;
  socket_ = ::socket(address.family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (socket_ < 0) return socketError(errno);
  if (::bind(socket_, address.get(), address.length) == 0 && ::listen(socket_, 1) == 0) return kNoError;
  const ErrorCode error = socketError(errno);
  close();
  return error;
}

NetworkAddress TcpListener::address() const {
  return addressOf(socket_, ::getsockname);
}

ErrorCode TcpListener::accept(TcpChannel& channel) {
  if (socket_ < 0) return kSocketInvalid;
  const int taken = ::accept4(socket_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (taken < 0) return errno == ECONNABORTED || errno == EINTR ? kSocketWouldBlock : socketError(errno);
  channel.adopt(taken);
  return kNoError;
}

void TcpListener::close() {
  if (socket_ >= 0) ::close(std::exchange(socket_, -1));
}

}  // namespace tandemize::platform
