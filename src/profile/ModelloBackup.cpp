#include "profile/ModelloBackup.h"

#include <algorithm>
#include <unordered_set>

namespace tandemize {

std::vector<OggettoBackup> ArrayOggetti(1);

void AzzeraArrayOggetti() {
  ArrayOggetti.assign(1, OggettoBackup{});
}

std::uint8_t RestituisciIndicePerNome(std::string_view descrizione) {
  const std::size_t ultimo = std::min<std::size_t>(UltimoOggetto(), UINT8_MAX);
  for (std::size_t k = 1; k <= ultimo; ++k)
    if (ArrayOggetti[k].BackDescrizione == descrizione) return static_cast<std::uint8_t>(k);
  return 0;
}

namespace {

// An object without a link holds one empty entry, so an empty description is nobody's name; nor is the mark
// of a deleted object.
bool NominaSorgente(const OggettoBackup& oggetto, std::string_view descrizione) {
  if (descrizione.empty() || descrizione == OggettoEliminato) return false;
  return std::find(oggetto.BackLinkTo.begin(), oggetto.BackLinkTo.end(), descrizione) !=
         oggetto.BackLinkTo.end();
}

}  // namespace

std::vector<std::string> RestituisciUnitàDiDestinazione(std::string_view descrizioneSorgente) {
  std::vector<std::string> percorsi;
  std::unordered_set<std::string_view> presi;
  for (std::size_t k = 1; k < ArrayOggetti.size(); ++k) {
    const OggettoBackup& oggetto = ArrayOggetti[k];
    const bool partecipa =
        oggetto.BackTipoTrasferimento == TipoDestinazione && !oggetto.BackIgnorato && oggetto.Vivo();
    if (!partecipa || !NominaSorgente(oggetto, descrizioneSorgente)) continue;
    // Two objects on one path would have the second copy overwrite the first.
    if (presi.insert(oggetto.BackPath).second) percorsi.push_back(oggetto.BackPath);
  }
  return percorsi;
}

}  // namespace tandemize
