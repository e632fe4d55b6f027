// The text of `Drives.dat`.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/paths.h"

namespace tandemize::platform {

struct DriveLines {
  std::vector<Drive> drives;  // in file order; a share is always remote, a letter stands in upper case
  std::vector<std::string> badLines;  // the lines that make no sense, at most 100, each at most 200 bytes
};

// One drive a line: `D: = removable /media/anna/STICK`, `\\nas\photos = /mnt/nas/photos`. Kinds are
// removable, fixed, remote, cdrom and ramdisk, in any letter case; no word means fixed. Blanks around every
// part and CR before LF do no harm, empty lines and a byte order mark are passed over. Bad is a line without
// "=", with another name than a letter and ":" or a server and a share, with a host path that is not
// absolute, or with a name that an earlier line has taken.
[[nodiscard]] DriveLines parseDriveLines(std::string_view text);

// Host path without "." and "..", doubled or trailing "/", resolved by text; a relative one lies below
// `base`.
[[nodiscard]] std::string normalHostPath(std::string_view hostPath, std::string_view base);

}  // namespace tandemize::platform
