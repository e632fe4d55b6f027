// What the program asks of the desktop around it: opening a file, showing its properties, shortcuts.
//
// Paths are program paths (see paths.h). The host's own tools do the work, started as processes that live on
// by themselves: nobody waits for their end, so success means that the tool was started.
#pragma once

#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize::platform {

// Opens a file or folder with the program that the user has chosen for its kind (xdg-open). kFileNotFound if
// the path does not exist, and also if the host has no xdg-open; kPathNotFound if its folder does not exist.
[[nodiscard]] ErrorCode openWithDesktop(std::string_view path);

// Has the file manager show the properties of a file or folder. kFileNotFound or kPathNotFound if the path
// does not exist; kNotSupported if the host has no tool to ask a file manager (gdbus, dbus-send).
[[nodiscard]] ErrorCode showProperties(std::string_view path);

// Starts the desktop's tool that tells about this computer, the first one that the host has of those known.
// kFileNotFound if it has none.
[[nodiscard]] ErrorCode openSystemInformation();

enum class ShortcutPlace {
  desktop = 0,    // XDG_DESKTOP_DIR of the user's user-dirs.dirs, else ~/Desktop
  programs = 1,   // $XDG_DATA_HOME/applications, default ~/.local/share/applications
  startMenu = 2,  // the same: the host's menu has no level above its programs
  startUp = 3     // $XDG_CONFIG_HOME/autostart, default ~/.config/autostart
};

// A shortcut is the desktop entry "<name>.desktop" of its folder, made for one user.
struct Shortcut {
  ShortcutPlace place = ShortcutPlace::desktop;
  std::string subfolder;  // below the place, in the program's notation; empty for the place itself
  std::string name;       // a single name without ending, in the program's notation; shown to the user
};

// Writes the shortcut, with the folders that it lacks, over an older one of that name. A target that is
// there and cannot be run, such as a document or a folder, is opened as `openWithDesktop` does; it need not
// exist. kInvalidName if the name is empty or holds a separator, kPathNotFound if the target lies on no
// drive; after any failure an older shortcut stands.
[[nodiscard]] ErrorCode createShortcut(const Shortcut& shortcut, std::string_view target);

// Removes the shortcut. That there is none is a success; its folder stays in any case.
[[nodiscard]] ErrorCode removeShortcut(const Shortcut& shortcut);

}  // namespace tandemize::platform
