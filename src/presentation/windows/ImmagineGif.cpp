#include "presentation/windows/ImmagineGif.h"

#include <QPainter>

namespace tandemize {

ImmagineGif::ImmagineGif(const char* nome, QWidget* parent) : QWidget(parent) {
  setObjectName(QLatin1String(nome));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  hide();
}

void ImmagineGif::Mostra(const ImmagineBgr& immagine) {
  const QImage vista(immagine.Byte.data(), immagine.Larghezza, immagine.Altezza,
                     static_cast<qsizetype>(immagine.Passo), QImage::Format_BGR888);
  const bool altraMisura = vista.size() != immagine_.size();
  immagine_ = vista.copy();
  if (altraMisura) updateGeometry();
  show();
  if (Cambiata)
    Cambiata();
  else
    update();
}

void ImmagineGif::Svuota() {
  immagine_ = {};
  hide();
  updateGeometry();
}

void ImmagineGif::paintEvent(QPaintEvent*) {
  QPainter pittore(this);
  pittore.setRenderHint(QPainter::SmoothPixmapTransform);
  pittore.drawImage(QRect({0, 0}, immagine_.size()), immagine_);
}

bool AnimazioneGif::Esegui(const std::string& file) {
  Enabled(false);
  const ErroreGif errore = CaricaGif(file, Lettore, NumeroFrame, FrameCorrente, *this, ListaFrame, *this);
  if (errore.Numero == 0 && NumeroFrame > 0) return true;
  Enabled(false);
  if (immagine_ != nullptr) immagine_->Svuota();
  return false;
}

void AnimazioneGif::Mostra(const ImmagineBgr& immagine) {
  if (immagine_ != nullptr) immagine_->Mostra(immagine);
}

void AnimazioneGif::Interval(int millisecondi) {
  if (timer_ != nullptr) timer_->setInterval(millisecondi);
}

bool AnimazioneGif::Enabled() const {
  return timer_ != nullptr && timer_->isActive();
}

void AnimazioneGif::Enabled(bool acceso) {
  if (timer_ == nullptr) return;
  if (acceso)
    timer_->start();
  else
    timer_->stop();
}

}  // namespace tandemize
