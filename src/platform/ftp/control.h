// The control connection: commands out, replies in, and both kept in step.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "platform/ftp.h"
#include "platform/ftp/events.h"
#include "platform/ftp/replies.h"

namespace tandemize::platform::ftp {

// The session's number for a failure of a socket; `whileConnecting` tells "cannot connect" from "lost".
[[nodiscard]] ErrorCode ftpError(ErrorCode socketError, bool whileConnecting);

// False for a text that would end its command or begin another one.
[[nodiscard]] bool fitsInCommand(std::string_view text);

// A command and its path or word. Trailing "/" of a folder go, but for the root's.
[[nodiscard]] std::string commandLine(std::string_view command, std::string_view argument);
[[nodiscard]] std::string_view withoutTrailingSlash(std::string_view folder);

// Each command sent owes one final reply. A wait that ended early leaves replies owed; they are read and
// dropped before the next command, so that no reply is ever taken for another command's.
//
// kFtpConnectionLost or kFtpConnectionReset when the server went away (421 included), kFtpBadReply when what
// came is no reply: the connection is closed then. kFtpTimedOut and kFtpStopped leave it open.
class ControlLine : public Waitable {
 public:
  ControlLine(Events& events, const FtpLimits& limits) : events_(events), limits_(limits) {}

  // Connects; the greeting is then owed.
  [[nodiscard]] ErrorCode open(const std::string& host, std::uint16_t port);
  void close();
  // Closes after a QUIT that nobody waits for.
  void leave();
  [[nodiscard]] bool isOpen() const { return channel_.isOpen(); }
  [[nodiscard]] int handle() const override { return channel_.handle(); }
  [[nodiscard]] bool hasBuffered() const override { return reader_.hasLine(); }
  [[nodiscard]] const TcpChannel& channel() const { return channel_; }

  // Never to be seen in `words`.
  void hide(std::string secret) { secret_ = std::move(secret); }
  [[nodiscard]] const std::string& words() const { return words_; }  // of the last reply
  void setWords(std::string words) { words_ = std::move(words); }

  // Reads what is owed and drops what came unasked. To be called before commands are sent.
  [[nodiscard]] ErrorCode settle();
  [[nodiscard]] ErrorCode send(std::span<const std::string> lines);
  [[nodiscard]] ErrorCode send(std::initializer_list<std::string> lines) {
    return send(std::span(lines.begin(), lines.size()));
  }
  // The next reply, preliminary or final, within `milliseconds`.
  [[nodiscard]] ErrorCode reply(Reply& reply, unsigned milliseconds);
  [[nodiscard]] ErrorCode reply(Reply& answer) { return reply(answer, limits_.silence); }
  [[nodiscard]] ErrorCode finalReply(Reply& reply, unsigned milliseconds);
  [[nodiscard]] ErrorCode finalReply(Reply& answer) { return finalReply(answer, limits_.silence); }
  [[nodiscard]] ErrorCode ask(const std::string& line, Reply& reply);  // settle, send, finalReply

  // The reply that is owed is that of a transfer whose data connection has been dropped. Nobody waits for it
  // until the next command is due; if it does not come then within `FtpLimits::closing`, ABOR asks for it.
  void abandonReply() { abandoned_ = owed_ > 0; }

 private:
  [[nodiscard]] ErrorCode settleAbandoned();
  [[nodiscard]] ErrorCode abortTransfer();
  [[nodiscard]] ErrorCode receive();  // what is there
  [[nodiscard]] ErrorCode take(Reply& reply);
  [[nodiscard]] ErrorCode dropUnasked();
  [[nodiscard]] ErrorCode failed(ErrorCode error);
  void keepWords(const Reply& reply);

  Events& events_;
  const FtpLimits& limits_;
  TcpChannel channel_;
  ReplyReader reader_;
  std::string secret_, words_;
  unsigned owed_ = 0;
  bool abandoned_ = false;
  std::size_t received_ = 0;  // bytes since the last final reply
};

}  // namespace tandemize::platform::ftp
