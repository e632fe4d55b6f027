#include "backup/windows/FrmFileTransferWindow.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QVBoxLayout>

#include "presentation/windows/BarraProgresso.h"
#include "presentation/windows/BottoneAnnulla.h"
#include "presentation/windows/EtichettaElisa.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Ridisegno.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr int Larghezza = 540;

bool Finito(const StatoTrasferimento& stato) {
  return stato.fileTotali > 0 && stato.fileCopiati >= stato.fileTotali &&
         stato.byteCopiati >= stato.byteTotali;
}

}  // namespace

struct FrmFileTransferWindow::Controlli {
  explicit Controlli(FrmFileTransferWindow& f)
      : finestra(f),
        LblFileSource(new EtichettaElisa("LblFileSource", Qt::ElideMiddle, &f)),
        lblFileDestination(new EtichettaElisa("lblFileDestination", Qt::ElideMiddle, &f)),
        Picture1(new BarraProgresso("Picture1", "Label1", &f)),
        Picture2(new BarraProgresso("Picture2", "Label2", &f)),
        lblTrasferiti(new EtichettaElisa("lblTrasferiti", Qt::ElideRight, &f)),
        lblVelocità(new EtichettaElisa("lblVelocità", Qt::ElideRight, &f)),
        lblTempo(new EtichettaElisa("lblTempo", Qt::ElideRight, &f)),
        CmbAnnulla(new BottoneAnnulla("CmbAnnulla", "FrmFileTransfer", &f)),
        ridisegno(&f, [this] { Disegna(); }) {}

  void Disponi();
  void Disegna();
  // False if the window has gone meanwhile.
  bool DisegnaBarre(const StatoTrasferimento& adesso);

  FrmFileTransferWindow& finestra;
  EtichettaElisa *LblFileSource, *lblFileDestination;
  BarraProgresso *Picture1, *Picture2;  // overall, and the file at hand
  EtichettaElisa *lblTrasferiti, *lblVelocità, *lblTempo;
  BottoneAnnulla* CmbAnnulla;
  StatoTrasferimento stato;
  std::string sorgenteDisegnata;
  bool disegna = false, ancora = false, finito = false;
  Ridisegno ridisegno;
};

void FrmFileTransferWindow::Controlli::Disponi() {
  auto* file = new Riquadro(0, Testo(InLingua("File in corso", "Current file")), &finestra);
  file->Contenuto()->addWidget(LblFileSource);
  file->Contenuto()->addWidget(lblFileDestination);
  file->Contenuto()->addSpacing(2);
  file->Contenuto()->addWidget(Picture2);
  auto* totale = new Riquadro(1, Testo(InLingua("Totale", "Total")), &finestra);
  totale->Contenuto()->addWidget(Picture1);
  auto* riga = new QHBoxLayout;
  riga->setSpacing(12);
  riga->addWidget(lblTrasferiti, 3);
  riga->addWidget(lblVelocità, 1);
  riga->addWidget(lblTempo, 2);
  lblVelocità->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
  lblTempo->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  totale->Contenuto()->addLayout(riga);
  auto* disposizione = new QVBoxLayout(&finestra);
  disposizione->addWidget(file);
  disposizione->addWidget(totale);
  disposizione->addStretch(1);
  disposizione->addLayout(PreparaBottoni(nullptr, CmbAnnulla, nullptr));
}

// A state that comes while the bars let events run is drawn behind this one.
void FrmFileTransferWindow::Controlli::Disegna() {
  ancora = disegna;
  if (disegna) return;
  disegna = true;
  const StatoTrasferimento adesso = stato;
  if (!DisegnaBarre(adesso)) return;
  finestra.setWindowTitle(Testo(adesso.titolo));
  LblFileSource->Mostra(Testo(adesso.sorgente));
  lblFileDestination->Mostra(Testo(adesso.destinazione));
  lblTrasferiti->Mostra(Testo(adesso.trasferiti));
  lblVelocità->Mostra(Testo(adesso.velocità));
  lblTempo->Mostra(Testo(adesso.tempo));
  disegna = false;
  if (ancora) ridisegno.Chiedi();
}

bool FrmFileTransferWindow::Controlli::DisegnaBarre(const StatoTrasferimento& adesso) {
  const QPointer<FrmFileTransferWindow> viva = &finestra;
  Picture1->Trattieni();
  Picture2->Trattieni();
  if (adesso.byteTotali != Picture1->Max()) Picture1->Max(adesso.byteTotali);
  Picture1->Valore(adesso.byteCopiati);
  if (viva == nullptr) return false;
  const bool altroFile = adesso.sorgente != sorgenteDisegnata || adesso.valoreFile < Picture2->Valore();
  sorgenteDisegnata = adesso.sorgente;
  if (adesso.massimoFile != Picture2->Max()) Picture2->Max(adesso.massimoFile);
  if (altroFile) Picture2->Ricomincia();
  Picture2->Valore(adesso.valoreFile);
  if (viva == nullptr) return false;
  Picture1->Rilascia();
  Picture2->Rilascia();
  return true;
}

FrmFileTransferWindow::FrmFileTransferWindow(QWidget* proprietaria)
    : Form("FrmFileTransfer", proprietaria), controlli_(std::make_unique<Controlli>(*this)) {
  setWindowTitle(Testo(Messaggio(388)));
  controlli_->Disponi();
  controlli_->Picture1->setAccessibleName(Testo(InLingua("Avanzamento totale", "Overall progress")));
  controlli_->Picture2->setAccessibleName(
      Testo(InLingua("Avanzamento del file in corso", "Progress of the current file")));
  setMinimumWidth(Larghezza);
  ApplicaStile(*this);
}

FrmFileTransferWindow::~FrmFileTransferWindow() = default;

// The end is drawn whenever it comes, since the window goes with it.
void FrmFileTransferWindow::Mostra(const StatoTrasferimento& stato) {
  Controlli& c = *controlli_;
  c.stato = stato;
  const bool finito = Finito(stato);
  if (finito == c.finito || !finito) {
    c.finito = finito;
    return c.ridisegno.Chiedi();
  }
  c.finito = true;
  const QPointer<FrmFileTransferWindow> viva = this;
  c.ridisegno.Subito();
  if (viva != nullptr) repaint();
}

bool FrmFileTransferWindow::QueryUnload() {
  controlli_->CmbAnnulla->Chiedi();
  return false;
}

}  // namespace tandemize
