// The windows stay alive while the engines work: whatever waits to be handled is handled before a few more
// files, or one more block, go by; and however fast they go, little of that is drawn.
#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressBar>
#include <algorithm>
#include <filesystem>

#include "backup/BackupRun.h"
#include "backup/windows/FrmFileTransferWindow.h"
#include "fixtures/windows/Desktop.h"
#include "fixtures/windows/WhileEventsRun.h"

namespace tandemize {
namespace {

using namespace test;
namespace fs = std::filesystem;

constexpr int SmallFiles = 2'000, FilesInAFolder = 200;
constexpr std::size_t FilesBetweenEvents = 4;
// The first showing, its layout, a button's change of state, and the last state of all.
constexpr int DrawingsOutsideTheRate = 6;
constexpr double BytesBetweenEvents = 1'048'576;
constexpr std::uintmax_t BigFile = 268'435'456;

// Windows that also tell how far a transfer is.
struct WatchedScreen : QtSchermo {
  using QtSchermo::Mostra;
  void Mostra(const StatoTrasferimento& state) override {
    files = static_cast<std::size_t>(state.fileCopiati);
    bytes = state.byteCopiati;
    QtSchermo::Mostra(state);
  }
  std::size_t files = 0;
  double bytes = 0;
};

// The largest step that a number made between two looks at it.
template <class Number>
struct Steps {
  void look(Number now) {
    if (now > last) largest = std::max(largest, now - last);
    last = now;
  }
  Number last = 0, largest = 0;
};

// Drawings of one window.
class Drawings : public QObject {
 public:
  Drawings() { qApp->installEventFilter(this); }
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() != QEvent::UpdateRequest || object->objectName() != "FrmFileTransfer") return false;
    if (count++ == 0) since_.start();
    until_ = since_.elapsed();
    return false;
  }
  [[nodiscard]] double seconds() const { return static_cast<double>(until_) / 1000; }
  int count = 0;

 private:
  QElapsedTimer since_;
  qint64 until_ = 0;
};

class Reattivita : public ::testing::Test {
 protected:
  Reattivita() {
    Errors_Correction = 0;
    FrmFileTransfer::IntervalloSchermo = 0;
    desktop.folder.work().makeFolder("source");
    desktop.folder.work().makeFolder("destination");
    Diagram::copying(desktop.folder.program("source"), desktop.folder.program("destination"))
        .write(desktop.folder.host("Config.cfg"));
  }
  ~Reattivita() override { FrmFileTransfer::IntervalloSchermo = 33; }

  // Names of one file, which are made faster than files.
  void makeSmallFiles() {
    const fs::path root = desktop.folder.work().host("source");
    desktop.folder.work().write("one", "some content");
    for (int i = 0; i < SmallFiles; ++i) {
      const fs::path folder = root / std::to_string(i / FilesInAFolder);
      if (i % FilesInAFolder == 0) fs::create_directory(folder);
      fs::create_hard_link(desktop.folder.work().host("one"), folder / std::to_string(i));
    }
  }
  EsitoOperazione backup() {
    const WhileEventsRun during([this] {
      rows.look(ArrayScansione.Colonne() == 0 ? 0 : ArrayScansione.Righe(0));
      records.look(ArrayTrasferimento.Numero());
      files.look(screen.files);
      bytes.look(screen.bytes);
    });
    FrmBackupChoice dialog;
    dialog.cmbTipoBackup = TipoBackup::Standard;
    return dialog.TastoOk_Annulla(0);
  }

  Desktop desktop;
  WatchedScreen screen;
  Steps<std::size_t> rows, records, files;
  Steps<double> bytes;
  Drawings drawings;
};

TEST_F(Reattivita, In_a_backup_of_many_small_files_events_are_handled_every_few_files_of_each_phase) {
  makeSmallFiles();
  EXPECT_EQ(backup(), EsitoOperazione::Fatto);
  for (const auto* phase : {&rows, &records, &files}) {
    EXPECT_GE(phase->largest, 1U) << "the phase was watched";
    EXPECT_LE(phase->largest, FilesBetweenEvents);
  }
  EXPECT_LE(drawings.count, drawings.seconds() * 30 + DrawingsOutsideTheRate);
  EXPECT_GE(drawings.count, 2);
}

TEST_F(Reattivita, In_a_big_file_events_are_handled_with_each_mebibyte) {
  desktop.folder.work().write("source/big", "");
  fs::resize_file(desktop.folder.work().host("source/big"), BigFile);
  EXPECT_EQ(backup(), EsitoOperazione::Fatto);
  EXPECT_EQ(fs::file_size(desktop.folder.work().host("destination/big")), BigFile);
  EXPECT_GT(bytes.largest, 0);
  EXPECT_LE(bytes.largest, BytesBetweenEvents);
  EXPECT_LE(drawings.count, drawings.seconds() * 30 + DrawingsOutsideTheRate);
}

}  // namespace
}  // namespace tandemize
