#include "profile/MenuProfilo.h"

#include <gtest/gtest.h>

#include <optional>

#include "errors/ModuloGestioneErrori.h"
#include "fixtures/ProgramFolder.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

class MenuProfilo : public testing::Test {
 protected:
  MenuProfilo() { folder_.setting("Language", "1"); }
  [[nodiscard]] const test::ShownBox& box() const { return folder_.screen.boxes.back(); }
  [[nodiscard]] std::size_t boxes() const { return folder_.screen.boxes.size(); }

  test::ProgramFolder folder_;
  std::string current_ = FileProfilo;
};

using EstensioneDelProfilo = MenuProfilo;
using TitoloDellaFinestra = MenuProfilo;
using NuovoProfiloTest = MenuProfilo;
using CaricaProfiloTest = MenuProfilo;
using ProfiloSostituibileTest = MenuProfilo;

TEST_F(EstensioneDelProfilo, A_name_that_ends_in_cfg_stays_and_any_other_gets_it) {
  const struct {
    const char *chosen, *taken;
  } cases[] = {{"C:\\p\\Night.cfg", "C:\\p\\Night.cfg"},
               {"C:\\p\\Night.CFG", "C:\\p\\Night.CFG"},
               {"C:\\p\\Night.cFg", "C:\\p\\Night.cFg"},
               {"C:\\p\\Night", "C:\\p\\Night.cfg"},
               {"C:\\p\\Night.txt", "C:\\p\\Night.txt.cfg"},
               {"C:\\p\\Nightcfg", "C:\\p\\Nightcfg.cfg"},
               {"C:\\p\\Night.cfg ", "C:\\p\\Night.cfg .cfg"},
               {"cfg", "cfg.cfg"},
               {".cfg", ".cfg"}};
  for (const auto& name : cases) EXPECT_EQ(ConEstensioneProfilo(name.chosen), name.taken);
}

TEST_F(TitoloDellaFinestra, Shows_the_profile_s_path) {
  FileProfilo = "C:\\profiles\\Night.cfg";
  EXPECT_EQ(TitoloPrincipale(), "Tandemize Backup - [C:\\profiles\\Night.cfg]");
}

// By the bare name alone: that of another folder is shown as the default profile too.
TEST_F(TitoloDellaFinestra, A_profile_named_Config_cfg_is_the_default_profile_wherever_it_lies) {
  EXPECT_EQ(TitoloPrincipale(), "Tandemize Backup - [Default profile]");
  FileProfilo = "C:\\elsewhere\\Config.cfg";
  EXPECT_EQ(TitoloPrincipale(), "Tandemize Backup - [Default profile]");
  FileProfilo = "C:\\elsewhere\\MyConfig.cfg";
  EXPECT_EQ(TitoloPrincipale(), "Tandemize Backup - [C:\\elsewhere\\MyConfig.cfg]");
}

TEST_F(TitoloDellaFinestra, Speaks_both_languages) {
  folder_.setting("Language", "0");
  EXPECT_EQ(TitoloPrincipale(), "Tandemize Backup - [Profilo predefinito]");
  EXPECT_EQ(DescrizioneProfili(), "File Profilo (*.cfg)");
  folder_.setting("Language", "1");
  EXPECT_EQ(DescrizioneProfili(), "File Profile (*.cfg)");
}

TEST_F(NuovoProfiloTest, Becomes_the_current_one_and_is_an_empty_profile) {
  const std::string path = folder_.program("Night");
  EXPECT_TRUE(NuovoProfilo(path));
  EXPECT_EQ(FileProfilo, path + ".cfg");
  EXPECT_EQ(folder_.work().read("Night.cfg"), ProfiloVuoto());
  ASSERT_EQ(boxes(), 1U);
  EXPECT_EQ(box().style, StileInformazione);
  EXPECT_EQ(box().text, Messaggio(447));
}

TEST_F(NuovoProfiloTest, That_cannot_be_written_leaves_the_old_one_current) {
  folder_.work().write("file", "in the way of a folder");
  EXPECT_FALSE(NuovoProfilo(folder_.program("file") + "\\Night.cfg"));
  EXPECT_EQ(FileProfilo, current_);
  ASSERT_EQ(boxes(), 1U);
  EXPECT_EQ(box().style, StileCritico);
  EXPECT_EQ(box().text, Messaggio(448));
}

TEST_F(NuovoProfiloTest, Replaces_a_file_only_if_the_user_agrees) {
  folder_.work().write("Night.cfg", "precious");
  folder_.screen.answers = {Risposta::No};
  // The dialog knew nothing of the ending that comes behind the name.
  EXPECT_FALSE(NuovoProfilo(folder_.program("Night")));
  EXPECT_EQ(folder_.work().read("Night.cfg"), "precious");
  EXPECT_EQ(FileProfilo, current_);
  EXPECT_EQ(box().style, StileSìNo);
  folder_.screen.answers = {Risposta::Sì};
  EXPECT_TRUE(NuovoProfilo(folder_.program("Night")));
  EXPECT_EQ(folder_.work().read("Night.cfg"), ProfiloVuoto());
}

TEST_F(NuovoProfiloTest, A_canceled_dialog_does_nothing) {
  EXPECT_FALSE(NuovoProfilo(""));
  EXPECT_FALSE(CaricaProfilo(""));
  EXPECT_EQ(FileProfilo, current_);
  EXPECT_EQ(boxes(), 0U);
}

TEST_F(CaricaProfiloTest, Takes_a_profile_and_reads_no_more_than_its_first_line) {
  folder_.work().write("Night.cfg", "Backup_Path_0 = C:\\a\r\nthis is no line of a profile");
  EXPECT_TRUE(CaricaProfilo(folder_.program("Night.cfg")));
  EXPECT_EQ(FileProfilo, folder_.program("Night.cfg"));
  EXPECT_EQ(boxes(), 0U);
  EXPECT_EQ(PathCount, 0);
}

TEST_F(CaricaProfiloTest, Refuses_any_other_file_and_keeps_the_current_one) {
  folder_.work().write("Night.cfg", "backup_path_0 = in the wrong case");
  const std::string path = folder_.program("Night.cfg");
  EXPECT_FALSE(CaricaProfilo(path));
  EXPECT_EQ(FileProfilo, current_);
  ASSERT_EQ(boxes(), 1U);
  EXPECT_EQ(box().style, StileInformazione);
  EXPECT_EQ(box().text, "The file '" + path + "' is not a valid profile.");
  EXPECT_FALSE(CaricaProfilo(folder_.program("missing.cfg")));
  EXPECT_EQ(FileProfilo, current_);
}

TEST_F(ProfiloSostituibileTest, Not_while_an_operation_goes_on) {
  for (const char* name : {"FrmFileTransfer", "FrmScan", "FrmProgressBar", "FrmTandemize"}) {
    const FinestraOperazione operation(name);
    EXPECT_FALSE(ProfiloSostituibile(false)) << name;
    EXPECT_EQ(box().style, StileInformazione);
  }
  EXPECT_EQ(boxes(), 4U);
}

TEST_F(ProfiloSostituibileTest, A_run_dialog_stands_in_the_way_only_while_it_runs) {
  EXPECT_TRUE(ProfiloSostituibile(true));
  const FinestraOperazione dialog("FrmBackupChoice");
  EXPECT_TRUE(ProfiloSostituibile(false));
  EXPECT_EQ(boxes(), 0U);
  EXPECT_FALSE(ProfiloSostituibile(true));
}

}  // namespace
}  // namespace tandemize
