#include "profile/RigheProfilo.h"

#include <gtest/gtest.h>

#include <vector>

namespace tandemize {
namespace {

std::vector<std::string> allLines(std::string_view text) {
  LettoreRighe reader(text);
  std::vector<std::string> result;
  std::string_view line;
  while (reader.Leggi(line)) result.emplace_back(line);
  EXPECT_EQ(reader.Numero(), result.size());
  return result;
}

using Lines = std::vector<std::string>;

TEST(LettoreRighe, Lines_end_with_CR_LF_or_CR_or_LF_and_the_last_need_not_end) {
  EXPECT_EQ(allLines("a\r\nb\nc\rd"), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(allLines("a\r\n\r\n"), (Lines{"a", ""}));
  EXPECT_EQ(allLines(""), Lines{});
  EXPECT_EQ(allLines("\r"), Lines{""});
}

TEST(LettoreRighe, A_NUL_is_a_character_like_any_other) {
  EXPECT_EQ(allLines(std::string_view("a\0b\nc", 5)), (Lines{std::string("a\0b", 3), "c"}));
}

TEST(ChiaveProfilo, A_key_is_found_anywhere_in_any_case) {
  constexpr ChiaveProfilo key{"BackTop = "};
  EXPECT_EQ(key.Trova("BackTop = 1"), 0U);
  EXPECT_EQ(key.Trova("12bACKtOP = 1"), 2U);
  EXPECT_EQ(key.Trova("BackTopBackBackTop = "), 11U);
  EXPECT_FALSE(key.In("BackTop =1"));
  EXPECT_FALSE(key.In("BackTop ="));
  EXPECT_FALSE(key.In(""));
  EXPECT_EQ(key.Dietro("xBACKTOP =  7"), " 7");
  EXPECT_EQ(key.Dietro("nothing"), "");
  EXPECT_TRUE(key.Apre("backtop = "));
  EXPECT_FALSE(key.Apre(" BackTop = "));
  EXPECT_FALSE(key.Apre("BackTop"));
}

TEST(ChiaveProfilo, Search_gives_what_a_plain_search_gives) {
  constexpr ChiaveProfilo key{"abab"};
  std::string line;
  for (unsigned bits = 0; bits < 4096; ++bits) {
    line.clear();
    for (unsigned i = 0; i < 12; ++i) line += (bits >> i & 1U) != 0 ? 'a' : 'b';
    ASSERT_EQ(key.Trova(line), line.find("abab")) << line;
  }
}

TEST(DaCarattere, Positions_count_characters_and_stray_bytes_singly) {
  EXPECT_EQ(DaCarattere("abc", 1), "abc");
  EXPECT_EQ(DaCarattere("abc", 3), "c");
  EXPECT_EQ(DaCarattere("abc", 9), "");
  EXPECT_EQ(DaCarattere("\xC3\xA8"
                        "\xE2\x82\xAC"
                        "\xF0\x9F\x98\x80"
                        "x",
                        4),
            "x");
  EXPECT_EQ(DaCarattere("\xFF\xC3x", 3), "x");
  EXPECT_EQ(DaCarattere("\xE2\x82", 2), "\x82");
}

TEST(ConvertiIntero, A_fraction_is_rounded_and_a_half_goes_to_the_even_neighbour) {
  struct Row {
    const char* text;
    std::int32_t error;
    std::int64_t value;
  };
  for (const Row& row : {Row{"0", 0, 0},
                         {"255", 0, 255},
                         {"  7  ", 0, 7},
                         {"007", 0, 7},
                         {"+7", 0, 7},
                         {"-7", 0, -7},
                         {"0.5", 0, 0},
                         {"1.5", 0, 2},
                         {"2.5", 0, 2},
                         {"2.51", 0, 3},
                         {"2.500000001", 0, 3},
                         {"-1.5", 0, -2},
                         {".9", 0, 1},
                         {"5.", 0, 5},
                         {"256", ErroreOverflow, 0},
                         {"255.5", ErroreOverflow, 0},
                         {"-129", ErroreOverflow, 0},
                         {"99999999999999999999999999", ErroreOverflow, 0},
                         {"-99999999999999999999999999", ErroreOverflow, 0},
                         {"", ErroreTipo, 0},
                         {" ", ErroreTipo, 0},
                         {".", ErroreTipo, 0},
                         {"-", ErroreTipo, 0},
                         {"abc", ErroreTipo, 0},
                         {"1 2", ErroreTipo, 0},
                         {"1e2", ErroreTipo, 0},
                         {"0x10", ErroreTipo, 0},
                         {"1,5", ErroreTipo, 0}}) {
    std::int64_t value = 0;
    EXPECT_EQ(ConvertiIntero(row.text, -128, 255, value), row.error) << row.text;
    EXPECT_EQ(value, row.value) << row.text;
  }
}

}  // namespace
}  // namespace tandemize
