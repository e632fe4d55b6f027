// The host's patterns for dates and times, turned into the program's forms.
#pragma once

#include <string>
#include <string_view>

namespace tandemize::platform {

// From a strftime(3) pattern: "%d/%m/%Y" gives "dd/MM/yyyy". Empty if the pattern cannot be turned: it does
// not hold day, month and year once each as numbers, has other digits than 0 to 9 (%Od), or text that the
// program would read as a form.
[[nodiscard]] std::string shortDateForm(std::string_view pattern);

// "%T" gives "HH:mm:ss", "%I:%M:%S %p" gives "hh:mm:ss tt". Hour and minute are needed, and with a 12-hour
// clock the half of the day.
[[nodiscard]] std::string timeForm(std::string_view pattern);

}  // namespace tandemize::platform
