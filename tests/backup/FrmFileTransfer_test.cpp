#include "backup/FrmFileTransfer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "backup/BackupRun.h"
#include "fixtures/NestingScreen.h"
#include "profile/ModuloProfilo.h"
#include "shell/Formati.h"
#include "storage/Unita.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::addTransfer;
using test::BackupFolder;

// Transfers by hand between the work folders "from" and "to".
class Transfers : public BackupFolder {
 public:
  Transfers() {
    work().makeFolder("from");
    work().makeFolder("to");
    ArrayTrasferimento.Svuota();
    ArrayScansione.Azzera(0);
  }
  ~Transfers() { forgetHooks(); }

  // A file of that name and content in "from", to be copied to "to".
  RecordOperazione& file(const std::string& name, const std::string& content) {
    work().write("from/" + name, content);
    return transfer(name, static_cast<double>(content.size()));
  }
  RecordOperazione& transfer(const std::string& name, double size = 1) {
    return addTransfer(program("from/" + name), program("to/" + name), size);
  }
  bool init(std::uint8_t mode = 0, bool saveList = false, bool incremental = false) {
    return window().Init(mode, saveList, incremental);
  }
  FrmFileTransfer& window() {
    if (!window_) window_ = std::make_unique<FrmFileTransfer>();
    return *window_;
  }
  [[nodiscard]] std::string copied(const std::string& name) { return work().read("to/" + name); }
  [[nodiscard]] std::vector<std::string> copyLines(const std::string& name, bool good = true) const {
    std::vector<std::string> lines{"| " + Messaggio(188) + "  '" + program("from/" + name) + "' to '" +
                                   program("to/" + name) + "'"};
    if (good) lines.insert(lines.end(), {"| - OK -", ""});
    return lines;
  }
  [[nodiscard]] std::vector<std::string> boxes() const { return test::boxTexts(screen); }

 private:
  std::unique_ptr<FrmFileTransfer> window_;
};

std::size_t characters(const std::string& text) {
  return LunghezzaInCaratteri(text);
}

TEST(FrmFileTransfer, A_run_copies_the_list_and_logs_each_file_to_the_letter) {
  Transfers t;
  t.file("a", "one");
  t.file("b", "two");
  EXPECT_TRUE(t.init());
  EXPECT_EQ(t.copied("a") + t.copied("b"), "onetwo");
  EXPECT_EQ(t.logLines(), test::joined({test::bannerLines(Messaggio(175), characters(Messaggio(175))),
                                        t.copyLines("a"), t.copyLines("b")}));
}

TEST(FrmFileTransfer, A_list_of_one_record_runs_once) {
  Transfers t;
  t.file("a", "one");
  EXPECT_TRUE(t.init());
  EXPECT_EQ(t.screen.lastTransfer.fileCopiati, 1);
  EXPECT_EQ(t.screen.lastTransfer.fileTotali, 1);
}

TEST(FrmFileTransfer, The_labels_name_source_and_destination) {
  Transfers t;
  t.file("a", "one");
  EXPECT_TRUE(t.init());
  EXPECT_EQ(t.window().Stato().titolo, Messaggio(388));
  EXPECT_EQ(t.window().Stato().sorgente, Messaggio(188) + " => " + t.program("from/a"));
  EXPECT_EQ(t.window().Stato().destinazione, Messaggio(194) + "      => " + t.program("to/a"));
}

TEST(FrmFileTransfer, Bytes_and_files_are_counted_up_to_their_totals) {
  Transfers t;
  Advance_Buf_Local = 1;
  t.file("a", std::string(2500, 'x'));
  t.file("empty", "");
  t.file("b", std::string(100, 'x'));
  std::vector<double> bytes;
  t.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (bytes.empty() || bytes.back() != state.byteCopiati) bytes.push_back(state.byteCopiati);
    EXPECT_EQ(state.byteTotali, 2600);
    EXPECT_EQ(state.fileTotali, 3);
  };
  EXPECT_TRUE(t.init());
  EXPECT_EQ(bytes, (std::vector<double>{0, 1024, 2048, 2500, 2600}));
  EXPECT_EQ(t.screen.lastTransfer.fileCopiati, 3);
  EXPECT_EQ(t.screen.lastTransfer.trasferiti, Messaggio(186) + " 3/3 KB (3/3 Files)");
  EXPECT_FALSE(t.screen.lastTransfer.visibile);
}

TEST(FrmFileTransfer, The_buffer_of_the_network_counts_when_either_side_is_a_share) {
  for (const bool fromShare : {false, true}) {
    Transfers t;
    t.drives("\\\\nas\\photos = " + t.work().host("to") + "\n");
    Advance_Buf_Local = 1;
    Advance_Buf_Lan = 2;
    t.work().write("from/a", std::string(4096, 'x'));
    t.work().write("to/b", std::string(4096, 'x'));
    fromShare ? addTransfer("\\\\nas\\photos\\b", t.program("from/b"), 4096)
              : addTransfer(t.program("from/a"), "\\\\nas\\photos\\a", 4096);
    std::vector<double> bytes;
    t.screen.onTransfer = [&](const StatoTrasferimento& state) {
      if (bytes.empty() || bytes.back() != state.byteCopiati) bytes.push_back(state.byteCopiati);
    };
    EXPECT_TRUE(t.init());
    EXPECT_EQ(bytes, (std::vector<double>{0, 2048, 4096})) << fromShare;
  }
}

TEST(FrmFileTransfer, A_buffer_of_zero_counts_as_its_default) {
  Transfers t;
  Advance_Buf_Local = 0;
  t.file("a", std::string(100'000, 'x'));
  int updates = 0;
  t.screen.onTransfer = [&](const StatoTrasferimento& state) { updates += state.byteCopiati > 0 ? 1 : 0; };
  EXPECT_TRUE(t.init());
  EXPECT_EQ(t.copied("a").size(), 100'000U);
  EXPECT_LE(updates, 4);
}

// --- the end

TEST(FrmFileTransfer, The_closing_text_tells_the_outcome) {
  const struct {
    EsitoTrasferimento outcome;
    int message;
  } cases[] = {{EsitoTrasferimento::Nessuno, 189},
               {EsitoTrasferimento::Annullato, 190},
               {EsitoTrasferimento::ErroreSuperato, 191},
               {EsitoTrasferimento::FileFallito, 427}};
  for (const auto& c : cases) {
    for (const bool hidden : {false, true}) {
      Transfers t;
      ApplicazioneNascosta = hidden;
      t.window().EsitoCopia = c.outcome;
      t.window().FineTrasferimento();
      EXPECT_EQ(TrasferimentoRiuscito, c.outcome == EsitoTrasferimento::Nessuno);
      EXPECT_EQ(hidden ? test::balloonTexts(t.screen) : t.boxes(),
                std::vector<std::string>{Messaggio(c.message)});
      EXPECT_TRUE((hidden ? t.boxes() : test::balloonTexts(t.screen)).empty());
      if (!hidden) {
        EXPECT_EQ(t.screen.boxes[0].style, StileInformazione);
      }
    }
  }
}

TEST(FrmFileTransfer, The_lists_are_empty_after_a_run) {
  Transfers t;
  t.file("a", "one");
  EXPECT_TRUE(t.init());
  EXPECT_TRUE(ArrayTrasferimento.Vuota());
  EXPECT_FALSE(t.window().Visible);
}

// --- before the first copy

TEST(ControllaDestinazioni, Each_root_is_asked_once) {
  Transfers t;
  t.work().makeFolder("share");
  t.drives("D: = fixed " + t.work().host("to") + "\n\\\\nas\\photos = " + t.work().host("share") + "\n");
  for (const char* destination :
       {"D:\\a", "D:\\x\\b", "\\\\nas\\photos\\c", "\\\\nas\\photos\\x\\d", "C:\\e"})
    addTransfer("C:\\s", destination);
  std::vector<RigaPercorso> roots;
  EXPECT_EQ(t.window().ControllaDestinazioni(roots), 0);
  std::vector<std::string> paths;
  for (const RigaPercorso& root : roots) paths.push_back(root.percorso);
  EXPECT_EQ(paths, (std::vector<std::string>{"D:", "\\\\nas\\photos\\", "C:"}));
}

TEST(ControllaDestinazioni, The_root_of_a_server_is_not_asked_here) {
  Transfers t;
  addTransfer("C:\\s", "/backup/a");
  std::vector<RigaPercorso> roots;
  EXPECT_EQ(t.window().ControllaDestinazioni(roots), 0);
  EXPECT_TRUE(roots.empty());
}

TEST(ControllaDestinazioni, A_root_that_cannot_be_reached_is_told_and_nothing_is_copied) {
  for (const bool hidden : {false, true}) {
    Transfers t;
    ApplicazioneNascosta = hidden;
    t.drives("J: = removable " + t.work().host("gone") + "\n");
    t.file("a", "one");
    addTransfer(t.program("from/a"), "J:\\a", 3);
    EXPECT_FALSE(t.init());
    EXPECT_EQ(t.copied("a"), "");
    EXPECT_EQ(t.boxes().size(), hidden ? 0U : 1U);
    EXPECT_EQ(t.screen.balloons.size(), hidden ? 1U : 0U);
    EXPECT_EQ(test::countLinesWith(t.logLines(), t.program("from/a")), 0);
  }
}

TEST(ControllaDestinazioni,
     Names_of_computers_are_collected_for_the_shutdown_with_a_backslash_on_the_destinations_side) {
  Transfers t;
  Advance_ShutDownAll = 1;
  t.drives("\\\\nas\\photos = " + t.work().host("to") + "\n\\\\srv\\data = " + t.work().host("from") + "\n");
  addTransfer("\\\\srv\\data\\a", "\\\\nas\\photos\\a");
  addTransfer("\\\\srv\\data\\b", "\\\\nas\\photos\\b");
  addTransfer("C:\\c", "C:\\d");
  std::vector<RigaPercorso> roots;
  EXPECT_EQ(t.window().ControllaDestinazioni(roots), 0);
  EXPECT_EQ(t.window().PcDaSpegnere(), (std::vector<std::string>{"srv", "nas\\"}));
}

TEST(ControllaDestinazioni, No_names_are_collected_without_the_setting) {
  Transfers t;
  Advance_ShutDownAll = 0;
  t.drives("\\\\nas\\photos = " + t.work().host("to") + "\n");
  addTransfer("\\\\nas\\photos\\a", "\\\\nas\\photos\\b");
  std::vector<RigaPercorso> roots;
  EXPECT_EQ(t.window().ControllaDestinazioni(roots), 0);
  EXPECT_TRUE(t.window().PcDaSpegnere().empty());
}

double roomFor(const Transfers& t) {
  struct statvfs space = {};
  ::statvfs(const_cast<Transfers&>(t).work().host().c_str(), &space);
  return static_cast<double>(space.f_bavail) * static_cast<double>(space.f_frsize);
}

TEST(ControllaSpazio, Too_little_room_is_told_with_both_amounts_and_nothing_is_copied) {
  constexpr double needed = 4e15;
  for (const bool hidden : {false, true}) {
    Transfers t;
    ASSERT_LT(roomFor(t), needed);
    ApplicazioneNascosta = hidden;
    t.file("a", "one").Sorgente.Dimensione = needed;
    EXPECT_FALSE(t.init());
    EXPECT_FALSE(t.work().exists("to/a"));
    const std::vector<std::string> texts = hidden ? test::balloonTexts(t.screen) : t.boxes();
    ASSERT_EQ(texts.size(), 1U);
    const std::string start = Messaggio(176) + "\r\r" + Messaggio(177) + " 'C:' " + Messaggio(178) + " ";
    const std::string end =
        " " + Messaggio(179) + " " + Messaggio(180) + " " + FormattaMigliaia(needed) + " " + Messaggio(181);
    EXPECT_EQ(texts[0].substr(0, start.size()), start);
    ASSERT_GT(texts[0].size(), end.size());
    EXPECT_EQ(texts[0].substr(texts[0].size() - end.size()), end);
    EXPECT_TRUE((hidden ? t.boxes() : test::balloonTexts(t.screen)).empty());
  }
}

TEST(ControllaSpazio, What_is_needed_is_the_sum_of_what_the_destinations_lack) {
  constexpr double more = 1e15;
  const struct {
    double source, destination;
    bool enough;
  } cases[] = {{more, more, true}, {more, 0, false}, {more, more - 5, true}, {0, 0, true}};
  for (const auto& c : cases) {
    Transfers t;
    RecordOperazione& record = t.file("a", "one");
    record.Sorgente.Dimensione = c.source;
    record.Destinazione.Dimensione = c.destination;
    EXPECT_EQ(t.window().ControllaSpazio(), c.enough) << c.source << " " << c.destination;
  }
}

TEST(ControllaSpazio, A_destination_that_gets_smaller_makes_room_for_another) {
  Transfers t;
  RecordOperazione& shrinking = t.file("a", "one");
  shrinking.Sorgente.Dimensione = 0;
  shrinking.Destinazione.Dimensione = 1e15;
  t.file("b", "one").Sorgente.Dimensione = 1e15;
  EXPECT_TRUE(t.window().ControllaSpazio());
}

TEST(FrmFileTransfer, Without_a_writable_log_the_run_stops_before_it_copies) {
  for (const bool hidden : {false, true}) {
    Transfers t;
    ApplicazioneNascosta = hidden;
    t.home().makeFolder("LogFile1.txt");
    t.file("a", "one");
    EXPECT_FALSE(t.init());
    EXPECT_FALSE(t.work().exists("to/a"));
    EXPECT_EQ(t.boxes().size() + t.screen.balloons.size(), 1U);
  }
}

// --- the loop

TEST(TrasferisciFile, Missing_destination_folders_are_made) {
  Transfers t;
  t.work().write("from/x/y/a", "one");
  addTransfer(t.program("from/x/y/a"), t.program("to/x/y/a"), 3);
  EXPECT_TRUE(t.init());
  EXPECT_EQ(t.copied("x/y/a"), "one");
}

TEST(TrasferisciFile, A_failed_file_does_not_end_the_run_with_or_without_try_next) {
  for (const bool tryNext : {false, true}) {
    Transfers t;
    Errors_Try_Next = tryNext;
    t.transfer("gone");
    t.file("b", "two");
    t.init();
    EXPECT_EQ(t.window().EsitoCopia, EsitoTrasferimento::FileFallito);
    EXPECT_EQ(t.copied("b"), "two");
    EXPECT_EQ(t.boxes(), std::vector<std::string>{Messaggio(427)});
    EXPECT_FALSE(TrasferimentoRiuscito);
  }
}

TEST(TrasferisciFile, The_log_of_a_failed_file_is_its_line_and_an_error_block) {
  Transfers t;
  t.transfer("gone");
  t.init();
  std::vector<std::string> lines = t.logLines();
  ASSERT_EQ(lines.size(), 8U);
  EXPECT_EQ(lines[4], t.copyLines("gone", false)[0]);
  EXPECT_EQ(lines[5] + lines[7], "");
  EXPECT_EQ(lines[6].find("FaseAperturaFile = 0"), 0U) << lines[6];
}

TEST(TrasferisciFile, A_file_that_vanished_after_the_planning_is_not_counted_as_begun) {
  Transfers t;
  t.transfer("gone");
  t.file("b", "two");
  t.init();
  EXPECT_EQ(t.screen.lastTransfer.fileCopiati, 1);
}

TEST(TrasferisciFile, A_list_that_shrinks_ends_the_loop_cleanly) {
  Transfers t;
  for (const char* name : {"a", "b", "c", "d"}) t.file(name, name);
  t.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.fileCopiati == 2) ArrayTrasferimento.Accorcia(2);
  };
  EXPECT_TRUE(t.init());
  EXPECT_EQ(t.copied("a") + t.copied("b"), "ab");
  EXPECT_FALSE(t.work().exists("to/c"));
}

TEST(TrasferisciFile, A_saved_list_gets_a_line_for_each_file_the_failed_ones_too) {
  Transfers t;
  t.file("a", "12345");
  t.transfer("gone", 9);
  for (std::size_t i = 0; i < 2; ++i) ArrayTrasferimento[i].Sorgente.Data = 1'000'000'000;
  t.init(0, true, false);
  const std::string date = "#_#_#" + test::dateText(1'000'000'000) + "#_#_#";
  EXPECT_EQ(t.home().read("FilesList.Dat"),
            t.program("from/a") + date + "5\r\n" + t.program("from/gone") + date + "9\r\n");
}

TEST(TrasferisciFile, A_list_of_saved_files_starts_anew_or_is_added_to) {
  for (const bool incremental : {false, true}) {
    Transfers t;
    t.home().write("FilesList.Dat", "old\r\n");
    t.file("a", "1");
    EXPECT_TRUE(t.init(0, true, incremental));
    const std::string list = t.home().read("FilesList.Dat");
    EXPECT_EQ(list.find("old\r\n") == 0, incremental) << list;
    EXPECT_NE(list.find(t.program("from/a")), std::string::npos);
  }
}

TEST(TrasferisciFile, Without_the_wish_for_a_list_none_is_touched) {
  Transfers t;
  t.home().write("FilesList.Dat", "old\r\n");
  t.file("a", "1");
  EXPECT_TRUE(t.init(0, false, false));
  EXPECT_EQ(t.home().read("FilesList.Dat"), "old\r\n");
}

TEST(TrasferisciFile, The_copies_have_the_attributes_that_the_scan_saw) {
  const struct {
    std::int32_t seen;
    mode_t source, copy;
  } cases[] = {{33, 0444, 0444}, {32, 0644, 0644}, {33, 0644, 0444}, {0, 0444, 0444}, {0, 0644, 0644}};
  for (const auto& c : cases) {
    Transfers t;
    t.file("a", "1").Sorgente.Attributi = c.seen;
    ASSERT_EQ(::chmod(t.work().host("from/a").c_str(), c.source), 0);
    EXPECT_TRUE(t.init());
    struct stat entry = {};
    ASSERT_EQ(::stat(t.work().host("to/a").c_str(), &entry), 0);
    EXPECT_EQ(entry.st_mode & 07777U, c.copy) << c.seen << " " << c.source;
  }
}

TEST(TrasferisciFile, A_log_that_breaks_during_the_run_stops_it_before_the_next_copy) {
  Transfers t;
  Errors_Alert_Mode = 1;
  t.file("a", "1");
  t.file("b", "2");
  t.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.fileCopiati != 1 || !t.home().exists("LogFile1.txt") ||
        fs::is_directory(t.home().host("LogFile1.txt")))
      return;
    fs::remove(t.home().host("LogFile1.txt"));
    t.home().makeFolder("LogFile1.txt");
  };
  t.init();
  EXPECT_FALSE(t.work().exists("to/b"));
  EXPECT_NE(t.window().EsitoCopia, EsitoTrasferimento::Nessuno);
  EXPECT_FALSE(t.boxes().empty());
}

TEST(TrasferisciFile, A_file_whose_own_log_line_cannot_be_written_is_not_copied) {
  Transfers t;
  t.file("a", "1");
  t.file("b", "2");
  // Between the end of one record and the first line of the next.
  bool broken = false;
  t.screen.onEvents = [&] {
    if (broken || t.log().find("- OK -") == std::string::npos) return;
    broken = true;
    fs::remove(t.home().host("LogFile1.txt"));
    t.home().makeFolder("LogFile1.txt");
  };
  t.init();
  EXPECT_EQ(t.copied("a"), "1");
  EXPECT_FALSE(t.work().exists("to/b"));
  EXPECT_NE(t.window().EsitoCopia, EsitoTrasferimento::Nessuno);
}

TEST(TrasferisciFile, Leftovers_of_a_crash_are_cleared_and_those_of_a_living_process_stay) {
  Transfers t;
  t.file("a", "1");
  t.work().write("to/.~tandemize-99-1.part", "dead");
  t.work().write("to/.~tandemize-99-2.part", "alive");
  t.work().write("to/.~tandemize-99-3.txt", "the user's own");
  const int held = ::open(t.work().host("to/.~tandemize-99-2.part").c_str(), O_RDWR);
  ASSERT_EQ(::flock(held, LOCK_EX), 0);
  EXPECT_TRUE(t.init());
  ::close(held);
  EXPECT_FALSE(t.work().exists("to/.~tandemize-99-1.part"));
  EXPECT_TRUE(t.work().exists("to/.~tandemize-99-2.part"));
  EXPECT_TRUE(t.work().exists("to/.~tandemize-99-3.txt"));
}

// --- a stop

TEST(Annulla, A_confirmed_stop_ends_the_run_and_the_log_says_so) {
  Transfers t;
  for (const char* name : {"a", "b", "c"}) t.file(name, name);
  t.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.fileCopiati == 1) AnnullaOperazioneInCorso();
  };
  t.init();
  EXPECT_EQ(t.window().EsitoCopia, EsitoTrasferimento::Annullato);
  EXPECT_FALSE(t.work().exists("to/b"));
  EXPECT_FALSE(t.work().exists("to/c"));
  const std::vector<std::string> lines = t.logLines();
  ASSERT_GE(lines.size(), 2U);
  // Told by the question's own rule and once more as the window closes.
  EXPECT_EQ(test::countLinesWith(lines, "| - " + Messaggio(329) + " -"), 2);
  EXPECT_EQ(lines[lines.size() - 2], "| - " + Messaggio(329) + " -");
  EXPECT_EQ(t.boxes(), std::vector<std::string>{Messaggio(190)});
  EXPECT_FALSE(TrasferimentoRiuscito);
}

TEST(Annulla, The_cancel_button_asks_first_and_no_goes_on) {
  for (const Risposta answer : {Risposta::Sì, Risposta::No}) {
    Transfers t;
    for (const char* name : {"a", "b"}) t.file(name, name);
    t.screen.answers = {answer};
    bool asked = false;
    t.screen.onTransfer = [&](const StatoTrasferimento& state) {
      if (state.fileCopiati != 1 || asked) return;
      asked = true;
      t.window().Annulla(false);
    };
    t.init();
    ASSERT_FALSE(t.screen.boxes.empty());
    EXPECT_EQ(t.screen.boxes[0].text, Messaggio(326));
    EXPECT_EQ(t.screen.boxes[0].style, StileSìNo);
    const bool stopped = answer == Risposta::Sì;
    EXPECT_EQ(t.window().EsitoCopia, stopped ? EsitoTrasferimento::Annullato : EsitoTrasferimento::Nessuno);
    EXPECT_EQ(t.copied("b"), stopped ? "" : "b");
    EXPECT_EQ(t.boxes().back(), Messaggio(stopped ? 190 : 189));
  }
}

// Stops the run by its button behind the first file, with `meanwhile` happening while the question is up.
EsitoTrasferimento stoppedTransfer(Transfers& t, test::NestingScreen& screen,
                                   const std::function<void()>& meanwhile) {
  for (const char* name : {"a", "b"}) t.file(name, name);
  bool asked = false;
  screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.fileCopiati != 1 || asked) return;
    asked = true;
    screen.onBox = meanwhile;
    t.window().Annulla(false);
  };
  t.init();
  return t.window().EsitoCopia;
}

TEST(Annulla, While_the_question_is_up_no_second_one_is_asked) {
  for (const Risposta answer : {Risposta::Sì, Risposta::No}) {
    Transfers t;
    test::NestingScreen screen;
    screen.answers = {answer, answer == Risposta::Sì ? Risposta::No : Risposta::Sì};
    const EsitoTrasferimento outcome = stoppedTransfer(t, screen, [&] { t.window().Annulla(false); });
    const bool stopped = answer == Risposta::Sì;
    EXPECT_EQ(outcome, stopped ? EsitoTrasferimento::Annullato : EsitoTrasferimento::Nessuno);
    EXPECT_EQ(t.copied("b"), stopped ? "" : "b");
    EXPECT_EQ(test::countLinesWith(test::boxTexts(screen), Messaggio(326)), 1);
    EXPECT_EQ(test::countLinesWith(t.logLines(), "| - " + Messaggio(329) + " -"), stopped ? 2 : 0);
  }
}

TEST(Annulla, A_no_does_not_undo_a_stop_signal_that_came_while_the_question_was_up) {
  Transfers t;
  test::NestingScreen screen;
  screen.answers = {Risposta::No};
  EXPECT_EQ(stoppedTransfer(t, screen, [] { AnnullaOperazioneInCorso(); }), EsitoTrasferimento::Annullato);
  EXPECT_TRUE(t.window().ProcessoAnnullato);
  EXPECT_EQ(t.copied("b"), "");
  EXPECT_EQ(test::countLinesWith(t.logLines(), "| - " + Messaggio(329) + " -"), 2);
}

TEST(Annulla, A_no_does_not_undo_a_stop_by_another_window_of_the_operation) {
  Transfers t;
  test::NestingScreen screen;
  screen.answers = {Risposta::No};
  EXPECT_EQ(stoppedTransfer(t, screen, [&] { t.window().ProcessoAnnullato = true; }),
            EsitoTrasferimento::Annullato);
  EXPECT_EQ(t.copied("b"), "");
}

TEST(Annulla, A_stopped_file_gets_no_line_in_the_list) {
  Transfers t;
  t.file("a", "1");
  t.file("b", "2");
  t.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.fileCopiati == 2) AnnullaOperazioneInCorso();
  };
  t.init(0, true, false);
  const std::string list = t.home().read("FilesList.Dat");
  EXPECT_NE(list.find(t.program("from/a")), std::string::npos);
  EXPECT_EQ(list.find(t.program("from/b")), std::string::npos);
}

// --- a synchronisation's records

TEST(Synchronisation, A_file_that_is_there_is_asked_about_when_the_setting_says_so) {
  const struct {
    std::int32_t option;
    std::uint8_t mode;
    bool there, asked;
  } cases[] = {{1, 1, true, true},
               {1, 1, false, false},
               {2, 1, true, false},
               {0, 1, true, false},
               {1, 0, true, false}};
  for (const auto& c : cases) {
    Transfers t;
    FixFileOption = c.option;
    t.file("a", "new");
    if (c.there) t.work().write("to/a", "old");
    t.screen.answers = {c.asked ? Risposta::Sì : Risposta::Ok};
    t.init(c.mode);
    EXPECT_EQ(t.copied("a"), "new");
    const std::string question = Messaggio(192) + " '" + t.program("to/a") + "'\r\r" + Messaggio(193) + " '" +
                                 t.program("from/a") + "' ?";
    EXPECT_EQ(t.screen.boxes[0].text == question, c.asked) << c.option << c.there;
    EXPECT_EQ(t.screen.boxes[0].style, c.asked ? StileSìNoAnnulla : StileInformazione);
  }
}

TEST(Synchronisation, No_skips_one_file_and_cancel_asks_no_more) {
  Transfers t;
  FixFileOption = 1;
  for (const char* name : {"a", "b", "c"}) {
    t.file(name, "new");
    t.work().write(std::string("to/") + name, "old");
  }
  t.screen.answers = {Risposta::No, Risposta::Annulla};
  t.init(1);
  EXPECT_EQ(t.copied("a"), "old");
  EXPECT_EQ(t.copied("b"), "new");
  EXPECT_EQ(t.copied("c"), "new");
  EXPECT_EQ(FixFileOption, 2);
  EXPECT_EQ(t.boxes().size(), 3U);
}

RecordOperazione& deletion(Transfers& t, const std::string& name) {
  RecordOperazione& record = t.transfer(name, 3);
  record.Sorgente.DaEliminare = true;
  return record;
}

TEST(Synchronisation, A_record_to_be_deleted_deletes_its_source) {
  Transfers t;
  EraseFile = 1;
  t.work().write("from/a", "old");
  t.work().write("from/kept", "x");
  deletion(t, "a");
  EXPECT_TRUE(t.init(1));
  EXPECT_FALSE(t.work().exists("from/a"));
  EXPECT_FALSE(t.work().exists("to/a"));
  EXPECT_EQ(t.window().EsitoCopia, EsitoTrasferimento::Nessuno);
  EXPECT_EQ(test::countLinesWith(t.logLines(), "| Deleting File '" + t.program("from/a") + "'"), 1);
  EXPECT_EQ(t.window().Stato().destinazione, "Eliminazione File => " + t.program("from/a"));
  EXPECT_EQ(t.window().Stato().sorgente, "");
  EXPECT_EQ(t.screen.lastTransfer.fileCopiati, 1);
  EXPECT_EQ(t.screen.lastTransfer.byteCopiati, 3);
}

TEST(Synchronisation, Without_the_setting_nothing_is_deleted) {
  Transfers t;
  EraseFile = 0;
  t.work().write("from/a", "old");
  deletion(t, "a");
  t.init(1);
  EXPECT_TRUE(t.work().exists("from/a"));
}

TEST(Synchronisation, A_deletion_that_fails_makes_the_outcome_a_failed_file_and_goes_on) {
  Transfers t;
  EraseFile = 1;
  t.work().write("from/b", "old");
  t.work().write("from/kept", "x");
  deletion(t, "gone");
  deletion(t, "b");
  t.init(1);
  EXPECT_EQ(t.window().EsitoCopia, EsitoTrasferimento::FileFallito);
  EXPECT_FALSE(t.work().exists("from/b"));
}

TEST(Synchronisation, Empty_folders_go_upward_as_long_as_their_counterparts_have_gone) {
  Transfers t;
  EraseFile = 1;
  t.work().write("from/keep", "x");
  t.work().write("from/x/y/z/a", "old");
  t.work().makeFolder("to/x");
  RecordOperazione& deletion = addTransfer(t.program("from/x/y/z/a"), t.program("to/x/y/z/a"), 3);
  deletion.Sorgente = test::recordOf(t.program("from/x/y/z/a"), 3, t.program("from"));
  deletion.Destinazione = test::recordOf(t.program("to/x/y/z/a"), 0, t.program("to"));
  deletion.Sorgente.DaEliminare = true;
  t.init(1);
  EXPECT_FALSE(t.work().exists("from/x/y"));
  EXPECT_TRUE(t.work().exists("from/x"));
  EXPECT_FALSE(t.work().exists("to/x/y"));
  EXPECT_EQ(test::countLinesWith(t.logLines(), "| Deleting Folder '" + t.program("from/x/y") + "'"), 1);
}

TEST(Synchronisation, A_folder_that_still_holds_something_stays) {
  Transfers t;
  EraseFile = 1;
  t.work().write("from/x/a", "old");
  t.work().write("from/x/b", "kept");
  addTransfer(t.program("from/x/a"), t.program("to/x/a"), 3).Sorgente.DaEliminare = true;
  t.init(1);
  EXPECT_EQ(t.work().read("from/x/b"), "kept");
}

TEST(Synchronisation, A_folder_whose_counterpart_is_there_stays_though_it_is_empty) {
  Transfers t;
  EraseFile = 1;
  t.work().write("from/x/a", "old");
  t.work().makeFolder("to/x");
  addTransfer(t.program("from/x/a"), t.program("to/x/a"), 3).Sorgente.DaEliminare = true;
  t.init(1);
  EXPECT_TRUE(t.work().exists("from/x"));
}

// --- attributes before a copy

TEST(RimuoviAttrPerLaCopia, Listed_values_lose_their_bits_and_others_stay) {
  const struct {
    const char* name;
    mode_t mode, after;
    std::uint8_t previous;  // 77: not written
  } cases[] = {{"plain", 0644, 0644, 77},
               {"plain", 0444, 0644, 33},
               {".hidden", 0644, 0644, 34},
               {".hidden", 0444, 0644, 35}};
  for (const auto& c : cases) {
    Transfers t;
    t.work().write(c.name, "x");
    ASSERT_EQ(::chmod(t.work().host(c.name).c_str(), c.mode), 0);
    std::uint8_t previous = 77;
    RimuoviAttrPerLaCopia(t.program(c.name), previous);
    struct stat entry = {};
    ASSERT_EQ(::stat(t.work().host(c.name).c_str(), &entry), 0);
    EXPECT_EQ(previous, c.previous) << c.name << c.mode;
    EXPECT_EQ((entry.st_mode & 0200U) != 0, (c.after & 0200U) != 0) << c.name << c.mode;
    EXPECT_EQ(t.log(), "");
  }
}

TEST(RimuoviAttrPerLaCopia, A_read_only_folder_is_not_in_the_table) {
  Transfers t;
  t.work().makeFolder("folder");
  ASSERT_EQ(::chmod(t.work().host("folder").c_str(), 0555), 0);
  std::uint8_t previous = 77;
  RimuoviAttrPerLaCopia(t.program("folder"), previous);
  struct stat entry = {};
  ASSERT_EQ(::stat(t.work().host("folder").c_str(), &entry), 0);
  EXPECT_EQ(entry.st_mode & 0777U, 0555U);
  EXPECT_EQ(previous, 77);
}

TEST(RimuoviAttrPerLaCopia, A_missing_file_is_told_in_the_log) {
  Transfers t;
  std::uint8_t previous = 77;
  RimuoviAttrPerLaCopia(t.program("none"), previous);
  const std::vector<std::string> lines = t.logLines();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].find("| Errore nella routine 'RimuoviAttrPerLaCopia' riga "), 0U) << lines[0];
  EXPECT_NE(lines[0].find(" errore numero 53 (" + TestoErroreRuntime(53) + ")"), std::string::npos)
      << lines[0];
  EXPECT_EQ(previous, 77);
}

}  // namespace
}  // namespace tandemize
