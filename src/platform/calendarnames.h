// Names of days and months in the language of the user's locale.
#pragma once

#include <string>

namespace tandemize::platform {

// Of the locale that LC_ALL, LC_TIME or LANG names, the first that is set, in UTF-8. English in the C locale,
// for a locale that is not installed, and for one whose names are in another code than UTF-8 and not ASCII.
[[nodiscard]] std::string weekdayName(int day);       // in full; 0 is Sunday, up to 6
[[nodiscard]] std::string shortMonthName(int month);  // 1 to 12

}  // namespace tandemize::platform
