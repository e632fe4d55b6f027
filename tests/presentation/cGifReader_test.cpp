#include "presentation/cGifReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "platform/errors.h"
#include "presentation/GifReaderTest.h"

namespace tandemize {
namespace {

using namespace test;

using cGifReaderTest = GifReaderTest;

TEST_F(cGifReaderTest, Init_reads_the_header_and_the_palette) {
  for (const char* signature : {"GIF87a", "GIF89a"}) {
    const std::string bytes = gifStart(300, 2, kFourColours, signature) + std::string(kGifEnd);
    open(bytes);
    EXPECT_EQ(reader.SigVersion(), signature);
    EXPECT_EQ(reader.Filename(), path(bytes));
    EXPECT_EQ(reader.ScreenWidth(), 300);
    EXPECT_EQ(reader.ScreenHeight(), 2);
    EXPECT_TRUE(reader.HasGlobalLut());
    EXPECT_EQ(reader.GlobalLutSize(), 4);
    EXPECT_EQ(reader.FrameIndex(), -1);
    EXPECT_FALSE(reader.Eof());
    EXPECT_EQ(reader.DelayTime(), 0);
    EXPECT_FALSE(reader.IsTransparent());
    EXPECT_EQ(reader.ImageWidth(), 0);
  }
}

TEST_F(cGifReaderTest, Palettes_have_2_to_256_colours) {
  for (int size = 2; size <= 256; size *= 2) {
    std::string palette(static_cast<std::size_t>(size) * 3, '\0');
    std::iota(palette.begin(), palette.end(), '\1');
    open(gifStart(1, 1, palette) + gifImage(0, 0, 1, 1, gifData({0}, 2)) + std::string(kGifEnd));
    EXPECT_EQ(reader.GlobalLutSize(), size);
    ASSERT_TRUE(reader.MoveNext());
    const auto& lut = reader.ImageLut();
    EXPECT_EQ(std::string(lut.begin(), lut.begin() + size * 3), palette);
  }
}

TEST_F(cGifReaderTest, A_file_without_a_palette_has_a_black_one) {
  open(gifStart(1, 1, "") + gifImage(0, 0, 1, 1, gifData({1}, 2)) + std::string(kGifEnd));
  EXPECT_FALSE(reader.HasGlobalLut());
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.ImageLut(), (std::array<std::uint8_t, 768>{}));
}

TEST_F(cGifReaderTest, What_has_another_signature_is_no_GIF) {
  for (const char* bytes :
       {"", "GIF8", "GIF88a______________", "gif89a______________", "BM__________________"})
    expectInitError(bytes, ErroreGifNonValida);
  EXPECT_FALSE(reader.Init(path("")));
  EXPECT_EQ(reader.Errore().Descrizione, "Invalid GIF file");
}

TEST_F(cGifReaderTest, A_header_that_is_cut_short_ends_past_the_file) {
  const std::string bytes = start();
  for (std::size_t length = 6; length < bytes.size(); ++length)
    expectInitError(bytes.substr(0, length), ErroreFineFile);
}

TEST_F(cGifReaderTest, A_file_that_cannot_be_read_gives_the_systems_number) {
  EXPECT_FALSE(reader.Init(platform::toProgram(folder.host("none.gif"))));
  EXPECT_EQ(reader.Errore().Numero, platform::kFileNotFound);
  EXPECT_EQ(reader.Errore().Descrizione, platform::systemErrorText(platform::kFileNotFound));
  EXPECT_FALSE(folder.exists("none.gif"));
}

TEST_F(cGifReaderTest, A_file_above_the_limit_is_not_read) {
  expectInitError(start() + std::string(DimensioneMassimaGif, '\0'), platform::kFileTooLarge);
}

TEST_F(cGifReaderTest, Screens_and_images_above_the_limit_are_refused) {
  expectInitError(gifStart(65535, 65535, ""), ErroreGifTroppoGrande);
  expectInitError(gifStart(4096, 4097, ""), ErroreGifTroppoGrande);
  open(gifStart(4096, 4096, ""));
  expectError(oneImage(65535, 65535, gifData({1}, 2)), ErroreGifTroppoGrande, "Image too large");
}

TEST_F(cGifReaderTest, Another_Init_forgets_the_file_before) {
  open(smallAnimation());
  while (reader.MoveNext()) continue;
  EXPECT_EQ(reader.DelayTime(), 9);
  open(gifStart(1, 1, "") + gifImage(0, 0, 1, 1, gifData({1}, 2)) + std::string(kGifEnd));
  EXPECT_EQ(reader.FrameIndex(), -1);
  EXPECT_FALSE(reader.Eof());
  EXPECT_EQ(reader.DelayTime(), 0);
  EXPECT_EQ(reader.ImageWidth(), 0);
  EXPECT_TRUE(reader.ImageBits().empty());
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.ImageLut()[3], 0);
}

TEST_F(cGifReaderTest, Nothing_moves_before_a_file_is_open) {
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_FALSE(reader.MoveFirst());
  EXPECT_FALSE(reader.MoveLast());
  EXPECT_EQ(reader.Errore().Numero, 0);
}

// --- walking the blocks ---

TEST_F(cGifReaderTest, MoveNext_walks_the_images_with_their_own_descriptors_and_delays) {
  open(smallAnimation());
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.FrameIndex(), 0);
  EXPECT_EQ(reader.DelayTime(), 7);
  EXPECT_FALSE(reader.IsTransparent());
  EXPECT_EQ(reader.ImageBits(), (Pixels{1, 1, 2, 2, 1, 1, 2, 2, 3, 3, 0, 0, 3, 3, 0, 0}));
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.FrameIndex(), 1);
  EXPECT_EQ(reader.DelayTime(), 8);
  EXPECT_TRUE(reader.IsTransparent());
  EXPECT_EQ(reader.TransparentIndex(), 0);
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.FrameIndex(), 2);
  EXPECT_FALSE(reader.IsTransparent());
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_TRUE(reader.Eof());
  EXPECT_EQ(reader.Errore().Numero, 0);
}

TEST_F(cGifReaderTest, Images_smaller_than_the_screen_expand_to_their_own_size) {
  open(smallAnimation());
  ASSERT_TRUE(reader.MoveNext() && reader.MoveNext());
  EXPECT_EQ(reader.ImageLeft(), 1);
  EXPECT_EQ(reader.ImageTop(), 1);
  EXPECT_EQ(reader.ImageWidth(), 2);
  EXPECT_EQ(reader.ImageHeight(), 2);
  EXPECT_EQ(reader.ImageBits(), (Pixels{0, 3, 1, 0}));
}

TEST_F(cGifReaderTest, Words_are_unsigned_and_low_byte_first) {
  open(start() + gifControl(65000, 250) + gifImage(40000, 50000, 1, 1, gifData({1}, 2)) +
       std::string(kGifEnd));
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.DelayTime(), 65000);
  EXPECT_EQ(reader.TransparentIndex(), 250);
  EXPECT_EQ(reader.ImageLeft(), 40000);
  EXPECT_EQ(reader.ImageTop(), 50000);
}

TEST_F(cGifReaderTest, MoveNext_behind_the_trailer_gives_false_and_looks_at_nothing) {
  open(std::string(start()) + std::string(kGifEnd) + gifImage(0, 0, 1, 1, gifData({1}, 2)));
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_TRUE(reader.Eof());
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(reader.MoveNext());
    EXPECT_EQ(reader.Errore().Numero, 0);
    EXPECT_EQ(reader.FrameIndex(), -1);
  }
}

TEST_F(cGifReaderTest, Without_a_control_extension_the_delay_stays_at_its_earlier_value) {
  const std::string image = gifImage(0, 0, 1, 1, gifData({1}, 2));
  open(start() + image + gifControl(12, 3) + image + image + std::string(kGifEnd));
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.DelayTime(), 0);
  EXPECT_FALSE(reader.IsTransparent());
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(reader.MoveNext());
    EXPECT_EQ(reader.DelayTime(), 12);
    EXPECT_EQ(reader.TransparentIndex(), 3);
  }
}

TEST_F(cGifReaderTest, Other_extensions_and_zero_bytes_between_the_blocks_are_passed_over) {
  const std::string application("!\xFF\x0BNETSCAPE2.0\x03\x01\x00\x00\x00", 19);
  expectPixels(start() + application + std::string(3, '\0') + gifComment("a;,!") + gifComment("") +
                   gifImage(0, 0, 1, 1, gifData({2}, 2)) + std::string(kGifEnd),
               {2});
}

TEST_F(cGifReaderTest, An_unknown_block_is_an_error_and_another_call_goes_on_behind_it) {
  const std::string bytes =
      start() + "x" + gifImage(0, 0, 1, 1, gifData({2}, 2)) + "y" + std::string(kGifEnd);
  expectError(bytes, ErroreBloccoImprevisto, "Unexpected image block");
  EXPECT_EQ(reader.FrameIndex(), -1);
  EXPECT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.ImageBits(), Pixels{2});
  EXPECT_EQ(reader.Errore().Numero, 0);
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_EQ(reader.Errore().Numero, ErroreBloccoImprevisto);
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_TRUE(reader.Eof());
}

TEST_F(cGifReaderTest, A_missing_trailer_is_the_end_of_the_file_and_not_of_the_images) {
  open(start() + gifImage(0, 0, 1, 1, gifData({2}, 2)));
  EXPECT_TRUE(reader.MoveNext());
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(reader.MoveNext());
    EXPECT_EQ(reader.Errore().Numero, ErroreFineFile);
    EXPECT_FALSE(reader.Eof());
  }
  EXPECT_EQ(reader.Errore().Descrizione, "Input past end of file");
}

TEST_F(cGifReaderTest, MoveFirst_starts_again_behind_the_palette) {
  open(smallAnimation());
  while (reader.MoveNext()) continue;
  EXPECT_TRUE(reader.MoveFirst());
  EXPECT_EQ(reader.FrameIndex(), -1);
  EXPECT_FALSE(reader.Eof());
  EXPECT_EQ(reader.DelayTime(), 9) << "the control extension stays";
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(reader.FrameIndex(), 0);
  EXPECT_EQ(reader.ImageBits().size(), 16U);
}

TEST_F(cGifReaderTest, MoveLast_counts_the_images_and_expands_none) {
  open(smallAnimation());
  int images = 0;
  reader.FineImmagine = [&] { ++images; };
  EXPECT_TRUE(reader.MoveLast());
  EXPECT_EQ(reader.FrameIndex(), 2);
  EXPECT_TRUE(reader.Eof());
  EXPECT_EQ(reader.ImageLeft(), 2) << "the descriptors are read";
  EXPECT_EQ(reader.DelayTime(), 0) << "the extensions are not";
  EXPECT_TRUE(reader.ImageBits().empty());
  EXPECT_EQ(images, 0);
  EXPECT_TRUE(reader.MoveLast());
  EXPECT_EQ(reader.FrameIndex(), 2);
}

TEST_F(cGifReaderTest, MoveLast_counts_on_from_where_the_reader_stands) {
  open(smallAnimation());
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_TRUE(reader.MoveLast());
  EXPECT_EQ(reader.FrameIndex(), 2);
}

TEST_F(cGifReaderTest, MoveLast_counts_images_whose_data_no_expansion_could_read) {
  open(oneImage(2, 2, gifCodes(2, {4, 1, 7, 7})));
  EXPECT_TRUE(reader.MoveLast());
  EXPECT_EQ(reader.FrameIndex(), 0);
}

TEST_F(cGifReaderTest, MoveLast_tells_the_same_errors) {
  open(start() + "x" + std::string(kGifEnd));
  EXPECT_FALSE(reader.MoveLast());
  EXPECT_EQ(reader.Errore().Numero, ErroreBloccoImprevisto);
  EXPECT_TRUE(reader.MoveLast());
  open(start() + gifImage(0, 0, 1, 1, "\2\7abc"));
  EXPECT_FALSE(reader.MoveLast());
  EXPECT_EQ(reader.Errore().Numero, ErroreFineFile);
  EXPECT_FALSE(reader.Eof());
}

TEST_F(cGifReaderTest, A_palette_of_an_image_is_taken_for_its_data_and_the_colours_stay_the_files) {
  const std::string data = gifData({3, 2, 1, 0}, 2);
  // The descriptor announces two colours; the six bytes of theirs are the beginning of the data.
  expectPixels(oneImage(2, 2, data, 128), {3, 2, 1, 0});
  EXPECT_EQ(std::string(reader.ImageLut().begin(), reader.ImageLut().begin() + 12), kFourColours);

  // And with a real palette in front, its first byte is the number of bits, its second a sub-block's length.
  open(oneImage(2, 2, std::string("\xFF\0\0\0\xFF\0", 6) + data, 128));
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_EQ(reader.Errore().Numero, ErroreCodiceLzw);
}

TEST_F(cGifReaderTest, Interlaced_rows_stay_in_the_order_in_which_they_are_stored) {
  expectPixels(oneImage(1, 8, gifData({0, 1, 2, 3, 3, 2, 1, 0}, 2), 64), {0, 1, 2, 3, 3, 2, 1, 0});
}

// --- events ---

TEST_F(cGifReaderTest, Progress_is_told_when_ten_rows_have_been_finished_since_the_last_time) {
  std::vector<int> rows;
  int images = 0;
  reader.Avanzamento = [&](int row) { rows.push_back(row); };
  reader.FineImmagine = [&] { ++images; };
  // No string of these is longer than a row, so no row is jumped over.
  Pixels pixels(4 * 35);
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::uint8_t>(i / 2);
  open(start() + gifImage(0, 0, 4, 35, gifData(pixels, 8)) + std::string(kGifEnd));
  ASSERT_TRUE(reader.MoveNext());
  EXPECT_EQ(rows, (std::vector<int>{10, 20, 30}));
  EXPECT_EQ(images, 1);
}

TEST_F(cGifReaderTest, A_failed_image_tells_no_end) {
  int images = 0;
  reader.FineImmagine = [&] { ++images; };
  expectError(oneImage(2, 2, gifCodes(2, {4, 1, 7})), ErroreCodiceLzw, "Invalid LZW code encountered");
  EXPECT_EQ(images, 0);
}

// --- the text of an error ---

// "cGifReader.MoveNext(1)\r\n..." without the numbers of the lines.
std::string withoutLines(const std::string& trace) {
  std::string text;
  bool number = false;
  for (const char c : trace) {
    if (c == ')') number = false;
    if (!number) text += c;
    if (c == '(') number = true;
  }
  return text;
}

TEST_F(cGifReaderTest, An_error_carries_the_routines_that_it_came_through) {
  expectError(start() + gifImage(0, 0, 4, 4, "\2\1\x0C"), ErroreFineFile, "Input past end of file");
  const std::string& trace = reader.Errore().Sorgente;
  EXPECT_EQ(withoutLines(trace),
            "cGifReader.MoveNext()\r\ncGifReader.pvReadImage()\r\ncGifReader.pvLzwExpand()\r\n"
            "cGifReader.pvLzwReadCode()\r\ncGifReader.pvReadSubBlockByte()\r\ncGifReader.pvReadByte()\r\n"
            "Input past end of file");
  EXPECT_NE(trace.find('('), trace.find("()")) << "the lines are numbers";
  const std::string before = trace;
  EXPECT_FALSE(reader.Init(path("no GIF")));
  EXPECT_EQ(withoutLines(trace), "cGifReader.Init()\r\ncGifReader.pvReadHeader()\r\nInvalid GIF file");
}

TEST_F(cGifReaderTest, The_next_operation_forgets_an_error) {
  expectError(start() + "x" + std::string(kGifEnd), ErroreBloccoImprevisto, "Unexpected image block");
  EXPECT_TRUE(reader.MoveFirst());
  EXPECT_EQ(reader.Errore().Numero, 0);
  EXPECT_EQ(reader.Errore().Sorgente, "");
}

}  // namespace
}  // namespace tandemize
