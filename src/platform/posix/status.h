// What the host says of a path, told in the program's terms: the path itself, the failure, the status.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/errors.h"
#include "platform/files.h"

namespace tandemize::platform {

// Host path of a program path, without trailing separators. kPathNotFound: it lies on no drive; kNameTooLong:
// the host takes no path of this length; kInvalidName: it holds a NUL, at which the host would cut it.
[[nodiscard]] ErrorCode hostPathOf(std::string_view programPath, std::string& host);

// The last name of a host path ("" for "/"), and the path of the folder that it lies in.
[[nodiscard]] std::string_view lastName(std::string_view host);
[[nodiscard]] std::string parentOf(std::string_view host);

// The program's number for a call on `host` that failed with `number`. Parts "no such file in its folder"
// from "no such folder". A link that leads nowhere or in a circle counts as no file.
[[nodiscard]] ErrorCode pathError(int number, const std::string& host);
// The same for a call on a folder, which is either there or not.
[[nodiscard]] ErrorCode folderError(int number);

enum class EntryKind { file, folder, other };
[[nodiscard]] EntryKind kindOf(const struct statx& entry);

inline constexpr unsigned kStatusMask =
    STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_ATIME | STATX_MTIME | STATX_BTIME | STATX_INO;

// One statx call; 0 or the host's error number. Never mounts anything by asking.
[[nodiscard]] int statusAt(int folder, const char* name, int flags, struct statx& entry);

// `hostName` is the name under which the entry was asked for: it decides on "hidden".
[[nodiscard]] FileStatus statusOf(const struct statx& entry, std::string_view hostName);
[[nodiscard]] std::uint32_t attributesOf(EntryKind kind, bool ownerMayWrite, std::string_view hostName);

// Opens a file without ever waiting for the other end of a pipe. A file that a file server has leased is
// waited for. The descriptor, or -1 with `errno` set. `flags` are O_RDONLY or O_WRONLY plus what the caller
// needs.
[[nodiscard]] int openWithoutWaiting(const char* host, int flags);

}  // namespace tandemize::platform
