// Locks on open files, flock(2): they go with the descriptor, however its process ends.
#pragma once

namespace tandemize::platform {

// 0: this descriptor holds the file alone. EWOULDBLOCK: another one does. Any other number: no lock can be
// had.
[[nodiscard]] int lockWithoutWaiting(int descriptor);

}  // namespace tandemize::platform
