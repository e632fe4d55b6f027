#include "platform/ftp/control.h"

#include <array>
#include <chrono>

namespace tandemize::platform::ftp {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::size_t kMostPerReply = std::size_t{2} << 20U;
constexpr std::size_t kShortSecret = 4;  // a shorter one would be found in ordinary words

unsigned untilThen(Clock::time_point end) {
  const auto rest = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
  return rest > 0 ? static_cast<unsigned>(rest) : 0;
}

}  // namespace

ErrorCode ftpError(ErrorCode error, bool whileConnecting) {
  switch (error) {
    case kNoError:
      return kNoError;
    case kStopped:
      return kFtpStopped;
    case kSocketTimedOut:
      return kFtpTimedOut;
    case kHostNotFound:
    case kHostTryAgain:
    case 11003:
    case 11004:
      return kFtpNameNotResolved;
    default:
      return whileConnecting ? kFtpCannotConnect : kFtpConnectionReset;
  }
}

bool fitsInCommand(std::string_view text) {
  constexpr std::string_view kEnds("\r\n\0", 3);
  return text.find_first_of(kEnds) == std::string_view::npos;
}

std::string_view withoutTrailingSlash(std::string_view folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.remove_suffix(1);
  return folder;
}

std::string commandLine(std::string_view command, std::string_view argument) {
  std::string line(command);
  line += ' ';
  line += argument;
  return line;
}

ErrorCode ControlLine::open(const std::string& host, std::uint16_t port) {
  close();
  const ErrorCode error = channel_.connect(host, port, limits_.connect, events_.callback());
  if (error != kNoError) return ftpError(error, true);
  channel_.keepAlive();
  owed_ = 1;
  return kNoError;
}

void ControlLine::close() {
  channel_.close(false);
  reader_.clear();
  owed_ = 0;
  abandoned_ = false;
  received_ = 0;
}

void ControlLine::leave() {
  std::size_t taken = 0;
  if (isOpen()) static_cast<void>(channel_.write("QUIT\r\n", 6, taken));
  channel_.endWriting();
  close();
}

ErrorCode ControlLine::failed(ErrorCode error) {
  close();
  return error;
}

void ControlLine::keepWords(const Reply& reply) {
  if (!secret_.empty() && secret_.size() < kShortSecret && reply.text.find(secret_) != std::string::npos)
    words_ = std::to_string(reply.code);
  else
    words_ = wordsOf(reply, secret_);
}

ErrorCode ControlLine::receive() {
  std::array<char, 4096> bytes{};
  std::size_t got = 0;
  const ErrorCode error = channel_.read(bytes.data(), bytes.size(), got);
  if (error == kSocketWouldBlock) return error;
  if (error != kNoError) return failed(ftpError(error, false));
  if (got == 0) return failed(kFtpConnectionLost);
  received_ += got;
  if (received_ > kMostPerReply) return failed(kFtpBadReply);
  reader_.add({bytes.data(), got});
  return kNoError;
}

// A reply that has come whole; kSocketWouldBlock if none has.
ErrorCode ControlLine::take(Reply& reply) {
  switch (reader_.take(reply)) {
    case TakenReply::Incomplete:
      return kSocketWouldBlock;
    case TakenReply::Garbage:
      return failed(kFtpBadReply);
    case TakenReply::Whole:
      break;
  }
  keepWords(reply);
  if (!reply.preliminary()) {
    if (owed_ > 0) --owed_;
    received_ = 0;
  }
  return reply.code == 421 ? failed(kFtpConnectionLost) : kNoError;
}

ErrorCode ControlLine::reply(Reply& reply, unsigned milliseconds) {
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
  if (!isOpen()) return kFtpConnectionLost;
  for (bool looked = false;; looked = true) {
    ErrorCode error = take(reply);
    if (error != kSocketWouldBlock) return error;
    // A server that sends a byte now and then is as silent as one that sends none.
    if (looked && Clock::now() > end) return kFtpTimedOut;
    error = receive();
    if (error == kSocketWouldBlock) error = ftpError(events_.waitToRead(channel_, untilThen(end)), false);
    if (error == kNoError && events_.look() != kNoError) error = kFtpStopped;
    if (error != kNoError) return error;
  }
}

ErrorCode ControlLine::finalReply(Reply& answer, unsigned milliseconds) {
  for (;;) {
    const ErrorCode error = reply(answer, milliseconds);
    if (error != kNoError || !answer.preliminary()) return error;
  }
}

ErrorCode ControlLine::dropUnasked() {
  for (;;) {
    Reply unasked;
    ErrorCode error = take(unasked);
    if (error == kSocketWouldBlock) {
      error = receive();
      if (error == kSocketWouldBlock) return kNoError;
    }
    if (error != kNoError) return error;
  }
}

ErrorCode ControlLine::settle() {
  if (!isOpen()) return kFtpConnectionLost;
  if (abandoned_) {
    const ErrorCode error = settleAbandoned();
    if (error != kNoError) return error;
  }
  while (owed_ > 0) {
    Reply late;
    const ErrorCode error = finalReply(late);
    if (error != kNoError) return error;
  }
  return dropUnasked();
}

ErrorCode ControlLine::send(std::span<const std::string> lines) {
  std::string bytes;
  for (const std::string& line : lines) {
    if (!fitsInCommand(line)) return kInvalidName;
    for (const char c : line) {
      bytes += c;
      // The connection speaks the terminal protocol, in which this byte begins an order unless it stands
      // twice.
      if (c == '\xFF') bytes += c;
    }
    bytes += "\r\n";
  }
  if (!isOpen()) return kFtpConnectionLost;
  const ErrorCode error = writeAll(channel_, bytes, limits_.silence, events_.callback());
  // A command of which a part went out would swallow the next one.
  if (error != kNoError) return failed(ftpError(error, false));
  owed_ += static_cast<unsigned>(lines.size());
  return kNoError;
}

ErrorCode ControlLine::ask(const std::string& line, Reply& reply) {
  if (!fitsInCommand(line)) return kInvalidName;
  ErrorCode error = settle();
  if (error == kNoError) error = send({line});
  return error != kNoError ? error : finalReply(reply);
}

ErrorCode ControlLine::settleAbandoned() {
  Reply late;
  const ErrorCode error = finalReply(late, limits_.closing);
  if (error == kFtpTimedOut) return abortTransfer();
  abandoned_ = error != kNoError;
  return error;
}

// ABOR, then NOOP: a transfer ends with another code than 200, and so does ABOR, so the 200 of NOOP shows
// that the connection is in step again, whichever of the others came.
ErrorCode ControlLine::abortTransfer() {
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(limits_.closing);
  ErrorCode error = send({"ABOR", "NOOP"});
  while (error == kNoError) {
    Reply reply;
    error = finalReply(reply, untilThen(end));
    if (error == kNoError && reply.code == 200) {
      owed_ = 0;
      abandoned_ = false;
      return kNoError;
    }
  }
  return failed(error == kFtpStopped ? error : kFtpConnectionLost);
}

}  // namespace tandemize::platform::ftp
