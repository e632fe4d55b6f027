// What this process has learnt about making files on this host's file systems.
#pragma once

#include <sys/types.h>

#include <string>

namespace tandemize::platform {

// For tests: take a way of working away, as if the host did not have it.
struct FileWays {
  bool unnamedFiles = true;  // O_TMPFILE
  bool namesForThem = true;  // linkat, through /proc
  bool copyInKernel = true;  // copy_file_range
};
[[nodiscard]] FileWays& fileWays();

// The bits that a new file loses. Read once, from /proc, because asking umask(2) means changing it. Where
// /proc is missing every bit counts as lost.
[[nodiscard]] mode_t lostPermissions();

// False if the file system of `hostFolder` is known to have no unnamed files, or the host no /proc to name
// them by.
[[nodiscard]] bool mayHaveUnnamedFiles(const std::string& hostFolder);
void rememberNoUnnamedFiles(const std::string& hostFolder);

// All ways are open again, and nothing is remembered of any file system.
void forgetFileSystems();

// True for the host's ways of saying that a file system has no unnamed files.
[[nodiscard]] bool saysNoUnnamedFiles(int reason);

}  // namespace tandemize::platform
