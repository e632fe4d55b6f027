// The desktop's part in the program: opening files, showing their properties, shortcuts.
//
// Each call gives the system's number for a failure and shows nothing by itself.
#pragma once

#include <string_view>

#include "platform/desktop.h"
#include "platform/errors.h"

namespace tandemize {

// Opens a file or folder, such as the log, with the user's own program for it. Errors as
// platform::openWithDesktop.
[[nodiscard]] platform::ErrorCode ApriFile(std::string_view percorso);

// Shows the properties of a file or folder. Errors as platform::showProperties.
[[nodiscard]] platform::ErrorCode ProprietaFile(std::string_view percorso);

using PostoCollegamento = platform::ShortcutPlace;

// Makes a shortcut to `destinazione` in a place of the user's, or in a `sottocartella` of it, which is made
// if it is missing; an empty one is the place itself. `tasti` (a key combination) and `stileFinestra` (how
// the window opens) have no effect: a desktop entry says neither. Errors as platform::createShortcut.
[[nodiscard]] platform::ErrorCode CreaCollegamento(std::string_view nome, std::string_view destinazione,
                                                   PostoCollegamento posto, std::string_view sottocartella,
                                                   std::string_view tasti, int stileFinestra);

// Removes the shortcut of that name from those that start with the computer; success if there is none.
[[nodiscard]] platform::ErrorCode EliminaCollegamentoAvvio(std::string_view nome);

// Brings the start with the computer into line with StartUp_PC_Mode: unless that is 0 `programma` (program
// path of the program's own file) gets a shortcut of its name, otherwise the shortcut goes.
[[nodiscard]] platform::ErrorCode AggiornaCollegamentoAvvio(std::string_view programma);

}  // namespace tandemize
