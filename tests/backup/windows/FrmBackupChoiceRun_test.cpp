#include <gtest/gtest.h>

#include <QCheckBox>
#include <QPushButton>
#include <algorithm>
#include <filesystem>

#include "backup/FrmBackupChoice.h"
#include "backup/windows/BackupDesktop.h"
#include "errors/ModuloLog.h"
#include "fixtures/LogLines.h"
#include "presentation/Avvisi.h"
#include "presentation/windows/Form.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::BackupDesktop;
using test::Boxes;
using test::control;
using test::Diagram;
using test::dialogLoaded;
using test::Mode;
using enum test::Mode;
using test::Type;
using enum test::Type;

constexpr const char* WithoutFullRun =
    "Impossibile eseguire il backup incrementale se non è stato prima eseguito il backup completo.";
constexpr int Many = 60;

// --- runs

TEST(FrmBackupChoiceRun, A_click_on_OK_copies_the_files_and_tells_so) {
  BackupDesktop desktop(Many);
  desktop.run();
  EXPECT_EQ(desktop.copies(), Many);
  EXPECT_EQ(desktop.boxTexts(), Boxes{Messaggio(189)});
  EXPECT_EQ(desktop.boxes[0].style, StileInformazione);
  EXPECT_TRUE(dialogLoaded());
  EXPECT_EQ(FormDiNome("FrmFileTransfer"), nullptr);
  EXPECT_EQ(FormDiNome("FrmProgressBar"), nullptr);
  EXPECT_EQ(FormDiNome("FrmScan"), nullptr);
}

TEST(FrmBackupChoiceRun, The_modes_test_quickly_or_accurately_and_copy_or_not) {
  const struct {
    Mode mode;
    bool accurate, copies;
  } cases[] = {{QuickTest, false, false},
               {AccurateTest, true, false},
               {QuickRun, false, true},
               {AccurateRun, true, true}};
  for (const auto& c : cases) {
    BackupDesktop desktop;
    desktop.run(Standard, c.mode);
    EXPECT_EQ(desktop.copied(), c.copies) << c.mode;
    EXPECT_EQ(desktop.boxTexts(), Boxes{Messaggio(c.copies ? 189 : 139)}) << c.mode;
    EXPECT_EQ(test::countLinesWith(test::logLines(desktop.folder.log()), Messaggio(138)), c.accurate ? 1 : 0);
    EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
  }
}

TEST(FrmBackupChoiceRun, A_full_run_keeps_the_list_and_an_incremental_one_copies_what_is_not_in_it) {
  BackupDesktop desktop;
  desktop.run(Full);
  EXPECT_NE(desktop.folder.home().read("FilesList.Dat").find("f0#_#_#"), std::string::npos);
  fs::remove(desktop.folder.work().host("destination/f0"));
  desktop.write("source/new", "content");
  desktop.run(Incremental);
  EXPECT_TRUE(desktop.copied("new"));
  EXPECT_FALSE(desktop.copied("f0"));
}

TEST(FrmBackupChoiceRun, An_incremental_run_without_a_list_is_refused_by_a_box) {
  BackupDesktop desktop;
  desktop.run(Incremental);
  EXPECT_EQ(desktop.boxTexts(), Boxes{WithoutFullRun});
  EXPECT_EQ(desktop.boxes[0].style, StileInformazione);
  EXPECT_FALSE(desktop.copied());
  EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
}

TEST(FrmBackupChoiceRun, An_incremental_run_over_an_empty_list_copies_everything) {
  BackupDesktop desktop;
  desktop.folder.home().write("FilesList.Dat", "");
  desktop.run(Incremental);
  EXPECT_TRUE(desktop.copied());
}

TEST(FrmBackupChoiceRun, The_subfolder_s_box_gives_a_full_run_its_own_folder_and_a_test_none) {
  for (const Mode mode : {QuickTest, QuickRun}) {
    BackupDesktop desktop;
    desktop.open();
    desktop.choose(Full, mode);
    desktop.get<QCheckBox>("ChkCreateFolder").click();
    desktop.ok();
    EXPECT_EQ(desktop.folder.home().exists("LastBackup.dat"), mode == QuickRun);
    if (mode == QuickRun) {
      EXPECT_TRUE(desktop.copied(LeggiUltimoBackup() + "/f0"));
    }
  }
}

TEST(FrmBackupChoiceRun, A_subfolder_that_was_chosen_has_no_effect_on_a_standard_run) {
  BackupDesktop desktop;
  desktop.open();
  desktop.choose(Full);
  desktop.get<QCheckBox>("ChkCreateFolder").click();
  desktop.run(Standard);
  EXPECT_TRUE(desktop.copied());
}

TEST(FrmBackupChoiceRun, An_incremental_run_with_a_subfolder_and_none_remembered_copies_straight) {
  BackupDesktop desktop;
  desktop.folder.home().write("FilesList.Dat", "");
  desktop.open();
  desktop.choose(Incremental);
  desktop.get<QCheckBox>("ChkCreateFolder").click();
  desktop.ok();
  EXPECT_TRUE(desktop.copied());
}

TEST(FrmBackupChoiceRun, Nothing_to_copy_is_told_by_message_121) {
  BackupDesktop desktop(0);
  desktop.folder.work().makeFolder("source");
  desktop.run();
  EXPECT_EQ(desktop.boxTexts(), Boxes{Messaggio(121)});
  EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
}

// --- faults

TEST(FrmBackupChoiceRun, A_fault_shows_the_list_of_faults_and_no_file_is_copied_in_any_mode) {
  for (const Mode mode : {QuickTest, AccurateTest, QuickRun, AccurateRun}) {
    BackupDesktop desktop;
    const std::string gone = desktop.folder.program("gone");
    desktop.use(Diagram()
                    .source("S", desktop.folder.program("source"))
                    .files("F", {gone})
                    .destination("D", desktop.folder.program("destination"), {"S", "F"}));
    desktop.noteErrorLists();
    desktop.run(Standard, mode);
    EXPECT_EQ(desktop.errorLists, 1) << mode;
    EXPECT_EQ(desktop.errorTitle, Messaggio(123));
    EXPECT_EQ(std::ranges::count(desktop.errorLines, gone), 1);
    EXPECT_EQ(std::ranges::count(desktop.errorLines, Messaggio(134)), 1);
    EXPECT_FALSE(desktop.copied());
    EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
  }
}

TEST(FrmBackupChoiceRun, The_ignore_box_takes_an_unreachable_object_out_and_is_remembered) {
  BackupDesktop desktop;
  desktop.use(Diagram()
                  .source("S", desktop.folder.program("source"))
                  .source("T", desktop.folder.program("not there"))
                  .destination("D", desktop.folder.program("destination"), {"S", "T"}));
  desktop.noteErrorLists();
  desktop.run();
  EXPECT_FALSE(desktop.copied());
  EXPECT_EQ(desktop.errorLists, 1);
  desktop.get<QCheckBox>("ChkIgnorePath").click();
  desktop.ok();
  EXPECT_TRUE(desktop.copied());
  EXPECT_NE(desktop.folder.home().read("Configb.adv").find("FilterIgnoreInvalidPath = 1"), std::string::npos);
}

TEST(FrmBackupChoiceRun, Files_that_failed_are_listed_behind_the_closing_box) {
  BackupDesktop desktop(2);
  desktop.folder.work().write("destination/f1/in the way", "");
  desktop.noteErrorLists();
  desktop.run();
  EXPECT_TRUE(desktop.copied("f0"));
  ASSERT_FALSE(desktop.boxes.empty());
  EXPECT_EQ(std::ranges::count(desktop.boxTexts(), Messaggio(427)), 1);
  ASSERT_EQ(desktop.errorLists, 1);
  EXPECT_EQ(std::ranges::count(desktop.errorLines, desktop.folder.program("source/f1")), 1)
      << testing::PrintToString(desktop.errorLines);
  EXPECT_EQ(std::ranges::count(desktop.errorLines, desktop.folder.program("source/f0")), 0);
}

TEST(FrmBackupChoiceRun, A_run_without_failures_lists_none_also_after_one_that_had_some) {
  BackupDesktop desktop(2);
  desktop.folder.work().write("destination/f1/in the way", "");
  desktop.noteErrorLists();
  desktop.run();
  fs::remove_all(desktop.folder.work().host("destination/f1"));
  desktop.noteErrorLists();
  desktop.run();
  EXPECT_EQ(desktop.errorLists, 1);
  desktop.run(Standard, QuickTest);
  EXPECT_EQ(desktop.errorLists, 1);
}

TEST(FrmBackupChoiceRun, Nothing_is_copied_without_a_log) {
  BackupDesktop desktop;
  desktop.open();
  desktop.folder.home().makeFolder("LogFile1.txt");
  for (const bool bannerFailed : {true, false}) {
    desktop.boxes.clear();
    AzzeraErroreLog();
    if (bannerFailed) ScriviLog(Messaggio(3), Intestazione);
    desktop.ok();
    EXPECT_FALSE(desktop.copied());
    ASSERT_FALSE(desktop.boxes.empty());
    EXPECT_EQ(desktop.boxes[0].style, StileCritico);
    EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
  }
}

TEST(FrmBackupChoiceRun, A_log_that_can_be_written_again_begins_with_the_banner_that_it_missed) {
  BackupDesktop desktop;
  desktop.open();
  desktop.folder.home().makeFolder("LogFile1.txt");
  ScriviLog(Messaggio(3), Intestazione);
  fs::remove(desktop.folder.host("LogFile1.txt"));
  desktop.ok();
  EXPECT_TRUE(desktop.copied());
  EXPECT_EQ(test::countLinesWith(test::logLines(desktop.folder.log()), Messaggio(3)), 1);
}

// --- while a run goes on

TEST(FrmBackupChoiceRun, It_is_disabled_and_busy_while_a_run_goes_on_and_has_the_focus_behind_it) {
  for (const char* during : {"FrmProgressBar", "FrmScan", "FrmFileTransfer"}) {
    BackupDesktop desktop(Many);
    desktop.open();
    bool looked = false;
    desktop.whenShown(during, [&](QWidget&) {
      looked = true;
      EXPECT_FALSE(test::window("FrmBackupChoice")->isEnabled());
      EXPECT_TRUE(FrmBackupChoiceOccupata());
      desktop.ok();  // no second run
    });
    desktop.run();
    EXPECT_TRUE(looked) << during;
    EXPECT_FALSE(FrmBackupChoiceOccupata());
    EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
    EXPECT_EQ(test::window("FrmBackupChoice")->focusWidget(), &desktop.get<QPushButton>("cmd(0)"));
    EXPECT_EQ(desktop.copies(), Many);
    EXPECT_EQ(desktop.boxTexts(), Boxes{Messaggio(189)});
  }
}

TEST(FrmBackupChoiceRun, No_run_starts_while_another_operation_goes_on) {
  for (const char* other : {"FrmScan", "FrmProgressBar", "FrmFileTransfer"}) {
    BackupDesktop desktop;
    desktop.open();
    const FinestraOperazione running(other);
    desktop.ok();
    EXPECT_FALSE(desktop.copied());
    EXPECT_EQ(desktop.boxes.size(), 1U);
    EXPECT_FALSE(FrmBackupChoiceOccupata());
  }
}

TEST(FrmBackupChoiceRun, A_stop_in_the_transfer_asks_and_No_lets_it_go_on) {
  for (const Risposta answer : {Risposta::Sì, Risposta::No}) {
    BackupDesktop desktop(Many);
    desktop.answers = {answer};
    desktop.whenShown("FrmFileTransfer",
                      [](QWidget& window) { test::click(*control<QPushButton>(window, "CmbAnnulla")); });
    desktop.run();
    ASSERT_FALSE(desktop.boxes.empty());
    EXPECT_EQ(desktop.boxes[0].text, Messaggio(326));
    EXPECT_EQ(desktop.boxes[0].style, StileSìNo);
    const bool stopped = answer == Risposta::Sì;
    EXPECT_EQ(desktop.copies() < Many, stopped);
    EXPECT_EQ(std::ranges::count(desktop.boxTexts(), Messaggio(190)), stopped ? 1 : 0);
    EXPECT_EQ(std::ranges::count(desktop.boxTexts(), Messaggio(189)), stopped ? 0 : 1);
    EXPECT_EQ(test::countLinesWith(test::logLines(desktop.folder.log()), "| - " + Messaggio(329) + " -") > 0,
              stopped);
    EXPECT_TRUE(dialogLoaded());
    EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
  }
}

TEST(FrmBackupChoiceRun, A_stop_while_planning_copies_nothing) {
  for (const auto& [during, button] :
       {std::pair{"FrmProgressBar", "CmdAnnulla"}, {"FrmScan", "CmbAnnulla"}}) {
    BackupDesktop desktop(Many);
    desktop.answers = {Risposta::Sì};
    desktop.whenShown(
        during, [button = button](QWidget& window) { test::click(*control<QPushButton>(window, button)); });
    desktop.run();
    ASSERT_FALSE(desktop.boxes.empty()) << during;
    EXPECT_EQ(desktop.boxes[0].text, Messaggio(326));
    EXPECT_EQ(desktop.copies(), 0) << during;
    EXPECT_TRUE(dialogLoaded());
    EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
  }
}

TEST(FrmBackupChoiceRun, Closing_while_a_run_goes_on_asks_and_Yes_closes_when_the_engine_is_back) {
  for (const char* during : {"FrmProgressBar", "FrmScan", "FrmFileTransfer"}) {
    BackupDesktop desktop(Many);
    desktop.answers = {Risposta::Sì};
    bool stayed = false;
    desktop.whenShown(during, [&stayed](QWidget&) {
      test::window("FrmBackupChoice")->close();
      stayed = dialogLoaded();
    });
    desktop.run();
    test::letEventsRun();
    ASSERT_FALSE(desktop.boxes.empty()) << during;
    EXPECT_EQ(desktop.boxes[0].text, Messaggio(326));
    EXPECT_EQ(std::ranges::count(desktop.boxTexts(), Messaggio(326)), 1);
    EXPECT_TRUE(stayed) << during;
    EXPECT_FALSE(dialogLoaded()) << during;
    EXPECT_FALSE(FormCaricato("FrmBackupChoice")) << during;
    EXPECT_LT(desktop.copies(), Many);
  }
}

TEST(FrmBackupChoiceRun, Closing_while_a_run_goes_on_and_No_keeps_both_the_run_and_the_window) {
  for (const char* during : {"FrmProgressBar", "FrmScan", "FrmFileTransfer"}) {
    BackupDesktop desktop(Many);
    desktop.answers = {Risposta::No};
    desktop.whenShown(during, [](QWidget&) { test::window("FrmBackupChoice")->close(); });
    desktop.run();
    test::letEventsRun();
    EXPECT_EQ(desktop.copies(), Many) << during;
    EXPECT_TRUE(dialogLoaded()) << during;
    EXPECT_TRUE(test::window("FrmBackupChoice")->isEnabled());
  }
}

TEST(FrmBackupChoiceRun, A_window_that_is_taken_away_in_the_middle_does_no_harm) {
  BackupDesktop desktop(Many);
  desktop.whenShown("FrmFileTransfer", [](QWidget&) { delete test::window("FrmBackupChoice"); });
  desktop.run();
  EXPECT_EQ(desktop.copies(), Many);
  EXPECT_FALSE(dialogLoaded());
  EXPECT_FALSE(FormCaricato("FrmBackupChoice"));
}

// --- the hidden program

TEST(FrmBackupChoiceRun, A_run_that_ends_while_the_program_is_hidden_gives_a_balloon_instead_of_a_box) {
  BackupDesktop desktop(Many);
  desktop.open();
  desktop.whenShown("FrmFileTransfer", [](QWidget&) {
    NascondiForm(false);
    ApplicazioneNascosta = true;
  });
  std::string balloon;
  desktop.whenShown("frmTrayMessage", [&balloon](QWidget&) { balloon = BalloonCorrente; });
  desktop.run();
  test::letEventsRun();
  EXPECT_EQ(desktop.copies(), Many);
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_EQ(balloon, Messaggio(189));
  QWidget& window = *test::window("FrmBackupChoice");
  EXPECT_FALSE(window.isVisible());
  EXPECT_FALSE(window.isEnabled());
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.isEnabled());
}

TEST(FrmBackupChoiceRun, Failed_files_are_not_listed_while_the_program_is_hidden) {
  BackupDesktop desktop(Many);
  desktop.folder.work().write("destination/f1/in the way", "");
  desktop.open();
  desktop.noteErrorLists();
  desktop.whenShown("FrmFileTransfer", [](QWidget&) {
    NascondiForm(false);
    ApplicazioneNascosta = true;
  });
  desktop.run();
  ApplicazioneNascosta = false;
  MostraForm();
  test::letEventsRun();
  EXPECT_EQ(desktop.errorLists, 0);
}

TEST(FrmBackupChoiceRun, Opened_while_the_program_is_hidden_it_waits_and_asks_when_it_is_shown) {
  BackupDesktop desktop;
  desktop.use(Diagram().source("S", "C:\\"));
  ApplicazioneNascosta = true;
  QWidget* window = desktop.open();
  ASSERT_NE(window, nullptr);
  EXPECT_FALSE(window->isVisible());
  EXPECT_TRUE(desktop.boxes.empty());
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_EQ(desktop.boxTexts(), Boxes{Messaggio(120)});
  EXPECT_TRUE(window->isVisible());
}

}  // namespace
}  // namespace tandemize
