#include "mail/SocketSmtp.h"

#include "mail/ComposizioneMessaggio.h"
#include "mail/ScriptedServer.h"
#include "platform/machine.h"

namespace tandemize {
namespace {

struct SocketSmtp : test::MailTest {
  bool open(std::string_view name = "mail.example") { return ApriSocket(name, PortaSmtp, status); }
  [[nodiscard]] std::vector<std::string> sent() const { return server.sent.back(); }

  std::int32_t status = 1;
};

TEST_F(SocketSmtp, Winsock_counts_as_started_until_it_is_ended) {
  EXPECT_FALSE(WinsockAvviato);
  EXPECT_TRUE(AvviaWinsock());
  EXPECT_TRUE(AvviaWinsock());
  EXPECT_TRUE(WinsockAvviato);
  ChiudiWinsock();
  EXPECT_FALSE(WinsockAvviato);
}

TEST_F(SocketSmtp, A_server_s_name_may_carry_its_port) {
  for (const char* name :
       {"mail.example:2525", "10.0.0.1", "[::1]:26", "mail.example:x", "mail.example:65534"})
    EXPECT_TRUE(open(name));
  EXPECT_EQ(server.hosts, (test::Lines{"mail.example:2525", "10.0.0.1:25", "::1:26", "mail.example:x:25",
                                       "mail.example:65534"}));
}

TEST_F(SocketSmtp, An_opened_connection_is_the_one_of_the_process) {
  EXPECT_TRUE(open("mail.example:2525"));
  EXPECT_TRUE(WinsockAvviato);
  EXPECT_NE(SmtpSocket, nullptr);
  EXPECT_EQ(server.hosts, test::Lines{"mail.example:2525"});
  EXPECT_TRUE(open());
  EXPECT_EQ(server.open, 1);
  ChiudiWinsock();
  EXPECT_EQ(server.open, 0);
}

TEST_F(SocketSmtp, Port_65535_is_refused_without_a_connection) {
  EXPECT_FALSE(open("mail.example:65535"));
  EXPECT_TRUE(server.hosts.empty());
  EXPECT_FALSE(WinsockAvviato);
}

TEST_F(SocketSmtp, A_failure_to_connect_leaves_nothing_open_and_its_number) {
  server.connectError = 11001;
  EXPECT_FALSE(open());
  EXPECT_FALSE(WinsockAvviato);
  EXPECT_EQ(SmtpSocket, nullptr);
  EXPECT_EQ(UltimoErroreSocket(), 11001);
  EXPECT_EQ(status, 1);
}

TEST_F(SocketSmtp, Events_run_until_the_connection_can_be_written_to) {
  server.writable = false;
  screen.onEvents = [this, left = 10]() mutable { server.writable = --left <= 0; };
  EXPECT_TRUE(open());
  EXPECT_TRUE(server.writable);
}

TEST_F(SocketSmtp, A_connection_that_is_not_writable_in_time_is_given_back_all_the_same) {
  server.writable = false;
  Attese.scrittura = 0;
  EXPECT_TRUE(open());
  EXPECT_NE(SmtpSocket, nullptr);
}

TEST_F(SocketSmtp, A_stop_ends_the_wait_for_a_connection) {
  server.writable = false;
  stopAfter(3);
  EXPECT_TRUE(open());
  EXPECT_EQ(status, StatoAnnullato);
}

TEST_F(SocketSmtp, A_stop_ends_the_attempt_to_connect) {
  UsaConnessioni([](const std::string&, std::uint16_t, const std::function<bool()>& goOn, int& error) {
    while (goOn()) {
    }
    error = platform::kStopped;
    return std::unique_ptr<ConnessioneSmtp>();
  });
  stopAfter(5);
  EXPECT_EQ(send(), StatoAnnullato);
}

TEST_F(SocketSmtp, Text_of_exactly_8192_characters_goes_out_whole_in_one_send) {
  ASSERT_TRUE(open());
  std::string text;
  for (int i = 0; i < 8192; ++i) text += i % 2 == 0 ? "à" : "a";
  InviaDati(text, status);
  EXPECT_EQ(sent(), test::Lines{text});
  InviaDati(text + "more", status);
  EXPECT_EQ(sent(), (test::Lines{text, text}));
}

TEST_F(SocketSmtp, A_send_that_would_block_is_tried_until_it_is_taken) {
  ASSERT_TRUE(open());
  Attese.invio = 3'600'000;
  server.sendResults = {-1, -1, 0, -1, 0};
  server.sendError = 10035;
  InviaDati("text", status);
  EXPECT_EQ(sent(), test::Lines{"text"});
  EXPECT_EQ(server.sendTries, 6);
  EXPECT_TRUE(shown.labels.empty());
  EXPECT_NE(SmtpSocket, nullptr);
}

TEST_F(SocketSmtp, A_send_that_fails_for_too_long_is_reported_once_and_closes_the_connection) {
  ASSERT_TRUE(open());
  Attese.invio = 0;
  server.sendResults = {-1};
  server.sendError = 10054;
  InviaDati("text", status);
  EXPECT_EQ(shown.labels, test::Lines{Messaggio(321) + "10054Connection reset by peer."});
  EXPECT_EQ(server.open, 0);
  EXPECT_FALSE(WinsockAvviato);
  EXPECT_EQ(status, 1);
  InviaDati("text", status);
  EXPECT_EQ(shown.labels.size(), 1U);
  EXPECT_EQ(server.sendTries, 1);
}

TEST_F(SocketSmtp, A_send_of_nothing_goes_on_without_regard_to_time) {
  ASSERT_TRUE(open());
  Attese.invio = 0;
  server.sendResults = {0, 0, 0};
  InviaDati("text", status);
  EXPECT_EQ(sent(), test::Lines{"text"});
}

TEST_F(SocketSmtp, A_short_count_is_taken_as_success) {
  ASSERT_TRUE(open());
  server.sendResults = {2};
  InviaDati("text", status);
  EXPECT_EQ(server.sendTries, 1);
  EXPECT_TRUE(shown.labels.empty());
}

TEST_F(SocketSmtp, A_status_of_8_leaves_at_once) {
  ASSERT_TRUE(open());
  status = StatoAnnullato;
  InviaDati("text", status);
  EXPECT_EQ(server.sendTries, 0);
}

TEST_F(SocketSmtp, Sending_an_empty_text_does_nothing) {
  ASSERT_TRUE(open());
  InviaDati("", status);
  EXPECT_EQ(server.sendTries, 0);
}

TEST_F(SocketSmtp, A_stop_while_a_send_is_refused_ends_it) {
  ASSERT_TRUE(open());
  server.sendResults.assign(1000, -1);
  Attese.invio = 3'600'000;
  stopAfter(4);
  InviaDati("text", status);
  EXPECT_EQ(status, StatoAnnullato);
  EXPECT_TRUE(shown.labels.empty());
}

TEST_F(SocketSmtp, A_stop_from_before_the_mail_is_not_its_concern) {
  AnnullamentoRichiesto = true;
  SorvegliaArresto();
  LasciaEventi(status);
  EXPECT_EQ(status, 1);
  AnnullamentoRichiesto = false;
  SorvegliaArresto();
  screen.onEvents = [] { AnnullamentoRichiesto = true; };
  LasciaEventi(status);
  EXPECT_EQ(status, StatoAnnullato);
}

TEST(TestoErroreSocket, Has_51_texts_and_none_for_other_numbers) {
  const struct {
    int code;
    const char* text;
  } rows[] = {{10004, "Interrupted system call."},
              {10009, "Bad file number."},
              {10013, "Permission Denied."},
              {10014, "Bad Address."},
              {10022, "Invalid Argument."},
              {10024, "Too many open files."},
              {10035, "Operation would block."},
              {10036, "Operation now in progress."},
              {10037, "Operation already in progress."},
              {10038, "Socket operation on nonsocket."},
              {10039, "Destination address required."},
              {10040, "Message too long."},
              {10041, "Protocol wrong type for socket."},
              {10042, "Protocol not available."},
              {10043, "Protocol not supported."},
              {10044, "Socket type not supported."},
              {10045, "Operation not supported on socket."},
              {10046, "Protocol family not supported."},
              {10047, "Address family not supported by protocol family."},
              {10048, "Address already in use."},
              {10049, "Can't assign requested address."},
              {10050, "Network is down."},
              {10051, "Network is unreachable."},
              {10052, "Network dropped connection."},
              {10053, "Software caused connection abort."},
              {10054, "Connection reset by peer."},
              {10055, "No buffer space available."},
              {10056, "Socket is already connected."},
              {10057, "Socket is not connected."},
              {10058, "Can't send after socket shutdown."},
              {10059, "Too many references: can't splice."},
              {10060, "Connection timed out."},
              {10061, "Connection refused."},
              {10062, "Too many levels of symbolic links."},
              {10063, "File name too long."},
              {10064, "Host is down."},
              {10065, "No route to host."},
              {10066, "Directory not empty."},
              {10067, "Too many processes."},
              {10068, "Too many users."},
              {10069, "Disk quota exceeded."},
              {10070, "Stale NFS file handle."},
              {10071, "Too many levels of remote in path."},
              {10091, "Network subsystem is unusable."},
              {10092, "Winsock DLL cannot support this application."},
              {10093, "Winsock not initialized."},
              {10101, "Disconnect."},
              {11001, "Host not found."},
              {11002, "Nonauthoritative host not found."},
              {11003, "Nonrecoverable error."},
              {11004, "Valid name, no data record of requested type."}};
  int found = 0;
  for (int code = 9999; code <= 12000; ++code) found += TestoErroreSocket(code).empty() ? 0 : 1;
  EXPECT_EQ(found, 51);
  EXPECT_EQ(std::size(rows), 51U);
  for (const auto& row : rows) EXPECT_EQ(TestoErroreSocket(row.code), row.text) << row.code;
  EXPECT_EQ(TestoErroreSocket(0), "");
  EXPECT_EQ(TestoErroreSocket(-1), "");
}

}  // namespace
}  // namespace tandemize
