#include "platform/posix/names.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/paths.h"

namespace tandemize::platform {

namespace {

using Byte = unsigned char;

// U+F000 plus a code is EF 80 xx for the codes below 64, EF 81 xx for those below 128; U+F0FF is EF 83 BF.
constexpr Byte kLead = 0xEF;
constexpr std::string_view kEscape = "\xEF\x83\xBF";
constexpr Byte kEscapeCode = 0xFF;

constexpr std::array<bool, 256> mappedCodes() {
  std::array<bool, 256> mapped{};
  for (std::size_t code = 1; code < 32; ++code) mapped[code] = true;
  for (const char c : std::string_view("\"*:<>?\\|")) mapped[static_cast<Byte>(c)] = true;
  return mapped;
}
constexpr std::array<bool, 256> kMapped = mappedCodes();

Byte byteAt(std::string_view text, std::size_t at) {
  return static_cast<Byte>(text[at]);
}

// The code that the private character at `at` stands for, kEscapeCode for U+F0FF, 0 if there is none of ours.
Byte privateCodeAt(std::string_view text, std::size_t at) {
  if (byteAt(text, at) != kLead || text.size() - at < 3) return 0;
  const Byte second = byteAt(text, at + 1);
  const Byte third = byteAt(text, at + 2);
  if (third < 0x80 || third > 0xBF) return 0;
  if (second == 0x83) return third == 0xBF ? kEscapeCode : Byte{0};
  if (second != 0x80 && second != 0x81) return 0;
  const int code = (second - 0x80) * 64 + (third - 0x80);
  return kMapped[static_cast<std::size_t>(code)] ? static_cast<Byte>(code) : Byte{0};
}

void appendPrivate(std::string& out, Byte code) {
  out += static_cast<char>(kLead);
  out += static_cast<char>(0x80 + code / 64);
  out += static_cast<char>(0x80 + code % 64);
}

}  // namespace

void appendNameToProgram(std::string& out, std::string_view hostName) {
  std::size_t plainFrom = 0;
  std::size_t i = 0;
  while (i < hostName.size()) {
    const Byte byte = byteAt(hostName, i);
    if (kMapped[byte]) {
      out.append(hostName, plainFrom, i - plainFrom);
      appendPrivate(out, byte);
      plainFrom = ++i;
    } else if (byte == kLead && privateCodeAt(hostName, i) != 0) {
      out.append(hostName, plainFrom, i - plainFrom);
      out.append(kEscape);
      plainFrom = i;
      i += 3;
    } else {
      ++i;
    }
  }
  out.append(hostName, plainFrom);
}

void appendNameToHost(std::string& out, std::string_view programName) {
  std::size_t i = 0;
  while (i < programName.size()) {
    const std::size_t special = std::min(programName.find(static_cast<char>(kLead), i), programName.size());
    out.append(programName, i, special - i);
    i = special;
    if (i == programName.size()) break;
    const Byte code = privateCodeAt(programName, i);
    if (code == 0) {
      out += programName[i++];
      continue;
    }
    const bool escapes =
        code == kEscapeCode && i + 3 < programName.size() && privateCodeAt(programName, i + 3) != 0;
    if (escapes) i += 3;
    if (escapes || code == kEscapeCode) {
      out.append(programName, i, 3);
    } else {
      out += static_cast<char>(code);
    }
    i += 3;
  }
}

std::string nameToHost(std::string_view programName) {
  std::string name;
  name.reserve(programName.size());
  appendNameToHost(name, programName);
  return name;
}

std::string nameToProgram(std::string_view hostName) {
  std::string name;
  name.reserve(hostName.size());
  appendNameToProgram(name, hostName);
  return name;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

namespace {
char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
}  // namespace

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

std::string lowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

}  // namespace tandemize::platform
