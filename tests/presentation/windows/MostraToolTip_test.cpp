#include "presentation/windows/MostraToolTip.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include "fixtures/windows/Desktop.h"
#include "shell/Impostazioni.h"

namespace tandemize {
namespace {

struct MostraToolTipTest : ::testing::Test {
  MostraToolTipTest() {
    Help_ToolTip = 1;
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(button);
    window.show();
  }
  ~MostraToolTipTest() override { AzzeraImpostazioni(); }

  QTimer* timer(const char* name) { return button->findChild<QTimer*>(name); }
  QWidget* balloon() { return window.findChild<QWidget*>("InformazioniRapide"); }
  void send(QEvent::Type kind) {
    QEvent event(kind);
    QApplication::sendEvent(button, &event);
  }
  void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent event(QEvent::KeyPress, code, modifiers);
    QApplication::sendEvent(button, &event);
  }
  void rest() {
    send(QEvent::Enter);
    QMetaObject::invokeMethod(timer("timRitardo"), "timeout");
  }

  QWidget window;
  QPushButton* button = new QPushButton("Button", &window);
};

TEST_F(MostraToolTipTest, Does_nothing_when_the_settings_want_no_quick_information) {
  Help_ToolTip = 0;
  MostraToolTip(*button, "Text");
  EXPECT_TRUE(button->whatsThis().isEmpty());
  EXPECT_EQ(timer("timRitardo"), nullptr);
  send(QEvent::Enter);
  key(Qt::Key_F1, Qt::ShiftModifier);
  EXPECT_EQ(balloon(), nullptr);
}

TEST_F(MostraToolTipTest, A_forced_one_shows_all_the_same) {
  Help_ToolTip = 0;
  OpzioniToolTip options;
  options.forza = true;
  MostraToolTip(*button, "Text", {}, options);
  rest();
  EXPECT_NE(balloon(), nullptr);
}

TEST_F(MostraToolTipTest, Shows_title_and_text_after_the_mouse_has_rested) {
  MostraToolTip(*button, "First\rsecond", "Title");
  send(QEvent::Enter);
  EXPECT_EQ(balloon(), nullptr);
  EXPECT_TRUE(timer("timRitardo")->isActive());
  QMetaObject::invokeMethod(timer("timRitardo"), "timeout");
  ASSERT_NE(balloon(), nullptr);
  EXPECT_TRUE(balloon()->isVisible());
  EXPECT_EQ(test::text(*test::control<QLabel>(*balloon(), "lblTitle")), "Title");
  EXPECT_EQ(test::text(*test::control<QLabel>(*balloon(), "lblTip")), "First\nsecond");
}

TEST_F(MostraToolTipTest, A_missing_title_becomes_Informazioni_Rapide_in_both_languages) {
  for (const bool english : {false, true}) {
    Language = english ? 1 : 0;
    MostraToolTip(*button, "Text");
    rest();
    EXPECT_EQ(test::text(*test::control<QLabel>(*balloon(), "lblTitle")), "Informazioni Rapide");
  }
}

TEST_F(MostraToolTipTest, Delay_and_display_time_are_those_that_were_asked_for) {
  OpzioniToolTip options;
  options.ritardo = 1234;
  options.secondi = 7;
  MostraToolTip(*button, "Text", {}, options);
  EXPECT_EQ(timer("timRitardo")->interval(), 1234);
  rest();
  EXPECT_TRUE(timer("timDurata")->isActive());
  EXPECT_EQ(timer("timDurata")->interval(), 7000);
  QMetaObject::invokeMethod(timer("timDurata"), "timeout");
  EXPECT_EQ(balloon(), nullptr);
}

TEST_F(MostraToolTipTest, Zero_seconds_leave_it_up_until_the_mouse_goes) {
  OpzioniToolTip options;
  options.secondi = 0;
  MostraToolTip(*button, "Text", {}, options);
  rest();
  EXPECT_FALSE(timer("timDurata")->isActive());
  EXPECT_NE(balloon(), nullptr);
  send(QEvent::Leave);
  EXPECT_EQ(balloon(), nullptr);
}

TEST_F(MostraToolTipTest, Goes_with_the_mouse_a_click_or_the_focus_and_waits_no_longer) {
  MostraToolTip(*button, "Text");
  for (const QEvent::Type kind : {QEvent::Leave, QEvent::Hide, QEvent::WindowDeactivate}) {
    rest();
    ASSERT_NE(balloon(), nullptr);
    send(kind);
    EXPECT_EQ(balloon(), nullptr) << kind;
    send(QEvent::Enter);
    send(kind);
    EXPECT_FALSE(timer("timRitardo")->isActive()) << kind;
  }
  rest();
  test::click(*button);
  EXPECT_EQ(balloon(), nullptr);
}

TEST_F(MostraToolTipTest, The_keyboard_shows_it_by_Shift_F1_and_hides_it_by_Escape) {
  MostraToolTip(*button, "Text");
  key(Qt::Key_F1, Qt::ShiftModifier);
  EXPECT_NE(balloon(), nullptr);
  key(Qt::Key_Escape);
  EXPECT_EQ(balloon(), nullptr);
}

TEST_F(MostraToolTipTest, Assistive_programs_are_told_the_text) {
  MostraToolTip(*button, "Text");
  EXPECT_EQ(button->accessibleDescription(), "Text");
  EXPECT_EQ(button->whatsThis(), "Text");
}

TEST_F(MostraToolTipTest, The_toolkits_own_tool_tip_stays_away) {
  MostraToolTip(*button, "Text");
  QEvent event(QEvent::ToolTip);
  EXPECT_TRUE(QApplication::sendEvent(button, &event));
}

TEST_F(MostraToolTipTest, A_second_call_takes_the_place_of_the_first) {
  MostraToolTip(*button, "One");
  rest();
  MostraToolTip(*button, "Two");
  EXPECT_EQ(balloon(), nullptr);
  EXPECT_EQ(button->findChildren<QTimer*>("timRitardo").size(), 1);
  rest();
  EXPECT_EQ(test::text(*test::control<QLabel>(*balloon(), "lblTip")), "Two");
}

TEST_F(MostraToolTipTest, A_long_text_is_broken_within_the_width_and_whole) {
  OpzioniToolTip options;
  options.larghezza = 150;
  const std::string text =
      "A text that is much too long for one line and has to be broken into several of them";
  MostraToolTip(*button, text, {}, options);
  rest();
  const auto* label = test::control<QLabel>(*balloon(), "lblTip");
  EXPECT_LE(label->width(), 150);
  EXPECT_GE(label->height(), label->heightForWidth(label->width()));
  EXPECT_GT(label->height(), 3 * label->fontMetrics().height());
}

TEST_F(MostraToolTipTest, Stays_on_the_screen_whatever_the_controls_place) {
  const QRect screen = window.screen()->availableGeometry();
  for (const QPoint place : {screen.topLeft(), screen.bottomRight() - QPoint(100, 60)}) {
    window.move(place);
    MostraToolTip(*button, "Text");
    rest();
    ASSERT_NE(balloon(), nullptr);
    EXPECT_TRUE(screen.contains(balloon()->geometry().center()));
    EXPECT_GE(balloon()->x(), screen.left());
    EXPECT_LE(balloon()->geometry().right(), screen.right());
  }
}

TEST_F(MostraToolTipTest, Is_drawn_in_the_colours_that_were_given) {
  OpzioniToolTip options;
  options.sfondo = QColor(10, 200, 30);
  options.testo = QColor(200, 0, 0);
  MostraToolTip(*button, "Text", {}, options);
  rest();
  const QImage image = balloon()->grab().toImage();
  EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() - 14), options.sfondo);
  EXPECT_EQ(test::control<QLabel>(*balloon(), "lblTip")->palette().color(QPalette::WindowText),
            options.testo);
}

TEST_F(MostraToolTipTest, The_control_may_go_while_it_shows) {
  MostraToolTip(*button, "Text");
  rest();
  delete button;
  button = nullptr;
  EXPECT_EQ(balloon(), nullptr);
}

}  // namespace
}  // namespace tandemize
