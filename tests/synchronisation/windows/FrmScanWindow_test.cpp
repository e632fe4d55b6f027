#include "synchronisation/windows/FrmScanWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTimerEvent>
#include <filesystem>

#include "fixtures/GifFile.h"
#include "fixtures/windows/Desktop.h"
#include "fixtures/windows/WhileEventsRun.h"
#include "presentation/windows/ImmagineGif.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "synchronisation/FrmScan.h"

namespace tandemize {
namespace {

using namespace test;

class FrmScanWindowTest : public ::testing::Test {
 protected:
  ~FrmScanWindowTest() override { desktop.screen.Mostra(StatoScansione{}); }

  QWidget& show(const std::string& title = "Scanning", const std::string& folder = "") {
    desktop.screen.Mostra(StatoScansione{true, title, folder});
    letEventsRun();
    return *window("FrmScan");
  }
  void animation(std::string_view bytes) { desktop.folder.home().write("Gif/Scansione.Gif", bytes); }
  static void tick(QTimer& timer) {
    QTimerEvent event(timer.timerId());
    QApplication::sendEvent(&timer, &event);
  }
  // Folders d0 ... d<n-1> of a file each, below "source".
  std::vector<RigaPercorso> tree(int folders) {
    for (int i = 0; i < folders; ++i)
      desktop.folder.work().write("source/d" + std::to_string(i) + "/file", "content");
    ArrayScansione.Azzera(1);
    return {{desktop.folder.program("source"), "0"}};
  }
  void scan(const std::vector<RigaPercorso>& paths) {
    FrmScan engine;
    engine.Init(paths, owner, true, true, false, "");
  }

  Desktop desktop;
  FinestraOperazione owner{"FrmBackupChoice"};
};

TEST_F(FrmScanWindowTest, The_state_gives_the_caption_and_the_folder) {
  QWidget& shown = show("Scanning path 1 'C:\\data'", "C:\\data\\one");
  EXPECT_EQ(shown.windowTitle().toStdString(), "Scanning path 1 'C:\\data'");
  EXPECT_EQ(text(*control<QLabel>(shown, "LblScanDir")), "C:\\data\\one");
  EXPECT_EQ(text(*control<QPushButton>(shown, "CmbAnnulla")), Messaggio(395));
  const QSize size = shown.size();
  const std::string path = "C:\\" + std::string(3000, 'w');
  desktop.screen.Mostra(StatoScansione{true, path, path});
  ASSERT_TRUE(reached([&] { return text(*control<QLabel>(shown, "LblScanDir")) == path; }));
  letEventsRun();
  EXPECT_EQ(shown.size(), size);
}

TEST_F(FrmScanWindowTest, The_animation_of_the_program_folder_runs_by_the_windows_timer) {
  animation(smallAnimation());
  QWidget& shown = show();
  auto& timer = *control<QTimer>(shown, "TimerFrames");
  ASSERT_TRUE(timer.isActive());
  EXPECT_EQ(timer.interval(), 90) << "the last picture of the file shows, with a delay of 9";
  QWidget& picture = *control<QWidget>(shown, "PictureGif");
  EXPECT_TRUE(picture.isVisible());
  EXPECT_EQ(picture.size(), QSize(4, 4));
  const QImage last = picture.grab().toImage();
  std::vector<int> intervals;
  std::vector<QImage> images;
  for (int i = 0; i < 3; ++i) {
    tick(timer);
    intervals.push_back(timer.interval());
    images.push_back(picture.grab().toImage());
  }
  EXPECT_EQ(intervals, (std::vector<int>{80, 80, 90}));
  EXPECT_NE(images[0], images[1]);
  EXPECT_NE(images[1], images[2]);
  EXPECT_EQ(images[2], last);
}

TEST_F(FrmScanWindowTest, The_files_letter_case_does_not_matter) {
  std::filesystem::rename(desktop.folder.host("Gif/Scansione.Gif"), desktop.folder.host("Gif/SCANSIONE.gif"));
  EXPECT_TRUE(control<QTimer>(show(), "TimerFrames")->isActive());
}

TEST_F(FrmScanWindowTest, A_damaged_or_missing_animation_leaves_the_window_without_one) {
  const std::string whole = smallAnimation();
  for (const std::string& bytes :
       {whole.substr(0, whole.size() / 2), std::string("GIF89a"), std::string("x")}) {
    animation(bytes);
    QWidget& shown = show("Scanning", "C:\\data");
    EXPECT_FALSE(control<QTimer>(shown, "TimerFrames")->isActive());
    EXPECT_FALSE(control<QWidget>(shown, "PictureGif")->isVisible());
    EXPECT_EQ(text(*control<QLabel>(shown, "LblScanDir")), "C:\\data");
    desktop.screen.Mostra(StatoScansione{});
  }
  std::filesystem::remove(desktop.folder.host("Gif/Scansione.Gif"));
  EXPECT_FALSE(control<QTimer>(show(), "TimerFrames")->isActive());
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(FrmScanWindowTest, Another_animation_takes_the_place_of_the_first) {
  QWidget& shown = show();
  desktop.folder.home().write("Gif/other.gif", gifOf(2, 1, {1, 2}));
  static_cast<FrmScanWindow&>(shown).EseguiAnimazione("OTHER.GIF");
  auto& timer = *control<QTimer>(shown, "TimerFrames");
  EXPECT_EQ(timer.interval(), 80);
  tick(timer);
  EXPECT_EQ(control<QWidget>(shown, "PictureGif")->sizeHint(), QSize(2, 1));
}

TEST_F(FrmScanWindowTest, A_second_animation_that_starts_while_the_first_loads_is_the_one_that_runs) {
  QWidget& shown = show();
  desktop.folder.home().write("Gif/one.gif", gifOf(2, 1, {1, 2}));
  desktop.folder.home().write("Gif/two.gif", gifOf(3, 1, {1, 2, 3}));
  bool started = false;
  const WhileEventsRun during([&] {
    if (!std::exchange(started, true)) static_cast<FrmScanWindow&>(shown).EseguiAnimazione("two.gif");
  });
  static_cast<FrmScanWindow&>(shown).EseguiAnimazione("one.gif");
  tick(*control<QTimer>(shown, "TimerFrames"));
  EXPECT_EQ(control<QWidget>(shown, "PictureGif")->sizeHint(), QSize(3, 1));
}

TEST_F(FrmScanWindowTest, The_window_may_go_while_its_animation_loads) {
  bool gone = false;
  desktop.screen.Mostra(StatoScansione{true, "Scanning", ""});
  const WhileEventsRun during([&] {
    if (std::exchange(gone, true)) return;
    EXPECT_FALSE(control<QTimer>(*window("FrmScan"), "TimerFrames")->isActive()) << "still loading";
    desktop.screen.Mostra(StatoScansione{});
  });
  static_cast<FrmScanWindow&>(*window("FrmScan")).EseguiAnimazione("scansione.gif");
  EXPECT_TRUE(gone);
  EXPECT_EQ(FormDiNome("FrmScan"), nullptr);
}

TEST_F(FrmScanWindowTest, It_stands_while_a_scan_runs_and_shows_its_folders) {
  const std::vector<RigaPercorso> paths = tree(3);
  std::set<std::string> captions;
  const WhileEventsRun during([&] {
    if (QWidget* shown = FormDiNome("FrmScan")) captions.insert(shown->windowTitle().toStdString());
  });
  scan(paths);
  EXPECT_TRUE(captions.contains(Messaggio(273) + " '" + paths[0].percorso + "'"));
  EXPECT_EQ(FormDiNome("FrmScan"), nullptr);
  EXPECT_EQ(ArrayScansione.Righe(0), 3U);
}

TEST_F(FrmScanWindowTest, The_button_stops_the_walk_when_the_question_is_answered_with_yes) {
  const std::vector<RigaPercorso> paths = tree(20);
  desktop.answers = {Risposta::Sì};
  desktop.whenShown("FrmScan", [](QWidget& shown) { click(*control<QPushButton>(shown, "CmbAnnulla")); });
  scan(paths);
  EXPECT_TRUE(owner.ProcessoAnnullato);
  EXPECT_LT(ArrayScansione.Righe(0), 20U);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].text, Messaggio(326));
  EXPECT_EQ(desktop.boxes[0].style, StileSìNo);
}

TEST_F(FrmScanWindowTest, Answered_with_no_the_walk_goes_on_to_its_end) {
  const std::vector<RigaPercorso> paths = tree(20);
  desktop.answers = {Risposta::No, Risposta::No};
  desktop.whenShown("FrmScan", [](QWidget& shown) {
    click(*control<QPushButton>(shown, "CmbAnnulla"));
    EXPECT_FALSE(shown.close()) << "the window's X asks as well";
    EXPECT_TRUE(shown.isVisible());
  });
  scan(paths);
  EXPECT_FALSE(owner.ProcessoAnnullato);
  EXPECT_EQ(ArrayScansione.Righe(0), 20U);
  EXPECT_EQ(desktop.boxes.size(), 2U);
}

TEST_F(FrmScanWindowTest, The_windows_X_stops_the_walk_too) {
  const std::vector<RigaPercorso> paths = tree(20);
  desktop.answers = {Risposta::Sì};
  desktop.whenShown("FrmScan", [](QWidget& shown) { shown.close(); });
  scan(paths);
  EXPECT_TRUE(owner.ProcessoAnnullato);
}

TEST_F(FrmScanWindowTest, While_the_program_is_hidden_the_window_does_not_show) {
  const std::vector<RigaPercorso> paths = tree(3);
  ApplicazioneNascosta = true;
  bool seen = false;
  const WhileEventsRun during([&] {
    if (QWidget* shown = FormDiNome("FrmScan")) seen = seen || shown->isVisible();
  });
  scan(paths);
  EXPECT_FALSE(seen);
  EXPECT_EQ(ArrayScansione.Righe(0), 3U);
}

}  // namespace
}  // namespace tandemize
