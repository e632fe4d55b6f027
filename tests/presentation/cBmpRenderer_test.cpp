#include "presentation/cBmpRenderer.h"

#include <gtest/gtest.h>

#include "fixtures/GifFile.h"
#include "fixtures/TemporaryFolder.h"
#include "platform/paths.h"
#include "storage/clsCRC.h"

namespace tandemize {
namespace {

using namespace test;

// One letter a pixel: the four colours of the fixtures, the pattern's two greys, "?" for anything else.
char letter(const std::uint8_t* bgr) {
  for (std::size_t i = 0; i < 4; ++i) {
    const auto* rgb = reinterpret_cast<const std::uint8_t*>(kFourColours.data()) + 3 * i;
    if (bgr[0] == rgb[2] && bgr[1] == rgb[1] && bgr[2] == rgb[0]) return "krgb"[i];
  }
  if (bgr[0] != bgr[1] || bgr[1] != bgr[2]) return '?';
  return bgr[0] == 255 ? '.' : bgr[0] == 204 ? ':' : '?';
}

std::string rows(const ImmagineBgr& image) {
  std::string text;
  for (int y = 0; y < image.Altezza; ++y) {
    for (int x = 0; x < image.Larghezza; ++x)
      text +=
          letter(&image.Byte[static_cast<std::size_t>(y) * image.Passo + static_cast<std::size_t>(x) * 3]);
    text += '\n';
  }
  return text;
}

class cBmpRendererTest : public ::testing::Test {
 protected:
  cBmpRendererTest() { platform::setProgramFolder(folder.host()); }

  void open(std::string_view bytes) {
    folder.write("a.gif", bytes);
    ASSERT_TRUE(reader.Init(platform::toProgram(folder.host("a.gif"))));
    ASSERT_TRUE(renderer.Init(reader));
  }
  std::string next() { return renderer.MoveNext() ? rows(renderer.Image()) : "no image"; }

  TemporaryFolder folder;
  cGifReader reader;
  cBmpRenderer renderer;
};

TEST_F(cBmpRendererTest, Takes_the_readers_screen_for_its_size_and_rounds_rows_up_to_four_bytes) {
  struct {
    int width;
    std::size_t stride;
  } const cases[] = {{1, 4}, {2, 8}, {3, 12}, {4, 12}, {5, 16}, {96, 288}};
  for (const auto& [width, stride] : cases) {
    open(gifStart(width, 3, kFourColours));
    EXPECT_EQ(renderer.ScreenWidth(), width);
    EXPECT_EQ(renderer.ScreenHeight(), 3);
    EXPECT_EQ(renderer.Reader(), &reader);
    EXPECT_EQ(renderer.Image().Passo, stride);
    EXPECT_EQ(renderer.Image().Byte.size(), stride * 3);
  }
}

TEST_F(cBmpRendererTest, Without_an_open_file_there_is_nothing_to_render) {
  EXPECT_FALSE(renderer.Init(reader));
  EXPECT_FALSE(renderer.MoveNext());
  renderer.MoveFirst();
  renderer.MergeCurrentImage();
  EXPECT_TRUE(renderer.Image().Byte.empty());
  EXPECT_TRUE(renderer.Eof());
}

TEST_F(cBmpRendererTest, The_canvas_starts_as_squares_of_eight_pixels_in_two_greys) {
  open(gifStart(18, 18, kFourColours));
  const std::string even = "........::::::::..\n", odd = "::::::::........::\n";
  std::string expected;
  for (int y = 0; y < 18; ++y) expected += y / 8 % 2 == 0 ? even : odd;
  EXPECT_EQ(rows(renderer.Image()), expected);
  // The filling behind a row goes on with the pattern: 54 bytes of pixels, 2 more.
  EXPECT_EQ(renderer.Image().Byte[55], 255);
  EXPECT_EQ(renderer.Image().Byte[8 * 56 + 55], 204);
}

TEST_F(cBmpRendererTest, Pixels_are_blue_green_red_from_the_top_row_down) {
  open(gifOf(2, 2, {1, 2, 3, 0}));
  ASSERT_TRUE(renderer.MoveNext());
  const std::vector<std::uint8_t> expected = {0x14, 0x0A, 0xC8, 0x1E, 0xC8, 0x0A, 255, 255,
                                              0xC8, 0x19, 0x0F, 0,    0,    0,    255, 255};
  EXPECT_EQ(renderer.Image().Byte, expected);
}

TEST_F(cBmpRendererTest, An_image_on_a_part_of_the_screen_keeps_what_is_around_it) {
  open(smallAnimation());
  EXPECT_EQ(next(), "rrgg\nrrgg\nbbkk\nbbkk\n");
  // Its colour 0 is transparent: those before it shine through.
  EXPECT_EQ(next(), "rrgg\nrrbg\nbrkk\nbbkk\n");
  // The image before it asked to stay, this one covers two pixels of the first.
  EXPECT_EQ(next(), "rrbk\nrrbg\nbrkk\nbbkk\n");
  EXPECT_EQ(next(), "no image");
  EXPECT_TRUE(renderer.Eof());
}

TEST_F(cBmpRendererTest, Transparent_pixels_of_the_first_image_show_the_pattern) {
  open(gifStart(9, 1, kFourColours) + gifControl(0, 2) +
       gifImage(0, 0, 9, 1, gifData({2, 1, 2, 2, 2, 2, 2, 2, 2}, 2)) + std::string(kGifEnd));
  EXPECT_EQ(next(), ".r......:\n");
}

TEST_F(cBmpRendererTest, A_transparent_index_without_its_flag_is_a_colour) {
  std::string control = gifControl(0, 1);
  control[3] = '\0';
  open(gifStart(2, 1, kFourColours) + control + gifImage(0, 0, 2, 1, gifData({1, 2}, 2)) +
       std::string(kGifEnd));
  EXPECT_EQ(next(), "rg\n");
}

TEST_F(cBmpRendererTest, All_disposal_methods_leave_the_image) {
  for (int disposal = 0; disposal <= 7; ++disposal) {
    open(gifStart(2, 1, kFourColours) + gifControl(0, -1, disposal) +
         gifImage(0, 0, 2, 1, gifData({1, 1}, 2)) + gifControl(0, -1, disposal) +
         gifImage(1, 0, 1, 1, gifData({2}, 2)) + std::string(kGifEnd));
    EXPECT_EQ(next(), "rr\n");
    EXPECT_EQ(next(), "rg\n") << disposal;
  }
}

TEST_F(cBmpRendererTest, Interlaced_rows_appear_in_the_order_in_which_they_are_stored) {
  open(gifStart(1, 8, kFourColours) + gifImage(0, 0, 1, 8, gifData({0, 1, 2, 3, 1, 1, 2, 2}, 2), 64) +
       std::string(kGifEnd));
  EXPECT_EQ(next(), "k\nr\ng\nb\nr\nr\ng\ng\n");
}

TEST_F(cBmpRendererTest, What_sticks_out_of_the_screen_is_cut_off) {
  const std::string image = gifData(Pixels(9, 1), 2);
  const struct {
    int left, top;
    const char* expected;
  } cases[] = {{1, 1, "...\n.rr\n.rr\n"}, {2, 0, "..r\n..r\n..r\n"},         {0, 2, "...\n...\nrrr\n"},
               {3, 0, "...\n...\n...\n"}, {65535, 65535, "...\n...\n...\n"}, {0, 3, "...\n...\n...\n"}};
  for (const auto& [left, top, expected] : cases) {
    open(gifStart(3, 3, kFourColours) + gifImage(left, top, 3, 3, image) + std::string(kGifEnd));
    EXPECT_EQ(next(), expected) << left << "," << top;
  }
}

TEST_F(cBmpRendererTest, An_index_beyond_the_palette_is_black) {
  open(gifStart(1, 1, kFourColours) + gifImage(0, 0, 1, 1, gifData({200}, 8)) + std::string(kGifEnd));
  EXPECT_EQ(next(), "k\n");
}

TEST_F(cBmpRendererTest, MoveFirst_begins_with_the_pattern_again) {
  open(smallAnimation());
  while (renderer.MoveNext()) continue;
  renderer.MoveFirst();
  EXPECT_EQ(rows(renderer.Image()), "....\n....\n....\n....\n");
  EXPECT_FALSE(renderer.Eof());
  EXPECT_EQ(next(), "rrgg\nrrgg\nbbkk\nbbkk\n");
}

TEST_F(cBmpRendererTest, A_damaged_image_leaves_the_canvas_and_the_reader_tells_why) {
  open(gifStart(2, 1, kFourColours) + gifImage(0, 0, 2, 1, gifData({1, 2}, 2)) +
       gifImage(0, 0, 2, 1, gifCodes(2, {4, 1, 7})) + std::string(kGifEnd));
  EXPECT_EQ(next(), "rg\n");
  EXPECT_EQ(next(), "no image");
  EXPECT_EQ(reader.Errore().Numero, ErroreCodiceLzw);
  EXPECT_EQ(rows(renderer.Image()), "rg\n");
}

TEST_F(cBmpRendererTest, A_screen_without_pixels_takes_any_image) {
  for (const auto& [width, height] : {std::pair(0, 4), std::pair(4, 0), std::pair(0, 0)}) {
    open(gifStart(width, height, kFourColours) + gifImage(0, 0, 2, 1, gifData({1, 2}, 2)) +
         std::string(kGifEnd));
    EXPECT_TRUE(renderer.MoveNext());
    EXPECT_TRUE(renderer.Image().Byte.empty());
  }
}

// The checksums are those of the pictures that another decoder makes of the file:
// "convert Scansione.Gif -coalesce -depth 8 bgr:-", cut every 96 * 64 * 3 bytes.
TEST_F(cBmpRendererTest, The_pictures_of_the_shipped_animation_are_those_of_another_decoder) {
  const std::uint32_t sums[] = {0xF9531A66, 0x2CCF6AA9, 0xFFDCB98C, 0xEDC70E63, 0xAAE3CBA9, 0xA45DE177,
                                0x7B828883, 0x3E6F280E, 0xCDA9FB84, 0xD6A7EEF5, 0x49949AAA, 0xC6965CFD,
                                0x0DE62A61, 0x55941846, 0x6E837E42, 0xF37C8D0C, 0x3E65F6CB, 0x34424B43,
                                0x7B828883, 0x2F7273E2, 0x8644A736, 0x3F417A95, 0x33E52018, 0xBD3D4469};
  open(readHostFile(std::string(TANDEMIZE_DATA) + "/Gif/Scansione.Gif"));
  for (const std::uint32_t sum : sums) {
    ASSERT_TRUE(renderer.MoveNext());
    ASSERT_EQ(renderer.Image().Byte.size(), 96U * 64U * 3U);
    EXPECT_EQ(reader.DelayTime(), 8);
    EXPECT_EQ(static_cast<std::uint32_t>(clsCRC().CalculateBytes(renderer.Image().Byte).value()), sum)
        << reader.FrameIndex();
  }
  EXPECT_FALSE(renderer.MoveNext());
  EXPECT_TRUE(renderer.Eof());
  const auto* pixel = &renderer.Image().Byte[30 * 288 + 5 * 3];
  EXPECT_EQ((std::vector<int>{pixel[2], pixel[1], pixel[0]}), (std::vector<int>{188, 230, 247}));
}

}  // namespace
}  // namespace tandemize
