#include "storage/ModuloArray.h"

#include <gtest/gtest.h>

namespace tandemize {
namespace {

using Texts = std::vector<std::string>;

TEST(ModuloArray, The_last_full_column_stands_before_the_first_empty_entry_of_the_row) {
  const TabellaTesti table{{"a", "b"}, {"c", "d"}, {"", "e"}, {"f", "g"}};
  EXPECT_EQ(UltimaColonnaPiena(table, 0), 1);
}

TEST(ModuloArray, A_row_without_an_empty_entry_has_the_last_full_column_0) {
  const TabellaTesti table{{"a", "b"}, {"c", "d"}};
  EXPECT_EQ(UltimaColonnaPiena(table, 1), 0);
  EXPECT_EQ(UltimaColonnaPiena({}, 0), 0);
}

TEST(ModuloArray, A_row_that_begins_empty_has_no_full_column) {
  EXPECT_EQ(UltimaColonnaPiena({{"", "b"}}, 0), -1);
  EXPECT_EQ(UltimaColonnaPiena({{"a"}, {"c", "d"}}, 1), -1);
  EXPECT_EQ(UltimaColonnaPiena({{"a", "b"}, {"c"}}, 1), 0);
}

TEST(ModuloArray, The_first_empty_element_is_given_by_its_index_and_none_as_0) {
  EXPECT_EQ(PrimoVuoto(Texts{"a", "", ""}), 1);
  EXPECT_EQ(PrimoVuoto(Texts{"", "a"}), 0);
  EXPECT_EQ(PrimoVuoto(Texts{"a", " "}), 0);
  EXPECT_EQ(PrimoVuoto(Texts{}), 0);
}

TEST(ModuloArray, Of_a_table_the_first_column_whose_first_row_is_empty_is_given) {
  EXPECT_EQ(PrimoVuoto(TabellaTesti{{"a", ""}, {"b"}, {"", "c"}}), 2);
  EXPECT_EQ(PrimoVuoto(TabellaTesti{{"a"}, {}}), 1);
  EXPECT_EQ(PrimoVuoto(TabellaTesti{{"a"}}), 0);
}

TEST(ModuloArray, A_text_is_replaced_throughout_and_only_where_it_is_the_whole_element) {
  Texts list{"old", "older", "Old", "old"};
  SostituisciValore(list, "old", "new");
  EXPECT_EQ(list, (Texts{"new", "older", "Old", "new"}));
}

TEST(ModuloArray, Equal_texts_and_texts_of_the_list_itself_are_no_harm) {
  Texts list{"a", "b", "a"};
  SostituisciValore(list, "a", "a");
  EXPECT_EQ(list, (Texts{"a", "b", "a"}));
  SostituisciValore(list, list[0], list[1]);
  EXPECT_EQ(list, (Texts{"b", "b", "b"}));
}

TEST(ModuloArray, A_list_grows_by_one_empty_element_and_keeps_its_contents) {
  Texts list;
  AggiungiElemento(list);
  EXPECT_EQ(list, Texts{""});
  list[0] = "a";
  AggiungiElemento(list);
  EXPECT_EQ(list, (Texts{"a", ""}));
}

TEST(ModuloArray, The_last_equal_element_is_found) {
  const Texts list{"a", "ab", "a", "B"};
  EXPECT_EQ(CercaValore(list, "a"), 2);
  EXPECT_EQ(CercaValore(list, "b"), -1);
  EXPECT_EQ(CercaValore({}, ""), -1);
}

TEST(ModuloArray, The_last_element_that_contains_the_text_is_found_on_request) {
  const Texts list{"xay", "a", "b"};
  EXPECT_EQ(CercaValore(list, "a", true), 1);
  EXPECT_EQ(CercaValore(list, "ay", true), 0);
  EXPECT_EQ(CercaValore(list, "A", true), -1);
}

}  // namespace
}  // namespace tandemize
