#include "presentation/windows/BarraProgresso.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <cmath>
#include <memory>

#include "fixtures/windows/Desktop.h"
#include "presentation/windows/EtichettaElisa.h"
#include "presentation/windows/ModuloGrafica.h"

namespace tandemize {
namespace {

using test::control;

class BarraProgressoTest : public ::testing::Test {
 protected:
  BarraProgressoTest() {
    bar->resize(402, bar->height());  // 400 inside its border
    bar->Max(100);
    bar->show();
    test::letEventsRun();
  }

  // Pixels filled from the left, in the row where no text is.
  static int filled(QWidget& widget, int row = 1) {
    const QImage image = widget.grab().toImage();
    int x = 1;
    while (x < image.width() - 1 && image.pixelColor(x, row) == ColoreArancio) ++x;
    for (int behind = x; behind < image.width() - 1; ++behind)
      EXPECT_NE(image.pixelColor(behind, row), ColoreArancio) << behind;
    return x - 1;
  }
  int filled() { return filled(*bar, bar->height() - 2); }
  QLabel& percent() { return *control<QLabel>(*bar, "Label1"); }
  // How many pixels of the label have just this colour.
  int pixelsOf(const QColor& colour) {
    const QImage image = bar->grab(QRect(percent().geometry())).toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == colour ? 1 : 0;
    return count;
  }

  test::Desktop desktop{false};
  std::unique_ptr<BarraProgresso> bar = std::make_unique<BarraProgresso>("Picture1", "Label1");
};

TEST_F(BarraProgressoTest, The_bar_reaches_to_its_share_of_the_picture_in_the_schemes_orange) {
  EXPECT_EQ(filled(), 0);
  for (const int value : {1, 10, 25, 50, 99, 100}) {
    bar->Valore(value);
    EXPECT_NEAR(filled(), 4 * value, 1) << value;
    EXPECT_EQ(percent().text().toStdString(), std::to_string(value) + "%");
  }
}

TEST_F(BarraProgressoTest, Its_height_is_350_units_of_15_to_a_pixel) {
  EXPECT_EQ(bar->height(), 23 + 2);
  EXPECT_EQ(bar->minimumHeight(), bar->maximumHeight());
}

TEST_F(BarraProgressoTest, The_percent_rides_700_units_before_the_bars_end) {
  bar->Valore(50);
  EXPECT_NEAR(percent().x(), 1 + 200 - 700 / 15.0, 1);
  EXPECT_TRUE(percent().isVisible());
}

TEST_F(BarraProgressoTest, The_percent_is_written_white_where_the_bar_is) {
  bar->Valore(50);
  EXPECT_GT(pixelsOf(ColoreBianco), 20);
  EXPECT_EQ(pixelsOf(ColoreBase), 0);
}

TEST_F(BarraProgressoTest, A_short_bar_leaves_its_percent_inside_and_legible) {
  for (const int value : {1, 2}) {
    bar->Valore(value);
    EXPECT_GE(percent().x(), 1) << value;
    EXPECT_GT(pixelsOf(ColoreBase), 5) << "dark where the background is, at " << value;
  }
  bar->Valore(10);
  EXPECT_EQ(pixelsOf(ColoreBase), 0) << "all of it lies on the bar";
  EXPECT_GE(percent().x(), 1);
  bar->Valore(100);
  EXPECT_LE(percent().geometry().right(), bar->width() - 2);
}

TEST_F(BarraProgressoTest, What_is_drawn_keeps_its_proportion_in_another_width) {
  bar->Valore(40);
  for (const int width : {802, 202, 402}) {
    bar->resize(width, bar->height());
    EXPECT_NEAR(filled(), (width - 2) * 0.4, 1);
    EXPECT_NEAR(percent().x(), 1 + (width - 2) * 0.4 - 700 / 15.0, 1);
  }
  bar->resize(802, bar->height());
  bar->Valore(60);
  EXPECT_NEAR(filled(), 480, 1) << "the next value is drawn in the new scale";
}

TEST_F(BarraProgressoTest, A_maximum_set_before_the_picture_has_its_width_holds_in_the_end) {
  BarraProgresso other("Picture2", "Label2");
  other.Max(200);
  other.Valore(100);
  other.resize(402, other.height());
  EXPECT_NEAR(filled(other, other.height() - 2), 200, 4);
  other.Valore(150);
  EXPECT_NEAR(filled(other, other.height() - 2), 300, 1);
}

TEST_F(BarraProgressoTest, With_a_maximum_of_0_nothing_is_drawn) {
  bar->Max(0);
  bar->Valore(0);
  bar->Valore(10);
  EXPECT_EQ(filled(), 0);
  EXPECT_EQ(percent().text(), "");
}

TEST_F(BarraProgressoTest, A_value_above_the_maximum_leaves_the_bar_as_it_is) {
  bar->Valore(40);
  bar->Valore(101);
  EXPECT_NEAR(filled(), 160, 1);
  EXPECT_EQ(percent().text(), "40%");
  EXPECT_EQ(bar->value(), 40);
}

TEST_F(BarraProgressoTest, A_value_too_small_for_one_unit_is_not_drawn) {
  bar->resize(2, bar->height());
  bar->Max(100);
  bar->Valore(50);
  EXPECT_EQ(percent().text(), "");
  EXPECT_EQ(bar->value(), -1) << "nothing is told to a screen reader either";
}

TEST_F(BarraProgressoTest, Starting_again_empties_it) {
  bar->Valore(40);
  bar->Ricomincia();
  EXPECT_EQ(filled(), 0);
  EXPECT_EQ(percent().text(), "");
  bar->Valore(10);
  EXPECT_NEAR(filled(), 40, 1);
  EXPECT_EQ(percent().text(), "10%");
}

TEST_F(BarraProgressoTest, A_screen_reader_finds_a_progress_bar_with_the_percent_as_its_value) {
  bar->setAccessibleName("Overall progress");
  bar->Valore(42);
  QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(bar.get());
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(seen->role(), QAccessible::ProgressBar);
  EXPECT_EQ(seen->text(QAccessible::Name), "Overall progress");
  ASSERT_NE(seen->valueInterface(), nullptr);
  EXPECT_EQ(seen->valueInterface()->currentValue().toInt(), 42);
  EXPECT_EQ(seen->valueInterface()->maximumValue().toInt(), 100);
}

TEST_F(BarraProgressoTest, The_text_under_the_bar_goes_to_its_label) {
  EtichettaElisa status("LblStatus", Qt::ElideMiddle);
  bar->LabelStatus(&status);
  bar->TextStatus("C:\\data");
  EXPECT_EQ(status.text(), "C:\\data");
  EXPECT_EQ(status.font().pointSize(), 9);
  EXPECT_EQ(status.font().families(), (QStringList{"Arial", "Verdana"}));
}

TEST_F(BarraProgressoTest, A_label_that_has_gone_gets_no_text) {
  auto status = std::make_unique<EtichettaElisa>("LblStatus", Qt::ElideMiddle);
  bar->LabelStatus(status.get());
  status.reset();
  bar->TextStatus("C:\\data");
}

// Counts how often a window is drawn.
struct Drawings : QObject {
  explicit Drawings(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    count += event->type() == QEvent::UpdateRequest ? 1 : 0;
    return false;
  }
  int count = 0;
};

TEST_F(BarraProgressoTest, A_value_is_painted_in_one_go_and_one_that_draws_nothing_not_at_all) {
  bar->Valore(40);
  test::letEventsRun();
  const Drawings drawings(*bar);
  bar->Valore(41);
  EXPECT_EQ(drawings.count, 0) << "events ran, but the drawing was not complete";
  test::letEventsRun();
  EXPECT_EQ(drawings.count, 1);
  bar->Valore(41.5);
  test::letEventsRun();
  EXPECT_EQ(drawings.count, 1);
}

TEST_F(BarraProgressoTest, A_bar_that_goes_away_while_it_draws_does_no_harm) {
  QMetaObject::invokeMethod(
      qApp, [this] { bar.reset(); }, Qt::QueuedConnection);
  bar->Valore(40);
  EXPECT_EQ(bar, nullptr);
}

TEST_F(BarraProgressoTest, A_value_set_while_it_draws_is_drawn_within) {
  QMetaObject::invokeMethod(
      qApp, [this] { bar->Valore(70); }, Qt::QueuedConnection);
  bar->Valore(40);
  bar->Valore(80);
  EXPECT_NEAR(filled(), 320, 1);
}

}  // namespace
}  // namespace tandemize
