// Masks of names: "*" for any text, "?" for one character.
#pragma once

#include <string_view>

namespace tandemize::platform {

[[nodiscard]] bool isMask(std::string_view name);

// True for the masks that every name fits, "*.*" and "*".
[[nodiscard]] bool fitsEverything(std::string_view mask);

// Compares by characters of UTF-8 and with regard to letter case. A byte that is no UTF-8 counts as one
// character.
[[nodiscard]] bool fitsMask(std::string_view name, std::string_view mask);

}  // namespace tandemize::platform
