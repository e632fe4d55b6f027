// ScriviFileProfilo.
#include <filesystem>
#include <random>

#include "profile/ProfiloDiProva.h"

namespace tandemize::test {
namespace {

using Texts = std::vector<std::string>;

class ScritturaProfilo : public ProfileTest {
 protected:
  static ValoriSincronizzazione values(const Texts& paths, const Texts& servers) {
    ValoriSincronizzazione made;
    made.percorsi = paths;
    made.serverFtp = servers;
    made.percorsi.emplace_back();
    made.serverFtp.emplace_back();
    return made;
  }
  static OggettoBackup& addObject(const std::string& name, const std::string& path) {
    OggettoBackup& made = ArrayOggetti.emplace_back();
    made.BackDescrizione = name;
    made.BackPath = path;
    return made;
  }
  static Texts objectLines(const std::string& k, const std::string& name, const std::string& path) {
    return {k + "BackIndice = 0",
            k + "BackTipoOggetto = 0",
            k + "BackTipoTrasferimento = 0",
            k + "BackLinkTo0 = ",
            k + "BackDescrizione = " + name,
            k + "BackPath = " + path,
            k + "Files0 = ",
            k + "BackTop = 0",
            k + "BackLeft = 0",
            k + "BackHeight = 0",
            k + "BackWidth = 0",
            k + "BackFigura = 0",
            k + "BackFtpServerDescription = "};
  }
};

TEST_F(ScritturaProfilo, The_synchronisation_section_of_a_new_profile_is_replaced) {
  writeText(ProfiloVuoto());
  ValoriSincronizzazione set = values({"C:\\a", "/pub"}, {"", "Site"});
  set.FixFileOption = 1;
  set.FixScanAfterFix = 255;
  set.SourceNotChange = 3;
  set.EraseFile = 4;
  set.AutoTandemize = 5;
  set.FtpEnabled = 6;
  set.CompareMethod = -7;
  set.TandemMode = 8;
  EXPECT_EQ(rewritten(-1, set),
            lines({"Backup_Path_0 = C:\\a", "Backup_Path_1 = /pub", "Backup_FTP_0 = ", "Backup_FTP_1 = Site",
                   "FixFileOption = 1", "FixScanAfterFix = 255", "FtpEnabled = 6", "CompareMethod = -7",
                   "TandemMode = 8", "SourceNotChange = 3", "EraseFile = 4", "AutoTandemize = 5"}));
}

TEST_F(ScritturaProfilo, A_run_that_is_too_short_gets_lines_and_one_too_long_loses_them) {
  const std::string rest = lines({"FixFileOption = 2", "end"});
  writeText(lines({"Backup_Path_0 = a", "Backup_FTP_0 = f", "Backup_FTP_1 = g", "Backup_FTP_2 = h"}) + rest);
  EXPECT_EQ(
      rewritten(-1, values({"1", "2", "3"}, {"x"})),
      lines({"Backup_Path_0 = 1", "Backup_Path_1 = 2", "Backup_Path_2 = 3", "Backup_FTP_0 = x"}) + rest);
}

TEST_F(ScritturaProfilo, Twelve_paths_are_numbered_on_beyond_nine_and_read_back) {
  writeText(ProfiloVuoto());
  Texts paths, servers;
  for (int i = 0; i < 12; ++i) {
    paths.push_back("C:\\" + std::to_string(i));
    servers.push_back("S" + std::to_string(i));
  }
  rewritten(-1, values(paths, servers));
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(Backup_Path, paths);
  EXPECT_EQ(Backup_FTP, servers);
}

TEST_F(ScritturaProfilo, No_values_leave_the_lines_as_they_are_and_a_spare_entry_alone_removes_them) {
  write({"Backup_Path_0 = a", "Backup_FTP_0 = f", "end"});
  ValoriSincronizzazione set;
  set.percorsi.clear();
  EXPECT_EQ(rewritten(-1, set), lines({"Backup_Path_0 = a", "end"}));
}

TEST_F(ScritturaProfilo, A_line_that_only_holds_a_path_key_is_no_run_and_stays) {
  write({"Backup_Path_0 = a", "Backup_Pathx", "1BackPath = C:\\Backup_Path_7", "Backup_FTPx",
         "2BackPath = C:\\Backup_FTP_"});
  EXPECT_EQ(rewritten(-1, values({"n"}, {"m"})),
            lines({"Backup_Path_0 = n", "Backup_Pathx", "1BackPath = C:\\Backup_Path_7", "Backup_FTPx",
                   "2BackPath = C:\\Backup_FTP_"}));
}

TEST_F(ScritturaProfilo, Path_lines_that_something_parts_become_one_list) {
  write({"Backup_Path_0 = a", "", "rest", "Backup_Path_1 = b", "end"});
  EXPECT_EQ(rewritten(-1, values({"x", "y"}, {})),
            lines({"Backup_Path_0 = x", "Backup_Path_1 = y", "rest", "end"}));
}

TEST_F(ScritturaProfilo, An_option_is_found_without_its_last_character_anywhere_and_in_any_case) {
  write({"tandemmode =", "xxEraseFile =abc", "CompareMethod=", "AutoTandemize"});
  ValoriSincronizzazione set;
  set.EraseFile = 9;
  EXPECT_EQ(rewritten(-1, set),
            lines({"TandemMode = 1", "EraseFile = 9", "CompareMethod=", "AutoTandemize"}));
}

TEST_F(ScritturaProfilo, Writing_the_synchronisation_leaves_the_objects_as_they_are) {
  Texts all{"Backup_Path_0 = a", "Backup_FTP_0 = ", "FixFileOption = 2"};
  const Texts objects = objectLines("1", "Docs ", "C:\\docs");
  all.insert(all.end(), objects.begin(), objects.end());
  write(all);
  all[0] = "Backup_Path_0 = z";
  EXPECT_EQ(rewritten(-1, values({"z"}, {""})), lines(all));
}

TEST_F(ScritturaProfilo, Section_0_removes_the_objects) {
  write({"Backup_Path_0 = a", "own line", "1BackIndice = 1", "Backup_Path_1 = lost"});
  EXPECT_EQ(rewritten(0), lines({"Backup_Path_0 = a", "own line"}));
}

TEST_F(ScritturaProfilo, Section_0_without_objects_changes_no_line) {
  write({"Backup_Path_0 = a", "own line"});
  EXPECT_EQ(rewritten(0), lines({"Backup_Path_0 = a", "own line"}));
}

TEST_F(ScritturaProfilo, Objects_of_a_profile_that_has_none_come_behind_the_last_line) {
  writeText(ProfiloVuoto());
  addObject("Docs", "C:\\docs");
  EXPECT_EQ(rewritten(1), ProfiloVuoto() + lines(objectLines("1", "Docs", "C:\\docs")));
}

TEST_F(ScritturaProfilo, An_unterminated_last_line_is_kept_before_the_objects) {
  writeText(std::string("Backup_Path_0 = a\r\nEraseFile = 0"));
  addObject("Docs", "C:\\docs");
  EXPECT_EQ(rewritten(1),
            lines({"Backup_Path_0 = a", "EraseFile = 0"}) + lines(objectLines("1", "Docs", "C:\\docs")));
}

TEST_F(ScritturaProfilo, The_objects_are_replaced_up_to_the_given_number) {
  write({"Backup_Path_0 = a", "1BackIndice = 200", "99Files0 = old"});
  addObject("One", "C:\\1");
  addObject("Two", "C:\\2");
  addObject("Three", "C:\\3");
  Texts expected{"Backup_Path_0 = a"};
  for (const Texts& block : {objectLines("1", "One", "C:\\1"), objectLines("2", "Two", "C:\\2")})
    expected.insert(expected.end(), block.begin(), block.end());
  EXPECT_EQ(rewritten(2), lines(expected));
}

TEST_F(ScritturaProfilo, A_deleted_object_before_the_last_live_one_stays_in_its_slot) {
  writeText(ProfiloVuoto());
  addObject(std::string(OggettoEliminato), "C:\\gone");
  addObject("Live", "C:\\live");
  rewritten(2);
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  ASSERT_EQ(UltimoOggetto(), 2U);
  EXPECT_EQ(ArrayOggetti[1].BackDescrizione, "<!Erased!>");
  EXPECT_FALSE(ArrayOggetti[1].Vivo());
  EXPECT_EQ(ArrayOggetti[2].BackDescrizione, "Live");
}

TEST_F(ScritturaProfilo, Lists_without_any_entry_are_written_with_one_empty_line_each) {
  write({"Backup_Path_0 = a"});
  OggettoBackup& object = addObject("Docs", "C:\\docs");
  object.BackLinkTo.clear();
  object.Files.clear();
  EXPECT_EQ(rewritten(1), lines({"Backup_Path_0 = a"}) + lines(objectLines("1", "Docs", "C:\\docs")));
}

TEST_F(ScritturaProfilo, An_empty_file_stays_empty_whatever_is_written) {
  addObject("Docs", "C:\\docs");
  for (const std::int16_t section : {std::int16_t{1}, std::int16_t{0}, std::int16_t{-1}}) {
    writeText(std::string{});
    EXPECT_EQ(rewritten(section, values({"a"}, {"b"})), "") << section;
  }
}

TEST_F(ScritturaProfilo, A_file_of_one_empty_line_takes_objects) {
  writeText(std::string("\r\n"));
  addObject("Docs", "C:\\docs");
  EXPECT_EQ(rewritten(1), lines(objectLines("1", "Docs", "C:\\docs")));
}

TEST_F(ScritturaProfilo, No_empty_line_is_left) {
  write({"", "Backup_Path_0 = a", "", "", "x", ""});
  EXPECT_EQ(rewritten(0), lines({"Backup_Path_0 = a", "x"}));
}

TEST_F(ScritturaProfilo, A_value_with_a_comma_falls_apart_at_the_next_write_of_the_other_section) {
  write({"Backup_Path_0 = a"});
  addObject("Docs", "C:\\one,  two");
  rewritten(1);
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(ArrayOggetti[1].BackPath, "C:\\one,  two");
  rewritten(-1, values({"a"}, {}));
  EXPECT_NE(text().find("1BackPath = C:\\one\r\ntwo\r\n1Files0 = \r\n"), std::string::npos) << text();
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(ArrayOggetti[1].BackPath, "C:\\one");
}

TEST_F(ScritturaProfilo, Writing_a_path_with_a_comma_again_and_again_adds_no_paths) {
  writeText(ProfiloVuoto());
  const Texts paths{"C:\\a,b", "D:\\"};
  for (int i = 0; i < 4; ++i) {
    rewritten(-1, values(paths, {"", ""}));
    ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
    EXPECT_EQ(Backup_Path, paths);
  }
}

TEST_F(ScritturaProfilo, Quotes_around_an_item_are_lost) {
  write({"\"quoted, line\"", "half \"quoted\""});
  EXPECT_EQ(rewritten(0), lines({"quoted, line", "half \"quoted\""}));
}

TEST_F(ScritturaProfilo,
       The_rest_of_a_cut_value_that_begins_with_a_digit_counts_as_the_start_of_the_objects) {
  write({"Backup_Path_0 = C:\\a,2b", "EraseFile = 1"});
  EXPECT_EQ(rewritten(0), lines({"Backup_Path_0 = C:\\a"}));
}

TEST_F(ScritturaProfilo, The_companion_file_gets_the_filter_and_a_0_or_1) {
  FilterBackup = "+|*.doc|";
  FilterIgnoreInvalidPath = 255;
  ASSERT_EQ(ScriviFileProfilo({}, -2), platform::kNoError);
  EXPECT_EQ(folder.work().read("Configb.adv"),
            lines({"FilterBackup = +|*.doc|", "FilterIgnoreInvalidPath = 1"}));
  EXPECT_FALSE(folder.work().exists("Config.cfg"));
  FilterIgnoreInvalidPath = 0;
  FilterBackup.clear();
  ASSERT_EQ(ScriviFileProfilo({}, -2), platform::kNoError);
  EXPECT_EQ(folder.work().read("Configb.adv"), lines({"FilterBackup = ", "FilterIgnoreInvalidPath = 0"}));
}

TEST_F(ScritturaProfilo, A_filter_reads_back_as_it_was_written) {
  writeText(ProfiloVuoto());
  FilterBackup = "-|*.tmp|*.bak|";
  FilterIgnoreInvalidPath = 1;
  ASSERT_EQ(ScriviFileProfilo({}, -2), platform::kNoError);
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(FilterBackup, "-|*.tmp|*.bak|");
  EXPECT_EQ(FilterIgnoreInvalidPath, 1);
}

TEST_F(ScritturaProfilo, A_missing_profile_gives_the_systems_number_and_is_not_made) {
  EXPECT_EQ(ScriviFileProfilo({}, -1), platform::kFileNotFound);
  EXPECT_FALSE(folder.work().exists("Config.cfg"));
}

TEST_F(ScritturaProfilo, A_section_that_does_not_exist_is_refused_and_the_file_stands) {
  write({"Backup_Path_0 = a", "1BackIndice = 1"});
  const std::string before = text();
  EXPECT_EQ(ScriviFileProfilo({}, 1), platform::kInvalidParameter);
  EXPECT_EQ(ScriviFileProfilo({}, -3), platform::kInvalidParameter);
  EXPECT_EQ(ScriviFileProfilo({}, INT16_MAX), platform::kInvalidParameter);
  EXPECT_EQ(text(), before);
}

TEST_F(ScritturaProfilo, A_file_that_is_too_large_is_refused_and_stands) {
  writeText(ProfiloVuoto());
  std::filesystem::resize_file(folder.work().host("Config.cfg"), 100'000'000);
  EXPECT_EQ(ScriviFileProfilo({}, -1), platform::kFileTooLarge);
  EXPECT_EQ(std::filesystem::file_size(folder.work().host("Config.cfg")), 100'000'000U);
}

TEST_F(ScritturaProfilo, Large_files_of_short_items_are_rewritten_whole) {
  std::string many;
  for (int i = 0; i < 200'000; ++i) many += i % 2 == 0 ? "Backup_Path_0 = x\r\n" : "a,b,,\r\n";
  writeText(many);
  const std::string result = rewritten(-1, values({"p", "q"}, {}));
  EXPECT_TRUE(result.starts_with("Backup_Path_0 = p\r\nBackup_Path_1 = q\r\na\r\nb\r\na\r\n"));
  EXPECT_EQ(result.size(), 2 * 19 + 100'000 * 6U);
}

// Pieces of names that hold no key of the file; the property below is about everything else.
std::string oddName(std::mt19937& random) {
  static const Texts pieces{
      "x", "Yz", "è", "ß", "日本", "😀", "\xFF", "\xEF\x80\xBF", ",", "\"", "=", " = ", " ",   "\t", "|",
      ";", "'",  "<", "*", "\\",   "/", "0",    "42",           ".", "-",  "%", "#",   "\x01"};
  std::uniform_int_distribution<std::size_t> piece(0, pieces.size() - 1), count(0, 12);
  std::string name = "n";  // a leading blank is trimmed and a number is cut, so neither begins the name
  for (std::size_t n = count(random); n > 0; --n) name += pieces[piece(random)];
  return name;
}

OggettoBackup oddObject(std::mt19937& random) {
  std::uniform_int_distribution<int> byte(0, 255), word(-32768, 32767), count(1, 4);
  OggettoBackup made;
  made.BackIndice = static_cast<std::uint8_t>(byte(random));
  made.BackTipoOggetto = static_cast<std::uint8_t>(byte(random));
  made.BackTipoTrasferimento = static_cast<std::uint8_t>(byte(random));
  made.BackLinkTo.clear();
  for (int n = count(random); n > 0; --n) made.BackLinkTo.push_back(n == 2 ? "" : oddName(random));
  made.BackDescrizione = oddName(random);
  made.BackPath = oddName(random);
  made.Files.clear();
  for (int n = count(random); n > 0; --n) made.Files.push_back(n == 1 ? "" : oddName(random));
  made.BackTop = word(random) * 65536;
  made.BackLeft = static_cast<std::int16_t>(word(random));
  made.BackHeight = static_cast<std::int16_t>(word(random));
  made.BackWidth = static_cast<std::int16_t>(word(random));
  made.BackFigura = word(random);
  made.BackFtpServerDescription = oddName(random);
  return made;
}

bool same(const OggettoBackup& a, const OggettoBackup& b) {
  return a.BackIndice == b.BackIndice && a.BackTipoOggetto == b.BackTipoOggetto &&
         a.BackTipoTrasferimento == b.BackTipoTrasferimento && a.BackLinkTo == b.BackLinkTo &&
         a.BackDescrizione == b.BackDescrizione && a.BackPath == b.BackPath && a.Files == b.Files &&
         a.BackTop == b.BackTop && a.BackLeft == b.BackLeft && a.BackHeight == b.BackHeight &&
         a.BackWidth == b.BackWidth && a.BackFigura == b.BackFigura &&
         a.BackFtpServerDescription == b.BackFtpServerDescription;
}

TEST_F(ScritturaProfilo, Objects_with_odd_names_read_back_as_they_were_written) {
  constexpr unsigned seed = 20240611;
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  for (int round = 0; round < 60; ++round) {
    writeText(ProfiloVuoto());
    AzzeraArrayOggetti();
    const int count = 1 + round % 99;
    for (int k = 0; k < count; ++k) ArrayOggetti.push_back(oddObject(random));
    const std::vector<OggettoBackup> written = ArrayOggetti;
    rewritten(static_cast<std::int16_t>(count));
    ASSERT_TRUE(LeggiFileProfilo(FileProfilo)) << folder.log();
    ASSERT_EQ(ArrayOggetti.size(), written.size());
    for (std::size_t k = 1; k < written.size(); ++k)
      ASSERT_TRUE(same(ArrayOggetti[k], written[k])) << "object " << k;
  }
}

}  // namespace
}  // namespace tandemize::test
