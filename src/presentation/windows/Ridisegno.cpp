#include "presentation/windows/Ridisegno.h"

#include <algorithm>
#include <utility>

namespace tandemize {

Ridisegno::Ridisegno(QObject* parent, std::function<void()> disegna)
    : QObject(parent), disegna_(std::move(disegna)) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, [this] { Subito(); });
}

void Ridisegno::Chiedi() {
  if (timer_.isActive()) return;
  const qint64 passati = ultimo_.isValid() ? ultimo_.elapsed() : Intervallo;
  if (passati >= Intervallo) return Subito();
  timer_.start(static_cast<int>(Intervallo - passati));
}

void Ridisegno::Subito() {
  timer_.stop();
  ultimo_.start();
  disegna_();
}

}  // namespace tandemize
