#include "errors/RigheErrore.h"

#include <algorithm>

#include "storage/Percorsi.h"

namespace tandemize {

namespace {

// Position of the last character of a text that is not empty; a byte that is part of none counts as one.
std::size_t UltimoCarattere(std::string_view testo) {
  constexpr std::size_t MassimoByte = 4;
  std::size_t lunghezza = std::min(MassimoByte, testo.size());
  while (lunghezza > 1 && LunghezzaInCaratteri(testo.substr(testo.size() - lunghezza)) != 1) --lunghezza;
  return testo.size() - lunghezza;
}

}  // namespace

std::vector<std::string> RigheErrore(std::string_view Testo) {
  std::vector<std::string> righe;
  if (Testo.empty()) return righe;
  const std::size_t ultimo = UltimoCarattere(Testo);
  std::size_t inizio = 0;
  while (inizio <= ultimo) {
    const std::size_t fine = std::min(Testo.find('\r', inizio), ultimo);
    righe.emplace_back(Testo.substr(inizio, fine - inizio));
    // Each further CR of a row of them.
    inizio = fine + 1;
    for (; inizio <= ultimo && Testo[fine] == '\r' && Testo[inizio] == '\r'; ++inizio) righe.emplace_back();
  }
  return righe;
}

}  // namespace tandemize
