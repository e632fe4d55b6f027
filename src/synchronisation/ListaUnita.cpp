#include "synchronisation/ListaUnita.h"

namespace tandemize {

std::size_t ListaUnita::Aggiungi(const RigaUnita& riga) {
  if (chiavi_.insert(riga.chiave).second) {
    righe_.push_back(riga);
    return righe_.size() - 1;
  }
  RigaUnita& ultima = righe_.back();
  const std::string chiave = ultima.chiave, nome = ultima.nome;
  ultima = riga;
  ultima.chiave = chiave;
  ultima.nome = nome;
  return righe_.size() - 1;
}

void ListaUnita::Svuota() {
  righe_.clear();
  chiavi_.clear();
}

}  // namespace tandemize
