#include "backup/MisuratoreVelocita.h"

#include <gtest/gtest.h>

#include "backup/BackupRun.h"

namespace tandemize {
namespace {

using test::BackupFolder;

constexpr double KB = 1024, MB = 1048576;
constexpr std::uint64_t Start = 5000;

// A meter after one reading: `moved` bytes within two seconds, `left` still to come.
MisuratoreVelocita reading(double moved, double left) {
  MisuratoreVelocita meter;
  meter.Aggiorna(0, moved + left, Start);
  EXPECT_TRUE(meter.Aggiorna(moved, moved + left, Start + 2000));
  return meter;
}

// The same at 1,000 bytes a second.
std::string timeText(double seconds) {
  return reading(2000, seconds * 1000).Tempo();
}

std::string remaining(const std::string& number, int unit) {
  return number + " " + Messaggio(unit) + " " + Messaggio(185);
}

TEST(MisuratoreVelocita, Before_the_first_reading_there_is_no_text) {
  BackupFolder program;
  MisuratoreVelocita meter;
  EXPECT_FALSE(meter.Aggiorna(10, 100, Start));
  EXPECT_EQ(meter.Tempo() + meter.Velocità(), "");
  EXPECT_EQ(meter.ByteAlSecondo(), 0);
  EXPECT_LT(meter.SecondiRimanenti(), 0);
}

TEST(MisuratoreVelocita, Texts_change_only_when_two_seconds_have_passed) {
  BackupFolder program;
  MisuratoreVelocita meter;
  EXPECT_FALSE(meter.Aggiorna(0, 100000, Start));
  EXPECT_FALSE(meter.Aggiorna(500, 100000, Start + 1999));
  EXPECT_EQ(meter.Tempo(), "");
  EXPECT_TRUE(meter.Aggiorna(1000, 100000, Start + 2000));
  EXPECT_FALSE(meter.Aggiorna(2000, 100000, Start + 3999));
  EXPECT_TRUE(meter.Aggiorna(3000, 100000, Start + 4000));
}

TEST(MisuratoreVelocita, A_clock_at_zero_counts_as_a_reading) {
  BackupFolder program;
  MisuratoreVelocita meter;
  EXPECT_FALSE(meter.Aggiorna(0, 100000, 0));
  EXPECT_TRUE(meter.Aggiorna(5000, 100000, 2500));
}

TEST(MisuratoreVelocita, The_rate_is_that_since_the_last_reading_alone) {
  BackupFolder program;
  MisuratoreVelocita meter;
  meter.Aggiorna(0, 10 * MB, Start);
  meter.Aggiorna(4 * MB, 10 * MB, Start + 2000);
  EXPECT_EQ(meter.ByteAlSecondo(), 2 * MB);
  meter.Aggiorna(5 * MB, 10 * MB, Start + 4000);
  EXPECT_EQ(meter.ByteAlSecondo(), MB / 2);
  EXPECT_EQ(meter.SecondiRimanenti(), 10);
}

TEST(MisuratoreVelocita, Remaining_time_is_told_in_seconds_minutes_or_hours) {
  BackupFolder program;
  const struct {
    double seconds;
    const char* number;
    int unit;
  } cases[] = {{0, "0", 182},    {1, "1", 182},    {30, "30", 182},   {59, "59", 182},   {61, "1", 183},
               {90, "2", 183},   {150, "2", 183},  {300, "5", 183},   {3599, "60", 183}, {3601, "1", 184},
               {5400, "2", 184}, {7200, "2", 184}, {36000, "10", 184}};
  for (const auto& c : cases) EXPECT_EQ(timeText(c.seconds), remaining(c.number, c.unit)) << c.seconds;
}

TEST(MisuratoreVelocita, Exactly_sixty_seconds_and_exactly_an_hour_leave_the_text_as_it_was) {
  BackupFolder program;
  EXPECT_EQ(timeText(60), "");
  EXPECT_EQ(timeText(3600), "");
  MisuratoreVelocita meter;
  meter.Aggiorna(0, 74000, Start);
  meter.Aggiorna(2000, 74000, Start + 2000);
  EXPECT_EQ(meter.Tempo(), remaining("1", 183));
  meter.Aggiorna(14000, 374000, Start + 4000);
  EXPECT_EQ(meter.SecondiRimanenti(), 60);
  EXPECT_EQ(meter.Tempo(), remaining("1", 183));
}

TEST(MisuratoreVelocita, More_bytes_than_there_should_be_count_as_one_second) {
  BackupFolder program;
  EXPECT_EQ(timeText(-5), remaining("1", 182));
}

TEST(MisuratoreVelocita, Speed_is_told_in_KB_below_1024_and_in_MB_from_there) {
  BackupFolder program;
  const struct {
    double bytesASecond;
    const char* text;
  } cases[] = {{350 * KB, "350 KB/s"}, {KB, "1 KB/s"},       {2.4 * KB, "2 KB/s"},
               {2.5 * KB, "2 KB/s"},   {3.5 * KB, "4 KB/s"}, {1023 * KB, "1023 KB/s"},
               {MB, "1 MB/s"},         {12 * MB, "12 MB/s"}, {1.5 * MB, "2 MB/s"}};
  for (const auto& c : cases) EXPECT_EQ(reading(2 * c.bytesASecond, 1).Velocità(), c.text) << c.bytesASecond;
}

TEST(MisuratoreVelocita, A_rate_below_one_KB_shows_as_one_MB) {
  BackupFolder program;
  EXPECT_EQ(reading(2 * 1023, 1).Velocità(), "1 MB/s");
  EXPECT_EQ(reading(2, 1).Velocità(), "1 MB/s");
}

TEST(TestoTrasferiti, Amounts_below_two_MiB_in_all_are_told_in_KB) {
  BackupFolder program;
  EXPECT_EQ(TestoTrasferiti(12 * KB, 345 * KB, 3, 17), Messaggio(186) + " 12/345 KB (3/17 Files)");
  EXPECT_EQ(TestoTrasferiti(0, 2097151, 0, 1), Messaggio(186) + " 0/2048 KB (0/1 Files)");
}

TEST(TestoTrasferiti, Amounts_from_two_MiB_on_are_told_in_MB) {
  BackupFolder program;
  EXPECT_EQ(TestoTrasferiti(0, 2097152, 0, 1), Messaggio(186) + " 0/2 MB (0/1 Files)");
  EXPECT_EQ(TestoTrasferiti(700 * MB, 5000 * MB, 2, 9), Messaggio(186) + " 700/5000 MB (2/9 Files)");
}

TEST(TestoTrasferiti, Never_more_is_done_than_there_is) {
  BackupFolder program;
  EXPECT_EQ(TestoTrasferiti(900 * KB, 345 * KB, 3, 3), Messaggio(186) + " 345/345 KB (3/3 Files)");
}

TEST(TestoTrasferiti, Nothing_to_move_is_zero_of_zero) {
  BackupFolder program;
  EXPECT_EQ(TestoTrasferiti(0, 0, 1, 1), Messaggio(186) + " 0/0 KB (1/1 Files)");
}

}  // namespace
}  // namespace tandemize
