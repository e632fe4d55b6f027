// The search of the log window.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

// The first line that holds `testo` anywhere; none if there is no such line. `esatta` tells capital and small
// letters apart, accented ones too. Every line holds the empty text.
[[nodiscard]] std::optional<std::size_t> TrovaNelLog(const std::vector<std::string>& righe,
                                                     std::string_view testo, bool esatta);

}  // namespace tandemize
