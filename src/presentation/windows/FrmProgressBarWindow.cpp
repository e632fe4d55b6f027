#include "presentation/windows/FrmProgressBarWindow.h"

#include <QFrame>
#include <QPointer>
#include <QVBoxLayout>

#include "errors/ModuloGestioneErrori.h"
#include "presentation/windows/BarraProgresso.h"
#include "presentation/windows/BottoneAnnulla.h"
#include "presentation/windows/EtichettaElisa.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Ridisegno.h"
#include "presentation/windows/Testo.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

constexpr int Larghezza = 440;

}  // namespace

struct FrmProgressBarWindow::Controlli {
  explicit Controlli(FrmProgressBarWindow& f)
      : finestra(f),
        PicProgress(new BarraProgresso("PicProgress", "lblProgress", &f)),
        LblStatus(new EtichettaElisa("LblStatus", Qt::ElideMiddle, &f)),
        CmdAnnulla(new BottoneAnnulla("CmdAnnulla", "FrmProgressBar", &f)),
        ridisegno(&f, [this] { Disegna(); }) {}

  // The bar lets events run: the window may go meanwhile, and a state that comes is drawn behind this one.
  void Disegna() {
    ancora = disegna;
    if (disegna) return;
    disegna = true;
    const QPointer<FrmProgressBarWindow> viva = &finestra;
    const StatoAvanzamento adesso = stato;
    PicProgress->Trattieni();
    if (adesso.massimo != PicProgress->Max() || adesso.valore < PicProgress->Valore()) {
      PicProgress->Max(adesso.massimo);
      PicProgress->Ricomincia();
    }
    PicProgress->Valore(adesso.valore);
    if (viva == nullptr) return;
    PicProgress->Rilascia();
    PicProgress->TextStatus(adesso.testo);
    disegna = false;
    if (ancora) ridisegno.Chiedi();
  }

  FrmProgressBarWindow& finestra;
  BarraProgresso* PicProgress;
  EtichettaElisa* LblStatus;
  BottoneAnnulla* CmdAnnulla;
  StatoAvanzamento stato;
  bool disegna = false, ancora = false;
  Ridisegno ridisegno;
};

FrmProgressBarWindow::FrmProgressBarWindow(QWidget* proprietaria)
    : Form("FrmProgressBar", proprietaria), controlli_(std::make_unique<Controlli>(*this)) {
  setWindowTitle(Testo(TitoloApplicazione));
  auto* Frame1 = new QFrame(this);
  Frame1->setObjectName(QStringLiteral("Frame1"));
  auto* interno = new QVBoxLayout(Frame1);
  interno->setContentsMargins(0, 0, 0, 0);
  interno->addWidget(controlli_->PicProgress);
  interno->addWidget(controlli_->LblStatus);
  auto* esterno = new QVBoxLayout(this);
  esterno->addWidget(Frame1);
  esterno->addLayout(PreparaBottoni(nullptr, controlli_->CmdAnnulla, nullptr));

  controlli_->PicProgress->LabelStatus(controlli_->LblStatus);
  controlli_->LblStatus->setBackgroundRole(QPalette::Base);
  controlli_->LblStatus->setAutoFillBackground(true);
  controlli_->LblStatus->setContentsMargins(4, 2, 4, 2);
  setMinimumWidth(Larghezza);
  ApplicaStile(*this);
}

FrmProgressBarWindow::~FrmProgressBarWindow() = default;

void FrmProgressBarWindow::Mostra(const StatoAvanzamento& stato) {
  controlli_->stato = stato;
  controlli_->CmdAnnulla->setEnabled(stato.annullabile && !OperazioneAnnullata());
  controlli_->ridisegno.Chiedi();
}

bool FrmProgressBarWindow::QueryUnload() {
  controlli_->CmdAnnulla->Chiedi();
  return false;
}

}  // namespace tandemize
