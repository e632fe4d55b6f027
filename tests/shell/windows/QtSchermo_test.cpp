#include "shell/windows/QtSchermo.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QMessageBox>
#include <QTimer>

#include "errors/windows/FrmBackupErrorLog.h"
#include "fixtures/windows/Desktop.h"
#include "presentation/Avvisi.h"
#include "presentation/windows/Form.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

QStringList captions(const QMessageBox& box) {
  QStringList all;
  for (const QAbstractButton* button : box.buttons()) all << button->text().remove('&');
  all.sort();
  return all;
}

TEST(QtSchermoBox, Each_style_has_its_icon_its_buttons_and_its_number) {
  struct Row {
    int style;
    QMessageBox::Icon icon;
    QStringList buttons;
  };
  test::Desktop desktop;
  Language = 1;
  for (const Row& row :
       {Row{StileSemplice, QMessageBox::NoIcon, {"OK"}}, Row{StileCritico, QMessageBox::Critical, {"OK"}},
        Row{StileInformazione, QMessageBox::Information, {"OK"}},
        Row{StileSìNo, QMessageBox::Question, {"No", "Yes"}},
        Row{StileSìNoInformazione, QMessageBox::Information, {"No", "Yes"}},
        Row{StileSìNoAnnulla, QMessageBox::Question, {"Cancel", "No", "Yes"}}}) {
    desktop.onBox = [&row](QMessageBox& box) {
      EXPECT_EQ(box.objectName(), "MsgBox");
      EXPECT_EQ(box.property("style").toInt(), row.style);
      EXPECT_EQ(box.icon(), row.icon) << row.style;
      EXPECT_EQ(captions(box), row.buttons) << row.style;
      EXPECT_EQ(box.windowTitle().toStdString(), TitoloApplicazione);
      box.close();
    };
    MsgBox("text", row.style);
  }
  EXPECT_EQ(desktop.boxes.size(), 6U);
}

TEST(QtSchermoBox, The_answer_is_the_button_s_and_the_Escape_key_gives_the_one_that_changes_nothing) {
  test::Desktop desktop;
  desktop.answers = {Risposta::Sì, Risposta::No, Risposta::Annulla};
  EXPECT_EQ(MsgBox("?", StileSìNoAnnulla), Risposta::Sì);
  EXPECT_EQ(MsgBox("?", StileSìNoAnnulla), Risposta::No);
  EXPECT_EQ(MsgBox("?", StileSìNoAnnulla), Risposta::Annulla);
  const auto escape = [](QMessageBox& box) { box.reject(); };
  desktop.onBox = escape;
  EXPECT_EQ(MsgBox("?", StileSìNo), Risposta::No);
  desktop.onBox = escape;
  EXPECT_EQ(MsgBox("?", StileSìNoAnnulla), Risposta::Annulla);
  desktop.onBox = escape;
  EXPECT_EQ(MsgBox("!", StileCritico), Risposta::Ok);
}

TEST(QtSchermoBox, Text_is_shown_as_it_is_with_CR_as_line_end) {
  test::Desktop desktop;
  desktop.onBox = [](QMessageBox& box) {
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.text(), "<b>C:\\x</b> &\nnext");
    box.close();
  };
  MsgBox("<b>C:\\x</b> &\rnext", StileInformazione);
}

TEST(QtSchermoBox, The_window_below_may_go_while_the_box_is_up) {
  test::Desktop desktop;
  QWidget* below = new QWidget;
  ImpostaFinestraPrincipale(below);
  below->show();
  desktop.onBox = [below](QMessageBox&) { delete below; };
  EXPECT_EQ(MsgBox("?", StileSìNoAnnulla), Risposta::Annulla);
}

TEST(QtSchermo, The_window_below_may_go_while_the_list_of_errors_is_up) {
  test::Desktop desktop;
  QWidget* below = new QWidget;
  ImpostaFinestraPrincipale(below);
  below->show();
  desktop.whenShown("FrmBackupErrorLog", [below](QWidget&) { delete below; });
  desktop.screen.MostraElencoErrori("one\rtwo\r", "Title");
  EXPECT_EQ(FormDiNome("FrmBackupErrorLog"), nullptr);
}

TEST(QtSchermoBox, A_program_that_ends_asks_nobody) {
  test::Desktop desktop;
  desktop.screen.InChiusura(true);
  EXPECT_EQ(MsgBox("?", StileSìNo), Risposta::No);
  EXPECT_EQ(MsgBox("?", StileSìNoAnnulla), Risposta::No) << "cancelling would hold for all that follows";
  EXPECT_EQ(MsgBox("!", StileInformazione), Risposta::Ok);
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST(QtSchermo, Events_run_while_an_engine_lets_them) {
  const test::Desktop desktop;
  bool run = false;
  QTimer::singleShot(0, qApp, [&run] { run = true; });
  DoEvents();
  EXPECT_TRUE(run);
}

template <class State>
void expectDisplay(test::Desktop& desktop, const char* name) {
  State state;
  state.visibile = true;
  desktop.screen.Mostra(state);
  QWidget* display = FormDiNome(name);
  ASSERT_NE(display, nullptr) << name;
  EXPECT_TRUE(display->isVisible());
  desktop.screen.Mostra(state);
  EXPECT_EQ(FormDiNome(name), display) << "the same window for the next state";
  state.visibile = false;
  desktop.screen.Mostra(state);
  EXPECT_EQ(FormDiNome(name), nullptr);
}

TEST(QtSchermo, An_engine_s_window_comes_with_its_first_state_and_goes_with_its_last) {
  test::Desktop desktop;
  expectDisplay<StatoScansione>(desktop, "FrmScan");
  expectDisplay<StatoAvanzamento>(desktop, "FrmProgressBar");
  expectDisplay<StatoTrasferimento>(desktop, "FrmFileTransfer");
}

TEST(QtSchermo, While_the_program_is_hidden_an_engine_s_window_waits) {
  test::Desktop desktop;
  ApplicazioneNascosta = true;
  StatoTrasferimento state;
  state.visibile = true;
  desktop.screen.Mostra(state);
  EXPECT_FALSE(test::window("FrmFileTransfer")->isVisible());
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_TRUE(test::window("FrmFileTransfer")->isVisible());
  state.visibile = false;
  desktop.screen.Mostra(state);
}

TEST(QtSchermo, The_list_of_errors_is_modal_and_waits_modeless_while_the_program_is_hidden) {
  test::Desktop desktop;
  bool seen = false;
  desktop.whenShown("FrmBackupErrorLog", [&seen](QWidget& list) {
    seen = true;
    EXPECT_TRUE(list.isModal());
    list.close();
  });
  desktop.screen.MostraElencoErrori("one\rtwo\r", "Title");
  EXPECT_TRUE(seen);
  ApplicazioneNascosta = true;
  desktop.screen.MostraElencoErrori("one\rtwo\r", "Title");
  EXPECT_FALSE(test::window("FrmBackupErrorLog")->isVisible());
  ApplicazioneNascosta = false;
  MostraForm();
  QWidget* list = test::window("FrmBackupErrorLog");
  EXPECT_TRUE(list->isVisible());
  EXPECT_FALSE(list->isModal());
  delete list;
}

TEST(QtSchermo, The_pointer_is_changed_once_and_given_back) {
  test::Desktop desktop;
  desktop.screen.MousePointer(Puntatore::Clessidra);
  desktop.screen.MousePointer(Puntatore::FrecciaEClessidra);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
  desktop.screen.MousePointer(Puntatore::Normale);
  desktop.screen.MousePointer(Puntatore::Normale);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(QtSchermo, One_notice_is_up_at_a_time_and_it_is_gone_when_it_is_closed) {
  test::Desktop desktop;
  MostraBalloon("FrmStart", "first", "Title", 0, 0, false, false);
  EXPECT_TRUE(desktop.screen.BalloonAperto());
  MostraBalloon("FrmStart", "second", "Title", 0, 0, false, false);
  EXPECT_EQ(BalloonCorrente, "second");
  desktop.screen.ChiudiBalloon();
  EXPECT_FALSE(desktop.screen.BalloonAperto());
  EXPECT_TRUE(BalloonCorrente.empty());
}

TEST(QtSchermo, The_log_window_is_known_as_loaded_and_can_be_shown_afresh) {
  test::Desktop desktop;
  EXPECT_FALSE(desktop.screen.LogCaricato());
  desktop.screen.MostraLog();
  EXPECT_TRUE(desktop.screen.LogCaricato());
  const QPointer<QWidget> before = FormDiNome("FrmLogView");
  desktop.screen.RicaricaLog();
  EXPECT_TRUE(desktop.screen.LogCaricato());
  EXPECT_NE(FormDiNome("FrmLogView"), before);
}

}  // namespace
}  // namespace tandemize
