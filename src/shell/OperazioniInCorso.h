// What the main window has to know of operations before it lets go of the program or of the profile.
#pragma once

#include <string>

namespace tandemize {

// Name of the form whose stop question stands for the operation that goes on now; empty when none does.
// `runDelDialogo`: the loaded FrmBackupChoice runs; a dialog that only waits for its user is no operation.
[[nodiscard]] std::string OperazioneDaFermare(bool runDelDialogo);

// Asks whether to stop the operation that goes on. True if none does, or it is stopped and ends by itself.
[[nodiscard]] bool FermaOperazione(bool runDelDialogo);

// Stops what goes on without a question, and whatever waits with events: the program ends.
void FermaTutto(bool runDelDialogo);

}  // namespace tandemize
