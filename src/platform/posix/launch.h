// Programs of the host that are started and then live on by themselves.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/errors.h"

namespace tandemize::platform {

// Host path of a program in the folders of `$PATH`, empty if there is none. Relative folders are passed over:
// what is run must not depend on where the program was started.
[[nodiscard]] std::string findProgram(std::string_view name);

// Runs a program (host path) with these arguments, and without a shell, an open file, a terminal or a parent
// that has to wait for it; its standard input and output are /dev/null. Returns as soon as the program runs,
// or with the reason why it does not.
[[nodiscard]] ErrorCode launchDetached(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace tandemize::platform
