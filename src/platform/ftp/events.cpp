#include "platform/ftp/events.h"

namespace tandemize::platform::ftp {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kStep{20};

}  // namespace

Events::Events() : callback_([this] { return run(); }), last_(Clock::now()) {}

bool Events::run() {
  const KeepGoing user = user_;  // it may be replaced while it runs
  const bool goOn = !user || user();
  last_ = Clock::now();
  return !ended_ && goOn;
}

ErrorCode Events::look() {
  if (ended_) return kStopped;
  if (Clock::now() - last_ < kStep) return kNoError;
  return run() ? kNoError : kStopped;
}

ErrorCode Events::wait(std::span<Awaited> awaited, unsigned milliseconds) {
  const ErrorCode error = look();
  return error != kNoError ? error : waitForAny(awaited, milliseconds, callback_);
}

ErrorCode Events::waitToRead(const Waitable& what, unsigned milliseconds) {
  Awaited one{&what, true};
  return wait({&one, 1}, milliseconds);
}

}  // namespace tandemize::platform::ftp
