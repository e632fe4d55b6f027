#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/newfile.h"
#include "platform/posix/errno.h"
#include "platform/posix/hostfaults.h"
#include "platform/posix/status.h"

namespace tandemize::platform {

SourceFile::~SourceFile() {
  close();
}

SourceFile::SourceFile(SourceFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      permissions_(other.permissions_),
      status_(other.status_) {}

SourceFile& SourceFile::operator=(SourceFile&& other) noexcept {
  if (this == &other) return *this;
  close();
  descriptor_ = std::exchange(other.descriptor_, -1);
  permissions_ = other.permissions_;
  status_ = other.status_;
  return *this;
}

HostFaults& hostFaults() {
  static HostFaults faults;
  return faults;
}

ErrorCode SourceFile::open(std::string_view path) {
  close();
  if (hostFaults().nextSourceOpen != kNoError) return std::exchange(hostFaults().nextSourceOpen, kNoError);
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  descriptor_ = openWithoutWaiting(host.c_str(), O_RDONLY);
  if (descriptor_ < 0) {
    // A socket and a device without a driver answer so.
    return errno == ENXIO || errno == ENODEV ? kInvalidFolder : pathError(errno, host);
  }
  struct statx entry;
  const int reason = statusAt(descriptor_, "", AT_EMPTY_PATH, entry);
  if (reason != 0 || kindOf(entry) != EntryKind::file) {
    close();
    return reason != 0 ? fromErrno(reason) : kInvalidFolder;
  }
  status_ = statusOf(entry, lastName(host));
  permissions_ = entry.stx_mode & 07777U;
  if (permissions_ == 0) permissions_ = kNoPermissions;
  return kNoError;
}

void SourceFile::close() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
}

ErrorCode SourceFile::read(void* buffer, std::size_t size, std::size_t& got) {
  got = 0;
  if (hostFaults().nextSourceRead != kNoError) return std::exchange(hostFaults().nextSourceRead, kNoError);
  ssize_t count = 0;
  do {
    count = ::read(descriptor_, buffer, size);
  } while (count < 0 && errno == EINTR);
  if (count < 0) return fromErrno(errno);
  got = static_cast<std::size_t>(count);
  return kNoError;
}

void SourceFile::willReadThrough() {
  // Only a hint; a file system that does not know it reads all the same.
  static_cast<void>(::posix_fadvise(descriptor_, 0, 0, POSIX_FADV_SEQUENTIAL));
}

}  // namespace tandemize::platform
