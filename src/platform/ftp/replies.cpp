#include "platform/ftp/replies.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace tandemize::platform::ftp {

namespace {

constexpr std::size_t kLongestReply = std::size_t{1} << 20U;
constexpr std::size_t kLongestWords = 1000;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The code that a line begins with, or 0.
int codeOf(std::string_view line) {
  if (line.size() < 3 || !isDigit(line[0]) || !isDigit(line[1]) || !isDigit(line[2])) return 0;
  return (line[0] - '0') * 100 + (line[1] - '0') * 10 + (line[2] - '0');
}

template <typename Number>
std::optional<Number> takeNumber(std::string_view& text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

// Six numbers parted by commas at the start of the text.
std::optional<std::uint16_t> portOfSix(std::string_view text) {
  std::array<std::uint8_t, 6> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0) {
      if (text.empty() || text[0] != ',') return std::nullopt;
      text.remove_prefix(1);
    }
    const auto number = takeNumber<std::uint8_t>(text);
    if (!number) return std::nullopt;
    numbers[i] = *number;
  }
  const int port = numbers[4] * 256 + numbers[5];
  return port == 0 ? std::nullopt : std::optional(static_cast<std::uint16_t>(port));
}

void replaceAll(std::string& text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
    text.replace(at, what.size(), with);
}

// Cuts without leaving a part of a character of several bytes.
void shorten(std::string& text) {
  if (text.size() <= kLongestWords) return;
  std::size_t length = kLongestWords;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  text.resize(length);
}

}  // namespace

void ReplyReader::add(std::string_view bytes) {
  if (used_ > 0) buffer_.erase(0, used_);
  used_ = 0;
  buffer_.append(bytes);
}

void ReplyReader::clear() {
  buffer_.clear();
  used_ = 0;
  reply_ = {};
}

TakenReply ReplyReader::take(Reply& reply) {
  for (;;) {
    const std::size_t end = buffer_.find('\n', used_);
    if (end == std::string::npos) {
      return buffer_.size() - used_ > kLongestReply ? TakenReply::Garbage : TakenReply::Incomplete;
    }
    std::string_view line(buffer_.data() + used_, end - used_);
    used_ = end + 1;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    bool whole = false;
    if (!takeLine(line, whole) || reply_.text.size() > kLongestReply) return TakenReply::Garbage;
    if (!whole) continue;
    reply = std::move(reply_);
    reply_ = {};
    return TakenReply::Whole;
  }
}

bool ReplyReader::takeLine(std::string_view line, bool& whole) {
  const int code = codeOf(line);
  const bool begins = reply_.code == 0;
  if (begins && (code < 100 || code > 599)) return false;
  const bool coded = code != 0 && (begins || code == reply_.code);
  const char after = coded && line.size() > 3 ? line[3] : ' ';
  if (begins && after != ' ' && after != '-') return false;
  if (begins)
    reply_.code = code;
  else
    reply_.text += '\n';
  whole = coded && after == ' ';
  const bool hasCode = coded && (after == ' ' || after == '-');
  reply_.text.append(hasCode ? line.substr(std::min<std::size_t>(4, line.size())) : line);
  return true;
}

std::optional<std::uint16_t> portOfExtendedPassive(std::string_view text) {
  const std::size_t open = text.find('(');
  if (open == std::string_view::npos || text.size() < open + 6) return std::nullopt;
  const char bar = text[open + 1];
  if (isDigit(bar) || text[open + 2] != bar || text[open + 3] != bar) return std::nullopt;
  text.remove_prefix(open + 4);
  const auto port = takeNumber<std::uint16_t>(text);
  return port && *port != 0 && !text.empty() && text[0] == bar ? port : std::nullopt;
}

std::optional<std::uint16_t> portOfPassive(std::string_view text) {
  // Some servers leave the brackets out, so the first six numbers count.
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!isDigit(text[i]) || (i > 0 && isDigit(text[i - 1]))) continue;
    if (const auto port = portOfSix(text.substr(i))) return port;
  }
  return std::nullopt;
}

std::optional<std::string> quotedPath(std::string_view text) {
  const std::size_t start = text.find('"');
  if (start == std::string_view::npos) return std::nullopt;
  std::string path;
  for (std::size_t i = start + 1; i < text.size(); ++i) {
    if (text[i] == '"' && (++i == text.size() || text[i] != '"')) return path;
    path.push_back(text[i]);
  }
  return std::nullopt;
}

std::optional<std::uint64_t> sizeInReply(std::string_view text) {
  constexpr std::string_view kUnit = " bytes)";
  const std::size_t end = text.rfind(kUnit);
  if (end == std::string_view::npos) return std::nullopt;
  const std::size_t start = text.rfind('(', end);
  if (start == std::string_view::npos) return std::nullopt;
  std::string_view digits = text.substr(start + 1, end - start - 1);
  const auto size = takeNumber<std::uint64_t>(digits);
  return digits.empty() ? size : std::nullopt;
}

std::string wordsOf(const Reply& reply, std::string_view secret) {
  std::string words = std::to_string(reply.code);
  words += ' ';
  words += reply.text;
  if (!secret.empty()) replaceAll(words, secret, "***");
  for (char& c : words) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  shorten(words);
  return words;
}

}  // namespace tandemize::platform::ftp
