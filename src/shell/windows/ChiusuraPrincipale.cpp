// The end of the program: the questions before it, and what the main window leaves behind.
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMessageBox>
#include <QPointer>

#include "backup/windows/FrmBackupChoiceWindow.h"
#include "mail/SocketSmtp.h"
#include "shell/Lingua.h"
#include "shell/OperazioniInCorso.h"
#include "shell/Schermo.h"
#include "shell/windows/FrmStartWindow.h"
#include "shell/windows/QtSchermo.h"

namespace tandemize {

namespace {

// The displays of an operation close when it ends, and ask by themselves whether to stop it: that question
// comes once, and last. Menus and notices are no windows of the user's.
bool DaChiudere(const QWidget& finestra, const QWidget& principale) {
  if (&finestra == &principale || qobject_cast<const QMessageBox*>(&finestra) != nullptr) return false;
  const Qt::WindowType tipo = finestra.windowType();
  if (tipo != Qt::Window && tipo != Qt::Dialog) return false;
  const QString nome = finestra.objectName();
  for (const char* operazione : {"FrmFileTransfer", "FrmScan", "FrmProgressBar", "frmTrayMessage"})
    if (nome == QLatin1String(operazione)) return false;
  return nome != QLatin1String("FrmBackupChoice") || !FrmBackupChoiceOccupata();
}

}  // namespace

bool FrmStartWindow::RunDelDialogo() const {
  return inLavoro_ || FrmBackupChoiceOccupata();
}

void FrmStartWindow::closeEvent(QCloseEvent* evento) {
  if (!chiusa_) {
    if (!QueryUnload()) return evento->ignore();
    Scarica();
  }
  evento->accept();
}

// What can be refused without a loss comes before what cannot be taken back, the stop of an operation.
bool FrmStartWindow::QueryUnload() {
  if (inDomanda_ || DomandaAperta()) return false;
  inDomanda_ = true;
  schermo().ChiudiBalloon();
  const bool accettata = MsgBox(Messaggio(437), StileSìNo) == Risposta::Sì && ChiudiAltreFinestre() &&
                         FermaOperazione(RunDelDialogo());
  inDomanda_ = false;
  return accettata && !chiusa_;
}

// Each may ask what is to become of its changes, and stay.
bool FrmStartWindow::ChiudiAltreFinestre() {
  auto* area = static_cast<QMdiArea*>(centralWidget());
  area->closeAllSubWindows();
  if (!area->subWindowList().isEmpty() && area->activeSubWindow() != nullptr) return false;
  const QWidgetList finestre = QApplication::topLevelWidgets();
  std::vector<QPointer<QWidget>> daChiudere;
  for (QWidget* finestra : finestre)
    if (DaChiudere(*finestra, *this)) daChiudere.emplace_back(finestra);
  for (const QPointer<QWidget>& finestra : daChiudere)
    if (finestra != nullptr && !finestra->close()) return false;
  return true;
}

void FrmStartWindow::Termina() {
  if (chiusa_) return;
  Scarica();
  // A window that waits for an answer gets the one that changes nothing.
  const QWidgetList finestre = QApplication::topLevelWidgets();
  for (QWidget* finestra : finestre) finestra->hide();
}

// The engines find themselves stopped, and unwind; the program ends when the last of them has come back.
void FrmStartWindow::Scarica() {
  chiusa_ = true;
  for (QTimer* timer : {&TimerAutoPartenza_, &TimerAnimazione_, &timerArresto_, &timerSenzaTray_})
    timer->stop();
  schermo().ChiudiBalloon();
  schermo_.InChiusura(true);
  FermaTutto(RunDelDialogo());
  InterrompiPosta();
  tray_.Destroy();
  FineProgramma();
}

}  // namespace tandemize
