// What a copy does with faults that no real host gives on demand.
#include "platform/posix/hostfaults.h"

#include <gtest/gtest.h>

#include "backup/BackupRun.h"

namespace tandemize {
namespace {

using platform::hostFaults;

class HostFault : public testing::Test {
 protected:
  HostFault() {
    folder_.work().write("from", "content");
    folder_.work().makeFolder("to");
  }
  ~HostFault() override {
    folder_.forgetHooks();
    hostFaults() = {};
  }

  bool copy() { return window_.Copy_File(folder_.program("from"), folder_.program("to/copy"), 1024); }
  bool logHolds(const std::string& text) { return folder_.log().find(text) != std::string::npos; }

  test::BackupFolder folder_;
  FrmFileTransfer window_;
};

TEST_F(HostFault, An_open_that_fails_without_a_system_message_falls_back_to_the_platforms_own_copy) {
  hostFaults().nextSourceOpen = platform::kGeneralFailure;
  EXPECT_TRUE(copy());
  EXPECT_EQ(folder_.work().read("to/copy"), "content");
  EXPECT_EQ(folder_.logLines(), (std::vector<std::string>{"| Use Api CopyFile ...", "| - OK -", ""}));
  EXPECT_EQ(window_.EsitoCopia, EsitoTrasferimento::Nessuno);
}

TEST_F(HostFault, The_platforms_own_copy_that_fails_too_leaves_a_report) {
  folder_.work().write("to/copy", "old");
  hostFaults().nextSourceOpen = platform::kGeneralFailure;
  hostFaults().nextSourceRead = platform::kIoDevice;
  EXPECT_FALSE(copy());
  EXPECT_TRUE(logHolds("Use Api CopyFile ..."));
  EXPECT_TRUE(logHolds("==> Error While Reading File : " + folder_.program("from")));
  EXPECT_EQ(folder_.work().read("to/copy"), "old");
  EXPECT_EQ(window_.EsitoCopia, EsitoTrasferimento::FileFallito);
}

TEST_F(HostFault, A_file_in_use_by_the_system_is_told_as_such) {
  hostFaults().nextSourceRead = platform::kSharingViolation;
  EXPECT_FALSE(copy());
  EXPECT_TRUE(logHolds("FaseAperturaFile = 3 (File in use by system)"));
  EXPECT_FALSE(folder_.work().exists("to/copy"));
}

TEST_F(HostFault, A_fault_while_reading_keeps_the_old_copy_and_names_the_source) {
  folder_.work().write("to/copy", "old");
  hostFaults().nextSourceRead = platform::kIoDevice;
  EXPECT_FALSE(copy());
  EXPECT_TRUE(logHolds(" : " + folder_.program("from")));
  EXPECT_EQ(folder_.work().read("to/copy"), "old");
}

// A run over two files with little memory free; `answer` is the user's to the question.
void expectWithLittleMemory(Risposta answer, bool copied) {
  test::BackupFolder folder;
  folder.copySourceToDestination();
  folder.work().write("source/a", "1");
  folder.work().write("source/b", "2");
  hostFaults().freeMemory = 5485759;
  folder.screen.answers = {answer};
  FrmBackupChoice dialog;
  EXPECT_EQ(dialog.TastoOk_Annulla(0), EsitoOperazione::Fatto);
  EXPECT_EQ(folder.work().exists("destination/a") && folder.work().exists("destination/b"), copied);
  std::size_t questions = 0;
  for (const test::ShownBox& box : folder.screen.boxes)
    if (box.style == StileSìNo && box.text.find("memoria fisica") != std::string::npos) ++questions;
  EXPECT_EQ(questions, 1U);
  hostFaults() = {};
}

TEST(LittleMemory, The_question_is_asked_once_a_run_and_no_goes_on) {
  expectWithLittleMemory(Risposta::No, true);
}

TEST(LittleMemory, Yes_stops_the_run_without_any_failure) {
  expectWithLittleMemory(Risposta::Sì, false);
}

TEST(LittleMemory, Enough_memory_asks_nothing) {
  test::BackupFolder folder;
  folder.copySourceToDestination();
  folder.work().write("source/a", "1");
  hostFaults().freeMemory = 5485760;
  FrmBackupChoice dialog;
  EXPECT_EQ(dialog.TastoOk_Annulla(0), EsitoOperazione::Fatto);
  hostFaults() = {};
  for (const test::ShownBox& box : folder.screen.boxes) EXPECT_NE(box.style, StileSìNo);
}

}  // namespace
}  // namespace tandemize
