#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/ftp/replies.h"

namespace tandemize::platform::ftp {
namespace {

// All whole replies of some bytes, as "code text".
std::vector<std::string> repliesOf(const std::string& bytes, std::size_t piece, TakenReply& last) {
  ReplyReader reader;
  std::vector<std::string> all;
  last = TakenReply::Incomplete;
  for (std::size_t at = 0; at < bytes.size() && last != TakenReply::Garbage; at += piece) {
    reader.add(std::string_view(bytes).substr(at, piece));
    Reply reply;
    while ((last = reader.take(reply)) == TakenReply::Whole)
      all.push_back(std::to_string(reply.code) + " " + reply.text);
  }
  return all;
}

TEST(ReplyReader, Takes_replies_of_one_line_and_of_several) {
  const std::string bytes =
      "220 ready\r\n"
      "211-Features:\r\n MDTM\r\n 211 is no end here\r\n211-nor this\r\n200 nor that\r\n211 End\r\n"
      "331\n226 \n";
  const std::vector<std::string> expected = {
      "220 ready", "211 Features:\n MDTM\n 211 is no end here\nnor this\n200 nor that\nEnd", "331 ", "226 "};
  for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, bytes.size()}) {
    TakenReply last = TakenReply::Whole;
    EXPECT_EQ(repliesOf(bytes, piece, last), expected) << piece;
    EXPECT_EQ(last, TakenReply::Incomplete);
  }
}

TEST(ReplyReader, Knows_garbage) {
  for (const std::string bytes : {"hello\r\n", "\r\n", "99 low\r\n", "999 high\r\n", "000 none\r\n",
                                  "2200 long\r\n", "HTTP/1.1 200 OK\r\n"}) {
    TakenReply last = TakenReply::Whole;
    EXPECT_TRUE(repliesOf(bytes, bytes.size(), last).empty()) << bytes;
    EXPECT_EQ(last, TakenReply::Garbage) << bytes;
  }
}

TEST(ReplyReader, Gives_up_a_reply_without_end) {
  for (const std::string& line : {std::string(1000, 'x'), std::string("211-line\r\n")}) {
    ReplyReader reader;
    reader.add("211-");
    Reply reply;
    TakenReply taken = TakenReply::Incomplete;
    for (int i = 0; i < 1'000'000 && taken == TakenReply::Incomplete; ++i) {
      reader.add(line);
      taken = reader.take(reply);
    }
    EXPECT_EQ(taken, TakenReply::Garbage);
  }
}

TEST(PortOfExtendedPassive, Reads_the_port_between_any_bars) {
  EXPECT_EQ(portOfExtendedPassive("Entering (|||6446|)"), 6446);
  EXPECT_EQ(portOfExtendedPassive("(!!!65535!)"), 65535);
  for (const std::string text : {"", "|||6446|", "(|||6446)", "(|||0|)", "(|||65536|)", "(||6446|)",
                                 "(|||x|)", "(|1|10.0.0.1|6446|)", "(|||"})
    EXPECT_FALSE(portOfExtendedPassive(text)) << text;
}

TEST(PortOfPassive, Reads_the_last_two_of_six_numbers) {
  EXPECT_EQ(portOfPassive("Entering Passive Mode (10,0,0,1,25,46)."), 25 * 256 + 46);
  EXPECT_EQ(portOfPassive("Entering Passive Mode 10,0,0,1,0,21"), 21);
  EXPECT_EQ(portOfPassive("227 Ok =10,0,0,1,255,255"), 65535);
  for (const std::string text :
       {"", "(10,0,0,1,25)", "(10,0,0,1,0,0)", "(10,0,0,1,256,1)", "(10.0.0.1.25.46)"})
    EXPECT_FALSE(portOfPassive(text)) << text;
}

TEST(QuotedPath, Takes_doubled_quotes_for_one) {
  EXPECT_EQ(quotedPath("\"/a b/\" is current"), "/a b/");
  EXPECT_EQ(quotedPath("\"/say \"\"hello\"\"\" created"), "/say \"hello\"");
  EXPECT_EQ(quotedPath("\"\"\"\""), "\"");
  EXPECT_FALSE(quotedPath("/a"));
  EXPECT_FALSE(quotedPath("\"/a"));
}

TEST(SizeInReply, Is_found_in_the_brackets) {
  EXPECT_EQ(sizeInReply("Opening BINARY mode data connection for (5) x (1234 bytes)."), 1234U);
  EXPECT_EQ(sizeInReply("Opening x (0 bytes)"), 0U);
  for (const std::string text : {"", "Opening x", "(12 34 bytes)", "(x bytes)", "( bytes)", "12 bytes)"})
    EXPECT_FALSE(sizeInReply(text)) << text;
}

TEST(WordsOf, Are_one_clean_line_without_the_password) {
  EXPECT_EQ(wordsOf({550, "No\nsuch\tfile\x1b[31m"}, ""), "550 No such file [31m");
  EXPECT_EQ(wordsOf({530, "Not sesam-7, anna:sesam-7"}, "sesam-7"), "530 Not ***, anna:***");
  EXPECT_LE(wordsOf({550, std::string(100'000, 'x')}, "").size(), 1000U);
}

}  // namespace
}  // namespace tandemize::platform::ftp
