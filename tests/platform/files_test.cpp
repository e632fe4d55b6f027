#include "platform/files.h"

#include <gtest/gtest.h>

#include "platform/hosttree.h"

namespace tandemize::platform {
namespace {

using test::HostTree;

constexpr const char* kNowhere = "relative";

TEST(Query, Tells_attributes_size_and_times) {
  HostTree tree;
  tree.write(".file", "123456");
  tree.setMode(".file", 0555);
  ASSERT_EQ(setFileTime(tree.program(".file"), {-5, 1}), kNoError);
  FileStatus status;
  ASSERT_EQ(query(tree.program(".file"), status), kNoError);
  EXPECT_EQ(status.attributes, kArchive | kHidden | kReadOnly);
  EXPECT_EQ(status.size, 6U);
  EXPECT_EQ(status.lastWrite, (FileTime{-5, 1}));
  EXPECT_EQ(status.lastAccess, (FileTime{-5, 1}));
  ASSERT_EQ(query(tree.program(), status), kNoError);
  EXPECT_EQ(status.attributes, kDirectory);
  EXPECT_EQ(status.size, 0U);
}

TEST(Query, Follows_links) {
  HostTree tree;
  tree.write("file", "123");
  tree.link("file", "link");
  tree.link("missing", "dangling");
  tree.link("circle", "circle");
  FileStatus status;
  ASSERT_EQ(query(tree.program("link"), status), kNoError);
  EXPECT_EQ(status.size, 3U);
  EXPECT_EQ(query(tree.program("dangling"), status), kFileNotFound);
  EXPECT_EQ(query(tree.program("circle"), status), kFileNotFound);
}

TEST(Query, Tells_a_missing_file_from_a_missing_folder) {
  HostTree tree;
  tree.write("file", "");
  ASSERT_EQ(::mkfifo(tree.host("pipe").c_str(), 0600), 0);
  tree.write(".~tandemize-1-1.part", "");
  std::string longPath = tree.program();
  while (longPath.size() < 5000) longPath += "\\longer";
  const struct {
    std::string path;
    ErrorCode expected;
  } cases[] = {
      {tree.program("none"), kFileNotFound},
      {tree.program("none/file"), kPathNotFound},
      {tree.program("file/inside"), kPathNotFound},
      {tree.program("pipe"), kFileNotFound},
      {tree.program(".~tandemize-1-1.part"), kFileNotFound},
      {kNowhere, kPathNotFound},
      {"", kPathNotFound},
      {tree.program("file") + std::string("\0", 1), kInvalidName},
      {longPath, kNameTooLong},
      {tree.program() + "\\" + std::string(256, 'x'), kNameTooLong},
  };
  FileStatus status;
  for (const auto& one : cases) EXPECT_EQ(query(one.path, status), one.expected) << one.path;
}

TEST(Query, A_file_in_a_closed_folder_is_refused_and_not_missing) {
  HostTree tree;
  tree.write("closed/file", "");
  tree.setMode("closed", 0000);
  const std::string path = tree.program("closed/file");
  EXPECT_EQ(test::asOrdinaryUser(tree.host("closed"),
                                 [&] {
                                   FileStatus status;
                                   return query(path, status);
                                 }),
            kAccessDenied);
}

TEST(FolderExists, Is_true_for_folders_only) {
  HostTree tree;
  tree.write("file", "");
  tree.makeFolder("folder");
  tree.link("folder", "link");
  tree.link("missing", "dangling");
  EXPECT_TRUE(folderExists(tree.program("folder")));
  EXPECT_TRUE(folderExists(tree.program("folder") + "\\"));
  EXPECT_TRUE(folderExists(tree.program("link")));
  EXPECT_TRUE(folderExists("C:\\"));
  EXPECT_FALSE(folderExists(tree.program("file")));
  EXPECT_FALSE(folderExists(tree.program("dangling")));
  EXPECT_FALSE(folderExists(kNowhere));
  EXPECT_FALSE(folderExists(""));
}

TEST(CountEntries, Counts_what_a_search_lists_but_the_dots) {
  HostTree tree;
  std::int32_t count = -1;
  EXPECT_EQ(countEntries(tree.program(), count), kNoError);
  EXPECT_EQ(count, 0);
  tree.write("file", "");
  tree.write(".~tandemize-1-1.part", "");
  tree.makeFolder("folder");
  ASSERT_EQ(::mkfifo(tree.host("pipe").c_str(), 0600), 0);
  EXPECT_EQ(countEntries(tree.program(), count), kNoError);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(countEntries(tree.program("missing"), count), kPathNotFound);
  EXPECT_EQ(countEntries(tree.program("file"), count), kPathNotFound);
}

TEST(DeleteFile, Removes_files_even_read_only_ones) {
  HostTree tree;
  tree.write("file", "");
  tree.setMode("file", 0444);
  EXPECT_EQ(deleteFile(tree.program("file")), kNoError);
  EXPECT_FALSE(tree.exists("file"));
  EXPECT_EQ(deleteFile(tree.program("file")), kFileNotFound);
  EXPECT_EQ(deleteFile(tree.program("none/file")), kPathNotFound);
  EXPECT_EQ(deleteFile(tree.program()), kAccessDenied);
}

TEST(DeleteFile, Of_a_link_only_the_link_goes) {
  HostTree tree;
  tree.write("file", "stays");
  tree.link("file", "link");
  EXPECT_EQ(deleteFile(tree.program("link")), kNoError);
  EXPECT_FALSE(tree.exists("link"));
  EXPECT_EQ(tree.read("file"), "stays");
}

TEST(DeleteFile, In_a_read_only_folder_is_refused) {
  HostTree tree;
  tree.write("folder/file", "");
  tree.setMode("folder", 0555);
  const std::string path = tree.program("folder/file");
  EXPECT_EQ(test::asOrdinaryUser(tree.host("folder"), [&] { return deleteFile(path); }), kAccessDenied);
  EXPECT_TRUE(tree.exists("folder/file"));
}

TEST(RemoveFolder, Removes_empty_folders_only) {
  HostTree tree;
  tree.write("full/file", "");
  tree.makeFolder("empty");
  EXPECT_EQ(removeFolder(tree.program("full")), kFolderNotEmpty);
  EXPECT_TRUE(tree.exists("full/file"));
  EXPECT_EQ(removeFolder(tree.program("empty") + "\\"), kNoError);
  EXPECT_FALSE(tree.exists("empty"));
  EXPECT_EQ(removeFolder(tree.program("empty")), kFileNotFound);
  EXPECT_EQ(removeFolder(tree.program("none/empty")), kPathNotFound);
  EXPECT_EQ(removeFolder(tree.program("full/file")), kPathNotFound);
}

TEST(RemoveFolder, Takes_what_a_crash_left_with_it) {
  HostTree tree;
  tree.write("folder/.~tandemize-1-1.part", "half a file");
  EXPECT_EQ(removeFolder(tree.program("folder")), kNoError);
  EXPECT_FALSE(tree.exists("folder"));
}

TEST(RemoveFolder, Of_a_link_to_an_empty_folder_only_the_link_goes) {
  HostTree tree;
  tree.makeFolder("empty");
  tree.write("full/file", "");
  tree.link("empty", "to empty");
  tree.link("full", "to full");
  EXPECT_EQ(removeFolder(tree.program("to empty")), kNoError);
  EXPECT_FALSE(tree.exists("to empty"));
  EXPECT_TRUE(tree.exists("empty"));
  EXPECT_EQ(removeFolder(tree.program("to full")), kFolderNotEmpty);
  EXPECT_TRUE(tree.exists("to full"));
}

TEST(CreateFolder, Makes_one_level) {
  HostTree tree;
  EXPECT_EQ(createFolder(tree.program("new") + "\\"), kNoError);
  EXPECT_TRUE(folderExists(tree.program("new")));
  EXPECT_EQ(createFolder(tree.program("new")), kAlreadyExists);
  EXPECT_EQ(createFolder("C:\\"), kAlreadyExists);
  EXPECT_EQ(createFolder(tree.program("a/b")), kPathNotFound);
  tree.write("file", "");
  EXPECT_EQ(createFolder(tree.program("file")), kAlreadyExists);
  EXPECT_EQ(createFolder(tree.program("file/b")), kPathNotFound);
  EXPECT_EQ(createFolder(tree.program() + "\\" + std::string(255, 'n')), kNoError);
  EXPECT_EQ(createFolder(tree.program() + "\\" + std::string(256, 'n')), kNameTooLong);
}

TEST(SetAttributes, Only_the_read_only_bit_has_an_effect) {
  HostTree tree;
  tree.write("file", "");
  const struct {
    mode_t before;
    std::uint32_t attributes;
    mode_t after;
  } cases[] = {
      {0644, 0, 0644}, {0644, 1, 0444},   {0666, 33, 0444}, {0444, 0, 0644},
      {0444, 1, 0444}, {0644, 34, 0644},  {0755, 35, 0555}, {0555, 32, 0755},
      {0000, 0, 0200}, {04755, 1, 04555}, {0464, 1, 0444},  {0, 1, 0},
  };
  for (const auto& one : cases) {
    tree.setMode("file", one.before);
    EXPECT_EQ(setAttributes(tree.program("file"), one.attributes), kNoError);
    EXPECT_EQ(tree.mode("file"), one.after) << std::oct << one.before << " with " << one.attributes;
  }
  EXPECT_EQ(setAttributes(tree.program("missing"), 0), kFileNotFound);
  EXPECT_EQ(setAttributes(tree.program("none/missing"), 0), kPathNotFound);
}

TEST(SetAttributes, Makes_no_call_when_nothing_would_change) {
  HostTree tree;
  tree.write("file", "");
  const std::string path = tree.program("file");
  if (::geteuid() != 0) return;  // only root has a file here that is another's
  EXPECT_EQ(test::asOrdinaryUser(tree.host(), [&] { return setAttributes(path, 32); }), kNoError);
  EXPECT_EQ(test::asOrdinaryUser(tree.host(), [&] { return setAttributes(path, 1); }), kAccessDenied);
}

TEST(SetFileTime, Sets_both_times_to_the_nanosecond) {
  HostTree tree;
  tree.write("file", "");
  tree.link("file", "link");
  ASSERT_EQ(setFileTime(tree.program("link"), {1'234'567'890, 987'654'321}), kNoError);
  FileStatus status;
  ASSERT_EQ(query(tree.program("file"), status), kNoError);
  EXPECT_EQ(status.lastWrite, (FileTime{1'234'567'890, 987'654'321}));
  EXPECT_EQ(status.lastAccess, status.lastWrite);
  EXPECT_EQ(setFileTime(tree.program("missing"), {}), kFileNotFound);
  EXPECT_EQ(setFileTime(tree.program("none/missing"), {}), kPathNotFound);
}

TEST(TryOpen, Changes_nothing_and_waits_for_nobody) {
  HostTree tree;
  tree.write("file", "content");
  ASSERT_EQ(::mkfifo(tree.host("pipe").c_str(), 0600), 0);
  EXPECT_EQ(tryOpen(tree.program("file"), false), kNoError);
  EXPECT_EQ(tryOpen(tree.program("file"), true), kNoError);
  EXPECT_EQ(tree.read("file"), "content");
  EXPECT_EQ(tryOpen(tree.program("pipe"), false), kNoError);
  EXPECT_NE(tryOpen(tree.program("pipe"), true), kNoError);
  EXPECT_EQ(tryOpen(tree.program("missing"), false), kFileNotFound);
  EXPECT_EQ(tryOpen(tree.program("missing"), true), kFileNotFound);
  EXPECT_FALSE(tree.exists("missing"));
  EXPECT_EQ(tryOpen(tree.program("none/missing"), false), kPathNotFound);
  EXPECT_EQ(tryOpen(tree.program(), false), kAccessDenied);
  EXPECT_EQ(tryOpen(tree.program(), true), kAccessDenied);
}

TEST(TryOpen, A_read_only_file_opens_for_reading_only) {
  HostTree tree;
  tree.write("file", "");
  tree.setMode("file", 0444);
  const std::string path = tree.program("file");
  EXPECT_EQ(test::asOrdinaryUser(tree.host("file"), [&] { return tryOpen(path, false); }), kNoError);
  EXPECT_EQ(test::asOrdinaryUser(tree.host("file"), [&] { return tryOpen(path, true); }), kAccessDenied);
}

TEST(FreeSpace, Tells_bytes) {
  HostTree tree;
  SpaceOnDisc space;
  ASSERT_EQ(freeSpace(tree.program(), space), kNoError);
  EXPECT_GT(space.total, 1'000'000U);
  EXPECT_LE(space.free, space.total);
  EXPECT_LE(space.available, space.free);
  EXPECT_EQ(freeSpace(tree.program("missing"), space), kPathNotFound);
  EXPECT_EQ(freeSpace(kNowhere, space), kPathNotFound);
}

TEST(FreeSpace, Of_a_small_disc_is_its_size) {
  HostTree tree;
  tree.makeFolder("disc");
  const std::string path = tree.program("disc");
  const int answer = test::withSmallDisc(tree.host("disc"), [&] {
    SpaceOnDisc space;
    if (freeSpace(path, space) != kNoError) return 1;
    return space.total == 65536 && space.free == 65536 && space.available == 65536 ? 0 : 2;
  });
  EXPECT_TRUE(answer == 0 || answer == test::kNoSmallDisc) << answer;
}

}  // namespace
}  // namespace tandemize::platform
