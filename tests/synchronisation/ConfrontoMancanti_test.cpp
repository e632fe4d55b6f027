// Files that only one path of a pair has.
#include <gtest/gtest.h>

#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

using test::Comparison;
using test::SomeDate;
using test::Texts;

struct Rule {
  std::uint8_t sourceNotChange, eraseFile;
  const char* onlyInSecond;  // what happens to the file of the second path
  Texts counters;
};

// EraseFile counts even where SourceNotChange is off.
TEST(ConfrontaArrayPerFileMancanti, The_settings_say_what_becomes_of_a_file_of_the_second_path) {
  const std::vector<Rule> rules{{0, 0, "missing b 1 > 0", {"1 1 0", "1 1 0"}},
                                {1, 0, "", {"1 0 0", "1 1 0"}},
                                {1, 1, "delete b 1", {"1 1 0", "1 1 0"}},
                                {0, 1, "delete b 1", {"1 1 0", "1 1 0"}}};
  for (const Rule& rule : rules) {
    Comparison comparison;
    comparison.file(0, "a");
    comparison.file(1, "b");
    SourceNotChange = rule.sourceNotChange;
    EraseFile = rule.eraseFile;
    comparison.compare();
    Texts expected{"missing a 0 > 1"};
    if (*rule.onlyInSecond != 0) expected.emplace_back(rule.onlyInSecond);
    EXPECT_EQ(comparison.operations(), expected);
    EXPECT_EQ(comparison.counters(), rule.counters);
  }
}

TEST(ConfrontaArrayPerFileMancanti, Operations_of_both_directions_stand_in_the_order_of_the_names) {
  Comparison comparison;
  for (const char* name : {"a", "c", "sub/x", "sub.d/x", "Z"}) comparison.file(0, name);
  for (const char* name : {"B", "d", "sub/y", "y", "[", "_"}) comparison.file(1, name);
  comparison.compare();
  EXPECT_EQ(comparison.operations(),
            (Texts{"missing a 0 > 1", "missing B 1 > 0", "missing c 0 > 1", "missing d 1 > 0",
                   "missing sub.d\\x 0 > 1", "missing sub\\x 0 > 1", "missing sub\\y 1 > 0",
                   "missing y 1 > 0", "missing Z 0 > 1", "missing [ 1 > 0", "missing _ 1 > 0"}));
}

// A name in small letters stands behind every capital by its own code values, and before some in upper case.
TEST(ConfrontaArrayPerFileMancanti, Names_in_small_and_capital_letters_merge_by_their_upper_case) {
  Comparison comparison;
  for (const char* name : {"aa", "ab", "b", "x"}) comparison.file(0, name);
  for (const char* name : {"AC", "B", "Y"}) comparison.file(1, name);
  comparison.compare();
  EXPECT_EQ(comparison.operations(), (Texts{"missing aa 0 > 1", "missing ab 0 > 1", "missing AC 1 > 0",
                                            "missing x 0 > 1", "missing Y 1 > 0"}));
}

TEST(ConfrontaArrayPerFileMancanti, The_destination_is_the_same_file_below_the_other_path_and_new_and_empty) {
  Comparison comparison;
  comparison.file(0, "sub/a.txt", "12345");
  comparison.compare();
  ASSERT_EQ(ArrayTrasferimento.Numero(), 1U);
  const RecordFile &source = ArrayTrasferimento[0].Sorgente,
                   &destination = ArrayTrasferimento[0].Destinazione;
  EXPECT_EQ(source.Percorso(), comparison.program("0/sub/a.txt"));
  EXPECT_EQ(source.Nome(), "sub\\a.txt");
  EXPECT_EQ(source.Dimensione, 5);
  EXPECT_FALSE(source.FileNuovo);
  EXPECT_EQ(destination.Percorso(), comparison.program("1/sub/a.txt"));
  EXPECT_EQ(destination.Nome(), "sub\\a.txt");
  EXPECT_EQ(destination.Dimensione, 0);
  EXPECT_TRUE(destination.FileNuovo);
  EXPECT_FALSE(destination.DaEliminare);
  EXPECT_EQ(destination.Data, SomeDate);
  EXPECT_EQ(destination.Attributi, source.Attributi);
  EXPECT_EQ(destination.TipoPercorso, source.TipoPercorso);
}

TEST(ConfrontaArrayPerFileMancanti, A_deletion_marks_its_source_and_the_record_of_the_table) {
  Comparison comparison;
  comparison.file(1, "a", "12345");
  SourceNotChange = EraseFile = 1;
  comparison.compare();
  ASSERT_EQ(ArrayTrasferimento.Numero(), 1U);
  const RecordFile &source = ArrayTrasferimento[0].Sorgente,
                   &destination = ArrayTrasferimento[0].Destinazione;
  EXPECT_EQ(source.Percorso(), comparison.program("1/a"));
  EXPECT_TRUE(source.DaEliminare);
  EXPECT_EQ(source.Dimensione, 5);
  EXPECT_EQ(destination.Percorso(), comparison.program("0/a"));
  EXPECT_FALSE(destination.DaEliminare);
  EXPECT_TRUE(destination.FileNuovo);
  EXPECT_EQ(destination.Dimensione, 0);
  EXPECT_TRUE(ArrayScansione.Riga(1, 0).DaEliminare);
}

TEST(ConfrontaArrayPerFileMancanti, An_empty_side_is_filled_and_its_kind_and_path_are_those_of_the_profile) {
  Comparison comparison;
  for (const char* name : {"a", "b/c", "b/d", "e"}) comparison.file(0, name);
  comparison.compare();
  EXPECT_EQ(comparison.operations(),
            (Texts{"missing a 0 > 1", "missing b\\c 0 > 1", "missing b\\d 0 > 1", "missing e 0 > 1"}));
  EXPECT_EQ(comparison.counters(), (Texts{"4 0 0", "0 4 0"}));
}

TEST(ConfrontaArrayPerFileMancanti, Paths_without_a_separator_behind_them_give_the_same) {
  Comparison comparison;
  comparison.file(0, "a");
  comparison.file(0, "sub/b");
  comparison.file(0, "both");
  comparison.file(1, "both", "other", 100);
  comparison.file(1, "c");
  const Texts withSeparator = Backup_Path;
  for (const bool first : {true, false}) {
    ArrayTrasferimento.Svuota();
    Backup_Path = withSeparator;
    Backup_Path[0].pop_back();
    if (first) Backup_Path[1].pop_back();
    comparison.scan();
    comparison.sort();
    comparison.compareOnly();
    Backup_Path = withSeparator;
    EXPECT_EQ(comparison.operations(),
              (Texts{"missing a 0 > 1", "date both 1 > 0", "missing c 1 > 0", "missing sub\\b 0 > 1"}));
  }
}

TEST(ConfrontaArrayPerFileMancanti, A_path_inside_another_has_names_of_its_own_for_the_same_files) {
  Comparison comparison(3);
  TandemMode = ModoSingolo;
  comparison.file(0, "in/a");
  Backup_Path[1] = Backup_Path[0] + "in\\";
  comparison.compare();
  EXPECT_EQ(comparison.screen.boxes.size(), 0U);
  Texts paths;
  for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i)
    paths.push_back(ArrayTrasferimento[i].Destinazione.Percorso());
  EXPECT_EQ(paths, (Texts{Backup_Path[0] + "a", Backup_Path[1] + "in\\a", Backup_Path[2] + "in\\a",
                          Backup_Path[2] + "a"}));
}

TEST(ConfrontaArrayPerFileMancanti, A_column_without_a_path_plans_nothing) {
  Comparison comparison;
  comparison.file(0, "a");
  comparison.scan();
  comparison.sort();
  Backup_Path.pop_back();
  comparison.compareOnly();
  EXPECT_EQ(ArrayTrasferimento.Numero(), 0U);
}

TEST(ConfrontaArrayPerFileMancanti, The_texts_of_the_operations_outlive_the_scan) {
  Comparison comparison;
  comparison.file(0, "sub/a");
  comparison.file(0, "sub/b");
  comparison.file(0, "z", "new", 10);
  comparison.file(1, "z", "x");
  comparison.file(1, "other/c");
  comparison.compare();
  const Texts before = comparison.operations();
  const std::weak_ptr<DepositoNomi> scanned = ArrayScansione.DepositoCondiviso();
  ArrayScansione.Azzera(2);
  EXPECT_TRUE(scanned.expired());
  EXPECT_EQ(comparison.operations(), before);
  EXPECT_EQ(before.size(), 4U);
  // Each folder's text once, so that the files of a folder are known by its address.
  EXPECT_EQ(ArrayTrasferimento[1].Sorgente.CartellaDelFile(),
            ArrayTrasferimento[2].Sorgente.CartellaDelFile());
  EXPECT_EQ(ArrayTrasferimento[1].Destinazione.CartellaDelFile(),
            ArrayTrasferimento[2].Destinazione.CartellaDelFile());
}

TEST(ConfrontaArrayPerFileMancanti, A_folder_whose_files_lie_around_those_of_another_is_kept_once) {
  Comparison comparison;
  for (const char* name : {"s/a", "s/b/x", "s/c", "s/d/x", "s/e"}) comparison.file(0, name);
  comparison.compare();
  ASSERT_EQ(ArrayTrasferimento.Numero(), 5U);
  for (const std::size_t i : {2U, 4U}) {
    EXPECT_EQ(ArrayTrasferimento[i].Sorgente.CartellaDelFile(),
              ArrayTrasferimento[0].Sorgente.CartellaDelFile());
    EXPECT_EQ(ArrayTrasferimento[i].Destinazione.CartellaDelFile(),
              ArrayTrasferimento[0].Destinazione.CartellaDelFile());
  }
}

TEST(ConfrontaArrayPerFileMancanti, New_records_stand_behind_those_that_the_list_holds) {
  Comparison comparison;
  comparison.file(0, "a");
  comparison.compare();
  comparison.compare();
  EXPECT_EQ(comparison.operations(), (Texts{"missing a 0 > 1", "missing a 0 > 1"}));
}

}  // namespace
}  // namespace tandemize
