#include "presentation/windows/MostraToolTip.h"

#include <QBoxLayout>
#include <QEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <limits>

#include "presentation/windows/Icone.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/RegioneTonda.h"
#include "presentation/windows/Testo.h"
#include "shell/Impostazioni.h"

namespace tandemize {

namespace {

constexpr const char* NomeSuggerimento = "MostraToolTip";
constexpr const char* TitoloSuggerimento = "Informazioni Rapide";
constexpr int Coda = 8;  // height of the tip that points to the control
constexpr int PostoCoda = 22;
constexpr int Raggio = 7;
constexpr int LatoImmagine = 16;
constexpr int SecondiMassimi = std::numeric_limits<int>::max() / 1000;
const QColor SfondoSolito{255, 255, 225};

struct Contenuto {
  QString testo, titolo;
  OpzioniToolTip opzioni;
};

// The balloon on the screen. A child of the control's window, above all others.
class Fumetto : public QWidget {
 public:
  Fumetto(const Contenuto& contenuto, QWidget& controllo)
      : QWidget(controllo.window(), Qt::ToolTip | Qt::FramelessWindowHint),
        sfondo_(contenuto.opzioni.sfondo.isValid() ? contenuto.opzioni.sfondo : SfondoSolito),
        testo_(contenuto.opzioni.testo.isValid() ? contenuto.opzioni.testo : ColoreBase) {
    setObjectName(QStringLiteral("InformazioniRapide"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_TranslucentBackground);
    Disponi(contenuto);
    Colloca(controllo);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter pittore(this);
    pittore.setRenderHint(QPainter::Antialiasing);
    pittore.setBrush(sfondo_);
    pittore.setPen(testo_);
    pittore.drawPath(forma_);
  }

 private:
  QLabel* Etichetta(const char* nome, const QString& testo, bool grassetto) {
    auto* etichetta = new QLabel(testo, this);
    etichetta->setObjectName(QLatin1String(nome));
    etichetta->setTextFormat(Qt::PlainText);
    QFont carattere = etichetta->font();
    carattere.setBold(grassetto);
    etichetta->setFont(carattere);
    QPalette tavolozza = etichetta->palette();
    tavolozza.setColor(QPalette::WindowText, testo_);
    etichetta->setPalette(tavolozza);
    // As wide as it needs, up to what is allowed; broken into lines beyond.
    etichetta->setWordWrap(true);
    const int naturale =
        QFontMetrics(carattere).boundingRect(QRect(0, 0, larghezza_, 10000), Qt::TextWordWrap, testo).width();
    etichetta->setFixedWidth(std::min(larghezza_, naturale + 4));
    return etichetta;
  }

  void Disponi(const Contenuto& contenuto) {
    larghezza_ = std::max(contenuto.opzioni.larghezza, 60);
    auto* righe = new QVBoxLayout(this);
    righe->setContentsMargins(10, 8 + Coda, 10, 8 + Coda);
    righe->setSpacing(4);
    auto* testata = new QHBoxLayout;
    testata->setSpacing(6);
    // Kinds 1 and 2 are the first two pictures of the notices.
    if (const QIcon icona = IconaAvviso((contenuto.opzioni.icona - 1) * 2); !icona.isNull()) {
      auto* immagine = new QLabel(this);
      immagine->setPixmap(icona.pixmap(QSize(LatoImmagine, LatoImmagine), devicePixelRatioF()));
      testata->addWidget(immagine, 0, Qt::AlignTop);
    }
    testata->addWidget(Etichetta("lblTitle", contenuto.titolo, true));
    testata->addStretch(1);
    righe->addLayout(testata);
    righe->addWidget(Etichetta("lblTip", contenuto.testo, false));
    adjustSize();
  }

  // Under the control, or over it where there is no room below.
  void Colloca(const QWidget& controllo) {
    const QPoint mezzo = controllo.mapToGlobal(controllo.rect().center());
    const QPoint alto = controllo.mapToGlobal(QPoint(0, 0));
    const int basso = alto.y() + controllo.height();
    const QRect area = controllo.screen()->availableGeometry();
    const bool sotto = basso + height() <= area.bottom() || alto.y() - height() < area.top();
    const int x =
        std::clamp(mezzo.x() - PostoCoda, area.left(), std::max(area.left(), area.right() - width()));
    // The free strip on the side away from the control lies beyond the balloon's own edge.
    move(x, sotto ? basso - 2 : alto.y() - height() + 2);
    const int punta = std::clamp(mezzo.x() - x, Raggio + Coda + 2,
                                 std::max(Raggio + Coda + 2, width() - Raggio - Coda - 2));
    const QRectF corpo = QRectF(rect()).adjusted(0.5, Coda + 0.5, -0.5, -Coda - 0.5);
    QPainterPath riquadro, coda;
    riquadro.addRoundedRect(corpo, Raggio, Raggio);
    const qreal base = sotto ? corpo.top() + 1 : corpo.bottom() - 1;
    const qreal fine = sotto ? corpo.top() - Coda + 1 : corpo.bottom() + Coda - 1;
    coda.addPolygon(QPolygonF{{QPointF(punta - Coda, base), QPointF(punta, fine), QPointF(punta + Coda, base),
                               QPointF(punta - Coda, base)}});
    forma_ = riquadro.united(coda);
    // Without blending the free strips would be black. The tip's border lies half outside of its lines.
    const QRegion punte(coda.toFillPolygon().toPolygon());
    const int fuori = sotto ? -1 : 1;
    setMask(RegioneTonda(corpo.toAlignedRect(), Raggio + 0.5) | punte | punte.translated(-1, fuori) |
            punte.translated(1, fuori));
  }

  QColor sfondo_, testo_;
  int larghezza_ = 0;
  QPainterPath forma_;
};

// Watches the mouse on the control, and lives as long as the control.
class Suggerimento : public QObject {
 public:
  Suggerimento(QWidget& controllo, Contenuto contenuto)
      : QObject(&controllo), controllo_(controllo), contenuto_(std::move(contenuto)) {
    setObjectName(QLatin1String(NomeSuggerimento));
    attesa_.setObjectName(QStringLiteral("timRitardo"));
    durata_.setObjectName(QStringLiteral("timDurata"));
    for (QTimer* timer : {&attesa_, &durata_}) {
      timer->setParent(this);
      timer->setSingleShot(true);
    }
    attesa_.setInterval(std::max(contenuto_.opzioni.ritardo, 0));
    connect(&attesa_, &QTimer::timeout, this, [this] { Mostra(); });
    connect(&durata_, &QTimer::timeout, this, [this] { Nascondi(); });
    controllo.installEventFilter(this);
  }
  ~Suggerimento() override { delete fumetto_; }

 protected:
  bool eventFilter(QObject*, QEvent* evento) override {
    switch (evento->type()) {
      case QEvent::Enter:
        attesa_.start();
        return false;
      case QEvent::HoverMove:
      case QEvent::MouseMove:
        // The mouse does not rest yet.
        if (attesa_.isActive()) attesa_.start();
        return false;
      case QEvent::ToolTip:
        return true;
      case QEvent::KeyPress:
        return Tasto(static_cast<QKeyEvent&>(*evento));
      case QEvent::Leave:
      case QEvent::MouseButtonPress:
      case QEvent::Wheel:
      case QEvent::FocusOut:
      case QEvent::Hide:
      case QEvent::WindowDeactivate:
        Nascondi();
        return false;
      default:
        return false;
    }
  }

 private:
  bool Tasto(const QKeyEvent& tasto) {
    if (tasto.matches(QKeySequence::WhatsThis) ||
        (tasto.key() == Qt::Key_F1 && (tasto.modifiers() & Qt::ShiftModifier) != 0)) {
      Mostra();
      return true;
    }
    const bool chiusa = fumetto_ != nullptr && tasto.key() == Qt::Key_Escape;
    Nascondi();
    return chiusa;
  }

  void Mostra() {
    Nascondi();
    if (!controllo_.isVisible()) return;
    fumetto_ = new Fumetto(contenuto_, controllo_);
    fumetto_->show();
    const int secondi = std::min(contenuto_.opzioni.secondi, SecondiMassimi);
    if (secondi > 0) durata_.start(secondi * 1000);
  }

  void Nascondi() {
    attesa_.stop();
    durata_.stop();
    delete fumetto_;
  }

  QWidget& controllo_;
  Contenuto contenuto_;
  QTimer attesa_, durata_;
  QPointer<QWidget> fumetto_;
};

}  // namespace

void MostraToolTip(QWidget& Controllo, std::string_view Testo, std::string_view Titolo,
                   const OpzioniToolTip& opzioni) {
  if (!opzioni.forza && Help_ToolTip == 0) return;
  delete Controllo.findChild<QObject*>(QLatin1String(NomeSuggerimento), Qt::FindDirectChildrenOnly);
  const QString testo = tandemize::Testo(Testo).replace(u'\r', u'\n');
  const QString titolo = Titolo.empty() ? QLatin1String(TitoloSuggerimento) : tandemize::Testo(Titolo);
  Controllo.setWhatsThis(testo);
  Controllo.setAccessibleDescription(testo);
  new Suggerimento(Controllo, {testo, titolo, opzioni});
}

}  // namespace tandemize
