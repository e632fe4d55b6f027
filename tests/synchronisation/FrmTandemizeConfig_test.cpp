// The settings of a synchronisation: loading, captions and options.
#include <filesystem>

#include "synchronisation/TandemizeConfigTest.h"

namespace tandemize {
namespace {

using test::TandemizeConfigFtp;
using test::TandemizeConfigTest;
using test::Texts;
using Switches = std::array<bool, 3>;

using LoadTandemizeConfig = TandemizeConfigTest;
using TandemizeConfigControls = TandemizeConfigTest;

// --- loading

TEST_F(LoadTandemizeConfig, A_new_profile_has_no_rows_and_Multiple_Mode_on) {
  loadNew();
  EXPECT_TRUE(form.ListPath.empty());
  EXPECT_EQ(form.Opt.Attiva, 2);
  EXPECT_EQ(form.OptCampareType.Attiva, 0);
  EXPECT_EQ(form.Optmode.Attiva, 1);
  for (const SpuntaAbilitabile* box :
       {&form.Chk, &form.ChkSourceNotChange, &form.ChkDeleteFile, &form.ChkAutoTandem, &form.ChkAbilitàFtp})
    EXPECT_EQ(box->Value, 0);
  EXPECT_FALSE(form.ChkDeleteFile.Enabled);
  EXPECT_FALSE(form.ChkFtp[0].Enabled);
  EXPECT_FALSE(form.ComboFtp[1].Enabled);
  EXPECT_EQ(form.cmdListAbilitato, (Switches{false, false, false}));
}

TEST_F(LoadTandemizeConfig, Rows_hold_two_paths_each_and_the_servers_of_both) {
  profile.paths = {"C:\\a", "/b", "C:\\c", "C:\\d"};
  profile.servers = {"", "Home", "", "Work"};
  load();
  EXPECT_EQ(form.ListPath,
            (std::vector<RigaCoppia>{{{"C:\\a", "/b"}, {"", "Home"}}, {{"C:\\c", "C:\\d"}, {"", "Work"}}}));
}

TEST_F(LoadTandemizeConfig, A_list_cut_at_an_empty_path_keeps_its_last_path_in_a_row_of_its_own) {
  profile.paths = {"C:\\a", "C:\\b", "C:\\c", ""};
  load();
  ASSERT_EQ(form.ListPath.size(), 2U);
  EXPECT_EQ(form.ListPath[1].Percorsi, (std::array<std::string, 2>{"C:\\c", ""}));
}

TEST_F(LoadTandemizeConfig, Every_option_comes_from_its_key) {
  profile.FixFileOption = 1;
  profile.FixScanAfterFix = 1;
  profile.SourceNotChange = 255;
  profile.EraseFile = 1;
  profile.AutoTandemize = 1;
  profile.CompareMethod = 3;
  profile.TandemMode = 0;
  load();
  EXPECT_EQ(form.Opt.Attiva, 1);
  EXPECT_EQ(form.OptCampareType.Attiva, 3);
  EXPECT_EQ(form.Optmode.Attiva, 0);
  for (const SpuntaAbilitabile* box :
       {&form.Chk, &form.ChkSourceNotChange, &form.ChkDeleteFile, &form.ChkAutoTandem}) {
    EXPECT_EQ(box->Value, 1);
    EXPECT_TRUE(box->Enabled);
  }
  // Nothing of it is asked about: it was agreed to before.
  EXPECT_EQ(boxes(), Texts{});
}

TEST_F(LoadTandemizeConfig, Deletion_is_off_where_the_first_path_may_change) {
  profile.EraseFile = 1;
  load();
  EXPECT_EQ(form.ChkDeleteFile.Value, 0);
  EXPECT_FALSE(form.ChkDeleteFile.Enabled);
}

TEST_F(LoadTandemizeConfig, An_option_that_no_button_has_leaves_its_group_without_a_choice_and_stays_stored) {
  profile.FixFileOption = 7;
  profile.CompareMethod = -1;
  profile.TandemMode = 2;
  load();
  EXPECT_EQ(form.Opt.Attiva, std::nullopt);
  EXPECT_EQ(form.OptCampareType.Attiva, std::nullopt);
  EXPECT_EQ(form.Optmode.Attiva, std::nullopt);
  EXPECT_EQ(form.LblPath, (std::array<std::string, 2>{"Drive 1", "Drive 2"}));
  EXPECT_TRUE(form.Salvataggio());
  EXPECT_TRUE(stored("FixFileOption = 7"));
  EXPECT_TRUE(stored("CompareMethod = -1"));
  EXPECT_TRUE(stored("TandemMode = 2"));
}

TEST_F(LoadTandemizeConfig, The_language_table_overrides_the_captions_that_it_has) {
  EXPECT_EQ(form.TestoOptmode[0], "Single Mode");
  EXPECT_EQ(form.TestoOptmode[1], "Multiple Mode");
  EXPECT_EQ(form.TestoChkAbilitàFtp, "Abilità Modalità FTP");
  EXPECT_EQ(form.LblPath[1], "Drive 2");
  loadNew();
  EXPECT_EQ(form.Caption, Messaggio(9));
  EXPECT_EQ(form.TitoloModalità, Messaggio(288));
  EXPECT_EQ(form.TitoloPercorsi, Messaggio(291));
  EXPECT_EQ(form.TitoloOperazioni, Messaggio(292));
  EXPECT_EQ(form.TitoloConfronto, Messaggio(293));
  EXPECT_EQ(form.TestoOptmode[0], Messaggio(289));
  EXPECT_EQ(form.TestoOptmode[1], Messaggio(290));
  EXPECT_EQ(form.TestoChkAbilitàFtp, Messaggio(299));
  EXPECT_EQ(form.ColonneListPath[0], Messaggio(378));
  EXPECT_EQ(form.ColonneListPath[1], Messaggio(89));
}

TEST_F(LoadTandemizeConfig, The_columns_have_the_headers_of_Multiple_Mode_in_Single_Mode_too) {
  profile.TandemMode = 0;
  load();
  EXPECT_EQ(form.ColonneListPath[0], Messaggio(378));
  EXPECT_EQ(form.ColonneListPath[1], Messaggio(89));
}

TEST_F(LoadTandemizeConfig, A_suggestion_tells_two_example_paths_while_such_help_is_on) {
  loadNew();
  EXPECT_TRUE(screen.balloons.empty());
  Help_Suggest = 1;
  loadNew();
  ASSERT_EQ(screen.balloons.size(), 1U);
  EXPECT_EQ(screen.balloons[0].testo, Messaggio(64) + "c:\\DatiAziendali " + Messaggio(52) + "d:\\backup");
  EXPECT_EQ(screen.balloons[0].nomeForm, "FrmTandemizeConfig");
}

TEST_F(LoadTandemizeConfig, A_profile_that_cannot_be_read_is_told) {
  std::filesystem::remove(program.host("Config.cfg"));
  EXPECT_FALSE(form.Carica());
}

TEST_F(LoadTandemizeConfig, Loading_again_drops_what_was_entered) {
  load();
  enter("C:\\x", "C:\\y");
  load();
  EXPECT_EQ(form.TxtPath[0].Text, "");
  EXPECT_EQ(form.cmdListAbilitato, (Switches{false, false, false}));
  EXPECT_EQ(form.ListPath.size(), 1U);
}

// --- modes and options

TEST_F(TandemizeConfigControls, The_labels_of_the_fields_follow_the_mode) {
  loadNew();
  EXPECT_EQ(form.LblPath, (std::array<std::string, 2>{Messaggio(378), Messaggio(89)}));
  form.ScegliModalità(0);
  EXPECT_TRUE(form.Optmode.Accesa(0));
  EXPECT_EQ(form.LblPath, (std::array<std::string, 2>{Messaggio(20) + "  1", Messaggio(20) + "  2"}));
  form.ScegliModalità(1);
  EXPECT_EQ(form.LblPath, (std::array<std::string, 2>{Messaggio(378), Messaggio(89)}));
}

TEST_F(TandemizeConfigControls, Multiple_Mode_enables_SourceNotChange_and_Single_Mode_leaves_it) {
  profile.SourceNotChange = 1;
  load();
  form.ScegliModalità(0);
  EXPECT_TRUE(form.ChkSourceNotChange.Enabled);
  EXPECT_EQ(form.ChkSourceNotChange.Value, 1);
  form.ChkSourceNotChange.Enabled = false;
  form.ScegliModalità(1);
  EXPECT_TRUE(form.ChkSourceNotChange.Enabled);
}

TEST_F(TandemizeConfigControls, Deletion_can_be_chosen_only_while_the_first_path_is_left_unchanged) {
  loadNew();
  form.SpuntaSourceNotChange(true);
  EXPECT_TRUE(form.ChkDeleteFile.Enabled);
  EXPECT_EQ(form.ChkDeleteFile.Value, 0);
  answer(Risposta::Sì);
  form.SpuntaDeleteFile(true);
  EXPECT_EQ(form.ChkDeleteFile.Value, 1);
  form.SpuntaSourceNotChange(false);
  EXPECT_FALSE(form.ChkDeleteFile.Enabled);
  EXPECT_EQ(form.ChkDeleteFile.Value, 0);
  form.SpuntaSourceNotChange(true);
  EXPECT_EQ(form.ChkDeleteFile.Value, 0);
}

TEST_F(TandemizeConfigControls, Deletion_is_asked_about_when_it_is_turned_on_and_No_turns_it_off) {
  loadNew();
  form.SpuntaSourceNotChange(true);
  answer(Risposta::No);
  form.SpuntaDeleteFile(true);
  EXPECT_EQ(form.ChkDeleteFile.Value, 0);
  EXPECT_EQ(boxes(StileSìNo), Texts{Messaggio(422)});
  form.SpuntaDeleteFile(false);
  EXPECT_EQ(boxes(), Texts{});
}

TEST_F(TandemizeConfigControls,
       Ftp_without_a_server_leads_to_the_settings_and_stays_off_if_there_is_still_none) {
  loadNew();
  int opened = 0;
  form.ApriImpostazioniFtp = [&] { ++opened; };
  form.SpuntaAbilitàFtp(true);
  EXPECT_EQ(boxes(), Texts{Messaggio(105)});
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(form.ChkAbilitàFtp.Value, 0);
  EXPECT_FALSE(form.ChkFtp[0].Enabled);

  form.ApriImpostazioniFtp = [&] { program.define({"New", "host", "", "", 0}); };
  form.SpuntaAbilitàFtp(true);
  EXPECT_EQ(form.ChkAbilitàFtp.Value, 1);
  EXPECT_TRUE(form.ChkFtp[0].Enabled);
  EXPECT_TRUE(form.ChkFtp[1].Enabled);
}

TEST_F(TandemizeConfigFtp, Turning_ftp_off_unchecks_both_fields_and_empties_the_combos) {
  loadNew();
  form.SpuntaAbilitàFtp(true);
  EXPECT_EQ(boxes(), Texts{});
  for (const int i : {0, 1}) form.SpuntaFtp(i, true);
  form.SpuntaAbilitàFtp(false);
  for (const std::size_t i : {0U, 1U}) {
    EXPECT_FALSE(form.ChkFtp[i].Enabled);
    EXPECT_EQ(form.ChkFtp[i].Value, 0);
    EXPECT_TRUE(form.ComboFtp[i].Elementi.empty());
    EXPECT_FALSE(form.ComboFtp[i].Enabled);
  }
}

TEST_F(TandemizeConfigFtp, A_checked_field_offers_the_servers_without_the_spare_one) {
  loadNew();
  form.SpuntaFtp(1, true);
  EXPECT_EQ(form.ChkFtp[1].Value, 1);
  EXPECT_TRUE(form.ComboFtp[1].Enabled);
  EXPECT_EQ(form.ComboFtp[1].Elementi, (Texts{"Home", "Work"}));
  EXPECT_EQ(form.ComboFtp[1].Text, "");
  EXPECT_TRUE(form.ComboFtp[0].Elementi.empty());
  form.ComboFtp[1].Text = "Work";
  form.SpuntaFtp(1, false);
  EXPECT_FALSE(form.ComboFtp[1].Enabled);
  EXPECT_EQ(form.ComboFtp[1].Text, "");
  EXPECT_TRUE(form.ComboFtp[1].Elementi.empty());
}

TEST_F(TandemizeConfigFtp, A_field_with_another_kind_of_path_cannot_be_checked) {
  loadNew();
  for (const char* text : {"C:\\a", "\\\\nas\\x", "c"}) {
    form.ScriviPercorso(0, text);
    form.SpuntaFtp(0, true);
    EXPECT_EQ(boxes(), Texts{Messaggio(379)}) << text;
    EXPECT_EQ(form.ChkFtp[0].Value, 0);
    EXPECT_FALSE(form.ComboFtp[0].Enabled);
  }
  form.ScriviPercorso(0, "/public");
  form.SpuntaFtp(0, true);
  EXPECT_EQ(form.ChkFtp[0].Value, 1);
  EXPECT_EQ(boxes(), Texts{});
}

TEST_F(TandemizeConfigControls, An_empty_table_of_servers_gives_an_empty_combo) {
  loadNew();
  form.AggiornaComboFtp(0);
  EXPECT_TRUE(form.ComboFtp[0].Elementi.empty());
  FtpServers.clear();
  form.AggiornaComboFtp(0);
  EXPECT_TRUE(form.ComboFtp[0].Elementi.empty());
}

// --- words that stand for themselves

TEST(TandemizeConfigWords, Captions_and_help_that_no_table_has) {
  EXPECT_EQ(TestoOpt[0], "View and Copy Only a Missing Files");
  EXPECT_EQ(TestoOpt[1], "Chiedi conferma prima di sovrascrivere un file");
  EXPECT_EQ(TestoOpt[2], "View and Copy all widthout confirm");
  EXPECT_EQ(TestoOptCampareType[0], "Inteligent (Size , date and CRC if is necessari)");
  EXPECT_EQ(TestoOptCampareType[3], "CRC (very slow but it is the best accurated)");
  EXPECT_EQ(TestoChkAutoTandem, "Sincronizizza automaticamente");
  EXPECT_EQ(AiutoAbilitàFtp, "Enable to Connect to FTP Server (Required a Web Host)");
}

}  // namespace
}  // namespace tandemize
