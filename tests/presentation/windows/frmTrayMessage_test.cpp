#include "presentation/windows/frmTrayMessage.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QFontMetrics>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>
#include <QTimer>
#include <QWindow>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "errors/ModuloLog.h"
#include "fixtures/windows/Desktop.h"
#include "presentation/Avvisi.h"
#include "presentation/windows/Form.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

struct frmTrayMessageTest : ::testing::Test {
  static void show(std::string_view text, int seconds = 0, bool wait = false, bool onlyHidden = false) {
    MostraBalloon("", text, "Title", 4, seconds, wait, onlyHidden);
  }
  static QWidget* balloon() { return FormDiNome("frmTrayMessage"); }
  static QTimer* timer(const char* name) { return test::control<QTimer>(*balloon(), name); }
  static void elapse(const char* name) { QMetaObject::invokeMethod(timer(name), "timeout"); }
  static QImage picture(const char* name) {
    return test::control<QLabel>(*balloon(), name)->pixmap(Qt::ReturnByValue).toImage();
  }
  // The mouse at a point of the balloon, told to the control that holds it.
  static void mouse(QEvent::Type kind, const char* control, QPoint ofBalloon) {
    auto* target = test::control<QWidget>(*balloon(), control);
    const QPoint global = balloon()->mapToGlobal(ofBalloon);
    QMouseEvent event(kind, target->mapFromGlobal(QPointF(global)), QPointF(global),
                      kind == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      kind == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
  }
  static QPoint onButton() { return {balloon()->width() - 15, 15}; }
  static QPoint outside() { return {balloon()->width() - 80, 60}; }
  static void expectGone() {
    EXPECT_EQ(balloon(), nullptr);
    EXPECT_FALSE(schermo().BalloonAperto());
    EXPECT_EQ(BalloonCorrente, "");
  }

  static int linesOf(const QTextDocument& document) {
    int lines = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
      lines += block.layout()->lineCount();
    return lines;
  }

  test::Desktop desktop;
};

TEST_F(frmTrayMessageTest, Shows_title_and_text_as_they_are) {
  MostraBalloon("", "First\rsecond <b>&amp;", "A & B", 0, 0, false, false);
  ASSERT_NE(balloon(), nullptr);
  EXPECT_TRUE(balloon()->isVisible());
  EXPECT_EQ(test::text(*test::control<QLabel>(*balloon(), "lblTitle")), "A & B");
  const auto* tip = test::control<QTextEdit>(*balloon(), "txtTip");
  EXPECT_EQ(test::text(*tip), "First\nsecond <b>&amp;");
  EXPECT_TRUE(tip->isReadOnly());
  EXPECT_EQ(BalloonCorrente, "First\rsecond <b>&amp;");
}

TEST_F(frmTrayMessageTest, The_flag_chooses_the_one_state_in_which_a_notice_shows) {
  for (const bool hidden : {false, true}) {
    for (const bool onlyHidden : {false, true}) {
      ApplicazioneNascosta = hidden;
      show("Text", 0, false, onlyHidden);
      EXPECT_EQ(balloon() != nullptr, hidden == onlyHidden) << hidden << onlyHidden;
      EXPECT_EQ(balloon() != nullptr && balloon()->isVisible(), hidden == onlyHidden);
      schermo().ChiudiBalloon();
    }
  }
}

TEST_F(frmTrayMessageTest, Hiding_and_showing_the_program_leaves_it_up) {
  show("Text");
  NascondiForm(false);
  EXPECT_TRUE(balloon()->isVisible());
  MostraForm();
  EXPECT_TRUE(balloon()->isVisible());
}

TEST_F(frmTrayMessageTest, The_same_text_while_it_is_up_does_nothing) {
  show("Text", 0);
  const QWidget* first = balloon();
  show("Text", 9);
  EXPECT_EQ(balloon(), first);
  EXPECT_FALSE(timer("timAutoClose")->isActive());
}

TEST_F(frmTrayMessageTest, The_same_text_shows_again_once_it_was_closed) {
  show("Text");
  schermo().ChiudiBalloon();
  show("Text");
  EXPECT_NE(balloon(), nullptr);
}

TEST_F(frmTrayMessageTest, Another_text_takes_its_place_and_the_old_ones_end_does_not_touch_it) {
  show("One");
  const QPointer<QWidget> first = balloon();
  show("Two");
  EXPECT_NE(balloon(), first);
  EXPECT_EQ(BalloonCorrente, "Two");
  test::letEventsRun();
  EXPECT_TRUE(first.isNull());
  EXPECT_EQ(BalloonCorrente, "Two");
  EXPECT_TRUE(balloon()->isVisible());
}

TEST_F(frmTrayMessageTest, Closing_one_that_is_closed_already_does_not_touch_the_next) {
  show("One");
  auto* first = static_cast<frmTrayMessage*>(balloon());
  first->HideBalloon();
  show("Two");
  first->HideBalloon();
  first->show();
  EXPECT_FALSE(first->isVisible());
  EXPECT_EQ(BalloonCorrente, "Two");
}

TEST_F(frmTrayMessageTest, A_notice_that_waits_comes_only_after_the_one_before_it_has_been_closed) {
  show("One");
  const QPointer<QWidget> first = balloon();
  bool closedByUser = false;
  QTimer::singleShot(0, first, [&] {
    EXPECT_EQ(BalloonCorrente, "One");
    mouse(QEvent::MouseButtonPress, "imgX", onButton());
    mouse(QEvent::MouseButtonRelease, "imgX", onButton());
    closedByUser = true;
  });
  show("Two", 0, true);
  EXPECT_TRUE(closedByUser);
  EXPECT_EQ(BalloonCorrente, "Two");
  EXPECT_TRUE(balloon()->isVisible());
}

TEST_F(frmTrayMessageTest, Zero_seconds_mean_no_automatic_close) {
  show("Text", 0);
  EXPECT_FALSE(timer("timAutoClose")->isActive());
}

TEST_F(frmTrayMessageTest, Seconds_become_milliseconds_and_their_end_closes_it) {
  show("Text", 7);
  EXPECT_TRUE(timer("timAutoClose")->isActive());
  EXPECT_EQ(timer("timAutoClose")->interval(), 7000);
  elapse("timAutoClose");
  expectGone();
}

TEST_F(frmTrayMessageTest, As_many_seconds_as_there_are_do_no_harm) {
  show("Text", std::numeric_limits<int>::max());
  EXPECT_GT(timer("timAutoClose")->interval(), 2'000'000'000);
}

TEST_F(frmTrayMessageTest, Pressing_the_button_shows_it_down_and_releasing_closes) {
  for (const char* control : {"imgX", "lblX"}) {
    show("Text");
    EXPECT_EQ(picture("imgX"), picture("imgX_Up"));
    mouse(QEvent::MouseButtonPress, control, onButton());
    EXPECT_EQ(picture("imgX"), picture("imgX_Dn"));
    EXPECT_NE(balloon(), nullptr);
    mouse(QEvent::MouseButtonRelease, control, onButton());
    expectGone();
  }
}

TEST_F(frmTrayMessageTest, Moving_off_the_pressed_button_shows_it_up_and_releasing_there_leaves_it_open) {
  show("Text");
  mouse(QEvent::MouseButtonPress, "imgX", onButton());
  mouse(QEvent::MouseMove, "imgX", outside());
  EXPECT_EQ(picture("imgX"), picture("imgX_Up"));
  mouse(QEvent::MouseMove, "imgX", onButton());
  EXPECT_EQ(picture("imgX"), picture("imgX_Dn"));
  mouse(QEvent::MouseMove, "imgX", outside());
  mouse(QEvent::MouseButtonRelease, "imgX", outside());
  EXPECT_NE(balloon(), nullptr);
  EXPECT_EQ(BalloonCorrente, "Text");
  mouse(QEvent::MouseButtonRelease, "imgX", onButton());
  EXPECT_NE(balloon(), nullptr) << "released without having been pressed";
}

TEST_F(frmTrayMessageTest, The_mouse_is_over_the_button_within_30_pixels_of_the_corner) {
  const struct {
    int fromRight, y;
    bool over;
  } rows[]{{1, 0, true},   {30, 0, true},  {31, 0, false}, {1, 29, true},
           {1, 30, false}, {30, 29, true}, {0, 10, false}, {10, -1, false}};
  for (const auto& row : rows) {
    show("Text");
    mouse(QEvent::MouseButtonPress, "imgX", onButton());
    mouse(QEvent::MouseButtonRelease, "imgX", {balloon()->width() - row.fromRight, row.y});
    EXPECT_EQ(balloon() == nullptr, row.over) << row.fromRight << ", " << row.y;
    schermo().ChiudiBalloon();
  }
}

TEST_F(frmTrayMessageTest, The_right_button_closes_nothing) {
  show("Text");
  auto* target = test::control<QWidget>(*balloon(), "imgX");
  for (const QEvent::Type kind : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(kind, QPointF(5, 5), target->mapToGlobal(QPointF(5, 5)), Qt::RightButton, Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(target, &event);
  }
  EXPECT_NE(balloon(), nullptr);
}

TEST_F(frmTrayMessageTest, Every_way_of_closing_empties_the_current_text) {
  const std::vector<std::function<void()>> ways{
      [] { schermo().ChiudiBalloon(); },
      [] { balloon()->close(); },
      [] { ScaricaForm("frmTrayMessage"); },
      [] {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(test::control<QTextEdit>(*balloon(), "txtTip"), &escape);
      },
      [] { elapse("timAutoClose"); },
      [] { delete balloon(); }};
  for (const auto& close : ways) {
    show("Text");
    ASSERT_TRUE(FormAperto("frmTrayMessage"));
    close();
    expectGone();
    EXPECT_FALSE(FormAperto("frmTrayMessage"));
    test::letEventsRun();
    EXPECT_EQ(BalloonCorrente, "");
  }
}

TEST_F(frmTrayMessageTest, Closes_itself_when_its_window_has_gone_and_the_program_is_visible) {
  Form open("FrmScan");
  const struct {
    const char* form;
    bool hidden, closes;
  } rows[]{{"", false, false},
           {"FrmScan", false, false},
           {"FrmGone", false, true},
           {"FrmGone", true, false},
           {"", true, false}};
  for (const auto& row : rows) {
    ApplicazioneNascosta = row.hidden;
    MostraBalloon(row.form, "Text", "Title", 0, 0, false, row.hidden);
    EXPECT_TRUE(timer("TimerAggiuntivo")->isActive());
    elapse("TimerAggiuntivo");
    EXPECT_EQ(balloon() == nullptr, row.closes) << row.form << row.hidden;
    schermo().ChiudiBalloon();
  }
}

TEST_F(frmTrayMessageTest, Its_window_may_go_later_and_the_program_come_back_later) {
  auto window = std::make_unique<Form>("FrmScan");
  MostraBalloon("FrmScan", "Text", "Title", 0, 0, false, false);
  elapse("TimerAggiuntivo");
  EXPECT_NE(balloon(), nullptr);
  window.reset();
  ApplicazioneNascosta = true;
  elapse("TimerAggiuntivo");
  EXPECT_NE(balloon(), nullptr);
  ApplicazioneNascosta = false;
  elapse("TimerAggiuntivo");
  expectGone();
}

TEST_F(frmTrayMessageTest, The_width_is_fixed_and_the_height_follows_the_lines) {
  for (const int words : {1, 12, 40, 100}) {
    std::string text;
    for (int i = 0; i < words; ++i) text += "word ";
    show(text);
    QCoreApplication::processEvents();
    const int lines = linesOf(*test::control<QTextEdit>(*balloon(), "txtTip")->document());
    const auto* title = test::control<QLabel>(*balloon(), "lblTitle");
    const double line = 1.2 * QFontMetrics(balloon()->font()).size(0, "A").height();
    EXPECT_GE(lines, words / 12);
    EXPECT_EQ(balloon()->width(), 312);
    EXPECT_EQ(balloon()->height(),
              static_cast<int>(std::ceil(line * lines)) + title->heightForWidth(title->width()) + 46)
        << words;
    schermo().ChiudiBalloon();
  }
}

TEST_F(frmTrayMessageTest, Every_line_of_a_text_is_seen_wherever_it_breaks) {
  for (const char* text : {"One", "Up\rto\r\rfive\rlines",
                           "C:\\a\\very\\long\\path\\without\\any\\place\\to\\break\\in\\it\\at\\all.xls",
                           "A line that is broken because it does not fit into the balloon as a "
                           "whole.\rAnother one of the same kind, "
                           "just as long as that one."}) {
    show(text);
    QCoreApplication::processEvents();
    const auto* tip = test::control<QTextEdit>(*balloon(), "txtTip");
    EXPECT_LE(tip->document()->size().height(), tip->viewport()->height()) << text;
    EXPECT_LE(tip->document()->idealWidth(), tip->viewport()->width()) << text;
    schermo().ChiudiBalloon();
  }
}

TEST_F(frmTrayMessageTest, A_title_that_is_too_long_is_broken_too) {
  MostraBalloon("", "Text", "A title that is much too long to be shown in the one line of a notice", 0, 0,
                false, false);
  QCoreApplication::processEvents();
  const auto* title = test::control<QLabel>(*balloon(), "lblTitle");
  EXPECT_GE(title->height(), title->heightForWidth(title->width()));
  const auto* tip = test::control<QTextEdit>(*balloon(), "txtTip");
  EXPECT_LE(tip->document()->size().height(), tip->viewport()->height());
}

TEST_F(frmTrayMessageTest, A_text_longer_than_the_screen_can_be_scrolled) {
  std::string text;
  for (int i = 0; i < 400; ++i) text += "line\r";
  show(text);
  QCoreApplication::processEvents();
  const QRect screen = balloon()->screen()->availableGeometry();
  EXPECT_TRUE(screen.contains(balloon()->geometry()));
  EXPECT_TRUE(test::control<QTextEdit>(*balloon(), "txtTip")->verticalScrollBar()->isVisible());
}

TEST_F(frmTrayMessageTest, The_corners_are_round) {
  show("Text");
  const int right = balloon()->width() - 1, bottom = balloon()->height() - 1;
  const QRegion shape = balloon()->mask();
  for (const QPoint corner : {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)}) {
    EXPECT_FALSE(shape.contains(corner));
    // Half-way between the corner and the middle of its circle, whose radius is half of 25.
    const QPoint inwards(corner.x() == 0 ? 5 : -5, corner.y() == 0 ? 5 : -5);
    EXPECT_TRUE(shape.contains(corner + inwards));
  }
  EXPECT_TRUE(shape.contains(QPoint(13, 0)));
  EXPECT_TRUE(shape.contains(QPoint(right, 13)));
  const QImage drawn = balloon()->grab().toImage();
  EXPECT_EQ(qAlpha(drawn.pixel(0, 0)), 0);
}

TEST_F(frmTrayMessageTest, Lies_at_the_lower_right_where_no_notification_area_says_its_place) {
  show("Text");
  const QRect screen = balloon()->screen()->availableGeometry();
  EXPECT_TRUE(screen.contains(balloon()->geometry()));
  EXPECT_LT(screen.right() - balloon()->geometry().right(), 20);
  EXPECT_LT(screen.bottom() - balloon()->geometry().bottom(), 20);
}

TEST_F(frmTrayMessageTest, The_picture_is_that_of_its_kind) {
  const char* sources[]{"imgIconXP(0)", "imgIcon(0)",   "imgIconXP(1)",
                        "imgIcon(1)",   "imgIconXP(2)", "imgIcon(2)"};
  for (int kind = 0; kind < 6; ++kind) {
    MostraBalloon("", "Text", "Title", kind, 0, false, false);
    EXPECT_EQ(picture("imgDisplayIcon"), picture(sources[kind])) << kind;
    EXPECT_FALSE(picture("imgDisplayIcon").isNull());
    EXPECT_TRUE(test::control<QLabel>(*balloon(), "imgDisplayIcon")->isVisible());
    EXPECT_FALSE(test::control<QLabel>(*balloon(), sources[kind])->isVisible());
    schermo().ChiudiBalloon();
  }
  for (const int kind : {-1, 6}) {
    MostraBalloon("", "Text", "Title", kind, 0, false, false);
    EXPECT_FALSE(test::control<QLabel>(*balloon(), "imgDisplayIcon")->isVisible());
    schermo().ChiudiBalloon();
  }
}

TEST_F(frmTrayMessageTest, The_close_button_shows) {
  show("Text");
  EXPECT_TRUE(test::control<QLabel>(*balloon(), "imgX")->isVisible());
  EXPECT_TRUE(test::control<QLabel>(*balloon(), "lblX")->isVisible());
  EXPECT_FALSE(test::control<QLabel>(*balloon(), "imgX_Up")->isVisible());
  EXPECT_FALSE(test::control<QLabel>(*balloon(), "imgX_Dn")->isVisible());
}

TEST_F(frmTrayMessageTest, A_title_alone_is_shown_and_is_no_current_text) {
  show("One");
  MostraBalloon("", "", "Title alone", 0, 5, false, false);
  ASSERT_NE(balloon(), nullptr);
  EXPECT_TRUE(balloon()->isVisible());
  EXPECT_EQ(BalloonCorrente, "");
  EXPECT_TRUE(timer("timAutoClose")->isActive());
}

TEST_F(frmTrayMessageTest, Nothing_to_tell_takes_the_old_notice_away_and_shows_none) {
  show("One");
  MostraBalloon("", "", "", 4, 5, false, false);
  expectGone();
}

TEST_F(frmTrayMessageTest, Dragging_the_title_moves_it) {
  show("Text");
  const QPoint before = balloon()->pos();
  mouse(QEvent::MouseMove, "lblTitle", {140, 20});
  EXPECT_EQ(balloon()->pos(), before) << "nobody holds it";
  mouse(QEvent::MouseButtonPress, "lblTitle", {100, 20});
  mouse(QEvent::MouseMove, "lblTitle", {60, -10});
  EXPECT_EQ(balloon()->pos(), before + QPoint(-40, -30));
  mouse(QEvent::MouseButtonRelease, "lblTitle", {100, 20});
  mouse(QEvent::MouseMove, "lblTitle", {140, 20});
  EXPECT_EQ(balloon()->pos(), before + QPoint(-40, -30));
}

TEST_F(frmTrayMessageTest, Takes_no_focus_by_itself_and_does_not_keep_the_program_alive) {
  show("Text");
  EXPECT_TRUE(balloon()->testAttribute(Qt::WA_ShowWithoutActivating));
  EXPECT_FALSE(balloon()->testAttribute(Qt::WA_QuitOnClose));
  EXPECT_TRUE(balloon()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
}

TEST_F(frmTrayMessageTest, A_modal_window_does_not_keep_the_mouse_from_it) {
  QDialog before, after;
  before.setModal(true);
  after.setModal(true);
  before.show();
  show("Text");
  EXPECT_EQ(balloon()->windowHandle()->transientParent(), before.windowHandle());
  before.hide();
  after.show();
  EXPECT_EQ(balloon()->windowHandle()->transientParent(), after.windowHandle());
  after.hide();
  EXPECT_TRUE(balloon()->isVisible());
}

TEST_F(frmTrayMessageTest, Assistive_programs_are_told_what_it_says) {
  show("Text");
  EXPECT_EQ(balloon()->accessibleName(), "Title");
  EXPECT_EQ(balloon()->accessibleDescription(), "Text");
  EXPECT_FALSE(test::control<QLabel>(*balloon(), "imgX")->accessibleName().isEmpty());
}

class Failing : public frmTrayMessage {
 protected:
  void Riempi(const Avviso& avviso) override {
    frmTrayMessage::Riempi(avviso);
    throw std::runtime_error("no memory");
  }
};

TEST_F(frmTrayMessageTest, An_error_while_it_is_filled_goes_to_the_log_and_no_further) {
  auto* failing = new Failing;
  failing->SetBalloon({"", "Text", "Title", 0, 0});
  failing->show();
  EXPECT_FALSE(failing->isVisible());
  expectGone();
  EXPECT_NE(desktop.folder.log().find("Errore nel form frmTrayBallon"), std::string::npos);
  test::letEventsRun();
}

}  // namespace
}  // namespace tandemize
