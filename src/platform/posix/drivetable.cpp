#include "platform/posix/drivetable.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "platform/posix/names.h"

namespace tandemize::platform {

namespace {

constexpr std::string_view kMediaLetters = "DEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kHostRootLetters = "ZYXWVUTSRQPONMLKJIHGFEDCBA";

bool isShare(std::string_view root) {
  return root.substr(0, 2) == "\\\\";
}

std::size_t letterIndex(char c) {
  if (c >= 'A' && c <= 'Z') return static_cast<std::size_t>(c - 'A');
  if (c >= 'a' && c <= 'z') return static_cast<std::size_t>(c - 'a');
  return DriveTable::kNone;
}

// "" for "/", so that a path below is always the folder, "/" and the rest.
std::string_view asFolder(std::string_view hostPath) {
  return hostPath == "/" ? std::string_view() : hostPath;
}

std::string_view mountPointOf(const Drive& drive, const std::vector<Mount>& mounts) {
  for (const Mount& mount : mounts) {
    if (drive.kind == DriveKind::cdrom && mount.source == drive.hostPath) return mount.folder;
  }
  return drive.hostPath;
}

bool liesUnder(std::string_view hostPath, std::string_view folder) {
  if (hostPath.size() < folder.size() || hostPath.compare(0, folder.size(), folder) != 0) return false;
  return hostPath.size() == folder.size() || hostPath[folder.size()] == '/';
}

}  // namespace

DriveTable::DriveTable(const std::vector<Drive>& configured, const std::vector<Mount>& mounts,
                       const std::vector<Drive>& mounted, const DriveTable* previous) {
  addConfigured(configured, mounts);
  if (!hasRoot("C:")) add({"C:", DriveKind::fixed, "/"}, Origin::machine, "/");
  if (previous != nullptr) keepFrom(*previous);
  addMounted(mounted);
  addHostRoot();
  sort();
  index();
}

void DriveTable::add(Drive drive, Origin origin, std::string_view folder) {
  entries_.push_back({origin, std::string(asFolder(folder))});
  drives_.push_back(std::move(drive));
}

void DriveTable::addConfigured(const std::vector<Drive>& configured, const std::vector<Mount>& mounts) {
  for (const Drive& drive : configured) add(drive, Origin::configured, mountPointOf(drive, mounts));
}

void DriveTable::keepFrom(const DriveTable& previous) {
  for (std::size_t i = 0; i < previous.drives_.size(); ++i) {
    const Drive& drive = previous.drives_[i];
    const Entry& entry = previous.entries_[i];
    if (entry.origin == Origin::configured || hasRoot(drive.root)) continue;
    add(drive, entry.origin, entry.folder);
  }
}

void DriveTable::addMounted(const std::vector<Drive>& mounted) {
  for (Drive drive : mounted) {
    if (drive.root.empty() && !hasFolder(drive.hostPath)) drive.root = freeLetter(kMediaLetters);
    if (drive.root.empty() || hasRoot(drive.root)) continue;
    const std::string folder = drive.hostPath;
    add(std::move(drive), Origin::mounted, folder);
  }
}

void DriveTable::addHostRoot() {
  if (hasFolder("/")) return;
  std::string letter = freeLetter(kHostRootLetters);
  if (!letter.empty()) add({std::move(letter), DriveKind::fixed, "/"}, Origin::machine, "/");
}

bool DriveTable::hasRoot(std::string_view root) const {
  return std::any_of(drives_.begin(), drives_.end(),
                     [&](const Drive& drive) { return equalIgnoringCase(drive.root, root); });
}

bool DriveTable::hasFolder(std::string_view folder) const {
  return std::any_of(entries_.begin(), entries_.end(),
                     [&](const Entry& entry) { return entry.folder == asFolder(folder); });
}

std::string DriveTable::freeLetter(std::string_view letters) const {
  for (const char letter : letters) {
    std::string root = {letter, ':'};
    if (!hasRoot(root)) return root;
  }
  return {};
}

void DriveTable::sort() {
  std::vector<std::size_t> order(drives_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const bool shareA = isShare(drives_[a].root);
    const bool shareB = isShare(drives_[b].root);
    if (shareA != shareB) return shareB;
    return !shareA && drives_[a].root < drives_[b].root;
  });
  std::vector<Drive> drives;
  std::vector<Entry> entries;
  for (const std::size_t i : order) {
    drives.push_back(std::move(drives_[i]));
    entries.push_back(std::move(entries_[i]));
  }
  drives_ = std::move(drives);
  entries_ = std::move(entries);
}

void DriveTable::index() {
  letters_.fill(kNone);
  for (std::size_t i = 0; i < drives_.size(); ++i) {
    if (isShare(drives_[i].root)) {
      shares_.push_back(i);
    } else {
      letters_[letterIndex(drives_[i].root[0])] = i;
    }
    byFolder_.push_back(i);
  }
  std::stable_sort(shares_.begin(), shares_.end(), [&](std::size_t a, std::size_t b) {
    return drives_[a].root.size() > drives_[b].root.size();
  });
  std::stable_sort(byFolder_.begin(), byFolder_.end(), [&](std::size_t a, std::size_t b) {
    return entries_[a].folder.size() > entries_[b].folder.size();
  });
}

std::size_t DriveTable::find(std::string_view programPath) const {
  if (programPath.size() < 2) return kNone;
  if (programPath[1] == ':') {
    const std::size_t letter = letterIndex(programPath[0]);
    return letter == kNone ? kNone : letters_[letter];
  }
  if (!isShare(programPath)) return kNone;
  for (const std::size_t i : shares_) {
    const std::string& root = drives_[i].root;
    if (!equalIgnoringCase(programPath.substr(0, root.size()), root)) continue;
    if (programPath.size() == root.size() || programPath[root.size()] == '\\' ||
        programPath[root.size()] == '/') {
      return i;
    }
  }
  return kNone;
}

std::size_t DriveTable::findHost(std::string_view hostPath) const {
  for (const std::size_t i : byFolder_) {
    if (liesUnder(hostPath, entries_[i].folder)) return i;
  }
  return kNone;
}

bool operator==(const DriveTable& a, const DriveTable& b) {
  const auto sameDrive = [](const Drive& x, const Drive& y) {
    return x.root == y.root && x.kind == y.kind && x.hostPath == y.hostPath;
  };
  const auto sameEntry = [](const DriveTable::Entry& x, const DriveTable::Entry& y) {
    return x.origin == y.origin && x.folder == y.folder;
  };
  return std::equal(a.drives_.begin(), a.drives_.end(), b.drives_.begin(), b.drives_.end(), sameDrive) &&
         std::equal(a.entries_.begin(), a.entries_.end(), b.entries_.begin(), b.entries_.end(), sameEntry);
}

}  // namespace tandemize::platform
