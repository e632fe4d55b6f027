#include "presentation/windows/FrmProgressBarWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <optional>

#include "fixtures/windows/Desktop.h"
#include "fixtures/windows/WhileEventsRun.h"
#include "presentation/FrmProgressBar.h"
#include "presentation/windows/ModuloGrafica.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

using test::click;
using test::control;
using test::text;
using test::window;

class FrmProgressBarWindowTest : public ::testing::Test {
 protected:
  test::Desktop desktop;
  FinestraOperazione owner{"FrmTandemize"};
};

TEST_F(FrmProgressBarWindowTest, It_stands_as_long_as_the_engine_lives) {
  {
    const FrmProgressBar engine(&owner, "Working", 100);
    ASSERT_NE(FormDiNome("FrmProgressBar"), nullptr);
    EXPECT_TRUE(window("FrmProgressBar")->isVisible());
  }
  EXPECT_EQ(FormDiNome("FrmProgressBar"), nullptr);
}

TEST_F(FrmProgressBarWindowTest, It_shows_text_bar_and_percent) {
  FrmProgressBar engine(&owner, "C:\\data", 200);
  QWidget& shown = *window("FrmProgressBar");
  EXPECT_EQ(text(*control<QLabel>(shown, "LblStatus")), "C:\\data");
  EXPECT_NE(control<QFrame>(shown, "Frame1"), nullptr);
  EXPECT_EQ(text(*control<QPushButton>(shown, "CmdAnnulla")), Messaggio(395));
  engine.Valore(50);
  auto& bar = *control<QProgressBar>(shown, "PicProgress");
  ASSERT_TRUE(test::reached([&] { return bar.value() == 25; }));
  EXPECT_EQ(text(*control<QLabel>(shown, "lblProgress")), "25%");
  const QImage image = bar.grab().toImage();
  EXPECT_EQ(image.pixelColor(image.width() * 23 / 100, image.height() - 3), ColoreArancio);
  EXPECT_EQ(image.pixelColor(image.width() * 27 / 100, image.height() - 3), ColoreBianco);
  engine.Testo("C:\\other");
  EXPECT_TRUE(test::reached([&] { return text(*control<QLabel>(shown, "LblStatus")) == "C:\\other"; }));
}

TEST_F(FrmProgressBarWindowTest, A_long_path_leaves_the_window_its_size) {
  FrmProgressBar engine(&owner, "", 100);
  QWidget& shown = *window("FrmProgressBar");
  test::letEventsRun();
  const QSize size = shown.size();
  const std::string path = "C:\\" + std::string(2000, 'w');
  engine.Testo(path);
  ASSERT_TRUE(test::reached([&] { return text(*control<QLabel>(shown, "LblStatus")) == path; }));
  test::letEventsRun();
  EXPECT_EQ(shown.size(), size);
}

TEST_F(FrmProgressBarWindowTest, The_button_asks_and_stops_the_owners_work_on_yes) {
  desktop.answers = {Risposta::No, Risposta::Sì};
  FrmProgressBar engine(&owner, "", 100);
  QWidget& button = *control<QPushButton>(*window("FrmProgressBar"), "CmdAnnulla");
  click(button);
  EXPECT_FALSE(owner.ProcessoAnnullato);
  EXPECT_TRUE(button.isEnabled());
  click(button);
  EXPECT_TRUE(owner.ProcessoAnnullato);
  EXPECT_TRUE(engine.ProcessoAnnullato);
  EXPECT_FALSE(button.isEnabled()) << "there is nothing more to ask for";
  EXPECT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(desktop.boxes[0].text, Messaggio(326));
}

TEST_F(FrmProgressBarWindowTest, Work_without_an_owner_has_a_button_that_cannot_be_pressed) {
  FrmProgressBar engine(nullptr, "", 100);
  QWidget& shown = *window("FrmProgressBar");
  EXPECT_FALSE(control<QPushButton>(shown, "CmdAnnulla")->isEnabled());
  EXPECT_FALSE(shown.close());
  engine.Valore(50);
  EXPECT_FALSE(control<QPushButton>(shown, "CmdAnnulla")->isEnabled());
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(FrmProgressBarWindowTest, Closing_asks_too_and_the_window_stays_until_the_work_ends) {
  desktop.answers = {Risposta::Sì};
  const FrmProgressBar engine(&owner, "", 100);
  QWidget& shown = *window("FrmProgressBar");
  EXPECT_FALSE(shown.close());
  EXPECT_TRUE(owner.ProcessoAnnullato);
  EXPECT_TRUE(shown.isVisible());
}

TEST_F(FrmProgressBarWindowTest, While_the_question_is_up_a_second_click_asks_nothing) {
  FrmProgressBar engine(&owner, "", 100);
  QWidget& shown = *window("FrmProgressBar");
  QWidget& button = *control<QPushButton>(shown, "CmdAnnulla");
  desktop.onBox = [&](QMessageBox& box) {
    click(button);
    shown.close();
    box.escapeButton()->click();
  };
  click(button);
  test::letEventsRun();
  EXPECT_EQ(desktop.boxes.size(), 1U);
  EXPECT_FALSE(owner.ProcessoAnnullato);
}

TEST_F(FrmProgressBarWindowTest, The_work_may_end_while_the_question_is_up) {
  std::optional<FrmProgressBar> engine(std::in_place, &owner, "", 100);
  auto& button = *control<QPushButton>(*window("FrmProgressBar"), "CmdAnnulla");
  desktop.onBox = [&](QMessageBox& box) {
    StatoAvanzamento gone;
    desktop.screen.Mostra(gone);
    box.escapeButton()->click();
  };
  button.click();
  EXPECT_EQ(FormDiNome("FrmProgressBar"), nullptr);
}

TEST_F(FrmProgressBarWindowTest, Another_work_that_begins_and_ends_while_it_draws_takes_the_window_along) {
  FrmProgressBar outer(&owner, "outer", 100);
  test::letEventsRun();
  bool done = false;
  const test::WhileEventsRun during([&] {
    if (done) return;
    done = true;
    FrmProgressBar inner(nullptr, "inner", 100);
    inner.Valore(10);
  });
  for (int value = 1; value <= 100; ++value) outer.Valore(value);
  ASSERT_TRUE(test::reached([&] { return done; }));
  outer.Testo("on");
  EXPECT_EQ(text(*control<QLabel>(*window("FrmProgressBar"), "LblStatus")), "on");
}

TEST_F(FrmProgressBarWindowTest, A_lower_value_and_another_maximum_start_the_bar_again) {
  StatoAvanzamento state{true, "", 100, 60};
  desktop.screen.Mostra(state);
  QWidget& shown = *window("FrmProgressBar");
  auto& bar = *control<QProgressBar>(shown, "PicProgress");
  EXPECT_EQ(bar.value(), 60);
  state.valore = 20;
  desktop.screen.Mostra(state);
  EXPECT_TRUE(test::reached([&] { return bar.value() == 20; }));
  state.massimo = 80;
  desktop.screen.Mostra(state);
  EXPECT_TRUE(test::reached([&] { return bar.value() == 25; }));
  desktop.screen.Mostra(StatoAvanzamento{});
}

}  // namespace
}  // namespace tandemize
