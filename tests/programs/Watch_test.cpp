// The scheduler of the console program as a child process, by the host's own clock.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>
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

std::string formatted(std::time_t moment, const char* form) {
  struct tm parts = {};
  ::gmtime_r(&moment, &parts);
  char text[32];
  return {text, std::strftime(text, sizeof text, form, &parts)};
}
std::string dateOf(std::time_t moment) {
  return formatted(moment, "%d/%m/%Y");
}
std::string timeOf(std::time_t moment) {
  return formatted(moment, "%H.%M");
}

constexpr std::time_t Minute = 60, Day = 86'400;

class WatchFolder : public ConsoleFolder {
 public:
  WatchFolder() {
    copySourceToDestination();
    work().write("source/a", "content");
  }

  void standard(std::time_t moment, const std::string& word = "days") {
    setting("Timer_Start_Mode", "2");
    setting("Timer_Start_Type", "0");
    setting("Timer_Start_Date", dateOf(moment));
    setting("Timer_Start_Time", timeOf(moment));
    setting("Timer_Interval_Number", "1");
    setting("Timer_Interval_Type", word);
  }
  void entry(int number, std::time_t moment, const std::string& profile) {
    const std::string key = std::to_string(number) + "Timer_Adv_";
    setting(key + "Profile1", profile);
    setting(key + "Profile2", homeProgram(profile));
    setting(key + "Date", dateOf(moment));
    setting(key + "Time", timeOf(moment));
    setting(key + "Interval", "1 days");
  }
  // One run now, by the current profile. A second entry stands on the next minute, for the case that this one
  // ends before the program has looked at it: whichever minute it sees first, it finds a start in it.
  void dueNow(const std::string& mode = "2") {
    const std::time_t now = ::time(nullptr);
    entry(1, now, "Config.cfg");
    entry(2, now + Minute, "Config.cfg");
    setting("Timer_Start_Mode", mode);
    setting("Timer_Start_Type", "1");
  }

  RunProgram& start() {
    run_ = std::make_unique<RunProgram>(words({"watch"}));
    run_->start();
    return *run_;
  }
  [[nodiscard]] RunProgram& child() { return *run_; }
  [[nodiscard]] bool tells(const std::string& text) {
    return run_->reaches([&] { return run_->errors().find(text) != std::string::npos; });
  }
  [[nodiscard]] std::string settings() { return home().read("GlobalSetting.dat"); }

 private:
  std::unique_ptr<RunProgram> run_;
};

TEST(Watch, Waiting_ends_with_0_at_once_by_either_signal) {
  for (const int number : {SIGINT, SIGTERM}) {
    WatchFolder watch;
    watch.standard(::time(nullptr) + 30 * Day);
    watch.start();
    ASSERT_TRUE(watch.tells("Waiting for"));
    watch.child().signal(number);
    const ProgramResult result = watch.child().wait();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_FALSE(watch.work().exists("destination/a"));
  }
}

TEST(Watch, It_tells_what_it_waits_for_in_the_language_of_the_settings) {
  const std::time_t moment = ::time(nullptr) + 30 * Day;
  {
    WatchFolder watch;
    watch.standard(moment);
    watch.setting("Timer_Backup_Type", "1");
    watch.start();
    EXPECT_TRUE(watch.tells("Waiting for (dates as dd/mm/yyyy):\n  " + dateOf(moment) + " " + timeOf(moment) +
                            "  full backup, every 1 days\n"))
        << watch.child().errors();
  }
  WatchFolder watch;
  watch.setting("Language", "0");
  watch.standard(moment, "giorni");
  watch.start();
  EXPECT_TRUE(watch.tells("In attesa (date nel formato dd/mm/yyyy):\n  " + dateOf(moment) + " " +
                          timeOf(moment) + "  backup standard, ogni 1 giorni\n"))
      << watch.child().errors();
}

TEST(Watch, Every_advanced_entry_is_told_with_its_profile_and_what_keeps_it_from_starting) {
  const std::time_t moment = ::time(nullptr) + 30 * Day;
  WatchFolder watch;
  watch.entry(1, moment, "One.cfg");
  watch.entry(2, moment, "Two.cfg");
  watch.entry(3, moment, "Three.cfg");
  watch.entry(4, ::time(nullptr) - 2 * Day, "Four.cfg");
  watch.setting("2Timer_Adv_Date", "31/02/2030");
  watch.setting("3Timer_Adv_Interval", "1 giorni");
  watch.setting("4Timer_Adv_Interval", "1 hours");
  watch.setting("Timer_Start_Mode", "1");
  watch.setting("Timer_Start_Type", "1");
  watch.start();
  ASSERT_TRUE(watch.tells("Four.cfg"));
  const std::string told = watch.child().errors();
  for (const auto& [profile, remark] :
       {std::pair{"One.cfg", "\n"}, std::pair{"Two.cfg", " (date or time not valid: does not start)\n"},
        std::pair{"Three.cfg", " (once only: the interval is not valid)\n"},
        std::pair{"Four.cfg", " (has passed: is not made up for)\n"}})
    EXPECT_NE(told.find(watch.homeProgram(profile) + remark), std::string::npos) << told;
  EXPECT_NE(told.find("synchronisation"), std::string::npos);
}

TEST(Watch, A_start_that_is_due_copies_moves_its_date_on_and_the_watch_goes_on) {
  WatchFolder watch;
  watch.dueNow();
  watch.start();
  ASSERT_TRUE(watch.tells("Automatic run: done.")) << watch.child().errors();
  EXPECT_EQ(watch.work().read("destination/a"), "content");
  ASSERT_TRUE(watch.child().reaches(
      [&] { return watch.settings().find(dateOf(::time(nullptr) + Day)) != std::string::npos; }));
  EXPECT_NE(watch.child().errors().find(watch.message(58)), std::string::npos);
  watch.child().signal(SIGTERM);  // in the minute that follows a run
  const ProgramResult result = watch.child().wait();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "");
}

TEST(Watch, A_synchronisation_that_is_due_makes_the_paths_agree) {
  WatchFolder watch;
  watch.work().write("destination/b", "other");
  test::SyncProfile profile;
  profile.paths = {watch.program("source"), watch.program("destination")};
  profile.write(watch.home().host("Config.cfg"));
  watch.dueNow("1");
  watch.start();
  ASSERT_TRUE(watch.tells("Automatic run: done.")) << watch.child().errors();
  EXPECT_EQ(watch.work().read("destination/a"), "content");
  EXPECT_EQ(watch.work().read("source/b"), "other");
  watch.child().signal(SIGINT);
  EXPECT_EQ(watch.child().wait().status, 0);
}

TEST(Watch, A_stop_during_a_run_is_the_users_stop_of_it_and_ends_the_watch_with_0) {
  for (const int number : {SIGINT, SIGTERM}) {
    WatchFolder watch;
    watch.work().write("source/a", "");
    fs::resize_file(watch.work().host("source/a"), 1ULL << 30U);
    watch.work().write("destination/a", "old copy");
    watch.dueNow();
    watch.start();
    ASSERT_TRUE(watch.child().reaches([&] { return watch.log().find("' to '") != std::string::npos; }));
    watch.child().signal(number);
    const ProgramResult result = watch.child().wait();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(describeTree(watch.work().host("destination")), "a = old copy\n");
    const std::vector<std::string> lines = watch.logLines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], "| - " + watch.message(329) + " -");
    EXPECT_NE(result.err.find("Automatic run: stopped."), std::string::npos) << result.err;
    EXPECT_NE(watch.settings().find(dateOf(::time(nullptr) + Day)), std::string::npos);
  }
}

TEST(Watch, A_date_of_the_past_moves_forward_as_it_starts) {
  WatchFolder watch;
  const std::time_t now = ::time(nullptr);
  watch.standard(now - 10 * Day, "weeks");
  watch.start();
  ASSERT_TRUE(watch.tells(dateOf(now + 4 * Day) + " " + timeOf(now))) << watch.child().errors();
  EXPECT_NE(watch.child().errors().find(watch.message(461)), std::string::npos);
  EXPECT_NE(watch.settings().find("Timer_Start_Date = " + dateOf(now + 4 * Day) + "\r\n"), std::string::npos);
}

TEST(Watch, Advanced_interval_number_0_with_a_past_date_does_not_hang_it) {
  WatchFolder watch;
  watch.entry(1, ::time(nullptr) - 10 * Day, "Config.cfg");
  watch.setting("1Timer_Adv_Interval", "0 days");
  watch.setting("Timer_Start_Mode", "2");
  watch.setting("Timer_Start_Type", "1");
  watch.start();
  EXPECT_TRUE(watch.tells("Waiting for"));
  watch.child().signal(SIGTERM);
  EXPECT_EQ(watch.child().wait().status, 0);
}

TEST(Watch, With_nothing_scheduled_it_says_so_and_waits_for_the_settings_to_change) {
  WatchFolder watch;
  watch.start();
  ASSERT_TRUE(watch.tells("Nothing is scheduled."));
  const std::time_t moment = ::time(nullptr) + 30 * Day;
  watch.standard(moment);
  EXPECT_TRUE(watch.tells(dateOf(moment) + " " + timeOf(moment) + "  standard backup"));
  watch.child().signal(SIGTERM);
  EXPECT_EQ(watch.child().wait().status, 0);
}

TEST(Watch, Settings_that_cannot_be_read_while_it_waits_are_told_and_it_goes_on) {
  WatchFolder watch;
  watch.standard(::time(nullptr) + 30 * Day);
  watch.start();
  ASSERT_TRUE(watch.tells("Waiting for"));
  watch.setting("Errors_Repeat", "many");
  EXPECT_TRUE(watch.tells("'Errors_Repeat'"));
  watch.child().signal(SIGTERM);
  EXPECT_EQ(watch.child().wait().status, 0);
}

TEST(Watch, It_holds_the_program_folder_for_as_long_as_it_waits) {
  WatchFolder watch;
  watch.standard(::time(nullptr) + 30 * Day);
  watch.start();
  ASSERT_TRUE(watch.tells("Waiting for"));
  const ProgramResult other = watch.run({"backup"});
  EXPECT_EQ(other.status, 4);
  EXPECT_NE(other.err.find(std::to_string(watch.child().process())), std::string::npos) << other.err;
  watch.child().signal(SIGTERM);
  EXPECT_EQ(watch.child().wait().status, 0);
  EXPECT_EQ(watch.run({"backup"}).status, 0);
}

TEST(Watch, It_is_refused_where_it_cannot_start) {
  {
    WatchFolder watch;
    platform::FolderLock lock;
    int holder = 0;
    ASSERT_EQ(lock.acquire(watch.home().host(), holder), platform::kNoError);
    EXPECT_EQ(watch.run({"watch"}).status, 4);
  }
  {
    WatchFolder watch;
    watch.setting("Errors_Repeat", "many");
    EXPECT_EQ(watch.run({"watch"}).status, 4);
  }
  WatchFolder watch;
  watch.home().write("Config.cfg", "no profile");
  EXPECT_EQ(watch.run({"watch"}).status, 4);
}

TEST(Watch, The_shipped_unit_runs_it_and_does_not_repeat_a_refusal) {
  std::ifstream file(std::string(TANDEMIZE_SOURCE) + "/packaging/systemd/tandemize-backup.service");
  const std::string unit((std::istreambuf_iterator<char>(file)), {});
  for (const char* line : {"\nExecStart=tandemize-run watch\n", "\nRestartPreventExitStatus=4 64\n",
                           "\nKillSignal=SIGTERM\n", "\nWantedBy=default.target\n"})
    EXPECT_NE(unit.find(line), std::string::npos) << line;
}

}  // namespace
}  // namespace tandemize
