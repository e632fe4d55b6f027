// The small window that shows long internal work. It lives as long as the object.
#pragma once

#include <string>
#include <string_view>

#include "errors/ModuloGestioneErrori.h"
#include "shell/Schermo.h"

namespace tandemize {

class FrmProgressBar : public FinestraOperazione {
 public:
  // `proprietaria` is the window whose work is shown; its cancel button stops that work. It may be
  // null: such work cannot be stopped.
  FrmProgressBar(FinestraOperazione* proprietaria, std::string_view testo, double massimo);
  ~FrmProgressBar() override;

  void Testo(std::string_view testo);
  // Shown for each whole percent only: callers may set it for every item. Values above the maximum are
  // ignored.
  void Valore(double valore);

  void Annulla(bool confermato) override;
  [[nodiscard]] bool InEsecuzione() const override { return proprietaria_ != nullptr; }

 private:
  FinestraOperazione* proprietaria_;
  StatoAvanzamento stato_;
  double ultimoMostrato_ = -1;
};

}  // namespace tandemize
