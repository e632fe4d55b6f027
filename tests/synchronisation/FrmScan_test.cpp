#include "synchronisation/FrmScan.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <set>

#include "fixtures/DeepTree.h"
#include "fixtures/LogLines.h"
#include "fixtures/ProgramFolder.h"
#include "platform/paths.h"
#include "presentation/FrmProgressBar.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::DeepTree;
using test::ProgramFolder;

class Scanner : public ProgramFolder {
 public:
  Scanner() {
    Errors_Correction = 0;
    Errors_Try_Next = true;
  }

  void scan(const std::vector<std::string>& paths, std::string_view filter = "", bool backup = true) {
    std::vector<RigaPercorso> rows;
    for (const std::string& path : paths) rows.push_back({path, "0"});
    ArrayScansione.Azzera(paths.size());
    FrmScan window;
    window.Init(rows, owner, backup, backup, false, filter);
    stopped = window.Fermata();
    passedOver = window.Saltati();
  }

  [[nodiscard]] std::vector<std::string> names(std::size_t column = 0) const {
    std::vector<std::string> result;
    for (std::size_t r = 0; r < ArrayScansione.Righe(column); ++r)
      result.push_back(ArrayScansione.Riga(column, r).Nome());
    return result;
  }
  [[nodiscard]] std::set<std::string> nameSet(std::size_t column = 0) const {
    const std::vector<std::string> all = names(column);
    return {all.begin(), all.end()};
  }

  void drives(const std::string& text) {
    home().write("Drives.dat", text);
    platform::setProgramFolder(home().host());
  }

  // What the last window told.
  bool stopped = false;
  std::vector<std::size_t> passedOver;

  FinestraOperazione owner{"Owner"};
};

using Names = std::set<std::string>;

TEST(FrmScan, Every_file_of_the_tree_gets_a_row) {
  Scanner scanner;
  for (const char* file : {"source/a", "source/b/c", "source/b/d/e", "source/f/g"})
    scanner.work().write(file, "x");
  scanner.scan({scanner.program("source")});
  EXPECT_EQ(scanner.nameSet(), (Names{"\\a", "\\b\\c", "\\b\\d\\e", "\\f\\g"}));
  EXPECT_EQ(scanner.names().size(), 4U);
  EXPECT_FALSE(scanner.owner.ErroreInCorso);
}

TEST(FrmScan, The_files_of_a_folder_stand_before_those_of_its_subfolders) {
  Scanner scanner;
  for (const char* file : {"s/a/1", "s/a/b/2", "s/z", "s/m", "s/q/3"}) scanner.work().write(file, "x");
  scanner.scan({scanner.program("s")});
  const std::vector<std::string> names = scanner.names();
  const auto place = [&](const char* name) {
    return std::find(names.begin(), names.end(), name) - names.begin();
  };
  for (const char* own : {"\\z", "\\m"})
    for (const char* below : {"\\a\\1", "\\a\\b\\2", "\\q\\3"})
      EXPECT_LT(place(own), place(below)) << own << below;
  EXPECT_LT(place("\\a\\1"), place("\\a\\b\\2"));
}

TEST(FrmScan, A_path_without_a_separator_at_its_end_gets_one_and_names_begin_with_it) {
  Scanner scanner;
  scanner.work().write("s/a", "x");
  scanner.scan({scanner.program("s")});
  EXPECT_EQ(ArrayScansione.Riga(0, 0).Percorso(), scanner.program("s") + "\\a");
  EXPECT_EQ(ArrayScansione.Riga(0, 0).Nome(), "\\a");
}

TEST(FrmScan, Names_below_a_path_that_ends_in_a_separator_begin_behind_it) {
  Scanner scanner;
  scanner.work().write("s/b/a", "x");
  scanner.scan({scanner.program("s") + "\\"});
  EXPECT_EQ(ArrayScansione.Riga(0, 0).Percorso(), scanner.program("s") + "\\b\\a");
  EXPECT_EQ(ArrayScansione.Riga(0, 0).Nome(), "b\\a");
}

TEST(FrmScan, An_empty_tree_leaves_an_empty_column) {
  Scanner scanner;
  scanner.work().makeFolder("s/empty/folders");
  scanner.scan({scanner.program("s")});
  EXPECT_EQ(ArrayScansione.Righe(0), 0U);
  EXPECT_TRUE(std::as_const(ArrayScansione).Riga(0, 0).Vuoto());
  EXPECT_FALSE(scanner.owner.ErroreInCorso);
}

TEST(FrmScan, A_row_holds_size_date_attributes_and_kind) {
  Scanner scanner;
  scanner.work().write("s/.quiet", "12345");
  fs::permissions(scanner.work().host("s/.quiet"), fs::perms::owner_read);
  struct stat status = {};
  ASSERT_EQ(::stat(scanner.work().host("s/.quiet").c_str(), &status), 0);
  scanner.scan({scanner.program("s")});
  const RecordFile& row = ArrayScansione.Riga(0, 0);
  EXPECT_EQ(row.Dimensione, 5);
  EXPECT_EQ(row.Data, status.st_mtime);
  EXPECT_EQ(row.Attributi, 1 + 2 + 32);
  EXPECT_EQ(row.TipoPercorso, 0);
}

TEST(FrmScan, Each_path_fills_its_own_column) {
  Scanner scanner;
  scanner.work().write("one/a", "x");
  scanner.work().write("two/b", "x");
  scanner.work().write("two/c", "x");
  scanner.scan({scanner.program("one"), scanner.program("two")});
  EXPECT_EQ(scanner.nameSet(0), Names{"\\a"});
  EXPECT_EQ(scanner.nameSet(1), (Names{"\\b", "\\c"}));
}

TEST(FrmScan, The_kind_of_a_path_is_set_also_when_its_column_stays_empty) {
  Scanner scanner;
  scanner.work().makeFolder("share");
  scanner.drives("\\\\nas\\photos = " + scanner.work().host("share") + "\n");
  scanner.scan({"\\\\nas\\photos"});
  EXPECT_EQ(ArrayScansione.Tipo(0), 1);
  EXPECT_FALSE(scanner.owner.ErroreInCorso);
}

TEST(FrmScan, A_share_keeps_its_two_leading_separators) {
  Scanner scanner;
  scanner.work().write("share/a", "x");
  scanner.drives("\\\\nas\\photos = " + scanner.work().host("share") + "\n");
  scanner.scan({"\\\\nas\\photos"});
  EXPECT_EQ(ArrayScansione.Riga(0, 0).Percorso(), "\\\\nas\\photos\\a");
  EXPECT_EQ(ArrayScansione.Riga(0, 0).Nome(), "\\a");
}

TEST(FrmScan, One_path_is_told_without_a_number) {
  Scanner scanner;
  scanner.work().makeFolder("s");
  scanner.scan({scanner.program("s")});
  const std::string line = Messaggio(273) + " '" + scanner.program("s") + "'";
  EXPECT_EQ(scanner.screen.lastScan.titolo, line);
  EXPECT_EQ(test::logLines(scanner.log()), std::vector<std::string>{"| " + line});
}

TEST(FrmScan, Several_paths_are_told_with_their_numbers) {
  Scanner scanner;
  scanner.work().makeFolder("s");
  scanner.work().makeFolder("t");
  scanner.scan({scanner.program("s"), scanner.program("t")});
  EXPECT_EQ(test::logLines(scanner.log()),
            (std::vector<std::string>{"| " + Messaggio(273) + " 1 '" + scanner.program("s") + "'",
                                      "| " + Messaggio(273) + " 2 '" + scanner.program("t") + "'"}));
}

TEST(FrmScan, The_folder_at_hand_is_shown) {
  Scanner scanner;
  scanner.work().write("s/sub/a", "x");
  scanner.scan({scanner.program("s")});
  EXPECT_EQ(scanner.screen.lastScan.cartella, scanner.program("s") + "\\sub");
  EXPECT_FALSE(scanner.screen.lastScan.visibile);
}

TEST(FrmScan, The_file_looked_at_last_is_remembered_for_reports) {
  Scanner scanner;
  scanner.work().write("s/sub/a", "x");
  scanner.scan({scanner.program("s")});
  EXPECT_EQ(UltimoFileScandito, scanner.program("s") + "\\sub\\a");
}

TEST(FrmScan, A_path_that_cannot_be_reached_is_an_error_and_ends_the_walk) {
  Scanner scanner;
  scanner.work().write("t/a", "x");
  scanner.scan({scanner.program("gone"), scanner.program("t")});
  EXPECT_TRUE(scanner.owner.ErroreInCorso);
  EXPECT_FALSE(scanner.owner.ProcessoAnnullato);
  EXPECT_EQ(ArrayScansione.Righe(1), 0U);
}

TEST(FrmScan, An_unreachable_path_is_reported_outside_a_backup_only) {
  Scanner scanner;
  const std::string text = Messaggio(274) + " '" + scanner.program("gone") + "'";
  scanner.scan({scanner.program("gone")}, "", true);
  EXPECT_EQ(test::countLinesWith(test::logLines(scanner.log()), text), 0);
  scanner.scan({scanner.program("gone")}, "", false);
  EXPECT_EQ(test::countLinesWith(test::logLines(scanner.log()), text), 1);
}

// With more than one path at hand the report names the one that failed, not the one that was walked last.
TEST(FrmScan, The_report_names_the_first_path_that_failed) {
  Scanner scanner;
  for (const char* file : {"s/a", "t/b"}) scanner.work().write(file, "x");
  const DeepTree deep(scanner.work().host("s"), std::string(200, 'f'), 30, "deep");
  ASSERT_TRUE(deep.made());
  scanner.scan({scanner.program("s"), scanner.program("t")}, "", false);
  const std::vector<std::string> lines = test::logLines(scanner.log());
  EXPECT_EQ(test::countLinesWith(lines, Messaggio(274) + " '" + scanner.program("s") + "'"), 1);
  EXPECT_EQ(test::countLinesWith(lines, Messaggio(274)), 1);
}

TEST(FrmScan, A_path_that_is_gone_when_its_walk_ends_is_an_error_although_each_folder_was_read) {
  for (const bool backup : {true, false}) {
    Scanner scanner;
    scanner.work().write("s/only", "x");
    scanner.screen.onEvents = [&] {
      if (ArrayScansione.Righe(0) == 1) fs::remove_all(scanner.work().host("s"));
    };
    scanner.scan({scanner.program("s")}, "", backup);
    EXPECT_TRUE(scanner.owner.ErroreInCorso);
    EXPECT_GE(test::countLinesWith(test::logLines(scanner.log()), scanner.program("s") + " >"), 1);
    scanner.screen.onEvents = nullptr;
  }
}

std::string folderName() {
  return std::string(200, 'f');
}

TEST(FrmScan, With_try_next_the_rest_of_the_tree_is_scanned_behind_a_folder_that_cannot_be_read) {
  Scanner scanner;
  for (const char* file : {"s/a", "s/b/c", "s/z/d"}) scanner.work().write(file, "x");
  const DeepTree deep(scanner.work().host("s"), folderName(), 30, "deep");
  ASSERT_TRUE(deep.made());
  scanner.work().write("t/e", "x");
  scanner.scan({scanner.program("s"), scanner.program("t")});
  EXPECT_TRUE(scanner.owner.ErroreInCorso);
  EXPECT_EQ(scanner.nameSet(0), (Names{"\\a", "\\b\\c", "\\z\\d"}));
  EXPECT_EQ(scanner.nameSet(1), Names{"\\e"});
}

TEST(FrmScan, Without_try_next_an_error_ends_the_walk) {
  Scanner scanner;
  Errors_Try_Next = false;
  const DeepTree deep((scanner.work().makeFolder("s"), scanner.work().host("s")), folderName(), 30, "deep");
  ASSERT_TRUE(deep.made());
  scanner.work().write("t/e", "x");
  scanner.scan({scanner.program("s"), scanner.program("t")});
  EXPECT_TRUE(scanner.owner.ErroreInCorso);
  EXPECT_EQ(ArrayScansione.Righe(1), 0U);
}

TEST(FrmScan, A_filter_judges_bare_names_and_no_folders) {
  Scanner scanner;
  for (const char* file : {"s/a.doc", "s/b.txt", "s/sub.txt/c.doc", "s/sub.doc/d.txt", "s/doc"})
    scanner.work().write(file, "x");
  scanner.scan({scanner.program("s")}, "+|*.doc|");
  EXPECT_EQ(scanner.nameSet(), (Names{"\\a.doc", "\\sub.txt\\c.doc", "\\doc"}));
  scanner.scan({scanner.program("s")}, "-|*.doc|");
  EXPECT_EQ(scanner.nameSet(), (Names{"\\b.txt", "\\sub.doc\\d.txt"}));
}

TEST(FrmScan, An_empty_filter_keeps_every_file) {
  Scanner scanner;
  scanner.work().write("s/a.doc", "x");
  scanner.work().write("s/b", "x");
  scanner.scan({scanner.program("s")}, "");
  EXPECT_EQ(ArrayScansione.Righe(0), 2U);
}

TEST(FrmScan, A_stop_ends_the_walk_and_reaches_the_owner) {
  Scanner scanner;
  for (int i = 0; i < 50; ++i) scanner.work().write("s/" + std::to_string(i) + "/a", "x");
  scanner.screen.onEvents = [] {
    if (ArrayScansione.Righe(0) == 3) AnnullaOperazioneInCorso();
  };
  scanner.scan({scanner.program("s"), scanner.program("s")});
  EXPECT_TRUE(scanner.owner.ProcessoAnnullato);
  EXPECT_TRUE(scanner.stopped);
  EXPECT_LT(ArrayScansione.Righe(0), 50U);
  EXPECT_EQ(ArrayScansione.Righe(1), 0U);
}

TEST(FrmScan, A_stop_of_the_owner_s_progress_bar_ends_the_walk_at_once) {
  Scanner scanner;
  for (int i = 0; i < 50; ++i) scanner.work().write("s/" + std::to_string(i) + "/a", "x");
  FrmProgressBar bar(&scanner.owner, "", 100);
  scanner.screen.answers = {Risposta::Sì};
  scanner.screen.onEvents = [&bar] {
    if (ArrayScansione.Righe(0) == 3) bar.Annulla(false);
  };
  scanner.scan({scanner.program("s"), scanner.program("s")});
  EXPECT_EQ(ArrayScansione.Righe(0), 3U);
  EXPECT_EQ(ArrayScansione.Righe(1), 0U);
  EXPECT_TRUE(scanner.owner.ProcessoAnnullato);
  EXPECT_TRUE(scanner.stopped);
  EXPECT_EQ(scanner.screen.boxes.size(), 1U);
}

TEST(FrmScan, Its_window_is_told_whether_a_backup_is_planned) {
  for (const bool backup : {true, false}) {
    Scanner scanner;
    scanner.work().write("s/a", "x");
    scanner.scan({scanner.program("s")}, "", backup);
    EXPECT_EQ(scanner.screen.lastScan.backup, backup);
  }
}

TEST(FrmScan, An_optical_drive_whose_disc_reports_no_length_is_passed_over) {
  Scanner scanner;
  scanner.work().write("silent.iso", "");
  scanner.work().write("t/e", "x");
  scanner.drives("K: = cdrom " + scanner.work().host("silent.iso") + "\n");
  scanner.scan({"K:\\", scanner.program("t")});
  EXPECT_FALSE(scanner.owner.ErroreInCorso);
  EXPECT_EQ(scanner.passedOver, std::vector<std::size_t>{0});
  EXPECT_EQ(ArrayScansione.Righe(0), 0U);
  EXPECT_EQ(scanner.nameSet(1), Names{"\\e"});
}

TEST(FrmScan, A_disc_with_a_length_is_walked) {
  Scanner scanner;
  scanner.work().write("disc/e", "x");
  scanner.drives("K: = cdrom " + scanner.work().host("disc") + "\n");
  scanner.scan({"K:\\"});
  EXPECT_EQ(scanner.nameSet(), Names{"e"});
}

TEST(FrmScan, A_link_is_what_it_leads_to_but_never_a_folder_that_the_walk_is_inside_of) {
  Scanner scanner;
  scanner.work().write("s/a/file", "x");
  scanner.work().write("other/in", "x");
  fs::create_directory_symlink("..", scanner.work().host("s/a/up"));
  fs::create_directory_symlink(".", scanner.work().host("s/self"));
  fs::create_directory_symlink(scanner.work().host("other"), scanner.work().host("s/there"));
  fs::create_symlink(scanner.work().host("s/a/file"), scanner.work().host("s/tofile"));
  fs::create_symlink("nowhere", scanner.work().host("s/dangling"));
  fs::create_symlink("round", scanner.work().host("s/round"));
  scanner.scan({scanner.program("s")});
  EXPECT_EQ(scanner.nameSet(), (Names{"\\a\\file", "\\there\\in", "\\tofile"}));
  EXPECT_EQ(scanner.names().size(), 3U);
  EXPECT_FALSE(scanner.owner.ErroreInCorso);
}

TEST(FrmScan, Pipes_sockets_and_leftovers_are_not_listed) {
  Scanner scanner;
  scanner.work().write("s/file", "x");
  scanner.work().write("s/.~tandemize-77-1.part", "rest of a crash");
  ASSERT_EQ(::mkfifo(scanner.work().host("s/pipe").c_str(), 0600), 0);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  struct sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  const std::string path = scanner.work().host("s/socket");
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::copy(path.begin(), path.end(), address.sun_path);
  ASSERT_EQ(::bind(socket, reinterpret_cast<struct sockaddr*>(&address), sizeof address), 0);
  scanner.scan({scanner.program("s")});
  ::close(socket);
  EXPECT_EQ(scanner.nameSet(), Names{"\\file"});
  EXPECT_FALSE(scanner.owner.ErroreInCorso);
}

TEST(FrmScan, A_folder_that_vanishes_before_the_walk_enters_it_holds_nothing) {
  Scanner scanner;
  scanner.work().write("s/a", "x");
  scanner.work().write("s/b/c", "x");
  scanner.screen.onEvents = [&] {
    if (ArrayScansione.Righe(0) == 1) fs::remove_all(scanner.work().host("s/b"));
  };
  scanner.scan({scanner.program("s")});
  EXPECT_EQ(scanner.nameSet(), Names{"\\a"});
}

// --- paths on a server

class ServerScanner : public Scanner {
 public:
  ServerScanner() { FtpServers = {{"home", "127.0.0.1", "", "", 0}, {}}; }
  [[nodiscard]] int attempts() const {
    return test::countLinesWith(test::logLines(log()), Messaggio(343) + " 'home'");
  }
};

TEST(FrmScan, A_connection_that_fails_ends_a_synchronisations_walk_at_once_without_its_flags) {
  ServerScanner scanner;
  scanner.work().write("s/a", "x");
  scanner.scan({"/public", scanner.program("s")}, "", false);
  EXPECT_FALSE(scanner.owner.ErroreInCorso);
  EXPECT_FALSE(scanner.owner.ProcessoAnnullato);
  EXPECT_TRUE(ConnessioneFallita);
  EXPECT_EQ(ArrayScansione.Righe(1), 0U);
  EXPECT_EQ(test::countLinesWith(test::logLines(scanner.log()), Messaggio(273)), 0);
  EXPECT_EQ(scanner.attempts(), 1);
}

TEST(FrmScan, A_stop_of_the_connection_is_known_although_the_owner_is_not_told) {
  ServerScanner scanner;
  ApplicazioneNascosta = false;
  Errors_Alert_Mode = 0;
  FrmScan window;
  window.ProcessoAnnullato = true;
  ArrayScansione.Azzera(1);
  window.Init({{"/public", "0"}}, scanner.owner, false, false, false, "");
  EXPECT_TRUE(window.Fermata());
  EXPECT_FALSE(scanner.owner.ProcessoAnnullato);
}

TEST(FrmScan, Behind_the_walk_the_connections_are_made_anew) {
  ServerScanner scanner;
  scanner.work().write("s/a", "x");
  scanner.scan({scanner.program("s"), "/public"}, "", true);
  EXPECT_EQ(scanner.nameSet(0), Names{"\\a"});
  EXPECT_EQ(scanner.attempts(), 2);
}

TEST(FrmScan, A_folder_on_a_server_that_cannot_be_read_is_told_as_a_lost_connection) {
  ServerScanner scanner;
  ApplicazioneNascosta = true;
  Errors_Alert_Mode = 0;
  ArrayScansione.Azzera(1);
  FrmScan window;
  window.ScansionaCartella(0, "/public", 7);
  EXPECT_TRUE(window.ErroreInCorso);
  EXPECT_TRUE(ConnessioneFallita);
  ASSERT_FALSE(scanner.screen.balloons.empty());
  EXPECT_EQ(scanner.screen.balloons.back().testo, Messaggio(274) + " /public/");
}

}  // namespace
}  // namespace tandemize
