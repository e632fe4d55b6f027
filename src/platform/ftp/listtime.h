// Dates as servers tell them, and what they are in UTC.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/ftp.h"
#include "platform/machine.h"

namespace tandemize::platform::ftp {

struct ListedTime {
  FileTime moment;
  CivilTime civil;
  TimePrecision precision = TimePrecision::None;
  bool utc = false;          // told in UTC, as `moment`; else by the server's clock, as `civil`
  bool yearLeftOut = false;  // the last year in which the date is not in the future
};

// Seconds since 1970 of a date in UTC; nothing if there is no such date.
[[nodiscard]] std::optional<std::int64_t> secondsOf(const CivilTime& utc);

// "20240131235959" or "20240131235959.123", as MDTM and the machine listings tell it.
[[nodiscard]] std::optional<FileTime> timeOfStamp(std::string_view stamp);

// What is known of the zone in which a server lists.
class ServerClock {
 public:
  [[nodiscard]] bool known() const { return offset_.has_value(); }
  // Learns from one file: the date that LIST told to the minute, and its date in UTC. Ignores a pair that no
  // zone explains (the file has changed in between). When the offset is this machine's at that moment, the
  // server's zone counts as this machine's, its summer time included.
  void learn(const ListedTime& listed, std::int64_t utcSeconds);
  // Nothing for a date that does not exist, and for precision None.
  [[nodiscard]] std::optional<FileTime> utcOf(const ListedTime& listed) const;

 private:
  [[nodiscard]] std::optional<std::int64_t> secondsByServer(const CivilTime& civil) const;

  std::optional<std::int64_t> offset_;  // seconds that the server's clock is ahead of UTC
  bool machineZone_ = true;
};

}  // namespace tandemize::platform::ftp
