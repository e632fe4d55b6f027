// Runs of the console program that mail what failed.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "fixtures/LogLines.h"
#include "fixtures/RunProgram.h"
#include "fixtures/SmtpServer.h"

namespace tandemize {
namespace {

using test::ConsoleFolder;
using test::ProgramResult;
using test::ReceivedMail;
using test::RunProgram;
using test::SmtpServer;

// A backup one of whose files cannot be copied, since its destination has a folder of that name. The settings
// ask for a mail.
class FailingBackup : public ConsoleFolder {
 public:
  explicit FailingBackup(const std::string& server) {
    copySourceToDestination();
    work().write("source/good", "content of good");
    work().write("source/bad", "content of bad");
    work().write("destination/bad/kept", "");
    setting("Email_Action", "1");
    setting("Email_Smtp", server);
    setting("Email_Email", "anna@mail.example");
    home().write("Registry.ini",
                 "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager]\r\n"
                 "Default Mail Account=00000001\r\n"
                 "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager\\Accounts\\00000001]\r\n"
                 "SMTP Email Address=pc@home.example\r\n");
  }
};

RunProgram& withNetwork(RunProgram& run) {
  return run.set("TANDEMIZE_NETWORK", "up");
}

TEST(MailRuns, A_failed_file_is_mailed_with_the_log_up_to_it) {
  const SmtpServer server;
  const FailingBackup backup(server.name());
  RunProgram run(backup.words({"backup"}));
  const ProgramResult result = withNetwork(run).run();
  EXPECT_EQ(result.status, 3) << result.err;
  const std::vector<ReceivedMail> mails = server.mails();
  ASSERT_EQ(mails.size(), 1U) << backup.log();
  EXPECT_EQ(mails[0].from, "pc@home.example");
  EXPECT_EQ(mails[0].to, std::vector<std::string>{"anna@mail.example"});
  const std::string& data = mails[0].data;
  EXPECT_NE(data.find("\r\nSubject: " + backup.message(332) + "\r\n"), std::string::npos) << data;
  const std::string body = data.substr(data.find("\r\n\r\n") + 4);
  EXPECT_TRUE(body.starts_with(backup.message(330) + " '")) << body;
  EXPECT_NE(body.find("\n\n==> Error While Writing File : "), std::string::npos) << body;
  EXPECT_NE(body.find(backup.program("source/bad")), std::string::npos) << body;
  EXPECT_EQ(body.find("content of"), std::string::npos) << "no file's content";
  EXPECT_TRUE(body.ends_with("\n\n\r\n\r\n"))
      << "an empty line ends the banner of the mail, then the message's own end";
}

TEST(MailRuns, The_body_is_the_log_file_line_by_line) {
  const SmtpServer server;
  const FailingBackup backup(server.name());
  RunProgram run(backup.words({"backup"}));
  withNetwork(run).run();
  ASSERT_EQ(server.mails().size(), 1U) << backup.log();
  const std::string data = server.mails()[0].data;
  std::string body = data.substr(data.find("\r\n\r\n") + 4);
  body = body.substr(body.find("\n\n") + 2);
  std::string expected;
  for (const std::string& line : test::linesOf(backup.log())) {
    expected += line + "\n";
    if (expected.size() + 4 >= body.size()) break;
  }
  EXPECT_EQ(body, expected + "\r\n\r\n");
}

TEST(MailRuns, A_run_without_failure_and_settings_that_want_no_mail_send_none) {
  const SmtpServer server;
  FailingBackup backup(server.name());
  std::filesystem::remove_all(backup.work().host("destination/bad"));
  RunProgram good(backup.words({"backup"}));
  EXPECT_EQ(withNetwork(good).run().status, 0);
  FailingBackup unwanted(server.name());
  unwanted.setting("Email_Action", "0");
  RunProgram silent(unwanted.words({"backup"}));
  EXPECT_EQ(withNetwork(silent).run().status, 3);
  EXPECT_TRUE(server.mails().empty());
}

TEST(MailRuns, A_mail_that_fails_is_told_in_the_log_and_the_run_goes_on) {
  const struct {
    std::vector<std::string> script;
    int message;
  } rows[] = {
      {{"say '554 no\\r\\n'", "rest"}, 336},
      {{"say '220 ready\\r\\n'", "line", "say '250 ok\\r\\n'", "line", "say '550 no\\r\\n'", "rest"}, 334}};
  for (const auto& row : rows) {
    const SmtpServer server(row.script);
    FailingBackup backup(server.name());
    backup.work().write("source/zlast", "content");
    RunProgram run(backup.words({"backup"}));
    const ProgramResult result = withNetwork(run).run();
    EXPECT_EQ(result.status, 3) << result.err;
    EXPECT_EQ(test::countLinesWith(backup.logLines(), backup.message(row.message)), 1) << backup.log();
    EXPECT_EQ(backup.work().read("destination/zlast"), "content");
  }
}

TEST(MailRuns, Without_a_network_the_mail_is_not_tried) {
  const SmtpServer server;
  const FailingBackup backup(server.name());
  RunProgram run(backup.words({"backup"}));
  EXPECT_EQ(run.set("TANDEMIZE_NETWORK", "down").run().status, 3);
  EXPECT_EQ(test::countLinesWith(backup.logLines(), backup.message(338)), 1) << backup.log();
  EXPECT_TRUE(server.mails().empty());
}

TEST(MailRuns, SIGTERM_ends_the_wait_for_a_silent_server_and_the_log_says_that_the_mail_was_not_sent) {
  for (const int number : {SIGTERM, SIGINT}) {
    const SmtpServer silent({"say '220 ready\\r\\n'", "rest"});
    const FailingBackup backup(silent.name());
    RunProgram run(backup.words({"backup"}));
    withNetwork(run).start();
    EXPECT_TRUE(run.reaches([&] { return silent.received() == "HELO home.example\r\n"; })) << backup.log();
    run.signal(number);
    const ProgramResult result = run.wait();
    EXPECT_EQ(result.signal, 0) << "it ended by itself";
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_EQ(test::countLinesWith(backup.logLines(), "The report was not sent: sending it was stopped."), 1)
        << backup.log();
    EXPECT_GT(test::countLinesWith(backup.logLines(), "- " + backup.message(329) + " -"), 0);
  }
}

}  // namespace
}  // namespace tandemize
