// LeggiFileProfilo.
#include <filesystem>

#include "profile/ProfiloDiProva.h"

namespace tandemize::test {
namespace {

class LetturaProfilo : public ProfileTest {
 protected:
  // The lines of a whole object with plain values.
  static std::vector<std::string> object(const std::string& k, const std::string& name) {
    return {k + "BackIndice = 1",
            k + "BackTipoOggetto = 0",
            k + "BackTipoTrasferimento = 1",
            k + "BackLinkTo0 = Partner",
            k + "BackDescrizione = " + name,
            k + "BackPath = C:\\" + k,
            k + "Files0 = ",
            k + "BackTop = 1300",
            k + "BackLeft = -20",
            k + "BackHeight = 30",
            k + "BackWidth = 40",
            k + "BackFigura = -1",
            k + "BackFtpServerDescription = Server"};
  }
  bool readFails(const std::vector<std::string>& all, int number, int line) {
    const bool failed = !read(all);
    return failed && logged("Errore N° " + std::to_string(number) + " riga " + std::to_string(line) +
                            " nella routine LeggiFileProfilo");
  }
};

using Texts = std::vector<std::string>;

TEST_F(LetturaProfilo, A_whole_profile_fills_every_variable) {
  Texts all{"Backup_Path_0 = C:\\a", "Backup_Path_1 = /pub",  "Backup_FTP_0 = ", "Backup_FTP_1 = Site",
            "FixFileOption = 1",     "FixScanAfterFix = 255", "FtpEnabled = 1",  "CompareMethod = 2",
            "TandemMode = 0",        "SourceNotChange = 3",   "EraseFile = 4",   "AutoTandemize = 5"};
  for (const std::string& line : object("1", "Docs")) all.push_back(line);
  ASSERT_TRUE(read(all));
  EXPECT_EQ(Backup_Path, (Texts{"C:\\a", "/pub"}));
  EXPECT_EQ(Backup_FTP, (Texts{"", "Site"}));
  EXPECT_EQ(PathCount, 2);
  EXPECT_EQ(FixFileOption, 1);
  EXPECT_EQ(FixScanAfterFix, 255);
  EXPECT_EQ(FtpEnabled, 1);
  EXPECT_EQ(CompareMethod, 2);
  EXPECT_EQ(TandemMode, 0);
  EXPECT_EQ(SourceNotChange, 3);
  EXPECT_EQ(EraseFile, 4);
  EXPECT_EQ(AutoTandemize, 5);
  ASSERT_EQ(UltimoOggetto(), 1U);
  const OggettoBackup& read = ArrayOggetti[1];
  EXPECT_EQ(read.BackIndice, 1);
  EXPECT_EQ(read.BackTipoOggetto, 0);
  EXPECT_EQ(read.BackTipoTrasferimento, 1);
  EXPECT_EQ(read.BackLinkTo, Texts{"Partner"});
  EXPECT_EQ(read.BackDescrizione, "Docs");
  EXPECT_EQ(read.BackPath, "C:\\1");
  EXPECT_EQ(read.Files, Texts{""});
  EXPECT_EQ(read.BackTop, 1300);
  EXPECT_EQ(read.BackLeft, -20);
  EXPECT_EQ(read.BackHeight, 30);
  EXPECT_EQ(read.BackWidth, 40);
  EXPECT_EQ(read.BackFigura, -1);
  EXPECT_EQ(read.BackFtpServerDescription, "Server");
  EXPECT_FALSE(read.BackIgnorato);
  EXPECT_EQ(folder.log(), "");
}

TEST_F(LetturaProfilo, A_new_profile_has_two_empty_paths) {
  writeText(ProfiloVuoto());
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(Backup_Path, (Texts{"", ""}));
  EXPECT_EQ(Backup_FTP, (Texts{"", "", ""}));  // stays, with its spare entry
  EXPECT_EQ(PathCount, 2);
  EXPECT_EQ(FixFileOption, 2);
  EXPECT_EQ(TandemMode, 1);
}

TEST_F(LetturaProfilo, An_empty_file_gives_two_empty_paths_and_no_object) {
  ASSERT_TRUE(read({}));
  EXPECT_EQ(Backup_Path, (Texts{"", ""}));
  EXPECT_EQ(Backup_FTP, (Texts{"", ""}));
  EXPECT_EQ(PathCount, 2);
  EXPECT_EQ(UltimoOggetto(), 0U);
}

TEST_F(LetturaProfilo, The_list_is_cut_at_the_first_empty_path) {
  ASSERT_TRUE(read({"Backup_Path_0 = A", "Backup_Path_1 = B", "Backup_Path_2 = ", "Backup_Path_3 = D",
                    "Backup_FTP_0 = f", "Backup_FTP_1 = g", "Backup_FTP_2 = h", "end"}));
  EXPECT_EQ(Backup_Path, (Texts{"A", "B"}));
  EXPECT_EQ(Backup_FTP, (Texts{"f", "g"}));
  EXPECT_EQ(PathCount, 2);
}

TEST_F(LetturaProfilo, A_first_empty_path_leaves_two_empty_ones_and_the_servers_as_they_are) {
  ASSERT_TRUE(read({"Backup_Path_0 = ", "Backup_Path_1 = B", "Backup_FTP_0 = f", "Backup_FTP_1 = g", "end"}));
  EXPECT_EQ(Backup_Path, (Texts{"", ""}));
  EXPECT_EQ(Backup_FTP, (Texts{"f", "g", ""}));
  EXPECT_EQ(PathCount, 2);
}

TEST_F(LetturaProfilo, A_path_without_a_server_line_gets_an_empty_one) {
  ASSERT_TRUE(read({"Backup_Path_0 = A", "Backup_Path_1 = B", "Backup_Path_2 = C", "end"}));
  EXPECT_EQ(Backup_FTP, (Texts{"", "", ""}));
}

TEST_F(LetturaProfilo, The_value_of_a_path_stands_at_a_fixed_position_for_numbers_of_one_and_two_digits) {
  ASSERT_TRUE(read({"Backup_Path_0 = one", "Backup_Path_10 = two", "Backup_Path_3 =x=y",
                    "Backup_FTP_4 =   three", "Backup_FTP_12 = four", "end"}));
  EXPECT_EQ(Backup_Path, (Texts{"one", "two", "=y"}));
  EXPECT_EQ(Backup_FTP, (Texts{"three", "four", ""}));
}

TEST_F(LetturaProfilo, With_three_digits_the_fixed_position_hits_the_equals_sign) {
  ASSERT_TRUE(read({"Backup_Path_100 = C:\\x", "end"}));
  EXPECT_EQ(Backup_Path, Texts{"= C:\\x"});
}

TEST_F(LetturaProfilo, The_fixed_position_counts_characters) {
  ASSERT_TRUE(read({"èèè Backup_Path_0 = C:\\x", "end"}));
  EXPECT_EQ(Backup_Path, Texts{"0 = C:\\x"});
}

TEST_F(LetturaProfilo, A_path_line_is_found_in_any_case_and_after_other_lines_too) {
  ASSERT_TRUE(read({"BACKUP_PATH_0 = A", "something", "backup_path_1 = B", "end"}));
  EXPECT_EQ(Backup_Path, (Texts{"A", "B"}));
}

TEST_F(LetturaProfilo, A_path_that_reads_as_a_number_stays_as_it_is) {
  ASSERT_TRUE(read({"Backup_Path_0 = 007", "Backup_FTP_0 = 1.5", "end"}));
  EXPECT_EQ(Backup_Path, Texts{"007"});
  EXPECT_EQ(Backup_FTP, Texts{"1.5"});
}

TEST_F(LetturaProfilo, The_line_that_ends_a_run_goes_on_through_the_other_keys) {
  ASSERT_TRUE(read({"Backup_Path_0 = A", "FixFileOption = 7"}));
  EXPECT_EQ(FixFileOption, 7);
}

TEST_F(LetturaProfilo, A_key_inside_a_value_is_read_as_well) {
  ASSERT_TRUE(read({"1BackIndice = 1", "1BackFtpServerDescription = TandemMode = 3"}));
  EXPECT_EQ(TandemMode, 3);
  EXPECT_EQ(ArrayOggetti[1].BackFtpServerDescription, "TandemMode = 3");
}

TEST_F(LetturaProfilo, A_path_that_holds_the_word_files_is_also_read_as_the_first_single_file) {
  ASSERT_TRUE(read({"1BackIndice = 1", "1BackPath = C:\\Program Files", "1Files0 = ", "1BackTop = 5"}));
  EXPECT_EQ(ArrayOggetti[1].BackPath, "C:\\Program Files");
  EXPECT_EQ(ArrayOggetti[1].Files, (Texts{"C:\\Program Files", ""}));
  EXPECT_EQ(ArrayOggetti[1].BackTop, 5);
}

TEST_F(LetturaProfilo,
       The_line_behind_a_description_that_holds_the_word_files_is_past_the_test_for_its_path) {
  ASSERT_TRUE(read(
      {"1BackIndice = 1", "1BackDescrizione = My files", "1BackPath = C:\\x", "1Files0 = ", "1BackTop = 5"}));
  EXPECT_EQ(ArrayOggetti[1].BackDescrizione, "My files");
  EXPECT_EQ(ArrayOggetti[1].BackPath, "");
  EXPECT_EQ(ArrayOggetti[1].BackTop, 5);
}

TEST_F(LetturaProfilo, Options_need_the_blank_behind_their_equals_sign) {
  CompareMethod = 9;
  ASSERT_TRUE(read({"CompareMethod =2", "CompareMethod="}));
  EXPECT_EQ(CompareMethod, 9);
}

TEST_F(LetturaProfilo, An_option_without_a_line_keeps_its_value_while_filter_objects_and_paths_are_reset) {
  CompareMethod = 9;
  FilterBackup = "+|*.doc|";
  FilterIgnoreInvalidPath = 1;
  Backup_Path = {"A", "B"};
  ArrayOggetti.resize(5);
  ASSERT_TRUE(read({"TandemMode = 1"}));
  EXPECT_EQ(CompareMethod, 9);
  EXPECT_EQ(FilterBackup, "");
  EXPECT_EQ(FilterIgnoreInvalidPath, 0);
  EXPECT_EQ(Backup_Path, (Texts{"", ""}));
  EXPECT_EQ(UltimoOggetto(), 0U);
}

TEST_F(LetturaProfilo, Links_and_files_come_in_order_without_a_spare_entry) {
  ASSERT_TRUE(read({"1BackIndice = 1", "1BackLinkTo0 = a", "1BackLinkTo1 = b ", "1BackLinkTo2 = ",
                    "1BackDescrizione = d", "1Files0 = C:\\x", "1Files1 = C:\\y", "1BackTop = 1"}));
  EXPECT_EQ(ArrayOggetti[1].BackLinkTo, (Texts{"a", "b ", ""}));
  EXPECT_EQ(ArrayOggetti[1].Files, (Texts{"C:\\x", "C:\\y"}));
}

TEST_F(LetturaProfilo, A_description_that_is_a_number_reads_back_as_its_integer_part) {
  Texts all = object("1", "007");
  for (const std::string& line : object("2", "1.5")) all.push_back(line);
  ASSERT_TRUE(read(all));
  EXPECT_EQ(ArrayOggetti[1].BackDescrizione, "7");
  EXPECT_EQ(ArrayOggetti[2].BackDescrizione, "1");
}

TEST_F(LetturaProfilo, Object_100_is_read_as_object_10_and_overwrites_it_and_the_array_never_shrinks) {
  Texts all;
  for (int k = 1; k <= 101; ++k)
    for (const std::string& line : object(std::to_string(k), "Object " + std::to_string(k)))
      all.push_back(line);
  ASSERT_TRUE(read(all));
  EXPECT_EQ(UltimoOggetto(), 99U);
  EXPECT_EQ(ArrayOggetti[10].BackDescrizione, "Object 101");
  EXPECT_EQ(ArrayOggetti[10].BackPath, "C:\\101");
  EXPECT_EQ(ArrayOggetti[10].BackLinkTo, Texts{"Partner"});
  EXPECT_EQ(ArrayOggetti[99].BackDescrizione, "Object 99");
  EXPECT_EQ(ArrayOggetti[11].BackDescrizione, "Object 11");
}

TEST_F(LetturaProfilo, A_gap_in_the_numbers_leaves_empty_objects) {
  ASSERT_TRUE(read({"7BackIndice = 3"}));
  EXPECT_EQ(UltimoOggetto(), 7U);
  EXPECT_EQ(ArrayOggetti[7].BackIndice, 3);
  EXPECT_EQ(ArrayOggetti[3].BackDescrizione, "");
  EXPECT_EQ(ArrayOggetti[3].BackLinkTo, Texts{""});
}

TEST_F(LetturaProfilo, Lines_before_the_first_object_and_of_object_0_make_none) {
  ASSERT_TRUE(read({"BackTop = 5", "BackLinkTo0 = x", "BackIndice = 4", "0BackPath = C:\\x"}));
  EXPECT_EQ(UltimoOggetto(), 0U);
}

TEST_F(LetturaProfilo, A_negative_object_number_is_reported_and_ends_the_reading) {
  EXPECT_TRUE(readFails({"x", "-1BackIndice = 4", "TandemMode = 6"}, 9, 2));
  EXPECT_EQ(TandemMode, 0);
}

TEST_F(LetturaProfilo, Text_in_a_numeric_line_is_a_type_mismatch_that_names_number_line_and_key) {
  EXPECT_TRUE(
      readFails({"Backup_Path_0 = A", "Backup_FTP_0 = ", "FixFileOption = abc", "TandemMode = 6"}, 13, 3));
  EXPECT_TRUE(logged("Profilo '" + FileProfilo + "': riga 3, chiave 'FixFileOption = '"));
}

TEST_F(LetturaProfilo, An_empty_numeric_value_is_a_type_mismatch) {
  EXPECT_TRUE(readFails({"EraseFile = "}, 13, 1));
}

TEST_F(LetturaProfilo, After_a_failure_what_was_read_stays_and_nothing_else_is_done) {
  folder.work().write("Configb.adv", "FilterBackup = -|*.tmp|\r\n");
  PathCount = 50;
  EXPECT_TRUE(readFails(
      {"Backup_Path_0 = A", "Backup_FTP_0 = f", "CompareMethod = 3", "EraseFile = x", "TandemMode = 6"}, 13,
      4));
  EXPECT_EQ(Backup_Path, (Texts{"A", ""}));
  EXPECT_EQ(CompareMethod, 3);
  EXPECT_EQ(TandemMode, 0);
  EXPECT_EQ(FilterBackup, "");
  EXPECT_EQ(PathCount, 2);  // not counted anew, but never beyond the lists
}

TEST_F(LetturaProfilo, Numbers_outside_the_range_of_their_field_are_overflows) {
  for (const std::string line :
       {"EraseFile = 256", "EraseFile = -1", "FixFileOption = 2147483648", "CompareMethod = -2147483649",
        "1BackIndice = 256", "1BackTipoOggetto = -1", "1BackTipoTrasferimento = 1000",
        "1BackTop = 2147483648", "1BackLeft = 32768", "1BackHeight = -32769",
        "1BackWidth = 99999999999999999999", "1BackFigura = 4294967296"}) {
    folder.home().write("LogFile1.txt", "");
    EXPECT_TRUE(readFails({line}, 6, 1)) << line;
  }
}

TEST_F(LetturaProfilo, Numbers_at_the_ends_of_their_range_are_taken) {
  ASSERT_TRUE(
      read({"FixFileOption = -2147483648", "CompareMethod = 2147483647", "EraseFile = 255",
            "1BackIndice = 255", "1BackLeft = -32768", "1BackWidth = 32767", "1BackTop = -2147483648"}));
  EXPECT_EQ(FixFileOption, INT32_MIN);
  EXPECT_EQ(CompareMethod, INT32_MAX);
  EXPECT_EQ(EraseFile, 255);
  EXPECT_EQ(ArrayOggetti[1].BackIndice, 255);
  EXPECT_EQ(ArrayOggetti[1].BackLeft, INT16_MIN);
  EXPECT_EQ(ArrayOggetti[1].BackWidth, INT16_MAX);
  EXPECT_EQ(ArrayOggetti[1].BackTop, INT32_MIN);
}

TEST_F(LetturaProfilo, Options_are_rounded_and_object_fields_are_cut) {
  ASSERT_TRUE(read({"CompareMethod = 1.5", "TandemMode =  2.5 ", "1BackIndice = 1", "1BackTop = 1.9"}));
  EXPECT_EQ(CompareMethod, 2);
  EXPECT_EQ(TandemMode, 2);
  EXPECT_EQ(ArrayOggetti[1].BackTop, 1);
}

TEST_F(LetturaProfilo, A_run_of_lines_that_ends_the_file_is_a_read_past_its_end) {
  for (const std::string line :
       {"Backup_Path_0 = A", "Backup_FTP_0 = A", "1BackLinkTo0 = A", "1Files0 = A"}) {
    folder.home().write("LogFile1.txt", "");
    EXPECT_TRUE(readFails({"x", line, line}, 62, 3)) << line;
  }
}

TEST_F(LetturaProfilo, A_missing_file_is_run_time_error_53_and_empties_the_objects) {
  ArrayOggetti.resize(4);
  EXPECT_FALSE(LeggiFileProfilo(FileProfilo));
  EXPECT_TRUE(logged("Errore N° 53 riga 0 nella routine LeggiFileProfilo"));
  EXPECT_TRUE(logged(FileProfilo));
  EXPECT_EQ(UltimoOggetto(), 0U);
}

TEST_F(LetturaProfilo, A_file_in_a_missing_folder_is_run_time_error_76) {
  EXPECT_FALSE(LeggiFileProfilo(folder.program("none/Config.cfg")));
  EXPECT_TRUE(logged("Errore N° 76 riga 0 nella routine LeggiFileProfilo"));
}

TEST_F(LetturaProfilo, A_folder_in_the_profiles_place_is_a_failure) {
  folder.work().makeFolder("Config.cfg");
  EXPECT_FALSE(LeggiFileProfilo(FileProfilo));
  EXPECT_TRUE(logged(" nella routine LeggiFileProfilo"));
}

TEST_F(LetturaProfilo, A_file_of_100_MB_is_refused_unread_with_a_clear_line) {
  writeText(ProfiloVuoto());
  std::filesystem::resize_file(folder.work().host("Config.cfg"), 100'000'000);
  EXPECT_FALSE(LeggiFileProfilo(FileProfilo));
  EXPECT_TRUE(logged("Errore N° 7 riga 0 nella routine LeggiFileProfilo"));
  EXPECT_TRUE(logged("Profilo '" + FileProfilo + "': "));
}

TEST_F(LetturaProfilo, Any_line_end_and_an_unterminated_last_line_are_read) {
  writeText(std::string("Backup_Path_0 = A\nBackup_Path_1 = B\rBackup_FTP_0 = f\r\nTandemMode = 4"));
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(Backup_Path, (Texts{"A", "B"}));
  EXPECT_EQ(TandemMode, 4);
}

TEST_F(LetturaProfilo, Binary_and_NUL_bytes_are_read_without_harm) {
  std::string bytes;
  for (int i = 0; i < 100'000; ++i) bytes += static_cast<char>(i * 7919 % 251);
  writeText(bytes + "\r\nTandemMode = 4\r\n1BackIndice = 1\r\n1BackDescrizione = a" + '\0' + "\xFF\xFE\r\n");
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(TandemMode, 4);
  EXPECT_EQ(ArrayOggetti[1].BackDescrizione, std::string("a\0\xFF\xFE", 4));
}

TEST_F(LetturaProfilo, Large_files_of_one_line_and_of_one_run_are_read_whole) {
  writeText("TandemMode = 4" + std::string(4'000'000, 'b') + "\r\n");
  EXPECT_FALSE(LeggiFileProfilo(FileProfilo));
  std::string run;
  for (int i = 0; i < 100'000; ++i) run += "Backup_Path_1 = C:\\x\r\n";
  writeText(run + "1BackIndice = 1\r\n");
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(PathCount, 100'000);
  EXPECT_EQ(Backup_FTP.size(), 100'000U);
}

TEST_F(LetturaProfilo, The_companion_file_gives_the_filter) {
  folder.work().write("Configb.adv", "filterbackup =   +|*.doc|\r\nFILTERIGNOREINVALIDPATH = 1\r\n");
  ASSERT_TRUE(read({"TandemMode = 1"}));
  EXPECT_EQ(FilterBackup, "+|*.doc|");
  EXPECT_EQ(FilterIgnoreInvalidPath, 1);
}

TEST_F(LetturaProfilo, Without_a_companion_file_there_is_no_filter) {
  ASSERT_TRUE(read({"TandemMode = 1"}));
  EXPECT_EQ(FilterBackup, "");
  EXPECT_EQ(FilterIgnoreInvalidPath, 0);
}

TEST_F(LetturaProfilo, A_folder_of_the_companion_files_name_is_none) {
  folder.work().makeFolder("Configb.adv");
  EXPECT_TRUE(read({"TandemMode = 1"}));
}

TEST_F(LetturaProfilo, A_companion_file_with_text_for_a_number_is_reported_and_keeps_its_filter) {
  folder.work().write("Configb.adv", "FilterBackup = -|*.tmp|\r\nFilterIgnoreInvalidPath = maybe\r\n");
  EXPECT_TRUE(readFails({"Backup_Path_0 = A", "TandemMode = 1"}, 13, 2));
  EXPECT_TRUE(logged("Configb.adv': riga 2, chiave 'FilterIgnoreInvalidPath = '"));
  EXPECT_EQ(FilterBackup, "-|*.tmp|");
  EXPECT_EQ(PathCount, 1);
}

TEST_F(LetturaProfilo, The_companion_file_of_a_folder_with_a_dot_lies_where_its_name_is_cut) {
  folder.work().write("My.Data/Config.cfg", "TandemMode = 1\r\n");
  folder.work().write("Myb.adv", "FilterBackup = +|*.c|\r\n");
  ASSERT_TRUE(LeggiFileProfilo(folder.program("My.Data/Config.cfg")));
  EXPECT_EQ(FilterBackup, "+|*.c|");
}

}  // namespace
}  // namespace tandemize::test
