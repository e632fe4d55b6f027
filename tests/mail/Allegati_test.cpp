// Messages with attachments. The program's own mail has none; the client can send them all the same.
#include <numeric>

#include "fixtures/TemporaryFolder.h"
#include "mail/Base64.h"
#include "mail/ComposizioneMessaggio.h"
#include "mail/DomandaAllegato.h"
#include "mail/ScriptedServer.h"

namespace tandemize {
namespace {

using test::Lines;

struct Allegati : test::MailTest {
  Allegati() {
    Attese.pausaAllegati = 0;
    AzzeraDomandaAllegato();
  }
  void attach(const std::string& name, const std::string& content) {
    program.work().write(name, content);
    message.allegati.push_back(program.program(name));
  }
  // What goes out behind the message's own text.
  [[nodiscard]] std::string parts() const {
    const std::string text = server.allSent();
    const std::size_t body = text.find("--NextMimePart\r\n\r\nbody\r\n");
    const std::size_t quit = text.rfind("QUIT\r\n");
    return body == std::string::npos ? "" : text.substr(body + 24, quit - body - 24);
  }
};

std::string codedLines(const std::string& content) {
  TabellaCodifica encode{};
  TabellaDecodifica decode{};
  PreparaBase64(encode, decode);
  ByteDati bytes, coded, lines;
  StringaInByte(content, bytes);
  CodificaBase64(bytes, coded, encode);
  SpezzaRighe(76, coded, lines);
  return {lines.begin(), lines.end()};
}

TEST_F(Allegati, Each_file_is_a_part_of_its_own_with_the_closing_boundary_and_line_behind) {
  attach("one.txt", "first");
  attach("two words.txt", std::string("\0\xFF\r\n.\r\n", 7));
  EXPECT_EQ(send(), 0);
  EXPECT_TRUE(ConAllegati);
  EXPECT_EQ(parts(), TestataAllegato("one.txt") + codedLines("first") + TestataAllegato("two words.txt") +
                         codedLines(std::string("\0\xFF\r\n.\r\n", 7)) + "\r\n--NextMimePart--\r\n" +
                         "\r\n.\r\n");
}

TEST_F(Allegati, A_long_file_goes_out_in_pieces_of_8192_characters_with_its_progress) {
  const std::string content(30'000, 'x');
  attach("long.bin", content);
  EXPECT_EQ(send(), 0);
  const std::string code = codedLines(content);
  EXPECT_NE(parts().find(code), std::string::npos);
  EXPECT_EQ(
      std::ranges::count_if(server.sent[0], [](const std::string& piece) { return piece.size() == 8192; }),
      static_cast<long>(code.size() / 8192));
  const std::string path = message.allegati[0], end = " Bytes from " + std::to_string(code.size());
  EXPECT_TRUE(shown.labelled(Messaggio(322) + " " + path));
  EXPECT_TRUE(shown.labelled(Messaggio(323) + " " + path + "... 8193" + end));
  EXPECT_TRUE(shown.labelled(Messaggio(323) + " " + path + "... 16385" + end));
  EXPECT_TRUE(shown.labelled(Messaggio(323) + " " + path + "... " + std::to_string(code.size() + 1) + end));
  // The first piece of the message is passed over; then the half, and the share of 1.4 times the size. What
  // would go beyond the bar is left out.
  EXPECT_EQ(shown.bar, (std::vector<int>{50, 59, 69, 79, 89, 98, 0}));
}

TEST_F(Allegati, A_missing_file_gives_status_4_with_nothing_of_the_attachments_sent) {
  attach("there.txt", "x");
  message.allegati.push_back(program.program("missing.txt"));
  EXPECT_EQ(send(), 4);
  EXPECT_EQ(parts(), "");
  EXPECT_EQ(server.sent[0].size(), 5U) << "neither closing line nor QUIT";
  EXPECT_EQ(server.open, 0);
}

TEST_F(Allegati, A_folder_counts_as_missing) {
  program.work().makeFolder("folder");
  message.allegati.push_back(program.program("folder"));
  EXPECT_EQ(send(), 4);
}

TEST_F(Allegati, An_empty_file_ends_the_attachments_without_boundary_and_closing_line) {
  attach("empty.txt", "");
  attach("other.txt", "x");
  stopAfter(60);
  EXPECT_EQ(send(), 8) << "the reply to the message cannot come";
  EXPECT_EQ(parts(), TestataAllegato("empty.txt"));
}

TEST_F(Allegati, A_big_file_is_asked_about_and_No_skips_it_behind_its_header) {
  attach("big.bin", std::string(AllegatoGrande + 1, 'x'));
  attach("small.txt", "x");
  screen.answers = {Risposta::No};
  EXPECT_EQ(send(), 0);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].style, 3);
  EXPECT_EQ(screen.boxes[0].text,
            "The current file is 2 MB of size, extracting from it could take a few minutes, Click Yes to go "
            "ahead, No to skip it or Cancel if you don't want to get this message again");
  EXPECT_EQ(parts(), TestataAllegato("big.bin") + TestataAllegato("small.txt") + codedLines("x") +
                         "\r\n--NextMimePart--\r\n\r\n.\r\n");
}

TEST_F(Allegati, The_size_is_rounded_to_whole_megabytes) {
  screen.answers = {Risposta::Sì, Risposta::Sì};
  EXPECT_TRUE(AllegatoAccettato(2'700'000));
  EXPECT_TRUE(AllegatoAccettato(5'000'000'000));
  EXPECT_TRUE(screen.boxes[0].text.starts_with("The current file is 3 MB "));
  EXPECT_TRUE(screen.boxes[1].text.starts_with("The current file is 4768 MB "));
}

TEST_F(Allegati, Two_mebibytes_are_not_asked_about_yet) {
  EXPECT_TRUE(AllegatoAccettato(2'097'152));
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(Allegati, Cancel_sends_the_file_and_is_remembered_for_good) {
  program.home().write("Registry.ini", "[HKEY_CURRENT_USER\\Other]\r\nkept=1");
  screen.answers = {Risposta::Annulla};
  EXPECT_TRUE(AllegatoAccettato(AllegatoGrande + 1));
  EXPECT_TRUE(AllegatoAccettato(AllegatoGrande + 1));
  EXPECT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(program.home().read("Registry.ini"),
            "[HKEY_CURRENT_USER\\Other]\r\nkept=1\r\n[HKEY_CURRENT_USER\\Software\\" + TitoloApplicazione +
                "\\Settings]\r\nToo big=True\r\n");

  AzzeraDomandaAllegato();
  platform::setProgramFolder(program.home().host());
  EXPECT_TRUE(AllegatoAccettato(AllegatoGrande + 1));
  EXPECT_EQ(screen.boxes.size(), 1U);
}

TEST_F(Allegati, The_answer_replaces_an_older_value_of_the_setting) {
  const std::string section = "[HKEY_CURRENT_USER\\Software\\" + TitoloApplicazione + "\\Settings]\r\n";
  program.home().write("Registry.ini", section + "Too big=False\r\n");
  platform::setProgramFolder(program.home().host());
  screen.answers = {Risposta::Annulla};
  EXPECT_TRUE(AllegatoAccettato(AllegatoGrande + 1));
  EXPECT_EQ(program.home().read("Registry.ini"), section + "Too big=True\r\nToo big=False\r\n");
  platform::setProgramFolder(program.home().host());
  AzzeraDomandaAllegato();
  EXPECT_TRUE(AllegatoAccettato(AllegatoGrande + 1));
  EXPECT_EQ(screen.boxes.size(), 1U);
}

TEST_F(Allegati, A_stop_between_two_pieces_ends_everything) {
  attach("long.bin", std::string(100'000, 'x'));
  screen.onEvents = [this] {
    if (!server.sent.empty() && server.sent[0].size() == 8) InterrompiPosta();
  };
  EXPECT_EQ(send(), 8);
  EXPECT_EQ(parts().find("--NextMimePart--"), std::string::npos);
  EXPECT_FALSE(parts().ends_with("\r\n.\r\n"));
}

}  // namespace
}  // namespace tandemize
