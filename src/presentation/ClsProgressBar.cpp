#include "presentation/ClsProgressBar.h"

#include <cmath>

#include "shell/Schermo.h"

namespace tandemize {

namespace {

constexpr double AltezzaQuadro = 350, SinistraBarra = 1, CimaBarra = 7, FondoBarra = 350;
constexpr double LarghezzaEtichetta = 700;  // it ends where the bar ends

}  // namespace

void ClsProgressBar::Picture(QuadroBarra* quadro) {
  quadro_ = quadro;
  if (quadro_ != nullptr) quadro_->Prepara(AltezzaQuadro);
}

void ClsProgressBar::Label(EtichettaBarra* etichetta) {
  etichetta_ = etichetta;
  PreparaEtichetta();
}

void ClsProgressBar::PreparaEtichetta() {
  ultimoPercento_ = 0;
  if (etichetta_ == nullptr) return;
  AspettoEtichetta aspetto;
  aspetto.dimensione = 10;
  aspetto.bianca = aspetto.trasparente = aspetto.autoSize = true;
  aspetto.top = 30;
  etichetta_->Prepara(aspetto);
}

void ClsProgressBar::LabelStatus(EtichettaBarra* etichetta) {
  etichettaStato_ = etichetta;
  if (etichettaStato_ == nullptr) return;
  AspettoEtichetta aspetto;
  aspetto.dimensione = 9;
  aspetto.caratteri = {"Arial", "Verdana"};
  etichettaStato_->Prepara(aspetto);
}

void ClsProgressBar::TextStatus(std::string_view testo) {
  testoStato_ = testo;
  if (etichettaStato_ != nullptr) etichettaStato_->Caption(testoStato_);
}

void ClsProgressBar::Max(double valore) {
  const double larghezza = quadro_ == nullptr ? 0 : quadro_->ScaleWidth();
  scala_ = larghezza > 0 ? valore / larghezza : 0;
  max_ = valore;
  ultimoPercento_ = 0;
}

void ClsProgressBar::Value(double valore) {
  if (max_ == 0 || valore > max_) return;
  value_ = valore;
  if (!(valore > 0)) return;
  // In single precision, where 29 of 100 is 29 percent; in double it is a little less, and would not be
  // drawn.
  const auto percento = static_cast<float>(valore / max_ * 100);
  if (!(percento >= ultimoPercento_ + 1)) return;
  const double lunghezza = scala_ == 0 ? 0 : std::floor(valore / scala_);
  if (lunghezza == 0) return;
  Disegna(lunghezza, percento);
}

// Events run between all steps. The label is made afresh each time, which forgets what was drawn last, until
// the end notes it.
void ClsProgressBar::Disegna(double lunghezza, float percento) {
  DoEvents();
  PreparaEtichetta();
  DoEvents();
  if (quadro_ != nullptr) quadro_->Riquadro(SinistraBarra, CimaBarra, lunghezza, FondoBarra);
  DoEvents();
  // Half a percent goes to the even neighbour.
  if (etichetta_ != nullptr) etichetta_->Caption(std::to_string(std::lrint(percento)) + "%");
  DoEvents();
  if (etichetta_ != nullptr) etichetta_->Left(lunghezza - LarghezzaEtichetta);
  ultimoPercento_ = percento;
}

void ClsProgressBar::Refresh() {
  if (quadro_ != nullptr) quadro_->Cancella(0, 0, quadro_->ScaleWidth(), quadro_->ScaleHeight());
}

}  // namespace tandemize
