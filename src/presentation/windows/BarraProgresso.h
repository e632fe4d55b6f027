// The progress bar on the screen: a picture on which ClsProgressBar draws in its own scale, 15 units for each
// pixel at 100 %, and the label for the percent that rides on the bar's end.
//
// What is drawn keeps its proportion when the picture gets another width. For a screen reader it is a
// progress bar with the percent as its value.
#pragma once

#include <QProgressBar>
#include <QRectF>
#include <memory>
#include <string_view>
#include <vector>

#include "presentation/ClsProgressBar.h"

namespace tandemize {

class EtichettaElisa;

class BarraProgresso : public QProgressBar {
 public:
  // Names of the picture and of its percent label.
  BarraProgresso(const char* nome, const char* nomeEtichetta, QWidget* parent = nullptr);
  ~BarraProgresso() override;

  // The label for the text under the bar.
  void LabelStatus(EtichettaElisa* etichetta);
  void TextStatus(std::string_view testo) { barra_->TextStatus(testo); }

  // As ClsProgressBar has them. `Valore` lets events run while it draws, in which this object may go.
  // Whatever is drawn comes to the screen in one piece at the end.
  void Max(double massimo) { barra_->Max(massimo); }
  [[nodiscard]] double Max() const { return barra_->Max(); }
  void Valore(double valore);
  [[nodiscard]] double Valore() const { return barra_->Value(); }
  // An empty bar without a percent.
  void Ricomincia();

  // Between the two nothing comes to the screen: a window with several bars shows them at once.
  void Trattieni() { ++trattenuta_; }
  void Rilascia();

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* evento) override;
  void resizeEvent(QResizeEvent* evento) override;

 private:
  class Quadro;
  class Percento;
  class Stato;
  struct Tratto {
    QRectF area;  // from left to right shares of the picture's width, from top to bottom of its height
    bool barra;   // otherwise background
  };

  [[nodiscard]] QRectF Interno() const;
  [[nodiscard]] QRectF SulloSchermo(const QRectF& area) const;
  [[nodiscard]] QRectF Barra() const;  // what is filled, as an area; empty if nothing is
  void Disegna(const QRectF& area, bool barra);
  void SistemaPercento();
  void Sospendi();
  void Concludi();

  std::vector<Tratto> tratti_;
  bool sospesa_ = false;  // something is drawn that is not on the screen yet
  int trattenuta_ = 0;
  Percento* percento_;
  std::unique_ptr<Quadro> quadro_;
  std::unique_ptr<Stato> testoStato_;
  std::shared_ptr<ClsProgressBar> barra_;  // outlives a bar that goes while it draws
};

}  // namespace tandemize
