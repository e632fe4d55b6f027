#include "presentation/windows/Ridisegno.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include "fixtures/windows/Desktop.h"

namespace tandemize {
namespace {

TEST(Ridisegno, The_first_change_is_drawn_at_once_and_the_last_one_in_any_case) {
  int state = 0, drawn = 0;
  Ridisegno drawing(nullptr, [&] { drawn = state; });
  state = 1;
  drawing.Chiedi();
  EXPECT_EQ(drawn, 1);
  for (state = 2; state < 100; ++state) drawing.Chiedi();
  EXPECT_TRUE(test::reached([&] { return drawn == 100; }));
}

TEST(Ridisegno, Changes_without_end_are_drawn_at_most_thirty_times_a_second) {
  int drawings = 0;
  Ridisegno drawing(nullptr, [&] { ++drawings; });
  QElapsedTimer clock;
  clock.start();
  while (drawings < 5) {
    drawing.Chiedi();
    test::letEventsRun();
  }
  EXPECT_GE(clock.elapsed(), 4 * Ridisegno::Intervallo);
}

TEST(Ridisegno, What_waits_can_be_drawn_at_once) {
  int drawings = 0;
  Ridisegno drawing(nullptr, [&] { ++drawings; });
  drawing.Chiedi();
  drawing.Chiedi();
  drawing.Subito();
  EXPECT_EQ(drawings, 2);
}

}  // namespace
}  // namespace tandemize
