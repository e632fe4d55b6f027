#include <fcntl.h>
#include <linux/cdrom.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "platform/posix/drivetable.h"

namespace tandemize::platform {

namespace {

bool hasLetter(std::string_view path) {
  return path.size() >= 2 && path[1] == ':';
}

// A medium can be pulled while its folder stays behind; writing there would fill the machine's own disc.
bool isMountPoint(const std::string& folder, const struct stat& status) {
  struct stat parent {};
  return ::stat((folder + "/..").c_str(), &parent) == 0 &&
         (parent.st_dev != status.st_dev || parent.st_ino == status.st_ino);
}

// The desktop's shares are folders inside one mount.
bool mustBeMountPoint(const DriveTable::Entry& entry, const Drive& drive) {
  return entry.origin == DriveTable::Origin::mounted &&
         drive.hostPath.find("/smb-share:") == std::string::npos;
}

DiscState deviceState(const std::string& device) {
  const int drive = ::open(device.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (drive < 0) return {};
  DiscState state;
  state.opened = true;
  const int answer = ::ioctl(drive, CDROM_DRIVE_STATUS, CDSL_CURRENT);
  std::uint64_t bytes = 0;
  const bool sized = ::ioctl(drive, BLKGETSIZE64, &bytes) == 0 && bytes > 0;
  // A drive that cannot tell whether a disc is in it (-1 or CDS_NO_INFO) has one if it has a size.
  state.present = answer == CDS_DISC_OK || (answer <= CDS_NO_INFO && sized);
  const int disc = ::ioctl(drive, CDROM_DISC_STATUS, CDSL_CURRENT);
  state.hasLength = state.present && sized && disc != CDS_NO_DISC;
  ::close(drive);
  return state;
}

DiscState configuredDiscState(const std::string& hostPath) {
  struct stat status {};
  if (::stat(hostPath.c_str(), &status) != 0) {
    // A missing image or folder is a drive without a disc; a missing device is no drive.
    const bool device = hostPath.compare(0, 5, "/dev/") == 0;
    return {.opened = !device, .present = false, .hasLength = false};
  }
  if (S_ISBLK(status.st_mode)) return deviceState(hostPath);
  if (S_ISDIR(status.st_mode)) return {.opened = true, .present = true, .hasLength = true};
  return {.opened = true,
          .present = S_ISREG(status.st_mode),
          .hasLength = S_ISREG(status.st_mode) && status.st_size > 0};
}

}  // namespace

DriveKind driveKind(std::string_view path) {
  if (!hasLetter(path)) return DriveKind::noRoot;
  const Drive* const drive = driveOf(path);
  return drive == nullptr ? DriveKind::noRoot : drive->kind;
}

bool driveReady(std::string_view path) {
  refreshDrives();
  const DriveTable& table = currentDrives();
  const std::size_t index = table.find(path);
  if (index == DriveTable::kNone) return false;
  const Drive& drive = table.drives()[index];
  const DriveTable::Entry& entry = table.entry(index);
  if (drive.kind == DriveKind::cdrom && entry.origin == DriveTable::Origin::configured) {
    return discState(path).present;
  }
  struct stat status {};
  const std::string folder = entry.folder.empty() ? "/" : entry.folder;
  if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return false;
  return !mustBeMountPoint(entry, drive) || isMountPoint(folder, status);
}

DiscState discState(std::string_view path) {
  refreshDrives();
  const DriveTable& table = currentDrives();
  const std::size_t index = table.find(path);
  if (index == DriveTable::kNone || table.drives()[index].kind != DriveKind::cdrom) return {};
  if (table.entry(index).origin == DriveTable::Origin::mounted) {
    const bool present = driveReady(path);
    return {.opened = true, .present = present, .hasLength = present};
  }
  return configuredDiscState(table.drives()[index].hostPath);
}

}  // namespace tandemize::platform
