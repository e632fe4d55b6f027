// Addresses and failures of the host's sockets, told as the program's.
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include "platform/sockets.h"

namespace tandemize::platform {

// One of the host's addresses, of either family.
struct SocketAddress {
  sockaddr_storage storage{};
  socklen_t length = 0;

  [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&storage); }
  [[nodiscard]] sockaddr* get() { return reinterpret_cast<sockaddr*>(&storage); }
  [[nodiscard]] int family() const { return storage.ss_family; }
};

[[nodiscard]] NetworkAddress toNetworkAddress(const SocketAddress& address);

// False if `ip` is no address in numbers.
[[nodiscard]] bool toSocketAddress(const std::string& ip, std::uint16_t port, SocketAddress& address);

// The number by which sockets know an `errno` value.
[[nodiscard]] ErrorCode socketError(int number);

// From now on closing the socket drops the connection at once.
void makeLingerZero(int socket);

}  // namespace tandemize::platform
