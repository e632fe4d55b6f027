#include "errors/RicercaLog.h"

#include <gtest/gtest.h>

namespace tandemize {
namespace {

const std::vector<std::string> Lines{"(12/03/2005 14.22.10) Copying 'C:\\dati'", "", "Fatal Error: PERCHÉ",
                                     "fatal error: perché"};

TEST(TrovaNelLog, The_first_line_that_holds_the_text_anywhere_is_found) {
  EXPECT_EQ(TrovaNelLog(Lines, "(12/", true), 0U);
  EXPECT_EQ(TrovaNelLog(Lines, "C:\\dati'", true), 0U);
  EXPECT_EQ(TrovaNelLog(Lines, "Error", true), 2U);
  EXPECT_EQ(TrovaNelLog(Lines, "error", true), 3U);
}

TEST(TrovaNelLog, Without_exact_match_case_counts_for_no_letter_accented_or_not) {
  EXPECT_EQ(TrovaNelLog(Lines, "ERROR: perché", false), 2U);
  EXPECT_EQ(TrovaNelLog(Lines, "copying", false), 0U);
  EXPECT_EQ(TrovaNelLog(Lines, "perché", true), 3U);
}

TEST(TrovaNelLog, A_text_that_no_line_holds_is_not_found) {
  EXPECT_EQ(TrovaNelLog(Lines, "perche", false), std::nullopt);
  EXPECT_EQ(TrovaNelLog(Lines, "Copying 'C:\\dati' ", false), std::nullopt);
  EXPECT_EQ(TrovaNelLog({}, "", false), std::nullopt);
}

TEST(TrovaNelLog, An_empty_text_is_in_the_first_line) {
  EXPECT_EQ(TrovaNelLog(Lines, "", true), 0U);
  EXPECT_EQ(TrovaNelLog({""}, "", false), 0U);
}

}  // namespace
}  // namespace tandemize
