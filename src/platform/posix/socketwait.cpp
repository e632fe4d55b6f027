#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <vector>

#include "platform/sockets.h"

namespace tandemize::platform {

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kStep = 20;  // milliseconds between two looks at the events

pollfd entryOf(const Awaited& awaited) {
  const int events = (awaited.toRead ? POLLIN : 0) | (awaited.toWrite ? POLLOUT : 0);
  return {awaited.what == nullptr ? -1 : awaited.what->handle(), static_cast<short>(events), 0};
}

// One look at all of them, for at most a step. True if one is ready.
bool look(std::span<Awaited> awaited, int milliseconds) {
  std::array<pollfd, 4> few{};
  std::vector<pollfd> many;
  if (awaited.size() > few.size()) many.resize(awaited.size());
  pollfd* const entries = many.empty() ? few.data() : many.data();
  bool ready = false;
  for (std::size_t i = 0; i < awaited.size(); ++i) {
    entries[i] = entryOf(awaited[i]);
    awaited[i].readable = awaited[i].toRead && entries[i].fd >= 0 && awaited[i].what->hasBuffered();
    awaited[i].writable = false;
    ready = ready || awaited[i].readable;
  }
  if (::poll(entries, awaited.size(), ready ? 0 : milliseconds) <= 0) return ready;
  for (std::size_t i = 0; i < awaited.size(); ++i) {
    const int came = entries[i].revents;
    const bool over = (came & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    awaited[i].readable = awaited[i].readable || (awaited[i].toRead && ((came & POLLIN) != 0 || over));
    awaited[i].writable = awaited[i].toWrite && ((came & POLLOUT) != 0 || over);
    ready = ready || awaited[i].readable || awaited[i].writable;
  }
  return ready;
}

}  // namespace

ErrorCode waitForAny(std::span<Awaited> awaited, unsigned milliseconds, const KeepGoing& keepGoing) {
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
  for (;;) {
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    const auto step = static_cast<int>(std::clamp<decltype(rest)>(rest, 0, kStep));
    if (look(awaited, step)) return kNoError;
    if (Clock::now() >= end) return kSocketTimedOut;
    if (keepGoing && !keepGoing()) return kStopped;
  }
}

ErrorCode waitToRead(const Waitable& what, unsigned milliseconds, const KeepGoing& keepGoing) {
  Awaited one{&what, true};
  return waitForAny({&one, 1}, milliseconds, keepGoing);
}

ErrorCode waitToWrite(const Waitable& what, unsigned milliseconds, const KeepGoing& keepGoing) {
  Awaited one{&what, false, true};
  return waitForAny({&one, 1}, milliseconds, keepGoing);
}

ErrorCode writeAll(ByteChannel& channel, std::string_view bytes, unsigned milliseconds,
                   const KeepGoing& keepGoing) {
  while (!bytes.empty()) {
    std::size_t taken = 0;
    ErrorCode error = channel.write(bytes.data(), bytes.size(), taken);
    bytes.remove_prefix(taken);
    if (error == kSocketWouldBlock) error = waitToWrite(channel, milliseconds, keepGoing);
    if (error != kNoError) return error;
  }
  return kNoError;
}

}  // namespace tandemize::platform
