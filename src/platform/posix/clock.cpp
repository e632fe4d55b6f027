#include <time.h>

#include <algorithm>
#include <array>

#include "platform/machine.h"
#include "platform/posix/clockways.h"

namespace tandemize::platform {

namespace {

// Beyond the widest offset of any zone (14 hours) and the longest skip (a day), so it reaches both sides of a
// change.
constexpr std::int64_t kWindow = 26 * std::int64_t{3600};

void loadZoneOnce() {
  static const bool loaded = (::tzset(), true);
  static_cast<void>(loaded);
}

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

// Seconds since 1970 if the clock's time were UTC.
std::int64_t secondsAsUtc(const CivilTime& time) {
  tm parts{};
  parts.tm_year = time.year - 1900;
  parts.tm_mon = time.month - 1;
  parts.tm_mday = time.day;
  parts.tm_hour = time.hour;
  parts.tm_min = time.minute;
  parts.tm_sec = time.second;
  return ::timegm(&parts);
}

std::int64_t offsetAt(std::int64_t utcSeconds) {
  return secondsAsUtc(localTime(utcSeconds)) - utcSeconds;
}

// The first moment after `before` at which the zone no longer has the offset that it has there; `after` has
// another one.
std::int64_t changeBetween(std::int64_t before, std::int64_t after) {
  const std::int64_t offset = offsetAt(before);
  while (after - before > 1) {
    const std::int64_t middle = before + (after - before) / 2;
    (offsetAt(middle) == offset ? before : after) = middle;
  }
  return after;
}

}  // namespace

std::optional<SimulatedClock>& simulatedClock() {
  static std::optional<SimulatedClock> clock;
  return clock;
}

std::int64_t now() {
  if (const auto& clock = simulatedClock()) return clock->milliseconds / 1000;
  return ::time(nullptr);
}

std::uint64_t monotonicMilliseconds() {
  if (const auto& clock = simulatedClock()) return clock->monotonic;
  timespec moment{};
  ::clock_gettime(CLOCK_MONOTONIC, &moment);
  return static_cast<std::uint64_t>(moment.tv_sec) * 1000 +
         static_cast<std::uint64_t>(moment.tv_nsec) / 1000000;
}

CivilTime localTime(std::int64_t utcSeconds) {
  loadZoneOnce();
  tm parts{};
  const time_t moment = utcSeconds;
  if (::localtime_r(&moment, &parts) == nullptr) return {};
  // A leap second, which only the "right/" zones tell, counts as the second before it.
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
          parts.tm_hour,        parts.tm_min,     std::min(parts.tm_sec, 59)};
}

std::optional<std::int64_t> utcFromLocal(const CivilTime& local) {
  if (!exists(local)) return std::nullopt;
  const std::int64_t asUtc = secondsAsUtc(local);
  const std::int64_t before = asUtc - offsetAt(asUtc - kWindow);
  const std::int64_t after = asUtc - offsetAt(asUtc + kWindow);
  // Summer time begins earlier by the clock than it ends, so the smaller moment is the first of two.
  for (const std::int64_t moment : {std::min(before, after), std::max(before, after)}) {
    if (localTime(moment) == local) return moment;
  }
  return changeBetween(asUtc - kWindow, asUtc + kWindow);
}

void sleepMilliseconds(unsigned milliseconds) {
  if (auto& clock = simulatedClock()) return clock->goOn(std::max(milliseconds, clock->shortestSleep));
  const timespec span{static_cast<time_t>(milliseconds / 1000),
                      static_cast<long>(milliseconds % 1000) * 1000000};
  ::nanosleep(&span, nullptr);
}

}  // namespace tandemize::platform
