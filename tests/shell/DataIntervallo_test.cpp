#include "shell/DataIntervallo.h"

#include <gtest/gtest.h>

#include "fixtures/ProgramFolder.h"
#include "fixtures/SimulatedTime.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

using test::SimulatedTime;

DataCivile day(int year, unsigned month, unsigned dayOfMonth) {
  return std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(dayOfMonth);
}

std::string plain(const std::optional<DataCivile>& date) {
  if (!date) return "none";
  return std::to_string(static_cast<int>(date->year())) + "-" +
         std::to_string(static_cast<unsigned>(date->month())) + "-" +
         std::to_string(static_cast<unsigned>(date->day()));
}

class IntervalTest : public ::testing::Test {
 protected:
  test::ProgramFolder folder;
  SimulatedTime time{{2026, 11, 22, 9, 5, 59}};
};

using UnitaDiParolaTest = IntervalTest;
using DataDaTestoTest = IntervalTest;
using OraTest = IntervalTest;

TEST_F(UnitaDiParolaTest, Each_word_of_the_language_in_use_has_its_unit_and_no_other_word_has_one) {
  struct {
    int language;
    const char *hours, *days, *weeks, *months;
  } const cases[] = {{0, "ore", "giorni", "settimane", "mesi"}, {1, "hours", "days", "weeks", "months"}};
  for (const auto& words : cases) {
    folder.setting("Language", std::to_string(words.language));
    EXPECT_EQ(UnitaDiParola(words.hours), UnitaIntervallo::Ore);
    EXPECT_EQ(UnitaDiParola(words.days), UnitaIntervallo::Giorni);
    EXPECT_EQ(UnitaDiParola(words.weeks), UnitaIntervallo::Settimane);
    EXPECT_EQ(UnitaDiParola(words.months), UnitaIntervallo::Mesi);
    const auto& other = cases[1 - words.language];
    for (const char* word : {other.hours, other.days, other.weeks, other.months, "", "Days", "d", "1"})
      EXPECT_EQ(UnitaDiParola(word), std::nullopt) << word;
  }
}

TEST_F(UnitaDiParolaTest, An_empty_word_has_no_unit_even_where_the_language_file_has_no_text) {
  Messaggi[184].clear();
  EXPECT_EQ(UnitaDiParola(""), std::nullopt);
}

TEST(AggiungiIntervallo, Moves_by_the_calendar) {
  using U = UnitaIntervallo;
  struct {
    DataCivile from;
    U unit;
    int number;
    const char* to;
  } const cases[] = {
      {day(2026, 11, 22), U::Giorni, 1, "2026-11-23"},
      {day(2026, 11, 30), U::Giorni, 1, "2026-12-1"},
      {day(2026, 12, 31), U::Giorni, 1, "2027-1-1"},
      {day(2028, 2, 28), U::Giorni, 1, "2028-2-29"},
      {day(2027, 2, 28), U::Giorni, 1, "2027-3-1"},
      {day(2026, 3, 28), U::Giorni, 2, "2026-3-30"},  // over a change of summer time
      {day(2026, 11, 22), U::Giorni, 99, "2027-3-1"},
      {day(2026, 12, 28), U::Settimane, 1, "2027-1-4"},
      {day(2026, 1, 1), U::Settimane, 9, "2026-3-5"},
      {day(2026, 1, 31), U::Mesi, 1, "2026-2-28"},
      {day(2028, 1, 31), U::Mesi, 1, "2028-2-29"},
      {day(2026, 2, 28), U::Mesi, 1, "2026-3-28"},
      {day(2026, 8, 31), U::Mesi, 1, "2026-9-30"},
      {day(2026, 10, 31), U::Mesi, 4, "2027-2-28"},
      {day(2028, 2, 29), U::Mesi, 12, "2029-2-28"},
      {day(2026, 12, 15), U::Mesi, 1, "2027-1-15"},
      {day(2026, 11, 22), U::Ore, 23, "2026-11-22"},
      {day(2026, 11, 22), U::Ore, 24, "2026-11-23"},
      {day(2026, 11, 22), U::Ore, 99, "2026-11-26"},
      {day(2026, 11, 22), U::Giorni, 0, "2026-11-22"},
      {day(9999, 12, 31), U::Giorni, 1, "none"},
      {day(2026, 11, 22), U::Mesi, 2'000'000'000, "none"},
      {day(2026, 11, 22), U::Giorni, -2'000'000'000, "none"},
  };
  for (const auto& move : cases)
    EXPECT_EQ(plain(AggiungiIntervallo(move.from, move.unit, move.number)), move.to)
        << plain(move.from) << " " << move.number;
}

TEST_F(DataDaTestoTest, Reads_every_short_form_and_writes_it_back) {
  struct {
    const char *form, *text, *date;
  } const cases[] = {
      {"dd/mm/yyyy", "01/02/2030", "2030-2-1"},       {"dd/MM/yyyy", "31/12/2026", "2026-12-31"},
      {"M/d/yyyy", "2/1/2030", "2030-2-1"},           {"MM/dd/yy", "02/01/30", "2030-2-1"},
      {"yyyy-MM-dd", "2030-02-01", "2030-2-1"},       {"d.M.yyyy", "1.2.2030", "2030-2-1"},
      {"yyyy. MM. dd.", "2030. 02. 01.", "2030-2-1"}, {"yyyyMMdd", "20300201", "2030-2-1"},
      {"dd-MM-yy", "29-02-28", "2028-2-29"}};
  for (const auto& form : cases) {
    FormatoData = form.form;
    const auto date = DataDaTesto(form.text);
    EXPECT_EQ(plain(date), form.date) << form.form;
    ASSERT_TRUE(date);
    EXPECT_EQ(TestoDiData(*date), form.text);
  }
}

TEST_F(DataDaTestoTest, Takes_a_date_written_carelessly) {
  FormatoData = "dd/mm/yyyy";
  for (const char* text : {"1/2/2030", "01-02-2030", "1.2.30", " 01/02/2030 ", "2030-02-01", "2030/2/1"})
    EXPECT_EQ(plain(DataDaTesto(text)), "2030-2-1") << text;
}

TEST_F(DataDaTestoTest, A_year_of_two_digits_is_the_one_nearest_to_today) {
  FormatoData = "dd/mm/yy";
  for (const auto& [text, date] : {std::pair{"01/02/75", "2075-2-1"}, std::pair{"01/02/76", "1976-2-1"},
                                   std::pair{"01/02/00", "2000-2-1"}})
    EXPECT_EQ(plain(DataDaTesto(text)), date);
}

TEST_F(DataDaTestoTest, What_is_no_date_of_the_calendar_is_none) {
  FormatoData = "dd/mm/yyyy";
  for (const char* text : {"",
                           " ",
                           "/",
                           "tomorrow",
                           "31/02/2030",
                           "29/02/2027",
                           "00/01/2030",
                           "01/00/2030",
                           "01/13/2030",
                           "1/2",
                           "01/02/2030 x",
                           "01/02/20301",
                           "01/02/2030/4",
                           "32/01/2030",
                           "a1/02/2030",
                           "01/02/0000",
                           "2030",
                           "20300201",
                           "-1/02/2030",
                           "01/02/2030, 05/02/2030"})
    EXPECT_EQ(plain(DataDaTesto(text)), "none") << text;
}

TEST_F(DataDaTestoTest, Random_bytes_are_no_date_and_do_no_harm) {
  unsigned state = 20261122;
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    for (int i = 0; i < 12; ++i) {
      state = state * 1664525U + 1013904223U;
      text +=
          (state >> 28U) < 8 ? static_cast<char>('0' + (state >> 24U) % 10) : static_cast<char>(state >> 16U);
    }
    const auto date = DataDaTesto(text);
    EXPECT_TRUE(!date || date->ok()) << text;
  }
}

TEST_F(OraTest, A_time_is_five_characters_with_a_point) {
  EXPECT_EQ(MinutiDaOra("00.00"), 0);
  EXPECT_EQ(MinutiDaOra("13.30"), 810);
  EXPECT_EQ(MinutiDaOra("23.59"), 1439);
  for (const char* text : {"", "9.05", "24.00", "13:30", "13.60", "13.3", "013.30"})
    EXPECT_EQ(MinutiDaOra(text), std::nullopt) << text;
}

TEST_F(OraTest, It_is_written_with_two_digits_each_and_wraps_at_midnight) {
  EXPECT_EQ(OraDaMinuti(0), "00.00");
  EXPECT_EQ(OraDaMinuti(545), "09.05");
  EXPECT_EQ(OraDaMinuti(1439 + 61), "01.00");
  EXPECT_EQ(OraDaMinuti(-60), "23.00");
}

TEST_F(OraTest, The_clock_has_two_digits_for_the_hour_and_cuts_the_seconds) {
  EXPECT_EQ(OraAttuale(), "09.05");
}

}  // namespace
}  // namespace tandemize
