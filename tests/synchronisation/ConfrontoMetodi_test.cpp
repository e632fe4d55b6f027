// Files that both paths of a pair have: the four methods.
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>

#include "platform/environment.h"
#include "storage/Percorsi.h"
#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::Comparison;
using test::ScopedVariable;
using test::Texts;

struct Case {
  const char* what;
  std::string first, second;            // contents
  std::int64_t secondsOfSecond;         // how much newer the second file is
  std::array<const char*, 4> expected;  // by method: kind and direction of the operation, empty for none
};

const std::vector<Case>& cases() {
  static const char *no = "", *dateTo0 = "date 1 > 0", *dateTo1 = "date 0 > 1", *sizeTo0 = "size 1 > 0",
                    *sizeTo1 = "size 0 > 1";
  static const std::vector<Case> all{
      {"the same", "abc", "abc", 0, {no, no, no, no}},
      {"newer by 2 seconds", "abc", "abc", 2, {no, no, no, no}},
      {"older by 2 seconds", "abc", "abc", -2, {no, no, no, no}},
      {"newer by 3 seconds, same content", "abc", "abc", 3, {no, dateTo0, no, no}},
      {"older by 3 seconds, same content", "abc", "abc", -3, {no, dateTo1, no, no}},
      {"newer, same size, other content", "abc", "abd", 3, {dateTo0, dateTo0, no, dateTo0}},
      {"older, same size, other content", "abc", "abd", -3, {dateTo1, dateTo1, no, dateTo1}},
      {"same date and size, other content", "abc", "abd", 0, {no, no, no, no}},
      {"2 seconds newer, other content", "abc", "abd", 2, {no, no, no, dateTo0}},
      {"1 second older, other content", "abc", "abd", -1, {no, no, no, dateTo1}},
      {"same date, larger", "abc", "abcd", 0, {sizeTo0, no, sizeTo0, no}},
      {"same date, smaller", "abc", "ab", 0, {sizeTo1, no, sizeTo1, no}},
      {"2 seconds older, larger", "abc", "abcd", -2, {sizeTo0, no, sizeTo0, dateTo1}},
      {"newer and larger", "abc", "abcd", 9, {dateTo0, dateTo0, sizeTo0, dateTo0}},
      {"newer and smaller", "abc", "ab", 9, {dateTo0, dateTo0, sizeTo1, dateTo0}},
      {"older and larger", "abc", "abcd", -9, {dateTo1, dateTo1, sizeTo0, dateTo1}},
      {"older and smaller", "abc", "ab", -9, {dateTo1, dateTo1, sizeTo1, dateTo1}},
      {"both empty, newer", "", "", 9, {no, dateTo0, no, no}},
      {"both empty, older", "", "", -9, {no, dateTo1, no, no}},
      {"the second emptied, same date", "abc", "", 0, {sizeTo1, no, sizeTo1, no}},
      {"the second emptied and newer", "abc", "", 9, {dateTo0, dateTo0, sizeTo1, dateTo0}},
      {"the first emptied and newer", "", "abc", -9, {dateTo1, dateTo1, sizeTo0, dateTo1}},
  };
  return all;
}

// All cases at once, each a file of its own, with the first path left alone if `sourceNotChange`.
void expectDecisions(std::int32_t method, bool sourceNotChange) {
  Comparison comparison;
  Texts expected;
  std::array<int, 2> replaced{};
  int number = 100;
  for (const Case& one : cases()) {
    const std::string name = std::to_string(number++) + " " + one.what;
    comparison.file(0, name, one.first);
    comparison.file(1, name, one.second, one.secondsOfSecond);
    const std::string decision = one.expected[static_cast<std::size_t>(method)];
    if (decision.empty() || (sourceNotChange && decision.ends_with('0'))) continue;
    expected.push_back(decision.substr(0, 5) + name + decision.substr(4));
    ++replaced[decision.ends_with('0') ? 0 : 1];
  }
  CompareMethod = method;
  SourceNotChange = sourceNotChange ? 1 : 0;
  comparison.compare();
  EXPECT_EQ(comparison.operations(), expected) << "method " << method;
  EXPECT_FALSE(comparison.confronto.ErroreCrc);
  for (std::size_t path = 0; path < 2; ++path)
    EXPECT_EQ(comparison.confronto.Contatori()[path].Sostituire, replaced[path]);
}

TEST(ConfrontaArrayPerDataDimensioneCRC32, Each_method_decides_by_its_own_values) {
  for (std::int32_t method = ConfrontoIntelligente; method <= ConfrontoCrc; ++method)
    expectDecisions(method, false);
}

TEST(ConfrontaArrayPerDataDimensioneCRC32, The_first_path_is_never_overwritten_where_it_is_to_stay) {
  for (std::int32_t method = ConfrontoIntelligente; method <= ConfrontoCrc; ++method)
    expectDecisions(method, true);
}

TEST(ConfrontaArrayPerDataDimensioneCRC32, Missing_files_only_means_that_nothing_is_overwritten) {
  for (std::int32_t method = ConfrontoIntelligente; method <= ConfrontoCrc; ++method) {
    Comparison comparison;
    FixFileOption = SoloMancanti;
    CompareMethod = method;
    comparison.pair("f", "abc", "abcd");
    comparison.file(1, "g");
    comparison.compare();
    EXPECT_EQ(comparison.operations(), Texts{"missing g 1 > 0"});
  }
}

TEST(ConfrontaArrayPerDataDimensioneCRC32, Files_are_overwritten_also_where_a_question_comes_first) {
  Comparison comparison;
  FixFileOption = ChiediPrima;
  comparison.pair("f", "abc", "abcd");
  comparison.compare();
  EXPECT_EQ(comparison.operations(), Texts{"date f 1 > 0"});
}

TEST(ConfrontaArrayPerDataDimensioneCRC32, A_method_that_there_is_not_compares_nothing) {
  Comparison comparison;
  CompareMethod = 4;
  comparison.pair("f", "abc", "abcd");
  comparison.compare();
  EXPECT_EQ(ArrayTrasferimento.Numero(), 0U);
}

TEST(ConfrontaArrayPerDataDimensioneCRC32, An_update_keeps_what_was_found_of_both_files) {
  Comparison comparison;
  comparison.file(0, "sub/f", "abc");
  comparison.file(1, "sub/f", "abcdef", 9);
  comparison.compare();
  ASSERT_EQ(ArrayTrasferimento.Numero(), 1U);
  const RecordFile &source = ArrayTrasferimento[0].Sorgente,
                   &destination = ArrayTrasferimento[0].Destinazione;
  EXPECT_EQ(source.Percorso(), comparison.program("1/sub/f"));
  EXPECT_EQ(source.Dimensione, 6);
  EXPECT_EQ(destination.Percorso(), comparison.program("0/sub/f"));
  EXPECT_EQ(destination.Nome(), "sub\\f");
  EXPECT_EQ(destination.Dimensione, 3);
  EXPECT_FALSE(destination.FileNuovo);
  EXPECT_EQ(destination.Motivo, MotivoOperazione::Data);
  EXPECT_EQ(source.Motivo, MotivoOperazione::Nessuno);
}

TEST(ConfrontaArrayPerDataDimensioneCRC32, The_newer_date_is_the_one_that_the_text_stands_for) {
  Comparison comparison;
  CompareMethod = ConfrontoData;
  comparison.file(0, "f");
  comparison.file(1, "f");
  comparison.scanAndSort();
  ArrayScansione.Riga(0, 0).Data = DataAssente;
  ArrayScansione.Riga(1, 0).Data = test::SomeDate + 3;
  comparison.compareOnly();
  EXPECT_EQ(comparison.operations(), Texts{"date f 1 > 0"});  // the missing date was read from the file
}

TEST(ConfrontaArrayPerDataDimensioneCRC32, A_file_whose_date_cannot_be_had_is_older_than_any) {
  Comparison comparison;
  CompareMethod = ConfrontoData;
  comparison.file(0, "f");
  comparison.file(1, "f");
  comparison.scanAndSort();
  ArrayScansione.Riga(0, 0).Data = DataAssente;
  fs::remove(comparison.work().host("0/f"));
  comparison.compareOnly();
  EXPECT_EQ(comparison.operations(), Texts{"date f 1 > 0"});
}

// --- checksums of the intelligent method

// Neither file of the row "f" can be read.
void expectBothFailed(Comparison& comparison) {
  comparison.compareWithout({"0/f", "1/f"});
  EXPECT_EQ(ArrayTrasferimento.Numero(), 0U);
  EXPECT_TRUE(comparison.confronto.ErroreCrc);
  EXPECT_EQ(ArrayScansione.Riga(0, 0).Attributi, -1);
  EXPECT_EQ(ArrayScansione.Riga(1, 0).Attributi, -1);
}

TEST(IntelligentMethod, A_file_of_the_largest_size_or_more_is_equal_to_one_of_the_same_size) {
  for (const double size : {DimensioneMassimaCrc - 1, DimensioneMassimaCrc, DimensioneMassimaCrc + 1}) {
    Comparison comparison;
    comparison.pair("f", "abc", "abd");
    comparison.scanAndSort();
    ArrayScansione.Riga(0, 0).Dimensione = ArrayScansione.Riga(1, 0).Dimensione = size;
    comparison.compareOnly();
    EXPECT_EQ(ArrayTrasferimento.Numero(), size < DimensioneMassimaCrc ? 1U : 0U);
  }
}

TEST(IntelligentMethod, One_checksum_that_fails_counts_as_a_difference_and_the_date_decides) {
  for (const bool newer : {true, false}) {
    Comparison comparison;
    comparison.pair("f", "abc", "abc", newer ? 9 : -9);
    comparison.compareWithout({"0/f"});
    EXPECT_EQ(comparison.operations(), Texts{newer ? "date f 1 > 0" : "date f 0 > 1"});
    EXPECT_FALSE(comparison.confronto.ErroreCrc);
    EXPECT_NE(ArrayScansione.Riga(0, 0).Attributi, -1);
  }
}

TEST(IntelligentMethod, Two_checksums_that_fail_are_told_and_nothing_is_planned) {
  Comparison comparison;
  comparison.pair("f", "abc", "abc");
  expectBothFailed(comparison);
}

TEST(IntelligentMethod, No_checksum_is_asked_for_where_dates_and_sizes_tell_enough) {
  Comparison comparison;
  comparison.pair("same", "x", "x", 2);
  comparison.pair("size", "abc", "abcd");
  comparison.pair("empty", "", "");
  comparison.compareWithout({"0/same", "1/same", "0/size", "1/size", "0/empty", "1/empty"});
  EXPECT_EQ(comparison.operations(), Texts{"date size 1 > 0"});
  EXPECT_FALSE(comparison.confronto.ErroreCrc);
}

TEST(IntelligentMethod, Many_files_of_another_date_are_each_judged_by_their_content) {
  Comparison comparison;
  Texts expected;
  for (int i = 1000; i < 1700; ++i) {
    const std::string name = std::to_string(i);
    comparison.file(0, name, name);
    comparison.file(1, name, i % 50 == 7 ? "diff" : name, i % 3 == 0 ? 0 : 9);
    if (i % 50 == 7 && i % 3 != 0) expected.push_back("date " + name + " 1 > 0");
  }
  comparison.compare();
  EXPECT_EQ(comparison.operations(), expected);
}

// Moments an hour apart that have one text, among others that have not: no checksum goes to the wrong pair.
TEST(IntelligentMethod, Dates_that_only_look_different_put_no_other_pair_out_of_step) {
  const ScopedVariable zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
  ::tzset();
  constexpr std::int64_t InTheHourThatComesTwice = 1729990800 + 60 - test::SomeDate;
  Comparison comparison;
  for (const char* name : {"a", "b", "c", "d"}) {
    const bool twice = *name == 'a' || *name == 'c';
    comparison.file(0, name, "abc", InTheHourThatComesTwice);
    comparison.file(1, name, *name == 'd' ? "abd" : "abc", InTheHourThatComesTwice - (twice ? 3600 : 5));
  }
  comparison.compare();
  EXPECT_EQ(comparison.operations(), Texts{"date d 0 > 1"});
}

// --- method 3

class ByCrc : public Comparison {
 public:
  explicit ByCrc(std::size_t paths = 2) : Comparison(paths) { CompareMethod = ConfrontoCrc; }
};

TEST(CrcMethod, One_checksum_that_fails_is_told_and_the_date_decides) {
  ByCrc comparison;
  comparison.pair("f", "abc", "abc");
  comparison.compareWithout({"0/f"});
  EXPECT_EQ(comparison.operations(), Texts{"date f 1 > 0"});
  EXPECT_TRUE(comparison.confronto.ErroreCrc);
  EXPECT_EQ(ArrayScansione.Riga(0, 0).Attributi, -1);
  EXPECT_NE(ArrayScansione.Riga(1, 0).Attributi, -1);
  EXPECT_EQ(ArrayTrasferimento[0].Destinazione.Attributi, -1);
}

TEST(CrcMethod, Two_checksums_that_fail_are_told_and_nothing_is_planned) {
  ByCrc comparison;
  comparison.pair("f", "abc", "abd");
  expectBothFailed(comparison);
}

TEST(CrcMethod, An_empty_file_that_cannot_be_read_is_told_too) {
  ByCrc comparison;
  comparison.pair("f", "", "");
  comparison.compareWithout({"1/f"});
  EXPECT_EQ(ArrayTrasferimento.Numero(), 0U);
  EXPECT_TRUE(comparison.confronto.ErroreCrc);
  EXPECT_EQ(ArrayScansione.Riga(1, 0).Attributi, -1);
}

TEST(CrcMethod, A_file_that_has_changed_since_the_scan_is_judged_by_what_it_holds_now) {
  for (const std::string now : {"abcd", "ab", "", "xyz"}) {
    ByCrc comparison;
    comparison.pair("f", "abc", "abc");
    comparison.scanAndSort();
    comparison.work().write("0/f", now);
    comparison.compareOnly();
    EXPECT_EQ(comparison.operations(), Texts{"date f 1 > 0"}) << now;
    EXPECT_FALSE(comparison.confronto.ErroreCrc);
  }
}

TEST(CrcMethod, Large_and_small_files_in_turn_all_get_their_own_checksums) {
  ByCrc comparison;
  Texts expected;
  for (int i = 10; i < 60; ++i) {
    const std::string name = std::to_string(i);
    const std::string content(static_cast<std::size_t>(i % 7 == 0 ? 300'000 : i % 5 == 0 ? 262'144 : i), 'a');
    std::string other = content;
    if (i % 3 == 0) other.back() = 'b';
    comparison.file(0, name, content);
    comparison.file(1, name, other, i % 2 == 0 ? 9 : -9);
    if (i % 3 == 0) expected.push_back("date " + name + (i % 2 == 0 ? " 1 > 0" : " 0 > 1"));
  }
  comparison.compare();
  EXPECT_EQ(comparison.operations(), expected);
  EXPECT_FALSE(comparison.confronto.ErroreCrc);
}

TEST(CrcMethod, More_pairs_than_are_read_ahead_at_a_time_are_all_compared) {
  ByCrc comparison;
  Texts expected;
  for (int i = 1000; i < 2200; ++i) {
    const std::string name = std::to_string(i);
    comparison.file(0, name, "a");
    if (i % 11 == 0) {
      expected.push_back("missing " + name + " 0 > 1");
      continue;
    }
    comparison.file(1, name, i % 100 == 7 ? "b" : "a", 9);
    if (i % 100 == 7) expected.push_back("date " + name + " 1 > 0");
  }
  comparison.compare();
  EXPECT_EQ(comparison.operations(), expected);
}

// The rows of the third and fourth path are judged by the files that stand at the same rows of the first and
// second.
TEST(CrcMethod, Reads_the_first_two_paths_whatever_the_pair_is) {
  ByCrc comparison(4);
  comparison.file(0, "a", "one");
  comparison.file(1, "a", "two");
  comparison.file(0, "b", "equal");
  comparison.file(1, "b", "equal");
  for (const char* name : {"c", "d"}) {
    comparison.file(2, name, "alike");
    comparison.file(3, name, "alike", 9);
  }
  comparison.work().write("3/d", "different");
  comparison.compare();
  EXPECT_EQ(comparison.operations(), Texts{"date c 3 > 2"});
  EXPECT_FALSE(comparison.confronto.ErroreCrc);
}

TEST(CrcMethod, A_row_beyond_the_end_of_the_first_two_paths_is_told_as_failed_and_not_planned) {
  ByCrc comparison(4);
  comparison.file(0, "a");
  comparison.file(1, "a");
  comparison.file(1, "b");
  for (const char* name : {"c", "d", "e"}) {
    comparison.file(2, name, "abc");
    comparison.file(3, name, "abd", 9);
  }
  comparison.compare();
  EXPECT_EQ(comparison.operations(), Texts{"missing b 1 > 0"});
  EXPECT_TRUE(comparison.confronto.ErroreCrc);
  const auto failed = [](std::size_t column, std::size_t row) {
    return ArrayScansione.Riga(column, row).Attributi == -1;
  };
  EXPECT_FALSE(failed(2, 0) || failed(3, 0));
  EXPECT_TRUE(failed(2, 1));
  EXPECT_FALSE(failed(3, 1));  // the second path has a row there
  EXPECT_TRUE(failed(2, 2) && failed(3, 2));
}

TEST(CrcMethod, In_single_mode_it_is_the_rows_of_the_first_two_paths_too) {
  ByCrc comparison(3);
  TandemMode = ModoSingolo;
  for (std::size_t path = 0; path < 3; ++path)
    comparison.file(path, "a", path == 2 ? "other" : "same", path == 2 ? 9 : 0);
  comparison.compare();
  EXPECT_EQ(ArrayTrasferimento.Numero(), 0U);  // the third file is never read
}

// --- stop

TEST(CrcMethod, A_stop_while_checksums_are_worked_out_plans_and_tells_nothing_of_that_pair) {
  for (const std::size_t size : {std::size_t{3}, std::size_t{600'000}}) {
    ByCrc comparison;
    for (const char* name : {"f", "g"}) comparison.pair(name, std::string(size, 'a'), std::string(size, 'b'));
    comparison.scanAndSort();
    comparison.screen.onEvents = [] { AnnullaOperazioneInCorso(); };
    comparison.compareOnly();
    EXPECT_TRUE(comparison.owner.ProcessoAnnullato);
    EXPECT_LE(ArrayTrasferimento.Numero(), 1U);
    EXPECT_FALSE(comparison.confronto.ErroreCrc);
  }
}

}  // namespace
}  // namespace tandemize
