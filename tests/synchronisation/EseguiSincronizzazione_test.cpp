// The execution of a plan: what is checked, asked, copied and deleted, and what comes after it.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "fixtures/SmallDisc.h"
#include "synchronisation/SyncRun.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ListScreen;
using test::SyncFolder;
using test::SyncProfile;

using Texts = std::vector<std::string>;

// A person is there, has scanned, and has not agreed to anything yet.
class Execution : public SyncFolder {
 public:
  Execution() { ApplicazioneNascosta = false; }
  FrmTandemize& scanned() {
    saveProfile();
    window_ = std::make_unique<FrmTandemize>();
    window_->FaseDiScansione();
    screen.boxes.clear();
    screen.balloons.clear();
    return *window_;
  }
  [[nodiscard]] Texts boxes() const { return test::boxTexts(screen); }
  [[nodiscard]] std::string second() { return test::describeTree(work().host("two")); }
  [[nodiscard]] int scans() const { return test::countLinesWith(logLines(), Messaggio(273)); }

 private:
  std::unique_ptr<FrmTandemize> window_;
};

// --- the checks before

TEST(EseguiSincronizzazione, A_path_that_has_gone_since_ends_it_and_nothing_is_touched) {
  Execution execution;
  execution.file("one/a", "a");
  FrmTandemize& window = execution.scanned();
  fs::remove(execution.work().host("two"));
  const std::string before = execution.tree();
  window.EseguiSincronizzazione(false);
  EXPECT_EQ(execution.tree(), before);
  ASSERT_EQ(execution.boxes().size(), 1U);
  EXPECT_NE(execution.boxes()[0].find(execution.program("two")), std::string::npos);
  EXPECT_TRUE(window.CiSonoOperazioni()) << "the plan stays for another try";
  EXPECT_EQ(test::countLinesWith(execution.logLines(), Messaggio(175)), 0);
}

TEST(EseguiSincronizzazione, Without_the_checks_it_starts_at_once) {
  Execution execution;
  execution.file("one/a", "a");
  FrmTandemize& window = execution.scanned();
  fs::remove(execution.work().host("two"));
  window.EseguiSincronizzazione(true);
  EXPECT_EQ(execution.second(), "a = a\n");
}

TEST(EseguiSincronizzazione, An_open_notice_is_closed_by_the_checks_alone) {
  for (const bool withoutChecks : {false, true}) {
    Execution execution;
    execution.file("one/a", "a");
    FrmTandemize& window = execution.scanned();
    execution.screen.balloonOpen = true;
    window.EseguiSincronizzazione(withoutChecks);
    EXPECT_EQ(execution.screen.balloonOpen, withoutChecks);
  }
}

TEST(EseguiSincronizzazione, It_does_nothing_while_another_transfer_runs) {
  Execution execution;
  execution.file("one/a", "a");
  FrmTandemize& window = execution.scanned();
  const FrmFileTransfer other;
  window.EseguiSincronizzazione(true);
  EXPECT_EQ(execution.second(), "");
}

// --- what it does

TEST(EseguiSincronizzazione, The_plan_is_carried_out_and_empty_afterwards) {
  Execution execution;
  execution.file("one/a", "new", 1'200'000'000);
  execution.file("two/a", "old");
  execution.file("one/sub/b", "b");
  execution.file("two/only/c", "c");
  FrmTandemize& window = execution.scanned();
  window.EseguiSincronizzazione(false);
  const std::string expected = "a = new\nonly = <folder>\nonly/c = c\nsub = <folder>\nsub/b = b\n";
  EXPECT_EQ(execution.second(), expected);
  EXPECT_EQ(test::describeTree(execution.work().host("one")), expected);
  EXPECT_FALSE(window.CiSonoOperazioni());
  EXPECT_EQ(window.EsitoUltimaCopia(), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(execution.boxes(), Texts{Messaggio(189)});
}

TEST(EseguiSincronizzazione, A_mirror_loses_what_its_source_lacks_and_the_folders_left_empty) {
  Execution execution;
  execution.profile = SyncProfile::mirroring(execution.program("one"), execution.program("two"));
  execution.file("one/a", "a");
  execution.file("two/gone/deep/b", "b");
  execution.file("two/gone/deep/c", "c");
  execution.file("two/kept/d", "d");
  execution.file("one/kept/e", "e");
  execution.scanned().EseguiSincronizzazione(false);
  EXPECT_EQ(execution.second(), "a = a\nkept = <folder>\nkept/e = e\n");
  EXPECT_EQ(test::describeTree(execution.work().host("one")), execution.second());
}

// Deletes its evidence on the disc while nobody can have read the log yet.
TEST(EseguiSincronizzazione, The_log_tells_a_deletion_before_it_happens) {
  Execution execution;
  execution.profile = SyncProfile::mirroring(execution.program("one"), execution.program("two"));
  execution.file("two/gone", "g");
  FrmTandemize& window = execution.scanned();
  const std::string path = execution.program("two") + "\\gone";
  bool toldTooLate = false, seen = false;
  execution.screen.onEvents = [&] {
    const bool there = execution.work().exists("two/gone");
    const bool told = execution.log().find(path) != std::string::npos;
    toldTooLate = toldTooLate || (!there && !told);
    seen = seen || (there && told);
  };
  window.EseguiSincronizzazione(false);
  execution.forgetHooks();
  EXPECT_FALSE(execution.work().exists("two/gone"));
  EXPECT_FALSE(toldTooLate);
  EXPECT_GE(test::countLinesWith(execution.logLines(), path), 1);
}

TEST(EseguiSincronizzazione, Two_destinations_of_one_file_are_both_filled) {
  Execution execution;
  execution.work().makeFolder("three");
  execution.profile.paths.push_back(execution.program("three"));
  execution.profile.paths.push_back(execution.program("one"));
  execution.profile.TandemMode = ModoSingolo;
  execution.file("one/a", "a");
  execution.scanned().EseguiSincronizzazione(false);
  EXPECT_EQ(execution.work().read("two/a"), "a");
  EXPECT_EQ(execution.work().read("three/a"), "a");
}

// --- the question before a file is overwritten

struct Answer {
  Risposta first;
  Texts overwritten;
  std::size_t questions;
  std::int32_t optionLeft;
};

TEST(EseguiSincronizzazione, Before_overwriting_it_asks_and_cancel_answers_all_later_questions_with_yes) {
  const Answer answers[] = {{Risposta::Sì, {"a"}, 2, ChiediPrima},
                            {Risposta::No, {}, 2, ChiediPrima},
                            {Risposta::Annulla, {"a", "b"}, 1, CopiaTutto}};
  for (const Answer& answer : answers) {
    Execution execution;
    execution.profile.FixFileOption = ChiediPrima;
    for (const char* name : {"a", "b"}) {
      execution.file(std::string("one/") + name, "new", 1'200'000'000);
      execution.file(std::string("two/") + name, "old");
    }
    execution.file("one/c", "c");
    FrmTandemize& window = execution.scanned();
    execution.screen.answers = {answer.first, Risposta::No};
    window.EseguiSincronizzazione(false);
    Texts overwritten;
    for (const char* name : {"a", "b"})
      if (execution.work().read(std::string("two/") + name) == "new") overwritten.emplace_back(name);
    EXPECT_EQ(overwritten, answer.overwritten);
    EXPECT_TRUE(execution.work().exists("two/c")) << "a missing file is no question";
    std::size_t questions = 0;
    for (const test::ShownBox& box : execution.screen.boxes)
      questions += box.style == StileSìNoAnnulla ? 1 : 0;
    EXPECT_EQ(questions, answer.questions);
    EXPECT_EQ(FixFileOption, answer.optionLeft);
    EXPECT_EQ(execution.screen.boxes[0].text, Messaggio(192) + " '" + execution.program("two") + "\\a'\r\r" +
                                                  Messaggio(193) + " '" + execution.program("one") +
                                                  "\\a' ?");
    EXPECT_NE(test::readHostFile(execution.host("Config.cfg")).find("FixFileOption = 1"), std::string::npos);
  }
}

// --- trees that change between scan and transfer

TEST(EseguiSincronizzazione, A_file_that_has_gone_since_fails_and_its_old_copy_stays) {
  Execution execution;
  execution.file("one/a", "new", 1'200'000'000);
  execution.file("two/a", "old");
  execution.file("one/b", "b");
  FrmTandemize& window = execution.scanned();
  fs::remove(execution.work().host("one/a"));
  window.EseguiSincronizzazione(false);
  EXPECT_NE(window.EsitoUltimaCopia(), EsitoTrasferimento::Nessuno);
  EXPECT_EQ(window.NumeroFalliti, 1U);
  EXPECT_EQ(execution.second(), "a = old\nb = b\n");
}

TEST(EseguiSincronizzazione, A_file_that_has_grown_since_is_copied_whole) {
  Execution execution;
  execution.file("one/a", "short");
  FrmTandemize& window = execution.scanned();
  const std::string longer(3'000'000, 'x');
  execution.work().write("one/a", longer);
  window.EseguiSincronizzazione(false);
  EXPECT_EQ(execution.work().read("two/a"), longer);
}

TEST(EseguiSincronizzazione, A_file_that_was_to_be_deleted_and_has_gone_since_takes_nothing_with_it) {
  Execution execution;
  execution.profile = SyncProfile::mirroring(execution.program("one"), execution.program("two"));
  execution.file("one/a", "a");
  execution.file("two/gone/b", "b");
  FrmTandemize& window = execution.scanned();
  fs::remove(execution.work().host("two/gone/b"));
  execution.file("two/gone/new since", "n");
  window.EseguiSincronizzazione(false);
  EXPECT_EQ(execution.second(), "a = a\ngone = <folder>\ngone/new since = n\n");
}

TEST(EseguiSincronizzazione, A_file_that_appears_during_the_run_is_left_for_the_next_one) {
  Execution execution;
  execution.profile = SyncProfile::mirroring(execution.program("one"), execution.program("two"));
  execution.file("one/a", "a");
  FrmTandemize& window = execution.scanned();
  execution.file("two/late", "l");
  window.EseguiSincronizzazione(false);
  EXPECT_EQ(execution.second(), "a = a\nlate = l\n");
}

// --- paths one inside the other

TEST(EseguiSincronizzazione, A_second_path_inside_the_first_gets_what_was_there_and_the_run_ends) {
  Execution execution;
  execution.file("one/a", "a");
  execution.file("one/inner/b", "b");
  execution.profile.paths = {execution.program("one"), execution.program("one/inner")};
  execution.scanned().EseguiSincronizzazione(false);
  EXPECT_EQ(test::describeTree(execution.work().host("one")),
            "a = a\nb = b\ninner = <folder>\ninner/a = a\ninner/b = b\ninner/inner = <folder>\n"
            "inner/inner/b = b\n");
}

// A file of the mirror is at the same time one of the source, under a longer name.
TEST(EseguiSincronizzazione, A_mirror_inside_its_source_loses_nothing_of_the_source_outside_the_mirror) {
  Execution execution;
  execution.file("one/a", "a");
  execution.file("one/z", "z");
  execution.file("one/inner/only here", "o");
  execution.profile = SyncProfile::mirroring(execution.program("one"), execution.program("one/inner"));
  execution.scanned().EseguiSincronizzazione(false);
  EXPECT_EQ(execution.work().read("one/a"), "a");
  EXPECT_EQ(execution.work().read("one/z"), "z");
  EXPECT_EQ(execution.work().read("one/inner/a"), "a");
}

// --- room and rights

TEST(EseguiSincronizzazione, Too_little_room_is_told_before_anything_is_touched) {
  Execution execution;
  execution.profile = SyncProfile::mirroring(execution.program("one"), execution.program("two"));
  execution.file("one/big", std::string(600'000, 'x'));
  const test::Attempt attempt = test::onSmallDisc(execution.work().host("two"), 512, [&] {
    execution.file("two/gone", "g");
    FrmTandemize& window = execution.scanned();
    window.EseguiSincronizzazione(false);
    EXPECT_EQ(execution.second(), "gone = g\n");
    EXPECT_NE(execution.boxes()[0].find(Messaggio(176)), std::string::npos);
  });
  EXPECT_NE(attempt, test::Attempt::Failed);
}

TEST(EseguiSincronizzazione,
     A_destination_that_fills_up_during_the_run_fails_its_files_and_keeps_the_old_ones) {
  Execution execution;
  execution.file("one/b", std::string(300'000, 'x'), 1'200'000'000);
  execution.file("one/c", "");
  const test::Attempt attempt = test::onSmallDisc(execution.work().host("two"), 512, [&] {
    execution.file("two/b", std::string(200'000, 'o'));
    execution.tryNext(true);
    FrmTandemize& window = execution.scanned();
    execution.screen.onTransfer = [&, filled = false](const StatoTrasferimento& state) mutable {
      if (filled || !state.visibile) return;
      filled = true;
      test::fillDisc(execution.work().host("two/other program's file"));
    };
    window.EseguiSincronizzazione(false);
    execution.forgetHooks();
    EXPECT_EQ(window.NumeroFalliti, 1U);
    EXPECT_EQ(execution.work().read("two/b"), std::string(200'000, 'o'));
    EXPECT_EQ(execution.work().read("one/b"), std::string(300'000, 'x'));
    EXPECT_TRUE(execution.work().exists("two/c"));
  });
  EXPECT_NE(attempt, test::Attempt::Failed);
}

TEST(EseguiSincronizzazione, A_deletion_that_is_refused_is_a_failure_and_does_not_stop_the_run) {
  for (const bool tryNext : {false, true}) {
    Execution execution;
    execution.tryNext(tryNext);
    execution.profile = SyncProfile::mirroring(execution.program("one"), execution.program("two"));
    execution.file("two/locked/gone", "g");
    execution.file("one/z", "z");
    const test::AsOrdinaryUser user(execution);
    fs::permissions(execution.work().host("two/locked"), fs::perms::owner_read | fs::perms::owner_exec);
    FrmTandemize& window = execution.scanned();
    window.EseguiSincronizzazione(false);
    fs::permissions(execution.work().host("two/locked"), fs::perms::owner_all);
    EXPECT_EQ(window.EsitoUltimaCopia(), EsitoTrasferimento::FileFallito);
    ASSERT_EQ(window.NumeroFalliti, 1U);
    EXPECT_EQ(window.Falliti[0].percorso, execution.program("two") + "\\locked\\gone");
    EXPECT_EQ(execution.second(), "locked = <folder>\nlocked/gone = g\nz = z\n");
  }
}

// --- what comes after it

TEST(EseguiSincronizzazione, The_lists_are_emptied_and_made_anew) {
  Execution execution;
  execution.file("one/a", "a");
  FrmTandemize& window = execution.scanned();
  ListScreen screen;
  window.EseguiSincronizzazione(true);
  EXPECT_EQ(screen.calls, (Texts{"empty", "make", "info 0", "info 1"}));
}

TEST(EseguiSincronizzazione, The_flags_of_the_operation_are_cleared) {
  Execution execution;
  execution.file("one/a", "a");
  FrmTandemize& window = execution.scanned();
  window.ErroreInCorso = true;
  window.EseguiSincronizzazione(true);
  EXPECT_FALSE(window.ErroreInCorso);
  EXPECT_FALSE(window.ProcessoAnnullato);
}

TEST(EseguiSincronizzazione, With_FixScanAfterFix_a_new_scan_shows_that_the_paths_agree) {
  Execution execution;
  execution.profile.FixScanAfterFix = 1;
  execution.file("one/a", "a");
  FrmTandemize& window = execution.scanned();
  ListScreen screen;
  window.EseguiSincronizzazione(true);
  EXPECT_EQ(execution.scans(), 4);
  EXPECT_EQ(test::balloonTexts(screen), Texts{Messaggio(62)});
  EXPECT_EQ(screen.calls[0], "empty");
  EXPECT_EQ(screen.calls[1], "make");
  EXPECT_EQ(screen.calls.back(), "show") << "the lists that the new scan fills stay";
}

TEST(EseguiSincronizzazione, What_the_new_scan_finds_stays_to_be_done) {
  Execution execution;
  execution.profile.FixScanAfterFix = 1;
  execution.file("one/a", "a");
  execution.file("one/b", "b");
  FrmTandemize& window = execution.scanned();
  fs::create_directory(execution.work().host("two/b"));
  ListScreen screen;
  screen.answers = {Risposta::Ok, Risposta::No};
  window.EseguiSincronizzazione(true);
  EXPECT_EQ(test::plannedOperations(),
            Texts{"missing " + execution.program("one") + "\\b -> " + execution.program("two") + "\\b"});
  EXPECT_EQ(screen.rows[1].Righe(), 1U);
}

TEST(EseguiSincronizzazione, Without_the_setting_or_after_a_stop_or_a_refusal_there_is_no_new_scan) {
  {
    Execution execution;
    execution.file("one/a", "a");
    execution.scanned().EseguiSincronizzazione(true);
    EXPECT_EQ(execution.scans(), 2);
  }
  {
    Execution execution;
    execution.profile.FixScanAfterFix = 1;
    execution.file("one/a", "a");
    FrmTandemize& window = execution.scanned();
    execution.screen.onTransfer = [](const StatoTrasferimento& state) {
      if (state.visibile && FormAttivo() == "FrmFileTransfer") AnnullaOperazioneInCorso();
    };
    window.EseguiSincronizzazione(true);
    execution.forgetHooks();
    EXPECT_EQ(window.EsitoUltimaCopia(), EsitoTrasferimento::Annullato);
    EXPECT_EQ(execution.scans(), 2);
  }
  {
    Execution execution;
    execution.profile.FixScanAfterFix = 1;
    execution.file("one/a", "a");
    FrmTandemize& window = execution.scanned();
    fs::remove(execution.work().host("two"));
    window.EseguiSincronizzazione(false);
    EXPECT_EQ(execution.scans(), 2);
  }
}

}  // namespace
}  // namespace tandemize
