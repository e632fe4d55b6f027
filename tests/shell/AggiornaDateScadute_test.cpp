#include <filesystem>

#include "errors/ModuloLog.h"
#include "platform/files.h"
#include "shell/Lingua.h"
#include "shell/Scheduler.h"

namespace tandemize {
namespace {

using test::Scheduler;

class LoadTest : public ::testing::Test, protected Scheduler {
 protected:
  LoadTest() : Scheduler({2026, 11, 22, 12, 0, 0}) { folder.screen.balloons.clear(); }
  [[nodiscard]] std::vector<Avviso>& notices() { return folder.screen.balloons; }
};

using AggiornaDateScadute = LoadTest;
using Carica = LoadTest;

TEST_F(AggiornaDateScadute, A_date_of_yesterday_becomes_today_in_the_file) {
  standard("21/11/2026", "13.30", "1", "days");
  bool changed = false;
  form.AggiornaDateScadute(changed);
  EXPECT_TRUE(changed);
  EXPECT_EQ(value("Timer_Start_Date"), "22/11/2026");
}

TEST_F(AggiornaDateScadute, Where_nothing_moves_the_file_stays_the_same_one) {
  standard("22/11/2026", "13.30", "1", "days");
  const std::string before = settings();
  std::filesystem::create_hard_link(folder.host("GlobalSetting.dat"), folder.work().host("link"));
  bool changed = true;
  form.AggiornaDateScadute(changed);
  EXPECT_FALSE(changed);
  EXPECT_EQ(settings(), before);
  EXPECT_TRUE(std::filesystem::equivalent(folder.host("GlobalSetting.dat"), folder.work().host("link")));
}

TEST_F(AggiornaDateScadute, A_file_that_cannot_be_read_is_told) {
  std::filesystem::remove(folder.host("GlobalSetting.dat"));
  bool changed = true;
  form.AggiornaDateScadute(changed);
  EXPECT_FALSE(changed);
  ASSERT_EQ(notices().size(), 1U);
  EXPECT_NE(notices()[0].testo.find("GlobalSetting.dat"), std::string::npos);
}

TEST_F(AggiornaDateScadute, A_wrong_date_is_told_and_the_program_goes_on) {
  standard("30/02/2026", "13.30", "1", "days");
  bool changed = true;
  form.AggiornaDateScadute(changed);
  EXPECT_FALSE(changed);
  ASSERT_EQ(notices().size(), 1U);
  EXPECT_NE(notices()[0].testo.find("'30/02/2026'"), std::string::npos);
  EXPECT_NE(notices()[0].testo.find("'Timer_Start_Date'"), std::string::npos);
}

TEST_F(AggiornaDateScadute, The_permissions_of_the_file_stay) {
  standard("21/11/2026", "13.30", "1", "days");
  std::filesystem::permissions(folder.host("GlobalSetting.dat"), std::filesystem::perms(0600));
  bool changed = false;
  form.AggiornaDateScadute(changed);
  ASSERT_TRUE(changed);
  EXPECT_EQ(std::filesystem::status(folder.host("GlobalSetting.dat")).permissions(),
            std::filesystem::perms(0600));
}

TEST_F(Carica, A_date_that_moved_is_in_force_at_once_and_told_for_ten_seconds) {
  for (const bool hidden : {false, true}) {
    notices().clear();
    ApplicazioneNascosta = hidden;
    standard("21/11/2026", "13.30", "1", "days");
    folder.setting("StartUp_PC_Mode", "2");
    form.Carica();
    EXPECT_EQ(Timer_Start_Date, "22/11/2026");
    ASSERT_EQ(notices().size(), 1U);
    EXPECT_EQ(notices()[0].testo, Messaggio(461));
    EXPECT_EQ(notices()[0].secondi, 10);
  }
}

TEST_F(Carica, Advanced_dates_that_moved_are_in_force_at_once) {
  advanced({{"21/11/2026", "13.30", "1 weeks"}});
  form.Carica();
  EXPECT_EQ(TimerAdvList.at(1).Date, "28/11/2026");
}

TEST_F(Carica, A_program_that_starts_with_the_computer_tells_for_five_seconds_what_is_on) {
  struct {
    const char *mode, *withComputer;
    int message;
  } const cases[] = {{"1", "2", 420}, {"2", "2", 60}, {"2", "1", 60}, {"1", "0", 0}, {"0", "2", 0}};
  for (const auto& start : cases) {
    notices().clear();
    standard("23/11/2026", "13.30", "1", "days", start.mode);
    folder.setting("StartUp_PC_Mode", start.withComputer);
    form.Carica();
    ASSERT_EQ(notices().size(), start.message == 0 ? 0U : 1U) << start.mode << start.withComputer;
    if (start.message == 0) continue;
    EXPECT_EQ(notices()[0].testo, Messaggi.at(static_cast<std::size_t>(start.message)));
    EXPECT_EQ(notices()[0].secondi, 5);
    EXPECT_EQ(notices()[0].titolo, TitoloApplicazione);
  }
}

TEST_F(Carica, A_run_missed_today_keeps_its_date_until_a_start_on_a_later_day) {
  standard("22/11/2026", "11.30", "1", "days");
  form.Carica();
  EXPECT_EQ(value("Timer_Start_Date"), "22/11/2026");
  time.set({2026, 11, 23, 8, 0, 0});
  form.Carica();
  EXPECT_EQ(value("Timer_Start_Date"), "23/11/2026");
  passUntil({2026, 11, 24, 0, 0, 0});
  EXPECT_EQ(runs, std::vector<std::string>{"2026-11-23 11.30"});
}

}  // namespace
}  // namespace tandemize
