#include "platform/posix/clockways.h"

#include <gtest/gtest.h>

#include "fixtures/SimulatedTime.h"
#include "platform/machine.h"

namespace tandemize::platform {
namespace {

using test::SimulatedTime;

TEST(SimulatedClock, Stands_still_until_somebody_waits_and_then_goes_on_by_the_wait) {
  const SimulatedTime time({2030, 2, 1, 13, 30, 0});
  const std::int64_t start = now();
  EXPECT_EQ(now(), start);
  sleepMilliseconds(60'000);
  EXPECT_EQ(now(), start + 60);
}

TEST(SimulatedClock, A_short_sleep_lasts_as_long_as_the_shortest_one) {
  const SimulatedTime time({2030, 2, 1, 13, 30, 0});
  const std::uint64_t start = monotonicMilliseconds();
  sleepMilliseconds(5);
  EXPECT_EQ(monotonicMilliseconds(), start + simulatedClock()->shortestSleep);
}

TEST(SimulatedClock, Setting_the_time_leaves_intervals_alone) {
  const SimulatedTime time({2030, 2, 1, 13, 30, 0});
  const std::uint64_t start = monotonicMilliseconds();
  SimulatedTime::set({2031, 2, 1, 13, 30, 0});
  EXPECT_EQ(monotonicMilliseconds(), start);
  EXPECT_EQ(SimulatedTime::local(), (CivilTime{2031, 2, 1, 13, 30, 0}));
}

TEST(SimulatedClock, Without_one_the_hosts_clock_counts) {
  { const SimulatedTime time({2001, 1, 1}); }
  EXPECT_GT(now(), 1'700'000'000);
}

}  // namespace
}  // namespace tandemize::platform
