// What an incremental run leaves out of its plan.
#include <gtest/gtest.h>

#include <set>

#include "backup/Planner.h"
#include "profile/ModuloProfilo.h"

namespace tandemize {
namespace {

using test::BackupFolder;
using test::dateOf;
using test::Diagram;
using test::Plan;
using test::Planner;

std::string listLine(const BackupFolder& p, const std::string& file, const std::string& date) {
  return p.program(file) + "#_#_#" + date + "#_#_#1\r\n";
}

void incremental(FrmBackupChoice& dialog) {
  dialog.cmbTipoBackup = TipoBackup::Incrementale;
}

// Through the button, since it is what reads the list; the mode is a test, so nothing is copied.
std::set<std::string> incrementalPlan(Planner& p) {
  FrmBackupChoice dialog;
  incremental(dialog);
  ApplicazioneNascosta = true;
  EXPECT_TRUE(dialog.Anteprima());
  return p.planned();
}

TEST(Incremental, Files_of_the_list_with_the_same_date_are_left_out) {
  Planner p;
  for (const char* file : {"s/same", "s/changed", "s/new"}) p.work().write(file, "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.home().write("FilesList.Dat", listLine(p, "s/same", dateOf(p, "s/same")) +
                                      listLine(p, "s/changed", "01/01/1999 00.00.00"));
  EXPECT_EQ(incrementalPlan(p), (Plan{p.to("s/changed", "d/changed"), p.to("s/new", "d/new")}));
}

TEST(Incremental, An_older_line_with_the_same_date_stops_the_copy_too) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.home().write("FilesList.Dat",
                 listLine(p, "s/a", dateOf(p, "s/a")) + listLine(p, "s/a", "01/01/1999 00.00.00"));
  EXPECT_EQ(incrementalPlan(p), Plan{});
}

TEST(Incremental, The_size_is_not_compared) {
  Planner p;
  p.work().write("s/a", "much longer than one byte");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.home().write("FilesList.Dat", listLine(p, "s/a", dateOf(p, "s/a")));
  EXPECT_EQ(incrementalPlan(p), Plan{});
}

TEST(Incremental, An_empty_list_and_a_missing_one_copy_everything) {
  for (const bool there : {true, false}) {
    Planner p;
    p.work().write("s/a", "x");
    p.folders({"d"});
    p.use(Diagram::copying(p.program("s"), p.program("d")));
    if (there) p.home().write("FilesList.Dat", "");
    EXPECT_EQ(incrementalPlan(p), Plan{p.to("s/a", "d/a")}) << there;
  }
}

TEST(Incremental, Another_form_of_dates_makes_every_file_look_changed) {
  Planner p;
  p.work().write("s/a", "x");
  p.folders({"d"});
  p.use(Diagram::copying(p.program("s"), p.program("d")));
  p.home().write("FilesList.Dat", listLine(p, "s/a", dateOf(p, "s/a")));
  FormatoData = "yyyy-mm-dd";
  EXPECT_EQ(incrementalPlan(p), Plan{p.to("s/a", "d/a")});
}

TEST(Incremental, A_file_that_is_left_out_is_left_out_for_every_destination) {
  Planner p;
  for (const char* file : {"s/a", "s/b", "s/c"}) p.work().write(file, "x");
  p.folders({"d", "e"});
  p.use(Diagram()
            .source("S", p.program("s"))
            .destination("D", p.program("d"), {"S"})
            .destination("E", p.program("e"), {"S"}));
  p.home().write("FilesList.Dat",
                 listLine(p, "s/a", dateOf(p, "s/a")) + listLine(p, "s/c", dateOf(p, "s/c")));
  EXPECT_EQ(incrementalPlan(p), (Plan{p.to("s/b", "d/b"), p.to("s/b", "e/b")}));
}

TEST(Incremental, Single_files_follow_the_list_as_well) {
  Planner p;
  p.work().write("s/a", "x");
  p.work().write("s/b", "x");
  p.folders({"d"});
  p.use(Diagram().files("F", {p.program("s/a"), p.program("s/b")}).destination("D", p.program("d"), {"F"}));
  p.home().write("FilesList.Dat", listLine(p, "s/a", dateOf(p, "s/a")));
  EXPECT_EQ(incrementalPlan(p), Plan{p.to("s/b", "d/b")});
}

TEST(FileGiaSalvato, A_file_of_the_list_moves_the_row_on) {
  Planner p;
  p.work().write("s/a", "x");
  p.home().write("FilesList.Dat", "C:\\a#_#_##_#_#1\r\n");
  p.use(Diagram::copying(p.program("s"), p.program("s")));
  FrmBackupChoice dialog;
  incremental(dialog);
  ApplicazioneNascosta = true;
  ASSERT_TRUE(dialog.Anteprima());
  std::size_t row = 4;
  bool toCopy = true;
  dialog.FileGiaSalvato(test::recordOf("C:\\a"), row, toCopy);
  EXPECT_FALSE(toCopy);
  EXPECT_EQ(row, 5U);
  dialog.FileGiaSalvato(test::recordOf("C:\\b"), row, toCopy);
  EXPECT_TRUE(toCopy);
  EXPECT_EQ(row, 5U);
}

}  // namespace
}  // namespace tandemize
