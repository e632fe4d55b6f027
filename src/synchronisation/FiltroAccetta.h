// Filters of file names.
#pragma once

#include <string_view>

namespace tandemize {

// Whether a file of that bare name is kept. A filter is "+" (include) or "-" (exclude), "|", then entries
// each ended by "|". Only the end of an entry matters: it is compared with the name's extension, dot
// included, in any letter case; a name without a dot counts as a whole. The star is never interpreted.
[[nodiscard]] bool FiltroAccetta(std::string_view filtro, std::string_view nome);

}  // namespace tandemize
