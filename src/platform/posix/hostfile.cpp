#include "platform/posix/hostfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/posix/descriptor.h"
#include "platform/posix/errno.h"

namespace tandemize::platform {

namespace {

ErrorCode readAll(int descriptor, std::size_t limit, std::string& content) {
  std::array<char, 16384> buffer{};
  while (content.size() < limit) {
    const std::size_t wanted = std::min(buffer.size(), limit - content.size());
    const ssize_t got = ::read(descriptor, buffer.data(), wanted);
    if (got == 0) break;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return fromErrno(errno);
    content.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return kNoError;
}

ErrorCode writeAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t put = ::write(descriptor, content.data(), content.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return fromErrno(errno);
    content.remove_prefix(static_cast<std::size_t>(put));
  }
  return kNoError;
}

}  // namespace

ErrorCode readHostFile(const std::string& hostPath, std::size_t limit, std::string& content) {
  content.clear();
  const Descriptor file(::open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.get() < 0) return fromErrno(errno);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return fromErrno(errno);
  if (!S_ISREG(status.st_mode)) return kInvalidFolder;
  return readAll(file.get(), limit, content);
}

ErrorCode writeNewHostFile(const std::string& hostPath, std::string_view content, unsigned permissions) {
  // Closed to others until the bits are set: the content may hold passwords.
  const Descriptor file(::open(hostPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (file.get() < 0) return fromErrno(errno);
  ErrorCode error = writeAll(file.get(), content);
  if (error == kNoError && ::fchmod(file.get(), static_cast<mode_t>(permissions)) != 0)
    error = fromErrno(errno);
  if (error != kNoError) ::unlink(hostPath.c_str());
  return error;
}

}  // namespace tandemize::platform
