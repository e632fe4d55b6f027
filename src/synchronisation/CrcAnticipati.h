// The checksums of the coming pairs, worked out beforehand where that is possible.
//
// What cannot be had so is read by CalcolaCRC at its turn, with its errors, retries and log lines.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/digestahead.h"
#include "storage/File_System.h"
#include "synchronisation/RecordFile.h"

namespace tandemize {

class CrcAnticipati {
 public:
  CrcAnticipati();

  // The records whose checksum will be asked for, in that order; some of them may be left out later. Those
  // announced before go.
  void Annuncia(std::vector<const RecordFile*> record);

  // Checksum of a record. Lets events run; `fermo` ends the wait, and the result is then of no use.
  [[nodiscard]] RisultatoCRC CrcDi(const RecordFile& record, const bool& fermo);

 private:
  [[nodiscard]] bool Anticipato(const RecordFile& record, const bool& fermo, RisultatoCRC& risultato);

  platform::DigestAhead lettore_;
  std::vector<const RecordFile*> record_;
  std::size_t prossimo_ = 0;
};

}  // namespace tandemize
