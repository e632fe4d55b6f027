// The strip of buttons that stands for the headers of a tab control.
#include <QAbstractButton>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QTabBar>
#include <QVBoxLayout>

#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"

namespace tandemize {

namespace {

// The current tab's caption, drawn as a header strip.
class EtichettaScheda : public QAbstractButton {
 public:
  explicit EtichettaScheda(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }
  [[nodiscard]] QSize sizeHint() const override { return {100, fontMetrics().height() + 12}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter pittore(this);
    Gradiente(pittore, rect(), ColoreGradiente1, ColoreGradiente2, ColoreIntestazione);
    QFont carattere = font();
    carattere.setBold(true);
    carattere.setPointSizeF(carattere.pointSizeF() + 1);
    pittore.setFont(carattere);
    pittore.setPen(ColoreBase);
    pittore.drawText(rect().adjusted(10, 0, -10, 0), Qt::AlignVCenter | Qt::AlignLeft, text());
  }
};

constexpr int MargineBottone = 28;
constexpr const char* StileColonna =
    "QPushButton { text-align: left; border: 1px solid #8ac6de; border-radius: 3px; padding: 4px 12px;"
    " background: #bce6f7; }"
    "QPushButton:checked { background: #d5eef8; border: 1px solid #033a50; }"
    "QPushButton:focus { border: 2px solid #033a50; padding: 3px 11px; }";

}  // namespace

Schede::Schede(QWidget* parent)
    : QWidget(parent),
      PicColTab_(new QWidget(this)),
      colonna_(new QVBoxLayout(PicColTab_)),
      lblHeader_(new EtichettaScheda(this)),
      SSTab1_(new QTabWidget(this)) {
  PicColTab_->setObjectName(QStringLiteral("PicColTab"));
  PicColTab_->setStyleSheet(QLatin1String(StileColonna));
  lblHeader_->setObjectName(QStringLiteral("lblHeader"));
  SSTab1_->setObjectName(QStringLiteral("SSTab1"));
  SSTab1_->tabBar()->hide();
  SSTab1_->setDocumentMode(true);
  colonna_->setContentsMargins(0, 0, 0, 0);
  colonna_->setSpacing(4);
  colonna_->addStretch(1);
  auto* destra = new QVBoxLayout;
  destra->setSpacing(6);
  destra->addWidget(lblHeader_);
  destra->addWidget(SSTab1_, 1);
  auto* riga = new QHBoxLayout(this);
  riga->setContentsMargins(0, 0, 0, 0);
  riga->setSpacing(8);
  riga->addWidget(PicColTab_);
  riga->addLayout(destra, 1);

  const auto avanza = [this](int passo) {
    const int numero = SSTab1_->count();
    if (numero > 0) SelezionaScheda((SSTab1_->currentIndex() + passo + numero) % numero);
  };
  connect(lblHeader_, &QAbstractButton::clicked, this, [avanza] { avanza(1); });
  for (const auto& [tasti, passo] :
       {std::pair{"Ctrl+Tab", 1}, {"Ctrl+PgDown", 1}, {"Ctrl+Shift+Tab", -1}, {"Ctrl+PgUp", -1}}) {
    auto* scorciatoia = new QShortcut(QKeySequence(QLatin1String(tasti)), this);
    connect(scorciatoia, &QShortcut::activated, this, [avanza, passo = passo] { avanza(passo); });
  }
}

QAbstractButton* Schede::NuovoBottone(const QString& didascalia, int indice) {
  auto* bottone = new QPushButton(didascalia, PicColTab_);
  bottone->setObjectName(Membro("PicColTabHeaders", indice));
  bottone->setCheckable(true);
  bottone->setAutoDefault(false);
  // As wide as when it is the bold one, so that the column keeps its width.
  QFont grassetto = bottone->font();
  grassetto.setBold(true);
  bottone->setMinimumWidth(QFontMetrics(grassetto).horizontalAdvance(didascalia) + MargineBottone);
  connect(bottone, &QPushButton::clicked, this, [this, indice] { SelezionaScheda(indice); });
  colonna_->insertWidget(indice, bottone);
  // The Tab key goes through all headers, and then through the page.
  if (!bottoni_.empty()) setTabOrder(bottoni_.back(), bottone);
  bottoni_.push_back(bottone);
  return bottone;
}

int Schede::Aggiungi(QWidget* pagina, const QString& didascalia) {
  NuovoBottone(didascalia, SSTab1_->count());
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  QPalette tavolozza = pagina->palette();
  tavolozza.setColor(QPalette::Window, ColoreSfondoChiaro);
  pagina->setPalette(tavolozza);
  pagina->setAutoFillBackground(true);
  area->setWidget(pagina);
  const int indice = SSTab1_->addTab(area, didascalia);
  if (indice == 0) SelezionaScheda(0);
  return indice;
}

void Schede::SelezionaScheda(int indice) {
  if (indice < 0 || indice >= SSTab1_->count()) return;
  SSTab1_->setCurrentIndex(indice);
  for (std::size_t i = 0; i < bottoni_.size(); ++i) {
    const bool scelto = i == static_cast<std::size_t>(indice);
    QFont carattere = bottoni_[i]->font();
    carattere.setBold(scelto);
    bottoni_[i]->setFont(carattere);
    bottoni_[i]->setChecked(scelto);
  }
  lblHeader_->setText(SSTab1_->tabText(indice));
  lblHeader_->setAccessibleName(SSTab1_->tabText(indice));
}

}  // namespace tandemize
