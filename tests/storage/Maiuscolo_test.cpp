#include <gtest/gtest.h>

#include "storage/Percorsi.h"

namespace tandemize {
namespace {

TEST(Maiuscolo, Maps_one_character_to_one_whatever_the_language) {
  EXPECT_EQ(Maiuscolo("abc xyz_09.{"), "ABC XYZ_09.{");
  EXPECT_EQ(Maiuscolo("èéàù ÿ µ"), "ÈÉÀÙ Ÿ \u039C");
  EXPECT_EQ(Maiuscolo("ıiİI"), "IIİI");
  EXPECT_EQ(Maiuscolo("σς"), "ΣΣ");
  EXPECT_EQ(Maiuscolo("привет"), "ПРИВЕТ");
  EXPECT_EQ(Maiuscolo("\U00010428"), "\U00010400");
  EXPECT_EQ(Maiuscolo(""), "");
}

TEST(Maiuscolo, A_sharp_s_stays_as_it_is) {
  EXPECT_EQ(Maiuscolo("straße"), "STRAßE");
  EXPECT_EQ(Maiuscolo("\u1E9E"), "\u1E9E");
}

TEST(Maiuscolo, Bytes_that_are_not_utf8_stay_as_they_are) {
  EXPECT_EQ(Maiuscolo("a\xFF"
                      "b\xC3"),
            "A\xFF"
            "B\xC3");
  EXPECT_EQ(Maiuscolo("\xE8 perch\xE9"), "\xE8 PERCH\xE9");
  EXPECT_EQ(Maiuscolo(std::string("a\0b", 3)), std::string("A\0B", 3));
}

TEST(LunghezzaInCaratteri, Counts_characters_and_each_stray_byte_as_one) {
  EXPECT_EQ(LunghezzaInCaratteri(""), 0U);
  EXPECT_EQ(LunghezzaInCaratteri("abc"), 3U);
  EXPECT_EQ(LunghezzaInCaratteri("èà€\U00010428"), 4U);
  EXPECT_EQ(LunghezzaInCaratteri("a\xFF\xC3"), 3U);
}

}  // namespace
}  // namespace tandemize
