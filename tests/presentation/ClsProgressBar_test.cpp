#include "presentation/ClsProgressBar.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "fixtures/ScriptedScreen.h"

namespace tandemize {
namespace {

// What is drawn, in order, as one line of words.
using Drawing = std::ostringstream;

struct Box : QuadroBarra {
  explicit Box(Drawing& target) : out(target) {}
  double ScaleWidth() const override { return width; }
  double ScaleHeight() const override { return 350; }
  void Prepara(double height) override { out << "picture " << height << ' '; }
  void Riquadro(double x1, double y1, double x2, double y2) override {
    out << "box " << x1 << ',' << y1 << '-' << x2 << ',' << y2 << ' ';
  }
  void Cancella(double x1, double y1, double x2, double y2) override {
    out << "clear " << x1 << ',' << y1 << '-' << x2 << ',' << y2 << ' ';
  }
  Drawing& out;
  double width = 5000;
};

struct Label : EtichettaBarra {
  Label(Drawing& target, std::string title) : out(target), name(std::move(title)) {}
  void Prepara(const AspettoEtichetta& look) override {
    last = look;
    out << name << ' ';
  }
  void Caption(std::string_view text) override { out << name << '=' << text << ' '; }
  void Left(double left) override { out << name << '@' << left << ' '; }
  Drawing& out;
  std::string name;
  AspettoEtichetta last;
};

class ClsProgressBarTest : public ::testing::Test {
 protected:
  ClsProgressBarTest() {
    bar.Picture(&box);
    bar.Label(&percent);
    bar.LabelStatus(&status);
    bar.Max(100);
    screen.onEvents = [this] { out << "events "; };
    drawn();
  }
  std::string drawn() {
    std::string text = out.str();
    out.str("");
    return text;
  }
  std::string value(double v) {
    bar.Value(v);
    return drawn();
  }

  test::ScriptedScreen screen;
  Drawing out;
  Box box{out};
  Label percent{out, "percent"}, status{out, "status"};
  ClsProgressBar bar;
};

TEST_F(ClsProgressBarTest, A_picture_is_made_350_high) {
  bar.Picture(&box);
  EXPECT_EQ(drawn(), "picture 350 ");
}

TEST_F(ClsProgressBarTest, The_percent_is_white_on_nothing_in_size_10) {
  EXPECT_EQ(percent.last.dimensione, 10);
  EXPECT_TRUE(percent.last.bianca && percent.last.trasparente && percent.last.autoSize);
  EXPECT_EQ(percent.last.top, 30);
}

TEST_F(ClsProgressBarTest, The_status_text_is_of_size_9_in_Arial_then_Verdana) {
  EXPECT_EQ(status.last.dimensione, 9);
  EXPECT_EQ(status.last.caratteri, (std::vector<std::string_view>{"Arial", "Verdana"}));
  EXPECT_FALSE(status.last.bianca || status.last.trasparente || status.last.autoSize);
  bar.TextStatus("Reading");
  EXPECT_EQ(drawn(), "status=Reading ");
  EXPECT_EQ(bar.TextStatus(), "Reading");
}

TEST_F(ClsProgressBarTest, A_value_draws_the_bar_then_the_percent_that_ends_where_the_bar_ends) {
  EXPECT_EQ(value(40), "events percent events box 1,7-2000,350 events percent=40% events percent@1300 ");
  EXPECT_EQ(bar.Value(), 40);
}

TEST_F(ClsProgressBarTest, The_maximum_gives_the_scale_to_the_pictures_width) {
  bar.Max(7);
  EXPECT_NE(value(3).find("box 1,7-2142,350"), std::string::npos);
  box.width = 700;
  bar.Max(7);
  EXPECT_EQ(bar.Max(), 7);
  EXPECT_NE(value(3).find("box 1,7-300,350"), std::string::npos);
  EXPECT_EQ(value(7), "events percent events box 1,7-700,350 events percent=100% events percent@0 ");
}

TEST_F(ClsProgressBarTest, With_a_maximum_of_0_a_value_does_nothing) {
  bar.Max(0);
  for (const double v : {0.0, 1.0, 50.0}) EXPECT_EQ(value(v), "");
  EXPECT_EQ(bar.Value(), 0);
}

TEST_F(ClsProgressBarTest, A_value_above_the_maximum_is_ignored_and_the_bar_stays) {
  value(40);
  EXPECT_EQ(value(100.5), "");
  EXPECT_EQ(bar.Value(), 40);
  EXPECT_NE(value(41), "");
}

TEST_F(ClsProgressBarTest, Only_whole_points_more_are_drawn) {
  EXPECT_EQ(value(0.5), "");
  EXPECT_EQ(bar.Value(), 0.5) << "the value is kept all the same";
  EXPECT_NE(value(1), "");
  EXPECT_EQ(value(1.9), "");
  EXPECT_NE(value(2.1), "");
  EXPECT_EQ(value(3), "");
  EXPECT_NE(value(3.2), "");
}

TEST_F(ClsProgressBarTest, A_hundred_thousand_items_are_drawn_a_hundred_times) {
  bar.Max(100'000);
  int draws = 0;
  for (int i = 1; i <= 100'000; ++i)
    if (!value(i).empty()) ++draws;
  EXPECT_EQ(draws, 100);
}

TEST_F(ClsProgressBarTest, Every_one_of_a_hundred_steps_is_drawn) {
  for (int i = 1; i <= 100; ++i) EXPECT_NE(value(i), "") << i;
}

TEST_F(ClsProgressBarTest, A_value_that_went_back_is_not_drawn_until_it_passes_the_last_one) {
  value(40);
  EXPECT_EQ(value(10), "");
  EXPECT_EQ(value(40.5), "");
  EXPECT_NE(value(41), "");
}

TEST_F(ClsProgressBarTest, A_bar_shorter_than_one_unit_is_not_drawn_and_its_percent_not_noted) {
  box.width = 10;
  bar.Max(100);
  EXPECT_EQ(value(9.5), "");
  // Had 9.5 been noted, 10 would be less than a point above it.
  EXPECT_NE(value(10).find("box 1,7-1,350"), std::string::npos);
}

TEST_F(ClsProgressBarTest, Half_a_percent_is_rounded_to_the_even_neighbour) {
  const struct {
    double value;
    const char* text;
  } cases[] = {{2.5, "=2%"}, {3.5, "=4%"}, {5.4, "=5%"}, {6.6, "=7%"}, {99.5, "=100%"}};
  for (const auto& [v, text] : cases) EXPECT_NE(value(v).find(text), std::string::npos) << v;
}

TEST_F(ClsProgressBarTest, A_new_maximum_and_a_new_label_forget_what_was_drawn_last) {
  value(40);
  EXPECT_EQ(value(20), "");
  bar.Max(100);
  EXPECT_NE(value(20), "");
  bar.Label(&percent);
  drawn();
  EXPECT_NE(value(20), "");
}

TEST_F(ClsProgressBarTest, The_bar_grows_and_only_Refresh_clears_it) {
  value(10);
  EXPECT_EQ(value(20).find("clear"), std::string::npos);
  bar.Refresh();
  EXPECT_EQ(drawn(), "clear 0,0-5000,350 ");
}

TEST_F(ClsProgressBarTest, What_is_no_amount_draws_nothing) {
  EXPECT_EQ(value(-5), "");
  EXPECT_EQ(value(std::numeric_limits<double>::quiet_NaN()), "");
  EXPECT_EQ(value(-std::numeric_limits<double>::infinity()), "");
  bar.Max(std::numeric_limits<double>::infinity());
  EXPECT_EQ(value(1e300), "");
  bar.Max(-3);
  EXPECT_EQ(value(-4), "");
}

TEST_F(ClsProgressBarTest, Whatever_is_missing_is_not_drawn_on) {
  bar.Label(nullptr);
  bar.LabelStatus(nullptr);
  bar.TextStatus("Reading");
  EXPECT_EQ(value(40), "events events box 1,7-2000,350 events events ");
  bar.Picture(nullptr);
  bar.Refresh();
  EXPECT_EQ(drawn(), "");
  bar.Max(100);
  EXPECT_EQ(value(40), "");
}

TEST_F(ClsProgressBarTest, A_value_that_is_set_while_events_run_is_drawn_within) {
  screen.onEvents = [this] {
    if (screen.events == 1) bar.Value(50);
  };
  const std::string text = value(40);
  EXPECT_LT(text.find("box 1,7-2500,350"), text.find("box 1,7-2000,350"));
}

}  // namespace
}  // namespace tandemize
