#include <langinfo.h>
#include <locale.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "platform/posix/hostlocale.h"
#include "platform/posix/localeform.h"

namespace tandemize::platform {

namespace {

std::string timeLocaleName() {
  for (const char* const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    if (std::string name = environment(variable); !name.empty()) return name;
  }
  return {};
}

bool hasNoForms(std::string_view name) {
  const std::string_view bare = name.substr(0, name.find('.'));
  return bare.empty() || bare == "C" || bare == "POSIX";
}

bool isAscii(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

// A pattern with other characters than ASCII is of use only if the locale writes UTF-8.
std::string pattern(nl_item item) {
  const std::string name = timeLocaleName();
  if (hasNoForms(name)) return {};
  const locale_t locale = ::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, name.c_str(), nullptr);
  if (locale == nullptr) return {};
  std::string text = ::nl_langinfo_l(item, locale);
  const std::string_view codes = ::nl_langinfo_l(CODESET, locale);
  if (!isAscii(text) && codes != "UTF-8") text.clear();
  ::freelocale(locale);
  return text;
}

}  // namespace

std::string hostShortDateForm() {
  return shortDateForm(pattern(D_FMT));
}

std::string hostTimeForm() {
  return timeForm(pattern(T_FMT));
}

}  // namespace tandemize::platform
