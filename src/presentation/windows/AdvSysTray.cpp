#include "presentation/windows/AdvSysTray.h"

#include <QRect>
#include <QWidget>

#include "presentation/windows/Testo.h"

namespace tandemize {

namespace {

constexpr int LunghezzaToolTip = 127, LunghezzaToolTipVecchia = 63;
constexpr int PrimaVersioneLunga = 5;

// A session that begins has its notification area within seconds.
constexpr int IntervalloIniziale = 1000, IntervalloPoi = 5000;  // milliseconds
constexpr int VerificheIniziali = 30;

// Cut by characters; one that takes two units is never cut in half.
QString Tagliato(const QString& testo, int lunghezza) {
  qsizetype fine = 0;
  for (int caratteri = 0; caratteri < lunghezza && fine < testo.size(); ++caratteri)
    fine += testo.at(fine).isHighSurrogate() && fine + 1 < testo.size() ? 2 : 1;
  return testo.left(fine);
}

// The icon that is there now.
QPointer<QSystemTrayIcon>& Attuale() {
  static QPointer<QSystemTrayIcon> tray;
  return tray;
}

void Chiama(const std::function<void()>& evento) {
  if (evento) evento();
}

}  // namespace

AdvSysTray::AdvSysTray(int versioneShell) : versioneShell_(versioneShell) {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { VerificaDisponibilità(); });
}

AdvSysTray::~AdvSysTray() {
  delete tray_;
}

bool AdvSysTray::Disponibile() {
  return QSystemTrayIcon::isSystemTrayAvailable();
}

void AdvSysTray::Icon(const QIcon& icona) {
  icona_ = icona;
  if (tray_ != nullptr) tray_->setIcon(icona_);
}

void AdvSysTray::ToolTip(std::string_view testo) {
  toolTip_ = Testo(Tagliato(
      Testo(testo), versioneShell_ >= PrimaVersioneLunga ? LunghezzaToolTip : LunghezzaToolTipVecchia));
  if (tray_ != nullptr) tray_->setToolTip(Testo(toolTip_));
}

void AdvSysTray::Create(QWidget* Owner) {
  if (tray_ != nullptr) return;
  disponibile_ = ChiediDisponibile();
  tray_ = new QSystemTrayIcon(icona_, Owner);
  Attuale() = tray_;
  tray_->setObjectName(QStringLiteral("AdvSysTray"));
  tray_->setToolTip(Testo(toolTip_));
  tray_->setContextMenu(menu_);
  QObject::connect(tray_, &QSystemTrayIcon::activated, tray_,
                   [this](QSystemTrayIcon::ActivationReason ragione) { Attivata(ragione); });
  tray_->show();
  verifiche_ = 0;
  timer_.start(IntervalloIniziale);
}

void AdvSysTray::Destroy() {
  timer_.stop();
  if (tray_ == nullptr) return;
  // Perhaps called by one of its own events.
  tray_->hide();
  tray_->deleteLater();
  tray_ = nullptr;
  Attuale() = nullptr;
}

void AdvSysTray::Menu(QMenu* menu) {
  menu_ = menu;
  if (tray_ != nullptr) tray_->setContextMenu(menu);
}

QRect AdvSysTray::Posizione() {
  const QRect posto = Attuale() == nullptr || !Disponibile() ? QRect() : Attuale()->geometry();
  // An icon that the notification area has not taken in yet claims to be in the corner of the screen.
  return posto.topLeft().isNull() ? QRect() : posto;
}

void AdvSysTray::Solleva(EventoTray evento) const {
  switch (evento) {
    case EventoTray::SinistroPremuto:
      return Chiama(SinistroPremuto);
    case EventoTray::SinistroRilasciato:
      return Chiama(SinistroRilasciato);
    case EventoTray::SinistroDoppio:
      return Chiama(SinistroDoppio);
    case EventoTray::DestroPremuto:
      return Chiama(DestroPremuto);
    case EventoTray::DestroRilasciato:
      return Chiama(DestroRilasciato);
    case EventoTray::DestroDoppio:
      return Chiama(DestroDoppio);
  }
}

void AdvSysTray::Attivata(QSystemTrayIcon::ActivationReason ragione) const {
  switch (ragione) {
    case QSystemTrayIcon::Trigger:
      Solleva(EventoTray::SinistroPremuto);
      return Solleva(EventoTray::SinistroRilasciato);
    case QSystemTrayIcon::DoubleClick:
      return Solleva(EventoTray::SinistroDoppio);
    case QSystemTrayIcon::Context:
      Solleva(EventoTray::DestroPremuto);
      return Solleva(EventoTray::DestroRilasciato);
    default:
      return;
  }
}

void AdvSysTray::VerificaDisponibilità() {
  if (tray_ == nullptr) return;
  if (++verifiche_ == VerificheIniziali) timer_.setInterval(IntervalloPoi);
  if (ChiediDisponibile() == disponibile_) return;
  disponibile_ = !disponibile_;
  Chiama(DisponibilitàCambiata);
}

}  // namespace tandemize
