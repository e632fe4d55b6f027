#include "platform/posix/lateclose.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include <filesystem>
#include <utility>

#include "fixtures/SmallDisc.h"
#include "platform/appendfile.h"
#include "platform/hosttree.h"
#include "platform/newfile.h"
#include "platform/posix/status.h"
#include "platform/posix/unnamedfiles.h"

namespace tandemize::platform {
namespace {

using test::HostTree;

constexpr int kDisc = 40 * 1024;  // KiB: room for two large files, and not for three
constexpr std::uint64_t kSize = kLargeFile + 1024;

// A disc of its own for each test, on which late closes wait until somebody needs their room.
class LateClose : public testing::Test {
 protected:
  void onDisc(const std::function<void()>& body) {
    tree_.makeFolder("disc");
    const test::Attempt attempt = test::onSmallDisc(tree_.host("disc"), kDisc, [&] {
      closeOnlyWhenAwaited(true);
      body();
      waitForLateCloses();
      closeOnlyWhenAwaited(false);
    });
    EXPECT_NE(attempt, test::Attempt::Failed);
  }
  [[nodiscard]] std::string path(std::string_view name) const {
    return tree_.program("disc/" + std::string(name));
  }
  [[nodiscard]] std::string host(std::string_view name = {}) const {
    return tree_.host("disc/" + std::string(name));
  }
  // As the host tells it, without waiting for anything.
  [[nodiscard]] std::uint64_t room() const {
    struct statvfs disc = {};
    EXPECT_EQ(::statvfs(host().c_str(), &disc), 0);
    return static_cast<std::uint64_t>(disc.f_bavail) * disc.f_frsize;
  }
  [[nodiscard]] ErrorCode fill(NewFile& file, std::string_view name, char letter) const {
    const std::string content(kSize, letter);
    const ErrorCode error = file.create(path(name), 0);
    return error == kNoError ? file.write(content.data(), content.size()) : error;
  }
  [[nodiscard]] ErrorCode make(std::string_view name, char letter) const {
    NewFile file;
    bool replaced = false;
    const ErrorCode error = fill(file, name, letter);
    return error == kNoError ? file.commit(replaced) : error;
  }
  [[nodiscard]] bool holds(std::string_view name, char letter) const {
    std::string content;
    return readFile(path(name), content) == kNoError && content == std::string(kSize, letter);
  }
  [[nodiscard]] std::ptrdiff_t entries() const {
    return std::distance(std::filesystem::directory_iterator(host()), {});
  }

  HostTree tree_;
};

TEST_F(LateClose, A_replaced_file_has_the_new_content_at_once_and_its_room_comes_later) {
  onDisc([&] {
    ASSERT_EQ(make("file", 'a'), kNoError);
    ASSERT_EQ(make("file", 'b'), kNoError);
    EXPECT_EQ(entries(), 1);
    EXPECT_TRUE(holds("file", 'b'));
    const std::uint64_t before = room();
    waitForLateCloses();
    EXPECT_GE(room(), before + kSize);
    EXPECT_TRUE(holds("file", 'b'));
  });
}

TEST_F(LateClose, So_it_is_where_the_new_file_had_a_reserved_name) {
  onDisc([&] {
    fileWays().unnamedFiles = false;
    ASSERT_EQ(make("file", 'a'), kNoError);
    ASSERT_EQ(make("file", 'b'), kNoError);
    EXPECT_EQ(entries(), 1);
    const std::uint64_t before = room();
    waitForLateCloses();
    EXPECT_GE(room(), before + kSize);
    EXPECT_TRUE(holds("file", 'b'));
  });
}

TEST_F(LateClose, A_deleted_file_is_gone_at_once_and_its_room_comes_later) {
  onDisc([&] {
    ASSERT_EQ(make("file", 'a'), kNoError);
    ASSERT_EQ(deleteFile(path("file")), kNoError);
    EXPECT_EQ(entries(), 0);
    const std::uint64_t before = room();
    waitForLateCloses();
    EXPECT_GE(room(), before + kSize);
  });
}

TEST_F(LateClose, What_is_given_up_leaves_nothing_and_its_room_comes_later) {
  for (const bool unnamed : {true, false}) {
    onDisc([&] {
      fileWays().unnamedFiles = unnamed;
      NewFile file;
      ASSERT_EQ(fill(file, "file", 'a'), kNoError);
      file.discard();
      EXPECT_FALSE(file.isOpen());
      EXPECT_EQ(entries(), 0);
      const std::uint64_t before = room();
      waitForLateCloses();
      EXPECT_GE(room(), before + kSize);
    });
  }
}

TEST_F(LateClose, A_leftover_is_cleared_at_once_and_its_room_comes_later) {
  onDisc([&] {
    ASSERT_EQ(make("file", 'a'), kNoError);
    std::filesystem::rename(host("file"), host(".~tandemize-99-3.part"));
    EXPECT_EQ(clearLeftovers(path("")), 1);
    EXPECT_EQ(entries(), 0);
    const std::uint64_t before = room();
    waitForLateCloses();
    EXPECT_GE(room(), before + kSize);
  });
}

TEST_F(LateClose, Who_asks_for_the_free_room_gets_it_with_what_is_still_to_come) {
  onDisc([&] {
    ASSERT_EQ(make("file", 'a'), kNoError);
    ASSERT_EQ(deleteFile(path("file")), kNoError);
    SpaceOnDisc space;
    ASSERT_EQ(freeSpace(path(""), space), kNoError);
    EXPECT_GT(space.available, std::uint64_t{kDisc - 64} * 1024);
  });
}

TEST_F(LateClose, Replacing_large_files_one_after_the_other_finds_room_each_time) {
  onDisc([&] {
    for (const char letter : {'a', 'b', 'c', 'd'}) {
      ASSERT_EQ(make("file", letter), kNoError) << letter;
      EXPECT_TRUE(holds("file", letter));
    }
  });
}

TEST_F(LateClose, So_does_deleting_and_copying_inside_the_kernel) {
  tree_.write("source", std::string(kSize, 's'));
  onDisc([&] {
    for (int turn = 0; turn < 5; ++turn) {
      SourceFile source;
      NewFile file;
      std::uint64_t copied = 1;
      bool readFailed = false, replaced = false;
      ASSERT_EQ(source.open(tree_.program("source")), kNoError);
      ASSERT_EQ(file.create(path("file"), 0), kNoError);
      while (copied > 0) ASSERT_EQ(file.copyFrom(source, 1U << 20U, copied, readFailed), kNoError) << turn;
      ASSERT_EQ(file.commit(replaced), kNoError);
      ASSERT_TRUE(holds("file", 's'));
      ASSERT_EQ(deleteFile(path("file")), kNoError);
    }
  });
}

TEST_F(LateClose, A_record_for_the_log_finds_room_on_a_disc_that_only_seems_full) {
  onDisc([&] {
    AppendFile log;
    ASSERT_EQ(log.open(path("log"), true), kNoError);
    ASSERT_EQ(make("file", 'a'), kNoError);
    test::fillDisc(host("other"));
    ASSERT_EQ(deleteFile(path("file")), kNoError);
    EXPECT_EQ(log.append("a line\n"), kNoError);
    EXPECT_EQ(tree_.read("disc/log"), "a line\n");
  });
}

TEST_F(LateClose, A_disc_that_is_really_full_is_told_as_before) {
  onDisc([&] {
    ASSERT_EQ(make("file", 'a'), kNoError);
    test::fillDisc(host("other"));
    EXPECT_EQ(make("file", 'b'), kDiskFull);
    EXPECT_TRUE(holds("file", 'a'));
  });
}

TEST_F(LateClose, Small_files_and_files_with_another_name_are_not_held) {
  onDisc([&] {
    ASSERT_EQ(make("file", 'a'), kNoError);
    struct statx entry = {};
    ASSERT_EQ(statusAt(AT_FDCWD, host("file").c_str(), 0, entry), 0);
    EXPECT_TRUE(holdIfLarge(host("file"), entry).isOpen());
    std::filesystem::create_hard_link(host("file"), host("twin"));
    EXPECT_FALSE(holdIfLarge(host("file"), entry).isOpen());
    std::filesystem::create_symlink("file", host("link"));
    EXPECT_FALSE(holdIfLarge(host("link"), entry).isOpen());
    std::filesystem::remove(host("twin"));
    std::filesystem::resize_file(host("file"), kLargeFile - 1);
    ASSERT_EQ(statusAt(AT_FDCWD, host("file").c_str(), 0, entry), 0);
    EXPECT_FALSE(holdIfLarge(host("file"), entry).isOpen());
  });
}

// Otherwise a run that deletes many would have no descriptor left.
TEST_F(LateClose, Only_so_many_are_put_off) {
  onDisc([&] {
    int open = 0;
    for (int i = 0; i < 100; ++i) {
      const int number = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
      closeElsewhere(Descriptor(number));
      if (::fcntl(number, F_GETFD) >= 0) ++open;
    }
    EXPECT_GT(open, 0);
    EXPECT_LT(open, 50);
  });
}

TEST_F(LateClose, A_forked_child_waits_for_none_of_its_parents) {
  onDisc([&] {
    ASSERT_EQ(make("file", 'a'), kNoError);
    ASSERT_EQ(deleteFile(path("file")), kNoError);
    EXPECT_EQ(test::inChild([] {
                waitForLateCloses();
                return 7;
              }),
              7);
  });
}

}  // namespace
}  // namespace tandemize::platform
