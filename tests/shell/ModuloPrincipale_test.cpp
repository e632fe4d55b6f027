#include "shell/ModuloPrincipale.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "errors/ModuloLog.h"
#include "fixtures/ProgramFolder.h"
#include "platform/paths.h"
#include "profile/ModelloBackup.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;

std::string missingText(const std::string& path) {
  return "Errore di Avvio: il file '" + path + "' non è stato tovato.";
}

class AvvioTest : public ::testing::Test {
 protected:
  EsitoAvvio start() { return Sub_Main(std::string(PercorsoApplicazione)); }
  test::ProgramFolder folder{false};
};

TEST_F(AvvioTest, Sets_the_paths_from_the_folder_with_or_without_its_separator) {
  const std::string given = PercorsoApplicazione;
  for (const std::string& spelled : {given, given.substr(0, given.size() - 1)}) {
    ASSERT_EQ(Sub_Main(spelled), EsitoAvvio::Pronto);
    EXPECT_EQ(PercorsoApplicazione, given);
    EXPECT_EQ(PercorsoGif, given + "Gif\\");
    EXPECT_EQ(PercorsoIcone, given + "Icon\\");
    EXPECT_EQ(FileProfilo, given + "Config.cfg");
  }
}

TEST_F(AvvioTest, Leaves_everything_ready_to_run) {
  ASSERT_EQ(start(), EsitoAvvio::Pronto);
  EXPECT_EQ(TitoloApplicazione, "Tandemize Backup");
  EXPECT_EQ(PiattaformaOS, 2);
  EXPECT_FALSE(ApplicazioneNascosta);
  EXPECT_EQ(ListaLog.size(), 1U);
  EXPECT_EQ(ArrayOggetti.size(), 1U);
  EXPECT_EQ(Errors_Repeat, 3);
  EXPECT_FALSE(Messaggio(2).empty());
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(AvvioTest, Writes_nothing_into_the_program_folder) {
  const std::string before = test::describeTree(folder.home().path());
  ASSERT_EQ(start(), EsitoAvvio::Pronto);
  EXPECT_EQ(test::describeTree(folder.home().path()), before);
}

TEST_F(AvvioTest, The_start_mode_2_hides_the_program_and_no_other_does) {
  for (const int mode : {0, 1, 2}) {
    ApplicazioneNascosta = false;
    folder.setting("StartUp_PC_Mode", std::to_string(mode));
    ASSERT_EQ(start(), EsitoAvvio::Pronto);
    EXPECT_EQ(ApplicazioneNascosta, mode == 2);
  }
}

TEST_F(AvvioTest, Takes_the_forms_of_date_and_time_from_the_registry) {
  folder.home().write(
      "Registry.ini",
      "[HKEY_CURRENT_USER\\Control Panel\\International]\nsShortDate=yyyy-MM-dd\nsTimeFormat=HH:mm\n");
  platform::setProgramFolder(folder.home().host());
  ASSERT_EQ(start(), EsitoAvvio::Pronto);
  EXPECT_EQ(FormatoData, "yyyy-MM-dd");
  EXPECT_EQ(FormatoOra, "HH:mm");
}

TEST_F(AvvioTest, A_setting_that_does_not_convert_is_told_and_the_start_goes_on) {
  folder.setting("Errors_Repeat", "many");
  EXPECT_EQ(start(), EsitoAvvio::ImpostazioniErrate);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].style, StileCritico);
  EXPECT_NE(folder.screen.boxes[0].text.find("Errors_Repeat"), std::string::npos);
  EXPECT_TRUE(folder.screen.ends.empty());
  EXPECT_EQ(PiattaformaOS, 2);
  EXPECT_FALSE(Messaggio(2).empty());
}

TEST_F(AvvioTest, A_missing_language_file_for_the_setting_is_told_once) {
  folder.setting("Language", "2");
  EXPECT_EQ(start(), EsitoAvvio::ImpostazioniErrate);
  EXPECT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.ends, std::vector<int>{4});
}

TEST_F(AvvioTest, Each_required_file_is_missed_by_its_full_path) {
  for (const std::string name :
       {"Config.cfg", "GlobalSetting.dat", "Lang_Ita.Dat", "Lang_Eng.Dat", "Gif\\Scansione.Gif",
        "Icon\\Files.ico", "Icon\\Folders.ico", "Icon\\Drive.ico"}) {
    test::ProgramFolder fresh(false);
    std::string relative = name;
    if (const auto bar = relative.find('\\'); bar != std::string::npos) relative[bar] = '/';
    fs::remove(fresh.host(relative));
    EXPECT_EQ(Sub_Main(std::string(PercorsoApplicazione)), EsitoAvvio::FileMancante);
    ASSERT_EQ(fresh.screen.boxes.size(), 1U);
    EXPECT_EQ(fresh.screen.boxes[0].text, missingText(PercorsoApplicazione + name));
    EXPECT_EQ(fresh.screen.boxes[0].style, StileCritico);
    EXPECT_EQ(fresh.screen.ends, std::vector<int>{4});
  }
}

TEST_F(AvvioTest, Of_several_missing_files_only_the_last_of_the_list_is_named) {
  fs::remove(folder.host("Config.cfg"));
  fs::remove(folder.host("Icon/Drive.ico"));
  EXPECT_EQ(start(), EsitoAvvio::FileMancante);
  EXPECT_EQ(folder.screen.boxes.at(0).text, missingText(PercorsoApplicazione + "Icon\\Drive.ico"));
}

TEST_F(AvvioTest, The_programs_own_data_files_are_found_in_any_letter_case) {
  fs::rename(folder.host("Lang_Eng.Dat"), folder.host("lang_eng.DAT"));
  fs::rename(folder.host("Gif/Scansione.Gif"), folder.host("Gif/SCANSIONE.gif"));
  fs::rename(folder.host("Gif"), folder.host("gIF"));
  fs::rename(folder.host("Icon"), folder.host("ICON"));
  EXPECT_EQ(start(), EsitoAvvio::Pronto);
  EXPECT_EQ(PercorsoGif, PercorsoApplicazione + "gIF\\");
}

TEST_F(AvvioTest, The_settings_and_the_profile_are_found_in_their_own_letter_case_only) {
  fs::rename(folder.host("Config.cfg"), folder.host("config.CFG"));
  EXPECT_EQ(start(), EsitoAvvio::FileMancante);
  EXPECT_EQ(FileNecessarioMancante(), PercorsoApplicazione + "Config.cfg");
}

TEST(ModuloPrincipale, The_text_before_the_first_nul_is_kept) {
  EXPECT_EQ(TagliaAlNul(std::string_view("ab\0cd", 5)), "ab");
  EXPECT_EQ(TagliaAlNul("abcd"), "abcd");
  EXPECT_EQ(TagliaAlNul(std::string_view("\0", 1)), "");
}

TEST(ModuloPrincipale, A_number_field_takes_digits_and_backspace_only) {
  for (int key = 0; key < 300; ++key) {
    const bool taken = key == 8 || (key >= 48 && key <= 57);
    EXPECT_EQ(SoloCifre(key), taken ? key : 0);
    EXPECT_EQ(SoloCifreEPunto(key), taken || key == '.' ? key : 0);
  }
}

TEST(ModuloPrincipale, Tells_about_the_machine) {
  EXPECT_EQ(VersioneWindows(), 2);
  EXPECT_GT(MemoriaFisicaLibera(), 0);
  EXPECT_FALSE(NomeComputer().empty());
}

}  // namespace
}  // namespace tandemize
