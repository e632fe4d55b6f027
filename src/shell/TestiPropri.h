// Texts of the program that have no number in the language table: told in the language of the settings.
#pragma once

#include <string>
#include <string_view>

#include "shell/Impostazioni.h"

namespace tandemize {

[[nodiscard]] inline std::string InLingua(std::string_view italiano, std::string_view inglese) {
  return std::string(Language == 0 ? italiano : inglese);
}

}  // namespace tandemize
