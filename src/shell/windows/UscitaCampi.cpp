#include "shell/windows/UscitaCampi.h"

#include <QFocusEvent>
#include <QTimer>
#include <algorithm>

namespace tandemize {

namespace {

// The focus goes to another control, not to another window, a menu or a list that drops down.
bool LasciaIlCampo(Qt::FocusReason motivo) {
  return motivo != Qt::ActiveWindowFocusReason && motivo != Qt::PopupFocusReason &&
         motivo != Qt::MenuBarFocusReason;
}

}  // namespace

UscitaCampi::UscitaCampi(QWidget* finestra, std::function<void(const QWidget&)> torna)
    : QObject(finestra), finestra_(finestra), torna_(std::move(torna)) {}

void UscitaCampi::Sorveglia(QLineEdit* campo, std::function<bool()> verifica) {
  campi_.push_back({campo, std::move(verifica)});
  campo->installEventFilter(this);
}

bool UscitaCampi::eventFilter(QObject* oggetto, QEvent* evento) {
  if (evento->type() != QEvent::FocusOut) return false;
  const Sorvegliato* sorvegliato = Cerca(oggetto);
  if (sorvegliato != nullptr && LasciaIlCampo(static_cast<QFocusEvent*>(evento)->reason()))
    Lasciato(sorvegliato->campo);
  return false;
}

// The focus is on its way, and a box in the middle of that would confuse it.
void UscitaCampi::Lasciato(QLineEdit* campo) {
  if (esente_ != nullptr && finestra_->focusWidget() == esente_) return;
  lasciato_ = campo;
  QTimer::singleShot(0, this, [this] {
    if (lasciato_ != nullptr && finestra_->isVisible()) Verifica();
  });
}

bool UscitaCampi::Verifica() {
  const QObject* campo = lasciato_ != nullptr ? lasciato_.data() : finestra_->focusWidget();
  lasciato_ = nullptr;
  const Sorvegliato* sorvegliato = Cerca(campo);
  if (sorvegliato == nullptr || sorvegliato->verifica()) return true;
  torna_(*sorvegliato->campo);
  sorvegliato->campo->setFocus(Qt::OtherFocusReason);
  sorvegliato->campo->selectAll();
  return false;
}

const UscitaCampi::Sorvegliato* UscitaCampi::Cerca(const QObject* oggetto) const {
  const auto trovato = std::ranges::find(campi_, oggetto, &Sorvegliato::campo);
  return trovato != campi_.end() ? &*trovato : nullptr;
}

}  // namespace tandemize
