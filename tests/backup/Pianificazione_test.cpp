// The planning walk: from the diagram's sources to one transfer for each file and destination.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "backup/Planner.h"
#include "fixtures/DeepTree.h"
#include "platform/machine.h"
#include "profile/ModuloProfilo.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::BackupFolder;
using test::Diagram;
using test::Plan;
using test::plannedTransfers;
using test::Planner;

TEST(PrelevaFilePerBackup, Every_file_goes_to_every_destination_that_names_its_source) {
  Planner p;
  p.work().write("one/a", "x");
  p.work().write("one/sub/b", "x");
  p.work().write("two/c", "x");
  p.folders({"d", "e"});
  p.use(Diagram()
            .source("One", p.program("one"))
            .source("Two", p.program("two"))
            .destination("D", p.program("d"), {"One", "Two"})
            .destination("E", p.program("e"), {"One"}));
  p.plan();
  EXPECT_EQ(p.planned(), (Plan{p.to("one/a", "d/a"), p.to("one/a", "e/a"), p.to("one/sub/b", "d/sub/b"),
                               p.to("one/sub/b", "e/sub/b"), p.to("two/c", "d/c")}));
  EXPECT_EQ(ArrayTrasferimento.Numero(), 5U);
}

TEST(PrelevaFilePerBackup, A_files_destinations_follow_each_other_in_the_order_of_their_numbers) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d", "e", "f"});
  p.use(Diagram()
            .destination("E", p.program("e"), {"S"})
            .source("S", p.program("s"))
            .destination("D", p.program("d"), {"S"})
            .destination("F", p.program("f"), {"S"}));
  p.plan();
  EXPECT_EQ(plannedTransfers(),
            (std::vector<std::string>{p.to("s/a", "e/a"), p.to("s/a", "d/a"), p.to("s/a", "f/a")}));
}

TEST(PrelevaFilePerBackup, Fewer_than_two_objects_are_told_and_nothing_is_planned) {
  Planner p;
  p.work().write("s/a", "x");
  p.use(Diagram().source("S", p.program("s")));
  p.plan();
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
  ASSERT_EQ(p.screen.boxes.size(), 1U);
  EXPECT_EQ(p.screen.boxes[0].text, Messaggio(122));
  EXPECT_EQ(p.screen.boxes[0].style, StileInformazione);
}

TEST(PrelevaFilePerBackup, A_failed_check_ends_the_walk_before_it_begins) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram()
            .source("S", p.program("s"))
            .source("Gone", p.program("gone"))
            .destination("D", p.program("d"), {"S"}));
  const FrmBackupChoice& dialog = p.plan();
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
  EXPECT_EQ(dialog.ListaErrori.size(), 1U);
  EXPECT_EQ(p.log(), "");
}

TEST(PrelevaFilePerBackup, The_source_record_stands_beside_a_destination_of_the_same_name) {
  Planner p;
  p.work().write("s/sub/new", "12345");
  p.work().write("s/old", "123");
  p.work().write("d/old", "another size");
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.plan();
  ASSERT_EQ(ArrayTrasferimento.Numero(), 2U);
  for (std::size_t i = 0; i < 2; ++i) {
    const RecordOperazione& transfer = ArrayTrasferimento[i];
    const bool old = transfer.Sorgente.UltimoNome() == "old";
    EXPECT_EQ(transfer.Sorgente.Dimensione, old ? 3 : 5);
    // A file that is there costs no new room, so it carries the source's size; one that is not carries none.
    EXPECT_EQ(transfer.Destinazione.Dimensione, old ? 3 : 0);
    EXPECT_EQ(transfer.Destinazione.Nome(), old ? "\\old" : "\\sub\\new");
    EXPECT_EQ(transfer.Destinazione.TipoPercorso, PercorsoLocale);
    EXPECT_EQ(transfer.Destinazione.Data, transfer.Sorgente.Data);
  }
}

TEST(PrelevaFilePerBackup, Destination_paths_never_hold_a_doubled_separator) {
  Planner p;
  p.work().write("s/sub/a", "x");
  p.work().makeFolder("d");
  p.work().makeFolder("share/in");
  p.work().makeFolder("e");
  p.drives("D: = fixed " + p.work().host("d") + "\n\\\\nas\\photos = " + p.work().host("share") + "\n");
  const struct {
    std::string source, destination, expected;
  } cases[] = {{"s", "e", p.program("e") + "\\sub\\a"},
               {"s\\", "e\\", p.program("e") + "\\sub\\a"},
               {"s\\", "e\\\\", p.program("e") + "\\sub\\a"}};
  for (const auto& c : cases) {
    const std::string base = p.program("") + "\\";
    p.use(Diagram::copying(base + c.source, base + c.destination));
    p.plan();
    ASSERT_EQ(ArrayTrasferimento.Numero(), 1U) << c.source;
    EXPECT_EQ(ArrayTrasferimento[0].Destinazione.Percorso(), c.expected) << c.source;
  }
  for (const auto& [destination, expected] : std::vector<std::pair<std::string, std::string>>{
           {"D:\\", "D:\\sub\\a"},
           {"D:", "D:\\sub\\a"},
           {"\\\\nas\\photos", "\\\\nas\\photos\\sub\\a"},
           {"\\\\nas\\photos\\\\in\\", "\\\\nas\\photos\\in\\sub\\a"}}) {
    p.use(Diagram::copying(p.program("s"), destination));
    p.plan();
    ASSERT_EQ(ArrayTrasferimento.Numero(), 1U) << destination;
    EXPECT_EQ(ArrayTrasferimento[0].Destinazione.Percorso(), expected);
  }
}

TEST(PrelevaFilePerBackup, A_slash_in_a_local_destination_becomes_its_separator) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d/in"});
  p.use(Diagram::copying(p.program("s"), p.program("d") + "/in"));
  p.plan();
  ASSERT_EQ(ArrayTrasferimento.Numero(), 1U);
  EXPECT_EQ(ArrayTrasferimento[0].Destinazione.Percorso(), p.program("d/in/a"));
}

TEST(PrelevaFilePerBackup, A_source_without_a_destination_adds_nothing) {
  Planner p;
  p.work().write("s/a", "x");
  p.work().write("t/b", "x");
  p.folders({"d"});
  p.use(Diagram()
            .source("S", p.program("s"))
            .source("T", p.program("t"))
            .destination("D", p.program("d"), {"T", "nobody"}));
  p.plan();
  EXPECT_EQ(p.planned(), Plan{p.to("t/b", "d/b")});
}

TEST(PrelevaFilePerBackup, The_link_of_the_source_alone_copies_nothing) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  Diagram diagram;
  diagram.source("S", p.program("s")).last().BackLinkTo = {"D"};
  diagram.destination("D", p.program("d"), {});
  p.use(diagram);
  p.plan();
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
}

TEST(PrelevaFilePerBackup, Deleted_sources_and_destinations_take_no_part) {
  Planner p;
  p.work().write("s/a", "x");
  p.work().write("t/b", "x");
  p.folders({"d", "e"});
  p.use(Diagram()
            .source("S", p.program("s"))
            .source("<!Erased!>", p.program("t"))
            .destination("<!Erased!>", p.program("e"), {"S"})
            .destination("D", p.program("d"), {"S", "<!Erased!>"}));
  p.plan();
  EXPECT_EQ(p.planned(), Plan{p.to("s/a", "d/a")});
}

TEST(PrelevaFilePerBackup, Two_destination_objects_on_one_path_get_one_transfer) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram()
            .source("S", p.program("s"))
            .destination("D", p.program("d"), {"S"})
            .destination("E", p.program("d"), {"S"}));
  p.plan();
  EXPECT_EQ(plannedTransfers(), std::vector<std::string>{p.to("s/a", "d/a")});
}

TEST(PrelevaFilePerBackup, With_ignore_an_unreachable_destination_or_source_is_left_out) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram()
            .source("S", p.program("s"))
            .source("Gone", p.program("gone"))
            .destination("D", p.program("d"), {"S", "Gone"})
            .destination("E", p.program("none"), {"S"}));
  const FrmBackupChoice& dialog = p.plan(false, [](FrmBackupChoice& d) { d.ChkIgnorePath = true; });
  EXPECT_EQ(p.planned(), Plan{p.to("s/a", "d/a")});
  EXPECT_TRUE(dialog.ListaErrori.empty());
  EXPECT_EQ(test::countLinesWith(p.logLines(), "gone"), 0);
}

TEST(PrelevaFilePerBackup, A_source_whose_only_destination_is_left_out_is_walked_for_nothing) {
  Planner p;
  p.work().write("s/a", "x");
  p.use(Diagram::copying(p.program("s"), p.program("none")));
  p.plan(false, [](FrmBackupChoice& d) { d.ChkIgnorePath = true; });
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
  EXPECT_EQ(p.logLines(), std::vector<std::string>{"| " + Messaggio(273) + " '" + p.program("s") + "'"});
}

TEST(PrelevaFilePerBackup, The_filter_applies_to_folders_and_not_to_single_files) {
  Planner p;
  for (const char* file : {"s/a.doc", "s/b.txt", "single/c.txt"}) p.work().write(file, "x");
  p.folders({"d"});
  p.use(Diagram()
            .source("S", p.program("s"))
            .files("F", {p.program("single/c.txt")})
            .destination("D", p.program("d"), {"S", "F"}));
  p.plan(false, [](FrmBackupChoice&) { FilterBackup = "+|*.doc|"; });
  EXPECT_EQ(p.planned(), (Plan{p.to("s/a.doc", "d/a.doc"), p.to("single/c.txt", "d/c.txt")}));
}

TEST(PrelevaFilePerBackup, An_object_with_a_path_and_files_counts_as_a_folder) {
  Planner p;
  p.work().write("s/a", "x");
  p.work().write("single/c", "x");
  p.folders({"d"});
  Diagram diagram;
  diagram.source("S", p.program("s")).last().Files = {p.program("single/c"), ""};
  diagram.destination("D", p.program("d"), {"S"});
  p.use(diagram);
  p.plan();
  EXPECT_EQ(p.planned(), Plan{p.to("s/a", "d/a")});
}

TEST(PrelevaFilePerBackup, Retries_are_off_while_planning_and_back_afterwards) {
  Planner p;
  Errors_Correction = 1;
  p.work().makeFolder("s");
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  bool seenOn = false, scanning = false;
  p.screen.onEvents = [&] {
    if (!FormCaricato("FrmScan")) return;
    scanning = true;
    seenOn = seenOn || Errors_Correction != 0;
  };
  p.plan();
  EXPECT_TRUE(scanning);
  EXPECT_FALSE(seenOn);
  EXPECT_EQ(Errors_Correction, 1);
}

TEST(PrelevaFilePerBackup, The_progress_window_names_the_path_and_goes_away) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  std::set<std::string> texts;
  double maximum = 0;
  p.screen.onEvents = [&] {
    texts.insert(p.screen.lastProgress.testo);
    maximum = std::max(maximum, p.screen.lastProgress.massimo);
  };
  p.plan();
  EXPECT_EQ(texts.count(p.program("s") + " (" + Messaggio(140) + ")"), 1U);
  EXPECT_EQ(maximum, 100);
  EXPECT_FALSE(p.screen.lastProgress.visibile);
}

TEST(PrelevaFilePerBackup, The_dialog_is_disabled_while_it_plans) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  EXPECT_FALSE(p.plan().Enabled);
}

TEST(PrelevaFilePerBackup, A_stop_ends_the_walk) {
  Planner p;
  for (int i = 0; i < 20; ++i) p.work().write("s/" + std::to_string(i), "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.screen.onEvents = [] {
    if (ArrayTrasferimento.Numero() == 3) AnnullaOperazioneInCorso();
  };
  const FrmBackupChoice& dialog = p.plan();
  EXPECT_TRUE(dialog.ProcessoAnnullato);
  EXPECT_LE(ArrayTrasferimento.Numero(), 4U);
}

TEST(PrelevaFilePerBackup, A_folder_that_cannot_be_read_is_not_held_against_its_source) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  const test::DeepTree deep(p.work().host("s"), std::string(200, 'f'), 30, "deep");
  ASSERT_TRUE(deep.made());
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  const FrmBackupChoice& dialog = p.plan();
  EXPECT_EQ(p.planned(), Plan{p.to("s/a", "d/a")});
  EXPECT_TRUE(dialog.ListaErrori.empty());
  EXPECT_FALSE(dialog.ErroreInCorso);
  const std::vector<std::string> lines = p.logLines();
  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines[lines.size() - 2], "| - OK -");
}

TEST(PrelevaFilePerBackup, A_source_that_goes_during_the_walk_is_a_fault) {
  Planner p;
  p.work().write("s/a/b", "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.screen.onEvents = [&] {
    if (FormCaricato("FrmScan")) fs::remove_all(p.work().host("s"));
  };
  const FrmBackupChoice& dialog = p.plan();
  ASSERT_EQ(dialog.ListaErrori.size(), 1U);
  EXPECT_EQ(dialog.ListaErrori[0].Percorso, p.program("s"));
  EXPECT_EQ(dialog.ListaErrori[0].Codice, CodiceErrore::Generico);
}

// --- the accurate test

TEST(AccurateTest, Every_source_is_read_once_for_each_destination_and_told) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d", "e"});
  p.use(Diagram()
            .source("S", p.program("s"))
            .destination("D", p.program("d"), {"S"})
            .destination("E", p.program("e"), {"S"}));
  p.plan(true);
  const std::string line = "| " + Messaggio(138) + " '" + p.program("s/a") + "' ... OK.";
  EXPECT_EQ(p.logLines(),
            (std::vector<std::string>{"| " + Messaggio(273) + " '" + p.program("s") + "'", line, line}));
}

TEST(AccurateTest, A_quick_test_reads_nothing) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.plan(false);
  EXPECT_EQ(test::countLinesWith(p.logLines(), Messaggio(138)), 0);
}

TEST(AccurateTest, An_empty_file_can_be_read) {
  Planner p;
  p.work().write("s/a", "");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  const FrmBackupChoice& dialog = p.plan(true);
  EXPECT_TRUE(dialog.ListaErrori.empty());
  EXPECT_EQ(test::countLinesWith(p.logLines(), "' ... OK."), 1);
}

TEST(AccurateTest, A_file_that_cannot_be_read_whole_is_a_fault_and_stays_in_the_plan) {
  Planner p;
  p.work().write("s/a", "");
  fs::resize_file(p.work().host("s/a"), 1U << 30U);
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  int events = 0;
  p.screen.onEvents = [&] {
    const bool reading =
        ArrayScansione.Colonne() == 1 && ArrayScansione.Righe(0) == 1 && !FormCaricato("FrmScan");
    if (reading && ++events == 5) fs::resize_file(p.work().host("s/a"), 1);
  };
  const FrmBackupChoice& dialog = p.plan(true);
  ASSERT_EQ(dialog.ListaErrori.size(), 1U);
  EXPECT_EQ(dialog.ListaErrori[0].Percorso, p.program("s/a"));
  EXPECT_EQ(dialog.ListaErrori[0].Codice, CodiceErrore::Generico);
  EXPECT_TRUE(dialog.ErroreInCorso);
  EXPECT_EQ(test::countLinesWith(p.logLines(), "' ... OK."), 0);
  EXPECT_EQ(ArrayTrasferimento.Numero(), 1U);
}

TEST(AccurateTest, A_file_that_has_gone_is_passed_over_by_the_reading_test) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.screen.onEvents = [&] {
    if (ArrayScansione.Colonne() == 1 && ArrayScansione.Righe(0) == 1) fs::remove(p.work().host("s/a"));
  };
  const FrmBackupChoice& dialog = p.plan(true);
  EXPECT_TRUE(dialog.ListaErrori.empty());
  EXPECT_EQ(ArrayTrasferimento.Numero(), 1U);
}

// --- the subfolder

std::string subfolderOfPlan(const BackupFolder& p) {
  const std::string start = p.program("d") + "\\";
  if (ArrayTrasferimento.Vuota()) return "<no plan>";
  const std::string path = ArrayTrasferimento[0].Destinazione.Percorso();
  return path == start + "a" ? "" : path.substr(start.size(), path.size() - start.size() - 2);
}

struct SubfolderCase {
  TipoBackup type;
  bool checked;
  ModoEsecuzione mode;
  std::string remembered;  // of LastBackup.dat before
  bool fresh;              // a new name is expected, else `expected`
  std::string expected;
  bool written;
};

TEST(Subfolder, Type_and_check_box_and_mode_decide) {
  using enum TipoBackup;
  using enum ModoEsecuzione;
  const std::vector<SubfolderCase> cases{{Standard, true, TestVeloceEBackup, "Old", false, "", false},
                                         {Standard, false, TestVeloceEBackup, "Old", false, "", false},
                                         {Completo, false, TestVeloceEBackup, "Old", false, "", false},
                                         {Completo, true, TestVeloceEBackup, "", true, "", true},
                                         {Completo, true, TestAccuratoEBackup, "", true, "", true},
                                         {Completo, true, TestVeloce, "", true, "", false},
                                         {Completo, true, TestAccurato, "", true, "", false},
                                         {Incrementale, true, TestVeloceEBackup, "Old", false, "Old", false},
                                         {Incrementale, true, TestVeloce, "Old", false, "Old", false},
                                         {Incrementale, true, TestVeloceEBackup, "", false, "", false},
                                         {Incrementale, false, TestVeloceEBackup, "Old", false, "", false}};
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const SubfolderCase& c = cases[i];
    Planner p;
    p.work().write("s/a", "x");
    p.folders({"d"});
    p.use(Diagram::copying(p.program("s"), p.program("d")));
    if (!c.remembered.empty()) p.home().write("LastBackup.dat", c.remembered);
    const std::int64_t before = platform::now();
    p.plan(false, [&](FrmBackupChoice& d) {
      d.cmbTipoBackup = c.type;
      d.ChkCreateFolder = c.checked;
      d.Opt = c.mode;
    });
    const std::string plain = subfolderOfPlan(p);
    if (c.fresh) {
      const std::set<std::string> names{NomeCartellaBackup(before), NomeCartellaBackup(platform::now())};
      EXPECT_EQ(names.count(plain), 1U) << i << " " << plain;
      EXPECT_EQ(p.home().exists("LastBackup.dat") ? p.home().read("LastBackup.dat") : "",
                c.written ? plain : "")
          << i;
    } else {
      EXPECT_EQ(plain, c.expected) << i;
      EXPECT_EQ(p.home().read("LastBackup.dat"), c.remembered) << i;
    }
  }
}

// --- FTP

TEST(ControllaEsistenza_FileFtp, The_figure_of_an_object_or_one_of_its_single_files_asks_for_a_server) {
  Planner p;
  FtpServers = {{"Home", "h", "u", "p", 0}, {"Work", "w", "u", "p", 0}, {}};
  const auto asks = [&](const Diagram& diagram, std::uint8_t& server) {
    p.use(diagram);
    FrmBackupChoice dialog;
    bool found = true;
    server = 0;
    FrmBackupChoice::ControllaEsistenza_FileFtp_Array_Oggetti(server, found);
    return found;
  };
  std::uint8_t server = 0;
  EXPECT_FALSE(asks(Diagram::copying("C:\\a", "C:\\b"), server));
  Diagram byFigure = Diagram::copying("C:\\a", "/b");
  byFigure.last().BackFigura = 2;
  byFigure.last().BackFtpServerDescription = "Work";
  EXPECT_TRUE(asks(byFigure, server));
  EXPECT_EQ(server, 1);
  Diagram byFile = Diagram().files("F", {"C:\\a", "/b/c"}).destination("D", "C:\\d", {"F"});
  EXPECT_TRUE(asks(byFile, server));
  EXPECT_EQ(server, 0);
  // The path alone does not count.
  EXPECT_FALSE(asks(Diagram::copying("C:\\a", "/b"), server));
}

}  // namespace
}  // namespace tandemize
