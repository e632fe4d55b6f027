// Which server the sides of a record from server to server lie on. A record holds paths alone, so the diagram
// or the profile is asked whose they are.
#pragma once

#include <cstdint>
#include <string_view>

namespace tandemize {

// True if both sides of a record lie on the server that the session is open to; `modo` is 0 for a backup and
// 1 for a synchronisation. A path that stands below those of two servers counts as one of each, so it is not.
[[nodiscard]] bool SullaSessione(std::uint8_t modo, std::string_view sorgente, std::string_view destinazione);

}  // namespace tandemize
