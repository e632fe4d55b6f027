#include "synchronisation/CrcAnticipati.h"

#include <algorithm>
#include <utility>

#include "shell/Schermo.h"
#include "storage/Percorsi.h"
#include "storage/clsCRC.h"

namespace tandemize {

namespace {

bool SuFtp(const RecordFile& record) {
  return record.TipoPercorso == PercorsoFtp;
}

// Called in two threads at a time: it touches nothing but its arguments.
std::uint32_t CrcDeiByte(const void* dati, std::size_t numero) {
  clsCRC crc;
  crc.AddBytes({static_cast<const std::uint8_t*>(dati), numero});
  return static_cast<std::uint32_t>(crc.Value());
}

}  // namespace

CrcAnticipati::CrcAnticipati() : lettore_(CrcDeiByte) {}

void CrcAnticipati::Annuncia(std::vector<const RecordFile*> record) {
  record_ = std::move(record);
  prossimo_ = 0;
  if (record_.empty()) return;
  std::vector<platform::DigestAhead::File> file;
  file.reserve(record_.size());
  for (const RecordFile* uno : record_) {
    const double massimo = static_cast<double>(platform::DigestAhead::kLargest);
    const bool leggibile = !SuFtp(*uno) && uno->Dimensione > 0 && uno->Dimensione <= massimo;
    file.push_back({leggibile ? uno->Percorso() : std::string(),
                    leggibile ? static_cast<std::uint64_t>(uno->Dimensione) : 0});
  }
  lettore_.expect(file);
}

RisultatoCRC CrcAnticipati::CrcDi(const RecordFile& record, const bool& fermo) {
  RisultatoCRC risultato;
  if (Anticipato(record, fermo, risultato)) return risultato;
  return CalcolaCRC(record.Percorso(), SuFtp(record));
}

bool CrcAnticipati::Anticipato(const RecordFile& record, const bool& fermo, RisultatoCRC& risultato) {
  using Answer = platform::DigestAhead::Answer;
  const auto posto =
      std::find(record_.begin() + static_cast<std::ptrdiff_t>(prossimo_), record_.end(), &record);
  if (posto == record_.end()) return false;
  prossimo_ = static_cast<std::size_t>(posto - record_.begin()) + 1;
  std::uint32_t crc = 0;
  Answer risposta = Answer::pending;
  while (!fermo && (risposta = lettore_.ask(prossimo_ - 1, crc)) == Answer::pending) DoEvents();
  risultato.valore = static_cast<std::int32_t>(crc);
  return fermo || risposta == Answer::known;
}

}  // namespace tandemize
