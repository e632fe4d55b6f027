#include "backup/FrmBackupChoice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "backup/BackupRun.h"
#include "errors/ModuloLog.h"
#include "fixtures/DeepTree.h"
#include "profile/ModuloProfilo.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::BackupFolder;
using test::Diagram;

using enum TipoBackup;
using enum ModoEsecuzione;

constexpr const char* WithoutFullRun =
    "Impossibile eseguire il backup incrementale se non è stato prima eseguito il backup completo.";

// One file to copy, and a run over it as the dialog's controls say.
class Runner : public BackupFolder {
 public:
  Runner() {
    work().write("source/a", "content");
    work().makeFolder("destination");
    use(Diagram::copying(program("source"), program("destination")));
  }
  EsitoOperazione run(TipoBackup type = Standard, ModoEsecuzione mode = TestVeloceEBackup) {
    FrmBackupChoice dialog;
    dialog.cmbTipoBackup = type;
    dialog.Opt = mode;
    return dialog.TastoOk_Annulla(0);
  }
  [[nodiscard]] bool copied() { return work().read("destination/a") == "content"; }
  [[nodiscard]] std::vector<std::string> boxes() const { return test::boxTexts(screen); }
  [[nodiscard]] std::vector<std::string> balloons() const { return test::balloonTexts(screen); }
};

TEST(FrmBackupChoice, Its_controls_begin_with_standard_and_quick_test_and_backup) {
  Runner program;
  const FrmBackupChoice dialog;
  EXPECT_EQ(dialog.cmbTipoBackup, Standard);
  EXPECT_EQ(dialog.Opt, TestVeloceEBackup);
  EXPECT_FALSE(dialog.ChkCreateFolder);
  EXPECT_FALSE(dialog.ChkIgnorePath);
  EXPECT_TRUE(dialog.Enabled);
  EXPECT_TRUE(dialog.ProfiloLetto());
}

TEST(FrmBackupChoice, The_ignore_box_begins_as_the_companion_file_says) {
  for (const auto& [stored, on] : {std::pair{"0", false}, {"1", true}, {"255", true}}) {
    Runner program;
    program.home().write("Configb.adv",
                         "FilterBackup = \r\nFilterIgnoreInvalidPath = " + std::string(stored) + "\r\n");
    EXPECT_EQ(FrmBackupChoice().ChkIgnorePath, on) << stored;
  }
}

TEST(FrmBackupChoice, A_profile_that_cannot_be_read_is_told_by_the_dialog) {
  Runner program;
  program.home().write("Config.cfg", "Backup_Path_0 = C:\\a\r\n");
  EXPECT_FALSE(FrmBackupChoice().ProfiloLetto());
}

TEST(FrmBackupChoice, Two_objects_need_no_question_at_activation) {
  Runner program;
  EXPECT_TRUE(FrmBackupChoice().Attiva());
  EXPECT_TRUE(program.screen.boxes.empty());
}

TEST(FrmBackupChoice, Fewer_than_two_objects_ask_for_the_diagram_at_activation) {
  for (const Risposta answer : {Risposta::Sì, Risposta::No}) {
    Runner program;
    program.use(Diagram().source("S", "C:\\"));
    program.screen.answers = {answer};
    FrmBackupChoice dialog;
    EXPECT_EQ(dialog.Attiva(), answer == Risposta::No);
    ASSERT_EQ(program.screen.boxes.size(), 1U);
    EXPECT_EQ(program.screen.boxes[0].text, Messaggio(120));
    EXPECT_EQ(program.screen.boxes[0].style, StileSìNoInformazione);
    EXPECT_EQ(program.screen.diagramsOpened, answer == Risposta::Sì ? 1 : 0);
  }
}

TEST(FrmBackupChoice, The_cancel_button_runs_nothing) {
  Runner program;
  FrmBackupChoice dialog;
  dialog.TastoOk_Annulla(1);
  EXPECT_FALSE(program.copied());
  EXPECT_EQ(program.log(), "");
}

TEST(FrmBackupChoice, No_second_run_starts_while_a_transfer_is_loaded) {
  Runner program;
  const FrmFileTransfer running;
  EXPECT_EQ(program.run(), EsitoOperazione::Rifiutato);
  EXPECT_FALSE(program.copied());
}

TEST(FrmBackupChoice, A_run_saves_the_companion_file_first) {
  Runner program;
  FrmBackupChoice dialog;
  FilterBackup = "-|*.tmp|";
  dialog.ChkIgnorePath = true;
  dialog.TastoOk_Annulla(0);
  EXPECT_EQ(program.home().read("Configb.adv"), "FilterBackup = -|*.tmp|\r\nFilterIgnoreInvalidPath = 1\r\n");
  dialog.ChkIgnorePath = false;
  dialog.TastoOk_Annulla(0);
  EXPECT_EQ(program.home().read("Configb.adv"), "FilterBackup = -|*.tmp|\r\nFilterIgnoreInvalidPath = 0\r\n");
}

TEST(FrmBackupChoice, The_modes_test_quickly_or_accurately_and_copy_or_not) {
  const struct {
    ModoEsecuzione mode;
    bool accurate, copies;
  } cases[] = {{TestVeloce, false, false},
               {TestAccurato, true, false},
               {TestVeloceEBackup, false, true},
               {TestAccuratoEBackup, true, true}};
  for (const auto& c : cases) {
    Runner program;
    EXPECT_EQ(program.run(Standard, c.mode), EsitoOperazione::Fatto);
    EXPECT_EQ(program.copied(), c.copies);
    EXPECT_EQ(test::countLinesWith(program.logLines(), Messaggio(138)), c.accurate ? 1 : 0);
    EXPECT_EQ(program.boxes(), std::vector<std::string>{Messaggio(c.copies ? 189 : 139)});
    EXPECT_TRUE(ArrayTrasferimento.Vuota());
  }
}

TEST(FrmBackupChoice, A_fault_ends_any_mode_without_a_copy_not_even_of_the_sound_sources) {
  for (const ModoEsecuzione mode : {TestVeloce, TestAccurato, TestVeloceEBackup, TestAccuratoEBackup}) {
    Runner program;
    program.use(Diagram()
                    .source("S", program.program("source"))
                    .files("F", {program.program("gone")})
                    .destination("D", program.program("destination"), {"S", "F"}));
    EXPECT_EQ(program.run(Standard, mode), EsitoOperazione::Rifiutato);
    EXPECT_FALSE(program.copied());
    EXPECT_EQ(program.screen.errorLists.size(), 1U);
  }
}

TEST(FrmBackupChoice, A_refused_check_with_an_empty_plan_also_tells_that_there_is_nothing_to_copy) {
  Runner program;
  program.use(Diagram::copying(program.program("gone"), program.program("destination")));
  EXPECT_EQ(program.run(), EsitoOperazione::Rifiutato);
  EXPECT_EQ(program.screen.errorLists.size(), 1U);
  EXPECT_EQ(test::countLinesWith(program.boxes(), Messaggio(121)), 1);
}

TEST(FrmBackupChoice, Nothing_to_copy_is_told_by_a_box_or_unattended_by_a_balloon) {
  for (const bool hidden : {false, true}) {
    Runner program;
    ApplicazioneNascosta = hidden;
    fs::remove(program.work().host("source/a"));
    EXPECT_EQ(program.run(), EsitoOperazione::NienteDaFare);
    EXPECT_EQ(hidden ? program.balloons() : program.boxes(), std::vector<std::string>{Messaggio(121)});
    EXPECT_TRUE((hidden ? program.boxes() : program.balloons()).empty());
  }
}

TEST(FrmBackupChoice, Fewer_than_two_objects_are_refused_with_their_message) {
  Runner program;
  program.use(Diagram().source("S", program.program("source")));
  EXPECT_EQ(program.run(), EsitoOperazione::Rifiutato);
  EXPECT_EQ(test::countLinesWith(program.boxes(), Messaggio(122)), 1);
}

TEST(FrmBackupChoice, An_incremental_run_without_a_list_is_refused_while_somebody_looks) {
  Runner program;
  EXPECT_NE(program.run(Incrementale), EsitoOperazione::Fatto);
  EXPECT_FALSE(program.copied());
  ASSERT_EQ(program.screen.boxes.size(), 1U);
  EXPECT_EQ(program.screen.boxes[0].text, WithoutFullRun);
  EXPECT_EQ(program.screen.boxes[0].style, StileInformazione);
}

TEST(FrmBackupChoice, An_unattended_incremental_run_without_a_list_copies_everything) {
  Runner program;
  ApplicazioneNascosta = true;
  EXPECT_EQ(program.run(Incrementale), EsitoOperazione::Fatto);
  EXPECT_TRUE(program.copied());
  EXPECT_TRUE(program.home().exists("FilesList.Dat"));
}

TEST(FrmBackupChoice, A_list_that_cannot_be_read_is_not_taken_for_a_missing_one) {
  Runner program;
  ApplicazioneNascosta = true;
  program.home().makeFolder("FilesList.Dat");
  EXPECT_EQ(program.run(Incrementale), EsitoOperazione::Rifiutato);
  EXPECT_FALSE(program.copied());
}

TEST(FrmBackupChoice, The_types_differ_in_their_files_their_list_and_their_subfolder) {
  const std::string old = "C:\\old#_#_#01/01/1999 00.00.00#_#_#1\r\n";
  const struct {
    TipoBackup type;
    bool copiesSaved, keepsOld, addsLine;
  } cases[] = {
      {Standard, true, true, false}, {Completo, true, false, true}, {Incrementale, false, true, true}};
  for (const auto& c : cases) {
    Runner program;
    program.work().write("source/saved", "saved");
    FrmBackupChoice probe;
    probe.PrelevaFilePerBackup(false);
    std::string saved, fresh;
    for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i) {
      const RecordFile& file = ArrayTrasferimento[i].Sorgente;
      const std::string line = file.Percorso() + "#_#_#" + file.DataFile() + "#_#_#" +
                               std::to_string(static_cast<int>(file.Dimensione)) + "\r\n";
      (file.UltimoNome() == "saved" ? saved : fresh) = line;
    }
    program.home().write("FilesList.Dat", old + saved);
    EXPECT_EQ(program.run(c.type), EsitoOperazione::Fatto);
    EXPECT_TRUE(program.copied());
    EXPECT_EQ(program.work().exists("destination/saved"), c.copiesSaved);
    const std::string list = program.home().read("FilesList.Dat");
    EXPECT_EQ(list.find(old) != std::string::npos, c.keepsOld);
    EXPECT_EQ(list.find(fresh) != std::string::npos, c.addsLine);
    if (c.type == Standard) {
      EXPECT_EQ(list, old + saved);
    }
    if (c.type == Incrementale) {
      EXPECT_EQ(list, old + saved + fresh);
    }
    if (c.type == Completo) {
      EXPECT_EQ(list.size(), saved.size() + fresh.size());
    }
    EXPECT_FALSE(program.home().exists("LastBackup.dat"));
  }
}

TEST(FrmBackupChoice, A_full_run_that_only_tests_leaves_the_list_alone) {
  Runner program;
  program.home().write("FilesList.Dat", "old");
  program.run(Completo, TestVeloce);
  EXPECT_EQ(program.home().read("FilesList.Dat"), "old");
}

TEST(FrmBackupChoice, A_full_run_into_a_subfolder_is_followed_by_incremental_ones_into_the_same) {
  Runner program;
  ApplicazioneNascosta = true;
  FrmBackupChoice dialog;
  dialog.ChkCreateFolder = true;
  dialog.cmbTipoBackup = Completo;
  ASSERT_EQ(dialog.TastoOk_Annulla(0), EsitoOperazione::Fatto);
  const std::string name = program.home().read("LastBackup.dat");
  EXPECT_EQ(program.work().read("destination/" + name + "/a"), "content");
  program.work().write("source/b", "new");
  dialog.cmbTipoBackup = Incrementale;
  ASSERT_EQ(dialog.TastoOk_Annulla(0), EsitoOperazione::Fatto);
  EXPECT_EQ(program.work().read("destination/" + name + "/b"), "new");
  EXPECT_EQ(program.home().read("LastBackup.dat"), name);
}

TEST(FrmBackupChoice, A_fault_of_a_subfolder_is_passed_over_and_the_rest_copied) {
  Runner program;
  const test::DeepTree deep(program.work().host("source"), std::string(200, 'f'), 30, "deep");
  EXPECT_EQ(program.run(), EsitoOperazione::ErroreSuperato);
  EXPECT_TRUE(program.copied());
}

TEST(FrmBackupChoice, A_stop_while_planning_is_logged_and_copies_nothing) {
  Runner program;
  ApplicazioneNascosta = true;
  program.screen.onEvents = [] {
    if (FormCaricato("FrmScan")) AnnullaOperazioneInCorso();
  };
  EXPECT_EQ(program.run(), EsitoOperazione::Annullato);
  EXPECT_FALSE(program.copied());
  EXPECT_EQ(test::countLinesWith(program.logLines(), "| - " + Messaggio(329) + " -"), 1);
  EXPECT_EQ(test::countLinesWith(program.logLines(), Messaggio(175)), 0);
}

TEST(FrmBackupChoice, A_stop_of_a_test_is_told_from_a_test_without_faults) {
  for (const ModoEsecuzione mode : {TestVeloce, TestAccurato}) {
    Runner program;
    program.screen.onEvents = [] {
      if (FormCaricato("FrmScan")) AnnullaOperazioneInCorso();
    };
    EXPECT_EQ(program.run(Standard, mode), EsitoOperazione::Annullato);
    EXPECT_EQ(test::countLinesWith(program.boxes(), Messaggio(139)), 0);
  }
}

TEST(FrmBackupChoice, A_stop_of_an_earlier_run_ends_no_reading_of_an_accurate_test) {
  Runner program;
  program.screen.onEvents = [] {
    if (FormCaricato("FrmScan")) AnnullaOperazioneInCorso();
  };
  EXPECT_EQ(program.run(), EsitoOperazione::Annullato);
  program.screen.onEvents = nullptr;
  program.run(Standard, TestAccurato);
  EXPECT_EQ(program.boxes(), std::vector<std::string>{Messaggio(139)});
}

TEST(FrmBackupChoice, After_a_run_its_flags_are_clear_and_it_is_enabled_again) {
  Runner program;
  FrmBackupChoice dialog;
  dialog.ErroreInCorso = dialog.ProcessoAnnullato = true;
  EXPECT_EQ(dialog.TastoOk_Annulla(0), EsitoOperazione::Fatto);
  EXPECT_FALSE(dialog.ErroreInCorso);
  EXPECT_FALSE(dialog.ProcessoAnnullato);
  EXPECT_TRUE(dialog.Enabled);
}

TEST(FrmBackupChoice, The_settings_of_retries_survive_a_run) {
  Runner program;
  program.setting("Errors_Correction", "1");
  program.run();
  EXPECT_EQ(Errors_Correction, 1);
}

TEST(FrmBackupChoice, A_diagram_with_an_ftp_object_is_refused_when_no_server_answers) {
  Runner program;
  ApplicazioneNascosta = true;
  Diagram diagram = Diagram::copying(program.program("source"), "/backup");
  diagram.last().BackFigura = 2;
  program.use(diagram);
  EXPECT_EQ(program.run(), EsitoOperazione::Rifiutato);
  EXPECT_EQ(test::countLinesWith(program.logLines(), program.program("source")), 0);
}

TEST(Anteprima, A_preview_plans_and_writes_no_file) {
  Runner program;
  FrmBackupChoice dialog;
  dialog.cmbTipoBackup = Completo;
  dialog.ChkCreateFolder = true;
  const std::string home = test::describeTree(program.home().path());
  const std::string work = test::describeTree(program.work().path());
  SoloLogInMemoria(true);
  EXPECT_TRUE(dialog.Anteprima());
  EXPECT_EQ(ArrayTrasferimento.Numero(), 1U);
  EXPECT_EQ(test::describeTree(program.home().path()), home);
  EXPECT_EQ(test::describeTree(program.work().path()), work);
}

TEST(Anteprima, A_fault_fails_it_and_is_reported) {
  Runner program;
  program.use(Diagram::copying(program.program("gone"), program.program("destination")));
  EXPECT_FALSE(FrmBackupChoice().Anteprima());
  EXPECT_EQ(program.screen.errorLists.size(), 1U);
}

TEST(Anteprima, A_run_after_a_preview_writes_again) {
  Runner program;
  FrmBackupChoice dialog;
  dialog.cmbTipoBackup = Completo;
  dialog.ChkCreateFolder = true;
  EXPECT_TRUE(dialog.Anteprima());
  EXPECT_EQ(dialog.TastoOk_Annulla(0), EsitoOperazione::Fatto);
  EXPECT_TRUE(program.home().exists("LastBackup.dat"));
}

}  // namespace
}  // namespace tandemize
