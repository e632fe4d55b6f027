#include "platform/posix/userfolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstddef>
#include <optional>
#include <string_view>

#include "platform/machine.h"
#include "platform/posix/hostfile.h"
#include "platform/posix/names.h"

namespace tandemize::platform {

namespace {

constexpr std::size_t kUserFoldersLimit = 1U << 16U;
constexpr std::string_view kHome = "$HOME/";

std::string folderOf(const char* variable, const char* below) {
  const std::string folder = environment(variable);
  return folder.starts_with('/') ? folder : homeFolder() + below;
}

// The text between two quotes, where a backslash takes the next character as it is.
std::string unquoted(std::string_view text) {
  std::string result;
  for (std::size_t i = 1; i < text.size() && text[i] != '"'; ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    result += text[i];
  }
  return result;
}

// The folder that a line such as `XDG_DESKTOP_DIR="$HOME/Desktop"` tells. The form knows full paths and paths
// below the home folder, always in quotes.
std::optional<std::string> folderInLine(std::string_view line, std::string_view key) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || trimmed(line.substr(0, equals)) != key) return {};
  const std::string_view quoted = trimmed(line.substr(equals + 1));
  if (!quoted.starts_with('"')) return {};
  if (quoted.substr(1).starts_with(kHome)) {
    return homeFolder() + unquoted(quoted.substr(kHome.size() - 1));
  }
  return quoted.substr(1).starts_with('/') ? std::optional(unquoted(quoted)) : std::nullopt;
}

}  // namespace

std::string homeFolder() {
  if (std::string home = environment("HOME"); !home.empty()) return home;
  const passwd* const user = ::getpwuid(::getuid());
  return user == nullptr || user->pw_dir == nullptr ? std::string("/") : std::string(user->pw_dir);
}

std::string userConfigFolder() {
  return folderOf("XDG_CONFIG_HOME", "/.config");
}

std::string userDataFolder() {
  return folderOf("XDG_DATA_HOME", "/.local/share");
}

std::string userApplicationsFolder() {
  return userDataFolder() + "/applications";
}

// Of several lines the last holds, as for the shells that read the same file.
std::string userDesktopFolder() {
  std::string folder = homeFolder() + "/Desktop";
  std::string text;
  if (readHostFile(userConfigFolder() + "/user-dirs.dirs", kUserFoldersLimit, text) != kNoError)
    return folder;
  for (std::string_view rest = text; !rest.empty();) {
    if (const auto told = folderInLine(takeLine(rest), "XDG_DESKTOP_DIR")) folder = *told;
  }
  return folder;
}

}  // namespace tandemize::platform
