#include <gtest/gtest.h>

#include "storage/File_System.h"

namespace tandemize {
namespace {

using Names = std::vector<std::string>;

TEST(OrdinaStringhe, Sorts_by_code_value_and_not_by_language) {
  Names names = {"b", "Z", "è", "a", "", "aa", "_", "B"};
  OrdinaStringhe(names, 0, 7);
  EXPECT_EQ(names, (Names{"", "B", "Z", "_", "a", "aa", "b", "è"}));
}

TEST(OrdinaStringhe, Both_bounds_belong_to_the_part_that_is_sorted) {
  Names names = {"z", "c", "b", "a", "0"};
  OrdinaStringhe(names, 1, 3);
  EXPECT_EQ(names, (Names{"z", "a", "b", "c", "0"}));
}

TEST(OrdinaStringhe, Equal_strings_and_a_part_of_one_element_stay) {
  Names names = {"b", "a", "a"};
  OrdinaStringhe(names, 1, 2);
  OrdinaStringhe(names, 0, 0);
  EXPECT_EQ(names, (Names{"b", "a", "a"}));
}

TEST(OrdinaStringhe, Bounds_outside_of_the_array_touch_nothing_outside) {
  Names names = {"b", "a"}, none;
  OrdinaStringhe(names, -1, 9);
  OrdinaStringhe(none, 0, 0);
  EXPECT_EQ(names, (Names{"a", "b"}));
  OrdinaStringhe(names, 1, 0);
  EXPECT_EQ(names, (Names{"a", "b"}));
}

}  // namespace
}  // namespace tandemize
