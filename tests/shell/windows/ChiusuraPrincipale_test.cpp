#include <QCloseEvent>
#include <QLineEdit>
#include <csignal>
#include <filesystem>

#include "backup/FrmBackupChoice.h"
#include "errors/ModuloGestioneErrori.h"
#include "fixtures/Diagram.h"
#include "platform/machine.h"
#include "shell/windows/MainWindow.h"

namespace tandemize {
namespace {

using test::MainWindow;
namespace fs = std::filesystem;

constexpr int Many = 60;

class ChiusuraPrincipale : public MainWindow {
 protected:
  ChiusuraPrincipale() { open(); }

  [[nodiscard]] bool asked(std::size_t at, const std::string& text) const {
    return boxes() > at && desktop.boxes[at].text == text && desktop.boxes[at].style == StileSìNo;
  }
  // A settings window whose changes were not saved.
  QWidget* changedSettings() {
    choose("MenuConfigure(0)");
    QWidget* settings = FormDiNome("FrmGlobalSetting");
    test::type(*test::control<QLineEdit>(*settings, "TxtLog"), "77");
    return settings;
  }
};

using QueryUnload = ChiusuraPrincipale;
using Unload = ChiusuraPrincipale;
using SegnaleDiArresto = ChiusuraPrincipale;

// A backup that goes on, and what is done once its display is up.
class ChiusuraConBackup : public ChiusuraPrincipale {
 protected:
  ChiusuraConBackup() {
    FrmFileTransfer::IntervalloSchermo = 0;
    for (int i = 0; i < Many; ++i) desktop.folder.work().write("source/f" + std::to_string(i), "content");
    desktop.folder.work().makeFolder("destination");
    test::Diagram::copying(desktop.folder.program("source"), desktop.folder.program("destination"))
        .write(desktop.folder.host("Config.cfg"));
  }
  ~ChiusuraConBackup() override { FrmFileTransfer::IntervalloSchermo = 33; }

  EsitoOperazione runAnd(const std::function<void()>& act) {
    desktop.whenShown("FrmFileTransfer", [act](QWidget&) { act(); });
    FrmBackupChoice run;
    return run.TastoOk_Annulla(0);
  }
  [[nodiscard]] int copies() {
    int number = 0;
    for (const auto& entry : fs::directory_iterator(desktop.folder.work().host("destination")))
      number += entry.is_regular_file() ? 1 : 0;
    return number;
  }
};

TEST_F(QueryUnload, No_keeps_the_program) {
  desktop.answers = {Risposta::No};
  EXPECT_FALSE(main->close());
  EXPECT_TRUE(asked(0, Messaggio(437)));
  EXPECT_TRUE(main->isVisible());
  EXPECT_TRUE(main->Tray().Creata());
  EXPECT_EQ(ends, 0);
}

TEST_F(QueryUnload, Closes_an_open_notice_before_it_asks) {
  MostraBalloon("FrmStart", "a notice", "", 0, 0, false, false);
  desktop.onBox = [this](QMessageBox& shown) {
    EXPECT_FALSE(desktop.screen.BalloonAperto());
    shown.close();
  };
  main->close();
  EXPECT_EQ(boxes(), 1U);
}

TEST_F(QueryUnload, Exit_of_the_menu_and_of_the_tray_ask_alike_even_while_hidden) {
  choose("MenuAction(4)");
  choose("MenuPopUp(1)");
  choose("MenuPopUp(0)");
  ASSERT_TRUE(ApplicazioneNascosta);
  choose("MenuPopUp(1)");
  ASSERT_EQ(boxes(), 3U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(asked(i, Messaggio(437)));
  EXPECT_EQ(ends, 0);
  EXPECT_TRUE(ApplicazioneNascosta) << "the question brings nothing back";
}

TEST_F(QueryUnload, A_window_with_changes_that_the_user_keeps_keeps_the_program) {
  const QPointer<QWidget> settings = changedSettings();
  desktop.answers = {Risposta::Sì, Risposta::No};
  EXPECT_FALSE(main->close());
  EXPECT_TRUE(asked(1, Messaggio(327)));
  EXPECT_EQ(ends, 0);
  EXPECT_FALSE(desktop.screen.InChiusura());
  ASSERT_NE(settings, nullptr);
  EXPECT_TRUE(settings->isVisible());
  desktop.answers = {Risposta::Sì, Risposta::Sì};
  EXPECT_TRUE(main->close());
  EXPECT_EQ(ends, 1);
}

TEST_F(QueryUnload, While_its_question_is_up_another_exit_asks_nothing) {
  desktop.onBox = [this](QMessageBox& shown) {
    QCloseEvent again;
    QCoreApplication::sendEvent(main.get(), &again);
    EXPECT_FALSE(again.isAccepted());
    shown.close();
  };
  main->close();
  EXPECT_EQ(boxes(), 1U);
}

TEST_F(Unload, Takes_the_icon_away_and_ends_the_program_once) {
  choose("MenuAction(2)");
  choose("MenuConfigure(0)");
  desktop.answers = {Risposta::Sì};
  EXPECT_TRUE(main->close());
  test::letEventsRun();
  EXPECT_EQ(boxes(), 1U);
  EXPECT_FALSE(main->Tray().Creata());
  EXPECT_TRUE(desktop.screen.InChiusura());
  EXPECT_EQ(FormDiNome("FrmLogView"), nullptr);
  EXPECT_EQ(FormDiNome("FrmGlobalSetting"), nullptr);
  EXPECT_TRUE(main->Motore().InChiusura()) << "nothing more is begun or waited for";
  main->close();
  EXPECT_EQ(ends, 1);
}

TEST_F(Unload, Works_while_the_program_is_hidden) {
  choose("MenuConfigure(0)");
  choose("MenuPopUp(0)");
  desktop.answers = {Risposta::Sì};
  choose("MenuPopUp(1)");
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(FormDiNome("FrmGlobalSetting"), nullptr);
}

TEST_F(ChiusuraConBackup, The_run_goes_on_if_the_user_lets_it) {
  const EsitoOperazione outcome = runAnd([this] {
    desktop.answers = {Risposta::Sì, Risposta::No};
    EXPECT_FALSE(main->close());
  });
  EXPECT_EQ(outcome, EsitoOperazione::Fatto);
  EXPECT_TRUE(asked(0, Messaggio(437)));
  EXPECT_TRUE(asked(1, Messaggio(326)));
  EXPECT_EQ(copies(), Many);
  EXPECT_EQ(ends, 0);
}

TEST_F(ChiusuraConBackup, The_run_is_stopped_and_the_program_ends_if_the_user_agrees) {
  const EsitoOperazione outcome = runAnd([this] {
    desktop.answers = {Risposta::Sì, Risposta::Sì};
    EXPECT_TRUE(main->close());
  });
  EXPECT_EQ(outcome, EsitoOperazione::Annullato);
  EXPECT_EQ(boxes(), 2U) << "nobody is asked again while the engine unwinds";
  EXPECT_LT(copies(), Many);
  EXPECT_EQ(ends, 1);
  EXPECT_NE(desktop.folder.log().find(Messaggio(329)), std::string::npos);
}

TEST_F(ChiusuraConBackup, Without_the_first_yes_the_run_is_not_even_asked_about) {
  runAnd([this] {
    desktop.answers = {Risposta::No};
    main->close();
  });
  EXPECT_FALSE(asked(1, Messaggio(326)));
  EXPECT_EQ(copies(), Many);
}

TEST_F(SegnaleDiArresto, Ends_the_program_without_a_question) {
  changedSettings();
  platform::catchStopSignals();
  std::raise(SIGTERM);
  EXPECT_TRUE(test::reached([this] { return ends == 1; }));
  EXPECT_EQ(boxes(), 0U);
  EXPECT_FALSE(main->isVisible());
  EXPECT_FALSE(main->Tray().Creata());
}

TEST_F(ChiusuraConBackup, A_stop_signal_stops_it_as_the_user_s_confirmed_stop) {
  const EsitoOperazione outcome = runAnd([this] { main->Termina(); });
  EXPECT_EQ(outcome, EsitoOperazione::Annullato);
  EXPECT_EQ(boxes(), 0U);
  EXPECT_EQ(ends, 1);
  EXPECT_LT(copies(), Many);
  EXPECT_NE(desktop.folder.log().find(Messaggio(329)), std::string::npos);
}

}  // namespace
}  // namespace tandemize
