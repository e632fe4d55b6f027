#include <QDialogButtonBox>
#include <QFileDialog>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>
#include <QToolButton>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "platform/fakedesktop.h"
#include "platform/paths.h"
#include "profile/ModuloProfilo.h"
#include "shell/windows/FrmGlobalSettingWindow.h"
#include "shell/windows/MainWindow.h"

namespace tandemize {
namespace {

using test::control;
using test::MainWindow;

class MenuPrincipale : public MainWindow {
 protected:
  MenuPrincipale() { open(); }

  // Types a name into the next file dialog and confirms it, or gives up where the name is empty.
  void whenAskedForAFile(const char* dialog, const std::string& name) {
    desktop.whenShown(dialog, [this, name](QWidget& shown) {
      auto& asked = static_cast<QFileDialog&>(shown);
      titleShown = Testo(asked.windowTitle());
      filtersShown = Testo(asked.nameFilters().join(u'|'));
      folderShown = Testo(asked.directory().absolutePath());
      auto* field = control<QLineEdit>(asked, "fileNameEdit");
      nameShown = Testo(field->text());
      auto* buttons = asked.findChild<QDialogButtonBox*>();
      if (name.empty()) return buttons->button(QDialogButtonBox::Cancel)->click();
      field->setText(Testo(name));
      for (QAbstractButton* button : buttons->buttons())
        if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole) button->click();
    });
  }

  std::string titleShown, filtersShown, folderShown, nameShown;
};

using Didascalie = MenuPrincipale;
using MenuAction = MenuPrincipale;
using MenuConfigure = MenuPrincipale;
using MenuProfiloTest = MenuPrincipale;
using ToolBar2 = MenuPrincipale;

TEST_F(Didascalie, Come_from_the_language_table) {
  const struct {
    const char *name, *english, *italian;
  } entries[] = {{"MenuAction(0)", "Run Backup", "Esegui Backup"},
                 {"MenuAction(1)", "Run Tandemize", "Esegui Tandemize"},
                 {"MenuAction(2)", "View Log Window", "Mostra finestra di log"},
                 {"MenuAction(3)", "View Log File", "Mostra file di log"},
                 {"MenuAction(4)", "Exit", "Esci"},
                 {"MenuConfigure(0)", "Global Settings", "Impostazioni globali"},
                 {"MenuConfigure(1)", "Backup", "Backup"},
                 {"MenuConfigure(2)", "Tandemize", "Tandemize"},
                 {"MenuProfilo(0)", "New Profile", "Nuovo profilo"},
                 {"MenuProfilo(1)", "Load Profile", "Carica profilo"},
                 {"MenuHelp", "About", "Informazioni su"},
                 {"MenuPopUp(0)", "Hide Tandemize Backup", "Nascondi Tandemize Backup"},
                 {"MenuPopUp(1)", "Exit", "Esci"}};
  for (const auto& entry : entries) EXPECT_EQ(caption(entry.name), entry.english);
  desktop.folder.setting("Language", "0");
  LinguaCambiata();
  for (const auto& entry : entries) EXPECT_EQ(caption(entry.name), entry.italian);
  EXPECT_EQ(main->windowTitle(), "Tandemize Backup - [Profilo predefinito]");
  EXPECT_EQ(control<QMenu>(*main, "MenuProfilo")->title().remove(u'&'), "Profilo");
}

TEST_F(Didascalie, Every_menu_and_every_entry_has_an_access_key_of_its_own) {
  for (const char* language : {"0", "1"}) {
    desktop.folder.setting("Language", language);
    LinguaCambiata();
    QList<QList<QAction*>> lists{main->menuBar()->actions()};
    for (const QAction* menu : lists.front()) lists.append(menu->menu()->actions());
    for (const auto& list : lists) {
      QSet<QString> keys;
      for (const QAction* entry : list) {
        if (entry->isSeparator()) continue;
        const QString key = QKeySequence::mnemonic(entry->text()).toString();
        EXPECT_FALSE(key.isEmpty()) << Testo(entry->text());
        EXPECT_FALSE(keys.contains(key)) << Testo(entry->text());
        keys.insert(key);
      }
    }
  }
}

TEST_F(Didascalie, Of_the_toolbar_are_tool_tips_and_names_for_who_cannot_see) {
  const char* const texts[] = {"Run Tandemize", "Run Backup",      "Global Settings",
                               "View Log File", "View Log Window", "Exit"};
  for (int i = 0; i < 6; ++i) {
    const auto* button = control<QToolButton>(*main, "ToolBar2(" + std::to_string(i) + ")");
    EXPECT_EQ(button->toolTip(), texts[i]);
    EXPECT_EQ(button->accessibleName(), texts[i]);
    EXPECT_FALSE(button->icon().isNull());
    EXPECT_EQ(button->focusPolicy() & Qt::TabFocus, Qt::TabFocus) << "reached by the keyboard";
  }
}

TEST_F(ToolBar2, Buttons_act_as_their_menu_entries) {
  const char* const entries[] = {"MenuAction(1)", "MenuAction(0)", "MenuConfigure(0)",
                                 "MenuAction(3)", "MenuAction(2)", "MenuAction(4)"};
  for (int i = 0; i < 6; ++i) {
    int triggered = 0;
    QAction* entry = test::action(*main, entries[i]);
    // Noted, and not done.
    QObject::disconnect(entry, &QAction::triggered, nullptr, nullptr);
    QObject::connect(entry, &QAction::triggered, entry, [&triggered] { ++triggered; });
    test::click(*control<QToolButton>(*main, "ToolBar2(" + std::to_string(i) + ")"));
    EXPECT_EQ(triggered, 1) << i;
    QObject::disconnect(entry, &QAction::triggered, nullptr, nullptr);
  }
}

TEST_F(MenuAction, Every_handler_closes_an_open_notice_first) {
  for (const char* entry : {"MenuAction(1)", "MenuAction(2)", "MenuConfigure(1)", "MenuConfigure(2)"}) {
    MostraBalloon("FrmStart", std::string("notice before ") + entry, "", 0, 0, false, false);
    ASSERT_TRUE(desktop.screen.BalloonAperto());
    choose(entry);
    EXPECT_FALSE(desktop.screen.BalloonAperto()) << entry;
  }
}

TEST_F(MenuAction, Run_Backup_writes_its_banner_and_opens_the_dialog) {
  choose("MenuAction(0)");
  EXPECT_NE(FormDiNome("FrmBackupChoice"), nullptr);
  EXPECT_NE(desktop.folder.log().find("Run Backup"), std::string::npos);
}

TEST_F(MenuAction, Run_Backup_writes_no_banner_into_the_records_of_another_run) {
  const FinestraOperazione transfer("FrmFileTransfer");
  choose("MenuAction(0)");
  EXPECT_EQ(FormDiNome("FrmBackupChoice"), nullptr);
  EXPECT_EQ(desktop.folder.log().find("Run Backup"), std::string::npos);
}

TEST_F(MenuAction, Run_Tandemize_says_plainly_that_it_is_not_there_and_logs_nothing) {
  choose("MenuAction(1)");
  EXPECT_EQ(box().style, StileInformazione);
  EXPECT_NE(box().text.find("Tandemize"), std::string::npos);
  EXPECT_EQ(desktop.folder.log(), "");
}

TEST_F(MenuAction, View_Log_Window_opens_it_inside_the_main_window) {
  choose("MenuAction(2)");
  const QWidget* log = FormDiNome("FrmLogView");
  ASSERT_NE(log, nullptr);
  EXPECT_TRUE(main->isAncestorOf(log));
}

TEST_F(MenuAction, View_Log_File_says_so_if_there_is_none_yet) {
  choose("MenuAction(3)");
  EXPECT_EQ(box().style, StileInformazione);
  EXPECT_EQ(box().text, Messaggio(45));
}

TEST_F(MenuAction, View_Log_File_opens_the_newest_one_by_the_desktop) {
  const test::FakeDesktop host;
  host.install("xdg-open");
  ScriviLog("a record", RigaNormale);
  choose("MenuAction(3)");
  EXPECT_EQ(host.callOf("xdg-open"), desktop.folder.host("LogFile1.txt") + "\n");
  EXPECT_EQ(boxes(), 0U);
}

TEST_F(MenuAction, View_Log_File_tells_when_nothing_could_open_it) {
  const test::FakeDesktop host;
  ScriviLog("a record", RigaNormale);
  choose("MenuAction(3)");
  EXPECT_NE(box().text.find("LogFile1.txt"), std::string::npos);
}

TEST_F(MenuConfigure, Global_opens_the_settings) {
  choose("MenuConfigure(0)");
  EXPECT_NE(FormDiNome("FrmGlobalSetting"), nullptr);
}

TEST_F(MenuConfigure, The_windows_that_are_not_built_say_so) {
  for (const char* entry : {"MenuConfigure(1)", "MenuConfigure(2)"}) {
    choose(entry);
    EXPECT_EQ(box().style, StileInformazione);
    EXPECT_NE(box().text.find(caption(entry)), std::string::npos);
  }
  EXPECT_EQ(boxes(), 2U);
}

TEST_F(MenuConfigure, Help_opens_the_about_window_modally) {
  bool modal = false;
  desktop.whenShown("frmAbout", [&modal](QWidget& about) {
    modal = about.isModal();
    about.close();
  });
  choose("MenuHelp");
  EXPECT_TRUE(modal);
}

TEST_F(MenuProfiloTest, New_asks_for_a_name_makes_the_profile_and_shows_it_in_the_title) {
  whenAskedForAFile("ScegliFileSalvataggio", desktop.folder.work().host("Night"));
  choose("MenuProfilo(0)");
  EXPECT_EQ(titleShown, "Save File Profile");
  EXPECT_EQ(filtersShown, "File Profile (*.cfg)");
  EXPECT_EQ(nameShown, "Config2.cfg");
  EXPECT_EQ(folderShown, desktop.folder.home().host());
  EXPECT_EQ(FileProfilo, desktop.folder.program("Night.cfg"));
  EXPECT_EQ(desktop.folder.work().read("Night.cfg"), ProfiloVuoto());
  EXPECT_EQ(Testo(main->windowTitle()), "Tandemize Backup - [" + FileProfilo + "]");
  EXPECT_EQ(box().text, Messaggio(447));
}

TEST_F(MenuProfiloTest, Load_takes_a_profile_of_any_folder) {
  desktop.folder.work().write("Day.cfg", ProfiloVuoto());
  whenAskedForAFile("ScegliFileApertura", desktop.folder.work().host("Day.cfg"));
  choose("MenuProfilo(1)");
  EXPECT_EQ(titleShown, "Select File/s");
  EXPECT_EQ(filtersShown, "File Profile (*.cfg)");
  EXPECT_EQ(FileProfilo, desktop.folder.program("Day.cfg"));
  EXPECT_EQ(Testo(main->windowTitle()), "Tandemize Backup - [" + FileProfilo + "]");
  EXPECT_EQ(boxes(), 0U);
}

TEST_F(MenuProfiloTest, Load_refuses_what_is_no_profile_and_the_title_stays) {
  const std::string before = FileProfilo;
  const QString title = main->windowTitle();
  desktop.folder.work().write("Day.cfg", "something else");
  whenAskedForAFile("ScegliFileApertura", desktop.folder.work().host("Day.cfg"));
  choose("MenuProfilo(1)");
  EXPECT_EQ(FileProfilo, before);
  EXPECT_EQ(main->windowTitle(), title);
  EXPECT_EQ(box().style, StileInformazione);
}

TEST_F(MenuProfiloTest, A_canceled_dialog_does_nothing) {
  const std::string before = FileProfilo;
  whenAskedForAFile("ScegliFileSalvataggio", "");
  choose("MenuProfilo(0)");
  whenAskedForAFile("ScegliFileApertura", "");
  choose("MenuProfilo(1)");
  EXPECT_EQ(FileProfilo, before);
  EXPECT_EQ(boxes(), 0U);
}

TEST_F(MenuProfiloTest, While_an_operation_goes_on_no_dialog_comes) {
  const FinestraOperazione scan("FrmScan");
  for (const char* entry : {"MenuProfilo(0)", "MenuProfilo(1)"}) choose(entry);
  EXPECT_EQ(boxes(), 2U);
  EXPECT_EQ(box().style, StileInformazione);
}

}  // namespace
}  // namespace tandemize
