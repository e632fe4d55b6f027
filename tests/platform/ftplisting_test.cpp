#include <gtest/gtest.h>

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "platform/environment.h"
#include "platform/ftp/listing.h"

namespace tandemize::platform::ftp {
namespace {

class Zone {
 public:
  explicit Zone(const std::string& name) : variable_(std::in_place, "TZ", name) { ::tzset(); }
  ~Zone() {
    variable_.reset();
    ::tzset();
  }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;

 private:
  std::optional<test::ScopedVariable> variable_;
};

CivilTime civil(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return {year, month, day, hour, minute, second};
}

struct Known {
  std::string line;
  ListedKind kind;
  std::string name;
  std::uint64_t size;
  CivilTime time;
  TimePrecision precision;
};

TEST(ParseListLine, Reads_the_forms_of_unix_and_dos) {
  const auto minute = TimePrecision::Minute, day = TimePrecision::Day;
  const std::vector<Known> known = {
      {"-rw-r--r--    1 1000     1000         4096 Jan 31  2023 name", ListedKind::File, "name", 4096,
       civil(2023, 1, 31), day},
      {"-rw-r--r--   1 anna users 0 dec  1 2023 a", ListedKind::File, "a", 0, civil(2023, 12, 1), day},
      {"drwxr-xr-x+  2 anna domain users 4096 Feb 29  2024 folder", ListedKind::Folder, "folder", 4096,
       civil(2024, 2, 29), day},
      {"-rw-r--r--    1 0        0    5000000000 Jan 31  2023  leading and trailing ", ListedKind::File,
       " leading and trailing ", 5000000000, civil(2023, 1, 31), day},
      {"-rw-r--r--    1 0        0             1 Jan 31  2023 Feb 01  2020 x", ListedKind::File,
       "Feb 01  2020 x", 1, civil(2023, 1, 31), day},
      {"-rw-r--r-- 1 a b 12 2024-01-31 23:59 iso", ListedKind::File, "iso", 12, civil(2024, 1, 31, 23, 59),
       minute},
      {"-rw-r--r-- owner 12 Jan 31  2023 no group", ListedKind::File, "no group", 12, civil(2023, 1, 31),
       day},
      {"srwxrwxrwx 1 a b 0 Jan 31  2023 socket", ListedKind::Other, "socket", 0, civil(2023, 1, 31), day},
      {"crw-rw-rw- 1 a b 1, 3 Jan 31  2023 null", ListedKind::Other, "null", 3, civil(2023, 1, 31), day},
      {"01-31-24  11:59PM                 1234 file name.txt", ListedKind::File, "file name.txt", 1234,
       civil(2024, 1, 31, 23, 59), minute},
      {"01-31-2024  12:05AM       <DIR>          folder", ListedKind::Folder, "folder", 0,
       civil(2024, 1, 31, 0, 5), minute},
      {"01-31-99  12:05PM       <DIR>             blanks", ListedKind::Folder, "   blanks", 0,
       civil(1999, 1, 31, 12, 5), minute},
      {"01-31-24  23:59                    7  x", ListedKind::File, " x", 7, civil(2024, 1, 31, 23, 59),
       minute},
  };
  for (const Known& one : known) {
    ListedEntry entry;
    ASSERT_EQ(parseListLine(one.line, entry), ListedLine::Entry) << one.line;
    EXPECT_EQ(entry.kind, one.kind) << one.line;
    EXPECT_EQ(entry.name, one.name) << one.line;
    EXPECT_EQ(entry.size, one.size) << one.line;
    EXPECT_EQ(entry.time.civil, one.time) << one.line;
    EXPECT_EQ(entry.time.precision, one.precision) << one.line;
    EXPECT_FALSE(entry.time.yearLeftOut || entry.time.utc) << one.line;
  }
}

TEST(ParseListLine, Leaves_the_year_open_where_a_time_of_day_stands) {
  ListedEntry entry;
  ASSERT_EQ(parseListLine("-rw-r--r--    1 0  0  4 Nov  3 07:08 x", entry), ListedLine::Entry);
  EXPECT_TRUE(entry.time.yearLeftOut);
  EXPECT_EQ(entry.time.precision, TimePrecision::Minute);
  EXPECT_EQ(entry.time.civil.hour, 7);
  EXPECT_EQ(entry.time.civil.minute, 8);
}

TEST(ParseListLine, Parts_a_link_from_its_target_by_the_size) {
  ListedEntry entry;
  ASSERT_EQ(parseListLine("lrwxrwxrwx 1 a b 6 Jan 31  2023 link -> target", entry), ListedLine::Entry);
  EXPECT_EQ(entry.kind, ListedKind::Link);
  EXPECT_EQ(entry.name, "link");
  EXPECT_EQ(entry.target, "target");
  ASSERT_EQ(parseListLine("lrwxrwxrwx 1 a b 6 Jan 31  2023 a -> b -> target", entry), ListedLine::Entry);
  EXPECT_EQ(entry.name, "a -> b");
  ASSERT_EQ(parseListLine("lrwxrwxrwx 1 a b 999 Jan 31  2023 a -> b", entry), ListedLine::Entry);
  EXPECT_EQ(entry.name, "a");
}

TEST(ParseListLine, Passes_over_what_is_no_entry) {
  ListedEntry entry;
  for (const std::string line : {"", "   ", "total 8", "Total 0"})
    EXPECT_EQ(parseListLine(line, entry), ListedLine::Nothing) << line;
}

TEST(ParseListLine, Takes_nothing_that_it_does_not_know) {
  ListedEntry entry;
  for (const std::string line :
       {"garbage", "-rw-r--r--", "-rw-r--r-- 1 a b 12 Jan 31  2023", "-rw-r--r-- 1 a b 12 Jan 31  2023 ",
        "-rw-r--r-- 1 a b x Jan 31  2023 name", "-rw-r--r-- 1 a b 12 Jan 32  2023 name",
        "-rw-r--r-- 1 a b 12 Foo 31  2023 name", "-rw-r--r-- 1 a b 12 Jan 31 25:00 name",
        "-rw-r--r-- 1 a b -12 Jan 31  2023 name", "-rw-r--r-- 1 a b 99999999999999999999 Jan 31  2023 name",
        "01-31-24  11:59PM", "01-31-24  11:59PM <DIR>", "01-31-24  11:59PM 12", "01-31-24  99:59PM 12 x"})
    EXPECT_EQ(parseListLine(line, entry), ListedLine::Unknown) << line;
}

TEST(ParseMachineLine, Reads_facts_in_any_order_and_case) {
  ListedEntry entry;
  ASSERT_EQ(parseMachineLine("Size=12;modify=20240131235958.25;TYPE=File;x.y=z;  blank ", entry),
            ListedLine::Entry);
  EXPECT_EQ(entry.name, " blank ");
  EXPECT_EQ(entry.size, 12U);
  EXPECT_TRUE(entry.hasSize && entry.time.utc);
  EXPECT_EQ(entry.time.precision, TimePrecision::Second);
  EXPECT_EQ(entry.time.moment, (FileTime{1706745598, 250000000}));
  ASSERT_EQ(parseMachineLine("type=dir; a;b=c", entry), ListedLine::Entry);
  EXPECT_EQ(entry.kind, ListedKind::Folder);
  EXPECT_EQ(entry.name, "a;b=c");
  EXPECT_EQ(entry.time.precision, TimePrecision::None);
  ASSERT_EQ(parseMachineLine("type=OS.unix=slink:/target; link", entry), ListedLine::Entry);
  EXPECT_EQ(entry.kind, ListedKind::Link);
  EXPECT_EQ(entry.target, "/target");
  ASSERT_EQ(parseMachineLine("type=OS.unix=socket; s", entry), ListedLine::Entry);
  EXPECT_EQ(entry.kind, ListedKind::Other);
}

TEST(ParseMachineLine, Passes_over_the_folder_itself_and_garbage) {
  ListedEntry entry;
  for (const std::string line : {"", "type=cdir;modify=20240131235958; /", "type=pdir; .."})
    EXPECT_EQ(parseMachineLine(line, entry), ListedLine::Nothing) << line;
  for (const std::string line : {"garbage", "no facts here", "type=file;size=1;"})
    EXPECT_EQ(parseMachineLine(line, entry), ListedLine::Unknown) << line;
  ASSERT_EQ(parseMachineLine("size=99999999999999999999999;modify=2024; x", entry), ListedLine::Entry);
  EXPECT_FALSE(entry.hasSize);
  EXPECT_EQ(entry.time.precision, TimePrecision::None);
}

TEST(StaysInFolder, Refuses_every_name_that_leads_elsewhere) {
  for (const std::string name : {"", ".", "..", "../x", "/etc/passwd", "a/b", "a\\b", "..\\x"})
    EXPECT_FALSE(staysInFolder(name)) << name;
  for (const std::string name : {"a", "...", "..a", " ", ".hidden", "a:b", "\"", "\xC3\xA8"})
    EXPECT_TRUE(staysInFolder(name)) << name;
}

TEST(LeadsUpwards, Knows_a_target_that_holds_the_link) {
  for (const std::string target :
       {"/", "/a", "/a/b", ".", "..", "../..", "../b", "../../a/./b/", "../../../../..", "/x/../a"})
    EXPECT_TRUE(leadsUpwards("/a/b", target)) << target;
  for (const std::string target : {"/a/b/c", "/ab", "c", "../c", "/x", "../../x"})
    EXPECT_FALSE(leadsUpwards("/a/b", target)) << target;
  EXPECT_TRUE(leadsUpwards("/", "."));
}

TEST(TimeOfStamp, Is_a_moment_in_utc) {
  EXPECT_EQ(timeOfStamp("19700101000000"), (FileTime{0, 0}));
  EXPECT_EQ(timeOfStamp("20240229123456"), (FileTime{1709210096, 0}));
  EXPECT_EQ(timeOfStamp("19691231235959.5"), (FileTime{-1, 500000000}));
  EXPECT_EQ(timeOfStamp("20161231235960"), (FileTime{1483228799, 0}));
  for (const std::string text :
       {"", "2024", "20230229000000", "20241301000000", "2024010100000x", "20240101240000"})
    EXPECT_FALSE(timeOfStamp(text)) << text;
}

ListedTime listed(const CivilTime& time, TimePrecision precision = TimePrecision::Minute) {
  ListedTime result;
  result.civil = time;
  result.precision = precision;
  return result;
}

TEST(ServerClock, Counts_an_unknown_zone_as_this_machines) {
  const Zone zone("Europe/Rome");
  const ServerClock clock;
  EXPECT_EQ(clock.utcOf(listed(civil(2024, 1, 31, 13, 30)))->seconds, *secondsOf(civil(2024, 1, 31, 12, 30)));
  EXPECT_EQ(clock.utcOf(listed(civil(2024, 7, 31, 13, 30)))->seconds, *secondsOf(civil(2024, 7, 31, 11, 30)));
}

TEST(ServerClock, Learns_the_offset_of_another_zone) {
  const Zone zone("Europe/Rome");
  ServerClock clock;
  clock.learn(listed(civil(2024, 1, 31, 18, 15)), *secondsOf(civil(2024, 1, 31, 12, 30, 59)));
  ASSERT_TRUE(clock.known());
  EXPECT_EQ(clock.utcOf(listed(civil(2024, 7, 1, 5, 45)))->seconds, *secondsOf(civil(2024, 7, 1)));
}

TEST(ServerClock, Follows_this_machines_summer_time_where_the_zone_is_the_same) {
  const Zone zone("Europe/Rome");
  ServerClock clock;
  clock.learn(listed(civil(2024, 1, 31, 13, 30)), *secondsOf(civil(2024, 1, 31, 12, 30)));
  ASSERT_TRUE(clock.known());
  EXPECT_EQ(clock.utcOf(listed(civil(2024, 7, 1, 2)))->seconds, *secondsOf(civil(2024, 7, 1)));
}

TEST(ServerClock, Learns_nothing_from_a_file_that_has_changed) {
  ServerClock clock;
  clock.learn(listed(civil(2024, 1, 31, 13, 31)), *secondsOf(civil(2024, 1, 31, 12, 30)));
  clock.learn(listed(civil(2024, 1, 31, 13, 30)), *secondsOf(civil(2024, 3, 31, 12, 30)));
  clock.learn(listed(civil(2024, 1, 31), TimePrecision::Day), *secondsOf(civil(2024, 1, 31)));
  EXPECT_FALSE(clock.known());
}

TEST(ServerClock, A_date_without_time_stays_that_day_whatever_the_zone) {
  const Zone zone("Europe/Rome");
  ServerClock clock;
  clock.learn(listed(civil(2024, 1, 31, 3, 30)), *secondsOf(civil(2024, 1, 31, 12, 30)));
  const auto moment = clock.utcOf(listed(civil(2020, 5, 6), TimePrecision::Day));
  EXPECT_EQ(localTime(moment->seconds), civil(2020, 5, 6));
}

TEST(ServerClock, A_year_left_out_is_the_last_that_is_not_in_the_future) {
  const ServerClock clock;
  const std::int64_t present = now();
  for (const int days : {0, 1, 30, 200, 360}) {
    ListedTime time = listed(localTime(present - days * std::int64_t{86400}));
    time.civil.second = 0;
    const CivilTime expected = time.civil;
    time.civil.year = 1970;
    time.yearLeftOut = true;
    const auto moment = clock.utcOf(time);
    ASSERT_TRUE(moment) << days;
    if (expected.month == 2 && expected.day == 29) continue;  // tested below
    EXPECT_EQ(localTime(moment->seconds), expected) << days;
  }
  ListedTime leapDay = listed(civil(1970, 2, 29, 1, 2));
  leapDay.yearLeftOut = true;
  EXPECT_EQ(localTime(clock.utcOf(leapDay)->seconds).day, 29);
}

TEST(ServerClock, Gives_nothing_for_a_date_that_does_not_exist) {
  const ServerClock clock;
  EXPECT_FALSE(clock.utcOf(listed(civil(2023, 2, 30, 1, 1))));
  EXPECT_FALSE(clock.utcOf(listed(civil(2023, 2, 3), TimePrecision::None)));
}

}  // namespace
}  // namespace tandemize::platform::ftp
