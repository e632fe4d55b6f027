#include "shell/windows/BarraStrumenti.h"

#include <QMenu>
#include <QPainter>
#include <QToolButton>
#include <utility>

#include "presentation/windows/Icone.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"

namespace tandemize {

namespace {

constexpr int LatoIcona = 28;
// Before these a line parts the buttons: runs, settings, logs, exit.
constexpr bool ConSeparatorePrima(int bottone) {
  return bottone == 2 || bottone == 3 || bottone == 5;
}

constexpr const char* Foglio = R"(
QToolBar { border: none; border-bottom: 1px solid #609cb6; spacing: 3px; padding: 3px 6px; }
QToolBar::separator { background: #609cb6; width: 1px; margin: 5px 5px; }
QToolButton { border: 1px solid transparent; border-radius: 4px; padding: 4px; background: transparent; }
QToolButton:hover { background: #d5eef8; border: 1px solid #609cb6; }
QToolButton:focus { border: 2px solid #033a50; padding: 3px; }
QToolButton:pressed, QToolButton:open { background: #8ac6de; border: 1px solid #609cb6; }
QToolButton::menu-indicator { subcontrol-origin: padding; subcontrol-position: bottom right; }
)";

QToolButton* Bottone(const QString& nome, const QIcon& icona, QToolBar& barra) {
  auto* bottone = new QToolButton(&barra);
  bottone->setObjectName(nome);
  bottone->setIcon(icona);
  bottone->setIconSize(QSize(LatoIcona, LatoIcona));
  bottone->setFocusPolicy(Qt::TabFocus);
  return bottone;
}

void Nomina(QToolButton& bottone, const std::string& testo) {
  bottone.setToolTip(Testo(testo).toHtmlEscaped());
  bottone.setAccessibleName(Testo(testo));
}

}  // namespace

BarraStrumenti::BarraStrumenti(QWidget* parent, const std::function<void(int)>& premuto, QMenu* menuTray)
    : QToolBar(parent) {
  setObjectName(QStringLiteral("PicToolBar"));
  setMovable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);
  setStyleSheet(QLatin1String(Foglio));
  for (int i = 0; i < NumeroBottoni; ++i) {
    if (ConSeparatorePrima(i)) addSeparator();
    QToolButton* bottone = Bottone(Membro("ToolBar2", i), IconaBarra(i), *this);
    connect(bottone, &QToolButton::clicked, this, [premuto, i] { premuto(i); });
    addWidget(bottone);
    bottoni_.at(static_cast<std::size_t>(i)) = bottone;
  }
  auto* molla = new QWidget(this);
  molla->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  molla->setAttribute(Qt::WA_TransparentForMouseEvents);
  addWidget(molla);
  pulsanteTray_ = Bottone(QStringLiteral("PulsanteTray"), IconaProgramma(), *this);
  pulsanteTray_->setMenu(menuTray);
  pulsanteTray_->setPopupMode(QToolButton::InstantPopup);
  azioneTray_ = addWidget(pulsanteTray_);
  MostraTray(false);
}

void BarraStrumenti::Didascalie(const std::array<std::string, NumeroBottoni>& testi,
                                const std::string& testoTray) {
  for (std::size_t i = 0; i < bottoni_.size(); ++i) Nomina(*bottoni_.at(i), testi.at(i));
  Nomina(*pulsanteTray_, testoTray);
}

void BarraStrumenti::MostraTray(bool mostra) {
  azioneTray_->setVisible(mostra);
}

void BarraStrumenti::paintEvent(QPaintEvent* evento) {
  QPainter pittore(this);
  Gradiente(pittore, rect(), ColoreGradiente1, ColoreGradiente2, ColoreIntestazione);
  pittore.end();
  QToolBar::paintEvent(evento);
}

}  // namespace tandemize
