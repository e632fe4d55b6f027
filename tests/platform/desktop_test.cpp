#include "platform/desktop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>

#include "platform/fakedesktop.h"
#include "platform/paths.h"

namespace tandemize::platform {
namespace {

using test::ScopedVariable;

class Desktop : public testing::Test {
 protected:
  Desktop() { setProgramFolder(desktop_.home().host()); }
  ~Desktop() override { setProgramFolder({}); }

  [[nodiscard]] std::string host(const std::string& relative) { return desktop_.home().host(relative); }
  [[nodiscard]] std::string program(const std::string& relative) { return toProgram(host(relative)); }
  // A file that the user has, by its program path.
  [[nodiscard]] std::string file(const std::string& relative) {
    desktop_.home().write(relative, "content");
    return program(relative);
  }
  // The line of a shortcut's file that begins with a key, without the key.
  [[nodiscard]] std::string line(const std::string& relative, const std::string& key) {
    const std::string text = "\n" + desktop_.home().read(relative);
    const std::size_t at = text.find("\n" + key + "=");
    if (at == std::string::npos) return "<no line>";
    const std::size_t from = at + key.size() + 2;
    return text.substr(from, text.find('\n', from) - from);
  }

  test::FakeDesktop desktop_;
};

using OpenWithDesktop = Desktop;
using ShowProperties = Desktop;
using OpenSystemInformation = Desktop;
using CreateShortcut = Desktop;
using RemoveShortcut = Desktop;

constexpr const char* kAutostart = ".config/autostart/";

TEST_F(OpenWithDesktop, Gives_the_host_path_as_one_argument_without_a_shell) {
  desktop_.install("xdg-open");
  const std::string name = "a b/-x $(id) 'q' \"d\" *;&.txt";
  EXPECT_EQ(openWithDesktop(file(name)), kNoError);
  EXPECT_EQ(desktop_.callOf("xdg-open"), host(name) + "\n");
}

TEST_F(OpenWithDesktop, Opens_a_folder_too) {
  desktop_.install("xdg-open");
  desktop_.home().makeFolder("città");
  EXPECT_EQ(openWithDesktop(program("città") + "\\"), kNoError);
  EXPECT_EQ(desktop_.callOf("xdg-open"), host("città") + "\n");
}

TEST_F(OpenWithDesktop, Says_so_if_the_path_or_the_tool_is_missing) {
  const std::string path = file("a.txt");
  EXPECT_EQ(openWithDesktop(path), kFileNotFound);
  desktop_.install("xdg-open");
  EXPECT_EQ(openWithDesktop(program("b.txt")), kFileNotFound);
  EXPECT_EQ(openWithDesktop(program("no/b.txt")), kPathNotFound);
  EXPECT_EQ(openWithDesktop("a.txt"), kPathNotFound);
  EXPECT_FALSE(desktop_.called("xdg-open"));
}

TEST_F(OpenWithDesktop, Takes_no_tool_that_may_not_be_run) {
  desktop_.home().write("bin/xdg-open", "#!/bin/sh\n");
  EXPECT_EQ(openWithDesktop(file("a.txt")), kFileNotFound);
  desktop_.home().makeFolder("other/xdg-open");
  const ScopedVariable path("PATH", host("other"));
  EXPECT_EQ(openWithDesktop(program("a.txt")), kFileNotFound);
}

TEST_F(OpenWithDesktop, Takes_no_tool_from_where_the_program_was_started) {
  desktop_.home().write("relative/xdg-open", "#!/bin/sh\n");
  ::chmod(host("relative/xdg-open").c_str(), 0755);
  const std::string path = file("a.txt");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(host(""));
  EXPECT_EQ(openWithDesktop(path), kFileNotFound);
  std::filesystem::current_path(before);
}

TEST_F(OpenWithDesktop, Tells_why_a_tool_does_not_run) {
  desktop_.home().write("bin/xdg-open", "#!/no/such/interpreter\n");
  ::chmod(host("bin/xdg-open").c_str(), 0755);
  EXPECT_EQ(openWithDesktop(file("a.txt")), kFileNotFound);
  desktop_.home().write("bin/xdg-open", "");
  EXPECT_NE(openWithDesktop(program("a.txt")), kNoError);
}

TEST_F(OpenWithDesktop, Leaves_nothing_to_wait_for) {
  desktop_.install("xdg-open");
  EXPECT_EQ(openWithDesktop(file("a.txt")), kNoError);
  errno = 0;
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  EXPECT_NE(desktop_.callOf("xdg-open"), "");
}

TEST_F(OpenWithDesktop, Does_not_wait_for_the_tools_end) {
  // The tool ends only when the test, after the call, lets it, or with the test's folder.
  desktop_.install("xdg-open", "cd '" + host("") + "'\nwhile [ ! -e go ] && [ -e bin/xdg-open ]\n" +
                                   "do /bin/sleep 0.01; done; echo went");
  EXPECT_EQ(openWithDesktop(file("a.txt")), kNoError);
  desktop_.home().write("go", "");
  EXPECT_EQ(desktop_.callOf("xdg-open"), host("a.txt") + "\nwent\n");
}

TEST_F(OpenWithDesktop, Hands_down_no_open_file_and_no_terminal) {
  desktop_.install("xdg-open",
                   "[ -e /proc/$$/fd/200 ] || echo closed\n"
                   "[ /proc/$$/fd/0 -ef /dev/null ] && echo in\n"
                   "[ /proc/$$/fd/2 -ef /dev/null ] && echo error");
  const std::string path = file("a.txt");
  const int open = ::open(host("a.txt").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::dup2(open, 200), 200);
  EXPECT_EQ(openWithDesktop(path), kNoError);
  EXPECT_EQ(desktop_.callOf("xdg-open"), host("a.txt") + "\nclosed\nin\nerror\n");
  ::close(200);
  ::close(open);
}

TEST_F(OpenWithDesktop, Hands_down_no_signal_that_the_program_ignores) {
  desktop_.install(
      "xdg-open",
      "while read -r name value; do [ \"$name\" != SigIgn: ] || echo $((0x$value >> 12 & 1)); done "
      "< /proc/$$/status");
  const auto old = ::signal(SIGPIPE, SIG_IGN);
  EXPECT_EQ(openWithDesktop(file("a.txt")), kNoError);
  EXPECT_EQ(desktop_.callOf("xdg-open"), host("a.txt") + "\n0\n");
  ::signal(SIGPIPE, old);
}

TEST_F(ShowProperties, Asks_the_file_manager_for_the_encoded_path) {
  desktop_.install("gdbus");
  desktop_.install("dbus-send");
  EXPECT_EQ(showProperties(file("a,b 'c' \xFF/100%è~.txt")), kNoError);
  EXPECT_EQ(desktop_.callOf("gdbus"),
            "call\n--session\n--dest\norg.freedesktop.FileManager1\n--object-path\n"
            "/org/freedesktop/FileManager1\n--method\norg.freedesktop.FileManager1.ShowItemProperties\n"
            "['file://" +
                host("a%2Cb%20%27c%27%20%FF/100%25%C3%A8~.txt") + "']\n''\n");
  EXPECT_FALSE(desktop_.called("dbus-send"));
}

TEST_F(ShowProperties, Uses_the_other_tool_where_only_that_is_there) {
  desktop_.install("dbus-send");
  EXPECT_EQ(showProperties(file("a,b.txt")), kNoError);
  EXPECT_EQ(desktop_.callOf("dbus-send"),
            "--session\n--type=method_call\n--dest=org.freedesktop.FileManager1\n"
            "/org/freedesktop/FileManager1\norg.freedesktop.FileManager1.ShowItemProperties\n"
            "array:string:file://" +
                host("a%2Cb.txt") + "\nstring:\n");
}

TEST_F(ShowProperties, Says_so_if_the_path_or_both_tools_are_missing) {
  EXPECT_EQ(showProperties(file("a.txt")), kNotSupported);
  desktop_.install("gdbus");
  EXPECT_EQ(showProperties(program("b.txt")), kFileNotFound);
  EXPECT_FALSE(desktop_.called("gdbus"));
}

TEST_F(OpenSystemInformation, Starts_the_first_tool_that_the_host_has) {
  EXPECT_EQ(openSystemInformation(), kFileNotFound);
  desktop_.install("gnome-control-center");
  EXPECT_EQ(openSystemInformation(), kNoError);
  EXPECT_EQ(desktop_.callOf("gnome-control-center"), "info-overview\n");
  desktop_.install("hardinfo");
  EXPECT_EQ(openSystemInformation(), kNoError);
  EXPECT_EQ(desktop_.callOf("hardinfo"), "\n");
}

TEST_F(CreateShortcut, Writes_a_whole_desktop_entry_for_the_start_of_the_session) {
  const std::string target = file("tandemize");
  ::chmod(host("tandemize").c_str(), 0755);
  EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "tandemize"}, target), kNoError);
  EXPECT_EQ(desktop_.home().read(".config/autostart/tandemize.desktop"),
            "[Desktop Entry]\nType=Application\nName=tandemize\nComment=tandemize\nExec=\"" +
                host("tandemize") + "\"\nTerminal=false\nX-GNOME-Autostart-enabled=true\n");
}

TEST_F(CreateShortcut, Overwrites_an_older_one) {
  EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "t"}, "C:\\old program with a long name"), kNoError);
  EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "t"}, "C:\\new"), kNoError);
  EXPECT_EQ(line(std::string(kAutostart) + "t.desktop", "Exec"), "\"/new\"");
}

TEST_F(CreateShortcut, Quotes_the_target_by_the_rules_of_desktop_entries) {
  struct Case {
    const char *name, *exec;
  };
  for (const Case& test :
       {Case{"a b", "a b"}, Case{"a'b", "a'b"}, Case{"100%U", "100%%U"}, Case{"a$b", R"(a\\$b)"},
        Case{"a`b", R"(a\\`b)"}, Case{"a;b&", "a;b&"}, Case{"\xEF\x80\xA2", R"(\\")"},
        Case{"\xEF\x81\x9C", R"(\\\\)"}, Case{"\xEF\x80\x8A", R"(\n)"}, Case{"città", "città"}}) {
    EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "t"}, std::string("C:\\") + test.name), kNoError);
    EXPECT_EQ(line(std::string(kAutostart) + "t.desktop", "Exec"), "\"/" + std::string(test.exec) + "\"");
  }
}

TEST_F(CreateShortcut, Opens_a_target_that_cannot_be_run) {
  EXPECT_EQ(createShortcut({ShortcutPlace::desktop, "", "doc"}, file("a b.txt")), kNoError);
  EXPECT_EQ(line("Desktop/doc.desktop", "Exec"), "xdg-open \"" + host("a b.txt") + "\"");
  EXPECT_EQ(createShortcut({ShortcutPlace::desktop, "", "doc"}, program("bin")), kNoError);
  EXPECT_EQ(line("Desktop/doc.desktop", "Exec"), "xdg-open \"" + host("bin") + "\"");
}

TEST_F(CreateShortcut, Finds_the_folder_of_each_place) {
  for (const auto place : {ShortcutPlace::desktop, ShortcutPlace::programs, ShortcutPlace::startUp})
    EXPECT_EQ(createShortcut({place, "", "t"}, "C:\\t"), kNoError);
  EXPECT_EQ(createShortcut({ShortcutPlace::startMenu, "", "m"}, "C:\\t"), kNoError);
  EXPECT_TRUE(desktop_.home().exists("Desktop/t.desktop"));
  EXPECT_TRUE(desktop_.home().exists(".local/share/applications/t.desktop"));
  EXPECT_TRUE(desktop_.home().exists(".local/share/applications/m.desktop"));
  EXPECT_TRUE(desktop_.home().exists(".config/autostart/t.desktop"));
  EXPECT_EQ(line("Desktop/t.desktop", "X-GNOME-Autostart-enabled"), "<no line>");
}

TEST_F(CreateShortcut, Follows_the_variables_unless_they_are_relative) {
  const ScopedVariable data("XDG_DATA_HOME", host("data"));
  {
    const ScopedVariable config("XDG_CONFIG_HOME", host("config"));
    EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "t"}, "C:\\t"), kNoError);
  }
  EXPECT_EQ(createShortcut({ShortcutPlace::programs, "", "t"}, "C:\\t"), kNoError);
  EXPECT_TRUE(desktop_.home().exists("config/autostart/t.desktop"));
  EXPECT_TRUE(desktop_.home().exists("data/applications/t.desktop"));
  const ScopedVariable config("XDG_CONFIG_HOME", "config");
  EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "t"}, "C:\\t"), kNoError);
  EXPECT_TRUE(desktop_.home().exists(".config/autostart/t.desktop"));
}

TEST_F(CreateShortcut, Takes_the_desktop_folder_that_the_user_has_chosen) {
  struct Case {
    std::string lines, folder;
  };
  for (const Case& test :
       {Case{"# folders\nXDG_DESKTOP_DIR=\"$HOME/Scrivania\"\n", "Scrivania"},
        Case{"XDG_DESKTOP_DIR=\"$HOME/first\"\n XDG_DESKTOP_DIR = \"$HOME/the \\\"last\\\"\"",
             "the \"last\""},
        Case{"XDG_DESKTOP_DIR=\"" + host("full/path") + "\"\n", "full/path"},
        Case{"XDG_DESKTOP_DIR=\"\nXDG_DESKTOP_DIR=$HOME/bare\nXDG_DESKTOP_DIR=\"relative\"\n", "Desktop"},
        Case{"XDG_DESKTOP_DIRS=\"$HOME/other\"\nXDG_DESKTOP_DIR\n", "Desktop"}}) {
    desktop_.home().write(".config/user-dirs.dirs", test.lines);
    EXPECT_EQ(createShortcut({ShortcutPlace::desktop, "", "t"}, "C:\\t"), kNoError);
    EXPECT_TRUE(desktop_.home().exists(test.folder + "/t.desktop")) << test.lines;
    EXPECT_EQ(removeShortcut({ShortcutPlace::desktop, "", "t"}), kNoError);
    EXPECT_FALSE(desktop_.home().exists(test.folder + "/t.desktop")) << test.lines;
  }
}

TEST_F(CreateShortcut, Makes_the_subfolder_and_finds_it_again) {
  for (const char* const name : {"t", "u"})
    EXPECT_EQ(createShortcut({ShortcutPlace::programs, "Backup\\Più", name}, "C:\\t"), kNoError);
  EXPECT_TRUE(desktop_.home().exists(".local/share/applications/Backup/Più/t.desktop"));
  EXPECT_TRUE(desktop_.home().exists(".local/share/applications/Backup/Più/u.desktop"));
}

TEST_F(CreateShortcut, May_be_run_on_the_desktop_alone) {
  EXPECT_EQ(createShortcut({ShortcutPlace::desktop, "", "t"}, "C:\\t"), kNoError);
  EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "t"}, "C:\\t"), kNoError);
  EXPECT_EQ(::access(host("Desktop/t.desktop").c_str(), X_OK), 0);
  EXPECT_NE(::access(host(std::string(kAutostart) + "t.desktop").c_str(), X_OK), 0);
}

TEST_F(CreateShortcut, Shows_a_name_of_any_characters) {
  EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", " a\xEF\x80\xBA\xEF\x80\x8A b"}, "C:\\t"), kNoError);
  EXPECT_EQ(line(std::string(kAutostart) + " a:\n b.desktop", "Name"), "\\sa:\\n b");
}

TEST_F(CreateShortcut, Refuses_what_names_no_file) {
  for (const char* const name : {"", "a\\b", "a/b", "..\\a"}) {
    EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", name}, "C:\\t"), kInvalidName) << name;
    EXPECT_EQ(removeShortcut({ShortcutPlace::startUp, "", name}), kInvalidName) << name;
  }
  EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "t"}, "t"), kPathNotFound);
  EXPECT_FALSE(desktop_.home().exists(".config"));
}

TEST_F(CreateShortcut, Fails_where_a_file_is_in_the_way_of_the_folder) {
  desktop_.home().write(".config", "a file");
  EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", "t"}, "C:\\t"), kPathNotFound);
  EXPECT_EQ(desktop_.home().read(".config"), "a file");
}

TEST_F(RemoveShortcut, Takes_away_that_shortcut_only) {
  for (const char* const name : {"t", "u"})
    EXPECT_EQ(createShortcut({ShortcutPlace::startUp, "", name}, "C:\\t"), kNoError);
  EXPECT_EQ(removeShortcut({ShortcutPlace::startUp, "", "t"}), kNoError);
  EXPECT_FALSE(desktop_.home().exists(".config/autostart/t.desktop"));
  EXPECT_TRUE(desktop_.home().exists(".config/autostart/u.desktop"));
}

TEST_F(RemoveShortcut, Is_a_success_if_there_is_none) {
  EXPECT_EQ(removeShortcut({ShortcutPlace::startUp, "", "t"}), kNoError);
  desktop_.home().makeFolder(".config/autostart");
  EXPECT_EQ(removeShortcut({ShortcutPlace::startUp, "", "t"}), kNoError);
}

}  // namespace
}  // namespace tandemize::platform
