#include "platform/posix/folderscan.h"

#include <dirent.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <numeric>

#include "platform/newfile.h"
#include "platform/paths.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/errno.h"
#include "platform/posix/namemask.h"
#include "platform/posix/status.h"

namespace tandemize::platform {
namespace {

constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

FolderIdentity identityOf(const struct statx& entry) {
  return {(std::uint64_t{entry.stx_dev_major} << 32U) | entry.stx_dev_minor, entry.stx_ino};
}

bool leadsThroughLink(int folder, const std::string& hostFolder) {
  const std::string link = "/proc/self/fd/" + std::to_string(folder);
  std::array<char, PATH_MAX> real;
  const ssize_t length = ::readlink(link.c_str(), real.data(), real.size());
  return length < 0 || std::string_view(real.data(), static_cast<std::size_t>(length)) != hostFolder;
}

// Opens a folder and tells whether its path leads through a link. Linux 5.6 and later answer both in one
// call.
Descriptor openFolder(const std::string& hostFolder, bool& throughLink) {
  struct open_how how = {};
  how.flags = kOpenFolder;
  how.resolve = RESOLVE_NO_SYMLINKS;
  const long direct = ::syscall(SYS_openat2, AT_FDCWD, hostFolder.c_str(), &how, sizeof how);
  throughLink = false;
  if (direct >= 0) return Descriptor(static_cast<int>(direct));
  const int reason = errno;
  Descriptor folder(::open(hostFolder.c_str(), kOpenFolder));
  // Any refusal but ELOOP may come from an older kernel or from a sandbox that does not know the call.
  if (folder.isOpen()) throughLink = reason == ELOOP || leadsThroughLink(folder.get(), hostFolder);
  return folder;
}

bool isDots(std::string_view name) {
  return name == "." || name == "..";
}

bool leadsNowhere(int reason) {
  return reason == ENOENT || reason == ELOOP || reason == ENOTDIR;
}

bool neverListed(unsigned char type) {
  return type == DT_FIFO || type == DT_SOCK || type == DT_CHR || type == DT_BLK;
}

}  // namespace

std::vector<FolderIdentity> identitiesAlong(const std::string& hostFolder) {
  std::vector<FolderIdentity> identities;
  for (std::string folder = hostFolder;; folder = parentOf(folder)) {
    struct statx entry;
    if (statusAt(AT_FDCWD, folder.c_str(), 0, entry) == 0) identities.push_back(identityOf(entry));
    if (folder == "/" || folder == ".") return identities;
  }
}

ErrorCode FolderScan::read(const std::string& hostFolder, std::string_view mask, Depth depth) {
  entries_.clear();
  names_.clear();
  along_.clear();
  const Descriptor folder = openFolder(hostFolder, throughLink_);
  if (!folder.isOpen()) return folderError(errno);
  // Asking for "." needs the permission to search: without it no entry could be read about.
  struct statx self;
  if (const int reason = statusAt(folder.get(), ".", 0, self); reason != 0) return folderError(reason);
  add(self.stx_ino, ".", DT_DIR, mask);
  add(self.stx_ino, "..", DT_DIR, mask);
  for (Entry& dots : entries_) dots.status = statusOf(self, ".");
  if (const ErrorCode error = readNames(folder.get(), mask); error != kNoError) return error;
  hostFolder_ = &hostFolder;
  readStatuses(folder.get(), depth);
  hostFolder_ = nullptr;
  std::erase_if(entries_, [](const Entry& entry) { return !entry.listed; });
  return kNoError;
}

ErrorCode FolderScan::readNames(int folder, std::string_view mask) {
  alignas(dirent64) std::array<char, 65536> records;
  for (;;) {
    const ssize_t size = ::getdents64(folder, records.data(), records.size());
    if (size == 0) return kNoError;
    if (size > 0) {
      addNames(records.data(), static_cast<std::size_t>(size), mask);
    } else if (errno != EINTR) {
      return folderError(errno);
    }
  }
}

void FolderScan::addNames(const char* records, std::size_t size, std::string_view mask) {
  for (std::size_t position = 0; position < size;) {
    const char* record = records + position;
    std::uint64_t inode = 0;
    unsigned short length = 0;
    std::memcpy(&inode, record + offsetof(dirent64, d_ino), sizeof inode);
    std::memcpy(&length, record + offsetof(dirent64, d_reclen), sizeof length);
    const auto type = static_cast<unsigned char>(record[offsetof(dirent64, d_type)]);
    const std::string_view name(record + offsetof(dirent64, d_name));
    position += length;
    if (!isDots(name) && !neverListed(type) && !isReservedName(name)) add(inode, name, type, mask);
  }
}

void FolderScan::add(std::uint64_t inode, std::string_view name, unsigned char type, std::string_view mask) {
  if (!fitsEverything(mask) && !fitsMask(nameToProgram(name), mask)) return;
  entries_.push_back({inode, names_.size(), static_cast<std::uint16_t>(name.size()), type, true, {}});
  names_.append(name).push_back('\0');
}

// Asks in the order of the inode numbers, which is how most file systems lay the answers out on the disc.
void FolderScan::readStatuses(int folder, Depth depth) {
  std::vector<std::size_t> order(entries_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [this](std::size_t a, std::size_t b) { return entries_[a].inode < entries_[b].inode; });
  for (const std::size_t index : order) {
    Entry& entry = entries_[index];
    if (isDots(nameOf(entry))) continue;
    const bool certain = entry.type == DT_REG || (entry.type == DT_DIR && !throughLink_);
    if (depth == Depth::full || !certain) lookAt(entry, folder);
  }
}

void FolderScan::lookAt(Entry& entry, int folder) {
  struct statx found;
  const int reason = statusAt(folder, names_.data() + entry.nameStart, 0, found);
  if (reason != 0) {
    entry.listed = !leadsNowhere(reason);
    if (entry.listed) describeUnreadable(entry, folder);
    return;
  }
  entry.status = statusOf(found, nameOf(entry));
  entry.listed = kindOf(found) != EntryKind::other;
  // A real folder lies inside of the searched one, unless a link on the way led here from further below.
  const bool mayLeadBack = entry.type != DT_DIR || throughLink_;
  if (kindOf(found) == EntryKind::folder && mayLeadBack && isInsideOf(found)) entry.listed = false;
}

void FolderScan::describeUnreadable(Entry& entry, int folder) {
  const EntryKind kind = entry.type == DT_DIR ? EntryKind::folder : EntryKind::file;
  entry.status.attributes = attributesOf(kind, true, nameOf(entry));
  struct statx itself;
  if (statusAt(folder, names_.data() + entry.nameStart, AT_SYMLINK_NOFOLLOW, itself) != 0) return;
  entry.status = statusOf(itself, nameOf(entry));
}

bool FolderScan::isInsideOf(const struct statx& entry) {
  if (along_.empty()) along_ = identitiesAlong(*hostFolder_);
  return std::find(along_.begin(), along_.end(), identityOf(entry)) != along_.end();
}

}  // namespace tandemize::platform
