#include "mail/ComposizioneMessaggio.h"

#include <gtest/gtest.h>

#include <ctime>

#include "platform/calendarnames.h"
#include "platform/environment.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

using test::ScopedVariable;

constexpr std::int64_t AMoment = 1'763'733'909;  // 21 November 2025, 14:05:09 UTC
const std::string Nul(1, '\0');

struct ComposizioneMessaggio : testing::Test {
  ComposizioneMessaggio() { ::tzset(); }
  ScopedVariable zone{"TZ", "UTC"}, all{"LC_ALL", "C"};
};

TEST_F(ComposizioneMessaggio, A_date_has_the_names_of_day_and_month_and_twelve_hours) {
  const struct {
    std::int64_t moment;
    const char* text;
  } rows[] = {{AMoment, "Friday , 21 Nov 2025 02:05:09 PM"},
              {0, "Thursday , 01 Jan 1970 12:00:00 AM"},
              {951'826'154, "Tuesday , 29 Feb 2000 12:09:14 PM"},
              {1'709'251'199, "Thursday , 29 Feb 2024 11:59:59 PM"},
              {1'740'787'200, "Saturday , 01 Mar 2025 12:00:00 AM"},
              {4'107'542'399, "Sunday , 28 Feb 2100 11:59:59 PM"}};
  for (const auto& row : rows) EXPECT_EQ(DataDelMessaggio(row.moment), row.text);
}

TEST_F(ComposizioneMessaggio, A_locale_that_is_not_installed_has_English_names) {
  const ScopedVariable locale{"LC_ALL", "xx_XX.UTF-8"};
  EXPECT_EQ(platform::weekdayName(0), "Sunday");
  EXPECT_EQ(platform::weekdayName(6), "Saturday");
  EXPECT_EQ(platform::shortMonthName(1), "Jan");
  EXPECT_EQ(platform::shortMonthName(12), "Dec");
}

TEST_F(ComposizioneMessaggio, A_plain_message_is_headers_an_empty_line_and_the_trimmed_body) {
  EXPECT_EQ(TestoMessaggio("a@b.c", "d@e.f", "The subject", "  one\ntwo\n  ", AMoment, false),
            "From: a@b.c\r\n"
            "To: d@e.f\r\n"
            "Date: Friday , 21 Nov 2025 02:05:09 PM\r\n"
            "Subject: The subject\r\n"
            "X-Mailer: Tandemize Backup - " +
                TitoloApplicazione +
                "\r\n"
                "\r\n"
                "one\ntwo\n\r\n");
}

TEST_F(ComposizioneMessaggio, A_message_in_parts_has_its_fixed_headers_and_boundary) {
  EXPECT_EQ(TestoMessaggio("a@b.c", "d@e.f", "s", "body", AMoment, true),
            "From: a@b.c\r\n"
            "To: d@e.f\r\n"
            "Date: Friday , 21 Nov 2025 02:05:09 PM\r\n"
            "Subject: s\r\n"
            "X-Mailer: Tandemize Backup - " +
                TitoloApplicazione +
                "\r\n"
                "Mime-Version: 1.0\r\n"
                "Content-Type: multipart/mixed; boundary=NextMimePart\r\n"
                "Content-Transfer-Encoding: 7bit\r\n"
                "This is a multi-part message in MIME format.\r\n"
                "\r\n"
                "--NextMimePart\r\n"
                "\r\n"
                "body\r\n");
}

TEST_F(ComposizioneMessaggio, An_attachment_s_header_has_the_fixed_word_and_the_file_s_name) {
  EXPECT_EQ(TestataAllegato("log file.txt"),
            "\r\n--NextMimePart\r\n"
            "Content-Type: application/octet-stream; name=Mimefilename\r\n"
            "Content-Transfer-Encoding: base64\r\n"
            "Content-Disposition: attachment; filename=\"log file.txt\"\r\n"
            "\r\n");
}

TEST_F(ComposizioneMessaggio, Values_with_line_ends_cannot_make_headers_of_their_own) {
  const std::string bad = "x\r\nBcc: evil@e.f\r\n\r\nbody\n" + Nul;
  for (const bool parts : {false, true}) {
    const std::string text = TestoMessaggio(bad, bad, bad, "b", AMoment, parts);
    EXPECT_EQ(text.find("\nBcc:"), std::string::npos);
    EXPECT_EQ(text.substr(0, text.find("\r\nDate: ")).find("\r\n\r\n"), std::string::npos);
    EXPECT_NE(text.find("From: x  Bcc: evil@e.f    body  \r\nTo: "), std::string::npos);
  }
  EXPECT_EQ(TestataAllegato("a\r\nX: y"), TestataAllegato("a  X: y"));
}

TEST(ProteggiPunti, A_full_stop_alone_on_its_line_gets_a_NUL_in_front) {
  const struct {
    std::string text, guarded;
  } rows[] = {{"a\r\n.\r\nb", "a\r\n" + Nul + ".\r\nb"},
              {"a\n.\nb", "a\n" + Nul + ".\nb"},
              {"a\n.\r\n", "a\n" + Nul + ".\r\n"},
              {"a\r\n.\r\n.\r\n.\r\nb", "a\r\n" + Nul + ".\r\n" + Nul + ".\r\n" + Nul + ".\r\nb"},
              {"\r\n..\r\n", "\r\n..\r\n"},
              {"\r\n. \r\n", "\r\n. \r\n"},
              {"\r\n .\r\n", "\r\n .\r\n"},
              {"\r\n.hidden\r\n", "\r\n.hidden\r\n"},
              {"end.\r\n", "end.\r\n"},
              {".", "."},
              {"\n.", "\n."},
              {"", ""}};
  for (const auto& row : rows) EXPECT_EQ(ProteggiPunti(row.text), row.guarded) << row.text;
}

TEST(PezziDelMessaggio, Are_of_8192_characters_each_trimmed_of_blanks_at_both_ends) {
  const std::string text = std::string(8190, 'a') + "  " + "   b" + std::string(8188, 'c') + "d  ";
  const std::vector<PezzoMessaggio> pieces = PezziDelMessaggio(text);
  ASSERT_EQ(pieces.size(), 3U);
  EXPECT_EQ(pieces[0].testo, std::string(8190, 'a'));
  EXPECT_EQ(pieces[1].testo, "b" + std::string(8188, 'c'));
  EXPECT_EQ(pieces[2].testo, "d");
  EXPECT_EQ(pieces[0].posizione, 1U);
  EXPECT_EQ(pieces[1].posizione, 8193U);
  EXPECT_EQ(pieces[2].posizione, 16385U);
}

TEST(PezziDelMessaggio, Keep_line_ends_and_other_white_space_at_their_ends) {
  const std::vector<PezzoMessaggio> pieces = PezziDelMessaggio(" \r\n\ta\n\r\n ");
  ASSERT_EQ(pieces.size(), 1U);
  EXPECT_EQ(pieces[0].testo, "\r\n\ta\n\r\n");
}

TEST(PezziDelMessaggio, Count_characters_and_not_bytes) {
  std::string text;
  for (int i = 0; i < 8192; ++i) text += "à";
  EXPECT_EQ(PezziDelMessaggio(text).size(), 1U);
  ASSERT_EQ(PezziDelMessaggio(text + "è").size(), 2U);
  EXPECT_EQ(PezziDelMessaggio(text + "è")[1].testo, "è");
  // A byte that is not UTF-8 counts as a character, so that no piece outgrows its size.
  EXPECT_EQ(PezziDelMessaggio(std::string(8193, '\x80')).size(), 2U);
  EXPECT_EQ(PezziDelMessaggio(std::string(8193, '\xC3')).size(), 2U);
}

TEST(PezziDelMessaggio, Exactly_8192_characters_are_one_piece_and_no_text_is_none) {
  EXPECT_EQ(PezziDelMessaggio(std::string(8192, 'a')).size(), 1U);
  EXPECT_TRUE(PezziDelMessaggio("").empty());
}

TEST(PezziDelMessaggio, A_full_stop_that_only_the_trimming_leaves_alone_is_guarded) {
  const std::string first = std::string(8190, 'a') + "\r\n";
  std::vector<PezzoMessaggio> pieces = PezziDelMessaggio(first + "  .\r\nMAIL FROM: <x>\r\n");
  ASSERT_EQ(pieces.size(), 2U);
  EXPECT_EQ(pieces[1].testo, Nul + ".\r\nMAIL FROM: <x>\r\n");

  pieces = PezziDelMessaggio(std::string(8188, 'a') + "\r\n. " + " \r\nb");
  ASSERT_EQ(pieces.size(), 2U);
  EXPECT_EQ(pieces[0].testo, std::string(8188, 'a') + "\r\n" + Nul + ".");
  EXPECT_EQ(pieces[1].testo, "\r\nb");
}

}  // namespace
}  // namespace tandemize
