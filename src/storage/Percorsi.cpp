#include "storage/Percorsi.h"

namespace tandemize {

namespace {

bool iniziaConFtp(std::string_view path) {
  return path.size() >= 3 && (path[0] | 0x20) == 'f' && (path[1] | 0x20) == 't' && (path[2] | 0x20) == 'p';
}

// The first `count` characters.
std::string_view primiCaratteri(std::string_view testo, std::size_t count) {
  std::size_t end = 0;
  for (; count > 0 && end < testo.size(); --count) {
    ++end;
    while (end < testo.size() && (static_cast<unsigned char>(testo[end]) & 0xC0) == 0x80) ++end;
  }
  return testo.substr(0, end);
}

// A path without a separator behind the server name makes the second search start over at the first
// character, so "\\srv" has the root "\".
std::string radiceLan(std::string_view path) {
  std::size_t first = path.find('\\', 2);
  std::size_t second = path.find('\\', first == std::string_view::npos ? 0 : first + 1);
  return std::string(second == std::string_view::npos ? path : path.substr(0, second + 1));
}

}  // namespace

std::int32_t TipoPercorso(std::string_view path) {
  if (path.starts_with("\\\\")) return PercorsoLan;
  if (path.starts_with('/') || iniziaConFtp(path)) return PercorsoFtp;
  return path.empty() ? NessunPercorso : PercorsoLocale;
}

char SeparatorePercorso(std::int32_t tipo) {
  return tipo == PercorsoFtp ? '/' : '\\';
}

std::string RadicePercorso(std::string_view path) {
  switch (TipoPercorso(path)) {
    case PercorsoLan:
      return radiceLan(path);
    case PercorsoFtp:
      return "/";
    case PercorsoLocale:
      return std::string(primiCaratteri(path, 2));
    default:
      return {};
  }
}

std::string CartellaSuperiore(std::string_view path) {
  char separator = SeparatorePercorso(TipoPercorso(path));
  std::size_t last = path.rfind(separator);
  if (last == std::string_view::npos || last == 0) return {separator};
  return std::string(path.substr(0, last));
}

std::string NomeFinale(std::string_view path) {
  std::size_t last = path.rfind(SeparatorePercorso(TipoPercorso(path)));
  return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

std::string EstensioneFile(std::string_view name) {
  std::size_t dot = name.rfind('.');
  return std::string(dot == std::string_view::npos ? name : name.substr(dot));
}

bool PercorsoOltreCondivisione(std::string_view path) {
  std::size_t first = path.find('\\', 2);
  return first != std::string_view::npos && path.find('\\', first + 1) != std::string_view::npos;
}

std::string ConSeparatore(std::string_view path) {
  std::string result(path);
  char separator = SeparatorePercorso(TipoPercorso(path));
  if (!result.ends_with(separator)) result += separator;
  return result;
}

}  // namespace tandemize
