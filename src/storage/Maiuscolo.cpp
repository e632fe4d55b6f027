#include <utf8proc.h>

#include <array>

#include "storage/Percorsi.h"

namespace tandemize {

namespace {

// The library gives this letter a capital form that file names never use; everyday upper-casing leaves it as
// it is.
constexpr utf8proc_int32_t EsszettMinuscola = 0xDF;

struct Carattere {
  utf8proc_int32_t codice;  // negative: not UTF-8
  std::size_t byte;         // at least 1
};

Carattere prossimoCarattere(std::string_view testo, std::size_t position) {
  utf8proc_int32_t code = 0;
  auto rest = static_cast<utf8proc_ssize_t>(testo.size() - position);
  auto used =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(testo.data() + position), rest, &code);
  if (used <= 0) return {-1, 1};
  return {code, static_cast<std::size_t>(used)};
}

void aggiungiMaiuscolo(std::string& result, std::string_view bytes, utf8proc_int32_t code) {
  utf8proc_int32_t upper = code < 0 || code == EsszettMinuscola ? code : utf8proc_toupper(code);
  if (upper == code) {
    result += bytes;
    return;
  }
  std::array<utf8proc_uint8_t, 4> encoded{};
  auto length = utf8proc_encode_char(upper, encoded.data());
  result.append(reinterpret_cast<const char*>(encoded.data()), static_cast<std::size_t>(length));
}

bool èAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

}  // namespace

std::string Maiuscolo(std::string_view testo) {
  std::string result;
  result.reserve(testo.size());
  for (std::size_t i = 0; i < testo.size();) {
    if (char c = testo[i]; èAscii(c)) {
      result += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
      ++i;
      continue;
    }
    Carattere found = prossimoCarattere(testo, i);
    aggiungiMaiuscolo(result, testo.substr(i, found.byte), found.codice);
    i += found.byte;
  }
  return result;
}

std::size_t LunghezzaInCaratteri(std::string_view testo) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < testo.size(); ++count)
    i += èAscii(testo[i]) ? 1 : prossimoCarattere(testo, i).byte;
  return count;
}

}  // namespace tandemize
