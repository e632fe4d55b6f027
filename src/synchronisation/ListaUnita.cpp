#include "synchronisation/ListaUnita.h"

namespace tandemize {

std::size_t ListaUnita::Aggiungi(const RigaUnita& riga) {
  if (chiavi_.insert(riga.chiave).second) {
    righe_.push_back(riga);
    return righe_.size() - 1;
  }
  RigaUnita& ultima = righe_.back();
  ultima.data = riga.data;
  ultima.dimensione = riga.dimensione;
  ultima.attributi = riga.attributi;
  ultima.stato = riga.stato;
  ultima.etichettaStato = riga.etichettaStato;
  return righe_.size() - 1;
}

void ListaUnita::Svuota() {
  righe_.clear();
  chiavi_.clear();
}

}  // namespace tandemize
