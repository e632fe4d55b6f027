// A clock that a test sets and moves, in place of the host's.
#pragma once

#include <cstdint>
#include <optional>

namespace tandemize::platform {

struct SimulatedClock {
  std::int64_t milliseconds = 0;  // since 1970, UTC; to be set at will, as a user sets a clock
  std::uint64_t monotonic = 0;    // goes on with every sleep, whatever becomes of the time
  unsigned shortestSleep = 1;     // milliseconds; on a real host, too, a short sleep may last longer

  void goOn(std::uint64_t span) {  // milliseconds
    milliseconds += static_cast<std::int64_t>(span);
    monotonic += span;
  }
};

// While it holds a clock, `now`, `monotonicMilliseconds` and `sleepMilliseconds` go by it: a sleep returns at
// once and the clock has gone on by its time. Empty in the program.
[[nodiscard]] std::optional<SimulatedClock>& simulatedClock();

}  // namespace tandemize::platform
