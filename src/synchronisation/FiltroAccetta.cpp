#include "synchronisation/FiltroAccetta.h"

#include <algorithm>
#include <string>

#include "storage/Percorsi.h"

namespace tandemize {

namespace {

bool UnaVoceFinisceCon(std::string_view voci, std::string_view estensione) {
  while (!voci.empty()) {
    const std::size_t fine = voci.find('|');
    if (fine == std::string_view::npos) return false;  // an entry counts once its bar has been written
    if (voci.substr(0, fine).ends_with(estensione)) return true;
    voci.remove_prefix(fine + 1);
  }
  return false;
}

}  // namespace

bool FiltroAccetta(std::string_view filtro, std::string_view nome) {
  const bool include = filtro.starts_with('+');
  const std::string maiuscolo = Maiuscolo(filtro);
  const std::string estensione = Maiuscolo(EstensioneFile(nome));
  const std::string_view voci =
      std::string_view(maiuscolo).substr(std::min<std::size_t>(2, maiuscolo.size()));
  return UnaVoceFinisceCon(voci, estensione) ? include : !include;
}

}  // namespace tandemize
