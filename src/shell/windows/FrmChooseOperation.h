// The question with which the program begins: what does the user want to set up?
#pragma once

#include "presentation/windows/Form.h"

class QRadioButton;

namespace tandemize {

class FrmChooseOperation : public Form {
 public:
  enum class Scelta { Nessuna, Sincronizzazione, Diagramma };

  explicit FrmChooseOperation(QWidget* proprietaria);

  // The window that the user has selected, once the dialog is closed.
  [[nodiscard]] Scelta Selezionata() const { return scelta_; }

 private:
  void Cmd_Click(int membro);

  QRadioButton* sincronizzazione_;
  Scelta scelta_ = Scelta::Nessuna;
};

}  // namespace tandemize
