// Waits of a session, in which events run.
#pragma once

#include <chrono>
#include <span>

#include "platform/sockets.h"

namespace tandemize::platform::ftp {

class Events {
 public:
  Events();
  Events(const Events&) = delete;
  Events& operator=(const Events&) = delete;

  void set(KeepGoing keepGoing) { user_ = std::move(keepGoing); }
  // From now on every wait gives kStopped at its next look: nobody wants the session any more.
  void end() { ended_ = true; }
  [[nodiscard]] bool ended() const { return ended_; }

  // For waits outside this class.
  [[nodiscard]] const KeepGoing& callback() const { return callback_; }
  // Lets events run if that was last done 20 ms ago or more: for loops that never have to wait long. kStopped
  // or kNoError.
  [[nodiscard]] ErrorCode look();
  [[nodiscard]] ErrorCode wait(std::span<Awaited> awaited, unsigned milliseconds);
  [[nodiscard]] ErrorCode waitToRead(const Waitable& what, unsigned milliseconds);

 private:
  [[nodiscard]] bool run();

  KeepGoing user_, callback_;
  std::chrono::steady_clock::time_point last_;
  bool ended_ = false;
};

}  // namespace tandemize::platform::ftp
