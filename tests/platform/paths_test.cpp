#include "platform/paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "fixtures/TemporaryFolder.h"

namespace tandemize::platform {
namespace {

class Paths : public testing::Test {
 protected:
  Paths() { setProgramFolder(home_.host()); }
  ~Paths() override { setProgramFolder({}); }

  void useDrives(std::string_view text) {
    home_.write("Drives.dat", text);
    setProgramFolder(home_.host());
  }

  test::TemporaryFolder home_;
};

void expectRoundTrip(const std::string& hostPath) {
  EXPECT_EQ(toHost(toProgram(hostPath)), hostPath);
}

TEST_F(Paths, Without_a_file_lie_on_C) {
  EXPECT_EQ(toProgram("/"), "C:\\");
  EXPECT_EQ(toProgram("/srv/data/a.txt"), "C:\\srv\\data\\a.txt");
  EXPECT_EQ(toHost("C:\\srv\\data\\a.txt"), "/srv/data/a.txt");
  EXPECT_EQ(toHost("C:"), "/");
  EXPECT_EQ(toHost("C:\\"), "/");
}

TEST_F(Paths, Of_a_drive_and_a_share_are_those_of_the_file) {
  useDrives("D: = removable /media/anna/STICK\r\n\\\\nas\\photos = /mnt/nas/photos\n");
  EXPECT_EQ(toHost("D:\\a\\b"), "/media/anna/STICK/a/b");
  EXPECT_EQ(toHost("D:"), "/media/anna/STICK");
  EXPECT_EQ(toProgram("/media/anna/STICK/a"), "D:\\a");
  EXPECT_EQ(toProgram("/media/anna/STICK"), "D:\\");
  EXPECT_EQ(toProgram("/media/anna/STICKS/a"), "C:\\media\\anna\\STICKS\\a");
  EXPECT_EQ(toHost("\\\\nas\\photos\\2026\\x.jpg"), "/mnt/nas/photos/2026/x.jpg");
  EXPECT_EQ(toProgram("/mnt/nas/photos/2026"), "\\\\nas\\photos\\2026");
  EXPECT_EQ(toProgram("/mnt/nas/photos"), "\\\\nas\\photos");
}

TEST_F(Paths, Find_letters_and_shares_without_regard_to_case_and_names_with_it) {
  useDrives("d: = /srv/Data\n\\\\NAS\\Photos = /mnt/p\n");
  EXPECT_EQ(toHost("d:\\Ab"), "/srv/Data/Ab");
  EXPECT_EQ(toHost("D:\\aB"), "/srv/Data/aB");
  EXPECT_EQ(toHost("\\\\nas\\PHOTOS\\Ab"), "/mnt/p/Ab");
}

TEST_F(Paths, Take_the_longest_matching_root) {
  useDrives("D: = /srv\nE: = /srv/data\nF: = /srv/data/deep\n");
  EXPECT_EQ(toProgram("/srv/x"), "D:\\x");
  EXPECT_EQ(toProgram("/srv/data/x"), "E:\\x");
  EXPECT_EQ(toProgram("/srv/data/deep/x"), "F:\\x");
  EXPECT_EQ(toProgram("/srv/database"), "D:\\database");
}

TEST_F(Paths, On_no_drive_have_no_host_path) {
  for (const char* path : {"", "abc", "a", "\\", "\\abc", "/public/backup", "Q:\\x", "1:\\x", "\\\\",
                           "\\\\nas", "\\\\nas\\photos", "::"}) {
    EXPECT_EQ(toHost(path), "") << path;
    EXPECT_EQ(driveOf(path), nullptr) << path;
  }
}

TEST_F(Paths, With_a_zero_byte_name_no_file) {
  using namespace std::string_literals;
  EXPECT_EQ(toHost("C:\\a\0b"s), "");
}

TEST_F(Paths, Bear_doubled_and_trailing_separators) {
  EXPECT_EQ(toHost("C:\\\\a\\\\\\b\\"), "/a/b");
  EXPECT_EQ(toHost("C:\\a/b"), "/a/b");
  EXPECT_EQ(toHost("C:a"), "/a");
}

TEST_F(Paths, Never_climb_out_of_their_drive) {
  useDrives("D: = /srv/data\n");
  EXPECT_EQ(toHost("D:\\..\\..\\etc\\passwd"), "/srv/data/etc/passwd");
  EXPECT_EQ(toHost("D:\\a\\.\\b\\..\\c"), "/srv/data/a/c");
  EXPECT_EQ(toHost("C:\\.."), "/");
}

TEST_F(Paths, Of_the_host_are_resolved_by_text) {
  EXPECT_EQ(toProgram("/a//b/./c/../d/"), "C:\\a\\b\\d");
  EXPECT_EQ(toProgram("//a"), "C:\\a");
  EXPECT_EQ(toProgram("/../.."), "C:\\");
  EXPECT_EQ(toProgram("/a/.b/..c/d."), "C:\\a\\.b\\..c\\d.");
  EXPECT_EQ(toProgram(""), "");
}

TEST_F(Paths, Of_the_host_may_be_relative_to_the_working_folder) {
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(toHost(toProgram("sub/./file")), here + "/sub/file");
  EXPECT_EQ(toHost(toProgram(".")), here);
}

TEST_F(Paths, Show_characters_that_the_notation_lacks_as_private_ones) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"a:b", "a\xEF\x80\xBA\x62"}, {"\"", "\xEF\x80\xA2"}, {"*", "\xEF\x80\xAA"},    {"<", "\xEF\x80\xBC"},
      {">", "\xEF\x80\xBE"},        {"?", "\xEF\x80\xBF"},  {"\\", "\xEF\x81\x9C"},   {"|", "\xEF\x81\xBC"},
      {"\x01", "\xEF\x80\x81"},     {"\n", "\xEF\x80\x8A"}, {"\x1F", "\xEF\x80\x9F"},
  };
  for (const auto& [host, program] : names) {
    EXPECT_EQ(nameToProgram(host), program);
    EXPECT_EQ(nameToHost(program), host);
  }
}

TEST_F(Paths, Leave_ordinary_and_broken_bytes_alone) {
  for (const char* name : {"caf\xC3\xA9", "caf\xE9", "\xFF\xFE", "\xEF", "\xEF\x80", "\xEF\x81\x81", "\x7F",
                           "a b. ", "\xEF\xBF\xBD", "\xEF\x82\xA0", "\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(nameToProgram(name), name);
    EXPECT_EQ(nameToHost(name), name);
  }
}

TEST_F(Paths, Escape_a_private_character_that_the_host_really_holds) {
  EXPECT_EQ(nameToProgram("\xEF\x80\xBA"), "\xEF\x83\xBF\xEF\x80\xBA");
  EXPECT_EQ(nameToProgram("\xEF\x83\xBF"), "\xEF\x83\xBF\xEF\x83\xBF");
  EXPECT_EQ(nameToHost("\xEF\x83\xBF\xEF\x80\xBA"), "\xEF\x80\xBA");
  EXPECT_EQ(nameToHost("\xEF\x83\xBF\xEF\x83\xBF:"), "\xEF\x83\xBF:");
}

TEST_F(Paths, Keep_an_escape_character_that_escapes_nothing) {
  EXPECT_EQ(nameToHost("\xEF\x83\xBF"), "\xEF\x83\xBF");
  EXPECT_EQ(nameToHost("\xEF\x83\xBFz"), "\xEF\x83\xBFz");
}

TEST_F(Paths, Come_back_from_the_program_as_they_were) {
  useDrives("D: = /media/anna/STICK\n\\\\nas\\photos = /mnt/nas/photos\n");
  for (const std::string& path :
       {std::string("/"), std::string("/a\nb"), std::string("/trailing. . "), std::string("/C:\\a\\..\\b"),
        std::string("/media/anna/STICK"), std::string("/media/anna/STICK/x:y"),
        std::string("/mnt/nas/photos/*?"), "/" + std::string(255, ':'),
        "/" + std::string(255, '\x01') + "/" + std::string(255, '\\'),
        std::string("/\xEF\x83\xBF/\xEF\x80\xBA\xEF\x83\xBF/\xEF\x80"), std::string("/...")}) {
    expectRoundTrip(path);
  }
}

TEST_F(Paths, Of_random_bytes_come_back_from_the_program_as_they_were) {
  constexpr unsigned kSeed = 20261121;
  SCOPED_TRACE(kSeed);
  useDrives("D: = /media\nE: = /media/a\n\\\\nas\\p = /mnt\n");
  std::mt19937 random(kSeed);
  // The bytes of private characters and of the mapped ones come up often, so that they meet in every order.
  const std::string likely = "\xEF\xEF\xEF\x80\x80\x81\x83\x83\xBF\xBF\xBA\x9C\x8A:\\*|\n.. a";
  const std::vector<std::string> roots = {"", "/media", "/media/a", "/mnt"};
  for (int round = 0; round < 20000; ++round) {
    std::string path = roots[random() % roots.size()];
    for (auto names = random() % 4 + 1; names > 0; --names) {
      std::string name;
      for (auto bytes = random() % 12 + 1; bytes > 0; --bytes) {
        const bool any = random() % 4 == 0;
        const char byte = any ? static_cast<char>(static_cast<unsigned char>(random() % 255 + 1))
                              : likely[random() % likely.size()];
        if (byte != '/') name += byte;
      }
      if (!name.empty() && name != "." && name != "..") path.append("/").append(name);
    }
    if (path.empty()) continue;
    expectRoundTrip(path);
    EXPECT_EQ(toProgram(path).find_first_of(std::string_view("\"*<>?|\n\x01\x1F")), std::string::npos);
  }
}

TEST_F(Paths, Longer_than_the_host_takes_are_still_converted) {
  std::string program = "C:";
  for (int i = 0; i < 500; ++i) program += "\\0123456789";
  EXPECT_EQ(toHost(program).size(), 5500U);
  EXPECT_EQ(toProgram(toHost(program)), program);
}

TEST_F(Paths, Reach_the_hosts_root_though_C_is_another_folder) {
  useDrives("C: = /srv/c\n");
  EXPECT_EQ(toHost("C:\\x"), "/srv/c/x");
  EXPECT_EQ(toProgram("/srv/c/x"), "C:\\x");
  EXPECT_EQ(toProgram("/etc/fstab"), "Z:\\etc\\fstab");
  expectRoundTrip("/etc/fstab");
}

TEST_F(Paths, Lie_on_C_by_text_when_no_letter_is_left) {
  std::string text;
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    text += std::string(1, letter) + ": = /srv/" + letter + "\n";
  useDrives(text);
  EXPECT_EQ(toProgram("/etc/fstab"), "C:\\etc\\fstab");
}

TEST_F(Paths, Use_the_folder_that_was_set_last) {
  useDrives("D: = /srv/one\nnonsense\n");
  EXPECT_EQ(programFolderOnHost(), home_.host());
  EXPECT_EQ(badDriveLines(), std::vector<std::string>{"nonsense"});
  test::TemporaryFolder other;
  setProgramFolder(other.host() + "/");
  EXPECT_EQ(programFolderOnHost(), other.host());
  EXPECT_TRUE(badDriveLines().empty());
  EXPECT_NE(toHost("D:\\x"), "/srv/one/x");
}

}  // namespace
}  // namespace tandemize::platform
