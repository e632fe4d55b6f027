// Replies of an FTP server, taken from the bytes of the control connection.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tandemize::platform::ftp {

struct Reply {
  int code = 0;
  std::string text;  // without the code; lines parted by LF

  [[nodiscard]] bool preliminary() const { return code / 100 == 1; }
  [[nodiscard]] bool good() const { return code / 100 == 2; }
  [[nodiscard]] bool wantsMore() const { return code / 100 == 3; }
  [[nodiscard]] bool refused() const { return code / 100 == 4 || code / 100 == 5; }
  // The server does not know the command, or not in this form.
  [[nodiscard]] bool unknownCommand() const { return code >= 500 && code <= 504; }
};

enum class TakenReply : std::uint8_t { Incomplete, Whole, Garbage };

class ReplyReader {
 public:
  void add(std::string_view bytes);
  // Takes the next whole reply. Garbage: a line that is no reply, a code above 599, or a reply without end;
  // what follows cannot be trusted to be in step.
  [[nodiscard]] TakenReply take(Reply& reply);
  [[nodiscard]] bool hasLine() const { return buffer_.find('\n', used_) != std::string::npos; }
  void clear();

 private:
  // False when the line cannot be part of a reply.
  [[nodiscard]] bool takeLine(std::string_view line, bool& whole);

  std::string buffer_;
  std::size_t used_ = 0;  // of the buffer
  Reply reply_;           // as far as it has come
};

// The port of a 229 reply, "(|||6446|)", and of a 227 reply, "(10,0,0,1,25,46)". The address that a 227 names
// is nobody's business: data goes to the server that the session talks to.
[[nodiscard]] std::optional<std::uint16_t> portOfExtendedPassive(std::string_view text);
[[nodiscard]] std::optional<std::uint16_t> portOfPassive(std::string_view text);

// The path of a 257 reply, in which quotes stand doubled.
[[nodiscard]] std::optional<std::string> quotedPath(std::string_view text);

// The number of "(1234 bytes)", which many servers put into the reply that begins a download.
[[nodiscard]] std::optional<std::uint64_t> sizeInReply(std::string_view text);

// Code and text in one line, for a person: control characters are blanks, `secret` is "***".
[[nodiscard]] std::string wordsOf(const Reply& reply, std::string_view secret);

}  // namespace tandemize::platform::ftp
