#include "platform/posix/programfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "fixtures/TemporaryFolder.h"
#include "platform/environment.h"
#include "platform/hosttree.h"
#include "platform/machine.h"

namespace tandemize::platform {
namespace {

using test::describeTree;
using test::ScopedVariable;
using test::TemporaryFolder;

unsigned permissionsOf(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0U;
}

TEST(ChooseProgramFolder, Follows_the_variable_before_all_else) {
  TemporaryFolder program;
  program.write("GlobalSetting.dat", "x");
  const ScopedVariable home("TANDEMIZE_HOME", "/srv/tandemize//");
  EXPECT_EQ(chooseProgramFolder(program.host()), "/srv/tandemize");
  EXPECT_EQ(findProgramFolder(), "/srv/tandemize");
}

TEST(ChooseProgramFolder, Makes_a_relative_variable_absolute) {
  const ScopedVariable home("TANDEMIZE_HOME", "sub/../folder");
  EXPECT_EQ(chooseProgramFolder("/nowhere"), std::filesystem::current_path().string() + "/folder");
}

TEST(ChooseProgramFolder, Takes_the_programs_own_folder_if_it_has_settings) {
  TemporaryFolder program;
  const ScopedVariable home("TANDEMIZE_HOME", std::nullopt);
  const ScopedVariable data("XDG_DATA_HOME", "/data");
  EXPECT_EQ(chooseProgramFolder(program.host()), "/data/tandemize-backup");
  program.write("GlobalSetting.dat", "x");
  EXPECT_EQ(chooseProgramFolder(program.host()), program.host());
}

TEST(ChooseProgramFolder, Passes_over_a_program_folder_that_cannot_be_written) {
  TemporaryFolder program;
  program.write("GlobalSetting.dat", "x");
  const ScopedVariable home("TANDEMIZE_HOME", std::nullopt);
  const ScopedVariable data("XDG_DATA_HOME", "/data");
  const std::string folder = program.host();
  const int right = test::asOrdinaryUser(folder, [&] {
    ::chmod(folder.c_str(), 0555);
    return chooseProgramFolder(folder) == "/data/tandemize-backup" ? 0 : 1;
  });
  ::chmod(folder.c_str(), 0755);
  EXPECT_EQ(right, 0);
}

TEST(ChooseProgramFolder, Falls_back_to_the_home_folder) {
  const ScopedVariable home("TANDEMIZE_HOME", "");
  const ScopedVariable userHome("HOME", "/home/anna");
  for (const std::optional<std::string>& unusable : {std::optional<std::string>(), {""}, {"relative"}}) {
    const ScopedVariable data("XDG_DATA_HOME", unusable);
    EXPECT_EQ(chooseProgramFolder("/nowhere"), "/home/anna/.local/share/tandemize-backup");
  }
}

class FillFolder : public testing::Test {
 protected:
  FillFolder() {
    shipped_.write("GlobalSetting.dat", "settings");
    shipped_.write("Config.cfg", "profile");
    shipped_.write("Gif/Scansione.Gif", "gif");
  }
  TemporaryFolder shipped_;
  TemporaryFolder work_;
};

TEST_F(FillFolder, Copies_the_shipped_data_with_its_parents) {
  const std::string folder = work_.host("a/b/home");
  ASSERT_EQ(fillFolderFrom(shipped_.host(), folder + "/", false), kNoError);
  EXPECT_EQ(describeTree(folder), describeTree(shipped_.path()));
  EXPECT_EQ(permissionsOf(folder), 0755U);
  EXPECT_EQ(permissionsOf(folder + "/GlobalSetting.dat"), 0600U);
  EXPECT_EQ(permissionsOf(folder + "/Config.cfg"), 0644U);
  EXPECT_EQ(describeTree(work_.host("a/b")).find(".~"), std::string::npos);
}

TEST_F(FillFolder, Leaves_an_existing_folder_alone) {
  work_.makeFolder("home");
  EXPECT_EQ(fillFolderFrom(shipped_.host(), work_.host("home"), false), kAlreadyExists);
  EXPECT_EQ(fillProgramFolder(work_.host("home"), false), kAlreadyExists);
  EXPECT_EQ(describeTree(work_.host("home")), "");
}

TEST_F(FillFolder, Adds_only_what_is_missing_when_told_so) {
  work_.write("home/Config.cfg", "my profile");
  work_.write("home/mine.txt", "mine");
  ASSERT_EQ(fillFolderFrom(shipped_.host(), work_.host("home"), true), kNoError);
  EXPECT_EQ(describeTree(work_.host("home")),
            "Config.cfg = my profile\nGif = <folder>\nGif/Scansione.Gif = gif\nGlobalSetting.dat = settings\n"
            "mine.txt = mine\n");
}

TEST_F(FillFolder, Without_shipped_data_makes_nothing) {
  EXPECT_EQ(fillFolderFrom(work_.host("none"), work_.host("home"), false), kFileNotFound);
  EXPECT_FALSE(work_.exists("home"));
}

TEST_F(FillFolder, Refuses_a_file_in_the_folders_place) {
  work_.write("home", "a file");
  EXPECT_EQ(fillFolderFrom(shipped_.host(), work_.host("home"), false), kInvalidFolder);
  EXPECT_EQ(fillFolderFrom(shipped_.host(), work_.host("home"), true), kInvalidFolder);
  EXPECT_EQ(work_.read("home"), "a file");
}

TEST_F(FillFolder, Leaves_no_half_made_folder_after_a_failure) {
  shipped_.write("Zzz.big", std::string(100000, 'z'));
  const std::string folder = work_.host("home");
  const int error = test::withFileSizeLimit(
      1000, [&] { return fillFolderFrom(shipped_.host(), folder, false) == kFileTooLarge ? 0 : 1; });
  EXPECT_EQ(error, 0);
  EXPECT_EQ(describeTree(work_.path()), "");
}

TEST_F(FillFolder, Reports_a_place_that_cannot_be_written) {
  const std::string place = work_.host();
  ::chmod(shipped_.host().c_str(), 0755);
  const int denied = test::asOrdinaryUser(place, [&] {
    ::chmod(place.c_str(), 0555);
    return fillFolderFrom(shipped_.host(), place + "/home", false) == kAccessDenied ? 0 : 1;
  });
  ::chmod(place.c_str(), 0755);
  EXPECT_EQ(denied, 0);
}

class FindIgnoringCase : public testing::Test {
 protected:
  FindIgnoringCase() { setProgramFolder(home_.host()); }
  ~FindIgnoringCase() override { setProgramFolder({}); }
  TemporaryFolder home_;
};

TEST_F(FindIgnoringCase, Finds_a_data_file_of_another_letter_case) {
  home_.write("LANG_ITA.DAT", "x");
  home_.write("gif/scansione.GIF", "x");
  const std::string folder = toProgram(home_.host()) + "\\";
  EXPECT_EQ(findIgnoringCase(folder, "Lang_Ita.Dat"), folder + "LANG_ITA.DAT");
  EXPECT_EQ(findIgnoringCase(folder, "Gif\\Scansione.Gif"), folder + "gif\\scansione.GIF");
  EXPECT_EQ(findIgnoringCase(folder, "Gif\\"), folder + "gif\\");
}

TEST_F(FindIgnoringCase, Prefers_the_name_as_written_then_the_first_in_byte_order) {
  for (const char* name : {"lang.dat", "LANG.dat", "Lang.dat"}) home_.write(name, "x");
  const std::string folder = toProgram(home_.host());
  EXPECT_EQ(findIgnoringCase(folder, "Lang.dat"), folder + "\\Lang.dat");
  EXPECT_EQ(findIgnoringCase(folder, "lAnG.dAt"), folder + "\\LANG.dat");
}

TEST_F(FindIgnoringCase, Gives_the_name_as_written_if_there_is_none) {
  const std::string folder = toProgram(home_.host()) + "\\";
  EXPECT_EQ(findIgnoringCase(folder, "Lang_Eng.Dat"), folder + "Lang_Eng.Dat");
  EXPECT_EQ(findIgnoringCase("Q:\\", "Lang_Eng.Dat"), "Q:\\Lang_Eng.Dat");
}

TEST(HostExistence, Tells_files_from_folders) {
  TemporaryFolder work;
  work.write("file", "x");
  EXPECT_TRUE(hostFileExists(work.host("file")));
  EXPECT_FALSE(hostFileExists(work.host()));
  EXPECT_TRUE(hostFolderExists(work.host()));
  EXPECT_FALSE(hostFolderExists(work.host("file")));
  EXPECT_FALSE(hostFileExists(work.host("none")));
}

}  // namespace
}  // namespace tandemize::platform
