#include <fcntl.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "platform/appendfile.h"
#include "platform/posix/reservednames.h"
#include "platform/posix/status.h"

namespace tandemize::platform {
namespace {

constexpr std::uint32_t kNames = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
constexpr std::uint32_t kFolderItself = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

// File systems whose content changes elsewhere, without this host being told. Those without a name in the
// kernel's own list: VirtualBox shared folders, Lustre.
constexpr std::array<std::uint32_t, 13> kSharedElsewhere = {
    NFS_SUPER_MAGIC,   SMB_SUPER_MAGIC,  CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC, FUSE_SUPER_MAGIC,
    V9FS_MAGIC,        CEPH_SUPER_MAGIC, AFS_FS_MAGIC,     AFS_SUPER_MAGIC,  CODA_SUPER_MAGIC,
    OCFS2_SUPER_MAGIC, 0x786f4256U,      0x0BD00BD0U};

bool tellsOfChanges(const char* host) {
  struct statfs disc;
  if (::statfs(host, &disc) != 0) return false;
  // Some hosts widen the 32 bits with their sign.
  const auto kind = static_cast<std::uint32_t>(disc.f_type);
  return std::find(kSharedElsewhere.begin(), kSharedElsewhere.end(), kind) == kSharedElsewhere.end();
}

enum class Finding { nothing, changed, folderGone };

Finding lookThrough(const char* events, std::size_t size) {
  Finding finding = Finding::nothing;
  for (std::size_t position = 0; position < size;) {
    struct inotify_event event;
    std::memcpy(&event, events + position, sizeof event);
    const char* name = events + position + sizeof event;
    position += sizeof event + event.len;
    if ((event.mask & kFolderItself) != 0) return Finding::folderGone;
    // Files on their way to a name come and go under reserved names, which nobody lists.
    if (event.len > 0 && std::string_view(name).starts_with(kReservedPrefix)) continue;
    finding = Finding::changed;
  }
  return finding;
}

}  // namespace

FolderWatch::FolderWatch() = default;

FolderWatch::~FolderWatch() {
  stop();
}

void FolderWatch::start(std::string_view folder) {
  stop();
  std::string host;
  if (hostPathOf(folder, host) != kNoError || !tellsOfChanges(host.c_str())) return;
  descriptor_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (descriptor_ < 0) return;
  const std::uint32_t events = kNames | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
  if (::inotify_add_watch(descriptor_, host.c_str(), events) < 0) stop();
}

bool FolderWatch::changed() {
  if (descriptor_ < 0) return true;
  alignas(inotify_event) std::array<char, 4096> events;
  bool anyChange = false;
  for (;;) {
    const ssize_t size = ::read(descriptor_, events.data(), events.size());
    if (size < 0 && errno == EINTR) continue;
    if (size < 0 && errno == EAGAIN) return anyChange;
    const Finding finding =
        size > 0 ? lookThrough(events.data(), static_cast<std::size_t>(size)) : Finding::folderGone;
    if (finding == Finding::folderGone) {
      stop();
      return true;
    }
    anyChange = anyChange || finding == Finding::changed;
  }
}

void FolderWatch::stop() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
}

}  // namespace tandemize::platform
