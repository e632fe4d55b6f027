#include "errors/RigheErrore.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tandemize {
namespace {

using Lines = std::vector<std::string>;

TEST(RigheErrore, A_text_is_cut_at_each_CR) {
  const struct {
    const char* text;
    Lines lines;
  } rows[] = {{"", {}},
              {"\r", {""}},
              {"\r\r", {"", ""}},
              {"one\r", {"one"}},
              {"one\rtwo\r", {"one", "two"}},
              {"one\r\r\rtwo\r\r", {"one", "", "", "two", ""}},
              {"\rone\r", {"", "one"}}};
  for (const auto& row : rows) EXPECT_EQ(RigheErrore(row.text), row.lines) << row.text;
}

TEST(RigheErrore, The_last_character_of_a_text_that_does_not_end_in_CR_is_not_shown) {
  EXPECT_EQ(RigheErrore("one"), Lines{"on"});
  EXPECT_EQ(RigheErrore("one\rtwo"), (Lines{"one", "tw"}));
  EXPECT_EQ(RigheErrore("one\r\rt"), (Lines{"one", "", ""}));
  EXPECT_EQ(RigheErrore("x"), Lines{""});
}

TEST(RigheErrore, Characters_of_several_bytes_count_as_one) {
  EXPECT_EQ(RigheErrore("perché"), Lines{"perch"});
  EXPECT_EQ(RigheErrore("è\rperché\r"), (Lines{"è", "perché"}));
  EXPECT_EQ(RigheErrore("a€"), Lines{"a"});
  EXPECT_EQ(RigheErrore("a😀"), Lines{"a"});
  EXPECT_EQ(RigheErrore("a\xC3"), Lines{"a"}) << "a byte that is part of no character is one by itself";
  EXPECT_EQ(RigheErrore("a\x80\x80"), Lines{"a\x80"});
}

// The rule told character by character, with positions that start at 1.
Lines byTheRule(const std::string& text) {
  Lines lines;
  const std::size_t length = text.size();
  const auto character = [&text](std::size_t i) { return text[i - 1]; };
  std::size_t start = 1;
  for (std::size_t i = 1; i <= length; ++i) {
    if (character(i) != '\r' && i != length) continue;
    std::string piece = text.substr(start - 1, i - start);
    std::erase(piece, '\r');
    lines.push_back(piece);
    while (i < length && character(i + 1) == '\r') {
      ++i;
      lines.emplace_back();
    }
    start = i;
  }
  return lines;
}

TEST(RigheErrore, Every_short_text_of_letters_and_CRs_is_cut_as_the_rule_says) {
  for (unsigned length = 1; length <= 9; ++length) {
    for (unsigned pattern = 0; pattern < 1U << length; ++pattern) {
      std::string text;
      for (unsigned i = 0; i < length; ++i)
        text += (pattern >> i & 1U) != 0 ? '\r' : static_cast<char>('a' + i);
      ASSERT_EQ(RigheErrore(text), byTheRule(text)) << testing::PrintToString(text);
    }
  }
}

}  // namespace
}  // namespace tandemize
