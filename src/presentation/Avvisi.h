// Passing notices and waits.
#pragma once

#include <string>
#include <string_view>

namespace tandemize {

extern std::string
    BalloonCorrente;  // the text of the notice up now; written here and by the screen when it closes

// Shows a notice. `SoloNascosta` chooses the one state in which it shows: true while the program is hidden,
// false while it is visible. The same text is not shown twice while it is up. `Attesa` waits, with events,
// until the notice before it has closed; otherwise that one is closed. `Secondi` 0: it stays until it is
// closed.
void MostraBalloon(std::string_view NomeForm, std::string_view Testo, std::string_view Titolo, int Icona,
                   int Secondi, bool Attesa, bool SoloNascosta);

// Waits. `ConEventi` lets events run meanwhile, at least once; a stop that is requested during the wait then
// ends it.
void Attendi(double Secondi, bool ConEventi);

}  // namespace tandemize
