// What goes wrong around a run: rights, room, files that change, and damaged files of the program's own.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <tuple>

#include "fixtures/LogLines.h"
#include "fixtures/RunProgram.h"
#include "fixtures/SmallDisc.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ConsoleFolder;
using test::describeTree;
using test::Diagram;
using test::ProgramResult;
using test::RunProgram;

class Backup : public ConsoleFolder {
 public:
  Backup() {
    copySourceToDestination();
    work().write("source/a", "content");
  }
  [[nodiscard]] std::string destinationTree() { return describeTree(work().host("destination")); }
  void noRights(const std::string& name) { fs::permissions(work().host(name), fs::perms::none); }
  void readOnly(const std::string& name) {
    fs::permissions(work().host(name), fs::perms::owner_read | fs::perms::owner_exec);
  }
};

// --- rights

TEST(Rights, A_file_that_may_not_be_read_fails_and_the_others_are_copied) {
  Backup backup;
  backup.work().write("source/locked", "secret");
  backup.work().write("source/z", "last");
  backup.work().write("destination/locked", "old copy");
  backup.noRights("source/locked");
  const ProgramResult result = backup.runAsOrdinaryUser({"backup"});
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_EQ(backup.destinationTree(), "a = content\nlocked = old copy\nz = last\n");
  EXPECT_EQ(test::countLinesWith(backup.logLines(),
                                 "==> Error While Reading File : " + backup.program("source/locked") + " ("),
            1);
  EXPECT_EQ(test::countLinesWith(backup.logLines(), "Use Api CopyFile"), 0);
  for (const std::string& text : {backup.message(427), backup.program("source/locked")})
    EXPECT_NE(result.err.find(text), std::string::npos) << result.err;
}

TEST(Rights, The_report_of_a_file_names_the_systems_reason_and_number) {
  Backup backup;
  backup.noRights("source/a");
  backup.runAsOrdinaryUser({"backup"});
  const std::string line =
      "==> Error While Reading File : " + backup.program("source/a") + " (Access is denied.){ Err. N° 5 }";
  EXPECT_EQ(test::countLinesWith(backup.logLines(), line), 1) << backup.log();
}

TEST(Rights, A_folder_that_may_not_be_read_is_passed_over) {
  Backup backup;
  backup.work().write("source/closed/inside", "secret");
  backup.work().write("source/open/b", "b");
  backup.noRights("source/closed");
  const ProgramResult result = backup.runAsOrdinaryUser({"backup"});
  fs::permissions(backup.work().host("source/closed"), fs::perms::owner_all);
  EXPECT_EQ(result.status, 2) << result.err;
  EXPECT_EQ(backup.destinationTree(), "a = content\nopen = <folder>\nopen/b = b\n");
  EXPECT_GE(test::countLinesWith(backup.logLines(), backup.program("source/closed")), 1);
}

TEST(Rights, A_source_that_may_not_be_read_at_all_gives_nothing_away_as_success) {
  Backup backup;
  backup.giveToOrdinaryUser();
  backup.noRights("source");
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = run.asOrdinaryUser().run();
  fs::permissions(backup.work().host("source"), fs::perms::owner_all);
  EXPECT_NE(result.status, 0) << result.err;
  EXPECT_EQ(backup.destinationTree(), "");
}

TEST(Rights, A_destination_that_may_not_be_written_fails_each_file_by_name) {
  Backup backup;
  backup.work().write("destination/a", "old copy");
  backup.giveToOrdinaryUser();
  backup.readOnly("destination");
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = run.asOrdinaryUser().run();
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_EQ(backup.work().read("destination/a"), "old copy");
  EXPECT_EQ(test::countLinesWith(backup.logLines(),
                                 "==> Error While Writing File : " + backup.program("destination/a")),
            1)
      << backup.log();
}

TEST(Rights, A_share_that_may_not_be_written_is_found_by_the_test_before_the_run) {
  Backup backup;
  backup.home().write("Drives.dat", "\\\\nas\\photos = " + backup.work().host("destination") + "\n");
  backup.diagram(Diagram::copying(backup.program("source"), "\\\\nas\\photos"));
  backup.giveToOrdinaryUser();
  backup.readOnly("destination");
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = run.asOrdinaryUser().run();
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(backup.message(428)), std::string::npos) << result.err;
}

TEST(Rights, Folders_that_cannot_be_made_fail_their_files) {
  Backup backup;
  backup.work().write("source/sub/b", "b");
  backup.work().write("destination/sub", "a file in the way");
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_EQ(backup.destinationTree(), "a = content\nsub = a file in the way\n");
}

TEST(Rights, A_folder_in_the_place_of_a_copy_stays) {
  Backup backup;
  backup.work().write("destination/a/mine", "mine");
  EXPECT_EQ(backup.run({"backup"}).status, 3);
  EXPECT_EQ(backup.work().read("destination/a/mine"), "mine");
}

TEST(Rights, Without_rights_to_the_settings_the_program_says_so) {
  Backup backup;
  backup.giveToOrdinaryUser();
  fs::permissions(backup.home().host("GlobalSetting.dat"), fs::perms::none);
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = run.asOrdinaryUser().run();
  EXPECT_EQ(result.status, 4) << result.err;
  EXPECT_NE(result.err.find("GlobalSetting.dat"), std::string::npos) << result.err;
  EXPECT_EQ(backup.destinationTree(), "");
}

TEST(Rights, Without_rights_to_the_profile_the_program_says_so) {
  Backup backup;
  backup.giveToOrdinaryUser();
  fs::permissions(backup.home().host("Config.cfg"), fs::perms::none);
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = run.asOrdinaryUser().run();
  EXPECT_EQ(result.status, 4) << result.err;
  EXPECT_NE(result.err.find("Config.cfg"), std::string::npos) << result.err;
}

// --- room

std::string bigContent() {
  return std::string(500 * 1024, 'n');
}

TEST(Room, A_full_disc_fails_the_file_keeps_the_old_copy_and_leaves_no_part) {
  Backup backup;
  backup.work().write("source/a", bigContent());
  const auto expectFailure = [&](const ProgramResult& result, const std::string& kept) {
    EXPECT_EQ(result.status, 3) << result.err;
    EXPECT_EQ(backup.destinationTree(), kept);
    EXPECT_NE(result.err.find(backup.program("source/a")), std::string::npos) << result.err;
    EXPECT_EQ(test::countLinesWith(backup.logLines(), "- OK -"), 0);
  };
  test::Attempt attempt = test::onSmallDisc(backup.work().host("destination"), 300, [&] {
    backup.work().write("destination/a", "old copy");
    expectFailure(backup.run({"backup"}), "a = old copy\n");
  });
  if (attempt == test::Attempt::NotOffered) {
    backup.work().write("destination/a", "old copy");
    RunProgram run(backup.words({"backup"}));
    expectFailure(run.withFileSizeLimit(100'000).run(), "a = old copy\n");
    attempt = test::Attempt::Passed;
  }
  EXPECT_EQ(attempt, test::Attempt::Passed);
}

TEST(Room, A_limit_on_the_length_of_files_fails_the_long_ones_alone) {
  Backup backup;
  backup.work().write("source/big", bigContent());
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = run.withFileSizeLimit(100'000).run();
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_EQ(backup.destinationTree(), "a = content\n");
}

TEST(Room, New_files_without_room_are_refused_before_anything_is_copied) {
  Backup backup;
  fs::resize_file(backup.work().host("source/a"), 8'000'000);
  const auto expectRefusal = [&](const ProgramResult& result) {
    EXPECT_EQ(result.status, 4) << result.err;
    EXPECT_NE(result.err.find(backup.message(176)), std::string::npos) << result.err;
    EXPECT_NE(result.err.find(backup.message(180) + " 8,000,000 " + backup.message(181)), std::string::npos)
        << result.err;
    EXPECT_EQ(backup.destinationTree(), "");
  };
  test::Attempt attempt = test::onSmallDisc(backup.work().host("destination"), 1024,
                                            [&] { expectRefusal(backup.run({"backup"})); });
  if (attempt == test::Attempt::NotOffered) {
    const fs::space_info space = fs::space(backup.work().path());
    fs::resize_file(backup.work().host("source/a"), space.available + (1ULL << 30U));
    EXPECT_EQ(backup.run({"backup"}).status, 4);
    EXPECT_EQ(backup.destinationTree(), "");
    attempt = test::Attempt::Passed;
  }
  EXPECT_EQ(attempt, test::Attempt::Passed);
}

TEST(Room, Without_room_for_both_copies_the_old_one_goes_first) {
  Backup backup;
  const std::string fresh(700 * 1024, 'n');
  backup.work().write("source/a", fresh);
  const auto body = [&] {
    backup.work().write("destination/a", std::string(700 * 1024, 'o'));
    const ProgramResult result = backup.run({"backup"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(backup.work().read("destination/a") == fresh);
  };
  test::Attempt attempt = test::onSmallDisc(backup.work().host("destination"), 1024, [&] {
    body();
    EXPECT_EQ(test::countLinesWith(backup.logLines(), backup.program("destination/a")), 2) << backup.log();
  });
  if (attempt == test::Attempt::NotOffered) attempt = test::underFileSizeLimit(900 * 1024, body);
  EXPECT_EQ(attempt, test::Attempt::Passed);
}

TEST(Room, A_run_that_cannot_write_its_log_to_the_end_is_no_success) {
  Backup backup;
  for (int i = 0; i < 30; ++i) backup.work().write("source/f" + std::to_string(i), "x");
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = run.withFileSizeLimit(1500).run();
  EXPECT_NE(result.status, 0);
  EXPECT_NE(result.err, "");
  // What was copied before is whole.
  for (const auto& entry : fs::directory_iterator(backup.work().host("destination")))
    EXPECT_TRUE(fs::file_size(entry.path()) == 1 || entry.path().filename() == "a") << entry.path();
}

// --- damaged files of the program's own

constexpr std::size_t Huge = 100'000'000;

void writeHuge(const std::string& path, const std::string& start, char filling) {
  std::ofstream out(path, std::ios::binary);
  out << start;
  const std::string block(1'000'000, filling);
  for (std::size_t written = 0; written < Huge; written += block.size()) out << block;
}

std::string binary() {
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes.push_back(static_cast<char>((i * 131 + i / 7) & 0xFF));
  return bytes;
}

// What every run over a damaged file must come to: refused by name, nothing copied and nothing changed.
// Gives what was told.
std::string expectRefused(Backup& backup, const std::string& file, const std::string& what) {
  const std::string home = backup.describeHome();
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 4) << what << " " << result.err.substr(0, 500);
  EXPECT_EQ(result.out, "") << what;
  EXPECT_NE(result.err.find(file), std::string::npos) << what << " " << result.err.substr(0, 500);
  EXPECT_EQ(backup.destinationTree(), "") << what;
  EXPECT_EQ(backup.home().read(file).size(), fs::file_size(backup.home().host(file)));
  EXPECT_TRUE(backup.work().exists("source/a"));
  std::string after = backup.describeHome();
  // The log may tell of it.
  const auto withoutLog = [](const std::string& text) {
    const std::size_t log = text.find("LogFile1.txt = "), next = text.find("Tandemize", log);
    return log == std::string::npos
               ? text
               : text.substr(0, log) + (next == std::string::npos ? "" : text.substr(next));
  };
  EXPECT_TRUE(withoutLog(after) == home) << what;
  return result.err;
}

TEST(DamagedProfile, An_empty_or_binary_or_foreign_file_is_refused) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"empty", ""},
      {"blank line", "\r\n"},
      {"binary", binary()},
      {"zeros", std::string(5000, '\0')},
      {"settings", "Language = 1\r\n"},
      {"one endless line", std::string(3'000'000, 'x')}};
  for (const auto& [what, content] : cases) {
    Backup backup;
    backup.home().write("Config.cfg", content);
    expectRefused(backup, "Config.cfg", what);
  }
}

TEST(DamagedProfile, A_file_that_ends_within_a_run_of_lines_is_refused) {
  for (const char* key : {"2BackLinkTo0", "1Files0", "Backup_FTP_1", "Backup_Path_1"}) {
    Backup backup;
    const std::string whole = backup.home().read("Config.cfg");
    const std::size_t line = whole.find(key);
    ASSERT_NE(line, std::string::npos) << key;
    backup.home().write("Config.cfg", whole.substr(0, whole.find("\r\n", line) + 2));
    expectRefused(backup, "Config.cfg", key);
  }
}

TEST(DamagedProfile, A_number_that_is_none_is_refused_by_line_and_key) {
  for (const char* key :
       {"FixFileOption = ", "TandemMode = ", "EraseFile = ", "1BackTop = ", "2BackTipoTrasferimento = "}) {
    Backup backup;
    std::string text = backup.home().read("Config.cfg");
    text.insert(text.find(key) + std::string(key).size(), "x");
    backup.home().write("Config.cfg", text);
    const std::string told = expectRefused(backup, "Config.cfg", key);
    const std::string name(key);
    const std::size_t start = name.find_first_not_of("0123456789");
    EXPECT_NE(told.find(name.substr(start, name.find(' ') - start)), std::string::npos) << told;
  }
}

TEST(DamagedProfile, A_file_of_a_hundred_megabytes_is_refused) {
  const std::string path = "Backup_Path_0 = ";
  for (const auto& [what, start, filling] :
       {std::tuple{"a line", path, 'x'}, {"lines", path + "\r\n", '\n'}, {"zeros", path, '\0'}}) {
    Backup backup;
    writeHuge(backup.home().host("Config.cfg"), start, filling);
    const ProgramResult result = backup.run({"backup"});
    EXPECT_EQ(result.status, 4) << what;
    EXPECT_NE(result.err.find("Config.cfg"), std::string::npos) << what;
    EXPECT_LT(result.err.size(), 10'000U);
    EXPECT_EQ(backup.destinationTree(), "");
    EXPECT_GT(fs::file_size(backup.home().host("Config.cfg")), Huge - 1);
  }
}

TEST(DamagedProfile, Binary_bytes_behind_a_good_start_neither_crash_nor_hang) {
  Backup backup;
  const std::string whole = backup.home().read("Config.cfg");
  for (std::size_t cut = 0; cut < whole.size(); cut += 97) {
    backup.home().write("Config.cfg", whole.substr(0, cut) + binary());
    const ProgramResult result = backup.run({"check"});
    EXPECT_EQ(result.signal, 0) << cut;
    EXPECT_TRUE(result.status == 0 || result.status == 4) << cut << " " << result.status << result.err;
  }
}

TEST(DamagedProfile, A_last_line_without_its_end_is_a_line) {
  Backup backup;
  std::string text = backup.home().read("Config.cfg");
  text.resize(text.size() - 2);
  backup.home().write("Config.cfg", text);
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), "a = content\n");
}

TEST(DamagedProfile, The_line_ends_of_other_systems_are_read) {
  Backup backup;
  std::string text = backup.home().read("Config.cfg");
  std::erase(text, '\r');
  backup.home().write("Config.cfg", text);
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), "a = content\n");
}

TEST(DamagedProfile, A_companion_file_that_is_damaged_is_refused) {
  Backup backup;
  backup.home().write("Configb.adv", "FilterBackup = \r\nFilterIgnoreInvalidPath = maybe\r\n");
  expectRefused(backup, "Configb.adv", "number");
}

TEST(DamagedSettings, A_value_that_is_no_number_is_refused_by_file_line_and_key) {
  for (const char* key :
       {"Log_Max_File_Size", "Errors_Try_Next", "Language", "Advance_Buf_Local", "StartUp_PC_Mode"}) {
    for (const char* value : {"many", "\x01\xff", "99999999999999999999", "-"}) {
      Backup backup;
      backup.setting(key, value);
      const std::string told = expectRefused(backup, "GlobalSetting.dat", std::string(key) + " " + value);
      EXPECT_NE(told.find(key), std::string::npos) << told;
    }
  }
}

TEST(DamagedSettings, An_empty_or_binary_file_is_refused) {
  for (const auto& [what, content] : std::vector<std::pair<std::string, std::string>>{
           {"empty", ""}, {"binary", binary()}, {"zeros", std::string(5000, '\0')}}) {
    Backup backup;
    backup.home().write("GlobalSetting.dat", content);
    expectRefused(backup, "GlobalSetting.dat", what);
  }
}

TEST(DamagedSettings, A_file_of_a_hundred_megabytes_is_refused) {
  for (const auto& [what, start, filling] :
       {std::tuple{"a line", "Language = ", 'x'}, {"lines", "Language = 1\r\n", '\n'}, {"zeros", "", '\0'}}) {
    Backup backup;
    writeHuge(backup.home().host("GlobalSetting.dat"), start, filling);
    const ProgramResult result = backup.run({"backup"});
    EXPECT_EQ(result.status, 4) << what;
    EXPECT_NE(result.err.find("GlobalSetting.dat"), std::string::npos) << what << result.err.substr(0, 300);
    EXPECT_LT(result.err.size(), 10'000U);
    EXPECT_EQ(backup.destinationTree(), "");
  }
}

TEST(DamagedSettings, A_last_line_without_its_end_is_a_line) {
  Backup backup;
  std::string text = backup.home().read("GlobalSetting.dat");
  text.resize(text.size() - 2);
  backup.home().write("GlobalSetting.dat", text);
  EXPECT_EQ(backup.run({"backup"}).status, 0);
}

TEST(DamagedSettings, A_language_that_does_not_exist_ends_the_program) {
  Backup backup;
  backup.setting("Language", "2");
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 4) << result.err;
  EXPECT_NE(result.err, "");
  EXPECT_EQ(backup.destinationTree(), "");
}

TEST(DamagedSettings, A_language_file_of_more_than_a_thousand_lines_ends_the_program) {
  for (const int lines : {1000, 1001}) {
    Backup backup;
    std::string text;
    for (int i = 1; i <= lines; ++i) text += "0000 text\r\n";
    backup.home().write("Lang_Eng.Dat", text);
    const ProgramResult result = backup.run({"backup"});
    EXPECT_EQ(result.status, lines == 1000 ? 0 : 4) << lines << result.err;
    if (lines == 1001) {
      EXPECT_NE(result.err.find("Lang_Eng.Dat"), std::string::npos) << result.err;
    }
  }
}

TEST(DamagedSettings, An_empty_language_file_gives_empty_texts_and_no_crash) {
  Backup backup;
  backup.home().write("Lang_Eng.Dat", "");
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.signal, 0);
  EXPECT_EQ(backup.destinationTree(), "a = content\n");
}

TEST(DamagedDrives, Lines_that_make_no_sense_are_named_and_the_others_hold) {
  Backup backup;
  backup.home().write("Drives.dat",
                      "nonsense\nD: = fixed " + backup.work().host("destination") + "\n" + binary());
  backup.diagram(Diagram::copying(backup.program("source"), "D:\\"));
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 0) << result.err.substr(0, 500);
  EXPECT_NE(result.err.find("nonsense"), std::string::npos);
  EXPECT_EQ(backup.destinationTree(), "a = content\n");
}

TEST(DamagedState, A_list_of_saved_files_that_is_no_text_does_no_harm) {
  Backup backup;
  backup.home().write("FilesList.Dat", binary());
  EXPECT_EQ(backup.run({"backup", "--type", "incremental"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), "a = content\n");
}

TEST(DamagedState, A_list_that_cannot_be_read_refuses_an_incremental_run) {
  Backup backup;
  backup.home().makeFolder("FilesList.Dat");
  const ProgramResult result = backup.run({"backup", "--type", "incremental"});
  EXPECT_EQ(result.status, 4) << result.err;
  EXPECT_EQ(backup.destinationTree(), "");
}

// --- files that change meanwhile

TEST(ChangingFiles, A_file_that_vanishes_between_planning_and_copying_fails_and_the_others_are_copied) {
  Backup backup;
  backup.work().write("source/big", "");
  fs::resize_file(backup.work().host("source/big"), 1ULL << 28U);
  backup.diagram(Diagram()
                     .files("First", {backup.program("source/big")})
                     .files("Then", {backup.program("source/a")})
                     .destination("D", backup.program("destination"), {"First", "Then"}));
  RunProgram run(backup.words({"backup"}));
  run.start();
  ASSERT_TRUE(run.reaches([&] { return backup.log().find("source\\big' to '") != std::string::npos; }));
  fs::remove(backup.work().host("source/a"));
  const ProgramResult result = run.wait();
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_EQ(test::countLinesWith(backup.logLines(), "FaseAperturaFile = 0"), 1);
  EXPECT_EQ(fs::file_size(backup.work().host("destination/big")), 1ULL << 28U);
  EXPECT_FALSE(backup.work().exists("destination/a"));
}

}  // namespace
}  // namespace tandemize
