// The start of the desktop program.
#pragma once

#include <memory>
#include <string>

#include "platform/appendfile.h"
#include "shell/windows/FrmStartWindow.h"
#include "shell/windows/QtSchermo.h"

namespace tandemize {

// The steps of the start, apart for tests. It holds the program folder and the main window.
class Avvio {
 public:
  explicit Avvio(QtSchermo& schermo);
  ~Avvio();

  // Makes the folder (a host path) ready for this process: fills it if it does not exist, takes it, and runs
  // `Sub_Main`. False, after a box, if the program cannot start: the folder cannot be made or written,
  // another process works on it, or a required file is missing. A setting with a bad value is told, and the
  // start goes on.
  [[nodiscard]] bool Prepara(const std::string& cartella);

  // Makes the main window, and shows it unless the program starts hidden.
  FrmStartWindow& Apri();

  // What the settings want opened behind the main window, and what is to be said of the start.
  void ApriFinestraIniziale();

 private:
  static std::string PercorsoDelProgramma();
  [[nodiscard]] bool PrendiCartella();

  QtSchermo& schermo_;
  platform::FolderLock lucchetto_;
  std::unique_ptr<FrmStartWindow> finestra_;
};

// Runs the desktop program until it ends, and gives its exit status: 0, or 4 when it was refused before its
// main window.
int AvviaDesktop(int argc, char** argv);

}  // namespace tandemize
