// The picture and the timer of an animation on the screen.
#pragma once

#include <QImage>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "presentation/CaricaGif.h"

namespace tandemize {

// Shows one picture in its own size; nothing until it has got one.
class ImmagineGif : public QWidget {
 public:
  explicit ImmagineGif(const char* nome, QWidget* parent = nullptr);

  void Mostra(const ImmagineBgr& immagine);
  void Svuota();  // and takes no room any more
  [[nodiscard]] const QImage& Immagine() const { return immagine_; }

  // What draws a new picture, if the window holds its drawings to a rate; otherwise it is drawn at once.
  std::function<void()> Cambiata;

  [[nodiscard]] QSize sizeHint() const override { return immagine_.size(); }
  [[nodiscard]] QSize minimumSizeHint() const override { return immagine_.size(); }

 protected:
  void paintEvent(QPaintEvent* evento) override;

 private:
  QImage immagine_;
};

// An animation that runs in a picture with a timer. It may outlive both: it then shows nothing.
class AnimazioneGif : private ControlloImmagine, private TimerFotogrammi {
 public:
  AnimazioneGif(ImmagineGif* immagine, QTimer* timer) : immagine_(immagine), timer_(timer) {}

  // Loads a file, a program path, and starts it; events run meanwhile. False if it has no animation to show:
  // the picture is empty then, and the timer off.
  bool Esegui(const std::string& file);
  void Avanza() { FotogrammaSuccessivo(FrameCorrente, *this, ListaFrame, *this); }

 private:
  void Mostra(const ImmagineBgr& immagine) override;
  void Interval(int millisecondi) override;
  [[nodiscard]] bool Enabled() const override;
  void Enabled(bool acceso) override;

  QPointer<ImmagineGif> immagine_;
  QPointer<QTimer> timer_;
  cGifReader Lettore;
  ListaFotogrammi ListaFrame;
  std::size_t NumeroFrame = 0, FrameCorrente = 0;
};

}  // namespace tandemize
