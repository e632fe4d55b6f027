#include "errors/RicercaLog.h"

#include <algorithm>

#include "storage/Percorsi.h"

namespace tandemize {

std::optional<std::size_t> TrovaNelLog(const std::vector<std::string>& righe, std::string_view testo,
                                       bool esatta) {
  const std::string cercato = esatta ? std::string(testo) : Maiuscolo(testo);
  const auto trovata = std::ranges::find_if(righe, [&cercato, esatta](const std::string& riga) {
    return (esatta ? riga : Maiuscolo(riga)).find(cercato) != std::string::npos;
  });
  if (trovata == righe.end()) return std::nullopt;
  return static_cast<std::size_t>(trovata - righe.begin());
}

}  // namespace tandemize
