#include <gtest/gtest.h>

#include "fixtures/ProgramFolder.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

class ServerFtpTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(form.Carica()); }
  void load(const std::string& content) {
    folder.home().write("GlobalSetting.dat", content);
    std::string error;
    ASSERT_TRUE(CaricaImpostazioni(error)) << error;
  }
  void saveAndReload() {
    ASSERT_EQ(form.SaveFileGlobal(PercorsoApplicazione + "GlobalSetting.dat"), platform::kNoError);
    std::string error;
    ASSERT_TRUE(CaricaImpostazioni(error)) << error;
  }
  void add(const std::string& description) {
    form.NuovoServerFtp();
    form.txtFtpDescription.Text = description;
    form.txtFtpServer.Text = "ftp.example.org:2121";
    form.txtFtpUser.Text = "anna";
    form.txtFtpPassword.Text = "secret";
    form.ChkFtpPassive.Value = 1;
    form.ScriviCampiFtp();
  }
  [[nodiscard]] bool correct() const {
    bool result = false;
    form.VerificaDatiCorrettiFtp(result);
    return result;
  }
  test::ProgramFolder folder;
  FrmGlobalSetting form;
};

TEST_F(ServerFtpTest, The_lines_of_a_server_fill_its_record_and_a_spare_stands_behind_the_last) {
  load(
      "Ftp_Description0 = Home\r\nFtp_Server_Name0 = nas:21\r\nFtp_User0 = anna\r\nFtp_Password0 = pw\r\n"
      "Ftp_PassiveMode0 = 1\r\nFtp_Description1 = Work\r\n");
  ASSERT_EQ(FtpServers.size(), 3U);
  EXPECT_EQ(FtpServers[0], (ServerFtp{"Home", "nas:21", "anna", "pw", 1}));
  EXPECT_EQ(FtpServers[1].Ftp_Description, "Work");
  EXPECT_EQ(FtpServers[2], ServerFtp{});
}

TEST_F(ServerFtpTest, A_server_that_is_gone_from_the_file_is_gone_after_the_next_read) {
  load("Ftp_Description0 = a\r\nFtp_Description1 = b\r\n");
  load("Ftp_Description0 = a\r\n");
  EXPECT_EQ(FtpServers.size(), 2U);
}

TEST_F(ServerFtpTest, Of_a_description_with_a_comma_only_the_part_before_it_remains) {
  add("Home, old");
  saveAndReload();
  ASSERT_EQ(FtpServers.size(), 2U);
  EXPECT_EQ(FtpServers[0].Ftp_Description, "Home");
  EXPECT_EQ(FtpServers[0].Ftp_User, "anna");
}

TEST_F(ServerFtpTest, The_eleventh_server_comes_back_with_a_stray_prefix) {
  for (int i = 0; i < 11; ++i) add("Server " + std::to_string(i));
  saveAndReload();
  ASSERT_EQ(FtpServers.size(), 12U);
  EXPECT_EQ(FtpServers[9].Ftp_Description, "Server 9");
  EXPECT_EQ(FtpServers[10].Ftp_Description, "= Server 10");
  EXPECT_EQ(FtpServers[10].Ftp_Password, "= secret");
  EXPECT_EQ(FtpServers[10].Ftp_PassiveMode, 1);
}

TEST_F(ServerFtpTest, A_new_server_is_named_selected_and_open_for_editing) {
  form.NuovoServerFtp();
  EXPECT_EQ(form.ListFtp, std::vector<std::string>{"New Ftp Server"});
  EXPECT_EQ(form.ListFtpSelezione, 0);
  EXPECT_EQ(form.txtFtpDescription.Text, "New Ftp Server");
  EXPECT_TRUE(form.txtFtpPassword.Enabled);
  EXPECT_EQ(FtpServers.size(), 2U);
}

TEST_F(ServerFtpTest, A_change_of_a_field_writes_through_and_renames_the_row) {
  add("Home");
  EXPECT_EQ(FtpServers.at(0), (ServerFtp{"Home", "ftp.example.org:2121", "anna", "secret", 1}));
  EXPECT_EQ(form.ListFtp.at(0), "Home");
  form.SelezionaServerFtp(-1);
  form.txtFtpDescription.Text = "nobody";
  form.ScriviCampiFtp();
  EXPECT_EQ(FtpServers.at(0).Ftp_Description, "Home");
}

TEST_F(ServerFtpTest, Deleting_asks_with_the_name_and_does_nothing_on_no) {
  add("Home");
  form.EliminaServerSelezionato();
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(264) + "Home" + Messaggio(265));
  EXPECT_EQ(folder.screen.boxes[0].style, StileSìNo);
  EXPECT_EQ(FtpServers.size(), 2U);
}

TEST_F(ServerFtpTest, Deleting_moves_the_later_records_down_and_selects_the_first) {
  for (const char* name : {"a", "b", "c"}) add(name);
  form.SelezionaServerFtp(1);
  folder.screen.answers = {Risposta::Sì};
  form.EliminaServerSelezionato();
  ASSERT_EQ(FtpServers.size(), 3U);
  EXPECT_EQ(FtpServers[0].Ftp_Description, "a");
  EXPECT_EQ(FtpServers[1].Ftp_Description, "c");
  EXPECT_EQ(form.ListFtp, (std::vector<std::string>{"a", "c"}));
  EXPECT_EQ(form.ListFtpSelezione, 0);
  EXPECT_EQ(form.txtFtpDescription.Text, "a");
}

TEST_F(ServerFtpTest, Deleting_the_last_one_disables_the_fields_and_resets_the_table) {
  add("Home");
  folder.screen.answers = {Risposta::Sì};
  form.EliminaServerSelezionato();
  EXPECT_EQ(FtpServers.size(), 1U);
  EXPECT_EQ(form.ListFtpSelezione, -1);
  EXPECT_FALSE(form.txtFtpDescription.Enabled);
  EXPECT_EQ(form.txtFtpDescription.Text, "");
}

TEST_F(ServerFtpTest, The_spare_record_cannot_be_removed) {
  std::vector<ServerFtp> table(2);
  FrmGlobalSetting::EliminaServerFtp(table, 1);
  EXPECT_EQ(table.size(), 2U);
  FrmGlobalSetting::EliminaServerFtp(table, 0);
  EXPECT_EQ(table.size(), 1U);
}

TEST_F(ServerFtpTest, Without_a_selected_row_the_data_are_correct) {
  form.NuovoServerFtp();
  form.SelezionaServerFtp(-1);
  EXPECT_TRUE(correct());
}

TEST_F(ServerFtpTest, Each_of_the_four_fields_is_required_without_a_box) {
  for (CasellaTesto* box :
       {&form.txtFtpDescription, &form.txtFtpServer, &form.txtFtpUser, &form.txtFtpPassword}) {
    FtpServers.assign(1, {});
    form.RiempiListFtp();
    add("Home");
    EXPECT_TRUE(correct());
    box->Text.clear();
    EXPECT_FALSE(correct());
  }
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(ServerFtpTest, The_newest_description_must_be_unique_in_any_letter_case) {
  add("Città");
  add("Work");
  EXPECT_TRUE(correct());
  add("CITTÀ");
  EXPECT_FALSE(correct());
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text,
            "Il Server FTP specificato è già stato inserito.Salvataggio annullato.");
}

TEST_F(ServerFtpTest, Older_rows_with_the_same_description_are_not_looked_at) {
  add("Home");
  add("home");
  add("Work");
  EXPECT_TRUE(correct());
}

TEST_F(ServerFtpTest, That_no_server_was_entered_is_told_and_the_result_is_true_in_every_case) {
  bool result = false;
  form.ControllaInserimentoDatiFtp(result);
  EXPECT_TRUE(result);
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(263));
  add("Home");
  result = false;
  form.ControllaInserimentoDatiFtp(result);
  EXPECT_TRUE(result);
  EXPECT_EQ(folder.screen.boxes.size(), 1U);
}

}  // namespace
}  // namespace tandemize
