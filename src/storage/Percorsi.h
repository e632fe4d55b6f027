// Paths as plain strings: what kind of storage one names, and its parts. The kind is worked out from the
// first characters each time; nothing beside the string says it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tandemize {

// Kinds of path.
inline constexpr std::int32_t NessunPercorso = -1;
inline constexpr std::int32_t PercorsoLocale =
    0;  // also mapped network drives, removable and optical drives, relative names
inline constexpr std::int32_t PercorsoLan = 1;
inline constexpr std::int32_t PercorsoFtp = 2;

[[nodiscard]] std::int32_t TipoPercorso(std::string_view path);
[[nodiscard]] char SeparatorePercorso(std::int32_t tipo);  // '/' for FTP, '\' otherwise
[[nodiscard]] std::string RadicePercorso(std::string_view path);
[[nodiscard]] std::string CartellaSuperiore(std::string_view path);
[[nodiscard]] std::string NomeFinale(std::string_view path);
[[nodiscard]] std::string EstensioneFile(
    std::string_view name);  // ".txt"; a name without a dot is given back whole
[[nodiscard]] bool PercorsoOltreCondivisione(std::string_view path);

// The path with the separator of its kind behind it, unless it ends in it already.
[[nodiscard]] std::string ConSeparatore(std::string_view path);

// Upper case as names are compared in: one character for one, no exception by language, ß stays. Bytes that
// are not UTF-8 stay.
[[nodiscard]] std::string Maiuscolo(std::string_view testo);
// Length in characters; a byte that is not UTF-8 counts as one.
[[nodiscard]] std::size_t LunghezzaInCaratteri(std::string_view testo);

}  // namespace tandemize
