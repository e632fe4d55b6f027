#include "platform/paths.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/posix/drivelines.h"
#include "platform/posix/drivetable.h"
#include "platform/posix/hostfile.h"
#include "platform/posix/names.h"
#include "platform/posix/registryfile.h"

namespace tandemize::platform {

namespace {

constexpr std::size_t kDriveFileLimit = 1U << 20U;

struct PathState {
  std::string programFolder;
  DriveLines lines;
  // The last one is in use. Older ones stay so that a Drive in a caller's hand stays valid when a medium
  // comes.
  std::vector<std::unique_ptr<const DriveTable>> tables;
};

PathState& state() {
  static PathState paths;
  if (paths.tables.empty()) {
    paths.tables.push_back(std::make_unique<DriveTable>(paths.lines.drives, std::vector<Mount>(),
                                                        std::vector<Drive>(), nullptr));
  }
  return paths;
}

// The mount table knows an optical drive by its device, not by links such as /dev/cdrom.
void resolveDeviceLink(Drive& drive) {
  if (drive.kind != DriveKind::cdrom || drive.hostPath.compare(0, 5, "/dev/") != 0) return;
  const std::unique_ptr<char, decltype(&std::free)> device(::realpath(drive.hostPath.c_str(), nullptr),
                                                           &std::free);
  if (device != nullptr) drive.hostPath = device.get();
}

DriveLines readDriveLines(const std::string& folder) {
  std::string text;
  if (readHostFile(folder + "/Drives.dat", kDriveFileLimit, text) != kNoError) return {};
  // The last line of a file that was not read whole is cut somewhere and could name another folder.
  if (text.size() == kDriveFileLimit) text.resize(text.rfind('\n') + 1);
  DriveLines lines = parseDriveLines(text);
  for (Drive& drive : lines.drives) resolveDeviceLink(drive);
  return lines;
}

std::unique_ptr<const DriveTable> buildTable(const std::vector<Drive>& configured,
                                             const DriveTable* previous) {
  const std::vector<Mount> mounts = readMounts();
  return std::make_unique<DriveTable>(configured, mounts, mountedDrives(mounts, hostMountFacts()), previous);
}

std::string workingFolder() {
  std::string folder(PATH_MAX, '\0');
  if (::getcwd(folder.data(), folder.size()) == nullptr) return "/";
  folder.resize(folder.find('\0'));
  return folder;
}

bool isSeparator(char c) {
  return c == '\\' || c == '/';
}

bool namesDrive(std::string_view path) {
  return path.size() >= 2 && (path[1] == ':' || path.substr(0, 2) == "\\\\");
}

// The table in use and the number in it of the path's drive. A path on an unknown drive may be on one that
// has just come.
std::pair<const DriveTable*, std::size_t> driveAt(std::string_view programPath) {
  const DriveTable* table = &currentDrives();
  std::size_t index = table->find(programPath);
  if (index == DriveTable::kNone && namesDrive(programPath) && refreshDrives()) {
    table = &currentDrives();
    index = table->find(programPath);
  }
  return {table, index};
}

// Appends the names of `rest` below the folder that `host` already holds; ".." never climbs out of that
// folder.
void appendNamesToHost(std::string& host, std::string_view rest) {
  const std::size_t folderEnd = host.size();
  std::size_t i = 0;
  while (i < rest.size()) {
    std::size_t end = i;
    while (end < rest.size() && !isSeparator(rest[end])) ++end;
    const std::string_view name = rest.substr(i, end - i);
    i = end + 1;
    if (name.empty() || name == ".") continue;
    if (name == "..") {
      if (host.size() > folderEnd) host.resize(host.rfind('/'));
    } else {
      host += '/';
      appendNameToHost(host, name);
    }
  }
}

// Absolute, without doubled or trailing "/", "." and "..".
bool isNormal(std::string_view path) {
  if (path.empty() || path.front() != '/') return false;
  if (path.size() > 1 && path.back() == '/') return false;
  for (std::size_t slash = 0; slash != std::string_view::npos; slash = path.find('/', slash + 1)) {
    const std::string_view next = path.substr(slash + 1, 3);
    if (next.empty()) continue;
    if (next[0] == '/' || next == "." || next == ".." || next.substr(0, 2) == "./" || next == "../")
      return false;
  }
  return true;
}

}  // namespace

void setProgramFolder(const std::string& hostFolder) {
  PathState& paths = state();
  paths.programFolder = hostFolder.empty() ? std::string() : normalHostPath(hostFolder, workingFolder());
  paths.lines = readDriveLines(paths.programFolder);
  loadRegistry(paths.programFolder);
  watchMountTable();
  auto table = buildTable(paths.lines.drives, nullptr);
  paths.tables.clear();
  paths.tables.push_back(std::move(table));
}

const std::string& programFolderOnHost() {
  return state().programFolder;
}

const std::vector<std::string>& badDriveLines() {
  return state().lines.badLines;
}

const DriveTable& currentDrives() {
  return *state().tables.back();
}

bool refreshDrives() {
  if (!mountTableChanged()) return false;
  PathState& paths = state();
  auto table = buildTable(paths.lines.drives, paths.tables.back().get());
  if (*table == *paths.tables.back()) return false;
  paths.tables.push_back(std::move(table));
  return true;
}

const std::vector<Drive>& drives() {
  refreshDrives();
  return currentDrives().drives();
}

const Drive* driveOf(std::string_view programPath) {
  const auto [table, index] = driveAt(programPath);
  return index == DriveTable::kNone ? nullptr : &table->drives()[index];
}

std::string toHost(std::string_view programPath) {
  const auto [table, index] = driveAt(programPath);
  if (index == DriveTable::kNone || programPath.find('\0') != std::string_view::npos) return {};
  const std::string_view rest = programPath.substr(table->drives()[index].root.size());
  const std::string& folder = table->entry(index).folder;
  std::string host;
  host.reserve(folder.size() + rest.size() + 1);
  host = folder;
  appendNamesToHost(host, rest);
  if (host.empty()) host = "/";
  return host;
}

std::string toProgram(std::string_view hostPath) {
  if (hostPath.empty()) return {};
  std::string written;
  if (!isNormal(hostPath)) {
    written = normalHostPath(hostPath, hostPath.front() == '/' ? std::string() : workingFolder());
    hostPath = written;
  }
  const DriveTable& table = currentDrives();
  const std::size_t index = table.findHost(hostPath);
  const bool found = index != DriveTable::kNone;
  const std::string_view root = found ? std::string_view(table.drives()[index].root) : "C:";
  std::string_view rest = hostPath.substr(found ? table.entry(index).folder.size() : 0);
  std::string path;
  path.reserve(root.size() + rest.size() + 1);
  path = root;
  // `rest` is empty, "/" or "/" and names; a letter alone would be no folder.
  while (rest.size() > 1) {
    const std::size_t end = std::min(rest.find('/', 1), rest.size());
    appendNameToProgram(path += '\\', rest.substr(1, end - 1));
    rest.remove_prefix(end);
  }
  if (path.size() == 2) path += '\\';
  return path;
}

}  // namespace tandemize::platform
