#include "platform/posix/socketaddress.h"

#include <netdb.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <string>

#include "platform/posix/errno.h"

namespace tandemize::platform {

namespace {

bool toPort(std::string_view text, std::uint16_t& port) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  return error == std::errc() && end == text.data() + text.size() && port != 0;
}

}  // namespace

NetworkAddress splitHostAndPort(std::string_view text, std::uint16_t defaultPort) {
  NetworkAddress whole{std::string(text), defaultPort};
  if (text.size() > 2 && text.front() == '[') {
    const std::size_t end = text.find(']');
    if (end == std::string_view::npos) return whole;
    NetworkAddress inside{std::string(text.substr(1, end - 1)), defaultPort};
    const std::string_view rest = text.substr(end + 1);
    if (rest.empty()) return inside;
    return rest[0] == ':' && toPort(rest.substr(1), inside.port) ? inside : whole;
  }
  const std::size_t colon = text.find(':');
  // Several colons outside brackets belong to an address.
  if (colon == std::string_view::npos || colon == 0 || text.find(':', colon + 1) != std::string_view::npos)
    return whole;
  std::uint16_t port = 0;
  return toPort(text.substr(colon + 1), port) ? NetworkAddress{std::string(text.substr(0, colon)), port}
                                              : whole;
}

NetworkAddress toNetworkAddress(const SocketAddress& address) {
  std::array<char, NI_MAXHOST> host{};
  std::array<char, NI_MAXSERV> port{};
  if (::getnameinfo(address.get(), address.length, host.data(), host.size(), port.data(), port.size(),
                    NI_NUMERICHOST | NI_NUMERICSERV) != 0)
    return {};
  NetworkAddress result{host.data(), 0};
  std::from_chars(port.data(), port.data() + std::strlen(port.data()), result.port);
  return result;
}

bool toSocketAddress(const std::string& ip, std::uint16_t port, SocketAddress& address) {
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (::getaddrinfo(ip.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) return false;
  std::memcpy(&address.storage, found->ai_addr, found->ai_addrlen);
  address.length = found->ai_addrlen;
  ::freeaddrinfo(found);
  return true;
}

ErrorCode socketError(int number) {
  switch (number) {
    case 0:
      return kNoError;
    case EINTR:
      return 10004;
    case EBADF:
      return 10009;
    case EACCES:
    case EPERM:
      return 10013;
    case EFAULT:
      return 10014;
    case EINVAL:
      return kSocketInvalid;
    case EMFILE:
    case ENFILE:
      return 10024;
    case EAGAIN:
      return kSocketWouldBlock;
    case EINPROGRESS:
      return 10036;
    case EALREADY:
      return 10037;
    case ENOTSOCK:
      return 10038;
    case EDESTADDRREQ:
      return 10039;
    case EMSGSIZE:
      return 10040;
    case EPROTOTYPE:
      return 10041;
    case ENOPROTOOPT:
      return 10042;
    case EPROTONOSUPPORT:
      return 10043;
    case ESOCKTNOSUPPORT:
      return 10044;
    case EOPNOTSUPP:
      return 10045;
    case EPFNOSUPPORT:
      return 10046;
    case EAFNOSUPPORT:
      return 10047;
    case EADDRINUSE:
      return 10048;
    case EADDRNOTAVAIL:
      return 10049;
    case ENETDOWN:
      return 10050;
    case ENETUNREACH:
      return kSocketUnreachable;
    case ENETRESET:
      return 10052;
    case ECONNABORTED:
      return kSocketAborted;
    // Writing to a connection that the other side has closed and reset is EPIPE here.
    case EPIPE:
    case ECONNRESET:
      return kSocketReset;
    case ENOBUFS:
    case ENOMEM:
      return 10055;
    case EISCONN:
      return 10056;
    case ENOTCONN:
      return 10057;
    case ESHUTDOWN:
      return 10058;
    case ETIMEDOUT:
      return kSocketTimedOut;
    case ECONNREFUSED:
      return kSocketRefused;
    case ELOOP:
      return 10062;
    case ENAMETOOLONG:
      return 10063;
    case EHOSTDOWN:
      return 10064;
    case EHOSTUNREACH:
      return 10065;
    default:
      return fromErrno(number);
  }
}

void makeLingerZero(int socket) {
  linger none{};
  none.l_onoff = 1;
  none.l_linger = 0;
  static_cast<void>(::setsockopt(socket, SOL_SOCKET, SO_LINGER, &none, sizeof none));
}

}  // namespace tandemize::platform
