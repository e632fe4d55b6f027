// The subfolder of a full run and the file that remembers it.

#include "backup/FrmBackupChoice.h"
#include "platform/machine.h"
#include "platform/newfile.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

constexpr std::size_t CaratteriDelBlocco = 260;

std::string PercorsoUltimoBackup() {
  return PercorsoApplicazione + "LastBackup.dat";
}

bool ÈNomeSemplice(std::string_view nome) {
  return nome != "." && nome != ".." && nome.find_first_of("\\/:") == std::string_view::npos;
}

}  // namespace

std::string NomeCartellaBackup(std::int64_t secondiUtc) {
  const platform::CivilTime ora = platform::localTime(secondiUtc);
  return "Backup__" + std::to_string(ora.year) + "_" + std::to_string(ora.month) + "_" +
         std::to_string(ora.day) + "__" + std::to_string(ora.hour) + "_" + std::to_string(ora.minute);
}

// The name goes over the start of what the file holds: a shorter name leaves the tail of a longer one, which
// is read back with it. That belongs to the format, since existing files are read so.
bool ScriviUltimoBackup(std::string_view nome) {
  std::string contenuto;
  const platform::ErrorCode errore = platform::readFile(PercorsoUltimoBackup(), contenuto);
  if (errore != platform::kNoError && errore != platform::kFileNotFound) return false;
  contenuto.replace(0, nome.size(), nome);
  return platform::replaceFile(PercorsoUltimoBackup(), contenuto) == platform::kNoError;
}

std::string LeggiUltimoBackup() {
  std::string contenuto;
  if (platform::readFile(PercorsoUltimoBackup(), contenuto) != platform::kNoError) return {};
  const std::string nome = TagliaAlNul(contenuto.substr(0, CaratteriDelBlocco));
  // A damaged file must not lead out of the destination.
  return ÈNomeSemplice(nome) ? nome : std::string();
}

}  // namespace tandemize
