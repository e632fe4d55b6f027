#include "platform/ftp/listing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <vector>

namespace tandemize::platform::ftp {

namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

bool beginsWith(std::string_view text, std::string_view start) {
  return equalIgnoringCase(text.substr(0, start.size()), start);
}

template <typename Number>
std::optional<Number> numberOf(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && !text.empty() ? std::optional(number)
                                                                                   : std::nullopt;
}

// --- MLSD

// False for a type that is no entry of the folder.
bool takeType(std::string_view type, ListedEntry& entry) {
  if (equalIgnoringCase(type, "file"))
    entry.kind = ListedKind::File;
  else if (equalIgnoringCase(type, "dir"))
    entry.kind = ListedKind::Folder;
  else if (equalIgnoringCase(type, "cdir") || equalIgnoringCase(type, "pdir"))
    return false;
  else if (beginsWith(type, "OS.unix=slink") || beginsWith(type, "OS.unix=symlink"))
    entry.kind = ListedKind::Link;
  else
    entry.kind = ListedKind::Other;
  const std::size_t colon = type.find(':');
  if (entry.kind == ListedKind::Link && colon != std::string_view::npos)
    entry.target = type.substr(colon + 1);
  return true;
}

bool takeFact(std::string_view fact, ListedEntry& entry) {
  const std::size_t equal = fact.find('=');
  if (equal == std::string_view::npos) return true;
  const std::string_view name = fact.substr(0, equal), value = fact.substr(equal + 1);
  if (equalIgnoringCase(name, "type")) return takeType(value, entry);
  if (equalIgnoringCase(name, "size")) {
    const auto size = numberOf<std::uint64_t>(value);
    entry.hasSize = size.has_value();
    entry.size = size.value_or(0);
  } else if (equalIgnoringCase(name, "modify")) {
    const auto moment = timeOfStamp(value);
    entry.time.precision = moment ? TimePrecision::Second : TimePrecision::None;
    entry.time.utc = true;
    entry.time.moment = moment.value_or(FileTime{});
  }
  return true;
}

// --- LIST

struct Token {
  std::string_view text;
  std::size_t end = 0;  // place behind it in the line
};

std::vector<Token> tokensOf(std::string_view line, std::size_t most) {
  std::vector<Token> tokens;
  std::size_t at = 0;
  while (tokens.size() < most) {
    const std::size_t start = line.find_first_not_of(' ', at);
    if (start == std::string_view::npos) break;
    at = std::min(line.find(' ', start), line.size());
    tokens.push_back({line.substr(start, at - start), at});
  }
  return tokens;
}

// "Jan" to "Dec" as 1 to 12, else 0.
int monthOf(std::string_view text) {
  constexpr std::array<std::string_view, 12> kMonths = {"jan", "feb", "mar", "apr", "may", "jun",
                                                        "jul", "aug", "sep", "oct", "nov", "dec"};
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (equalIgnoringCase(text, kMonths[i])) return static_cast<int>(i) + 1;
  }
  return 0;
}

// "23:59", or "23:59:58".
bool takeClock(std::string_view text, CivilTime& time) {
  if (text.size() < 4) return false;
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return false;
  const auto hour = numberOf<int>(text.substr(0, colon)), minute = numberOf<int>(text.substr(colon + 1, 2));
  if (!hour || !minute || *hour > 23 || *hour < 0 || *minute > 59 || *minute < 0) return false;
  time.hour = *hour;
  time.minute = *minute;
  return true;
}

// Three tokens "Jan 31 23:59" or "Jan 31 2023".
bool takeUnixDate(const Token* tokens, ListedTime& time) {
  const int month = monthOf(tokens[0].text);
  const auto day = numberOf<int>(tokens[1].text);
  if (month == 0 || !day || *day < 1 || *day > 31) return false;
  time.civil.month = month;
  time.civil.day = *day;
  const auto year = numberOf<int>(tokens[2].text);
  time.yearLeftOut = takeClock(tokens[2].text, time.civil);
  if (!time.yearLeftOut && (!year || *year < 1000 || *year > 9999)) return false;
  if (!time.yearLeftOut) time.civil.year = *year;
  time.precision = time.yearLeftOut ? TimePrecision::Minute : TimePrecision::Day;
  return true;
}

// Two tokens "2024-01-31 23:59".
bool takeIsoDate(const Token* tokens, ListedTime& time) {
  const std::string_view text = tokens[0].text;
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return false;
  const auto year = numberOf<int>(text.substr(0, 4)), month = numberOf<int>(text.substr(5, 2)),
             day = numberOf<int>(text.substr(8, 2));
  if (!year || !month || !day || !takeClock(tokens[1].text, time.civil)) return false;
  time.civil.year = *year;
  time.civil.month = *month;
  time.civil.day = *day;
  time.precision = TimePrecision::Minute;
  return true;
}

bool isPermissions(std::string_view text) {
  return text.size() >= 10 && text.find_first_not_of("rwxsStTlL-", 1) >= 10;
}

ListedKind kindOf(char type) {
  switch (type) {
    case '-':
      return ListedKind::File;
    case 'd':
      return ListedKind::Folder;
    case 'l':
      return ListedKind::Link;
    default:
      return ListedKind::Other;
  }
}

// A link's text "name -> target". The size of a link is the length of its target, which tells where the name
// ends when it holds an arrow too.
void partLink(std::string_view text, ListedEntry& entry) {
  constexpr std::string_view kArrow = " -> ";
  std::size_t at = text.find(kArrow);
  if (entry.size + kArrow.size() < text.size()) {
    const std::size_t bySize = text.size() - static_cast<std::size_t>(entry.size) - kArrow.size();
    if (text.substr(bySize, kArrow.size()) == kArrow) at = bySize;
  }
  entry.name = text.substr(0, at);
  if (at != std::string_view::npos) entry.target = text.substr(at + kArrow.size());
}

// The date stands behind the size, and the name behind the date; owner and group may have blanks or be
// missing.
ListedLine parseUnixLine(std::string_view line, ListedEntry& entry) {
  constexpr std::size_t kMostTokens = 16;
  const std::vector<Token> tokens = tokensOf(line, kMostTokens);
  entry.kind = kindOf(line[0]);
  for (std::size_t i = 2; i + 1 < tokens.size(); ++i) {
    const auto size = numberOf<std::uint64_t>(tokens[i - 1].text);
    std::size_t end = 0;
    if (i + 2 < tokens.size() && takeUnixDate(&tokens[i], entry.time))
      end = tokens[i + 2].end;
    else if (takeIsoDate(&tokens[i], entry.time))
      end = tokens[i + 1].end;
    else
      continue;
    // A device tells two numbers in place of a size.
    if (!size && entry.kind != ListedKind::Other) continue;
    entry.hasSize = size.has_value();
    entry.size = size.value_or(0);
    const std::string_view text = line.substr(std::min(end + 1, line.size()));
    if (entry.kind == ListedKind::Link)
      partLink(text, entry);
    else
      entry.name = text;
    return ListedLine::Entry;
  }
  return ListedLine::Unknown;
}

// "01-31-24" or "01-31-2024".
bool takeDosDate(std::string_view text, CivilTime& time) {
  if (text.size() < 8 || text[2] != '-' || text[5] != '-') return false;
  const auto month = numberOf<int>(text.substr(0, 2)), day = numberOf<int>(text.substr(3, 2)),
             year = numberOf<int>(text.substr(6));
  if (!month || !day || !year || *year < 0) return false;
  time.year = *year >= 100 ? *year : *year + (*year < 70 ? 2000 : 1900);
  time.month = *month;
  time.day = *day;
  return true;
}

// "11:59PM" or "23:59".
bool takeDosClock(std::string_view text, CivilTime& time) {
  const bool pm = text.size() > 2 && equalIgnoringCase(text.substr(text.size() - 2), "pm");
  const bool am = text.size() > 2 && equalIgnoringCase(text.substr(text.size() - 2), "am");
  if (am || pm) text.remove_suffix(2);
  if (!takeClock(text, time)) return false;
  if (pm && time.hour < 12) time.hour += 12;
  if (am && time.hour == 12) time.hour = 0;
  return true;
}

ListedLine parseDosLine(std::string_view line, ListedEntry& entry) {
  const std::vector<Token> tokens = tokensOf(line, 3);
  if (tokens.size() < 3 || !takeDosDate(tokens[0].text, entry.time.civil) ||
      !takeDosClock(tokens[1].text, entry.time.civil))
    return ListedLine::Unknown;
  entry.time.precision = TimePrecision::Minute;
  std::string_view name = line.substr(std::min(tokens[2].end, line.size()));
  std::size_t gap = 1;
  if (equalIgnoringCase(tokens[2].text, "<DIR>")) {
    constexpr std::size_t kGapOfFolders = 10;  // brings the name to the column where those of files begin
    entry.kind = ListedKind::Folder;
    gap = std::min(name.find_first_not_of(' '), kGapOfFolders);
  } else {
    const auto size = numberOf<std::uint64_t>(tokens[2].text);
    if (!size) return ListedLine::Unknown;
    entry.kind = ListedKind::File;
    entry.hasSize = true;
    entry.size = *size;
  }
  if (name.size() <= gap) return ListedLine::Unknown;
  entry.name = name.substr(gap);
  return ListedLine::Entry;
}

}  // namespace

ListedLine parseMachineLine(std::string_view line, ListedEntry& entry) {
  entry = {};
  if (!line.empty() && line[0] == ' ') line.remove_prefix(1);
  const std::size_t blank = line.find(' ');
  if (blank == std::string_view::npos || blank + 1 == line.size())
    return line.empty() ? ListedLine::Nothing : ListedLine::Unknown;
  std::string_view facts = line.substr(0, blank);
  if (facts.find('=') == std::string_view::npos) return ListedLine::Unknown;
  entry.name = line.substr(blank + 1);
  while (!facts.empty()) {
    const std::size_t end = std::min(facts.find(';'), facts.size());
    if (!takeFact(facts.substr(0, end), entry)) return ListedLine::Nothing;
    facts.remove_prefix(std::min(end + 1, facts.size()));
  }
  return ListedLine::Entry;
}

ListedLine parseListLine(std::string_view line, ListedEntry& entry) {
  entry = {};
  if (line.find_first_not_of(' ') == std::string_view::npos) return ListedLine::Nothing;
  const std::string_view first = line.substr(0, line.find(' '));
  if (equalIgnoringCase(first, "total") && line.size() < 40) return ListedLine::Nothing;
  const ListedLine result = isPermissions(first) ? parseUnixLine(line, entry) : parseDosLine(line, entry);
  return result == ListedLine::Entry && entry.name.empty() ? ListedLine::Unknown : result;
}

bool staysInFolder(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\") == std::string_view::npos;
}

bool holdsFolder(std::string_view folder, std::string_view inner) {
  if (folder == "/") return true;
  return inner.substr(0, folder.size()) == folder &&
         (inner.size() == folder.size() || inner[folder.size()] == '/');
}

bool leadsUpwards(std::string_view folder, std::string_view target) {
  std::string path = !target.empty() && target[0] == '/' ? "" : std::string(folder);
  while (!target.empty()) {
    const std::size_t end = std::min(target.find('/'), target.size());
    const std::string_view part = target.substr(0, end);
    target.remove_prefix(std::min(end + 1, target.size()));
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      const std::size_t slash = path.rfind('/');
      path.resize(slash == std::string::npos ? 0 : slash);
      continue;
    }
    if (path.empty() || path.back() != '/') path += '/';
    path += part;
  }
  return holdsFolder(path.empty() ? "/" : path, folder);
}

}  // namespace tandemize::platform::ftp
