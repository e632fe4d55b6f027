// The checks of the diagram's paths before a run, and the wording of what they find.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "backup/BackupRun.h"
#include "storage/Unita.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::BackupFolder;
using test::Diagram;

// Drives of every kind: D removable, E optical with a disc, G remote, I optical without a disc, J removable
// without a medium, and a share.
class DrivesFolder : public BackupFolder {
 public:
  DrivesFolder() {
    for (const char* folder : {"stick", "disc", "net", "share"}) work().makeFolder(folder);
    drives("D: = removable " + work().host("stick") + "\nE: = cdrom " + work().host("disc") +
           "\nG: = remote " + work().host("net") + "\nI: = cdrom " + work().host("gone.iso") +
           "\nJ: = removable " + work().host("gone") + "\n\\\\nas\\photos = " + work().host("share") + "\n");
  }
};

// A dialog over a diagram of two objects, the second of which is the one at issue.
struct Checked {
  explicit Checked(BackupFolder& program, const Diagram& diagram, bool ignore = false)
      : dialog((program.use(diagram), FrmBackupChoice())) {
    dialog.ChkIgnorePath = ignore;
    passed = dialog.ControllaPercorsiOggetti();
  }
  FrmBackupChoice dialog;
  bool passed = false;
};

std::vector<std::string> faultyPaths(const FrmBackupChoice& dialog) {
  std::vector<std::string> paths;
  for (const ErrorePercorso& fault : dialog.ListaErrori) paths.push_back(fault.Percorso);
  return paths;
}

TEST(ControllaPercorsiOggetti, Paths_that_can_be_reached_pass) {
  DrivesFolder program;
  Checked check(program, Diagram()
                             .source("a", "D:\\")
                             .destination("b", "\\\\nas\\photos", {"a"})
                             .destination("c", program.program("stick"), {"a"}));
  EXPECT_TRUE(check.passed);
  EXPECT_TRUE(check.dialog.ListaErrori.empty());
  EXPECT_FALSE(check.dialog.ErroreInCorso);
}

TEST(ControllaPercorsiOggetti, Every_path_that_cannot_be_reached_gets_a_row_of_its_own) {
  DrivesFolder program;
  Checked check(program, Diagram()
                             .source("a", program.program("none"))
                             .source("b", "J:\\x")
                             .source("c", "I:\\x")
                             .destination("d", "\\\\nas\\photos\\none", {"a"}));
  EXPECT_FALSE(check.passed);
  EXPECT_TRUE(check.dialog.ErroreInCorso);
  ASSERT_GE(check.dialog.ListaErrori.size(), 4U);
  const std::vector<ErrorePercorso>& rows = check.dialog.ListaErrori;
  EXPECT_EQ(rows[0].Percorso, program.program("none"));
  EXPECT_EQ(rows[0].TipoUnita, UnitaFissa);
  EXPECT_EQ(rows[1].TipoUnita, UnitaRimovibile);
  EXPECT_EQ(rows[2].TipoUnita, UnitaCdRom);
  EXPECT_EQ(rows[3].TipoUnita, UnitaAssente);
  EXPECT_EQ(rows[3].TipoPercorso, PercorsoLan);
  EXPECT_EQ(rows[3].Codice, CodiceErrore::Generico);
}

TEST(ControllaPercorsiOggetti, The_folder_of_a_remote_drive_is_never_tested) {
  DrivesFolder program;
  EXPECT_TRUE(Checked(program, Diagram().source("a", "G:\\none").source("b", "G:\\")).passed);
}

TEST(ControllaPercorsiOggetti, Nothing_is_shown) {
  DrivesFolder program;
  Checked check(program, Diagram().source("a", "J:\\x").source("b", "I:\\x"));
  EXPECT_TRUE(program.screen.boxes.empty());
  EXPECT_TRUE(program.screen.balloons.empty());
}

TEST(ControllaPercorsiOggetti, A_destination_on_a_removable_or_optical_drive_may_lack_its_folder) {
  DrivesFolder program;
  const struct {
    const char* path;
    bool destination, passes;
  } cases[] = {{"D:\\none", true, true},   {"E:\\none", true, true},  {"D:\\none", false, false},
               {"E:\\none", false, false}, {"J:\\none", true, false}, {"I:\\none", true, false}};
  for (const auto& c : cases) {
    Diagram diagram;
    diagram.source("a", program.program("stick"));
    c.destination ? diagram.destination("b", c.path, {"a"}) : diagram.source("b", c.path);
    EXPECT_EQ(Checked(program, diagram).passed, c.passes) << c.path << c.destination;
  }
}

TEST(ControllaPercorsiOggetti, A_destination_folder_on_a_fixed_drive_must_exist) {
  DrivesFolder program;
  Checked check(program, Diagram::copying(program.program("stick"), program.program("none")));
  EXPECT_FALSE(check.passed);
  EXPECT_EQ(faultyPaths(check.dialog), std::vector<std::string>{program.program("none")});
}

TEST(ControllaPercorsiOggetti, Objects_without_a_path_and_deleted_ones_are_not_looked_at) {
  DrivesFolder program;
  EXPECT_TRUE(Checked(program, Diagram()
                                   .files("a", {program.program("none.txt")})
                                   .destination("<!Erased!>", program.program("none"), {"a"})
                                   .source("<!Erased!>", "J:\\x"))
                  .passed);
}

TEST(ControllaPercorsiOggetti, With_ignore_an_unreachable_object_leaves_the_run_and_is_no_fault) {
  DrivesFolder program;
  Checked check(program, Diagram::copying(program.program("stick"), program.program("none")), true);
  EXPECT_TRUE(check.passed);
  EXPECT_TRUE(check.dialog.ListaErrori.empty());
  EXPECT_FALSE(ArrayOggetti[1].BackIgnorato);
  EXPECT_TRUE(ArrayOggetti[2].BackIgnorato);
}

TEST(ControllaPercorsiOggetti, An_object_stays_ignored_until_the_profile_is_read_again) {
  DrivesFolder program;
  Checked check(program, Diagram::copying(program.program("stick"), program.program("later")), true);
  program.work().makeFolder("later");
  EXPECT_TRUE(check.dialog.ControllaPercorsiOggetti());
  EXPECT_TRUE(ArrayOggetti[2].BackIgnorato);
  FrmBackupChoice again;
  EXPECT_FALSE(ArrayOggetti[2].BackIgnorato);
}

TEST(ControllaPercorsiOggetti, Only_a_destination_on_the_network_gets_the_write_test) {
  DrivesFolder program;
  for (const char* folder : {"share", "stick", "local"})
    program.work().makeFolder(std::string(folder) + "/Test$$$.$$$");  // in the way of the test's file
  EXPECT_TRUE(Checked(program, Diagram()
                                   .source("a", "\\\\nas\\photos")
                                   .destination("b", program.program("local"), {"a"})
                                   .destination("c", "D:\\", {"a"}))
                  .passed);
  Checked check(program, Diagram::copying("D:\\", "\\\\nas\\photos"));
  EXPECT_FALSE(check.passed);
  ASSERT_EQ(check.dialog.ListaErrori.size(), 1U);
  EXPECT_EQ(check.dialog.ListaErrori[0].Codice, CodiceErrore::ScritturaFallita);
  EXPECT_EQ(check.dialog.ListaErrori[0].Percorso, "\\\\nas\\photos");
}

TEST(TestScrittura, A_folder_that_can_be_written_is_left_as_it_was) {
  DrivesFolder program;
  for (const char* path : {"\\\\nas\\photos", "\\\\nas\\photos\\", "D:\\"})
    EXPECT_TRUE(FrmBackupChoice::TestScrittura(path)) << path;
  EXPECT_TRUE(fs::is_empty(program.work().host("share")));
  EXPECT_TRUE(fs::is_empty(program.work().host("stick")));
}

TEST(TestScrittura, A_missing_folder_fails_the_test) {
  DrivesFolder program;
  EXPECT_FALSE(FrmBackupChoice::TestScrittura("\\\\nas\\photos\\none"));
  EXPECT_FALSE(FrmBackupChoice::TestScrittura("\\\\other\\share"));
}

// A report over rows that are given, not found.
struct Report {
  explicit Report(const std::vector<ErrorePercorso>& rows) {
    FrmBackupChoice dialog;
    dialog.ListaErrori = rows;
    dialog.CreaRapporto(text, allWell);
  }
  std::string text;
  bool allWell = false;
};

ErrorePercorso fault(std::string path, std::int32_t drive, CodiceErrore code = CodiceErrore::Generico) {
  return {std::move(path), 0, drive, code};
}

TEST(CreaRapporto, Without_a_fault_all_is_well) {
  DrivesFolder program;
  const Report report({});
  EXPECT_TRUE(report.allWell);
  EXPECT_EQ(report.text, Messaggio(139));
}

TEST(CreaRapporto, Every_kind_of_drive_and_fault_has_its_cause) {
  DrivesFolder program;
  program.work().write("file", "x");
  const std::string folder = program.program("stick"), file = program.program("file"),
                    none = program.program("none");
  using enum CodiceErrore;
  const struct {
    ErrorePercorso row;
    int message;  // 0: no cause
  } cases[] = {{fault(none, 1, SenzaInternet), 124},
               {fault(folder, 1, SenzaInternet), 124},
               {fault(folder, 1), 126},
               {fault(file, 1), 126},
               {fault(none, 1), 125},
               {fault(none, 1, NonTrovato), 125},
               {fault(folder, 1, ScritturaFallita), 428},
               {fault(none, 1, ScritturaFallita), 428},
               {fault("D:\\x", 2), 128},
               {fault("J:\\x", 2), 127},
               {fault(none, 3), 0},
               {fault(folder, 3, NonTrovato), 0},
               {fault(folder, 4, NonTrovato), 129},
               {fault("", 4), 131},
               {fault(folder, 4), 131},
               {fault(file, 4), 131},
               {fault(none, 4), 130},
               {fault("E:\\x", 5), 133},
               {fault("I:\\x", 5), 132},
               {fault(none, 6), 0}};
  const std::vector<int> causes{124, 125, 126, 127, 128, 129, 130, 131, 132, 133, 428};
  for (const auto& c : cases) {
    const Report report({c.row});
    EXPECT_FALSE(report.allWell);
    const std::string behind = report.text.substr(report.text.find(Messaggio(136)));
    for (const int cause : causes)
      EXPECT_EQ(behind.find(Messaggio(cause)) != std::string::npos, cause == c.message)
          << c.row.Percorso << " " << c.row.TipoUnita << " " << cause;
  }
}

TEST(CreaRapporto, Paths_come_first_then_the_causes_under_their_headings) {
  DrivesFolder program;
  const Report report({fault("I:\\x", 5), fault("D:\\y", 2)});
  const std::string start = Messaggio(134) + "\r\r" + Messaggio(135) + "\r\rI:\\x\rD:\\y\r\r\r" +
                            Messaggio(136) + "\r\r" + Messaggio(132);
  EXPECT_EQ(report.text.substr(0, start.size()), start);
  EXPECT_LT(report.text.find(Messaggio(132)), report.text.find(Messaggio(128)));
}

TEST(CreaRapporto, Each_kind_of_drive_tells_its_cause_once_by_its_first_row) {
  DrivesFolder program;
  const Report report({fault("I:\\x", 5), fault("E:\\x", 5), fault("I:\\y", 5)});
  EXPECT_NE(report.text.find(Messaggio(132)), std::string::npos);
  EXPECT_EQ(report.text.find(Messaggio(132)), report.text.rfind(Messaggio(132)));
  EXPECT_EQ(report.text.find(Messaggio(133)), std::string::npos);
  for (const char* path : {"I:\\x\r", "E:\\x\r", "I:\\y\r"})
    EXPECT_NE(report.text.find(path), std::string::npos) << path;
}

TEST(MostraRapporto, A_good_result_is_shown_unless_it_is_to_be_silent) {
  DrivesFolder program;
  FrmBackupChoice dialog;
  EXPECT_TRUE(dialog.MostraRapporto(true));
  EXPECT_TRUE(program.screen.boxes.empty());
  EXPECT_TRUE(dialog.MostraRapporto(false));
  ASSERT_EQ(program.screen.boxes.size(), 1U);
  EXPECT_EQ(program.screen.boxes[0].text, Messaggio(139));
  EXPECT_EQ(program.screen.boxes[0].style, StileInformazione);
}

TEST(MostraRapporto, Faults_are_shown_in_their_own_window_silent_or_not) {
  DrivesFolder program;
  FrmBackupChoice dialog;
  dialog.ListaErrori = {fault("J:\\x", 2)};
  EXPECT_FALSE(dialog.MostraRapporto(true));
  EXPECT_FALSE(dialog.MostraRapporto(false));
  ASSERT_EQ(program.screen.errorLists.size(), 2U);
  EXPECT_EQ(program.screen.errorLists[0].find(Messaggio(123) + ": " + Messaggio(134)), 0U);
  EXPECT_TRUE(program.screen.boxes.empty());
}

TEST(MostraRapporto, A_stopped_run_shows_nothing) {
  DrivesFolder program;
  FrmBackupChoice dialog;
  dialog.ListaErrori = {fault("J:\\x", 2)};
  dialog.ProcessoAnnullato = true;
  EXPECT_FALSE(dialog.MostraRapporto(true));
  EXPECT_TRUE(program.screen.errorLists.empty());
}

TEST(Aggiungi_Verfica_Arr_Destinazioni, A_path_is_added_unless_it_is_there_to_the_letter) {
  std::vector<std::string> list;
  EXPECT_TRUE(Aggiungi_Verfica_Arr_Destinazioni(list, "C:"));
  EXPECT_FALSE(Aggiungi_Verfica_Arr_Destinazioni(list, "C:"));
  EXPECT_TRUE(Aggiungi_Verfica_Arr_Destinazioni(list, "c:"));
  EXPECT_EQ(list, (std::vector<std::string>{"C:", "c:"}));
}

}  // namespace
}  // namespace tandemize
