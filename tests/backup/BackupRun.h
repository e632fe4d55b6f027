// What tests of a backup share: a started program with a diagram, a look at the plan, and lists made by hand.
#pragma once

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "backup/FrmBackupChoice.h"
#include "errors/ModuloGestioneErrori.h"
#include "fixtures/Diagram.h"
#include "fixtures/LogLines.h"
#include "fixtures/ProgramFolder.h"
#include "platform/paths.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "storage/Percorsi.h"
#include "synchronisation/RecordFile.h"

namespace tandemize::test {

// A started program without retries whose dates have the default form. Its screen is told of each block
// copied.
class BackupFolder : public ProgramFolder {
 public:
  BackupFolder() {
    Errors_Correction = 0;
    setting("Errors_Correction", "0");
    FormatoData = "dd/mm/yyyy";
    FormatoOra = "H.mm.ss";
    FrmFileTransfer::IntervalloSchermo = 0;
  }
  ~BackupFolder() { FrmFileTransfer::IntervalloSchermo = 33; }

  // To be called before the windows of a test go: their hooks look at what the test has on its stack.
  void forgetHooks() {
    screen.onEvents = nullptr;
    screen.onTransfer = nullptr;
  }

  void use(const Diagram& diagram) { diagram.write(host("Config.cfg")); }
  // From the work folder's "source" to its "destination", both made.
  void copySourceToDestination() {
    work().makeFolder("source");
    work().makeFolder("destination");
    use(Diagram::copying(program("source"), program("destination")));
  }
  void drives(const std::string& text) {
    home().write("Drives.dat", text);
    platform::setProgramFolder(home().host());
  }

  [[nodiscard]] std::vector<std::string> logLines() const { return test::logLines(log()); }
};

// "source -> destination" for each transfer planned.
[[nodiscard]] inline std::vector<std::string> plannedTransfers() {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i)
    lines.push_back(ArrayTrasferimento[i].Sorgente.Percorso() + " -> " +
                    ArrayTrasferimento[i].Destinazione.Percorso());
  return lines;
}

// A record of a file that was found below `root`, without its separator; an empty one is the file's folder.
[[nodiscard]] inline RecordFile recordOf(const std::string& path, double size = 0,
                                         std::string_view root = "") {
  DepositoNomi& store = ArrayScansione.Deposito();
  const std::string folder = ConSeparatore(CartellaSuperiore(path)), name = NomeFinale(path);
  RecordFile record(store.Cartella(folder), {store.Testo(name), name.size()},
                    root.empty() ? folder.size() - 1 : root.size());
  record.Dimensione = size;
  record.TipoPercorso = static_cast<std::int8_t>(TipoPercorso(path));
  return record;
}

// Adds one transfer to the list; `size` is the source's, the destination counts as new.
inline RecordOperazione& addTransfer(const std::string& source, const std::string& destination,
                                     double size = 0) {
  ArrayTrasferimento.Conserva(ArrayScansione.DepositoCondiviso());
  ArrayTrasferimento.Aggiungi({recordOf(source, size), recordOf(destination)});
  return ArrayTrasferimento[ArrayTrasferimento.Numero() - 1];
}

// A moment as the list of saved files tells it.
[[nodiscard]] inline std::string dateText(std::time_t moment) {
  struct tm parts = {};
  ::localtime_r(&moment, &parts);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%d/%m/%Y %H.%M.%S", &parts)};
}

[[nodiscard]] inline std::vector<std::string> boxTexts(const ScriptedScreen& screen) {
  std::vector<std::string> texts;
  for (const ShownBox& box : screen.boxes) texts.push_back(box.text);
  return texts;
}

[[nodiscard]] inline std::vector<std::string> balloonTexts(const ScriptedScreen& screen) {
  std::vector<std::string> texts;
  for (const Avviso& notice : screen.balloons) texts.push_back(notice.testo);
  return texts;
}

}  // namespace tandemize::test
