#include "presentation/windows/GruppoOpzioni.h"

#include <QRadioButton>

namespace tandemize {

void PreparaOpzioni(const std::vector<QRadioButton*>& opzioni) {
  for (QRadioButton* opzione : opzioni) {
    const auto aggiorna = [opzione](bool scelta) {
      opzione->setFocusPolicy(scelta ? Qt::StrongFocus : Qt::ClickFocus);
    };
    aggiorna(opzione->isChecked());
    QObject::connect(opzione, &QRadioButton::toggled, opzione, aggiorna);
  }
}

}  // namespace tandemize
