#include "platform/newfilesupply.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "fixtures/ProgramFolder.h"
#include "platform/newfile.h"
#include "platform/posix/unnamedfiles.h"

namespace tandemize::platform {
namespace {

namespace fs = std::filesystem;

class Supply : public testing::Test {
 protected:
  // Makes `name` (in a folder of the work folder) from the supply.
  void make(const std::string& name, const std::string& content, std::uint32_t permissions) {
    NewFile file;
    ASSERT_EQ(file.create(folder_.program(name), permissions, &supply_), kNoError);
    ASSERT_EQ(file.write(content.data(), content.size()), kNoError);
    bool replaced = false;
    ASSERT_EQ(file.commit(replaced), kNoError);
  }
  unsigned mode(const std::string& name) {
    return static_cast<unsigned>(fs::status(folder_.work().path() / name).permissions());
  }

  test::ProgramFolder folder_{false};
  NewFileSupply supply_;
};

TEST_F(Supply, Gives_files_of_every_folder_with_the_wanted_permissions) {
  for (const std::string sub : {"one", "two", "three"}) {
    folder_.work().makeFolder(sub);
    supply_.expect(folder_.program(sub), 60);
    for (int i = 0; i < 60; ++i) {
      const std::uint32_t wanted = i % 3 == 0 ? 0600U : i % 3 == 1 ? 0644U : 0755U;
      const std::string name = sub + "/" + std::to_string(i);
      make(name, name, wanted);
      ASSERT_EQ(folder_.work().read(name), name);
      ASSERT_EQ(mode(name), wanted);
    }
  }
}

TEST_F(Supply, Leaves_nothing_of_files_that_nobody_takes) {
  folder_.work().makeFolder("a");
  folder_.work().makeFolder("b");
  supply_.expect(folder_.program("a"), 1000);
  make("a/first", "x", 0644);
  supply_.expect(folder_.program("b"), 1000);
  make("b/first", "x", 0644);
  supply_.expect(folder_.program("b"), 0);
  EXPECT_EQ(test::describeTree(folder_.work().path()),
            "a = <folder>\na/first = x\nb = <folder>\nb/first = x\n");
}

TEST_F(Supply, A_file_of_another_folder_is_made_there) {
  folder_.work().makeFolder("expected");
  folder_.work().makeFolder("other");
  supply_.expect(folder_.program("expected"), 10);
  make("other/file", "x", 0644);
  EXPECT_EQ(folder_.work().read("other/file"), "x");
}

TEST_F(Supply, A_folder_that_has_gone_is_told_by_the_file_itself) {
  folder_.work().makeFolder("gone");
  supply_.expect(folder_.program("gone"), 10);
  fs::remove_all(folder_.work().path() / "gone");
  NewFile file;
  bool replaced = false;
  ErrorCode error = file.create(folder_.program("gone/file"), 0644, &supply_);
  if (error == kNoError) error = file.commit(replaced);
  EXPECT_EQ(error, kPathNotFound);
}

TEST_F(Supply, Without_unnamed_files_the_supply_is_empty_and_files_are_made_all_the_same) {
  fileWays().unnamedFiles = false;
  folder_.work().makeFolder("a");
  supply_.expect(folder_.program("a"), 10);
  make("a/file", "x", 0640);
  fileWays().unnamedFiles = true;
  forgetFileSystems();
  EXPECT_EQ(folder_.work().read("a/file"), "x");
  EXPECT_EQ(mode("a/file"), 0640U);
}

TEST(FlushVolume, An_existing_folder_is_flushed_and_a_missing_one_told) {
  test::ProgramFolder folder{false};
  EXPECT_EQ(flushVolume(folder.program("")), kNoError);
  EXPECT_EQ(flushVolume(folder.program("gone")), kPathNotFound);
}

TEST(FreeSpace, Paths_of_one_file_system_name_one_volume_and_of_another_another) {
  test::ProgramFolder folder{false};
  folder.work().makeFolder("a");
  SpaceOnDisc one, same, other;
  ASSERT_EQ(freeSpace(folder.program(""), one), kNoError);
  ASSERT_EQ(freeSpace(folder.program("a"), same), kNoError);
  ASSERT_EQ(freeSpace("C:\\proc", other), kNoError);
  EXPECT_EQ(one.volume, same.volume);
  EXPECT_NE(one.volume, other.volume);
}

}  // namespace
}  // namespace tandemize::platform
