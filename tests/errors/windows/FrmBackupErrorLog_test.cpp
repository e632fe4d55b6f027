#include "errors/windows/FrmBackupErrorLog.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <utility>

#include "errors/windows/LogWindows.h"
#include "presentation/windows/ModuloGrafica.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

using test::Lines;

struct FrmBackupErrorLogTest : test::LogWindows {
  FrmBackupErrorLogTest() {
    form.Init("C:\\dati\\ : not there\r\rD:\\è\\ : not ready\r", "Errors found");
    Presenta(form);
    test::letEventsRun();
  }
  QListWidget& errors() { return *test::control<QListWidget>(form, "ListLog"); }

  FrmBackupErrorLog form{nullptr};
};

TEST_F(FrmBackupErrorLogTest, It_lists_the_lines_of_a_text_under_its_caption) {
  EXPECT_EQ(form.windowTitle(), "Errors found");
  EXPECT_EQ(form.objectName(), "FrmBackupErrorLog");
  EXPECT_EQ(test::lines(errors()), (Lines{"C:\\dati\\ : not there", "", "D:\\è\\ : not ready"}));
}

TEST_F(FrmBackupErrorLogTest, The_last_character_of_a_text_without_CR_at_its_end_is_not_shown) {
  form.Init("one\rperché", "");
  EXPECT_EQ(test::lines(errors()), (Lines{"one", "perch"}));
  form.Init("", "");
  EXPECT_EQ(test::lines(errors()), Lines{});
}

TEST_F(FrmBackupErrorLogTest, It_has_the_look_of_a_log) {
  EXPECT_EQ(errors().font().family(), "Arial");
  EXPECT_EQ(errors().font().pointSize(), 8);
  EXPECT_EQ(errors().palette().color(QPalette::Base), ColoreBianco);
  EXPECT_EQ(form.palette().color(QPalette::Window), ColoreGradiente2);
}

TEST_F(FrmBackupErrorLogTest, The_list_fills_the_window_but_for_its_margins) {
  for (const QSize size : {QSize(400, 200), QSize(1000, 600)}) {
    form.resize(size);
    test::letEventsRun();
    EXPECT_EQ(errors().width(), size.width() - errors().x() - 200 / PixelPerTwip);
    EXPECT_EQ(errors().height(), size.height() - 500 / PixelPerTwip);
  }
}

TEST_F(FrmBackupErrorLogTest, Lines_can_be_selected_and_copied_by_keys) {
  errors().setFocus();
  test::press(errors(), Qt::Key_A, Qt::ControlModifier);
  test::press(errors(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(test::clipboard("text/plain"), "C:\\dati\\ : not there\r\rD:\\è\\ : not ready\r");
}

TEST_F(FrmBackupErrorLogTest, The_Escape_key_and_Return_close_it) {
  for (const int key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter}) {
    Presenta(form);
    errors().setFocus();
    test::press(errors(), key);
    EXPECT_FALSE(form.isVisible()) << key;
  }
}

TEST_F(FrmBackupErrorLogTest, A_button_at_the_lower_right_closes_it) {
  auto* button = test::control<QPushButton>(form, "cmdclose");
  EXPECT_EQ(button->text(), "&OK");
  EXPECT_TRUE(button->isDefault());
  EXPECT_GT(button->y(), errors().geometry().bottom());
  EXPECT_TRUE(form.rect().contains(button->geometry()));
  EXPECT_EQ(button->geometry().right(), errors().geometry().right());
  test::click(*button);
  EXPECT_FALSE(form.isVisible());
}

TEST_F(FrmBackupErrorLogTest, The_right_mouse_button_leaves_the_selection_alone) {
  errors().item(0)->setSelected(true);
  errors().item(1)->setSelected(true);
  const QPoint third = errors().visualItemRect(errors().item(2)).center();
  for (const auto& [button, chosen] : {std::pair{Qt::RightButton, 2}, {Qt::LeftButton, 1}}) {
    for (const QEvent::Type kind : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QMouseEvent event(kind, third, errors().viewport()->mapToGlobal(third), button,
                        kind == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
      QApplication::sendEvent(errors().viewport(), &event);
    }
    EXPECT_EQ(errors().selectedItems().size(), chosen);
    EXPECT_EQ(errors().item(2)->isSelected(), button == Qt::LeftButton);
  }
}

TEST_F(FrmBackupErrorLogTest, The_screen_shows_it_modally_and_comes_back_when_it_is_closed) {
  form.close();
  bool shown = false;
  desktop.whenShown("FrmBackupErrorLog", [&shown](QWidget& window) {
    shown = window.isModal() && window.windowTitle().toStdString() == Messaggio(123);
    EXPECT_EQ(test::lines(*test::control<QListWidget>(window, "ListLog")), (Lines{"a fault", "another"}));
    window.close();
  });
  schermo().MostraElencoErrori("a fault\ranother\r", Messaggio(123));
  EXPECT_TRUE(shown);
  EXPECT_EQ(FormDiNome("FrmBackupErrorLog"), nullptr);
}

}  // namespace
}  // namespace tandemize
