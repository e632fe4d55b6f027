// The settings file changes while its window is open.
#include <gtest/gtest.h>

#include "fixtures/ProgramFolder.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

class ModificheDelFile : public testing::Test {
 protected:
  void standard() {
    folder.setting("StartUp_PC_Mode", "2");
    folder.setting("Timer_Start_Mode", "2");
    folder.setting("Timer_Start_Type", "0");
    folder.setting("Timer_Interval_Type", "Giorni");
    folder.setting("Timer_Interval_Number", "1");
    folder.setting("Timer_Start_Time", "13.30");
    folder.setting("Timer_Start_Date", "01/02/2030");
  }
  void advanced(const std::string& firstDate, const std::string& secondDate) {
    folder.setting("StartUp_PC_Mode", "2");
    folder.setting("Timer_Start_Mode", "2");
    folder.setting("Timer_Start_Type", "1");
    std::string text = file();
    text.resize(std::min(text.find("1Timer_Adv_"), text.size()));
    folder.home().write("GlobalSetting.dat", text + entry(1, firstDate) + entry(2, secondDate));
  }
  [[nodiscard]] static std::string entry(int number, const std::string& date) {
    const std::string start = std::to_string(number) + "Timer_Adv_", name = "p" + std::to_string(number);
    return start + "Profile1 = " + name + "\r\n" + start + "Profile2 = C:\\" + name + "\r\n" + start +
           "Date = " + date + "\r\n" + start + "Time = 07.15\r\n" + start + "Interval = 2 Giorni\r\n";
  }
  [[nodiscard]] std::string file() { return folder.home().read("GlobalSetting.dat"); }
  [[nodiscard]] bool holds(const std::string& line) {
    return ("\r\n" + file()).find("\r\n" + line + "\r\n") != std::string::npos;
  }
  test::ProgramFolder folder;
  FrmGlobalSetting form;
};

TEST_F(ModificheDelFile, A_date_that_a_timed_run_moved_is_no_change_of_the_user_and_is_kept_by_OK) {
  standard();
  ASSERT_TRUE(form.Carica());
  folder.setting("Timer_Start_Date", "02/02/2030");
  folder.setting("Help_TipMessage", "0");
  EXPECT_FALSE(form.Modificato());
  EXPECT_EQ(form.TxtTimerStartDate.Text, "02/02/2030");
  folder.setting("Timer_Start_Time", "15.30");
  form.TxtLog.Text = "77";
  EXPECT_EQ(form.Conferma(0), EsitoConferma::Chiudi);
  EXPECT_TRUE(holds("Timer_Start_Date = 02/02/2030"));
  EXPECT_TRUE(holds("Timer_Start_Time = 15.30"));
  EXPECT_TRUE(holds("Help_TipMessage = 0"));
  EXPECT_TRUE(holds("Log_Max_File_Size = 77"));
}

TEST_F(ModificheDelFile, What_the_user_has_changed_wins) {
  standard();
  ASSERT_TRUE(form.Carica());
  form.TxtTimerStartDate.Text = "09/09/2031";
  folder.setting("Timer_Start_Date", "02/02/2030");
  EXPECT_TRUE(form.Modificato());
  EXPECT_EQ(form.Conferma(0), EsitoConferma::Chiudi);
  EXPECT_TRUE(holds("Timer_Start_Date = 09/09/2031"));
}

TEST_F(ModificheDelFile, A_file_that_changes_twice_is_followed_twice_and_after_a_save_too) {
  standard();
  ASSERT_TRUE(form.Carica());
  for (const char* date : {"02/02/2030", "03/02/2030"}) {
    folder.setting("Timer_Start_Date", date);
    EXPECT_FALSE(form.Modificato()) << date;
    ASSERT_TRUE(form.SalvaERileggi());
    EXPECT_TRUE(holds("Timer_Start_Date = " + std::string(date)));
  }
}

TEST_F(ModificheDelFile, A_run_of_an_advanced_timer_moves_its_row_and_leaves_those_of_the_user) {
  advanced("01/02/2030", "05/02/2030");
  ASSERT_TRUE(form.Carica());
  ASSERT_EQ(form.ListTimer.size(), 2U);
  advanced("03/02/2030", "05/02/2030");
  EXPECT_FALSE(form.Modificato());
  form.ListTimer[1].Ora = "08.00";
  form.ListTimer.push_back(form.ListTimer[1]);
  advanced("05/02/2030", "09/02/2030");
  EXPECT_EQ(form.Conferma(0), EsitoConferma::Chiudi);
  EXPECT_TRUE(holds("1Timer_Adv_Date = 05/02/2030"));
  EXPECT_TRUE(holds("2Timer_Adv_Date = 05/02/2030"));
  EXPECT_TRUE(holds("2Timer_Adv_Time = 08.00"));
  EXPECT_TRUE(holds("3Timer_Adv_Time = 08.00"));
}

TEST_F(ModificheDelFile, A_row_that_the_user_removed_stays_removed) {
  advanced("01/02/2030", "05/02/2030");
  ASSERT_TRUE(form.Carica());
  form.SelezionaTimer(0);
  form.RimuoviTimer();
  advanced("01/02/2030", "07/02/2030");
  EXPECT_EQ(form.Conferma(0), EsitoConferma::Chiudi);
  EXPECT_TRUE(holds("1Timer_Adv_Profile1 = p2"));
  EXPECT_TRUE(holds("1Timer_Adv_Date = 07/02/2030"));
  EXPECT_EQ(file().find("2Timer_Adv_"), std::string::npos);
}

TEST_F(ModificheDelFile, The_servers_that_are_being_edited_stay) {
  ASSERT_TRUE(form.Carica());
  folder.setting("Help_TipMessage", "0");
  form.NuovoServerFtp();
  EXPECT_TRUE(form.Modificato());
  EXPECT_EQ(FtpServers.size(), 2U);
  EXPECT_EQ(form.ListFtp.size(), 1U);
}

TEST_F(ModificheDelFile, After_a_save_no_row_is_selected_and_none_can_be_replaced) {
  advanced("01/02/2030", "05/02/2030");
  ASSERT_TRUE(form.Carica());
  form.SelezionaTimer(1);
  ASSERT_TRUE(form.SalvaERileggi());
  EXPECT_EQ(form.ListTimerSelezione, -1);
  EXPECT_EQ(form.cmdListAbilitato, (std::array<bool, 3>{true, false, false}));
}

TEST_F(ModificheDelFile, The_words_of_the_intervals_follow_the_language_that_was_saved) {
  standard();
  folder.setting("Language", "0");
  ASSERT_TRUE(form.Carica());
  form.comboTimer.Text = Messaggio(268);
  form.cmbintervallo.Text = "fortnights";
  const std::string before = Messaggio(268);
  form.OptLanguage.Attiva = 1;
  ASSERT_TRUE(form.SalvaERileggi());
  ASSERT_NE(Messaggio(268), before);
  EXPECT_EQ(form.comboTimer.Text, Messaggio(268));
  EXPECT_EQ(form.cmbintervallo.Text, "fortnights");
  EXPECT_EQ(form.comboTimer.Elementi[2], Messaggio(268));
  EXPECT_EQ(form.cmbintervallo.Elementi, form.comboTimer.Elementi);
}

TEST_F(ModificheDelFile, A_value_that_holds_the_name_of_a_key_is_refused_by_name_and_the_old_file_stands) {
  ASSERT_TRUE(form.Carica());
  const std::string before = file();
  const int size = Log_Max_File_Size;
  form.TxtLog.Text = "42";
  form.txtEmail.Text = "Language@example.org";
  EXPECT_EQ(form.Conferma(0), EsitoConferma::RestaAperta);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  const std::string& box = folder.screen.boxes[0].text;
  for (const char* part : {"'Email_Email'", "'Language@example.org'", "'Language'"})
    EXPECT_NE(box.find(part), std::string::npos) << box;
  EXPECT_EQ(file(), before);
  EXPECT_EQ(Log_Max_File_Size, size);
  form.txtEmail.Text = "anna@example.org";
  EXPECT_EQ(form.Conferma(0), EsitoConferma::Chiudi);
}

TEST_F(ModificheDelFile, The_refusal_shows_no_password_and_names_a_number_that_does_not_convert) {
  ASSERT_TRUE(form.Carica());
  form.NuovoServerFtp();
  form.txtFtpPassword.Text = "my Language";
  form.ScriviCampiFtp();
  EXPECT_FALSE(form.SalvaERileggi());
  EXPECT_NE(folder.screen.boxes.at(0).text.find("'Ftp_Password0'"), std::string::npos);
  EXPECT_EQ(folder.screen.boxes.at(0).text.find("my Language"), std::string::npos);
  form.txtFtpPassword.Text = "secret";
  form.ScriviCampiFtp();
  form.TxtLog.Text = "99999999999";
  EXPECT_FALSE(form.SalvaERileggi());
  EXPECT_NE(folder.screen.boxes.at(1).text.find("'Log_Max_File_Size' "), std::string::npos);
}

TEST_F(ModificheDelFile, Cancel_runs_the_check_of_the_servers_and_closes_all_the_same) {
  ASSERT_TRUE(form.Carica());
  for (int i = 0; i < 2; ++i) {
    form.NuovoServerFtp();
    for (CasellaTesto* field : {&form.txtFtpServer, &form.txtFtpUser, &form.txtFtpPassword})
      field->Text = "x";
    form.ScriviCampiFtp();
  }
  EXPECT_EQ(form.Conferma(1), EsitoConferma::Chiudi);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text,
            "Il Server FTP specificato è già stato inserito.Salvataggio annullato.");
}

}  // namespace
}  // namespace tandemize
