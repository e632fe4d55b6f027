#include "shell/windows/FrmStartWindow.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>
#include <utility>

#include "backup/windows/FrmBackupChoiceWindow.h"
#include "errors/ModuloGestioneErrori.h"
#include "platform/machine.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/Icone.h"
#include "presentation/windows/ModuloGrafica.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"
#include "shell/windows/AreaMdi.h"
#include "shell/windows/BarraStrumenti.h"
#include "shell/windows/FrmChooseOperation.h"
#include "shell/windows/FrmGlobalSettingWindow.h"
#include "shell/windows/QtSchermo.h"

namespace tandemize {

namespace {

constexpr const char* TagAnimazione = "Tag";
constexpr int IntervalloArresto = 100;  // milliseconds
constexpr QSize DimensioneIniziale{960, 640};

// As large as it looks best, and never larger than the screen.
void DaiForma(QWidget& finestra) {
  const QRect area = finestra.screen()->availableGeometry();
  finestra.resize(DimensioneIniziale.boundedTo(area.size() * 0.95));
  finestra.move(area.center() - finestra.rect().center());
}

void Applica(QTimer& timer, const Temporizzatore& stato) {
  const int intervallo = static_cast<int>(stato.Interval);
  if (timer.interval() != intervallo) timer.setInterval(intervallo);
  if (timer.isActive() == stato.Enabled) return;
  if (stato.Enabled)
    timer.start();
  else
    timer.stop();
}

}  // namespace

FrmStartWindow::FrmStartWindow(QtSchermo& schermo)
    : FineProgramma([] { QCoreApplication::exit(0); }), schermo_(schermo) {
  setObjectName(QStringLiteral("FrmStart"));
  setWindowIcon(IconaProgramma());
  ImpostaFinestraPrincipale(this);
  setCentralWidget(new AreaMdi(this));
  PreparaMenu();
  PreparaMenuPopUp();
  barra_ = new BarraStrumenti(
      this, [this](int membro) { ToolBar2_Click(membro); }, popUp_.barra);
  addToolBar(Qt::TopToolBarArea, barra_);
  PreparaTimer();
  PreparaTray();
  motore_.Lavoro = [this](std::uint8_t modo) { return EseguiLavoro(modo); };
  motore_.InChiusura = [this] { return chiusa_; };
  motore_.AltraOperazione = [] { return FrmBackupChoiceOccupata() || FormAperto("FrmAttesaServer"); };
  LinguaCambiata = [this] { Didascalie(); };
  ApplicaStile(*this);
  DaiForma(*this);
}

FrmStartWindow::~FrmStartWindow() {
  LinguaCambiata = nullptr;
  if (FinestraPrincipale() == this) ImpostaFinestraPrincipale(nullptr);
}

void FrmStartWindow::Carica() {
  if (std::exchange(caricata_, true)) return;
  Didascalie();
  tray_.Create(this);
  motore_.Carica();
  TrayCambiata();
  ApplicaTimer();
  timerArresto_.start(IntervalloArresto);
}

void FrmStartWindow::PreparaTimer() {
  TimerAutoPartenza_.setObjectName(QStringLiteral("TimerAutoPartenza"));
  TimerAnimazione_.setObjectName(QStringLiteral("TimerAnimazione"));
  for (QTimer* timer : {&TimerAutoPartenza_, &TimerAnimazione_, &timerArresto_, &timerSenzaTray_})
    timer->setParent(this);
  // A tick a minute must not slip past a minute.
  TimerAutoPartenza_.setTimerType(Qt::PreciseTimer);
  connect(&TimerAutoPartenza_, &QTimer::timeout, this, [this] { motore_.TimerAutoPartenza_Timer(); });
  connect(&TimerAnimazione_, &QTimer::timeout, this, [this] { TimerAnimazione_Timer(); });
  connect(&timerArresto_, &QTimer::timeout, this, [this] {
    if (platform::stopRequested()) Termina();
  });
  motore_.TimerCambiati = [this] { ApplicaTimer(); };
  motore_.AggiornaTray = [this] { tray_.Icon(windowIcon()); };
}

void FrmStartWindow::ApplicaTimer() {
  if (!caricata_ || chiusa_) return;
  Applica(TimerAutoPartenza_, motore_.TimerAutoPartenza);
  Applica(TimerAnimazione_, motore_.TimerAnimazione);
}

void FrmStartWindow::TimerAnimazione_Timer() {
  const bool alternata = TimerAnimazione_.property(TagAnimazione).toString() == QLatin1String("1");
  tray_.Icon(alternata ? windowIcon() : IconaAnimazione());
  TimerAnimazione_.setProperty(TagAnimazione, QLatin1String(alternata ? "0" : "1"));
}

// The run makes an engine of its own, and reads the profile's objects anew: an open dialog that only waits
// would show what is not there any more. It goes at once, since its end empties the lists that the run fills.
EsitoOperazione FrmStartWindow::EseguiLavoro(std::uint8_t modo) {
  if (QWidget* dialogo = FormDiNome("FrmBackupChoice"); dialogo != nullptr && !FrmBackupChoiceOccupata()) {
    ScaricaForm("FrmBackupChoice");
    QCoreApplication::sendPostedEvents(dialogo, QEvent::DeferredDelete);
  }
  inLavoro_ = true;
  const EsitoOperazione esito = motore_.EseguiLavoro(modo);
  inLavoro_ = false;
  // The run has ended, and its stop with it: only a new one may cut short the wait that follows.
  AnnullamentoRichiesto = false;
  return esito;
}

bool FrmStartWindow::event(QEvent* evento) {
  if (evento->type() == QEvent::WindowDeactivate) lasciata_ = true;
  if (evento->type() == QEvent::WindowActivate) {
    if (ApplicazioneNascosta && std::exchange(lasciata_, false)) Mostra();
    PrimaVolta();
  }
  return QMainWindow::event(evento);
}

// The choice comes once the window stands, and not from inside of the toolkit's own work on it.
void FrmStartWindow::PrimaVolta() {
  if (primaAttivazione_ || ApplicazioneNascosta || !caricata_ || chiusa_) return;
  primaAttivazione_ = true;
  if (StartUp_Pr_Mode != 0) return;
  QTimer::singleShot(0, this, [this] {
    FrmChooseOperation finestra(this);
    CentraForm(finestra);
    PresentaModale(finestra);
    if (finestra.Selezionata() == FrmChooseOperation::Scelta::Sincronizzazione) ApriSincronizzazione();
    if (finestra.Selezionata() == FrmChooseOperation::Scelta::Diagramma) ApriDiagramma();
  });
}

}  // namespace tandemize
