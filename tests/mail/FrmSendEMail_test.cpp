#include "mail/FrmSendEMail.h"

#include "fixtures/LogLines.h"
#include "mail/ScriptedServer.h"

namespace tandemize {
namespace {

using test::goodUpTo;
using test::Lines;
using test::Replies;

struct View : VistaPosta {
  void Mostra(const StatoPosta& state) override { states.push_back(state); }
  void Chiudi() override { ++closed; }

  std::vector<StatoPosta> states;
  int closed = 0;
};

struct FrmSendEMailTest : test::MailTest {
  FrmSendEMailTest() {
    Email_Smtp = "mail.example:2525";
    Email_Email = "anna@mail.example";
    program.home().write("Registry.ini",
                         "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager]\r\n"
                         "Default Mail Account=00000001\r\n"
                         "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager\\Accounts\\"
                         "00000001]\r\nSMTP Email Address=pc@home.example\r\n");
    platform::setProgramFolder(program.home().host());
  }
  ~FrmSendEMailTest() override { UsaFinestraPosta(nullptr); }
  FrmSendEMailTest(const FrmSendEMailTest&) = delete;
  FrmSendEMailTest& operator=(const FrmSendEMailTest&) = delete;

  // The lines of the log behind the banner of the mail.
  static Lines loggedBehindTheBanner() {
    Lines lines;
    for (std::size_t i = 4; i < ListaLog.size(); ++i) lines.push_back(test::withoutTime(ListaLog[i]));
    return lines;
  }
};

TEST_F(FrmSendEMailTest, The_mail_has_the_settings_addresses_and_the_collected_lines_without_the_spare_one) {
  ScriviLog("first", RigaNormale);
  ScriviLog("an error\r.\rits detail", BloccoErrore);
  FrmSendEMail form;
  form.Activate();
  EXPECT_EQ(server.hosts, Lines{"mail.example:2525"});
  const Lines& sent = server.sent.at(0);
  ASSERT_EQ(sent.size(), 7U);
  EXPECT_EQ(sent[0], "HELO home.example\r\n");
  EXPECT_EQ(sent[1], "MAIL FROM: <pc@home.example>\r\n");
  EXPECT_EQ(sent[2], "RCPT TO: <anna@mail.example>\r\n");
  EXPECT_TRUE(sent[4].starts_with("From: pc@home.example\r\nTo: anna@mail.example\r\nDate: ")) << sent[4];
  EXPECT_NE(sent[4].find("\r\nSubject: " + Messaggio(332) + "\r\nX-Mailer: Tandemize Backup - "),
            std::string::npos);

  std::string body = Messaggio(330) + " '" + NomeComputer() + "'\n\n";
  // The lines up to the banner of the mail itself, which ends in an empty one.
  for (std::size_t i = 0; i < 10; ++i)
    body += (ListaLog[i] == "." ? std::string("\0.", 2) : ListaLog[i]) + "\n";
  EXPECT_EQ(sent[4].substr(sent[4].find("\r\n\r\n") + 4), body + "\r\n");
  EXPECT_TRUE(ListaLog[7].ends_with("      " + Messaggio(331))) << ListaLog[7];
}

TEST_F(FrmSendEMailTest, The_log_tells_the_outcome_of_each_status) {
  const struct {
    Replies replies;
    int connectError;
    const char* network;
    Lines log;
  } rows[] = {{test::GoodReplies, 0, "up", {"| - OK -", "", ""}},
              {{"554 no"}, 0, "up", {"", Messaggio(336), "", ""}},
              {goodUpTo(1, "500 no"), 0, "up", {"", Messaggio(336), "", ""}},
              {{}, 10061, "up", {"", Messaggio(336), "", ""}},
              {goodUpTo(2, "550 no"), 0, "up", {"", Messaggio(334), "", ""}},
              {goodUpTo(3, "550 no"), 0, "up", {"", Messaggio(333), "", ""}},
              {goodUpTo(5, "552 no"), 0, "up", {"", Messaggio(333), "", ""}},
              {{}, 0, "down", {"", Messaggio(338), "", ""}}};
  for (const auto& row : rows) {
    const test::ScopedVariable variable("TANDEMIZE_NETWORK", row.network);
    CreaListaLog();
    server.scripts = {row.replies};
    server.connectError = row.connectError;
    FrmSendEMail form;
    form.InviaPosta();
    EXPECT_TRUE(ListaLog[1].ends_with(Messaggio(331)));
    EXPECT_EQ(loggedBehindTheBanner(), row.log);
  }
}

TEST_F(FrmSendEMailTest, A_stopped_mail_is_told_in_the_log_as_not_sent) {
  server.scripts = {{""}};
  stopAfter(20);
  FrmSendEMail form;
  form.Activate();
  EXPECT_EQ(loggedBehindTheBanner(), (Lines{"", "The report was not sent: sending it was stopped.", "", ""}));
  EXPECT_EQ(server.open, 0);
}

TEST_F(FrmSendEMailTest, A_stop_of_the_operation_that_reports_ends_the_mail_too) {
  FinestraOperazione window("FrmFileTransfer");
  server.scripts = {{""}};
  screen.onEvents = [left = 20]() mutable {
    if (--left == 0) AnnullaOperazioneInCorso();
  };
  FrmSendEMail form;
  form.Activate();
  EXPECT_TRUE(window.ProcessoAnnullato);
  EXPECT_TRUE(logged("The report was not sent: sending it was stopped."));
}

TEST_F(FrmSendEMailTest, Only_the_first_activation_sends) {
  View view;
  FrmSendEMail form(&view);
  form.Activate();
  form.Activate();
  EXPECT_EQ(server.sent.size(), 1U);
  EXPECT_EQ(view.closed, 1);
  form.CmdInvia_Click();
  EXPECT_EQ(server.sent.size(), 2U);
}

TEST_F(FrmSendEMailTest, The_window_shows_replies_progress_and_which_buttons_work) {
  View view;
  FrmSendEMail form(&view);
  EXPECT_TRUE(form.Stato().CmdInvia);
  EXPECT_FALSE(form.Stato().CmdAnnulla);
  form.Activate();
  bool sending = false, whole = false, replies = false;
  for (const StatoPosta& state : view.states) {
    sending = sending || (!state.CmdInvia && state.CmdAnnulla);
    whole = whole || (state.ProgBar == 100 && !state.CmdInvia);
    replies = replies || state.TxtLog.starts_with("220 ready\r\n\r\n250 hello");
  }
  EXPECT_TRUE(sending && whole && replies);
  const StatoPosta& last = view.states.back();
  EXPECT_EQ(last.lblStatus, "Ready.");
  EXPECT_EQ(last.TxtLog, "");
  EXPECT_EQ(last.ProgBar, 0);
  EXPECT_TRUE(last.CmdInvia);
  EXPECT_FALSE(last.CmdAnnulla);
}

TEST_F(FrmSendEMailTest, The_abort_question_leaves_the_dialogue_to_its_own_end) {
  FrmSendEMail form;
  screen.answers = {Risposta::No, Risposta::Sì};
  screen.onEvents = [&form, this] {
    if (screen.boxes.size() == 2) return;
    const bool mayClose = form.QueryUnload();
    EXPECT_EQ(mayClose, screen.boxes.size() == 2);
    EXPECT_EQ(form.Stato().CmdAnnulla, screen.boxes.size() == 1);
  };
  form.Activate();
  EXPECT_EQ(loggedBehindTheBanner(), (Lines{"| - OK -", "", ""}));
  ASSERT_EQ(screen.boxes.size(), 2U);
  EXPECT_EQ(screen.boxes[0].text, "Are you sure to abort ?");
  EXPECT_EQ(screen.boxes[0].style, 36);
  EXPECT_FALSE(form.QueryUnload()) << "the abort state is cleared at the end of the mail";
}

TEST_F(FrmSendEMailTest, A_second_start_while_a_mail_is_under_way_does_nothing) {
  FrmSendEMail form;
  int rounds = 0;
  screen.onEvents = [&] {
    if (++rounds < 10) form.CmdInvia_Click();
  };
  form.Activate();
  EXPECT_EQ(server.sent.size(), 1U);
  EXPECT_EQ(count(Messaggio(331)), 1);
}

TEST_F(FrmSendEMailTest, A_report_sends_a_mail_when_the_settings_say_so_and_goes_on_after_it) {
  ErroreFatale(5, "R", 0, 0, "", "own text", 0);
  EXPECT_TRUE(server.sent.empty());
  Email_Action = 1;
  Log_Show_Window = 1;
  ErroreFatale(5, "R", 0, 0, "", "own text", 0);
  ASSERT_EQ(server.sent.size(), 1U);
  EXPECT_NE(server.sent[0][4].find("\nown text\n"), std::string::npos);
  EXPECT_EQ(screen.logShows, 1);
}

TEST_F(FrmSendEMailTest, A_program_with_windows_shows_its_own_and_only_one_at_a_time) {
  int shows = 0;
  UsaFinestraPosta([&shows] {
    ++shows;
    MostraFrmSendEMail();
    FrmSendEMail form;
    form.Activate();
  });
  MostraFrmSendEMail();
  EXPECT_EQ(shows, 1);
  EXPECT_EQ(server.sent.size(), 1U);
  UsaFinestraPosta(nullptr);
  MostraFrmSendEMail();
  EXPECT_EQ(server.sent.size(), 2U);
}

TEST_F(FrmSendEMailTest, Replies_of_the_server_do_not_reach_the_log) {
  server.scripts = {goodUpTo(3, "550 secret words\r\n")};
  FrmSendEMail form;
  form.Activate();
  EXPECT_EQ(program.log().find("secret"), std::string::npos);
}

}  // namespace
}  // namespace tandemize
