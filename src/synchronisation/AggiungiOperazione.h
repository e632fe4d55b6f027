// Puts operations into ArrayTrasferimento and their rows on the screen.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "synchronisation/Confronto.h"
#include "synchronisation/RecordFile.h"

namespace tandemize {

// The records of the operations take their texts from the list's own store, each folder once, so that the
// store of the scan can go after the comparison.
class Operazioni {
 public:
  // `percorsi`: path of each column with its separator, empty for a column that has none. Flags are read from
  // `confronto`, and ErroreCrc is set there.
  Operazioni(Confronto& confronto, std::vector<std::string> percorsi);

  [[nodiscard]] bool HaPercorso(std::size_t colonna) const { return !percorsi_[colonna].empty(); }

  // Full path that a file has, or would have, in a column.
  [[nodiscard]] std::string PercorsoIn(std::size_t colonna, const RecordFile& record) const;

  // The column `verso` lacks the file, which is to be copied there.
  void AggiungiMancante(const RecordFile& sorgente, std::size_t verso);
  // The column `verso` lacks the file, which is to be deleted from the column `lista`. Marks the record; the
  // destination of the operation is there for display.
  void AggiungiEliminazione(RecordFile& sorgente, std::size_t verso, std::size_t lista);
  // `destinazione`, of the column `lista`, is to be replaced by `sorgente`.
  void AggiungiDiverso(const RecordFile& sorgente, const RecordFile& destinazione, std::size_t lista,
                       MotivoOperazione motivo);

 private:
  // Folder texts in the list's store, by the place in memory of what they were made from; files of one folder
  // mostly come one after another.
  struct Archivio {
    std::unordered_map<const void*, const std::string*> copie;
    const void* ultima = nullptr;
    const std::string* copiaUltima = nullptr;
  };

  void AggiungiOperazione(RecordFile sorgente, RecordFile destinazione, std::size_t lista, bool aggiornamento,
                          MotivoOperazione motivo);
  void AggiungiRiga(const RecordOperazione& operazione, std::size_t lista, bool aggiornamento) const;
  [[nodiscard]] RigaUnita::Icona IconaDi(const std::string& estensione) const;
  [[nodiscard]] const std::string* Copia(const std::string* cartella);
  [[nodiscard]] const std::string* CartellaIn(std::size_t colonna, const RecordFile& record);
  [[nodiscard]] RecordFile RecordDiLavoro(const RecordFile& sorgente, std::string_view nome,
                                          std::size_t verso);

  Confronto& confronto_;
  std::vector<std::string> percorsi_;
  std::vector<std::int32_t> tipi_;
  Archivio originali_;
  std::vector<Archivio> destinazioni_;  // by column
};

}  // namespace tandemize
