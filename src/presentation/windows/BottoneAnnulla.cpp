#include "presentation/windows/BottoneAnnulla.h"

#include <QPointer>

#include "errors/ModuloGestioneErrori.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"

namespace tandemize {

BottoneAnnulla::BottoneAnnulla(const char* nome, const char* form, QWidget* parent)
    : QPushButton(Didascalia(Messaggio(395)), parent), form_(form) {
  setObjectName(QLatin1String(nome));
  connect(this, &QPushButton::clicked, this, [this] { Chiedi(); });
}

void BottoneAnnulla::Chiedi() {
  if (chiede_) return;
  chiede_ = true;
  const QPointer<BottoneAnnulla> questo = this;
  const bool fermata = AnnullaFinestra(form_);
  if (questo == nullptr) return;
  chiede_ = false;
  setEnabled(!fermata);
}

}  // namespace tandemize
