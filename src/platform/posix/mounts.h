// The host's mount table: which media and network folders it holds.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/paths.h"

namespace tandemize::platform {

// One line of /proc/self/mountinfo, escapes undone.
struct Mount {
  std::string device;  // "8:17"
  std::string root;    // the folder of the file system that is mounted, mostly "/"
  std::string folder;  // where it is mounted
  std::string type;    // "vfat"
  std::string source;  // "/dev/sdb1", "//nas/photos", "nas:/photos"
};

// In mount order; lines that make no sense are passed over.
[[nodiscard]] std::vector<Mount> parseMounts(std::string_view mountInfo);

// What has to be asked of the host beside the table itself.
class MountFacts {
 public:
  MountFacts() = default;
  MountFacts(const MountFacts&) = delete;
  MountFacts& operator=(const MountFacts&) = delete;
  virtual ~MountFacts() = default;
  // The disc behind a device number can be taken out.
  [[nodiscard]] virtual bool isRemovable(const std::string& device) const = 0;
  // Names in a host folder; none if it cannot be read.
  [[nodiscard]] virtual std::vector<std::string> namesIn(const std::string& folder) const = 0;
};

// The mounts that are drives of their own, in mount order. A medium (removable or cdrom) has an empty root:
// it takes a free letter. A network mount (remote) has the root `\\server\share`:
// - CIFS by its source, with the folders below the share if only such a folder is mounted;
// - NFS by its server and its export, whose folders are joined by "_" since a share is one name;
// - the desktop's SMB mounts by the folders `smb-share:server=...,share=...` of its FUSE mount.
[[nodiscard]] std::vector<Drive> mountedDrives(const std::vector<Mount>& mounts, const MountFacts& facts);

// The host's own table and answers.
[[nodiscard]] std::vector<Mount> readMounts();
[[nodiscard]] const MountFacts& hostMountFacts();

// Watches the host's mount table from now on. To be called before the table is read, so that no change is
// lost.
void watchMountTable();
// Tells whether the table has changed since the watch began or was last asked; one system call.
[[nodiscard]] bool mountTableChanged();

}  // namespace tandemize::platform
