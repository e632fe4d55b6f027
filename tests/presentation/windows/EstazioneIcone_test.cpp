#include "presentation/windows/EstazioneIcone.h"

#include <gtest/gtest.h>

#include "fixtures/windows/Desktop.h"

namespace tandemize {
namespace {

TEST(EstazioneIcone, An_extension_costs_one_question_whatever_its_letter_case) {
  const test::Desktop desktop;
  const int before = IconeChieste();
  EXPECT_FALSE(IconaFile("C:\\a\\one.qzq", 16).isNull());
  EXPECT_FALSE(IconaFile("D:\\b\\two.QZQ", 16).isNull());
  EXPECT_FALSE(IconaFile("/ftp/three.Qzq", 32).isNull());
  EXPECT_EQ(IconeChieste() - before, 1);
}

TEST(EstazioneIcone, Programs_and_icons_are_asked_for_one_by_one) {
  const test::Desktop desktop;
  const int before = IconeChieste();
  EXPECT_FALSE(IconaFile("C:\\one.exe", 16).isNull());
  EXPECT_FALSE(IconaFile("C:\\two.EXE", 16).isNull());
  EXPECT_FALSE(IconaFile("C:\\three.ico", 16).isNull());
  EXPECT_EQ(IconeChieste() - before, 3);
}

TEST(EstazioneIcone, A_file_without_a_name_has_a_key_of_its_own) {
  EXPECT_EQ(ChiaveIcona("C:\\folder\\"), "&&_._&&/ \\");
  EXPECT_EQ(ChiaveIcona("C:\\folder.d\\name"), "");
  EXPECT_EQ(ChiaveIcona("C:\\x.tar.gz"), ".GZ");
}

}  // namespace
}  // namespace tandemize
