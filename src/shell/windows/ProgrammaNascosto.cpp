// The main window's part in the hidden state: the icon in the notification area, or what stands for it.
#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QWindowStateChangeEvent>

#include "presentation/Avvisi.h"
#include "presentation/windows/Form.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "shell/windows/BarraStrumenti.h"
#include "shell/windows/FrmStartWindow.h"

namespace tandemize {

namespace {

// A session that begins has its notification area within seconds.
constexpr int AttesaTray = 10'000, AttesaBalloon = 1'000;  // milliseconds
constexpr int SecondiAvviso = 15;

}  // namespace

void FrmStartWindow::PreparaTray() {
  tray_.Icon(windowIcon());
  tray_.Menu(popUp_.barra);
  tray_.SinistroDoppio = [this] {
    schermo().ChiudiBalloon();
    Ripristina();
  };
  // A notification area that does not tell its place does not tell of double clicks either.
  tray_.SinistroRilasciato = [this] {
    if (!tray_.Posizione().isValid()) tray_.SinistroDoppio();
  };
  // After the toolkit had its turn: where the notification area opens the menu by itself, it is up by then.
  tray_.DestroRilasciato = [this] { QTimer::singleShot(0, this, [this] { ApriMenuTray(); }); };
  tray_.DisponibilitàCambiata = [this] { TrayCambiata(); };
  timerSenzaTray_.setSingleShot(true);
  connect(&timerSenzaTray_, &QTimer::timeout, this, [this] { DiciSenzaTray(); });
}

void FrmStartWindow::ApriMenuTray() {
  if (chiusa_ || popUp_.barra->isVisible()) return;
  popUp_.barra->popup(QCursor::pos());
}

void FrmStartWindow::Apri() {
  if (!ApplicazioneNascosta) return Presenta(*this);
  // Waits for MostraForm.
  Presenta(*this);
  if (!tray_.EDisponibile()) showMinimized();
}

void FrmStartWindow::Inverti() {
  if (ApplicazioneNascosta)
    Mostra();
  else
    Nascondi();
}

// Somebody's answer is waited for, by code that stands below it: nothing is hidden or ended meanwhile, the
// question comes to the front instead.
bool FrmStartWindow::DomandaAperta() {
  QWidget* domanda = QApplication::activeModalWidget();
  if (domanda == nullptr) return false;
  domanda->raise();
  domanda->activateWindow();
  return true;
}

void FrmStartWindow::Nascondi() {
  if (DomandaAperta()) return;
  lasciata_ = !isActiveWindow();
  NascondiForm(!tray_.EDisponibile());
  ApplicazioneNascosta = true;
}

void FrmStartWindow::Mostra() {
  // First, so that what the windows' coming back sets off finds the program visible.
  ApplicazioneNascosta = false;
  MostraForm();
  PrimaVolta();
}

void FrmStartWindow::Ripristina() {
  if (ApplicazioneNascosta) return Mostra();
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

// The task bar brings the window of a hidden program back. Under Wayland the toolkit does not learn of a
// minimised state, it takes the window for a normal one at once: there only the focus tells.
void FrmStartWindow::changeEvent(QEvent* evento) {
  QMainWindow::changeEvent(evento);
  if (evento->type() != QEvent::WindowStateChange || !ApplicazioneNascosta || chiusa_) return;
  if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) return;
  const auto* cambiamento = static_cast<QWindowStateChangeEvent*>(evento);
  if ((cambiamento->oldState() & Qt::WindowMinimized) != 0 && !isMinimized() && isVisible()) Mostra();
}

void FrmStartWindow::TrayCambiata() {
  const bool conTray = tray_.EDisponibile();
  barra_->MostraTray(!conTray);
  if (conTray) {
    timerSenzaTray_.stop();
  } else if (!senzaTrayDetto_) {
    if (ApplicazioneNascosta)
      timerSenzaTray_.start(AttesaTray);
    else
      DiciSenzaTray();
  }
  if (!ApplicazioneNascosta || !caricata_) return;
  // The hidden program goes where its user can find it.
  if (!conTray)
    showMinimized();
  else if (isVisible())
    hide();
}

// Once for each start. Another notice that is up is seen first.
void FrmStartWindow::DiciSenzaTray() {
  if (senzaTrayDetto_ || chiusa_ || tray_.EDisponibile()) return;
  if (schermo().BalloonAperto()) return timerSenzaTray_.start(AttesaBalloon);
  senzaTrayDetto_ = true;
  MostraBalloon(
      "FrmStart",
      InLingua("Questo desktop non ha un'area di notifica: al suo posto c'è il pulsante all'estremità "
               "della barra degli strumenti. Il programma nascosto resta ridotto a icona nella barra "
               "delle applicazioni.",
               "This desktop has no notification area: the button at the end of the toolbar takes its "
               "place. The hidden program stays minimised in the task bar."),
      TitoloApplicazione, 0, SecondiAvviso, false, ApplicazioneNascosta);
}

}  // namespace tandemize
