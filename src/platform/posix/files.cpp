#include "platform/files.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/newfile.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/errno.h"
#include "platform/posix/lateclose.h"
#include "platform/posix/status.h"

namespace tandemize::platform {
namespace {

// Follows links, since a link is what it leads to.
ErrorCode look(std::string_view path, std::string& host, struct statx& entry) {
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  const int reason = statusAt(AT_FDCWD, host.c_str(), 0, entry);
  return reason == 0 ? kNoError : pathError(reason, host);
}

bool isLink(const std::string& host) {
  struct statx entry;
  return statusAt(AT_FDCWD, host.c_str(), AT_SYMLINK_NOFOLLOW, entry) == 0 && S_ISLNK(entry.stx_mode);
}

// A link to a folder goes as the folder would, only if nothing is in it; what it led to stays.
ErrorCode removeLinkToFolder(std::string_view path, const std::string& host) {
  std::int32_t count = 0;
  if (const ErrorCode error = countEntries(path, count); error != kNoError) return error;
  if (count > 0) return kFolderNotEmpty;
  return ::unlink(host.c_str()) == 0 ? kNoError : pathError(errno, host);
}

}  // namespace

ErrorCode query(std::string_view path, FileStatus& status) {
  std::string host;
  struct statx entry;
  if (const ErrorCode error = look(path, host, entry); error != kNoError) return error;
  if (kindOf(entry) == EntryKind::other || isReservedName(lastName(host))) return kFileNotFound;
  status = statusOf(entry, lastName(host));
  return kNoError;
}

bool folderExists(std::string_view path) {
  std::string host;
  struct statx entry;
  return hostPathOf(path, host) == kNoError && statusAt(AT_FDCWD, host.c_str(), 0, entry) == 0 &&
         kindOf(entry) == EntryKind::folder;
}

ErrorCode deleteFile(std::string_view path) {
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  struct statx entry = {};
  static_cast<void>(statusAt(AT_FDCWD, host.c_str(), AT_SYMLINK_NOFOLLOW, entry));
  Descriptor file = holdIfLarge(host, entry);
  if (::unlink(host.c_str()) == 0) {
    closeElsewhere(std::move(file));
    return kNoError;
  }
  return errno == EISDIR ? kAccessDenied : pathError(errno, host);
}

ErrorCode removeFolder(std::string_view path) {
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  if (::rmdir(host.c_str()) == 0) return kNoError;
  int reason = errno;
  // What a crash left in the folder is seen by nobody and must not keep it from going.
  if ((reason == ENOTEMPTY || reason == EEXIST) && clearLeftovers(path) > 0) {
    if (::rmdir(host.c_str()) == 0) return kNoError;
    reason = errno;
  }
  if (reason == ENOTEMPTY || reason == EEXIST) return kFolderNotEmpty;
  if (reason == ENOTDIR && folderExists(path) && isLink(host)) return removeLinkToFolder(path, host);
  return pathError(reason, host);
}

ErrorCode createFolder(std::string_view path) {
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  if (withRoom([&] { return ::mkdir(host.c_str(), 0777); }) == 0) return kNoError;
  return errno == EEXIST ? kAlreadyExists : folderError(errno);
}

ErrorCode setAttributes(std::string_view path, std::uint32_t attributes) {
  std::string host;
  struct statx entry;
  if (const ErrorCode error = look(path, host, entry); error != kNoError) return error;
  const mode_t all = S_IWUSR | S_IWGRP | S_IWOTH;
  const mode_t now = entry.stx_mode & 07777U;
  const bool readOnly = (attributes & kReadOnly) != 0;
  const mode_t wanted = readOnly ? now & ~all : now | S_IWUSR;
  if (wanted == now) return kNoError;
  return ::chmod(host.c_str(), wanted) == 0 ? kNoError : pathError(errno, host);
}

ErrorCode setFileTime(std::string_view path, FileTime moment) {
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  struct timespec stamp = {};
  stamp.tv_sec = moment.seconds;
  stamp.tv_nsec = moment.nanoseconds;
  const std::array<struct timespec, 2> both = {stamp, stamp};
  return ::utimensat(AT_FDCWD, host.c_str(), both.data(), 0) == 0 ? kNoError : pathError(errno, host);
}

ErrorCode tryOpen(std::string_view path, bool forWriting) {
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  const Descriptor file(openWithoutWaiting(host.c_str(), forWriting ? O_WRONLY : O_RDONLY));
  if (!file.isOpen()) return errno == EISDIR ? kAccessDenied : pathError(errno, host);
  struct statx entry;
  if (const int reason = statusAt(file.get(), "", AT_EMPTY_PATH, entry); reason != 0)
    return fromErrno(reason);
  return kindOf(entry) == EntryKind::folder ? kAccessDenied : kNoError;
}

ErrorCode freeSpace(std::string_view path, SpaceOnDisc& space) {
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  waitForLateCloses();
  struct statvfs disc;
  if (::statvfs(host.c_str(), &disc) != 0) return folderError(errno);
  const std::uint64_t unit = disc.f_frsize != 0 ? disc.f_frsize : disc.f_bsize;
  space.total = disc.f_blocks * unit;
  space.free = disc.f_bfree * unit;
  space.available = disc.f_bavail * unit;
  struct statx entry;
  if (statusAt(AT_FDCWD, host.c_str(), 0, entry) == 0)
    space.volume = (std::uint64_t{entry.stx_dev_major} << 32U) | entry.stx_dev_minor;
  return kNoError;
}

ErrorCode flushVolume(std::string_view folder) {
  std::string host;
  if (const ErrorCode error = hostPathOf(folder, host); error != kNoError) return error;
  const Descriptor open(::open(host.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!open.isOpen()) return folderError(errno);
  waitForLateCloses();  // until then nobody can unmount it
  return ::syncfs(open.get()) == 0 ? kNoError : fromErrno(errno);
}

}  // namespace tandemize::platform
