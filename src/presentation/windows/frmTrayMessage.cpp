#include "presentation/windows/frmTrayMessage.h"

#include <QAccessible>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <limits>

#include "errors/ModuloLog.h"
#include "presentation/Avvisi.h"
#include "presentation/windows/AdvSysTray.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/Icone.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/RegioneTonda.h"
#include "presentation/windows/Testo.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr int Margine = 14, MargineInAlto = 10, Spazio = 8;
constexpr int LatoImmagine = 24, LatoChiusura = 18;
constexpr int ZonaChiusura = 30;  // pixels from the upper right corner in which the mouse is over the button
constexpr int AltezzaInPiu = 700 / PixelPerTwip;
constexpr double InterlineaRelativa = 1.2;
constexpr double RaggioAngoli = 25 / 2.0;
constexpr int DistanzaDalBordo = 8;
constexpr int IntervalloAggiuntivo = 500;  // milliseconds
constexpr int SecondiMassimi = std::numeric_limits<int>::max() / 1000;

QString SuRighe(const std::string& testo) {
  return Testo(testo).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
}

// A label that shows an icon, sharp at the scale of the screen that it is on.
class Immagine : public QLabel {
 public:
  Immagine(const QString& nome, int lato, QWidget* parent) : QLabel(parent), lato_(lato) {
    setObjectName(nome);
    setFixedSize(lato, lato);
  }
  void Mostra(const QIcon& icona) { setPixmap(icona.pixmap(QSize(lato_, lato_), devicePixelRatioF())); }

 private:
  int lato_;
};

// A picture that others take theirs from.
Immagine* Fonte(const QString& nome, int lato, const QIcon& icona, QWidget* parent) {
  auto* fonte = new Immagine(nome, lato, parent);
  fonte->Mostra(icona);
  fonte->hide();
  return fonte;
}

// The lines stand as far apart as the balloon's height is reckoned for.
void ScriviTesto(QTextEdit& campo, const QString& testo) {
  campo.setPlainText(testo);
  QTextCursor tutto(campo.document());
  tutto.select(QTextCursor::Document);
  QTextBlockFormat righe;
  righe.setLineHeight(100 * InterlineaRelativa, QTextBlockFormat::ProportionalHeight);
  tutto.mergeBlockFormat(righe);
}

// How many lines the text takes in a box of that width. The document of a text box cannot tell: it follows
// the box that is on the screen now.
int RigheDisposte(const QTextEdit& campo, int larghezza) {
  const std::unique_ptr<QTextDocument> prova(campo.document()->clone());
  prova->setTextWidth(larghezza);
  // Only a document that is asked for its size lays out its lines.
  if (prova->size().isEmpty()) return 0;
  int righe = 0;
  for (QTextBlock blocco = prova->begin(); blocco.isValid(); blocco = blocco.next())
    righe += std::max(1, blocco.layout()->lineCount());
  return righe;
}

// Whether the screen blends windows with what is behind them. Not every X screen does, and which ones cannot
// be told here.
bool SchermoMescola() {
  return QGuiApplication::platformName() != QLatin1String("xcb");
}

// Where the notification area most likely is when nobody says: at the panel's end of the screen.
bool PannelloInAlto(const QScreen& schermo) {
  return schermo.availableGeometry().top() > schermo.geometry().top() &&
         schermo.availableGeometry().bottom() == schermo.geometry().bottom();
}

}  // namespace

struct frmTrayMessage::Controlli {
  QLabel* lblTitle = nullptr;
  QTextEdit* txtTip = nullptr;
  Immagine* imgDisplayIcon = nullptr;
  std::array<Immagine*, 3> imgIcon{}, imgIconXP{};
  QLabel* lblX = nullptr;
  Immagine *imgX = nullptr, *imgX_Up = nullptr, *imgX_Dn = nullptr;
  QTimer *timAutoClose = nullptr, *TimerAggiuntivo = nullptr;
  bool premuta = false;  // the close button, since the mouse went down on it
  QPoint presa;          // where in the window the mouse holds its title
  bool trascinata = false;
};

frmTrayMessage::frmTrayMessage()
    // Of the kinds of window that can have the focus, a splash window alone has no button in any task bar.
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      controlli_(std::make_unique<Controlli>()) {
  setObjectName(QStringLiteral("frmTrayMessage"));
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_DeleteOnClose);
  // A hidden program has no other window, and must not end with its notice.
  setAttribute(Qt::WA_QuitOnClose, false);
  Disponi();
  Controlli& c = *controlli_;
  c.timAutoClose = new QTimer(this);
  c.timAutoClose->setObjectName(QStringLiteral("timAutoClose"));
  c.timAutoClose->setSingleShot(true);
  connect(c.timAutoClose, &QTimer::timeout, this, [this] { HideBalloon(); });
  c.TimerAggiuntivo = new QTimer(this);
  c.TimerAggiuntivo->setObjectName(QStringLiteral("TimerAggiuntivo"));
  connect(c.TimerAggiuntivo, &QTimer::timeout, this, [this] { VerificaForm(); });
}

frmTrayMessage::~frmTrayMessage() {
  if (caricata_) BalloonCorrente.clear();
}

void frmTrayMessage::Disponi() {
  Controlli& c = *controlli_;
  for (int i = 0; i < 3; ++i) {
    const auto posto = static_cast<std::size_t>(i);
    c.imgIconXP[posto] = Fonte(Membro("imgIconXP", i), LatoImmagine, IconaAvviso(2 * i), this);
    c.imgIcon[posto] = Fonte(Membro("imgIcon", i), LatoImmagine, IconaAvviso(2 * i + 1), this);
  }
  c.imgX_Up = Fonte(QStringLiteral("imgX_Up"), LatoChiusura, IconaChiusura(false), this);
  c.imgX_Dn = Fonte(QStringLiteral("imgX_Dn"), LatoChiusura, IconaChiusura(true), this);

  c.imgDisplayIcon = new Immagine(QStringLiteral("imgDisplayIcon"), LatoImmagine, this);
  c.lblTitle = new QLabel(this);
  c.lblTitle->setObjectName(QStringLiteral("lblTitle"));
  c.lblTitle->setTextFormat(Qt::PlainText);
  c.lblTitle->setWordWrap(true);
  c.lblTitle->setCursor(Qt::SizeAllCursor);
  QFont grassetto = font();
  grassetto.setBold(true);
  c.lblTitle->setFont(grassetto);

  c.lblX = new QLabel(this);
  c.lblX->setObjectName(QStringLiteral("lblX"));
  c.lblX->setFixedSize(ZonaChiusura, ZonaChiusura);
  c.imgX = new Immagine(QStringLiteral("imgX"), LatoChiusura, c.lblX);
  c.imgX->move((ZonaChiusura - LatoChiusura) / 2, (ZonaChiusura - LatoChiusura) / 2);
  c.imgX->Mostra(IconaChiusura(false));
  const QString chiudi = Testo(InLingua("Chiudi", "Close"));
  c.imgX->setAccessibleName(chiudi);
  c.lblX->setToolTip(chiudi);
  c.lblX->hide();

  c.txtTip = new QTextEdit(this);
  c.txtTip->setObjectName(QStringLiteral("txtTip"));
  c.txtTip->setReadOnly(true);
  c.txtTip->setFrameShape(QFrame::NoFrame);
  c.txtTip->document()->setDocumentMargin(0);
  c.txtTip->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  c.txtTip->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  c.txtTip->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  c.txtTip->setTabChangesFocus(true);
  c.txtTip->viewport()->setAutoFillBackground(false);

  for (QWidget* oggetto : {static_cast<QWidget*>(c.lblTitle), static_cast<QWidget*>(c.imgDisplayIcon),
                           static_cast<QWidget*>(c.lblX), static_cast<QWidget*>(c.imgX)})
    oggetto->installEventFilter(this);

  auto* righe = new QGridLayout(this);
  righe->setContentsMargins(Margine, 0, 0, MargineInAlto);
  righe->setSpacing(0);
  auto* testata = new QHBoxLayout;
  testata->setContentsMargins(0, MargineInAlto, 0, 0);
  testata->setSpacing(Spazio);
  testata->addWidget(c.imgDisplayIcon, 0, Qt::AlignTop);
  testata->addWidget(c.lblTitle, 1, Qt::AlignVCenter);
  righe->addLayout(testata, 0, 0);
  righe->addWidget(c.lblX, 0, 1, Qt::AlignTop | Qt::AlignRight);
  auto* corpo = new QHBoxLayout;
  corpo->setContentsMargins(0, Spazio, Margine, 0);
  corpo->addWidget(c.txtTip);
  righe->addLayout(corpo, 1, 0, 1, 2);
  righe->setColumnStretch(0, 1);
  righe->setRowStretch(1, 1);
}

void frmTrayMessage::SetBalloon(const Avviso& avviso) {
  try {
    Riempi(avviso);
  } catch (const std::exception&) {
    // Whoever gives a notice goes on without it.
    ScriviLog("Errore nel form frmTrayBallon", RigaNormale);
    HideBalloon();
  }
}

void frmTrayMessage::Riempi(const Avviso& avviso) {
  Controlli& c = *controlli_;
  nomeForm_ = avviso.nomeForm;
  c.lblTitle->setText(SuRighe(avviso.titolo));
  setWindowTitle(Testo(avviso.titolo));
  setAccessibleName(Testo(avviso.titolo));
  if (!avviso.testo.empty()) {
    ScriviTesto(*c.txtTip, SuRighe(avviso.testo));
    c.txtTip->setAccessibleName(Testo(avviso.titolo));
    setAccessibleDescription(SuRighe(avviso.testo));
    BalloonCorrente = avviso.testo;
  }
  daMostrare_ = !avviso.titolo.empty() || !avviso.testo.empty();
  if (!daMostrare_) return;
  MostraImmagine(avviso.icona);
  c.lblX->show();
  c.imgX->show();
  c.timAutoClose->stop();
  if (avviso.secondi > 0) c.timAutoClose->start(std::min(avviso.secondi, SecondiMassimi) * 1000);
  c.TimerAggiuntivo->start(IntervalloAggiuntivo);
  Dimensiona();
  RoundCorners();
  Colloca();
}

void frmTrayMessage::MostraImmagine(int icona) {
  Controlli& c = *controlli_;
  const bool nota = icona >= 0 && icona < 6;
  c.imgDisplayIcon->setVisible(nota);
  if (nota) c.imgDisplayIcon->Mostra(IconaAvviso(icona));
}

// The lines are those that the text's width needs, or more where it breaks unevenly.
void frmTrayMessage::Dimensiona() {
  Controlli& c = *controlli_;
  const int box = Larghezza - 2 * Margine;
  const QFontMetrics misure(font());
  const int perLarghezza = misure.horizontalAdvance(c.txtTip->toPlainText()) / box;
  const int righe = std::max(perLarghezza, RigheDisposte(*c.txtTip, box) - 1);
  const double riga = misure.size(0, QStringLiteral("A")).height() * InterlineaRelativa;
  const int larghezzaTitolo =
      Larghezza - Margine - ZonaChiusura - (c.imgDisplayIcon->isVisibleTo(this) ? LatoImmagine + Spazio : 0);
  const int titolo = c.lblTitle->heightForWidth(larghezzaTitolo);
  const int altezza = static_cast<int>(std::ceil(riga * (righe + 1))) + titolo + AltezzaInPiu;

  const QScreen* schermo = QGuiApplication::primaryScreen();
  const int massima =
      schermo == nullptr ? altezza : schermo->availableGeometry().height() - 2 * DistanzaDalBordo;
  if (altezza > massima) c.txtTip->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setFixedSize(Larghezza, std::min(altezza, massima));
}

// Beside the icon in the notification area, else in the corner where that area is as a rule.
void frmTrayMessage::Colloca() {
  const QRect icona = AdvSysTray::Posizione();
  const QScreen* schermo = icona.isEmpty() ? nullptr : QGuiApplication::screenAt(icona.center());
  if (schermo == nullptr) schermo = QGuiApplication::primaryScreen();
  if (schermo == nullptr) return;
  const QRect area = schermo->availableGeometry().adjusted(DistanzaDalBordo, DistanzaDalBordo,
                                                           -DistanzaDalBordo, -DistanzaDalBordo);
  QPoint posto(area.right() + 1 - width(), area.bottom() + 1 - height());
  if (!icona.isEmpty()) {
    posto.setX(std::clamp(icona.center().x() + ZonaChiusura - width(), area.left(),
                          std::max(area.left(), posto.x())));
    const bool inAlto = icona.center().y() < schermo->geometry().center().y();
    const int y = inAlto ? icona.bottom() + DistanzaDalBordo : icona.top() - DistanzaDalBordo - height();
    posto.setY(std::clamp(y, area.top(), std::max(area.top(), posto.y())));
  } else if (PannelloInAlto(*schermo)) {
    posto.setY(area.top());
  }
  move(posto);
}

void frmTrayMessage::HideBalloon() {
  if (!caricata_) return;
  caricata_ = false;
  BalloonCorrente.clear();
  controlli_->timAutoClose->stop();
  controlli_->TimerAggiuntivo->stop();
  // Until it is destroyed nobody shall take it for a balloon that is up.
  setObjectName(QString());
  hide();
  deleteLater();
}

void frmTrayMessage::setVisible(bool visibile) {
  if (visibile && caricata_ && !daMostrare_) HideBalloon();
  if (visibile && !caricata_) return;
  QWidget::setVisible(visibile);
  if (!visibile) return;
  SopraIlModale();
  QAccessibleEvent annuncio(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&annuncio);
}

// A modal window keeps the mouse from all windows but those that belong to it.
void frmTrayMessage::SopraIlModale() {
  QWindow* modale = QGuiApplication::modalWindow();
  if (windowHandle() != nullptr && modale != nullptr) windowHandle()->setTransientParent(modale);
}

void frmTrayMessage::VerificaForm() {
  if (nomeForm_.empty() || ApplicazioneNascosta || FormAperto(nomeForm_)) return;
  HideBalloon();
}

bool frmTrayMessage::event(QEvent* evento) {
  if (evento->type() == QEvent::WindowBlocked) SopraIlModale();
  return QWidget::event(evento);
}

void frmTrayMessage::RoundCorners() {
  setMask(RegioneTonda(rect(), RaggioAngoli));
}

void frmTrayMessage::resizeEvent(QResizeEvent*) {
  RoundCorners();
}

void frmTrayMessage::paintEvent(QPaintEvent*) {
  QPainter pittore(this);
  // The border fills the mask to its last pixel, lest what the edge covers in part be black.
  pittore.setClipRegion(mask());
  if (!SchermoMescola()) pittore.fillRect(rect(), ColoreBase);
  pittore.setRenderHint(QPainter::Antialiasing);
  QLinearGradient sfondo(0, 0, 0, height());
  sfondo.setColorAt(0, ColoreIntestazione);
  sfondo.setColorAt(std::min(1.0, 34.0 / std::max(1, height())), ColoreSfondoChiaro);
  sfondo.setColorAt(1, ColoreSfondoChiaro);
  pittore.setBrush(sfondo);
  pittore.setPen(ColoreBase);
  // The border is one pixel wide, and its outer edge is that of the shape.
  pittore.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), RaggioAngoli - 0.5,
                          RaggioAngoli - 0.5);
}

bool frmTrayMessage::eventFilter(QObject* oggetto, QEvent* evento) {
  const Controlli& c = *controlli_;
  if (oggetto == c.imgX || oggetto == c.lblX) return EventoChiusura(*evento);
  if (oggetto == c.lblTitle || oggetto == c.imgDisplayIcon) return EventoTitolo(*evento);
  return QWidget::eventFilter(oggetto, evento);
}

bool frmTrayMessage::SuChiusura(const QPoint& globale) const {
  const QPoint punto = mapFromGlobal(globale);
  return rect().contains(punto) && punto.x() >= width() - ZonaChiusura && punto.y() < ZonaChiusura;
}

bool frmTrayMessage::EventoChiusura(QEvent& evento) {
  Controlli& c = *controlli_;
  switch (evento.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      if (static_cast<QMouseEvent&>(evento).button() != Qt::LeftButton) return false;
      c.premuta = true;
      c.imgX->Mostra(IconaChiusura(true));
      return true;
    case QEvent::MouseMove:
      if (!c.premuta) return false;
      c.imgX->Mostra(IconaChiusura(SuChiusura(static_cast<QMouseEvent&>(evento).globalPosition().toPoint())));
      return true;
    case QEvent::MouseButtonRelease:
      if (static_cast<QMouseEvent&>(evento).button() != Qt::LeftButton || !c.premuta) return false;
      c.premuta = false;
      c.imgX->Mostra(IconaChiusura(false));
      if (SuChiusura(static_cast<QMouseEvent&>(evento).globalPosition().toPoint())) HideBalloon();
      return true;
    default:
      return false;
  }
}

bool frmTrayMessage::EventoTitolo(QEvent& evento) {
  Controlli& c = *controlli_;
  switch (evento.type()) {
    case QEvent::MouseButtonPress: {
      const auto& mouse = static_cast<QMouseEvent&>(evento);
      if (mouse.button() != Qt::LeftButton) return false;
      // Not every window manager moves windows of this kind, so the balloon follows the mouse by itself,
      // except where no program knows its place.
      c.trascinata = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
      if (!c.trascinata && windowHandle() != nullptr) windowHandle()->startSystemMove();
      c.presa = mouse.globalPosition().toPoint() - pos();
      return true;
    }
    case QEvent::MouseMove:
      if (c.trascinata) move(static_cast<QMouseEvent&>(evento).globalPosition().toPoint() - c.presa);
      return c.trascinata;
    case QEvent::MouseButtonRelease:
      return std::exchange(c.trascinata, false);
    default:
      return false;
  }
}

void frmTrayMessage::keyPressEvent(QKeyEvent* evento) {
  if (evento->key() == Qt::Key_Escape) return HideBalloon();
  QWidget::keyPressEvent(evento);
}

// Hidden by whoever unloads windows by their name. A desktop that takes it off the screen for a while does
// not end it.
void frmTrayMessage::hideEvent(QHideEvent* evento) {
  if (!evento->spontaneous()) HideBalloon();
}

void frmTrayMessage::closeEvent(QCloseEvent* evento) {
  HideBalloon();
  evento->accept();
}

}  // namespace tandemize
