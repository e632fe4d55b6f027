// A scan that does not see everything leads to nothing: no copy and no deletion, whatever the settings say.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <algorithm>

#include "fixtures/DeepTree.h"
#include "fixtures/SmallDisc.h"
#include "synchronisation/SyncRun.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::SyncFolder;

struct Settings {
  bool tryNext;
  int erase, sourceNotChange;
  std::size_t column;  // the path that fails
};

std::vector<Settings> allSettings() {
  std::vector<Settings> all;
  for (const bool tryNext : {false, true})
    for (const int erase : {0, 1})
      for (const int sourceNotChange : {0, 1})
        for (const std::size_t column : {0U, 1U}) all.push_back({tryNext, erase, sourceNotChange, column});
  return all;
}

std::string nameOf(const testing::TestParamInfo<Settings>& info) {
  const Settings& s = info.param;
  return std::string(s.tryNext ? "TryNext" : "Stop") + (s.erase != 0 ? "Erase" : "Keep") +
         (s.sourceNotChange != 0 ? "OneWay" : "BothWays") + std::to_string(s.column);
}

constexpr std::size_t FilesOnEachSide = 7;

// Two trees that agree in part: a run that sees all of both would copy, and with EraseFile delete.
class FailingScan : public testing::TestWithParam<Settings> {
 protected:
  FailingScan() {
    for (const char* side : {"one", "two"}) {
      const std::string root = side;
      folder_.file(root + "/a", "common");
      for (const char* sub : {"p", "q", "r"}) {
        folder_.file(root + "/" + sub + "/x", "common");
        folder_.file(root + "/" + sub + "/only in " + root, "only here");
      }
    }
    folder_.profile.EraseFile = GetParam().erase;
    folder_.profile.SourceNotChange = GetParam().sourceNotChange;
    folder_.tryNext(GetParam().tryNext);
  }

  [[nodiscard]] std::string side() const { return GetParam().column == 0 ? "one" : "two"; }
  // As soon as the failing path has shown so many files.
  void inMidScan(std::size_t rows, std::function<void()> fault) {
    folder_.whenScanned(GetParam().column, rows, std::move(fault));
  }
  // The run is refused, and both trees are as they were once `undo` has taken the fault away.
  void expectNothingTouched(const std::function<void()>& undo) {
    const std::string before = folder_.tree();
    const EsitoOperazione outcome = folder_.run();
    undo();
    EXPECT_EQ(outcome, EsitoOperazione::Rifiutato);
    EXPECT_EQ(folder_.tree(), before);
    EXPECT_TRUE(ArrayTrasferimento.Vuota());
    EXPECT_EQ(test::balloonTexts(folder_.screen).back(), Messaggio(435)) << folder_.log();
    const std::string path = folder_.profile.paths[GetParam().column];
    EXPECT_GE(test::countLinesWith(folder_.logLines(), Messaggio(274) + " '" + path + "'"), 1)
        << folder_.log();
  }
  void onDrive(const std::string& kind) {
    const std::string disc = folder_.work().host(side());
    if (kind == "share") {
      folder_.drives("\\\\nas\\data = " + disc + "\n");
      folder_.profile.paths[GetParam().column] = "\\\\nas\\data\\";
    } else {
      folder_.drives("K: = " + kind + " " + disc + "\n");
      folder_.profile.paths[GetParam().column] = "K:\\";
    }
  }

  SyncFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Of, FailingScan, testing::ValuesIn(allSettings()), nameOf);

TEST_P(FailingScan, A_folder_that_becomes_unreadable_in_mid_scan_leads_to_nothing) {
  const auto setRights = [this](fs::perms rights) {
    for (const char* sub : {"p", "q", "r"}) fs::permissions(folder_.work().host(side() + "/" + sub), rights);
  };
  const test::AsOrdinaryUser user(folder_);
  // One folder has been read by then, the others cannot be any more.
  inMidScan(2, [&] { setRights(fs::perms::none); });
  expectNothingTouched([&] { setRights(fs::perms::owner_all); });
}

TEST_P(FailingScan, A_folder_that_cannot_be_entered_any_deeper_leads_to_nothing) {
  const test::DeepTree deep(folder_.work().host(side() + "/q"), std::string(200, 'f'), 30, "deep");
  ASSERT_TRUE(deep.made());
  const auto comparable = [this] {
    std::string text = folder_.work().read("one/a") + folder_.work().read("two/a");
    for (const char* sub : {"p", "q", "r"})
      for (const char* name : {"/x", "/only in one", "/only in two"})
        for (const char* root : {"one/", "two/"})
          text += folder_.work().exists(std::string(root) + sub + name) ? "1" : "0";
    return text;
  };
  const std::string before = comparable();
  EXPECT_EQ(folder_.run(), EsitoOperazione::Rifiutato);
  EXPECT_EQ(comparable(), before);
}

TEST_P(FailingScan, A_drive_that_is_unplugged_in_mid_scan_leads_to_nothing) {
  const std::string away = folder_.work().host("pulled out");
  for (const char* kind : {"fixed", "removable", "remote", "ramdisk", "share"}) {
    for (const std::size_t rows : {std::size_t{1}, std::size_t{2}, FilesOnEachSide}) {
      SCOPED_TRACE(std::string(kind) + " " + std::to_string(rows));
      folder_.screen.balloons.clear();
      onDrive(kind);
      inMidScan(rows, [&] { fs::rename(folder_.work().host(side()), away); });
      expectNothingTouched([&] { fs::rename(away, folder_.work().host(side())); });
    }
  }
}

TEST_P(FailingScan, A_medium_that_is_unmounted_in_mid_scan_leads_to_nothing) {
  for (const std::size_t rows : {std::size_t{1}, std::size_t{2}, FilesOnEachSide}) {
    const std::string disc = folder_.work().host("stick");
    folder_.work().makeFolder("stick");
    const test::Attempt attempt = test::onSmallDisc(disc, 1024, [&] {
      fs::copy(folder_.work().host(side()), disc, fs::copy_options::recursive);
      folder_.drives("K: = removable " + disc + "\n");
      folder_.profile.paths[GetParam().column] = "K:\\";
      const std::string other = folder_.work().host(side() == "one" ? "two" : "one");
      const std::string before = test::describeTree(other);
      inMidScan(rows, [&] { EXPECT_EQ(::umount2(disc.c_str(), MNT_DETACH), 0); });
      EXPECT_EQ(folder_.run(), EsitoOperazione::Rifiutato);
      EXPECT_EQ(test::describeTree(other), before);
      EXPECT_TRUE(fs::is_empty(disc));
    });
    EXPECT_NE(attempt, test::Attempt::Failed) << rows;
  }
}

TEST_P(FailingScan, A_drive_that_is_not_there_at_all_leads_to_nothing) {
  const std::string away = folder_.work().host("pulled out");
  for (const char* kind : {"fixed", "removable", "remote", "ramdisk", "share"}) {
    onDrive(kind);
    fs::rename(folder_.work().host(side()), away);
    const std::string before = folder_.tree();
    EXPECT_EQ(folder_.run(), EsitoOperazione::Rifiutato) << kind;
    EXPECT_EQ(folder_.tree(), before) << kind;
    fs::rename(away, folder_.work().host(side()));
  }
}

TEST_P(FailingScan, A_stop_in_mid_scan_leads_to_nothing) {
  for (const std::size_t rows : {std::size_t{1}, std::size_t{2}, FilesOnEachSide}) {
    const std::string before = folder_.tree();
    inMidScan(rows, [] { AnnullaOperazioneInCorso(); });
    EXPECT_EQ(folder_.run(), EsitoOperazione::Annullato) << rows;
    EXPECT_EQ(folder_.tree(), before);
    EXPECT_TRUE(ArrayTrasferimento.Vuota());
  }
}

TEST_P(FailingScan, Without_a_fault_the_same_trees_are_made_to_agree) {
  EXPECT_EQ(folder_.run(), EsitoOperazione::Fatto);
  const bool bothWays = GetParam().erase == 0 && GetParam().sourceNotChange == 0;
  EXPECT_TRUE(folder_.work().exists("two/p/only in one"));
  EXPECT_EQ(folder_.work().exists("one/p/only in two"), bothWays);
  EXPECT_EQ(folder_.work().exists("two/p/only in two"), GetParam().erase == 0);
}

}  // namespace
}  // namespace tandemize
