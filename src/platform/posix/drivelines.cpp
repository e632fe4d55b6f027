#include "platform/posix/drivelines.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "platform/posix/names.h"

namespace tandemize::platform {

namespace {

constexpr std::size_t kMaxBadLines = 100;
constexpr std::size_t kMaxBadLineLength = 200;

constexpr std::array<std::pair<std::string_view, DriveKind>, 5> kKinds = {{
    {"removable", DriveKind::removable},
    {"fixed", DriveKind::fixed},
    {"remote", DriveKind::remote},
    {"cdrom", DriveKind::cdrom},
    {"ramdisk", DriveKind::ramDisk},
}};

bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// "D:" for "d:" or "D:\", empty for anything else.
std::string letterRoot(std::string_view name) {
  if (name.size() < 2 || !isLetter(name[0]) || name[1] != ':') return {};
  if (name.size() > 3 || (name.size() == 3 && name[2] != '\\')) return {};
  const char letter = name[0] >= 'a' ? static_cast<char>(name[0] - 'a' + 'A') : name[0];
  return {letter, ':'};
}

// "\\server\share" with or without a trailing separator; empty for anything else.
std::string shareRoot(std::string_view name) {
  if (name.substr(0, 2) != "\\\\") return {};
  if (name.back() == '\\') name.remove_suffix(1);
  const std::size_t parts = name.find('\\', 2);
  const bool twoNames = parts != std::string_view::npos && parts > 2 && parts + 1 < name.size() &&
                        name.find('\\', parts + 1) == std::string_view::npos;
  return twoNames ? std::string(name) : std::string();
}

// Takes the kind word from the front of `target`; without one the kind is fixed.
DriveKind takeKind(std::string_view& target) {
  const std::size_t end = std::min(target.find_first_of(" \t"), target.size());
  for (const auto& [word, kind] : kKinds) {
    if (!equalIgnoringCase(target.substr(0, end), word)) continue;
    target = trimmed(target.substr(end));
    return kind;
  }
  return DriveKind::fixed;
}

std::optional<Drive> parseLine(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || line.find('\0') != std::string_view::npos) return std::nullopt;
  const std::string_view name = trimmed(line.substr(0, equals));
  std::string_view target = trimmed(line.substr(equals + 1));
  Drive drive{letterRoot(name), takeKind(target), {}};
  if (drive.root.empty()) {
    drive.root = shareRoot(name);
    drive.kind = DriveKind::remote;
  }
  if (drive.root.empty() || target.empty() || target.front() != '/') return std::nullopt;
  drive.hostPath = normalHostPath(target, {});
  return drive;
}

bool isTaken(const std::vector<Drive>& drives, const std::string& root) {
  return std::any_of(drives.begin(), drives.end(),
                     [&](const Drive& drive) { return equalIgnoringCase(drive.root, root); });
}

}  // namespace

DriveLines parseDriveLines(std::string_view text) {
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  DriveLines lines;
  while (!text.empty()) {
    const std::string_view line = trimmed(takeLine(text));
    if (line.empty()) continue;
    std::optional<Drive> drive = parseLine(line);
    if (drive && !isTaken(lines.drives, drive->root)) {
      lines.drives.push_back(std::move(*drive));
    } else if (lines.badLines.size() < kMaxBadLines) {
      lines.badLines.emplace_back(line.substr(0, kMaxBadLineLength));
    }
  }
  return lines;
}

std::string normalHostPath(std::string_view hostPath, std::string_view base) {
  std::string path;
  if (hostPath.substr(0, 1) != "/") path = base == "/" ? std::string_view() : base;
  path.reserve(path.size() + hostPath.size() + 1);
  while (!hostPath.empty()) {
    const std::size_t end = std::min(hostPath.find('/'), hostPath.size());
    const std::string_view name = hostPath.substr(0, end);
    hostPath.remove_prefix(std::min(end + 1, hostPath.size()));
    if (name.empty() || name == ".") continue;
    if (name != "..") {
      path.append("/").append(name);
    } else if (!path.empty()) {
      path.resize(path.rfind('/'));
    }
  }
  return path.empty() ? "/" : path;
}

}  // namespace tandemize::platform
