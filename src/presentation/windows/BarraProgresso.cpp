#include "presentation/windows/BarraProgresso.h"

#include <QFont>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <algorithm>
#include <cmath>

#include "presentation/windows/EtichettaElisa.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"

namespace tandemize {

namespace {

constexpr int Bordo = 1;                 // pixels
constexpr double MargineEtichetta = 60;  // units that the percent keeps from the picture's edges
constexpr int LarghezzaMinima = 120;     // pixels
const QColor ColoreBordoBarra{96, 156, 182};

QFont ConAspetto(QFont carattere, const AspettoEtichetta& aspetto) {
  if (aspetto.dimensione > 0) carattere.setPointSize(aspetto.dimensione);
  QStringList nomi;
  for (const std::string_view nome : aspetto.caratteri) nomi.append(Testo(nome));
  if (!nomi.isEmpty()) carattere.setFamilies(nomi);
  return carattere;
}

}  // namespace

class BarraProgresso::Quadro : public QuadroBarra {
 public:
  explicit Quadro(BarraProgresso& barra) : barra_(barra) {}

  [[nodiscard]] double ScaleWidth() const override { return barra_.Interno().width() * PixelPerTwip; }
  [[nodiscard]] double ScaleHeight() const override { return altezza_; }
  void Prepara(double altezza) override {
    altezza_ = altezza;
    barra_.setFixedHeight(static_cast<int>(std::lround(altezza / PixelPerTwip)) + 2 * Bordo);
  }
  void Riquadro(double x1, double y1, double x2, double y2) override { Disegna(x1, y1, x2, y2, true); }
  void Cancella(double x1, double y1, double x2, double y2) override { Disegna(x1, y1, x2, y2, false); }

 private:
  void Disegna(double x1, double y1, double x2, double y2, bool piena) {
    const double larghezza = ScaleWidth();
    if (larghezza <= 0 || altezza_ <= 0) return;
    barra_.Disegna({QPointF(x1 / larghezza, y1 / altezza_), QPointF(x2 / larghezza, y2 / altezza_)}, piena);
  }

  BarraProgresso& barra_;
  double altezza_ = 0;
};

// White on the bar. Where a short bar leaves the percent on the background it is written in the dark colour.
class BarraProgresso::Percento : public QLabel, public EtichettaBarra {
 public:
  explicit Percento(BarraProgresso& barra) : QLabel(&barra), barra_(barra) {}

  void Prepara(const AspettoEtichetta& aspetto) override {
    barra_.Sospendi();
    QFont carattere = ConAspetto(font(), aspetto);
    carattere.setBold(true);
    setFont(carattere);
    cima_ = aspetto.top;
    show();
  }
  void Caption(std::string_view testo) override {
    barra_.Sospendi();
    setText(Testo(testo));
    barra_.SistemaPercento();
  }
  void Left(double sinistra) override {
    barra_.Sospendi();
    distanza_ = sinistra - barra_.Barra().right() * barra_.quadro_->ScaleWidth();
    barra_.SistemaPercento();
  }
  // As far from the picture's bottom as from its top.
  void Sistema(const QRectF& interno, double fine) {
    const int larghezza = sizeHint().width();
    const double massima = interno.width() - MargineEtichetta / PixelPerTwip - larghezza;
    const double sinistra = std::max(MargineEtichetta, fine + distanza_) / PixelPerTwip;
    const double cima = cima_ / PixelPerTwip;
    setGeometry(static_cast<int>(std::lround(interno.left() + std::min(sinistra, massima))),
                static_cast<int>(std::lround(interno.top() + cima)), larghezza,
                static_cast<int>(std::lround(interno.height() - 2 * cima)));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter pittore(this);
    const QRectF barra = barra_.SulloSchermo(barra_.Barra()).translated(-pos());
    const QRectF sopra = barra & QRectF(rect());
    Scrivi(pittore, sopra, ColoreBianco);
    Scrivi(pittore, QRectF(rect()).adjusted(std::max(0.0, sopra.right()), 0, 0, 0), ColoreBase);
  }

 private:
  void Scrivi(QPainter& pittore, const QRectF& dove, const QColor& colore) {
    if (dove.isEmpty()) return;
    pittore.setClipRect(dove);
    pittore.setPen(colore);
    pittore.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text());
  }

  BarraProgresso& barra_;
  double distanza_ = 0, cima_ = 0;  // units: from the bar's end, from the picture's top
};

class BarraProgresso::Stato : public EtichettaBarra {
 public:
  explicit Stato(EtichettaElisa* etichetta) : etichetta_(etichetta) {}

  void Prepara(const AspettoEtichetta& aspetto) override {
    if (etichetta_ != nullptr) etichetta_->setFont(ConAspetto(etichetta_->font(), aspetto));
  }
  void Caption(std::string_view testo) override {
    if (etichetta_ != nullptr) etichetta_->Mostra(Testo(testo));
  }
  void Left(double) override {}

 private:
  QPointer<EtichettaElisa> etichetta_;
};

BarraProgresso::BarraProgresso(const char* nome, const char* nomeEtichetta, QWidget* parent)
    : QProgressBar(parent),
      percento_(new Percento(*this)),
      quadro_(std::make_unique<Quadro>(*this)),
      barra_(std::make_shared<ClsProgressBar>()) {
  setObjectName(QLatin1String(nome));
  percento_->setObjectName(QLatin1String(nomeEtichetta));
  setTextVisible(false);
  setRange(0, 100);
  barra_->Picture(quadro_.get());
  barra_->Label(percento_);
  Concludi();
}

BarraProgresso::~BarraProgresso() {
  barra_->Picture(nullptr);
  barra_->Label(nullptr);
  barra_->LabelStatus(nullptr);
}

void BarraProgresso::LabelStatus(EtichettaElisa* etichetta) {
  auto nuova = std::make_unique<Stato>(etichetta);
  barra_->LabelStatus(nuova.get());
  testoStato_ = std::move(nuova);
}

void BarraProgresso::Valore(double valore) {
  const std::shared_ptr<ClsProgressBar> barra = barra_;
  const QPointer<BarraProgresso> questa = this;
  barra->Value(valore);
  if (questa != nullptr) Concludi();
}

void BarraProgresso::Ricomincia() {
  barra_->Max(barra_->Max());
  if (Barra().isEmpty()) return;
  barra_->Refresh();
  percento_->Caption("");
  reset();
  Concludi();
}

void BarraProgresso::Rilascia() {
  --trattenuta_;
  Concludi();
}

QSize BarraProgresso::sizeHint() const {
  return {3 * LarghezzaMinima, height()};
}

QSize BarraProgresso::minimumSizeHint() const {
  return {LarghezzaMinima, height()};
}

QRectF BarraProgresso::Interno() const {
  return QRectF(rect()).adjusted(Bordo, Bordo, -Bordo, -Bordo);
}

// On whole pixels of the screen: a bar that begins in a pixel fills it.
QRectF BarraProgresso::SulloSchermo(const QRectF& area) const {
  const QRectF interno = Interno();
  const double scala = devicePixelRatioF();
  const auto x = [&](double quota) { return (interno.left() + quota * interno.width()) * scala; };
  const auto y = [&](double quota) { return (interno.top() + quota * interno.height()) * scala; };
  return {QPointF(std::floor(x(area.left())), std::floor(y(area.top()))) / scala,
          QPointF(std::round(x(area.right())), std::round(y(area.bottom()))) / scala};
}

QRectF BarraProgresso::Barra() const {
  for (auto tratto = tratti_.rbegin(); tratto != tratti_.rend(); ++tratto)
    if (tratto->barra) return tratto->area;
  return {};
}

// What is covered need not be kept; so a bar that grows stays one piece.
void BarraProgresso::Disegna(const QRectF& area, bool barra) {
  Sospendi();
  std::erase_if(tratti_, [&area](const Tratto& altro) { return area.contains(altro.area); });
  tratti_.push_back({area, barra});
}

void BarraProgresso::SistemaPercento() {
  percento_->Sistema(Interno(), Barra().right() * quadro_->ScaleWidth());
}

void BarraProgresso::Sospendi() {
  sospesa_ = true;
  setUpdatesEnabled(false);
}

// The value is for screen readers; told before the screen may be drawn again, it draws nothing itself.
void BarraProgresso::Concludi() {
  if (!sospesa_ || trattenuta_ > 0) return;
  sospesa_ = false;
  if (!Barra().isEmpty()) setValue(static_cast<int>(std::lround(barra_->Value() / barra_->Max() * 100)));
  setUpdatesEnabled(true);
}

void BarraProgresso::paintEvent(QPaintEvent*) {
  QPainter pittore(this);
  pittore.fillRect(rect(), ColoreBordoBarra);
  pittore.fillRect(Interno(), ColoreBianco);
  for (const Tratto& tratto : tratti_)
    pittore.fillRect(SulloSchermo(tratto.area), tratto.barra ? ColoreArancio : ColoreBianco);
}

void BarraProgresso::resizeEvent(QResizeEvent* evento) {
  QProgressBar::resizeEvent(evento);
  // The scale of what is drawn from now on.
  barra_->Max(barra_->Max());
  SistemaPercento();
}

}  // namespace tandemize
