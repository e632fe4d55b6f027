#include <gtest/gtest.h>

#include "errors/ModuloGestioneErrori.h"
#include "fixtures/PlainFtpServer.h"
#include "fixtures/ProgramFolder.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "storage/ModuloInternet.h"

namespace tandemize {
namespace {

struct ProvaServerFtp : testing::Test {
  void SetUp() override { ASSERT_TRUE(form.Carica()); }
  void add(const std::string& address) {
    form.NuovoServerFtp();
    form.txtFtpServer.Text = address;
    form.txtFtpUser.Text = "anna";
    form.txtFtpPassword.Text = "secret";
    form.ChkFtpPassive.Value = 1;
  }
  void run() {
    form.ProvaServerFtp(window, [this] {
      ++connected;
      EXPECT_FALSE(ServerConnesso(""));
    });
  }
  test::ProgramFolder folder;
  FrmGlobalSetting form;
  FinestraOperazione window{"FrmGlobalSetting"};
  int connected = 0;
};

TEST_F(ProvaServerFtp, Without_a_selected_server_nothing_happens) {
  run();
  EXPECT_EQ(connected, 0);
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(ProvaServerFtp, Takes_the_fields_over_tells_that_the_server_answers_and_closes_the_session) {
  const test::PlainFtpServer server;
  add(server.name());
  run();
  EXPECT_EQ(connected, 1);
  EXPECT_EQ(FtpServers.at(0).Ftp_Server_Name, server.name());
  ASSERT_EQ(folder.screen.boxes.size(), 1U);
  EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(409) + " '" + server.name() + "' OK.");
  EXPECT_FALSE(ServerConnesso(""));
  EXPECT_EQ(ServerConnessi.size(), 1U);
}

TEST_F(ProvaServerFtp, A_failure_is_reported_once_and_leaves_no_flag) {
  test::PlainFtpServer server;
  server.answer([](const std::string& line) {
    return line.rfind("PASS", 0) == 0 ? std::optional<std::string>("530 No.") : std::nullopt;
  });
  add(server.name());
  for (const char* mode : {"0", "1"}) {
    Errors_Alert_Mode = mode[0] == '1' ? 1 : 0;
    folder.screen.boxes.clear();
    run();
    ASSERT_EQ(folder.screen.boxes.size(), 1U) << mode;
    EXPECT_NE(folder.screen.boxes[0].text.find(server.name()), std::string::npos);
    EXPECT_FALSE(window.ErroreInCorso || ConnessioneFallita || ServerConnesso(""));
  }
}

TEST_F(ProvaServerFtp, A_session_that_is_open_does_not_stand_for_the_test) {
  const test::PlainFtpServer server;
  add(server.name());
  form.ScriviCampiFtp();
  std::string message;
  bool failed = false;
  ASSERT_EQ(Connetti_Al_Server_FTP(0, message, failed, false), 0);
  form.txtFtpServer.Text = "127.0.0.1:1";
  run();
  EXPECT_EQ(folder.screen.boxes.at(0).text.find(" OK."), std::string::npos);
}

TEST_F(ProvaServerFtp, While_another_operation_runs_its_session_is_left_alone) {
  const test::PlainFtpServer server;
  add(server.name());
  form.ScriviCampiFtp();
  std::string message;
  bool failed = false;
  ASSERT_EQ(Connetti_Al_Server_FTP(0, message, failed, false), 0);
  for (const char* name : {"FrmFileTransfer", "FrmScan", "FrmProgressBar", "FrmTandemize"}) {
    const FinestraOperazione other(name);
    folder.screen.boxes.clear();
    run();
    EXPECT_EQ(folder.screen.boxes.size(), 1U);
    EXPECT_TRUE(ServerConnesso("")) << name;
  }
  EXPECT_EQ(connected, 0);
}

TEST_F(ProvaServerFtp, The_dialog_of_a_backup_counts_only_while_it_runs) {
  const test::PlainFtpServer server;
  add(server.name());
  const FinestraOperazione dialog("FrmBackupChoice");
  form.ProvaServerFtp(
      window, [this] { ++connected; }, true);
  EXPECT_EQ(connected, 0);
  form.ProvaServerFtp(
      window, [this] { ++connected; }, false);
  EXPECT_EQ(connected, 1);
}

TEST_F(ProvaServerFtp, A_stop_ends_it_without_a_box_and_is_forgotten) {
  test::PlainFtpServer server;
  server.answer([](const std::string& line) {
    return line.rfind("USER", 0) == 0 ? std::optional<std::string>(test::PlainFtpServer::Stall)
                                      : std::nullopt;
  });
  add(server.name());
  folder.screen.onEvents = [&] {
    if (!server.commands("USER").empty()) window.Annulla(true);
  };
  run();
  EXPECT_EQ(connected, 1);
  EXPECT_TRUE(folder.screen.boxes.empty());
  EXPECT_FALSE(window.ProcessoAnnullato || AnnullamentoRichiesto || ServerConnesso(""));
}

}  // namespace
}  // namespace tandemize
