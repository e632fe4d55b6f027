#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <map>
#include <vector>

#include "platform/files.h"
#include "platform/hosttree.h"
#include "platform/newfile.h"

namespace tandemize::platform {
namespace {

using test::HostTree;
using Listing = std::map<std::string, FoundFile>;

ErrorCode list(const std::string& pathWithMask, Listing& listing) {
  FolderSearch search;
  FoundFile found;
  ErrorCode error = search.open(pathWithMask, found);
  for (; error == kNoError; error = search.next(found)) listing[found.name] = found;
  return error;
}

Listing listed(const std::string& pathWithMask) {
  Listing listing;
  EXPECT_EQ(list(pathWithMask, listing), kNoMoreFiles);
  return listing;
}

std::vector<std::string> names(const std::string& pathWithMask) {
  std::vector<std::string> all;
  for (const auto& [name, found] : listed(pathWithMask)) {
    if (name != "." && name != "..") all.push_back(name);
  }
  return all;
}

using Names = std::vector<std::string>;

TEST(FolderSearch, Lists_files_and_folders_with_both_dots_first) {
  HostTree tree;
  tree.write("a.txt", "four");
  tree.makeFolder("folder");
  FolderSearch search;
  FoundFile found;
  ASSERT_EQ(search.open(tree.program() + "\\*.*", found), kNoError);
  EXPECT_EQ(found.name, ".");
  EXPECT_EQ(found.attributes, kDirectory);
  ASSERT_EQ(search.next(found), kNoError);
  EXPECT_EQ(found.name, "..");
  EXPECT_EQ(found.attributes, kDirectory);
  const Listing all = listed(tree.program() + "\\*.*");
  EXPECT_EQ(all.size(), 4U);
  EXPECT_EQ(all.at("a.txt").attributes, kArchive);
  EXPECT_EQ(all.at("a.txt").size, 4U);
  EXPECT_EQ(all.at("folder").attributes, kDirectory);
  EXPECT_EQ(all.at("folder").size, 0U);
}

TEST(FolderSearch, An_empty_folder_holds_only_the_dots) {
  HostTree tree;
  EXPECT_EQ(listed(tree.program() + "\\*.*").size(), 2U);
}

TEST(FolderSearch, Gives_the_times_of_the_entry) {
  HostTree tree;
  tree.write("old", "");
  ASSERT_EQ(setFileTime(tree.program("old"), {1'000'000'000, 123'000'000}), kNoError);
  const FoundFile found = listed(tree.program() + "\\*.*").at("old");
  EXPECT_EQ(found.lastWrite, (FileTime{1'000'000'000, 123'000'000}));
  EXPECT_EQ(found.lastAccess, (FileTime{1'000'000'000, 123'000'000}));
  EXPECT_GT(found.creation.seconds, 0);
}

TEST(FolderSearch, The_end_is_told_again_and_again_and_after_close) {
  HostTree tree;
  FolderSearch search;
  FoundFile found;
  EXPECT_FALSE(search.isOpen());
  ASSERT_EQ(search.open(tree.program() + "\\*.*", found), kNoError);
  EXPECT_TRUE(search.isOpen());
  EXPECT_EQ(search.next(found), kNoError);
  EXPECT_EQ(search.next(found), kNoMoreFiles);
  EXPECT_EQ(search.next(found), kNoMoreFiles);
  search.close();
  EXPECT_FALSE(search.isOpen());
  EXPECT_EQ(search.next(found), kNoMoreFiles);
}

TEST(FolderSearch, Masks_pick_names_by_letter_case) {
  HostTree tree;
  for (const char* name : {"a.txt", "ab.txt", "b.TXT", "c.txt.bak", "noext", "\xC3\xA8.txt", "\xFF.txt"})
    tree.write(name, "");
  const struct {
    const char* mask;
    Names expected;
  } cases[] = {
      {"*.txt", {"a.txt", "ab.txt", "\xC3\xA8.txt", "\xFF.txt"}},
      {"?.txt", {"a.txt", "\xC3\xA8.txt", "\xFF.txt"}},
      {"a*", {"a.txt", "ab.txt"}},
      {"*t*t*k", {"c.txt.bak"}},
      {"?oext*", {"noext"}},
      {"**.TXT", {"b.TXT"}},
  };
  for (const auto& one : cases) EXPECT_EQ(names(tree.program() + "\\" + one.mask), one.expected) << one.mask;
  EXPECT_EQ(names(tree.program() + "\\*").size(), 7U);
  EXPECT_EQ(names(tree.program() + "\\*.*").size(), 7U);
}

TEST(FolderSearch, A_mask_that_nothing_fits_finds_no_file) {
  HostTree tree;
  tree.write("a.txt", "");
  FolderSearch search;
  FoundFile found;
  EXPECT_EQ(search.open(tree.program() + "\\*.doc", found), kFileNotFound);
  EXPECT_FALSE(search.isOpen());
}

TEST(FolderSearch, The_path_of_one_entry_finds_that_entry_alone) {
  HostTree tree;
  tree.write("sub/.hidden", "12345");
  FolderSearch search;
  FoundFile found;
  ASSERT_EQ(search.open(tree.program("sub/.hidden"), found), kNoError);
  EXPECT_EQ(found.name, ".hidden");
  EXPECT_EQ(found.attributes, kArchive | kHidden);
  EXPECT_EQ(found.size, 5U);
  EXPECT_EQ(search.next(found), kNoMoreFiles);
  ASSERT_EQ(search.open(tree.program("sub"), found), kNoError);
  EXPECT_EQ(found.name, "sub");
  EXPECT_EQ(found.attributes, kDirectory);
}

TEST(FolderSearch, Tells_a_missing_entry_from_a_missing_folder) {
  HostTree tree;
  tree.write("file", "");
  FolderSearch search;
  FoundFile found;
  EXPECT_EQ(search.open(tree.program("missing"), found), kFileNotFound);
  EXPECT_EQ(search.open(tree.program("missing/file"), found), kPathNotFound);
  EXPECT_EQ(search.open(tree.program("missing") + "\\*.*", found), kPathNotFound);
  EXPECT_EQ(search.open(tree.program("file") + "\\*.*", found), kPathNotFound);
  EXPECT_EQ(search.open(tree.program("file/inside"), found), kPathNotFound);
  EXPECT_EQ(search.open(tree.program() + "\\", found), kFileNotFound);
  EXPECT_EQ(search.open("", found), kPathNotFound);
  EXPECT_EQ(search.open("*.*", found), kPathNotFound);
}

TEST(FolderSearch, A_path_longer_than_the_host_takes_is_too_long) {
  HostTree tree;
  std::string path = tree.program();
  while (path.size() < 5000) path += "\\longer";
  FolderSearch search;
  FoundFile found;
  EXPECT_EQ(search.open(path + "\\*.*", found), kNameTooLong);
  EXPECT_EQ(search.open(path, found), kNameTooLong);
  EXPECT_EQ(search.open(tree.program() + "\\" + std::string(256, 'n'), found), kNameTooLong);
}

TEST(FolderSearch, A_path_with_a_NUL_is_refused_and_not_cut) {
  HostTree tree;
  tree.write("file", "");
  FolderSearch search;
  FoundFile found;
  EXPECT_EQ(search.open(tree.program("file") + std::string("\0x", 2), found), kInvalidName);
}

TEST(FolderSearch, Odd_names_lead_back_to_their_files) {
  HostTree tree;
  const Names odd = {
      "new\nline", "back\\slash", "\"quoted\"", "a:b*c?d|e<f>g", "\xFF\xFE",           "blank ",
      "dot.",      " ",           "-rf",        "\x01\x1F",      std::string(255, 'x')};
  for (const std::string& name : odd) tree.write(name, name);
  const Names found = names(tree.program() + "\\*.*");
  EXPECT_EQ(found.size(), odd.size());
  for (const std::string& name : odd)
    EXPECT_EQ(std::count(found.begin(), found.end(), nameToProgram(name)), 1) << name;
  for (const std::string& name : found) {
    std::string content;
    EXPECT_EQ(readFile(tree.program() + "\\" + name, content), kNoError) << name;
    EXPECT_EQ(nameToProgram(content), name);
  }
}

TEST(FolderSearch, Lists_more_entries_than_one_reading_gives) {
  HostTree tree;
  for (int i = 0; i < 3000; ++i) tree.write("a file with a rather long name " + std::to_string(i), "");
  EXPECT_EQ(names(tree.program() + "\\*.*").size(), 3000U);
  std::int32_t count = 0;
  EXPECT_EQ(countEntries(tree.program(), count), kNoError);
  EXPECT_EQ(count, 3000);
}

TEST(FolderSearch, Attributes_follow_name_and_permissions) {
  HostTree tree;
  tree.write("plain", "");
  tree.write(".dot", "");
  tree.write("readonly", "");
  tree.write(".both", "");
  tree.makeFolder("folder");
  tree.makeFolder(".folder");
  tree.setMode("readonly", 0466);
  tree.setMode(".both", 0444);
  const Listing all = listed(tree.program() + "\\*.*");
  EXPECT_EQ(all.at("plain").attributes, 32U);
  EXPECT_EQ(all.at(".dot").attributes, 34U);
  EXPECT_EQ(all.at("readonly").attributes, 33U);
  EXPECT_EQ(all.at(".both").attributes, 35U);
  EXPECT_EQ(all.at("folder").attributes, 16U);
  EXPECT_EQ(all.at(".folder").attributes, 18U);
}

TEST(FolderSearch, Pipes_sockets_and_devices_are_not_listed) {
  HostTree tree;
  tree.write("file", "");
  ASSERT_EQ(::mkfifo(tree.host("pipe").c_str(), 0600), 0);
  struct sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  tree.host("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(::bind(socket, reinterpret_cast<const struct sockaddr*>(&address), sizeof address), 0);
  ::close(socket);
  tree.link("/dev/null", "linked device");
  tree.link("pipe", "linked pipe");
  EXPECT_EQ(names(tree.program() + "\\*.*"), Names{"file"});
  FolderSearch search;
  FoundFile found;
  EXPECT_EQ(search.open(tree.program("pipe"), found), kFileNotFound);
  EXPECT_EQ(search.open("C:\\dev\\null", found), kFileNotFound);
}

TEST(FolderSearch, Reserved_names_are_not_listed) {
  HostTree tree;
  tree.write(".~tandemize-1-1.part", "");
  tree.write(".~tandemize-notes", "");
  EXPECT_EQ(names(tree.program() + "\\*.*"), Names{".~tandemize-notes"});
  FolderSearch search;
  FoundFile found;
  EXPECT_EQ(search.open(tree.program(".~tandemize-1-1.part"), found), kFileNotFound);
}

TEST(FolderSearch, A_link_is_what_it_leads_to) {
  HostTree tree;
  tree.write("target/file", "12345678");
  tree.setMode("target/file", 0444);
  tree.makeFolder("links");
  tree.link("../target/file", "links/to file");
  tree.link(tree.host("target"), "links/.to folder");
  const Listing all = listed(tree.program("links") + "\\*.*");
  EXPECT_EQ(all.at("to file").attributes, kArchive | kReadOnly);
  EXPECT_EQ(all.at("to file").size, 8U);
  EXPECT_EQ(all.at(".to folder").attributes, kDirectory | kHidden);
  EXPECT_EQ(names(tree.program("links/.to folder") + "\\*.*"), Names{"file"});
}

TEST(FolderSearch, Links_to_nothing_and_in_circles_are_not_listed) {
  HostTree tree;
  tree.write("file", "");
  tree.link("missing", "dangling");
  tree.link("file/inside", "through a file");
  tree.link("loop b", "loop a");
  tree.link("loop a", "loop b");
  tree.link("itself", "itself");
  EXPECT_EQ(names(tree.program() + "\\*.*"), Names{"file"});
  std::int32_t count = -1;
  EXPECT_EQ(countEntries(tree.program(), count), kNoError);
  EXPECT_EQ(count, 1);
}

TEST(FolderSearch, A_link_to_a_folder_that_the_path_is_inside_of_is_not_listed) {
  HostTree tree;
  tree.makeFolder("a/b/c");
  tree.makeFolder("a/beside");
  tree.link(".", "a/b/itself");
  tree.link("..", "a/b/parent");
  tree.link(tree.host(), "a/b/start");
  tree.link("/", "a/b/root");
  tree.link("../beside", "a/b/beside");
  EXPECT_EQ(names(tree.program("a/b") + "\\*.*"), (Names{"beside", "c"}));
  std::int32_t count = -1;
  EXPECT_EQ(countEntries(tree.program("a/b"), count), kNoError);
  EXPECT_EQ(count, 2);
  FolderSearch search;
  FoundFile found;
  EXPECT_EQ(search.open(tree.program("a/b/parent"), found), kFileNotFound);
  EXPECT_EQ(search.open(tree.program("a/b/beside"), found), kNoError);
}

TEST(FolderSearch, A_real_folder_is_not_listed_when_a_link_led_back_above_it) {
  HostTree tree;
  // start/there -> far, far/back -> the tree: below start\there\back the folder "start" is one that the walk
  // is inside of.
  tree.makeFolder("start");
  tree.makeFolder("other");
  test::HostTree far;
  platform::setProgramFolder(tree.host());
  far.link(tree.host(), "back");
  tree.link(far.host(), "start/there");
  EXPECT_EQ(names(tree.program("start") + "\\*.*"), Names{"there"});
  // From here the way back up is a folder that the walk came through.
  EXPECT_EQ(names(tree.program("start/there") + "\\*.*"), Names{});
  // Entered by its own path the walk is not inside of it, but then it meets the folder that it began in.
  EXPECT_EQ(names(far.program("back") + "\\*.*"), (Names{"other", "start"}));
  EXPECT_EQ(names(far.program("back/start") + "\\*.*"), Names{});
  tree.link(far.host(), "other/way");
  far.makeFolder("deep");
  far.link(tree.host("other"), "deep/up");
  EXPECT_EQ(names(tree.program("other/way") + "\\*.*"), Names{"deep"});
  EXPECT_EQ(names(tree.program("other/way/deep") + "\\*.*"), Names{});
}

// Whatever links there are, a walk that follows the listing comes to an end.
void walk(const std::string& folder, int depth, int& folders) {
  ASSERT_LT(depth, 12);
  ++folders;
  for (const auto& [name, found] : listed(folder + "\\*.*")) {
    const bool enter = name != "." && name != ".." && (found.attributes & kDirectory) != 0;
    std::string below = folder;
    below.append("\\").append(name);
    if (enter) walk(below, depth + 1, folders);
  }
}

TEST(FolderSearch, A_walk_through_crossed_links_ends) {
  HostTree tree;
  tree.makeFolder("a/inner");
  tree.makeFolder("b/inner");
  tree.link("../../b", "a/inner/to b");
  tree.link("../../a", "b/inner/to a");
  int folders = 0;
  walk(tree.program(), 0, folders);
  // The tree; a, a/inner, b through a, and its inner; the same from b.
  EXPECT_EQ(folders, 9);
}

TEST(FolderSearch, A_real_folder_reached_again_through_a_link_is_not_listed) {
  HostTree tree;
  tree.makeFolder("top/x/y");
  tree.makeFolder("top/z");
  // top/x/y/again leads beside itself: into top/z, which has a link up to the whole tree.
  tree.link("../../../top/z", "top/x/y/again");
  tree.link("../..", "top/z/up");
  EXPECT_EQ(names(tree.program("top/x/y") + "\\*.*"), Names{"again"});
  EXPECT_EQ(names(tree.program("top/x/y/again") + "\\*.*"), Names{});
  // Searched by a path that starts in z the tree is entered once, and the real folder "z" below is one too
  // many.
  HostTree outside;
  platform::setProgramFolder(tree.host());
  outside.link(tree.host("top/z"), "entry");
  outside.makeFolder("plain");
  EXPECT_EQ(names(outside.program("entry") + "\\*.*"), Names{"up"});
  EXPECT_EQ(names(outside.program("entry/up") + "\\*.*"), Names{"top"});
  EXPECT_EQ(names(outside.program("entry/up/top") + "\\*.*"), Names{"x"});
}

TEST(FolderSearch, A_folder_whose_entries_may_not_be_read_about_is_refused) {
  HostTree tree;
  tree.write("folder/file", "");
  tree.setMode("folder", 0444);
  const std::string mask = tree.program("folder") + "\\*.*";
  const int error = test::asOrdinaryUser(tree.host("folder"), [&] {
    FolderSearch search;
    FoundFile found;
    return search.open(mask, found);
  });
  EXPECT_EQ(error, kAccessDenied);
}

TEST(FolderSearch, A_folder_that_may_not_be_read_is_refused_and_exists) {
  HostTree tree;
  tree.makeFolder("folder");
  tree.setMode("folder", 0111);
  const std::string path = tree.program("folder");
  const int answer = test::asOrdinaryUser(tree.host("folder"), [&] {
    FolderSearch search;
    FoundFile found;
    std::int32_t count = 0;
    if (!folderExists(path)) return 100;
    if (countEntries(path, count) != kAccessDenied) return 101;
    return search.open(path + "\\*.*", found);
  });
  EXPECT_EQ(answer, kAccessDenied);
}

TEST(FolderSearch, A_link_into_a_closed_folder_is_listed_so_that_its_copy_fails_by_name) {
  HostTree tree;
  tree.write("closed/file", "secret");
  tree.setMode("closed", 0000);
  tree.makeFolder("open");
  tree.link("../closed/file", "open/link");
  const std::string folder = tree.program("open");
  const int answer = test::asOrdinaryUser(tree.host("closed"), [&] {
    Listing all;
    if (list(folder + "\\*.*", all) != kNoMoreFiles || !all.contains("link")) return 100;
    if (all["link"].attributes != kArchive || all["link"].size != 0) return 101;
    std::int32_t count = 0;
    if (countEntries(folder, count) != kNoError || count != 1) return 102;
    SourceFile source;
    return source.open(folder + "\\link");
  });
  EXPECT_EQ(answer, kAccessDenied);
}

TEST(FolderSearch, Entries_that_vanish_while_the_folder_is_read_do_no_harm) {
  HostTree tree;
  for (int i = 0; i < 200; ++i) tree.write("stays " + std::to_string(i), "");
  const std::string coming = tree.host("comes and goes");
  const pid_t child = ::fork();
  if (child == 0) {
    for (;;) {
      ::close(::open(coming.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
      ::unlink(coming.c_str());
    }
  }
  for (int round = 0; round < 200; ++round) {
    Listing all = listed(tree.program() + "\\*.*");
    all.erase("comes and goes");
    EXPECT_EQ(all.size(), 202U);
  }
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

TEST(FolderSearch, A_search_can_be_moved) {
  HostTree tree;
  tree.write("file", "");
  FolderSearch first;
  FoundFile found;
  ASSERT_EQ(first.open(tree.program() + "\\*.*", found), kNoError);
  FolderSearch second = std::move(first);
  EXPECT_EQ(second.next(found), kNoError);
  EXPECT_EQ(second.next(found), kNoError);
  EXPECT_EQ(found.name, "file");
  EXPECT_EQ(second.next(found), kNoMoreFiles);
}

}  // namespace
}  // namespace tandemize::platform
