// A desktop of a test's own: a user without any file, and tools that note down how they are called.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "fixtures/TemporaryFolder.h"
#include "platform/environment.h"

namespace tandemize::test {

class FakeDesktop {
 public:
  FakeDesktop()
      : user_("HOME", home_.host()),
        config_("XDG_CONFIG_HOME", std::nullopt),
        data_("XDG_DATA_HOME", std::nullopt),
        path_("PATH", "relative::" + home_.host("bin")) {
    home_.makeFolder("bin");
  }

  [[nodiscard]] TemporaryFolder& home() { return home_; }

  // Puts a tool into the only folder of $PATH. It notes its arguments, one a line, and what the further lines
  // of shell code print.
  void install(const std::string& tool, const std::string& further = ":") const {
    const std::string script = "#!/bin/sh\nexec 9>'" + home_.host(tool + ".call") +
                               "'\nprintf '%s\\n' \"$@\" >&9\n{ " + further + "\n} >&9\necho '" +
                               std::string(kEnd) + "' >&9\n";
    writeHostFile(home_.host("bin/" + tool), script);
    std::filesystem::permissions(home_.host("bin/" + tool), std::filesystem::perms::owner_all);
  }

  [[nodiscard]] bool called(const std::string& tool) const { return home_.exists(tool + ".call"); }

  // What a tool noted. It runs on its own, so this waits until it is through.
  [[nodiscard]] std::string callOf(const std::string& tool) const {
    const std::string end = std::string(kEnd) + "\n";
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < deadline) {
      std::string noted = readHostFile(home_.host(tool + ".call"));
      if (noted.ends_with(end)) return noted.substr(0, noted.size() - end.size());
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ADD_FAILURE() << tool << " was not called";
    return {};
  }

 private:
  static constexpr std::string_view kEnd = "<end of call>";

  TemporaryFolder home_;
  ScopedVariable user_, config_, data_, path_;
};

}  // namespace tandemize::test
