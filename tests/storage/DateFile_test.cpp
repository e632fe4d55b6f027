#include <gtest/gtest.h>

#include <ctime>

#include "platform/machine.h"
#include "shell/ModuloPrincipale.h"
#include "storage/File_System.h"
#include "storage/Retries.h"

namespace tandemize {
namespace {

using test::ProgramFolder;

// The time zone of a test, put back behind it.
class TimeZone {
 public:
  explicit TimeZone(const char* zone) {
    if (const char* old = std::getenv("TZ")) old_ = old, hadOne_ = true;
    ::setenv("TZ", zone, 1);
    ::tzset();
  }
  ~TimeZone() {
    if (hadOne_)
      ::setenv("TZ", old_.c_str(), 1);
    else
      ::unsetenv("TZ");
    ::tzset();
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  std::string old_;
  bool hadOne_ = false;
};

constexpr const char* CentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr std::int64_t WinterNoon = 1705316400;  // 15 January 2024, 11:00 UTC
constexpr std::int64_t SummerNoon = 1721037600;  // 15 July 2024, 10:00 UTC

RecordRicerca recordOf(platform::FileTime lastWrite) {
  RecordRicerca record;
  record.ftLastWriteTime = lastWrite;
  record.ftCreationTime = {11, 0};
  record.ftLastAccessTime = {22, 0};
  return record;
}

std::string dateOf(platform::FileTime lastWrite) {
  std::int64_t creation = 0, lastAccess = 0;
  return DateFile(recordOf(lastWrite), creation, lastAccess, "");
}

TEST(DateFile, Is_the_date_in_the_users_form_and_the_time_with_points) {
  const TimeZone zone("UTC0");
  ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  EXPECT_EQ(dateOf({WinterNoon + 5, 0}), "15/01/2024 11.00.05");
  FormatoData = "yyyy-M-d";
  EXPECT_EQ(dateOf({WinterNoon, 0}), "2024-1-15 11.00.00");
}

TEST(DateFile, Uses_the_offset_that_held_at_the_date_of_the_file) {
  const TimeZone zone(CentralEurope);
  ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  EXPECT_EQ(dateOf({WinterNoon, 0}), "15/01/2024 12.00.00");
  EXPECT_EQ(dateOf({SummerNoon, 0}), "15/07/2024 12.00.00");
}

TEST(DateFile, Parts_of_a_second_do_not_count_before_or_after_1970) {
  const TimeZone zone("UTC0");
  ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  EXPECT_EQ(dateOf({WinterNoon, 999999999}), "15/01/2024 11.00.00");
  EXPECT_EQ(dateOf({-1, 999999999}), "31/12/1969 23.59.59");
}

TEST(DateFile, The_other_two_dates_are_given_as_seconds) {
  ProgramFolder program;
  std::int64_t creation = 0, lastAccess = 0;
  static_cast<void>(DateFile(recordOf({0, 0}), creation, lastAccess, ""));
  EXPECT_EQ(creation, 11);
  EXPECT_EQ(lastAccess, 22);
}

TEST(DateFile, A_date_that_never_becomes_valid_ends_all_the_same) {
  ProgramFolder program;
  program.work().write("file", "");
  FormatoData = "";
  std::int64_t creation = 0, lastAccess = 0;
  EXPECT_FALSE(
      IsDataValida(DateFile(recordOf({WinterNoon, 0}), creation, lastAccess, program.program("file"))));
  EXPECT_EQ(DateFile(recordOf({WinterNoon, 0}), creation, lastAccess, program.program("") + "\\gone"), "");
}

TEST(DataFileDaRicerca, Reads_the_same_date_anew) {
  const TimeZone zone("UTC0");
  ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  program.work().write("file", "");
  ASSERT_EQ(platform::setFileTime(program.program("file"), {WinterNoon, 7}), platform::kNoError);
  EXPECT_EQ(DataFileDaRicerca(program.program("file")), "15/01/2024 11.00.00");
  EXPECT_EQ(DataFileDaRicerca(program.program("") + "\\gone"), "");
}

TEST(IsDataValida, Takes_dates_of_the_users_form_with_or_without_a_time) {
  ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  for (const char* text : {"31/12/2024", "1/2/2024", "01-02-2024", "01.02.24", "29/02/2024 23.59.59",
                           "01/02/2024 9:05", " 01/02/2024  09.05 "})
    EXPECT_TRUE(IsDataValida(text)) << text;
  for (const char* text :
       {"", " ", "31/11/2024", "29/02/2023", "12/31/2024", "00/01/2024", "01/00/2024", "1/2", "x",
        "01/02/2024x", "01/02/2024 24.00.00", "01/02/2024 10.60", "01/02/2024 10", "01/02/202409.05",
        "01/02/2024 10.00.60", "01/02/2024 10.00.00.", "2024/12/31"})
    EXPECT_FALSE(IsDataValida(text)) << text;
}

TEST(IsDataValida, Follows_the_order_of_the_users_form) {
  ProgramFolder program;
  FormatoData = "M/d/yyyy";
  EXPECT_TRUE(IsDataValida("12/31/2024"));
  EXPECT_FALSE(IsDataValida("31/12/2024"));
  FormatoData = "yyyymmdd";
  EXPECT_TRUE(IsDataValida("20241231 10.00.00"));
  FormatoData = "yyyy年mm月dd日";
  EXPECT_TRUE(IsDataValida("2024年12月31日"));
}

TEST(SecondiDaTesto, Gives_the_moment_back_that_the_text_was_made_of) {
  const TimeZone zone(CentralEurope);
  ProgramFolder program;
  for (const char* format :
       {"dd/mm/yyyy", "M/d/yyyy", "yyyy-MM-dd", "d.m.yy", "yyyymmdd", "yymmdd", "dd-mm-yyyy"}) {
    FormatoData = format;
    for (std::int64_t moment : {WinterNoon, SummerNoon, SummerNoon + 59, std::int64_t{1704063600}})
      EXPECT_EQ(SecondiDaTesto(TestoDataFile(moment)), moment) << format << " " << TestoDataFile(moment);
  }
}

TEST(SecondiDaTesto, A_date_without_a_time_is_its_midnight) {
  const TimeZone zone(CentralEurope);
  ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  EXPECT_EQ(SecondiDaTesto("15/01/2024"), WinterNoon - 12 * 3600);
  EXPECT_EQ(SecondiDaTesto("no date"), std::nullopt);
}

TEST(ImpostaDataFile, Gives_the_file_the_moment_of_the_text) {
  const TimeZone zone(CentralEurope);
  ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  program.work().write("file", "");
  ImpostaDataFile(program.program("file"), "15/07/2024 12.00.00");
  platform::FileStatus status;
  ASSERT_EQ(platform::query(program.program("file"), status), platform::kNoError);
  EXPECT_EQ(status.lastWrite, (platform::FileTime{SummerNoon, 0}));
  EXPECT_EQ(status.lastAccess, (platform::FileTime{SummerNoon, 0}));
}

TEST(ImpostaDataFile, A_text_that_is_no_date_a_missing_file_and_a_server_change_nothing) {
  ProgramFolder program;
  program.work().write("file", "");
  ASSERT_EQ(platform::setFileTime(program.program("file"), {WinterNoon, 0}), platform::kNoError);
  ImpostaDataFile(program.program("file"), "no date");
  ImpostaDataFile(program.program("") + "\\gone", "15/07/2024 12.00.00");
  ImpostaDataFile("/public/file", "15/07/2024 12.00.00");
  platform::FileStatus status;
  ASSERT_EQ(platform::query(program.program("file"), status), platform::kNoError);
  EXPECT_EQ(status.lastWrite, (platform::FileTime{WinterNoon, 0}));
  EXPECT_FALSE(program.work().exists("gone"));
}

}  // namespace
}  // namespace tandemize
