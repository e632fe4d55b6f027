// The driver: which pairs are compared, counters, progress, the alarm, the stop.
#include "synchronisation/Confronto.h"

#include <gtest/gtest.h>

#include "fixtures/LogLines.h"
#include "shell/Lingua.h"
#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

using test::Comparison;
using test::Texts;

constexpr const char* Alarm = "Errore grave la somma dei file non corrisponde";

// Files "<path>" in each path, so that every pair shows itself in the list.
Texts pairsOf(std::size_t paths, std::int32_t mode) {
  Comparison comparison(paths);
  TandemMode = mode;
  SourceNotChange = 1;
  for (std::size_t i = 0; i < paths; ++i) comparison.file(i, std::to_string(i));
  comparison.compare();
  return comparison.operations();
}

TEST(VisualizzaRapporto, Multiple_mode_compares_the_two_paths_of_each_row) {
  EXPECT_EQ(pairsOf(2, ModoMultiplo), Texts{"missing 0 0 > 1"});
  EXPECT_EQ(pairsOf(4, ModoMultiplo), (Texts{"missing 0 0 > 1", "missing 2 2 > 3"}));
  EXPECT_EQ(pairsOf(6, ModoMultiplo), (Texts{"missing 0 0 > 1", "missing 2 2 > 3", "missing 4 4 > 5"}));
}

TEST(VisualizzaRapporto, A_last_path_without_a_partner_is_compared_with_nothing) {
  EXPECT_EQ(pairsOf(3, ModoMultiplo), Texts{"missing 0 0 > 1"});
  EXPECT_EQ(pairsOf(1, ModoMultiplo), Texts{});
  EXPECT_EQ(pairsOf(1, ModoSingolo), Texts{});
}

TEST(VisualizzaRapporto, Single_mode_compares_every_path_with_every_later_one) {
  EXPECT_EQ(pairsOf(2, ModoSingolo), Texts{"missing 0 0 > 1"});
  EXPECT_EQ(pairsOf(3, ModoSingolo), (Texts{"missing 0 0 > 1", "missing 0 0 > 2", "missing 1 1 > 2"}));
  EXPECT_EQ(pairsOf(4, ModoSingolo), (Texts{"missing 0 0 > 1", "missing 0 0 > 2", "missing 0 0 > 3",
                                            "missing 1 1 > 2", "missing 1 1 > 3", "missing 2 2 > 3"}));
}

TEST(VisualizzaRapporto, Two_empty_paths_lead_to_nothing) {
  Comparison comparison;
  comparison.compare();
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
  EXPECT_EQ(comparison.counters(), (Texts{"0 0 0", "0 0 0"}));
  EXPECT_TRUE(comparison.screen.boxes.empty());
}

TEST(VisualizzaRapporto, No_paths_lead_to_nothing) {
  for (const std::int32_t mode : {ModoSingolo, ModoMultiplo}) {
    Comparison comparison(0);
    TandemMode = mode;
    comparison.compare();
    EXPECT_TRUE(ArrayTrasferimento.Vuota());
  }
}

TEST(VisualizzaRapporto, A_file_of_the_first_of_three_paths_stands_twice_once_for_each_destination) {
  Comparison comparison(3);
  TandemMode = ModoSingolo;
  comparison.file(0, "a");
  comparison.compare();
  EXPECT_EQ(comparison.operations(), (Texts{"missing a 0 > 1", "missing a 0 > 2"}));
  EXPECT_EQ(comparison.counters(), (Texts{"1 0 0", "0 1 0", "0 1 0"}));
  EXPECT_TRUE(comparison.screen.boxes.empty());
}

TEST(VisualizzaRapporto, A_file_of_the_last_of_three_paths_stands_twice_towards_the_others) {
  Comparison comparison(3);
  TandemMode = ModoSingolo;
  comparison.file(2, "a");
  comparison.compare();
  EXPECT_EQ(comparison.operations(), (Texts{"missing a 2 > 0", "missing a 2 > 1"}));
  EXPECT_TRUE(comparison.screen.boxes.empty());
}

TEST(VisualizzaRapporto, Counters_run_on_over_the_pairs_and_positions_begin_anew) {
  Comparison comparison(3);
  TandemMode = ModoSingolo;
  comparison.file(0, "a", "x", 9);
  comparison.file(1, "a");
  comparison.file(2, "a");
  comparison.file(2, "b");
  CompareMethod = ConfrontoData;
  comparison.compare();
  EXPECT_EQ(comparison.operations(),
            (Texts{"date a 0 > 1", "date a 0 > 2", "missing b 2 > 0", "missing b 2 > 1"}));
  EXPECT_EQ(comparison.counters(), (Texts{"1 1 0", "1 1 1", "2 0 1"}));
}

// The mark of a deletion lies on the record of the table.
TEST(VisualizzaRapporto, A_file_that_an_earlier_pair_deletes_is_to_be_deleted_for_later_pairs_too) {
  Comparison comparison(3);
  TandemMode = ModoSingolo;
  SourceNotChange = EraseFile = 1;
  comparison.file(1, "a");
  comparison.file(1, "b", "x", 9);
  comparison.file(2, "b");
  CompareMethod = ConfrontoData;
  comparison.compare();
  EXPECT_EQ(comparison.operations(),
            (Texts{"delete a 1", "delete b 1", "delete b 2", "delete a 1", "delete b 1"}));
  EXPECT_FALSE(ArrayTrasferimento[4].Destinazione.FileNuovo);  // b of path 2, which was to be replaced
}

TEST(VisualizzaRapporto, Without_the_setting_the_mark_of_a_deletion_means_nothing_for_the_rows) {
  Comparison comparison;
  comparison.screen.keepsRows = true;
  comparison.file(0, "a");
  comparison.scan();
  comparison.sort();
  ArrayScansione.Riga(0, 0).DaEliminare = true;
  comparison.compareOnly();
  EXPECT_EQ(comparison.screen.rows[1].Riga(0).stato, Messaggio(286));
}

// --- the alarm

TEST(VisualizzaRapporto, Files_passed_over_in_single_mode_raise_the_alarm_and_nothing_is_undone) {
  Comparison comparison;
  TandemMode = ModoSingolo;
  SourceNotChange = 1;
  comparison.file(0, "a");
  comparison.file(1, "b");
  comparison.compare();
  ASSERT_EQ(comparison.screen.boxes.size(), 1U);
  EXPECT_EQ(comparison.screen.boxes[0].text, Alarm);
  EXPECT_EQ(comparison.screen.boxes[0].style, StileSemplice);
  EXPECT_EQ(comparison.operations(), Texts{"missing a 0 > 1"});
}

TEST(VisualizzaRapporto, Each_pair_whose_sums_differ_raises_the_alarm) {
  Comparison comparison(3);
  TandemMode = ModoSingolo;
  SourceNotChange = 1;
  comparison.file(1, "b");
  comparison.file(2, "b");
  comparison.compare();
  EXPECT_EQ(comparison.counters(), (Texts{"0 0 0", "1 0 0", "1 0 0"}));
  EXPECT_EQ(comparison.screen.boxes.size(), 2U);  // 0 with 1, and 0 with 2
}

TEST(VisualizzaRapporto, Multiple_mode_raises_no_alarm) {
  Comparison comparison;
  SourceNotChange = 1;
  comparison.file(1, "b");
  comparison.compare();
  EXPECT_TRUE(comparison.screen.boxes.empty());
}

// --- what is shown

TEST(VisualizzaRapporto, Is_told_on_the_bar_and_in_the_log) {
  Comparison comparison;
  comparison.file(0, "a");
  comparison.scan();
  comparison.sort();
  std::string text;
  comparison.screen.onEvents = [&] { text = comparison.screen.lastProgress.testo; };
  comparison.compareOnly();
  EXPECT_EQ(text, Messaggio(284));
  EXPECT_EQ(test::countLinesWith(test::logLines(comparison.log()), "| " + Messaggio(73)), 1);
}

// What the bar shows while events run, as hundredths.
std::vector<double> shownValues(Comparison& comparison) {
  std::vector<double> values;
  comparison.screen.onEvents = [&] { values.push_back(comparison.screen.lastProgress.valore); };
  comparison.compareOnly();
  comparison.screen.onEvents = nullptr;
  return values;
}

TEST(VisualizzaRapporto, The_bar_of_multiple_mode_counts_each_path_once_and_one_more) {
  Comparison comparison(4);
  comparison.file(0, "a");
  comparison.file(1, "b");
  comparison.file(2, "c");
  comparison.scan();
  comparison.sort();
  const std::vector<double> values = shownValues(comparison);  // 3 files and 4 paths
  ASSERT_EQ(values.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(values[i], 100.0 * static_cast<double>(i + 1) / 7, 1e-9);
}

TEST(VisualizzaRapporto, The_bar_of_single_mode_counts_each_pair) {
  Comparison comparison(3);
  TandemMode = ModoSingolo;
  for (std::size_t path = 0; path < 3; ++path) comparison.file(path, "a");
  comparison.scan();
  comparison.sort();
  const std::vector<double> values = shownValues(comparison);  // 3 pairs of 2 files and 2 paths
  ASSERT_EQ(values.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_NEAR(values[i], 100.0 * 2 * static_cast<double>(i + 1) / 12, 1e-9);
}

TEST(VisualizzaRapporto, The_status_rows_of_both_paths_are_told_behind_each_pair) {
  Comparison comparison(4);
  comparison.file(0, "a");
  comparison.file(2, "b");
  comparison.file(3, "b", "xy");
  comparison.scan();
  comparison.sort();
  std::vector<std::size_t> toldAt;
  comparison.screen.onEvents = [&] { toldAt.push_back(comparison.screen.counters.size()); };
  comparison.compareOnly();
  EXPECT_EQ(toldAt, (std::vector<std::size_t>{0, 2}));
  EXPECT_EQ(comparison.screen.counters[0], (ContatoriUnita{1, 0, 0}));
  EXPECT_EQ(comparison.screen.counters[1], (ContatoriUnita{0, 1, 0}));
  EXPECT_EQ(comparison.screen.counters[2], (ContatoriUnita{1, 0, 1}));
  EXPECT_EQ(comparison.screen.counters[3], (ContatoriUnita{1, 0, 0}));
}

// --- stop

TEST(VisualizzaRapporto, A_stop_is_seen_behind_every_file) {
  for (const bool onlyThere : {true, false}) {
    Comparison comparison(4);
    for (int i = 0; i < 20; ++i) {
      comparison.file(0, std::to_string(10 + i));
      comparison.file(onlyThere ? 2 : 1, std::to_string(10 + i), "longer");
    }
    comparison.scan();
    comparison.sort();
    int events = 0;
    comparison.screen.onEvents = [&] {
      if (++events == 7) AnnullaOperazioneInCorso();
    };
    comparison.compareOnly();
    EXPECT_TRUE(comparison.owner.ProcessoAnnullato);
    EXPECT_EQ(ArrayTrasferimento.Numero(), 7U);
    EXPECT_EQ(comparison.confronto.Contatori()[0].Posizione, 7);
  }
}

TEST(VisualizzaRapporto, A_stopped_comparison_goes_to_no_further_pair_and_raises_no_alarm) {
  Comparison comparison(3);
  TandemMode = ModoSingolo;
  comparison.file(0, "a");
  comparison.file(2, "b");
  comparison.scan();
  comparison.sort();
  comparison.screen.onEvents = [] { AnnullaOperazioneInCorso(); };
  comparison.compareOnly();
  EXPECT_EQ(comparison.operations(), Texts{"missing a 0 > 1"});
  EXPECT_TRUE(comparison.screen.boxes.empty());
}

// --- differences in number

// Columns of so many empty records.
void fillColumns(const std::vector<std::size_t>& numbers) {
  ArrayScansione.Azzera(numbers.size());
  for (std::size_t c = 0; c < numbers.size(); ++c)
    for (std::size_t i = 0; i < numbers[c]; ++i) ArrayScansione.Aggiungi(c, {});
}

struct Flags {
  std::vector<std::size_t> numbers;
  bool many, tooMany;
};

TEST(ContaDifferenze, The_total_of_the_pairs_decides_and_exactly_7000_is_neither) {
  const std::vector<Flags> cases{
      {{0, 1000}, false, false},       {{0, 1001}, true, false},         {{1001, 0}, true, false},
      {{6999, 0}, true, false},        {{7000, 0}, false, false},        {{7001, 0}, false, true},
      {{500, 0, 0, 501}, true, false}, {{500, 0, 0, 500}, false, false}, {{0, 3500, 3501, 0}, false, true},
      {{2000, 2000}, false, false},    {{0, 0, 9000}, false, false},     {{}, false, false}};
  for (const Flags& one : cases) {
    Comparison comparison(one.numbers.size());
    fillColumns(one.numbers);
    comparison.confronto.ContaDifferenze();
    EXPECT_EQ(comparison.confronto.MoltiDifferenze, one.many) << testing::PrintToString(one.numbers);
    EXPECT_EQ(comparison.confronto.TroppeDifferenze, one.tooMany) << testing::PrintToString(one.numbers);
  }
}

TEST(VisualizzaRapporto, Equal_numbers_of_files_in_all_paths_clear_the_flag_of_many_differences) {
  for (const bool equal : {true, false}) {
    Comparison comparison(4);
    for (std::size_t path = 0; path < 4; ++path) comparison.file(path, "a");
    if (!equal) comparison.file(3, "b");
    comparison.scan();
    comparison.sort();
    comparison.confronto.MoltiDifferenze = comparison.confronto.TroppeDifferenze = true;
    comparison.compareOnly();
    EXPECT_EQ(comparison.confronto.MoltiDifferenze, !equal);
    EXPECT_TRUE(comparison.confronto.TroppeDifferenze);
  }
}

TEST(VisualizzaRapporto, Columns_that_were_filled_in_order_need_no_sort) {
  Comparison comparison;
  comparison.file(0, "a");
  comparison.file(1, "b");
  comparison.scan();
  comparison.compareOnly();
  EXPECT_EQ(comparison.operations(), (Texts{"missing a 0 > 1", "missing b 1 > 0"}));
}

}  // namespace
}  // namespace tandemize
