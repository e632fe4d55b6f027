// The display of a scan: the path, the folder at hand, an animation, and the button that stops it. The engine
// FrmScan does the work and tells what to show.
#pragma once

#include <memory>
#include <string_view>

#include "presentation/windows/Form.h"
#include "shell/Schermo.h"

namespace tandemize {

class FrmScanWindow : public Form {
 public:
  explicit FrmScanWindow(QWidget* proprietaria);
  ~FrmScanWindow() override;

  // Takes a new state; drawn at most thirty times a second.
  void Mostra(const StatoScansione& stato);

  // Loads an animation of the program's own, a file name in PercorsoGif, and starts it. A file that cannot be
  // read leaves the window without one.
  void EseguiAnimazione(std::string_view nomeFile);

 protected:
  // Asks whether to stop. The window goes when the engine ends, so the answer is false in any case.
  bool QueryUnload() override;
  void showEvent(QShowEvent* evento) override;

 private:
  struct Controlli;
  std::unique_ptr<Controlli> controlli_;
};

}  // namespace tandemize
