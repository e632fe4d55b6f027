// Faults of the host that a test can order where no real one can be had.
#pragma once

#include <cstdint>

#include "platform/errors.h"

namespace tandemize::platform {

struct HostFaults {
  ErrorCode nextSourceOpen = kNoError;  // the next opening of a source fails with it, once
  ErrorCode nextSourceRead = kNoError;  // the next reading of a source fails with it, once
  std::int64_t freeMemory = -1;         // bytes; below 0: as the host says
};
[[nodiscard]] HostFaults& hostFaults();

}  // namespace tandemize::platform
