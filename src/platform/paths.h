// The program's path notation and the host's.
//
// Above this layer a path is `C:\folder\file` or `\\server\share\file`. `Drives.dat` in the program folder
// says which host folder a letter or a share stands for; letters that it leaves open go to `/` (C:) and to
// the mounted removable and optical media in mount order, network mounts answer as `\\server\share`.
//
// Characters that the notation cannot hold in a name (`" * : < > ? \ |` and the codes 1 to 31) appear as
// U+F000 plus their code, as SMB clients map them, and go back on the way out. A host name that really holds
// such a private character, or U+F0FF, carries a U+F0FF before it, so that every host name survives the round
// trip. Bytes that are not UTF-8 pass through untouched.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tandemize::platform {

enum class DriveKind {
  unknown = 0,
  noRoot = 1,
  removable = 2,
  fixed = 3,
  remote = 4,
  cdrom = 5,
  ramDisk = 6
};

struct Drive {
  std::string root;  // "D:" or "\\server\share", in the program's notation, without a trailing separator
  DriveKind kind;
  std::string hostPath;  // folder, or for an optical drive also a device or an image file
};

// Reads `Drives.dat` and `Registry.ini` of the program folder (a host path) and the mount table. To be called
// before anything else of this layer, and again when the folder or one of the files changes. Of each file the
// first mebibyte counts. A line of `Drives.dat` that makes no sense is passed over and named in
// `badDriveLines()`.
void setProgramFolder(const std::string& hostFolder);

// Host path of the program folder as given to `setProgramFolder`, absolute and without a trailing "/".
[[nodiscard]] const std::string& programFolderOnHost();

// At most 100 lines, each cut at 200 bytes.
[[nodiscard]] const std::vector<std::string>& badDriveLines();

// Letters in alphabetical order, then shares. A medium that is mounted later joins the table by itself, with
// a letter that no other medium had since `setProgramFolder`; one that goes keeps its entry. If `Drives.dat`
// gives `C:` another folder and "/" no letter, "/" has the last free letter (`Z:`). References and Drive
// pointers stay valid until the next `setProgramFolder`.
[[nodiscard]] const std::vector<Drive>& drives();

// The drive that a program path lies on, or nullptr when no letter or share of the table fits. Letters and
// the names of servers and shares compare without regard to case.
[[nodiscard]] const Drive* driveOf(std::string_view programPath);

// Host path of a program path, without a trailing "/". Empty if the path lies on no drive of the table, is
// empty, or holds a zero byte. A relative name ("abc") has no drive, so it gives the empty string. Both "\"
// and "/" part names; doubled and trailing ones count for nothing; "." and ".." are resolved by text and
// never leave the drive. The length is not checked.
[[nodiscard]] std::string toHost(std::string_view programPath);

// Program path of an absolute or relative host path (relative to the working directory); "." and ".." are
// resolved by text. The longest matching root of the table wins; below no root it lies on C:. Nothing need
// exist. A drive's own folder is "D:\", a share's `\\server\share`; the empty string stays empty. `toHost` of
// the result is the resolved host path again.
[[nodiscard]] std::string toProgram(std::string_view hostPath);

// One name, no separators, in either direction.
[[nodiscard]] std::string nameToHost(std::string_view programName);
[[nodiscard]] std::string nameToProgram(std::string_view hostName);

}  // namespace tandemize::platform
