// Turning this machine off, and the one machine-wide value that can stand in the way of asking for it.
//
// A host is asked through the service that minds its sessions. It is told a moment and a message, and it ends
// the programs that still run then without asking them. No other machine is ever asked.
#pragma once

#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize::platform {

// The request waited this long for an answer in vain.
inline constexpr ErrorCode kWaitTimedOut = 258;
inline constexpr unsigned kPowerWaitMilliseconds = 10'000;

struct PowerOffAnswer {
  bool asked = false;  // the machine was asked and agreed
  // 0 without `asked`: TANDEMIZE_POWER is "log" and nobody was asked; the caller notes the request down.
  ErrorCode error = kNoError;
  std::string reason;  // with an error: the service's own words
};

// Asks that this machine be turned off `seconds` from now, with a message for its users, and comes back at
// once with the answer, at the latest after `waitMilliseconds`. Errors: kNotSupported where there is no such
// service or it knows no such request; kAccessDenied where this user may not ask; kBusy while another
// shutdown is going on; kWaitTimedOut when no answer came, and then it is not known whether the machine will
// go off; kGeneralFailure.
//
// A service that takes the request but not the message, as it does from users who may turn the machine off
// and may not write to everyone's terminal, counts as having agreed.
[[nodiscard]] PowerOffAnswer requestPowerOff(unsigned seconds, std::string_view message,
                                             unsigned waitMilliseconds = kPowerWaitMilliseconds);

// Gives the machine's value `forceguest` (under "SYSTEM\CurrentControlSet\Control\Lsa": every caller counts
// as a guest, who may turn nothing off) to its keeper. False where no part of the machine obeys the value, as
// on Linux: what `Registry.ini` says of it then stays as it is.
[[nodiscard]] bool setForcedGuest(std::string_view value);

}  // namespace tandemize::platform
