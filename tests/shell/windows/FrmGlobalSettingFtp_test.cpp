// The FTP tab of the settings window.
#include <QMessageBox>

#include "errors/ModuloGestioneErrori.h"
#include "fixtures/FtpServer.h"
#include "shell/windows/GlobalSettingTest.h"
#include "storage/ModuloInternet.h"

namespace tandemize {
namespace {

using test::GlobalSettingTest;
using test::letEventsRun;

constexpr int FtpTab = 4;
const char* const Fields[] = {"txtFtpDescription", "txtFtpServer", "txtFtpUser", "txtFtpPassword"};

class FrmGlobalSettingFtp : public GlobalSettingTest {
 protected:
  void add(const std::string& description) {
    press("cmdFtp(0)");
    enter("txtFtpDescription", description);
    enter("txtFtpServer", "ftp.example.org");
    enter("txtFtpUser", "anna");
    enter("txtFtpPassword", "secret");
  }
  // A server of the real kind, entered and selected, with these differences.
  void addReal(const test::FtpServer& real, const std::string& password = test::FtpServer::Password) {
    add("Real");
    enter("txtFtpServer", real.name());
    enter("txtFtpUser", real.user());
    enter("txtFtpPassword", password);
    press("ChkFtpPassive");
  }
  [[nodiscard]] std::vector<std::string> list() {
    std::vector<std::string> rows;
    auto& servers = get<QListWidget>("ListFtp");
    for (int i = 0; i < servers.count(); ++i) rows.push_back(servers.item(i)->text().toStdString());
    return rows;
  }
  [[nodiscard]] int row() {
    auto& servers = get<QListWidget>("ListFtp");
    return servers.selectedItems().isEmpty() ? -1 : servers.row(servers.selectedItems().first());
  }
};

TEST_F(FrmGlobalSettingFtp, Shows_the_servers_and_the_fields_of_the_selected_one) {
  server(0, "Home");
  server(1, "Work");
  open(FtpTab);
  EXPECT_EQ(list(), (std::vector<std::string>{"Home", "Work"}));
  EXPECT_EQ(row(), -1);
  for (const char* field : Fields) EXPECT_FALSE(enabled(field));
  for (const char* button : {"cmdFtp(1)", "cmdFtp(2)"}) EXPECT_FALSE(enabled(button));
  select("ListFtp", 1);
  EXPECT_EQ(shown("txtFtpDescription"), "Work");
  EXPECT_EQ(shown("txtFtpServer"), "ftp.example.org");
  EXPECT_EQ(shown("txtFtpUser"), "anna");
  EXPECT_EQ(shown("txtFtpPassword"), "secret");
  EXPECT_TRUE(on("ChkFtpPassive"));
  for (const char* field : Fields) EXPECT_TRUE(enabled(field));
}

TEST_F(FrmGlobalSettingFtp, The_keyboard_reaching_the_list_selects_nothing_by_itself) {
  server(0, "Home");
  open(FtpTab);
  get<QListWidget>("ListFtp").setFocus(Qt::TabFocusReason);
  letEventsRun();
  EXPECT_EQ(row(), -1);
  EXPECT_EQ(shown("txtFtpDescription"), "");
  key(Qt::Key_Space, " ");
  EXPECT_EQ(row(), 0);
  EXPECT_EQ(shown("txtFtpDescription"), "Home");
}

TEST_F(FrmGlobalSettingFtp, The_password_shows_as_dots) {
  open(FtpTab);
  EXPECT_EQ(get<QLineEdit>("txtFtpPassword").echoMode(), QLineEdit::Password);
}

TEST_F(FrmGlobalSettingFtp, New_adds_a_server_selects_it_and_gives_its_description_the_focus) {
  open(FtpTab);
  press("cmdFtp(0)");
  EXPECT_EQ(list(), std::vector<std::string>{"New Ftp Server"});
  EXPECT_EQ(row(), 0);
  EXPECT_EQ(shown("txtFtpDescription"), "New Ftp Server");
  EXPECT_TRUE(get<QLineEdit>("txtFtpDescription").hasFocus());
  for (const char* field : Fields) EXPECT_TRUE(enabled(field));
}

TEST_F(FrmGlobalSettingFtp, Typing_renames_the_row_and_is_saved) {
  open(FtpTab);
  add("Home");
  press("ChkFtpPassive");
  EXPECT_EQ(list(), std::vector<std::string>{"Home"});
  press("cmd(0)");
  EXPECT_EQ(saved("Ftp_Description0"), "Home");
  EXPECT_EQ(saved("Ftp_Server_Name0"), "ftp.example.org");
  EXPECT_EQ(saved("Ftp_User0"), "anna");
  EXPECT_EQ(saved("Ftp_Password0"), "secret");
  EXPECT_EQ(saved("Ftp_PassiveMode0"), "1");
  EXPECT_EQ(saved("Ftp_Description1"), "(none)");
}

TEST_F(FrmGlobalSettingFtp, Delete_asks_with_the_name_and_selects_the_first_that_remains) {
  for (int i = 0; i < 3; ++i) server(i, "Server " + std::to_string(i));
  open(FtpTab);
  select("ListFtp", 1);
  desktop.answers = {Risposta::No, Risposta::Sì};
  press("cmdFtp(1)");
  EXPECT_EQ(list().size(), 3U);
  EXPECT_EQ(box(), Messaggio(264) + "Server 1" + Messaggio(265));
  press("cmdFtp(1)");
  EXPECT_EQ(list(), (std::vector<std::string>{"Server 0", "Server 2"}));
  EXPECT_EQ(row(), 0);
  EXPECT_EQ(shown("txtFtpDescription"), "Server 0");
  press("cmd(0)");
  EXPECT_EQ(saved("Ftp_Description1"), "Server 2");
  EXPECT_EQ(saved("Ftp_Description2"), "(none)");
}

TEST_F(FrmGlobalSettingFtp, Deleting_the_last_server_locks_the_fields) {
  server(0, "Home");
  open(FtpTab);
  select("ListFtp", 0);
  desktop.answers = {Risposta::Sì};
  press("cmdFtp(1)");
  EXPECT_TRUE(list().empty());
  for (const char* field : Fields) {
    EXPECT_FALSE(enabled(field));
    EXPECT_EQ(shown(field), "");
  }
  EXPECT_EQ(FtpServers.size(), 1U);
}

TEST_F(FrmGlobalSettingFtp, OK_with_an_empty_field_is_refused_and_goes_to_the_tab) {
  for (const char* field : Fields) {
    desktop.boxes.clear();
    open();
    add("Home");
    enter(field, "");
    press("cmd(0)");
    ASSERT_EQ(desktop.boxes.size(), 1U) << field;
    EXPECT_EQ(box(), Messaggio(407));
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(tab(), FtpTab);
    EXPECT_EQ(saved("Ftp_Description0"), "(none)");
    press("cmd(1)");
  }
}

TEST_F(FrmGlobalSettingFtp, The_newest_description_must_be_unique_and_the_box_says_so_first) {
  server(0, "Home");
  open(FtpTab);
  add("HOME");
  press("cmd(0)");
  ASSERT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(box(0), "Il Server FTP specificato è già stato inserito.Salvataggio annullato.");
  EXPECT_EQ(box(1), Messaggio(407));
  enter("txtFtpDescription", "Home 2");
  press("cmd(0)");
  EXPECT_EQ(form, nullptr);
}

TEST_F(FrmGlobalSettingFtp, Without_a_selected_row_incomplete_servers_are_saved) {
  file("Ftp_Description0", "Home");
  open(FtpTab);
  press("cmd(0)");
  EXPECT_EQ(form, nullptr);
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(FrmGlobalSettingFtp, Of_a_description_with_a_comma_the_part_before_it_remains) {
  open(FtpTab);
  add("Home, old");
  press("cmd(0)");
  open(FtpTab);
  EXPECT_EQ(list(), std::vector<std::string>{"Home"});
}

TEST_F(FrmGlobalSettingFtp, The_eleventh_server_comes_back_with_a_stray_prefix) {
  open(FtpTab);
  for (int i = 0; i < 11; ++i) add("Server " + std::to_string(i));
  press("cmd(0)");
  open(FtpTab);
  ASSERT_EQ(list().size(), 11U);
  EXPECT_EQ(list()[9], "Server 9");
  EXPECT_EQ(list()[10], "= Server 10");
}

TEST_F(FrmGlobalSettingFtp, The_test_of_a_server_that_answers_tells_OK_and_closes_the_session) {
  const test::FtpServer real;
  open(FtpTab);
  addReal(real);
  press("cmdFtp(2)");
  ASSERT_EQ(desktop.boxes.size(), 1U) << box(1);
  EXPECT_EQ(box(), Messaggio(409) + " '" + real.name() + "' OK.");
  EXPECT_FALSE(ServerConnesso(""));
  EXPECT_FALSE(FormAperto("FrmAttesaServer"));
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(saved("Ftp_Description0"), "(none)");
}

TEST_F(FrmGlobalSettingFtp, A_test_that_fails_is_told_and_the_session_is_closed) {
  const test::FtpServer real;
  for (const char* mode : {"0", "1"}) {
    file("Errors_Alert_Mode", mode);
    desktop.boxes.clear();
    open(FtpTab);
    addReal(real, "wrong");
    press("cmdFtp(2)");
    ASSERT_EQ(desktop.boxes.size(), 1U) << mode;
    EXPECT_EQ(box().find(Messaggio(409)), std::string::npos) << box();
    EXPECT_NE(box().find(real.name()), std::string::npos) << box();
    EXPECT_FALSE(ServerConnesso(""));
    EXPECT_FALSE(ConnessioneFallita);
    EXPECT_TRUE(form->isVisible());
    delete form;
  }
}

TEST_F(FrmGlobalSettingFtp, A_server_that_was_connected_before_is_tested_with_the_fields_of_now) {
  const test::FtpServer real;
  open(FtpTab);
  addReal(real);
  press("cmdFtp(2)");
  enter("txtFtpPassword", "wrong");
  press("cmdFtp(2)");
  ASSERT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(box(1).find(Messaggio(409)), std::string::npos) << box(1);
}

TEST_F(FrmGlobalSettingFtp, A_test_is_stopped_by_its_window_after_a_question_and_tells_no_failure) {
  const test::FtpServer real({"silent USER"});
  open(FtpTab);
  addReal(real);
  desktop.answers = {Risposta::Sì};
  desktop.whenShown("FrmAttesaServer", [](QWidget& wait) {
    EXPECT_TRUE(wait.isModal());
    test::click(*test::control<QPushButton>(wait, "cmdAnnulla"));
  });
  press("cmdFtp(2)");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(box(), Messaggio(326));
  EXPECT_FALSE(ServerConnesso(""));
  EXPECT_FALSE(AnnullamentoRichiesto);
  EXPECT_FALSE(OperazioneAnnullata());
  EXPECT_FALSE(FormAperto("FrmAttesaServer"));
  EXPECT_TRUE(form->isVisible());
}

TEST_F(FrmGlobalSettingFtp, The_settings_do_not_close_under_a_test) {
  const test::FtpServer real({"silent USER"});
  open(FtpTab);
  addReal(real);
  desktop.answers = {Risposta::No, Risposta::Sì};
  desktop.whenShown("FrmAttesaServer", [this](QWidget& wait) {
    form->close();
    EXPECT_TRUE(form->isVisible());
    wait.close();
    EXPECT_TRUE(wait.isVisible());
  });
  press("cmdFtp(2)");
  ASSERT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(box(0), Messaggio(326));
  EXPECT_EQ(box(1), Messaggio(326));
  EXPECT_TRUE(form->isVisible());
}

TEST_F(FrmGlobalSettingFtp, The_settings_do_not_close_while_the_test_tells_how_it_went) {
  const test::FtpServer real;
  for (const char* password : {test::FtpServer::Password, "wrong"}) {
    desktop.boxes.clear();
    file("Errors_Alert_Mode", "1");
    open(FtpTab);
    addReal(real, password);
    desktop.onBox = [this](QMessageBox& box) {
      EXPECT_FALSE(form->close());
      EXPECT_FALSE(AnnullaOperazioneInCorso());
      letEventsRun();
      box.escapeButton()->click();
    };
    press("cmdFtp(2)");
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(desktop.boxes.size(), 1U);
    press("cmd(1)");
    EXPECT_EQ(form, nullptr);
  }
}

TEST_F(FrmGlobalSettingFtp, A_stop_signal_goes_to_the_operation_below_the_idle_window) {
  struct Below : FinestraOperazione {
    using FinestraOperazione::FinestraOperazione;
    void Annulla(bool /*confirmed*/) override { ProcessoAnnullato = true; }
  } below("FrmScan");
  open(FtpTab);
  EXPECT_TRUE(AnnullaOperazioneInCorso());
  EXPECT_TRUE(below.ProcessoAnnullato);
}

TEST_F(FrmGlobalSettingFtp, A_stop_signal_ends_the_test_without_a_question) {
  const test::FtpServer real({"silent USER"});
  open(FtpTab);
  addReal(real);
  EXPECT_FALSE(AnnullaOperazioneInCorso()) << "nothing was running";
  desktop.whenShown("FrmAttesaServer", [](QWidget&) { AnnullaOperazioneInCorso(); });
  press("cmdFtp(2)");
  EXPECT_TRUE(desktop.boxes.empty()) << box();
  EXPECT_TRUE(form->isVisible());
}

TEST_F(FrmGlobalSettingFtp, While_another_operation_runs_no_server_is_tested) {
  const test::FtpServer real;
  open(FtpTab);
  addReal(real);
  const FinestraOperazione scan("FrmScan");
  press("cmdFtp(2)");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(real.connections(), 0);
}

}  // namespace
}  // namespace tandemize
