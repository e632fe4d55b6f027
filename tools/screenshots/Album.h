// Pictures of windows as a person sees them: with a title bar, and with the menus that are open.
#pragma once

#include <QString>
#include <filesystem>
#include <set>
#include <string>

class QPixmap;
class QWidget;

namespace tandemize::screenshots {

class Album {
 public:
  explicit Album(std::filesystem::path folder);

  // Waits until the window has drawn what it holds, and writes its picture to FOLDER/`name`.png. A window
  // inside the main one is taken with it. Ends the program if that fails, or if the name was used before.
  void keep(const std::string& name, QWidget& window);
  [[nodiscard]] std::size_t size() const { return names_.size(); }

 private:
  std::filesystem::path folder_;
  std::set<std::string> names_;
};

// Lets events run for so long that every drawing that was put off has been done.
void settle();

// The program is at its end: a picture could not be taken.
[[noreturn]] void giveUp(const std::string& why);

}  // namespace tandemize::screenshots
