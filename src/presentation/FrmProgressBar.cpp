#include "presentation/FrmProgressBar.h"

namespace tandemize {

FrmProgressBar::FrmProgressBar(FinestraOperazione* proprietaria, std::string_view testo, double massimo)
    : FinestraOperazione("FrmProgressBar"), proprietaria_(proprietaria) {
  stato_.visibile = true;
  stato_.annullabile = proprietaria != nullptr;
  stato_.massimo = massimo;
  Testo(testo);
}

FrmProgressBar::~FrmProgressBar() {
  stato_.visibile = false;
  schermo().Mostra(stato_);
}

void FrmProgressBar::Testo(std::string_view testo) {
  stato_.testo = testo;
  schermo().Mostra(stato_);
}

void FrmProgressBar::Valore(double valore) {
  if (stato_.massimo <= 0 || valore > stato_.massimo) return;
  stato_.valore = valore;
  const double punto = stato_.massimo / 100;
  if (valore < ultimoMostrato_ + punto) return;
  ultimoMostrato_ = valore;
  schermo().Mostra(stato_);
}

void FrmProgressBar::Annulla(bool confermato) {
  if (proprietaria_ == nullptr) return;
  FinestraOperazione::Annulla(confermato);
  if (ProcessoAnnullato) proprietaria_->ProcessoAnnullato = true;
}

}  // namespace tandemize
