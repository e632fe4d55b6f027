// What one reading of the settings file carries along.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "shell/ControlliGlobalSetting.h"
#include "shell/Impostazioni.h"

namespace tandemize {

struct LetturaGlobale {
  std::string percorso;
  bool fermaAlPrimo, soloVariabili;
  bool soloProva = false;  // nothing but the reading itself: variables and lists stay as they are
  bool cambiato = false;
  bool qualcosa = false;  // a key was found: the file is one of settings
  std::size_t riga = 0;   // number of the line at hand, from 1
  std::vector<ServerFtp> server = std::vector<ServerFtp>(1);
  std::vector<TimerAvanzato> timer = std::vector<TimerAvanzato>(1);
  std::vector<RigaTimer> righeTimer{};

  // Notes a difference; true if the reading is to stop at it.
  [[nodiscard]] bool Differenza() {
    cambiato = true;
    return fermaAlPrimo;
  }
};

// The value of a key's line: the text behind the key and " = ", without the blanks at its start.
[[nodiscard]] std::string_view ValoreDiRiga(std::string_view riga, std::string_view chiave);

// The message on a value that does not convert: file, line and key. The value is left out, it may be part of
// a password.
[[nodiscard]] std::string ErroreDiRiga(const LetturaGlobale& lettura, std::string_view chiave);

}  // namespace tandemize
