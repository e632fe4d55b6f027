// The window's engine: its paths, the unattended start and its outcomes, the preview, the lists.
#include "synchronisation/FrmTandemize.h"

#include <gtest/gtest.h>

#include "synchronisation/SyncRun.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ListScreen;
using test::SyncFolder;
using test::SyncProfile;

using Texts = std::vector<std::string>;

// --- the profile and its paths

TEST(FrmTandemize, The_paths_are_those_of_the_profile_with_the_servers_of_ftp_paths_alone) {
  SyncFolder folder;
  folder.profile.paths = {"C:\\data", "/public", "\\\\nas\\x\\", "D:\\e"};
  folder.profile.servers = {"ignored", "second", "", ""};
  folder.saveProfile();
  FtpServers = {{"first", "a", "", "", 0}, {"second", "b", "", "", 0}, {}};
  const std::vector<RigaPercorso> rows = FrmTandemize().Percorsi();
  ASSERT_EQ(rows.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(rows[i].percorso, folder.profile.paths[i]);
  EXPECT_EQ(rows[0].indiceServer, "");
  EXPECT_EQ(rows[1].indiceServer, "1");
}

TEST(FrmTandemize, A_profile_that_cannot_be_read_is_told_by_ProfiloLetto_and_nothing_runs_with_it) {
  SyncFolder folder;
  folder.saveProfile();
  std::string text = folder.profile.text();
  text.replace(text.find("EraseFile = 0"), 13, "EraseFile = x");
  test::writeHostFile(folder.host("Config.cfg"), text);
  FrmTandemize window;
  EXPECT_FALSE(window.ProfiloLetto());
  EXPECT_EQ(window.PartenzaAutomatica(), EsitoOperazione::Rifiutato);
  EXPECT_EQ(window.Anteprima(), EsitoOperazione::Rifiutato);
  EXPECT_EQ(test::readHostFile(folder.host("Config.cfg")), text);
}

TEST(FrmTandemize, Making_it_empties_the_tables) {
  SyncFolder folder;
  folder.saveProfile();
  test::addTransfer("C:\\a", "C:\\b");
  const FrmTandemize window;
  EXPECT_FALSE(window.CiSonoOperazioni());
  EXPECT_EQ(ArrayScansione.Colonne(), 2U);
}

// --- the unattended start

TEST(UnattendedStart, Checks_scans_compares_and_executes_without_a_question) {
  SyncFolder folder;
  folder.file("one/a", "a");
  folder.file("two/sub/b", "b");
  EXPECT_EQ(folder.run(), EsitoOperazione::Fatto);
  EXPECT_EQ(test::describeTree(folder.work().host("one")), test::describeTree(folder.work().host("two")));
  EXPECT_EQ(folder.screen.boxes.size(), 0U);
  EXPECT_EQ(test::balloonTexts(folder.screen), Texts{Messaggio(189)});
  // And once more: nothing is left to do.
  folder.screen.balloons.clear();
  EXPECT_EQ(folder.run(), EsitoOperazione::NienteDaFare);
  EXPECT_EQ(test::balloonTexts(folder.screen), Texts{Messaggio(62)});
}

TEST(UnattendedStart, A_path_that_cannot_be_reached_is_logged_and_nothing_is_touched) {
  SyncFolder folder;
  folder.file("one/a", "a");
  folder.profile.paths[1] = folder.program("gone");
  const std::string before = folder.tree();
  EXPECT_EQ(folder.run(), EsitoOperazione::Rifiutato);
  EXPECT_EQ(folder.tree(), before);
  EXPECT_EQ(folder.logLines(), (Texts{"", Messaggio(283), ""}));
  ASSERT_EQ(folder.screen.balloons.size(), 1U);
  EXPECT_NE(folder.screen.balloons[0].testo.find(folder.program("gone")), std::string::npos);
}

TEST(UnattendedStart, A_connection_lost_before_it_does_not_count_against_it) {
  SyncFolder folder;
  folder.file("one/a", "a");
  ConnessioneFallita = true;
  EXPECT_EQ(folder.run(), EsitoOperazione::Fatto);
}

TEST(UnattendedStart, A_profile_without_paths_is_refused) {
  SyncFolder folder;
  folder.profile.paths = {"", ""};
  EXPECT_EQ(folder.run(), EsitoOperazione::Rifiutato);
  EXPECT_EQ(test::balloonTexts(folder.screen), Texts{Messaggio(313)});
}

TEST(UnattendedStart, A_scan_that_failed_refuses_the_run_and_its_flags_do_not_outlive_it) {
  for (const bool tryNext : {false, true}) {
    SyncFolder folder;
    folder.tryNext(tryNext);
    folder.file("one/a", "a");
    folder.file("two/b", "b");
    folder.whenScanned(0, 1, [&] { fs::remove_all(folder.work().host("one")); });
    folder.saveProfile();
    FrmTandemize window;
    EXPECT_EQ(window.PartenzaAutomatica(), EsitoOperazione::Rifiutato);
    EXPECT_FALSE(window.ErroreInCorso);
    EXPECT_FALSE(ConnessioneFallita);
    EXPECT_EQ(test::describeTree(folder.work().host("two")), "b = b\n");
    folder.forgetHooks();
  }
}

TEST(UnattendedStart, A_stop_during_the_check_of_the_paths_is_not_lost) {
  SyncFolder folder;
  folder.file("one/a", "a");
  folder.screen.onEvents = [] {
    if (FormAttivo() == "FrmTandemize") AnnullaOperazioneInCorso();
  };
  EXPECT_EQ(folder.run(), EsitoOperazione::Annullato);
  EXPECT_FALSE(folder.work().exists("two/a"));
  EXPECT_EQ(test::countLinesWith(folder.logLines(), Messaggio(273)), 0);
}

TEST(UnattendedStart, A_stop_of_sort_or_comparison_is_no_success) {
  for (const bool sorting : {true, false}) {
    SyncFolder folder;
    for (const char* name : {"one/a", "one/b", "one/c"}) folder.file(name, "x");
    folder.screen.onEvents = [&folder, sorting] {
      const StatoAvanzamento& shown = folder.screen.lastProgress;
      const bool sort = shown.visibile && shown.testo.starts_with(Messaggio(285));
      if (sorting ? sort : FormCaricato("FrmProgressBar") && ArrayTrasferimento.Numero() == 1)
        AnnullaOperazioneInCorso();
    };
    EXPECT_EQ(folder.run(), EsitoOperazione::Annullato) << sorting;
    EXPECT_EQ(test::describeTree(folder.work().host("two")), "");
  }
}

TEST(UnattendedStart, A_stop_of_the_transfer_keeps_what_is_done) {
  SyncFolder folder;
  folder.file("one/a", "a");
  folder.file("one/b", "b");
  folder.screen.onEvents = [&folder] {
    if (FormCaricato("FrmFileTransfer") && folder.work().exists("two/a")) AnnullaOperazioneInCorso();
  };
  EXPECT_EQ(folder.run(), EsitoOperazione::Annullato);
  EXPECT_EQ(test::describeTree(folder.work().host("two")), "a = a\n");
}

TEST(UnattendedStart, A_crc_that_failed_is_told_and_the_rest_is_done_all_the_same) {
  SyncFolder folder;
  folder.profile.CompareMethod = ConfrontoCrc;
  for (const char* name : {"one/b", "two/b"}) folder.file(name, std::string("content of ") + name);
  folder.file("one/c", "c");
  folder.lock("one/b");
  const test::AsOrdinaryUser user(folder);
  EXPECT_EQ(folder.run(), EsitoOperazione::ErroreSuperato);
  EXPECT_EQ(test::balloonTexts(folder.screen).front(), Messaggio(426));
  EXPECT_TRUE(folder.work().exists("two/c"));
  EXPECT_EQ(folder.work().read("two/b"), "content of two/b") << "what could not be compared is left alone";
}

TEST(UnattendedStart, A_failed_crc_with_nothing_else_to_do_is_no_plain_success) {
  SyncFolder folder;
  folder.profile.CompareMethod = ConfrontoCrc;
  for (const char* name : {"one/b", "two/b"}) folder.file(name, std::string("content of ") + name);
  folder.lock("one/b");
  const test::AsOrdinaryUser user(folder);
  EXPECT_EQ(folder.run(), EsitoOperazione::ErroreSuperato);
}

TEST(UnattendedStart, A_file_that_failed_is_told_by_name) {
  SyncFolder folder;
  folder.file("one/a", "a");
  folder.file("one/b", "b");
  folder.work().makeFolder("two/a/in the way");
  folder.saveProfile();
  FrmTandemize window;
  EXPECT_EQ(window.PartenzaAutomatica(), EsitoOperazione::FileFalliti);
  EXPECT_EQ(window.EsitoUltimaCopia(), EsitoTrasferimento::FileFallito);
  ASSERT_EQ(window.NumeroFalliti, 1U);
  EXPECT_EQ(window.Falliti[0].percorso, folder.program("one") + "\\a");
  EXPECT_EQ(folder.work().read("two/b"), "b");
}

TEST(UnattendedStart, It_is_refused_while_another_transfer_runs) {
  SyncFolder folder;
  folder.file("one/a", "a");
  folder.saveProfile();
  FrmTandemize window;
  const FrmFileTransfer transfer;
  EXPECT_EQ(window.PartenzaAutomatica(), EsitoOperazione::Rifiutato);
  EXPECT_FALSE(folder.work().exists("two/a"));
}

TEST(UnattendedStart, It_never_scans_again_at_its_end) {
  SyncFolder folder;
  folder.profile.FixScanAfterFix = 1;
  folder.file("one/a", "a");
  EXPECT_EQ(folder.run(), EsitoOperazione::Fatto);
  EXPECT_EQ(test::countLinesWith(folder.logLines(), Messaggio(273)), 2);
}

// --- the preview

TEST(Anteprima, Plans_and_writes_nothing) {
  SyncFolder folder;
  folder.file("one/a", "a");
  folder.file("two/gone", "g");
  folder.profile = SyncProfile::mirroring(folder.program("one"), folder.program("two"));
  folder.saveProfile();
  test::writeHostFile(folder.host("Config.cfg"), folder.profile.text() + "\r\n\r\n");
  SoloLogInMemoria(true);
  const std::string before = folder.tree() + test::describeTree(folder.home().path());
  FrmTandemize window;
  EXPECT_EQ(window.Anteprima(), EsitoOperazione::Fatto);
  EXPECT_EQ(test::plannedOperations(),
            (Texts{"missing " + folder.program("one") + "\\a -> " + folder.program("two") + "\\a",
                   "delete " + folder.program("two") + "\\gone -> " + folder.program("one") + "\\gone"}));
  EXPECT_EQ(folder.tree() + test::describeTree(folder.home().path()), before);
}

TEST(Anteprima, Its_outcomes_are_those_of_the_run_up_to_the_comparison) {
  {
    SyncFolder folder;
    folder.saveProfile();
    EXPECT_EQ(FrmTandemize().Anteprima(), EsitoOperazione::NienteDaFare);
  }
  {
    SyncFolder folder;
    folder.profile.paths[0] = folder.program("gone");
    folder.saveProfile();
    EXPECT_EQ(FrmTandemize().Anteprima(), EsitoOperazione::Rifiutato);
  }
  {
    SyncFolder folder;
    folder.file("one/a", "a");
    folder.saveProfile();
    folder.whenScanned(0, 1, [] { AnnullaOperazioneInCorso(); });
    EXPECT_EQ(FrmTandemize().Anteprima(), EsitoOperazione::Annullato);
    folder.forgetHooks();
  }
}

TEST(Anteprima, It_never_executes_not_even_with_AutoTandemize_in_a_program_that_is_shown) {
  SyncFolder folder;
  folder.profile.AutoTandemize = 1;
  folder.file("one/a", "a");
  folder.saveProfile();
  ApplicazioneNascosta = false;
  EXPECT_EQ(FrmTandemize().Anteprima(), EsitoOperazione::Fatto);
  EXPECT_FALSE(folder.work().exists("two/a"));
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST(Anteprima, The_pass_after_it_saves_the_profile_again) {
  SyncFolder folder;
  folder.saveProfile();
  FrmTandemize window;
  EXPECT_EQ(window.Anteprima(), EsitoOperazione::NienteDaFare);
  fs::remove(folder.host("Config.cfg"));
  fs::create_directory(folder.host("Config.cfg"));
  EXPECT_EQ(window.PartenzaAutomatica(), EsitoOperazione::Rifiutato);
}

// --- the lists

TEST(FrmTandemizeLists, Are_emptied_when_forced_or_when_the_list_of_operations_is_long) {
  const struct {
    bool forced;
    std::size_t operations;
    bool emptied;
  } cases[] = {{false, 0, false}, {false, 1100, false}, {false, 1101, true}, {true, 0, true}};
  for (const auto& c : cases) {
    SyncFolder folder;
    folder.saveProfile();
    FrmTandemize window;
    ListScreen screen;
    for (std::size_t i = 0; i < c.operations; ++i) test::addTransfer("C:\\a", "C:\\b");
    window.Libera_Tutta_La_Memoria(c.forced);
    EXPECT_EQ(screen.calls == Texts{"empty"}, c.emptied) << c.operations;
    EXPECT_EQ(screen.lastProgress.testo == Messaggio(284), c.emptied);
    EXPECT_FALSE(screen.lastProgress.visibile);
    window.ResettaGliArray();
  }
}

TEST(FrmTandemizeLists, Are_made_anew_with_a_status_row_for_each_path) {
  SyncFolder folder;
  folder.profile.paths.insert(folder.profile.paths.end(), {folder.program("x"), folder.program("y")});
  folder.saveProfile();
  FrmTandemize window;
  ListScreen screen;
  window.Refresh_Completo_Griglie(false);
  EXPECT_EQ(screen.calls, (Texts{"make", "info 0", "info 1", "info 2", "info 3"}));
}

TEST(FrmTandemizeLists, A_screen_without_lists_is_asked_for_nothing) {
  SyncFolder folder;
  folder.file("one/a", "a");
  ListScreen screen;
  screen.keepsRows = false;
  EXPECT_EQ(folder.run(), EsitoOperazione::Fatto);
  EXPECT_EQ(screen.calls, Texts{});
}

}  // namespace
}  // namespace tandemize
