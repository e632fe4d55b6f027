#include "platform/posix/reservednames.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include "platform/newfile.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/filelock.h"
#include "platform/posix/lateclose.h"
#include "platform/posix/status.h"

namespace tandemize::platform {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

std::vector<std::string> reservedNamesIn(DIR* folder) {
  std::vector<std::string> names;
  while (const dirent* entry = ::readdir(folder)) {
    if (isReservedName(entry->d_name)) names.emplace_back(entry->d_name);
  }
  return names;
}

// A lock on NFS needs a descriptor that may write; a file without write permission can still be locked
// elsewhere.
Descriptor openLeftover(int folder, const char* name) {
  constexpr int flags = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
  Descriptor file(::openat(folder, name, O_RDWR | flags));
  if (!file.isOpen() && errno == EACCES) file.reset(::openat(folder, name, O_RDONLY | flags));
  return file;
}

// Deletes under the lock: whoever made the file and waits for the lock then sees that it is gone.
bool clearLeftover(int folder, const char* name) {
  Descriptor file = openLeftover(folder, name);
  struct statx held, there;
  if (!file.isOpen() || statusAt(file.get(), "", AT_EMPTY_PATH, held) != 0) return false;
  if (kindOf(held) != EntryKind::file || lockWithoutWaiting(file.get()) != 0) return false;
  if (statusAt(folder, name, AT_SYMLINK_NOFOLLOW, there) != 0 || there.stx_ino != held.stx_ino) return false;
  if (::unlinkat(folder, name, 0) != 0) return false;
  if (held.stx_size >= kLargeFile && closesLargeFile(file.get())) closeElsewhere(std::move(file));
  return true;
}

}  // namespace

std::string nextReservedName() {
  static unsigned long counter = 0;
  std::string name(kReservedPrefix);
  name += std::to_string(::getpid()) + "-" + std::to_string(++counter);
  return name.append(kReservedSuffix);
}

bool holdReservedFile(int descriptor) {
  const int reason = lockWithoutWaiting(descriptor);
  if (reason == EWOULDBLOCK) return false;
  struct stat file;
  return ::fstat(descriptor, &file) == 0 && file.st_nlink > 0;
}

bool isReservedName(std::string_view hostName) {
  return hostName.size() >= kReservedPrefix.size() + kReservedSuffix.size() &&
         hostName.starts_with(kReservedPrefix) && hostName.ends_with(kReservedSuffix);
}

int clearLeftovers(std::string_view folder) {
  std::string host;
  if (hostPathOf(folder, host) != kNoError) return 0;
  const std::unique_ptr<DIR, CloseFolder> opened(::opendir(host.c_str()));
  if (!opened) return 0;
  int cleared = 0;
  for (const std::string& name : reservedNamesIn(opened.get())) {
    if (clearLeftover(::dirfd(opened.get()), name.c_str())) ++cleared;
  }
  return cleared;
}

}  // namespace tandemize::platform
