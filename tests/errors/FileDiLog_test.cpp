// Which numbered file a record goes to, whatever happens in the program folder between records.
#include "errors/FileDiLog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "errors/ModuloLog.h"
#include "fixtures/ProgramFolder.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ProgramFolder;

struct SmallLogFiles : testing::Test {
  SmallLogFiles() { Log_Max_File_Size = 1; }

  [[nodiscard]] std::string path(int number) const { return program.host(NomeDelNumero(number)); }
  [[nodiscard]] bool exists(int number) const { return fs::exists(path(number)); }
  [[nodiscard]] std::string content(int number) const { return test::readHostFile(path(number)); }
  void make(int number, std::size_t bytes = 0) const {
    test::writeHostFile(path(number), std::string(bytes, 'x'));
  }

  // The number that a probe from 1 up chooses, file by file.
  [[nodiscard]] int probe() const {
    for (int i = 1;; ++i) {
      if (!exists(i)) return i;
      if (static_cast<std::int64_t>(fs::file_size(path(i))) < std::int64_t{Log_Max_File_Size} * 1024 &&
          !exists(i + 1))
        return i;
    }
  }

  // Writes one record; the number of the file that it went to, which must be the probe's choice.
  int record() {
    static int counter = 0;
    const std::string text = "record " + std::to_string(++counter) + ".";
    const int expected = probe();
    ScriviLog(text, RigaNormale);
    EXPECT_EQ(ErroreLog(), platform::kNoError);
    EXPECT_NE(content(expected).find(text), std::string::npos) << text << " is not in " << expected;
    return expected;
  }

  ProgramFolder program{false};
};
using NomeLogFileTest = SmallLogFiles;
using FileDiLogTest = SmallLogFiles;

TEST_F(NomeLogFileTest, Without_a_file_the_first_is_due) {
  std::string created = "x";
  EXPECT_EQ(NomeLogFile(created), "");
  EXPECT_EQ(created, "LogFile1.txt");
  EXPECT_FALSE(exists(1));
}

TEST_F(NomeLogFileTest, A_file_with_room_is_appended_to) {
  make(1, 1023);
  std::string created = "x";
  EXPECT_EQ(NomeLogFile(created), "LogFile1.txt");
  EXPECT_EQ(created, "");
}

TEST_F(NomeLogFileTest, A_full_file_is_followed_by_a_new_one) {
  make(1, 1024);
  std::string created;
  EXPECT_EQ(NomeLogFile(created), "LogFile1.txt");
  EXPECT_EQ(created, "LogFile2.txt");
}

TEST_F(NomeLogFileTest, The_highest_file_is_the_current_one_even_if_lower_ones_have_room) {
  make(1, 10);
  make(2, 10);
  make(3, 10);
  std::string created = "x";
  EXPECT_EQ(NomeLogFile(created), "LogFile3.txt");
  EXPECT_EQ(created, "");
}

TEST_F(NomeLogFileTest, The_search_stops_at_a_gap) {
  make(1, 2000);
  make(3, 10);
  std::string created;
  EXPECT_EQ(NomeLogFile(created), "LogFile1.txt");
  EXPECT_EQ(created, "LogFile2.txt");
}

TEST_F(NomeLogFileTest, A_file_with_room_before_a_gap_is_filled_first) {
  make(1, 10);
  make(3, 10);
  std::string created = "x";
  EXPECT_EQ(NomeLogFile(created), "LogFile1.txt");
  EXPECT_EQ(created, "");
}

TEST_F(NomeLogFileTest, Other_names_do_not_count) {
  for (const char* name : {"LogFile01.txt", "LogFile.txt", "LogFile1.txt.bak", "logfile1.txt", "LogFile0.txt",
                           "LogFile-1.txt", "LogFile1a.txt", "LogFile99999999999.txt", "LogFile+1.txt"})
    program.home().write(name, "");
  std::string created;
  EXPECT_EQ(NomeLogFile(created), "");
  EXPECT_EQ(created, "LogFile1.txt");
}

TEST_F(NomeLogFileTest, A_limit_of_0_or_below_makes_every_file_full) {
  make(1);
  for (const int limit : {0, -1}) {
    Log_Max_File_Size = limit;
    std::string created;
    EXPECT_EQ(NomeLogFile(created), "LogFile1.txt");
    EXPECT_EQ(created, "LogFile2.txt");
  }
}

TEST_F(NomeLogFileTest, A_very_large_limit_does_not_overflow) {
  Log_Max_File_Size = INT32_MAX;
  make(1, 5000);
  std::string created = "x";
  EXPECT_EQ(NomeLogFile(created), "LogFile1.txt");
  EXPECT_EQ(created, "");
}

TEST_F(FileDiLogTest, The_first_record_creates_the_first_file) {
  EXPECT_EQ(record(), 1);
  EXPECT_EQ(record(), 1);
  EXPECT_FALSE(exists(2));
}

TEST_F(FileDiLogTest, A_full_first_file_makes_the_next_record_create_the_second) {
  make(1, 1024);
  EXPECT_EQ(record(), 2);
  EXPECT_EQ(fs::file_size(path(1)), 1024U);
}

TEST_F(FileDiLogTest, A_full_first_file_sends_the_record_to_a_second_with_room) {
  make(1, 1024);
  make(2, 5);
  EXPECT_EQ(record(), 2);
  EXPECT_EQ(content(2).substr(0, 5), "xxxxx");
}

TEST_F(FileDiLogTest, A_file_exceeds_its_limit_by_its_last_record) {
  make(1, 1023);
  ScriviLog(std::string(3000, 'y'), RigaNormale);
  EXPECT_GT(fs::file_size(path(1)), 4000U);
  EXPECT_EQ(record(), 2);
}

TEST_F(FileDiLogTest, A_limit_of_0_creates_a_file_for_each_record) {
  Log_Max_File_Size = 0;
  for (int i = 1; i <= 300; ++i) ASSERT_EQ(record(), i);
}

TEST_F(FileDiLogTest, A_deleted_first_file_is_a_gap_that_the_next_record_fills) {
  make(1, 2000);
  make(2, 10);
  EXPECT_EQ(record(), 2);
  fs::remove(path(1));
  EXPECT_EQ(record(), 1);
  EXPECT_EQ(record(), 2);  // the gap is closed, and the second is the highest again
}

TEST_F(FileDiLogTest, The_deleted_current_file_is_made_anew) {
  EXPECT_EQ(record(), 1);
  fs::remove(path(1));
  EXPECT_EQ(record(), 1);
}

TEST_F(FileDiLogTest, All_files_deleted_begin_again_at_1) {
  make(1, 2000);
  make(2, 2000);
  EXPECT_EQ(record(), 3);
  for (int i = 1; i <= 3; ++i) fs::remove(path(i));
  EXPECT_EQ(record(), 1);
}

TEST_F(FileDiLogTest, A_next_file_made_from_outside_is_taken) {
  EXPECT_EQ(record(), 1);
  make(2);
  EXPECT_EQ(record(), 2);
}

TEST_F(FileDiLogTest, A_file_made_from_outside_right_after_one_of_our_own_is_taken) {
  make(1, 2000);
  EXPECT_EQ(record(), 2);
  make(3);
  EXPECT_EQ(record(), 3);
}

TEST_F(FileDiLogTest, A_file_beyond_a_gap_counts_once_the_gap_is_filled) {
  make(1, 2000);
  make(3, 10);
  EXPECT_EQ(record(), 2);
  EXPECT_EQ(record(), 3);
}

TEST_F(FileDiLogTest, A_renamed_current_file_leaves_its_number_free) {
  EXPECT_EQ(record(), 1);
  fs::rename(path(1), program.host("old.txt"));
  EXPECT_EQ(record(), 1);
  EXPECT_EQ(test::readHostFile(program.host("old.txt")).find(content(1)), std::string::npos);
}

TEST_F(FileDiLogTest, Files_that_changed_their_names_among_each_other_are_told_apart) {
  make(1, 2000);
  EXPECT_EQ(record(), 2);
  fs::rename(path(1), path(9));
  fs::rename(path(2), path(1));
  EXPECT_EQ(record(), 1);
}

TEST_F(FileDiLogTest, Another_file_moved_over_the_current_one_gets_the_next_record) {
  EXPECT_EQ(record(), 1);
  program.home().write("other", "other\r\n");
  fs::rename(program.host("other"), path(1));
  EXPECT_EQ(record(), 1);
  EXPECT_EQ(content(1).substr(0, 7), "other\r\n");
}

TEST_F(FileDiLogTest, A_replaced_program_folder_gets_the_next_record) {
  EXPECT_EQ(record(), 1);
  const std::string home = program.host("");
  fs::rename(home, home + ".away");
  fs::create_directory(home);
  EXPECT_EQ(record(), 1);
  make(2);
  EXPECT_EQ(record(), 2);  // the new folder is watched as well
  fs::remove_all(home + ".away");
}

TEST_F(FileDiLogTest, A_program_folder_that_is_gone_for_a_while_is_told_and_taken_again) {
  EXPECT_EQ(record(), 1);
  const std::string home = program.host("");
  fs::rename(home, home + ".away");
  ScriviLog("lost", RigaNormale);
  EXPECT_EQ(ErroreLog(), platform::kPathNotFound);
  ScriviLog("lost", RigaNormale);
  AzzeraErroreLog();
  fs::rename(home + ".away", home);
  EXPECT_EQ(record(), 1);
  make(2);
  EXPECT_EQ(record(), 2);
}

TEST_F(FileDiLogTest, A_truncated_file_has_room_again) {
  EXPECT_EQ(record(), 1);
  test::writeHostFile(path(1), std::string(2000, 'x'));
  fs::resize_file(path(1), 0);
  EXPECT_EQ(record(), 1);
  EXPECT_EQ(content(1).front(), '(');
}

TEST_F(FileDiLogTest, A_file_grown_from_outside_is_full) {
  EXPECT_EQ(record(), 1);
  test::writeHostFile(path(1), std::string(2000, 'x'));
  EXPECT_EQ(record(), 2);
}

TEST_F(FileDiLogTest, Another_program_folder_gets_its_own_file) {
  EXPECT_EQ(record(), 1);
  PercorsoApplicazione = program.program("") + "\\";
  ScriviLog("elsewhere", RigaNormale);
  EXPECT_NE(program.work().read("LogFile1.txt").find("elsewhere"), std::string::npos);
}

TEST_F(FileDiLogTest, A_changed_limit_holds_from_the_next_record) {
  Log_Max_File_Size = 100;
  make(1, 2000);
  EXPECT_EQ(record(), 1);
  Log_Max_File_Size = 1;
  EXPECT_EQ(record(), 2);
}

TEST_F(FileDiLogTest, A_link_to_a_file_is_that_file) {
  program.work().write("real", "");
  fs::create_symlink(program.work().host("real"), path(1));
  EXPECT_EQ(record(), 1);
  EXPECT_NE(program.work().read("real"), "");
}

TEST_F(FileDiLogTest, Records_go_where_a_probe_would_send_them_whatever_happens_in_between) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const auto number = [&random] { return static_cast<int>(random() % 8) + 1; };
  for (int step = 0; step < 2000 && !HasFailure(); ++step) {
    const int i = number(), j = number();
    switch (random() % 12) {
      case 0:
        make(i, random() % 2 == 0 ? 0 : 1500);
        break;
      case 1:
        fs::remove(path(i));
        break;
      case 2:
        if (exists(i)) fs::rename(path(i), path(j));
        break;
      case 3:
        if (exists(i)) fs::resize_file(path(i), 1100);
        break;
      case 4:
        if (exists(i)) fs::resize_file(path(i), 0);
        break;
      case 5:
        Log_Max_File_Size = static_cast<int>(random() % 3);
        break;
      case 6:
        program.home().write("unrelated", "");
        break;
      default:
        break;
    }
    record();
  }
}

struct SmallLogIndex : SmallLogFiles {
  [[nodiscard]] int last(IndiceLog& index) const {
    index.Aggiorna(PercorsoApplicazione);
    return index.Ultimo();
  }
  void setFolderDate(std::chrono::seconds ago) const {
    fs::last_write_time(program.host(""), fs::file_time_type::clock::now() - ago);
  }
};
using IndiceLogTest = SmallLogIndex;

TEST_F(IndiceLogTest, Tells_only_when_names_may_have_changed) {
  IndiceLog index;
  EXPECT_TRUE(index.Aggiorna(PercorsoApplicazione));
  EXPECT_FALSE(index.Aggiorna(PercorsoApplicazione));
  make(1);
  EXPECT_TRUE(index.Aggiorna(PercorsoApplicazione));
  EXPECT_FALSE(index.Aggiorna(PercorsoApplicazione));
}

TEST_F(IndiceLogTest, The_program_s_own_new_file_does_not_count_as_a_change) {
  for (int i = 1; i <= 100; ++i) make(i);
  IndiceLog index;
  EXPECT_EQ(last(index), 100);
  make(101);
  index.Creato(101);
  EXPECT_FALSE(index.Aggiorna(PercorsoApplicazione));
  EXPECT_EQ(index.Ultimo(), 101);
}

TEST_F(IndiceLogTest, What_happened_beside_the_program_s_own_new_file_is_found_in_the_end) {
  make(1);
  make(2);
  IndiceLog index;
  EXPECT_EQ(last(index), 2);
  fs::remove(path(1));
  make(3);
  index.Creato(3);
  for (int i = 0; i < 4; ++i) index.Aggiorna(PercorsoApplicazione);
  EXPECT_EQ(index.Ultimo(), 0);
}

TEST_F(IndiceLogTest, Without_a_watch_the_folder_s_date_tells_of_changes) {
  make(1);
  setFolderDate(std::chrono::seconds(100));
  IndiceLog index(false);
  EXPECT_EQ(last(index), 1);
  EXPECT_FALSE(index.Aggiorna(PercorsoApplicazione));
  make(2);
  EXPECT_EQ(last(index), 2);
}

TEST_F(IndiceLogTest, Without_a_watch_a_fresh_date_of_the_folder_proves_nothing) {
  IndiceLog index(false);
  setFolderDate(std::chrono::seconds(0));
  EXPECT_EQ(last(index), 0);
  const auto date = fs::last_write_time(program.host(""));
  make(1);
  fs::last_write_time(program.host(""), date);
  EXPECT_EQ(last(index), 1);
}

TEST_F(IndiceLogTest, Without_a_watch_a_replaced_folder_is_read_anew) {
  make(1);
  setFolderDate(std::chrono::seconds(100));
  IndiceLog index(false);
  EXPECT_EQ(last(index), 1);
  const std::string home = program.host("");
  fs::rename(home, home + ".away");
  EXPECT_EQ(last(index), 0);
  fs::remove_all(home);
  fs::rename(home + ".away", home);
  EXPECT_EQ(last(index), 1);
}

}  // namespace
}  // namespace tandemize
