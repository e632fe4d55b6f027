#include "presentation/Avvisi.h"

#include <algorithm>
#include <cstdint>

#include "errors/ModuloGestioneErrori.h"
#include "platform/machine.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"

namespace tandemize {

std::string BalloonCorrente;

namespace {

constexpr unsigned PassoAttesa = 5;  // milliseconds: short enough that a click is not felt to wait

// Tells whether a stop came while something waits. A stop from before is not the wait's concern: it stays set
// until a retry consumes it, and must not cut the scheduler's minute short. A stop signal is: it ends the
// program.
class StopDuranteAttesa {
 public:
  [[nodiscard]] bool Arrivato() const {
    return (AnnullamentoRichiesto && !giàRichiesto_) || platform::stopRequested();
  }

 private:
  bool giàRichiesto_ = AnnullamentoRichiesto;
};

void AttendiChiusuraBalloon() {
  const StopDuranteAttesa stop;
  while (schermo().BalloonAperto()) {
    DoEvents();
    if (!schermo().BalloonAperto() || stop.Arrivato()) return;
    platform::sleepMilliseconds(PassoAttesa);
  }
}

}  // namespace

void MostraBalloon(std::string_view NomeForm, std::string_view Testo, std::string_view Titolo, int Icona,
                   int Secondi, bool Attesa, bool SoloNascosta) {
  if (SoloNascosta != ApplicazioneNascosta) return;
  if (Testo == BalloonCorrente) return;
  if (Attesa) AttendiChiusuraBalloon();
  if (schermo().BalloonAperto()) schermo().ChiudiBalloon();
  if (!Testo.empty()) BalloonCorrente = Testo;
  schermo().ApriBalloon(
      {std::string(NomeForm), std::string(Testo), std::string(Titolo), Icona, std::max(Secondi, 0)});
}

void Attendi(double Secondi, bool ConEventi) {
  const StopDuranteAttesa stop;
  const std::uint64_t inizio = platform::monotonicMilliseconds();
  const double durata = Secondi * 1000;
  for (;;) {
    if (ConEventi) {
      DoEvents();
      if (stop.Arrivato()) return;
    }
    const double mancano = durata - static_cast<double>(platform::monotonicMilliseconds() - inizio);
    if (!(mancano > 0)) return;
    platform::sleepMilliseconds(
        static_cast<unsigned>(std::clamp(mancano, 1.0, static_cast<double>(PassoAttesa))));
  }
}

}  // namespace tandemize
