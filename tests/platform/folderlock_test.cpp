#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "platform/appendfile.h"
#include "platform/hosttree.h"

namespace tandemize::platform {
namespace {

using test::HostTree;

// A child process that holds the folder until it is ended.
class Holder {
 public:
  explicit Holder(const std::string& folder) {
    std::array<int, 2> ready = {-1, -1};
    if (::pipe2(ready.data(), O_CLOEXEC) != 0) return;
    child_ = ::fork();
    if (child_ == 0) {
      FolderLock lock;
      int holder = 0;
      const bool held = lock.acquire(folder, holder) == kNoError;
      if (!held || ::write(ready[1], "r", 1) != 1) ::_exit(1);
      for (;;) ::pause();
    }
    ::close(ready[1]);
    char byte = 0;
    holds_ = ::read(ready[0], &byte, 1) == 1;
    ::close(ready[0]);
  }
  ~Holder() { end(); }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

  void end() {
    if (child_ <= 0) return;
    ::kill(child_, SIGKILL);
    ::waitpid(child_, nullptr, 0);
    child_ = -1;
  }
  [[nodiscard]] bool holds() const { return holds_; }
  [[nodiscard]] pid_t process() const { return child_; }

 private:
  pid_t child_ = -1;
  bool holds_ = false;
};

TEST(FolderLock, Names_its_process_and_leaves_an_empty_file) {
  HostTree tree;
  FolderLock lock;
  int holder = -1;
  ASSERT_EQ(lock.acquire(tree.program(), holder), kNoError);
  EXPECT_EQ(holder, 0);
  EXPECT_EQ(tree.read("Tandemize.lock"), std::to_string(::getpid()) + "\n");
  lock.release();
  EXPECT_TRUE(tree.exists("Tandemize.lock"));
  EXPECT_EQ(tree.read("Tandemize.lock"), "");
  EXPECT_EQ(lock.acquire(tree.program(), holder), kNoError);
}

TEST(FolderLock, A_second_process_is_told_who_holds_the_folder) {
  HostTree tree;
  Holder other(tree.program());
  ASSERT_TRUE(other.holds());
  FolderLock lock;
  int holder = 0;
  EXPECT_EQ(lock.acquire(tree.program(), holder), kSharingViolation);
  EXPECT_EQ(holder, other.process());
}

TEST(FolderLock, Goes_with_a_process_that_was_killed) {
  HostTree tree;
  Holder other(tree.program());
  ASSERT_TRUE(other.holds());
  const pid_t dead = other.process();
  other.end();
  EXPECT_EQ(tree.read("Tandemize.lock"), std::to_string(dead) + "\n");
  FolderLock lock;
  int holder = -1;
  EXPECT_EQ(lock.acquire(tree.program(), holder), kNoError);
  EXPECT_EQ(tree.read("Tandemize.lock"), std::to_string(::getpid()) + "\n");
}

TEST(FolderLock, A_second_lock_of_the_same_process_is_refused) {
  HostTree tree;
  FolderLock first, second;
  int holder = 0;
  ASSERT_EQ(first.acquire(tree.program(), holder), kNoError);
  EXPECT_EQ(second.acquire(tree.program(), holder), kSharingViolation);
  EXPECT_EQ(holder, ::getpid());
  first.release();
  EXPECT_EQ(second.acquire(tree.program(), holder), kNoError);
}

TEST(FolderLock, A_holder_that_gave_no_number_is_not_known) {
  HostTree tree;
  for (const char* content : {"", "no number", "\n"}) {
    Holder other(tree.program());
    ASSERT_TRUE(other.holds());
    tree.write("Tandemize.lock", content);
    FolderLock lock;
    int holder = -1;
    EXPECT_EQ(lock.acquire(tree.program(), holder), kSharingViolation);
    EXPECT_EQ(holder, 0);
  }
}

TEST(FolderLock, A_lock_file_that_was_deleted_holds_nobody_out) {
  HostTree tree;
  FolderLock first, second;
  int holder = 0;
  ASSERT_EQ(first.acquire(tree.program(), holder), kNoError);
  std::filesystem::remove(tree.host("Tandemize.lock"));
  ASSERT_EQ(second.acquire(tree.program(), holder), kNoError);
  first.release();
  EXPECT_EQ(tree.read("Tandemize.lock"), std::to_string(::getpid()) + "\n");
}

TEST(FolderLock, Takes_a_host_path_as_well) {
  HostTree tree;
  FolderLock first, second;
  int holder = 0;
  ASSERT_EQ(first.acquire(tree.host(), holder), kNoError);
  EXPECT_EQ(second.acquire(tree.program(), holder), kSharingViolation);
}

TEST(FolderLock, Folders_that_cannot_hold_it_are_told) {
  HostTree tree;
  tree.makeFolder("closed");
  tree.setMode("closed", 0555);
  tree.makeFolder("taken/Tandemize.lock");
  FolderLock lock;
  int holder = 0;
  EXPECT_EQ(lock.acquire(tree.program("missing"), holder), kPathNotFound);
  EXPECT_EQ(lock.acquire("relative", holder), kPathNotFound);
  EXPECT_NE(lock.acquire(tree.program("taken"), holder), kNoError);
  const std::string closed = tree.program("closed");
  EXPECT_EQ(test::asOrdinaryUser(tree.host("closed"),
                                 [&] {
                                   FolderLock own;
                                   int other = 0;
                                   return own.acquire(closed, other);
                                 }),
            kAccessDenied);
}

TEST(FolderLock, A_child_process_does_not_go_on_holding_what_was_released) {
  HostTree tree;
  FolderLock lock;
  int holder = 0;
  ASSERT_EQ(lock.acquire(tree.program(), holder), kNoError);
  const pid_t child = ::fork();
  if (child == 0) {
    for (;;) ::pause();
  }
  lock.release();
  FolderLock again;
  EXPECT_EQ(again.acquire(tree.program(), holder), kNoError);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

}  // namespace
}  // namespace tandemize::platform
