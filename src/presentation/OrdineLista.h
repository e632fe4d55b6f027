// The order of a list's rows by one of its columns.
#pragma once

#include <string_view>

namespace tandemize {

enum class TipoColonna { Testo, Numero, Data };

// Kind of a column by its tag: "numeric", "date"; any other is text.
[[nodiscard]] TipoColonna TipoDiColonna(std::string_view tag);

// How a column is sorted; a click goes from No to Su, then between Su and Giù.
enum class Verso { No, Su, Giù };
[[nodiscard]] Verso VersoSuccessivo(Verso verso);

// The number that a text begins with, blanks left out and a point before decimals, as in "1 250.5 KB"; 0 if
// it begins with none.
[[nodiscard]] double Val(std::string_view testo);

// Below 0, 0 or above 0 as the first cell stands before, beside or behind the second. Numbers compare by Val;
// dates as moments, behind all texts that are none; texts without regard to letter case.
[[nodiscard]] int ConfrontaCelle(TipoColonna tipo, std::string_view una, std::string_view altra);

}  // namespace tandemize
