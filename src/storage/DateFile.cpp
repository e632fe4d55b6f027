#include <algorithm>
#include <chrono>

#include "platform/machine.h"
#include "shell/ModuloPrincipale.h"
#include "storage/File_System.h"
#include "storage/OperazioniFtp.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

// The pass that is always made once it is reached, and the last one.
constexpr int PassoForzato = 5;

bool èCifra(char c) {
  return c >= '0' && c <= '9';
}
bool èSeparatoreData(char c) {
  return c == '/' || c == '-' || c == '.' || c == ' ';
}

// Reads a text from left to right. After a failed step nothing more is to be read.
class Lettore {
 public:
  explicit Lettore(std::string_view testo) : rest_(testo) {}

  [[nodiscard]] bool fine() const { return rest_.empty(); }

  // Up to `maxDigits` digits, at least one. Gives their count.
  std::size_t numero(std::size_t maxDigits, int& value) {
    std::size_t count = 0;
    for (value = 0; count < maxDigits && count < rest_.size() && èCifra(rest_[count]); ++count)
      value = value * 10 + (rest_[count] - '0');
    rest_.remove_prefix(count);
    return count;
  }

  // A character of the format that stands for itself; the usual separators of dates stand for one another.
  bool letterale(char expected) {
    if (rest_.empty()) return false;
    const bool same =
        rest_.front() == expected || (èSeparatoreData(rest_.front()) && èSeparatoreData(expected));
    if (same) rest_.remove_prefix(1);
    return same;
  }

  bool puntoODuePunti() {
    if (!rest_.starts_with('.') && !rest_.starts_with(':')) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool spazi() {
    const std::size_t before = rest_.size();
    while (rest_.starts_with(' ')) rest_.remove_prefix(1);
    return rest_.size() < before;
  }

 private:
  std::string_view rest_;
};

// Of a year told by its last two digits, those up to 29 belong to this century.
int annoIntero(int year, std::size_t digits) {
  if (digits > 2) return year;
  return year + (year < 30 ? 2000 : 1900);
}

bool èLetteraData(char c) {
  return c == 'd' || c == 'm' || c == 'M' || c == 'y';
}

bool leggiCampo(Lettore& reader, char letter, std::size_t maxDigits, platform::CivilTime& time) {
  int value = 0;
  const std::size_t digits = reader.numero(maxDigits, value);
  if (letter == 'y') time.year = annoIntero(value, digits);
  if (letter == 'm' || letter == 'M') time.month = value;
  if (letter == 'd') time.day = value;
  return digits > 0;
}

// A year may have four digits where the format has two, unless another field follows at once.
std::size_t cifreAmmesse(std::string_view format, std::size_t begin, std::size_t end) {
  const bool followed = end < format.size() && èLetteraData(format[end]);
  return format[begin] != 'y' ? 2 : followed ? end - begin : 4;
}

bool leggiData(Lettore& reader, std::string_view format, platform::CivilTime& time) {
  bool year = false;
  for (std::size_t i = 0; i < format.size();) {
    const char letter = format[i];
    if (!èLetteraData(letter)) {
      if (!reader.letterale(letter)) return false;
      ++i;
      continue;
    }
    const std::size_t end = std::min(format.find_first_not_of(letter, i), format.size());
    if (!leggiCampo(reader, letter, cifreAmmesse(format, i, end), time)) return false;
    year = year || letter == 'y';
    i = end;
  }
  return year;
}

bool leggiOra(Lettore& reader, platform::CivilTime& time) {
  if (reader.numero(2, time.hour) == 0 || !reader.puntoODuePunti() || reader.numero(2, time.minute) == 0)
    return false;
  if (reader.puntoODuePunti() && reader.numero(2, time.second) == 0) return false;
  reader.spazi();
  return reader.fine() && time.hour < 24 && time.minute < 60 && time.second < 60;
}

bool esiste(const platform::CivilTime& time) {
  return std::chrono::year_month_day(std::chrono::year(time.year),
                                     std::chrono::month(static_cast<unsigned>(time.month)),
                                     std::chrono::day(static_cast<unsigned>(time.day)))
      .ok();
}

std::optional<platform::CivilTime> leggiDataOra(std::string_view testo) {
  Lettore reader(testo);
  platform::CivilTime time;
  reader.spazi();
  if (!leggiData(reader, FormatoData, time) || !esiste(time)) return {};
  const bool apart = reader.spazi();
  if (reader.fine()) return time;
  if (!apart || !leggiOra(reader, time)) return {};
  return time;
}

}  // namespace

std::string TestoDataFile(std::int64_t secondiUtc) {
  return FormattaDataOra(secondiUtc, FormatoData + " hh.mm.ss");
}

// A date that stays invalid, as with an empty date format, ends the passes: another search cannot mend it.
std::string DateFile(const RecordRicerca& record, std::int64_t& creazione, std::int64_t& ultimoAccesso,
                     std::string_view path) {
  std::string text = TestoDataFile(record.ftLastWriteTime.seconds);
  for (int pass = 0; !path.empty() && pass <= PassoForzato && (pass == PassoForzato || !IsDataValida(text));
       ++pass)
    text = DataFileDaRicerca(path);
  creazione = record.ftCreationTime.seconds;
  ultimoAccesso = record.ftLastAccessTime.seconds;
  return text;
}

// A search on a server would give the date of the first entry of a folder, not of this file.
std::string DataFileDaRicerca(std::string_view path) {
  if (TipoPercorso(path) == PercorsoFtp) return DataFileFtp(path);
  HandleRicerca handle = 0;
  RecordRicerca record;
  const RispostaDir answer = DirFile(handle, record, path, true);
  ChiudiRicerca(handle);
  if (answer.fallita() || answer.fine()) return {};
  std::int64_t creation = 0, lastAccess = 0;
  return DateFile(record, creation, lastAccess, {});
}

bool IsDataValida(std::string_view testo) {
  return leggiDataOra(testo).has_value();
}

std::optional<std::int64_t> SecondiDaTesto(std::string_view testo) {
  const std::optional<platform::CivilTime> time = leggiDataOra(testo);
  return time ? platform::utcFromLocal(*time) : std::nullopt;
}

void ImpostaDataFile(std::string_view path, std::string_view testo) {
  if (TipoPercorso(path) == PercorsoFtp) return;
  if (const std::optional<std::int64_t> seconds = SecondiDaTesto(testo))
    static_cast<void>(platform::setFileTime(path, {*seconds, 0}));
}

}  // namespace tandemize
