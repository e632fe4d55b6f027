// The name of a full run's subfolder and the file that remembers it.
#include <gtest/gtest.h>

#include <ctime>

#include "backup/BackupRun.h"
#include "platform/machine.h"

namespace tandemize {
namespace {

using test::BackupFolder;

constexpr const char* File = "LastBackup.dat";

std::int64_t momentAt(int year, int month, int day, int hour, int minute) {
  const std::optional<std::int64_t> moment = platform::utcFromLocal({year, month, day, hour, minute, 0});
  return moment.value_or(0);
}

TEST(NomeCartellaBackup, Numbers_have_no_leading_zeros) {
  EXPECT_EQ(NomeCartellaBackup(momentAt(2026, 3, 9, 8, 5)), "Backup__2026_3_9__8_5");
  EXPECT_EQ(NomeCartellaBackup(momentAt(2026, 11, 30, 22, 45)), "Backup__2026_11_30__22_45");
  EXPECT_EQ(NomeCartellaBackup(momentAt(2027, 1, 1, 0, 0)), "Backup__2027_1_1__0_0");
}

TEST(UltimoBackup, A_name_is_written_without_a_line_end_and_read_back) {
  BackupFolder program;
  ASSERT_TRUE(ScriviUltimoBackup("Backup__2026_3_9__8_5"));
  EXPECT_EQ(program.home().read(File), "Backup__2026_3_9__8_5");
  EXPECT_EQ(LeggiUltimoBackup(), "Backup__2026_3_9__8_5");
}

TEST(UltimoBackup, Without_the_file_the_name_is_empty) {
  BackupFolder program;
  EXPECT_EQ(LeggiUltimoBackup(), "");
}

TEST(UltimoBackup, A_shorter_name_leaves_the_tail_of_a_longer_one_and_reads_it_back) {
  BackupFolder program;
  ASSERT_TRUE(ScriviUltimoBackup("Backup__2026_11_30__22_45"));
  ASSERT_TRUE(ScriviUltimoBackup("Backup__2026_12_1__8_5"));
  EXPECT_EQ(program.home().read(File), "Backup__2026_12_1__8_5_45");
  EXPECT_EQ(LeggiUltimoBackup(), "Backup__2026_12_1__8_5_45");
}

TEST(UltimoBackup, A_longer_name_covers_a_shorter_one) {
  BackupFolder program;
  ASSERT_TRUE(ScriviUltimoBackup("short"));
  ASSERT_TRUE(ScriviUltimoBackup("longer name"));
  EXPECT_EQ(LeggiUltimoBackup(), "longer name");
}

TEST(UltimoBackup, The_name_ends_at_the_first_zero_character) {
  BackupFolder program;
  program.home().write(File, std::string("name\0rest", 9));
  EXPECT_EQ(LeggiUltimoBackup(), "name");
}

TEST(UltimoBackup, No_more_than_260_characters_are_read_back) {
  BackupFolder program;
  program.home().write(File, std::string(300, 'n'));
  EXPECT_EQ(LeggiUltimoBackup(), std::string(260, 'n'));
  program.home().write(File, std::string(260, 'n'));
  EXPECT_EQ(LeggiUltimoBackup(), std::string(260, 'n'));
}

TEST(UltimoBackup, Line_ends_of_an_edited_file_belong_to_the_name) {
  BackupFolder program;
  program.home().write(File, "name\r\n");
  EXPECT_EQ(LeggiUltimoBackup(), "name\r\n");
}

TEST(UltimoBackup, A_file_that_cannot_be_written_is_told) {
  BackupFolder program;
  program.home().makeFolder(File);
  EXPECT_FALSE(ScriviUltimoBackup("name"));
}

}  // namespace
}  // namespace tandemize
