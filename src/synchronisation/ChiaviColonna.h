// Sort keys of one column, in the column's order.
//
// A key is `NomeMaiuscolo` without a separator in front, worked out once, so that neither the sort nor the
// merge puts a name together again. Keys compare by code value, which in UTF-8 is the value of the bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "synchronisation/RecordFile.h"

namespace tandemize {

class ChiaviColonna {
 public:
  // Keys of the rows of a column as they stand. Lets events run, and leaves the rest out when `fermo` is set.
  ChiaviColonna(const TabellaScansione& tabella, std::size_t colonna, const bool& fermo);

  // Brings keys and rows into the order of the keys; equal ones stand in the order of `Nome`.
  void OrdinaArray(TabellaScansione& tabella, std::size_t colonna);

  [[nodiscard]] std::size_t Numero() const { return chiavi_.size(); }
  [[nodiscard]] std::string_view operator[](std::size_t riga) const {
    return {chiavi_[riga].testo, chiavi_[riga].lunghezza};
  }
  // True if the next row has the same key: the two names differ only in the case of letters.
  [[nodiscard]] bool ComeLaProssima(std::size_t riga) const { return chiavi_[riga].comeLaProssima; }

 private:
  struct Chiave {
    const char* testo;
    std::uint32_t lunghezza;
    bool comeLaProssima;
  };

  void Aggiungi(const RecordFile& record);
  void SegnaUguali();

  DepositoNomi testi_;
  std::vector<Chiave> chiavi_;
  const std::string* cartella_ = nullptr;  // the folder that `prefisso_` belongs to
  std::string prefisso_;
};

// `Nome` with "\" as separator for every kind of path, without one in front: what two columns have in common.
[[nodiscard]] std::string NomeRelativo(const RecordFile& record);
// Whether two names are equal in that form, letter case included.
[[nodiscard]] bool NomiUguali(const RecordFile& uno, const RecordFile& altro);

}  // namespace tandemize
