// The display of long internal work: a progress bar, what is being done, and the button that stops it. The
// engine FrmProgressBar tells what to show.
#pragma once

#include <memory>

#include "presentation/windows/Form.h"
#include "shell/Schermo.h"

namespace tandemize {

class FrmProgressBarWindow : public Form {
 public:
  explicit FrmProgressBarWindow(QWidget* proprietaria);
  ~FrmProgressBarWindow() override;

  // Takes a new state; drawn at most thirty times a second.
  void Mostra(const StatoAvanzamento& stato);

 protected:
  // Asks whether to stop. The window goes when the engine ends, so the answer is false in any case.
  bool QueryUnload() override;

 private:
  struct Controlli;
  std::unique_ptr<Controlli> controlli_;
};

}  // namespace tandemize
