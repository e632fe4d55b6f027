#include "storage/ModuloArray.h"

#include <algorithm>

namespace tandemize {

std::int32_t UltimaColonnaPiena(const TabellaTesti& tabella, std::size_t riga) {
  for (std::size_t c = 0; c < tabella.size(); ++c)
    if (riga >= tabella[c].size() || tabella[c][riga].empty()) return static_cast<std::int32_t>(c) - 1;
  return 0;
}

std::int32_t PrimoVuoto(const std::vector<std::string>& elenco) {
  const auto vuoto = std::find(elenco.begin(), elenco.end(), std::string{});
  return vuoto == elenco.end() ? 0 : static_cast<std::int32_t>(vuoto - elenco.begin());
}

std::int32_t PrimoVuoto(const TabellaTesti& tabella) {
  const auto vuota = [](const std::vector<std::string>& colonna) {
    return colonna.empty() || colonna[0].empty();
  };
  const auto prima = std::find_if(tabella.begin(), tabella.end(), vuota);
  return prima == tabella.end() ? 0 : static_cast<std::int32_t>(prima - tabella.begin());
}

void SostituisciValore(std::vector<std::string>& elenco, std::string_view vecchio, std::string_view nuovo) {
  // Either text may be an element of the list itself, which changes on the way.
  const std::string daTogliere(vecchio), daMettere(nuovo);
  if (daTogliere != daMettere) std::replace(elenco.begin(), elenco.end(), daTogliere, daMettere);
}

void AggiungiElemento(std::vector<std::string>& elenco) {
  elenco.emplace_back();
}

std::int32_t CercaValore(const std::vector<std::string>& elenco, std::string_view valore, bool parziale) {
  for (std::size_t i = elenco.size(); i-- > 0;) {
    const bool trovato = parziale ? elenco[i].find(valore) != std::string::npos : elenco[i] == valore;
    if (trovato) return static_cast<std::int32_t>(i);
  }
  return -1;
}

}  // namespace tandemize
