// The forms of date and time that the user's locale asks for.
#pragma once

#include <string>

namespace tandemize::platform {

// In the program's form (see localeform.h), of the locale that LC_ALL, LC_TIME or LANG names, the first that
// is set. Empty in the locales C and POSIX, with or without a character set, for a locale that is not
// installed, and for a pattern that cannot be turned.
[[nodiscard]] std::string hostShortDateForm();
[[nodiscard]] std::string hostTimeForm();

}  // namespace tandemize::platform
