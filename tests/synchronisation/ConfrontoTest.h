// Trees of a test's own that are scanned and compared, and what came out of it in few words.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "fixtures/ProgramFolder.h"
#include "presentation/FrmProgressBar.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "synchronisation/Confronto.h"
#include "synchronisation/FrmScan.h"

namespace tandemize::test {

using Texts = std::vector<std::string>;

inline constexpr std::int64_t SomeDate = 1705316400;  // 15 January 2024, 11:00 UTC

// Paths "0", "1" and so on of the work folder, compared by everything, with two of them in a row.
class Comparison : public ProgramFolder {
 public:
  explicit Comparison(std::size_t paths = 2) {
    Errors_Correction = 0;
    TandemMode = ModoMultiplo;
    CompareMethod = ConfrontoIntelligente;
    FixFileOption = CopiaTutto;
    SourceNotChange = EraseFile = 0;
    Backup_Path.clear();
    for (std::size_t i = 0; i < paths; ++i) {
      work().makeFolder(std::to_string(i));
      Backup_Path.push_back(program(std::to_string(i)) + "\\");
    }
  }
  ~Comparison() {
    ArrayScansione.Azzera(0);
    ArrayTrasferimento.Svuota();
  }

  // A file of that path, with a date so many seconds after SomeDate.
  void file(std::size_t path, const std::string& name, const std::string& content = "x",
            std::int64_t seconds = 0) {
    const std::string relative = std::to_string(path) + "/" + name;
    work().write(relative, content);
    const std::array<struct timespec, 2> times{{{SomeDate + seconds, 0}, {SomeDate + seconds, 0}}};
    if (::utimensat(AT_FDCWD, work().host(relative).c_str(), times.data(), 0) != 0) std::abort();
  }

  // The same name in paths 0 and 1, the second so much newer.
  void pair(const std::string& name, const std::string& first, const std::string& second,
            std::int64_t seconds = 9) {
    file(0, name, first);
    file(1, name, second, seconds);
  }

  void scan() {
    std::vector<RigaPercorso> rows;
    for (const std::string& path : Backup_Path) rows.push_back({path, "0"});
    ArrayScansione.Azzera(rows.size());
    FrmScan window;
    window.Init(rows, owner, false, false, false, "");
  }
  void sort() {
    FrmProgressBar bar(&owner, "", 100);
    confronto.OrdinaTutteLeUnita(bar);
  }
  void compareOnly() {
    FrmProgressBar bar(&owner, "", 100);
    confronto.VisualizzaRapporto(bar);
  }
  void scanAndSort() {
    scan();
    sort();
  }
  // All three.
  void compare() {
    scanAndSort();
    compareOnly();
  }
  // All three, with files like "0/f" that go away behind the scan.
  void compareWithout(const Texts& files) {
    scanAndSort();
    for (const std::string& file : files) std::filesystem::remove(work().host(file));
    compareOnly();
  }

  // "missing a 0 > 1", "date sub\a 1 > 0", "delete a 1": a deletion names the path that loses the file.
  [[nodiscard]] Texts operations() const {
    Texts texts;
    for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i)
      texts.push_back(text(ArrayTrasferimento[i]));
    return texts;
  }
  [[nodiscard]] Texts names(std::size_t column) const {
    Texts texts;
    for (std::size_t r = 0; r < ArrayScansione.Righe(column); ++r)
      texts.push_back(ArrayScansione.Riga(column, r).Nome());
    return texts;
  }
  // "position missing replaced" of each path.
  [[nodiscard]] Texts counters() const {
    Texts texts;
    for (const ContatoriUnita& one : confronto.Contatori())
      texts.push_back(std::to_string(one.Posizione) + " " + std::to_string(one.Mancanti) + " " +
                      std::to_string(one.Sostituire));
    return texts;
  }

  FinestraOperazione owner{"Owner"};
  Confronto confronto{owner};

 private:
  [[nodiscard]] static std::string place(const std::string& path, std::string& name) {
    for (std::size_t i = 0; i < Backup_Path.size(); ++i) {
      if (!path.starts_with(Backup_Path[i])) continue;
      name = path.substr(Backup_Path[i].size());
      return std::to_string(i);
    }
    return "<" + path + ">";
  }

  [[nodiscard]] static std::string kind(const RecordFile& destination) {
    switch (destination.Motivo) {
      case MotivoOperazione::Data:
        return "date";
      case MotivoOperazione::Dimensione:
        return "size";
      case MotivoOperazione::Crc:
        return "crc";
      case MotivoOperazione::Nessuno:
        break;
    }
    return destination.FileNuovo ? "missing" : "?";
  }

  [[nodiscard]] static std::string text(const RecordOperazione& operation) {
    std::string name, destinationName;
    const std::string from = place(operation.Sorgente.Percorso(), name);
    const std::string to = place(operation.Destinazione.Percorso(), destinationName);
    if (name != destinationName) name += " as " + destinationName;
    if (operation.Sorgente.DaEliminare) return "delete " + name + " " + from;
    return kind(operation.Destinazione) + " " + name + " " + from + " > " + to;
  }
};

// A file of a scan of `path`, which ends in its separator.
inline RecordFile scannedFile(std::string_view path, std::string_view relative) {
  DepositoNomi& store = ArrayScansione.Deposito();
  const std::string full = std::string(path) + std::string(relative);
  const std::size_t last = full.find_last_of("\\/") + 1;
  const std::string_view name = std::string_view(full).substr(last);
  return {store.Cartella(full.substr(0, last)), {store.Testo(name), name.size()}, path.size()};
}

}  // namespace tandemize::test
