// The operations on paths of a server.
#include <gtest/gtest.h>

#include <set>

#include "fixtures/PlainFtpServer.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "storage/File_System.h"
#include "storage/FtpProgram.h"
#include "storage/OperazioniFtp.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::countRecoveryNotices;
using test::PlainFtpServer;
using test::retryLine;
using test::retryWithoutPause;
using Names = std::multiset<std::string>;

class FtpTest : public testing::Test {
 protected:
  FtpTest() { program.define({"Home", server.name(), "anna", "secret", 1}); }
  void SetUp() override { ASSERT_EQ(program.connect(0), 0); }

  // Every line that begins with `word` gets `reply`, `times` of them.
  void answer(const std::string& word, const std::string& reply, int times = 1000) {
    server.answer([word, reply, times](const std::string& line) mutable {
      return line.starts_with(word) && times-- > 0 ? std::optional(reply) : std::nullopt;
    });
  }
  Names list(const std::string& path, bool quiet = false) {
    Names names;
    HandleRicerca handle = 0;
    RispostaDir found = DirFile(handle, record, path, quiet);
    for (; !found.fallita() && !found.fine(); found = DirFile(handle, record, "", quiet))
      names.insert(found.nome());
    if (found.fallita()) names.insert("<failed>");
    EXPECT_EQ(handle, 0);
    return names;
  }

  PlainFtpServer server;
  test::FtpProgram program;
  test::ScriptedScreen& screen = program.screen;
  RecordRicerca record;
};
using DirFileFtp = FtpTest;
using EsistenzaFtp = FtpTest;
using ConteggioFtp = FtpTest;
using OperazioniFtp = FtpTest;
using CalcolaCRCFtp = FtpTest;
using DataFtp = FtpTest;

// --- DirFile

TEST_F(DirFileFtp, Lists_a_folder_in_either_form_of_listing) {
  server.root().write("a/one.txt", "1");
  server.root().write("a/ two è'\".txt", "12");
  server.root().makeFolder("a/sub");
  EXPECT_EQ(list("/a/*.*"), (Names{"one.txt", " two è'\".txt", "sub"}));
  server.machineListing = false;
  DisconnettiServer("");
  ASSERT_EQ(program.connect(0), 0);
  EXPECT_EQ(list("/a/*.*"), (Names{"one.txt", " two è'\".txt", "sub"}));
}

TEST_F(DirFileFtp, The_record_remembers_the_kind_and_tells_size_and_attributes) {
  server.root().write("a/one.txt", "12345");
  HandleRicerca handle = 0;
  EXPECT_EQ(DirFile(handle, record, "/a/*.*", false).nome(), "one.txt");
  EXPECT_EQ(record.cAlternate, "2");
  EXPECT_EQ(DimensioneFile(record), 5);
  EXPECT_EQ(record.dwFileAttributes & platform::kDirectory, 0U);
  EXPECT_GT(handle, 0);
  EXPECT_TRUE(DirFile(handle, record, "", false).fine());
  EXPECT_EQ(handle, 0);
}

TEST_F(DirFileFtp, An_empty_folder_gives_the_empty_string) {
  server.root().makeFolder("a");
  EXPECT_EQ(list("/a/*.*"), Names{});
  EXPECT_EQ(list("/a/*.*", true), Names{});
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST_F(DirFileFtp, A_mask_of_its_own_lists_the_folder_that_was_current) {
  server.root().write("here/one.txt", "1");
  server.root().write("there/two.dat", "2");
  EXPECT_EQ(list("/here/*.*"), Names{"one.txt"});
  EXPECT_EQ(list("/there/*.txt"), Names{"one.txt"});
}

TEST_F(DirFileFtp, A_folder_that_is_missing_goes_unnoticed) {
  server.root().write("here/one.txt", "1");
  EXPECT_EQ(list("/here/*.*"), Names{"one.txt"});
  EXPECT_EQ(list("/missing/*.*"), Names{"one.txt"});
}

TEST_F(DirFileFtp, Who_walks_a_tree_can_tell_that_another_folder_was_listed) {
  server.root().write("here/one.txt", "1");
  const std::size_t before = server.commands("PWD").size();
  static_cast<void>(list("/here/*.*"));
  EXPECT_TRUE(CartellaFtpCorrente("/here"));
  EXPECT_TRUE(CartellaFtpCorrente("//here//"));
  static_cast<void>(list("/here/missing/*.*"));
  EXPECT_FALSE(CartellaFtpCorrente("/here/missing/"));
  EXPECT_EQ(server.commands("PWD").size(), before);
  static_cast<void>(list("/*.*"));
  EXPECT_TRUE(CartellaFtpCorrente("/"));
  DisconnettiServer("");
  EXPECT_FALSE(CartellaFtpCorrente("/"));
}

TEST_F(DirFileFtp, Only_one_search_can_be_open) {
  server.root().write("a/one.txt", "1");
  HandleRicerca first = 0, second = 0;
  RecordRicerca other;
  EXPECT_EQ(DirFile(first, record, "/a/*.*", false).nome(), "one.txt");
  EXPECT_TRUE(DirFile(second, other, "/a/*.*", true).fallita());
  EXPECT_EQ(UltimoErroreFtp().Numero, 12110);
  ChiudiRicerca(second);
  ChiudiRicerca(first);
  EXPECT_EQ(DirFile(second, other, "/a/*.*", true).nome(), "one.txt");
  ChiudiRicerca(second);
}

TEST_F(DirFileFtp, A_session_that_is_closed_half_way_hides_no_entry) {
  for (const char* name : {"a/one", "a/two", "a/three"}) server.root().write(name, "1");
  Names names;
  HandleRicerca handle = 0;
  RispostaDir found = DirFile(handle, record, "/a/*.*", false);
  DisconnettiServer("");
  for (; !found.fallita() && !found.fine(); found = DirFile(handle, record, "", false))
    names.insert(found.nome());
  EXPECT_TRUE(found.fallita() || names == (Names{"one", "two", "three"}));
  EXPECT_EQ(handle, 0);
}

TEST_F(DirFileFtp, A_search_that_another_session_has_replaced_fails_and_then_ends) {
  server.root().write("a/one", "1");
  server.root().write("a/two", "1");
  HandleRicerca old = 0, other = 0;
  RecordRicerca otherRecord;
  EXPECT_FALSE(DirFile(old, record, "/a/*.*", false).fallita());
  DisconnettiServer("");
  ASSERT_EQ(program.connect(0), 0);
  EXPECT_FALSE(DirFile(other, otherRecord, "/a/*.*", false).fallita());
  EXPECT_TRUE(DirFile(old, record, "", false).fallita());
  EXPECT_EQ(countInLog(retryLine(0, "DirFile", 12030)), 1);
  EXPECT_EQ(old, 0);
  EXPECT_TRUE(DirFile(old, record, "", false).fine());
  EXPECT_FALSE(DirFile(other, otherRecord, "", false).fine());
  ChiudiRicerca(other);
}

TEST_F(DirFileFtp, A_refused_listing_carries_the_servers_own_words) {
  server.root().write("a/one.txt", "1");
  server.answer([](const std::string& line) {
    return line.starts_with("MLSD") || line.starts_with("LIST") ? std::optional<std::string>("550 Not you.")
                                                                : std::nullopt;
  });
  EXPECT_EQ(list("/a/*.*"), Names{"<failed>"});
  EXPECT_EQ(countInLog(retryLine(0, "DirFile", 12003)), 1);
  EXPECT_EQ(countInLog("File/Folder Name: < /a/*.* >"), 1);
  EXPECT_EQ(countInLog("Server Reply: < 550 Not you. >"), 1);
}

TEST_F(DirFileFtp, A_quiet_search_gives_its_failure_without_a_report) {
  server.answer([](const std::string& line) {
    return line.starts_with("MLSD") || line.starts_with("LIST") ? std::optional<std::string>("550 Not you.")
                                                                : std::nullopt;
  });
  EXPECT_EQ(list("/*.*", true), Names{"<failed>"});
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST_F(DirFileFtp, A_server_that_stalls_is_asked_again_as_the_settings_say) {
  server.root().write("a/one.txt", "1");
  SessioneFtp().setLimits({.silence = 50});
  DisconnettiServer("");
  ASSERT_EQ(program.connect(0), 0);
  retryWithoutPause(3);
  // The first answer is a stall, which the server ends by going away: every further attempt fails too.
  answer("MLSD", PlainFtpServer::Stall);
  EXPECT_EQ(list("/a/*.*"), Names{"<failed>"});
  EXPECT_EQ(countInLog("relativo alla routine 'DirFile'"), 3);
  EXPECT_EQ(countInLog("Fatal Error"), 1);
}

TEST_F(DirFileFtp, A_failure_that_passes_raises_the_recovery_notice) {
  server.root().write("a/one.txt", "1");
  retryWithoutPause(3);
  answer("MLSD", "450 Busy.", 1);
  EXPECT_EQ(list("/a/*.*"), Names{"one.txt"});
  EXPECT_EQ(countInLog(retryLine(0, "DirFile", 12003)), 1);
  EXPECT_EQ(countRecoveryNotices(screen), 1);
}

TEST_F(DirFileFtp, Without_a_session_nothing_is_found) {
  DisconnettiServer("");
  EXPECT_EQ(list("/a/*.*"), Names{"<failed>"});
  EXPECT_EQ(countInLog(retryLine(0, "DirFile", 12018)), 1);
}

// --- existence and count

TEST_F(EsistenzaFtp, A_file_exists_when_the_current_folder_lists_anything) {
  server.root().makeFolder("empty");
  server.root().write("full/one", "1");
  static_cast<void>(list("/full/*.*"));
  EXPECT_TRUE(EsisteFile("/full/one"));
  EXPECT_TRUE(EsisteFile("/full/none"));
  static_cast<void>(list("/empty/*.*"));
  EXPECT_FALSE(EsisteFile("/full/one"));
  EXPECT_FALSE(EsisteFile(""));
}

TEST_F(EsistenzaFtp, A_folder_is_looked_for_and_the_current_one_stays) {
  server.root().write("full/one", "1");
  server.root().makeFolder("other");
  static_cast<void>(list("/full/*.*"));
  EXPECT_TRUE(EsisteCartella("/other"));
  EXPECT_TRUE(EsisteCartella("/other/"));
  EXPECT_FALSE(EsisteCartella("/none"));
  EXPECT_FALSE(EsisteCartella(""));
  std::string current;
  ASSERT_EQ(SessioneFtp().currentFolder(current), 0);
  EXPECT_EQ(current, "/full");
}

TEST_F(EsistenzaFtp, Without_a_session_only_a_quiet_question_is_answered_yes) {
  DisconnettiServer("");
  EXPECT_TRUE(EsisteCartella("/any", true));
  EXPECT_FALSE(EsisteCartella("/any", false));
}

TEST_F(EsistenzaFtp, A_lost_connection_is_a_no) {
  server.root().makeFolder("full");
  answer("CWD", PlainFtpServer::Drop);
  EXPECT_FALSE(EsisteCartella("/full"));
}

TEST_F(EsistenzaFtp, A_path_on_ftp_is_never_a_file_of_this_machine) {
  const std::string host = program.work().host("local");
  program.work().write("local", "1");
  std::int32_t error = 0;
  EXPECT_NE(ProvaAperturaFile(host, false, error), "");
  EXPECT_NE(error, 0);
  EXPECT_FALSE(EliminaFile(host));
  EXPECT_FALSE(EliminaFile("ftp:" + host));
  ImpostaDataFile(host, "01/01/2001 00.00.00");
  EXPECT_TRUE(program.work().exists("local"));
}

TEST_F(ConteggioFtp, Counts_the_lines_of_the_folder_that_was_current_and_leaves_the_one_named) {
  server.root().write("a/1", "");
  server.root().write("a/2", "");
  server.root().write("b/3", "");
  static_cast<void>(list("/a/*.*"));
  EXPECT_EQ(Restituisci_NumeroFile_Cartella("/b"), 2);
  EXPECT_EQ(Restituisci_NumeroFile_Cartella("/a"), 1);
  EXPECT_EQ(server.commands("LIST"), (std::vector<std::string>{"LIST", "LIST"}));
}

TEST_F(ConteggioFtp, Of_a_listing_over_1_MiB_only_the_first_part_counts) {
  constexpr int lineLength = 32, fits = 1'048'576 / lineLength;
  std::string text;
  for (int i = 0; i < fits + 1000; ++i) text += std::string(lineLength - 2, 'x') + "\r\n";
  server.listAlways(text);
  EXPECT_EQ(Restituisci_NumeroFile_Cartella("/"), fits);
  EXPECT_TRUE(EsisteCartella("/"));
}

TEST_F(ConteggioFtp, Line_feeds_alone_count_nothing) {
  server.listAlways("one\ntwo\n");
  EXPECT_EQ(Restituisci_NumeroFile_Cartella("/"), 0);
}

TEST_F(ConteggioFtp, A_step_that_fails_is_tried_again_on_its_own) {
  server.root().write("1", "");
  retryWithoutPause(3);
  answer("LIST", "450 Busy.", 2);
  EXPECT_EQ(Restituisci_NumeroFile_Cartella("/"), 1);
  EXPECT_EQ(server.commands("LIST").size(), 3U);
  EXPECT_EQ(countInLog("relativo alla routine 'Restituisci_NumeroFile_Cartella' errore numero 12003"), 2);
  EXPECT_EQ(countRecoveryNotices(screen), 1);
}

TEST_F(ConteggioFtp, A_step_that_is_given_up_gives_minus_253) {
  EXPECT_EQ(Restituisci_NumeroFile_Cartella("/none"), RisultatoFallito);
  EXPECT_EQ(countInLog("Cartella: < /none >"), 1);
  EXPECT_EQ(countInLog("Server Reply: < 550 No such folder. >"), 1);
}

// --- changes

TEST_F(OperazioniFtp, A_file_is_deleted_with_its_line_in_the_log) {
  server.root().write("one", "1");
  EXPECT_TRUE(EliminaFile("/one"));
  EXPECT_FALSE(server.root().exists("one"));
  EXPECT_EQ(countInLog("Deleting File '/one'"), 1);
}

TEST_F(OperazioniFtp, In_an_empty_current_folder_a_file_is_not_found) {
  server.root().makeFolder("empty");
  server.root().write("full/one", "1");
  static_cast<void>(list("/empty/*.*"));
  EXPECT_FALSE(EliminaFile("/full/one"));
  EXPECT_EQ(countInLog("Error: File Not Found"), 1);
  EXPECT_TRUE(server.root().exists("full/one"));
}

TEST_F(OperazioniFtp, A_deletion_that_is_refused_carries_the_servers_words) {
  server.root().write("one", "1");
  answer("DELE", "553 Keep it.");
  EXPECT_FALSE(EliminaFile("/one"));
  EXPECT_EQ(countInLog(retryLine(0, "EliminaFile", 12003)), 1);
  EXPECT_EQ(countInLog("Server Reply: < 553 Keep it. >"), 1);
}

TEST_F(OperazioniFtp, A_repeated_deletion_that_goes_through_raises_the_recovery_notice) {
  server.root().write("one", "1");
  retryWithoutPause(3);
  answer("DELE", "450 Busy.", 1);
  EXPECT_TRUE(EliminaFile("/one"));
  EXPECT_EQ(countRecoveryNotices(screen), 1);
}

TEST_F(OperazioniFtp, A_folder_that_is_really_removed_counts_as_failed) {
  server.root().makeFolder("a");
  EXPECT_FALSE(EliminaCartella("/a"));
  EXPECT_FALSE(server.root().exists("a"));
  EXPECT_EQ(countInLog("Deleting Folder '/a'"), 1);
  EXPECT_EQ(countInLog(retryLine(0, "EliminaCartella", 0)), 1);
  EXPECT_EQ(countInLog("Fatal Error"), 1);
}

TEST_F(OperazioniFtp, A_server_that_always_removes_is_not_asked_for_ever) {
  server.root().makeFolder("a");
  retryWithoutPause(4);
  answer("RMD", "250 Removed.");
  EXPECT_FALSE(EliminaCartella("/a"));
  EXPECT_EQ(server.commands("RMD").size(), 4U);
  EXPECT_EQ(countRecoveryNotices(screen), 3);
}

TEST_F(OperazioniFtp, A_folder_with_content_stays) {
  server.root().write("a/one", "1");
  EXPECT_FALSE(EliminaCartella("/a"));
  EXPECT_TRUE(server.root().exists("a/one"));
  EXPECT_EQ(countInLog(retryLine(0, "EliminaCartella", 12003)), 1);
}

TEST_F(OperazioniFtp, A_missing_folder_is_not_found) {
  EXPECT_FALSE(EliminaCartella("/a"));
  EXPECT_EQ(countInLog("Error: Folder Not Found"), 1);
}

TEST_F(OperazioniFtp, Missing_levels_are_made_top_down) {
  server.root().makeFolder("abc");
  EXPECT_TRUE(CreaSottoCartelle("/abc/d/e f"));
  EXPECT_TRUE(server.root().exists("abc/d/e f"));
  EXPECT_EQ(server.commands("MKD").size(), 2U);
  EXPECT_FALSE(CreaSottoCartelle("/abc/d/e f"));
}

TEST_F(OperazioniFtp, A_folder_that_cannot_be_made_is_reported) {
  EXPECT_FALSE(CreaDirectory("/none/a"));
  EXPECT_EQ(countInLog(retryLine(0, "CreaDirectory", 12003)), 1);
  EXPECT_EQ(countInLog("Server Reply: < 550 Not made. >"), 1);
}

TEST_F(OperazioniFtp, A_line_end_in_a_name_never_reaches_the_server) {
  const std::size_t before = server.commands().size();
  EXPECT_FALSE(CreaDirectory("/a\r\nDELE b"));
  EXPECT_EQ(server.commands().size(), before);
}

TEST_F(OperazioniFtp, A_dropped_connection_fails_every_attempt) {
  retryWithoutPause(3);
  answer("MKD", PlainFtpServer::Drop);
  EXPECT_FALSE(CreaDirectory("/a"));
  EXPECT_EQ(countInLog("relativo alla routine 'CreaDirectory' errore numero 12030"), 3);
  EXPECT_TRUE(ServerConnesso("Home"));
}

// --- checksum

std::string counted(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 + i / 256);
  return bytes;
}

TEST_F(CalcolaCRCFtp, Agrees_with_the_local_files_whatever_the_size) {
  for (const std::size_t size : {1UL, 1023UL, 1024UL, 1025UL, 4096UL, 262144UL, 262145UL, 700000UL}) {
    server.root().write("file", counted(size));
    program.work().write("file", counted(size));
    const RisultatoCRC remote = CalcolaCRC("/file", true);
    EXPECT_FALSE(remote.fallito);
    EXPECT_EQ(remote.valore, CalcolaCRC(program.program("file"), false).valore) << size;
  }
}

TEST_F(CalcolaCRCFtp, An_empty_file_has_the_checksum_of_one_zero_byte) {
  server.root().write("file", "");
  EXPECT_EQ(CalcolaCRC("/file", true).valore, -771559539);
  EXPECT_EQ(CalcolaCRC("/none", true).valore, -771559539);
}

TEST_F(CalcolaCRCFtp, A_short_read_ends_the_checksum) {
  server.root().write("file", counted(5000));
  program.work().write("part", counted(1500));
  server.cutAfter = 1500;
  const RisultatoCRC remote = CalcolaCRC("/file", true);
  EXPECT_FALSE(remote.fallito);
  EXPECT_EQ(remote.valore, CalcolaCRC(program.program("part"), false).valore);
}

TEST_F(CalcolaCRCFtp, Without_a_session_it_fails) {
  DisconnettiServer("");
  EXPECT_TRUE(CalcolaCRC("/file", true).fallito);
}

// --- dates

TEST_F(DataFtp, The_date_of_a_file_is_its_own_in_local_time) {
  server.root().write("a/first", "1");
  server.root().write("a/second", "2");
  program.work().write("same", "");
  ASSERT_EQ(platform::setFileTime(platform::toProgram(server.root().host("a/second")), {1700000000, 0}), 0);
  EXPECT_EQ(DataFileDaRicerca("/a/second"), TestoDataFile(1700000000));
  EXPECT_EQ(DataFileDaRicerca("/a/none"), "");
}

TEST_F(DataFtp, A_server_that_tells_no_file_its_date_is_asked_for_the_folder) {
  server.root().write("a/second", "2");
  server.root().makeFolder("b");
  static_cast<void>(list("/b/*.*"));
  server.answer([](const std::string& line) {
    return line.starts_with("MLST") || line.starts_with("MDTM") ? std::optional<std::string>("502 No.")
                                                                : std::nullopt;
  });
  EXPECT_EQ(DataFileDaRicerca("/a/second"), "02/01/2020 00.00.00");
  std::string current;
  ASSERT_EQ(SessioneFtp().currentFolder(current), 0);
  EXPECT_EQ(current, "/b");
}

TEST_F(DataFtp, A_found_file_shows_its_date_in_local_time) {
  server.root().write("a/second", "2");
  ASSERT_EQ(platform::setFileTime(platform::toProgram(server.root().host("a/second")), {1700000000, 0}), 0);
  HandleRicerca handle = 0;
  EXPECT_EQ(DirFile(handle, record, "/a/*.*", false).nome(), "second");
  std::int64_t creation = 0, lastAccess = 0;
  EXPECT_EQ(DateFile(record, creation, lastAccess, "/a/second"), TestoDataFile(1700000000));
  ChiudiRicerca(handle);
}

}  // namespace
}  // namespace tandemize
