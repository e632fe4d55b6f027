// Planning of single files.
#include <gtest/gtest.h>

#include "backup/Planner.h"
#include "profile/ModuloProfilo.h"

namespace tandemize {
namespace {

using test::dateOf;
using test::Diagram;
using test::Plan;
using test::plannedTransfers;
using test::Planner;

TEST(SingleFiles, They_land_directly_under_the_destination_by_their_bare_names) {
  Planner p;
  p.work().write("one/deep/a", "12345");
  p.work().write("two/b", "x");
  p.folders({"d"});
  p.use(Diagram()
            .files("F", {p.program("one/deep/a"), p.program("two/b")})
            .destination("D", p.program("d"), {"F"}));
  p.plan();
  EXPECT_EQ(plannedTransfers(), (std::vector<std::string>{p.to("one/deep/a", "d/a"), p.to("two/b", "d/b")}));
  EXPECT_EQ(ArrayTrasferimento[0].Sorgente.Nome(), "\\a");
  EXPECT_EQ(ArrayTrasferimento[0].Sorgente.Dimensione, 5);
  EXPECT_EQ(ArrayTrasferimento[0].Sorgente.Attributi, 32);
  EXPECT_EQ(ArrayTrasferimento[0].Sorgente.DataFile(), dateOf(p, "one/deep/a"));
}

TEST(SingleFiles, Each_is_told_in_the_log) {
  Planner p;
  p.work().write("one/a", "x");
  p.folders({"d"});
  p.use(Diagram()
            .files("F", {p.program("one/a"), p.program("one/gone")})
            .destination("D", p.program("d"), {"F"}));
  p.plan();
  EXPECT_EQ(p.logLines(),
            (std::vector<std::string>{
                "| " + Messaggio(138) + " '" + p.program("one/a") + "' ... OK",
                "| " + Messaggio(138) + " '" + p.program("one/gone") + "' ... " + Messaggio(137)}));
}

TEST(SingleFiles, A_file_that_no_longer_exists_is_a_fault_of_its_own_code) {
  Planner p;
  p.work().write("one/a", "x");
  p.folders({"d"});
  p.use(Diagram()
            .files("F", {p.program("one/gone"), p.program("one/a")})
            .destination("D", p.program("d"), {"F"}));
  const FrmBackupChoice& dialog = p.plan();
  ASSERT_EQ(dialog.ListaErrori.size(), 1U);
  EXPECT_EQ(dialog.ListaErrori[0].Percorso, p.program("one/gone"));
  EXPECT_EQ(dialog.ListaErrori[0].Codice, CodiceErrore::NonTrovato);
  EXPECT_EQ(plannedTransfers(), std::vector<std::string>{p.to("one/a", "d/a")});
}

TEST(SingleFiles, Every_entry_counts_whether_or_not_an_empty_one_ends_the_list) {
  Planner p;
  p.work().write("one/a", "x");
  p.work().write("one/b", "x");
  p.folders({"d"});
  Diagram diagram;
  diagram.files("F", {}).last().Files = {p.program("one/a"), "", p.program("one/b")};
  diagram.destination("D", p.program("d"), {"F"});
  p.use(diagram);
  p.plan();
  EXPECT_EQ(p.planned(), (Plan{p.to("one/a", "d/a"), p.to("one/b", "d/b")}));
}

TEST(SingleFiles, A_folder_in_the_list_is_no_file) {
  Planner p;
  p.work().makeFolder("one/folder");
  p.folders({"d"});
  p.use(Diagram().files("F", {p.program("one/folder")}).destination("D", p.program("d"), {"F"}));
  EXPECT_EQ(p.plan().ListaErrori.size(), 1U);
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
}

TEST(SingleFiles, A_stop_ends_them) {
  Planner p;
  std::vector<std::string> files;
  for (int i = 0; i < 20; ++i) {
    p.work().write("one/" + std::to_string(i), "x");
    files.push_back(p.program("one/" + std::to_string(i)));
  }
  p.folders({"d"});
  p.use(Diagram().files("F", files).destination("D", p.program("d"), {"F"}));
  p.screen.onEvents = [] {
    if (ArrayScansione.Colonne() == 1 && ArrayScansione.Righe(0) == 3) AnnullaOperazioneInCorso();
  };
  EXPECT_TRUE(p.plan().ProcessoAnnullato);
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
}

}  // namespace
}  // namespace tandemize
