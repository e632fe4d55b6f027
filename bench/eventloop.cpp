// How long does the program not answer while a backup runs, and how soon does a click on the cancel button
// end it?
//
// A second thread posts an event each millisecond, as clicks and keys arrive; what counts is how long the
// slowest one waits until it is handled. Standard output gets one line a question, in milliseconds.
//
//   tandemize-eventloop [FOLDER [FILES [MIB]]]
//
// FOLDER (default: the temporary folder) is where the files are made and removed; FILES is the number of
// small files (20,000), MIB the size of the big one (1,024).
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "backup/FrmBackupChoice.h"
#include "fixtures/Diagram.h"
#include "platform/machine.h"
#include "platform/paths.h"
#include "presentation/windows/ModuloGrafica.h"
#include "shell/ModuloPrincipale.h"
#include "shell/windows/QtSchermo.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int FilesInAFolder = 50;
constexpr std::size_t SmallSize = 2048;
constexpr double GoalPause = 100, GoalStop = 200;

double millisecondsSince(Clock::time_point moment) {
  return std::chrono::duration<double, std::milli>(Clock::now() - moment).count();
}

// An event that knows when it was posted.
struct Ping : QEvent {
  static constexpr QEvent::Type Kind = static_cast<QEvent::Type>(QEvent::User + 1);
  Ping() : QEvent(Kind) {}
  const Clock::time_point posted = Clock::now();
};

// Posts pings as long as it lives, and notes how long they wait.
class Pinger : public QObject {
 public:
  Pinger() : thread_([this] { run(); }) {}
  ~Pinger() override {
    ended_ = true;
    thread_.join();
    QCoreApplication::removePostedEvents(this);
  }
  bool event(QEvent* event) override {
    if (event->type() != Ping::Kind) return QObject::event(event);
    const double waited = millisecondsSince(static_cast<Ping*>(event)->posted);
    if (waited > longest) {
      longest = waited;
      place = visibleWindows();
    }
    waiting_ = false;
    return true;
  }

  double longest = 0;
  std::string place;  // the windows that were seen behind the longest wait

 private:
  static std::string visibleWindows() {
    std::string names;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows)
      if (window->isVisible())
        names.append(names.empty() ? "" : " ").append(window->objectName().toStdString());
    return names.empty() ? "no window" : names;
  }
  void run() {
    while (!ended_) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      if (!waiting_.exchange(true)) QCoreApplication::postEvent(this, new Ping);
    }
  }

  std::atomic<bool> ended_ = false, waiting_ = false;
  std::thread thread_;
};

// Who sits before the screen: answers each box with its first button, and clicks the cancel button of the
// transfer a while after it has begun, where that is asked for.
class Person : public QObject {
 public:
  Person() { qApp->installEventFilter(this); }
  bool eventFilter(QObject* object, QEvent* event) override {
    if (object->objectName() == "FrmFileTransfer" && event->type() == QEvent::UpdateRequest) ++drawings;
    if (event->type() != QEvent::Show || !object->isWidgetType()) return false;
    if (auto* box = qobject_cast<QMessageBox*>(object); box != nullptr)
      QTimer::singleShot(0, box, [box] { box->defaultButton()->click(); });
    if (object->objectName() == "FrmFileTransfer" && clickAfter >= 0)
      QTimer::singleShot(clickAfter, object, [this, object] {
        clicked = Clock::now();
        object->findChild<QPushButton*>("CmbAnnulla")->click();
      });
    return false;
  }
  int clickAfter = -1;  // milliseconds; never if below 0
  Clock::time_point clicked;
  int drawings = 0;
};

class Bench {
 public:
  explicit Bench(const fs::path& folder)
      : root_(folder / ("tandemize-eventloop-" + std::to_string(Clock::now().time_since_epoch().count()))) {
    fs::create_directories(root_);
    const std::string program = (root_ / "program").string();
    if (platform::fillProgramFolder(program, true) != platform::kNoError) std::exit(1);
    platform::setProgramFolder(program);
    if (Sub_Main(platform::toProgram(program)) != EsitoAvvio::Pronto) std::exit(1);
  }
  ~Bench() { fs::remove_all(root_); }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  void makeSmallFiles(int number) const {
    const std::string content(SmallSize, 'x');
    for (int i = 0; i < number; ++i) {
      const fs::path folder = root_ / "small" / std::to_string(i / FilesInAFolder);
      if (i % FilesInAFolder == 0) fs::create_directories(folder);
      std::ofstream(folder / std::to_string(i), std::ios::binary) << content;
    }
  }
  void makeBigFile(int mebibytes) const {
    fs::create_directories(root_ / "big");
    const std::string block(1'048'576, 'x');
    std::ofstream out(root_ / "big/file", std::ios::binary);
    for (int i = 0; i < mebibytes; ++i) out << block;
  }
  // One backup; with `clickAfter`, in milliseconds, one that is stopped.
  void ask(const std::string& question, const char* source, int clickAfter = -1) {
    const fs::path destination = root_ / "destination";
    fs::create_directories(destination);
    test::Diagram::copying(platform::toProgram((root_ / source).string()),
                           platform::toProgram(destination.string()))
        .write((root_ / "program/Config.cfg").string());
    person_.clickAfter = clickAfter;
    person_.drawings = 0;
    const Clock::time_point start = Clock::now();
    Pinger pinger;
    {
      FrmBackupChoice dialog;
      const EsitoOperazione outcome = dialog.TastoOk_Annulla(0);
      if (outcome != (clickAfter < 0 ? EsitoOperazione::Fatto : EsitoOperazione::Annullato))
        std::printf("%s: ended otherwise than meant (%d)\n", question.c_str(), static_cast<int>(outcome));
    }
    std::printf("%-34s longest pause %6.1f (goal %.0f) at %s; %.0f in all, %d drawings\n", question.c_str(),
                pinger.longest, GoalPause, pinger.place.c_str(), millisecondsSince(start), person_.drawings);
    if (clickAfter >= 0)
      std::printf("%-34s from the click to the end %6.1f (goal %.0f)\n", question.c_str(),
                  millisecondsSince(person_.clicked), GoalStop);
  }
  void removeCopies() const { fs::remove_all(root_ / "destination"); }

 private:
  const fs::path root_;
  QtSchermo screen_;
  Person person_;
};

}  // namespace
}  // namespace tandemize

int main(int argc, char** argv) {
  if (std::getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const QApplication application(argc, argv);
  tandemize::ImpostaColori();
  tandemize::Bench bench(argc > 1 ? argv[1] : std::filesystem::temp_directory_path());
  const int files = argc > 2 ? std::atoi(argv[2]) : 20'000, mebibytes = argc > 3 ? std::atoi(argv[3]) : 1024;
  bench.makeSmallFiles(files);
  bench.makeBigFile(mebibytes);
  bench.ask("small files, new", "small");
  bench.ask("small files, again", "small");
  bench.ask("small files, stopped", "small", 300);
  bench.removeCopies();
  bench.ask("one big file, new", "big");
  bench.ask("one big file, again", "big");
  bench.ask("one big file, stopped", "big", 300);
  return 0;
}
