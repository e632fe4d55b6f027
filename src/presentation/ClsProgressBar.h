// A progress bar drawn on a picture box, with a label for the percent that rides on its end and a label for a
// text under it. This is its model: what is drawn when and where. A window gives it the picture and the
// labels.
//
// Positions are in the picture's own scale, whatever its unit is; the constants below are made for a picture
// of a few thousand units. Drawing is told once for each whole percent, so callers may set the value for
// every item. Whatever has not been given is not drawn on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

// The picture box.
class QuadroBarra {
 public:
  QuadroBarra() = default;
  virtual ~QuadroBarra() = default;
  QuadroBarra(const QuadroBarra&) = delete;
  QuadroBarra& operator=(const QuadroBarra&) = delete;

  [[nodiscard]] virtual double ScaleWidth() const = 0;  // inner size
  [[nodiscard]] virtual double ScaleHeight() const = 0;
  // Keeps what is drawn on it, and takes this height.
  virtual void Prepara(double altezza) = 0;
  // A filled box between two corners, in the colour of progress bars (ColoreArancio).
  virtual void Riquadro(double x1, double y1, double x2, double y2) = 0;
  // The same in the picture's background colour.
  virtual void Cancella(double x1, double y1, double x2, double y2) = 0;
};

// What a label is to look like; what is empty or false stays as it is.
struct AspettoEtichetta {
  int dimensione = 0;                       // of the font, in points
  std::vector<std::string_view> caratteri;  // names of fonts, to be set in this order
  bool bianca = false;                      // white text
  bool trasparente = false;                 // the background
  bool autoSize = false;
  double top = 0;  // 0: stays
};

class EtichettaBarra {
 public:
  EtichettaBarra() = default;
  virtual ~EtichettaBarra() = default;
  EtichettaBarra(const EtichettaBarra&) = delete;
  EtichettaBarra& operator=(const EtichettaBarra&) = delete;

  virtual void Prepara(const AspettoEtichetta& aspetto) = 0;  // and makes it visible
  virtual void Caption(std::string_view testo) = 0;
  virtual void Left(double sinistra) = 0;
};

class ClsProgressBar {
 public:
  // The picture and the labels are the window's, and outlive the bar or are taken away again by null.
  void Picture(QuadroBarra* quadro);      // 350 high
  void Label(EtichettaBarra* etichetta);  // the percent; what was drawn last is forgotten
  void LabelStatus(EtichettaBarra* etichetta);
  void TextStatus(std::string_view testo);
  [[nodiscard]] const std::string& TextStatus() const { return testoStato_; }

  // The value of the full bar. To be set after the picture, whose width then gives the scale.
  void Max(double valore);
  [[nodiscard]] double Max() const { return max_; }

  // Ignored if `Max` is 0 or is passed. Otherwise the value is kept, and drawn if it is a whole percent above
  // what was drawn last and at least one unit long. The bar only grows; a value that is no number draws
  // nothing. Drawing lets events run.
  void Value(double valore);
  [[nodiscard]] double Value() const { return value_; }

  // Clears the whole picture.
  void Refresh();

 private:
  void PreparaEtichetta();
  void Disegna(double lunghezza, float percento);

  QuadroBarra* quadro_ = nullptr;
  EtichettaBarra* etichetta_ = nullptr;
  EtichettaBarra* etichettaStato_ = nullptr;
  std::string testoStato_;
  double max_ = 0, value_ = 0;
  double scala_ = 0;          // value for each unit of the picture
  float ultimoPercento_ = 0;  // drawn last
};

}  // namespace tandemize
