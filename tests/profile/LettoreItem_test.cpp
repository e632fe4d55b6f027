#include "profile/LettoreItem.h"

#include <gtest/gtest.h>

#include <vector>

namespace tandemize {
namespace {

std::vector<std::string> items(std::string_view text) {
  LettoreItem reader(text);
  std::vector<std::string> found;
  for (std::string item; reader.Leggi(item);) found.push_back(item);
  return found;
}

using List = std::vector<std::string>;

TEST(LettoreItem, An_empty_text_has_no_items) {
  EXPECT_EQ(items(""), List{});
}

TEST(LettoreItem, Every_kind_of_line_end_ends_an_item) {
  EXPECT_EQ(items("a\r\nb\nc\rd"), (List{"a", "b", "c", "d"}));
}

TEST(LettoreItem, The_last_line_needs_no_end_and_an_end_adds_nothing) {
  EXPECT_EQ(items("a\r\nb"), items("a\r\nb\r\n"));
}

TEST(LettoreItem, A_comma_ends_an_item_and_the_rest_is_one_of_its_own) {
  EXPECT_EQ(items("key = one, two\r\nx,"), (List{"key = one", "two", "x"}));
}

TEST(LettoreItem, Blanks_before_an_item_go_and_those_behind_it_stay) {
  EXPECT_EQ(items("  \ta b  \r\n"), (List{"a b  "}));
}

TEST(LettoreItem, An_empty_line_is_an_empty_item) {
  EXPECT_EQ(items("a\r\n\r\n  \r\nb"), (List{"a", "", "", "b"}));
}

TEST(LettoreItem, Quotes_around_an_item_go_and_commas_between_them_stay) {
  EXPECT_EQ(items("\"a, b\" , \"c\"\r\nd"), (List{"a, b", "c", "d"}));
}

TEST(LettoreItem, A_quote_inside_an_item_is_an_ordinary_character) {
  EXPECT_EQ(items("key = a\"b\r\n"), (List{"key = a\"b"}));
}

TEST(LettoreItem, A_quote_that_is_never_closed_ends_with_its_line) {
  EXPECT_EQ(items("\"a, b\r\nc"), (List{"a, b", "c"}));
}

TEST(LettoreItem, Text_behind_a_closing_quote_is_an_item_of_its_own) {
  EXPECT_EQ(items("\"a\"b\r\nc"), (List{"a", "b", "c"}));
}

TEST(LettoreItem, Tells_the_line_that_an_item_began_on) {
  LettoreItem reader("a,b\r\n\nc");
  std::vector<std::size_t> lines{reader.Riga()};
  for (std::string item; reader.Leggi(item);) lines.push_back(reader.Riga());
  EXPECT_EQ(lines, (std::vector<std::size_t>{0, 1, 1, 2, 3}));
}

TEST(LettoreItem, Takes_any_bytes_and_comes_to_an_end) {
  std::string junk;
  for (int i = 0; i < 70000; ++i) junk += static_cast<char>(i * 7 + i / 256);
  std::size_t length = 0;
  for (const std::string& item : items(junk)) length += item.size();
  EXPECT_GT(length, 60000U);
  EXPECT_LT(length, junk.size());
}

}  // namespace
}  // namespace tandemize
