#include "platform/posix/namemask.h"

namespace tandemize::platform {
namespace {

std::size_t characterLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
  if (length > text.size()) return 1;
  for (std::size_t i = 1; i < length; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U) return 1;
  }
  return length;
}

}  // namespace

bool isMask(std::string_view name) {
  return name.find_first_of("*?") != std::string_view::npos;
}

bool fitsEverything(std::string_view mask) {
  return mask == "*.*" || mask == "*";
}

bool fitsMask(std::string_view name, std::string_view mask) {
  if (fitsEverything(mask)) return true;
  // After a mismatch the last star takes one character more; earlier stars need never be tried again.
  bool starSeen = false;
  std::string_view nameAfterStar, maskAfterStar;
  while (!name.empty()) {
    if (!mask.empty() && mask.front() == '*') {
      mask.remove_prefix(1);
      starSeen = true;
      nameAfterStar = name;
      maskAfterStar = mask;
    } else if (!mask.empty() && mask.front() == '?') {
      mask.remove_prefix(1);
      name.remove_prefix(characterLength(name));
    } else if (!mask.empty() && mask.front() == name.front()) {
      mask.remove_prefix(1);
      name.remove_prefix(1);
    } else if (starSeen) {
      nameAfterStar.remove_prefix(characterLength(nameAfterStar));
      name = nameAfterStar;
      mask = maskAfterStar;
    } else {
      return false;
    }
  }
  return mask.find_first_not_of('*') == std::string_view::npos;
}

}  // namespace tandemize::platform
