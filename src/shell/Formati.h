// Numbers as text.
#pragma once

#include <string>

namespace tandemize {

// Whole number with its thousands parted, by the language of the settings: "12.345.678" or "12,345,678".
[[nodiscard]] std::string FormattaMigliaia(double numero);

}  // namespace tandemize
