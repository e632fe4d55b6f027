#include <gtest/gtest.h>

#include <map>

#include "fixtures/ProgramFolder.h"
#include "shell/Lingua.h"
#include "storage/File_System.h"

namespace tandemize {
namespace {

TEST(DescrizioneAttributi, Every_value_has_its_message) {
  test::ProgramFolder program;
  const std::map<std::int32_t, int> messages = {
      {-1, 425}, {0, 77},   {1, 78},   {33, 78},  {2, 79},  {32, 80},  {3, 81},   {35, 81},  {34, 82},
      {4, 83},   {36, 83},  {6, 84},   {38, 84},  {39, 85}, {128, 86}, {16, 316}, {48, 316}, {17, 317},
      {18, 317}, {20, 317}, {21, 317}, {22, 317}, {5, 67},  {19, 67},  {49, 67},  {-2, 67}};
  for (const auto& [value, message] : messages) {
    bool isFolder = false;
    EXPECT_EQ(DescrizioneAttributi(value, isFolder), Messaggio(message)) << value;
    EXPECT_EQ(isFolder, message == 316 || message == 317) << value;
  }
}

TEST(DescrizioneAttributi, Sixteen_is_a_folder_and_nineteen_is_none) {
  test::ProgramFolder program;
  bool isFolder = false;
  static_cast<void>(DescrizioneAttributi(16, isFolder));
  EXPECT_TRUE(isFolder);
  static_cast<void>(DescrizioneAttributi(19, isFolder));
  EXPECT_FALSE(isFolder);
}

}  // namespace
}  // namespace tandemize
