// The question before a big attachment is read.
#pragma once

#include <cstdint>

namespace tandemize {

inline constexpr std::uint64_t AllegatoGrande = 2'097'152;  // bytes; above this there is a question

// True if a file of that size is to be sent. The answer "Cancel" sends it and asks never again: the value
// "Too big" of the program's key in `Registry.ini` then reads "True".
[[nodiscard]] bool AllegatoAccettato(std::uint64_t byte);

// Forgets that nothing is to be asked, as far as only memory knows it; for tests.
void AzzeraDomandaAllegato();

}  // namespace tandemize
