#include "shell/windows/frmAbout.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <regex>

#include "fixtures/windows/CutText.h"
#include "fixtures/windows/Desktop.h"
#include "platform/fakedesktop.h"
#include "platform/paths.h"

namespace tandemize {
namespace {

using test::control;

class FrmAbout : public testing::Test {
 protected:
  [[nodiscard]] std::string shown(frmAbout& about, const char* label) {
    const auto* found = control<QLabel>(about, label);
    return found->isHidden() ? "<hidden>" : test::text(*found);
  }
  void registry(const std::string& lines) {
    desktop_.folder.home().write("Registry.ini", lines);
    platform::setProgramFolder(desktop_.folder.home().host());
  }
  test::Desktop desktop_;
};

TEST_F(FrmAbout, Tells_the_title_and_the_version_with_its_three_numbers) {
  frmAbout about(nullptr);
  EXPECT_EQ(shown(about, "lblTitle"), "Tandemize Backup");
  EXPECT_TRUE(std::regex_match(shown(about, "lblVersion"),
                               std::regex("Version[ei]?o?n?e? [0-9]+\\.[0-9]+\\.[0-9]+")));
}

TEST_F(FrmAbout, Tells_who_it_is_registered_to) {
  registry(
      "[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion]\r\n"
      "RegisteredOwner=Anna <b>Rossi</b>\r\nRegisteredOrganization=Rossi & Figli\r\n");
  frmAbout about(nullptr);
  EXPECT_EQ(shown(about, "RegisteredOwner"), "Anna <b>Rossi</b>");
  EXPECT_EQ(shown(about, "RegisteredOrganization"), "Rossi & Figli");
  EXPECT_NE(shown(about, "lblRegistration"), "<hidden>");
}

TEST_F(FrmAbout, Leaves_no_gap_where_the_registry_says_nothing) {
  frmAbout about(nullptr);
  for (const char* label : {"RegisteredOwner", "RegisteredOrganization", "lblRegistration"})
    EXPECT_EQ(shown(about, label), "<hidden>");
}

TEST_F(FrmAbout, The_button_starts_the_desktop_s_own_tool) {
  const test::FakeDesktop host;
  host.install("hardinfo");
  frmAbout about(nullptr);
  about.show();
  test::click(*control<QPushButton>(about, "cmdSysInfo"));
  EXPECT_EQ(host.callOf("hardinfo"), "\n");
  EXPECT_TRUE(desktop_.boxes.empty());
}

TEST_F(FrmAbout, Says_so_if_there_is_no_such_tool) {
  const test::FakeDesktop host;
  desktop_.folder.setting("Language", "0");
  frmAbout about(nullptr);
  about.show();
  test::click(*control<QPushButton>(about, "cmdSysInfo"));
  ASSERT_EQ(desktop_.boxes.size(), 1U);
  EXPECT_EQ(desktop_.boxes.front().text, "Le informazioni sul sistema non sono attualmente disponibili.");
}

TEST_F(FrmAbout, Cuts_no_text_off_in_either_language) {
  registry(
      "[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion]\r\n"
      "RegisteredOwner=Anna Rossi\r\nRegisteredOrganization=Rossi & Figli\r\n");
  for (const char* language : {"0", "1"}) {
    desktop_.folder.setting("Language", language);
    frmAbout about(nullptr);
    about.show();
    test::letEventsRun();
    EXPECT_TRUE(test::cutTexts(about).empty());
  }
}

}  // namespace
}  // namespace tandemize
