#include <gtest/gtest.h>

#include <ctime>

#include "platform/environment.h"
#include "shell/ModuloPrincipale.h"
#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

using test::Comparison;
using test::ProgramFolder;
using test::ScopedVariable;
using test::SomeDate;

class Zone {
 public:
  explicit Zone(const std::string& name) : variable_("TZ", name) { ::tzset(); }

 private:
  ScopedVariable variable_;
};

constexpr const char* CentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr std::int64_t SecondHourBegins = 1729990800;  // 27 October 2024, 2:00 for the second time
constexpr std::int64_t Hour = 3600;

bool same(std::int64_t one, std::int64_t other) {
  RecordFile a, b;
  a.Data = one;
  b.Data = other;
  const bool result = DateUguali(a, b);
  EXPECT_EQ(DateUguali(b, a), result);
  return result;
}

TEST(DateUguali, Two_seconds_apart_is_the_same_and_three_are_not) {
  const ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  for (const std::int64_t apart : {-3, -2, -1, 0, 1, 2, 3})
    EXPECT_EQ(same(SomeDate, SomeDate + apart), apart >= -2 && apart <= 2) << apart;
}

TEST(DateUguali, Holds_across_the_limits_of_minutes_days_and_years) {
  const Zone zone("UTC0");
  const ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  constexpr std::int64_t NewYear = 1704067200;
  EXPECT_TRUE(same(NewYear - 1, NewYear + 1));
  EXPECT_FALSE(same(NewYear - 1, NewYear + 2));
}

TEST(DateUguali, The_hour_that_comes_twice_in_autumn_has_one_text) {
  const Zone zone(CentralEurope);
  const ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  EXPECT_TRUE(same(SecondHourBegins + 60, SecondHourBegins + 60 - Hour));
  EXPECT_TRUE(same(SecondHourBegins + 62, SecondHourBegins + 60 - Hour));
  EXPECT_FALSE(same(SecondHourBegins + 63, SecondHourBegins + 60 - Hour));
}

TEST(DateUguali, The_text_counts_where_it_lacks_the_century) {
  const Zone zone("UTC0");
  const ProgramFolder program;
  FormatoData = "dd/mm/yy";
  constexpr std::int64_t In1924 = -1440720000, In2024 = 1715040000;  // 7 May
  EXPECT_TRUE(same(In1924, In2024));
  EXPECT_FALSE(same(In1924, In2024 + 3));
  EXPECT_TRUE(same(SomeDate, SomeDate + 2));
}

TEST(DateUguali, A_record_without_a_date_has_it_read_through_its_path_and_keeps_it) {
  Comparison comparison;
  comparison.file(0, "a");
  comparison.file(1, "a", "x", 2);
  comparison.scan();
  RecordFile &one = ArrayScansione.Riga(0, 0), &other = ArrayScansione.Riga(1, 0);
  one.Data = DataAssente;
  EXPECT_TRUE(DateUguali(one, other));
  EXPECT_EQ(one.Data, SomeDate);
  other.Data = DataAssente;
  one.Data = SomeDate - 1;
  EXPECT_FALSE(DateUguali(one, other));
  EXPECT_EQ(other.Data, SomeDate + 2);
}

TEST(DateUguali, Two_records_without_a_date_have_the_same_text_and_are_not_read) {
  Comparison comparison;
  comparison.file(0, "a");
  comparison.file(1, "a", "x", 100);
  comparison.scan();
  RecordFile &one = ArrayScansione.Riga(0, 0), &other = ArrayScansione.Riga(1, 0);
  one.Data = other.Data = DataAssente;
  EXPECT_TRUE(DateUguali(one, other));
  EXPECT_EQ(one.Data, DataAssente);
}

TEST(DateUguali, A_date_that_cannot_be_had_differs_from_every_date) {
  Comparison comparison;
  comparison.file(0, "a");
  comparison.scan();
  RecordFile gone = test::scannedFile(Backup_Path[0], "gone");
  EXPECT_FALSE(DateUguali(gone, ArrayScansione.Riga(0, 0)));
  EXPECT_EQ(gone.Data, DataAssente);
}

TEST(DateUguali, Without_any_form_for_dates_none_can_be_told_from_another) {
  const ProgramFolder program;
  FormatoData = "";
  EXPECT_TRUE(same(SomeDate, SomeDate + 1000));
}

}  // namespace
}  // namespace tandemize
