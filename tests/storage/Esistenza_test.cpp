#include <gtest/gtest.h>

#include "platform/paths.h"
#include "storage/Drives.h"
#include "storage/File_System.h"
#include "storage/Retries.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::ProgramWithoutRetries;

TEST(EsisteFile, Finds_files_folders_and_what_a_mask_fits) {
  ProgramWithoutRetries program;
  program.work().write("a/file.txt", "");
  for (const char* path : {"a", "a/file.txt"}) EXPECT_TRUE(EsisteFile(program.program(path))) << path;
  EXPECT_TRUE(EsisteFile(program.program("a") + "\\*.txt"));
  EXPECT_FALSE(EsisteFile(program.program("a") + "\\*.dat"));
  EXPECT_FALSE(EsisteFile(program.program("a") + "\\gone"));
  EXPECT_FALSE(EsisteFile(program.program("gone") + "\\file.txt"));
}

TEST(EsisteFile, Answers_as_a_search_of_the_same_path_does) {
  ProgramWithoutRetries program;
  program.work().write("a/file.txt", "");
  program.work().makeFolder("a/b");
  namespace fs = std::filesystem;
  fs::create_symlink("file.txt", program.work().host("a/link"));
  fs::create_symlink("nothing", program.work().host("a/dangling"));
  fs::create_symlink("loop", program.work().host("a/loop"));
  fs::create_directory_symlink("..", program.work().host("a/b/up"));
  const std::string folder = program.program("a");
  for (const char* name : {"", "\\", "\\file.txt", "\\file.txt\\", "\\b", "\\b\\", "\\link", "\\dangling",
                           "\\loop", "\\b\\up", "\\b\\up\\file.txt", "\\*.*", "\\?ile.txt", "\\.", "\\.."}) {
    HandleRicerca handle = 0;
    RecordRicerca record;
    const RispostaDir answer = DirFile(handle, record, folder + name, true);
    ChiudiRicerca(handle);
    EXPECT_EQ(EsisteFile(folder + name), !answer.fallita() && !answer.fine()) << name;
  }
}

TEST(EsisteFile, The_empty_path_and_a_server_without_a_session_give_false) {
  ProgramWithoutRetries program;
  EXPECT_FALSE(EsisteFile(""));
  EXPECT_FALSE(EsisteFile("/public/file"));
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(EsisteCartella, Only_a_folder_exists_as_one) {
  ProgramWithoutRetries program;
  program.work().write("a/file.txt", "");
  EXPECT_TRUE(EsisteCartella(program.program("a")));
  EXPECT_TRUE(EsisteCartella(program.program("a") + "\\"));
  EXPECT_TRUE(EsisteCartella("C:\\"));
  EXPECT_FALSE(EsisteCartella(program.program("a/file.txt")));
  EXPECT_FALSE(EsisteCartella(program.program("gone")));
  EXPECT_FALSE(EsisteCartella(""));
  EXPECT_FALSE(EsisteCartella("", true));
}

TEST(EsisteCartella, Lets_events_run) {
  ProgramWithoutRetries program;
  const long before = program.screen.events;
  static_cast<void>(EsisteCartella("C:\\"));
  EXPECT_GT(program.screen.events, before);
}

TEST(EsisteCartella, Quiet_about_a_server_without_a_session_is_true_without_contact) {
  ProgramWithoutRetries program;
  EXPECT_TRUE(EsisteCartella("/public", true));
  EXPECT_FALSE(EsisteCartella("/public"));
}

TEST(Restituisci_NumeroFile_Cartella, Counts_files_and_folders_without_the_two_dots) {
  ProgramWithoutRetries program;
  program.work().write("a/one", "");
  program.work().write("a/b/two", "");
  program.work().makeFolder("empty");
  EXPECT_EQ(Restituisci_NumeroFile_Cartella(program.program("a")), 2);
  EXPECT_EQ(Restituisci_NumeroFile_Cartella(program.program("empty")), 0);
}

TEST(Restituisci_NumeroFile_Cartella, A_folder_that_cannot_be_read_is_retried_and_then_fails) {
  ProgramWithoutRetries program;
  test::retryWithoutPause(2);
  const std::string path = program.program("gone");
  EXPECT_EQ(Restituisci_NumeroFile_Cartella(path), RisultatoFallito);
  EXPECT_EQ(countInLog(test::retryLine(0, "Restituisci_NumeroFile_Cartella", 76)), 1);
  EXPECT_EQ(countInLog(test::retryLine(1, "Restituisci_NumeroFile_Cartella", 76)), 1);
  EXPECT_EQ(countInLog("Cartella: < " + path + " >"), 1);
}

TEST(Restituisci_NumeroFile_Cartella, A_server_without_a_session_fails) {
  ProgramWithoutRetries program;
  EXPECT_EQ(Restituisci_NumeroFile_Cartella("/public"), RisultatoFallito);
  EXPECT_EQ(countInLog(test::retryLine(0, "Restituisci_NumeroFile_Cartella", 12018)), 1);
}

}  // namespace
}  // namespace tandemize
