// Cutting text by characters.
#pragma once

#include <cstddef>
#include <string_view>

namespace tandemize {

// The text behind its first `caratteri` characters, empty if it has no more. Bytes that continue a character
// are not counted.
[[nodiscard]] inline std::string_view DopoCaratteri(std::string_view testo, std::size_t caratteri) {
  std::size_t i = 0;
  for (; i < testo.size() && caratteri > 0; --caratteri) {
    ++i;
    while (i < testo.size() && (static_cast<unsigned char>(testo[i]) & 0xC0U) == 0x80U) ++i;
  }
  return testo.substr(i);
}

}  // namespace tandemize
