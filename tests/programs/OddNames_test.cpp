// Any name that the host takes survives a backup, and a path that is too long is refused by name.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

#include "fixtures/DeepTree.h"
#include "fixtures/LogLines.h"
#include "fixtures/RunProgram.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ConsoleFolder;
using test::DeepTree;
using test::describeTree;
using test::Diagram;
using test::ProgramResult;

// A name of one component, as the host holds it and as the program writes it.
struct OddName {
  std::string host, program;
};

const std::vector<OddName>& oddNames() {
  static const std::vector<OddName> names{
      {"two words", "two words"},
      {"  blanks  ", "  blanks  "},
      {"trailing blank ", "trailing blank "},
      {" ", " "},
      {"a,b,c", "a,b,c"},
      {"it's", "it's"},
      {"say \"hello\"", "say \uF022hello\uF022"},
      {"back\\slash", "back\uF05Cslash"},
      {"new\nline", "new\uF00Aline"},
      {"tab\tand\rreturn", "tab\uF009and\uF00Dreturn"},
      {"what?*<>|:", "what\uF03F\uF02A\uF03C\uF03E\uF07C\uF03A"},
      {"\x01\x1f", "\uF001\uF01F"},
      {"\x7f", "\x7f"},
      {"per\u00F9 \u65E5\u672C \U0001F600", "per\u00F9 \u65E5\u672C \U0001F600"},
      {"latin \xe0\xe8\xff", "latin \xe0\xe8\xff"},
      {"cut \xe2\x82", "cut \xe2\x82"},
      {"e\u0301 beside \u00E9", "e\u0301 beside \u00E9"},
      {"really private \uF03A", "really private \uF0FF\uF03A"},
      {"mark \uF0FF", "mark \uF0FF\uF0FF"},
      {"a#_#_#b", "a#_#_#b"},
      {"100 %s %n", "100 %s %n"},
      {"-rf", "-rf"},
      {"--preview", "--preview"},
      {"CON", "CON"},
      {"con", "con"},
      {"end.", "end."},
      {"...", "..."},
      {".hidden", ".hidden"},
      {"Test$$$.$$$", "Test$$$.$$$"},
      {"<!Erased!>", "\uF03C!Erased!\uF03E"},
      {"007", "007"},
      {std::string(255, 'n'), std::string(255, 'n')},
      {std::string(85 * 3, '\xe0'), std::string(85 * 3, '\xe0')}};
  return names;
}

class OddBackup : public ConsoleFolder {
 public:
  OddBackup() { copySourceToDestination(); }
};

TEST(OddNames, Files_of_any_name_are_copied_under_the_same_name) {
  OddBackup backup;
  for (const OddName& name : oddNames())
    backup.work().write("source/" + name.host, "content of " + name.host);
  const ProgramResult result = backup.run({"backup", "--mode", "3"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(describeTree(backup.work().host("destination")), describeTree(backup.work().host("source")));
}

TEST(OddNames, Folders_of_any_name_are_made_under_the_same_name) {
  OddBackup backup;
  for (const OddName& name : oddNames())
    backup.work().write("source/" + name.host + "/" + name.host + "/file", "content");
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(describeTree(backup.work().host("destination")), describeTree(backup.work().host("source")));
}

TEST(OddNames, Each_has_its_one_form_in_the_programs_notation) {
  OddBackup backup;
  std::vector<std::string> words{"path"};
  std::string paths;
  std::set<std::string> transfers;
  for (const OddName& name : oddNames()) {
    backup.work().write("source/" + name.host, "x");
    const std::string source = backup.program("source") + "\\" + name.program;
    words.push_back(backup.work().host("source/" + name.host));
    paths += source + "\n";
    transfers.insert(source + "\t" + backup.program("destination") + "\\" + name.program);
  }
  EXPECT_EQ(backup.run(words).out, paths);
  std::istringstream preview(backup.run({"backup", "--preview"}).out);
  std::set<std::string> planned;
  for (std::string line; std::getline(preview, line);) planned.insert(line);
  EXPECT_EQ(planned, transfers);
}

TEST(OddNames, Sources_and_destinations_may_have_any_name) {
  ConsoleFolder folder;
  Diagram diagram;
  int number = 0;
  for (const OddName& name : oddNames()) {
    folder.work().write(name.host + "/source/a", "content of " + name.host);
    folder.work().makeFolder(name.host + "/destination");
    const std::string source = "Source " + std::to_string(++number);
    diagram.source(source, folder.program() + "\\" + name.program + "\\source");
    diagram.destination("To " + source, folder.program() + "\\" + name.program + "\\destination", {source});
  }
  folder.diagram(diagram);
  const ProgramResult result = folder.run({"backup"});
  EXPECT_EQ(result.status, 0) << result.err;
  for (const OddName& name : oddNames())
    EXPECT_EQ(folder.work().read(name.host + "/destination/a"), "content of " + name.host) << name.program;
}

TEST(OddNames, Single_files_may_have_any_name) {
  ConsoleFolder folder;
  std::vector<std::string> files;
  for (const OddName& name : oddNames()) {
    folder.work().write("source/" + name.host, "content of " + name.host);
    files.push_back(folder.program("source") + "\\" + name.program);
  }
  folder.work().makeFolder("destination");
  folder.diagram(Diagram().files("F", files).destination("D", folder.program("destination"), {"F"}));
  const ProgramResult result = folder.run({"backup"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(describeTree(folder.work().host("destination")), describeTree(folder.work().host("source")));
}

TEST(OddNames, The_list_of_saved_files_finds_them_again) {
  OddBackup backup;
  for (const OddName& name : oddNames()) backup.work().write("source/" + name.host, "x");
  EXPECT_EQ(backup.run({"backup", "--type", "full"}).status, 0);
  EXPECT_EQ(test::linesOf(backup.home().read("FilesList.Dat")).size(), oddNames().size());
  // A name that holds the list's own mark is never found in it, and so is copied each time.
  EXPECT_EQ(backup.run({"backup", "--type", "incremental", "--preview"}).out,
            backup.program("source") + "\\a#_#_#b\t" + backup.program("destination") + "\\a#_#_#b\n");
}

TEST(OddNames, No_name_can_put_a_line_of_its_own_into_the_log) {
  OddBackup backup;
  backup.work().write("source/a\r\nb", "x");
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(backup.logLines().size(), 4U + 1U + 4U + 3U);
  EXPECT_EQ(test::countLinesWith(backup.logLines(), "source\\a\uF00D\uF00Ab' to '"), 1);
}

TEST(OddNames, Names_that_differ_by_letter_case_alone_are_two_files) {
  OddBackup backup;
  backup.work().write("source/name", "lower");
  backup.work().write("source/NAME", "upper");
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(describeTree(backup.work().host("destination")), "NAME = upper\nname = lower\n");
}

TEST(OddNames, The_crc_of_any_name_is_told) {
  OddBackup backup;
  std::vector<std::string> words{"crc"};
  std::string expected;
  for (const OddName& name : oddNames()) {
    backup.work().write("source/" + name.host, "123456789");
    words.push_back(backup.work().host("source/" + name.host));
    expected += "CBF43926\t" + backup.program("source") + "\\" + name.program + "\n";
  }
  EXPECT_EQ(backup.run(words).out, expected);
}

// --- lengths

TEST(LongPaths, A_path_of_nearly_the_greatest_length_is_copied) {
  OddBackup backup;
  std::string path = "source";
  while (backup.work().host(path).size() + 202 < 4000) path += "/" + std::string(200, 'f');
  backup.work().write(path + "/file", "x");
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(describeTree(backup.work().host("destination")), describeTree(backup.work().host("source")));
}

TEST(LongPaths, A_destination_longer_than_the_host_takes_fails_by_name_and_the_rest_is_copied) {
  ConsoleFolder folder;
  std::string path = "s";
  while (folder.work().host(path).size() + 202 < 4000) path += "/" + std::string(200, 'f');
  folder.work().write(path + "/file", "x");
  folder.work().write("s/other", "y");
  const std::string destination = "d/" + std::string(200, 'd') + "/" + std::string(200, 'd');
  folder.work().makeFolder(destination);
  folder.diagram(Diagram::copying(folder.program("s"), folder.program(destination)));
  const ProgramResult result = folder.run({"backup"});
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_EQ(folder.work().read(destination + "/other"), "y");
  EXPECT_EQ(test::countLinesWith(folder.logLines(), "==> Error While Writing File : ") +
                test::countLinesWith(folder.logLines(), "FaseAperturaFile = "),
            1);
  EXPECT_NE(result.err.find("\\file"), std::string::npos) << result.err;
}

TEST(LongPaths, A_source_deeper_than_the_host_takes_is_passed_over_and_the_rest_copied) {
  OddBackup backup;
  const DeepTree deep(backup.work().host("source"), std::string(250, 'f'), 20, "deep");
  ASSERT_TRUE(deep.made());
  backup.work().write("source/other", "y");
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 2) << result.err;
  EXPECT_EQ(backup.work().read("destination/other"), "y");
}

TEST(LongPaths, A_path_of_the_profile_that_is_too_long_is_refused_cleanly) {
  ConsoleFolder folder;
  folder.work().write("s/a", "x");
  std::string tooLong = folder.program("s");
  while (tooLong.size() < 5000) tooLong += "\\" + std::string(200, 'f');
  folder.diagram(Diagram::copying(tooLong, folder.program("s")));
  const ProgramResult result = folder.run({"backup"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(tooLong), std::string::npos);
}

TEST(LongPaths, A_component_of_the_profile_that_is_too_long_is_refused_cleanly) {
  ConsoleFolder folder;
  folder.diagram(Diagram::copying(folder.program() + "\\" + std::string(300, 'f'), folder.program()));
  EXPECT_EQ(folder.run({"backup"}).status, 4);
}

TEST(LongPaths, The_crc_of_a_path_that_is_too_long_is_told_as_unreadable) {
  const ConsoleFolder folder;
  std::string path;
  while (path.size() < 5000) path += "/" + std::string(200, 'f');
  EXPECT_EQ(folder.run({"crc", path}).status, 3);
}

// --- what is no plain file

TEST(OddEntries, Links_are_followed_and_loops_end) {
  OddBackup backup;
  backup.work().write("source/sub/a", "x");
  backup.work().write("elsewhere/in", "y");
  fs::create_directory_symlink("..", backup.work().host("source/sub/up"));
  fs::create_directory_symlink(".", backup.work().host("source/self"));
  fs::create_directory_symlink(backup.work().host("source"), backup.work().host("source/sub/absolute"));
  fs::create_directory_symlink("../elsewhere", backup.work().host("source/there"));
  fs::create_symlink("sub/a", backup.work().host("source/link"));
  fs::create_symlink("nowhere", backup.work().host("source/dangling"));
  fs::create_symlink("knot", backup.work().host("source/knot"));
  const ProgramResult result = backup.run({"backup"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(describeTree(backup.work().host("destination")),
            "link = x\nsub = <folder>\nsub/a = x\nthere = <folder>\nthere/in = y\n");
  EXPECT_FALSE(fs::is_symlink(backup.work().host("destination/link")));
  EXPECT_TRUE(fs::is_symlink(backup.work().host("source/link")));
}

TEST(OddEntries, Pipes_and_sockets_are_not_waited_for) {
  OddBackup backup;
  backup.work().write("source/a", "x");
  ASSERT_EQ(::mkfifo(backup.work().host("source/pipe").c_str(), 0600), 0);
  const std::string path = backup.work().host("source/socket");
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  struct sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::copy(path.begin(), path.end(), address.sun_path);
  ASSERT_EQ(::bind(socket, reinterpret_cast<struct sockaddr*>(&address), sizeof address), 0);
  const ProgramResult result = backup.run({"backup", "--mode", "3"});
  ::close(socket);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(describeTree(backup.work().host("destination")), "a = x\n");
}

TEST(OddEntries, A_pipe_named_as_a_single_file_is_not_found) {
  OddBackup backup;
  ASSERT_EQ(::mkfifo(backup.work().host("source/pipe").c_str(), 0600), 0);
  backup.diagram(Diagram()
                     .files("F", {backup.program("source/pipe")})
                     .destination("D", backup.program("destination"), {"F"}));
  EXPECT_EQ(backup.run({"backup"}).status, 4);
  EXPECT_EQ(backup.run({"crc", backup.work().host("source/pipe")}).status, 3);
}

TEST(OddEntries, A_pipe_in_the_place_of_a_copy_is_not_written_to) {
  OddBackup backup;
  backup.work().write("source/a", "x");
  ASSERT_EQ(::mkfifo(backup.work().host("destination/a").c_str(), 0600), 0);
  EXPECT_EQ(backup.run({"backup"}).status, 3);
  EXPECT_TRUE(fs::is_fifo(backup.work().host("destination/a")));
}

TEST(OddEntries, Names_reserved_for_unfinished_copies_are_never_copied) {
  OddBackup backup;
  backup.work().write("source/.~tandemize-5-1.part", "rest of a crash");
  backup.work().write("source/a", "x");
  EXPECT_EQ(backup.run({"backup"}).status, 0);
  EXPECT_EQ(describeTree(backup.work().host("destination")), "a = x\n");
  EXPECT_TRUE(backup.work().exists("source/.~tandemize-5-1.part"));
}

}  // namespace
}  // namespace tandemize
