#include "platform/posix/lateclose.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <pthread.h>
#include <signal.h>
#include <sys/statfs.h>

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace tandemize::platform {
namespace {

// Each pending close holds a descriptor, and of those a process has few.
constexpr int kMostPending = 16;

constexpr std::int64_t kXfsMagic = 0x58465342;
constexpr std::uint64_t kStatusBlock = 512;

struct LateCloses {
  std::mutex mutex;
  std::condition_variable changed;
  int pending = 0, waiting = 0;
  bool onlyWhenAwaited = false;
};

// Never destroyed, since a thread may use it until the process has ended.
LateCloses& lateCloses();

// A forked child has none of the threads, so nothing is pending there.
void watchForks() {
  static_cast<void>(::pthread_atfork([] { lateCloses().mutex.lock(); }, [] { lateCloses().mutex.unlock(); },
                                     [] {
                                       lateCloses().pending = lateCloses().waiting = 0;
                                       lateCloses().mutex.unlock();
                                     }));
}

LateCloses& lateCloses() {
  static auto* const closes = new LateCloses;
  return *closes;
}

// A network file system gives a file that is still held another name in its folder instead of removing it,
// and the folder could not go. Its blocks are freed by the server anyway.
bool freesBlocksHere(int descriptor) {
  struct statfs disc;
  if (::fstatfs(descriptor, &disc) != 0) return false;
  switch (static_cast<std::int64_t>(disc.f_type)) {
    case EXT4_SUPER_MAGIC:
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case TMPFS_MAGIC:
    case kXfsMagic:
      return true;
    default:
      return false;
  }
}

bool isLarge(int descriptor, nlink_t names) {
  struct stat file;
  return ::fstat(descriptor, &file) == 0 && S_ISREG(file.st_mode) && file.st_nlink == names &&
         static_cast<std::uint64_t>(file.st_blocks) * kStatusBlock >= kLargeFile &&
         freesBlocksHere(descriptor);
}

void closeNow(int descriptor) {
  // Stop signals are for the program's own thread, whose waits they end.
  sigset_t all;
  sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
  LateCloses& closes = lateCloses();
  std::unique_lock lock(closes.mutex);
  closes.changed.wait(lock, [&] { return !closes.onlyWhenAwaited || closes.waiting > 0; });
  lock.unlock();
  ::close(descriptor);
  lock.lock();
  --closes.pending;
  closes.changed.notify_all();
}

// False if there are too many already.
bool countOneMore() {
  const std::lock_guard lock(lateCloses().mutex);
  if (lateCloses().pending >= kMostPending) return false;
  ++lateCloses().pending;
  return true;
}

}  // namespace

Descriptor holdIfLarge(const std::string& host, const struct statx& entry) {
  if (!S_ISREG(entry.stx_mode) || entry.stx_size < kLargeFile) return Descriptor();
  Descriptor file(::open(host.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (file.isOpen() && !isLarge(file.get(), 1)) file.reset();
  return file;
}

bool closesLargeFile(int descriptor) {
  return isLarge(descriptor, 0);
}

void closeElsewhere(Descriptor file) {
  static const bool watched = (watchForks(), true);
  if (!watched || !file.isOpen() || !countOneMore()) return;
  try {
    std::thread(closeNow, file.get()).detach();
    static_cast<void>(file.release());
  } catch (const std::system_error&) {
    const std::lock_guard lock(lateCloses().mutex);
    --lateCloses().pending;
  }
}

void waitForLateCloses() {
  LateCloses& closes = lateCloses();
  std::unique_lock lock(closes.mutex);
  ++closes.waiting;
  closes.changed.notify_all();
  closes.changed.wait(lock, [&] { return closes.pending == 0; });
  --closes.waiting;
}

void closeOnlyWhenAwaited(bool only) {
  const std::lock_guard lock(lateCloses().mutex);
  lateCloses().onlyWhenAwaited = only;
  lateCloses().changed.notify_all();
}

}  // namespace tandemize::platform
