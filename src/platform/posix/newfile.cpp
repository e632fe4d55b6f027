#include "platform/newfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <utility>

#include "platform/posix/descriptor.h"
#include "platform/posix/errno.h"
#include "platform/posix/filelock.h"
#include "platform/posix/lateclose.h"
#include "platform/posix/reservednames.h"
#include "platform/posix/status.h"
#include "platform/posix/supplystate.h"
#include "platform/posix/unnamedfiles.h"

namespace tandemize::platform {
namespace {

// How many reserved names are tried before their being taken counts as a failure.
constexpr int kAttempts = 100;

// What a reservation leaves to the log and to other programs, which write to the same disc meanwhile.
constexpr std::uint64_t kRoomForOthers = 64U << 20U;

constexpr std::uint32_t kUsualPermissions = 0666;
constexpr std::uint32_t kCopiedPermissions = 0777;

std::string procPathOf(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

int linkThroughProc(int descriptor, const std::string& path) {
  const std::string source = procPathOf(descriptor);
  const auto link = [&] {
    return ::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW);
  };
  return withRoom(link) == 0 ? 0 : errno;
}

// Naming a file by its descriptor is quicker. Linux lets everybody do so with a file of his own since 6.10,
// before only root, and answers ENOENT to others.
int linkTo(int descriptor, const std::string& path) {
  if (!fileWays().namesForThem) return EPERM;
  static bool byDescriptor = true;
  if (byDescriptor) {
    const auto link = [&] { return ::linkat(descriptor, "", AT_FDCWD, path.c_str(), AT_EMPTY_PATH); };
    if (withRoom(link) == 0) return 0;
    if (errno != ENOENT && errno != EPERM) return errno;
  }
  const int reason = linkThroughProc(descriptor, path);
  if (reason == 0) byDescriptor = false;
  return reason;
}

// FAT and SMB have no permissions of their own and answer EPERM or EOPNOTSUPP; their mount decides on them.
ErrorCode givePermissions(int descriptor, mode_t mode) {
  if (::fchmod(descriptor, mode) == 0 || errno == EPERM || errno == EOPNOTSUPP) return kNoError;
  return fromErrno(errno);
}

ErrorCode mayBeReplaced(const struct statx& entry) {
  if (kindOf(entry) == EntryKind::folder) return kInvalidFolder;
  return kindOf(entry) == EntryKind::file || S_ISLNK(entry.stx_mode) ? kNoError : kAccessDenied;
}

bool hasRoomBeside(int descriptor, std::uint64_t size) {
  struct statvfs disc;
  if (::fstatvfs(descriptor, &disc) != 0) return false;
  const std::uint64_t free = static_cast<std::uint64_t>(disc.f_bavail) * disc.f_frsize;
  return free > kRoomForOthers && size <= free - kRoomForOthers;
}

bool exists(const std::string& host) {
  struct statx entry;
  return statusAt(AT_FDCWD, host.c_str(), AT_SYMLINK_NOFOLLOW, entry) == 0;
}

// Network file systems report some write failures only when a descriptor is closed. Closing a second one
// brings them out while the first still holds the lock.
ErrorCode reportDelayedFailures(int descriptor) {
  const int second = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  if (second < 0) return kNoError;
  return ::close(second) == 0 || errno == EINTR ? kNoError : fromErrno(errno);
}

}  // namespace

NewFile::~NewFile() {
  discard();
}

ErrorCode NewFile::create(std::string_view path, std::uint32_t permissions, NewFileSupply* supply) {
  discard();
  written_ = 0;
  ErrorCode error = hostPathOf(path, target_);
  if (error == kNoError && isReservedName(lastName(target_))) error = kInvalidName;
  if (error == kNoError) error = settleTarget();
  if (error == kNoError) error = openFile(permissions, supply);
  if (error != kNoError) discard();
  return error;
}

// Looks at what has the final name now. One call that also makes the host remember the name for `commit`.
ErrorCode NewFile::settleTarget() {
  struct statx entry;
  int reason = statusAt(AT_FDCWD, target_.c_str(), AT_SYMLINK_NOFOLLOW, entry);
  if (reason == ENOENT) return kNoError;
  if (reason != 0) return pathError(reason, target_);
  if (!S_ISLNK(entry.stx_mode)) return mayBeReplaced(entry);
  reason = statusAt(AT_FDCWD, target_.c_str(), 0, entry);
  if (reason == ENOENT || reason == ELOOP || reason == ENOTDIR) return kNoError;
  if (reason != 0) return pathError(reason, target_);
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(target_.c_str(), nullptr), &std::free);
  if (!real) return pathError(errno, target_);
  target_ = real.get();
  return mayBeReplaced(entry);
}

ErrorCode NewFile::openFile(std::uint32_t permissions, NewFileSupply* supply) {
  const std::uint32_t mode = permissions == 0 ? kUsualPermissions : permissions & kCopiedPermissions;
  const std::string folder = parentOf(target_);
  bool learnt = false;
  mode_t opened = mode;
  if (supply != nullptr) {
    const SuppliedFile ready = supply->state_->take(folder, mode);
    descriptor_ = ready.descriptor;
    unnamed_ = descriptor_ >= 0;
    if (unnamed_) opened = ready.permissions;
  }
  if (!unnamed_ && mayHaveUnnamedFiles(folder)) {
    // Also for reading, because `copyToReserved` may have to read it again.
    descriptor_ = withRoom([&] { return ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode); });
    unnamed_ = descriptor_ >= 0;
    if (!unnamed_ && !saysNoUnnamedFiles(errno)) return folderError(errno);
    learnt = !unnamed_;
  }
  if (!unnamed_) {
    if (const ErrorCode error = createReserved(folder, mode); error != kNoError) return error;
  }
  if (learnt) rememberNoUnnamedFiles(folder);
  const mode_t wanted = permissions == 0 ? mode & ~lostPermissions() : mode;
  return wanted == (opened & ~lostPermissions()) ? kNoError : givePermissions(descriptor_, wanted);
}

ErrorCode NewFile::createReserved(const std::string& folder, std::uint32_t mode) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::string path = reservedPath(folder);
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    descriptor_ = withRoom([&] { return ::open(path.c_str(), flags, mode); });
    if (descriptor_ < 0 && errno != EEXIST) return folderError(errno);
    if (descriptor_ >= 0 && holdReservedFile(descriptor_)) {
      temporary_ = std::move(path);
      return kNoError;
    }
    // A clean-up took the file for a leftover before the lock was on it, and has removed it.
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
  }
  return kBusy;
}

// A final path of nearly the greatest length leaves no room for a reserved name, except from within its
// folder.
std::string NewFile::reservedPath(const std::string& folder) {
  if (folder.size() + 1 + kReservedNameMaximum < PATH_MAX) return folder + "/" + nextReservedName();
  if (folder_ < 0) folder_ = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  return procPathOf(folder_) + "/" + nextReservedName();
}

void NewFile::reserve(std::uint64_t size) {
  if (size <= written_ || !hasRoomBeside(descriptor_, size)) return;
  reserved_ = std::max(reserved_, size);
  // ext4 keeps the part that it found before the disc was full.
  const auto length = static_cast<off_t>(size);
  if (withRoom([&] { return ::fallocate(descriptor_, FALLOC_FL_KEEP_SIZE, 0, length); }) != 0)
    releaseSpareRoom();
}

// Room beyond the end would stay with the file for good. Cutting a file at its end gives it back, and counts
// as a change of its content, so the times are set again. A host that refuses has cost room, and no copy.
void NewFile::releaseSpareRoom() {
  if (std::exchange(reserved_, 0) <= written_) return;
  struct stat file;
  if (::fstat(descriptor_, &file) != 0 || ::ftruncate(descriptor_, file.st_size) != 0) return;
  const std::array<struct timespec, 2> times = {file.st_atim, file.st_mtim};
  static_cast<void>(::futimens(descriptor_, times.data()));
}

ErrorCode NewFile::write(const void* data, std::size_t size) {
  const char* rest = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t count = withRoom([&] { return ::write(descriptor_, rest, size); });
    if (count < 0 && errno != EINTR) return fromErrno(errno);
    if (count <= 0) continue;
    rest += count;
    size -= static_cast<std::size_t>(count);
    written_ += static_cast<std::uint64_t>(count);
  }
  return kNoError;
}

ErrorCode NewFile::setTime(FileTime moment) {
  struct timespec stamp = {};
  stamp.tv_sec = moment.seconds;
  stamp.tv_nsec = moment.nanoseconds;
  const std::array<struct timespec, 2> both = {stamp, stamp};
  return ::futimens(descriptor_, both.data()) == 0 ? kNoError : fromErrno(errno);
}

ErrorCode NewFile::flush() {
  return ::fsync(descriptor_) == 0 ? kNoError : fromErrno(errno);
}

ErrorCode NewFile::commit(bool& replaced) {
  replaced = false;
  if (descriptor_ < 0) return kInvalidParameter;
  releaseSpareRoom();
  const ErrorCode error = unnamed_ ? commitUnnamed(replaced) : commitReserved(replaced);
  discard();
  return error;
}

ErrorCode NewFile::commitUnnamed(bool& replaced) {
  const int reason = linkTo(descriptor_, target_);
  if (reason == 0) return kNoError;
  if (reason == ENOSPC || reason == EDQUOT || reason == EROFS || reason == EACCES || reason == ENAMETOOLONG) {
    return folderError(reason);
  }
  // Some file systems have unnamed files and cannot give them a name after all.
  const bool taken = reason == EEXIST;
  ErrorCode error = taken ? linkToReserved() : copyToReserved();
  if (error != kNoError) return error;
  error = taken ? renameOver() : commitReserved(replaced);
  replaced = replaced || (taken && error == kNoError);
  return error;
}

// From the moment that it has a name it can be taken for a leftover, so it is locked before.
ErrorCode NewFile::linkToReserved() {
  static_cast<void>(lockWithoutWaiting(descriptor_));
  const std::string folder = parentOf(target_);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::string path = reservedPath(folder);
    const int reason = linkTo(descriptor_, path);
    if (reason != 0 && reason != EEXIST) return folderError(reason);
    if (reason == EEXIST) continue;
    temporary_ = std::move(path);
    unnamed_ = false;
    return kNoError;
  }
  return kBusy;
}

ErrorCode NewFile::copyToReserved() {
  SourceFile content;
  content.descriptor_ = std::exchange(descriptor_, -1);
  unnamed_ = false;
  written_ = 0;
  struct stat file;
  if (::fstat(content.descriptor_, &file) != 0 || ::lseek(content.descriptor_, 0, SEEK_SET) != 0) {
    return fromErrno(errno);
  }
  const std::string folder = parentOf(target_);
  ErrorCode error = createReserved(folder, file.st_mode & kCopiedPermissions);
  if (error == kNoError) error = givePermissions(descriptor_, file.st_mode & kCopiedPermissions);
  std::uint64_t copied = 1;
  bool readFailed = false;
  while (error == kNoError && copied > 0) error = copyThroughBuffer(content, UINT64_MAX, copied, readFailed);
  if (error != kNoError) return error;
  rememberNoUnnamedFiles(folder);
  const std::array<struct timespec, 2> times = {file.st_atim, file.st_mtim};
  return ::futimens(descriptor_, times.data()) == 0 ? kNoError : fromErrno(errno);
}

ErrorCode NewFile::commitReserved(bool& replaced) {
  if (const ErrorCode error = reportDelayedFailures(descriptor_); error != kNoError) return error;
  const auto rename = [this] {
    return ::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE);
  };
  if (withRoom(rename) == 0) {
    temporary_.clear();
    return kNoError;
  }
  const int reason = errno;
  if (reason != EEXIST && reason != EINVAL && reason != ENOSYS && reason != EOPNOTSUPP)
    return folderError(reason);
  // NFS and old FAT drivers know no RENAME_NOREPLACE; they are asked the long way.
  const bool older = reason == EEXIST || exists(target_);
  const ErrorCode error = renameOver();
  replaced = error == kNoError && older;
  return error;
}

// What is left of a large older file goes on another thread.
ErrorCode NewFile::renameOver() {
  struct statx entry = {};
  if (statusAt(AT_FDCWD, target_.c_str(), AT_SYMLINK_NOFOLLOW, entry) == 0) {
    if (const ErrorCode error = mayBeReplaced(entry); error != kNoError) return error;
  }
  Descriptor older = holdIfLarge(target_, entry);
  const auto rename = [this] { return ::rename(temporary_.c_str(), target_.c_str()); };
  int reason = withRoom(rename) == 0 ? 0 : errno;
  if (reason == ETXTBSY || reason == EBUSY || reason == EACCES) {
    // Some file servers rename no file that is open.
    ::close(std::exchange(descriptor_, -1));
    reason = withRoom(rename) == 0 ? 0 : errno;
  }
  if (reason == 0) {
    temporary_.clear();
    closeElsewhere(std::move(older));
  }
  if (reason == EISDIR) return kInvalidFolder;
  return reason == EINVAL ? kInvalidName : reason == 0 ? kNoError : folderError(reason);
}

void NewFile::discard() {
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  // Only files that may be large are asked about.
  Descriptor file(descriptor_);
  const bool mayBeLarge = std::max(written_, reserved_) >= kLargeFile;
  if (mayBeLarge && file.isOpen() && closesLargeFile(file.get())) closeElsewhere(std::move(file));
  if (folder_ >= 0) ::close(folder_);
  descriptor_ = folder_ = -1;
  reserved_ = 0;
  unnamed_ = false;
  copyInKernel_ = true;
  temporary_.clear();
}

}  // namespace tandemize::platform
