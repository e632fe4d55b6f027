// How one name is written in the program and on the host: characters that the program's notation cannot hold.
#pragma once

#include <string>
#include <string_view>

namespace tandemize::platform {

// Append the name in the other notation; nothing is allocated but what `out` needs.
void appendNameToProgram(std::string& out, std::string_view hostName);
void appendNameToHost(std::string& out, std::string_view programName);

// `text` without blanks, tabs and CR at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

// Equality where the letters A to Z count as a to z; all other bytes must be the same.
[[nodiscard]] bool equalIgnoringCase(std::string_view a, std::string_view b);
[[nodiscard]] std::string lowered(std::string_view text);

// The next line of `text`, which is cut down to what stands behind the line's LF.
[[nodiscard]] std::string_view takeLine(std::string_view& text);

}  // namespace tandemize::platform
