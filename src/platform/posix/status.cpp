#include "platform/posix/status.h"

#include <cerrno>
#include <climits>

#include "platform/paths.h"
#include "platform/posix/errno.h"

namespace tandemize::platform {
namespace {

FileTime timeOf(const struct statx_timestamp& stamp) {
  return {stamp.tv_sec, static_cast<std::int32_t>(stamp.tv_nsec)};
}

std::string_view withoutTrailingSeparators(std::string_view host) {
  while (host.size() > 1 && host.back() == '/') host.remove_suffix(1);
  return host;
}

}  // namespace

ErrorCode hostPathOf(std::string_view programPath, std::string& host) {
  if (programPath.find('\0') != std::string_view::npos) return kInvalidName;
  host = toHost(programPath);
  if (host.empty()) return kPathNotFound;
  host.resize(withoutTrailingSeparators(host).size());
  return host.size() < PATH_MAX ? kNoError : kNameTooLong;
}

std::string_view lastName(std::string_view host) {
  host = withoutTrailingSeparators(host);
  return host.substr(host.rfind('/') + 1);
}

std::string parentOf(std::string_view host) {
  host = withoutTrailingSeparators(host);
  const std::size_t slash = host.rfind('/');
  if (slash == std::string_view::npos) return ".";
  const std::string_view parent = withoutTrailingSeparators(host.substr(0, slash));
  return std::string(parent.empty() ? "/" : parent);
}

ErrorCode folderError(int number) {
  if (number == ENOENT || number == ENOTDIR || number == ELOOP) return kPathNotFound;
  return number == ENAMETOOLONG ? kNameTooLong : fromErrno(number);
}

ErrorCode pathError(int number, const std::string& host) {
  if (number != ENOENT && number != ELOOP) return folderError(number);
  struct statx parent;
  const bool thereIsAFolder =
      statusAt(AT_FDCWD, parentOf(host).c_str(), 0, parent) == 0 && kindOf(parent) == EntryKind::folder;
  return thereIsAFolder ? kFileNotFound : kPathNotFound;
}

EntryKind kindOf(const struct statx& entry) {
  if (S_ISREG(entry.stx_mode)) return EntryKind::file;
  return S_ISDIR(entry.stx_mode) ? EntryKind::folder : EntryKind::other;
}

int statusAt(int folder, const char* name, int flags, struct statx& entry) {
  return ::statx(folder, name, flags | AT_NO_AUTOMOUNT, kStatusMask, &entry) == 0 ? 0 : errno;
}

std::uint32_t attributesOf(EntryKind kind, bool ownerMayWrite, std::string_view hostName) {
  std::uint32_t attributes = kind == EntryKind::folder ? kDirectory : kArchive;
  if (!ownerMayWrite) attributes |= kReadOnly;
  if (hostName.starts_with('.') && hostName != "." && hostName != "..") attributes |= kHidden;
  return attributes;
}

FileStatus statusOf(const struct statx& entry, std::string_view hostName) {
  const EntryKind kind = kindOf(entry);
  FileStatus status;
  status.attributes = attributesOf(kind, (entry.stx_mode & S_IWUSR) != 0, hostName);
  status.lastAccess = timeOf(entry.stx_atime);
  status.lastWrite = timeOf(entry.stx_mtime);
  // Network file systems often keep no time of birth; the last change is the oldest moment then known.
  status.creation = (entry.stx_mask & STATX_BTIME) != 0 ? timeOf(entry.stx_btime) : status.lastWrite;
  if (kind == EntryKind::file) status.size = entry.stx_size;
  return status;
}

int openWithoutWaiting(const char* host, int flags) {
  flags |= O_CLOEXEC | O_NOCTTY;
  const int descriptor = ::open(host, flags | O_NONBLOCK);
  if (descriptor >= 0 || errno != EWOULDBLOCK) return descriptor;
  // Only a lease (Samba holds them on files that its clients have open) answers so; it ends within seconds.
  struct statx entry;
  if (statusAt(AT_FDCWD, host, 0, entry) == 0 && kindOf(entry) == EntryKind::file) return ::open(host, flags);
  errno = EWOULDBLOCK;
  return -1;
}

}  // namespace tandemize::platform
