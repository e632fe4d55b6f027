#include "presentation/windows/ImmagineGif.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>
#include <QTimerEvent>
#include <memory>

#include "fixtures/GifFile.h"
#include "fixtures/windows/Desktop.h"
#include "fixtures/windows/WhileEventsRun.h"
#include "platform/paths.h"

namespace tandemize {
namespace {

using namespace test;

constexpr QRgb Black = 0xFF000000, Red = 0xFFC80A14, Green = 0xFF0AC81E, Blue = 0xFF0F19C8;

class ImmagineGifTest : public ::testing::Test {
 protected:
  bool run(std::string_view bytes) {
    desktop.folder.work().write("a.gif", bytes);
    animation = std::make_shared<AnimazioneGif>(picture.get(), timer.get());
    return animation->Esegui(desktop.folder.program("a.gif"));
  }
  // What stands on the screen, pixel by pixel.
  QImage seen() { return picture->grab().toImage().convertToFormat(QImage::Format_RGB32); }
  static QImage pixels(int width, const std::vector<QRgb>& rows) {
    QImage image(width, static_cast<int>(rows.size()) / width, QImage::Format_RGB32);
    for (int i = 0; i < static_cast<int>(rows.size()); ++i)
      image.setPixel(i % width, i / width, rows[static_cast<std::size_t>(i)]);
    return image;
  }

  Desktop desktop{false};
  std::unique_ptr<ImmagineGif> picture = std::make_unique<ImmagineGif>("PictureGif");
  std::unique_ptr<QTimer> timer = std::make_unique<QTimer>();
  std::shared_ptr<AnimazioneGif> animation;
};

TEST_F(ImmagineGifTest, Each_frame_is_on_the_screen_pixel_by_pixel) {
  ASSERT_TRUE(run(smallAnimation()));
  picture->resize(picture->sizeHint());
  const std::vector<QRgb> first = {Red,  Red,  Green, Green, Red,  Red,  Green, Green,
                                   Blue, Blue, Black, Black, Blue, Blue, Black, Black};
  // The second image lies over the middle, transparent where it is 0; the third over the top right.
  std::vector<QRgb> second = first, third;
  second[6] = Blue;
  second[9] = Red;
  third = second;
  third[2] = Blue;
  third[3] = Black;
  EXPECT_EQ(seen(), pixels(4, third)) << "the last picture stands when the file is loaded";
  animation->Avanza();
  EXPECT_EQ(seen(), pixels(4, first));
  animation->Avanza();
  EXPECT_EQ(seen(), pixels(4, second));
  animation->Avanza();
  EXPECT_EQ(seen(), pixels(4, third));
}

TEST_F(ImmagineGifTest, Rows_that_are_no_multiple_of_four_bytes_keep_their_place) {
  ASSERT_TRUE(run(gifOf(3, 2, {0, 1, 2, 3, 2, 1})));
  picture->resize(picture->sizeHint());
  EXPECT_EQ(seen(), pixels(3, {Black, Red, Green, Blue, Green, Red}));
}

TEST_F(ImmagineGifTest, A_delay_of_7_8_and_9_gives_the_timer_80_80_and_90_milliseconds) {
  ASSERT_TRUE(run(smallAnimation()));
  EXPECT_TRUE(timer->isActive());
  std::vector<int> intervals;
  for (int i = 0; i < 3; ++i) {
    animation->Avanza();
    intervals.push_back(timer->interval());
  }
  EXPECT_EQ(intervals, (std::vector<int>{80, 80, 90}));
}

TEST_F(ImmagineGifTest, A_single_frame_shows_and_the_timer_draws_it_again) {
  ASSERT_TRUE(run(gifOf(2, 1, {1, 2})));
  picture->resize(picture->sizeHint());
  int drawn = 0;
  picture->Cambiata = [&] { ++drawn; };
  EXPECT_TRUE(timer->isActive());
  animation->Avanza();
  animation->Avanza();
  EXPECT_EQ(drawn, 2);
  EXPECT_EQ(seen(), pixels(2, {Red, Green}));
}

TEST_F(ImmagineGifTest, A_damaged_file_leaves_an_empty_picture_and_no_timer) {
  const std::string image = gifImage(0, 0, 2, 1, gifData({1, 2}, 2));
  for (const std::string& bytes :
       {std::string("no GIF at all"), std::string(), gifStart(2, 1, kFourColours) + image,
        gifStart(2, 1, kFourColours) + image + "x;",
        gifStart(2, 1, kFourColours) + image + gifImage(0, 0, 2, 1, gifCodes(2, {4, 1, 7})) + ";",
        gifStart(2, 1, kFourColours) + ";"}) {
    timer->start(80);
    EXPECT_FALSE(run(bytes));
    EXPECT_FALSE(timer->isActive());
    EXPECT_TRUE(picture->Immagine().isNull());
    EXPECT_TRUE(picture->isHidden());
    animation->Avanza();
    EXPECT_TRUE(picture->Immagine().isNull());
  }
}

TEST_F(ImmagineGifTest, Another_size_takes_the_room_that_it_needs) {
  ASSERT_TRUE(run(gifOf(2, 1, {1, 2})));
  EXPECT_EQ(picture->sizeHint(), QSize(2, 1));
  ASSERT_TRUE(run(smallAnimation()));
  EXPECT_EQ(picture->sizeHint(), QSize(4, 4));
}

TEST_F(ImmagineGifTest, The_window_may_go_while_the_file_is_loading) {
  const WhileEventsRun during([this] {
    picture.reset();
    timer.reset();
  });
  run(smallAnimation());
  EXPECT_EQ(picture, nullptr);
  animation->Avanza();
}

TEST_F(ImmagineGifTest, The_shipped_animation_runs) {
  desktop.folder.work().write("a.gif", readHostFile(std::string(TANDEMIZE_DATA) + "/Gif/Scansione.Gif"));
  animation = std::make_shared<AnimazioneGif>(picture.get(), timer.get());
  EXPECT_TRUE(animation->Esegui(desktop.folder.program("a.gif")));
  EXPECT_EQ(picture->sizeHint(), QSize(96, 64));
}

}  // namespace
}  // namespace tandemize
