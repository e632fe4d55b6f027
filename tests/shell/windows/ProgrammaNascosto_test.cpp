#include <QMenu>
#include <QToolButton>

#include "shell/windows/FrmGlobalSettingWindow.h"
#include "shell/windows/MainWindow.h"

namespace tandemize {
namespace {

using test::control;
using test::MainWindow;

using MenuDellaTray = MainWindow;
using ProgrammaNascosto = MainWindow;

class SenzaTray : public MainWindow {
 protected:
  SenzaTray() { tray = false; }
  [[nodiscard]] bool hasButton() { return !control<QToolButton>(*main, "PulsanteTray")->isHidden(); }
  void trayComes(bool comes) {
    tray = comes;
    main->Tray().VerificaDisponibilità();
    test::letEventsRun();
  }
};

TEST_F(MenuDellaTray, Offers_to_hide_or_to_show_and_to_end) {
  open();
  auto* menu = control<QMenu>(*main, "MenuPopUp");
  for (const bool hidden : {false, true, false}) {
    ApplicazioneNascosta = hidden;
    main->Tray().Solleva(EventoTray::DestroRilasciato);
    ASSERT_TRUE(test::reached([menu] { return menu->isVisible(); }));
    EXPECT_EQ(caption("MenuPopUp(0)"), hidden ? "Show Tandemize Backup" : "Hide Tandemize Backup");
    EXPECT_EQ(caption("MenuPopUp(1)"), "Exit");
    menu->hide();
  }
}

TEST_F(MenuDellaTray, A_double_click_brings_the_window_back) {
  open();
  choose("MenuPopUp(0)");
  ASSERT_FALSE(main->isVisible());
  main->Tray().Solleva(EventoTray::SinistroDoppio);
  EXPECT_TRUE(main->isVisible());
  EXPECT_FALSE(ApplicazioneNascosta);
  main->showMinimized();
  main->Tray().Solleva(EventoTray::SinistroDoppio);
  EXPECT_FALSE(main->isMinimized());
  EXPECT_FALSE(ApplicazioneNascosta);
}

// Where the toolkit tells no double click, the place of the icon is not known either.
TEST_F(MenuDellaTray, A_single_click_brings_the_window_back_where_double_clicks_are_not_told) {
  open();
  choose("MenuPopUp(0)");
  ASSERT_FALSE(AdvSysTray::Posizione().isValid());
  main->Tray().Solleva(EventoTray::SinistroRilasciato);
  EXPECT_TRUE(main->isVisible());
  EXPECT_FALSE(ApplicazioneNascosta);
}

TEST_F(ProgrammaNascosto, While_a_question_waits_for_its_answer_nothing_is_hidden_or_ended) {
  open();
  desktop.onBox = [this](QMessageBox& shown) {
    choose("MenuPopUp(0)");
    EXPECT_FALSE(ApplicazioneNascosta);
    EXPECT_TRUE(main->isVisible());
    choose("MenuPopUp(1)");
    EXPECT_TRUE(shown.isVisible());
    shown.close();
  };
  MsgBox("?", StileSìNo);
  EXPECT_EQ(boxes(), 1U);
  EXPECT_EQ(ends, 0);
}

TEST_F(ProgrammaNascosto, All_windows_vanish_and_come_back_as_they_were) {
  open();
  main->showMaximized();
  choose("MenuAction(2)");
  choose("MenuConfigure(0)");
  const QWidget* log = FormDiNome("FrmLogView");
  QWidget* settings = FormDiNome("FrmGlobalSetting");
  ASSERT_TRUE(log != nullptr && settings != nullptr);
  for (int round = 0; round < 2; ++round) {
    choose("MenuPopUp(0)");
    EXPECT_TRUE(ApplicazioneNascosta);
    for (const QWidget* window :
         {static_cast<const QWidget*>(main.get()), log, static_cast<const QWidget*>(settings)})
      EXPECT_FALSE(window->isVisible()) << Testo(window->objectName());
    choose("MenuPopUp(0)");
    EXPECT_FALSE(ApplicazioneNascosta);
    EXPECT_TRUE(main->isVisible() && main->isMaximized());
    EXPECT_TRUE(log->isVisible() && settings->isVisible());
  }
}

TEST_F(ProgrammaNascosto, A_hidden_start_shows_nothing_until_it_is_called) {
  ApplicazioneNascosta = true;
  open();
  EXPECT_FALSE(main->isVisible());
  EXPECT_TRUE(main->Tray().Creata());
  choose("MenuPopUp(0)");
  EXPECT_TRUE(main->isVisible());
  EXPECT_FALSE(ApplicazioneNascosta);
}

TEST_F(ProgrammaNascosto, The_icon_s_tool_tip_names_the_profile) {
  open();
  EXPECT_EQ(main->Tray().ToolTip(), "Tandemize Backup - [Default profile]");
}

TEST_F(ProgrammaNascosto, With_a_notification_area_there_is_no_button_and_nothing_is_said) {
  open();
  EXPECT_TRUE(control<QToolButton>(*main, "PulsanteTray")->isHidden());
  EXPECT_EQ(BalloonCorrente, "");
}

TEST_F(SenzaTray, A_button_with_the_same_menu_stands_for_the_icon_and_a_notice_says_so_once) {
  open();
  EXPECT_TRUE(hasButton());
  EXPECT_EQ(control<QToolButton>(*main, "PulsanteTray")->menu(), control<QMenu>(*main, "MenuPopUp"));
  EXPECT_NE(BalloonCorrente.find("no notification area"), std::string::npos);
  desktop.screen.ChiudiBalloon();
  BalloonCorrente.clear();
  trayComes(true);
  trayComes(false);
  EXPECT_EQ(BalloonCorrente, "");
}

TEST_F(SenzaTray, The_button_goes_when_the_notification_area_comes) {
  open();
  trayComes(true);
  EXPECT_FALSE(hasButton());
  trayComes(false);
  EXPECT_TRUE(hasButton());
}

TEST_F(SenzaTray, The_hidden_program_waits_minimised_and_the_task_bar_brings_it_back) {
  open();
  choose("MenuConfigure(0)");
  const QWidget* settings = FormDiNome("FrmGlobalSetting");
  choose("MenuPopUp(0)");
  EXPECT_TRUE(ApplicazioneNascosta);
  EXPECT_TRUE(main->isVisible() && main->isMinimized());
  EXPECT_FALSE(settings->isVisible());
  main->showNormal();
  test::letEventsRun();
  EXPECT_FALSE(ApplicazioneNascosta);
  EXPECT_FALSE(main->isMinimized());
  EXPECT_TRUE(settings->isVisible());
}

// Where the toolkit is not told of the minimised state.
TEST_F(SenzaTray, The_focus_brings_it_back_once_it_had_gone_elsewhere) {
  open();
  choose("MenuPopUp(0)");
  deactivate();
  EXPECT_TRUE(ApplicazioneNascosta);
  activate();
  EXPECT_FALSE(ApplicazioneNascosta);
  EXPECT_FALSE(main->isMinimized());
}

TEST_F(SenzaTray, A_hidden_start_is_found_in_the_task_bar) {
  ApplicazioneNascosta = true;
  open();
  EXPECT_TRUE(main->isVisible() && main->isMinimized());
  main->showNormal();
  test::letEventsRun();
  EXPECT_FALSE(ApplicazioneNascosta);
}

TEST_F(SenzaTray, A_notification_area_that_comes_late_takes_the_hidden_program_in) {
  ApplicazioneNascosta = true;
  open();
  trayComes(true);
  EXPECT_FALSE(main->isVisible());
  EXPECT_TRUE(ApplicazioneNascosta);
  trayComes(false);
  EXPECT_TRUE(main->isVisible() && main->isMinimized());
  EXPECT_TRUE(ApplicazioneNascosta);
}

}  // namespace
}  // namespace tandemize
