// A synchronisation's own steps of the transfer: second looks before harm, deletions, and the folders that
// they leave empty.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "backup/BackupRun.h"
#include "backup/FrmFileTransfer.h"
#include "profile/ModuloProfilo.h"
#include "synchronisation/SyncRun.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::recordOf;

constexpr std::time_t Then = 1'100'000'000, Later = 1'200'000'000;

// Paths "one", "two" and "three" of the work folder, as a synchronisation keeps them in step. Records carry
// size and date of the files as they are when the record is made, as a scan would have seen them.
class Pair : public test::BackupFolder {
 public:
  Pair() {
    for (const char* path : {"one", "two", "three"}) work().makeFolder(path);
    ArrayTrasferimento.Svuota();
    ArrayScansione.Azzera(0);
    FixFileOption = 2;
    EraseFile = 1;
  }
  ~Pair() { forgetHooks(); }

  void file(const std::string& name, const std::string& content, std::time_t date = Then) {
    work().write(name, content);
    const std::array<struct timespec, 2> times{{{date, 0}, {date, 0}}};
    if (::utimensat(AT_FDCWD, work().host(name).c_str(), times.data(), 0) != 0) std::abort();
  }
  // "one/x/a" as a scan of "one" has seen it.
  [[nodiscard]] RecordFile seen(const std::string& name) const {
    RecordFile record = recordOf(program(name), 0, program(name.substr(0, name.find('/'))));
    platform::FileStatus status;
    if (platform::query(program(name), status) != platform::kNoError) return record;
    record.Dimensione = static_cast<double>(status.size);
    record.Data = status.lastWrite.seconds;
    record.Attributi = static_cast<std::int32_t>(status.attributes);
    return record;
  }
  RecordOperazione& plan(const std::string& from, const std::string& to) {
    ArrayTrasferimento.Conserva(ArrayScansione.DepositoCondiviso());
    RecordOperazione operation{seen(from), seen(to)};
    operation.Destinazione.FileNuovo = !work().exists(to);
    ArrayTrasferimento.Aggiungi(operation);
    return ArrayTrasferimento[ArrayTrasferimento.Numero() - 1];
  }
  void planDeletion(const std::string& file, const std::string& counterpart) {
    plan(file, counterpart).Sorgente.DaEliminare = true;
  }
  // A file of "two" that is to go because "one" has none of its name.
  void surplus(const std::string& name) {
    file("two/" + name, "old");
    planDeletion("two/" + name, "one/" + name);
  }
  EsitoTrasferimento run(std::uint8_t mode = 1) {
    window_ = std::make_unique<FrmFileTransfer>();
    window_->Init(mode, false, false);
    return window_->EsitoCopia;
  }
  // Called once, behind the checks of the run and before its first record.
  void atStart(const std::function<void()>& action) {
    screen.onTransfer = [action, done = false](const StatoTrasferimento& state) mutable {
      if (done || !state.visibile) return;
      done = true;
      action();
    };
  }

  FrmFileTransfer& window() { return *window_; }
  [[nodiscard]] std::string read(const std::string& name) { return work().read(name); }
  [[nodiscard]] int logged(const std::string& text) const { return test::countLinesWith(logLines(), text); }
  [[nodiscard]] bool reported(const std::string& text) {
    return window().NumeroFalliti == 1 && window().Falliti[0].motivo.find(text) != std::string::npos &&
           logged(text) == 1;
  }

 private:
  std::unique_ptr<FrmFileTransfer> window_;
};

// --- whether a new scan follows

TEST(RiscansioneRichiesta, Only_after_a_synchronisation_that_asks_for_it_and_that_somebody_sees) {
  const struct {
    std::uint8_t mode, option;
    bool hidden, wanted;
  } cases[] = {{1, 1, false, true},
               {1, 255, false, true},
               {1, 0, false, false},
               {1, 1, true, false},
               {0, 1, false, false}};
  for (const auto& c : cases) {
    Pair pair;
    ApplicazioneNascosta = c.hidden;
    FixScanAfterFix = c.option;
    pair.file("one/a", "a");
    pair.plan("one/a", "two/a");
    pair.run(c.mode);
    EXPECT_EQ(pair.window().RiscansioneRichiesta(), c.wanted)
        << int{c.mode} << int{c.option} << " " << c.hidden;
  }
}

TEST(RiscansioneRichiesta, A_failed_file_does_not_keep_it_away) {
  Pair pair;
  FixScanAfterFix = 1;
  pair.plan("one/gone", "two/gone");
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  EXPECT_TRUE(pair.window().RiscansioneRichiesta());
}

TEST(RiscansioneRichiesta, Not_after_a_stop_and_not_after_a_refused_start) {
  for (const bool refused : {false, true}) {
    Pair pair;
    FixScanAfterFix = 1;
    pair.file("one/a", "a");
    pair.plan("one/a", "two/a");
    if (refused) ArrayTrasferimento[0].Sorgente.Dimensione = 4e15;
    pair.atStart([] { AnnullaOperazioneInCorso(); });
    EXPECT_EQ(pair.run(), refused ? EsitoTrasferimento::Nessuno : EsitoTrasferimento::Annullato);
    EXPECT_FALSE(pair.work().exists("two/a"));
    EXPECT_FALSE(pair.window().RiscansioneRichiesta());
  }
}

// --- copies: a second look at what would be overwritten

TEST(SecondLook, A_destination_that_has_changed_since_the_scan_is_kept_and_told) {
  const struct {
    const char* content;
    std::time_t date;
  } changes[] = {{"other size", Then}, {"odd", Later}, {"odd", Then - 1}};
  for (const auto& change : changes) {
    Pair pair;
    pair.file("one/a", "new");
    pair.file("two/a", "old");
    pair.file("one/b", "b");
    pair.plan("one/a", "two/a");
    pair.plan("one/b", "two/b");
    pair.atStart([&] { pair.file("two/a", change.content, change.date); });
    EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
    EXPECT_EQ(pair.read("two/a"), change.content);
    EXPECT_EQ(pair.read("two/b"), "b");
    EXPECT_TRUE(pair.reported("non viene sovrascritto : " + pair.program("two/a")));
    EXPECT_EQ(pair.logged(Messaggio(188) + "  '" + pair.program("one/a")), 0);
  }
}

TEST(SecondLook, A_file_that_has_appeared_at_a_missing_ones_place_is_kept_and_told) {
  Pair pair;
  pair.file("one/a", "new");
  pair.plan("one/a", "two/a");
  pair.atStart([&] { pair.file("two/a", "somebody's"); });
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(pair.read("two/a"), "somebody's");
  EXPECT_TRUE(
      pair.reported("comparso dopo la scansione e non viene sovrascritto : " + pair.program("two/a")));
}

TEST(SecondLook, A_destination_that_has_gone_since_is_made_anew) {
  Pair pair;
  pair.file("one/a", "new");
  pair.file("two/a", "old");
  pair.plan("one/a", "two/a");
  pair.atStart([&] { fs::remove(pair.work().host("two/a")); });
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(pair.read("two/a"), "new");
}

TEST(SecondLook, A_source_that_has_changed_since_is_copied_as_it_is_now) {
  Pair pair;
  pair.file("one/a", "new");
  pair.file("two/a", "old");
  pair.plan("one/a", "two/a");
  pair.atStart([&] { pair.file("one/a", "newer still", Later); });
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(pair.read("two/a"), "newer still");
}

TEST(SecondLook, What_the_user_has_agreed_to_is_overwritten) {
  for (const Risposta answer : {Risposta::Sì, Risposta::Annulla}) {
    Pair pair;
    FixFileOption = 1;
    pair.file("one/a", "new");
    pair.plan("one/a", "two/a");
    pair.screen.answers = {answer};
    pair.atStart([&] { pair.file("two/a", "appeared"); });
    EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
    EXPECT_EQ(pair.read("two/a"), "new");
  }
}

TEST(SecondLook, A_refusal_is_alerted_at_once_only_where_every_error_is) {
  for (const int atTheEnd : {0, 1}) {
    Pair pair;
    Errors_Alert_Mode = static_cast<std::uint8_t>(atTheEnd);
    pair.file("one/a", "new");
    pair.plan("one/a", "two/a");
    pair.atStart([&] { pair.file("two/a", "appeared"); });
    pair.run();
    EXPECT_EQ(pair.screen.boxes.size(), atTheEnd == 1 ? 1U : 2U);
  }
}

TEST(SecondLook, A_backup_overwrites_as_planned) {
  Pair pair;
  pair.file("one/a", "new");
  pair.plan("one/a", "two/a");
  pair.atStart([&] { pair.file("two/a", "appeared"); });
  EXPECT_EQ(pair.run(0), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(pair.read("two/a"), "new");
}

TEST(SecondLook, What_this_run_has_put_there_itself_is_no_surprise) {
  Pair pair;
  pair.file("one/a", "first");
  pair.file("two/a", "second");
  pair.plan("one/a", "three/a");
  pair.plan("two/a", "three/a");
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(pair.read("three/a"), "second");
}

TEST(SecondLook, A_file_that_stands_twice_in_the_list_is_copied_to_both_places_in_its_order) {
  Pair pair;
  pair.file("one/a", "a");
  pair.plan("one/a", "two/a");
  pair.surplus("old");
  pair.plan("one/a", "three/a");
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(pair.read("two/a") + pair.read("three/a"), "aa");
  const std::string log = pair.log();
  const std::size_t first = log.find("to '" + pair.program("two/a")),
                    second = log.find("Deleting File '" + pair.program("two/old")),
                    third = log.find("to '" + pair.program("three/a"));
  EXPECT_LT(first, second);
  EXPECT_LT(second, third);
  EXPECT_NE(third, std::string::npos);
}

// --- attributes

TEST(SyncAttributes, The_mark_of_a_failed_CRC_is_never_given_to_a_file) {
  Pair pair;
  pair.file("one/a", "a");
  ASSERT_EQ(::chmod(pair.work().host("one/a").c_str(), 0644), 0);
  pair.plan("one/a", "two/a").Sorgente.Attributi = -1;
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  struct stat entry = {};
  ASSERT_EQ(::stat(pair.work().host("two/a").c_str(), &entry), 0);
  EXPECT_EQ(entry.st_mode & 0777U, 0644U);
}

TEST(SyncAttributes, A_copy_that_failed_leaves_the_old_files_attributes_alone) {
  Pair pair;
  pair.file("two/a", "old");
  ASSERT_EQ(::chmod(pair.work().host("two/a").c_str(), 0644), 0);
  pair.plan("one/gone", "two/a").Sorgente.Attributi = 33;
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(pair.read("two/a"), "old");
  struct stat entry = {};
  ASSERT_EQ(::stat(pair.work().host("two/a").c_str(), &entry), 0);
  EXPECT_EQ(entry.st_mode & 0777U, 0644U);
}

// --- deletions

TEST(Deletion, The_log_tells_it_before_it_happens) {
  Pair pair;
  pair.surplus("a");
  const std::string line = "Deleting File '" + pair.program("two/a") + "'";
  int toldWhileThere = 0, goneUntold = 0;
  pair.screen.onEvents = [&] {
    const bool there = pair.work().exists("two/a"), told = pair.logged(line) > 0;
    toldWhileThere += there && told ? 1 : 0;
    goneUntold += !there && !told ? 1 : 0;
  };
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_FALSE(pair.work().exists("two/a"));
  EXPECT_GT(toldWhileThere, 0);
  EXPECT_EQ(goneUntold, 0);
}

TEST(Deletion, A_file_whose_deletion_cannot_be_told_stays) {
  Pair pair;
  pair.file("two/a", "kept");
  pair.planDeletion("two/a", "one/a");
  pair.atStart([&] {
    fs::remove(pair.home().host("LogFile1.txt"));
    pair.home().makeFolder("LogFile1.txt");
  });
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(pair.read("two/a"), "kept");
}

TEST(Deletion, A_file_that_two_paths_lack_is_deleted_once_and_is_no_failure_the_second_time) {
  Pair pair;
  pair.file("three/a", "old");
  pair.planDeletion("three/a", "one/a");
  pair.planDeletion("three/a", "two/a");
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_FALSE(pair.work().exists("three/a"));
  EXPECT_EQ(pair.logged("Deleting File"), 1);
  EXPECT_EQ(pair.screen.lastTransfer.fileCopiati, 2);
}

TEST(Deletion, A_file_that_somebody_else_has_deleted_is_a_failure_and_the_run_goes_on) {
  for (const bool tryNext : {false, true}) {
    Pair pair;
    Errors_Try_Next = tryNext;
    pair.surplus("a");
    pair.surplus("b");
    pair.atStart([&] { fs::remove(pair.work().host("two/a")); });
    EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
    EXPECT_EQ(pair.window().NumeroFalliti, 1U);
    EXPECT_EQ(pair.logged("Error: File Not Found"), 1);
    EXPECT_FALSE(pair.work().exists("two/b"));
  }
}

TEST(Deletion, A_file_that_has_changed_since_the_scan_stays_and_is_told) {
  Pair pair;
  pair.surplus("a");
  pair.atStart([&] { pair.file("two/a", "work of today", Later); });
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(pair.read("two/a"), "work of today");
  EXPECT_TRUE(pair.reported("cambiato dopo la scansione e non viene eliminato : " + pair.program("two/a")));
  EXPECT_EQ(pair.logged("Deleting File"), 0);
}

TEST(Deletion, A_file_that_the_other_path_has_got_meanwhile_stays_and_is_told) {
  Pair pair;
  pair.surplus("a");
  pair.atStart([&] { pair.file("one/a", "here again"); });
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(pair.read("two/a"), "old");
  EXPECT_TRUE(pair.reported("non viene eliminato : " + pair.program("two/a")));
}

// The list is carried out as it stands: what this run made at the other path does not take a deletion back.
TEST(Deletion, A_counterpart_that_this_run_has_made_does_not_keep_the_file) {
  Pair pair;
  pair.file("one/a", "a");
  pair.file("three/a", "a");
  pair.plan("one/a", "two/a");
  pair.planDeletion("three/a", "two/a");
  ArrayTrasferimento[1].Destinazione.FileNuovo = true;
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_FALSE(pair.work().exists("three/a"));
}

TEST(Deletion, Nothing_is_deleted_while_the_other_path_is_away) {
  Pair pair;
  pair.surplus("x/a");
  pair.atStart([&] { fs::remove(pair.work().host("one")); });
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(pair.read("two/x/a"), "old");
  EXPECT_TRUE(pair.reported("non è più raggiungibile"));
}

TEST(Deletion, Nothing_is_deleted_while_the_other_paths_drive_is_away) {
  Pair pair;
  pair.drives("J: = removable " + pair.work().host("one") + "\n");
  pair.surplus("x/a");
  ArrayTrasferimento[0].Destinazione = recordOf("J:\\x\\a", 0, "J:");
  ArrayTrasferimento[0].Destinazione.FileNuovo = true;
  pair.atStart([&] { fs::rename(pair.work().host("one"), pair.work().host("pulled out")); });
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  EXPECT_EQ(pair.read("two/x/a"), "old");
}

TEST(Deletion, It_needs_no_room_and_makes_no_folder) {
  Pair pair;
  pair.surplus("x/a");
  pair.file("two/x/b", "kept");
  FrmFileTransfer window;
  ArrayTrasferimento[0].Sorgente.Dimensione = 4e15;
  EXPECT_TRUE(window.ControllaSpazio());
  EraseFile = 0;
  EXPECT_FALSE(window.ControllaSpazio());
  EraseFile = 1;
  ArrayTrasferimento[0].Sorgente.Dimensione = 3;
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_FALSE(pair.work().exists("one/x"));
}

TEST(Deletion, A_stop_keeps_all_that_has_not_been_deleted_yet) {
  Pair pair;
  for (const char* name : {"a", "b", "c"}) pair.surplus(name);
  pair.screen.onTransfer = [](const StatoTrasferimento& state) {
    if (state.fileCopiati == 1) AnnullaOperazioneInCorso();
  };
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Annullato);
  EXPECT_FALSE(pair.work().exists("two/a"));
  EXPECT_TRUE(pair.work().exists("two/b"));
  EXPECT_TRUE(pair.work().exists("two/c"));
}

// --- folders left empty

TEST(EmptyFolders, They_go_upward_in_step_with_the_other_side) {
  Pair pair;
  pair.surplus("x/y/z/a");
  pair.work().makeFolder("one/x");
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_FALSE(pair.work().exists("two/x/y"));
  EXPECT_TRUE(pair.work().exists("two/x"));
  EXPECT_FALSE(pair.work().exists("one/x/y"));
}

TEST(EmptyFolders, The_path_itself_stays_though_all_in_it_has_gone) {
  Pair pair;
  pair.surplus("a");
  pair.surplus("x/b");
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(test::describeTree(pair.work().host("two")), "");
  EXPECT_TRUE(pair.work().exists("two"));
  EXPECT_TRUE(pair.work().exists("three"));
}

// The other path goes away at the very moment at which the file has been deleted.
TEST(EmptyFolders, None_goes_once_the_other_path_is_away) {
  Pair pair;
  pair.surplus("x/a");
  pair.screen.onEvents = [&] {
    if (!pair.work().exists("two/x/a")) fs::remove(pair.work().host("one"));
  };
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_FALSE(pair.work().exists("two/x/a"));
  EXPECT_TRUE(pair.work().exists("two/x"));
}

TEST(EmptyFolders, One_that_holds_anything_else_stays) {
  const struct { const char* other; } cases[] = {{"two/x/b"}, {"two/x/.hidden"}, {"two/x/sub/b"}};
  for (const auto& c : cases) {
    Pair pair;
    pair.surplus("x/a");
    pair.file(c.other, "kept");
    EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno) << c.other;
    EXPECT_EQ(pair.read(c.other), "kept");
  }
}

TEST(EmptyFolders, One_that_is_a_path_of_the_profile_itself_stays) {
  Pair pair;
  Backup_Path = {pair.program("one"), pair.program("two"), pair.program("three"),
                 pair.program("two/x/y") + "\\"};
  pair.surplus("x/Y/z/a");
  EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
  EXPECT_FALSE(pair.work().exists("two/x/Y/z"));
  EXPECT_TRUE(pair.work().exists("two/x/Y"));
}

TEST(EmptyFolders, A_counterpart_that_may_not_be_looked_at_has_not_gone) {
  Pair pair;
  pair.surplus("locked/x/a");
  pair.file("one/locked/x/b", "b");
  {
    const test::AsOrdinaryUser user(pair);
    fs::permissions(pair.work().host("one/locked"), fs::perms::none);
    EXPECT_EQ(pair.run(), EsitoTrasferimento::Nessuno);
    fs::permissions(pair.work().host("one/locked"), fs::perms::owner_all);
  }
  EXPECT_TRUE(pair.work().exists("two/locked/x"));
  EXPECT_FALSE(pair.work().exists("two/locked/x/a"));
}

TEST(EmptyFolders, One_that_cannot_be_removed_is_a_failure_and_names_the_folder) {
  Pair pair;
  pair.surplus("x/a");
  // A pipe is no file of a tree, and still keeps its folder from going.
  ASSERT_EQ(::mkfifo(pair.work().host("two/x/pipe").c_str(), 0600), 0);
  EXPECT_EQ(pair.run(), EsitoTrasferimento::FileFallito);
  ASSERT_EQ(pair.window().NumeroFalliti, 1U);
  EXPECT_EQ(pair.window().Falliti[0].percorso, pair.program("two/x"));
  EXPECT_FALSE(pair.work().exists("two/x/a"));
}

}  // namespace
}  // namespace tandemize
