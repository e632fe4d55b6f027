#include "platform/digestahead.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "fixtures/ProgramFolder.h"

namespace tandemize::platform {
namespace {

namespace fs = std::filesystem;

std::uint32_t sum(const void* data, std::size_t size) {
  std::uint32_t result = 1;
  for (std::size_t i = 0; i < size; ++i) result = result * 31 + static_cast<const unsigned char*>(data)[i];
  return result;
}
std::uint32_t sum(const std::string& text) {
  return sum(text.data(), text.size());
}

class Ahead : public testing::Test {
 protected:
  // The file's digest as a number, or "unknown".
  std::string ask(std::size_t place) {
    std::uint32_t digest = 0;
    DigestAhead::Answer answer = DigestAhead::Answer::pending;
    while (answer == DigestAhead::Answer::pending) answer = ahead_.ask(place, digest);
    return answer == DigestAhead::Answer::known ? std::to_string(digest) : "unknown";
  }
  DigestAhead::File file(const std::string& name, const std::string& content) {
    folder_.work().write(name, content);
    return {folder_.program(name), content.size()};
  }

  test::ProgramFolder folder_{false};
  DigestAhead ahead_{sum};
};

TEST_F(Ahead, Gives_the_digests_of_all_files_of_a_list) {
  std::vector<DigestAhead::File> files;
  for (int i = 0; i < 300; ++i) files.push_back(file(std::to_string(i), "content " + std::to_string(i)));
  ahead_.expect(files);
  for (int i = 0; i < 300; ++i)
    ASSERT_EQ(ask(static_cast<std::size_t>(i)), std::to_string(sum("content " + std::to_string(i))));
}

TEST_F(Ahead, Gives_them_in_any_order_and_twice) {
  std::vector<DigestAhead::File> files;
  for (int i = 0; i < 20; ++i) files.push_back(file(std::to_string(i), std::to_string(i)));
  ahead_.expect(files);
  for (const int i : {19, 0, 7, 19})
    EXPECT_EQ(ask(static_cast<std::size_t>(i)), std::to_string(sum(std::to_string(i))));
}

TEST_F(Ahead, A_new_list_takes_the_place_of_the_one_before_however_much_of_it_was_asked_for) {
  for (int round = 0; round < 200; ++round) {
    std::vector<DigestAhead::File> files;
    for (int i = 0; i < 1 + round % 13; ++i)
      files.push_back(file(std::to_string(i), std::to_string(round + i)));
    ahead_.expect(files);
    for (std::size_t i = 0; i < files.size(); i += static_cast<std::size_t>(1 + round % 3))
      ASSERT_EQ(ask(i), std::to_string(sum(std::to_string(static_cast<std::size_t>(round) + i))));
  }
}

TEST_F(Ahead, A_file_that_is_not_of_the_expected_size_is_unknown) {
  DigestAhead::File shorter = file("shorter", "12345"), longer = file("longer", "12345"),
                    same = file("same", "12345");
  shorter.size = 6;
  longer.size = 4;
  ahead_.expect({shorter, longer, same});
  EXPECT_EQ(ask(0), "unknown");
  EXPECT_EQ(ask(1), "unknown");
  EXPECT_EQ(ask(2), std::to_string(sum("12345")));
}

TEST_F(Ahead, What_is_missing_or_no_plain_file_is_unknown) {
  folder_.work().makeFolder("folder");
  ASSERT_EQ(::mkfifo(folder_.work().host("pipe").c_str(), 0600), 0);
  ahead_.expect({{folder_.program("missing"), 1},
                 {folder_.program("folder"), 1},
                 {folder_.program("pipe"), 1},
                 {"Q:\\on no drive", 1},
                 {"", 1}});
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(ask(i), "unknown") << i;
}

TEST_F(Ahead, Empty_files_and_large_ones_are_left_to_the_caller) {
  const std::string largest(DigestAhead::kLargest, 'a'), larger(DigestAhead::kLargest + 1, 'a');
  ahead_.expect({file("empty", ""), file("largest", largest), file("larger", larger)});
  EXPECT_EQ(ask(0), "unknown");
  EXPECT_EQ(ask(1), std::to_string(sum(largest)));
  EXPECT_EQ(ask(2), "unknown");
}

TEST_F(Ahead, A_place_behind_the_list_is_unknown) {
  EXPECT_EQ(ask(0), "unknown");
  ahead_.expect({file("a", "a")});
  EXPECT_EQ(ask(1), "unknown");
  ahead_.expect({});
  EXPECT_EQ(ask(0), "unknown");
}

TEST_F(Ahead, Lists_that_nobody_asks_for_do_no_harm) {
  for (int i = 0; i < 50; ++i) {
    DigestAhead other{sum};
    other.expect({file("a", "a"), file("b", "b")});
  }
}

}  // namespace
}  // namespace tandemize::platform
