// Closing elsewhere what takes long to close.
//
// The host frees the blocks of a large file in the thread that lets go of it last, and that thread stands
// still meanwhile: half a second for 1 GiB. So the caller keeps a descriptor of such a file while it takes
// its name away, and another thread closes that. The room comes back a little later than the name goes:
// `withRoom` waits for it where it is needed.
#pragma once

#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <string>

#include "platform/posix/descriptor.h"

namespace tandemize::platform {

inline constexpr std::uint64_t kLargeFile = 16U << 20U;

// A descriptor that keeps the file alive, if losing the name would free a large file here and now: a plain
// file of one name, on a file system of this machine. Otherwise none is open. `entry` is the status of
// `host` itself, links not followed; only its type and size are looked at.
[[nodiscard]] Descriptor holdIfLarge(const std::string& host, const struct statx& entry);

// True if closing this descriptor frees a large file: it is the last that is left of one.
[[nodiscard]] bool closesLargeFile(int descriptor);

// Closes it on another thread. Here, if there are many such closes already, or if no thread is to be had.
// Nothing happens if it is not open.
void closeElsewhere(Descriptor file);

// Returns when all that was given to `closeElsewhere` is closed.
void waitForLateCloses();

// Makes a call of the host that answers below 0 with `errno` set. If it finds no room it is made once more,
// after all late closes: what fitted if they had been done at once fits.
template <typename Call>
auto withRoom(Call call) {
  auto result = call();
  if (result < 0 && (errno == ENOSPC || errno == EDQUOT)) {
    waitForLateCloses();
    result = call();
  }
  return result;
}

// For tests: late closes happen only when somebody waits for them. To be ended with false.
void closeOnlyWhenAwaited(bool only);

}  // namespace tandemize::platform
