#include <gtest/gtest.h>
#include <time.h>

#include <string>
#include <vector>

#include "platform/environment.h"
#include "platform/machine.h"

namespace tandemize::platform {
namespace {

class Zone {
 public:
  explicit Zone(const std::string& name) : variable_("TZ", name) { ::tzset(); }

 private:
  // Set back, and told to the C library, in this order.
  struct Telling {
    ~Telling() { ::tzset(); }
  } telling_;
  test::ScopedVariable variable_;
};

// Rome goes from UTC+1 to UTC+2 at 2026-03-29 01:00 UTC and back at 2026-10-25 01:00 UTC.
constexpr std::int64_t kRomeSpring = 1774746000;
constexpr std::int64_t kRomeAutumn = 1792890000;

TEST(LocalTime, Uses_the_offset_that_held_at_the_moment) {
  const Zone rome("Europe/Rome");
  EXPECT_EQ(localTime(kRomeSpring - 1), (CivilTime{2026, 3, 29, 1, 59, 59}));
  EXPECT_EQ(localTime(kRomeSpring), (CivilTime{2026, 3, 29, 3, 0, 0}));
  EXPECT_EQ(localTime(kRomeAutumn - 1), (CivilTime{2026, 10, 25, 2, 59, 59}));
  EXPECT_EQ(localTime(kRomeAutumn), (CivilTime{2026, 10, 25, 2, 0, 0}));
  EXPECT_EQ(localTime(0), (CivilTime{1970, 1, 1, 1, 0, 0}));
}

TEST(LocalTime, Reaches_before_1970_and_far_ahead) {
  const Zone utc("UTC");
  EXPECT_EQ(localTime(-1), (CivilTime{1969, 12, 31, 23, 59, 59}));
  EXPECT_EQ(localTime(4102444800), (CivilTime{2100, 1, 1, 0, 0, 0}));
  EXPECT_EQ(localTime(INT64_MAX), CivilTime{});
}

TEST(UtcFromLocal, Gives_the_first_of_two_moments_with_the_same_local_time) {
  {
    const Zone rome("Europe/Rome");
    EXPECT_EQ(utcFromLocal({2026, 10, 25, 2, 30, 0}), kRomeAutumn - 1800);
    EXPECT_EQ(utcFromLocal({2026, 10, 25, 3, 0, 0}), kRomeAutumn + 3600);
  }
  const Zone newYork("America/New_York");
  // 2026-11-01 06:00 UTC is the change back.
  EXPECT_EQ(utcFromLocal({2026, 11, 1, 1, 0, 0}), 1793512800 - 3600);
}

TEST(UtcFromLocal, Counts_a_skipped_time_as_the_first_moment_after_the_change) {
  {
    const Zone rome("Europe/Rome");
    EXPECT_EQ(utcFromLocal({2026, 3, 29, 2, 0, 0}), kRomeSpring);
    EXPECT_EQ(utcFromLocal({2026, 3, 29, 2, 30, 0}), kRomeSpring);
    EXPECT_EQ(utcFromLocal({2026, 3, 29, 3, 0, 0}), kRomeSpring);
    EXPECT_EQ(utcFromLocal({2026, 3, 29, 1, 59, 59}), kRomeSpring - 1);
  }
  {
    // 2026-03-08 07:00 UTC.
    const Zone newYork("America/New_York");
    EXPECT_EQ(utcFromLocal({2026, 3, 8, 2, 15, 0}), 1772953200);
  }
  // A whole day was skipped when Samoa crossed the date line: 2011-12-30 10:00 UTC is its 31st.
  const Zone apia("Pacific/Apia");
  EXPECT_EQ(utcFromLocal({2011, 12, 30, 12, 0, 0}), 1325239200);
}

TEST(UtcFromLocal, Is_empty_for_a_date_that_does_not_exist) {
  const Zone rome("Europe/Rome");
  const std::vector<CivilTime> impossible = {
      {2025, 2, 29},          {2100, 2, 29}, {2026, 4, 31},          {2026, 13, 1},
      {2026, 0, 1},           {2026, 1, 0},  {2026, 1, 1, 24, 0, 0}, {2026, 1, 1, 0, 60, 0},
      {2026, 1, 1, 0, 0, 60}, {0, 1, 1},     {10000, 1, 1},          {2026, 1, 1, -1, 0, 0}};
  for (const CivilTime& time : impossible) {
    EXPECT_FALSE(utcFromLocal(time).has_value()) << time.year << '-' << time.month << '-' << time.day;
  }
  EXPECT_TRUE(utcFromLocal({2024, 2, 29}).has_value());
  EXPECT_TRUE(utcFromLocal({2000, 2, 29}).has_value());
}

TEST(UtcFromLocal, Is_the_way_back_from_local_time) {
  for (const char* name :
       {"Europe/Rome", "America/New_York", "Asia/Kathmandu", "Australia/Lord_Howe", "UTC"}) {
    const Zone zone(name);
    for (std::int64_t moment = 1767225600; moment < 1767225600 + 366 * 86400; moment += 5413) {
      const auto back = utcFromLocal(localTime(moment));
      ASSERT_TRUE(back.has_value());
      EXPECT_EQ(localTime(*back), localTime(moment)) << name << ' ' << moment;
      EXPECT_LE(*back, moment) << name;
    }
  }
}

TEST(Clock, Runs_forward) {
  const std::uint64_t first = monotonicMilliseconds();
  EXPECT_LE(first, monotonicMilliseconds());
  EXPECT_GT(now(), 1700000000);
}

}  // namespace
}  // namespace tandemize::platform
