// Marks the window of the synchronisation's settings as busy for the length of one call.
#pragma once

#include "synchronisation/FrmTandemizeConfig.h"

namespace tandemize {

// False when the window was busy before: events run during checks and connects, and a click that comes in by
// them must not start a second one. A stop asked for during the call ends with it.
class FrmTandemizeConfig::Occupata {
 public:
  explicit Occupata(FrmTandemizeConfig& finestra) : finestra_(finestra), propria_(!finestra.occupata_) {
    finestra_.occupata_ = true;
  }
  ~Occupata() {
    if (!propria_) return;
    finestra_.occupata_ = false;
    if (finestra_.ProcessoAnnullato) AnnullamentoRichiesto = false;
    finestra_.ProcessoAnnullato = finestra_.ErroreInCorso = false;
  }
  Occupata(const Occupata&) = delete;
  Occupata& operator=(const Occupata&) = delete;

  explicit operator bool() const { return propria_; }

 private:
  FrmTandemizeConfig& finestra_;
  bool propria_;
};

}  // namespace tandemize
