#include "presentation/FrmTipMessage.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "fixtures/ProgramFolder.h"
#include "platform/errors.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

constexpr const char* Settings = "GlobalSetting.dat";

class FrmTipMessageTest : public ::testing::Test {
 protected:
  // Shows a card and closes it with the box as told.
  void show(bool keepShowing) {
    FrmTipMessage::Init("Paths added", "Both are there.", [&](FrmTipMessage& card) {
      ++shown;
      card.Chk = keepShowing;
    });
  }
  std::string file() { return folder.home().read(Settings); }

  test::ProgramFolder folder;
  int shown = 0;
};

TEST_F(FrmTipMessageTest, A_card_carries_its_texts) {
  FrmTipMessage::Init("Paths added", "Both are there.", [&](const FrmTipMessage& card) {
    ++shown;
    EXPECT_EQ(card.Caption, Messaggio(365));
    EXPECT_FALSE(card.Caption.empty());
    EXPECT_EQ(card.LblTitolo, "Paths added ...");
    EXPECT_EQ(card.LblTip, "Both are there.");
    EXPECT_EQ(card.ChkCaption, Messaggio(367));
    EXPECT_EQ(card.CmdCloseCaption, "&OK");
    EXPECT_TRUE(card.Chk);
  });
  EXPECT_EQ(shown, 1);
}

TEST_F(FrmTipMessageTest, Is_shown_only_while_the_setting_is_1) {
  for (const int setting : {0, 1, 2, 255}) {
    shown = 0;
    Help_TipMessage = static_cast<std::uint8_t>(setting);
    show(true);
    EXPECT_EQ(shown, setting == 1 ? 1 : 0) << setting;
  }
}

TEST_F(FrmTipMessageTest, A_card_that_is_not_shown_changes_nothing) {
  Help_TipMessage = 2;
  const std::string before = file();
  show(false);
  EXPECT_EQ(Help_TipMessage, 2);
  EXPECT_EQ(file(), before);
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(FrmTipMessageTest, With_the_box_on_nothing_changes) {
  const std::string before = file();
  show(true);
  EXPECT_EQ(Help_TipMessage, 1);
  EXPECT_EQ(file(), before);
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(FrmTipMessageTest, With_the_box_off_the_cards_are_off_here_and_in_the_file_and_a_box_says_so) {
  const std::string before = file();
  std::string expected = before;
  expected.replace(expected.find("Help_TipMessage = 1"), 19, "Help_TipMessage = 0");
  show(false);
  EXPECT_EQ(Help_TipMessage, 0);
  EXPECT_EQ(file(), expected);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(413));
  EXPECT_EQ(folder.screen.boxes[0].style, StileInformazione);
  show(false);
  EXPECT_EQ(shown, 1) << "and no card comes any more";
}

TEST_F(FrmTipMessageTest, The_setting_is_still_off_when_the_file_is_read_again) {
  show(false);
  std::string error;
  ASSERT_TRUE(CaricaImpostazioni(error)) << error;
  EXPECT_EQ(Help_TipMessage, 0);
  EXPECT_EQ(Help_Suggest, 1);
}

TEST_F(FrmTipMessageTest, Nothing_else_in_the_file_changes) {
  const std::string odd =
      "Language = 1\nA line of nobody's\r\n\r\n  Help_TipMessage = 1\rEmail_Smtp = Help_TipMessage = 1\r\n"
      "Help_TipMessage = 1\r\nHelp_ToolTip = 1, Help_TipMessage\n\n1Timer_Adv_Date = x";
  folder.home().write(Settings, odd);
  show(false);
  EXPECT_EQ(
      file(),
      "Language = 1\nA line of nobody's\r\n\r\n  Help_TipMessage = 1\rEmail_Smtp = Help_TipMessage = 1\r\n"
      "Help_TipMessage = 0\r\nHelp_ToolTip = 1, Help_TipMessage\n\n1Timer_Adv_Date = x");
}

TEST_F(FrmTipMessageTest, Only_the_beginning_of_a_line_counts_and_the_line_is_replaced_whole) {
  const struct {
    const char *before, *after;
  } cases[] = {{"", ""},
               {"\r\n", "\r\n"},
               {"Help_TipMessage", "Help_TipMessage = 0"},
               {"Help_TipMessage = 1", "Help_TipMessage = 0"},
               {"Help_TipMessage=1 and more, and more\r\nx", "Help_TipMessage = 0\r\nx"},
               {"Help_TipMessage = 1\rHelp_TipMessage = 1\n", "Help_TipMessage = 0\rHelp_TipMessage = 0\n"},
               {"help_tipmessage = 1\r\n", "help_tipmessage = 1\r\n"},
               {"Help_TipMessag = 1\r\n", "Help_TipMessag = 1\r\n"},
               {"\xEF\xBB\xBFHelp_TipMessage = 1\r\n", "\xEF\xBB\xBFHelp_TipMessage = 0\r\n"}};
  for (const auto& [before, after] : cases) {
    std::string text = before;
    SpegniTipMessage(text);
    EXPECT_EQ(text, after);
  }
}

TEST_F(FrmTipMessageTest, A_file_without_the_line_stays_as_it_is) {
  folder.home().write(Settings, "Language = 1\r\n");
  show(false);
  EXPECT_EQ(file(), "Language = 1\r\n");
  EXPECT_EQ(Help_TipMessage, 0);
  EXPECT_EQ(folder.screen.boxes.at(0).text, Messaggio(413));
}

TEST_F(FrmTipMessageTest, The_file_keeps_its_permissions_and_nothing_is_left_beside_it) {
  namespace fs = std::filesystem;
  fs::permissions(folder.host(Settings), fs::perms::owner_read | fs::perms::owner_write);
  std::string names;
  for (const auto& entry : fs::directory_iterator(folder.home().path()))
    names += entry.path().string() + "\n";
  show(false);
  EXPECT_EQ(fs::status(folder.host(Settings)).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  std::string after;
  for (const auto& entry : fs::directory_iterator(folder.home().path()))
    after += entry.path().string() + "\n";
  EXPECT_EQ(names.size(), after.size());
}

TEST_F(FrmTipMessageTest, A_file_that_cannot_be_rewritten_is_told_by_name_and_the_cards_are_off_for_now) {
  std::filesystem::remove(folder.host(Settings));
  std::filesystem::create_directory(folder.host(Settings));
  for (const int language : {0, 1}) {
    Language = static_cast<std::uint8_t>(language);
    Help_TipMessage = 1;
    folder.screen.boxes.clear();
    show(false);
    EXPECT_EQ(Help_TipMessage, 0);
    ASSERT_EQ(folder.screen.boxes.size(), 1U);
    const auto& box = folder.screen.boxes[0];
    EXPECT_EQ(box.style, StileCritico);
    EXPECT_NE(box.text.find(language == 0 ? "Impossibile salvare" : "cannot be saved"), std::string::npos);
    EXPECT_NE(box.text.find(Settings), std::string::npos);
  }
}

TEST_F(FrmTipMessageTest, A_file_above_the_readers_limit_is_not_touched) {
  folder.home().write(Settings, "Help_TipMessage = 1\r\n" + std::string(4'194'304, 'x'));
  show(false);
  EXPECT_EQ(file().substr(0, 19), "Help_TipMessage = 1");
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].style, StileCritico);
  EXPECT_NE(folder.screen.boxes[0].text.find(platform::systemErrorText(platform::kFileTooLarge)),
            std::string::npos);
}

}  // namespace
}  // namespace tandemize
