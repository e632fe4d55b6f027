#include "presentation/windows/EtichettaElisa.h"

#include <QEvent>
#include <QPainter>
#include <QTextDocument>

namespace tandemize {

namespace {

constexpr int LarghezzaMinima = 60;

}  // namespace

EtichettaElisa::EtichettaElisa(const char* nome, Qt::TextElideMode dove, QWidget* parent)
    : QLabel(parent), dove_(dove) {
  setObjectName(QString::fromUtf8(nome));
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void EtichettaElisa::Mostra(const QString& testo) {
  if (testo == text()) return;
  setText(testo);
  // A name from a server may look like mark-up.
  setToolTip(Qt::mightBeRichText(testo) ? QStringLiteral("<span>") + testo.toHtmlEscaped() + "</span>"
                                        : testo);
}

bool EtichettaElisa::Intera() const {
  return fontMetrics().horizontalAdvance(text()) <= contentsRect().width();
}

QSize EtichettaElisa::sizeHint() const {
  const QMargins margini = contentsMargins();
  return {LarghezzaMinima, fontMetrics().height() + 2 + margini.top() + margini.bottom()};
}

QSize EtichettaElisa::minimumSizeHint() const {
  return sizeHint();
}

void EtichettaElisa::paintEvent(QPaintEvent*) {
  QPainter pittore(this);
  drawFrame(&pittore);
  pittore.setPen(palette().color(foregroundRole()));
  const QRect spazio = contentsRect();
  pittore.drawText(spazio, static_cast<int>(alignment()) | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), dove_, spazio.width()));
}

bool EtichettaElisa::event(QEvent* evento) {
  // What is seen whole needs no tip.
  if (evento->type() == QEvent::ToolTip && Intera()) return true;
  return QLabel::event(evento);
}

}  // namespace tandemize
