#include "platform/posix/filelock.h"

#include <sys/file.h>

#include <cerrno>

namespace tandemize::platform {

int lockWithoutWaiting(int descriptor) {
  while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace tandemize::platform
