// Dates of the scheduler: days of the calendar as stored text, and the intervals by which they move on.
//
// A day is a day whatever the clock does: no change of summer time lengthens or shortens an interval.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tandemize {

using DataCivile = std::chrono::year_month_day;

enum class UnitaIntervallo { Ore, Giorni, Settimane, Mesi };

// The unit of a stored word, which is a text of the language that was in use when it was saved: messages 184,
// 267, 268 and 269 of the language in use now. Any other word, one of the other language too, has no unit.
[[nodiscard]] std::optional<UnitaIntervallo> UnitaDiParola(std::string_view parola);

// The number of a stored interval; 0 if the text is no whole number.
[[nodiscard]] std::int32_t NumeroDiIntervallo(std::string_view testo);

// The day some units later. Months end at the last day of a shorter month. Hours count from midnight, so
// fewer than 24 give the same day. Empty outside the years 1 to 9999.
[[nodiscard]] std::optional<DataCivile> AggiungiIntervallo(DataCivile data, UnitaIntervallo unita,
                                                           std::int32_t numero);

// Reads a date in the order of FormatoData; leading zeros may lack, the separator may be another sign. A year
// of two digits is the one nearest to today. A text that begins with four digits and a sign is year, month,
// day in every form. Empty if the text is no date of the calendar.
[[nodiscard]] std::optional<DataCivile> DataDaTesto(std::string_view testo);

[[nodiscard]] std::string TestoDiData(DataCivile data);  // in FormatoData
[[nodiscard]] DataCivile DataOdierna();

// Minutes since midnight of a time as it is stored, "hh.mm" with two digits each; empty for any other text.
[[nodiscard]] std::optional<int> MinutiDaOra(std::string_view ora);
[[nodiscard]] std::string OraDaMinuti(int minuti);  // wraps at midnight
[[nodiscard]] std::string OraAttuale();  // the clock as "hh.mm"; texts of this form compare as times

}  // namespace tandemize
