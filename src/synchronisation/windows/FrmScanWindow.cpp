#include "synchronisation/windows/FrmScanWindow.h"

#include <QHBoxLayout>
#include <QShowEvent>
#include <QTimer>
#include <string>
#include <string_view>
#include <utility>

#include "platform/machine.h"
#include "presentation/windows/BottoneAnnulla.h"
#include "presentation/windows/EtichettaElisa.h"
#include "presentation/windows/ImmagineGif.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Ridisegno.h"
#include "presentation/windows/Testo.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr int Larghezza = 440;
constexpr std::string_view FileAnimazione = "scansione.gif";

}  // namespace

struct FrmScanWindow::Controlli {
  explicit Controlli(FrmScanWindow& f)
      : finestra(f),
        PictureGif(new ImmagineGif("PictureGif", &f)),
        LblScanDir(new EtichettaElisa("LblScanDir", Qt::ElideMiddle, &f)),
        CmbAnnulla(new BottoneAnnulla("CmbAnnulla", "FrmScan", &f)),
        TimerFrames(new QTimer(&f)),
        ridisegno(&f, [this] { Disegna(); }) {}

  void Disegna() {
    finestra.setWindowTitle(Testo(stato.titolo));
    LblScanDir->Mostra(Testo(stato.cartella));
    PictureGif->update();
  }

  FrmScanWindow& finestra;
  ImmagineGif* PictureGif;
  EtichettaElisa* LblScanDir;
  BottoneAnnulla* CmbAnnulla;
  QTimer* TimerFrames;
  QTimer avvio;  // of the animation
  StatoScansione stato;
  bool caricata = false;
  std::shared_ptr<AnimazioneGif> animazione;
  Ridisegno ridisegno;
};

FrmScanWindow::FrmScanWindow(QWidget* proprietaria)
    : Form("FrmScan", proprietaria), controlli_(std::make_unique<Controlli>(*this)) {
  Controlli& c = *controlli_;
  c.TimerFrames->setObjectName(QStringLiteral("TimerFrames"));
  c.PictureGif->Cambiata = [&c] { c.ridisegno.Chiedi(); };
  c.PictureGif->setAccessibleName(Testo(InLingua("Animazione della scansione", "Scan animation")));
  // The animation is drawn for the window's own background.
  c.LblScanDir->setBackgroundRole(QPalette::Base);
  c.LblScanDir->setAutoFillBackground(true);
  c.LblScanDir->setContentsMargins(6, 4, 6, 4);
  auto* riga = new QHBoxLayout;
  riga->setSpacing(12);
  riga->addWidget(c.PictureGif);
  riga->addWidget(c.LblScanDir, 1);
  auto* disposizione = new QVBoxLayout(this);
  disposizione->addLayout(riga, 1);
  disposizione->addLayout(PreparaBottoni(nullptr, c.CmbAnnulla, nullptr));
  setMinimumWidth(Larghezza);
  connect(c.TimerFrames, &QTimer::timeout, this, [&c] {
    if (c.animazione != nullptr) c.animazione->Avanza();
  });
  c.avvio.setSingleShot(true);
  connect(&c.avvio, &QTimer::timeout, this, [this] { EseguiAnimazione(FileAnimazione); });
  ApplicaStile(*this);
}

FrmScanWindow::~FrmScanWindow() = default;

void FrmScanWindow::Mostra(const StatoScansione& stato) {
  controlli_->stato = stato;
  controlli_->ridisegno.Chiedi();
}

// The animation lets events run while it loads; it stays, even if the window goes meanwhile.
void FrmScanWindow::EseguiAnimazione(std::string_view nomeFile) {
  const auto animazione = std::make_shared<AnimazioneGif>(controlli_->PictureGif, controlli_->TimerFrames);
  controlli_->animazione = animazione;
  static_cast<void>(animazione->Esegui(platform::findIgnoringCase(PercorsoGif, nomeFile)));
}

// Loads the animation with the first showing, once the window stands.
void FrmScanWindow::showEvent(QShowEvent* evento) {
  Form::showEvent(evento);
  if (!std::exchange(controlli_->caricata, true)) controlli_->avvio.start(0);
}

bool FrmScanWindow::QueryUnload() {
  controlli_->CmbAnnulla->Chiedi();
  return false;
}

}  // namespace tandemize
