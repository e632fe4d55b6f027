// The host's error numbers, told as the program's.
#pragma once

#include "platform/errors.h"

namespace tandemize::platform {

// The program's number for an `errno` value. 0 gives kNoError, a value that has no counterpart
// kGeneralFailure, so that a failure never looks like success. ENOENT gives kFileNotFound: only the caller
// can know that the parent is missing too.
[[nodiscard]] ErrorCode fromErrno(int number);

}  // namespace tandemize::platform
