// One local copy: it appears whole or not at all, and whatever goes wrong is told.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>

#include "backup/BackupRun.h"
#include "fixtures/SmallDisc.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::BackupFolder;

constexpr std::int64_t KiB = 1024, MiB = 1024 * KiB;

std::string patterned(std::size_t size) {
  std::string text(size, '\0');
  for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>((i * 7 + i / 253) & 0xFF);
  return text;
}

class Copier : public BackupFolder {
 public:
  Copier() { work().makeFolder("to"); }
  ~Copier() { forgetHooks(); }

  // Copies work file "from" to "to/copy".
  bool copy(std::int64_t buffer = KiB) { return copy("from", "to/copy", buffer); }
  bool copy(const std::string& source, const std::string& destination, std::int64_t buffer = KiB) {
    return window().Copy_File(program(source), program(destination), buffer);
  }
  FrmFileTransfer& window() {
    if (!window_) window_ = std::make_unique<FrmFileTransfer>();
    return *window_;
  }
  [[nodiscard]] struct stat status(const std::string& name) {
    struct stat entry = {};
    EXPECT_EQ(::stat(work().host(name).c_str(), &entry), 0) << name;
    return entry;
  }
  [[nodiscard]] std::set<std::string> destinationNames() {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(work().host("to"))) names.insert(entry.path().filename());
    return names;
  }
  // The one error block of the log.
  [[nodiscard]] std::string reported() const {
    const std::vector<std::string> lines = logLines();
    EXPECT_EQ(lines.size(), 3U);
    return lines.size() == 3 && lines[0].empty() && lines[2].empty() ? lines[1] : "<no block>";
  }

 private:
  std::unique_ptr<FrmFileTransfer> window_;
};

using Names = std::set<std::string>;

TEST(Copy_File, Every_length_around_a_buffer_arrives_whole) {
  for (const std::int64_t buffer : {std::int64_t{1}, std::int64_t{7}, KiB, 100 * KiB, 1024 * MiB}) {
    const std::int64_t step = std::min<std::int64_t>(buffer, 150 * KiB);
    for (const std::int64_t size :
         {std::int64_t{0}, std::int64_t{1}, step - 1, step, step + 1, 2 * step, 3 * step + 7}) {
      if (size / std::min(buffer, MiB) > 4000) continue;
      Copier c;
      const std::string content = patterned(static_cast<std::size_t>(size));
      c.work().write("from", content);
      EXPECT_TRUE(c.copy(buffer));
      EXPECT_EQ(c.work().read("to/copy"), content) << buffer << " " << size;
      EXPECT_EQ(c.destinationNames(), Names{"copy"});
    }
  }
}

TEST(Copy_File, A_file_of_several_mebibytes_arrives_whole) {
  Copier c;
  const std::string content = patterned(5 * MiB + 3);
  c.work().write("from", content);
  EXPECT_TRUE(c.copy(1024 * MiB));
  EXPECT_TRUE(c.work().read("to/copy") == content);
}

TEST(Copy_File, A_good_copy_closes_its_log_line) {
  Copier c;
  c.work().write("from", "x");
  EXPECT_TRUE(c.copy());
  EXPECT_EQ(c.logLines(), (std::vector<std::string>{"| - OK -", ""}));
  EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::Nessuno);
}

TEST(Copy_File, The_copy_has_the_date_of_its_source) {
  for (const std::string content : {"", "x"}) {
    Copier c;
    c.work().write("from", content);
    const struct timespec times[2] = {{1000000000, 0}, {1111111111, 123456789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, c.work().host("from").c_str(), times, 0), 0);
    EXPECT_TRUE(c.copy());
    const struct stat from = c.status("from"), copy = c.status("to/copy");
    EXPECT_EQ(copy.st_mtim.tv_sec, 1111111111);
    EXPECT_EQ(copy.st_mtim.tv_nsec, from.st_mtim.tv_nsec);
  }
}

TEST(Copy_File, The_copy_has_the_permissions_of_its_source_but_never_another_users_rights) {
  const struct {
    mode_t source, copy;
  } cases[] = {{0644, 0644}, {0600, 0600}, {0755, 0755}, {0440, 0440},
               {0400, 0400}, {0666, 0666}, {04755, 0755}};
  for (const auto& c : cases) {
    Copier program;
    program.work().write("from", "x");
    ASSERT_EQ(::chmod(program.work().host("from").c_str(), c.source), 0);
    EXPECT_TRUE(program.copy());
    EXPECT_EQ(program.status("to/copy").st_mode & 07777U, c.copy);
  }
}

TEST(Copy_File, An_empty_source_leaves_an_empty_destination) {
  Copier c;
  c.work().write("from", "");
  c.work().write("to/copy", "old");
  EXPECT_TRUE(c.copy());
  EXPECT_EQ(c.status("to/copy").st_size, 0);
  EXPECT_EQ(c.logLines(), (std::vector<std::string>{"| - OK -", ""}));
}

TEST(Copy_File, A_longer_old_copy_leaves_nothing_behind) {
  Copier c;
  c.work().write("from", "new");
  c.work().write("to/copy", patterned(10000));
  EXPECT_TRUE(c.copy());
  EXPECT_EQ(c.work().read("to/copy"), "new");
}

TEST(Copy_File, A_read_only_old_copy_is_replaced) {
  Copier c;
  c.work().write("from", "new");
  c.work().write("to/copy", "old");
  ASSERT_EQ(::chmod(c.work().host("to/copy").c_str(), 0444), 0);
  EXPECT_TRUE(c.copy());
  EXPECT_EQ(c.work().read("to/copy"), "new");
  EXPECT_EQ(c.status("to/copy").st_mode & 07777U, 0644U);
}

TEST(Copy_File, The_source_is_never_changed) {
  Copier c;
  c.work().write("from", patterned(5000));
  ASSERT_EQ(::chmod(c.work().host("from").c_str(), 0444), 0);
  const struct stat before = c.status("from");
  EXPECT_TRUE(c.copy());
  const struct stat after = c.status("from");
  EXPECT_EQ(after.st_mode, before.st_mode);
  EXPECT_EQ(after.st_size, before.st_size);
  EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
  EXPECT_EQ(after.st_ctim.tv_sec, before.st_ctim.tv_sec);
  EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
}

TEST(Copy_File, A_link_is_copied_as_the_file_that_it_leads_to) {
  Copier c;
  c.work().write("real", "content");
  fs::create_symlink("real", c.work().host("from"));
  EXPECT_TRUE(c.copy());
  EXPECT_EQ(c.work().read("to/copy"), "content");
  EXPECT_FALSE(fs::is_symlink(c.work().host("to/copy")));
}

TEST(Copy_File, Until_it_is_whole_nothing_stands_under_its_name) {
  for (const bool replacing : {false, true}) {
    Copier c;
    c.work().write("from", patterned(10 * KiB));
    if (replacing) c.work().write("to/copy", "old");
    int looks = 0;
    c.screen.onTransfer = [&](const StatoTrasferimento& state) {
      if (state.byteCopiati == 0) return;
      ++looks;
      EXPECT_EQ(c.work().exists("to/copy"), replacing);
      if (replacing) {
        EXPECT_EQ(c.work().read("to/copy"), "old");
      }
    };
    EXPECT_TRUE(c.copy());
    EXPECT_GE(looks, 10);
    EXPECT_EQ(c.work().read("to/copy"), patterned(10 * KiB));
  }
}

TEST(Copy_File, The_source_can_be_read_by_others_meanwhile) {
  Copier c;
  c.work().write("from", patterned(10 * KiB));
  bool readable = false;
  c.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.byteCopiati > 0) readable = c.work().read("from").size() == 10 * KiB;
  };
  EXPECT_TRUE(c.copy());
  EXPECT_TRUE(readable);
}

// --- progress

TEST(Copy_File, Each_block_moves_the_bars) {
  Copier c;
  c.work().write("from", patterned(4 * KiB + 100));
  std::vector<double> bytes;
  c.screen.onTransfer = [&](const StatoTrasferimento& state) { bytes.push_back(state.byteCopiati); };
  EXPECT_TRUE(c.copy(KiB));
  EXPECT_EQ(bytes, (std::vector<double>{1024, 2048, 3072, 4096, 4196}));
  EXPECT_EQ(c.window().Stato().massimoFile, 100);
  EXPECT_EQ(c.window().Stato().valoreFile, 100);
}

TEST(Copy_File, A_multiple_of_the_buffer_ends_at_exactly_its_length) {
  Copier c;
  c.work().write("from", patterned(4 * KiB));
  double last = 0;
  c.screen.onTransfer = [&](const StatoTrasferimento& state) { last = state.byteCopiati; };
  EXPECT_TRUE(c.copy(KiB));
  EXPECT_EQ(last, 4096);
}

TEST(Copy_File, The_bar_of_the_file_shows_the_whole_percent_above_and_never_more_than_100) {
  Copier c;
  c.work().write("from", patterned(4 * KiB));
  std::vector<double> percents;
  double seen = -1;
  c.screen.onEvents = [&] {
    if (c.window().Stato().valoreFile == seen) return;
    seen = c.window().Stato().valoreFile;
    percents.push_back(seen);
  };
  EXPECT_TRUE(c.copy(KiB));
  EXPECT_EQ(percents, (std::vector<double>{0, 26, 51, 76}));
  EXPECT_EQ(c.window().Stato().valoreFile, 100);
}

// --- failures

TEST(Copy_File, A_missing_source_fails_before_anything_is_opened) {
  Copier c;
  c.work().write("to/copy", "old");
  EXPECT_FALSE(c.copy());
  EXPECT_EQ(c.reported().find("FaseAperturaFile = 0"), 0U) << c.reported();
  EXPECT_NE(c.reported().find(c.program("from")), std::string::npos);
  EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::FileFallito);
  EXPECT_EQ(c.work().read("to/copy"), "old");
}

TEST(Copy_File, A_pipe_in_the_place_of_the_source_is_never_waited_for) {
  Copier c;
  ASSERT_EQ(::mkfifo(c.work().host("from").c_str(), 0600), 0);
  EXPECT_FALSE(c.copy());
  EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::FileFallito);
  EXPECT_EQ(c.destinationNames(), Names{});
}

TEST(Copy_File, A_source_that_cannot_be_opened_is_a_reading_error) {
  Copier c;
  c.work().makeFolder("from");
  EXPECT_FALSE(c.copy());
  EXPECT_EQ(c.reported().find("==> Error While Reading File : " + c.program("from") + " ("), 0U)
      << c.reported();
  EXPECT_NE(c.reported().find("{ Err. N° "), std::string::npos) << c.reported();
  EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::FileFallito);
}

TEST(Copy_File, A_destination_that_cannot_be_made_is_a_writing_error) {
  Copier c;
  c.work().write("from", "x");
  EXPECT_FALSE(c.copy("from", "none/copy"));
  EXPECT_EQ(c.reported().find("==> Error While Writing File : " + c.program("none/copy") + " ("), 0U)
      << c.reported();
  EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::FileFallito);
}

TEST(Copy_File, A_folder_in_the_place_of_the_destination_stays) {
  Copier c;
  c.work().write("from", "x");
  c.work().write("to/copy/inside", "kept");
  EXPECT_FALSE(c.copy());
  EXPECT_EQ(c.reported().find("==> Error While Writing File : " + c.program("to/copy")), 0U) << c.reported();
  EXPECT_EQ(c.work().read("to/copy/inside"), "kept");
  EXPECT_EQ(c.destinationNames(), Names{"copy"});
}

TEST(Copy_File, A_pipe_in_the_place_of_the_destination_stays) {
  Copier c;
  c.work().write("from", "x");
  ASSERT_EQ(::mkfifo(c.work().host("to/copy").c_str(), 0600), 0);
  EXPECT_FALSE(c.copy());
  EXPECT_TRUE(fs::is_fifo(c.work().host("to/copy")));
}

TEST(Copy_File, A_source_that_shrinks_meanwhile_fails_and_leaves_the_old_copy) {
  for (const bool replacing : {false, true}) {
    Copier c;
    c.work().write("from", patterned(20 * KiB));
    if (replacing) c.work().write("to/copy", "old");
    c.screen.onTransfer = [&](const StatoTrasferimento& state) {
      if (state.byteCopiati == 5 * KiB) fs::resize_file(c.work().host("from"), 100);
    };
    EXPECT_FALSE(c.copy());
    EXPECT_EQ(c.reported().find("FaseAperturaFile = 3"), 0U) << c.reported();
    EXPECT_NE(c.reported().find(c.program("from")), std::string::npos);
    EXPECT_EQ(c.destinationNames(), replacing ? Names{"copy"} : Names{});
    if (replacing) {
      EXPECT_EQ(c.work().read("to/copy"), "old");
    }
    EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::FileFallito);
  }
}

TEST(Copy_File, A_big_source_that_shrinks_meanwhile_fails_too) {
  Copier c;
  c.work().write("from", patterned(4 * MiB));
  c.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.byteCopiati > 0) fs::resize_file(c.work().host("from"), 100);
  };
  EXPECT_FALSE(c.copy(1024 * MiB));
  EXPECT_EQ(c.destinationNames(), Names{});
}

TEST(Copy_File, A_source_that_vanishes_meanwhile_is_still_copied_whole) {
  Copier c;
  c.work().write("from", patterned(20 * KiB));
  c.screen.onTransfer = [&](const StatoTrasferimento&) { fs::remove(c.work().host("from")); };
  EXPECT_TRUE(c.copy());
  EXPECT_EQ(c.work().read("to/copy"), patterned(20 * KiB));
}

TEST(Copy_File, The_text_goes_to_the_log_and_is_alerted_at_once_only_when_the_settings_say_so) {
  const struct {
    std::uint8_t mode;
    bool hidden;
    std::size_t boxes, balloons;
  } cases[] = {{0, false, 1, 0}, {0, true, 0, 1}, {1, false, 0, 0}, {1, true, 0, 0}};
  for (const auto& c : cases) {
    Copier program;
    Errors_Alert_Mode = c.mode;
    ApplicazioneNascosta = c.hidden;
    EXPECT_FALSE(program.copy());
    const std::string text = program.reported();
    EXPECT_EQ(text.find("FaseAperturaFile = 0"), 0U);
    ASSERT_EQ(program.screen.boxes.size(), c.boxes);
    ASSERT_EQ(program.screen.balloons.size(), c.balloons);
    if (c.boxes == 1) {
      EXPECT_EQ(program.screen.boxes[0].text, text);
      EXPECT_EQ(program.screen.boxes[0].style, StileInformazione);
    }
    if (c.balloons == 1) {
      EXPECT_EQ(program.screen.balloons[0].testo, text);
    }
  }
}

TEST(Copy_File, Failed_files_are_kept_for_a_summary) {
  Copier c;
  EXPECT_FALSE(c.copy());
  EXPECT_EQ(c.window().NumeroFalliti, 1U);
  ASSERT_EQ(c.window().Falliti.size(), 1U);
  EXPECT_EQ(c.window().Falliti[0].percorso, c.program("from"));
}

TEST(Copy_File, A_failure_is_tried_once_only) {
  Copier c;
  Errors_Correction = 1;
  Errors_Repeat = 5;
  EXPECT_FALSE(c.copy());
  EXPECT_EQ(test::countLinesWith(c.logLines(), "Tetativo"), 0);
}

// --- a stop

TEST(Copy_File, A_stop_between_blocks_leaves_no_part_and_the_old_copy) {
  for (const bool replacing : {false, true}) {
    Copier c;
    c.work().write("from", patterned(20 * KiB));
    if (replacing) c.work().write("to/copy", "old");
    c.screen.onTransfer = [&](const StatoTrasferimento& state) {
      if (state.byteCopiati == 5 * KiB) c.window().Annulla(true);
    };
    c.copy();
    EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::Annullato);
    EXPECT_EQ(c.destinationNames(), replacing ? Names{"copy"} : Names{});
    if (replacing) {
      EXPECT_EQ(c.work().read("to/copy"), "old");
    }
    EXPECT_EQ(test::countLinesWith(c.logLines(), "- OK -"), 0);
    EXPECT_EQ(c.window().NumeroFalliti, 0U);
  }
}

TEST(Copy_File, A_stop_is_seen_between_blocks_of_a_big_file_however_large_the_buffer_is) {
  Copier c;
  c.work().write("from", patterned(8 * MiB));
  double moved = 0;
  c.screen.onTransfer = [&](const StatoTrasferimento& state) {
    moved = state.byteCopiati;
    if (moved > 0) c.window().Annulla(true);
  };
  c.copy(1024 * MiB);
  EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::Annullato);
  EXPECT_LE(moved, 2.0 * MiB);
  EXPECT_EQ(c.destinationNames(), Names{});
}

TEST(Copy_File, A_file_above_two_gigabytes_is_copied_like_any_other) {
  Copier c;
  c.work().write("from", "");
  fs::resize_file(c.work().host("from"), 2'000'000'001);
  double moved = 0;
  c.screen.onTransfer = [&](const StatoTrasferimento& state) {
    moved = state.byteCopiati;
    if (moved > 0) c.window().Annulla(true);
  };
  c.copy(1024 * MiB);
  EXPECT_GT(moved, 0);
  EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::Annullato);
  EXPECT_EQ(test::countLinesWith(c.logLines(), "Use Api CopyFile"), 0);
}

TEST(Copy_File, A_stop_at_the_last_block_still_counts) {
  Copier c;
  c.work().write("from", patterned(2 * KiB));
  c.screen.onTransfer = [&](const StatoTrasferimento& state) {
    if (state.byteCopiati == 2 * KiB) c.window().Annulla(true);
  };
  c.copy();
  EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::Annullato);
  EXPECT_EQ(c.destinationNames(), Names{});
}

// --- no room

TEST(Copy_File, On_a_full_disc_the_old_copy_stays_and_no_part_of_the_new_one) {
  Copier c;
  const std::string old = patterned(4 * KiB), fresh = patterned(500 * KiB);
  c.work().write("from", fresh);
  const auto body = [&](bool fill) {
    c.work().write("to/copy", old);
    if (fill) test::fillDisc(c.work().host("to/filler"));
    EXPECT_FALSE(c.copy(64 * KiB));
    EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::FileFallito);
    EXPECT_TRUE(c.work().read("to/copy") == old);
    EXPECT_EQ(c.destinationNames(), fill ? (Names{"copy", "filler"}) : Names{"copy"});
    EXPECT_TRUE(test::countLinesWith(c.logLines(), "FaseAperturaFile = 3") == 1 ||
                test::countLinesWith(c.logLines(), "==> Error While Writing File : ") == 1)
        << c.log();
    EXPECT_EQ(test::countLinesWith(c.logLines(), c.program("to/copy")), 1);
  };
  test::Attempt attempt = test::onSmallDisc(c.work().host("to"), 300, [&] { body(true); });
  if (attempt == test::Attempt::NotOffered)
    attempt = test::underFileSizeLimit(100 * KiB, [&] { body(false); });
  EXPECT_EQ(attempt, test::Attempt::Passed);
}

TEST(Copy_File, A_disc_that_fills_up_meanwhile_keeps_no_part) {
  Copier c;
  c.work().write("from", patterned(600 * KiB));
  const auto body = [&](bool fill) {
    c.screen.onTransfer = [&](const StatoTrasferimento& state) {
      if (fill && state.byteCopiati == 64 * KiB) test::fillDisc(c.work().host("to/filler"));
    };
    EXPECT_FALSE(c.copy(64 * KiB));
    EXPECT_FALSE(c.work().exists("to/copy"));
    EXPECT_EQ(c.destinationNames(), fill ? Names{"filler"} : Names{});
    EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::FileFallito);
  };
  test::Attempt attempt = test::onSmallDisc(c.work().host("to"), 1024, [&] { body(true); });
  if (attempt == test::Attempt::NotOffered)
    attempt = test::underFileSizeLimit(100 * KiB, [&] { body(false); });
  EXPECT_EQ(attempt, test::Attempt::Passed);
}

TEST(Copy_File, Without_room_for_both_copies_the_old_one_goes_first_and_the_log_says_so) {
  Copier c;
  Language = 1;
  const std::string old(700 * KiB, 'o'), fresh = patterned(700 * KiB);
  c.work().write("from", fresh);
  const auto body = [&](bool small) {
    c.work().write("to/copy", old);
    EXPECT_TRUE(c.copy(64 * KiB));
    EXPECT_EQ(c.window().EsitoCopia, EsitoTrasferimento::Nessuno);
    EXPECT_TRUE(c.work().read("to/copy") == fresh);
    EXPECT_EQ(c.destinationNames(), Names{"copy"});
    const std::vector<std::string> lines = c.logLines();
    EXPECT_EQ(test::countLinesWith(lines, c.program("to/copy")), small ? 1 : 0) << c.log();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], "| - OK -");
    EXPECT_EQ(c.window().Stato().byteCopiati, 700.0 * KiB);
  };
  test::Attempt attempt = test::onSmallDisc(c.work().host("to"), 1024, [&] { body(true); });
  if (attempt == test::Attempt::NotOffered)
    attempt = test::underFileSizeLimit(900 * KiB, [&] { body(false); });
  EXPECT_EQ(attempt, test::Attempt::Passed);
}

}  // namespace
}  // namespace tandemize
