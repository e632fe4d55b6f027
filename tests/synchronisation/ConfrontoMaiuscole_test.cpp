// Names that differ only in the case of letters, on a host that tells them apart.
#include <gtest/gtest.h>

#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

using test::Comparison;
using test::Texts;

TEST(ConfrontoMaiuscole, Two_such_names_are_the_same_file_and_are_never_compared) {
  for (std::int32_t method = ConfrontoIntelligente; method <= ConfrontoCrc; ++method) {
    Comparison comparison;
    CompareMethod = method;
    comparison.file(0, "sub/Name", "old");
    comparison.file(1, "Sub/nAME", "newer and longer", 100);
    comparison.compare();
    EXPECT_EQ(comparison.operations(), Texts{});
    EXPECT_EQ(comparison.counters(), (Texts{"1 0 0", "1 0 0"}));
  }
}

struct Group {
  Texts first, second;  // names; each file's content is its name, so those of equal names are alike
  Texts expected;
};

TEST(ConfrontoMaiuscole,
     Equal_names_pair_first_then_the_others_one_by_one_and_the_surplus_is_on_one_side_only) {
  const std::vector<Group> groups{
      {{"name", "NAME"}, {"name"}, {"missing NAME 0 > 1"}},
      {{"name"}, {"name", "NAME"}, {"missing NAME 1 > 0"}},
      {{"name", "NAME"}, {"NAME"}, {"missing name 0 > 1"}},
      {{"name", "NAME"}, {"Name"}, {"missing name 0 > 1"}},  // NAME stands first and pairs
      {{"name", "NAME"}, {"name", "NAME"}, {}},
      {{"name", "NAME"}, {"Name", "nAME"}, {}},
      {{"name", "NAME"}, {"name", "Name"}, {}},
      {{"name", "NAME", "Name"}, {"nAME", "name"}, {"missing Name 0 > 1"}},
      {{"Name"}, {"NAME", "name", "naME"}, {"missing naME 1 > 0", "missing name 1 > 0"}},
      {{"name", "NAME"}, {}, {"missing NAME 0 > 1", "missing name 0 > 1"}},
      {{}, {"name", "NAME"}, {"missing NAME 1 > 0", "missing name 1 > 0"}},
      {{"a", "name", "NAME", "z"},
       {"b", "name", "y"},
       {"missing a 0 > 1", "missing b 1 > 0", "missing NAME 0 > 1", "missing y 1 > 0", "missing z 0 > 1"}},
  };
  for (const Group& group : groups) {
    Comparison comparison;
    for (const std::string& name : group.first) comparison.file(0, name, name);
    for (const std::string& name : group.second) comparison.file(1, name, name);
    comparison.compare();
    EXPECT_EQ(comparison.operations(), group.expected)
        << testing::PrintToString(group.first) << testing::PrintToString(group.second);
  }
}

TEST(ConfrontoMaiuscole, A_file_is_replaced_by_the_one_of_its_own_name) {
  Comparison comparison;
  comparison.file(0, "name", "n", 100);
  comparison.file(0, "NAME", "N", 100);
  comparison.file(1, "name", "older");
  comparison.file(1, "NAME", "newer", 200);
  comparison.compare();
  EXPECT_EQ(comparison.operations(), (Texts{"date NAME 1 > 0", "date name 0 > 1"}));
  EXPECT_EQ(comparison.counters(), (Texts{"2 0 1", "2 0 1"}));
}

TEST(ConfrontoMaiuscole, Of_a_group_in_the_second_path_only_the_surplus_is_deleted) {
  Comparison comparison;
  SourceNotChange = EraseFile = 1;
  comparison.file(0, "name");
  for (const char* name : {"name", "NAME"}) comparison.file(1, name);
  comparison.compare();
  EXPECT_EQ(comparison.operations(), Texts{"delete NAME 1"});
}

TEST(ConfrontoMaiuscole, A_folder_in_two_cases_of_letters_pairs_file_by_file) {
  Comparison comparison;
  for (const char* name : {"Sub/a", "sub/b", "sub/A"}) comparison.file(0, name);
  for (const char* name : {"sub/A", "Sub/c"}) comparison.file(1, name);
  comparison.compare();
  EXPECT_EQ(comparison.operations(),
            (Texts{"missing Sub\\a 0 > 1", "missing sub\\b 0 > 1", "missing Sub\\c 1 > 0"}));
}

// A path that takes both cases for one answers that the file is there; here it has come since the scan.
TEST(ConfrontoMaiuscole, The_surplus_is_not_missing_where_the_other_path_has_it_all_the_same) {
  for (const bool erase : {false, true}) {
    Comparison comparison;
    SourceNotChange = EraseFile = erase ? 1 : 0;
    comparison.file(0, "a");
    comparison.file(0, "name");
    comparison.file(0, "NAME");
    comparison.file(1, "name");
    comparison.file(0, "other");
    comparison.file(1, "other");
    comparison.file(1, "OTHER");
    comparison.scan();
    comparison.sort();
    comparison.file(1, "NAME");
    comparison.file(0, "OTHER");
    comparison.file(1, "a");  // an ordinary name is not looked at again
    comparison.compareOnly();
    EXPECT_EQ(comparison.operations(), Texts{"missing a 0 > 1"});
    EXPECT_EQ(comparison.counters(), (Texts{"4 0 0", "3 1 0"}));
  }
}

TEST(ConfrontoMaiuscole, A_folder_in_the_place_of_the_surplus_is_not_the_file) {
  Comparison comparison;
  comparison.file(0, "name");
  comparison.file(0, "NAME");
  comparison.file(1, "name");
  comparison.work().makeFolder("1/NAME");
  comparison.compare();
  EXPECT_EQ(comparison.operations(), Texts{"missing NAME 0 > 1"});
}

TEST(ConfrontoMaiuscole, Rows_of_the_checksums_stay_those_of_the_compared_records) {
  Comparison comparison;
  CompareMethod = ConfrontoCrc;
  comparison.file(0, "NAME", "same");
  comparison.file(0, "name", "one");
  comparison.file(1, "Name", "zzz");
  comparison.file(1, "name", "two", 9);
  comparison.compare();
  EXPECT_EQ(comparison.operations(), Texts{"date name 1 > 0"});
}

}  // namespace
}  // namespace tandemize
