#include "mail/ModuloEmail.h"

#include "mail/ComposizioneMessaggio.h"
#include "mail/ScriptedServer.h"

namespace tandemize {
namespace {

using namespace std::string_literals;
using test::ConnectionEnd;
using test::GoodReplies;
using test::goodUpTo;
using test::Lines;
using test::Replies;

using ModuloEmail = test::MailTest;

constexpr const char* Unexpected = "The Server responds with an unexpected Response Code!";
constexpr const char* TimedOut = "SMTP service error, timed out while waiting for response";

std::string countLabel(std::size_t count, std::size_t length) {
  return Messaggio(324) + std::to_string(count) + " Bytes from " + std::to_string(length);
}

TEST_F(ModuloEmail, A_dialogue_sends_its_lines_in_order_and_gives_status_0) {
  EXPECT_EQ(send(), 0);
  ASSERT_EQ(server.sent.size(), 1U);
  const Lines& sent = server.sent[0];
  ASSERT_EQ(sent.size(), 7U);
  EXPECT_EQ(sent[0], "HELO home.example\r\n");
  EXPECT_EQ(sent[1], "MAIL FROM: <anna@home.example>\r\n");
  EXPECT_EQ(sent[2], "RCPT TO: <anna@mail.example>\r\n");
  EXPECT_EQ(sent[3], "DATA\r\n");
  EXPECT_TRUE(sent[4].ends_with("\r\n\r\nbody\r\n")) << sent[4];
  EXPECT_EQ(sent[5], "\r\n.\r\n");
  EXPECT_EQ(sent[6], "QUIT\r\n");
  EXPECT_EQ(server.hosts, Lines{"mail.example:25"});
  EXPECT_EQ(server.open, 0);
}

TEST_F(ModuloEmail, The_display_follows_the_dialogue_and_is_cleared_at_its_end) {
  EXPECT_EQ(send(), 0);
  const std::size_t length = server.sent[0][4].size();
  EXPECT_EQ(shown.labels,
            (Lines{Messaggio(320) + " mail.example", countLabel(length + 1, length), "Ready."}));
  EXPECT_EQ(shown.bar, (std::vector<int>{100, 0}));
  ASSERT_EQ(shown.replies.size(), 8U);
  EXPECT_EQ(shown.replies[1], "220 ready\r\n\r\n250 hello\r\n\r\n");
  EXPECT_EQ(shown.replies.back(), "");
  EXPECT_EQ(RispostaServer, "");
  EXPECT_FALSE(DialogoAttivo);
}

TEST_F(ModuloEmail, Without_a_display_nothing_is_written_and_the_mail_goes_out) {
  UsaOggettiPosta(nullptr);
  EXPECT_EQ(send(), 0);
  EXPECT_TRUE(shown.labels.empty());
}

TEST_F(ModuloEmail,
       Addresses_are_trimmed_in_their_lines_and_HELO_takes_what_stands_behind_the_first_at_sign) {
  message.from = " anna@home@example ";
  message.to = "  bob@mail.example ";
  EXPECT_EQ(send(), 0);
  EXPECT_EQ(server.sent[0][0], "HELO home@example \r\n");
  EXPECT_EQ(server.sent[0][1], "MAIL FROM: <anna@home@example>\r\n");
  EXPECT_EQ(server.sent[0][2], "RCPT TO: <bob@mail.example>\r\n");
}

TEST_F(ModuloEmail, HELO_takes_the_whole_of_an_address_without_an_at_sign) {
  message.from = "anna";
  EXPECT_EQ(send(), 0);
  EXPECT_EQ(server.sent[0][0], "HELO anna\r\n");
}

TEST_F(ModuloEmail, Several_addresses_are_passed_on_whole_as_one_recipient) {
  message.to = "a@b.c;d@e.f";
  EXPECT_EQ(send(), 0);
  EXPECT_EQ(server.sent[0][2], "RCPT TO: <a@b.c;d@e.f>\r\n");
}

TEST_F(ModuloEmail, A_wrong_code_ends_the_dialogue_with_the_status_of_the_step_reached) {
  const struct {
    std::size_t step;
    const char* reply;
    int status;
  } rows[] = {{0, "554 no\r\n", 1},
              {1, "500 no\r\n", 1},
              {2, "550 no\r\n", 2},
              {3, "550 no\r\n", 3},
              {4, "503 no\r\n", 3},
              {5, "552 full\r\n", 3},
              {1, "220 odd\r\n", 1},
              {5, "354 again\r\n", 3},
              {3, "251 elsewhere\r\n", 3},
              {0, "hello\r\n", 1},
              {2, "", 2}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.step) + row.reply);
    server.sent.clear();
    shown.labels.clear();
    const std::string reply = *row.reply == '\0' ? "\r\n" : row.reply;
    EXPECT_EQ(sendWith({goodUpTo(row.step, reply)}), row.status);
    EXPECT_EQ(server.sent.size(), 1U);
    EXPECT_EQ(shown.labels.back(), Unexpected);
    EXPECT_EQ(server.open, 0);
    EXPECT_FALSE(WinsockAvviato);
  }
}

TEST_F(ModuloEmail, Whatever_answers_QUIT_the_mail_is_sent) {
  for (const std::string& reply : Lines{"500 what?\r\n", ConnectionEnd, "421 busy\r\n"}) {
    server.sent.clear();
    EXPECT_EQ(sendWith({goodUpTo(6, reply)}), 0);
    EXPECT_EQ(server.sent.size(), 1U);
    EXPECT_EQ(shown.labels.back(), "Ready.");
  }
}

TEST_F(ModuloEmail, A_server_that_ends_the_connection_ends_the_dialogue_without_another_try) {
  const int statuses[] = {1, 1, 2, 3, 3, 3};
  for (std::size_t step = 0; step < std::size(statuses); ++step) {
    server.sent.clear();
    EXPECT_EQ(sendWith({goodUpTo(step, ConnectionEnd)}), statuses[step]) << step;
    EXPECT_EQ(server.sent.size(), 1U) << step;
    EXPECT_FALSE(shown.labelled(Unexpected));
  }
}

TEST_F(ModuloEmail, One_receive_takes_one_step_whatever_else_it_holds) {
  EXPECT_EQ(sendWith({{"220 ready\r\n250 hello\r\n250 sender\r\n", ConnectionEnd}}), 1);
  EXPECT_EQ(server.sent[0], Lines{"HELO home.example\r\n"}) << "nothing came after the greeting";
}

TEST_F(ModuloEmail, A_reply_of_several_lines_in_one_receive_is_one_reply) {
  Replies replies = GoodReplies;
  replies[0] = "220-one\r\n220-two\r\n220 three\r\n";
  replies[1] = "250-one\r\n550 two\r\n";
  EXPECT_EQ(sendWith({replies}), 0);
}

TEST_F(ModuloEmail, Only_the_first_three_characters_are_the_code) {
  Replies replies = GoodReplies;
  replies[0] = "2201 ready";
  replies[1] = "250";
  EXPECT_EQ(sendWith({replies}), 0);
  EXPECT_EQ(sendWith({goodUpTo(0, "22")}), 1);
  EXPECT_EQ(sendWith({goodUpTo(0, " 220")}), 1);
}

TEST_F(ModuloEmail, At_most_2048_bytes_are_one_reply_and_the_rest_is_the_next_one) {
  Replies replies = GoodReplies;
  replies[0] = "220" + std::string(2045, 'x');
  EXPECT_EQ(sendWith({replies}), 0);
  EXPECT_EQ(server.lastLimit, 2048U);
  EXPECT_EQ(sendWith({goodUpTo(0, "220" + std::string(2045, 'x') + "y")}), 1);
  // What does not fit comes as the answer to HELO, and is one if its digits are right.
  Replies glued = GoodReplies;
  glued[0] = "220" + std::string(2045, 'x') + "250";
  glued[1] = "";
  EXPECT_EQ(sendWith({glued}), 0);
}

TEST_F(ModuloEmail, Replies_of_any_length_and_content_end_in_the_status_of_their_step) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  const Lines contents = {std::string(1, '\0'),
                          std::string("22\0", 3),
                          all,
                          std::string(10'000'000, '9'),
                          "\xFF\xFE\xFD",
                          "-220",
                          "2 20",
                          std::string(5000, '\n'),
                          "999999999999999999999",
                          std::string(1000, '%'),
                          "\r\n",
                          "2"};
  const int statuses[] = {1, 1, 2, 3, 3, 3};
  for (std::size_t step = 0; step < std::size(statuses); ++step) {
    for (const std::string& content : contents) {
      EXPECT_EQ(sendWith({goodUpTo(step, content)}), statuses[step]) << step << content.substr(0, 20);
      EXPECT_EQ(server.open, 0);
    }
  }
}

TEST_F(ModuloEmail, What_follows_the_code_may_be_anything) {
  Replies replies = GoodReplies;
  replies[0] = std::string("220\0\xFF\r\r\n\n", 9);
  replies[1] = "250\x1B[2J%s%n";
  EXPECT_EQ(sendWith({replies}), 0);
}

TEST_F(ModuloEmail, A_421_anywhere_in_the_replies_is_tried_again_up_to_seven_times) {
  EXPECT_EQ(sendWith({{"421 busy\r\n"}}), 1);
  EXPECT_EQ(server.sent.size(), 7U);
  EXPECT_EQ(shown.timesLabelled(Messaggio(320) + " mail.example"), 7);
  EXPECT_EQ(RispostaServer, "421 busy\r\n\r\n") << "cleared for each attempt";
}

TEST_F(ModuloEmail, A_421_in_any_position_of_any_reply_counts) {
  EXPECT_EQ(sendWith({goodUpTo(3, "550 id 84217\r\n"), GoodReplies}), 0);
  EXPECT_EQ(server.sent.size(), 2U);
  server.sent.clear();
  EXPECT_EQ(sendWith({{"220 id 421\r\n", "500 no\r\n"}, GoodReplies}), 0);
  EXPECT_EQ(server.sent.size(), 2U);
}

TEST_F(ModuloEmail, The_seventh_attempt_can_succeed_and_another_fault_ends_the_attempts) {
  std::deque<Replies> scripts(6, Replies{"421 busy\r\n"});
  scripts.push_back(GoodReplies);
  EXPECT_EQ(sendWith(scripts), 0);
  EXPECT_EQ(server.sent.size(), 7U);
  server.sent.clear();
  EXPECT_EQ(sendWith({{"421 busy\r\n"}, {"220 ready\r\n", "500 no\r\n"}}), 1);
  EXPECT_EQ(server.sent.size(), 2U);
}

TEST_F(ModuloEmail, The_status_of_an_earlier_attempt_stays_until_a_step_changes_it) {
  EXPECT_EQ(sendWith({goodUpTo(3, "421 busy\r\n"), {"500 no\r\n"}}), 3);
}

TEST_F(ModuloEmail, Without_a_network_the_status_is_9_at_once_on_a_later_attempt_too) {
  {
    const test::ScopedVariable down("TANDEMIZE_NETWORK", "down");
    EXPECT_EQ(send(), 9);
    EXPECT_TRUE(server.hosts.empty());
  }
  server.scripts = {{"421 busy\r\n"}};
  screen.onEvents = [] { ::setenv("TANDEMIZE_NETWORK", "down", 1); };
  EXPECT_EQ(send(), 9);
  EXPECT_EQ(server.sent.size(), 1U);
}

TEST_F(ModuloEmail, A_server_that_cannot_be_reached_gives_status_1_and_its_reason) {
  server.connectError = 10061;
  EXPECT_EQ(send("mail.example:26"), 1);
  EXPECT_EQ(shown.labels, Lines{Messaggio(319) + " mail.example:26Connection refused."});
  EXPECT_EQ(server.hosts.size(), 1U);
  EXPECT_FALSE(WinsockAvviato);
}

TEST_F(ModuloEmail, A_silent_server_is_reported_once_and_waited_for) {
  Attese.risposta = 0;
  screen.onEvents = [this, rounds = 0]() mutable {
    if (shown.labelled(TimedOut) && ++rounds == 50) InterrompiPosta();
  };
  EXPECT_EQ(sendWith({{""}}), 8);
  EXPECT_EQ(shown.timesLabelled(TimedOut), 1);
}

TEST_F(ModuloEmail, A_late_reply_goes_on_as_if_it_had_come_in_time) {
  Attese.risposta = 0;
  screen.onEvents = [this, told = false]() mutable {
    if (told || !shown.labelled(TimedOut)) return;
    told = true;
    server.late = "220 at last\r\n";
  };
  Replies replies = GoodReplies;
  replies[0] = "";
  EXPECT_EQ(sendWith({replies}), 0);
  EXPECT_TRUE(shown.labelled(TimedOut));
}

TEST_F(ModuloEmail, A_stop_ends_the_wait_at_every_step_and_no_attempt_follows) {
  for (std::size_t step = 0; step < 6; ++step) {
    SCOPED_TRACE(step);
    server.sent.clear();
    SorvegliaArresto();
    stopAfter(40);
    Replies replies = goodUpTo(step, "");
    if (step > 0) replies[0] = "220 421\r\n";
    EXPECT_EQ(sendWith({replies}), 8);
    EXPECT_EQ(server.sent.size(), 1U);
    EXPECT_EQ(server.open, 0);
  }
}

TEST_F(ModuloEmail, A_failed_send_is_reported_and_the_wait_goes_on_for_a_reply_that_cannot_come) {
  Attese.invio = 0;
  server.sendResults = {-1};
  server.sendError = 10053;
  stopAfter(30);
  EXPECT_EQ(send(), 8);
  EXPECT_TRUE(shown.labelled(Messaggio(321) + "10053Software caused connection abort."));
  EXPECT_EQ(server.sendTries, 1);
}

TEST_F(ModuloEmail, A_long_message_goes_out_in_pieces_and_shows_how_far_it_is) {
  message.body = std::string(20'000, 'x');
  EXPECT_EQ(send(), 0);
  const Lines& sent = server.sent[0];
  ASSERT_EQ(sent.size(), 9U);
  EXPECT_EQ(sent[4].size(), 8192U);
  EXPECT_EQ(sent[5].size(), 8192U);
  const std::size_t length = 2 * 8192 + sent[6].size();
  EXPECT_TRUE(shown.labelled(countLabel(8193, length)));
  EXPECT_TRUE(shown.labelled(countLabel(16385, length)));
  EXPECT_TRUE(shown.labelled(countLabel(length + 1, length)));
  const auto percent = [length](std::size_t count) { return static_cast<int>(count * 100 / length); };
  EXPECT_EQ(shown.bar, (std::vector<int>{percent(8193), percent(16385), 100, 0}));
}

TEST_F(ModuloEmail, A_stop_between_two_pieces_sends_no_closing_line) {
  message.body = std::string(40'000, 'x');
  screen.onEvents = [this] {
    if (!server.sent.empty() && server.sent[0].size() == 6) InterrompiPosta();
  };
  EXPECT_EQ(send(), 8);
  EXPECT_EQ(server.allSent().find("\r\n.\r\n"), std::string::npos);
}

TEST_F(ModuloEmail, Line_ends_in_the_values_make_neither_headers_nor_commands) {
  message.from = "anna@home.example>\r\nRCPT TO: <evil@e.f";
  message.to = "bob@mail.example>\r\nDATA\r\n.\r\n";
  message.subject = "s\r\nBcc: evil@e.f\n.\n";
  EXPECT_EQ(send(), 0);
  ASSERT_EQ(server.sent[0].size(), 7U);
  for (const std::size_t line : {0U, 1U, 2U}) {
    const std::string& text = server.sent[0][line];
    EXPECT_EQ(text.find_first_of("\r\n"), text.size() - 2) << text;
  }
  const std::string& text = server.sent[0][4];
  EXPECT_EQ(text.find("\nBcc"), std::string::npos);
  EXPECT_EQ(text.find("\nRCPT"), std::string::npos);
}

TEST_F(ModuloEmail, A_body_with_a_line_of_one_full_stop_does_not_end_the_mail) {
  message.body = "before\n.\nafter\r\n.\r\nQUIT";
  EXPECT_EQ(send(), 0);
  const std::string& text = server.sent[0][4];
  EXPECT_TRUE(text.ends_with("before\n\0.\nafter\r\n\0.\r\nQUIT\r\n"s)) << text;
}

TEST_F(ModuloEmail, Steps_outside_1_to_6_do_nothing) {
  std::int32_t status = 1;
  ASSERT_TRUE(ApriSocket("mail.example", PortaSmtp, status));
  for (const std::int16_t step : std::initializer_list<std::int16_t>{-1, 0, 7, 100}) {
    PassoSmtp = step;
    ProssimoPassoSmtp(message, status);
  }
  EXPECT_EQ(server.sendTries, 0);
  EXPECT_EQ(status, 1);
  status = StatoAnnullato;
  PassoSmtp = 1;
  ProssimoPassoSmtp(message, status);
  EXPECT_EQ(server.sendTries, 0);
  EXPECT_EQ(server.open, 0);
}

TEST_F(ModuloEmail, The_sender_is_the_address_of_the_system_s_mail_account) {
  const std::string key = "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager";
  const auto registry = [&](const std::string& account, const std::string& of) {
    program.home().write("Registry.ini", key + "]\r\nDefault Mail Account=" + account + "\r\n" + key +
                                             "\\Accounts\\" + of +
                                             "]\r\nSMTP Email Address=anna@home.example\r\n");
    platform::setProgramFolder(program.home().host());
    return AccountPredefinito();
  };
  EXPECT_EQ(AccountPredefinito(), "");
  EXPECT_EQ(registry("00000001", "00000001"), "anna@home.example");
  EXPECT_EQ(registry("abc", "abc"), "anna@home.example");
  EXPECT_EQ(registry("ab", "ab"), "") << "shorter than three characters";
  EXPECT_EQ(registry("00000001", "00000002"), "");
}

}  // namespace
}  // namespace tandemize
