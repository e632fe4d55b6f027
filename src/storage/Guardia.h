// The loop around a call that may fail for a while: again as often as the retry rules say, with a notice when
// it then goes through.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize {

// What a call on the FTP session answers while no session is open.
inline constexpr platform::ErrorCode ErroreSessioneChiusa = 12018;

// False if the call was given up, which has then been reported.
[[nodiscard]] bool ConRiprova(const std::function<platform::ErrorCode()>& chiamata, std::string_view routine,
                              const std::string& dettaglio);

// A detail line of a report: the label, then the path between "< " and " >".
[[nodiscard]] std::string DettaglioPercorso(std::string_view etichetta, std::string_view path);

}  // namespace tandemize
