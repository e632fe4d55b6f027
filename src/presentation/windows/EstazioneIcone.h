// Pictures of files by their kind, as the desktop shows them.
#pragma once

#include <QIcon>
#include <QPixmap>
#include <string_view>

namespace tandemize {

// The picture of a file, `Dimensione` pixels wide and high at 100 %. Files ".ICO" and ".EXE" have one of
// their own, all others share that of their extension, which is asked for once. A file need not exist.
[[nodiscard]] QPixmap IconaFile(std::string_view Percorso, int Dimensione);

// The name under which a file's picture is kept: its extension in capitals, the whole path where it has a
// picture of its own, a mark for a file without a name.
[[nodiscard]] QString ChiaveIcona(std::string_view Percorso);

// How many pictures the desktop was asked for so far.
[[nodiscard]] int IconeChieste();

}  // namespace tandemize
