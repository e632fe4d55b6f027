#include "platform/calendarnames.h"

#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <string_view>

#include "platform/machine.h"

namespace tandemize::platform {

namespace {

constexpr nl_item kDays[] = {DAY_1, DAY_2, DAY_3, DAY_4, DAY_5, DAY_6, DAY_7};
constexpr nl_item kShortMonths[] = {ABMON_1, ABMON_2, ABMON_3, ABMON_4,  ABMON_5,  ABMON_6,
                                    ABMON_7, ABMON_8, ABMON_9, ABMON_10, ABMON_11, ABMON_12};

std::string nameIn(const char* localeName, nl_item item) {
  const locale_t locale = ::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, localeName, nullptr);
  if (locale == nullptr) return {};
  std::string name = ::nl_langinfo_l(item, locale);
  const std::string_view codes = ::nl_langinfo_l(CODESET, locale);
  const bool ascii = std::ranges::all_of(name, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (!ascii && codes != "UTF-8") name.clear();
  ::freelocale(locale);
  return name;
}

std::string nameOf(nl_item item) {
  for (const char* const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const std::string localeName = environment(variable);
    if (localeName.empty()) continue;
    if (std::string name = nameIn(localeName.c_str(), item); !name.empty()) return name;
    break;
  }
  return nameIn("C", item);
}

}  // namespace

std::string weekdayName(int day) {
  return nameOf(kDays[std::clamp(day, 0, 6)]);
}

std::string shortMonthName(int month) {
  return nameOf(kShortMonths[std::clamp(month, 1, 12) - 1]);
}

}  // namespace tandemize::platform
