// Which numbered log files the program folder holds, known without looking at each of them for every record.
//
// The folder is read when something in it may have changed, and only then. How that is told: by a watch over
// the folder; on file systems that tell of no changes, by the folder's date.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "platform/appendfile.h"
#include "platform/files.h"

namespace tandemize {

// "LogFile7.txt" for 7.
[[nodiscard]] std::string NomeDelNumero(std::int32_t numero);
// 7 for "LogFile7.txt"; 0 for any other name, "LogFile07.txt" among them.
[[nodiscard]] std::int32_t NumeroDelNome(std::string_view nome);

class IndiceLog {
 public:
  // Without `sorvegliata` the folder's date alone tells of changes.
  explicit IndiceLog(bool sorvegliata = true) : conSorveglianza_(sorvegliata) {}

  // Brings the index up to what `cartella` (with a trailing "\") holds now. True if names may have changed
  // since the call before: a log file that was open may then be another file than the one of its name.
  bool Aggiorna(const std::string& cartella);

  // The program itself has just made the file of that number.
  void Creato(std::int32_t numero);

  // Highest number of the row 1, 2, 3 ... without a gap; 0 when there is no file 1.
  [[nodiscard]] std::int32_t Ultimo() const { return ultimo_; }

  // Everything forgotten; the next call of `Aggiorna` reads the folder.
  void Azzera();

 private:
  [[nodiscard]] bool NomiForseCambiati();
  [[nodiscard]] bool DataCambiata();
  void Sorveglia();
  void Leggi();
  void CercaUnoPerUno();
  void Inserisci(std::int32_t numero);

  bool conSorveglianza_;
  platform::FolderWatch guardia_;
  bool sorvegliata_ = false;  // the watch works
  std::string cartella_;
  platform::FileTime data_;  // of the folder, before it was read
  bool dataSicura_ = false;  // a later change cannot have left the folder with the same date
  std::int32_t ultimo_ = 0;
  std::set<std::int32_t> oltreIlVuoto_;  // numbers behind the first gap
  std::size_t letturaTra_ = 0;           // records until the folder is read anyway; 0: no reading is due
};

}  // namespace tandemize
