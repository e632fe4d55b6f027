// Writing the settings file line by line.
#pragma once

#include <string>
#include <string_view>

namespace tandemize {

// Adds "key = value" and CR LF. A line end inside the value, as a pasted text may hold, becomes a blank: it
// would begin a line of its own.
void AggiungiRiga(std::string& testo, std::string_view chiave, std::string_view valore);

}  // namespace tandemize
