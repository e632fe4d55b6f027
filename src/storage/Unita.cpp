#include "storage/Unita.h"

#include <string>

#include "platform/machine.h"
#include "shell/Lingua.h"
#include "shell/Schermo.h"
#include "storage/Percorsi.h"

namespace tandemize {

std::int32_t TipoUnita(std::string_view path) {
  DoEvents();
  if (path.starts_with('/')) return UnitaAssente;
  return static_cast<std::int32_t>(platform::driveKind(path.substr(0, 3)));
}

std::string DescrizioneUnita(std::string_view path) {
  std::int32_t drive = TipoUnita(path), kind = TipoPercorso(path);
  if (kind == PercorsoFtp) return "FTP";
  if (kind == PercorsoLan) return "LAN";
  switch (drive) {
    case UnitaAssente:
      return Messaggio(67);
    case UnitaRimovibile:
      return Messaggio(68);
    case UnitaFissa:
      return Messaggio(69);
    case UnitaRemota:
      return Messaggio(70);
    case UnitaCdRom:
      return Messaggio(71);
    case UnitaRamDisk:
      return Messaggio(72);
    default:
      return {};
  }
}

bool UnitaPronta(std::string_view path) {
  if (platform::driveReady(path.substr(0, 2))) return true;
  if (TipoUnita(path) != UnitaCdRom) return false;
  bool mediumPresent = false;
  VerificaCD(path, mediumPresent);
  return mediumPresent;
}

bool DiscoAssente(std::string_view path) {
  const bool namesDrive = path.size() > 1 && path[1] == ':';
  return (namesDrive || TipoPercorso(path) == PercorsoLan) && !platform::driveReady(path);
}

bool VerificaCD(std::string_view path, bool& mediumPresent) {
  mediumPresent = false;
  platform::DiscState disc = platform::discState(std::string(path.substr(0, 1)) + ":\\");
  if (!disc.opened) return true;
  mediumPresent = disc.present;
  return disc.present && !disc.hasLength;
}

}  // namespace tandemize
