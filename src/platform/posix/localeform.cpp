#include "platform/posix/localeform.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace tandemize::platform {

namespace {

struct FormPart {
  char conversion;         // the letter behind "%"
  char field;              // what it shows; each field may stand once in a pattern
  std::string_view form;   // with a leading zero
  std::string_view plain;  // with the flag "-" or "_"
};

constexpr std::array<FormPart, 5> kDateParts = {{
    {'d', 'd', "dd", "d"},
    {'e', 'd', "d", "d"},
    {'m', 'm', "MM", "M"},
    {'Y', 'y', "yyyy", "yyyy"},
    {'y', 'y', "yy", "yy"},
}};

constexpr std::array<FormPart, 8> kTimeParts = {{
    {'H', 'h', "HH", "H"},
    {'k', 'h', "H", "H"},
    {'I', 'i', "hh", "h"},
    {'l', 'i', "h", "h"},
    {'M', 'm', "mm", "m"},
    {'S', 's', "ss", "s"},
    {'p', 'p', "tt", "tt"},
    {'P', 'p', "tt", "tt"},
}};

// The conversions that stand for a whole pattern, written out.
std::string writtenOut(std::string_view pattern) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kShort = {{
      {"%D", "%m/%d/%y"},
      {"%F", "%Y-%m-%d"},
      {"%T", "%H:%M:%S"},
      {"%R", "%H:%M"},
      {"%r", "%I:%M:%S %p"},
  }};
  std::string full;
  while (!pattern.empty()) {
    const std::string_view two = pattern.substr(0, pattern.front() == '%' ? 2 : 1);
    const auto* const found =
        std::find_if(kShort.begin(), kShort.end(), [&](const auto& entry) { return entry.first == two; });
    full.append(found == kShort.end() ? two : found->second);
    pattern.remove_prefix(two.size());
  }
  return full;
}

// Letters would be read as parts of a form, and quotes and backslashes as marks around text.
bool mayStandAsText(char c) {
  const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return !letter && c != '"' && c != '\'' && c != '\\' && static_cast<unsigned char>(c) >= ' ';
}

struct Conversion {
  std::string form;
  std::string fields;
  bool turned = false;
};

template <std::size_t Count>
Conversion convert(std::string_view pattern, const std::array<FormPart, Count>& parts) {
  Conversion result;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '%') {
      if (!mayStandAsText(pattern[i])) return result;
      result.form += pattern[i];
      continue;
    }
    const bool flag =
        i + 1 < pattern.size() && std::string_view("-_0").find(pattern[i + 1]) != std::string_view::npos;
    const bool plain = flag && pattern[i + 1] != '0';
    i += flag ? 2 : 1;
    if (i >= pattern.size()) return result;
    const auto* const part = std::find_if(
        parts.begin(), parts.end(), [&](const FormPart& known) { return known.conversion == pattern[i]; });
    if (part == parts.end() || result.fields.find(part->field) != std::string::npos) return result;
    result.form.append(plain ? part->plain : part->form);
    result.fields += part->field;
  }
  result.turned = true;
  return result;
}

bool holds(const Conversion& conversion, std::string_view fields) {
  return std::all_of(fields.begin(), fields.end(),
                     [&](char field) { return conversion.fields.find(field) != std::string::npos; });
}

}  // namespace

std::string shortDateForm(std::string_view pattern) {
  const Conversion date = convert(writtenOut(pattern), kDateParts);
  return date.turned && holds(date, "dmy") ? date.form : std::string();
}

std::string timeForm(std::string_view pattern) {
  const Conversion time = convert(writtenOut(pattern), kTimeParts);
  const bool clock24 = holds(time, "h") && !holds(time, "i") && !holds(time, "p");
  const bool clock12 = holds(time, "ip") && !holds(time, "h");
  return time.turned && holds(time, "m") && (clock24 || clock12) ? time.form : std::string();
}

}  // namespace tandemize::platform
