// Turning computers off after a run.
#pragma once

#include <string_view>

namespace tandemize {

// Asks that a computer be turned off in `Secondi` seconds, with a message. Without `Esegui` nothing is asked
// for and the answer is true: other computers of a run are listed and left on. With it the answer is false in
// this version, which cannot turn this computer off and says so in the log and on the screen.
bool SpegniPC(std::string_view NomePC, bool Esegui, int Secondi, std::string_view Messaggio);

}  // namespace tandemize
