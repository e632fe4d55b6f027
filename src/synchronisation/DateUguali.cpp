#include <optional>

#include "storage/File_System.h"
#include "synchronisation/Confronto.h"

namespace tandemize {

namespace {

constexpr std::int64_t SecondiTollerati = 2;

// What the text of the date stands for. Two moments of the hour that is repeated in autumn have one text.
std::optional<std::int64_t> DataConvertita(RecordFile& record) {
  std::optional<std::int64_t> data = SecondiDaTesto(record.DataFile());
  if (data) return data;
  data = SecondiDaTesto(DataFileDaRicerca(record.Percorso()));
  if (data) record.Data = *data;
  return data;
}

}  // namespace

bool DateUguali(RecordFile& uno, RecordFile& altro) {
  if (uno.Data == altro.Data) return true;  // so are the texts
  const std::optional<std::int64_t> data = DataConvertita(uno), altraData = DataConvertita(altro);
  if (!data || !altraData) return data == altraData;
  const std::int64_t differenza = *data - *altraData;
  return differenza >= -SecondiTollerati && differenza <= SecondiTollerati;
}

}  // namespace tandemize
