// A program folder with a profile that a test writes, reads and looks at as text.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "fixtures/ProgramFolder.h"
#include "profile/ModelloBackup.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize::test {

// Lines joined as the program's files hold them.
inline std::string lines(const std::vector<std::string>& all) {
  std::string text;
  for (const std::string& line : all) text += line + "\r\n";
  return text;
}

class ProfileTest : public ::testing::Test {
 protected:
  ProfileTest() {
    Log_Max_File_Size = 100;
    FileProfilo = folder.program("Config.cfg");
  }

  void writeText(const std::string& text) { folder.work().write("Config.cfg", text); }
  void write(const std::vector<std::string>& all) { writeText(lines(all)); }
  bool read(const std::vector<std::string>& all) {
    write(all);
    return LeggiFileProfilo(FileProfilo);
  }
  [[nodiscard]] std::string text() { return folder.work().read("Config.cfg"); }
  [[nodiscard]] bool logged(std::string_view part) { return folder.log().find(part) != std::string::npos; }

  // Writes a section of the profile and gives the file's text; a failure fails the test.
  std::string rewritten(std::int16_t section, const ValoriSincronizzazione& values = {}) {
    EXPECT_EQ(ScriviFileProfilo(values, section), platform::kNoError);
    return text();
  }

  ProgramFolder folder{false};
};

}  // namespace tandemize::test
