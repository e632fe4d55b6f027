// The lines of a one-off error text, as the error list shows them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

// Cuts a text at CR. A piece ends before each CR and before the text's last character, and each CR behind a
// CR is an empty line. So the last character of a text that does not end in CR is not shown; an empty text
// has no lines.
[[nodiscard]] std::vector<std::string> RigheErrore(std::string_view Testo);

}  // namespace tandemize
