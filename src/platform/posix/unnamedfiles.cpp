#include "platform/posix/unnamedfiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <vector>

#include "platform/posix/status.h"

namespace tandemize::platform {
namespace {

std::optional<mode_t> umaskFromProc() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("Umask:")) return static_cast<mode_t>(std::strtoul(line.c_str() + 6, nullptr, 8));
  }
  return std::nullopt;
}

const std::optional<mode_t>& knownUmask() {
  static const std::optional<mode_t> mask = umaskFromProc();
  return mask;
}

struct Memory {
  std::vector<std::uint64_t> devicesWithout;
  std::string lastFolder;  // files mostly come folder by folder
  bool lastIsWithout = false;
};

Memory& memory() {
  static Memory known;
  return known;
}

std::uint64_t deviceOf(const std::string& hostFolder) {
  struct statx entry;
  if (statusAt(AT_FDCWD, hostFolder.c_str(), 0, entry) != 0) return 0;
  return (std::uint64_t{entry.stx_dev_major} << 32U) | entry.stx_dev_minor;
}

}  // namespace

FileWays& fileWays() {
  static FileWays ways;
  return ways;
}

mode_t lostPermissions() {
  return knownUmask().value_or(0777);
}

bool mayHaveUnnamedFiles(const std::string& hostFolder) {
  if (!fileWays().unnamedFiles || !knownUmask().has_value()) return false;
  Memory& known = memory();
  if (known.devicesWithout.empty()) return true;
  if (known.lastFolder != hostFolder) {
    known.lastFolder = hostFolder;
    const auto& without = known.devicesWithout;
    known.lastIsWithout = std::find(without.begin(), without.end(), deviceOf(hostFolder)) != without.end();
  }
  return !known.lastIsWithout;
}

void rememberNoUnnamedFiles(const std::string& hostFolder) {
  if (const std::uint64_t device = deviceOf(hostFolder); device != 0)
    memory().devicesWithout.push_back(device);
  memory().lastFolder.clear();
}

void forgetFileSystems() {
  fileWays() = {};
  memory() = {};
}

bool saysNoUnnamedFiles(int reason) {
  // Kernels before 3.11 take the flag for O_DIRECTORY and answer EISDIR or ENOENT.
  return reason == EOPNOTSUPP || reason == EISDIR || reason == EINVAL || reason == ENOSYS || reason == ENOENT;
}

}  // namespace tandemize::platform
