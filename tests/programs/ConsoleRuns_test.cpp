// Whole runs of the console program over real trees: what is copied, what is logged and how they end.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <filesystem>
#include <memory>

#include "fixtures/LogLines.h"
#include "fixtures/RunProgram.h"
#include "platform/appendfile.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ConsoleFolder;
using test::describeTree;
using test::Diagram;
using test::ProgramResult;
using test::RunProgram;

using Lines = std::vector<std::string>;
using Words = std::vector<std::string>;

// A program folder that copies work folder "source" to "destination".
class Backup : public ConsoleFolder {
 public:
  Backup() { copySourceToDestination(); }
  explicit Backup(const std::vector<std::string>& files) : Backup() {
    for (const std::string& file : files) work().write("source/" + file, "content of " + file);
  }
  [[nodiscard]] std::string sourceTree() { return describeTree(work().host("source")); }
  [[nodiscard]] std::string destinationTree() { return describeTree(work().host("destination")); }
  [[nodiscard]] std::string from(const std::string& name) const { return program("source/" + name); }
  [[nodiscard]] std::string to(const std::string& name) const { return program("destination/" + name); }
  [[nodiscard]] std::string planLine(const std::string& name) const {
    return from(name) + "\t" + to(name) + "\n";
  }
  [[nodiscard]] Lines copyLines(const std::string& name) const {
    return {"| " + message(188) + "  '" + from(name) + "' to '" + to(name) + "'", "| - OK -", ""};
  }
  void setDate(const std::string& name, std::time_t moment) {
    const struct timespec times[2] = {{moment, 0}, {moment, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, work().host(name).c_str(), times, 0), 0);
  }
};

TEST(BackupRun, The_whole_tree_arrives_and_the_source_stays_as_it_was) {
  Backup backup({"a", "sub/b", "sub/deep/er/c", "empty/.keep"});
  const std::string before = backup.sourceTree();
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(backup.destinationTree(), before);
  EXPECT_EQ(backup.sourceTree(), before);
}

TEST(BackupRun, The_source_is_not_even_touched) {
  Backup backup({"a"});
  struct stat before = {}, after = {};
  ASSERT_EQ(::stat(backup.work().host("source/a").c_str(), &before), 0);
  backup.run({"backup", "--mode", "3"});
  ASSERT_EQ(::stat(backup.work().host("source/a").c_str(), &after), 0);
  EXPECT_EQ(before.st_ctim.tv_sec, after.st_ctim.tv_sec);
  EXPECT_EQ(before.st_ctim.tv_nsec, after.st_ctim.tv_nsec);
  EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
}

TEST(BackupRun, Dates_permissions_and_sizes_of_the_copies_are_those_of_the_sources) {
  Backup backup({"plain", "private", "program", "readonly", ".hidden", "sub/old"});
  const struct {
    const char* name;
    mode_t mode;
  } files[] = {{"plain", 0644},    {"private", 0600}, {"program", 0755},
               {"readonly", 0444}, {".hidden", 0640}, {"sub/old", 0664}};
  std::time_t moment = 1'000'000'000;
  for (const auto& file : files) {
    ASSERT_EQ(::chmod(backup.work().host(std::string("source/") + file.name).c_str(), file.mode), 0);
    backup.setDate(std::string("source/") + file.name, moment += 86'413);
  }
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  for (const auto& file : files) {
    struct stat from = {}, to = {};
    ASSERT_EQ(::stat(backup.work().host(std::string("source/") + file.name).c_str(), &from), 0);
    ASSERT_EQ(::stat(backup.work().host(std::string("destination/") + file.name).c_str(), &to), 0)
        << file.name;
    EXPECT_EQ(to.st_mode, from.st_mode) << file.name;
    EXPECT_EQ(to.st_size, from.st_size) << file.name;
    EXPECT_EQ(to.st_mtim.tv_sec, from.st_mtim.tv_sec) << file.name;
  }
}

TEST(BackupRun, A_second_run_replaces_what_is_there_read_only_copies_too) {
  Backup backup({"a"});
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  backup.work().write("source/a", "new");
  ASSERT_EQ(::chmod(backup.work().host("destination/a").c_str(), 0444), 0);
  const ProgramResult result = backup.runAsOrdinaryUser({"backup"});
  EXPECT_EQ(result.status, 0) << result.err << backup.log();
  EXPECT_EQ(backup.work().read("destination/a"), "new");
}

TEST(BackupRun, Files_that_only_the_destination_has_stay) {
  Backup backup({"a"});
  backup.work().write("destination/other", "mine");
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(backup.work().read("destination/other"), "mine");
}

TEST(BackupRun, Its_log_is_written_to_the_letter) {
  Backup backup({"a"});
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(backup.logLines(),
            test::joined({test::bannerLines(backup.message(3)),
                          {"| " + backup.message(273) + " '" + backup.program("source") + "'"},
                          test::bannerLines(backup.message(175)),
                          backup.copyLines("a")}));
}

TEST(BackupRun, Log_lines_begin_with_date_and_time_in_the_programs_form) {
  Backup backup({"a"});
  RunProgram run(backup.words({"backup"}));
  run.set("TZ", "UTC").set("LC_ALL", "C.UTF-8");
  const std::time_t before = ::time(nullptr);
  EXPECT_EQ(run.run().status, 0);
  const std::string first = test::linesOf(backup.log())[0];
  bool found = false;
  for (std::time_t moment = before; moment <= ::time(nullptr) && !found; ++moment) {
    struct tm parts = {};
    ::gmtime_r(&moment, &parts);
    char date[32], rest[32];
    ASSERT_GT(std::strftime(date, sizeof date, "(%d/%m/%Y ", &parts), 0U);
    ASSERT_GT(std::strftime(rest, sizeof rest, ".%M.%S) ", &parts), 0U);
    found = first.rfind(date + std::to_string(parts.tm_hour) + rest, 0) == 0;
  }
  EXPECT_TRUE(found) << first;
}

TEST(BackupRun, The_closing_text_is_told_on_the_error_side) {
  Backup backup({"a"});
  EXPECT_EQ(backup.run({"backup"}).err, backup.message(189) + "\n");
}

TEST(BackupRun, Its_texts_come_in_the_language_of_the_settings) {
  Backup backup({"a"});
  backup.setting("Language", "0");
  EXPECT_EQ(backup.run({"backup"}).err, backup.message(189) + "\n");
  EXPECT_EQ(backup.message(189), "Operazione completata correttamente.");
}

TEST(BackupRun, Nothing_to_copy_is_done) {
  Backup backup;
  backup.work().makeFolder("source/empty folder");
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, backup.message(121) + "\n");
  EXPECT_EQ(backup.destinationTree(), "");
}

TEST(BackupRun, Fewer_than_two_objects_are_refused) {
  ConsoleFolder none;
  EXPECT_EQ(none.run({"backup"}).status, 4);
  ConsoleFolder one;
  one.diagram(Diagram().source("S", one.program()));
  const ProgramResult result = one.run({"backup"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(one.message(122)), std::string::npos);
}

TEST(BackupRun, A_fault_of_one_path_refuses_the_whole_run_and_lists_it) {
  Backup backup({"a"});
  const std::string none = backup.program("none");
  backup.diagram(Diagram()
                     .source("S", backup.program("source"))
                     .source("N", none)
                     .destination("D", backup.program("destination"), {"S", "N"}));
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 4);
  for (const std::string& text : {backup.message(123), backup.message(134), none})
    EXPECT_NE(result.err.find(text), std::string::npos) << text;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(backup.destinationTree(), "");
}

TEST(BackupRun, With_ignore_the_sound_paths_are_copied) {
  Backup backup({"a"});
  backup.diagram(Diagram()
                     .source("S", backup.program("source"))
                     .source("N", backup.program("none"))
                     .destination("D", backup.program("destination"), {"S", "N"}));
  EXPECT_EQ(backup.run({"backup", "--ignore-unreachable"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), backup.sourceTree());
  // The choice is kept with the profile.
  EXPECT_EQ(backup.run({"backup"}).status, 0);
}

TEST(BackupRun, A_single_file_that_has_gone_refuses_the_run) {
  Backup backup({"a"});
  backup.diagram(Diagram()
                     .files("F", {backup.from("a"), backup.from("gone")})
                     .destination("D", backup.program("destination"), {"F"}));
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(backup.from("gone")), std::string::npos);
  EXPECT_EQ(backup.destinationTree(), "");
}

TEST(BackupRun, Single_files_land_directly_under_the_destination) {
  Backup backup({"deep/er/a", "b"});
  backup.diagram(Diagram()
                     .files("F", {backup.from("deep/er/a"), backup.from("b")})
                     .destination("D", backup.program("destination"), {"F"}));
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), "a = content of deep/er/a\nb = content of b\n");
}

TEST(BackupRun, The_filter_of_the_profile_chooses_the_files) {
  const struct {
    const char* filter;
    const char* expected;
  } cases[] = {{"+|*.doc|", "a.doc = content of a.doc\nsub = <folder>\nsub/c.DOC = content of sub/c.DOC\n"},
               {"-|*.doc|", "README = content of README\nb.txt = content of b.txt\n"},
               {"+|", ""}};
  for (const auto& c : cases) {
    Backup backup({"a.doc", "b.txt", "sub/c.DOC", "README"});
    backup.home().write("Configb.adv",
                        "FilterBackup = " + std::string(c.filter) + "\r\nFilterIgnoreInvalidPath = 0\r\n");
    EXPECT_EQ(backup.run({"backup"}).status, 0) << c.filter;
    EXPECT_EQ(backup.destinationTree(), c.expected) << c.filter;
  }
}

TEST(BackupRun, Several_sources_and_destinations_follow_their_links) {
  Backup backup;
  backup.work().write("one/a", "1");
  backup.work().write("two/b", "2");
  backup.work().makeFolder("x");
  backup.work().makeFolder("y");
  backup.diagram(Diagram()
                     .source("One", backup.program("one"))
                     .source("Two", backup.program("two"))
                     .destination("X", backup.program("x"), {"One", "Two"})
                     .destination("Y", backup.program("y"), {"Two"})
                     .destination("X again", backup.program("x"), {"One"})
                     .destination("<!Erased!>", backup.program("y"), {"One"}));
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(describeTree(backup.work().host("x")), "a = 1\nb = 2\n");
  EXPECT_EQ(describeTree(backup.work().host("y")), "b = 2\n");
  EXPECT_EQ(test::countLinesWith(backup.logLines(), "'" + backup.program("one/a") + "' to '"), 1);
}

TEST(BackupRun, Drives_and_shares_of_the_table_are_reached) {
  Backup backup({"sub/a"});
  backup.work().makeFolder("stick");
  backup.work().makeFolder("nas");
  backup.home().write("Drives.dat", "S: = fixed " + backup.work().host("source") + "\nD: = removable " +
                                        backup.work().host("stick") +
                                        "\n\\\\nas\\photos = " + backup.work().host("nas") + "\n");
  backup.diagram(Diagram()
                     .source("S", "S:\\")
                     .destination("D", "D:\\kept\\here", {"S"})
                     .destination("N", "\\\\nas\\photos", {"S"}));
  const ProgramResult preview = backup.run({"backup", "--preview"});
  EXPECT_EQ(preview.out, "S:\\sub\\a\tD:\\kept\\here\\sub\\a\nS:\\sub\\a\t\\\\nas\\photos\\sub\\a\n");
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(backup.work().read("stick/kept/here/sub/a"), "content of sub/a");
  EXPECT_EQ(backup.work().read("nas/sub/a"), "content of sub/a");
  EXPECT_FALSE(backup.work().exists("nas/Test$$$.$$$"));
}

TEST(BackupRun, A_name_ending_in_the_separator_of_a_path_does_not_double_it) {
  Backup backup({"a"});
  backup.diagram(Diagram::copying(backup.program("source") + "\\", backup.program("destination") + "\\"));
  EXPECT_EQ(backup.run({"backup", "--preview"}).out, backup.planLine("a"));
}

// --- modes

TEST(BackupModes, A_test_copies_nothing_and_a_good_one_ends_with_0) {
  for (const char* mode : {"0", "1"}) {
    Backup backup({"a"});
    const ProgramResult result = backup.run({"backup", "--mode", mode});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, backup.message(139) + "\n");
    EXPECT_EQ(backup.destinationTree(), "");
  }
}

TEST(BackupModes, A_test_with_a_fault_ends_with_4) {
  for (const char* mode : {"0", "1", "2", "3"}) {
    Backup backup({"a"});
    backup.diagram(Diagram::copying(backup.program("source"), backup.program("none")));
    EXPECT_EQ(backup.run({"backup", "--mode", mode}).status, 4) << mode;
  }
}

TEST(BackupModes, An_accurate_test_reads_and_tells_each_file) {
  for (const bool accurate : {false, true}) {
    for (const int base : {0, 2}) {
      Backup backup({"a", "b"});
      EXPECT_EQ(backup.run({"backup", "--mode", std::to_string(base + (accurate ? 1 : 0))}).status, 0);
      for (const char* name : {"a", "b"})
        EXPECT_EQ(test::countLinesWith(backup.logLines(),
                                       "| " + backup.message(138) + " '" + backup.from(name) + "' ... OK."),
                  accurate ? 1 : 0);
      EXPECT_EQ(backup.work().exists("destination/a"), base == 2);
    }
  }
}

TEST(BackupModes, An_accurate_test_finds_a_file_that_cannot_be_read) {
  for (const auto& [mode, status] : {std::pair{"1", 4}, {"3", 4}, {"0", 0}}) {
    Backup backup({"a", "locked"});
    fs::permissions(backup.work().host("source/locked"), fs::perms::none);
    const ProgramResult result = backup.runAsOrdinaryUser({"backup", "--mode", mode});
    EXPECT_EQ(result.status, status) << mode;
    EXPECT_EQ(backup.destinationTree(), "");
    EXPECT_EQ(result.err.find(backup.from("locked")) != std::string::npos, status == 4) << result.err;
  }
}

// --- preview

TEST(Preview, One_line_a_transfer_source_tab_destination) {
  Backup backup({"a", "sub/b"});
  const ProgramResult result = backup.run({"backup", "--preview"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, backup.planLine("a") + backup.from("sub/b") + "\t" + backup.program("destination") +
                            "\\sub\\b\n");
  EXPECT_EQ(result.err, "");
}

TEST(Preview, It_writes_no_file_at_all) {
  for (const Words& words : {Words{"backup", "--preview"},
                             {"backup", "--type", "full", "--subfolder", "--preview"},
                             {"backup", "--type", "incremental", "--preview", "--mode", "3"},
                             {"backup", "--preview", "--ignore-unreachable"}}) {
    Backup backup({"a"});
    const std::string home = describeTree(backup.home().path()), work = describeTree(backup.work().path());
    const ProgramResult result = backup.run(words);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out, "");
    EXPECT_EQ(describeTree(backup.home().path()), home);
    EXPECT_EQ(describeTree(backup.work().path()), work);
  }
}

TEST(Preview, It_works_in_a_folder_that_cannot_be_written) {
  Backup backup({"a"});
  backup.giveToOrdinaryUser();
  fs::permissions(backup.home().path(), fs::perms::owner_read | fs::perms::owner_exec);
  RunProgram run(backup.words({"backup", "--preview"}));
  const ProgramResult result = run.asOrdinaryUser().run();
  fs::permissions(backup.home().path(), fs::perms::owner_all);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, backup.planLine("a"));
}

TEST(Preview, A_plan_with_a_fault_prints_nothing_but_the_report_on_the_error_side) {
  Backup backup({"a"});
  backup.diagram(Diagram()
                     .source("S", backup.program("source"))
                     .files("F", {backup.from("gone")})
                     .destination("D", backup.program("destination"), {"S", "F"}));
  const ProgramResult result = backup.run({"backup", "--preview"});
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find(backup.message(134)), std::string::npos);
  EXPECT_NE(result.err.find(backup.from("gone")), std::string::npos);
}

TEST(Preview, An_empty_plan_prints_nothing_and_ends_with_0) {
  Backup backup;
  const ProgramResult result = backup.run({"backup", "--preview"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
}

TEST(Preview, Fewer_than_two_objects_are_refused) {
  ConsoleFolder one;
  one.diagram(Diagram().source("S", one.program()));
  EXPECT_EQ(one.run({"backup", "--preview"}).status, 4);
}

TEST(Preview, A_full_test_with_a_subfolder_plans_the_new_name_and_remembers_none) {
  Backup backup({"a"});
  const ProgramResult result = backup.run({"backup", "--type", "full", "--subfolder", "--preview"});
  EXPECT_NE(result.out.find(backup.program("destination") + "\\Backup__"), std::string::npos) << result.out;
  EXPECT_EQ(backup.run({"backup", "--type", "full", "--subfolder", "--mode", "0"}).status, 0);
  EXPECT_FALSE(backup.home().exists("LastBackup.dat"));
}

// --- types

TEST(BackupTypes, A_full_run_writes_a_line_for_each_file_to_the_letter) {
  Backup backup({"a", "b"});
  backup.setDate("source/a", 1'000'000'000);  // 9 September 2001, 1.46.40
  backup.setDate("source/b", 1'700'000'000);  // 14 November 2023, 22.13.20
  backup.home().write("FilesList.Dat", "an old line\r\n");
  EXPECT_EQ(backup.run({"backup", "--type", "full"}).status, 0);
  const std::string lineA = backup.from("a") + "#_#_#09/09/2001 01.46.40#_#_#12";
  const std::string lineB = backup.from("b") + "#_#_#14/11/2023 22.13.20#_#_#12";
  const Lines lines = test::linesOf(backup.home().read("FilesList.Dat"));
  EXPECT_TRUE(lines == (Lines{lineA, lineB}) || lines == (Lines{lineB, lineA}))
      << backup.home().read("FilesList.Dat");
}

TEST(BackupTypes, A_standard_run_leaves_the_list_and_the_subfolder_alone) {
  Backup backup({"a"});
  backup.home().write("FilesList.Dat", "an old line\r\n");
  backup.home().write("LastBackup.dat", "Old");
  EXPECT_EQ(backup.run({"backup", "--subfolder"}).status, 0);
  EXPECT_EQ(backup.home().read("FilesList.Dat"), "an old line\r\n");
  EXPECT_EQ(backup.home().read("LastBackup.dat"), "Old");
  EXPECT_EQ(backup.destinationTree(), backup.sourceTree());
}

TEST(BackupTypes, Incremental_runs_copy_what_is_new_or_has_another_date) {
  Backup backup({"same", "changed", "touched"});
  for (const char* name : {"same", "changed", "touched"})
    backup.setDate(std::string("source/") + name, 1'000'000'000);
  EXPECT_EQ(backup.run({"backup", "--type", "full"}).status, 0);
  EXPECT_EQ(backup.run({"backup", "--type", "incremental", "--preview"}).out, "");
  // Changed without another date: the date alone counts. Touched without a change: copied all the same.
  backup.work().write("source/changed", "longer than before, and unseen");
  backup.setDate("source/changed", 1'000'000'000);
  backup.setDate("source/touched", 999'999'999);
  backup.work().write("source/new", "new");
  EXPECT_EQ(backup.run({"backup", "--type", "incremental"}).status, 0);
  EXPECT_EQ(backup.work().read("destination/changed"), "content of changed");
  EXPECT_EQ(backup.work().read("destination/new"), "new");
  const Lines lines = backup.logLines();
  const auto copies = [&](const char* name) {
    return test::countLinesWith(lines, "'" + backup.from(name) + "' to '");
  };
  EXPECT_EQ(copies("same"), 1);
  EXPECT_EQ(copies("touched"), 2);
  EXPECT_EQ(test::linesOf(backup.home().read("FilesList.Dat")).size(), 5U);
  EXPECT_EQ(backup.run({"backup", "--type", "incremental", "--preview"}).out, "");
}

TEST(BackupTypes, A_file_whose_date_goes_back_to_a_saved_one_is_not_copied) {
  Backup backup({"a"});
  backup.setDate("source/a", 1'000'000'000);
  backup.run({"backup", "--type", "full"});
  backup.setDate("source/a", 1'100'000'000);
  backup.run({"backup", "--type", "incremental"});
  backup.setDate("source/a", 1'000'000'000);
  EXPECT_EQ(backup.run({"backup", "--type", "incremental", "--preview"}).out, "");
}

TEST(BackupTypes, A_change_of_summer_time_changes_no_date) {
  Backup backup({"a"});
  backup.setDate("source/a", 1'720'000'000);  // in July
  const auto runIn = [&](const char* zone, const Words& words) {
    RunProgram run(backup.words(words));
    return run.set("TZ", zone).run();
  };
  EXPECT_EQ(runIn("CET-1CEST,M3.5.0,M10.5.0/3", {"backup", "--type", "full"}).status, 0);
  EXPECT_NE(backup.home().read("FilesList.Dat").find("#_#_#03/07/2024 11.46.40#_#_#"), std::string::npos)
      << backup.home().read("FilesList.Dat");
  EXPECT_EQ(runIn("CET-1CEST,M3.5.0,M10.5.0/3", {"backup", "--type", "incremental", "--preview"}).out, "");
}

TEST(BackupTypes, An_unattended_incremental_run_without_a_list_copies_everything) {
  Backup backup({"a"});
  EXPECT_EQ(backup.run({"backup", "--type", "incremental"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), backup.sourceTree());
  EXPECT_EQ(test::linesOf(backup.home().read("FilesList.Dat")).size(), 1U);
}

TEST(BackupTypes, An_incremental_run_with_an_empty_list_copies_everything) {
  Backup backup({"a"});
  backup.home().write("FilesList.Dat", "");
  EXPECT_EQ(backup.run({"backup", "--type", "incremental"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), backup.sourceTree());
}

TEST(BackupTypes, A_full_run_makes_a_subfolder_and_an_incremental_one_takes_the_last) {
  Backup backup({"a"});
  EXPECT_EQ(backup.run({"backup", "--type", "full", "--subfolder"}).status, 0);
  const std::string name = backup.home().read("LastBackup.dat");
  EXPECT_EQ(name.find("Backup__"), 0U);
  EXPECT_EQ(describeTree(backup.work().host("destination/" + name)), backup.sourceTree());
  backup.work().write("source/b", "new");
  EXPECT_EQ(backup.run({"backup", "--type", "incremental", "--subfolder"}).status, 0);
  EXPECT_EQ(backup.work().read("destination/" + name + "/b"), "new");
}

TEST(BackupTypes, An_incremental_run_without_a_remembered_subfolder_copies_directly) {
  Backup backup({"a"});
  EXPECT_EQ(backup.run({"backup", "--type", "incremental", "--subfolder"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), backup.sourceTree());
}

TEST(BackupTypes, The_tail_of_a_longer_subfolder_name_is_read_back_with_the_new_one) {
  Backup backup({"a"});
  backup.home().write("LastBackup.dat", std::string(40, '+'));
  EXPECT_EQ(backup.run({"backup", "--type", "full", "--subfolder"}).status, 0);
  const std::string remembered = backup.home().read("LastBackup.dat");
  ASSERT_EQ(remembered.size(), 40U);
  const std::string name = remembered.substr(0, remembered.find('+'));
  EXPECT_TRUE(backup.work().exists("destination/" + name + "/a"));
  backup.work().write("source/b", "new");
  EXPECT_EQ(backup.run({"backup", "--type", "incremental", "--subfolder"}).status, 0);
  EXPECT_EQ(backup.work().read("destination/" + remembered + "/b"), "new");
}

TEST(BackupTypes, A_file_that_failed_has_its_line_all_the_same) {
  Backup backup({"a", "locked"});
  fs::permissions(backup.work().host("source/locked"), fs::perms::none);
  EXPECT_EQ(backup.runAsOrdinaryUser({"backup", "--type", "full"}).status, 3);
  const std::string list = backup.home().read("FilesList.Dat");
  EXPECT_NE(list.find(backup.from("locked") + "#_#_#"), std::string::npos);
  EXPECT_NE(list.find(backup.from("a") + "#_#_#"), std::string::npos);
}

// --- the program folder

TEST(BackupRun, A_log_that_cannot_be_written_refuses_the_run_before_it_copies) {
  Backup backup({"a"});
  backup.home().makeFolder("LogFile1.txt");
  const std::string before = backup.describeHome();
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err, "");
  EXPECT_EQ(backup.destinationTree(), "");
  EXPECT_EQ(backup.describeHome(), before);
}

TEST(BackupRun, A_program_folder_that_cannot_be_written_refuses_the_run) {
  Backup backup({"a"});
  backup.giveToOrdinaryUser();
  fs::permissions(backup.home().path(), fs::perms::owner_read | fs::perms::owner_exec);
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = run.asOrdinaryUser().run();
  fs::permissions(backup.home().path(), fs::perms::owner_all);
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(backup.home().host()), std::string::npos) << result.err;
  EXPECT_EQ(backup.destinationTree(), "");
}

TEST(TwoRuns, The_second_on_one_program_folder_is_refused_by_the_number_of_the_first) {
  Backup backup({"a"});
  platform::FolderLock lock;
  int holder = 0;
  ASSERT_EQ(lock.acquire(backup.home().host(), holder), platform::kNoError);
  const std::string home = describeTree(backup.home().path());
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(std::to_string(::getpid())), std::string::npos) << result.err;
  EXPECT_EQ(describeTree(backup.home().path()), home);
  EXPECT_EQ(backup.destinationTree(), "");
}

TEST(TwoRuns, What_only_looks_is_not_kept_out) {
  Backup backup({"a"});
  platform::FolderLock lock;
  int holder = 0;
  ASSERT_EQ(lock.acquire(backup.home().host(), holder), platform::kNoError);
  EXPECT_EQ(backup.run({"check"}).status, 0);
  EXPECT_EQ(backup.run({"backup", "--preview"}).out, backup.planLine("a"));
}

TEST(TwoRuns, The_lock_of_a_run_that_was_killed_keeps_nobody_out) {
  Backup backup({"a"});
  backup.home().write("Tandemize.lock", "1\n");
  EXPECT_EQ(backup.run({"backup"}).status, 0);
}

// --- signals

constexpr std::uint64_t Big = 1ULL << 30U;

// A run over a file of a gibibyte of nothing, which takes a while to copy and no room at the source.
class BigBackup : public Backup {
 public:
  explicit BigBackup(const Words& command = {"backup"}) : Backup() {
    work().write("source/big", "");
    fs::resize_file(work().host("source/big"), Big);
    work().write("destination/big", "old copy");
    run_ = std::make_unique<RunProgram>(words(command));
    run_->start();
  }
  [[nodiscard]] RunProgram& child() { return *run_; }
  [[nodiscard]] bool copying() {
    return run_->reaches([this] { return log().find("'" + from("big") + "' to '") != std::string::npos; });
  }
  [[nodiscard]] bool scanning() {
    return run_->reaches([this] { return log().find(message(273)) != std::string::npos; });
  }

 private:
  std::unique_ptr<RunProgram> run_;
};

TEST(Signals, An_interrupt_or_a_request_to_end_in_mid_copy_is_the_users_stop) {
  for (const int number : {SIGINT, SIGTERM}) {
    BigBackup backup;
    ASSERT_TRUE(backup.copying());
    backup.child().signal(number);
    const ProgramResult result = backup.child().wait();
    EXPECT_EQ(result.status, 1) << number << result.err;
    EXPECT_EQ(backup.destinationTree(), "big = old copy\n");
    EXPECT_NE(result.err.find(backup.message(190)), std::string::npos) << result.err;
    const Lines lines = backup.logLines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], "| - " + backup.message(329) + " -");
    EXPECT_EQ(test::countLinesWith(lines, "- OK -"), 0);
  }
}

TEST(Signals, A_stop_while_the_files_are_being_read_copies_nothing) {
  for (const int number : {SIGINT, SIGTERM}) {
    for (const char* mode : {"1", "3"}) {
      BigBackup backup({"backup", "--mode", mode});
      ASSERT_TRUE(backup.scanning());
      backup.child().signal(number);
      const ProgramResult result = backup.child().wait();
      EXPECT_EQ(result.status, 1) << number << mode << result.err;
      EXPECT_EQ(backup.destinationTree(), "big = old copy\n");
      EXPECT_EQ(test::countLinesWith(backup.logLines(), "| - " + backup.message(329) + " -"), 1);
    }
  }
}

TEST(Signals, A_run_that_is_killed_in_mid_copy_leaves_nothing_under_a_real_name) {
  BigBackup backup;
  ASSERT_TRUE(backup.copying());
  backup.child().signal(SIGKILL);
  EXPECT_EQ(backup.child().wait().signal, SIGKILL);
  EXPECT_EQ(backup.work().read("destination/big"), "old copy");
  for (const auto& entry : fs::directory_iterator(backup.work().host("destination"))) {
    const std::string name = entry.path().filename();
    EXPECT_TRUE(name == "big" || name.rfind(".~tandemize-", 0) == 0) << name;
  }
  // The next run clears what is left, and goes its way.
  backup.work().write("source/big", "small now");
  backup.work().write("destination/.~tandemize-1-1.part", "left by a crash");
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(backup.destinationTree(), "big = small now\n");
}

TEST(Signals, A_file_that_was_not_there_is_not_there_after_a_stop) {
  BigBackup backup;
  fs::remove(backup.work().host("destination/big"));
  ASSERT_TRUE(backup.copying());
  backup.child().signal(SIGTERM);
  EXPECT_EQ(backup.child().wait().status, 1);
  EXPECT_EQ(backup.destinationTree(), "");
}

}  // namespace
}  // namespace tandemize
