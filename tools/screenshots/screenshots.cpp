// Takes the pictures of the user guide from the program's own windows, which it drives by the names of their
// controls as a test does.
//
//   tandemize-screenshots it|en FOLDER
//
// The same sources give the same bytes: files, drives and the clock are made up, and nothing is on the screen
// that the host could change.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

#include "Album.h"
#include "Stage.h"
#include "backup/FrmFileTransfer.h"
#include "errors/windows/frmLogFind.h"
#include "fixtures/SmtpServer.h"
#include "mail/FrmSendEMail.h"
#include "mail/windows/FrmSendEMailWindow.h"
#include "platform/posix/clockways.h"
#include "presentation/Avvisi.h"
#include "presentation/FrmTipMessage.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/FrmTipMessageWindow.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/windows/Avvio.h"
#include "shell/windows/FrmGlobalSettingWindow.h"
#include "shell/windows/FrmStartWindow.h"
#include "shell/windows/QtSchermo.h"

namespace tandemize::screenshots {
namespace {

constexpr double BytesAMillisecond = 12e3;
constexpr QSize MainWindow{760, 460};

template <class Control>
Control& control(QWidget& window, std::string_view name) {
  auto* found = window.findChild<Control*>(Testo(name));
  if (found == nullptr) giveUp(window.objectName().toStdString() + " has no " + std::string(name));
  return *found;
}

QWidget& form(std::string_view name) {
  QWidget* found = FormDiNome(name);
  if (found == nullptr) giveUp("no window " + std::string(name));
  return *found;
}

void confirm(QWidget& box) {
  static_cast<QMessageBox&>(box).defaultButton()->click();
}

// The screen, which lets a picture be taken as soon as an operation has got somewhere. The clock goes on with
// the bytes that are copied, so that speeds and times are always the same.
class PictureScreen : public QtSchermo {
 public:
  std::function<void(const StatoScansione&)> onScan;
  std::function<void(const StatoAvanzamento&)> onProgress;

  void Mostra(const StatoScansione& state) override {
    QtSchermo::Mostra(state);
    if (state.visibile && onScan) onScan(state);
  }
  // A bar moves by whole percents from where it was drawn last, so what is drawn before a picture must always
  // be the same: every state here, only the first one of a transfer.
  void Mostra(const StatoAvanzamento& state) override {
    QtSchermo::Mostra(state);
    if (!state.visibile || !onProgress) return;
    settle();
    onProgress(state);
  }
  void Mostra(const StatoTrasferimento& state) override {
    if (state.visibile) Stage::setClock(1000 + state.byteCopiati / BytesAMillisecond);
    const bool begins = state.visibile && onTransfer && !begun_;
    if (!begins && onTransfer && !wanted(state)) return;
    QtSchermo::Mostra(state);
    begun_ = true;
    if (begins) settle();
    if (onTransfer && wanted(state)) std::exchange(onTransfer, nullptr)();
  }
  std::function<void()> onTransfer;  // in the midst of the film

 private:
  static bool wanted(const StatoTrasferimento& state) {
    return state.sorgente.find("film.mp4") != std::string::npos &&
           state.valoreFile >= state.massimoFile * 0.6;
  }
  bool begun_ = false;
};

// What is to be done as soon as a window shows, modal ones and message boxes among them; and animations that
// stand still behind their first frames.
class Director : public QObject {
 public:
  using Act = std::function<void(QWidget&)>;
  Director() { qApp->installEventFilter(this); }
  void whenShown(const std::string& name, Act act) { acts_[name] = std::move(act); }

  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Timer && object->objectName() == "TimerFrames")
      return ++frames_ > FramesShown;
    if (event->type() != QEvent::Show || !object->isWidgetType()) return false;
    auto* shown = static_cast<QWidget*>(object);
    const auto act = acts_.find(shown->objectName().toStdString());
    if (act == acts_.end()) {
      if (auto* box = qobject_cast<QMessageBox*>(shown); box != nullptr)
        giveUp("an unexpected box: " + box->text().toStdString());
      return false;
    }
    QTimer::singleShot(0, shown, [shown, act = act->second] { act(*shown); });
    acts_.erase(act);
    return false;
  }

 private:
  static constexpr int FramesShown = 3;
  std::map<std::string, Act> acts_;
  int frames_ = 0;
};

class Session {
 public:
  Session(Language language, const std::string& folder) : stage_(language), album_(folder) {
    Stage::startClock();
    // The clock does not go on by itself.
    FrmFileTransfer::IntervalloSchermo = 0;
    if (!start_.Prepara(stage_.programFolder())) giveUp("the program does not start");
  }

  void takeAll() {
    takeMainWindow();
    takeBackup();
    takeReport();
    takeLog();
    takeSettings();
    takeSmallOnes();
    takeMail();
    delete &form("FrmStart");
  }
  [[nodiscard]] std::size_t pictures() const { return album_.size(); }

 private:
  QWidget& main() { return form("FrmStart"); }
  void act(const char* name) {
    control<QAction>(main(), name).trigger();
    settle();
  }
  void keepMenu(const char* menu, const std::string& picture) {
    auto& opened = control<QMenu>(main(), menu);
    auto* bar = static_cast<QMainWindow&>(main()).menuBar();
    opened.popup(bar->mapToGlobal(bar->actionGeometry(opened.menuAction()).bottomLeft()));
    album_.keep(picture, main());
    opened.hide();
  }

  void takeMainWindow() {
    auto* window = new FrmStartWindow(screen_);
    window->Tray().ChiediDisponibile = [] { return true; };
    InstallaFinestraPosta();
    window->Carica();
    window->resize(MainWindow);
    director_.whenShown("FrmChooseOperation", [this](QWidget& choice) {
      album_.keep("choice", choice);
      choice.close();
    });
    window->Apri();
    settle();
    album_.keep("main", main());
    keepMenu("MenuAction", "menu-actions");
    keepMenu("MenuConfigure", "menu-configure");
    keepMenu("MenuProfilo", "menu-profile");
  }

  void takeBackup() {
    act("MenuAction(0)");
    QWidget& backup = form("FrmBackupChoice");
    control<QComboBox>(backup, "cmbTipoBackup").setCurrentIndex(1);
    album_.keep("backup", backup);
    director_.whenShown("FrmTandemizeFilter", [this](QWidget& filter) {
      album_.keep("filter", filter);
      filter.close();
    });
    control<QAbstractButton>(backup, "CmdFiltro").click();
    screen_.onProgress = [this](const StatoAvanzamento& state) {
      if (state.valore < state.massimo * 0.3) return;
      screen_.onProgress = nullptr;
      album_.keep("progress", form("FrmProgressBar"));
    };
    screen_.onScan = [this](const StatoScansione& state) {
      if (state.cartella.find("2026 Roma") == std::string::npos) return;
      screen_.onScan = nullptr;
      album_.keep("scan", form("FrmScan"));
    };
    screen_.onTransfer = [this] { keepTransfer(); };
    control<QAbstractButton>(backup, "cmd(0)").click();
    if (screen_.onProgress || screen_.onScan || screen_.onTransfer)
      giveUp("a state of the backup was not seen");
    settle();
  }

  void keepTransfer() {
    QWidget& transfer = form("FrmFileTransfer");
    album_.keep("transfer", transfer);
    director_.whenShown("MsgBox", [this](QWidget& box) {
      album_.keep("stop", box);
      director_.whenShown("MsgBox", [this](QWidget& end) {
        album_.keep("done", end);
        confirm(end);
      });
      static_cast<QMessageBox&>(box).escapeButton()->click();
    });
    control<QAbstractButton>(transfer, "CmbAnnulla").click();
  }

  // The stick is not there: a check says so.
  void takeReport() {
    QWidget& backup = form("FrmBackupChoice");
    std::filesystem::rename(stage_.host("e"), stage_.host("away"));
    control<QRadioButton>(backup, "Opt(0)").click();
    director_.whenShown("FrmBackupErrorLog", [this](QWidget& report) {
      album_.keep("report", report);
      director_.whenShown("MsgBox", confirm);
      report.close();
    });
    control<QAbstractButton>(backup, "cmd(0)").click();
    settle();
    backup.close();
    settle();
  }

  void takeLog() {
    act("MenuAction(2)");
    auto& log = control<QListWidget>(form("FrmLogView"), "ListLog");
    album_.keep("log", main());
    MostrafrmLogFind(log);
    QWidget& find = form("frmLogFind");
    control<QLineEdit>(find, "TxtFind").setText("film");
    album_.keep("find", find);
    find.close();
    ScaricaForm("FrmLogView");
    settle();
  }

  void takeSettings() {
    stage_.fillSettings();
    MostraFrmGlobalSetting();
    auto& settings = static_cast<FrmGlobalSettingWindow&>(form("FrmGlobalSetting"));
    int tab = 0;
    for (const char* name :
         {"start", "log", "errors", "mail", "ftp", "timer", "advanced", "language", "help"}) {
      settings.SelezionaScheda(tab++);
      if (std::string_view(name) == "ftp")
        if (auto* list = settings.findChild<QListWidget*>("ListFtp"); list != nullptr) list->setCurrentRow(0);
      album_.keep(std::string("settings-") + name, settings);
    }
    settings.close();
    settle();
  }

  void takeSmallOnes() {
    FrmTipMessage::Init(Messaggio(376), Messaggio(377), [this](FrmTipMessage& card) {
      director_.whenShown("FrmTipMessage", [this](QWidget& shown) {
        album_.keep("card", shown);
        shown.close();
      });
      MostraFrmTipMessage(card);
    });
    director_.whenShown("frmAbout", [this](QWidget& about) {
      album_.keep("about", about);
      about.close();
    });
    act("MenuHelp");
    MostraBalloon("FrmStart", Messaggio(60), TitoloApplicazione, 0, 0, false, false);
    album_.keep("notice", form("frmTrayMessage"));
    screen_.ChiudiBalloon();
    settle();
  }

  // A server that takes the mail and does not answer any more.
  void takeMail() {
    auto server = std::make_unique<test::SmtpServer>(std::vector<std::string>{
        "say '220 smtp.example.org ready\\r\\n'", "line", "say '250 smtp.example.org\\r\\n'", "line",
        "say '250 Sender ok\\r\\n'", "line", "say '250 Recipient ok\\r\\n'", "line",
        "say '354 Go ahead\\r\\n'", "rest"});
    Email_Smtp = server->name();
    platform::simulatedClock().reset();
    director_.whenShown("FrmSendEMail", [this, &server](QWidget& mail) { keepMail(mail, server); });
    MostraFrmSendEMail();
  }

  void keepMail(QWidget& mail, std::unique_ptr<test::SmtpServer>& server) {
    auto* look = new QTimer(&mail);
    QObject::connect(look, &QTimer::timeout, &mail, [this, look, &mail, &server] {
      const QVariant log = mail.findChild<QWidget*>("TxtLog")->property("plainText");
      if (!log.toString().contains("354")) return;
      look->stop();
      album_.keep("mail", mail);
      director_.whenShown("MsgBox", confirm);
      server.reset();
    });
    look->start(20);
  }

  Stage stage_;
  Album album_;
  PictureScreen screen_;
  Director director_;
  Avvio start_{screen_};
};

}  // namespace
}  // namespace tandemize::screenshots

int main(int argc, char** argv) {
  using namespace tandemize::screenshots;
  const std::string word = argc == 3 ? argv[1] : "";
  if (word != "it" && word != "en") giveUp("words: it|en FOLDER");
  for (const char* name : {"QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "TANDEMIZE_HOME"})
    unsetenv(name);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QT_LOGGING_RULES", "qt.*=false", 1);
  setenv("XDG_RUNTIME_DIR", "/tmp", 0);
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("TANDEMIZE_NETWORK", "up", 1);
  setenv("TANDEMIZE_POWER", "log", 1);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setCursorFlashTime(0);
  tandemize::ImpostaColori();
  Session session(word == "it" ? Language::Italian : Language::English, argv[2]);
  session.takeAll();
  std::printf("%zu pictures in %s\n", session.pictures(), argv[2]);
  return 0;
}
