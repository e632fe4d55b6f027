#include "presentation/windows/Form.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMdiSubWindow>
#include <QPointer>
#include <QScreen>
#include <algorithm>
#include <utility>
#include <vector>

#include "errors/ModuloGestioneErrori.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

constexpr const char* Scaricata = "scaricata";  // closed, and waiting to be destroyed
constexpr const char* Adattata = "adattata";    // the size that CentraForm gave

QPointer<QWidget>& Principale() {
  static QPointer<QWidget> finestra;
  return finestra;
}

struct FinestraNascosta {
  QPointer<QWidget> finestra;
  Qt::WindowStates stato;
  [[nodiscard]] bool Andata() const { return finestra == nullptr || finestra->property(Scaricata).toBool(); }
};

std::vector<FinestraNascosta>& Nascoste() {
  static std::vector<FinestraNascosta> finestre;
  return finestre;
}

bool Caricata(const QWidget& finestra) {
  if (finestra.property(Scaricata).toBool()) return false;
  return finestra.isWindow() || qobject_cast<const QMdiSubWindow*>(finestra.parentWidget()) != nullptr;
}

QWidgetList FormCaricati(std::string_view nome) {
  const QString cercato = Testo(nome);
  QWidgetList trovati;
  const QWidgetList tutti = QApplication::allWidgets();
  for (QWidget* widget : tutti)
    if (widget->objectName() == cercato && Caricata(*widget)) trovati.append(widget);
  return trovati;
}

// Once only; with the state that it had first.
void Aspetta(const FinestraNascosta& nascosta) {
  std::vector<FinestraNascosta>& nascoste = Nascoste();
  std::erase_if(nascoste, [](const FinestraNascosta& altra) { return altra.Andata(); });
  if (std::ranges::find(nascoste, nascosta.finestra, &FinestraNascosta::finestra) == nascoste.end())
    nascoste.push_back(nascosta);
}

// A dialog whose place was chosen when the windows about it could not be seen.
bool MaiMostrata(const QWidget& finestra) {
  return finestra.isWindow() && &finestra != Principale() && !finestra.testAttribute(Qt::WA_WState_Created);
}

// Showing lets others act, who may close the window or destroy it.
void MostraEInnalza(const QPointer<QWidget>& finestra) {
  finestra->show();
  if (finestra != nullptr && finestra->isVisible()) finestra->raise();
}

// A window of the program's own that is seen; not a popup, a tool tip or a notice.
bool DaNascondere(const QWidget& finestra) {
  const Qt::WindowType tipo = finestra.windowType();
  return finestra.isVisible() && !finestra.isModal() && (tipo == Qt::Window || tipo == Qt::Dialog);
}

}  // namespace

Form::Form(const char* nome, QWidget* proprietaria)
    : QDialog(proprietaria, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                Qt::WindowCloseButtonHint | Qt::CustomizeWindowHint) {
  setObjectName(QLatin1String(nome));
}

Form::~Form() = default;

void Form::reject() {
  close();
}

void Form::closeEvent(QCloseEvent* evento) {
  if (!QueryUnload()) {
    evento->ignore();
    return;
  }
  setProperty(Scaricata, true);
  // Hides, and ends a modal wait.
  if (isVisible()) QDialog::reject();
  evento->accept();
}

QWidget* FinestraPrincipale() {
  return Principale();
}

void ImpostaFinestraPrincipale(QWidget* finestra) {
  Principale() = finestra;
}

QWidget* FormDiNome(std::string_view nome) {
  const QWidgetList trovati = FormCaricati(nome);
  return trovati.isEmpty() ? nullptr : trovati.last();
}

bool FormAperto(std::string_view nome) {
  return FormCaricato(nome) || FormDiNome(nome) != nullptr;
}

void ScaricaForm(std::string_view nome) {
  for (QWidget* finestra : FormCaricati(nome)) {
    finestra->setProperty(Scaricata, true);
    QWidget* esterna = finestra->isWindow() ? finestra : finestra->parentWidget();
    esterna->hide();
    esterna->deleteLater();
  }
}

void Presenta(QWidget& finestra) {
  finestra.setProperty(Scaricata, false);
  if (ApplicazioneNascosta) {
    Aspetta({&finestra, Qt::WindowNoState});
    return;
  }
  const QPointer<QWidget> mostrata = &finestra;
  MostraEInnalza(mostrata);
  if (mostrata != nullptr && mostrata->isVisible()) mostrata->activateWindow();
}

void PresentaModale(QDialog& finestra) {
  finestra.setProperty(Scaricata, false);
  finestra.exec();
}

void NascondiForm(bool minimizza) {
  const QWidgetList finestre = QApplication::topLevelWidgets();
  for (QWidget* finestra : finestre) {
    if (!DaNascondere(*finestra)) continue;
    Aspetta({finestra, finestra->windowState()});
    if (minimizza && finestra == FinestraPrincipale())
      finestra->showMinimized();
    else
      finestra->hide();
  }
}

void MostraForm() {
  const std::vector<FinestraNascosta> nascoste = std::exchange(Nascoste(), {});
  for (const FinestraNascosta& nascosta : nascoste) {
    if (nascosta.Andata()) continue;
    // Somebody has hidden the program again while the windows before this one were shown.
    if (ApplicazioneNascosta) {
      Aspetta(nascosta);
      continue;
    }
    if (MaiMostrata(*nascosta.finestra)) CentraForm(*nascosta.finestra);
    nascosta.finestra->setWindowState(nascosta.stato & ~Qt::WindowStates(Qt::WindowMinimized));
    MostraEInnalza(nascosta.finestra);
  }
  if (ApplicazioneNascosta) return;
  if (FinestraPrincipale() != nullptr) FinestraPrincipale()->activateWindow();
}

void CentraForm(QWidget& finestra) {
  // A size that the window has given itself stays.
  if (!finestra.testAttribute(Qt::WA_Resized) || finestra.property(Adattata).toSize() == finestra.size()) {
    finestra.adjustSize();
    finestra.setProperty(Adattata, finestra.size());
  }
  const QWidget* contenitore =
      finestra.parentWidget() != nullptr ? finestra.parentWidget()->window() : nullptr;
  const QRect area = contenitore != nullptr && contenitore->isVisible() && !contenitore->isMinimized()
                         ? contenitore->frameGeometry()
                         : finestra.screen()->availableGeometry();
  finestra.move(area.center() - finestra.rect().center());
}

}  // namespace tandemize
