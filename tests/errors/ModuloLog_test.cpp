#include "errors/ModuloLog.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "fixtures/ProgramFolder.h"
#include "platform/machine.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "storage/Percorsi.h"

namespace tandemize {
namespace {

using test::ProgramFolder;

// Runs `write` within one second of the clock, and gives the prefix of that second. The log is emptied before
// each try.
template <typename Write>
std::string prefixOf(ProgramFolder& program, Write write) {
  for (;;) {
    CreaListaLog();
    std::filesystem::remove(program.host("LogFile1.txt"));
    const std::int64_t before = platform::now();
    write();
    if (platform::now() == before) return "(" + DataOraGenerale(before) + ") ";
  }
}

using Lines = std::vector<std::string>;

struct LogWithRoom : testing::Test {
  LogWithRoom() { Log_Max_File_Size = 100; }
  ProgramFolder program{false};
};
using ScriviLogTest = LogWithRoom;

TEST_F(ScriviLogTest, An_ordinary_line_carries_the_date) {
  const std::string p = prefixOf(program, [] { ScriviLog("Deleting Folder 'C:\\dati'", RigaNormale); });
  EXPECT_EQ(ListaLog, (Lines{p + "Deleting Folder 'C:\\dati'", ""}));
  EXPECT_EQ(program.log(), p + "Deleting Folder 'C:\\dati'\r\n");
}

TEST_F(ScriviLogTest, The_date_follows_the_user_s_formats_at_once) {
  FormatoData = "yyyy-mm-dd";
  FormatoOra = "H";
  const std::string p = prefixOf(program, [] { ScriviLog("a", RigaNormale); });
  EXPECT_EQ(program.log(), p + "a\r\n");
  EXPECT_LE(p.size(), std::string("(2005-03-12 14) ").size());
  FormatoData = "yy";
  const std::string q = prefixOf(program, [] { ScriviLog("a", RigaNormale); });
  EXPECT_EQ(program.log(), q + "a\r\n");
  EXPECT_LT(q.size(), p.size());
}

TEST_F(ScriviLogTest, A_banner_is_three_dated_lines_and_an_empty_one) {
  const std::string p = prefixOf(program, [] { ScriviLog("Perché", Intestazione); });
  EXPECT_EQ(ListaLog, (Lines{p + "<==========>", p + "      Perché", p + "<==========>", "", ""}));
  EXPECT_EQ(program.log(), p + "<==========>\r\n" + p + "      Perché\r\n" + p + "<==========>\r\n\r\n");
}

TEST_F(ScriviLogTest, A_banner_without_a_text_has_two_closed_lines_around_six_blanks) {
  const std::string p = prefixOf(program, [] { ScriviLog("", Intestazione); });
  EXPECT_EQ(program.log(), p + "<====>\r\n" + p + "      \r\n" + p + "<====>\r\n\r\n");
}

TEST_F(ScriviLogTest, A_record_of_kind_2_ignores_its_text) {
  const std::string p = prefixOf(program, [] { ScriviLog("ignored", RigaOk); });
  EXPECT_EQ(ListaLog, (Lines{p + "- OK -", "", ""}));
  EXPECT_EQ(program.log(), p + "- OK -\r\n\r\n");
}

TEST_F(ScriviLogTest, A_record_of_kind_3_ignores_its_text) {
  Messaggi[329] = "Stopped";
  const std::string p = prefixOf(program, [] { ScriviLog("ignored", RigaArresto); });
  EXPECT_EQ(ListaLog, (Lines{p + "- Stopped -", "", ""}));
  EXPECT_EQ(program.log(), p + "- Stopped -\r\n\r\n");
}

TEST_F(ScriviLogTest, An_error_block_carries_no_date) {
  ScriviLog("one\rtwo", BloccoErrore);
  EXPECT_EQ(ListaLog, (Lines{"", "one", "two", "", ""}));
  EXPECT_EQ(program.log(), "\r\none\r\ntwo\r\n\r\n");
}

TEST_F(ScriviLogTest, An_empty_error_block_is_three_empty_lines) {
  ScriviLog("", BloccoErrore);
  EXPECT_EQ(ListaLog, (Lines{"", "", "", ""}));
  EXPECT_EQ(program.log(), "\r\n\r\n\r\n");
}

TEST_F(ScriviLogTest, An_unknown_kind_is_an_ordinary_line) {
  const std::string p = prefixOf(program, [] { ScriviLog("text", 5), ScriviLog("other", -1); });
  EXPECT_EQ(program.log(), p + "text\r\n" + p + "other\r\n");
}

TEST_F(ScriviLogTest, An_empty_text_is_an_empty_line_without_a_date) {
  ScriviLog("", RigaNormale);
  EXPECT_EQ(ListaLog, (Lines{"", ""}));
  EXPECT_EQ(program.log(), "\r\n");
}

TEST_F(ScriviLogTest, What_stands_behind_the_last_CR_is_kept_in_memory_only) {
  const std::string p = prefixOf(program, [] { ScriviLog("a\rb", RigaNormale); });
  EXPECT_EQ(ListaLog, (Lines{p + "a", p + "b", ""}));
  EXPECT_EQ(program.log(), p + "a\r\n" + p + "\r\n");
}

TEST_F(ScriviLogTest, A_CR_at_the_end_adds_an_empty_line) {
  const std::string p = prefixOf(program, [] { ScriviLog("a\r", RigaNormale); });
  EXPECT_EQ(ListaLog, (Lines{p + "a", "", ""}));
  EXPECT_EQ(program.log(), p + "a\r\n\r\n");
}

TEST_F(ScriviLogTest, An_empty_piece_drops_the_date_for_the_rest_of_its_record_only) {
  const std::string p = prefixOf(program, [] {
    ScriviLog("a\r\rb\rc", RigaNormale);
    ScriviLog("d", RigaNormale);
  });
  EXPECT_EQ(ListaLog, (Lines{p + "a", "", "b", "c", p + "d", ""}));
  EXPECT_EQ(program.log(), p + "a\r\n\r\nb\r\n\r\n" + p + "d\r\n");
}

TEST_F(ScriviLogTest, The_update_mode_keeps_no_kind_from_the_file) {
  for (const int mode : {0, 1, 2}) {
    Log_Update_Mode = static_cast<std::uint8_t>(mode);
    for (const TipoRecord kind : {RigaNormale, Intestazione, RigaOk, RigaArresto, BloccoErrore}) {
      const std::size_t before = program.log().size();
      ScriviLog("text", kind);
      EXPECT_GT(program.log().size(), before) << mode << " " << kind;
    }
  }
}

TEST_F(ScriviLogTest, A_record_in_memory_only_touches_no_file) {
  SoloLogInMemoria(true);
  ScriviLog("preview", RigaNormale);
  EXPECT_FALSE(program.home().exists("LogFile1.txt"));
  EXPECT_NE(ListaLog[0].find("preview"), std::string::npos);
  SoloLogInMemoria(false);
  ScriviLog("run", RigaNormale);
  EXPECT_EQ(program.log().find("preview"), std::string::npos);
  EXPECT_NE(program.log().find("run"), std::string::npos);
}

TEST_F(ScriviLogTest, A_record_that_cannot_be_written_stays_in_memory_and_tells_its_number) {
  std::filesystem::create_directory(program.host("LogFile1.txt"));
  ScriviLog("lost", RigaNormale);
  EXPECT_EQ(ErroreLog(), platform::kAccessDenied);
  EXPECT_NE(ListaLog[0].find("lost"), std::string::npos);
  std::filesystem::remove(program.host("LogFile1.txt"));
  ScriviLog("kept", RigaNormale);
  EXPECT_NE(program.log().find("kept"), std::string::npos);
  EXPECT_EQ(ErroreLog(), platform::kAccessDenied);
  AzzeraErroreLog();
  EXPECT_EQ(ErroreLog(), platform::kNoError);
}

TEST_F(ScriviLogTest, A_full_disc_is_told_and_the_next_record_tries_again) {
  std::filesystem::create_symlink("/dev/full", program.host("LogFile1.txt"));
  ScriviLog("lost", RigaNormale);
  EXPECT_EQ(ErroreLog(), platform::kDiskFull);
  std::filesystem::remove(program.host("LogFile1.txt"));
  AzzeraErroreLog();
  ScriviLog("kept", RigaNormale);
  EXPECT_EQ(ErroreLog(), platform::kNoError);
  EXPECT_NE(program.log().find("kept"), std::string::npos);
}

TEST_F(ScriviLogTest, A_new_list_begins_with_the_spare_element) {
  ScriviLog("text", RigaNormale);
  CreaListaLog();
  EXPECT_EQ(ListaLog, Lines{""});
}

struct LogInMemory : LogWithRoom {
  LogInMemory() { SoloLogInMemoria(true); }
  static void fillTo(std::size_t upperBound) {
    ListaLog.clear();
    for (std::size_t i = 0; i < upperBound; ++i) ListaLog.push_back(std::to_string(i));
    ListaLog.emplace_back();
  }
};
using ListaLogTest = LogInMemory;

TEST_F(ListaLogTest, Keeps_2048_lines_with_the_initial_file_size) {
  fillTo(2047);
  ScriviLog("", RigaNormale);
  ASSERT_EQ(ListaLog.size(), 2049U);
  EXPECT_EQ(ListaLog[0], "0");
}

TEST_F(ListaLogTest, Drops_its_older_half_beyond_the_limit) {
  fillTo(2048);
  const std::string p = prefixOf(program, [] {
    fillTo(2048);
    ScriviLog("last", RigaNormale);
  });
  ASSERT_EQ(ListaLog.size(), 1026U);  // upper bound 2049 / 2 + 1
  EXPECT_EQ(ListaLog[0], "1024");
  EXPECT_EQ(ListaLog[1023], "2047");
  EXPECT_EQ(ListaLog[1024], p + "last");
  EXPECT_EQ(ListaLog[1025], "");
}

TEST_F(ListaLogTest, An_even_upper_bound_leaves_one_element_more_behind_the_spare_one) {
  fillTo(2049);
  ScriviLog("", RigaNormale);
  ASSERT_EQ(ListaLog.size(), 1027U);  // upper bound 2050 / 2 + 1
  EXPECT_EQ(ListaLog[0], "1025");
  EXPECT_EQ(ListaLog[1023], "2048");
  EXPECT_EQ(ListaLog[1024], "");
  EXPECT_EQ(ListaLog[1026], "");
}

TEST_F(ListaLogTest, A_file_size_of_0_halves_it_at_every_record) {
  Log_Max_File_Size = 0;
  std::vector<Lines> seen;
  const std::string p = prefixOf(program, [&seen] {
    seen.clear();
    for (const char* text : {"1", "2", "3", "4"}) {
      ScriviLog(text, RigaNormale);
      seen.push_back(ListaLog);
    }
  });
  EXPECT_EQ(seen, (std::vector<Lines>{
                      {p + "1", ""}, {p + "2", "", ""}, {"", p + "3", ""}, {p + "3", p + "4", ""}}));
}

TEST_F(ListaLogTest, Never_grows_far_beyond_the_limit) {
  Log_Max_File_Size = 1;
  for (int i = 0; i < 10'000; ++i) {
    ScriviLog("text", RigaOk);
    ASSERT_LE(ListaLog.size(), 24U);
    ASSERT_EQ(ListaLog.back(), "");
  }
}

TEST_F(ListaLogTest, A_very_large_file_size_does_not_overflow) {
  Log_Max_File_Size = INT32_MAX;
  fillTo(5000);
  ScriviLog("", RigaNormale);
  EXPECT_EQ(ListaLog.size(), 5002U);
}

}  // namespace
}  // namespace tandemize
