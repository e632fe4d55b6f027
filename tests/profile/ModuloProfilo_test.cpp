#include "profile/ModuloProfilo.h"

#include <filesystem>

#include "profile/ProfiloDiProva.h"

namespace tandemize::test {
namespace {

class ModuloProfilo : public ProfileTest {};

TEST_F(ModuloProfilo, A_new_profile_has_its_twelve_lines) {
  ASSERT_TRUE(CreaNuovoProfilo(FileProfilo));
  EXPECT_EQ(text(), lines({"Backup_Path_0 =", "Backup_Path_1 =", "Backup_FTP_0 =", "Backup_FTP_1 =",
                           "FixFileOption = 2", "FixScanAfterFix = 0", "FtpEnabled = 0", "CompareMethod = 0",
                           "TandemMode = 1", "SourceNotChange = 0", "EraseFile = 0", "AutoTandemize = 0"}));
  EXPECT_TRUE(ProfiloValido(FileProfilo));
}

TEST_F(ModuloProfilo, The_shipped_profile_is_valid_and_readable) {
  const std::string path = PercorsoApplicazione + std::string(NomeProfiloPredefinito);
  EXPECT_TRUE(ProfiloValido(path));
  EXPECT_TRUE(LeggiFileProfilo(path));
}

TEST_F(ModuloProfilo, A_profile_that_cannot_be_made_is_told) {
  EXPECT_FALSE(CreaNuovoProfilo(folder.program("missing/Config.cfg")));
}

TEST_F(ModuloProfilo, A_profile_is_valid_by_the_first_bytes_of_its_first_line) {
  const std::vector<std::pair<std::string, bool>> rows{
      {"Backup_Path_0 =\r\n", true},  {"Backup_Path_", true},          {"Backup_Path_ and anything", true},
      {"backup_path_0 =\r\n", false}, {" Backup_Path_0 =\r\n", false}, {"\r\nBackup_Path_0 =\r\n", false},
      {"Backup_Path", false},         {"1BackIndice = 1\r\n", false},  {std::string(100, '\0'), false}};
  for (const auto& [content, valid] : rows) {
    writeText(content);
    EXPECT_EQ(ProfiloValido(FileProfilo), valid) << content;
  }
}

TEST_F(ModuloProfilo, An_empty_and_a_missing_file_are_no_valid_profile) {
  EXPECT_FALSE(ProfiloValido(FileProfilo));
  writeText(std::string{});
  EXPECT_FALSE(ProfiloValido(FileProfilo));
  EXPECT_FALSE(ProfiloValido(folder.program("")));
}

TEST_F(ModuloProfilo, The_companion_files_name_is_cut_at_the_first_dot_of_the_whole_path) {
  EXPECT_EQ(RestituisciNomeFiltro("C:\\Prog\\Config.cfg"), "C:\\Prog\\Configb.adv");
  EXPECT_EQ(RestituisciNomeFiltro("C:\\My.Data\\Config.cfg"), "C:\\Myb.adv");
  EXPECT_EQ(RestituisciNomeFiltro("C:\\Prog\\Config"), "C:\\Prog\\Configb.adv");
  EXPECT_EQ(RestituisciNomeFiltro(""), "b.adv");
}

TEST_F(ModuloProfilo, The_value_of_an_object_line_stands_behind_its_first_equals_sign) {
  EXPECT_EQ(RestituisciValore("1BackPath = C:\\a = b"), "C:\\a = b");
  EXPECT_EQ(RestituisciValore("1BackPath =   x  "), "x  ");
  EXPECT_EQ(RestituisciValore("1BackPath =x"), "x");
  EXPECT_EQ(RestituisciValore("1BackPath ="), "");
  EXPECT_EQ(RestituisciValore("1BackPath =\tx"), "\tx");
  EXPECT_EQ(RestituisciValore("no sign"), "no sign");
}

TEST_F(ModuloProfilo, Numeric_text_comes_back_as_its_integer_part) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"007", "7"},
      {"1.5", "1"},
      {"1.99", "1"},
      {"-1.5", "-1"},
      {"-0.5", "0"},
      {"+5", "5"},
      {"-007", "-7"},
      {".5", "0"},
      {"5.", "5"},
      {"0", "0"},
      {"000", "0"},
      {"-0", "0"},
      {"099999999999999999999999999.5", "99999999999999999999999999"}};
  for (const auto& [text, value] : rows) EXPECT_EQ(RestituisciValore("k = " + text), value) << text;
}

TEST_F(ModuloProfilo, Text_that_only_looks_like_a_number_stays_text) {
  for (const std::string text :
       {"1.5.6", "1e5", "0x1F", "1,5", "12a", ".", "-", "+", "--1", "1-", "1 ", "1 2", "\xD9\xA3"})
    EXPECT_EQ(RestituisciValore("k = " + text), text);
}

}  // namespace
}  // namespace tandemize::test
