#include "platform/appendfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/errno.h"
#include "platform/posix/lateclose.h"
#include "platform/posix/status.h"

namespace tandemize::platform {
namespace {

// Takes back what was written of a record that found no room, unless another process has appended since.
// After an appending write the file's position is the end of what this process wrote.
void takeBack(int descriptor, std::size_t written) {
  const off_t end = ::lseek(descriptor, 0, SEEK_CUR);
  struct stat file;
  if (end < static_cast<off_t>(written) || ::fstat(descriptor, &file) != 0 || file.st_size != end) return;
  static_cast<void>(::ftruncate(descriptor, end - static_cast<off_t>(written)) == 0);
}

}  // namespace

AppendFile::~AppendFile() {
  close();
}

ErrorCode AppendFile::open(std::string_view path, bool truncate) {
  close();
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  const int flags =
      O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | (truncate ? O_TRUNC : 0);
  descriptor_ = withRoom([&] { return ::open(host.c_str(), flags, 0666); });
  if (descriptor_ >= 0) return kNoError;
  return errno == EISDIR ? kAccessDenied : pathError(errno, host);
}

ErrorCode AppendFile::append(std::string_view bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const std::string_view rest = bytes.substr(written);
    const ssize_t count = withRoom([&] { return ::write(descriptor_, rest.data(), rest.size()); });
    if (count >= 0) {
      written += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      const ErrorCode error = fromErrno(errno);
      if (written > 0) takeBack(descriptor_, written);
      return error;
    }
  }
  return kNoError;
}

ErrorCode AppendFile::size(std::uint64_t& bytes) const {
  // Not fstat(2): who asks for the times makes the host write finer ones with each record that follows.
  const off_t end = ::lseek(descriptor_, 0, SEEK_END);
  if (end < 0) return fromErrno(errno);
  bytes = static_cast<std::uint64_t>(end);
  return kNoError;
}

void AppendFile::close() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
}

}  // namespace tandemize::platform
