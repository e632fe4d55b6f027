// Connections of the mail client over the host's network.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "mail/SocketSmtp.h"

namespace tandemize {

// See FabbricaConnessioni.
[[nodiscard]] std::unique_ptr<ConnessioneSmtp> ApriConnessioneTcp(const std::string& host,
                                                                  std::uint16_t porta,
                                                                  const std::function<bool()>& continua,
                                                                  int& errore);

}  // namespace tandemize
