// The dialogs in which the user chooses a folder or a file. Paths come and go in the program's notation.
//
// Each dialog is named as its function. It belongs to `owner`, or to the main window if that is null.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class QWidget;

namespace tandemize {

// What a dialog offers: "All Files" and "*.*". A mask may name several endings, parted by blanks.
struct FiltroFile {
  std::string descrizione = "All Files";
  std::string maschera = "*.*";
};

// A folder that is there; empty if the user gave up. `iniziale`: where the dialog begins, if it is there.
[[nodiscard]] std::string SfogliaCartella(QWidget* owner, std::string_view iniziale = {});

// A name to save under, "Save File Profile"; empty if the user gave up. The name is what the user typed: no
// ending is put behind it, and whether the file is there already is the caller's question.
[[nodiscard]] std::string ScegliFileSalvataggio(QWidget* owner, std::string_view cartella,
                                                std::string_view nomePredefinito, const FiltroFile& filtro);

// One or several files that are there, "Select File/s"; none if the user gave up. `cartella`: where the
// dialog begins, if it is there.
[[nodiscard]] std::vector<std::string> ScegliFileApertura(QWidget* owner, const FiltroFile& filtro = {},
                                                          std::string_view cartella = {});

}  // namespace tandemize
