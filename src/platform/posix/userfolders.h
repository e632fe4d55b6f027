// The user's own folders, as host paths without anything known of whether they exist.
#pragma once

#include <string>

namespace tandemize::platform {

// `$HOME`, else what the host knows of the user, else "/".
[[nodiscard]] std::string homeFolder();

// `$XDG_CONFIG_HOME` (default ~/.config). A relative folder in the variable counts as not set.
[[nodiscard]] std::string userConfigFolder();

// `$XDG_DATA_HOME` (default ~/.local/share). A relative folder in the variable counts as not set.
[[nodiscard]] std::string userDataFolder();

// The applications of the user's menu: `$XDG_DATA_HOME/applications` (default ~/.local/share).
[[nodiscard]] std::string userApplicationsFolder();

// XDG_DESKTOP_DIR of `user-dirs.dirs` in the configuration folder, else ~/Desktop.
[[nodiscard]] std::string userDesktopFolder();

}  // namespace tandemize::platform
