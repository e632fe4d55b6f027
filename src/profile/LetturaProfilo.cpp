// LeggiFileProfilo: a profile and its companion file into the variables.
#include <algorithm>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "platform/files.h"
#include "profile/LettoreProfilo.h"
#include "profile/ModuloProfilo.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"

namespace tandemize {
namespace {

void AzzeraValori() {
  AzzeraArrayOggetti();
  Backup_Path.assign(1, "");
  Backup_FTP.assign(1, "");
  FilterIgnoreInvalidPath = 0;
  FilterBackup.clear();
}

// Cuts the list of paths at its first empty one. Reading leaves a spare, so there always is one.
void TagliaPercorsi() {
  std::size_t primoVuoto = 0;
  while (primoVuoto < Backup_Path.size() && !Backup_Path[primoVuoto].empty()) ++primoVuoto;
  if (primoVuoto == 0) {
    Backup_Path.assign(2, "");
    // The list of servers stays, but no path is without an entry there.
    Backup_FTP.resize(std::max(Backup_FTP.size(), Backup_Path.size()));
  } else {
    Backup_Path.resize(primoVuoto);
    Backup_FTP.resize(primoVuoto);
  }
  PathCount = static_cast<std::int32_t>(Backup_Path.size());
}

// After a failure the lists are as long as what was read, and the count of the read before must not lead past
// their ends.
void LimitaPathCount() {
  const auto voci = static_cast<std::int32_t>(std::min(Backup_Path.size(), Backup_FTP.size()));
  PathCount = std::min(PathCount, voci);
}

// What the error trap reports: two records, the second one with what a user needs to find the place. Always
// false.
bool Segnala(const std::string& path, std::int32_t numero, std::size_t riga, const std::string& motivo) {
  ScriviLog("Errore N° " + std::to_string(numero) + " riga " + std::to_string(riga) +
                " nella routine LeggiFileProfilo",
            RigaNormale);
  ScriviLog(InLingua("Profilo '", "Profile '") + path + "': " + motivo, RigaNormale);
  schermo().MousePointer(Puntatore::Normale);
  return false;
}

bool SegnalaFile(const std::string& path, platform::ErrorCode codice) {
  const std::int32_t numero =
      codice == platform::kFileTooLarge ? ErroreMemoria : ErroreRuntimeDaSistema(codice);
  return Segnala(path, numero, 0, platform::systemErrorText(codice));
}

bool SegnalaRiga(const std::string& path, const LettoreProfilo& lettore) {
  return Segnala(path, lettore.Errore(), lettore.Riga(),
                 InLingua("riga ", "line ") + std::to_string(lettore.Riga()) +
                     InLingua(", chiave '", ", key '") + std::string(lettore.Chiave()) +
                     "': " + TestoErroreRuntime(lettore.Errore()));
}

bool LeggiSezioni(const std::string& path) {
  std::string testo;
  if (const platform::ErrorCode codice = LeggiTestoProfilo(path, testo); codice != platform::kNoError)
    return SegnalaFile(path, codice);
  LettoreProfilo lettore(testo);
  return lettore.LeggiProfilo() || SegnalaRiga(path, lettore);
}

// A companion file that is not there is none; one that cannot be looked at or read is a failure.
bool LeggiFileCompagno(const std::string& path) {
  platform::FileStatus stato;
  const platform::ErrorCode cercato = platform::query(path, stato);
  if (cercato == platform::kFileNotFound || cercato == platform::kPathNotFound) return true;
  if (cercato != platform::kNoError) return SegnalaFile(path, cercato);
  if ((stato.attributes & platform::kDirectory) != 0) return true;
  std::string testo;
  if (const platform::ErrorCode codice = LeggiTestoProfilo(path, testo); codice != platform::kNoError)
    return SegnalaFile(path, codice);
  LettoreProfilo lettore(testo);
  return lettore.LeggiCompagno() || SegnalaRiga(path, lettore);
}

}  // namespace

bool LeggiFileProfilo(const std::string& path) {
  AzzeraValori();
  if (!LeggiSezioni(path)) {
    LimitaPathCount();
    return false;
  }
  TagliaPercorsi();
  return LeggiFileCompagno(RestituisciNomeFiltro(path));
}

}  // namespace tandemize
