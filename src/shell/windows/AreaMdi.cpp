#include "shell/windows/AreaMdi.h"

#include <QPainter>

#include "presentation/windows/ModuloGrafica.h"

namespace tandemize {

AreaMdi::AreaMdi(QWidget* parent) : QMdiArea(parent) {
  setObjectName(QStringLiteral("MDIArea"));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setFrameShape(QFrame::NoFrame);
}

void AreaMdi::paintEvent(QPaintEvent*) {
  QPainter pittore(viewport());
  Gradiente(pittore, viewport()->rect(), ColoreGradiente1, ColoreGradiente2, ColoreSfondoChiaro);
}

}  // namespace tandemize
