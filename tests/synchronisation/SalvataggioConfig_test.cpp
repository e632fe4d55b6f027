// The settings of a synchronisation: saving, comparing with what is stored, closing.
#include <filesystem>

#include "shell/ModuloPrincipale.h"
#include "storage/Drives.h"
#include "storage/Percorsi.h"
#include "synchronisation/TandemizeConfigTest.h"

namespace tandemize {
namespace {

using test::PlainFtpServer;
using SalvataggioFtp = test::TandemizeConfigFtp;
using test::TandemizeConfigTest;
using test::Texts;

constexpr const char* RepeatedPaths = "Alcuni persorsi inseriti sono ripetuti.Salvataggio annullato.";

using Salvataggio = TandemizeConfigTest;
using ControllaSalvataggio = TandemizeConfigTest;
using CloseTandemizeConfig = TandemizeConfigTest;

// --- saving

TEST_F(Salvataggio, Without_rows_nothing_is_stored) {
  loadNew();
  const std::string before = file();
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), Texts{Messaggio(383)});
  EXPECT_EQ(file(), before);
}

TEST_F(Salvataggio, Everything_goes_to_the_variables_and_to_the_profile) {
  loadNew();
  addRow(path("one"), path("two"));
  addRow(path("three"), path("four"));
  form.Opt.Attiva = 1;
  form.OptCampareType.Attiva = 3;
  form.ScegliModalità(0);
  form.Chk.Value = form.ChkAutoTandem.Value = 1;
  form.SpuntaSourceNotChange(true);
  answer(Risposta::Sì);
  form.SpuntaDeleteFile(true);
  screen.boxes.clear();
  ASSERT_TRUE(form.Salvataggio());
  EXPECT_EQ(boxes(), Texts{});
  const Texts paths{path("one"), path("two"), path("three"), path("four")};
  EXPECT_EQ(Backup_Path, paths);
  EXPECT_EQ(Backup_FTP, Texts(4));
  EXPECT_EQ(PathCount, 4);
  EXPECT_EQ(FixFileOption, 1);
  EXPECT_EQ(CompareMethod, 3);
  EXPECT_EQ(TandemMode, 0);
  for (const std::uint8_t value : {FixScanAfterFix, SourceNotChange, EraseFile, AutoTandemize})
    EXPECT_EQ(value, 1);
  EXPECT_EQ(FtpEnabled, 0);
  for (const std::size_t i : {0U, 1U, 2U, 3U}) {
    EXPECT_TRUE(stored("Backup_Path_" + std::to_string(i) + " = " + paths[i]));
    EXPECT_TRUE(stored("Backup_FTP_" + std::to_string(i) + " = "));
  }
  for (const char* line : {"FixFileOption = 1", "CompareMethod = 3", "TandemMode = 0", "FixScanAfterFix = 1",
                           "SourceNotChange = 1", "EraseFile = 1", "AutoTandemize = 1", "FtpEnabled = 0"})
    EXPECT_TRUE(stored(line)) << line;
}

TEST_F(Salvataggio, What_was_stored_is_what_the_window_loads_again) {
  loadNew();
  addRow(path("one"), path("two"));
  form.Opt.Attiva = 0;
  form.OptCampareType.Attiva = 2;
  ASSERT_TRUE(form.Salvataggio());
  FrmTandemizeConfig again;
  ASSERT_TRUE(again.Carica());
  EXPECT_EQ(again.ListPath, form.ListPath);
  EXPECT_EQ(again.Opt.Attiva, 0);
  EXPECT_EQ(again.OptCampareType.Attiva, 2);
  EXPECT_EQ(again.Optmode.Attiva, 1);
}

TEST_F(Salvataggio, The_objects_of_the_backup_and_fewer_rows_than_before_are_no_trouble) {
  profile.paths = {path("one"), path("two"), path("three"), path("four")};
  test::writeHostFile(program.host("Config.cfg"), profile.text() + "1BackDescrizione = Documents\r\n");
  ASSERT_TRUE(form.Carica());
  form.ListPath.pop_back();
  ASSERT_TRUE(form.Salvataggio());
  EXPECT_EQ(PathCount, 2);
  EXPECT_FALSE(stored("Backup_Path_2 = " + path("three")));
  EXPECT_TRUE(stored("1BackDescrizione = Documents"));
}

TEST_F(Salvataggio, A_missing_separator_is_added) {
  loadNew();
  addRow(program.program("one"), path("two"));
  ASSERT_TRUE(form.Salvataggio());
  EXPECT_EQ(Backup_Path, (Texts{path("one"), path("two")}));
}

TEST_F(Salvataggio, A_path_that_cannot_be_used_is_told_and_nothing_is_stored) {
  load();
  const std::string before = file();
  addRow(path("three"), path("gone"));
  form.Opt.Attiva = 0;
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), (Texts{noFolder(path("gone")), Messaggio(384)}));
  EXPECT_EQ(file(), before);
  EXPECT_EQ(PathCount, 2);
  EXPECT_EQ(FixFileOption, 2);
}

TEST_F(Salvataggio, The_first_path_that_cannot_be_used_ends_the_check) {
  loadNew();
  addRow(path("gone"), path("gone too"));
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), (Texts{noFolder(path("gone")), Messaggio(384)}));
}

TEST_F(Salvataggio, Paths_that_differ_in_case_or_in_the_trailing_separator_alone_are_repeated) {
  const std::string one = path("one");
  loadNew();
  program.work().makeFolder("ONE");
  const std::string before = file();
  for (const std::string& twin : {one, program.program("one"), path("ONE"), program.program("ONE")}) {
    form.ListPath.clear();
    addRow(one, twin);
    EXPECT_FALSE(form.Salvataggio());
    EXPECT_EQ(boxes(), Texts{RepeatedPaths}) << twin;
    form.ListPath.clear();
    addRow(twin, path("two"));
    addRow(path("three"), one);
    EXPECT_FALSE(form.Salvataggio());
    EXPECT_EQ(boxes(), Texts{RepeatedPaths}) << twin;
  }
  EXPECT_EQ(file(), before);
}

TEST_F(Salvataggio, A_row_of_two_identical_paths_can_be_added_but_not_saved) {
  loadNew();
  enter(path("one"), path("one"));
  form.cmdList(0);
  EXPECT_EQ(form.ListPath.size(), 1U);
  EXPECT_EQ(boxes(), Texts{});
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), Texts{RepeatedPaths});
}

TEST_F(Salvataggio, A_path_that_cannot_be_used_is_told_before_a_repeated_one) {
  loadNew();
  addRow(path("one"), path("one"));
  addRow(path("two"), path("gone"));
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), (Texts{noFolder(path("gone")), Messaggio(384)}));
}

// The first check goes up to the first empty path alone; the second one goes over all.
TEST_F(Salvataggio, An_empty_path_ends_the_check_and_then_the_saving_without_a_word) {
  load();
  const std::string before = file();
  addRow(path("three"), "");
  addRow(path("gone"), path("four"));
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), Texts{});
  EXPECT_EQ(file(), before);
}

TEST_F(Salvataggio, A_path_behind_an_empty_one_still_repeats_an_earlier_one) {
  loadNew();
  addRow(path("one"), "");
  addRow(path("one"), path("two"));
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), Texts{RepeatedPaths});
}

TEST(SalvataggioOnDrives, A_drive_that_is_not_ready_is_refused_by_the_first_check) {
  const test::ProgramFolderWithDrives program;
  FrmTandemizeConfig form;
  form.ListPath = {{{"F:\\", "J:\\"}, {"", ""}}};
  EXPECT_FALSE(form.Salvataggio());
  ASSERT_EQ(program.screen.boxes.size(), 2U);
  EXPECT_EQ(program.screen.boxes[0].style, StileSìNoInformazione);
  EXPECT_EQ(program.screen.boxes[1].text, Messaggio(384));
}

TEST(SalvataggioOnDrives, A_drive_that_is_made_ready_at_the_question_is_taken) {
  test::ProgramFolderWithDrives program;
  test::writeHostFile(program.host("Config.cfg"), ProfiloVuoto());
  FrmTandemizeConfig form;
  ASSERT_TRUE(form.Carica());
  form.ListPath = {{{"F:\\", "D:\\"}, {"", ""}}};
  EXPECT_TRUE(form.Salvataggio());
  EXPECT_EQ(Backup_Path, (Texts{"F:\\", "D:\\"}));
}

TEST_F(Salvataggio, Deletion_is_stored_as_off_while_the_first_path_may_change) {
  loadNew();
  addRow(path("one"), path("two"));
  form.ChkDeleteFile.Value = 1;
  ASSERT_TRUE(form.Salvataggio());
  EXPECT_EQ(EraseFile, 0);
  EXPECT_TRUE(stored("EraseFile = 0"));
}

TEST_F(Salvataggio, A_profile_that_cannot_be_written_is_told_and_the_variables_stay) {
  load();
  form.Opt.Attiva = 0;
  addRow(path("three"), path("four"));
  std::filesystem::remove(program.host("Config.cfg"));
  EXPECT_FALSE(form.Salvataggio());
  const Texts told = boxes();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told[0].find(FileProfilo), std::string::npos);
  EXPECT_EQ(PathCount, 2);
  EXPECT_EQ(FixFileOption, 2);
}

TEST_F(SalvataggioFtp, A_path_on_a_server_turns_ftp_on_gets_its_separator_and_is_stored_with_the_server) {
  loadNew();
  form.ListPath = {{{path("one"), "/public"}, {"", "Work"}}};
  ASSERT_TRUE(form.Salvataggio());
  EXPECT_EQ(boxes(), Texts{});
  EXPECT_EQ(Backup_Path, (Texts{path("one"), "/public/"}));
  EXPECT_EQ(Backup_FTP, (Texts{"", "Work"}));
  EXPECT_EQ(FtpEnabled, 1);
  EXPECT_TRUE(stored("Backup_FTP_1 = Work"));
  EXPECT_TRUE(stored("FtpEnabled = 1"));
  // Both checks asked the server that the row names, and no session is left.
  EXPECT_EQ(server.commands("USER"), (Texts{"USER bob", "USER bob"}));
  EXPECT_FALSE(ServerConnesso(""));
}

TEST_F(SalvataggioFtp, A_path_on_a_server_without_a_description_leaves_ftp_as_it_is) {
  loadNew();
  form.ListPath = {{{path("one"), "/public"}, {"", ""}}};
  ASSERT_TRUE(form.Salvataggio());
  EXPECT_EQ(FtpEnabled, 0);
}

TEST_F(SalvataggioFtp, A_folder_that_the_server_lacks_is_refused) {
  loadNew();
  form.ListPath = {{{path("one"), "/gone"}, {"", "Home"}}};
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), (Texts{Messaggio(312) + " '/gone/' " + Messaggio(311), Messaggio(384)}));
}

TEST_F(SalvataggioFtp, A_server_that_fails_only_the_second_check_ends_the_saving_without_a_word) {
  loadNew();
  const std::string before = file();
  int logins = 0;
  server.answer([&logins](const std::string& line) {
    if (!line.starts_with("CWD") && !line.starts_with("MLST") && !line.starts_with("USER"))
      return std::optional<std::string>();
    if (line.starts_with("USER")) ++logins;
    return logins > 1 ? std::optional<std::string>("530 No.") : std::nullopt;
  });
  form.ListPath = {{{path("one"), "/public"}, {"", "Home"}}};
  EXPECT_FALSE(form.Salvataggio());
  EXPECT_EQ(boxes(), Texts{});
  EXPECT_EQ(logins, 2);
  EXPECT_EQ(file(), before);
}

TEST_F(SalvataggioFtp, An_open_session_is_closed_by_saving_and_by_cancel) {
  load();
  ASSERT_EQ(program.connect(0), 0);
  ASSERT_TRUE(form.Salvataggio());
  EXPECT_FALSE(ServerConnesso(""));
  ASSERT_EQ(program.connect(0), 0);
  form.CmdCancel();
  EXPECT_FALSE(ServerConnesso(""));
}

// --- comparing with what is stored

TEST_F(ControllaSalvataggio, The_rows_as_loaded_are_unchanged_whatever_the_options_are) {
  load();
  form.Opt.Attiva = 0;
  form.Chk.Value = 1;
  EXPECT_TRUE(form.ControllaSalvataggio());
  profile.paths = {path("one"), path("two"), path("three")};
  load();
  EXPECT_TRUE(form.ControllaSalvataggio());
}

TEST_F(ControllaSalvataggio, Every_path_and_description_counts_to_the_letter) {
  profile.paths = {"C:\\a", "C:\\b", "C:\\c", "C:\\d"};
  profile.servers = {"", "", "x", "y"};
  load();
  for (std::size_t row = 0; row < 2; ++row) {
    for (std::size_t i = 0; i < 2; ++i) {
      load();
      form.ListPath[row].Percorsi[i] = Maiuscolo(form.ListPath[row].Percorsi[i]);
      EXPECT_FALSE(form.ControllaSalvataggio());
      load();
      form.ListPath[row].ServerFtp[i] += "z";
      EXPECT_FALSE(form.ControllaSalvataggio());
    }
  }
}

TEST_F(ControllaSalvataggio, A_row_more_or_less_is_a_change_but_an_empty_list_is_none) {
  profile.paths = {path("one"), path("two"), path("three"), path("four")};
  load();
  addRow("C:\\x", "C:\\y");
  EXPECT_FALSE(form.ControllaSalvataggio());
  load();
  form.ListPath.pop_back();
  EXPECT_FALSE(form.ControllaSalvataggio());
  form.ListPath.clear();
  EXPECT_TRUE(form.ControllaSalvataggio());
  loadNew();
  EXPECT_TRUE(form.ControllaSalvataggio());
  addRow("C:\\x", "C:\\y");
  EXPECT_FALSE(form.ControllaSalvataggio());
}

// --- closing

TEST_F(CloseTandemizeConfig, Ok_saves_and_the_window_closes_without_a_question) {
  load();
  addRow(path("three"), path("four"));
  EXPECT_TRUE(form.CmdOK());
  EXPECT_EQ(PathCount, 4);
  EXPECT_TRUE(form.QueryUnload());
  EXPECT_EQ(boxes(), Texts{});
  EXPECT_TRUE(screen.balloons.empty());
}

TEST_F(CloseTandemizeConfig, Ok_adds_the_row_that_is_left_in_the_fields_first) {
  loadNew();
  enter(path("one"), path("two"));
  EXPECT_TRUE(form.CmdOK());
  EXPECT_EQ(Backup_Path, (Texts{path("one"), path("two")}));
}

TEST_F(CloseTandemizeConfig, Ok_without_rows_tells_it_and_nothing_happens) {
  loadNew();
  const std::string before = file();
  EXPECT_FALSE(form.CmdOK());
  EXPECT_EQ(boxes(), Texts{Messaggio(383)});
  enter(path("one"), path("gone"));
  EXPECT_FALSE(form.CmdOK());
  EXPECT_EQ(boxes(), (Texts{noFolder(path("gone")), Messaggio(383)}));
  EXPECT_EQ(file(), before);
}

TEST_F(CloseTandemizeConfig, Ok_tells_the_synchronisation_window_that_the_settings_were_saved) {
  load();
  const FinestraOperazione owner("FrmTandemize");
  ASSERT_TRUE(form.CmdOK());
  ASSERT_EQ(screen.balloons.size(), 1U);
  EXPECT_EQ(screen.balloons[0].testo, Messaggio(381));
  EXPECT_EQ(screen.balloons[0].titolo, Messaggio(380));
}

TEST_F(CloseTandemizeConfig, A_refused_Ok_is_not_told_as_saved_and_does_not_keep_the_question_away) {
  load();
  const FinestraOperazione owner("FrmTandemize");
  addRow(path("one"), path("three"));
  EXPECT_FALSE(form.CmdOK());
  EXPECT_EQ(boxes(), Texts{RepeatedPaths});
  EXPECT_TRUE(screen.balloons.empty());
  answer(Risposta::Sì);
  EXPECT_TRUE(form.QueryUnload());
  EXPECT_EQ(boxes(StileSìNo), Texts{Messaggio(327)});
}

TEST_F(CloseTandemizeConfig, Rows_that_were_not_saved_are_asked_about_and_No_keeps_the_window) {
  load();
  const std::string before = file();
  EXPECT_TRUE(form.QueryUnload());
  EXPECT_EQ(boxes(), Texts{});
  form.ListPath[0].Percorsi[0] = path("three");
  form.CmdCancel();
  answer(Risposta::No);
  EXPECT_FALSE(form.QueryUnload());
  EXPECT_EQ(boxes(StileSìNo), Texts{Messaggio(327)});
  answer(Risposta::Sì);
  EXPECT_TRUE(form.QueryUnload());
  EXPECT_EQ(file(), before);
  EXPECT_EQ(Backup_Path[0], path("one"));
}

TEST_F(SalvataggioFtp, While_a_check_waits_for_a_server_clicks_do_nothing_and_closing_stops_it) {
  loadNew();
  server.answer([](const std::string& line) {
    return line.starts_with("USER") ? std::optional<std::string>(PlainFtpServer::Stall) : std::nullopt;
  });
  form.ListPath = {{{path("one"), "/public"}, {"", "Home"}}};
  const std::string before = file();
  bool asked = false;
  screen.onEvents = [&] {
    if (asked || server.commands("USER").empty()) return;
    asked = true;
    EXPECT_FALSE(form.CmdOK());
    form.cmdList(0);
    form.SelezionaRiga(0);
    EXPECT_EQ(form.Sfoglia(0), EsitoSfoglia::Fatto);
    form.CmdCancel();
    answer(Risposta::Sì);
    EXPECT_FALSE(form.QueryUnload());
  };
  EXPECT_FALSE(form.CmdOK());
  screen.onEvents = nullptr;
  EXPECT_TRUE(asked);
  ASSERT_FALSE(screen.boxes.empty());
  EXPECT_EQ(screen.boxes[0].text, Messaggio(326));
  EXPECT_EQ(screen.boxes.back().text, Messaggio(384));
  EXPECT_EQ(form.ListPathSelezione, -1);
  EXPECT_FALSE(form.ProcessoAnnullato);
  EXPECT_FALSE(AnnullamentoRichiesto);
  EXPECT_EQ(file(), before);
}

}  // namespace
}  // namespace tandemize
