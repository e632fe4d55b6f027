#include "presentation/OrdineLista.h"

#include <gtest/gtest.h>

#include "fixtures/ProgramFolder.h"

namespace tandemize {
namespace {

TEST(OrdineLista, The_tag_of_a_column_tells_its_kind) {
  EXPECT_EQ(TipoDiColonna("numeric"), TipoColonna::Numero);
  EXPECT_EQ(TipoDiColonna("date"), TipoColonna::Data);
  EXPECT_EQ(TipoDiColonna(""), TipoColonna::Testo);
  EXPECT_EQ(TipoDiColonna("Numeric"), TipoColonna::Testo);
}

TEST(OrdineLista, A_column_is_sorted_up_first_and_then_the_other_way_each_time) {
  EXPECT_EQ(VersoSuccessivo(Verso::No), Verso::Su);
  EXPECT_EQ(VersoSuccessivo(Verso::Su), Verso::Giù);
  EXPECT_EQ(VersoSuccessivo(Verso::Giù), Verso::Su);
}

TEST(OrdineLista, A_number_is_what_the_text_begins_with) {
  struct Row {
    const char* text;
    double number;
  };
  for (const Row& row :
       {Row{"12", 12}, Row{" 1 250.5 KB", 1250.5}, Row{"-3x", -3}, Row{"1.2.3", 1.2}, Row{"KB 7", 0},
        Row{"", 0}, Row{"1,5", 1}, Row{"9007199254740993", 9007199254740992.0}})
    EXPECT_DOUBLE_EQ(Val(row.text), row.number) << row.text;
}

TEST(OrdineLista, Cells_compare_by_the_kind_of_their_column) {
  const test::ProgramFolder folder;
  EXPECT_LT(ConfrontaCelle(TipoColonna::Numero, "9", "10"), 0);
  EXPECT_GT(ConfrontaCelle(TipoColonna::Testo, "9", "10"), 0);
  EXPECT_EQ(ConfrontaCelle(TipoColonna::Testo, "Città", "CITTÀ"), 0);
  EXPECT_LT(ConfrontaCelle(TipoColonna::Data, "31/01/2024 9.00.00", "01/02/2024 8.00.00"), 0);
  EXPECT_GT(ConfrontaCelle(TipoColonna::Testo, "31/01/2024 9.00.00", "01/02/2024 8.00.00"), 0);
  EXPECT_LT(ConfrontaCelle(TipoColonna::Data, "", "01/02/2024 8.00.00"), 0);
}

}  // namespace
}  // namespace tandemize
