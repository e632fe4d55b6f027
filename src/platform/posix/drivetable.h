// The drives of the program: what `Drives.dat` says, the machine's own tree, and what is mounted.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/paths.h"
#include "platform/posix/mounts.h"

namespace tandemize::platform {

// Built once, then only asked. Letters come first in alphabetical order, then shares.
class DriveTable {
 public:
  // Where an entry comes from. Only mounted entries can vanish while their folder stays.
  enum class Origin { configured, machine, mounted };

  struct Entry {
    Origin origin;
    std::string folder;  // the host folder that the root stands for, without a trailing "/", so "" for "/"
  };

  // `configured` comes from `Drives.dat`, `mounted` from `mountedDrives`; `mounts` tells where a configured
  // optical device is mounted, since its files are there. If `C:` is not configured it is "/". If no drive is
  // "/", as when `C:` is configured to be another folder, "/" takes the last free letter, so that every host
  // path has a program path. Letters that `previous` gave to the machine and to mounts stay as they are, even
  // if the medium has gone: a letter never changes its medium while the program runs.
  DriveTable(const std::vector<Drive>& configured, const std::vector<Mount>& mounts,
             const std::vector<Drive>& mounted, const DriveTable* previous);

  [[nodiscard]] const std::vector<Drive>& drives() const { return drives_; }
  [[nodiscard]] const Entry& entry(std::size_t index) const { return entries_[index]; }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  // Number of the drive that a program path lies on, of two nested shares the inner one; kNone if there is
  // none.
  [[nodiscard]] std::size_t find(std::string_view programPath) const;
  // Number of the drive with the longest folder around a normal absolute host path; kNone if there is none.
  [[nodiscard]] std::size_t findHost(std::string_view hostPath) const;

  friend bool operator==(const DriveTable& a, const DriveTable& b);

 private:
  void add(Drive drive, Origin origin, std::string_view folder);
  void addConfigured(const std::vector<Drive>& configured, const std::vector<Mount>& mounts);
  void keepFrom(const DriveTable& previous);
  void addMounted(const std::vector<Drive>& mounted);
  void addHostRoot();
  [[nodiscard]] bool hasRoot(std::string_view root) const;
  [[nodiscard]] bool hasFolder(std::string_view folder) const;
  [[nodiscard]] std::string freeLetter(std::string_view letters) const;
  void sort();
  void index();

  std::vector<Drive> drives_;
  std::vector<Entry> entries_;  // in the order of `drives_`
  std::array<std::size_t, 26> letters_{};
  std::vector<std::size_t> shares_;    // longest root first
  std::vector<std::size_t> byFolder_;  // longest folder first
};

// The table in use. References stay valid until the next `setProgramFolder`.
[[nodiscard]] const DriveTable& currentDrives();

// Looks whether the mount table has changed and takes up what is new. True if the table in use is another one
// now.
bool refreshDrives();

}  // namespace tandemize::platform
