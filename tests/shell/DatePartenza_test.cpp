#include "shell/DatePartenza.h"

#include <gtest/gtest.h>

#include "fixtures/ProgramFolder.h"
#include "fixtures/SimulatedTime.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

using test::SimulatedTime;

constexpr DataCivile Today = std::chrono::year(2026) / 11 / 22;

std::string standard(const std::string& number, const std::string& word, const std::string& time,
                     const std::string& date) {
  return "Timer_Start_Mode = 2\r\nTimer_Interval_Type = " + word + "\r\nTimer_Interval_Number = " + number +
         "\r\nTimer_Start_Time = " + time + "\r\nTimer_Start_Date = " + date + "\r\nTimer_Start_Type = 0\r\n";
}

std::string advanced(const std::string& number, const std::string& date, const std::string& time,
                     const std::string& interval) {
  const std::string start = number + "Timer_Adv_";
  return start + "Profile1 = Night.cfg\r\n" + start + "Profile2 = C:\\p\\Night.cfg\r\n" + start +
         "Date = " + date + "\r\n" + start + "Time = " + time + "\r\n" + start + "Interval = " + interval +
         "\r\n";
}

class LinesTest : public ::testing::Test {
 protected:
  LinesTest() {
    folder.setting("Language", "1");
    FormatoData = "dd/mm/yyyy";
  }
  // Moves the entry of the text on; gives the new text.
  std::string moved(std::string text, const std::string& word, int number, std::int16_t entry = 0) {
    errors.clear();
    AvanzaPartenza(text, word, number, hour, date, entry, errors);
    return text;
  }
  std::string pastMoved(std::string text, bool changes = true) {
    errors.clear();
    EXPECT_EQ(AvanzaDateScadute(text, Today, errors), changes) << text;
    return text;
  }
  test::ProgramFolder folder;
  SimulatedTime time{{2026, 11, 22, 9, 0, 0}};
  std::string hour = "as it was", date = "as it was";
  std::vector<ValoreErrato> errors;
};

using AvanzaPartenzaTest = LinesTest;
using AvanzaDateScaduteTest = LinesTest;

TEST_F(AvanzaPartenzaTest, Days_weeks_and_months_move_the_date_and_leave_the_time) {
  struct {
    const char* word;
    int number;
    const char *from, *to;
  } const cases[] = {{"days", 1, "22/11/2026", "23/11/2026"},   {"days", 9, "22/11/2026", "01/12/2026"},
                     {"weeks", 1, "28/12/2026", "04/01/2027"},  {"months", 1, "31/01/2026", "28/02/2026"},
                     {"months", 1, "31/01/2028", "29/02/2028"}, {"days", 0, "22/11/2026", "22/11/2026"}};
  for (const auto& move : cases) {
    hour = "13.30";
    EXPECT_EQ(moved(standard("1", move.word, "13.30", move.from), move.word, move.number),
              standard("1", move.word, "13.30", move.to));
    EXPECT_EQ(date, move.to);
    EXPECT_EQ(hour, "13.30");
    EXPECT_TRUE(errors.empty());
  }
}

TEST_F(AvanzaPartenzaTest, Hours_move_the_time_and_wrap_at_midnight_without_touching_the_date) {
  struct {
    int number;
    const char *from, *to;
  } const cases[] = {
      {1, "13.30", "14.30"}, {9, "23.05", "08.05"}, {1, "23.00", "00.00"}, {0, "13.30", "13.30"}};
  for (const auto& move : cases) {
    EXPECT_EQ(moved(standard("1", "hours", move.from, "22/11/2026"), "hours", move.number),
              standard("1", "hours", move.to, "22/11/2026"));
    EXPECT_EQ(hour, move.to);
    EXPECT_EQ(date, "as it was");
  }
}

TEST_F(AvanzaPartenzaTest, A_day_of_hours_and_more_moves_the_date_too) {
  EXPECT_EQ(moved(advanced("1", "22/11/2026", "13.30", "49 hours"), "hours", 49, 1),
            advanced("1", "24/11/2026", "14.30", "49 hours"));
  EXPECT_EQ(date, "24/11/2026");
  EXPECT_EQ(hour, "14.30");
}

TEST_F(AvanzaPartenzaTest, By_hours_a_date_whose_new_text_is_not_greater_stays) {
  EXPECT_EQ(moved(advanced("1", "30/11/2026", "13.30", "48 hours"), "hours", 48, 1),
            advanced("1", "30/11/2026", "13.30", "48 hours"));
  FormatoData = "yyyy-mm-dd";
  EXPECT_EQ(moved(advanced("1", "2026-11-30", "13.30", "48 hours"), "hours", 48, 1),
            advanced("1", "2026-12-02", "13.30", "48 hours"));
}

TEST_F(AvanzaPartenzaTest, A_word_without_a_unit_moves_nothing) {
  for (const char* word : {"giorni", "ore", "", "day"}) {
    const std::string text = standard("1", word, "13.30", "22/11/2026");
    EXPECT_EQ(moved(text, word, 1), text);
    EXPECT_EQ(date, "as it was");
    EXPECT_EQ(hour, "as it was");
  }
}

TEST_F(AvanzaPartenzaTest, Only_the_lines_of_the_entry_move) {
  const std::string rest = standard("1", "days", "13.30", "22/11/2026");
  EXPECT_EQ(
      moved(rest + advanced("1", "22/11/2026", "13.30", "1 days") +
                advanced("2", "22/11/2026", "13.30", "1 days"),
            "days", 1, 2),
      rest + advanced("1", "22/11/2026", "13.30", "1 days") + advanced("2", "23/11/2026", "13.30", "1 days"));
  EXPECT_EQ(moved(rest + advanced("1", "22/11/2026", "13.30", "1 days"), "days", 1),
            standard("1", "days", "13.30", "23/11/2026") + advanced("1", "22/11/2026", "13.30", "1 days"));
}

TEST_F(AvanzaPartenzaTest, An_entry_of_two_digits_is_not_reached) {
  const std::string text = advanced("10", "22/11/2026", "13.30", "1 days");
  EXPECT_EQ(moved(text, "days", 1, 10), text);
  EXPECT_EQ(moved(text, "days", 1, 1), text);
}

TEST_F(AvanzaPartenzaTest, Every_other_byte_stays) {
  const std::string before =
      "\xEF\xBB\xBF# mine\nEmail_Email = a=b = c  \r\n\r\nnonsense\rX\n Timer_Start_Date = "
      "01/01/2020\r\nTimer_Start_Date  22/11/2026\r\n";
  EXPECT_EQ(moved(before + "Timer_Start_Date = 22/11/2026", "days", 1),
            before + "Timer_Start_Date = 23/11/2026");
  EXPECT_EQ(moved("\xEF\xBB\xBFTimer_Start_Date = 22/11/2026\nTail", "days", 1),
            "\xEF\xBB\xBFTimer_Start_Date = 23/11/2026\nTail");
}

TEST_F(AvanzaPartenzaTest, The_old_values_are_those_of_the_text) {
  date = "01/01/2001";
  moved(standard("1", "days", "13.30", "22/11/2026"), "days", 1);
  EXPECT_EQ(date, "23/11/2026");
}

TEST_F(AvanzaPartenzaTest, What_cannot_be_understood_is_named_and_stays) {
  const std::string text = standard("1", "days", "13.30", "31/02/2026");
  EXPECT_EQ(moved(text, "days", 1), text);
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0].chiave, "Timer_Start_Date");
  EXPECT_EQ(errors[0].valore, "31/02/2026");
  EXPECT_EQ(moved(advanced("3", "22/11/2026", "1.30", "1 hours"), "hours", 1, 3),
            advanced("3", "22/11/2026", "1.30", "1 hours"));
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0].chiave, "3Timer_Adv_Time");
  EXPECT_EQ(moved("Timer_Start_Date = 31/12/9999", "days", 1), "Timer_Start_Date = 31/12/9999");
  EXPECT_EQ(errors.size(), 1U);
}

TEST_F(AvanzaDateScaduteTest, A_past_date_moves_by_whole_intervals_to_the_first_one_not_before_today) {
  struct {
    const char *number, *word, *from, *to;
  } const cases[] = {
      {"1", "days", "21/11/2026", "22/11/2026"},  // yesterday becomes today
      {"3", "days", "20/11/2026", "23/11/2026"},
      {"1", "weeks", "20/11/2026", "27/11/2026"},  // from the old date, not from today
      {"2", "weeks", "01/01/2026", "03/12/2026"},
      {"1", "months", "31/07/2026", "30/11/2026"},  // clamped in September, and on from there
      {"1", "months", "31/01/2026", "28/11/2026"},
      {"1", "months", "22/10/2026", "22/11/2026"},
      {"1", "days", "29/02/2024", "22/11/2026"},
      {"1", "days", "01/01/1900", "22/11/2026"},
      {"9", "months", "31/12/2025", "30/06/2027"},
  };
  for (const auto& move : cases) {
    EXPECT_EQ(pastMoved(standard(move.number, move.word, "13.30", move.from)),
              standard(move.number, move.word, "13.30", move.to));
    const std::string interval = std::string(move.number) + " " + move.word;
    EXPECT_EQ(pastMoved("Timer_Start_Type = 1\r\n" + advanced("7", move.from, "13.30", interval)),
              "Timer_Start_Type = 1\r\n" + advanced("7", move.to, "13.30", interval));
  }
}

TEST_F(AvanzaDateScaduteTest, Today_and_later_dates_stay) {
  for (const char* from : {"22/11/2026", "23/11/2026", "01/01/2030"})
    pastMoved(standard("1", "days", "00.00", from), false);
}

TEST_F(AvanzaDateScaduteTest, Hours_words_without_a_unit_and_numbers_below_1_move_nothing) {
  for (const auto& [number, word] :
       {std::pair{"1", "hours"}, std::pair{"1", "giorni"}, std::pair{"1", ""}, std::pair{"0", "days"},
        std::pair{"", "days"}, std::pair{"-1", "days"}, std::pair{"x", "days"}}) {
    pastMoved(standard(number, word, "13.30", "21/11/2026"), false);
    pastMoved(
        "Timer_Start_Type = 1\r\n" + advanced("1", "21/11/2026", "13.30", std::string(number) + " " + word),
        false);
  }
}

TEST_F(AvanzaDateScaduteTest, An_advanced_entry_with_number_0_is_skipped_and_the_others_move) {
  const std::string type = "Timer_Start_Type = 1\r\n";
  EXPECT_EQ(
      pastMoved(type + advanced("1", "21/11/2026", "13.30", "0 days") +
                advanced("2", "21/11/2026", "13.30", "1 days")),
      type + advanced("1", "21/11/2026", "13.30", "0 days") + advanced("2", "22/11/2026", "13.30", "1 days"));
}

TEST_F(AvanzaDateScaduteTest, Only_the_timers_of_the_chosen_kind_move) {
  const std::string both = advanced("1", "21/11/2026", "13.30", "1 days");
  EXPECT_EQ(pastMoved(standard("1", "days", "13.30", "21/11/2026") + both),
            standard("1", "days", "13.30", "22/11/2026") + both);
  std::string advancedOn = standard("1", "days", "13.30", "21/11/2026") + both;
  advancedOn.replace(advancedOn.find("Type = 0"), 8, "Type = 1");
  EXPECT_NE(pastMoved(advancedOn).find("Timer_Start_Date = 21/11/2026"), std::string::npos);
  std::string neither = standard("1", "days", "13.30", "21/11/2026");
  neither.replace(neither.find("Type = 0"), 8, "Type = 255");
  pastMoved(neither, false);
}

TEST_F(AvanzaDateScaduteTest, The_interval_of_another_entry_does_not_count) {
  std::string text = "Timer_Start_Type = 1\r\n" + advanced("1", "21/11/2026", "13.30", "0 days") +
                     advanced("2", "30/11/2026", "13.30", "1 days");
  pastMoved(text, false);
}

TEST_F(AvanzaDateScaduteTest, An_entry_of_two_digits_stays) {
  pastMoved("Timer_Start_Type = 1\r\n" + advanced("10", "21/11/2026", "13.30", "1 days"), false);
}

TEST_F(AvanzaDateScaduteTest, A_number_of_two_digits_is_taken_whole) {
  EXPECT_EQ(pastMoved("Timer_Start_Type = 1\r\n" + advanced("1", "21/11/2026", "13.30", "12 days")),
            "Timer_Start_Type = 1\r\n" + advanced("1", "03/12/2026", "13.30", "12 days"));
}

TEST_F(AvanzaDateScaduteTest, An_empty_date_stays_and_a_wrong_one_is_named) {
  pastMoved(standard("1", "days", "13.30", ""), false);
  EXPECT_TRUE(errors.empty());
  pastMoved(standard("1", "days", "13.30", "30/02/2026"), false);
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0].chiave, "Timer_Start_Date");
  EXPECT_EQ(errors[0].valore, "30/02/2026");
}

TEST_F(AvanzaDateScaduteTest, A_wrong_entry_does_not_keep_the_others_from_moving) {
  const std::string type = "Timer_Start_Type = 1\r\n";
  EXPECT_EQ(
      pastMoved(type + advanced("1", "yesterday", "13.30", "1 days") +
                advanced("2", "21/11/2026", "13.30", "1 days")),
      type + advanced("1", "yesterday", "13.30", "1 days") + advanced("2", "22/11/2026", "13.30", "1 days"));
  EXPECT_EQ(errors.size(), 1U);
}

TEST_F(AvanzaDateScaduteTest, Damaged_texts_do_no_harm) {
  for (const char* text : {"", "\r\n\r\n", " = ", "Timer_Start_Type", "Timer_Start_Type = ", "1",
                           "1Timer_Adv_Date", "Timer_Start_Type = 1\n1Timer_Adv_Date = 21/11/2026",
                           "Timer_Start_Type = 1\n1Timer_Adv_Date = 21/11/2026\n1Timer_Adv_Interval = "})
    pastMoved(text, false);
}

}  // namespace
}  // namespace tandemize
