// The rows that the comparison hands to the screen.
#include "synchronisation/AggiungiOperazione.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "shell/Lingua.h"
#include "storage/File_System.h"
#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::Comparison;
using test::SomeDate;
using test::Texts;

class WithRows : public Comparison {
 public:
  explicit WithRows(std::size_t paths = 2) : Comparison(paths) { screen.keepsRows = true; }
  // The only row of a list.
  RigaUnita row(std::size_t list) {
    EXPECT_EQ(screen.rows[list].Righe(), 1U);
    return screen.rows[list].Righe() == 1 ? screen.rows[list].Riga(0) : RigaUnita();
  }
};

TEST(AggiungiOperazione, A_missing_file_has_a_row_in_the_list_of_the_path_that_lacks_it) {
  WithRows comparison;
  comparison.file(0, "sub/a.txt", std::string(1234, 'x'));
  comparison.compare();
  const RigaUnita row = comparison.row(1);
  EXPECT_EQ(row.chiave, comparison.program("1/sub/a.txt"));
  EXPECT_EQ(row.nome, "sub\\a.txt");
  EXPECT_EQ(row.data, TestoDataFile(SomeDate));
  EXPECT_EQ(row.dimensione, "1.234 Byte");
  EXPECT_EQ(row.attributi, Messaggio(80));
  EXPECT_EQ(row.stato, Messaggio(286));
  EXPECT_EQ(row.etichettaStato, 0);
  EXPECT_EQ(row.estensione, ".TXT");
  EXPECT_EQ(row.icona, RigaUnita::Icona::DelFile);
  EXPECT_EQ(row.sorgente, comparison.program("0/sub/a.txt"));
  EXPECT_EQ(row.destinazione, comparison.program("1/sub/a.txt"));
  EXPECT_EQ(comparison.screen.rows[0].Righe(), 0U);
}

TEST(AggiungiOperazione, A_file_that_comes_back_has_its_row_in_the_list_of_the_first_path) {
  WithRows comparison;
  comparison.file(1, "a");
  comparison.compare();
  EXPECT_EQ(comparison.row(0).chiave, comparison.program("0/a"));
  EXPECT_EQ(comparison.row(0).stato, Messaggio(286));
}

TEST(AggiungiOperazione, A_different_file_has_a_row_with_what_is_there_now_and_the_reason) {
  WithRows comparison;
  comparison.file(0, "date", "new", 100);
  comparison.file(1, "date", "four");
  comparison.compare();
  RigaUnita row = comparison.row(1);
  EXPECT_EQ(row.chiave, comparison.program("1/date"));
  EXPECT_EQ(row.data, TestoDataFile(SomeDate));
  EXPECT_EQ(row.dimensione, "4 Byte");
  EXPECT_EQ(row.stato, Messaggio(74));
  EXPECT_EQ(row.etichettaStato, 1);

  comparison.screen.rows.clear();
  CompareMethod = ConfrontoDimensione;
  comparison.compare();
  row = comparison.row(0);
  EXPECT_EQ(row.stato, Messaggio(75));
  EXPECT_EQ(row.dimensione, "3 Byte");
}

// The difference in content is told as one of the date, which decides.
TEST(AggiungiOperazione, A_different_checksum_is_told_as_a_different_date) {
  for (const std::int32_t method : {ConfrontoIntelligente, ConfrontoCrc}) {
    WithRows comparison;
    CompareMethod = method;
    comparison.file(0, "a", "one", 100);
    comparison.file(1, "a", "two");
    comparison.compare();
    EXPECT_EQ(comparison.row(1).stato, Messaggio(74));
  }
}

TEST(AggiungiOperazione,
     A_deletion_has_its_row_in_the_list_of_the_path_that_loses_the_file_under_its_own_path) {
  WithRows comparison;
  SourceNotChange = EraseFile = 1;
  comparison.file(1, "sub/a", "12345");
  comparison.compare();
  const RigaUnita row = comparison.row(1);
  EXPECT_EQ(row.chiave, comparison.program("1/sub/a"));
  EXPECT_EQ(row.nome, "sub\\a");
  EXPECT_EQ(row.dimensione, "5 Byte");
  EXPECT_EQ(row.stato, Messaggio(423));
  EXPECT_EQ(row.etichettaStato, 0);
}

TEST(AggiungiOperazione, Sizes_have_their_thousands_parted_by_the_language) {
  for (const bool italian : {true, false}) {
    WithRows comparison;
    Language = italian ? 0 : 1;
    comparison.file(0, "a", "");
    comparison.file(0, "b");
    comparison.file(0, "c");
    comparison.scan();
    comparison.sort();
    ArrayScansione.Riga(0, 1).Dimensione = 999;
    ArrayScansione.Riga(0, 2).Dimensione = 1234567890123;
    comparison.compareOnly();
    EXPECT_EQ(comparison.screen.rows[1].Riga(0).dimensione, "0 Byte");
    EXPECT_EQ(comparison.screen.rows[1].Riga(1).dimensione, "999 Byte");
    EXPECT_EQ(comparison.screen.rows[1].Riga(2).dimensione,
              italian ? "1.234.567.890.123 Byte" : "1,234,567,890,123 Byte");
  }
}

TEST(AggiungiOperazione, A_destination_whose_checksum_failed_says_so_in_place_of_its_attributes) {
  WithRows comparison;
  CompareMethod = ConfrontoCrc;
  comparison.file(0, "a", "abc", 100);
  comparison.file(1, "a", "abc");
  comparison.scan();
  comparison.sort();
  fs::remove(comparison.work().host("1/a"));
  comparison.compareOnly();
  EXPECT_EQ(comparison.row(1).attributi, Messaggio(425));
}

TEST(AggiungiOperazione, A_destination_that_carries_the_mark_of_a_failed_checksum_sets_the_flag) {
  for (const bool rows : {true, false}) {
    WithRows comparison;
    comparison.screen.keepsRows = rows;
    CompareMethod = ConfrontoDimensione;
    comparison.file(0, "a", "abc");
    comparison.file(1, "a", "abcd");
    comparison.scan();
    comparison.sort();
    ArrayScansione.Riga(1, 0).Attributi = -1;
    comparison.compareOnly();
    EXPECT_FALSE(comparison.confronto.ErroreCrc);  // it is the source here
    ArrayScansione.Riga(0, 0).Attributi = -1;
    comparison.compareOnly();
    EXPECT_TRUE(comparison.confronto.ErroreCrc);
  }
}

struct IconRule {
  const char* file;
  bool many, tooMany;
  RigaUnita::Icona icon;
  const char* extension;
};

TEST(AggiungiOperazione, Icons_are_taken_from_fewer_places_the_more_differences_there_are) {
  using Icona = RigaUnita::Icona;
  const std::vector<IconRule> rules{
      {"a.txt", false, false, Icona::DelFile, ".TXT"}, {"a.txt", true, false, Icona::DelTipo, ".TXT"},
      {"a.txt", false, true, Icona::Nessuna, ".TXT"},  {"a.txt", true, true, Icona::Nessuna, ".TXT"},
      {"a.exe", false, false, Icona::DelFile, ".EXE"}, {"a.Exe", true, false, Icona::DelFile, ".EXE"},
      {"a.exe", true, true, Icona::Nessuna, ".EXE"},   {"a", true, false, Icona::DelTipo, ""},
      {"a.b/exe", true, false, Icona::DelTipo, ""},    {"a.tar.gz", true, false, Icona::DelTipo, ".GZ"},
      {"sub.exe/a", true, false, Icona::DelTipo, ""},  {"a.", true, false, Icona::DelTipo, "."},
  };
  for (const IconRule& rule : rules) {
    WithRows comparison;
    comparison.file(0, rule.file);
    comparison.scan();
    comparison.sort();
    comparison.confronto.MoltiDifferenze = rule.many;
    comparison.confronto.TroppeDifferenze = rule.tooMany;
    comparison.compareOnly();
    EXPECT_EQ(comparison.row(1).icona, rule.icon) << rule.file;
    EXPECT_EQ(comparison.row(1).estensione, rule.extension);
  }
}

// In Single Mode two pairs may change the same file.
TEST(AggiungiOperazione, A_second_change_of_one_file_goes_over_the_last_row_and_is_in_the_list_all_the_same) {
  WithRows comparison(3);
  TandemMode = ModoSingolo;
  CompareMethod = ConfrontoDimensione;
  comparison.file(0, "a", "123");
  comparison.file(1, "a", "12");
  comparison.file(2, "a", "1");
  comparison.file(0, "z", "1");
  comparison.compare();
  EXPECT_EQ(comparison.operations(),
            (Texts{"size a 0 > 1", "missing z 0 > 1", "size a 0 > 2", "missing z 0 > 2", "size a 1 > 2"}));
  ListaUnita& list = comparison.screen.rows[2];
  ASSERT_EQ(list.Righe(), 2U);
  EXPECT_EQ(list.Riga(0).nome, "a");
  EXPECT_EQ(list.Riga(0).stato, Messaggio(75));
  EXPECT_EQ(list.Riga(1).nome, "z");
  EXPECT_EQ(list.Riga(1).stato, Messaggio(75));
  EXPECT_EQ(list.Riga(1).etichettaStato, 1);
}

TEST(AggiungiOperazione, A_screen_that_shows_no_rows_is_given_none) {
  WithRows comparison;
  comparison.screen.keepsRows = false;
  comparison.file(0, "a");
  comparison.compare();
  EXPECT_EQ(ArrayTrasferimento.Numero(), 1U);
  EXPECT_TRUE(comparison.screen.rows.empty());
}

}  // namespace
}  // namespace tandemize
