// Which FTP server the profile names for a path. The profile file is asked each time, not the variables.
#include <algorithm>

#include "profile/ModuloProfilo.h"
#include "profile/RigheProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"
#include "storage/Percorsi.h"

namespace tandemize {
namespace {

constexpr std::string_view Segno = " = ";

std::string_view DietroSegno(std::string_view riga) {
  const std::size_t posizione = riga.find(Segno);
  return posizione == std::string_view::npos ? std::string_view{} : riga.substr(posizione + Segno.size());
}

// One contains the other, in their own case, or both are equal in any case. So a path answers for those below
// and above it.
bool Corrisponde(std::string_view testo, std::string_view path) {
  return testo.find(path) != std::string_view::npos || path.find(testo) != std::string_view::npos ||
         Maiuscolo(testo) == Maiuscolo(path);
}

// The line that holds the server of a matching line: for an object the next description, for a
// synchronisation path the one of its number.
std::string ChiaveDelServer(bool sincronizzazione, std::string_view riga) {
  if (!sincronizzazione) return std::string(ChiaveServerOggetto.Testo());
  std::string_view cifre = ChiavePercorso.Dietro(riga);
  cifre = cifre.substr(
      0, static_cast<std::size_t>(std::find_if_not(cifre.begin(), cifre.end(), Cifra) - cifre.begin()));
  cifre.remove_prefix(std::min(cifre.find_first_not_of('0'), cifre.size()));
  return std::string(PrefissoServer) + (cifre.empty() ? "0" : std::string(cifre.substr(0, 20)));
}

// The first line from the reader's place on that holds the key; its text behind " = ".
std::string_view CercaAvanti(LettoreRighe lettore, std::string_view testoChiave) {
  const ChiaveProfilo chiave(testoChiave);
  std::string_view riga;
  while (lettore.Leggi(riga))
    if (chiave.In(riga)) return DietroSegno(riga);
  return {};
}

}  // namespace

std::uint8_t IndiceServerDaPercorso(bool sincronizzazione, std::string_view path) {
  std::string testo;
  if (LeggiTestoProfilo(FileProfilo, testo) != platform::kNoError) return 0;
  const ChiaveProfilo& chiave = sincronizzazione ? ChiavePercorso : ChiavePercorsoOggetto;
  LettoreRighe lettore(testo), dopoUltima(testo);
  std::string_view riga, ultima;
  bool trovata = false;
  while (lettore.Leggi(riga)) {
    if (!chiave.In(riga) || riga.find(Segno) == std::string_view::npos ||
        !Corrisponde(DietroSegno(riga), path))
      continue;
    // A later match replaces an earlier one, so only the last one's server is looked for.
    trovata = true;
    ultima = riga;
    dopoUltima = lettore;
  }
  return trovata
             ? IndiceServerDaDescrizione(CercaAvanti(dopoUltima, ChiaveDelServer(sincronizzazione, ultima)))
             : std::uint8_t{0};
}

// The number is matched as text: number 1 is found in the lines of 10 to 19 too, or of 11, 21 and so on, and
// the last line wins.
std::uint8_t IndiceServerDaNumero(bool sincronizzazione, std::int16_t numero) {
  std::string testo;
  if (LeggiTestoProfilo(FileProfilo, testo) != platform::kNoError) return 0;
  const std::string testoChiave = sincronizzazione
                                      ? std::string(PrefissoServer) + std::to_string(numero)
                                      : std::to_string(numero) + std::string(ChiaveServerOggetto.Testo());
  const ChiaveProfilo chiave(testoChiave);
  LettoreRighe lettore(testo);
  std::string_view riga, descrizione;
  while (lettore.Leggi(riga))
    if (chiave.In(riga)) descrizione = DietroSegno(riga);
  return IndiceServerDaDescrizione(descrizione);
}

std::uint8_t IndiceServerDaDescrizione(std::string_view descrizione) {
  const std::size_t fine =
      std::min<std::size_t>(FtpServers.empty() ? 0 : FtpServers.size() - 1, UINT8_MAX + 1);
  std::size_t indice = 0;
  for (std::size_t i = 0; i < fine; ++i)
    if (FtpServers[i].Ftp_Description == descrizione) indice = i;
  return static_cast<std::uint8_t>(indice);
}

}  // namespace tandemize
