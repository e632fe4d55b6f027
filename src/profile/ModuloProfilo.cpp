#include "profile/ModuloProfilo.h"

#include <array>

#include "platform/newfile.h"
#include "profile/RigheProfilo.h"

namespace tandemize {

std::vector<std::string> Backup_Path(1), Backup_FTP(1);
std::int32_t PathCount = 0;
std::int32_t FixFileOption = 0, CompareMethod = 0, TandemMode = 0;
std::uint8_t FixScanAfterFix = 0, FtpEnabled = 0, SourceNotChange = 0, EraseFile = 0, AutoTandemize = 0;

std::string FilterBackup;
std::uint8_t FilterIgnoreInvalidPath = 0;

void AzzeraModuloProfilo() {
  Backup_Path.assign(1, "");
  Backup_FTP.assign(1, "");
  PathCount = FixFileOption = CompareMethod = TandemMode = 0;
  FixScanAfterFix = FtpEnabled = SourceNotChange = EraseFile = AutoTandemize = 0;
  FilterBackup.clear();
  FilterIgnoreInvalidPath = 0;
}

std::string ProfiloVuoto() {
  return "Backup_Path_0 =\r\n"
         "Backup_Path_1 =\r\n"
         "Backup_FTP_0 =\r\n"
         "Backup_FTP_1 =\r\n"
         "FixFileOption = 2\r\n"
         "FixScanAfterFix = 0\r\n"
         "FtpEnabled = 0\r\n"
         "CompareMethod = 0\r\n"
         "TandemMode = 1\r\n"
         "SourceNotChange = 0\r\n"
         "EraseFile = 0\r\n"
         "AutoTandemize = 0\r\n";
}

bool CreaNuovoProfilo(const std::string& path) {
  return platform::replaceFile(path, ProfiloVuoto()) == platform::kNoError;
}

// The length of the key decides, so a file of any size is judged by its first bytes.
bool ProfiloValido(const std::string& path) {
  platform::SourceFile file;
  if (file.open(path) != platform::kNoError) return false;
  std::array<char, PrefissoPercorso.size()> inizio{};
  std::size_t letti = 0;
  while (letti < inizio.size()) {
    std::size_t ora = 0;
    if (file.read(inizio.data() + letti, inizio.size() - letti, ora) != platform::kNoError || ora == 0)
      return false;
    letti += ora;
  }
  return std::string_view(inizio.data(), inizio.size()) == PrefissoPercorso;
}

// The first dot of the whole path counts, also that of a folder's name: companion files that exist are found
// by it.
std::string RestituisciNomeFiltro(std::string_view path) {
  return std::string(path.substr(0, path.find('.'))) + "b.adv";
}

std::string RestituisciValore(std::string_view riga) {
  // A line without the sign has the position 0 for it, so all of it lies behind.
  const std::string_view testo = SenzaBlankIniziali(riga.substr(riga.find('=') + 1));
  const std::optional<NumeroDecimale> numero = LeggiDecimale(testo);
  if (!numero) return std::string(testo);
  if (numero->intero.empty()) return "0";
  return (numero->negativo ? "-" : "") + std::string(numero->intero);
}

}  // namespace tandemize
