// The table of numbered messages, one file a language.
#pragma once

#include <array>
#include <string>

namespace tandemize {

inline constexpr int UltimoMessaggio = 1000;

extern std::array<std::string, UltimoMessaggio + 1> Messaggi;  // entry 0 stays empty; written by CaricaLingua
extern std::string MessaggioRiprova;  // text of the retry notice; written by CaricaLingua

enum class EsitoLingua { Caricata, FileMancante, TroppeRighe };

// Fills `Messaggi` from the file of `Language` in the program folder; the case of the file's name does not
// matter. A missing file, as with a `Language` that has none, and a file of more than 1000 lines (a bounds
// error of the table) show a critical box and end the program through the screen.
EsitoLingua CaricaLingua();

// The text of a number; empty for an unused one. A number outside 0 to 1000 is a fault of the program: a box
// tells it and the program ends.
[[nodiscard]] const std::string& Messaggio(int numero);

// All texts empty again, for tests.
void AzzeraLingua();

}  // namespace tandemize
