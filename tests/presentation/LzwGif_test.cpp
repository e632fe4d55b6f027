// The expansion of an image's data.
#include <gtest/gtest.h>

#include <algorithm>

#include "presentation/GifReaderTest.h"

namespace tandemize {
namespace {

using namespace test;

using LzwGifTest = GifReaderTest;

TEST_F(LzwGifTest, Random_images_of_all_depths_come_back_as_they_were) {
  for (int bits = 2; bits <= 8; ++bits) {
    const Pixels pixels = randomPixels(150 * 90, 1U << bits, static_cast<unsigned>(bits));
    expectPixels(start() + gifImage(0, 0, 150, 90, gifData(pixels, bits)) + std::string(kGifEnd), pixels);
  }
}

TEST_F(LzwGifTest, Runs_of_one_colour_use_codes_that_are_not_in_the_table_yet) {
  expectPixels(oneImage(100, 100, gifData(Pixels(10000, 3), 2)), Pixels(10000, 3));
}

TEST_F(LzwGifTest, A_full_table_stays_good_until_the_next_clear_code) {
  const Pixels pixels = randomPixels(200 * 200, 16, 5);
  expectPixels(start() + gifImage(0, 0, 200, 200, gifData(pixels, 4, FullTable::goOn)) + std::string(kGifEnd),
               pixels);
}

TEST_F(LzwGifTest, Sub_blocks_of_any_length_make_one_stream) {
  LzwCodes codes;
  for (const std::uint32_t code : {4U, 1U, 2U}) codes.add(code, 3);
  codes.add(5, 3);
  for (std::size_t size = 1; size <= 3; ++size)
    expectPixels(oneImage(2, 1, "\2" + codes.subBlocks(true, size)), {1, 2});
}

TEST_F(LzwGifTest, The_first_code_is_thrown_away_whatever_it_is) {
  expectPixels(oneImage(2, 1, gifCodes(2, {3, 1, 2, 5})), {1, 2});
  expectPixels(oneImage(2, 1, gifCodes(2, {5, 1, 2, 5})), {1, 2});
}

TEST_F(LzwGifTest, The_code_behind_a_clear_code_is_a_pixel_even_if_it_is_a_clear_code_itself) {
  expectPixels(oneImage(2, 1, gifCodes(2, {4, 4, 2, 5})), {4, 2});
  expectPixels(oneImage(3, 1, gifCodes(2, {4, 1, 4, 7, 2, 5})), {1, 7, 2});
}

TEST_F(LzwGifTest, A_first_code_that_no_pixel_can_hold_is_an_error) {
  expectError(oneImage(2, 1, gifCodes(8, {256, 256})), ErroreCodiceLzw, "Invalid LZW code encountered");
}

TEST_F(LzwGifTest, An_end_code_before_the_image_is_full_leaves_the_rest_0) {
  expectPixels(oneImage(2, 2, gifCodes(2, {4, 1, 2, 5})), {1, 2, 0, 0});
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_TRUE(reader.Eof()) << "the data is read to its end";
}

TEST_F(LzwGifTest, Data_behind_a_full_image_is_passed_over) {
  const Pixels pixels = randomPixels(5000, 4, 9);
  const Pixels firstPart(pixels.begin(), pixels.begin() + 10);
  expectPixels(oneImage(5, 2, gifData(pixels, 2)), firstPart);
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_TRUE(reader.Eof());
}

TEST_F(LzwGifTest, A_string_longer_than_the_rest_of_the_image_is_cut) {
  expectPixels(oneImage(2, 1, gifCodes(2, {4, 1, 6, 5})), {1, 1});
}

TEST_F(LzwGifTest, An_image_without_pixels_has_no_pixels) {
  for (const auto& [width, height] : {std::pair(0, 5), std::pair(5, 0), std::pair(0, 0)}) {
    expectPixels(oneImage(width, height, gifCodes(2, {4, 1, 5})), {});
    EXPECT_FALSE(reader.MoveNext());
    EXPECT_TRUE(reader.Eof());
  }
}

TEST_F(LzwGifTest, A_code_beyond_the_next_one_is_an_error) {
  expectError(oneImage(2, 2, gifCodes(2, {4, 1, 7})), ErroreCodiceLzw, "Invalid LZW code encountered");
  EXPECT_EQ(reader.FrameIndex(), 0);
  EXPECT_EQ(reader.ImageBits(), (Pixels{1, 0, 0, 0}));
}

TEST_F(LzwGifTest, More_than_eleven_bits_are_an_error) {
  expectPixels(oneImage(2, 1, gifCodes(11, {2048, 1, 2, 2049})), {1, 2});
  for (const int bits : {12, 31, 32, 255})
    expectError(oneImage(2, 1, std::string(1, static_cast<char>(bits)) + std::string("\2\0\0\0", 4)),
                ErroreCodiceLzw, "Invalid LZW code encountered");
}

// Strings of one colour, each longer by 1 than the one before: the longest one of `count` has `count` pixels.
std::string growingStrings(std::uint32_t count) {
  LzwCodes codes;
  codes.add(4, 3);
  codes.add(3, 3);
  int bits = 3;
  for (std::uint32_t code = 6; code < count + 5; ++code) {
    codes.add(code, bits);
    if (code + 1 > (1U << bits) - 1 && bits < 12) ++bits;
  }
  codes.add(5, bits);
  return "\2" + codes.subBlocks();
}

TEST_F(LzwGifTest, The_stack_holds_a_string_of_4001_pixels_and_no_longer_one) {
  constexpr std::uint32_t Longest = 4001;
  const auto pixels = [&] { return std::count(reader.ImageBits().begin(), reader.ImageBits().end(), 3); };
  open(oneImage(4002, 2002, growingStrings(Longest)));
  ASSERT_TRUE(reader.MoveNext()) << reader.Errore().Sorgente;
  EXPECT_EQ(pixels(), Longest * (Longest + 1) / 2);
  expectError(oneImage(4002, 2002, growingStrings(Longest + 1)), ErroreOltreLaPila,
              "Past end of stack (stacksize=4000)");
  EXPECT_EQ(pixels(), Longest * (Longest + 1) / 2);
}

TEST_F(LzwGifTest, Codes_that_lead_round_in_a_circle_end_at_the_stack) {
  // Code 6 is taken as a pixel; the entry 6 that follows then has itself as its prefix.
  expectError(oneImage(4, 4, gifCodes(2, {4, 6, 1, 6})), ErroreOltreLaPila,
              "Past end of stack (stacksize=4000)");
}

TEST_F(LzwGifTest, An_empty_sub_block_counts_as_256_bytes_so_the_data_goes_on_behind_it) {
  // The pixels that the closed data lacks come from what follows: here 256 bytes, the first codes among them.
  LzwCodes first, second;
  for (const std::uint32_t code : {4U, 1U, 2U, 3U, 0U}) first.add(code, 3);  // a byte boundary is not hit
  const std::string closed = "\2" + first.subBlocks();
  std::string rest(256, '\0');
  open(oneImage(4, 4, closed + rest + std::string(1, '\0')));
  EXPECT_TRUE(reader.MoveNext()) << reader.Errore().Sorgente;
  EXPECT_EQ(reader.ImageBits()[0], 1);
  EXPECT_EQ(reader.ImageBits()[1], 2);
  EXPECT_FALSE(reader.MoveNext());
  EXPECT_TRUE(reader.Eof()) << "256 bytes were a sub-block, and the empty one behind them ended the data";
}

TEST_F(LzwGifTest, Data_that_ends_with_the_file_is_an_error_even_behind_an_empty_sub_block) {
  expectError(start() + gifImage(0, 0, 4, 4, gifCodes(2, {4, 1, 2})), ErroreFineFile,
              "Input past end of file");
}

TEST_F(LzwGifTest, An_image_does_not_hang_on_the_one_before_it) {
  // Its first code 7 is no entry; a table left over from another image would know it.
  const std::string odd = gifCodes(2, {4, 7, 1, 5});
  open(start() + gifImage(0, 0, 4, 4, gifData(randomPixels(16, 4, 3), 2)) + gifImage(0, 0, 2, 1, odd) +
       std::string(kGifEnd));
  ASSERT_TRUE(reader.MoveNext() && reader.MoveNext());
  const Pixels behind = reader.ImageBits();
  expectPixels(oneImage(2, 1, odd), behind);
}

}  // namespace
}  // namespace tandemize
