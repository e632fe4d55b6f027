#include "platform/ftp/listtime.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace tandemize::platform::ftp {

namespace {

constexpr std::int64_t kMinute = 60, kHour = 3600, kDay = 86400;
constexpr std::int64_t kZoneStep = 15 * kMinute;  // every zone's offset is a multiple
constexpr std::int64_t kWidestZone = 14 * kHour;

bool isLeapYear(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysInMonth(int year, int month) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

bool exists(const CivilTime& time) {
  return time.year >= 1 && time.year <= 9999 && time.month >= 1 && time.month <= 12 && time.day >= 1 &&
         time.day <= daysInMonth(time.year, time.month) && time.hour >= 0 && time.hour <= 23 &&
         time.minute >= 0 && time.minute <= 59 && time.second >= 0 && time.second <= 59;
}

// Days from 1970-01-01. Years are counted from March, so that the leap day is a year's last.
std::int64_t daysOf(int year, int month, int day) {
  const std::int64_t shifted = month <= 2 ? year - 1 : year;
  const std::int64_t era = shifted / 400, yearOfEra = shifted % 400;
  const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

// The number that `count` digits at `at` are, or -1.
int digits(std::string_view text, std::size_t at, std::size_t count) {
  int number = 0;
  for (const char c : text.substr(at, count)) {
    if (c < '0' || c > '9') return -1;
    number = number * 10 + (c - '0');
  }
  return number;
}

std::int32_t nanosecondsOf(std::string_view fraction) {
  std::int32_t nanoseconds = 0, unit = 100'000'000;
  for (const char c : fraction.substr(0, 9)) {
    if (c < '0' || c > '9') break;
    nanoseconds += (c - '0') * unit;
    unit /= 10;
  }
  return nanoseconds;
}

}  // namespace

std::optional<std::int64_t> secondsOf(const CivilTime& utc) {
  if (!exists(utc)) return std::nullopt;
  return daysOf(utc.year, utc.month, utc.day) * kDay + utc.hour * kHour + utc.minute * kMinute + utc.second;
}

std::optional<FileTime> timeOfStamp(std::string_view stamp) {
  constexpr std::size_t kLength = 14;
  if (stamp.size() < kLength) return std::nullopt;
  CivilTime time;
  time.year = digits(stamp, 0, 4);
  time.month = digits(stamp, 4, 2);
  time.day = digits(stamp, 6, 2);
  time.hour = digits(stamp, 8, 2);
  time.minute = digits(stamp, 10, 2);
  time.second = std::min(digits(stamp, 12, 2), 59);  // a leap second is told as 60
  const auto seconds = secondsOf(time);
  if (!seconds) return std::nullopt;
  const bool hasFraction = stamp.size() > kLength && stamp[kLength] == '.';
  return FileTime{*seconds, hasFraction ? nanosecondsOf(stamp.substr(kLength + 1)) : 0};
}

void ServerClock::learn(const ListedTime& listed, std::int64_t utcSeconds) {
  if (listed.utc || listed.precision < TimePrecision::Minute) return;
  const std::int64_t utcMinute = utcSeconds - (utcSeconds % kMinute + kMinute) % kMinute;
  const int year = localTime(utcSeconds).year;
  for (int candidate = year - 1; candidate <= year + 1; ++candidate) {
    CivilTime civil = listed.civil;
    civil.second = 0;
    if (listed.yearLeftOut) civil.year = candidate;
    const auto seconds = secondsOf(civil);
    if (!seconds) continue;
    const std::int64_t offset = *seconds - utcMinute;
    if (std::abs(offset) > kWidestZone || offset % kZoneStep != 0) continue;
    offset_ = offset;
    machineZone_ = secondsOf(localTime(utcMinute)) == seconds;
    return;
  }
}

std::optional<std::int64_t> ServerClock::secondsByServer(const CivilTime& civil) const {
  if (machineZone_) return utcFromLocal(civil);
  const auto seconds = secondsOf(civil);
  return seconds ? std::optional(*seconds - *offset_) : std::nullopt;
}

std::optional<FileTime> ServerClock::utcOf(const ListedTime& listed) const {
  if (listed.precision == TimePrecision::None) return std::nullopt;
  if (listed.utc) return listed.moment;
  const auto told = [&](const CivilTime& civil) {
    return listed.precision == TimePrecision::Day ? utcFromLocal(civil) : secondsByServer(civil);
  };
  CivilTime civil = listed.civil;
  if (!listed.yearLeftOut) {
    const auto seconds = told(civil);
    return seconds ? std::optional(FileTime{*seconds, 0}) : std::nullopt;
  }
  // A day of grace, for clocks that differ. 29 February may need more than one step back.
  const std::int64_t latest = now() + kDay;
  const int thisYear = localTime(latest).year;
  for (civil.year = thisYear; civil.year > thisYear - 8; --civil.year) {
    const auto seconds = told(civil);
    if (seconds && *seconds <= latest) return FileTime{*seconds, 0};
  }
  return std::nullopt;
}

}  // namespace tandemize::platform::ftp
