#include <gtest/gtest.h>

#include "storage/File_System.h"
#include "storage/Retries.h"

namespace tandemize {
namespace {

using test::ProgramWithoutRetries;

TEST(ProvaAperturaFile, A_file_that_opens_gives_no_message_and_is_not_changed) {
  ProgramWithoutRetries program;
  program.work().write("file", "12");
  std::int32_t error = 99;
  EXPECT_EQ(ProvaAperturaFile(program.program("file"), false, error), "");
  EXPECT_EQ(error, 0);
  EXPECT_EQ(ProvaAperturaFile(program.program("file"), true, error), "");
  EXPECT_EQ(program.work().read("file"), "12");
}

TEST(ProvaAperturaFile, A_missing_file_gives_the_systems_message_and_is_not_made) {
  ProgramWithoutRetries program;
  std::int32_t error = 0;
  EXPECT_EQ(ProvaAperturaFile(program.program("") + "\\gone", true, error), platform::systemErrorText(2));
  EXPECT_EQ(error, 2);
  EXPECT_FALSE(program.work().exists("gone"));
  EXPECT_NE(ProvaAperturaFile("/public/file", false, error), "");
  EXPECT_NE(error, 0);
}

TEST(ProvaAperturaFile, A_file_that_may_be_read_but_not_written_tells_the_two_apart) {
  ProgramWithoutRetries program;
  program.work().write("file", "12");
  std::filesystem::permissions(program.work().host("file"), std::filesystem::perms(0444));
  const std::string path = program.program("file");
  EXPECT_TRUE(test::asAnyUser(program, [&path] {
    std::int32_t error = 0;
    return ProvaAperturaFile(path, false, error).empty() && !ProvaAperturaFile(path, true, error).empty() &&
           error == 5;
  }));
}

}  // namespace
}  // namespace tandemize
