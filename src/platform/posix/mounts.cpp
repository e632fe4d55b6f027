#include "platform/posix/mounts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <set>

#include "platform/posix/drivelines.h"
#include "platform/posix/names.h"

namespace tandemize::platform {

namespace {

std::string_view takeWord(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return word;
}

// Undoes an escape of `digits` digits to the given base behind every `mark`.
std::string unescaped(std::string_view text, char mark, std::size_t digits, int base) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned code = 0;
    const std::string_view number = text.substr(i + 1, digits);
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), code, base);
    const bool whole = error == std::errc() && number.size() == digits && end == number.data() + digits;
    if (text[i] == mark && whole && code != 0 && code < 256) {
      plain += static_cast<char>(static_cast<unsigned char>(code));
      i += digits;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

std::string mountField(std::string_view word) {
  return unescaped(word, '\\', 3, 8);
}

bool startsWith(std::string_view text, std::string_view front) {
  return text.substr(0, front.size()) == front;
}
bool endsWith(std::string_view text, std::string_view back) {
  return text.size() >= back.size() && text.substr(text.size() - back.size()) == back;
}

// `\\server` and the parts of `path` between "/", each as the program writes a name. Empty unless there is a
// server and a part.
std::string networkRoot(std::string_view server, std::string_view path) {
  std::string root = "\\\\";
  appendNameToProgram(root, server);
  const std::size_t serverEnd = root.size();
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    if (end > 0) appendNameToProgram(root += '\\', path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return server.empty() || root.size() == serverEnd ? std::string() : root;
}

// `//server/share`, perhaps with folders behind it. With a shared superblock the folder stands in the root
// field instead.
std::string cifsRoot(const Mount& mount) {
  if (!startsWith(mount.source, "//")) return {};
  std::string source = mount.source.substr(2);
  if (mount.root != "/" && !endsWith(source, mount.root)) source += mount.root;
  const std::size_t slash = source.find('/');
  if (slash == std::string::npos) return {};
  return networkRoot(std::string_view(source).substr(0, slash), std::string_view(source).substr(slash + 1));
}

// `server:/export`; an IPv6 address stands in brackets. The server's top folder has no name and is called
// "root".
std::string nfsRoot(const Mount& mount) {
  const std::size_t colon = mount.source.find(":/");
  if (colon == std::string::npos) return {};
  std::string_view server = std::string_view(mount.source).substr(0, colon);
  if (server.size() > 2 && server.front() == '[' && server.back() == ']')
    server = server.substr(1, server.size() - 2);
  std::string share = normalHostPath(std::string_view(mount.source).substr(colon + 1), {}).substr(1);
  std::replace(share.begin(), share.end(), '/', '_');
  return networkRoot(server, share.empty() ? "root" : share);
}

// "smb-share:domain=WORK,server=nas,share=photos,user=anna"; the values are percent-encoded.
std::string desktopShareRoot(std::string_view name) {
  constexpr std::string_view kPrefix = "smb-share:";
  if (!startsWith(name, kPrefix)) return {};
  name.remove_prefix(kPrefix.size());
  std::string server;
  std::string share;
  while (!name.empty()) {
    const std::size_t end = std::min(name.find(','), name.size());
    const std::string_view part = name.substr(0, end);
    if (startsWith(part, "server=")) server = unescaped(part.substr(7), '%', 2, 16);
    if (startsWith(part, "share=")) share = unescaped(part.substr(6), '%', 2, 16);
    name.remove_prefix(std::min(end + 1, name.size()));
  }
  return networkRoot(server, share);
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// Kind of a mounted medium, or nothing for a mount that is a part of the machine's own tree.
std::optional<DriveKind> mediumKind(const Mount& mount, const MountFacts& facts) {
  if (!startsWith(mount.source, "/dev/")) return std::nullopt;
  // A system that was started from a stick keeps its own folders in its own tree.
  if (mount.folder == "/" || mount.folder == "/boot" || startsWith(mount.folder, "/boot/"))
    return std::nullopt;
  if (mount.type == "iso9660") return DriveKind::cdrom;
  if (mount.type == "udf" && (startsWith(mount.source, "/dev/sr") || startsWith(mount.source, "/dev/loop"))) {
    return DriveKind::cdrom;
  }
  // The desktop mounts what the user plugs in at these places; a hard disc on a cable does not call itself
  // removable.
  if (startsWith(mount.folder, "/media/") || startsWith(mount.folder, "/run/media/"))
    return DriveKind::removable;
  if (mount.root == "/" && facts.isRemovable(mount.device)) return DriveKind::removable;
  return std::nullopt;
}

void addDesktopShares(const Mount& mount, const MountFacts& facts, std::vector<Drive>& drives) {
  std::vector<std::string> names = facts.namesIn(mount.folder);
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    std::string root = desktopShareRoot(name);
    if (!root.empty()) drives.push_back({std::move(root), DriveKind::remote, mount.folder + "/" + name});
  }
}

}  // namespace

std::vector<Mount> parseMounts(std::string_view mountInfo) {
  std::vector<Mount> mounts;
  while (!mountInfo.empty()) {
    std::string_view line = takeLine(mountInfo);
    std::array<std::string_view, 5> words;  // mount and parent number, device, root, folder
    for (std::string_view& word : words) word = takeWord(line);
    const std::size_t dash = line.find(" - ");
    if (dash == std::string_view::npos || words[4].empty() || words[4].front() != '/') continue;
    line.remove_prefix(dash + 3);
    const std::string_view type = takeWord(line);
    const std::string_view source = takeWord(line);
    mounts.push_back({std::string(words[2]), mountField(words[3]), mountField(words[4]), mountField(type),
                      mountField(source)});
  }
  return mounts;
}

std::vector<Drive> mountedDrives(const std::vector<Mount>& mounts, const MountFacts& facts) {
  std::vector<Drive> drives;
  std::set<std::string> mediaSeen;  // one letter a medium, though it be mounted in several places
  for (const Mount& mount : mounts) {
    if (isOneOf(mount.type, {"cifs", "smb3", "smbfs"})) {
      if (std::string root = cifsRoot(mount); !root.empty()) {
        drives.push_back({std::move(root), DriveKind::remote, mount.folder});
      }
    } else if (isOneOf(mount.type, {"nfs", "nfs4"})) {
      if (std::string root = nfsRoot(mount); !root.empty()) {
        drives.push_back({std::move(root), DriveKind::remote, mount.folder});
      }
    } else if (mount.type == "fuse.gvfsd-fuse") {
      addDesktopShares(mount, facts, drives);
    } else if (const auto kind = mediumKind(mount, facts); kind && mediaSeen.insert(mount.device).second) {
      drives.push_back({{}, *kind, mount.folder});
    }
  }
  return drives;
}

}  // namespace tandemize::platform
