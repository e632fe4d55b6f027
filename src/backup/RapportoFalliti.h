// The list of the files that a run could not copy, for the person who started it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "backup/FrmFileTransfer.h"

namespace tandemize {

// Lines that each end in CR: how many there are, then path and reason of each one that is named. `numero` may
// be larger than `falliti`; a last line then sends the reader to the log.
[[nodiscard]] std::string RapportoFalliti(const std::vector<FileFallito>& falliti, std::size_t numero);

}  // namespace tandemize
