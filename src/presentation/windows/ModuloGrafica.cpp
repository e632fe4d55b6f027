#include "presentation/windows/ModuloGrafica.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <memory>

#include "presentation/windows/Icone.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"

namespace tandemize {

namespace {

constexpr const char* NomeCarattere = "Arial";
constexpr int RaggioRiquadro = 8;
const QColor ColoreSpento{88, 118, 132};  // text of what cannot be used, still legible on every background
const QColor ColoreBordo{96, 156, 182};

constexpr const char* FoglioDiStile = R"(
QPushButton { background: #bce6f7; color: #033a50; border: 1px solid #609cb6; border-radius: 3px;
  padding: 2px 10px; min-height: 17px; }
QPushButton:hover { background: #d5eef8; }
QPushButton:pressed { background: #8ac6de; }
QPushButton:default { border: 2px solid #033a50; padding: 1px 9px; }
QPushButton:focus { background: #d5eef8; border: 2px solid #033a50; padding: 1px 9px; }
QPushButton:disabled { color: #587684; border: 1px solid #a0c4d4; }
QLineEdit, QSpinBox, QPlainTextEdit { background: white; color: #033a50; border: 1px solid #609cb6;
  border-radius: 2px; padding: 1px 3px; min-height: 17px; selection-background-color: #033a50; }
QLineEdit:focus { border: 1px solid #033a50; }
QLineEdit:disabled { background: #d5eef8; color: #587684; border: 1px solid #a0c4d4; }
QHeaderView::section { background: #bce6f7; color: #033a50; border: none; border-right: 1px solid #8ac6de;
  border-bottom: 1px solid #8ac6de; padding: 1px 4px; }
QListView, QTreeView { border: 1px solid #8ac6de; }
QToolTip { background: #ffffe1; color: #033a50; border: 1px solid #033a50; }
QMenu { background: #d5eef8; color: #033a50; border: 1px solid #609cb6; }
QMenu::item { padding: 4px 24px 4px 12px; }
QMenu::icon { padding-left: 6px; }
QMenu::item:selected { background: #033a50; color: white; }
QMenu::item:disabled { color: #587684; }
QMenuBar { background: #bce6f7; color: #033a50; }
QMenuBar::item { padding: 3px 8px; background: transparent; }
QMenuBar::item:selected { background: #8ac6de; }
)";

// The toolkit's plain style with the program's own pictures in message boxes.
class StileDelProgramma : public QProxyStyle {
 public:
  StileDelProgramma() : QProxyStyle(QStringLiteral("Fusion")) {}

  QIcon standardIcon(StandardPixmap immagine, const QStyleOption* opzione,
                     const QWidget* controllo) const override {
    switch (immagine) {
      case SP_MessageBoxInformation:
        return IconaAvviso(0);
      case SP_MessageBoxWarning:
        return IconaAvviso(2);
      case SP_MessageBoxCritical:
        return IconaCritica();
      case SP_MessageBoxQuestion:
        return IconaDomanda();
      default:
        return QProxyStyle::standardIcon(immagine, opzione, controllo);
    }
  }
};

QPalette TavolozzaDelloSchema() {
  QPalette tavolozza;
  tavolozza.setColor(QPalette::Window, ColoreGradiente2);
  tavolozza.setColor(QPalette::Base, ColoreSfondoChiaro);
  tavolozza.setColor(QPalette::AlternateBase, ColoreGradiente2);
  tavolozza.setColor(QPalette::Button, ColoreGradiente2);
  tavolozza.setColor(QPalette::Highlight, ColoreBase);
  tavolozza.setColor(QPalette::HighlightedText, ColoreBianco);
  tavolozza.setColor(QPalette::Link, ColoreBase);
  for (const QPalette::ColorRole ruolo : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    tavolozza.setColor(ruolo, ColoreBase);
    tavolozza.setColor(QPalette::Disabled, ruolo, ColoreSpento);
  }
  tavolozza.setColor(QPalette::PlaceholderText, ColoreSpento);
  return tavolozza;
}

void Grassetto(QWidget& controllo, bool acceso) {
  QFont carattere = controllo.font();
  carattere.setBold(acceso);
  controllo.setFont(carattere);
}

// Those of a tool bar look as the system's own do.
bool DiBarra(const QPushButton& bottone) {
  return bottone.objectName().startsWith(QLatin1String("TOOLBAR"), Qt::CaseInsensitive);
}

void StileBottone(QPushButton& bottone) {
  if (DiBarra(bottone)) bottone.setStyleSheet(QStringLiteral("background: palette(light)"));
  Grassetto(bottone, bottone.text() != QLatin1String("..."));
  if (bottone.property("tag").toString().compare(QLatin1String("D"), Qt::CaseInsensitive) == 0) {
    bottone.setMinimumSize(LarghezzaBottone, AltezzaBottone);
    bottone.setFlat(true);
  }
}

}  // namespace

void ImpostaColori() {
  auto stile = std::make_unique<StileDelProgramma>();
  QApplication::setStyle(stile.release());  // which takes it over
  QApplication::setPalette(TavolozzaDelloSchema());
  QApplication::setFont(QFont(QLatin1String(NomeCarattere), DimensioneCarattere));
  qApp->setStyleSheet(QLatin1String(FoglioDiStile));
}

void ApplicaStile(QWidget& Form) {
  Form.setAutoFillBackground(true);
  const auto bottoni = Form.findChildren<QPushButton*>();
  for (QPushButton* bottone : bottoni)
    if (!bottone->isCheckable()) StileBottone(*bottone);  // of a tab strip the chosen one alone is bold
}

void Gradiente(QPainter& pittore, const QRectF& rettangolo, const QColor& Colore1, const QColor& Colore2,
               const QColor& Colore3) {
  QLinearGradient gradiente(rettangolo.topLeft(), rettangolo.topRight());
  gradiente.setColorAt(0, Colore1);
  gradiente.setColorAt(0.5, Colore2);
  gradiente.setColorAt(1, Colore3);
  pittore.fillRect(rettangolo, gradiente);
}

PicIntestazione::PicIntestazione(const QString& testo, QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  DisegnaIntestazione(testo, false);
}

void PicIntestazione::DisegnaIntestazione(const QString& testo, bool disabilitata) {
  const QString separatore = QStringLiteral(" - ");
  const qsizetype posizione = testo.indexOf(separatore);
  titolo_ = posizione < 0 ? testo : testo.left(posizione);
  nota_ = posizione < 0 ? QString() : testo.mid(posizione + separatore.size());
  disabilitata_ = disabilitata;
  setAccessibleName(testo);
  updateGeometry();
  update();
}

QSize PicIntestazione::sizeHint() const {
  QFont grassetto = font();
  grassetto.setBold(true);
  int larghezza = QFontMetrics(grassetto).horizontalAdvance(titolo_) + 20;
  if (!nota_.isEmpty()) larghezza += fontMetrics().horizontalAdvance(QStringLiteral(" - ") + nota_);
  return {larghezza, std::max(AltezzaIntestazione, fontMetrics().height() + 4)};
}

QSize PicIntestazione::minimumSizeHint() const {
  return {40, sizeHint().height()};
}

void PicIntestazione::paintEvent(QPaintEvent*) {
  QPainter pittore(this);
  pittore.setRenderHint(QPainter::Antialiasing);
  QPainterPath bordo;
  bordo.addRoundedRect(rect(), RaggioRiquadro - 2, RaggioRiquadro - 2);
  pittore.setClipPath(bordo);
  Gradiente(pittore, rect(), ColoreGradiente1, ColoreGradiente2, ColoreIntestazione);
  // A lighter strip over the upper part gives the bar its sheen.
  QColor bianco = ColoreBianco;
  bianco.setAlpha(110);
  QRectF superiore = rect();
  superiore.setHeight(superiore.height() * 0.45);
  QLinearGradient luce(superiore.topLeft(), superiore.bottomLeft());
  luce.setColorAt(0, bianco);
  bianco.setAlpha(20);
  luce.setColorAt(1, bianco);
  pittore.fillRect(superiore, luce);

  pittore.setClipping(false);
  pittore.setPen(disabilitata_ ? ColoreGrigio : ColoreBase);
  QRect spazio = rect().adjusted(8, 0, -8, 0);
  QFont carattere = font();
  carattere.setBold(true);
  pittore.setFont(carattere);
  const QFontMetrics misure(carattere);
  const QString titolo = misure.elidedText(titolo_, Qt::ElideRight, spazio.width());
  pittore.drawText(spazio, Qt::AlignVCenter | Qt::AlignLeft, titolo);
  if (nota_.isEmpty()) return;
  spazio.setLeft(spazio.left() + misure.horizontalAdvance(titolo));
  pittore.setFont(font());
  pittore.drawText(spazio, Qt::AlignVCenter | Qt::AlignLeft,
                   fontMetrics().elidedText(QStringLiteral(" - ") + nota_, Qt::ElideRight, spazio.width()));
}

Riquadro::Riquadro(int indice, const QString& testo, QWidget* parent)
    : QFrame(parent), intestazione_(new PicIntestazione(testo, this)), corpo_(new QWidget(this)) {
  setObjectName(Membro("PicFrame", indice));
  intestazione_->setObjectName(Membro("PicIntestazioneFrm", indice));
  intestazione_->setVisible(!testo.isEmpty());
  auto* esterno = new QVBoxLayout(this);
  esterno->setContentsMargins(1, 1, 1, 1);
  esterno->setSpacing(0);
  esterno->addWidget(intestazione_);
  esterno->addWidget(corpo_, 1);
  contenuto_ = new QVBoxLayout(corpo_);
  contenuto_->setContentsMargins(10, 8, 10, 8);
  contenuto_->setSpacing(5);
}

void Riquadro::Abilita(bool abilitata) {
  const QString separatore = intestazione_->Nota().isEmpty() ? QString() : QStringLiteral(" - ");
  intestazione_->DisegnaIntestazione(intestazione_->Titolo() + separatore + intestazione_->Nota(),
                                     !abilitata);
  corpo_->setEnabled(abilitata);
}

void Riquadro::paintEvent(QPaintEvent*) {
  QPainter pittore(this);
  pittore.setRenderHint(QPainter::Antialiasing);
  pittore.setBrush(ColoreSfondoChiaro);
  pittore.setPen(ColoreBordo);
  pittore.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), RaggioRiquadro, RaggioRiquadro);
}

QBoxLayout* PreparaBottoni(QPushButton* Ok, QPushButton* Annulla, QPushButton* Terzo) {
  auto* riga = new QHBoxLayout;
  riga->setSpacing(8);
  riga->addStretch(1);
  if (Ok != nullptr && Ok->text().isEmpty()) Ok->setText(QStringLiteral("&OK"));
  if (Annulla != nullptr && Annulla->text().isEmpty()) Annulla->setText(Didascalia(Messaggio(395)));
  for (QPushButton* bottone : {Terzo, Ok, Annulla}) {
    if (bottone == nullptr) continue;
    bottone->setProperty("tag", QStringLiteral("D"));
    bottone->setAutoDefault(true);  // Enter presses the button that has the focus
    riga->addWidget(bottone);
  }
  if (Ok != nullptr) Ok->setDefault(true);
  return riga;
}

}  // namespace tandemize
