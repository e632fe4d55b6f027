#include "shell/Desktop.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "fixtures/ProgramFolder.h"
#include "platform/fakedesktop.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "shell/Impostazioni.h"

namespace tandemize {
namespace {

class DesktopProgramma : public testing::Test {
 protected:
  test::FakeDesktop desktop_;
  test::ProgramFolder folder_{false};
};

using ApriFileTest = DesktopProgramma;
using ProprietaFileTest = DesktopProgramma;
using CreaCollegamentoTest = DesktopProgramma;
using CollegamentoAvvio = DesktopProgramma;

TEST_F(ApriFileTest, Opens_a_path_of_the_programs_notation) {
  desktop_.install("xdg-open");
  folder_.work().write("Log 1.txt", "log");
  EXPECT_EQ(ApriFile(folder_.program("Log 1.txt")), platform::kNoError);
  EXPECT_EQ(desktop_.callOf("xdg-open"), folder_.work().host("Log 1.txt") + "\n");
}

TEST_F(ApriFileTest, Gives_the_systems_number_and_shows_no_box) {
  desktop_.install("xdg-open");
  EXPECT_EQ(ApriFile(folder_.program("missing.txt")), platform::kFileNotFound);
  EXPECT_TRUE(folder_.screen.boxes.empty());
}

TEST_F(ProprietaFileTest, Asks_for_the_properties_of_that_path) {
  desktop_.install("gdbus");
  folder_.work().write("a.txt", "a");
  EXPECT_EQ(ProprietaFile(folder_.program("a.txt")), platform::kNoError);
  EXPECT_NE(desktop_.callOf("gdbus").find("['file://" + folder_.work().host("a.txt") + "']\n"),
            std::string::npos);
}

TEST_F(ProprietaFileTest, Is_not_supported_without_a_tool) {
  folder_.work().write("a.txt", "a");
  EXPECT_EQ(ProprietaFile(folder_.program("a.txt")), platform::kNotSupported);
}

TEST_F(CreaCollegamentoTest, Puts_the_four_places_where_their_numbers_say) {
  const char* const folders[] = {"Desktop", ".local/share/applications", ".local/share/applications",
                                 ".config/autostart"};
  for (int posto = 0; posto < 4; ++posto) {
    const std::string nome = "n" + std::to_string(posto);
    EXPECT_EQ(CreaCollegamento(nome, "C:\\p", static_cast<PostoCollegamento>(posto), "", "", 1),
              platform::kNoError);
    EXPECT_TRUE(desktop_.home().exists(std::string(folders[posto]) + "/" + nome + ".desktop")) << posto;
  }
}

TEST_F(CreaCollegamentoTest, Joins_a_subfolder_on_and_makes_it) {
  EXPECT_EQ(CreaCollegamento("n", "C:\\p", PostoCollegamento::desktop, "Sotto", "CTRL+ALT+T", 7),
            platform::kNoError);
  const std::string text = desktop_.home().read("Desktop/Sotto/n.desktop");
  EXPECT_NE(text.find("\nName=n\nComment=n\nExec=\"/p\"\n"), std::string::npos) << text;
}

TEST_F(CollegamentoAvvio, Is_there_while_the_program_starts_with_the_computer) {
  for (const int modo : {1, 2, 0, 0}) {
    StartUp_PC_Mode = static_cast<std::uint8_t>(modo);
    EXPECT_EQ(AggiornaCollegamentoAvvio("C:\\opt\\bin\\tandemize"), platform::kNoError);
    EXPECT_EQ(desktop_.home().exists(".config/autostart/tandemize.desktop"), modo != 0);
  }
}

TEST_F(CollegamentoAvvio, Starts_the_program_by_its_full_path) {
  StartUp_PC_Mode = 2;
  EXPECT_EQ(AggiornaCollegamentoAvvio("C:\\opt\\bin\\tandemize"), platform::kNoError);
  EXPECT_NE(desktop_.home().read(".config/autostart/tandemize.desktop").find("Exec=\"/opt/bin/tandemize\"\n"),
            std::string::npos);
}

TEST_F(CollegamentoAvvio, Goes_with_success_even_if_there_is_none) {
  EXPECT_EQ(EliminaCollegamentoAvvio("tandemize"), platform::kNoError);
  EXPECT_EQ(CreaCollegamento("tandemize", "C:\\p", PostoCollegamento::startUp, "", "", 1),
            platform::kNoError);
  EXPECT_EQ(EliminaCollegamentoAvvio("tandemize"), platform::kNoError);
  EXPECT_FALSE(desktop_.home().exists(".config/autostart/tandemize.desktop"));
}

}  // namespace
}  // namespace tandemize
