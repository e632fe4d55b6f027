#include "backup/windows/FrmBackupChoiceWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>

#include "backup/windows/BackupDesktop.h"
#include "errors/ModuloGestioneErrori.h"
#include "fixtures/windows/CutText.h"
#include "presentation/windows/Form.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

using test::BackupDesktop;
using test::Boxes;
using test::control;
using test::Diagram;
using test::dialogLoaded;
using test::Mode;
using enum test::Mode;
using test::Type;
using enum test::Type;

// --- loading

TEST(FrmBackupChoiceWindow, Its_controls_begin_as_the_engine_says) {
  BackupDesktop desktop;
  desktop.open();
  const QComboBox& type = desktop.get<QComboBox>("cmbTipoBackup");
  ASSERT_EQ(type.count(), 3);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(type.itemText(i).toStdString(), Messaggi[141U + static_cast<unsigned>(i)]);
  EXPECT_EQ(type.currentIndex(), 0);
  EXPECT_FALSE(type.isEditable());
  for (int i = 0; i < 4; ++i) {
    const auto& mode = desktop.get<QRadioButton>("Opt(" + std::to_string(i) + ")");
    EXPECT_EQ(test::text(mode), Messaggi[115U + static_cast<unsigned>(i)]);
    EXPECT_EQ(mode.isChecked(), i == QuickRun);
  }
  EXPECT_EQ(test::text(desktop.get<QCheckBox>("ChkCreateFolder")), Messaggio(436));
  EXPECT_EQ(test::text(desktop.get<QCheckBox>("ChkIgnorePath")), Messaggio(450));
  EXPECT_EQ(test::text(desktop.get<QPushButton>("cmd(1)")), Messaggio(395));
  EXPECT_FALSE(desktop.get<QCheckBox>("ChkCreateFolder").isChecked());
  EXPECT_FALSE(desktop.get<QCheckBox>("ChkIgnorePath").isChecked());
  EXPECT_EQ(test::window("FrmBackupChoice")->windowTitle().toStdString(), Messaggio(3));
  EXPECT_TRUE(FormCaricato("FrmBackupChoice"));
  EXPECT_FALSE(FrmBackupChoiceOccupata());
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST(FrmBackupChoiceWindow, The_ignore_box_begins_as_the_companion_file_says) {
  BackupDesktop desktop;
  desktop.folder.home().write("Configb.adv", "FilterBackup = \r\nFilterIgnoreInvalidPath = 1\r\n");
  desktop.open();
  EXPECT_TRUE(desktop.get<QCheckBox>("ChkIgnorePath").isChecked());
}

TEST(FrmBackupChoiceWindow, The_subfolder_s_box_can_be_used_with_a_full_or_incremental_run_only) {
  BackupDesktop desktop;
  desktop.open();
  for (const Type type : {Full, Standard, Incremental, Standard}) {
    desktop.get<QComboBox>("cmbTipoBackup").setCurrentIndex(type);
    EXPECT_EQ(desktop.get<QCheckBox>("ChkCreateFolder").isEnabled(), type != Standard) << type;
  }
}

TEST(FrmBackupChoiceWindow, A_profile_that_cannot_be_read_is_told_and_there_is_no_window) {
  BackupDesktop desktop;
  desktop.folder.home().write("Config.cfg", "Backup_Path_0 = C:\\a\r\n");
  EXPECT_EQ(desktop.open(), nullptr);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_NE(desktop.boxes[0].text.find(FileProfilo), std::string::npos);
  EXPECT_FALSE(FormCaricato("FrmBackupChoice"));
}

TEST(FrmBackupChoiceWindow, Opening_it_again_activates_the_one_that_is_open) {
  BackupDesktop desktop;
  const QWidget* first = desktop.open();
  desktop.choose(Full, AccurateTest);
  EXPECT_EQ(desktop.open(), first);
  EXPECT_EQ(desktop.get<QComboBox>("cmbTipoBackup").currentIndex(), Full);
}

TEST(FrmBackupChoiceWindow, It_does_not_open_while_another_operation_uses_the_profile) {
  for (const char* other : {"FrmScan", "FrmProgressBar", "FrmFileTransfer"}) {
    BackupDesktop desktop;
    const FinestraOperazione running(other);
    EXPECT_EQ(desktop.open(), nullptr);
    EXPECT_EQ(desktop.boxes.size(), 1U);
    EXPECT_FALSE(FormCaricato("FrmBackupChoice"));
  }
}

TEST(FrmBackupChoiceWindow, It_does_not_open_while_an_engine_without_a_dialog_is_loaded) {
  for (const char* engine : {"FrmBackupChoice", "FrmTandemize"}) {
    BackupDesktop desktop;
    const FinestraOperazione running(engine);
    FilterBackup = "+|*.doc|";
    EXPECT_EQ(desktop.open(), nullptr);
    EXPECT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(FilterBackup, "+|*.doc|");  // the profile was not read anew
  }
}

TEST(FrmBackupChoiceWindow, It_opens_again_at_once_behind_its_closing) {
  BackupDesktop desktop;
  desktop.open()->close();
  EXPECT_FALSE(FormCaricato("FrmBackupChoice"));
  EXPECT_NE(desktop.open(), nullptr);
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST(FrmBackupChoiceWindow, No_window_can_be_found_while_an_unreadable_profile_is_told) {
  BackupDesktop desktop;
  desktop.folder.home().write("Config.cfg", "Backup_Path_0 = C:\\a\r\n");
  bool found = true;
  desktop.onBox = [&found](QMessageBox& box) {
    found = dialogLoaded() || FormCaricato("FrmBackupChoice");
    box.reject();
  };
  EXPECT_EQ(desktop.open(), nullptr);
  EXPECT_FALSE(found);
}

TEST(FrmBackupChoiceWindow, The_idle_dialog_can_be_unloaded_with_its_engine_and_a_run_keeps_it) {
  BackupDesktop desktop;
  ScaricaFrmBackupChoiceInattiva();
  desktop.open();
  ScaricaFrmBackupChoiceInattiva();
  EXPECT_FALSE(dialogLoaded() || FormCaricato("FrmBackupChoice"));
  desktop.open();
  desktop.whenShown("FrmFileTransfer", [](QWidget&) { ScaricaFrmBackupChoiceInattiva(); });
  desktop.run();
  EXPECT_TRUE(dialogLoaded());
  EXPECT_TRUE(desktop.copied());
}

// --- first activation

TEST(FrmBackupChoiceWindow, Fewer_than_two_objects_bring_question_120_before_the_dialog_is_seen) {
  BackupDesktop desktop;
  desktop.use(Diagram().source("S", "C:\\"));
  bool visible = true;
  desktop.onBox = [&visible](QMessageBox& box) {
    visible = test::window("FrmBackupChoice")->isVisible();
    box.reject();
  };
  ASSERT_NE(desktop.open(), nullptr);
  EXPECT_FALSE(visible);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].text, Messaggio(120));
  EXPECT_EQ(desktop.boxes[0].style, StileSìNoInformazione);
  EXPECT_TRUE(test::window("FrmBackupChoice")->isVisible());
}

TEST(FrmBackupChoiceWindow, Yes_to_question_120_opens_the_diagram_and_unloads_the_dialog) {
  BackupDesktop desktop;
  desktop.use(Diagram().source("S", "C:\\"));
  int diagrams = 0;
  desktop.screen.Diagramma = [&diagrams] { ++diagrams; };
  desktop.answers = {Risposta::Sì};
  EXPECT_EQ(desktop.open(), nullptr);
  EXPECT_EQ(diagrams, 1);
  EXPECT_FALSE(FormCaricato("FrmBackupChoice"));
}

TEST(FrmBackupChoiceWindow, It_is_busy_while_question_120_is_up_and_may_be_destroyed_meanwhile) {
  for (const bool destroyed : {false, true}) {
    BackupDesktop desktop;
    desktop.use(Diagram().source("S", "C:\\"));
    bool busy = false;
    desktop.onBox = [&](QMessageBox& box) {
      busy = FrmBackupChoiceOccupata();
      ScaricaFrmBackupChoiceInattiva();
      EXPECT_TRUE(dialogLoaded());
      if (destroyed) delete FormDiNome("FrmBackupChoice");
      box.reject();
    };
    EXPECT_EQ(desktop.open() == nullptr, destroyed);
    EXPECT_TRUE(busy);
    EXPECT_FALSE(FrmBackupChoiceOccupata());
    EXPECT_EQ(FormCaricato("FrmBackupChoice"), !destroyed);
  }
}

TEST(FrmBackupChoiceWindow, Question_120_is_asked_once_and_a_run_all_the_same_gets_message_122) {
  BackupDesktop desktop;
  desktop.use(Diagram().source("S", "C:\\"));
  int diagrams = 0;
  desktop.screen.Diagramma = [&diagrams] { ++diagrams; };
  desktop.open();
  test::window("FrmBackupChoice")->hide();
  test::window("FrmBackupChoice")->show();
  desktop.run(Standard, QuickTest);
  EXPECT_EQ(diagrams, 0);
  ASSERT_GE(desktop.boxes.size(), 2U);
  EXPECT_EQ(desktop.boxes[1].text, Messaggio(122));
  EXPECT_EQ(std::ranges::count(desktop.boxTexts(), Messaggio(120)), 1);
}

// --- the filter

TEST(FrmBackupChoiceWindow, A_filter_made_in_its_dialog_rules_the_run_and_is_saved_with_the_profile) {
  BackupDesktop desktop;
  desktop.write("source/a.doc", "1");
  desktop.write("source/below/b.DOC", "2");
  desktop.write("source/c.txt", "3");
  desktop.open();
  desktop.whenShown("FrmTandemizeFilter", [](QWidget& filter) {
    EXPECT_TRUE(filter.isModal());
    control<QRadioButton>(filter, "OptMode(0)")->click();
    control<QComboBox>(filter, "ComboEstensioni")->setEditText("*.doc");
    test::click(*control<QPushButton>(filter, "cmdOp(0)"));
    test::click(*control<QPushButton>(filter, "cmd(0)"));
  });
  test::click(desktop.get<QPushButton>("CmdFiltro"));
  EXPECT_EQ(FormDiNome("FrmTandemizeFilter"), nullptr);
  EXPECT_EQ(FilterBackup, "+|*.doc|");
  EXPECT_NE(test::text(desktop.get<QLabel>("LblFiltro")).find("*.doc"), std::string::npos);
  EXPECT_FALSE(desktop.folder.home().exists("Configb.adv"));
  desktop.ok();
  EXPECT_EQ(desktop.copies(), 2);
  EXPECT_TRUE(desktop.copied("a.doc"));
  EXPECT_TRUE(desktop.copied("below/b.DOC"));
  EXPECT_EQ(desktop.folder.home().read("Configb.adv"),
            "FilterBackup = +|*.doc|\r\nFilterIgnoreInvalidPath = 0\r\n");
  test::window("FrmBackupChoice")->close();
  test::letEventsRun();
  FilterBackup.clear();
  desktop.open();
  EXPECT_EQ(FilterBackup, "+|*.doc|");
}

TEST(FrmBackupChoiceWindow, A_filter_that_includes_nothing_leaves_nothing_to_copy) {
  BackupDesktop desktop;
  desktop.folder.home().write("Configb.adv", "FilterBackup = +|\r\nFilterIgnoreInvalidPath = 0\r\n");
  desktop.run();
  EXPECT_EQ(desktop.copies(), 0);
  EXPECT_EQ(desktop.boxTexts(), Boxes{Messaggio(121)});
}

TEST(FrmBackupChoiceWindow, The_filter_does_not_apply_to_single_files) {
  BackupDesktop desktop;
  desktop.write("source/c.txt", "3");
  desktop.use(Diagram()
                  .files("F", {desktop.folder.program("source/c.txt")})
                  .destination("D", desktop.folder.program("destination"), {"F"}));
  desktop.folder.home().write("Configb.adv", "FilterBackup = +|*.doc|\r\nFilterIgnoreInvalidPath = 0\r\n");
  desktop.run();
  EXPECT_TRUE(desktop.copied("c.txt"));
}

// --- closing

TEST(FrmBackupChoiceWindow, Cancel_and_the_Escape_key_unload_it_and_its_engine_and_copy_nothing) {
  for (const bool escape : {false, true}) {
    BackupDesktop desktop;
    QWidget* window = desktop.open();
    QKeyEvent key(QEvent::KeyPress, escape ? Qt::Key_Escape : Qt::Key_Return, Qt::NoModifier);
    // Enter presses the button that has the focus.
    if (!escape) desktop.get<QPushButton>("cmd(1)").setFocus();
    QApplication::sendEvent(window->focusWidget() != nullptr ? window->focusWidget() : window, &key);
    test::letEventsRun();
    EXPECT_FALSE(dialogLoaded());
    EXPECT_FALSE(FormCaricato("FrmBackupChoice"));
    EXPECT_FALSE(desktop.copied());
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_FALSE(FrmBackupChoiceOccupata());
  }
}

TEST(FrmBackupChoiceWindow, Enter_runs) {
  BackupDesktop desktop;
  desktop.open();
  QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
  QRadioButton& mode = desktop.get<QRadioButton>("Opt(2)");
  mode.setFocus();
  QApplication::sendEvent(&mode, &key);
  EXPECT_TRUE(desktop.copied());
}

// --- another profile

TEST(FrmBackupChoiceWindow, A_profile_that_was_changed_meanwhile_is_loaded_and_told_before_any_run) {
  BackupDesktop desktop;
  desktop.folder.home().write("Configb.adv", "FilterBackup = +|*.doc|\r\nFilterIgnoreInvalidPath = 1\r\n");
  desktop.open();
  desktop.folder.work().makeFolder("elsewhere");
  Diagram::copying(desktop.folder.program("source"), desktop.folder.program("elsewhere"))
      .write(desktop.folder.host("Other.cfg"));
  FileProfilo = PercorsoApplicazione + "Other.cfg";
  desktop.ok();
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_NE(desktop.boxes[0].text.find("Other.cfg"), std::string::npos);
  EXPECT_FALSE(desktop.folder.home().exists("Otherb.adv"));
  EXPECT_FALSE(desktop.get<QCheckBox>("ChkIgnorePath").isChecked());
  desktop.ok();
  EXPECT_FALSE(desktop.copied());
  EXPECT_TRUE(desktop.folder.work().exists("elsewhere/f0"));
}

TEST(FrmBackupChoiceWindow, It_may_be_destroyed_while_any_box_before_a_run_is_up) {
  for (const char* profile : {"Broken.cfg", "Other.cfg"}) {
    BackupDesktop desktop;
    desktop.folder.home().write("Broken.cfg", "Backup_Path_0 = C:\\a\r\n");
    Diagram::copying(desktop.folder.program("source"), desktop.folder.program("destination"))
        .write(desktop.folder.host("Other.cfg"));
    desktop.open();
    FileProfilo = PercorsoApplicazione + profile;
    desktop.onBox = [](QMessageBox& box) {
      delete FormDiNome("FrmBackupChoice");
      box.reject();
    };
    const QPointer<QPushButton> ok = &desktop.get<QPushButton>("cmd(0)");
    QMetaObject::invokeMethod(ok, &QPushButton::click, Qt::QueuedConnection);
    EXPECT_TRUE(test::reached([&] { return ok == nullptr; })) << profile;
    EXPECT_FALSE(dialogLoaded() || FormCaricato("FrmBackupChoice"));
    EXPECT_FALSE(desktop.copied());
  }
}

// --- the look

TEST(FrmBackupChoiceWindow, The_Tab_key_goes_through_the_controls_in_the_order_of_reading) {
  BackupDesktop desktop;
  QWidget* window = desktop.open();
  desktop.choose(Full);
  desktop.get<QComboBox>("cmbTipoBackup").setFocus();
  std::vector<std::string> order;
  for (int i = 0; i < 7; ++i) {
    order.push_back(window->focusWidget()->objectName().toStdString());
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QApplication::sendEvent(window->focusWidget(), &key);
  }
  EXPECT_EQ(order, (std::vector<std::string>{"cmbTipoBackup", "ChkCreateFolder", "Opt(2)", "ChkIgnorePath",
                                             "CmdFiltro", "cmd(0)", "cmd(1)"}));
}

TEST(FrmBackupChoiceWindow, No_text_is_cut_off_in_either_language) {
  for (const char* language : {"0", "1"}) {
    BackupDesktop desktop;
    desktop.folder.setting("Language", language);
    ASSERT_EQ(CaricaLingua(), EsitoLingua::Caricata);
    EXPECT_EQ(test::cutTexts(*desktop.open()), std::vector<std::string>{}) << language;
  }
}

}  // namespace
}  // namespace tandemize
