#include "platform/appendfile.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/files.h"
#include "platform/hosttree.h"
#include "platform/newfile.h"
#include "platform/posix/unnamedfiles.h"

namespace tandemize::platform {
namespace {

using test::HostTree;

TEST(AppendFile, Each_record_is_seen_at_once) {
  HostTree tree;
  AppendFile file;
  ASSERT_EQ(file.open(tree.program("log"), false), kNoError);
  ASSERT_EQ(file.append("one\n"), kNoError);
  EXPECT_EQ(tree.read("log"), "one\n");
  ASSERT_EQ(file.append(""), kNoError);
  ASSERT_EQ(file.append("two\n"), kNoError);
  EXPECT_EQ(tree.read("log"), "one\ntwo\n");
  std::uint64_t bytes = 0;
  ASSERT_EQ(file.size(bytes), kNoError);
  EXPECT_EQ(bytes, 8U);
  file.close();
  EXPECT_FALSE(file.isOpen());
}

TEST(AppendFile, Goes_on_at_the_end_or_starts_anew) {
  HostTree tree;
  tree.write("log", "old\n");
  AppendFile file;
  ASSERT_EQ(file.open(tree.program("log"), false), kNoError);
  ASSERT_EQ(file.append("new\n"), kNoError);
  EXPECT_EQ(tree.read("log"), "old\nnew\n");
  ASSERT_EQ(file.open(tree.program("log"), true), kNoError);
  EXPECT_EQ(tree.read("log"), "");
  ASSERT_EQ(file.append("first\n"), kNoError);
  EXPECT_EQ(tree.read("log"), "first\n");
}

TEST(AppendFile, Two_writers_do_not_overwrite_each_other) {
  HostTree tree;
  AppendFile one, two;
  ASSERT_EQ(one.open(tree.program("log"), false), kNoError);
  ASSERT_EQ(two.open(tree.program("log"), false), kNoError);
  ASSERT_EQ(one.append("1"), kNoError);
  ASSERT_EQ(two.append("2"), kNoError);
  ASSERT_EQ(one.append("3"), kNoError);
  EXPECT_EQ(tree.read("log"), "123");
  std::uint64_t bytes = 0;
  ASSERT_EQ(two.size(bytes), kNoError);
  EXPECT_EQ(bytes, 3U);
}

TEST(AppendFile, Failures_are_told) {
  HostTree tree;
  tree.makeFolder("folder");
  ASSERT_EQ(::mkfifo(tree.host("pipe").c_str(), 0600), 0);
  AppendFile file;
  EXPECT_EQ(file.open(tree.program("folder"), false), kAccessDenied);
  EXPECT_EQ(file.open(tree.program("none/log"), false), kPathNotFound);
  EXPECT_EQ(file.open("relative", false), kPathNotFound);
  EXPECT_NE(file.open(tree.program("pipe"), false), kNoError);
  EXPECT_FALSE(file.isOpen());
  EXPECT_NE(file.append("x"), kNoError);
  std::uint64_t bytes = 0;
  EXPECT_NE(file.size(bytes), kNoError);
  ASSERT_EQ(file.open("C:\\dev\\full", false), kNoError);
  EXPECT_EQ(file.append("x"), kDiskFull);
}

TEST(AppendFile, A_record_that_finds_no_room_leaves_no_half_behind) {
  HostTree tree;
  tree.write("log", "old\n");
  const std::string path = tree.program("log");
  const int answer = test::withFileSizeLimit(1000, [&] {
    AppendFile file;
    if (file.open(path, false) != kNoError) return 1;
    if (file.append(std::string(5000, 'x')) != kFileTooLarge) return 2;
    return file.append("fits\n") == kNoError ? 0 : 3;
  });
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(tree.read("log"), "old\nfits\n");
}

TEST(AppendFile, On_a_full_disc_whole_records_stay) {
  HostTree tree;
  tree.makeFolder("disc");
  const std::string path = tree.program("disc/log");
  const int answer = test::withSmallDisc(tree.host("disc"), [&] {
    AppendFile file;
    if (file.open(path, false) != kNoError || file.append("old\n") != kNoError) return 1;
    if (file.append(std::string(100'000, 'x')) != kDiskFull) return 2;
    std::uint64_t bytes = 0;
    return file.size(bytes) == kNoError && bytes == 4 ? 0 : 3;
  });
  EXPECT_TRUE(answer == 0 || answer == test::kNoSmallDisc) << answer;
}

TEST(FolderWatch, Tells_of_names_that_come_go_and_change) {
  HostTree tree;
  FolderWatch watch;
  watch.start(tree.program());
  EXPECT_FALSE(watch.changed());
  tree.write("file", "");
  EXPECT_TRUE(watch.changed());
  EXPECT_FALSE(watch.changed());
  tree.write("file", "more content");
  EXPECT_FALSE(watch.changed());
  std::filesystem::rename(tree.host("file"), tree.host("renamed"));
  EXPECT_TRUE(watch.changed());
  tree.makeFolder("folder");
  EXPECT_TRUE(watch.changed());
  tree.write("folder/below", "");
  EXPECT_FALSE(watch.changed());
  std::filesystem::remove(tree.host("renamed"));
  EXPECT_TRUE(watch.changed());
  EXPECT_FALSE(watch.changed());
}

TEST(FolderWatch, Many_changes_are_one_answer) {
  HostTree tree;
  FolderWatch watch;
  watch.start(tree.program());
  for (int i = 0; i < 2000; ++i) tree.write("file " + std::to_string(i), "");
  EXPECT_TRUE(watch.changed());
  EXPECT_FALSE(watch.changed());
}

TEST(FolderWatch, Files_on_their_way_to_a_name_do_not_count) {
  HostTree tree;
  fileWays().unnamedFiles = false;
  FolderWatch watch;
  watch.start(tree.program());
  NewFile file;
  ASSERT_EQ(file.create(tree.program("file"), 0), kNoError);
  EXPECT_FALSE(watch.changed());
  bool replaced = false;
  ASSERT_EQ(file.commit(replaced), kNoError);
  EXPECT_TRUE(watch.changed());
  ASSERT_EQ(file.create(tree.program("file"), 0), kNoError);
  file.discard();
  EXPECT_FALSE(watch.changed());
  forgetFileSystems();
}

TEST(FolderWatch, Without_a_folder_everything_may_have_changed) {
  HostTree tree;
  tree.makeFolder("folder");
  FolderWatch watch;
  EXPECT_TRUE(watch.changed());
  watch.start(tree.program("missing"));
  EXPECT_TRUE(watch.changed());
  EXPECT_TRUE(watch.changed());
  watch.start(tree.program("folder"));
  EXPECT_FALSE(watch.changed());
  std::filesystem::remove(tree.host("folder"));
  EXPECT_TRUE(watch.changed());
  EXPECT_TRUE(watch.changed());
  watch.start(tree.program());
  EXPECT_FALSE(watch.changed());
  watch.stop();
  EXPECT_TRUE(watch.changed());
}

}  // namespace
}  // namespace tandemize::platform
