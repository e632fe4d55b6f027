#include "synchronisation/RecordFile.h"

#include <gtest/gtest.h>

#include <utility>

#include "fixtures/ProgramFolder.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "synchronisation/FrmScan.h"

namespace tandemize {
namespace {

using test::ProgramFolder;

// A file of a scan of "C:\data".
RecordFile fileOf(TabellaScansione& table, std::string_view folder, std::string_view name) {
  DepositoNomi& store = table.Deposito();
  return {store.Cartella(folder), {store.Testo(name), name.size()}, std::string_view("C:\\data").size()};
}

TEST(RecordFile, The_path_is_the_folder_and_the_name) {
  TabellaScansione table;
  EXPECT_EQ(fileOf(table, "C:\\data\\sub\\", "a.txt").Percorso(), "C:\\data\\sub\\a.txt");
}

TEST(RecordFile, The_name_is_relative_to_the_scanned_path) {
  TabellaScansione table;
  EXPECT_EQ(fileOf(table, "C:\\data\\sub\\", "a.txt").Nome(), "\\sub\\a.txt");
  EXPECT_EQ(fileOf(table, "C:\\data\\sub\\", "a.txt").UltimoNome(), "a.txt");
}

TEST(RecordFile, The_sort_key_is_the_name_in_upper_case) {
  TabellaScansione table;
  EXPECT_EQ(fileOf(table, "C:\\data\\sub\\", "perù.txt").NomeMaiuscolo(), "\\SUB\\PERÙ.TXT");
}

TEST(RecordFile, An_empty_record_has_no_texts) {
  const RecordFile record;
  EXPECT_TRUE(record.Vuoto());
  EXPECT_EQ(record.Nome() + record.Percorso() + record.NomeMaiuscolo() + record.DataFile(), "");
}

TEST(RecordFile, The_date_is_told_as_day_month_year_and_time_with_points) {
  ProgramFolder program;
  FormatoData = "dd/mm/yyyy";
  RecordFile record;
  record.Data = 0;
  const std::string text = record.DataFile();
  ASSERT_EQ(text.size(), 19U) << text;
  EXPECT_EQ(text.substr(2, 1) + text.substr(5, 1) + text.substr(10, 1) + text.substr(13, 1), "// .");
}

TEST(RecordFile, Taking_the_names_of_another_record_leaves_the_rest) {
  TabellaScansione table;
  RecordFile one = fileOf(table, "C:\\data\\", "a"), other = fileOf(table, "C:\\data\\b\\", "c");
  one.Dimensione = 5;
  other.Dimensione = 7;
  one.PrendiNomi(other);
  EXPECT_EQ(one.Percorso(), "C:\\data\\b\\c");
  EXPECT_EQ(one.Nome(), "\\b\\c");
  EXPECT_EQ(one.Dimensione, 5);
}

TEST(RecordFile, The_name_of_a_server_s_file_can_have_the_local_separator_while_its_path_keeps_its_own) {
  TabellaScansione table;
  DepositoNomi& store = table.Deposito();
  RecordFile record(store.Cartella("/pub/sub/"), "a", std::string_view("/pub/").size());
  EXPECT_EQ(record.Nome(), "sub/a");
  record.NomeConBarre = true;
  EXPECT_EQ(record.Nome(), "sub\\a");
  EXPECT_EQ(record.Percorso(), "/pub/sub/a");
}

TEST(RecordFile, The_folder_s_part_of_the_name_ends_in_its_separator) {
  TabellaScansione table;
  EXPECT_EQ(fileOf(table, "C:\\data\\sub\\deep\\", "a").CartellaRelativa(), "\\sub\\deep\\");
  DepositoNomi& store = table.Deposito();
  EXPECT_EQ(RecordFile(store.Cartella("C:\\data\\"), "a", 8).CartellaRelativa(), "");
  EXPECT_EQ(RecordFile().CartellaRelativa(), "");
}

TEST(RecordFile, A_fresh_record_is_neither_new_nor_to_be_deleted) {
  const RecordFile record;
  EXPECT_FALSE(record.FileNuovo);
  EXPECT_FALSE(record.DaEliminare);
}

TEST(TabellaScansione, A_row_behind_the_end_of_its_column_is_the_empty_record) {
  TabellaScansione table;
  table.Azzera(2);
  table.Aggiungi(0, fileOf(table, "C:\\data\\", "a"));
  EXPECT_FALSE(std::as_const(table).Riga(0, 0).Vuoto());
  EXPECT_TRUE(std::as_const(table).Riga(0, 1).Vuoto());
  EXPECT_TRUE(std::as_const(table).Riga(1, 0).Vuoto());
  EXPECT_EQ(table.Righe(1), 0U);
}

TEST(TabellaScansione, Columns_grow_apart_and_keep_their_order) {
  TabellaScansione table;
  table.Azzera(2);
  for (int i = 0; i < 10000; ++i)
    table.Aggiungi(i % 3 == 0 ? 1 : 0, fileOf(table, "C:\\data\\", std::to_string(i)));
  EXPECT_EQ(table.Righe(0), 6666U);
  EXPECT_EQ(table.Righe(1), 3334U);
  EXPECT_EQ(table.Riga(0, 0).Nome(), "\\1");
  EXPECT_EQ(table.Riga(0, 6665).Nome(), "\\9998");
  EXPECT_EQ(table.Riga(1, 3333).Nome(), "\\9999");
}

TEST(TabellaScansione, A_name_longer_than_a_block_of_the_store_is_kept_whole) {
  TabellaScansione table;
  const std::string longName(400'000, 'x');
  const RecordFile before = fileOf(table, "C:\\data\\", "before");
  const RecordFile record = fileOf(table, "C:\\data\\", longName);
  const RecordFile after = fileOf(table, "C:\\data\\", "after");
  EXPECT_EQ(record.UltimoNome(), longName);
  EXPECT_EQ(before.Nome() + after.Nome(), "\\before\\after");
}

TEST(TabellaScansione, The_kind_of_a_column_stands_before_its_first_row) {
  TabellaScansione table;
  table.Azzera(2);
  table.ImpostaTipo(1, 2);
  EXPECT_EQ(table.Tipo(0), 0);
  EXPECT_EQ(table.Tipo(1), 2);
}

TEST(TabellaScansione, A_new_order_brings_every_row_to_its_place) {
  TabellaScansione table;
  table.Azzera(2);
  std::vector<std::uint32_t> order;
  for (std::uint32_t i = 0; i < 5000; ++i) {
    table.Aggiungi(1, fileOf(table, "C:\\data\\", std::to_string(i)));
    order.push_back(i * 7 % 5000);  // one long cycle and some short ones
  }
  std::swap(order[10], order[20]);
  const std::vector<std::uint32_t> wanted = order;
  table.Riordina(1, order);
  for (std::size_t i = 0; i < 5000; ++i) ASSERT_EQ(table.Riga(1, i).Nome(), "\\" + std::to_string(wanted[i]));
}

TEST(TabellaScansione, Starting_anew_leaves_empty_columns) {
  TabellaScansione table;
  table.Azzera(1);
  table.Aggiungi(0, fileOf(table, "C:\\data\\", "a"));
  table.Azzera(1);
  EXPECT_EQ(table.Righe(0), 0U);
}

TEST(ListaTrasferimento, Its_texts_outlive_the_table_that_they_came_from) {
  TabellaScansione table;
  ListaTrasferimento list;
  table.Azzera(1);
  const RecordFile file = table.Aggiungi(0, fileOf(table, "C:\\data\\a\\", "b.txt"));
  list.Conserva(table.DepositoCondiviso());
  list.Aggiungi({file, file});
  table.Azzera(0);
  ASSERT_EQ(list.Numero(), 1U);
  EXPECT_EQ(list[0].Sorgente.Percorso(), "C:\\data\\a\\b.txt");
}

TEST(ListaTrasferimento, Cutting_keeps_the_front) {
  ListaTrasferimento list;
  TabellaScansione table;
  list.Conserva(table.DepositoCondiviso());
  for (int i = 0; i < 9000; ++i) {
    const RecordFile file = fileOf(table, "C:\\data\\", std::to_string(i));
    list.Aggiungi({file, file});
  }
  list.Accorcia(5000);
  ASSERT_EQ(list.Numero(), 5000U);
  EXPECT_EQ(list[4999].Sorgente.Nome(), "\\4999");
  list.Svuota();
  EXPECT_TRUE(list.Vuota());
}

void fillLists(int number) {
  ArrayScansione.Azzera(1);
  ArrayTrasferimento.Conserva(ArrayScansione.DepositoCondiviso());
  for (int i = 0; i < number; ++i) {
    const RecordFile file = fileOf(ArrayScansione, "C:\\data\\", std::to_string(i));
    ArrayScansione.Aggiungi(0, file);
    ArrayTrasferimento.Aggiungi({file, file});
  }
}

TEST(SvuotaListaAProgressione, Number_1_is_the_table_of_the_scan_and_2_the_list_of_transfers) {
  ProgramFolder program;
  fillLists(3);
  SvuotaListaAProgressione(0);
  SvuotaListaAProgressione(3);
  EXPECT_EQ(ArrayScansione.Righe(0), 3U);
  SvuotaListaAProgressione(1);
  EXPECT_EQ(ArrayScansione.Colonne() == 0 ? 0 : ArrayScansione.Righe(0), 0U);
  EXPECT_EQ(ArrayTrasferimento.Numero(), 3U);
  SvuotaListaAProgressione(2);
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
}

TEST(SvuotaListaAProgressione, A_list_of_up_to_a_thousand_is_emptied_at_once) {
  ProgramFolder program;
  fillLists(1000);
  SvuotaListaAProgressione(2);
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
  EXPECT_EQ(program.screen.lastProgress.testo, "");
  SvuotaListaAProgressione(1);
}

TEST(SvuotaListaAProgressione, A_longer_list_is_emptied_under_the_progress_window) {
  ProgramFolder program;
  fillLists(1001);
  SvuotaListaAProgressione(2);
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
  EXPECT_EQ(program.screen.lastProgress.testo, Messaggio(318));
  EXPECT_FALSE(program.screen.lastProgress.visibile);
  SvuotaListaAProgressione(1);
}

TEST(NomiSimili, At_most_three_characters_differ) {
  EXPECT_TRUE(NomiSimili("abcdef", "abcdef"));
  EXPECT_TRUE(NomiSimili("abcdef", "Xbcdef"));
  EXPECT_TRUE(NomiSimili("abcdef", "XbYdeZ"));
  EXPECT_FALSE(NomiSimili("abcdef", "XbYdZW"));
}

TEST(NomiSimili, Letter_case_counts_as_a_difference) {
  EXPECT_TRUE(NomiSimili("abc", "ABC"));
  EXPECT_FALSE(NomiSimili("abcd", "ABCD"));
}

TEST(NomiSimili, Characters_are_compared_and_not_bytes) {
  EXPECT_TRUE(NomiSimili("perùèé", "peruee"));
  EXPECT_TRUE(NomiSimili("\xFF\xFE\xFD", "abc"));
}

TEST(NomiSimili, Names_of_different_length_are_never_similar) {
  EXPECT_FALSE(NomiSimili("abc", "abcd"));
  EXPECT_FALSE(NomiSimili("", "a"));
  EXPECT_TRUE(NomiSimili("", ""));
}

TEST(CorreggiNomiSimili, Similar_names_of_two_columns_stay_as_the_folders_gave_them) {
  TabellaScansione table;
  table.Azzera(2);
  table.Aggiungi(0, fileOf(table, "C:\\data\\", "a_b.txt")).Dimensione = 4;
  table.Aggiungi(1, fileOf(table, "C:\\data\\", "a?b.txt")).Dimensione = 4;
  CorreggiNomiSimili(table);
  EXPECT_EQ(table.Riga(0, 0).Percorso(), "C:\\data\\a_b.txt");
  EXPECT_EQ(table.Riga(1, 0).Percorso(), "C:\\data\\a?b.txt");
}

TEST(CorreggiNomiSimili, Columns_of_different_length_and_a_last_odd_column_do_no_harm) {
  TabellaScansione table;
  table.Azzera(3);
  table.Aggiungi(0, fileOf(table, "C:\\data\\", "a"));
  table.Aggiungi(0, fileOf(table, "C:\\data\\", "b"));
  table.Aggiungi(2, fileOf(table, "C:\\data\\", "c"));
  CorreggiNomiSimili(table);
  EXPECT_EQ(table.Riga(0, 1).Nome() + table.Riga(2, 0).Nome(), "\\b\\c");
}

}  // namespace
}  // namespace tandemize
