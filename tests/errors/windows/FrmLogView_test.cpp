#include "errors/windows/FrmLogView.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <algorithm>

#include "errors/ModuloGestioneErrori.h"
#include "errors/windows/LogWindows.h"
#include "presentation/windows/ModuloGrafica.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

using test::Lines;

struct FrmLogViewTest : test::LogWindows {
  static Lines numbered(int count) {
    Lines all;
    for (int i = 0; i < count; ++i) all.push_back("line " + std::to_string(i));
    return all;
  }
};

TEST_F(FrmLogViewTest, It_opens_inside_the_main_window_with_every_line_of_the_log_and_the_spare_one) {
  log({"one", "è <b>two</b> & 3"});
  MostraFrmLogView();
  EXPECT_EQ(test::lines(list()), (Lines{"one", "è <b>two</b> & 3", ""}));
  EXPECT_TRUE(list().isVisible());
  ASSERT_EQ(area->subWindowList().size(), 1);
  EXPECT_EQ(area->activeSubWindow()->widget(), &view());
}

TEST_F(FrmLogViewTest, An_empty_log_has_the_spare_line_alone) {
  EXPECT_EQ(test::lines(openList()), Lines{""});
}

TEST_F(FrmLogViewTest, It_is_a_snapshot_until_it_is_activated_again) {
  log({"one"});
  openList();
  ScriviLog("two", RigaNormale);
  test::letEventsRun();
  EXPECT_EQ(test::lines(list()), (Lines{"one", ""}));

  QMdiSubWindow* other = area->addSubWindow(new QWidget);
  other->show();
  area->setActiveSubWindow(other);
  test::letEventsRun();
  EXPECT_EQ(test::lines(list()), (Lines{"one", ""})) << "another window became the active one";
  area->setActiveSubWindow(area->subWindowList().front());
  test::letEventsRun();
  EXPECT_EQ(test::lines(list()), ListaLog);
  EXPECT_EQ(list().count(), 3);
}

TEST_F(FrmLogViewTest, Asking_for_it_again_activates_the_one_that_is_open_with_a_fresh_snapshot) {
  log({"one"});
  openList();
  const QWidget* first = &view();
  ScriviLog("two", RigaNormale);
  area->activeSubWindow()->showMinimized();
  MostraFrmLogView();
  EXPECT_EQ(&view(), first);
  EXPECT_EQ(test::lines(list()), ListaLog);
  EXPECT_EQ(area->subWindowList().size(), 1);
  EXPECT_FALSE(area->subWindowList().front()->isMinimized());
}

TEST_F(FrmLogViewTest, Without_a_main_window_it_stands_alone_and_follows_its_activation_too) {
  ImpostaFinestraPrincipale(nullptr);
  log({"one"});
  MostraFrmLogView();
  EXPECT_TRUE(view().isWindow());
  EXPECT_TRUE(view().isVisible());
  ScriviLog("two", RigaNormale);
  QEvent activation(QEvent::WindowActivate);
  QApplication::sendEvent(&view(), &activation);
  EXPECT_EQ(test::lines(list()), ListaLog);
  ScaricaForm("FrmLogView");
  EXPECT_EQ(FormDiNome("FrmLogView"), nullptr);
}

TEST_F(FrmLogViewTest, Unloading_takes_its_frame_in_the_main_window_along) {
  openList();
  const QPointer<QWidget> first = &view();
  ScaricaForm("FrmLogView");
  EXPECT_EQ(FormDiNome("FrmLogView"), nullptr);
  test::letEventsRun();
  EXPECT_EQ(first, nullptr);
  EXPECT_TRUE(area->subWindowList().isEmpty());
}

TEST_F(FrmLogViewTest, A_window_that_the_user_closes_is_unloaded_at_once_and_can_be_opened_again) {
  openList();
  const QPointer<QWidget> first = &view();
  area->activeSubWindow()->close();
  EXPECT_EQ(FormDiNome("FrmLogView"), nullptr);
  MostraFrmLogView();
  EXPECT_NE(&view(), first);
  test::letEventsRun();
  EXPECT_EQ(first, nullptr);
  EXPECT_TRUE(list().isVisible());
  EXPECT_EQ(area->subWindowList().size(), 1);
}

TEST_F(FrmLogViewTest, The_list_has_the_look_of_a_log) {
  const QListWidget& shown = openList();
  EXPECT_EQ(shown.font().family(), "Arial");
  EXPECT_EQ(shown.font().pointSize(), 8);
  EXPECT_EQ(shown.palette().color(QPalette::Base), ColoreBianco);
  EXPECT_EQ(shown.palette().color(QPalette::Text), ColoreBase);
}

TEST_F(FrmLogViewTest, The_list_fills_the_window_but_for_its_margins) {
  ImpostaFinestraPrincipale(nullptr);
  const QListWidget& shown = openList();
  for (const QSize size : {QSize(500, 300), QSize(900, 700)}) {
    view().resize(size);
    test::letEventsRun();
    EXPECT_EQ(shown.width(), size.width() - shown.x() - 200 / PixelPerTwip);
    EXPECT_EQ(shown.height(), size.height() - 500 / PixelPerTwip);
  }
}

TEST_F(FrmLogViewTest, It_opens_at_the_newest_lines_and_stays_there_until_the_user_leaves_them) {
  log(numbered(500));
  const QScrollBar& bar = *openList().verticalScrollBar();
  ASSERT_GT(bar.maximum(), 100);
  EXPECT_EQ(bar.value(), bar.maximum());
  area->activeSubWindow()->resize(400, 150);
  test::letEventsRun();
  EXPECT_EQ(bar.value(), bar.maximum());
  const int end = bar.maximum();
  ScriviLog("newest", RigaNormale);
  MostraFrmLogView();
  EXPECT_EQ(bar.value(), end + 1);
  EXPECT_EQ(bar.value(), bar.maximum());
}

TEST_F(FrmLogViewTest, The_place_and_the_selection_of_a_user_who_reads_older_lines_are_kept) {
  log(numbered(500));
  QListWidget& shown = openList();
  shown.verticalScrollBar()->setValue(100);
  shown.item(103)->setSelected(true);
  ScriviLog("newest", RigaNormale);
  MostraFrmLogView();
  EXPECT_EQ(shown.verticalScrollBar()->value(), 100);
  EXPECT_EQ(test::selected(shown), Lines{"line 103"});
  EXPECT_EQ(test::lines(shown), ListaLog);
}

TEST_F(FrmLogViewTest, A_log_whose_older_half_has_gone_is_shown_as_it_is) {
  log(numbered(100));
  QListWidget& shown = openList();
  shown.item(3)->setSelected(true);
  ListaLog.erase(ListaLog.begin(), ListaLog.begin() + 50);
  MostraFrmLogView();
  EXPECT_EQ(test::lines(shown), ListaLog);
  EXPECT_EQ(test::selected(shown), Lines{});
  CreaListaLog();
  MostraFrmLogView();
  EXPECT_EQ(test::lines(shown), Lines{""});
}

TEST_F(FrmLogViewTest, The_longest_line_can_be_scrolled_to_its_end) {
  log({"short", std::string(400, 'W'), "short"});
  const QListWidget& shown = openList();
  const int width = shown.fontMetrics().horizontalAdvance(QString(400, 'W'));
  EXPECT_GE(shown.horizontalScrollBar()->maximum() + shown.viewport()->width(), width);
  EXPECT_EQ(shown.textElideMode(), Qt::ElideNone);
}

TEST_F(FrmLogViewTest, The_right_mouse_button_opens_the_menu) {
  QListWidget& shown = openList();
  auto* menu = test::control<QMenu>(view(), "MenuLog");
  const QStringList captions{"Copy to ClipBoard", "Select All", "Find Text"};
  ASSERT_EQ(menu->actions().size(), 3);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(menu->actions()[i]->text(), captions[i]);
    EXPECT_EQ(menu->actions()[i]->objectName(), QStringLiteral("MenuWindow(%1)").arg(i));
  }
  EXPECT_FALSE(menu->isVisible());
  for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
    QContextMenuEvent event(reason, {5, 5}, shown.viewport()->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(shown.viewport(), &event);
    EXPECT_TRUE(menu->isVisible());
    menu->close();
  }
}

TEST_F(FrmLogViewTest, Copying_puts_each_selected_line_and_a_CR_on_the_clipboard_as_rich_and_as_plain_text) {
  log({"one", "two é", "three"});
  QListWidget& shown = openList();
  shown.item(2)->setSelected(true);
  shown.item(0)->setSelected(true);
  test::action(view(), "MenuWindow(0)")->trigger();
  EXPECT_EQ(test::clipboard("text/rtf"), "one\rthree\r");
  EXPECT_EQ(test::clipboard("text/plain"), "one\rthree\r");

  shown.clearSelection();
  shown.item(1)->setSelected(true);
  shown.item(3)->setSelected(true);
  test::action(view(), "MenuWindow(0)")->trigger();
  EXPECT_EQ(test::clipboard("text/rtf"), "two é\r\r");
}

TEST_F(FrmLogViewTest, Copying_nothing_empties_the_clipboard) {
  log({"one"});
  openList().setCurrentRow(0, QItemSelectionModel::NoUpdate);
  test::action(view(), "MenuWindow(0)")->trigger();
  EXPECT_EQ(test::clipboard("text/rtf"), "");
  EXPECT_EQ(test::clipboard("text/plain"), "");
}

TEST_F(FrmLogViewTest, Select_All_selects_every_line_the_spare_one_too) {
  log(numbered(3000));
  QListWidget& shown = openList();
  test::action(view(), "MenuWindow(1)")->trigger();
  EXPECT_EQ(test::selected(shown), ListaLog);
  test::action(view(), "MenuWindow(0)")->trigger();
  EXPECT_EQ(std::ranges::count(test::clipboard("text/rtf"), '\r'), 3001);
}

TEST_F(FrmLogViewTest, The_menu_works_by_keys) {
  log({"one", "two"});
  QListWidget& shown = openList();
  shown.setFocus();
  test::press(shown, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(test::selected(shown), (Lines{"one", "two", ""}));
  test::press(shown, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(test::clipboard("text/rtf"), "one\rtwo\r\r");
  test::press(shown, Qt::Key_F, Qt::ControlModifier);
  EXPECT_NE(FormDiNome("frmLogFind"), nullptr);
}

TEST_F(FrmLogViewTest, A_setting_of_1_opens_it_at_each_error_and_leaves_an_open_one_as_it_is) {
  for (const std::uint8_t setting : {std::uint8_t{0}, std::uint8_t{2}}) {
    Log_Show_Window = setting;
    ErroreFatale(5, "R", 0, 0, "", "own text", 0);
    EXPECT_EQ(FormDiNome("FrmLogView"), nullptr) << int{setting};
  }
  Log_Show_Window = 1;
  ErroreFatale(5, "R", 0, 0, "", "an error", 0);
  const QWidget* first = &view();
  EXPECT_TRUE(first->isVisible());
  const int count = list().count();
  EXPECT_EQ(test::lines(list()), ListaLog);
  ErroreFatale(5, "R", 0, 0, "", "another error", 0);
  EXPECT_EQ(&view(), first);
  EXPECT_EQ(list().count(), count);
}

TEST_F(FrmLogViewTest, A_setting_of_2_shows_it_filled_afresh_at_the_end_of_an_operation_with_errors) {
  desktop.folder.setting("Errors_Alert_Mode", "0");
  desktop.folder.setting("Log_Show_Window", "2");
  bool error = false, stopped = true;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_EQ(FormDiNome("FrmLogView"), nullptr) << "no error";
  error = true;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  const QPointer<QWidget> first = &view();
  ScriviLog("more", RigaNormale);
  error = true;
  EXPECT_FALSE(FineOperazione(error, "", stopped));
  EXPECT_NE(&view(), first);
  EXPECT_EQ(test::lines(list()), ListaLog);
  test::letEventsRun();
  EXPECT_EQ(first, nullptr);
  EXPECT_EQ(area->subWindowList().size(), 1);
}

TEST_F(FrmLogViewTest, While_the_program_is_hidden_it_does_not_come_into_sight) {
  ApplicazioneNascosta = true;
  NascondiForm(false);
  Log_Show_Window = 1;
  ErroreFatale(5, "R", 0, 0, "", "an error", 0);
  EXPECT_TRUE(desktop.screen.LogCaricato());
  EXPECT_FALSE(view().isVisible());
  ApplicazioneNascosta = false;
  MostraForm();
  EXPECT_TRUE(view().isVisible());
}

}  // namespace
}  // namespace tandemize
