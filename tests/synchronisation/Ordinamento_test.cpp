#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "shell/Lingua.h"
#include "storage/Percorsi.h"
#include "synchronisation/ChiaviColonna.h"
#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

using test::Comparison;
using test::scannedFile;
using test::Texts;

// A column of these names, without any files behind it.
class Column : public Comparison {
 public:
  explicit Column(const Texts& names, std::int32_t kind = PercorsoLocale) : Comparison(1) {
    fill(names, kind);
  }

  void fill(const Texts& names, std::int32_t kind = PercorsoLocale) {
    ArrayScansione.Azzera(1);
    ArrayScansione.ImpostaTipo(0, kind);
    for (const std::string& name : names) {
      RecordFile record = scannedFile(kind == PercorsoFtp ? "/pub/" : "C:\\data\\", name);
      record.TipoPercorso = static_cast<std::int8_t>(kind);
      record.Dimensione = static_cast<double>(name.size());
      ArrayScansione.Aggiungi(0, record);
    }
  }

  [[nodiscard]] Texts sorted() {
    sort();
    return names(0);
  }
};

TEST(OrdinaTutteLeUnita, Names_stand_in_the_order_of_their_upper_case_by_code_value) {
  EXPECT_EQ(Column({"b", "C", "a", "_", "[", "Z", "0", "à", "é"}).sorted(),
            (Texts{"0", "a", "b", "C", "Z", "[", "_", "à", "é"}));
}

TEST(OrdinaTutteLeUnita, The_separator_is_a_character_like_any_other) {
  EXPECT_EQ(Column({"a\\b", "a.b", "ab", "a]b", "a", "a b"}).sorted(),
            (Texts{"a", "a b", "a.b", "ab", "a\\b", "a]b"}));
}

TEST(OrdinaTutteLeUnita, A_server_s_names_stand_as_if_they_had_the_local_separator) {
  EXPECT_EQ(Column({"ab", "a/b", "a.b", "a-b", "a]b"}, PercorsoFtp).sorted(),
            (Texts{"a-b", "a.b", "ab", "a/b", "a]b"}));
}

TEST(OrdinaTutteLeUnita, Names_that_differ_only_in_case_stand_in_the_order_of_the_names) {
  EXPECT_EQ(Column({"a", "b", "B", "A", "sub\\X", "Sub\\x", "c"}).sorted(),
            (Texts{"A", "a", "B", "b", "c", "Sub\\x", "sub\\X"}));
}

TEST(OrdinaTutteLeUnita, A_folder_in_two_cases_of_letters_is_one_in_the_order) {
  EXPECT_EQ(Column({"d\\x", "d\\z", "D\\y", "D\\w"}).sorted(), (Texts{"D\\w", "d\\x", "D\\y", "d\\z"}));
}

TEST(OrdinaTutteLeUnita, Upper_case_is_that_of_all_letters) {
  EXPECT_EQ(Column({"ñ", "ó", "Ñ", "Ò", "ß", "ÿ", "я", "А"}).sorted(),
            (Texts{"Ñ", "ñ", "Ò", "ó", "ß", "ÿ", "А", "я"}));
}

TEST(OrdinaTutteLeUnita, Rows_move_with_all_their_values) {
  Column column({"ccc", "a", "bb", "dddd"});
  column.sort();
  for (std::size_t r = 0; r < 4; ++r)
    EXPECT_EQ(ArrayScansione.Riga(0, r).Dimensione, static_cast<double>(r + 1));
}

TEST(OrdinaTutteLeUnita, Names_that_are_not_utf_8_stay_as_they_are) {
  EXPECT_EQ(Column({"b\xFF", "B\xFE", "a\xC3"}).sorted(), (Texts{"a\xC3", "B\xFE", "b\xFF"}));
}

// Many names of few letters: long equal beginnings, names that begin with others, groups of every size.
TEST(OrdinaTutteLeUnita, Any_names_come_in_the_order_that_a_plain_sort_gives) {
  Column column({});
  for (unsigned seed = 1; seed <= 30; ++seed) {
    std::mt19937 random(seed);
    Texts names;
    for (int i = 0; i < 400; ++i) {
      std::string name(1 + random() % 30, 'a');
      for (char& c : name) c = "aaaaaaaab\\."[random() % 11];
      name = "x" + name + "x";
      names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::shuffle(names.begin(), names.end(), random);
    Texts expected = names;
    std::sort(expected.begin(), expected.end(),
              [](const std::string& a, const std::string& b) { return Maiuscolo(a) < Maiuscolo(b); });
    column.fill(names);
    ASSERT_EQ(column.sorted(), expected) << "seed " << seed;
  }
}

TEST(OrdinaTutteLeUnita, Each_column_is_sorted_and_told_with_its_number) {
  Comparison comparison(3);
  for (const char* name : {"b", "a", "c"}) {
    comparison.file(0, name);
    comparison.file(2, name);
  }
  comparison.scan();
  Texts told;
  std::vector<double> values;
  comparison.screen.onEvents = [&] {
    told.push_back(comparison.screen.lastProgress.testo);
    values.push_back(comparison.screen.lastProgress.valore);
  };
  comparison.sort();
  comparison.screen.onEvents = nullptr;
  EXPECT_EQ(comparison.names(0), (Texts{"a", "b", "c"}));
  EXPECT_EQ(comparison.names(2), (Texts{"a", "b", "c"}));
  EXPECT_EQ(told, (Texts{Messaggio(285) + " 1", Messaggio(285) + " 2", Messaggio(285) + " 3"}));
  ASSERT_EQ(values.size(), 3U);
  EXPECT_NEAR(values[0], 100 / 3.0, 1e-9);
  EXPECT_NEAR(values[1], 200 / 3.0, 1e-9);
  EXPECT_NEAR(values[2], 100, 1e-9);
}

TEST(OrdinaTutteLeUnita, A_stop_ends_it_before_the_next_column) {
  Comparison comparison(2);
  for (int i = 9; i >= 0; --i) comparison.file(1, std::to_string(i));
  comparison.scan();
  const Texts before = comparison.names(1);
  comparison.screen.onEvents = [] { AnnullaOperazioneInCorso(); };
  comparison.sort();
  EXPECT_TRUE(comparison.owner.ProcessoAnnullato);
  EXPECT_EQ(comparison.names(1), before);
}

TEST(OrdinaTutteLeUnita, A_stop_reaches_into_a_long_column) {
  Texts names;
  for (int i = 9999; i >= 0; --i) names.push_back(std::to_string(10000 + i));
  Column column(names);
  column.screen.onEvents = [] { AnnullaOperazioneInCorso(); };
  column.sort();
  EXPECT_EQ(column.screen.events, 2);  // one while the keys are made, one behind the column
  EXPECT_EQ(column.names(0), names);
}

TEST(OrdinaTutteLeUnita, Tables_without_columns_or_files_do_no_harm) {
  Comparison none(0), empty(2);
  none.scan();
  none.sort();
  empty.scan();
  empty.sort();
  EXPECT_EQ(ArrayScansione.Righe(0), 0U);
}

TEST(NomiUguali, Compares_the_part_below_the_scanned_path_with_regard_to_case) {
  ArrayScansione.Azzera(1);
  const RecordFile one = scannedFile("C:\\one\\", "sub\\a");
  EXPECT_TRUE(NomiUguali(one, scannedFile("D:\\other\\", "sub\\a")));
  EXPECT_FALSE(NomiUguali(one, scannedFile("D:\\other\\", "sub\\A")));
  EXPECT_FALSE(NomiUguali(one, scannedFile("D:\\other\\", "Sub\\a")));
  EXPECT_FALSE(NomiUguali(one, scannedFile("D:\\other\\", "sub2\\a")));
  EXPECT_TRUE(NomiUguali(scannedFile("C:\\one\\", "a"), scannedFile("D:\\", "a")));
  ArrayScansione.Azzera(0);
}

TEST(NomiUguali, A_path_scanned_without_a_separator_behind_it_has_the_same_names) {
  ArrayScansione.Azzera(1);
  EXPECT_TRUE(NomiUguali(scannedFile("C:\\one", "\\sub\\a"), scannedFile("D:\\other\\", "sub\\a")));
  ArrayScansione.Azzera(0);
}

TEST(NomiUguali, A_server_s_names_are_equal_to_local_ones) {
  ArrayScansione.Azzera(1);
  RecordFile remote = scannedFile("/pub/", "sub/a");
  remote.TipoPercorso = PercorsoFtp;
  EXPECT_TRUE(NomiUguali(remote, scannedFile("D:\\other\\", "sub\\a")));
  EXPECT_FALSE(NomiUguali(remote, scannedFile("D:\\other\\", "sub\\b")));
  ArrayScansione.Azzera(0);
}

}  // namespace
}  // namespace tandemize
