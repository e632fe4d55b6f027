#include "synchronisation/ListaUnita.h"

#include <gtest/gtest.h>

namespace tandemize {
namespace {

RigaUnita row(const std::string& key, const std::string& text) {
  RigaUnita result;
  result.chiave = key;
  result.nome = "name of " + text;
  result.data = "date of " + text;
  result.dimensione = "size of " + text;
  result.attributi = "attributes of " + text;
  result.stato = "status of " + text;
  result.etichettaStato = 1;
  result.icona = RigaUnita::Icona::DelFile;
  result.estensione = ".EXTENSION OF " + text;
  result.sorgente = "source of " + text;
  result.destinazione = "destination of " + text;
  return result;
}

TEST(ListaUnita, Rows_stand_in_the_order_in_which_they_were_added) {
  ListaUnita list;
  EXPECT_EQ(list.Aggiungi(row("b", "one")), 0U);
  EXPECT_EQ(list.Aggiungi(row("a", "two")), 1U);
  ASSERT_EQ(list.Righe(), 2U);
  EXPECT_EQ(list.Riga(0), row("b", "one"));
  EXPECT_EQ(list.Riga(1), row("a", "two"));
}

TEST(ListaUnita, The_columns_of_a_key_that_is_there_go_over_the_last_row_whichever_that_is) {
  ListaUnita list;
  list.Aggiungi(row("a", "one"));
  list.Aggiungi(row("b", "two"));
  RigaUnita clash = row("a", "three");
  clash.etichettaStato = 0;
  EXPECT_EQ(list.Aggiungi(clash), 1U);
  ASSERT_EQ(list.Righe(), 2U);
  EXPECT_EQ(list.Riga(0), row("a", "one"));
  RigaUnita expected = row("b", "two");
  expected.data = clash.data;
  expected.dimensione = clash.dimensione;
  expected.attributi = clash.attributi;
  expected.stato = clash.stato;
  expected.etichettaStato = 0;
  EXPECT_EQ(list.Riga(1), expected);
}

TEST(ListaUnita, Keys_that_differ_in_letter_case_are_two) {
  ListaUnita list;
  list.Aggiungi(row("a", "one"));
  list.Aggiungi(row("A", "two"));
  EXPECT_EQ(list.Righe(), 2U);
}

TEST(ListaUnita, An_emptied_list_takes_its_old_keys_again) {
  ListaUnita list;
  list.Aggiungi(row("a", "one"));
  list.Svuota();
  EXPECT_EQ(list.Righe(), 0U);
  EXPECT_EQ(list.Aggiungi(row("a", "two")), 0U);
  EXPECT_EQ(list.Riga(0), row("a", "two"));
}

}  // namespace
}  // namespace tandemize
