// The rows of one ListUnità: what will change at one path. A screen that shows rows keeps one of these a
// path; a screen without windows keeps none.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "shell/Schermo.h"

namespace tandemize {

class ListaUnita {
 public:
  // Adds a row. A key that the list holds already makes no new row: the columns behind the name go over the
  // last row of the list instead, whose key, name and icon stay. Gives the index of the row that was written.
  std::size_t Aggiungi(const RigaUnita& riga);
  void Svuota();

  [[nodiscard]] std::size_t Righe() const { return righe_.size(); }
  [[nodiscard]] const RigaUnita& Riga(std::size_t i) const { return righe_[i]; }

 private:
  std::vector<RigaUnita> righe_;
  std::unordered_set<std::string> chiavi_;
};

}  // namespace tandemize
