#include "shell/Schermo.h"

#include <cstdlib>

#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

// Stands in while no program has set its own: nobody is there to agree to anything.
class SchermoMuto : public Schermo {
 public:
  Risposta MsgBox(std::string_view, int stile, std::string_view) override {
    if (stile == StileSìNoAnnulla) return Risposta::Annulla;
    return stile == StileSìNo || stile == StileSìNoInformazione ? Risposta::No : Risposta::Ok;
  }
  void DoEvents() override {}
  void ApriBalloon(const Avviso&) override {}
  void ChiudiBalloon() override {}
  [[nodiscard]] bool BalloonAperto() const override { return false; }
  void MostraElencoErrori(std::string_view, std::string_view) override {}
  void FineProgramma(int stato) override { std::exit(stato); }
};

SchermoMuto schermoMuto;
Schermo* schermoInUso = &schermoMuto;

}  // namespace

Schermo& schermo() {
  return *schermoInUso;
}

void UsaSchermo(Schermo* nuovo) {
  schermoInUso = nuovo == nullptr ? &schermoMuto : nuovo;
}

Risposta MsgBox(std::string_view testo, int stile) {
  return schermo().MsgBox(testo, stile, TitoloApplicazione);
}

void DoEvents() {
  schermo().DoEvents();
}

}  // namespace tandemize
