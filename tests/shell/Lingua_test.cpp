#include "shell/Lingua.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "fixtures/ProgramFolder.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

class LinguaTest : public ::testing::Test {
 protected:
  EsitoLingua load(std::string_view content) {
    folder.home().write("Lang_Ita.Dat", content);
    return CaricaLingua();
  }
  test::ProgramFolder folder{false};
};

TEST_F(LinguaTest, The_number_of_a_message_is_the_number_of_its_line) {
  EXPECT_EQ(load("0001 one\r\n0002 two\r\n0003 three"), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1), "one");
  EXPECT_EQ(Messaggio(2), "two");
  EXPECT_EQ(Messaggio(3), "three");
  EXPECT_EQ(Messaggio(0), "");
  EXPECT_EQ(Messaggio(1000), "");
}

TEST_F(LinguaTest, A_line_of_less_than_six_characters_is_an_empty_text) {
  EXPECT_EQ(load("\r\nabc\r\nabcde\r\nabcdeX\r\n"), EsitoLingua::Caricata);
  for (int n = 1; n <= 3; ++n) EXPECT_EQ(Messaggio(n), "");
  EXPECT_EQ(Messaggio(4), "X");
}

TEST_F(LinguaTest, The_mark_and_the_remark_behind_it_are_cut) {
  EXPECT_EQ(load("abcdeHello=%!%=a comment\r\nabcdeHello=%!%=\r\n"), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1), "Hello");
  EXPECT_EQ(Messaggio(2), "Hello");
}

TEST_F(LinguaTest, A_mark_directly_behind_the_five_characters_is_kept_with_its_remark) {
  EXPECT_EQ(load("abcde=%!%=a comment\r\n"), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1), "=%!%=a comment");
}

TEST_F(LinguaTest, The_five_leading_characters_are_characters_and_not_bytes) {
  EXPECT_EQ(load("àèìòùTesto é così\r\n"), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1), "Testo é così");
}

TEST_F(LinguaTest, Plain_line_feeds_and_a_byte_order_mark_are_read_too) {
  EXPECT_EQ(load("\xEF\xBB\xBF"
                 "0001 one\n0002 two\n"),
            EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1), "one");
  EXPECT_EQ(Messaggio(2), "two");
}

TEST_F(LinguaTest, The_language_chooses_the_file) {
  folder.home().write("Lang_Ita.Dat", "0001 uno\r\n");
  folder.home().write("Lang_Eng.Dat", "0001 one\r\n");
  EXPECT_EQ(CaricaLingua(), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1), "uno");
  Language = 1;
  EXPECT_EQ(CaricaLingua(), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1), "one");
}

TEST_F(LinguaTest, The_letter_case_of_the_files_name_does_not_matter) {
  std::filesystem::remove(folder.host("Lang_Ita.Dat"));
  folder.home().write("LANG_ita.dAT", "0001 uno\r\n");
  EXPECT_EQ(CaricaLingua(), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1), "uno");
}

TEST_F(LinguaTest, A_shorter_table_leaves_no_text_of_the_table_before) {
  EXPECT_EQ(load("0001 one\r\n0002 two\r\n"), EsitoLingua::Caricata);
  EXPECT_EQ(load("0001 uno\r\n"), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(2), "");
}

TEST_F(LinguaTest, A_file_of_1000_lines_fits_and_one_of_1001_ends_the_program) {
  std::string lines;
  for (int n = 1; n <= 1000; ++n) lines += "0000 " + std::to_string(n) + "\r\n";
  EXPECT_EQ(load(lines), EsitoLingua::Caricata);
  EXPECT_EQ(Messaggio(1000), "1000");
  EXPECT_TRUE(folder.screen.ends.empty());

  EXPECT_EQ(load(lines + "0000 x"), EsitoLingua::TroppeRighe);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].style, StileCritico);
  EXPECT_NE(folder.screen.boxes[0].text.find("Lang_Ita.Dat"), std::string::npos);
  EXPECT_EQ(folder.screen.ends, std::vector<int>{4});
}

TEST_F(LinguaTest, A_missing_file_shows_just_the_path_while_the_table_is_empty_and_ends_the_program) {
  std::filesystem::remove(folder.host("Lang_Ita.Dat"));
  EXPECT_EQ(CaricaLingua(), EsitoLingua::FileMancante);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text, " '" + PercorsoApplicazione + "Lang_Ita.dat");
  EXPECT_EQ(folder.screen.boxes[0].style, StileCritico);
  EXPECT_EQ(folder.screen.ends, std::vector<int>{4});
}

TEST_F(LinguaTest, A_language_without_a_file_names_the_folder_and_ends_the_program) {
  ASSERT_EQ(CaricaLingua(), EsitoLingua::Caricata);
  Language = 2;
  EXPECT_EQ(CaricaLingua(), EsitoLingua::FileMancante);
  EXPECT_EQ(folder.screen.boxes.at(0).text, Messaggio(262) + " '" + PercorsoApplicazione);
  EXPECT_EQ(folder.screen.ends, std::vector<int>{4});
}

TEST_F(LinguaTest, A_number_outside_the_table_is_told_and_ends_the_program) {
  EXPECT_EQ(Messaggio(1001), "");
  EXPECT_EQ(Messaggio(-1), "");
  EXPECT_EQ(folder.screen.ends, (std::vector<int>{4, 4}));
}

TEST_F(LinguaTest, Binary_content_is_taken_without_harm) {
  std::string junk;
  for (int i = 0; i < 60000; ++i) junk += static_cast<char>(i % 251 == 10 ? 0 : i % 251);
  EXPECT_NE(load(junk), EsitoLingua::FileMancante);
}

TEST_F(LinguaTest, The_text_of_the_retry_notice_comes_with_the_table) {
  ASSERT_EQ(CaricaLingua(), EsitoLingua::Caricata);
  EXPECT_FALSE(MessaggioRiprova.empty());
  EXPECT_EQ(MessaggioRiprova, Messaggio(415));
  AzzeraLingua();
  EXPECT_EQ(MessaggioRiprova, "");
  EXPECT_EQ(Messaggio(415), "");
}

}  // namespace
}  // namespace tandemize
