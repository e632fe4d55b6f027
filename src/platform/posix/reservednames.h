// The names under which files lie that have not got their final name yet.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tandemize::platform {

inline constexpr std::string_view kReservedPrefix = ".~tandemize-";
inline constexpr std::string_view kReservedSuffix = ".part";
inline constexpr std::size_t kReservedNameMaximum = 64;  // bytes, whatever the final name's length

// A name that this process has not used before.
[[nodiscard]] std::string nextReservedName();

// Marks a file as being worked on. True if this process holds it now, or if its file system knows no locks;
// false if another process holds it, as a clean-up does for a moment, or if it is deleted already.
[[nodiscard]] bool holdReservedFile(int descriptor);

}  // namespace tandemize::platform
