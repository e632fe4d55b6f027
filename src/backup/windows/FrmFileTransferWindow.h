// The display of a transfer: what is copied where, two progress bars, speed and remaining time, and the
// button that stops it. The engine FrmFileTransfer does the work and tells what to show.
#pragma once

#include <memory>

#include "presentation/windows/Form.h"
#include "shell/Schermo.h"

namespace tandemize {

class FrmFileTransferWindow : public Form {
 public:
  explicit FrmFileTransferWindow(QWidget* proprietaria);
  ~FrmFileTransferWindow() override;

  // Takes a new state; drawn at most thirty times a second.
  void Mostra(const StatoTrasferimento& stato);

 protected:
  // Asks whether to stop. The window goes when the engine ends, so the answer is false in any case.
  bool QueryUnload() override;

 private:
  struct Controlli;
  std::unique_ptr<Controlli> controlli_;
};

}  // namespace tandemize
