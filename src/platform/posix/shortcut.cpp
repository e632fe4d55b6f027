#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/newfile.h"
#include "platform/paths.h"
#include "platform/posix/status.h"
#include "platform/posix/userfolders.h"

namespace tandemize::platform {

namespace {

constexpr mode_t kFolderBits = 0700;            // of a user's own folders that a program makes
constexpr std::uint32_t kRunnableEntry = 0755;  // desktops start only entries that may be run
constexpr std::uint32_t kOrdinaryEntry = 0644;

std::string placeFolder(ShortcutPlace place) {
  switch (place) {
    case ShortcutPlace::desktop:
      return userDesktopFolder();
    case ShortcutPlace::programs:
    case ShortcutPlace::startMenu:
      return userApplicationsFolder();
    case ShortcutPlace::startUp:
      break;
  }
  return userConfigFolder() + "/autostart";
}

std::string folderOf(const Shortcut& shortcut) {
  const std::string folder = toProgram(placeFolder(shortcut.place));
  return shortcut.subfolder.empty() ? folder : folder + "\\" + shortcut.subfolder;
}

bool isSingleName(std::string_view name) {
  return !name.empty() && name.find_first_of("\\/") == std::string_view::npos;
}

std::string entryPath(const Shortcut& shortcut) {
  return folderOf(shortcut) + "\\" + shortcut.name + ".desktop";
}

ErrorCode makeFolderWithParents(std::string_view folder) {
  std::string host;
  if (const ErrorCode error = hostPathOf(folder, host); error != kNoError) return error;
  if (hostFolderExists(host)) return kNoError;
  for (std::size_t end = 0; end != std::string::npos;) {
    end = host.find('/', end + 1);
    const std::string part = host.substr(0, end);
    if (::mkdir(part.c_str(), kFolderBits) != 0 && errno != EEXIST) return folderError(errno);
  }
  return kNoError;
}

// An argument of a command line: in quotes, with a backslash before what has a meaning between quotes, and
// with the sign of the fields doubled.
std::string quotedArgument(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (std::string_view("\"`$\\").find(c) != std::string_view::npos) quoted += '\\';
    if (c == '%') quoted += '%';
    quoted += c;
  }
  return quoted + "\"";
}

// A value of a desktop entry. A command line is written like any other value, so the backslashes of its
// quotes are doubled here.
std::string entryValue(std::string_view text) {
  std::string value;
  for (const char c : text) {
    switch (c) {
      case '\\':
        value += "\\\\";
        break;
      case '\n':
        value += "\\n";
        break;
      case '\r':
        value += "\\r";
        break;
      case '\t':
        value += "\\t";
        break;
      case ' ':
        value += value.empty() ? "\\s" : " ";
        break;
      default:
        value += c;
    }
  }
  return value;
}

bool isOnlyOpened(const std::string& host) {
  struct stat status {};
  if (::stat(host.c_str(), &status) != 0) return false;
  return S_ISDIR(status.st_mode) || ::access(host.c_str(), X_OK) != 0;
}

std::string commandFor(const std::string& host) {
  return (isOnlyOpened(host) ? "xdg-open " : "") + quotedArgument(host);
}

std::string entryText(const Shortcut& shortcut, const std::string& target) {
  const std::string name = entryValue(nameToHost(shortcut.name));
  std::string text = "[Desktop Entry]\nType=Application\nName=" + name + "\nComment=" + name +
                     "\nExec=" + entryValue(commandFor(target)) + "\nTerminal=false\n";
  if (shortcut.place == ShortcutPlace::startUp) text += "X-GNOME-Autostart-enabled=true\n";
  return text;
}

}  // namespace

ErrorCode createShortcut(const Shortcut& shortcut, std::string_view target) {
  if (!isSingleName(shortcut.name)) return kInvalidName;
  std::string host;
  if (const ErrorCode error = hostPathOf(target, host); error != kNoError) return error;
  if (const ErrorCode error = makeFolderWithParents(folderOf(shortcut)); error != kNoError) return error;
  const bool onDesktop = shortcut.place == ShortcutPlace::desktop;
  return replaceFile(entryPath(shortcut), entryText(shortcut, host),
                     onDesktop ? kRunnableEntry : kOrdinaryEntry);
}

ErrorCode removeShortcut(const Shortcut& shortcut) {
  if (!isSingleName(shortcut.name)) return kInvalidName;
  const ErrorCode error = deleteFile(entryPath(shortcut));
  return error == kFileNotFound || error == kPathNotFound ? kNoError : error;
}

}  // namespace tandemize::platform
