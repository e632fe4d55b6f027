#include "backup/ElencoSalvati.h"

#include <gtest/gtest.h>

#include "backup/BackupRun.h"
#include "platform/errors.h"

namespace tandemize {
namespace {

using test::BackupFolder;

constexpr const char* List = "FilesList.Dat";

// What the list says of a path and a date when the file holds that text.
bool contains(const std::string& text, std::string_view path, std::string_view date) {
  BackupFolder program;
  program.home().write(List, text);
  ElencoSalvati list;
  EXPECT_EQ(list.Leggi(), platform::kNoError);
  return list.Contiene(path, date);
}

TEST(ElencoSalvati, The_list_lies_in_the_program_folder) {
  BackupFolder program;
  EXPECT_EQ(PercorsoElencoSalvati(), PercorsoApplicazione + "FilesList.Dat");
}

TEST(ElencoSalvati, A_missing_list_is_told_from_an_empty_one) {
  BackupFolder program;
  ElencoSalvati missing, empty;
  EXPECT_EQ(missing.Leggi(), platform::kFileNotFound);
  EXPECT_FALSE(missing.Contiene("C:\\a", "1"));
  program.home().write(List, "");
  EXPECT_EQ(empty.Leggi(), platform::kNoError);
  EXPECT_FALSE(empty.Contiene("C:\\a", "1"));
}

TEST(ElencoSalvati, A_list_that_cannot_be_read_is_not_a_missing_one) {
  BackupFolder program;
  program.home().makeFolder(List);
  ElencoSalvati list;
  const platform::ErrorCode error = list.Leggi();
  EXPECT_NE(error, platform::kNoError);
  EXPECT_NE(error, platform::kFileNotFound);
}

TEST(ElencoSalvati, Path_and_date_must_be_equal_to_the_letter) {
  const std::string text = "C:\\a b#_#_#01/02/2026 03.04.05#_#_#7\r\n";
  EXPECT_TRUE(contains(text, "C:\\a b", "01/02/2026 03.04.05"));
  EXPECT_FALSE(contains(text, "C:\\A b", "01/02/2026 03.04.05"));
  EXPECT_FALSE(contains(text, "C:\\a b ", "01/02/2026 03.04.05"));
  EXPECT_FALSE(contains(text, "C:\\a b", "01/02/2026 03.04.06"));
  EXPECT_FALSE(contains(text, "C:\\a b", "01/02/2026 3.04.05"));
  EXPECT_FALSE(contains(text, "C:\\a", "01/02/2026 03.04.05"));
}

TEST(ElencoSalvati, The_size_is_never_compared) {
  EXPECT_TRUE(contains("C:\\a#_#_#d#_#_#\r\n", "C:\\a", "d"));
  EXPECT_TRUE(contains("C:\\a#_#_#d#_#_#no number#_#_#more\r\n", "C:\\a", "d"));
}

TEST(ElencoSalvati, Any_line_of_a_path_with_the_date_counts) {
  const std::string text = "C:\\a#_#_#1#_#_#5\r\nC:\\b#_#_#2#_#_#5\r\nC:\\a#_#_#3#_#_#5\r\n";
  EXPECT_TRUE(contains(text, "C:\\a", "1"));
  EXPECT_TRUE(contains(text, "C:\\a", "3"));
  EXPECT_FALSE(contains(text, "C:\\a", "2"));
  EXPECT_TRUE(contains(text, "C:\\b", "2"));
}

TEST(ElencoSalvati, Lines_without_both_marks_say_nothing_and_do_no_harm) {
  const std::string text = "\r\nC:\\cut\r\nC:\\cut#_#_#1\r\n#_#_##_#_#\r\nC:\\a#_#_#1#_#_#5";
  EXPECT_FALSE(contains(text, "C:\\cut", "1"));
  EXPECT_FALSE(contains(text, "C:\\cut", ""));
  EXPECT_TRUE(contains(text, "C:\\a", "1"));
}

TEST(ElencoSalvati, A_path_that_holds_the_mark_itself_is_never_found) {
  EXPECT_FALSE(contains("C:\\a#_#_#b#_#_#1#_#_#5\r\n", "C:\\a#_#_#b", "1"));
}

TEST(ElencoSalvati, Bytes_that_are_no_text_compare_as_bytes) {
  EXPECT_TRUE(contains("C:\\\xFF\xFE#_#_#1#_#_#5\r\n", "C:\\\xFF\xFE", "1"));
  EXPECT_FALSE(contains("C:\\\xFF\xFE#_#_#1#_#_#5\r\n", "C:\\\xFF\xFD", "1"));
}

TEST(ElencoSalvati, Every_line_of_a_long_list_is_found) {
  std::string text;
  for (int i = 0; i < 5000; ++i)
    text += "C:\\f\\" + std::to_string(i) + "#_#_#" + std::to_string(i * 7) + "#_#_#1\r\n";
  BackupFolder program;
  program.home().write(List, text);
  ElencoSalvati list;
  ASSERT_EQ(list.Leggi(), platform::kNoError);
  for (int i = 0; i < 5000; ++i) {
    EXPECT_TRUE(list.Contiene("C:\\f\\" + std::to_string(i), std::to_string(i * 7)));
    EXPECT_FALSE(list.Contiene("C:\\f\\" + std::to_string(i), std::to_string(i * 7 + 1)));
  }
}

TEST(ElencoSalvati, The_list_is_read_once_a_run) {
  BackupFolder program;
  program.home().write(List, "C:\\a#_#_#1#_#_#5\r\n");
  ElencoSalvati list;
  ASSERT_EQ(list.Leggi(), platform::kNoError);
  program.home().write(List, "C:\\b#_#_#1#_#_#5\r\n");
  ASSERT_EQ(list.Leggi(), platform::kNoError);
  EXPECT_TRUE(list.Contiene("C:\\a", "1"));
  EXPECT_FALSE(list.Contiene("C:\\b", "1"));
}

TEST(ScrittoreElenco, A_line_is_path_date_and_size_joined_by_the_mark) {
  BackupFolder program;
  ScrittoreElenco writer;
  ASSERT_EQ(writer.Apri(true), platform::kNoError);
  ASSERT_EQ(writer.Aggiungi("C:\\a b,c", "01/02/2026 03.04.05", "12"), platform::kNoError);
  EXPECT_EQ(program.home().read(List), "C:\\a b,c#_#_#01/02/2026 03.04.05#_#_#12\r\n");
}

TEST(ScrittoreElenco, A_new_list_is_empty_before_its_first_line) {
  BackupFolder program;
  program.home().write(List, "old\r\n");
  ScrittoreElenco writer;
  ASSERT_EQ(writer.Apri(true), platform::kNoError);
  EXPECT_EQ(program.home().read(List), "");
}

TEST(ScrittoreElenco, An_old_list_can_be_added_to) {
  BackupFolder program;
  program.home().write(List, "old\r\n");
  ScrittoreElenco writer;
  ASSERT_EQ(writer.Apri(false), platform::kNoError);
  ASSERT_EQ(writer.Aggiungi("p", "d", "1"), platform::kNoError);
  EXPECT_EQ(program.home().read(List), "old\r\np#_#_#d#_#_#1\r\n");
}

TEST(ScrittoreElenco, What_it_writes_the_reader_finds) {
  BackupFolder program;
  ScrittoreElenco writer;
  ASSERT_EQ(writer.Apri(false), platform::kNoError);
  ASSERT_EQ(writer.Aggiungi("C:\\x\xFFy", "date", "1"), platform::kNoError);
  ElencoSalvati list;
  ASSERT_EQ(list.Leggi(), platform::kNoError);
  EXPECT_TRUE(list.Contiene("C:\\x\xFFy", "date"));
}

TEST(ScrittoreElenco, A_list_that_cannot_be_opened_is_a_failure) {
  BackupFolder program;
  program.home().makeFolder(List);
  ScrittoreElenco writer;
  EXPECT_NE(writer.Apri(true), platform::kNoError);
}

}  // namespace
}  // namespace tandemize
