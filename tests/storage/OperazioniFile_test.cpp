#include <gtest/gtest.h>

#include "storage/Drives.h"
#include "storage/File_System.h"
#include "storage/Retries.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::ProgramWithoutRetries;
using test::retryLine;

TEST(EliminaFile, A_file_goes_with_its_two_log_lines) {
  ProgramWithoutRetries program;
  program.work().write("file", "1");
  EXPECT_TRUE(EliminaFile(program.program("file")));
  EXPECT_FALSE(program.work().exists("file"));
  EXPECT_EQ(countInLog("Deleting File '" + program.program("file") + "'"), 1);
  EXPECT_EQ(countInLog("- OK -"), 1);
}

TEST(EliminaFile, A_missing_file_is_told_in_the_log_and_not_retried) {
  ProgramWithoutRetries program;
  EXPECT_FALSE(EliminaFile(program.program("gone")));
  EXPECT_EQ(countInLog("Deleting File '" + program.program("gone") + "'"), 1);
  EXPECT_EQ(countInLog("Error: File Not Found"), 1);
  EXPECT_EQ(countInLog("Tetativo"), 0);
  EXPECT_EQ(countInLog("- OK -"), 0);
}

TEST(EliminaFile, A_read_only_file_goes_too) {
  ProgramWithoutRetries program;
  program.work().write("file", "1");
  std::filesystem::permissions(program.work().host("file"), std::filesystem::perms::owner_read);
  EXPECT_TRUE(EliminaFile(program.program("file")));
  EXPECT_FALSE(program.work().exists("file"));
}

TEST(EliminaFile, A_folder_is_found_but_not_deleted_and_no_further_line_follows) {
  ProgramWithoutRetries program;
  program.work().makeFolder("a");
  test::retryWithoutPause(2);
  EXPECT_FALSE(EliminaFile(program.program("a")));
  EXPECT_TRUE(program.work().exists("a"));
  EXPECT_EQ(countInLog(retryLine(0, "EliminaFile", 5)), 1);
  EXPECT_EQ(countInLog(retryLine(1, "EliminaFile", 5)), 1);
  EXPECT_EQ(countInLog("File/Folder Name: < " + program.program("a") + " >"), 1);
  EXPECT_EQ(countInLog("- OK -"), 0);
}

TEST(EliminaFile, A_file_in_a_folder_that_may_not_be_written_stays) {
  ProgramWithoutRetries program;
  program.work().write("a/file", "1");
  std::filesystem::permissions(program.work().host("a"),
                               std::filesystem::perms::all & ~std::filesystem::perms(0222));
  const std::string path = program.program("a/file");
  EXPECT_TRUE(test::asAnyUser(
      program, [&path] { return !EliminaFile(path) && countInLog(retryLine(0, "EliminaFile", 5)) == 1; }));
  EXPECT_EQ(program.work().read("a/file"), "1");
}

TEST(EliminaFile, On_a_server_without_a_session_nothing_is_found) {
  ProgramWithoutRetries program;
  EXPECT_FALSE(EliminaFile("/public/file"));
  EXPECT_EQ(countInLog("Error: File Not Found"), 1);
}

TEST(EliminaCartella, An_empty_folder_goes_with_its_two_log_lines) {
  ProgramWithoutRetries program;
  program.work().makeFolder("a");
  EXPECT_TRUE(EliminaCartella(program.program("a")));
  EXPECT_FALSE(program.work().exists("a"));
  EXPECT_EQ(countInLog("Deleting Folder '" + program.program("a") + "'"), 1);
  EXPECT_EQ(countInLog("- OK -"), 1);
}

TEST(EliminaCartella, A_missing_folder_is_told_in_the_log) {
  ProgramWithoutRetries program;
  program.work().write("file", "1");
  for (const char* name : {"gone", "file"}) EXPECT_FALSE(EliminaCartella(program.program(name))) << name;
  EXPECT_EQ(countInLog("Error: Folder Not Found"), 2);
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(EliminaCartella, A_folder_with_content_is_left_to_the_retry_rules_and_stays) {
  ProgramWithoutRetries program;
  program.work().write("a/file", "1");
  EXPECT_FALSE(EliminaCartella(program.program("a")));
  EXPECT_EQ(program.work().read("a/file"), "1");
  EXPECT_EQ(countInLog(retryLine(0, "EliminaCartella", platform::kFolderNotEmpty)), 1);
  EXPECT_EQ(countInLog("Tetativo"), 1);
  EXPECT_EQ(countInLog("Folder Name: < " + program.program("a") + " >"), 1);
  EXPECT_EQ(countInLog("- OK -"), 0);
}

TEST(EliminaCartella, On_a_server_without_a_session_nothing_is_found) {
  ProgramWithoutRetries program;
  EXPECT_FALSE(EliminaCartella("/public/folder"));
  EXPECT_EQ(countInLog("Error: Folder Not Found"), 1);
}

TEST(CreaDirectory, Makes_one_level_and_logs_nothing) {
  ProgramWithoutRetries program;
  const std::size_t before = ListaLog.size();
  EXPECT_TRUE(CreaDirectory(program.program("") + "\\a"));
  EXPECT_TRUE(CreaDirectory(program.program("") + "\\a\\b\\"));
  EXPECT_TRUE(program.work().exists("a/b"));
  EXPECT_EQ(ListaLog.size(), before);
}

TEST(CreaDirectory, A_level_without_its_parent_is_retried_and_then_fails) {
  ProgramWithoutRetries program;
  test::retryWithoutPause(2);
  const std::string path = program.program("") + "\\gone\\a";
  EXPECT_FALSE(CreaDirectory(path));
  EXPECT_EQ(countInLog(retryLine(0, "CreaDirectory", 3)), 1);
  EXPECT_EQ(countInLog(retryLine(1, "CreaDirectory", 3)), 1);
  EXPECT_EQ(countInLog("File/Folder Name: < " + path + " >"), 1);
}

TEST(CreaDirectory, A_retry_that_goes_through_raises_the_recovery_notice) {
  ProgramWithoutRetries program;
  test::retryWithoutPause(3);
  test::mendAfterFailure(program.screen, [&program] { program.work().makeFolder("late"); });
  EXPECT_TRUE(CreaDirectory(program.program("") + "\\late\\a"));
  EXPECT_TRUE(program.work().exists("late/a"));
  EXPECT_EQ(test::countRecoveryNotices(program.screen), 1);
}

TEST(CreaDirectory, A_first_attempt_that_succeeds_raises_no_notice) {
  ProgramWithoutRetries program;
  EXPECT_TRUE(CreaDirectory(program.program("") + "\\a"));
  EXPECT_TRUE(program.screen.balloons.empty());
}

TEST(CreaDirectory, Makes_nothing_in_the_place_of_a_medium_that_is_not_there) {
  test::ProgramFolderWithDrives program;
  EXPECT_FALSE(CreaDirectory("J:\\"));
  EXPECT_FALSE(program.work().exists("gone"));
}

TEST(CreaDirectory, A_server_without_a_session_fails) {
  ProgramWithoutRetries program;
  EXPECT_FALSE(CreaDirectory("/public/a"));
  EXPECT_EQ(countInLog(retryLine(0, "CreaDirectory", 12018)), 1);
}

TEST(CreaSottoCartelle, Makes_the_missing_levels_top_down) {
  ProgramWithoutRetries program;
  EXPECT_TRUE(CreaSottoCartelle(program.program("") + "\\a\\b\\c"));
  EXPECT_TRUE(program.work().exists("a/b/c"));
  EXPECT_FALSE(CreaSottoCartelle(program.program("") + "\\a\\b\\c"));
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

// The path of each level that could not be made stands in the log, in the order of the attempts.
std::vector<std::string> failedLevels() {
  std::vector<std::string> levels;
  const std::string label = "File/Folder Name: < ";
  for (const std::string& line : ListaLog)
    if (std::size_t at = line.find(label); at != std::string::npos)
      levels.push_back(line.substr(at + label.size(), line.rfind(" >") - at - label.size()));
  return levels;
}

TEST(CreaSottoCartelle, Levels_keep_their_trailing_separator_and_the_last_one_is_the_path_itself) {
  test::ProgramFolderWithDrives program;
  EXPECT_TRUE(CreaSottoCartelle("J:\\a\\b\\c"));
  EXPECT_EQ(failedLevels(), (std::vector<std::string>{"J:\\", "J:\\a\\", "J:\\a\\b\\", "J:\\a\\b\\c"}));
}

TEST(CreaSottoCartelle, Of_a_path_on_a_share_server_and_share_are_left_alone) {
  test::ProgramFolderWithDrives program;
  EXPECT_TRUE(CreaSottoCartelle("\\\\srv\\share\\x"));
  EXPECT_TRUE(program.work().exists("share/x"));
  EXPECT_TRUE(failedLevels().empty());
  EXPECT_FALSE(CreaSottoCartelle("\\\\srv\\share"));
}

TEST(CreaSottoCartelle, Counts_its_first_two_positions_in_characters) {
  test::ProgramFolderWithDrives program;
  EXPECT_TRUE(CreaSottoCartelle("è\\x\\y"));
  EXPECT_EQ(failedLevels(), (std::vector<std::string>{"è\\x\\", "è\\x\\y"}));
}

TEST(CreaSottoCartelle, Paths_too_short_to_hold_a_level_make_nothing) {
  ProgramWithoutRetries program;
  for (const char* path : {"", "a", "C:", "C:\\"}) EXPECT_FALSE(CreaSottoCartelle(path)) << path;
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(CreaSottoCartelle, Names_in_other_scripts_are_made_as_they_are) {
  ProgramWithoutRetries program;
  EXPECT_TRUE(CreaSottoCartelle(program.program("") + "\\però\\日本\\x"));
  EXPECT_TRUE(program.work().exists("però/日本/x"));
}

}  // namespace
}  // namespace tandemize
