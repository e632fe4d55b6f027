#include "shell/windows/FrmStartWindow.h"

#include <QMdiArea>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include "errors/ModuloGestioneErrori.h"
#include "fixtures/SimulatedTime.h"
#include "shell/DataIntervallo.h"
#include "shell/Impostazioni.h"
#include "shell/windows/MainWindow.h"

namespace tandemize {
namespace {

using test::control;
using test::MainWindow;

using CaricaFinestraPrincipale = MainWindow;

class PrimaAttivazione : public MainWindow {
 protected:
  PrimaAttivazione() { desktop.folder.setting("StartUp_Pr_Mode", "0"); }
  // Notes each choice dialog, and clicks a button of it.
  void whenChoosing(int option, int button) {
    desktop.whenShown("FrmChooseOperation", [this, option, button](QWidget& choice) {
      ++choices;
      modal = modal && static_cast<QDialog&>(choice).isModal();
      if (option >= 0)
        test::click(*control<QRadioButton>(choice, "OptOperation(" + std::to_string(option) + ")"));
      test::click(*control<QPushButton>(choice, "Cmd(" + std::to_string(button) + ")"));
    });
  }
  int choices = 0;
  bool modal = true;
};

// A clock that stands at the minute of the standard timer's start.
class TimerDellaFinestra : public MainWindow {
 protected:
  TimerDellaFinestra() : time({2026, 11, 22, 13, 30, 0}) {
    desktop.folder.setting("Timer_Start_Mode", "2");
    desktop.folder.setting("Timer_Start_Type", "0");
    desktop.folder.setting("Timer_Start_Date", FormattaDataOra(platform::now(), FormatoData));
    desktop.folder.setting("Timer_Start_Time", "13.30");
    desktop.folder.setting("Timer_Interval_Number", "1");
    desktop.folder.setting("Timer_Interval_Type", Messaggio(267));
    open();
  }
  [[nodiscard]] QTimer& timer(const char* name) { return *control<QTimer>(*main, name); }
  [[nodiscard]] bool ownIcon() { return main->Tray().Icon().cacheKey() == main->windowIcon().cacheKey(); }
  test::SimulatedTime time;
};

TEST_F(CaricaFinestraPrincipale, Is_named_titled_and_has_the_icon_in_the_tray) {
  EXPECT_FALSE(main->Tray().Creata());
  open();
  EXPECT_EQ(main->objectName(), "FrmStart");
  EXPECT_EQ(main->windowTitle(), "Tandemize Backup - [Default profile]");
  EXPECT_TRUE(main->Tray().Creata());
  EXPECT_EQ(FinestraPrincipale(), main.get());
  EXPECT_NE(qobject_cast<QMdiArea*>(main->centralWidget()), nullptr);
}

TEST_F(CaricaFinestraPrincipale, Fits_a_small_screen) {
  open();
  EXPECT_LE(main->minimumSizeHint().width(), 1024);
  EXPECT_LE(main->minimumSizeHint().height(), 600);
}

TEST_F(CaricaFinestraPrincipale, Tells_of_dates_moved_and_reads_the_settings_anew) {
  const test::SimulatedTime time({2026, 11, 22, 12, 0, 0});
  desktop.folder.setting("Timer_Start_Mode", "2");
  desktop.folder.setting("StartUp_PC_Mode", "1");
  desktop.folder.setting("Timer_Start_Date", FormattaDataOra(platform::now() - 24 * 3600, FormatoData));
  desktop.folder.setting("Timer_Start_Time", "13.30");
  desktop.folder.setting("Timer_Interval_Number", "1");
  desktop.folder.setting("Timer_Interval_Type", Messaggio(267));
  open();
  EXPECT_EQ(BalloonCorrente, Messaggio(461));
  EXPECT_EQ(Timer_Start_Date, FormattaDataOra(platform::now(), FormatoData));
}

TEST_F(CaricaFinestraPrincipale, Tells_what_is_going_to_run_when_it_starts_with_the_computer) {
  const struct {
    const char *mode, *withComputer;
    int message;
  } cases[] = {{"0", "1", 0}, {"1", "0", 0}, {"1", "1", 420}, {"2", "1", 60}};
  for (const auto& start : cases) {
    desktop.folder.setting("Timer_Start_Mode", start.mode);
    desktop.folder.setting("StartUp_PC_Mode", start.withComputer);
    main.reset();
    desktop.screen.ChiudiBalloon();
    BalloonCorrente.clear();
    make();
    open();
    EXPECT_EQ(BalloonCorrente, start.message == 0 ? "" : Messaggi[static_cast<std::size_t>(start.message)])
        << start.mode << start.withComputer;
  }
}

TEST_F(PrimaAttivazione, Asks_what_to_set_up_once_for_each_process) {
  whenChoosing(-1, 1);
  whenChoosing(-1, 1);
  open();
  activate();
  ASSERT_TRUE(test::reached([this] { return choices == 1; }));
  EXPECT_TRUE(modal);
  EXPECT_TRUE(main->PrimaAttivazione());
  deactivate();
  activate();
  activate();
  EXPECT_EQ(choices, 1);
  EXPECT_EQ(boxes(), 0U) << "Cancel selects nothing";
}

TEST_F(PrimaAttivazione, Asks_nothing_when_the_settings_name_a_window) {
  for (const char* mode : {"1", "2"}) {
    desktop.folder.setting("StartUp_Pr_Mode", mode);
    main.reset();
    make();
    whenChoosing(-1, 1);
    open();
    activate();
    EXPECT_TRUE(main->PrimaAttivazione());
    EXPECT_EQ(choices, 0);
  }
}

TEST_F(PrimaAttivazione, Of_a_hidden_start_comes_when_the_user_brings_the_program_to_the_front) {
  whenChoosing(-1, 1);
  ApplicazioneNascosta = true;
  open();
  activate();
  EXPECT_EQ(choices, 0);
  choose("MenuPopUp(0)");
  activate();
  EXPECT_TRUE(test::reached([this] { return choices == 1; }));
}

TEST_F(PrimaAttivazione, The_choice_opens_the_window_that_sets_the_operation_up) {
  const struct {
    int option;
    const char* window;
  } cases[] = {{0, "Tandemize"}, {1, "Backup"}};
  for (const auto& choice : cases) {
    main.reset();
    make();
    desktop.boxes.clear();
    choices = 0;
    whenChoosing(choice.option, 0);
    open();
    activate();
    ASSERT_TRUE(test::reached([this] { return choices == 1 && boxes() == 1; }));
    EXPECT_NE(box().text.find(choice.window), std::string::npos);
    EXPECT_EQ(FormDiNome("FrmBackupChoice"), nullptr) << "the diagram, not the run dialog";
  }
}

TEST_F(TimerDellaFinestra, Ticks_from_the_load_on_every_500_milliseconds) {
  EXPECT_TRUE(timer("TimerAutoPartenza").isActive());
  EXPECT_EQ(timer("TimerAutoPartenza").interval(), 500);
  EXPECT_FALSE(timer("TimerAnimazione").isActive());
  EXPECT_EQ(timer("TimerAnimazione").interval(), 400);
}

TEST_F(TimerDellaFinestra, Follow_the_engine_through_a_run) {
  ApplicazioneNascosta = true;
  int runs = 0;
  main->Motore().Lavoro = [&](std::uint8_t mode) {
    ++runs;
    EXPECT_EQ(mode, 2);
    EXPECT_FALSE(timer("TimerAutoPartenza").isActive()) << "a run lets events run";
    EXPECT_TRUE(timer("TimerAnimazione").isActive());
    main->Tray().Icon({});
    return EsitoOperazione::Fatto;
  };
  EXPECT_TRUE(test::reached([&] { return runs == 1 && timer("TimerAutoPartenza").isActive(); }));
  EXPECT_EQ(timer("TimerAutoPartenza").interval(), 60'000);
  EXPECT_FALSE(timer("TimerAnimazione").isActive());
  EXPECT_TRUE(ownIcon()) << "a run's end restores it";
}

TEST_F(TimerDellaFinestra, A_visible_program_starts_no_run) {
  int runs = 0, ticks = 0;
  main->Motore().Lavoro = [&](std::uint8_t) {
    ++runs;
    return EsitoOperazione::Fatto;
  };
  QObject::connect(&timer("TimerAutoPartenza"), &QTimer::timeout, main.get(), [&ticks] { ++ticks; });
  timer("TimerAutoPartenza").setInterval(1);
  EXPECT_TRUE(test::reached([&] { return ticks == 3; }));
  EXPECT_EQ(runs, 0);
}

TEST_F(TimerDellaFinestra, The_animation_flashes_between_two_icons) {
  QTimer& animation = timer("TimerAnimazione");
  const auto tag = [&animation] { return animation.property("Tag").toString(); };
  animation.start(1);
  EXPECT_TRUE(test::reached([&] { return tag() == "1" && !ownIcon(); }));
  EXPECT_TRUE(test::reached([&] { return tag() == "0" && ownIcon(); }));
  EXPECT_TRUE(test::reached([&] { return tag() == "1" && !ownIcon(); }));
}

TEST_F(TimerDellaFinestra, A_timed_run_takes_an_idle_run_dialog_away) {
  choose("MenuAction(0)");
  ASSERT_NE(FormDiNome("FrmBackupChoice"), nullptr);
  choose("MenuPopUp(0)");
  main->Motore().Lavoro(2);
  EXPECT_EQ(FormDiNome("FrmBackupChoice"), nullptr);
}

TEST_F(TimerDellaFinestra, The_end_of_the_program_cuts_the_wait_after_a_run_short) {
  ApplicazioneNascosta = true;
  const std::int64_t start = platform::now();
  // As a run leaves it that the user has stopped.
  desktop.onBox = [](QMessageBox& shown) {
    AnnullamentoRichiesto = true;
    shown.close();
  };
  main->Motore().Lavoro(2);
  ASSERT_EQ(boxes(), 1U);
  EXPECT_FALSE(AnnullamentoRichiesto);
  QTimer::singleShot(0, main.get(), [this] { main->Termina(); });
  Attendi(3600, true);
  EXPECT_LT(platform::now() - start, 3600);
  EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace tandemize
