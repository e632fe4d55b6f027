// What the pictures show: a program folder with settings, a profile, sources and destinations, always the
// same, under drives of its own, at a time that never changes.
#pragma once

#include <filesystem>
#include <string>

namespace tandemize::screenshots {

enum class Language { Italian = 0, English = 1 };

class Stage {
 public:
  // Makes everything in a new temporary folder.
  explicit Stage(Language language);
  ~Stage();  // removes it
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  [[nodiscard]] std::filesystem::path host(const std::string& relative) const { return root_ / relative; }
  void write(const std::string& relative, const std::string& content) const;
  [[nodiscard]] std::string programFolder() const { return host("c/Tandemize").string(); }
  // The settings that the windows of the settings show: a timer, a mail server, a server. Without them the
  // program starts as it is shipped.
  void fillSettings() const;
  // One setting of the file.
  void setting(const std::string& key, const std::string& value) const;

  // The host's time stands still until somebody moves it.
  static void startClock();
  // Milliseconds since startClock.
  static void setClock(double milliseconds);

  static std::string text(Language language, const char* italian, const char* english) {
    return language == Language::Italian ? italian : english;
  }

 private:
  void makeFiles() const;
  void makeProfile() const;
  [[nodiscard]] std::string text(const char* italian, const char* english) const {
    return text(language_, italian, english);
  }

  Language language_;
  std::filesystem::path root_;
};

}  // namespace tandemize::screenshots
