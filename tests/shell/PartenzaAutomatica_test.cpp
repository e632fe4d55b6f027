// Timed runs of real jobs over real trees, by a simulated clock.
#include <algorithm>
#include <filesystem>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "fixtures/Diagram.h"
#include "fixtures/LogLines.h"
#include "fixtures/SyncProfile.h"
#include "profile/ModelloBackup.h"
#include "shell/Lingua.h"
#include "shell/Scheduler.h"

namespace tandemize {
namespace {

using test::Diagram;
using test::Scheduler;
using test::SyncProfile;

class TimedRun : public ::testing::Test, protected Scheduler {
 protected:
  TimedRun() : Scheduler({2026, 11, 22, 13, 30, 0}) {
    folder.setting("Errors_Correction", "0");
    for (const char* name : {"one", "two", "three"}) folder.work().makeFolder(name);
    folder.work().write("one/a", "content");
    copying("Config.cfg", "one", "two");
    form.Lavoro = [this](std::uint8_t mode) {
      outcome = form.EseguiLavoro(mode);
      return outcome;
    };
    folder.screen.balloons.clear();
  }
  ~TimedRun() override { folder.screen.onEvents = nullptr; }

  void copying(const std::string& profile, const std::string& from, const std::string& to) {
    Diagram::copying(folder.program(from), folder.program(to)).write(folder.host(profile));
  }
  void synchronising(const std::string& first, const std::string& second) {
    SyncProfile profile;
    profile.paths = {folder.program(first), folder.program(second)};
    profile.write(folder.host("Config.cfg"));
  }
  void runNow(const std::string& mode) {
    standard("22/11/2026", "13.30", "1", "days", mode);
    form.TimerAutoPartenza_Timer();
  }
  [[nodiscard]] std::vector<std::string> notices() {
    std::vector<std::string> texts;
    for (const Avviso& notice : folder.screen.balloons) texts.push_back(notice.testo);
    return texts;
  }
  [[nodiscard]] bool told(const std::string& text) {
    const std::vector<std::string> texts = notices();
    return std::ranges::any_of(texts, [&](const std::string& one) { return one.find(text) != one.npos; });
  }
};

TEST_F(TimedRun, A_backup_copies_tells_of_its_start_and_moves_its_date_on) {
  runNow("2");
  EXPECT_EQ(outcome, EsitoOperazione::Fatto);
  EXPECT_EQ(folder.work().read("two/a"), "content");
  EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026");
  ASSERT_FALSE(folder.screen.balloons.empty());
  const Avviso& first = folder.screen.balloons.front();
  EXPECT_EQ(first.testo, Messaggio(58));
  EXPECT_EQ(first.titolo, TitoloApplicazione);
  EXPECT_EQ(first.secondi, 5);
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(TimedRun, Its_backup_is_of_the_kind_that_the_settings_name) {
  struct {
    const char* type;
    bool list;
  } const cases[] = {{"0", false}, {"1", true}, {"2", true}, {"255", false}};
  for (const auto& kind : cases) {
    std::filesystem::remove(folder.host("FilesList.Dat"));
    folder.setting("Timer_Backup_Type", kind.type);
    time.set({2026, 11, 22, 13, 30, 0});
    runNow("2");
    EXPECT_EQ(outcome, EsitoOperazione::Fatto) << kind.type;
    EXPECT_EQ(folder.home().exists("FilesList.Dat"), kind.list) << kind.type;
  }
}

TEST_F(TimedRun, An_incremental_one_copies_what_has_changed_since_the_last) {
  folder.setting("Timer_Backup_Type", "2");
  runNow("2");
  folder.work().write("one/b", "new");
  folder.work().write("two/a", "left alone");
  time.set({2026, 11, 22, 13, 30, 0});
  runNow("2");
  EXPECT_EQ(folder.work().read("two/b"), "new");
  EXPECT_EQ(folder.work().read("two/a"), "left alone");
}

TEST_F(TimedRun, A_synchronisation_makes_the_paths_agree_and_asks_nothing) {
  synchronising("one", "two");
  folder.work().write("two/b", "other");
  runNow("1");
  EXPECT_EQ(outcome, EsitoOperazione::Fatto);
  EXPECT_EQ(folder.work().read("two/a"), "content");
  EXPECT_EQ(folder.work().read("one/b"), "other");
  EXPECT_EQ(notices().front(), Messaggio(57));
  EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026");
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(TimedRun, A_synchronisation_without_a_difference_says_so_once) {
  synchronising("two", "three");
  runNow("1");
  EXPECT_EQ(outcome, EsitoOperazione::NienteDaFare);
  EXPECT_EQ(notices(), (std::vector<std::string>{Messaggio(57), Messaggio(62)}));
}

TEST_F(TimedRun, A_path_that_cannot_be_reached_refuses_the_run_and_the_date_moves_on) {
  for (const char* mode : {"1", "2"}) {
    if (*mode == '1') synchronising("one", "missing");
    if (*mode == '2') copying("Config.cfg", "missing", "two");
    time.set({2026, 11, 22, 13, 30, 0});
    runNow(mode);
    EXPECT_EQ(outcome, EsitoOperazione::Rifiutato) << mode;
    EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026") << mode;
    EXPECT_FALSE(folder.work().exists("missing"));
    EXPECT_EQ(test::describeTree(folder.work().host("two")), "");
  }
}

TEST_F(TimedRun, Advanced_entries_run_their_own_profiles_and_the_current_one_is_in_force_again) {
  folder.work().write("three/c", "third");
  copying("Second.cfg", "three", "two");
  advanced({{"22/11/2026", "13.30", "1 days", PercorsoApplicazione + "Second.cfg"}});
  const std::string profile = FileProfilo;
  form.TimerAutoPartenza_Timer();
  EXPECT_EQ(folder.work().read("two/c"), "third");
  EXPECT_FALSE(folder.work().exists("two/a"));
  EXPECT_EQ(FileProfilo, profile);
  ASSERT_GT(ArrayOggetti.size(), 1U);
  EXPECT_EQ(ArrayOggetti[1].BackPath, folder.program("one"));
}

TEST_F(TimedRun, A_profile_that_is_none_is_told_by_name_and_the_other_entries_run) {
  folder.home().write("Broken.cfg", "no profile");
  advanced({{"22/11/2026", "13.30", "1 days", PercorsoApplicazione + "Broken.cfg"},
            {"22/11/2026", "13.31", "1 days", PercorsoApplicazione + "Gone.cfg"},
            {"22/11/2026", "13.32", "1 days", PercorsoApplicazione + "Config.cfg"}});
  form.TimerAutoPartenza_Timer();
  EXPECT_TRUE(told("Broken.cfg"));
  EXPECT_TRUE(told("Gone.cfg"));
  EXPECT_EQ(folder.work().read("two/a"), "content");
  EXPECT_EQ(value("1Timer_Adv_Date"), "23/11/2026");
  EXPECT_EQ(value("3Timer_Adv_Date"), "23/11/2026");
}

TEST_F(TimedRun, Nothing_starts_into_an_operation_that_is_going_on) {
  for (const char* name : {"FrmFileTransfer", "FrmScan", "FrmProgressBar"}) {
    const FinestraOperazione operation(name);
    time.set({2026, 11, 22, 13, 30, 0});
    runNow("2");
    EXPECT_EQ(outcome, EsitoOperazione::Rifiutato) << name;
    EXPECT_TRUE(told("another operation"));
    EXPECT_FALSE(folder.work().exists("two/a"));
    EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026");
  }
}

TEST_F(TimedRun, A_window_that_only_stands_open_does_not_keep_a_run_away) {
  const FinestraOperazione window("FrmBackupChoice");
  runNow("2");
  EXPECT_EQ(outcome, EsitoOperazione::Fatto);
}

TEST_F(TimedRun, A_stop_by_the_user_is_told_in_the_log_and_moves_the_date_on) {
  folder.screen.onEvents = [] {
    if (FormCaricato("FrmScan")) AnnullaOperazioneInCorso();
  };
  runNow("2");
  EXPECT_EQ(outcome, EsitoOperazione::Annullato);
  EXPECT_FALSE(folder.work().exists("two/a"));
  EXPECT_EQ(test::countLinesWith(test::logLines(folder.log()), Messaggio(329)), 1);
  EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026");
}

TEST_F(TimedRun, A_record_that_could_not_be_written_before_does_not_refuse_a_later_run) {
  folder.home().makeFolder("LogFile1.txt");
  ScriviLog("lost", RigaNormale);
  ASSERT_NE(ErroreLog(), platform::kNoError);
  std::filesystem::remove(folder.host("LogFile1.txt"));
  runNow("2");
  EXPECT_EQ(outcome, EsitoOperazione::Fatto);
  EXPECT_EQ(folder.work().read("two/a"), "content");
}

TEST_F(TimedRun, A_week_of_daily_runs_copies_each_days_file_and_logs_each_run) {
  standard("22/11/2026", "13.30", "1", "days", "2");
  for (int day = 22; day <= 28; ++day) {
    folder.work().write("one/day" + std::to_string(day), "d");
    passUntil({2026, 11, day, 23, 0, 0});
    EXPECT_TRUE(folder.work().exists("two/day" + std::to_string(day))) << day;
  }
  EXPECT_EQ(test::countLinesWith(test::logLines(folder.log()), "'" + folder.program("one/day22") + "'"), 7);
  EXPECT_EQ(value("Timer_Start_Date"), "29/11/2026");
}

}  // namespace
}  // namespace tandemize
