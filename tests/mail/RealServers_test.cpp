// The mail client over the host's network, with servers in processes of their own.
#include <filesystem>

#include "fixtures/SmtpServer.h"
#include "mail/ComposizioneMessaggio.h"
#include "mail/FrmSendEMail.h"
#include "mail/ScriptedServer.h"
#include "platform/sockets.h"

namespace tandemize {
namespace {

using test::Lines;
using test::ReceivedMail;
using test::SmtpServer;

struct MailServers : test::MailTest {
  MailServers() {
    UsaConnessioni(nullptr);
    program.home().write("Registry.ini",
                         "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager]\r\n"
                         "Default Mail Account=00000001\r\n"
                         "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager\\Accounts\\"
                         "00000001]\r\nSMTP Email Address=pc@home.example\r\n");
    platform::setProgramFolder(program.home().host());
    Email_Email = "anna@mail.example";
  }
  // Sends to a server that plays a script, and gives the status.
  std::int32_t sendTo(const SmtpServer& scripted) { return send(scripted.name()); }
};

// The message's last line ends in CR LF, and the closing line begins with one.
const std::string LastLines = "\r\n\r\n";

// A script that answers well up to a step (0 is the greeting), then does something else.
Lines goodSteps(int step, const Lines& then) {
  const Lines all = {"say '220 ready\\r\\n'",  "line", "say '250 hello\\r\\n'",     "line",
                     "say '250 sender\\r\\n'", "line", "say '250 recipient\\r\\n'", "line",
                     "say '354 go on\\r\\n'",  "mail", "say '250 taken\\r\\n'",     "line",
                     "say '221 bye\\r\\n'",    "rest"};
  Lines steps(all.begin(), all.begin() + 2L * step);
  steps.insert(steps.end(), then.begin(), then.end());
  return steps;
}
Lines goodSteps() {
  return goodSteps(7, {});
}

TEST_F(MailServers, A_real_error_notice_arrives_with_the_log) {
  const SmtpServer real;
  Email_Smtp = real.name();
  Email_Action = 1;
  ScriviLog("Copying 'C:\\dati\\perché.txt'", RigaNormale);
  ErroreFatale(5, "Copy_File", 0, 0, "File Name: < C:\\dati\\perché.txt >", "", 7);
  const std::vector<ReceivedMail> mails = real.mails();
  ASSERT_EQ(mails.size(), 1U) << program.log();
  EXPECT_EQ(mails[0].hello, "home.example");
  EXPECT_EQ(mails[0].from, "pc@home.example");
  EXPECT_EQ(mails[0].to, Lines{"anna@mail.example"});
  const std::string& data = mails[0].data;
  EXPECT_TRUE(data.starts_with("From: pc@home.example\r\nTo: anna@mail.example\r\nDate: ")) << data;
  std::string body = Messaggio(330) + " '" + NomeComputer() + "'\n\n";
  // Behind the collected lines the log holds the mail's own outcome, of two lines, and the spare one.
  for (std::size_t i = 0; i + 3 < ListaLog.size(); ++i) body += ListaLog[i] + "\n";
  EXPECT_EQ(data.substr(data.find("\r\n\r\n") + 4), body + LastLines);
  EXPECT_NE(body.find("perché.txt >\n"), std::string::npos);
  EXPECT_TRUE(ListaLog[ListaLog.size() - 3].ends_with("- OK -"));
}

// Its lines have no blanks: those on a seam of two pieces are lost.
TEST_F(MailServers, A_long_notice_arrives_whole) {
  const SmtpServer real;
  for (int i = 0; i < 3000; ++i) message.body += "(12/03/2005_14.22.10)_line_" + std::to_string(i) + "_é\n";
  message.body += "end";
  EXPECT_EQ(send(real.name()), 0);
  const std::string data = real.mails().at(0).data;
  EXPECT_EQ(data.substr(data.find("\r\n\r\n") + 4), message.body + LastLines);
}

TEST_F(MailServers, Attachments_arrive_coded) {
  const SmtpServer real;
  Attese.pausaAllegati = 0;
  program.work().write("a file.bin", std::string(57, 'x') + "y");
  message.allegati = {program.program("a file.bin")};
  EXPECT_EQ(send(real.name()), 0);
  const std::string data = real.mails().at(0).data;
  std::string line;
  for (int i = 0; i < 19; ++i) line += "eHh4";
  const std::string end =
      TestataAllegato("a file.bin") + line + "\r\neQ==\r\n\r\n--NextMimePart--" + LastLines;
  EXPECT_TRUE(data.ends_with(end)) << data;
}

TEST_F(MailServers, A_scripted_server_sees_every_byte_of_the_dialogue) {
  const SmtpServer scripted(goodSteps());
  message.body = "one\n.\ntwo";
  EXPECT_EQ(sendTo(scripted), 0);
  const std::string received = scripted.received();
  const std::string start =
      "HELO home.example\r\n"
      "MAIL FROM: <anna@home.example>\r\n"
      "RCPT TO: <anna@mail.example>\r\n"
      "DATA\r\n"
      "From: anna@home.example\r\n"
      "To: anna@mail.example\r\n"
      "Date: ";
  const std::string end = "\r\nSubject: subject\r\nX-Mailer: Tandemize Backup - " + TitoloApplicazione +
                          "\r\n\r\none\n" + std::string(1, '\0') + ".\ntwo\r\n\r\n.\r\nQUIT\r\n";
  EXPECT_TRUE(received.starts_with(start)) << received;
  EXPECT_TRUE(received.ends_with(end)) << received;
  const std::size_t date = received.size() - start.size() - end.size();
  EXPECT_EQ(received.substr(start.size(), date).find_first_of("\r\n"), std::string::npos);
}

TEST_F(MailServers, A_refusal_at_each_step_gives_that_step_s_status) {
  const int statuses[] = {1, 1, 2, 3, 3, 3};
  for (int step = 0; step < 6; ++step) {
    const SmtpServer scripted(goodSteps(step, {"say '550 no\\r\\n'", "rest"}));
    EXPECT_EQ(sendTo(scripted), statuses[step]) << step;
    EXPECT_EQ(scripted.connections(), 1);
  }
}

TEST_F(MailServers, A_connection_that_ends_or_breaks_at_a_step_ends_the_dialogue) {
  const int statuses[] = {1, 1, 2, 3, 3, 3};
  for (const Lines& fault : {Lines{}, Lines{"reset"}})
    for (int step = 0; step < 6; ++step) {
      const SmtpServer scripted(goodSteps(step, fault));
      EXPECT_EQ(sendTo(scripted), statuses[step]) << step;
    }
}

TEST_F(MailServers, A_busy_server_is_tried_seven_times_at_once) {
  Lines steps;
  for (int i = 0; i < 7; ++i) steps.insert(steps.end(), {"say '421 busy\\r\\n'", "rest", "next"});
  const Lines good = goodSteps();
  steps.insert(steps.end(), good.begin(), good.end());
  const SmtpServer scripted(steps);
  EXPECT_EQ(sendTo(scripted), 1);
  EXPECT_EQ(scripted.connections(), 7);
  EXPECT_EQ(sendTo(scripted), 0) << "the eighth connection";
}

TEST_F(MailServers, A_reply_split_inside_its_code_is_a_wrong_reply) {
  const SmtpServer scripted({"say '22'", "rest"});
  EXPECT_EQ(sendTo(scripted), 1);
}

TEST_F(MailServers, The_rest_of_a_split_reply_is_taken_for_the_next_one) {
  const SmtpServer scripted({"say '220 rea'", "line", "say 'dy\\r\\n'", "rest"});
  EXPECT_EQ(sendTo(scripted), 1);
  EXPECT_EQ(scripted.received(), "HELO home.example\r\n");
  EXPECT_TRUE(shown.labelled("The Server responds with an unexpected Response Code!"));
}

TEST_F(MailServers, A_reply_of_several_lines_in_one_piece_is_one_reply) {
  Lines steps = goodSteps();
  steps[0] = "say '220-one\\r\\n220-two\\r\\n220 three\\r\\n'";
  const SmtpServer scripted(steps);
  EXPECT_EQ(sendTo(scripted), 0);
}

TEST_F(MailServers, Replies_without_end_end_the_dialogue) {
  for (int step = 0; step < 6; ++step) {
    const SmtpServer scripted(goodSteps(step, {"fill 20000 '999 \\x00\\xff%s'", "rest"}));
    EXPECT_EQ(sendTo(scripted), step < 2 ? 1 : step < 3 ? 2 : 3) << step;
    EXPECT_LE(RispostaServer.size(), 8U * 2050U);
  }
}

TEST_F(MailServers, A_silent_server_holds_the_dialogue_until_it_is_stopped) {
  const SmtpServer scripted(goodSteps(1, {"rest"}));
  Attese.risposta = 0;
  screen.onEvents = [this] {
    if (shown.labelled("SMTP service error, timed out while waiting for response")) InterrompiPosta();
  };
  EXPECT_EQ(sendTo(scripted), 8);
  EXPECT_EQ(scripted.received(), "HELO home.example\r\n");
}

TEST_F(MailServers, Nobody_on_the_port_gives_the_host_s_reason) {
  std::string name;
  {
    const SmtpServer gone({"rest"});
    name = gone.name();
  }
  EXPECT_EQ(send(name), 1);
  EXPECT_EQ(shown.labels, Lines{Messaggio(319) + " " + name + "Connection refused."});
}

TEST_F(MailServers, A_name_that_cannot_be_resolved_leaves_its_number) {
  std::int32_t status = 1;
  EXPECT_FALSE(ApriSocket("no such name", PortaSmtp, status));
  EXPECT_TRUE(UltimoErroreSocket() == platform::kHostNotFound ||
              UltimoErroreSocket() == platform::kHostTryAgain)
      << UltimoErroreSocket();
  EXPECT_FALSE(ApriSocket("", PortaSmtp, status));
}

// More than the host keeps for a peer that reads nothing: the rest must neither be lost nor sent twice.
TEST_F(MailServers, A_server_that_is_slow_to_read_gets_all_of_it_once) {
  Lines steps = goodSteps();
  const SmtpServer scripted(steps);
  for (int i = 0; i < 60'000; ++i)
    message.body += "line_" + std::to_string(i) + "_of_many,_to_be_long_enough\n";
  message.body += "end";
  EXPECT_EQ(sendTo(scripted), 0);
  EXPECT_NE(scripted.received().find("\r\n\r\n" + message.body + "\r\n\r\n.\r\nQUIT\r\n"), std::string::npos);
}

}  // namespace
}  // namespace tandemize
