// Whole synchronisations by the console program over real trees: what is done, told and logged, and how they
// end.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <memory>

#include "fixtures/LogLines.h"
#include "fixtures/RunProgram.h"
#include "fixtures/SyncProfile.h"
#include "platform/appendfile.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ConsoleFolder;
using test::describeTree;
using test::ProgramResult;
using test::RunProgram;
using test::SyncProfile;

using Lines = std::vector<std::string>;
using Words = std::vector<std::string>;

// A program folder whose profile names the work folders "one" and "two".
class Sync : public ConsoleFolder {
 public:
  Sync() {
    work().makeFolder("one");
    work().makeFolder("two");
    profile.paths = {program("one"), program("two")};
  }
  void file(const std::string& name, const std::string& content, std::time_t date = 1'100'000'000) {
    work().write(name, content);
    const struct timespec times[2] = {{date, 0}, {date, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, work().host(name).c_str(), times, 0), 0);
  }
  void mirror() { profile.SourceNotChange = profile.EraseFile = 1; }
  void saveProfile() { profile.write(home().host("Config.cfg")); }
  ProgramResult sync(Words options = {}) {
    saveProfile();
    options.insert(options.begin(), "sync");
    return run(options);
  }
  [[nodiscard]] std::string tree(const char* side) { return describeTree(work().host(side)); }
  [[nodiscard]] std::string whole() { return describeTree(work().path()); }
  [[nodiscard]] std::string path(const std::string& name) const { return program(name); }

  SyncProfile profile;
};

// --- what it does

TEST(SyncRun, Two_trees_are_made_to_agree) {
  Sync sync;
  sync.file("one/a", "new", 1'200'000'000);
  sync.file("two/a", "old");
  sync.file("one/sub/b", "b");
  sync.file("two/deep/er/c", "c");
  sync.file("one/same", "same");
  sync.file("two/same", "same");
  const ProgramResult result = sync.sync();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, sync.message(189) + "\n");
  EXPECT_EQ(sync.tree("one"),
            "a = new\ndeep = <folder>\ndeep/er = <folder>\ndeep/er/c = c\nsame = same\nsub = <folder>\nsub/b "
            "= b\n");
  EXPECT_EQ(sync.tree("two"), sync.tree("one"));
}

TEST(SyncRun, A_second_run_finds_nothing_to_do) {
  Sync sync;
  sync.file("one/a", "a");
  EXPECT_EQ(sync.sync().status, 0);
  const ProgramResult again = sync.sync();
  EXPECT_EQ(again.status, 0);
  EXPECT_EQ(again.err, sync.message(62) + "\n");
  EXPECT_EQ(sync.sync({"--preview"}).out, "");
}

TEST(SyncRun, A_mirror_deletes_what_the_source_lacks_and_tells_it_in_the_log) {
  Sync sync;
  sync.mirror();
  sync.file("one/a", "a");
  sync.file("two/gone/b", "b");
  const ProgramResult result = sync.sync();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(sync.tree("two"), "a = a\n");
  EXPECT_EQ(sync.tree("one"), "a = a\n");
  EXPECT_GE(test::countLinesWith(sync.logLines(), sync.path("two/gone/b")), 1);
}

TEST(SyncRun, Its_log_begins_with_banner_scan_and_comparison) {
  Sync sync;
  sync.file("one/a", "a");
  EXPECT_EQ(sync.sync().status, 0);
  const Lines expected = test::joined(
      {test::bannerLines(sync.message(4)),
       {"| " + sync.message(273) + " 1 '" + sync.path("one") + "'",
        "| " + sync.message(273) + " 2 '" + sync.path("two") + "'", "| " + sync.message(73)},
       test::bannerLines(sync.message(175)),
       {"| " + sync.message(188) + "  '" + sync.path("one/a") + "' to '" + sync.path("two/a") + "'",
        "| - OK -", ""}});
  EXPECT_EQ(sync.logLines(), expected);
}

TEST(SyncRun, It_speaks_the_language_of_the_settings) {
  for (const char* language : {"0", "1"}) {
    Sync sync;
    sync.setting("Language", language);
    EXPECT_EQ(sync.sync().err, sync.message(62) + "\n");
    sync.file("one/a", "a");
    EXPECT_EQ(sync.sync().err, sync.message(189) + "\n");
    sync.profile.paths[1] = sync.path("none");
    const std::string err = sync.sync().err;
    EXPECT_NE(err.find(sync.message(310) + " '" + sync.path("none") + "' " + sync.message(311)),
              std::string::npos)
        << err;
  }
}

TEST(SyncRun, Drives_and_shares_are_reached) {
  Sync sync;
  sync.home().write("Drives.dat", "S: = removable " + sync.work().host("one") +
                                      "\n\\\\nas\\data = " + sync.work().host("two") + "\n");
  sync.profile.paths = {"S:\\", "\\\\nas\\data\\"};
  sync.file("one/sub/a", "a");
  EXPECT_EQ(sync.sync({"--preview"}).out, "missing\t-\tS:\\sub\\a\t\\\\nas\\data\\sub\\a\n");
  EXPECT_EQ(sync.sync().status, 0);
  EXPECT_EQ(sync.work().read("two/sub/a"), "a");
}

TEST(SyncRun, The_objects_of_the_backup_and_the_filter_stay) {
  Sync sync;
  sync.file("one/a.doc", "a");
  sync.profile.write(sync.home().host("Config.cfg"));
  const std::string object = "1BackIndice = 1\r\n1BackDescrizione = S\r\n",
                    filter = "FilterBackup = -|*.doc|\r\n";
  sync.home().write("Config.cfg", sync.profile.text() + object);
  sync.home().write("Configb.adv", filter);
  EXPECT_EQ(sync.run({"sync"}).status, 0);
  EXPECT_TRUE(sync.work().exists("two/a.doc")) << "a filter is a backup's";
  EXPECT_EQ(sync.home().read("Config.cfg"), sync.profile.text() + object);
  EXPECT_EQ(sync.home().read("Configb.adv"), filter);
}

TEST(SyncRun, Another_profile_is_taken_and_saved_by_its_name) {
  Sync sync;
  sync.file("one/a", "a");
  sync.profile.write(sync.work().host("other.cfg"));
  const std::string current = sync.home().read("Config.cfg");
  const ProgramResult result =
      RunProgram({"--folder", sync.home().host(), "--profile", sync.work().host("other.cfg"), "sync"}).run();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(sync.work().exists("two/a"));
  EXPECT_EQ(sync.home().read("Config.cfg"), current);
  EXPECT_EQ(sync.work().read("other.cfg"), sync.profile.text());
}

// --- questions

TEST(SyncRun, Questions_are_answered_in_advance_by_default_with_no) {
  for (const bool yes : {false, true}) {
    Sync sync;
    sync.profile.FixFileOption = 1;
    sync.file("one/a", "new", 1'200'000'000);
    sync.file("two/a", "old");
    sync.file("one/b", "b");
    sync.saveProfile();
    Words words{"--folder", sync.home().host()};
    if (yes) words.insert(words.end(), {"--answer", "yes"});
    words.emplace_back("sync");
    const ProgramResult result = RunProgram(words).run();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(sync.work().read("two/a"), yes ? "new" : "old");
    EXPECT_EQ(sync.work().read("two/b"), "b");
    EXPECT_NE(result.err.find(sync.message(192) + " '" + sync.path("two/a")), std::string::npos)
        << result.err;
    EXPECT_NE(sync.home().read("Config.cfg").find("FixFileOption = 1"), std::string::npos);
  }
}

TEST(SyncRun, AutoTandemize_and_a_new_scan_at_the_end_are_for_people) {
  Sync sync;
  sync.profile.AutoTandemize = sync.profile.FixScanAfterFix = 1;
  sync.file("one/a", "a");
  EXPECT_EQ(sync.sync().status, 0);
  EXPECT_EQ(test::countLinesWith(sync.logLines(), sync.message(273)), 2);
}

// --- refusals

TEST(SyncRun, A_path_that_cannot_be_reached_refuses_it_before_anything) {
  for (const char* where : {"none", "one/file"}) {
    Sync sync;
    sync.mirror();
    sync.file("one/file", "a");
    sync.file("two/b", "b");
    sync.profile.paths[0] = sync.path(where);
    const std::string before = sync.whole();
    const ProgramResult result = sync.sync();
    EXPECT_EQ(result.status, 4) << result.err;
    EXPECT_NE(result.err.find(sync.path(where)), std::string::npos) << result.err;
    EXPECT_EQ(test::countLinesWith(sync.logLines(), sync.message(283)), 1);
    EXPECT_EQ(test::countLinesWith(sync.logLines(), sync.message(273)), 0);
    EXPECT_EQ(sync.whole(), before);
  }
}

TEST(SyncRun, A_profile_without_paths_is_refused) {
  Sync sync;
  sync.profile.paths = {"", ""};
  const ProgramResult result = sync.sync();
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.err, sync.message(313) + "\n");
}

TEST(SyncRun, A_server_that_cannot_be_reached_refuses_it) {
  Sync sync;
  sync.mirror();
  sync.profile.paths = {"/public/data", sync.path("two")};
  sync.file("two/b", "b");
  EXPECT_EQ(sync.sync().status, 4);
  EXPECT_EQ(sync.tree("two"), "b = b\n");
}

TEST(SyncRun, A_folder_that_may_not_be_read_refuses_it_with_any_setting) {
  for (const char* tryNext : {"0", "1"}) {
    for (const char* side : {"one", "two"}) {
      Sync sync;
      sync.mirror();
      sync.setting("Errors_Try_Next", tryNext);
      sync.file("one/closed/a", "a");
      sync.file("two/closed/a", "a");
      sync.file("one/b", "b");
      sync.file("two/c", "c");
      sync.saveProfile();
      const std::string before = sync.whole();
      const fs::path closed = sync.work().host(std::string(side) + "/closed");
      fs::permissions(closed, fs::perms::none);
      sync.giveToOrdinaryUser();
      const ProgramResult result = RunProgram(sync.words({"sync"})).asOrdinaryUser().run();
      fs::permissions(closed, fs::perms::owner_all);
      EXPECT_EQ(result.status, 4) << side << tryNext << result.err;
      EXPECT_EQ(result.err, sync.message(435) + "\n");
      EXPECT_EQ(sync.whole(), before);
      EXPECT_GE(test::countLinesWith(sync.logLines(), sync.path(side) + "\\closed"), 1) << sync.log();
    }
  }
}

TEST(SyncRun, A_profile_that_cannot_be_written_refuses_it) {
  Sync sync;
  sync.file("one/a", "a");
  sync.profile.write(sync.work().host("closed/p.cfg"));
  sync.giveToOrdinaryUser();
  fs::permissions(sync.work().host("closed"), fs::perms::owner_read | fs::perms::owner_exec);
  RunProgram run({"--folder", sync.home().host(), "--profile", sync.work().host("closed/p.cfg"), "sync"});
  const ProgramResult result = run.asOrdinaryUser().run();
  fs::permissions(sync.work().host("closed"), fs::perms::owner_all);
  EXPECT_EQ(result.status, 4) << result.err;
  EXPECT_NE(result.err.find(sync.path("closed/p.cfg")), std::string::npos) << result.err;
  EXPECT_EQ(sync.tree("two"), "");
}

TEST(SyncRun, A_damaged_profile_refuses_it_and_stays_as_it_is) {
  for (const bool preview : {false, true}) {
    Sync sync;
    sync.file("one/a", "a");
    std::string text = sync.profile.text();
    text.replace(text.find("CompareMethod = 0"), 17, "CompareMethod = x");
    sync.home().write("Config.cfg", text);
    const ProgramResult result = sync.run(preview ? Words{"sync", "--preview"} : Words{"sync"});
    EXPECT_EQ(result.status, 4);
    EXPECT_NE(result.err.find("CompareMethod"), std::string::npos) << result.err;
    EXPECT_EQ(sync.home().read("Config.cfg"), text);
    EXPECT_EQ(sync.tree("two"), "");
  }
}

TEST(SyncRun, A_log_that_cannot_be_written_refuses_it_before_anything) {
  Sync sync;
  sync.file("one/a", "a");
  sync.home().makeFolder("LogFile1.txt");
  sync.saveProfile();
  const std::string before = sync.describeHome();
  const ProgramResult result = sync.run({"sync"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err, "");
  EXPECT_EQ(sync.tree("two"), "");
  EXPECT_EQ(sync.describeHome(), before);
}

TEST(SyncRun, A_second_run_on_the_program_folder_is_refused_a_preview_is_not) {
  Sync sync;
  sync.file("one/a", "a");
  sync.saveProfile();
  platform::FolderLock lock;
  int holder = 0;
  ASSERT_EQ(lock.acquire(sync.home().host(), holder), platform::kNoError);
  const ProgramResult result = sync.run({"sync"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(std::to_string(::getpid())), std::string::npos) << result.err;
  EXPECT_EQ(sync.tree("two"), "");
  EXPECT_EQ(sync.run({"sync", "--preview"}).status, 0);
}

TEST(SyncRun, A_source_inside_its_own_mirror_is_refused) {
  Sync sync;
  sync.mirror();
  sync.profile.paths = {sync.path("two/source"), sync.path("two")};
  sync.file("two/source/a", "the only one");
  sync.file("two/source/zeta", "the only one");
  const std::string before = sync.whole();
  const ProgramResult result = sync.sync();
  EXPECT_EQ(result.status, 4) << result.err;
  EXPECT_NE(result.err.find(sync.path("two/source")), std::string::npos) << result.err;
  EXPECT_EQ(sync.whole(), before);
}

// --- failures

TEST(SyncRun, A_file_that_failed_is_status_3_and_named) {
  Sync sync;
  sync.file("one/locked", "secret");
  sync.file("one/z", "z");
  fs::permissions(sync.work().host("one/locked"), fs::perms::none);
  sync.saveProfile();
  const ProgramResult result = sync.runAsOrdinaryUser({"sync"});
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_EQ(sync.tree("two"), "z = z\n");
  for (const std::string& text : {sync.message(427), sync.path("one/locked")})
    EXPECT_NE(result.err.find(text), std::string::npos) << result.err;
}

TEST(SyncRun, A_deletion_that_was_refused_is_status_3_and_named) {
  Sync sync;
  sync.mirror();
  sync.file("two/locked/gone", "g");
  sync.file("one/z", "z");
  sync.saveProfile();
  sync.giveToOrdinaryUser();
  fs::permissions(sync.work().host("two/locked"), fs::perms::owner_read | fs::perms::owner_exec);
  const ProgramResult result = RunProgram(sync.words({"sync"})).asOrdinaryUser().run();
  fs::permissions(sync.work().host("two/locked"), fs::perms::owner_all);
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_EQ(sync.tree("two"), "locked = <folder>\nlocked/gone = g\nz = z\n");
  EXPECT_NE(result.err.find(sync.path("two/locked/gone")), std::string::npos) << result.err;
}

TEST(SyncRun, A_crc_that_failed_is_told_and_is_status_2_at_least) {
  Sync sync;
  sync.profile.CompareMethod = 3;
  sync.file("one/a", "secret");
  sync.file("two/a", "SECRET");
  sync.file("one/z", "z");
  sync.saveProfile();
  fs::permissions(sync.work().host("one/a"), fs::perms::none);
  const ProgramResult result = sync.runAsOrdinaryUser({"sync"});
  EXPECT_EQ(result.status, 2) << result.err;
  EXPECT_NE(result.err.find(sync.message(426)), std::string::npos) << result.err;
  EXPECT_EQ(sync.tree("two"), "a = SECRET\nz = z\n");
}

// --- preview

TEST(SyncPreview, One_line_an_operation_with_its_kind_and_reason) {
  const struct {
    int method;
    const char* reason;
  } methods[] = {{0, "date"}, {1, "date"}, {2, "size"}, {3, "date"}};
  for (const auto& method : methods) {
    Sync sync;
    sync.mirror();
    sync.profile.CompareMethod = method.method;
    sync.file("one/a", "new and longer", 1'200'000'000);
    sync.file("two/a", "old");
    sync.file("two/sub/b", "b");
    sync.file("one/sub/c", "c");
    const ProgramResult result = sync.sync({"--preview"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "different\t" + std::string(method.reason) + "\t" + sync.path("one/a") + "\t" +
                              sync.path("two/a") + "\n" + "delete\t-\t" + sync.path("two/sub/b") + "\t" +
                              sync.path("one/sub/b") + "\n" + "missing\t-\t" + sync.path("one/sub/c") + "\t" +
                              sync.path("two/sub/c") + "\n")
        << method.method;
    EXPECT_EQ(result.err, "");
  }
}

TEST(SyncPreview, It_writes_no_file_at_all) {
  Sync sync;
  sync.mirror();
  sync.file("one/a", "a");
  sync.file("two/b", "b");
  sync.home().write("Config.cfg", sync.profile.text() + "\r\n\r\n");
  const std::string before = sync.whole() + describeTree(sync.home().path());
  const ProgramResult result = sync.run({"sync", "--preview"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_NE(result.out, "");
  EXPECT_EQ(sync.whole() + describeTree(sync.home().path()), before);
}

TEST(SyncPreview, It_works_in_a_folder_that_cannot_be_written) {
  Sync sync;
  sync.file("one/a", "a");
  sync.saveProfile();
  sync.giveToOrdinaryUser();
  fs::permissions(sync.home().path(), fs::perms::owner_read | fs::perms::owner_exec);
  const ProgramResult result = RunProgram(sync.words({"sync", "--preview"})).asOrdinaryUser().run();
  fs::permissions(sync.home().path(), fs::perms::owner_all);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "missing\t-\t" + sync.path("one/a") + "\t" + sync.path("two/a") + "\n");
}

TEST(SyncPreview, A_fault_of_a_path_or_of_the_scan_is_status_4_and_prints_no_line) {
  Sync sync;
  sync.file("one/a", "a");
  sync.profile.paths[1] = sync.path("none");
  ProgramResult result = sync.sync({"--preview"});
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.out, "");
  sync.profile.paths[1] = sync.path("two");
  sync.saveProfile();
  fs::create_directory(sync.work().host("one/closed"));
  sync.giveToOrdinaryUser();
  fs::permissions(sync.work().host("one/closed"), fs::perms::none);
  result = RunProgram(sync.words({"sync", "--preview"})).asOrdinaryUser().run();
  fs::permissions(sync.work().host("one/closed"), fs::perms::owner_all);
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.out, "");
}

TEST(SyncPreview, Nothing_to_do_prints_no_line) {
  Sync sync;
  const ProgramResult result = sync.sync({"--preview"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, sync.message(62) + "\n");
}

// A line of the list stays one line of four fields whatever the file is called.
TEST(SyncPreview, Odd_names_break_no_line) {
  Sync sync;
  sync.work().write("one/tab\there\nand there", "x");
  const ProgramResult result = sync.sync({"--preview"});
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1);
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\t'), 3);
  EXPECT_EQ(sync.sync().status, 0);
  EXPECT_EQ(sync.work().read("two/tab\there\nand there"), "x");
}

// --- signals

constexpr std::uint64_t Big = 1ULL << 30U;

// A gibibyte of nothing takes a while to be copied or compared, and no room.
class BigSync : public Sync {
 public:
  void bigFile(const std::string& name) {
    work().write(name, "");
    fs::resize_file(work().host(name), Big);
  }
  void start() {
    saveProfile();
    run_ = std::make_unique<RunProgram>(words({"sync"}));
    run_->start();
  }
  [[nodiscard]] bool logHolds(const std::string& text) {
    return run_->reaches([&] { return log().find(text) != std::string::npos; });
  }
  ProgramResult stop(int number) {
    run_->signal(number);
    return run_->wait();
  }

 private:
  std::unique_ptr<RunProgram> run_;
};

TEST(SyncSignals, A_stop_in_mid_transfer_keeps_the_old_copy_and_is_status_1) {
  for (const int number : {SIGINT, SIGTERM}) {
    BigSync sync;
    sync.bigFile("one/big");
    sync.file("two/big", "old copy");
    sync.profile.CompareMethod = 2;
    sync.start();
    ASSERT_TRUE(sync.logHolds("'" + sync.path("one/big") + "' to '"));
    const ProgramResult result = sync.stop(number);
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_EQ(sync.tree("two"), "big = old copy\n");
    EXPECT_NE(result.err.find(sync.message(190)), std::string::npos) << result.err;
    const Lines lines = sync.logLines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], "| - " + sync.message(329) + " -");
  }
}

TEST(SyncSignals, A_stop_in_mid_comparison_touches_nothing_and_is_status_1) {
  for (const int number : {SIGINT, SIGTERM}) {
    BigSync sync;
    sync.mirror();
    sync.profile.CompareMethod = 3;
    sync.bigFile("one/big");
    sync.bigFile("two/big");
    sync.file("one/a", "a");
    sync.file("two/gone", "g");
    sync.start();
    ASSERT_TRUE(sync.logHolds(sync.message(73)));
    const ProgramResult result = sync.stop(number);
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_FALSE(sync.work().exists("two/a"));
    EXPECT_TRUE(sync.work().exists("two/gone"));
    EXPECT_EQ(test::countLinesWith(sync.logLines(), "| - " + sync.message(329) + " -"), 1);
    EXPECT_EQ(test::countLinesWith(sync.logLines(), sync.message(175)), 0);
  }
}

// Should the scan be over before the signal comes, the comparison of the big files is not.
TEST(SyncSignals, A_stop_in_mid_scan_touches_nothing_and_is_status_1) {
  BigSync sync;
  sync.mirror();
  sync.profile.CompareMethod = 3;
  sync.bigFile("one/big");
  sync.bigFile("two/big");
  for (int i = 0; i < 300; ++i) sync.file("one/" + std::to_string(i) + "/a", "a");
  sync.file("two/gone", "g");
  sync.start();
  ASSERT_TRUE(sync.logHolds(sync.message(273)));
  const ProgramResult result = sync.stop(SIGINT);
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_FALSE(sync.work().exists("two/0"));
  EXPECT_TRUE(sync.work().exists("two/gone"));
  EXPECT_EQ(test::countLinesWith(sync.logLines(), "| - " + sync.message(329) + " -"), 1);
}

TEST(SyncSignals, A_run_that_is_killed_in_mid_transfer_leaves_nothing_half_under_a_real_name) {
  BigSync sync;
  sync.bigFile("one/big");
  sync.file("two/big", "old copy");
  sync.profile.CompareMethod = 2;
  sync.start();
  ASSERT_TRUE(sync.logHolds("'" + sync.path("one/big") + "' to '"));
  EXPECT_EQ(sync.stop(SIGKILL).signal, SIGKILL);
  EXPECT_EQ(sync.work().read("two/big"), "old copy");
}

// --- many files

// A folder in memory, where the machine has one: making so many files on a disc takes longer than all else.
class QuickFolder {
 public:
  QuickFolder() {
    std::string pattern =
        (fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path().string()) + "/tandemize-test-XXXXXX";
    path_ = ::mkdtemp(pattern.data());
  }
  ~QuickFolder() { fs::remove_all(path_); }
  QuickFolder(const QuickFolder&) = delete;
  QuickFolder& operator=(const QuickFolder&) = delete;

  [[nodiscard]] std::string host(const std::string& name) const { return path_ + "/" + name; }

  // A folder of empty files "0", "1" and so on but for one; they are links of one file, which are made
  // sooner.
  void fill(const std::string& folder, int files, int missing) const {
    fs::create_directories(host(folder));
    const std::string first = host(folder) + "/first";
    ::close(::open(first.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    for (int i = 0; i < files; ++i) {
      const std::string name = host(folder) + "/" + std::to_string(i);
      EXPECT_TRUE(i == missing || ::link(first.c_str(), name.c_str()) == 0) << name;
    }
    fs::remove(first);
  }

 private:
  std::string path_;
};

TEST(SyncRun, A_hundred_thousand_files_a_side_agree_afterwards) {
  constexpr int Folders = 100, Files = 1000;
  Sync sync;
  const QuickFolder many;
  for (int folder = 0; folder < Folders; ++folder) {
    many.fill("one/" + std::to_string(folder), Files, 7);
    many.fill("two/" + std::to_string(folder), Files, 11);
  }
  sync.profile.paths = {test::onDriveC(many.host("one")), test::onDriveC(many.host("two"))};
  EXPECT_EQ(sync.sync().status, 0);
  for (int folder = 0; folder < Folders; ++folder) {
    EXPECT_TRUE(fs::exists(many.host("one/" + std::to_string(folder) + "/7")));
    EXPECT_TRUE(fs::exists(many.host("two/" + std::to_string(folder) + "/11")));
  }
  EXPECT_EQ(test::countLinesWith(sync.logLines(), "' to '"), 2 * Folders);
  EXPECT_EQ(sync.sync().err, sync.message(62) + "\n");
}

}  // namespace
}  // namespace tandemize
