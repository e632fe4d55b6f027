#include <gtest/gtest.h>

#include <set>

#include "platform/paths.h"
#include "storage/Drives.h"
#include "storage/File_System.h"
#include "storage/Retries.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::ProgramWithoutRetries;
using Names = std::multiset<std::string>;

// All names of a search without the two dots; "<failed>" stands for a failure.
Names listAll(const std::string& path, bool quiet = false) {
  Names names;
  HandleRicerca handle = 0;
  RecordRicerca record;
  RispostaDir answer = DirFile(handle, record, path, quiet);
  for (; !answer.fallita() && !answer.fine(); answer = DirFile(handle, record, "", quiet))
    if (answer.nome() != "." && answer.nome() != "..") names.insert(answer.nome());
  if (answer.fallita()) names.insert("<failed>");
  EXPECT_EQ(handle, 0);
  return names;
}

TEST(DirFile, A_search_gives_every_name_once_and_then_the_empty_string) {
  ProgramWithoutRetries program;
  program.work().write("a/one.txt", "1");
  program.work().write("a/two.dat", "2");
  program.work().makeFolder("a/three");
  EXPECT_EQ(listAll(program.program("a") + "\\*.*"), (Names{"one.txt", "two.dat", "three"}));
}

TEST(DirFile, The_two_dots_come_through) {
  ProgramWithoutRetries program;
  program.work().makeFolder("a");
  HandleRicerca handle = 0;
  RecordRicerca record;
  EXPECT_EQ(DirFile(handle, record, program.program("a") + "\\*.*", false).nome(), ".");
  EXPECT_EQ(DirFile(handle, record, "", false).nome(), "..");
  EXPECT_TRUE(DirFile(handle, record, "", false).fine());
  EXPECT_EQ(handle, 0);
}

TEST(DirFile, A_mask_filters_locally) {
  ProgramWithoutRetries program;
  program.work().write("a/one.txt", "1");
  program.work().write("a/two.dat", "2");
  EXPECT_EQ(listAll(program.program("a") + "\\*.txt"), (Names{"one.txt"}));
}

TEST(DirFile, The_record_tells_attributes_size_and_time_of_what_was_found) {
  ProgramWithoutRetries program;
  program.work().write("file", "12345");
  ASSERT_EQ(platform::setFileTime(program.program("file"), {1700000000, 5}), platform::kNoError);
  HandleRicerca handle = 0;
  RecordRicerca record;
  EXPECT_EQ(DirFile(handle, record, program.program("file"), false).nome(), "file");
  EXPECT_GT(handle, 0);
  EXPECT_EQ(record.cFileName, "file");
  EXPECT_EQ(record.dwFileAttributes, platform::kArchive);
  EXPECT_EQ(DimensioneFile(record), 5);
  EXPECT_EQ(record.ftLastWriteTime, (platform::FileTime{1700000000, 5}));
  EXPECT_EQ(record.cAlternate, "0");
  ChiudiRicerca(handle);
  EXPECT_EQ(handle, 0);
}

TEST(DirFile, The_kind_of_the_path_stands_in_the_field_of_the_short_name) {
  test::ProgramFolderWithDrives program;
  HandleRicerca handle = 0;
  RecordRicerca record;
  static_cast<void>(DirFile(handle, record, "\\\\srv\\share\\*.*", true));
  EXPECT_EQ(record.cAlternate, "1");
  static_cast<void>(DirFile(handle, record, "/public/*.*", true));
  EXPECT_EQ(record.cAlternate, "2");
  EXPECT_EQ(handle, 0);
}

TEST(DirFile, Names_that_end_in_blanks_survive) {
  ProgramWithoutRetries program;
  program.work().write("a/name  ", "1");
  program.work().write("a/name", "2");
  EXPECT_EQ(listAll(program.program("a") + "\\*.*"), (Names{"name", "name  "}));
}

TEST(DirFile, A_missing_folder_is_harmless_and_gives_the_empty_string_without_a_retry) {
  ProgramWithoutRetries program;
  for (const char* path : {"gone\\*.*", "gone\\deeper\\*.txt", "gone.txt"}) {
    HandleRicerca handle = 0;
    RecordRicerca record;
    EXPECT_TRUE(DirFile(handle, record, program.program("") + "\\" + path, false).fine()) << path;
    EXPECT_EQ(handle, 0);
  }
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(DirFile, The_same_search_with_quiet_on_fails) {
  ProgramWithoutRetries program;
  for (const char* path : {"gone\\*.*", "gone.txt"}) {
    HandleRicerca handle = 0;
    RecordRicerca record;
    EXPECT_TRUE(DirFile(handle, record, program.program("") + "\\" + path, true).fallita()) << path;
  }
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(DirFile, A_drive_that_is_not_ready_is_no_missing_folder) {
  test::ProgramFolderWithDrives program;
  for (const char* path : {"J:\\*.*", "J:\\folder\\*.*", "Z:\\*.*", "\\\\other\\share\\*.*"}) {
    HandleRicerca handle = 0;
    RecordRicerca record;
    EXPECT_TRUE(DirFile(handle, record, path, false).fallita()) << path;
  }
  EXPECT_EQ(countInLog(test::retryLine(0, "DirFile", 3)), 4);
}

TEST(DirFile, Any_other_error_is_tried_again_as_often_as_the_settings_say) {
  ProgramWithoutRetries program;
  test::retryWithoutPause(3);
  HandleRicerca handle = 0;
  RecordRicerca record;
  const std::string path = program.program("") + "\\" + std::string(300, 'x') + "\\*.*";
  EXPECT_TRUE(DirFile(handle, record, path, false).fallita());
  for (int attempt = 0; attempt < 3; ++attempt)
    EXPECT_EQ(countInLog(test::retryLine(attempt, "DirFile", platform::kNameTooLong)), 1);
  EXPECT_EQ(countInLog("Tetativo"), 3);
  EXPECT_EQ(countInLog("File/Folder Name: < " + path + " >"), 1);
}

TEST(DirFile, Quiet_reports_nothing_and_does_not_retry) {
  ProgramWithoutRetries program;
  test::retryWithoutPause(3);
  HandleRicerca handle = 0;
  RecordRicerca record;
  EXPECT_TRUE(
      DirFile(handle, record, program.program("") + "\\" + std::string(300, 'x') + "\\*.*", true).fallita());
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(DirFile, A_folder_that_may_not_be_read_fails_and_never_looks_empty) {
  ProgramWithoutRetries program;
  program.work().write("closed/file", "1");
  std::filesystem::permissions(program.work().host("closed"), std::filesystem::perms::none);
  const std::string path = program.program("closed") + "\\*.*";
  EXPECT_TRUE(test::asAnyUser(program, [&path] {
    return listAll(path) == Names{"<failed>"} && countInLog(test::retryLine(0, "DirFile", 5)) == 1 &&
           listAll(path, true) == Names{"<failed>"} && countInLog("Tetativo") == 1;
  }));
}

TEST(DirFile, A_folder_that_becomes_readable_before_the_retry_raises_the_recovery_notice) {
  test::ProgramFolderWithDrives program;
  test::retryWithoutPause(3);
  program.work().write("stash/file", "1");
  test::mendAfterFailure(program.screen, [&program] {
    std::filesystem::rename(program.work().host("stash"), program.work().host("gone"));
  });
  EXPECT_EQ(listAll("J:\\*.*"), (Names{"file"}));
  EXPECT_EQ(test::countRecoveryNotices(program.screen), 1);
  EXPECT_EQ(countInLog("Tetativo"), 1);
}

TEST(DirFile, Searches_may_be_nested_and_each_goes_on_where_it_was) {
  ProgramWithoutRetries program;
  for (int i = 0; i < 20; ++i)
    program.work().write("a/" + std::to_string(i) + "/file" + std::to_string(i), "");
  HandleRicerca handle = 0;
  RecordRicerca record;
  Names files;
  const std::string folder = program.program("a");
  for (RispostaDir answer = DirFile(handle, record, folder + "\\*.*", false); !answer.fine();
       answer = DirFile(handle, record, "", false))
    if (answer.nome() != "." && answer.nome() != "..")
      files.merge(listAll(folder + "\\" + answer.nome() + "\\*.*"));
  EXPECT_EQ(files.size(), 20U);
}

TEST(DirFile, A_new_search_on_a_handle_gives_up_the_one_before) {
  ProgramWithoutRetries program;
  program.work().write("a/file", "");
  HandleRicerca handle = 0;
  RecordRicerca record;
  static_cast<void>(DirFile(handle, record, program.program("a") + "\\*.*", false));
  const HandleRicerca first = handle;
  static_cast<void>(DirFile(handle, record, program.program("a") + "\\*.*", false));
  EXPECT_EQ(handle, first);
  ChiudiRicerca(handle);
}

TEST(DirFile, A_step_without_an_open_search_ends_it) {
  ProgramWithoutRetries program;
  HandleRicerca handle = 0;
  RecordRicerca record;
  EXPECT_TRUE(DirFile(handle, record, "", false).fine());
  handle = 12345;
  EXPECT_TRUE(DirFile(handle, record, "", true).fine());
  ChiudiRicerca(handle);
  ChiudiRicerca(handle);
}

TEST(DirFile, A_folder_removed_meanwhile_does_not_end_its_search_early) {
  ProgramWithoutRetries program;
  for (char name = 'a'; name <= 'z'; ++name) program.work().write(std::string("a/") + name, "");
  HandleRicerca handle = 0;
  RecordRicerca record;
  RispostaDir answer = DirFile(handle, record, program.program("a") + "\\*.*", false);
  std::filesystem::remove_all(program.work().host("a"));
  int count = 0;
  for (; !answer.fine(); answer = DirFile(handle, record, "", false)) ++count;
  EXPECT_EQ(count, 28);
}

TEST(DirFile, Events_run_before_every_call) {
  ProgramWithoutRetries program;
  program.work().makeFolder("a");
  const long before = program.screen.events;
  listAll(program.program("a") + "\\*.*");
  EXPECT_GE(program.screen.events - before, 3);
}

TEST(DirFile, A_server_without_a_session_fails_and_is_never_an_empty_folder) {
  ProgramWithoutRetries program;
  EXPECT_EQ(listAll("/public/*.*", true), (Names{"<failed>"}));
  EXPECT_EQ(countInLog("Tetativo"), 0);
  EXPECT_EQ(listAll("/public/*.*", false), (Names{"<failed>"}));
  EXPECT_EQ(countInLog(test::retryLine(0, "DirFile", 12018)), 1);
}

TEST(DimensioneFile, Both_halves_count) {
  RecordRicerca record;
  record.nFileSizeLow = 7;
  record.nFileSizeHigh = 2;
  EXPECT_EQ(DimensioneFile(record), 2.0 * 4294967296.0 + 7);
}

TEST(DimensioneFile, A_record_with_the_top_bit_of_its_high_half_set_has_size_0) {
  RecordRicerca record;
  record.nFileSizeHigh = 0x80000000U;
  EXPECT_EQ(DimensioneFile(record), 0);
  record.nFileSizeHigh = 0xFFFFFFFFU;
  record.nFileSizeLow = 0xFFFFFFFFU;
  EXPECT_EQ(DimensioneFile(record), 0);
}

}  // namespace
}  // namespace tandemize
