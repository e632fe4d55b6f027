#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <stdexcept>

#include "platform/newfile.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/status.h"

namespace tandemize::platform {
namespace {

constexpr std::uint32_t kOwnFilePermissions = 0644;
constexpr std::size_t kReadStep = 64UL * 1024;

// Gives the new file the owner of the old one. Only root may give files away, so a refusal changes nothing.
void keepOwner(int descriptor, const struct statx& old) {
  struct stat file;
  if (::fstat(descriptor, &file) != 0 || (file.st_uid == old.stx_uid && file.st_gid == old.stx_gid)) return;
  if (::fchown(descriptor, old.stx_uid, old.stx_gid) != 0) {
    static_cast<void>(::fchown(descriptor, static_cast<uid_t>(-1), old.stx_gid) == 0);
  }
}

bool hasSize(int descriptor, std::size_t size) {
  struct stat file;
  return ::fstat(descriptor, &file) == 0 && static_cast<std::uint64_t>(file.st_size) == size;
}

// The new content has its name by now, so a folder that cannot be flushed (some file systems refuse) is no
// failure: after a crash either the old or the new file is there, whole.
void flushFolder(const std::string& host) {
  const Descriptor folder(::open(host.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.isOpen()) static_cast<void>(::fsync(folder.get()) == 0);
}

// Reads on past the length that the file had when it was opened: it may grow meanwhile, and files that the
// host makes up have the length 0.
ErrorCode readToEnd(SourceFile& file, std::string& content, std::uint64_t limit) {
  // One byte more than the file has, so that its end shows in the first step. A file that the host makes up
  // may give less than it was asked for at any time.
  const bool madeUp = file.status().size == 0;
  std::size_t step = static_cast<std::size_t>(file.status().size) + 1;
  for (std::size_t length = 0;;) {
    content.resize(length + step);
    std::size_t got = 0;
    const ErrorCode error = file.read(content.data() + length, step, got);
    length += got;
    content.resize(length);
    if (error != kNoError || got == 0) return error;
    if (length > limit) return kFileTooLarge;
    if (!madeUp && got < step) return kNoError;
    step = kReadStep;
  }
}

}  // namespace

ErrorCode replaceFile(std::string_view path, std::string_view content, std::uint32_t permissions) {
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  struct statx old;
  const bool existed = statusAt(AT_FDCWD, host.c_str(), 0, old) == 0;
  if (permissions == 0) permissions = kOwnFilePermissions;
  if (existed) permissions = kNoPermissions | old.stx_mode;
  NewFile file;
  ErrorCode error = file.create(path, permissions);
  if (error != kNoError) return error;
  if (existed) keepOwner(file.descriptor_, old);
  error = file.write(content.data(), content.size());
  if (error == kNoError && !hasSize(file.descriptor_, content.size())) error = kIoDevice;
  if (error == kNoError) error = file.flush();
  bool replaced = false;
  if (error == kNoError) error = file.commit(replaced);
  if (error == kNoError) flushFolder(parentOf(file.target_));
  return error;
}

ErrorCode readFile(std::string_view path, std::string& content, std::uint64_t limit) {
  content.clear();
  SourceFile file;
  if (const ErrorCode error = file.open(path); error != kNoError) return error;
  if (file.status().size > limit) return kFileTooLarge;
  ErrorCode error = kNoError;
  try {
    error = readToEnd(file, content, limit);
  } catch (const std::bad_alloc&) {
    error = kNotEnoughMemory;
  } catch (const std::length_error&) {
    error = kNotEnoughMemory;
  }
  if (error != kNoError) content.clear();
  return error;
}

}  // namespace tandemize::platform
