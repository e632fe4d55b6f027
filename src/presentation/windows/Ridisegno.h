// Holds a window to at most thirty drawings a second, however often what it shows changes.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

namespace tandemize {

class Ridisegno : public QObject {
 public:
  static constexpr int Intervallo = 34;  // milliseconds

  // `disegna` shows the latest state.
  Ridisegno(QObject* parent, std::function<void()> disegna);

  // Something has changed: draws at once if the last drawing is long enough ago, else when its time has come,
  // once for all changes until then.
  void Chiedi();
  // Draws at once whatever is still to be drawn.
  void Subito();

 private:
  std::function<void()> disegna_;
  QTimer timer_;
  QElapsedTimer ultimo_;
};

}  // namespace tandemize
