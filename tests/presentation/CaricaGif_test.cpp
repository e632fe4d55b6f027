#include "presentation/CaricaGif.h"

#include <gtest/gtest.h>

#include "fixtures/GifFile.h"
#include "fixtures/ScriptedScreen.h"
#include "fixtures/TemporaryFolder.h"
#include "platform/paths.h"

namespace tandemize {
namespace {

using namespace test;

struct Picture : ControlloImmagine {
  void Mostra(const ImmagineBgr& image) override { shown.push_back(image.Byte); }
  std::vector<std::vector<std::uint8_t>> shown;
};

struct Timer : TimerFotogrammi {
  void Interval(int milliseconds) override { interval = milliseconds; }
  bool Enabled() const override { return on; }
  void Enabled(bool value) override {
    on = value;
    switched += value ? '+' : '-';
  }
  int interval = 0;
  bool on = false;
  std::string switched;
};

class CaricaGifTest : public ::testing::Test {
 protected:
  CaricaGifTest() { platform::setProgramFolder(folder.host()); }

  std::int32_t load(std::string_view bytes) {
    folder.write("a.gif", bytes);
    error =
        CaricaGif(platform::toProgram(folder.host("a.gif")), reader, count, current, picture, list, timer);
    return error.Numero;
  }
  void tick() { FotogrammaSuccessivo(current, picture, list, timer); }

  TemporaryFolder folder;
  ScriptedScreen screen;
  cGifReader reader;
  Picture picture;
  Timer timer;
  ListaFotogrammi list;
  std::size_t count = 99, current = 99;
  ErroreGif error;
};

using MostraFotogrammaTest = CaricaGifTest;

TEST_F(CaricaGifTest, All_pictures_are_made_and_shown_at_once_and_the_timer_goes_on) {
  EXPECT_EQ(load(smallAnimation()), 0);
  EXPECT_EQ(count, 3U);
  EXPECT_EQ(current, 3U);
  ASSERT_EQ(list.size(), 3U);
  ASSERT_EQ(picture.shown.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(picture.shown[i], list[i].Immagine.Byte);
  EXPECT_EQ(list[0].Delay, 7);
  EXPECT_EQ(list[2].Delay, 9);
  EXPECT_EQ(timer.switched, "+");
  EXPECT_EQ(screen.events, 4);
}

TEST_F(CaricaGifTest, The_timer_goes_on_only_behind_the_last_picture) {
  screen.onEvents = [this] { EXPECT_FALSE(timer.on); };
  EXPECT_EQ(load(smallAnimation()), 0);
  EXPECT_TRUE(timer.on);
}

TEST_F(CaricaGifTest, Another_file_takes_the_place_of_the_pictures_before) {
  EXPECT_EQ(load(smallAnimation()), 0);
  EXPECT_EQ(load(gifOf(2, 2, {1, 2, 3, 0})), 0);
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(list.size(), 1U);
}

TEST_F(CaricaGifTest, A_tick_while_the_file_is_loading_walks_through_the_pictures_so_far) {
  screen.onEvents = [this] { tick(); };
  EXPECT_EQ(load(smallAnimation()), 0);
  EXPECT_EQ(count, 3U);
}

TEST_F(CaricaGifTest, A_file_that_fails_leaves_the_window_without_an_animation) {
  const std::string image = gifImage(0, 0, 2, 1, gifData({1, 2}, 2));
  const struct {
    std::string bytes;
    std::int32_t number;
  } cases[] = {{"no GIF at all", ErroreGifNonValida},
               {gifStart(2, 1, kFourColours) + image, ErroreFineFile},
               {gifStart(2, 1, kFourColours) + image + "x;", ErroreBloccoImprevisto},
               {gifStart(2, 1, kFourColours) + image + gifImage(0, 0, 2, 1, gifCodes(2, {4, 1, 7})) + ";",
                ErroreCodiceLzw}};
  for (const auto& [bytes, number] : cases) {
    EXPECT_EQ(load(bytes), number);
    EXPECT_FALSE(error.Descrizione.empty());
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(current, 0U);
    EXPECT_FALSE(timer.on);
  }
}

TEST_F(CaricaGifTest, A_file_without_images_has_no_animation) {
  EXPECT_EQ(load(gifStart(2, 1, kFourColours) + ";"), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_FALSE(timer.on);
  tick();
  EXPECT_EQ(current, 0U);
}

TEST_F(CaricaGifTest, More_pictures_than_memory_should_hold_are_refused_before_any_is_made) {
  std::string bytes = gifStart(4096, 4096, kFourColours);
  for (int i = 0; i < 6; ++i) bytes += gifImage(0, 0, 1, 1, gifData({1}, 2));
  EXPECT_EQ(load(bytes + ";"), ErroreGifTroppoGrande);
  EXPECT_TRUE(picture.shown.empty());
}

TEST_F(CaricaGifTest, Images_far_larger_than_the_screen_count_as_well) {
  std::string bytes = gifStart(1, 1, kFourColours);
  for (int i = 0; i < 18; ++i) bytes += gifImage(0, 0, 4096, 4096, gifCodes(2, {4, 1, 5}));
  EXPECT_EQ(load(bytes + ";"), ErroreGifTroppoGrande);
  EXPECT_TRUE(list.empty());
  EXPECT_FALSE(timer.on);
}

TEST_F(CaricaGifTest, A_damaged_file_shows_whole_pictures_or_no_animation) {
  const std::string whole = smallAnimation();
  for (std::size_t i = 0; i < whole.size(); ++i)
    for (const int flip : {0x02, 0x80, 0xFF}) {
      timer.on = false;
      std::string damaged = whole;
      damaged[i] = static_cast<char>(damaged[i] ^ flip);
      const std::int32_t number = load(damaged);
      EXPECT_EQ(timer.on, number == 0 && count > 0) << i;
      EXPECT_EQ(list.size(), count);
      for (const Fotogramma& frame : list)
        EXPECT_EQ(frame.Immagine.Byte.size(),
                  frame.Immagine.Passo * static_cast<std::size_t>(frame.Immagine.Altezza));
      picture.shown.clear();
    }
}

TEST_F(MostraFotogrammaTest, A_picture_stays_for_its_delay_and_80_milliseconds_at_least) {
  const struct {
    int delay, milliseconds;
  } cases[] = {{0, 80}, {1, 80}, {7, 80}, {8, 80}, {9, 90}, {100, 1000}, {65535, 655350}};
  for (const auto& [delay, milliseconds] : cases) {
    list = {{{1, 1, 4, {1, 2, 3, 0}}, delay}};
    MostraFotogramma(picture, list, 1, timer);
    EXPECT_EQ(timer.interval, milliseconds) << delay;
  }
}

TEST_F(MostraFotogrammaTest, A_timer_that_is_on_begins_its_period_anew_and_one_that_is_off_stays_off) {
  list = {{{1, 1, 4, {1, 2, 3, 0}}, 9}};
  MostraFotogramma(picture, list, 1, timer);
  EXPECT_EQ(timer.switched, "");
  timer.on = true;
  MostraFotogramma(picture, list, 1, timer);
  EXPECT_EQ(timer.switched, "-+");
}

TEST_F(MostraFotogrammaTest, A_picture_that_the_list_lacks_shows_nothing) {
  list = {{{1, 1, 4, {1, 2, 3, 0}}, 9}};
  MostraFotogramma(picture, list, 0, timer);
  MostraFotogramma(picture, list, 2, timer);
  EXPECT_TRUE(picture.shown.empty());
  EXPECT_EQ(timer.interval, 0);
}

TEST_F(MostraFotogrammaTest, The_timer_walks_on_and_from_the_last_picture_to_the_first) {
  ASSERT_EQ(load(smallAnimation()), 0);
  picture.shown.clear();
  timer.switched.clear();
  for (int i = 0; i < 4; ++i) tick();
  EXPECT_EQ(current, 1U);
  ASSERT_EQ(picture.shown.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(picture.shown[i], list[i % 3].Immagine.Byte);
  EXPECT_EQ(timer.switched, "-+-+-+-+");
}

TEST_F(MostraFotogrammaTest, A_file_of_one_picture_shows_it_and_the_timer_draws_it_again) {
  ASSERT_EQ(load(gifOf(2, 2, {1, 2, 3, 0})), 0);
  EXPECT_TRUE(timer.on);
  tick();
  tick();
  EXPECT_EQ(current, 1U);
  ASSERT_EQ(picture.shown.size(), 3U);
  EXPECT_EQ(picture.shown[2], picture.shown[0]);
}

}  // namespace
}  // namespace tandemize
