// The help card on the screen. The model FrmTipMessage holds its texts and rules.
#pragma once

#include "presentation/FrmTipMessage.h"
#include "presentation/windows/Form.h"

class QCheckBox;

namespace tandemize {

class FrmTipMessageWindow : public Form {
 public:
  FrmTipMessageWindow(const FrmTipMessage& scheda, QWidget* proprietaria);
  [[nodiscard]] bool Chk() const;

 private:
  QCheckBox* Chk_;
};

// Shows a card modally, and takes over how the user left its check box: what FrmTipMessage::Init wants.
void MostraFrmTipMessage(FrmTipMessage& scheda);

}  // namespace tandemize
