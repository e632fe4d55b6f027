#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <string>
#include <utility>

#include "platform/appendfile.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/errno.h"
#include "platform/posix/filelock.h"
#include "platform/posix/status.h"

namespace tandemize::platform {
namespace {

// How often a lock file may be taken away under our hands before that counts as a failure.
constexpr int kAttempts = 16;

int processNamedIn(int descriptor) {
  std::array<char, 32> text;
  const ssize_t size = ::pread(descriptor, text.data(), text.size(), 0);
  int process = 0;
  if (size > 0) std::from_chars(text.data(), text.data() + size, process);
  return process;
}

// A lock on a file that was deleted or replaced meanwhile keeps nobody out.
bool stillAt(const std::string& host, int descriptor) {
  struct statx held, there;
  return statusAt(descriptor, "", AT_EMPTY_PATH, held) == 0 &&
         statusAt(AT_FDCWD, host.c_str(), AT_SYMLINK_NOFOLLOW, there) == 0 && held.stx_ino == there.stx_ino &&
         held.stx_dev_major == there.stx_dev_major && held.stx_dev_minor == there.stx_dev_minor;
}

// The number only serves to tell a person who holds the folder; the lock holds without it.
void nameProcess(int descriptor) {
  const std::string text = std::to_string(::getpid()) + "\n";
  if (::ftruncate(descriptor, 0) == 0)
    static_cast<void>(::pwrite(descriptor, text.data(), text.size(), 0) > 0);
}

}  // namespace

FolderLock::~FolderLock() {
  release();
}

ErrorCode FolderLock::acquire(std::string_view folder, int& holder) {
  release();
  holder = 0;
  std::string host(folder);
  if (!folder.starts_with('/')) {
    if (const ErrorCode error = hostPathOf(folder, host); error != kNoError) return error;
  }
  host += "/Tandemize.lock";
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    Descriptor file(::open(host.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0644));
    if (!file.isOpen()) return folderError(errno);
    if (const int reason = lockWithoutWaiting(file.get()); reason != 0) {
      if (reason != EWOULDBLOCK) return fromErrno(reason);
      holder = processNamedIn(file.get());
      return kSharingViolation;
    }
    if (!stillAt(host, file.get())) continue;
    nameProcess(file.get());
    descriptor_ = file.release();
    return kNoError;
  }
  return kBusy;
}

void FolderLock::release() {
  if (descriptor_ < 0) return;
  static_cast<void>(::ftruncate(descriptor_, 0) == 0);
  // A child process that has a copy of the descriptor must not go on holding the folder.
  ::flock(descriptor_, LOCK_UN);
  ::close(std::exchange(descriptor_, -1));
}

}  // namespace tandemize::platform
