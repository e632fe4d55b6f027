#include "mail/Base64.h"

#include <gtest/gtest.h>

namespace tandemize {
namespace {

std::string coded(std::string_view text) {
  TabellaCodifica encode{};
  TabellaDecodifica decode{};
  PreparaBase64(encode, decode);
  ByteDati bytes, output;
  StringaInByte(text, bytes);
  CodificaBase64(bytes, output, encode);
  return {output.begin(), output.end()};
}

std::string inLines(std::size_t width, std::string_view text) {
  ByteDati bytes, output;
  StringaInByte(text, bytes);
  SpezzaRighe(width, bytes, output);
  return {output.begin(), output.end()};
}

TEST(CodificaBase64, Gives_the_standard_s_own_examples) {
  const struct {
    const char *text, *code;
  } rows[] = {{"", ""},
              {"f", "Zg=="},
              {"fo", "Zm8="},
              {"foo", "Zm9v"},
              {"foob", "Zm9vYg=="},
              {"fooba", "Zm9vYmE="},
              {"foobar", "Zm9vYmFy"}};
  for (const auto& row : rows) EXPECT_EQ(coded(row.text), row.code) << row.text;
}

TEST(CodificaBase64, Uses_the_whole_alphabet_and_bytes_above_127) {
  std::string all;
  for (unsigned i = 0; i < 64; i += 4) {
    const unsigned group = i << 18U | (i + 1) << 12U | (i + 2) << 6U | (i + 3);
    all += {static_cast<char>(group >> 16U), static_cast<char>(group >> 8U), static_cast<char>(group)};
  }
  EXPECT_EQ(coded(all), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
  EXPECT_EQ(coded(std::string("\0\xFF\xFE", 3)), "AP/+");
}

TEST(PreparaBase64, Its_decode_table_is_the_inverse_of_the_alphabet) {
  TabellaCodifica encode{};
  TabellaDecodifica decode{};
  PreparaBase64(encode, decode);
  int letters = 0;
  for (std::size_t byte = 0; byte < decode.size(); ++byte) {
    if (byte == '=') {
      EXPECT_EQ(decode[byte], 64);
    } else if (decode[byte] != 255) {
      EXPECT_EQ(encode.at(decode[byte]), byte);
      ++letters;
    }
  }
  EXPECT_EQ(letters, 64);
}

TEST(StringaInByte, Gives_the_bytes_of_the_text_as_they_are) {
  ByteDati bytes{1, 2};
  StringaInByte(std::string("à\0\xFF", 4), bytes);
  EXPECT_EQ(bytes, (ByteDati{0xC3, 0xA0, 0, 0xFF}));
}

TEST(SpezzaRighe, Ends_every_line_the_last_one_too_by_CR_LF) {
  EXPECT_EQ(inLines(4, "abcdefghij"), "abcd\r\nefgh\r\nij\r\n");
  EXPECT_EQ(inLines(4, "abcdefgh"), "abcd\r\nefgh\r\n");
  EXPECT_EQ(inLines(4, "abc"), "abc\r\n");
  EXPECT_EQ(inLines(4, ""), "");
}

TEST(SpezzaRighe, Fifty_seven_bytes_make_exactly_one_line_of_76_characters) {
  EXPECT_EQ(inLines(76, coded(std::string(57, 'x'))), coded(std::string(57, 'x')) + "\r\n");
  EXPECT_EQ(coded(std::string(57, 'x')).size(), 76U);
  EXPECT_EQ(inLines(76, coded(std::string(58, 'x'))), coded(std::string(57, 'x')) + "\r\neA==\r\n");
}

}  // namespace
}  // namespace tandemize
