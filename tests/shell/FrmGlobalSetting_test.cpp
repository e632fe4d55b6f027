#include "shell/FrmGlobalSetting.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "fixtures/ProgramFolder.h"
#include "platform/paths.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;

class GlobalSettingTest : public ::testing::Test {
 protected:
  GlobalSettingTest() { AzzeraImpostazioni(); }
  void write(std::string_view content) { folder.home().write("GlobalSetting.dat", content); }
  [[nodiscard]] std::string file() { return folder.home().read("GlobalSetting.dat"); }
  [[nodiscard]] static std::string path() { return PercorsoApplicazione + "GlobalSetting.dat"; }
  [[nodiscard]] bool holds(std::string_view line) {
    return ("\r\n" + file()).find("\r\n" + std::string(line) + "\r\n") != std::string::npos;
  }
  // Reads the content into the variables; gives the message, empty if all went well.
  std::string load(std::string_view content) {
    write(content);
    std::string error;
    const bool read = CaricaImpostazioni(error);
    EXPECT_EQ(read, error.empty());
    return error;
  }
  test::ProgramFolder folder;
};

using LeggiGlobalSetting = GlobalSettingTest;
using SaveFileGlobal = GlobalSettingTest;

TEST_F(LeggiGlobalSetting, The_shipped_file_holds_every_key_once_in_order_and_loads) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  const std::string shipped = file();
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_EQ(file(), shipped);
  EXPECT_EQ(Log_Max_File_Size, 1000);
  EXPECT_TRUE(Errors_Try_Next);
  EXPECT_EQ(Advance_Others, 255);
  EXPECT_EQ(Help_Suggest, 1);
}

TEST_F(LeggiGlobalSetting, Every_kind_of_value_reaches_its_variable) {
  EXPECT_EQ(load("StartUp_Pr_Mode = 2\r\nLog_Max_File_Size = 9999\r\nErrors_Try_Next = 1\r\nEmail_Smtp = "
                 "smtp.example.org\r\nTimer_Start_Time = 13.30\r\nLanguage = 1\r\n"),
            "");
  EXPECT_EQ(StartUp_Pr_Mode, 2);
  EXPECT_EQ(Log_Max_File_Size, 9999);
  EXPECT_TRUE(Errors_Try_Next);
  EXPECT_EQ(Email_Smtp, "smtp.example.org");
  EXPECT_EQ(Timer_Start_Time, "13.30");
  EXPECT_EQ(Language, 1);
}

TEST_F(LeggiGlobalSetting, Lines_may_end_with_a_line_feed_alone_and_the_last_need_not_end) {
  EXPECT_EQ(load("\xEF\xBB\xBF"
                 "Errors_Repeat = 7\nErrors_Seconds = 9"),
            "");
  EXPECT_EQ(Errors_Repeat, 7);
  EXPECT_EQ(Errors_Seconds, 9);
}

TEST_F(LeggiGlobalSetting, A_file_without_a_single_key_is_no_settings_file) {
  for (const std::string& content : {std::string(), std::string(5000, '\0'), std::string("nonsense\r\n")}) {
    write(content);
    std::string error;
    EXPECT_FALSE(CaricaImpostazioni(error));
    EXPECT_NE(error.find("GlobalSetting.dat"), std::string::npos);
  }
}

TEST_F(LeggiGlobalSetting, A_missing_key_leaves_its_variable_at_zero_and_its_control_at_its_initial_value) {
  write("Language = 0\r\n");
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  EXPECT_EQ(Log_Max_File_Size, 0);
  EXPECT_EQ(Errors_Repeat, 0);
  EXPECT_EQ(form.TxtLog.Text, "100");
  EXPECT_EQ(form.txtErrorRepeat.Text, "10");
  EXPECT_EQ(form.TxtErrorSeconds.Text, "5");
  EXPECT_EQ(form.OptErrors.Attiva, std::nullopt);
}

TEST_F(LeggiGlobalSetting, A_value_that_does_not_convert_is_told_with_file_line_and_key) {
  const std::pair<const char*, const char*> cases[] = {
      {"Errors_Repeat = 256", "Errors_Repeat"},
      {"Errors_Repeat = -1", "Errors_Repeat"},
      {"Errors_Repeat = ", "Errors_Repeat"},
      {"Errors_Repeat=5", "Errors_Repeat"},
      {"Errors_Repeat = 1.5", "Errors_Repeat"},
      {"Errors_Repeat = 5x", "Errors_Repeat"},
      {"Log_Max_File_Size = 2147483648", "Log_Max_File_Size"},
      {"Errors_Try_Next = yes", "Errors_Try_Next"},
      {"Ftp_PassiveMode0 = on", "Ftp_PassiveMode"},
      {"Ftp_User3 = x", "Ftp_User"},
  };
  for (const auto& [line, key] : cases) {
    const std::string error = load("Email_Smtp = a,b\r\n" + std::string(line) + "\r\n");
    EXPECT_NE(error.find("'" + path() + "'"), std::string::npos) << line << error;
    EXPECT_NE(error.find("riga 2,"), std::string::npos) << line << error;
    EXPECT_NE(error.find("'" + std::string(key) + "'"), std::string::npos) << line << error;
  }
}

TEST_F(LeggiGlobalSetting, After_a_bad_value_the_variables_behind_it_keep_what_they_held) {
  ASSERT_EQ(load("Errors_Repeat = 4\r\nErrors_Seconds = 6\r\nFtp_Description0 = Home\r\n"), "");
  EXPECT_NE(load("Log_Max_File_Size = 50\r\nErrors_Repeat = x\r\nErrors_Seconds = 9\r\n"), "");
  EXPECT_EQ(Log_Max_File_Size, 50);
  EXPECT_EQ(Errors_Repeat, 4);
  EXPECT_EQ(Errors_Seconds, 6);
  EXPECT_EQ(FtpServers.size(), 2U);
}

TEST_F(LeggiGlobalSetting, The_bounds_of_the_numbers_are_read) {
  EXPECT_EQ(load("Errors_Repeat = 255\r\nLog_Max_File_Size = 2147483647\r\nAdvance_Others = -2147483648\r\n"),
            "");
  EXPECT_EQ(Errors_Repeat, 255);
  EXPECT_EQ(Log_Max_File_Size, 2147483647);
  EXPECT_EQ(Advance_Others, -2147483647 - 1);
}

TEST_F(LeggiGlobalSetting, A_boolean_is_on_for_every_number_but_zero) {
  EXPECT_EQ(load("Errors_Try_Next = 255"), "");
  EXPECT_TRUE(Errors_Try_Next);
  EXPECT_EQ(load("Errors_Try_Next = 0"), "");
  EXPECT_FALSE(Errors_Try_Next);
}

TEST_F(LeggiGlobalSetting, A_missing_file_is_told) {
  fs::remove(folder.host("GlobalSetting.dat"));
  std::string error;
  EXPECT_FALSE(CaricaImpostazioni(error));
  EXPECT_NE(error.find(path()), std::string::npos);
}

TEST_F(LeggiGlobalSetting, A_file_far_too_large_is_refused_unread) {
  write("");
  fs::resize_file(folder.host("GlobalSetting.dat"), 100 * 1024 * 1024);
  std::string error;
  EXPECT_FALSE(CaricaImpostazioni(error));
  EXPECT_NE(error.find(path()), std::string::npos);
  EXPECT_NE(error.find("troppo grande"), std::string::npos);
}

TEST_F(LeggiGlobalSetting, Binary_content_is_passed_over) {
  std::string junk = "Errors_Repeat = 7\r\n";
  for (int i = 0; i < 200000; ++i) junk += static_cast<char>(i * 31 + i / 256);
  EXPECT_EQ(load(junk), "");
  EXPECT_EQ(Errors_Repeat, 7);
}

TEST_F(LeggiGlobalSetting, A_value_ends_at_a_comma) {
  EXPECT_EQ(load("Email_Smtp = one,two\r\nEmail_Email = a@b"), "");
  EXPECT_EQ(Email_Smtp, "one");
  EXPECT_EQ(Email_Email, "a@b");
}

TEST_F(LeggiGlobalSetting, Blanks_before_a_value_go_and_those_behind_it_stay) {
  EXPECT_EQ(load("Email_Smtp =    a  \r\nErrors_Repeat =  7  \r\n"), "");
  EXPECT_EQ(Email_Smtp, "a  ");
  EXPECT_EQ(Errors_Repeat, 7);
}

TEST_F(LeggiGlobalSetting, A_key_is_also_found_inside_a_value) {
  EXPECT_EQ(load("Email_Email = xxxxxTimer_Start_Time\r\n"), "");
  EXPECT_EQ(Email_Email, "xxxxxTimer_Start_Time");
  EXPECT_EQ(Timer_Start_Time, "Timer_Start_Time");
  EXPECT_NE(load("1Timer_Adv_Profile9 = C:\\Language\\x.cfg\r\n").find("'Language'"), std::string::npos);
}

TEST_F(LeggiGlobalSetting, Options_texts_checks_and_combos_show_what_the_file_says) {
  write(
      "StartUp_Pr_Mode = 2\r\nLog_Max_File_Size = 0500\r\nErrors_Try_Next = 1\r\nHelp_ToolTip = 255\r\n"
      "Timer_Start_Mode = 1\r\nTimer_Interval_Type = fortnights\r\nEmail_Action = 255\r\n");
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  EXPECT_TRUE(form.OptStartPg.Accesa(2));
  EXPECT_EQ(form.TxtLog.Text, "0500");
  EXPECT_EQ(form.ChkErrors.Value, 1);
  EXPECT_EQ(form.ChkHelpToolTip.Value, 1);
  EXPECT_EQ(form.comboTimer.Text, "fortnights");
  EXPECT_EQ(form.OptEmail.Attiva, std::nullopt);
}

TEST_F(LeggiGlobalSetting, Only_variables_leaves_the_controls_alone) {
  write(
      "Log_Max_File_Size = 77\r\nStartUp_Pr_Mode = 1\r\n1Timer_Adv_Profile1 = a\r\n1Timer_Adv_Interval = 1 "
      "d\r\n");
  FrmGlobalSetting form;
  bool changed = true;
  ASSERT_TRUE(form.OpenFileGlobal(path(), changed, false, true));
  EXPECT_FALSE(changed);
  EXPECT_EQ(Log_Max_File_Size, 77);
  EXPECT_EQ(form.TxtLog.Text, "100");
  EXPECT_EQ(form.OptStartPg.Attiva, std::nullopt);
  EXPECT_TRUE(form.ListTimer.empty());
}

TEST_F(LeggiGlobalSetting, A_freshly_loaded_window_does_not_differ_from_the_file) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  EXPECT_FALSE(form.Modificato());
}

TEST_F(LeggiGlobalSetting, Each_kind_of_change_is_seen_and_the_comparison_stops_before_it_is_undone) {
  const std::function<void(FrmGlobalSetting&)> changes[] = {
      [](FrmGlobalSetting& f) { f.OptErrors.Attiva = 0; },
      [](FrmGlobalSetting& f) { f.TxtLog.Text = "1"; },
      [](FrmGlobalSetting& f) { f.ChkHelpSuggest.Value = 0; },
      [](FrmGlobalSetting& f) { f.comboTimer.Text = "days"; },
      [](FrmGlobalSetting& f) { f.NuovoServerFtp(); },
  };
  for (const auto& change : changes) {
    FrmGlobalSetting form;
    ASSERT_TRUE(form.Carica());
    change(form);
    const FrmGlobalSetting changed = form;
    EXPECT_TRUE(form.Modificato());
    EXPECT_EQ(form.OptErrors.Attiva, changed.OptErrors.Attiva);
    EXPECT_EQ(form.TxtLog.Text, changed.TxtLog.Text);
    EXPECT_EQ(form.ChkHelpSuggest.Value, changed.ChkHelpSuggest.Value);
    EXPECT_EQ(form.comboTimer.Text, changed.comboTimer.Text);
    EXPECT_EQ(form.ListFtp, changed.ListFtp);
    FtpServers.assign(1, {});
  }
}

TEST_F(LeggiGlobalSetting, A_text_box_counts_for_the_comparison_only_while_it_is_enabled) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  form.ScegliBuffer(1);
  form.OptAdvBuffer.Attiva = 0;
  form.txtBufferLocal.Text = "7";
  EXPECT_TRUE(form.Modificato());
  form.ScegliBuffer(0);
  EXPECT_FALSE(form.txtBufferLocal.Enabled);
  EXPECT_FALSE(form.Modificato());
}

TEST_F(LeggiGlobalSetting, The_language_table_is_loaded_at_the_end_even_after_a_bad_value) {
  EXPECT_EQ(load("Language = 1\r\n"), "");
  EXPECT_EQ(Messaggio(2), "Configure");
  EXPECT_NE(load("Language = 0\r\nErrors_Repeat = x\r\n"), "");
  EXPECT_EQ(Messaggio(2), "Configura");
}

TEST_F(LeggiGlobalSetting, A_language_without_a_file_ends_the_program_with_its_own_box_only) {
  write("Language = 2\r\n");
  std::string error = "x";
  EXPECT_FALSE(CaricaImpostazioni(error));
  EXPECT_EQ(error, "");
  EXPECT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.ends, std::vector<int>{4});
}

TEST_F(LeggiGlobalSetting, The_mail_server_of_the_system_fills_an_empty_field_only) {
  folder.home().write(
      "Registry.ini",
      "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager\\Accounts\\00000001]\n"
      "SMTP Server=smtp.home\n");
  platform::setProgramFolder(folder.home().host());
  FrmGlobalSetting form;
  form.ParametriPostaPredefiniti();
  EXPECT_EQ(form.txtEmailSmtp.Text, "smtp.home");
  form.txtEmailSmtp.Text = "other";
  form.ParametriPostaPredefiniti();
  EXPECT_EQ(form.txtEmailSmtp.Text, "other");
}

TEST_F(SaveFileGlobal, A_timer_makes_the_program_start_hidden_with_the_PC) {
  folder.setting("Timer_Start_Mode", "1");
  folder.setting("StartUp_PC_Mode", "0");
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_TRUE(holds("StartUp_PC_Mode = 2"));
  EXPECT_TRUE(form.OptStartPC.Accesa(2));
}

TEST_F(SaveFileGlobal, Without_a_timer_the_program_never_starts_with_the_PC) {
  folder.setting("Timer_Start_Mode", "0");
  folder.setting("StartUp_PC_Mode", "1");
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_TRUE(holds("StartUp_PC_Mode = 0"));
}

TEST_F(SaveFileGlobal, An_array_without_a_choice_is_written_as_255) {
  write("Language = 0\r\n");
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  std::uint8_t value = 0;
  form.Return_Opt_Value("OptErrors", value);
  EXPECT_EQ(value, 255);
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_TRUE(holds("Errors_Alert_Mode = 255"));
  EXPECT_TRUE(holds("Advance_Others = 255"));
}

TEST_F(SaveFileGlobal, The_value_of_an_array_is_found_by_its_name_in_any_case) {
  FrmGlobalSetting form;
  form.OptLogWindow.Attiva = 2;
  std::uint8_t value = 0;
  form.Return_Opt_Value("optlogWINDOW", value);
  EXPECT_EQ(value, 2);
  form.Return_Opt_Value("OptAdvOthers", value);
  EXPECT_EQ(value, 255);
}

TEST_F(SaveFileGlobal, What_is_saved_reads_back_the_same) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  form.ScegliTimer(2);
  form.TxtLog.Text = "42";
  form.txtEmail.Text = "anna@example.org";
  form.ChkErrors.Value = 0;
  form.NuovoServerFtp();
  form.txtFtpPassword.Text = "a\"b c ";
  form.ScriviCampiFtp();
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  const std::string first = file();
  std::string error;
  ASSERT_TRUE(CaricaImpostazioni(error)) << error;
  EXPECT_EQ(Log_Max_File_Size, 42);
  EXPECT_EQ(Email_Email, "anna@example.org");
  EXPECT_FALSE(Errors_Try_Next);
  EXPECT_EQ(FtpServers.at(0).Ftp_Password, "a\"b c ");
  EXPECT_EQ(Timer_Start_Time, "13.30");
  FrmGlobalSetting again;
  ASSERT_TRUE(again.Carica());
  ASSERT_EQ(again.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_EQ(file(), first);
}

TEST_F(SaveFileGlobal, An_emptied_number_field_is_written_as_zero_so_that_it_can_be_read) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  form.TxtLog.Text.clear();
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_TRUE(holds("Log_Max_File_Size = 0"));
}

TEST_F(SaveFileGlobal, A_line_end_in_a_value_begins_no_line_of_its_own) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  form.txtEmail.Text = "a\r\nLanguage = 1";
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_TRUE(holds("Email_Email = a  Language = 1"));
}

TEST_F(SaveFileGlobal, A_new_file_may_be_read_by_its_owner_alone) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  fs::remove(folder.host("GlobalSetting.dat"));
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_EQ(fs::status(folder.host("GlobalSetting.dat")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(SaveFileGlobal, OK_saves_reads_back_and_tells_a_changed_timer_once) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  form.ScegliTimer(1);
  EXPECT_EQ(form.Conferma(0), EsitoConferma::Chiudi);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(408));
  EXPECT_EQ(Timer_Start_Mode, 1);
  EXPECT_EQ(StartUp_PC_Mode, 2);
  EXPECT_EQ(form.Conferma(0), EsitoConferma::Chiudi);
  EXPECT_EQ(folder.screen.boxes.size(), 1U);
}

TEST_F(SaveFileGlobal, A_click_on_the_timer_that_is_set_already_is_no_change) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  form.ScegliTimer(0);
  EXPECT_EQ(form.Conferma(0), EsitoConferma::Chiudi);
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(SaveFileGlobal, Cancel_closes_and_writes_nothing) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  const std::string before = file();
  form.TxtLog.Text = "1";
  EXPECT_EQ(form.Conferma(1), EsitoConferma::Chiudi);
  EXPECT_EQ(file(), before);
}

TEST_F(SaveFileGlobal, OK_with_incomplete_server_data_goes_to_the_FTP_tab_and_writes_nothing) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  const std::string before = file();
  form.NuovoServerFtp();
  EXPECT_EQ(form.Conferma(0), EsitoConferma::VaiAlTabFtp);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(407));
  EXPECT_EQ(file(), before);
}

TEST_F(SaveFileGlobal, A_file_that_cannot_be_written_is_told_and_the_window_stays) {
  FrmGlobalSetting form;
  ASSERT_TRUE(form.Carica());
  fs::remove(folder.host("GlobalSetting.dat"));
  fs::create_directory(folder.host("GlobalSetting.dat"));
  EXPECT_EQ(form.Conferma(0), EsitoConferma::RestaAperta);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_NE(folder.screen.boxes[0].text.find(path()), std::string::npos);
}

}  // namespace
}  // namespace tandemize
