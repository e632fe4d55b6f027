#include "errors/windows/FrmLogView.h"

#include <QAction>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScrollBar>
#include <functional>

#include "errors/ModuloLog.h"
#include "errors/windows/ListaRighe.h"
#include "errors/windows/frmLogFind.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr const char* Nome = "FrmLogView";
constexpr QSize DimensioneIniziale{720, 380};

QStringList RigheDelLog() {
  QStringList righe;
  righe.reserve(static_cast<qsizetype>(ListaLog.size()));
  for (const std::string& riga : ListaLog) righe.append(Testo(riga));
  return righe;
}

void Attiva(FrmLogView& finestra) {
  if (auto* interna = qobject_cast<QMdiSubWindow*>(finestra.parentWidget()); interna != nullptr) {
    if (interna->isMinimized()) interna->showNormal();
    interna->mdiArea()->setActiveSubWindow(interna);
  } else {
    Presenta(finestra);
  }
  finestra.Attiva();
}

void ApriInterna(QMdiArea& area) {
  auto* finestra = new FrmLogView;
  QMdiSubWindow* interna = area.addSubWindow(finestra);
  interna->setAttribute(Qt::WA_DeleteOnClose);
  interna->resize(DimensioneIniziale.boundedTo(area.viewport()->size()));
  QObject::connect(&area, &QMdiArea::subWindowActivated, finestra,
                   [finestra, interna](QMdiSubWindow* attiva) {
                     if (attiva == interna) finestra->Attiva();
                   });
  interna->show();
}

void ApriEsterna() {
  auto* finestra = new FrmLogView(FinestraPrincipale());
  finestra->setWindowFlag(Qt::Window);
  finestra->setAttribute(Qt::WA_DeleteOnClose);
  finestra->resize(DimensioneIniziale);
  Presenta(*finestra);
}

}  // namespace

FrmLogView::FrmLogView(QWidget* parent)
    : QWidget(parent), ListLog_(new ListaRighe(this)), MenuLog_(new QMenu(this)) {
  setObjectName(QLatin1String(Nome));
  setWindowTitle(Testo(InLingua("Finestra di log", "Log window")));
  ListLog_->setAccessibleName(windowTitle());
  setFocusProxy(ListLog_);
  MettiLista(*this, *ListLog_);
  PreparaMenu();
  ApplicaStile(*this);
  SeguiFine();
  Attiva();
}

void FrmLogView::PreparaMenu() {
  MenuLog_->setObjectName(QStringLiteral("MenuLog"));
  const struct {
    const char* didascalia;
    QKeySequence::StandardKey tasti;
    std::function<void()> azione;
  } voci[] = {{"Copy to ClipBoard", QKeySequence::Copy, [this] { ListLog_->CopiaSelezione(); }},
              {"Select All", QKeySequence::SelectAll, [this] { ListLog_->selectAll(); }},
              {"Find Text", QKeySequence::Find, [this] { MostrafrmLogFind(*ListLog_); }}};
  int indice = 0;
  for (const auto& voce : voci) {
    QAction* azione = MenuLog_->addAction(QLatin1String(voce.didascalia), this, voce.azione);
    azione->setObjectName(Membro("MenuWindow", indice++));
    // The keys hold in this window alone, so that the others in the main window keep theirs.
    azione->setShortcut(voce.tasti);
    azione->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(azione);
  }
  ListLog_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(ListLog_, &QWidget::customContextMenuRequested, MenuLog_,
          [this](const QPoint& punto) { MenuLog_->popup(ListLog_->viewport()->mapToGlobal(punto)); });
}

// Keeps the list at its end, however its height changes, until the user leaves the end.
void FrmLogView::SeguiFine() {
  QScrollBar* barra = ListLog_->verticalScrollBar();
  connect(barra, &QScrollBar::rangeChanged, this, [this, barra] {
    if (allaFine_) barra->setValue(barra->maximum());
  });
  connect(barra, &QScrollBar::valueChanged, this, [this, barra](int posto) {
    if (!inRiempimento_) allaFine_ = posto == barra->maximum();
  });
}

void FrmLogView::AggiornaLavagna() {
  ListLog_->ImpostaAspetto();
}

void FrmLogView::RiempiLista() {
  QScrollBar* barra = ListLog_->verticalScrollBar();
  const int posto = barra->value();
  inRiempimento_ = true;
  ListLog_->Riempi(RigheDelLog());
  barra->setValue(allaFine_ ? barra->maximum() : posto);
  inRiempimento_ = false;
}

QListWidget* FrmLogView::ListLog() const {
  return ListLog_;
}

void FrmLogView::Attiva() {
  AggiornaLavagna();
  RiempiLista();
}

bool FrmLogView::event(QEvent* evento) {
  // Inside the main window it is the area that tells which window is the active one.
  if (evento->type() == QEvent::WindowActivate && isWindow()) Attiva();
  return QWidget::event(evento);
}

void FrmLogView::closeEvent(QCloseEvent* evento) {
  // From here on the window counts as unloaded, though it is destroyed a little later.
  ScaricaForm(Nome);
  evento->accept();
}

void MostraFrmLogView() {
  if (auto* aperta = static_cast<FrmLogView*>(FormDiNome(Nome)); aperta != nullptr) return Attiva(*aperta);
  QWidget* principale = FinestraPrincipale();
  auto* area = principale != nullptr ? principale->findChild<QMdiArea*>() : nullptr;
  if (area != nullptr)
    ApriInterna(*area);
  else
    ApriEsterna();
}

}  // namespace tandemize
