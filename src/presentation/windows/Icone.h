// The program's pictures, drawn from lines and curves, so that they are sharp at every size and scale.
// Disabled pictures are drawn pale.
#pragma once

#include <QIcon>

namespace tandemize {

[[nodiscard]] QIcon IconaProgramma();
// What flashes in the notification area during a timed run, in turn with the program's icon.
[[nodiscard]] QIcon IconaAnimazione();

// The picture of `ToolBar2(bottone)`: 0 synchronise, 1 back up, 2 settings, 3 log file, 4 log window, 5 exit.
// Of any other number there is none: a null icon.
[[nodiscard]] QIcon IconaBarra(int bottone);

// The picture of a notice. 0 information, 2 warning, 4 retry in full colour; 1, 3, 5 the same in plain lines.
// Of any other number there is none: a null icon.
[[nodiscard]] QIcon IconaAvviso(int icona);

// The pictures of the message boxes that have none among those of the notices.
[[nodiscard]] QIcon IconaDomanda();
[[nodiscard]] QIcon IconaCritica();

// The button that closes a notice.
[[nodiscard]] QIcon IconaChiusura(bool premuta);

}  // namespace tandemize
