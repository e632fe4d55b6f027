// The pass: what is saved, scanned, compared and told, and what a person is asked.
#include <gtest/gtest.h>

#include <memory>

#include "platform/digestahead.h"
#include "synchronisation/SyncRun.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ListScreen;
using test::SyncFolder;

// One tree with a file that the other one lacks. A person is there.
class Pass : public SyncFolder {
 public:
  Pass() {
    ApplicazioneNascosta = false;
    file("one/a", "content");
  }
  void scan() {
    saveProfile();
    window = std::make_unique<FrmTandemize>();
    window->FaseDiScansione();
  }
  [[nodiscard]] std::vector<std::string> notices() const { return test::balloonTexts(screen); }
  [[nodiscard]] std::vector<std::string> boxes() const { return test::boxTexts(screen); }
  [[nodiscard]] bool copied() { return work().exists("two/a"); }

  std::unique_ptr<FrmTandemize> window;
};

using Texts = std::vector<std::string>;

// --- the profile

TEST(FaseDiScansione, The_profile_is_saved_first) {
  Pass pass;
  pass.profile.EraseFile = pass.profile.SourceNotChange = 1;
  pass.saveProfile();
  const std::string whole = pass.profile.text();
  test::writeHostFile(pass.host("Config.cfg"),
                      "Backup_Path_0 = x\r\n\r\n" + whole.substr(whole.find('\n') + 1));
  FrmTandemize window;
  Backup_Path[0] = pass.program("one");
  window.FaseDiScansione();
  EXPECT_EQ(test::readHostFile(pass.host("Config.cfg")), whole);
}

TEST(FaseDiScansione, Every_value_of_the_profile_survives_the_saving) {
  Pass pass;
  pass.work().makeFolder("three");
  pass.work().makeFolder("four");
  pass.profile.paths.push_back(pass.program("three"));
  pass.profile.paths.push_back(pass.program("four"));
  pass.profile.FixFileOption = 1;
  pass.profile.FixScanAfterFix = 1;
  pass.profile.SourceNotChange = 1;
  pass.profile.EraseFile = 1;
  pass.profile.CompareMethod = 2;
  pass.profile.TandemMode = 0;
  pass.scan();
  EXPECT_EQ(test::readHostFile(pass.host("Config.cfg")), pass.profile.text());
}

TEST(FaseDiScansione, The_objects_of_a_backup_stay_in_the_profile) {
  Pass pass;
  const std::string object = "1BackIndice = 1\r\n1BackDescrizione = S\r\n";
  pass.saveProfile();
  test::writeHostFile(pass.host("Config.cfg"), pass.profile.text() + object);
  ASSERT_EQ(FrmTandemize().ProfiloLetto(), true);
  FrmTandemize().FaseDiScansione();
  const std::string text = test::readHostFile(pass.host("Config.cfg"));
  EXPECT_EQ(text.substr(text.size() - object.size()), object);
}

TEST(FaseDiScansione, A_profile_that_cannot_be_saved_ends_it_before_the_scan_and_is_told) {
  Pass pass;
  pass.saveProfile();
  FrmTandemize window;
  fs::remove(pass.host("Config.cfg"));
  fs::create_directory(pass.host("Config.cfg"));
  window.FaseDiScansione();
  EXPECT_TRUE(window.ErroreInCorso);
  EXPECT_FALSE(window.CiSonoOperazioni());
  ASSERT_EQ(pass.boxes().size(), 1U);
  EXPECT_NE(pass.boxes()[0].find(FileProfilo), std::string::npos);
  EXPECT_EQ(test::countLinesWith(pass.logLines(), Messaggio(273)), 0);
  EXPECT_GE(test::countLinesWith(pass.logLines(), FileProfilo), 1);
}

// --- what is told

TEST(FaseDiScansione, With_nothing_to_do_it_says_so) {
  Pass pass;
  fs::remove(pass.work().host("one/a"));
  pass.scan();
  ASSERT_EQ(pass.screen.balloons.size(), 1U);
  const Avviso& notice = pass.screen.balloons[0];
  EXPECT_EQ(notice.testo, Messaggio(62));
  EXPECT_EQ(notice.titolo, Messaggio(66));
  EXPECT_EQ(notice.icona, 2);
  EXPECT_EQ(pass.boxes(), Texts{});
}

TEST(FaseDiScansione, It_is_told_in_the_hidden_state_too) {
  Pass pass;
  fs::remove(pass.work().host("one/a"));
  ApplicazioneNascosta = true;
  pass.scan();
  EXPECT_EQ(pass.notices(), Texts{Messaggio(62)});
}

TEST(FaseDiScansione, A_person_is_asked_before_anything_is_done) {
  for (const bool yes : {false, true}) {
    Pass pass;
    pass.screen.answers = {yes ? Risposta::Sì : Risposta::No};
    pass.scan();
    ASSERT_GE(pass.screen.boxes.size(), 1U);
    EXPECT_EQ(pass.screen.boxes[0].text, Messaggio(44));
    EXPECT_EQ(pass.screen.boxes[0].style, StileSìNo);
    EXPECT_EQ(pass.copied(), yes);
    EXPECT_EQ(pass.window->CiSonoOperazioni(), !yes);
  }
}

TEST(FaseDiScansione, With_AutoTandemize_it_executes_without_a_question) {
  Pass pass;
  pass.profile.AutoTandemize = 1;
  pass.scan();
  EXPECT_TRUE(pass.copied());
  EXPECT_EQ(pass.boxes(), Texts{Messaggio(189)});
}

TEST(FaseDiScansione, A_hidden_program_neither_asks_nor_executes_by_itself) {
  Pass pass;
  pass.profile.AutoTandemize = 1;
  ApplicazioneNascosta = true;
  pass.scan();
  EXPECT_FALSE(pass.copied());
  EXPECT_TRUE(pass.window->CiSonoOperazioni());
  EXPECT_EQ(pass.boxes(), Texts{});
}

TEST(FaseDiScansione, A_crc_that_failed_outranks_all_other_news_and_nothing_is_asked) {
  Pass pass;
  pass.profile.CompareMethod = ConfrontoCrc;
  pass.file("one/b", "b");
  pass.file("two/b", "B");
  pass.lock("one/b");
  const test::AsOrdinaryUser user(pass);
  pass.scan();
  EXPECT_TRUE(pass.window->ErroreCrc);
  EXPECT_EQ(pass.notices(), Texts{Messaggio(426)});
  EXPECT_EQ(pass.boxes(), Texts{});
  EXPECT_TRUE(pass.window->CiSonoOperazioni());
}

TEST(FaseDiScansione, The_flag_of_a_failed_crc_is_that_of_the_last_pass) {
  Pass pass;
  pass.saveProfile();
  FrmTandemize window;
  window.ErroreCrc = window.TroppeDifferenze = true;
  window.FaseDiScansione();
  EXPECT_FALSE(window.ErroreCrc);
  EXPECT_FALSE(window.TroppeDifferenze);
}

// --- stops

TEST(FaseDiScansione, A_stop_of_the_scan_empties_both_tables_and_is_told) {
  Pass pass;
  pass.file("one/sub/b", "b");
  pass.whenScanned(0, 1, [] { AnnullaOperazioneInCorso(); });
  pass.scan();
  EXPECT_EQ(pass.notices(), Texts{Messaggio(434)});
  EXPECT_FALSE(pass.window->CiSonoOperazioni());
  EXPECT_EQ(ArrayScansione.Colonne(), 2U);
  EXPECT_EQ(ArrayScansione.Righe(0), 0U);
  EXPECT_EQ(pass.boxes(), Texts{});
}

// A stop that comes so late has its flag cleared before the result is told: that is how it has always been.
TEST(FaseDiScansione, A_stop_of_the_sort_empties_both_tables_and_is_told_as_nothing_to_do) {
  Pass pass;
  pass.screen.onEvents = [&pass] {
    if (pass.screen.lastProgress.visibile && pass.screen.lastProgress.testo.starts_with(Messaggio(285)))
      AnnullaOperazioneInCorso();
  };
  pass.scan();
  EXPECT_EQ(pass.notices(), Texts{Messaggio(62)});
  EXPECT_FALSE(pass.window->CiSonoOperazioni());
  EXPECT_EQ(ArrayScansione.Righe(0), 0U);
  EXPECT_FALSE(pass.window->ProcessoAnnullato);
  EXPECT_EQ(test::countLinesWith(pass.logLines(), Messaggio(73)), 0);
}

TEST(FaseDiScansione, A_stop_of_the_comparison_empties_both_tables_and_is_told_as_nothing_to_do) {
  Pass pass;
  pass.file("one/b", "b");
  pass.screen.onEvents = [] {
    if (FormCaricato("FrmProgressBar") && !ArrayTrasferimento.Vuota()) AnnullaOperazioneInCorso();
  };
  pass.scan();
  EXPECT_EQ(pass.notices(), Texts{Messaggio(62)});
  EXPECT_FALSE(pass.window->CiSonoOperazioni());
  EXPECT_FALSE(pass.window->ProcessoAnnullato);
}

// Of files that are too large to be read ahead of their turn.
TEST(FaseDiScansione, A_stop_of_the_pass_before_ends_no_crc_of_this_one) {
  constexpr std::size_t size = platform::DigestAhead::kLargest + 1;
  Pass pass;
  pass.profile.CompareMethod = ConfrontoCrc;
  pass.file("one/a", std::string(size, 'a'));
  pass.file("two/a", std::string(size, 'b'), 1'200'000'000);
  AnnullamentoRichiesto = true;
  pass.scan();
  EXPECT_FALSE(pass.window->ErroreCrc);
  EXPECT_TRUE(pass.window->CiSonoOperazioni());
}

// --- failures

TEST(FaseDiScansione, After_a_failed_scan_nothing_is_compared_whatever_the_settings_say) {
  for (const bool tryNext : {false, true}) {
    Pass pass;
    pass.tryNext(tryNext);
    pass.work().makeFolder("three");
    pass.profile.paths = {pass.program("one"), pass.program("gone")};
    pass.scan();
    EXPECT_EQ(pass.notices(), Texts{Messaggio(435)}) << tryNext;
    EXPECT_FALSE(pass.window->CiSonoOperazioni());
    EXPECT_EQ(ArrayScansione.Righe(0), 0U);
    EXPECT_TRUE(pass.window->ErroreInCorso) << "the flag is what a later execution asks by";
    EXPECT_EQ(test::countLinesWith(pass.logLines(), Messaggio(73)), 0);
    EXPECT_EQ(test::countLinesWith(pass.logLines(), Messaggio(274) + " '" + pass.program("gone") + "'"), 1);
  }
}

TEST(FaseDiScansione, The_error_of_a_scan_does_not_outlive_the_next_one) {
  Pass pass;
  pass.saveProfile();
  FrmTandemize window;
  window.ErroreInCorso = window.ProcessoAnnullato = true;
  window.FaseDiScansione();
  EXPECT_EQ(pass.boxes(), Texts{Messaggio(44)});
}

TEST(FaseDiScansione, It_does_nothing_while_a_transfer_works_on_the_tables) {
  Pass pass;
  pass.saveProfile();
  FrmTandemize window;
  const FrmFileTransfer transfer;
  window.FaseDiScansione();
  EXPECT_FALSE(window.CiSonoOperazioni());
  EXPECT_EQ(pass.notices(), Texts{});
  EXPECT_EQ(pass.boxes(), Texts{});
}

TEST(FaseDiScansione, A_server_that_cannot_be_reached_leaves_empty_columns_and_plans_nothing) {
  Pass pass;
  pass.profile.paths = {"/public/data", pass.program("one")};
  pass.profile.servers = {"home", ""};
  pass.profile.EraseFile = pass.profile.SourceNotChange = 1;
  ApplicazioneNascosta = true;
  FtpServers = {{"home", "127.0.0.1", "", "", 0}, {}};
  pass.scan();
  EXPECT_FALSE(pass.window->CiSonoOperazioni());
  EXPECT_TRUE(pass.work().exists("one/a"));
  EXPECT_EQ(test::countLinesWith(pass.logLines(), Messaggio(273)), 0);
  for (const std::string& text : pass.notices()) EXPECT_NE(text, Messaggio(62));
}

// --- one path inside the other, discs that were passed over

TEST(FaseDiScansione, A_source_inside_its_own_mirror_is_refused_since_the_mirroring_would_delete_it) {
  for (const int mode : {ModoSingolo, ModoMultiplo}) {
    Pass pass;
    pass.file("two/source/a", "the only one");
    pass.file("two/source/zeta", "the only one");
    pass.profile = test::SyncProfile::mirroring(pass.program("two/source"), pass.program("two") + "\\");
    pass.profile.TandemMode = mode;
    const std::string before = pass.tree();
    pass.scan();
    EXPECT_FALSE(pass.window->CiSonoOperazioni());
    EXPECT_EQ(pass.notices(), Texts{Messaggio(435)});
    EXPECT_EQ(test::countLinesWith(pass.logLines(), pass.program("two/source")), 1) << pass.log();
    EXPECT_EQ(pass.tree(), before);
  }
}

TEST(FaseDiScansione, Paths_one_inside_the_other_are_compared_where_nothing_of_the_source_can_go) {
  const struct {
    const char *first, *second;
    int erase;
    bool planned;
  } cases[] = {{"one", "one/inner", 1, true},
               {"one", "one/inner", 0, true},
               {"one/inner", "one", 0, true},
               {"one/inner", "one", 1, false},
               {"one/in", "one/inner", 1, true}};
  for (const auto& c : cases) {
    Pass pass;
    pass.file("one/inner/b", "b");
    pass.file("one/in/c", "c");
    pass.profile = test::SyncProfile::mirroring(pass.program(c.first), pass.program(c.second));
    pass.profile.EraseFile = c.erase;
    pass.profile.SourceNotChange = c.erase;
    pass.scan();
    EXPECT_EQ(pass.window->CiSonoOperazioni(), c.planned) << c.first << c.second << c.erase;
  }
}

TEST(FaseDiScansione, A_source_is_found_inside_its_mirror_behind_another_drive_letter) {
  Pass pass;
  pass.drives("S: = fixed " + pass.work().host("one") + "\n");
  pass.profile = test::SyncProfile::mirroring("S:\\", pass.program(""));
  pass.scan();
  EXPECT_FALSE(pass.window->CiSonoOperazioni());
}

TEST(FaseDiScansione, A_disc_that_was_passed_over_is_never_the_empty_source_of_a_mirror) {
  for (const bool tryNext : {false, true}) {
    Pass pass;
    pass.tryNext(tryNext);
    pass.work().write("silent.iso", "");
    pass.drives("K: = cdrom " + pass.work().host("silent.iso") + "\n");
    pass.profile = test::SyncProfile::mirroring("K:\\", pass.program("one"));
    pass.scan();
    EXPECT_FALSE(pass.window->CiSonoOperazioni());
    EXPECT_EQ(pass.notices(), Texts{Messaggio(435)});
    EXPECT_TRUE(pass.work().exists("one/a"));
  }
}

TEST(FaseDiScansione, A_disc_that_was_passed_over_may_be_the_empty_destination) {
  Pass pass;
  pass.work().write("silent.iso", "");
  pass.drives("K: = cdrom " + pass.work().host("silent.iso") + "\n");
  pass.profile = test::SyncProfile::mirroring(pass.program("one"), "K:\\");
  pass.scan();
  EXPECT_EQ(test::plannedOperations(), Texts{"missing " + pass.program("one") + "\\a -> K:\\a"});
}

// --- the lists, the pointer, the memory

TEST(FaseDiScansione, The_lists_are_emptied_hidden_while_they_fill_and_shown_again) {
  Pass pass;
  ListScreen screen;
  pass.scan();
  const Texts expected{"empty",
                       "info 0",
                       "info 1",
                       "header 0 '" + Messaggio(73) + "'",
                       "header 1 '" + Messaggio(73) + "'",
                       "hide",
                       "row 1",
                       "header 0 ''",
                       "header 1 ''",
                       "show"};
  EXPECT_EQ(screen.calls, expected);
}

TEST(FaseDiScansione, After_a_stop_of_the_comparison_the_lists_are_empty) {
  Pass pass;
  pass.file("one/b", "b");
  ListScreen screen;
  screen.onEvents = [] {
    if (FormCaricato("FrmProgressBar") && !ArrayTrasferimento.Vuota()) AnnullaOperazioneInCorso();
  };
  pass.scan();
  screen.onEvents = nullptr;
  EXPECT_TRUE(screen.rows.empty());
  EXPECT_EQ(screen.calls.back(), "empty");
}

TEST(FaseDiScansione, Behind_the_comparison_the_scan_has_given_its_memory_back) {
  Pass pass;
  for (int i = 0; i < 100; ++i) pass.file("one/many/" + std::to_string(i), "x");
  std::weak_ptr<DepositoNomi> scanned;
  pass.whenScanned(0, 50, [&scanned] { scanned = ArrayScansione.DepositoCondiviso(); });
  pass.scan();
  EXPECT_TRUE(scanned.expired());
  EXPECT_EQ(ArrayScansione.Colonne(), 2U);
  EXPECT_EQ(ArrayScansione.Righe(0) + ArrayScansione.Righe(1), 0U);
  EXPECT_EQ(ArrayTrasferimento.Numero(), 101U);
  EXPECT_EQ(ArrayTrasferimento[0].Sorgente.Percorso(), pass.program("one") + "\\a");
}

TEST(FaseDiScansione, ResettaGliArray_leaves_one_empty_column_a_path_and_nothing_to_do) {
  Pass pass;
  pass.scan();
  ASSERT_TRUE(pass.window->CiSonoOperazioni());
  pass.window->ResettaGliArray();
  EXPECT_FALSE(pass.window->CiSonoOperazioni());
  EXPECT_EQ(ArrayScansione.Colonne(), 2U);
  EXPECT_EQ(ArrayScansione.Righe(0), 0U);
}

// --- "Scan" of the menu

TEST(OpScansione, Paths_that_cannot_be_reached_are_told_logged_and_not_scanned) {
  Pass pass;
  pass.profile.paths[1] = pass.program("gone");
  pass.saveProfile();
  FrmTandemize window;
  window.ErroreInCorso = true;
  window.op_Scansione();
  EXPECT_FALSE(window.ErroreInCorso);
  ASSERT_EQ(pass.boxes().size(), 1U);
  EXPECT_NE(pass.boxes()[0].find(pass.program("gone")), std::string::npos);
  EXPECT_EQ(pass.logLines(), (Texts{"", Messaggio(283), ""}));
}

TEST(OpScansione, Otherwise_the_lists_are_made_anew_an_open_notice_is_closed_and_the_pass_runs) {
  Pass pass;
  ListScreen screen;
  pass.saveProfile();
  FrmTandemize window;
  screen.balloonsStay = screen.balloonOpen = true;
  window.op_Scansione();
  EXPECT_FALSE(screen.balloonOpen);
  EXPECT_EQ(Texts(screen.calls.begin(), screen.calls.begin() + 4),
            (Texts{"make", "info 0", "info 1", "empty"}));
  EXPECT_TRUE(window.CiSonoOperazioni());
}

}  // namespace
}  // namespace tandemize
