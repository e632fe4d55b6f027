// The look of all windows: the colour scheme, the routine that styles a window's controls, frames with drawn
// header strips, and the strip of buttons that stands for the tabs of a tab control.
//
// Sizes are in pixels of a screen at 100 %; the toolkit scales them.
#pragma once

#include <QColor>
#include <QFrame>
#include <QString>
#include <QTabWidget>
#include <QWidget>
#include <initializer_list>
#include <vector>

class QAbstractButton;
class QBoxLayout;
class QLabel;
class QPainter;
class QPushButton;
class QVBoxLayout;

namespace tandemize {

// The scheme.
inline const QColor ColoreBase{3, 58, 80};              // text of labels, options, frames and header strips
inline const QColor ColoreGrigio{160, 160, 160};        // text of a disabled header strip
inline const QColor ColoreSfondoChiaro{213, 238, 248};  // frames, lists, option and check boxes
inline const QColor ColoreIntestazione{162, 222, 246};  // header strips, last stop of their gradient
inline const QColor ColoreGradiente1{138, 198, 222};    // first stop of the header gradient
inline const QColor ColoreGradiente2{188, 230, 247};    // window background, buttons, tab strip, second stop
inline const QColor ColoreBianco{255, 255, 255};        // list background in the log windows
inline const QColor ColoreArancio{240, 86, 53};         // the bar of every progress display

inline constexpr int DimensioneCarattere = 8;  // points
inline constexpr int PixelPerTwip = 15;        // twips of a pixel
inline constexpr int AltezzaIntestazione = 20;
inline constexpr int LarghezzaBottone = 80, AltezzaBottone = 23;

// Fonts, palette and style sheet of the application; once, before the first window.
void ImpostaColori();

// Gives a window's background and each of its controls their look, by their kind: buttons bold unless their
// caption is "...", labels, options and check boxes in ColoreBase, frames and lists on ColoreSfondoChiaro.
// To be called when the controls are there; again after some were added.
void ApplicaStile(QWidget& Form);

// Fills a rectangle from left to right through three colours.
void Gradiente(QPainter& pittore, const QRectF& rettangolo, const QColor& Colore1, const QColor& Colore2,
               const QColor& Colore3);

// A header strip. Of a text that holds " - " the part before it is the title, in bold, the rest its note.
class PicIntestazione : public QWidget {
 public:
  explicit PicIntestazione(const QString& testo = {}, QWidget* parent = nullptr);
  void DisegnaIntestazione(const QString& testo, bool disabilitata);
  [[nodiscard]] const QString& Titolo() const { return titolo_; }
  [[nodiscard]] const QString& Nota() const { return nota_; }
  [[nodiscard]] bool Disabilitata() const { return disabilitata_; }
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  QString titolo_, nota_;
  bool disabilitata_ = false;
};

// A rounded frame with a header strip at its top, and a layout for what it holds. The frame is named
// "PicFrame(n)", the strip "PicIntestazioneFrm(n)".
class Riquadro : public QFrame {
 public:
  Riquadro(int indice, const QString& testo, QWidget* parent = nullptr);
  [[nodiscard]] QVBoxLayout* Contenuto() const { return contenuto_; }
  [[nodiscard]] PicIntestazione* Intestazione() const { return intestazione_; }
  // ApplicaIntestazioni: the strip's look, and the state of everything in the frame.
  void Abilita(bool abilitata);

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  PicIntestazione* intestazione_;
  QWidget* corpo_;
  QVBoxLayout* contenuto_;
};

// Captions and keys of a window's confirm buttons: `ok` "&OK" and the default one, `annulla` message 395 and
// the one of the Escape key; a caption that is set already stays. Any may be null. Gives a row with the
// buttons at its right end.
[[nodiscard]] QBoxLayout* PreparaBottoni(QPushButton* Ok, QPushButton* Annulla, QPushButton* Terzo);

// A tab control ("SSTab1") whose headers are replaced by a column of buttons at its left ("PicColTab", with a
// "PicColTabHeaders(n)" a tab) and a header with the current tab's caption at its top ("lblHeader"); a click
// on that header goes to the next tab. The keys Ctrl+Tab, Ctrl+Shift+Tab, Ctrl+PageDown and Ctrl+PageUp
// change the tab too.
class Schede : public QWidget {
 public:
  explicit Schede(QWidget* parent = nullptr);
  // Adds a page with a scroll area around it, so that it holds in a small window. Gives its number.
  int Aggiungi(QWidget* pagina, const QString& didascalia);
  void SelezionaScheda(int indice);
  [[nodiscard]] int Corrente() const { return SSTab1_->currentIndex(); }
  [[nodiscard]] QTabWidget* SSTab1() const { return SSTab1_; }

 private:
  QAbstractButton* NuovoBottone(const QString& didascalia, int indice);

  QWidget* PicColTab_;
  QVBoxLayout* colonna_;
  QAbstractButton* lblHeader_;
  QTabWidget* SSTab1_;
  std::vector<QAbstractButton*> bottoni_;
};

}  // namespace tandemize
