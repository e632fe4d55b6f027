#include "shell/FrmStart.h"

#include <filesystem>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "fixtures/LogLines.h"
#include "shell/Lingua.h"
#include "shell/Scheduler.h"

namespace tandemize {
namespace {

using test::Scheduler;
using Runs = std::vector<std::string>;

constexpr platform::CivilTime Noon{2026, 11, 22, 12, 0, 0};

class SchedulerTest : public ::testing::Test, protected Scheduler {
 protected:
  SchedulerTest() : Scheduler(Noon) {}
  static platform::CivilTime today(int hour, int minute, int second = 0) {
    return at(2026, 11, 22, hour, minute, second);
  }
  [[nodiscard]] int balloonsWith(const std::string& text) {
    int count = 0;
    for (const Avviso& notice : folder.screen.balloons)
      count += notice.testo.find(text) != std::string::npos ? 1 : 0;
    return count;
  }
};

using TimerAutoPartenza = SchedulerTest;
using PartenzaAutomatica = SchedulerTest;
using GuardiaDiPartenza = SchedulerTest;
using TimerAvanzatiInMarcia = SchedulerTest;
using AggiornaProssimaPartenza = SchedulerTest;

TEST_F(TimerAutoPartenza, Ticks_every_500_milliseconds_from_the_start) {
  EXPECT_TRUE(form.TimerAutoPartenza.Enabled);
  EXPECT_EQ(form.TimerAutoPartenza.Interval, 500U);
  EXPECT_FALSE(form.TimerAnimazione.Enabled);
  EXPECT_EQ(form.TimerAnimazione.Interval, 400U);
}

TEST_F(TimerAutoPartenza, A_run_starts_in_its_minute_of_its_day_and_in_no_other) {
  struct {
    platform::CivilTime moment;
    bool runs;
  } const cases[] = {{today(13, 29, 59), false},        {today(13, 30, 0), true},
                     {today(13, 30, 59), true},         {today(13, 31, 0), false},
                     {at(2026, 11, 21, 13, 30), false}, {at(2026, 11, 23, 13, 30), false},
                     {at(2027, 11, 22, 13, 30), false}, {today(1, 30, 0), false}};
  for (const auto& tick : cases) {
    runs.clear();
    standard("22/11/2026", "13.30", "1", "days");
    tickAt(tick.moment);
    EXPECT_EQ(runs.size(), tick.runs ? 1U : 0U) << tick.moment.hour << '.' << tick.moment.minute;
  }
}

TEST_F(TimerAutoPartenza, The_date_may_be_written_in_another_way_than_the_form_has_it) {
  standard("22-11-26", "13.30", "1", "days");
  tickAt(today(13, 30));
  EXPECT_EQ(runs.size(), 1U);
  EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026");
}

TEST_F(TimerAutoPartenza, A_time_without_its_two_digits_is_told_and_never_comes) {
  standard("22/11/2026", "9.05", "1", "days");
  tickAt(today(9, 5));
  EXPECT_TRUE(runs.empty());
  EXPECT_EQ(balloonsWith("'9.05'"), 1);
}

TEST_F(TimerAutoPartenza, The_mode_says_what_runs_and_without_one_nothing_does) {
  for (const auto& [mode, expected] : {std::pair{"0", Runs{}}, std::pair{"1", Runs{"2026-11-22 13.30 sync"}},
                                       std::pair{"2", Runs{"2026-11-22 13.30"}}, std::pair{"255", Runs{}}}) {
    runs.clear();
    standard("22/11/2026", "13.30", "1", "days", mode);
    tickAt(today(13, 30));
    EXPECT_EQ(runs, expected) << mode;
  }
}

TEST_F(TimerAutoPartenza, A_visible_program_starts_nothing_and_the_guard_stays_as_it_was) {
  ApplicazioneNascosta = false;
  for (const bool guard : {false, true}) {
    standard("22/11/2026", "13.30", "1", "days");
    PartenzaAutomaticaAttiva = guard;
    tickAt(today(13, 30));
    EXPECT_TRUE(runs.empty());
    EXPECT_EQ(PartenzaAutomaticaAttiva, guard);
  }
}

TEST_F(TimerAutoPartenza, Within_less_than_three_minutes_of_a_start_it_ticks_twice_a_second_again) {
  struct {
    platform::CivilTime moment;
    unsigned interval;
  } const cases[] = {{today(13, 26), 60'000}, {today(13, 27), 60'000}, {today(13, 28), 500},
                     {today(13, 29), 500},    {today(13, 31), 500},    {today(13, 32), 500},
                     {today(13, 33), 60'000}, {today(23, 59), 60'000}};
  for (const auto& tick : cases) {
    standard("22/11/2026", "13.30", "1", "days");
    form.TimerAutoPartenza.Interval = 60'000;
    tickAt(tick.moment);
    EXPECT_EQ(form.TimerAutoPartenza.Interval, tick.interval) << tick.moment.minute;
  }
}

TEST_F(PartenzaAutomatica, While_it_runs_the_timer_is_off_the_guard_set_and_the_icon_flashes) {
  standard("22/11/2026", "13.30", "1", "days");
  int changes = 0, refreshed = 0;
  form.TimerCambiati = [&] { ++changes; };
  form.AggiornaTray = [&] {
    ++refreshed;
    EXPECT_FALSE(form.TimerAnimazione.Enabled);
  };
  duringRun = [&] {
    EXPECT_FALSE(form.TimerAutoPartenza.Enabled);
    EXPECT_EQ(form.TimerAutoPartenza.Interval, 60'000U);
    EXPECT_TRUE(form.TimerAnimazione.Enabled);
    EXPECT_TRUE(PartenzaAutomaticaAttiva);
    EXPECT_EQ(changes, 2);
  };
  tickAt(today(13, 30));
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_TRUE(form.TimerAutoPartenza.Enabled);
  EXPECT_EQ(form.TimerAutoPartenza.Interval, 60'000U);
  EXPECT_FALSE(form.TimerAnimazione.Enabled);
  EXPECT_FALSE(PartenzaAutomaticaAttiva);
  EXPECT_EQ(changes, 4);
  EXPECT_EQ(refreshed, 1);
}

TEST_F(PartenzaAutomatica, A_minute_with_events_follows_the_run_so_that_its_minute_cannot_start_it_again) {
  standard("22/11/2026", "13.30", "1", "giorni");  // a word of the other language: the date does not move
  folder.screen.onEvents = [&] {
    EXPECT_FALSE(form.TimerAutoPartenza.Enabled);
    EXPECT_TRUE(PartenzaAutomaticaAttiva);
  };
  tickAt(today(13, 30, 10));
  folder.screen.onEvents = nullptr;
  EXPECT_GE(folder.screen.events, 60);
  EXPECT_EQ(time.local(), today(13, 31, 10));
  EXPECT_EQ(value("Timer_Start_Date"), "22/11/2026");
  passUntil(at(2026, 11, 24));
  EXPECT_EQ(runs, Runs{"2026-11-22 13.30"});
}

TEST_F(PartenzaAutomatica, A_run_that_fails_moves_its_date_on_all_the_same) {
  for (const EsitoOperazione result : {EsitoOperazione::FileFalliti, EsitoOperazione::Rifiutato,
                                       EsitoOperazione::Annullato, EsitoOperazione::ErroreSuperato}) {
    standard("22/11/2026", "13.30", "1", "days");
    outcome = result;
    tickAt(today(13, 30));
    EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026");
    EXPECT_EQ(Timer_Start_Date, "23/11/2026");
  }
}

TEST_F(PartenzaAutomatica, A_program_that_ends_waits_for_no_minute_and_starts_no_further_entry) {
  advanced({{"22/11/2026", "13.30", "1 days"}, {"22/11/2026", "13.30", "1 days"}});
  bool ending = false;
  form.InChiusura = [&] { return ending; };
  duringRun = [&] { ending = true; };
  tickAt(today(13, 30));
  EXPECT_EQ(runs.size(), 1U);
  EXPECT_EQ(time.local(), today(13, 30));
  EXPECT_EQ(value("1Timer_Adv_Date"), "23/11/2026");
}

TEST_F(PartenzaAutomatica, A_wrong_date_is_told_once_in_the_log_and_by_a_notice_and_nothing_runs) {
  for (const char* date : {"31/02/2026", "tomorrow", ""}) {
    folder.screen.balloons.clear();
    folder.setting("Timer_Start_Date", "x");
    standard(date, "13.30", "1", "days");
    for (int i = 0; i < 5; ++i) tickAt(today(13, 30, i));
    EXPECT_TRUE(runs.empty());
    EXPECT_EQ(balloonsWith("'" + std::string(date) + "'"), 1) << date;
    EXPECT_EQ(value("Timer_Start_Date"), date);
  }
  EXPECT_EQ(test::countLinesWith(test::logLines(folder.log()), "'31/02/2026'"), 1);
}

TEST_F(GuardiaDiPartenza, A_tick_clears_it_once_the_clock_has_passed_the_start) {
  standard("23/11/2026", "13.30", "1", "days");
  PartenzaAutomaticaAttiva = true;
  tickAt(today(13, 30, 59));
  EXPECT_TRUE(PartenzaAutomaticaAttiva);
  tickAt(today(13, 31, 0));
  EXPECT_FALSE(PartenzaAutomaticaAttiva);
}

TEST_F(GuardiaDiPartenza, With_advanced_timers_any_entrys_time_that_has_passed_clears_it) {
  advanced({{"23/11/2026", "18.00", "1 days"}, {"23/11/2026", "13.30", "1 days"}});
  PartenzaAutomaticaAttiva = true;
  tickAt(today(13, 30));
  EXPECT_TRUE(PartenzaAutomaticaAttiva);
  tickAt(today(13, 31));
  EXPECT_FALSE(PartenzaAutomaticaAttiva);
}

TEST_F(GuardiaDiPartenza, The_tick_that_clears_it_may_start_a_run) {
  advanced({{"22/11/2026", "14.00", "1 days"}, {"23/11/2026", "13.30", "1 days"}});
  PartenzaAutomaticaAttiva = true;
  tickAt(today(14, 0));
  EXPECT_EQ(runs, Runs{"2026-11-22 14.00 Night.cfg"});
}

// The guard goes by the time of day: after midnight no clock has passed the start of the evening before.
TEST_F(GuardiaDiPartenza, A_run_over_midnight_holds_the_next_start_back_until_its_time_has_passed) {
  standard("22/11/2026", "23.30", "1", "days");
  runLasts = 3'600'000;
  tickAt(today(23, 30));
  EXPECT_TRUE(PartenzaAutomaticaAttiva);
  EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026");
  passUntil(at(2026, 11, 23, 23, 31));
  EXPECT_TRUE(PartenzaAutomaticaAttiva);
  passUntil(at(2026, 11, 23, 23, 35));
  EXPECT_FALSE(PartenzaAutomaticaAttiva);
  EXPECT_EQ(runs.size(), 1U);
}

TEST_F(GuardiaDiPartenza, No_text_of_the_clock_is_greater_than_a_start_in_the_last_minute_of_the_day) {
  standard("22/11/2026", "23.59", "1", "days");
  passUntil(at(2026, 11, 26));
  EXPECT_EQ(runs, Runs{"2026-11-22 23.59"});
  EXPECT_TRUE(PartenzaAutomaticaAttiva);
}

TEST_F(TimerAvanzatiInMarcia, Each_entry_runs_with_its_own_profile_and_the_current_one_comes_back) {
  advanced({{"22/11/2026", "13.30", "1 days", "C:\\p\\One.cfg"},
            {"22/11/2026", "13.40", "1 weeks", "C:\\p\\Two.cfg"},
            {"22/11/2026", "13.50", "1 months", "C:\\p\\Three.cfg"}});
  const std::string profile = FileProfilo;
  duringRun = [&] { EXPECT_NE(FileProfilo, profile); };
  passUntil(today(14, 0));
  EXPECT_EQ(runs,
            (Runs{"2026-11-22 13.30 One.cfg", "2026-11-22 13.40 Two.cfg", "2026-11-22 13.50 Three.cfg"}));
  EXPECT_EQ(FileProfilo, profile);
  EXPECT_EQ(value("1Timer_Adv_Date"), "23/11/2026");
  EXPECT_EQ(value("2Timer_Adv_Date"), "29/11/2026");
  EXPECT_EQ(value("3Timer_Adv_Date"), "22/12/2026");
  EXPECT_EQ(TimerAdvList.at(3).Date, "22/12/2026");
}

// The program may be shown in the minute behind a run, and a profile chosen.
TEST_F(TimerAvanzatiInMarcia,
       Behind_a_run_the_current_profile_is_the_users_and_stays_the_one_he_chooses_then) {
  advanced({{"22/11/2026", "13.30", "1 days", "C:\\p\\One.cfg"}});
  const std::string profile = FileProfilo;
  bool ran = false, chosen = false;
  duringRun = [&] { ran = true; };
  folder.screen.onEvents = [&] {
    if (!ran || chosen) return;
    EXPECT_EQ(FileProfilo, profile);
    FileProfilo = "C:\\p\\Chosen.cfg";
    chosen = true;
  };
  tickAt(today(13, 30));
  EXPECT_TRUE(chosen);
  EXPECT_EQ(FileProfilo, "C:\\p\\Chosen.cfg");
}

TEST_F(TimerAvanzatiInMarcia, A_run_that_is_due_during_another_operation_is_refused) {
  form.AltraOperazione = [] { return true; };
  EXPECT_EQ(form.EseguiLavoro(2), EsitoOperazione::Rifiutato);
}

TEST_F(TimerAvanzatiInMarcia, A_tick_without_a_run_leaves_the_current_profile_too) {
  advanced({{"23/11/2026", "13.30", "1 days"}});
  const std::string profile = FileProfilo;
  tickAt(today(13, 30));
  EXPECT_EQ(FileProfilo, profile);
}

// The first entry's run lasts beyond the minute that both name, and there is no tolerance.
TEST_F(TimerAvanzatiInMarcia, The_second_of_two_entries_in_one_minute_is_missed) {
  advanced({{"22/11/2026", "13.30", "1 days", "C:\\p\\One.cfg"},
            {"22/11/2026", "13.30", "1 days", "C:\\p\\Two.cfg"}});
  passUntil(at(2026, 11, 24));
  EXPECT_EQ(runs, (Runs{"2026-11-22 13.30 One.cfg", "2026-11-23 13.30 One.cfg"}));
  EXPECT_EQ(value("2Timer_Adv_Date"), "22/11/2026");
}

TEST_F(TimerAvanzatiInMarcia, An_entry_that_comes_due_in_the_minute_after_a_run_is_started_in_the_same_tick) {
  advanced({{"22/11/2026", "13.30", "1 days", "C:\\p\\One.cfg"},
            {"22/11/2026", "13.31", "1 days", "C:\\p\\Two.cfg"}});
  tickAt(today(13, 30, 20));
  EXPECT_EQ(runs, (Runs{"2026-11-22 13.30 One.cfg", "2026-11-22 13.31 Two.cfg"}));
}

TEST_F(TimerAvanzatiInMarcia, A_wrong_entry_does_not_keep_the_others_from_running) {
  advanced(
      {{"never", "13.30", "1 days", "C:\\p\\One.cfg"}, {"22/11/2026", "13.30", "1 days", "C:\\p\\Two.cfg"}});
  tickAt(today(13, 30));
  EXPECT_EQ(runs, Runs{"2026-11-22 13.30 Two.cfg"});
  EXPECT_EQ(balloonsWith("'never'"), 1);
}

TEST_F(TimerAvanzatiInMarcia, Settings_read_anew_during_a_run_do_not_disturb_the_list_in_use) {
  advanced({{"22/11/2026", "13.30", "1 days", "C:\\p\\One.cfg"},
            {"22/11/2026", "13.31", "1 days", "C:\\p\\Two.cfg"}});
  duringRun = [&] {
    const std::string text = settings();
    folder.home().write("GlobalSetting.dat", text.substr(0, text.find("1Timer_Adv")));
    std::string error;
    EXPECT_TRUE(CaricaImpostazioni(error)) << error;
    folder.home().write("GlobalSetting.dat", text);
  };
  tickAt(today(13, 30));
  EXPECT_EQ(runs.size(), 2U);
}

TEST_F(TimerAvanzatiInMarcia, A_number_of_0_runs_on_its_day_and_stays_there) {
  advanced({{"22/11/2026", "13.30", "0 days"}});
  passUntil(at(2026, 11, 25));
  EXPECT_EQ(runs.size(), 1U);
  EXPECT_EQ(value("1Timer_Adv_Date"), "22/11/2026");
}

TEST_F(AggiornaProssimaPartenza, The_file_keeps_every_other_byte) {
  standard("22/11/2026", "13.30", "1", "days");
  folder.home().write("GlobalSetting.dat", "# by hand\n" + settings() + "\nOwn_Key = 1");
  std::string expected = settings();
  expected.replace(expected.find("22/11/2026"), 10, "23/11/2026");
  tickAt(today(13, 30));
  EXPECT_EQ(settings(), expected);
}

TEST_F(AggiornaProssimaPartenza, A_file_that_cannot_be_read_is_told_and_the_program_goes_on) {
  standard("22/11/2026", "13.30", "1", "days");
  duringRun = [&] { std::filesystem::remove(folder.host("GlobalSetting.dat")); };
  tickAt(today(13, 30));
  EXPECT_EQ(balloonsWith("GlobalSetting.dat"), 1);
  EXPECT_TRUE(form.TimerAutoPartenza.Enabled);
}

TEST_F(AggiornaProssimaPartenza, A_value_that_became_wrong_during_the_run_is_told_and_stays) {
  standard("22/11/2026", "13.30", "1", "days");
  duringRun = [&] { folder.setting("Timer_Start_Date", "soon"); };
  tickAt(today(13, 30));
  EXPECT_EQ(value("Timer_Start_Date"), "soon");
  EXPECT_EQ(balloonsWith("'soon'"), 1);
}

// --- months of schedule

class Zones : public ::testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Schedule, Zones,
                         ::testing::Values("UTC", "Europe/Rome", "America/New_York", "Australia/Lord_Howe",
                                           "Africa/Cairo"),
                         [](const auto& zone) {
                           std::string name = zone.param;
                           for (char& c : name)
                             if (c == '/') c = '_';
                           return name;
                         });

// Every run of a schedule is in its time, and none is missing.
void expectRuns(const Scheduler& scheduler, DataCivile first, int daysBetween, std::size_t count) {
  ASSERT_EQ(scheduler.runs.size(), count);
  FormatoData = "yyyy-mm-dd";
  for (const std::string& run : scheduler.runs) {
    EXPECT_EQ(run, TestoDiData(first) + " 13.30");
    first = std::chrono::sys_days(first) + std::chrono::days(daysBetween);
  }
}

TEST_P(Zones, A_weekly_start_comes_once_a_week_through_a_year_and_its_changes_of_summer_time) {
  Scheduler scheduler({2026, 1, 1, 12, 0, 0}, GetParam());
  scheduler.standard("01/01/2026", "13.30", "1", "weeks");
  scheduler.runLasts = 1'800'000;
  scheduler.passUntil({2027, 1, 1, 0, 0, 0});
  expectRuns(scheduler, std::chrono::year(2026) / 1 / 1, 7, 53);
}

platform::CivilTime noonOf(DataCivile date) {
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())), 12};
}

TEST(Schedule, A_daily_start_comes_once_a_day_while_summer_time_begins_and_ends) {
  for (const char* zone : {"Europe/Rome", "America/New_York"}) {
    for (const DataCivile first : {std::chrono::year(2026) / 3 / 1, std::chrono::year(2026) / 10 / 18}) {
      Scheduler scheduler(noonOf(first), zone);
      scheduler.standard(TestoDiData(first), "13.30", "1", "days");
      scheduler.passUntil(noonOf(std::chrono::sys_days(first) + std::chrono::days(34)));
      expectRuns(scheduler, first, 1, 34);
    }
  }
}

TEST_P(Zones, At_midnight_the_day_that_begins_is_the_one_that_counts) {
  Scheduler scheduler({2026, 2, 27, 12, 0, 0}, GetParam());
  scheduler.standard("28/02/2026", "00.00", "1", "days");
  scheduler.passUntil({2026, 3, 3, 12, 0, 0});
  EXPECT_EQ(scheduler.runs,
            (Runs{"2026-02-28 00.00", "2026-03-01 00.00", "2026-03-02 00.00", "2026-03-03 00.00"}));
}

TEST(Schedule, A_start_in_the_hour_that_summer_time_skips_is_missed_until_the_program_starts_again) {
  struct {
    const char* zone;
    platform::CivilTime evening, after;
    const char *date, *skipped;
  } const cases[] = {
      {"Europe/Rome", {2026, 3, 27, 20, 0, 0}, {2026, 4, 2, 12, 0, 0}, "28/03/2026", "29/03/2026"},
      {"America/New_York", {2026, 3, 6, 20, 0, 0}, {2026, 3, 12, 12, 0, 0}, "07/03/2026", "08/03/2026"}};
  for (const auto& change : cases) {
    Scheduler scheduler(change.evening, change.zone);
    scheduler.standard(change.date, "02.30", "1", "days");
    scheduler.passUntil(change.after);
    EXPECT_EQ(scheduler.runs.size(), 1U) << change.zone;
    EXPECT_EQ(scheduler.value("Timer_Start_Date"), change.skipped);
    FrmStart again;
    again.Carica();
    EXPECT_EQ(*DataDaTesto(scheduler.value("Timer_Start_Date")), DataOdierna());
  }
}

TEST(Schedule, A_start_in_the_hour_that_comes_twice_runs_once) {
  struct {
    const char* zone;
    platform::CivilTime before, after;
    const char *date, *hour;
  } const cases[] = {
      {"Europe/Rome", {2026, 10, 24, 20, 0, 0}, {2026, 10, 25, 12, 0, 0}, "25/10/2026", "02.30"},
      {"America/New_York", {2026, 10, 31, 20, 0, 0}, {2026, 11, 1, 12, 0, 0}, "01/11/2026", "01.30"}};
  for (const auto& change : cases) {
    for (const char* word : {"days", "giorni"}) {
      Scheduler scheduler(change.before, change.zone);
      scheduler.standard(change.date, change.hour, "1", word);
      scheduler.passUntil(change.after);
      // Without a unit the date stays, so the hour's second coming starts it once more.
      EXPECT_EQ(scheduler.runs.size(), std::string(word) == "days" ? 1U : 2U) << change.zone << word;
    }
  }
}

TEST(Schedule, Months_from_the_31st_stay_on_the_shorter_months_last_day_and_go_on_from_there) {
  Scheduler scheduler({2027, 12, 30, 12, 0, 0});
  scheduler.standard("31/12/2027", "08.00", "1", "months");
  scheduler.passUntil({2028, 5, 1, 0, 0, 0});
  EXPECT_EQ(scheduler.runs, (Runs{"2027-12-31 08.00", "2028-01-31 08.00", "2028-02-29 08.00",
                                  "2028-03-29 08.00", "2028-04-29 08.00"}));
}

TEST(Schedule, Weeks_and_days_go_over_leap_days_month_ends_and_year_ends) {
  Scheduler scheduler({2027, 12, 30, 12, 0, 0});
  scheduler.advanced(
      {{"31/12/2027", "08.00", "4 weeks", "C:\\W.cfg"}, {"28/02/2028", "09.00", "1 days", "C:\\D.cfg"}});
  scheduler.passUntil({2028, 3, 2, 0, 0, 0});
  EXPECT_EQ(scheduler.runs,
            (Runs{"2027-12-31 08.00 W.cfg", "2028-01-28 08.00 W.cfg", "2028-02-25 08.00 W.cfg",
                  "2028-02-28 09.00 D.cfg", "2028-02-29 09.00 D.cfg", "2028-03-01 09.00 D.cfg"}));
}

TEST(Schedule, Hours_run_through_the_rest_of_the_day_and_never_on_the_next_one) {
  Scheduler scheduler({2026, 11, 22, 12, 0, 0});
  scheduler.standard("22/11/2026", "13.30", "3", "hours");
  scheduler.passUntil({2026, 11, 26, 0, 0, 0});
  EXPECT_EQ(scheduler.runs,
            (Runs{"2026-11-22 13.30", "2026-11-22 16.30", "2026-11-22 19.30", "2026-11-22 22.30"}));
  EXPECT_EQ(scheduler.value("Timer_Start_Date"), "22/11/2026");
  EXPECT_EQ(scheduler.value("Timer_Start_Time"), "01.30");
  // Not even the program's next start moves a date by hours.
  FrmStart again;
  again.Carica();
  EXPECT_EQ(scheduler.value("Timer_Start_Date"), "22/11/2026");
}

TEST(Schedule, A_start_that_was_missed_while_the_program_was_visible_is_not_made_up_for) {
  Scheduler scheduler({2026, 11, 22, 12, 0, 0});
  scheduler.standard("22/11/2026", "13.30", "1", "days");
  ApplicazioneNascosta = false;
  scheduler.passUntil({2026, 11, 22, 14, 0, 0});
  ApplicazioneNascosta = true;
  scheduler.passUntil({2026, 11, 25, 0, 0, 0});
  EXPECT_TRUE(scheduler.runs.empty());
  EXPECT_EQ(scheduler.value("Timer_Start_Date"), "22/11/2026");
}

TEST(Schedule, The_timers_own_intervals_miss_no_start) {
  Scheduler scheduler({2026, 11, 22, 13, 20, 0});
  scheduler.standard("22/11/2026", "13.30", "1", "hours");
  const std::int64_t end = platform::utcFromLocal({2026, 11, 22, 17, 0, 0}).value();
  while (platform::now() < end) {
    if (scheduler.form.TimerAutoPartenza.Enabled) scheduler.form.TimerAutoPartenza_Timer();
    test::SimulatedTime::pass(scheduler.form.TimerAutoPartenza.Interval);
  }
  EXPECT_EQ(scheduler.runs,
            (Runs{"2026-11-22 13.30", "2026-11-22 14.30", "2026-11-22 15.30", "2026-11-22 16.30"}));
}

}  // namespace
}  // namespace tandemize
