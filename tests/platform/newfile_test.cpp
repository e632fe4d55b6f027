#include "platform/newfile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <vector>

#include "platform/hosttree.h"
#include "platform/posix/unnamedfiles.h"

namespace tandemize::platform {
namespace {

using test::HostTree;

// Every way of making a file gives the same results: unnamed files or reserved names, the kernel's copy or
// ours.
struct Ways {
  const char* name;
  bool unnamedFiles, namesForThem, copyInKernel;
};

class NewFileByAnyWay : public testing::TestWithParam<Ways> {
 protected:
  void SetUp() override {
    fileWays() = {GetParam().unnamedFiles, GetParam().namesForThem, GetParam().copyInKernel};
  }
  void TearDown() override { forgetFileSystems(); }

  HostTree tree_;
};

INSTANTIATE_TEST_SUITE_P(Ways, NewFileByAnyWay,
                         testing::Values(Ways{"unnamed", true, true, true},
                                         Ways{"unnamed_own_copy", true, true, false},
                                         Ways{"unnamed_never_named", true, false, true},
                                         Ways{"reserved", false, true, true},
                                         Ways{"reserved_own_copy", false, true, false}),
                         [](const auto& one) { return std::string(one.param.name); });

std::vector<std::string> entriesOf(const std::string& hostFolder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(hostFolder))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

using Names = std::vector<std::string>;

// Whether the test's own disc has unnamed files at all, as most have.
bool discHasUnnamedFiles(const HostTree& tree) {
  NewFile file;
  const std::size_t before = entriesOf(tree.host()).size();
  EXPECT_EQ(file.create(tree.program("probe"), 0), kNoError);
  return entriesOf(tree.host()).size() == before;
}

ErrorCode make(const std::string& path, std::string_view content, bool& replaced,
               std::uint32_t permissions = 0) {
  NewFile file;
  ErrorCode error = file.create(path, permissions);
  if (error == kNoError) error = file.write(content.data(), content.size());
  if (error == kNoError) error = file.commit(replaced);
  return error;
}

ErrorCode make(const std::string& path, std::string_view content) {
  bool replaced = false;
  return make(path, content, replaced);
}

ErrorCode copyFile(const std::string& from, const std::string& to, std::uint64_t step) {
  SourceFile source;
  ErrorCode error = source.open(from);
  if (error != kNoError) return error;
  NewFile file;
  error = file.create(to, source.permissions());
  std::uint64_t copied = 1;
  bool readFailed = false;
  while (error == kNoError && copied > 0) error = file.copyFrom(source, step, copied, readFailed);
  if (error == kNoError) error = file.setTime(source.status().lastWrite);
  bool replaced = false;
  return error == kNoError ? file.commit(replaced) : error;
}

std::string someBytes(std::size_t size) {
  std::string bytes(size, '\0');
  std::uint32_t state = 12345;
  for (char& byte : bytes) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<char>(state >> 24U);
  }
  return bytes;
}

TEST_P(NewFileByAnyWay, Appears_under_its_name_only_at_commit) {
  NewFile file;
  ASSERT_EQ(file.create(tree_.program("new"), 0), kNoError);
  EXPECT_TRUE(file.isOpen());
  ASSERT_EQ(file.write("hello ", 6), kNoError);
  ASSERT_EQ(file.write("world", 5), kNoError);
  ASSERT_EQ(file.flush(), kNoError);
  EXPECT_FALSE(tree_.exists("new"));
  std::int32_t count = -1;
  EXPECT_EQ(countEntries(tree_.program(), count), kNoError);
  EXPECT_EQ(count, 0);
  bool replaced = true;
  ASSERT_EQ(file.commit(replaced), kNoError);
  EXPECT_FALSE(replaced);
  EXPECT_FALSE(file.isOpen());
  EXPECT_EQ(file.bytesWritten(), 11U);
  EXPECT_EQ(tree_.read("new"), "hello world");
  EXPECT_EQ(entriesOf(tree_.host()), Names{"new"});
}

TEST_P(NewFileByAnyWay, Leaves_nothing_without_commit) {
  {
    NewFile file;
    ASSERT_EQ(file.create(tree_.program("new"), 0), kNoError);
    ASSERT_EQ(file.write("x", 1), kNoError);
  }
  NewFile discarded;
  ASSERT_EQ(discarded.create(tree_.program("new"), 0), kNoError);
  discarded.discard();
  EXPECT_FALSE(discarded.isOpen());
  bool replaced = false;
  EXPECT_EQ(discarded.commit(replaced), kInvalidParameter);
  EXPECT_EQ(entriesOf(tree_.host()), Names{});
}

TEST_P(NewFileByAnyWay, Takes_the_place_of_an_older_file_even_a_read_only_one) {
  tree_.write("file", "old content");
  tree_.setMode("file", 0444);
  bool replaced = false;
  ASSERT_EQ(make(tree_.program("file"), "new", replaced), kNoError);
  EXPECT_TRUE(replaced);
  EXPECT_EQ(tree_.read("file"), "new");
  EXPECT_EQ(entriesOf(tree_.host()), Names{"file"});
}

TEST_P(NewFileByAnyWay, A_file_that_appears_meanwhile_is_replaced) {
  NewFile file;
  ASSERT_EQ(file.create(tree_.program("file"), 0), kNoError);
  ASSERT_EQ(file.write("mine", 4), kNoError);
  tree_.write("file", "theirs");
  bool replaced = false;
  ASSERT_EQ(file.commit(replaced), kNoError);
  EXPECT_TRUE(replaced);
  EXPECT_EQ(tree_.read("file"), "mine");
}

TEST_P(NewFileByAnyWay, A_file_in_use_as_a_running_program_is_replaced) {
  std::filesystem::copy_file("/bin/sleep", tree_.host("program"));
  const pid_t child = ::fork();
  if (child == 0) {
    ::execl(tree_.host("program").c_str(), "sleep", "1000", nullptr);
    ::_exit(1);
  }
  EXPECT_EQ(make(tree_.program("program"), "new"), kNoError);
  EXPECT_EQ(tree_.read("program"), "new");
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

TEST_P(NewFileByAnyWay, A_folder_is_never_replaced) {
  tree_.makeFolder("folder");
  tree_.link("folder", "link");
  NewFile file;
  EXPECT_EQ(file.create(tree_.program("folder"), 0), kInvalidFolder);
  EXPECT_EQ(file.create(tree_.program("link"), 0), kInvalidFolder);
  EXPECT_FALSE(file.isOpen());
  ASSERT_EQ(file.create(tree_.program("later"), 0), kNoError);
  tree_.makeFolder("later");
  bool replaced = true;
  EXPECT_EQ(file.commit(replaced), kInvalidFolder);
  EXPECT_FALSE(replaced);
  EXPECT_EQ(entriesOf(tree_.host()), (Names{"folder", "later", "link"}));
}

TEST_P(NewFileByAnyWay, A_pipe_or_device_is_never_replaced) {
  ASSERT_EQ(::mkfifo(tree_.host("pipe").c_str(), 0600), 0);
  NewFile file;
  EXPECT_EQ(file.create(tree_.program("pipe"), 0), kAccessDenied);
  EXPECT_EQ(file.create("C:\\dev\\null", 0), kAccessDenied);
  ASSERT_EQ(file.create(tree_.program("later"), 0), kNoError);
  ASSERT_EQ(::mkfifo(tree_.host("later").c_str(), 0600), 0);
  bool replaced = false;
  EXPECT_EQ(file.commit(replaced), kAccessDenied);
  EXPECT_EQ(entriesOf(tree_.host()), (Names{"later", "pipe"}));
}

TEST_P(NewFileByAnyWay, A_link_stays_and_the_file_behind_it_is_replaced) {
  tree_.write("far/target", "old");
  tree_.link("far/target", "link");
  tree_.link("link", "link to link");
  bool replaced = false;
  ASSERT_EQ(make(tree_.program("link to link"), "new", replaced), kNoError);
  EXPECT_TRUE(replaced);
  EXPECT_EQ(tree_.read("far/target"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(tree_.host("link")));
  EXPECT_TRUE(std::filesystem::is_symlink(tree_.host("link to link")));
  EXPECT_EQ(entriesOf(tree_.host("far")), Names{"target"});
}

TEST_P(NewFileByAnyWay, A_link_to_nothing_is_replaced_itself) {
  tree_.link("missing", "dangling");
  tree_.link("circle", "circle");
  EXPECT_EQ(make(tree_.program("dangling"), "one"), kNoError);
  EXPECT_EQ(make(tree_.program("circle"), "two"), kNoError);
  EXPECT_EQ(tree_.read("dangling"), "one");
  EXPECT_EQ(tree_.read("circle"), "two");
  EXPECT_EQ(entriesOf(tree_.host()), (Names{"circle", "dangling"}));
}

TEST_P(NewFileByAnyWay, Gets_the_wanted_permissions_whatever_the_umask) {
  const struct {
    std::uint32_t wanted;
    mode_t got;
  } cases[] = {{0600, 0600},  {0666, 0666},  {0777, 0777},  {0444, 0444},
               {04755, 0755}, {02775, 0775}, {01777, 0777}, {kNoPermissions, 0}};
  for (const auto& one : cases) {
    bool replaced = false;
    ASSERT_EQ(make(tree_.program("file"), "content", replaced, one.wanted), kNoError);
    EXPECT_EQ(tree_.mode("file"), one.got) << std::oct << one.wanted;
  }
  ASSERT_EQ(make(tree_.program("usual"), "content"), kNoError);
  const mode_t umask = ::umask(0);
  ::umask(umask);
  EXPECT_EQ(tree_.mode("usual"), 0666 & ~umask);
}

TEST_P(NewFileByAnyWay, Odd_names_work_up_to_255_bytes) {
  for (const std::string& name : {std::string("new\nline"), std::string("back\\slash"), std::string("\"q\""),
                                  std::string("\xFF\xFE"), std::string("a:b*c?"), std::string(255, 'x')}) {
    const std::string path = tree_.program() + "\\" + nameToProgram(name);
    ASSERT_EQ(make(path, "first"), kNoError) << name;
    ASSERT_EQ(make(path, name), kNoError) << name;
    EXPECT_EQ(tree_.read(name), name);
  }
  NewFile file;
  EXPECT_EQ(file.create(tree_.program() + "\\" + std::string(256, 'x'), 0), kNameTooLong);
}

TEST_P(NewFileByAnyWay, Works_at_the_greatest_length_of_a_path) {
  std::string host = tree_.host();
  while (host.size() < 4096 - 220) {
    host += "/" + std::string(200, 'd');
    ASSERT_EQ(::mkdir(host.c_str(), 0755), 0);
  }
  const std::string name(4095 - host.size() - 1, 'f');
  const std::string path = toProgram(host) + "\\" + name;
  EXPECT_EQ(make(path + "f", ""), kNameTooLong);
  ASSERT_EQ(make(path, "first"), kNoError);
  ASSERT_EQ(make(path, "second"), kNoError);
  std::string content;
  EXPECT_EQ(readFile(path, content), kNoError);
  EXPECT_EQ(content, "second");
  EXPECT_EQ(clearLeftovers(toProgram(host)), 0);
}

TEST_P(NewFileByAnyWay, Failures_are_told_at_create) {
  tree_.write("file", "");
  const struct {
    std::string path;
    ErrorCode expected;
  } cases[] = {
      {tree_.program("none/file"), kPathNotFound},
      {tree_.program("file/inside"), kPathNotFound},
      {"relative", kPathNotFound},
      {"", kPathNotFound},
      {tree_.program("file") + std::string("\0", 1), kInvalidName},
      {tree_.program(".~tandemize-1-1.part"), kInvalidName},
  };
  NewFile file;
  for (const auto& one : cases) {
    EXPECT_EQ(file.create(one.path, 0), one.expected) << one.path;
    EXPECT_FALSE(file.isOpen());
  }
}

TEST_P(NewFileByAnyWay, A_folder_that_may_not_be_written_is_refused_at_create) {
  tree_.write("folder/file", "old");
  tree_.setMode("folder", 0555);
  const std::string folder = tree_.program("folder");
  const auto create = [&](const char* name) {
    return test::asOrdinaryUser(tree_.host("folder"), [&] {
      NewFile file;
      return file.create(folder + name, 0);
    });
  };
  EXPECT_EQ(create("\\new"), kAccessDenied);
  EXPECT_EQ(create("\\file"), kAccessDenied);
  EXPECT_EQ(tree_.read("folder/file"), "old");
}

TEST_P(NewFileByAnyWay, A_folder_removed_meanwhile_fails_at_commit) {
  tree_.makeFolder("folder");
  NewFile file;
  ASSERT_EQ(file.create(tree_.program("folder/file"), 0), kNoError);
  std::filesystem::remove_all(tree_.host("folder"));
  bool replaced = false;
  EXPECT_EQ(file.commit(replaced), kPathNotFound);
  EXPECT_EQ(entriesOf(tree_.host()), Names{});
}

TEST_P(NewFileByAnyWay, Copies_files_of_every_length_with_permissions_and_time) {
  const std::array<std::size_t, 9> sizes = {0, 1, 65535, 65536, 65537, 262144, 262145, 1'048'576, 3'000'000};
  for (const std::size_t size : sizes) {
    for (const std::uint64_t step : {std::uint64_t{1000}, std::uint64_t{65536}, UINT64_MAX}) {
      if (size > 300'000 && step == 1000) continue;
      tree_.write("source", someBytes(size));
      tree_.setMode("source", 0640);
      ASSERT_EQ(setFileTime(tree_.program("source"), {1'111'111'111, 222'222'222}), kNoError);
      ASSERT_EQ(copyFile(tree_.program("source"), tree_.program("copy"), step), kNoError);
      FileStatus status;
      ASSERT_EQ(query(tree_.program("copy"), status), kNoError);
      EXPECT_EQ(status.lastWrite, (FileTime{1'111'111'111, 222'222'222}));
      EXPECT_EQ(status.lastAccess, (FileTime{1'111'111'111, 222'222'222}));
      EXPECT_EQ(tree_.mode("copy"), 0640U);
      // Reading it sets the time of the last access, so this comes last.
      EXPECT_TRUE(tree_.read("copy") == someBytes(size)) << size << " by " << step;
    }
  }
}

TEST_P(NewFileByAnyWay, Copies_no_more_than_it_was_asked_for) {
  for (const std::size_t size : {50'000U, 500'000U}) {
    tree_.write("source", someBytes(size));
    SourceFile source;
    ASSERT_EQ(source.open(tree_.program("source")), kNoError);
    NewFile file;
    ASSERT_EQ(file.create(tree_.program("copy"), 0), kNoError);
    std::uint64_t copied = 0;
    bool readFailed = true;
    ASSERT_EQ(file.copyFrom(source, 40'000, copied, readFailed), kNoError);
    EXPECT_EQ(copied, 40'000U);
    EXPECT_EQ(file.bytesWritten(), 40'000U);
    EXPECT_FALSE(readFailed);
  }
}

TEST_P(NewFileByAnyWay, A_source_that_shrank_ends_early) {
  tree_.write("source", someBytes(1'000'000));
  SourceFile source;
  ASSERT_EQ(source.open(tree_.program("source")), kNoError);
  NewFile file;
  ASSERT_EQ(file.create(tree_.program("copy"), 0), kNoError);
  std::uint64_t copied = 0;
  bool readFailed = false;
  ASSERT_EQ(file.copyFrom(source, 100'000, copied, readFailed), kNoError);
  ASSERT_EQ(::truncate(tree_.host("source").c_str(), 50'000), 0);
  ASSERT_EQ(file.copyFrom(source, 900'000, copied, readFailed), kNoError);
  EXPECT_EQ(copied, 0U);
  EXPECT_EQ(file.bytesWritten(), 100'000U);
}

TEST_P(NewFileByAnyWay, A_source_that_grew_is_copied_to_its_new_end) {
  tree_.write("source", someBytes(100));
  SourceFile source;
  ASSERT_EQ(source.open(tree_.program("source")), kNoError);
  tree_.write("source", someBytes(200'000));
  NewFile file;
  ASSERT_EQ(file.create(tree_.program("copy"), 0), kNoError);
  std::uint64_t copied = 1;
  bool readFailed = false;
  while (copied > 0) ASSERT_EQ(file.copyFrom(source, UINT64_MAX, copied, readFailed), kNoError);
  EXPECT_EQ(file.bytesWritten(), 200'000U);
}

TEST_P(NewFileByAnyWay, Files_that_the_host_makes_up_are_copied) {
  ASSERT_EQ(copyFile("C:\\proc\\self\\status", tree_.program("copy"), UINT64_MAX), kNoError);
  EXPECT_NE(tree_.read("copy").find("Umask:"), std::string::npos);
}

TEST_P(NewFileByAnyWay, Between_file_systems_bytes_go_through_a_buffer) {
  HostTree far;
  std::filesystem::path shm = "/dev/shm";
  if (!std::filesystem::is_directory(shm)) shm = far.path();
  const std::string source = (shm / ("tandemize-test-" + std::to_string(::getpid()))).string();
  test::writeHostFile(source, someBytes(700'000));
  EXPECT_EQ(copyFile(toProgram(source), tree_.program("copy"), 300'000), kNoError);
  EXPECT_TRUE(tree_.read("copy") == someBytes(700'000));
  std::filesystem::remove(source);
}

TEST_P(NewFileByAnyWay, A_write_beyond_the_limit_leaves_the_older_file) {
  tree_.write("file", "old");
  tree_.write("source", someBytes(500'000));
  const std::string target = tree_.program("file"), from = tree_.program("source");
  const int answer = test::withFileSizeLimit(200'000, [&] {
    SourceFile source;
    NewFile file;
    if (source.open(from) != kNoError || file.create(target, 0) != kNoError) return 1;
    std::uint64_t copied = 1;
    bool readFailed = true;
    ErrorCode error = kNoError;
    while (error == kNoError && copied > 0) error = file.copyFrom(source, 150'000, copied, readFailed);
    if (readFailed || error != kFileTooLarge) return 2;
    const std::string bytes(300'000, 'x');
    if (file.create(target, 0) != kNoError) return 3;
    return file.write(bytes.data(), bytes.size()) == kFileTooLarge ? 0 : 4;
  });
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(tree_.read("file"), "old");
  EXPECT_EQ(entriesOf(tree_.host()), (Names{"file", "source"}));
}

TEST_P(NewFileByAnyWay, A_full_disc_is_told_and_leaves_the_older_file) {
  tree_.makeFolder("disc");
  tree_.write("source", someBytes(200'000));
  const std::string from = tree_.program("source"), to = tree_.program("disc/file");
  const std::string hostFolder = tree_.host("disc");
  const int answer = test::withSmallDisc(hostFolder, [&] {
    if (make(to, "old") != kNoError) return 1;
    if (copyFile(from, to, 100'000) != kDiskFull) return 2;
    if (replaceFile(to, someBytes(200'000)) != kDiskFull) return 3;
    std::string content;
    if (readFile(to, content) != kNoError || content != "old") return 4;
    return entriesOf(hostFolder) == Names{"file"} ? 0 : 5;
  });
  EXPECT_TRUE(answer == 0 || answer == test::kNoSmallDisc) << answer;
}

// The bytes that the disc keeps for a file, whatever its size.
std::int64_t roomOf(const std::string& hostFile) {
  struct stat file = {};
  return ::stat(hostFile.c_str(), &file) == 0 ? file.st_blocks * std::int64_t{512} : -1;
}

// Whether the test's own disc keeps room at all, as most do.
bool discKeepsRoom(const HostTree& tree) {
  tree.write("probe", "");
  const int file = ::open(tree.host("probe").c_str(), O_RDWR | O_CLOEXEC);
  const bool kept = ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, 4096) == 0;
  ::close(file);
  std::filesystem::remove(tree.host("probe"));
  return kept;
}

TEST_P(NewFileByAnyWay, Reserved_room_changes_neither_size_nor_content_nor_time) {
  const std::string content = someBytes(300'000);
  for (const std::uint64_t size : {0U, 1U, 299'999U, 300'000U, 300'001U, 8'000'000U}) {
    NewFile file;
    ASSERT_EQ(file.create(tree_.program("new"), 0), kNoError);
    file.reserve(size);
    ASSERT_EQ(file.write(content.data(), content.size()), kNoError);
    ASSERT_EQ(file.setTime({1'111'111'111, 222'222'222}), kNoError);
    EXPECT_EQ(file.bytesWritten(), content.size());
    bool replaced = false;
    ASSERT_EQ(file.commit(replaced), kNoError);
    FileStatus status;
    ASSERT_EQ(query(tree_.program("new"), status), kNoError);
    EXPECT_EQ(status.lastWrite, (FileTime{1'111'111'111, 222'222'222})) << size;
    EXPECT_EQ(status.size, content.size());
    EXPECT_TRUE(tree_.read("new") == content) << size;
  }
}

TEST_P(NewFileByAnyWay, Room_that_was_reserved_in_vain_goes_back_at_commit) {
  for (const std::string& content : {std::string(), std::string("x"), someBytes(300'000)}) {
    NewFile file;
    ASSERT_EQ(file.create(tree_.program("new"), 0), kNoError);
    file.reserve(8'000'000);
    file.reserve(content.size() + 1);
    ASSERT_EQ(file.write(content.data(), content.size()), kNoError);
    bool replaced = false;
    ASSERT_EQ(file.commit(replaced), kNoError);
    EXPECT_LT(roomOf(tree_.host("new")), 1'000'000) << content.size();
    EXPECT_TRUE(tree_.read("new") == content) << content.size();
  }
}

TEST(NewFile, Reserved_room_is_kept_while_the_file_is_made) {
  fileWays().unnamedFiles = false;  // so that the test can see the file
  const HostTree tree;
  const bool kept = discKeepsRoom(tree);
  NewFile file;
  EXPECT_EQ(file.create(tree.program("new"), 0), kNoError);
  file.reserve(8'000'000);
  const Names names = entriesOf(tree.host());
  EXPECT_EQ(names.size(), 1U);
  EXPECT_EQ(roomOf(tree.host(names.at(0))) >= 8'000'000, kept);
  forgetFileSystems();
}

TEST_P(NewFileByAnyWay, A_disc_that_would_be_nearly_full_keeps_its_room_for_others) {
  tree_.makeFolder("disc");
  const std::string path = tree_.program("disc/file"), other = tree_.program("disc/other");
  const std::string hostFolder = tree_.host("disc");
  const int answer = test::withSmallDisc(hostFolder, [&] {
    for (const std::uint64_t size : {std::uint64_t{60'000}, std::uint64_t{1} << 40U, UINT64_MAX}) {
      NewFile file;
      if (file.create(path, 0) != kNoError) return 1;
      file.reserve(size);
      if (make(other, someBytes(24'000)) != kNoError) return 2;
      bool replaced = false;
      if (file.write("abc", 3) != kNoError || file.commit(replaced) != kNoError) return 3;
      std::string content;
      if (readFile(path, content) != kNoError || content != "abc") return 4;
      std::filesystem::remove(hostFolder + "/other");
    }
    return 0;
  });
  EXPECT_TRUE(answer == 0 || answer == test::kNoSmallDisc) << answer;
}

// Ends a child that is in the middle of a file, and gives the number of leftovers that were cleared while it
// lived and after it had gone.
std::pair<int, int> leftoversOfKilledChild(const HostTree& tree) {
  std::array<int, 2> ready = {-1, -1};
  if (::pipe2(ready.data(), O_CLOEXEC) != 0) return {-1, -1};
  const std::string path = tree.program("file");
  const pid_t child = ::fork();
  if (child == 0) {
    NewFile file;
    const bool begun = file.create(path, 0) == kNoError && file.write("half", 4) == kNoError;
    if (!begun || ::write(ready[1], "r", 1) != 1) ::_exit(1);
    for (;;) ::pause();
  }
  ::close(ready[1]);
  char signal = 0;
  const bool begun = ::read(ready[0], &signal, 1) == 1;
  ::close(ready[0]);
  const int whileAlive = begun ? clearLeftovers(tree.program()) : -1;
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  return {whileAlive, clearLeftovers(tree.program())};
}

TEST_P(NewFileByAnyWay, A_process_killed_in_mid_copy_leaves_nothing_under_the_final_name) {
  tree_.write("file", "old");
  const auto [whileAlive, afterwards] = leftoversOfKilledChild(tree_);
  EXPECT_EQ(whileAlive, 0);
  EXPECT_EQ(afterwards, discHasUnnamedFiles(tree_) ? 0 : 1);
  EXPECT_EQ(tree_.read("file"), "old");
  EXPECT_EQ(entriesOf(tree_.host()), Names{"file"});
}

TEST_P(NewFileByAnyWay, One_object_makes_one_file_after_the_other) {
  NewFile file;
  bool replaced = false;
  for (const char* name : {"one", "two"}) {
    ASSERT_EQ(file.create(tree_.program(name), 0), kNoError);
    EXPECT_EQ(file.bytesWritten(), 0U);
    ASSERT_EQ(file.write(name, 3), kNoError);
    ASSERT_EQ(file.commit(replaced), kNoError);
  }
  ASSERT_EQ(file.create(tree_.program("given up"), 0), kNoError);
  ASSERT_EQ(file.create(tree_.program("three"), 0), kNoError);
  ASSERT_EQ(file.commit(replaced), kNoError);
  EXPECT_EQ(entriesOf(tree_.host()), (Names{"one", "three", "two"}));
}

TEST_P(NewFileByAnyWay, ReplaceFile_keeps_an_older_files_permissions_and_makes_new_ones_0644) {
  EXPECT_EQ(replaceFile(tree_.program("new"), "content"), kNoError);
  EXPECT_EQ(tree_.mode("new"), 0644U);
  EXPECT_EQ(replaceFile(tree_.program("secret"), "content", 0600), kNoError);
  EXPECT_EQ(tree_.mode("secret"), 0600U);
  for (const mode_t mode : {0600U, 0666U, 0444U, 0U}) {
    tree_.setMode("new", mode);
    EXPECT_EQ(replaceFile(tree_.program("new"), "again", 0777), kNoError);
    EXPECT_EQ(tree_.mode("new"), mode);
  }
  EXPECT_EQ(entriesOf(tree_.host()), (Names{"new", "secret"}));
}

TEST_P(NewFileByAnyWay, ReplaceFile_follows_a_link) {
  tree_.write("far/file", "old");
  tree_.setMode("far/file", 0600);
  tree_.link("far/file", "link");
  EXPECT_EQ(replaceFile(tree_.program("link"), "new"), kNoError);
  EXPECT_TRUE(std::filesystem::is_symlink(tree_.host("link")));
  EXPECT_EQ(tree_.read("far/file"), "new");
  EXPECT_EQ(tree_.mode("far/file"), 0600U);
}

TEST_P(NewFileByAnyWay, ReplaceFile_leaves_the_older_file_after_a_failure) {
  tree_.write("file", "old");
  tree_.makeFolder("folder");
  const std::string path = tree_.program("file");
  const int error = test::withFileSizeLimit(
      1000, [&] { return replaceFile(path, std::string(5000, 'x')) == kFileTooLarge ? 0 : 1; });
  EXPECT_EQ(error, 0);
  EXPECT_EQ(tree_.read("file"), "old");
  EXPECT_EQ(replaceFile(tree_.program("folder"), "x"), kInvalidFolder);
  EXPECT_EQ(replaceFile(tree_.program("none/file"), "x"), kPathNotFound);
  EXPECT_EQ(entriesOf(tree_.host()), (Names{"file", "folder"}));
}

TEST(NewFile, Unnamed_files_are_not_tried_again_where_they_failed) {
  HostTree tree;
  tree.makeFolder("beside");
  const bool had = discHasUnnamedFiles(tree);
  fileWays().namesForThem = false;
  NewFile file;
  ASSERT_EQ(file.create(tree.program("beside/first"), 0), kNoError);
  EXPECT_EQ(entriesOf(tree.host("beside")).empty(), had);
  bool replaced = false;
  ASSERT_EQ(file.commit(replaced), kNoError);
  ASSERT_EQ(file.create(tree.program("second"), 0), kNoError);
  const Names now = entriesOf(tree.host());
  ASSERT_EQ(now.size(), 2U);
  EXPECT_TRUE(isReservedName(now.front()));
  forgetFileSystems();
  ASSERT_EQ(file.create(tree.program("third"), 0), kNoError);
  EXPECT_EQ(entriesOf(tree.host()).size(), had ? 1U : 2U);
}

TEST(ReplaceFile, Keeps_the_owner_where_it_may) {
  HostTree tree;
  tree.write("file", "old");
  const bool root = ::geteuid() == 0;
  if (root) {
    ASSERT_EQ(::chown(tree.host("file").c_str(), 65534, 65534), 0);
  }
  ASSERT_EQ(replaceFile(tree.program("file"), "new"), kNoError);
  struct stat entry = {};
  ASSERT_EQ(::stat(tree.host("file").c_str(), &entry), 0);
  EXPECT_EQ(entry.st_uid, root ? 65534 : ::geteuid());
  EXPECT_EQ(tree.read("file"), "new");
}

TEST(SourceFile, Opens_plain_files_only_and_waits_for_nobody) {
  HostTree tree;
  tree.write(".file", "content");
  tree.setMode(".file", 0604);
  tree.makeFolder("folder");
  ASSERT_EQ(::mkfifo(tree.host("pipe").c_str(), 0600), 0);
  SourceFile source;
  EXPECT_EQ(source.open(tree.program("pipe")), kInvalidFolder);
  EXPECT_EQ(source.open(tree.program("folder")), kInvalidFolder);
  EXPECT_EQ(source.open("C:\\dev\\null"), kInvalidFolder);
  EXPECT_EQ(source.open(tree.program("missing")), kFileNotFound);
  EXPECT_EQ(source.open(tree.program("none/missing")), kPathNotFound);
  EXPECT_FALSE(source.isOpen());
  ASSERT_EQ(source.open(tree.program(".file")), kNoError);
  EXPECT_EQ(source.permissions(), 0604U);
  EXPECT_EQ(source.status().size, 7U);
  EXPECT_EQ(source.status().attributes, kArchive | kHidden);
  source.willReadThrough();
  std::array<char, 5> buffer = {};
  std::size_t got = 0;
  ASSERT_EQ(source.read(buffer.data(), buffer.size(), got), kNoError);
  EXPECT_EQ(std::string(buffer.data(), got), "conte");
  ASSERT_EQ(source.read(buffer.data(), buffer.size(), got), kNoError);
  EXPECT_EQ(std::string(buffer.data(), got), "nt");
  ASSERT_EQ(source.read(buffer.data(), buffer.size(), got), kNoError);
  EXPECT_EQ(got, 0U);
  source.close();
  EXPECT_NE(source.read(buffer.data(), buffer.size(), got), kNoError);
}

TEST(SourceFile, The_permissions_of_a_closed_file_are_not_taken_for_the_usual_ones) {
  HostTree tree;
  tree.write("file", "content");
  tree.setMode("file", 0000);
  if (::geteuid() != 0) return;  // only root opens such a file
  SourceFile source;
  ASSERT_EQ(source.open(tree.program("file")), kNoError);
  EXPECT_EQ(source.permissions(), kNoPermissions);
}

TEST(SourceFile, A_file_that_may_not_be_read_is_refused) {
  HostTree tree;
  tree.write("file", "");
  tree.setMode("file", 0200);
  const std::string path = tree.program("file");
  EXPECT_EQ(test::asOrdinaryUser(tree.host("file"),
                                 [&] {
                                   SourceFile source;
                                   return source.open(path);
                                 }),
            kAccessDenied);
}

TEST(SourceFile, Does_not_keep_others_from_writing) {
  HostTree tree;
  tree.write("file", "before");
  SourceFile source;
  ASSERT_EQ(source.open(tree.program("file")), kNoError);
  EXPECT_EQ(tryOpen(tree.program("file"), true), kNoError);
  SourceFile moved = std::move(source);
  std::array<char, 16> buffer = {};
  std::size_t got = 0;
  ASSERT_EQ(moved.read(buffer.data(), buffer.size(), got), kNoError);
  EXPECT_EQ(std::string(buffer.data(), got), "before");
}

TEST(CopyFrom, A_failed_read_is_told_from_a_failed_write) {
  HostTree tree;
  tree.write("source", "content");
  SourceFile source;
  ASSERT_EQ(source.open(tree.program("source")), kNoError);
  source.close();
  NewFile file;
  ASSERT_EQ(file.create(tree.program("copy"), 0), kNoError);
  std::uint64_t copied = 0;
  bool readFailed = false;
  EXPECT_NE(file.copyFrom(source, 100, copied, readFailed), kNoError);
  EXPECT_TRUE(readFailed);
}

TEST(ReadFile, Reads_whole_files_within_the_limit) {
  HostTree tree;
  for (const std::size_t size : {0U, 1U, 65536U, 200'000U}) {
    tree.write("file", someBytes(size));
    std::string content = "before";
    ASSERT_EQ(readFile(tree.program("file"), content, size), kNoError);
    EXPECT_TRUE(content == someBytes(size));
    if (size == 0) continue;
    EXPECT_EQ(readFile(tree.program("file"), content, size - 1), kFileTooLarge);
    EXPECT_TRUE(content.empty());
  }
  std::string content;
  ASSERT_EQ(readFile("C:\\proc\\self\\status", content), kNoError);
  EXPECT_NE(content.find("Umask:"), std::string::npos);
  EXPECT_EQ(readFile("C:\\proc\\self\\status", content, 10), kFileTooLarge);
  EXPECT_EQ(readFile(tree.program("missing"), content), kFileNotFound);
  EXPECT_EQ(readFile(tree.program(), content), kInvalidFolder);
}

TEST(ReservedNames, Are_known_by_both_ends) {
  EXPECT_TRUE(isReservedName(".~tandemize-12-3.part"));
  EXPECT_TRUE(isReservedName(".~tandemize-.part"));
  EXPECT_FALSE(isReservedName(".~tandemize-12-3"));
  EXPECT_FALSE(isReservedName("~tandemize-12-3.part"));
  EXPECT_FALSE(isReservedName(".~tandemize.part"));
  EXPECT_FALSE(isReservedName(""));
}

TEST(ClearLeftovers, Removes_what_nobody_holds_and_nothing_else) {
  HostTree tree;
  tree.write(".~tandemize-1-1.part", "dead");
  tree.write(".~tandemize-1-2.part", "read-only");
  tree.setMode(".~tandemize-1-2.part", 0444);
  tree.write(".~tandemize-1-3.part", "held");
  tree.write(".~tandemize-notes", "a user's");
  tree.write("file", "a user's");
  tree.makeFolder(".~tandemize-folder.part");
  tree.link("file", ".~tandemize-link.part");
  const int held = ::open(tree.host(".~tandemize-1-3.part").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(::flock(held, LOCK_EX), 0);
  EXPECT_EQ(clearLeftovers(tree.program()), 2);
  EXPECT_FALSE(tree.exists(".~tandemize-1-1.part"));
  EXPECT_TRUE(tree.exists(".~tandemize-1-3.part"));
  ::close(held);
  EXPECT_EQ(clearLeftovers(tree.program()), 1);
  EXPECT_EQ(entriesOf(tree.host()),
            (Names{".~tandemize-folder.part", ".~tandemize-link.part", ".~tandemize-notes", "file"}));
  EXPECT_EQ(clearLeftovers(tree.program("missing")), 0);
  EXPECT_EQ(clearLeftovers("relative"), 0);
}

}  // namespace
}  // namespace tandemize::platform
