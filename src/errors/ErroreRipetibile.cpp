// Whether to try a failed call again.
#include <limits>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "presentation/Avvisi.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"

namespace tandemize {

namespace {

constexpr int IconaAvviso = 4, SecondiAvviso = 10, SecondiRipristino = 7;

std::string RigaDiLog(int tentativo, std::string_view routine, std::int32_t numero) {
  return "Tetativo N° " + std::to_string(tentativo) + " relativo alla routine '" + std::string(routine) +
         "' errore numero " + std::to_string(numero);
}

// Counts a failure. True if the attempts are used up: the first failure is the last when corrections are off.
bool TentativiEsauriti(std::uint8_t& tentativo) {
  const std::uint8_t massimo = Errors_Correction == 1 ? Errors_Repeat : std::uint8_t{0};
  if (tentativo < std::numeric_limits<std::uint8_t>::max()) ++tentativo;
  return tentativo >= massimo;
}

// The pause before the next attempt. A stop that came during it is used up here; it has its own line in the
// log, so no report follows.
bool AttendiERiprova() {
  Attendi(Errors_Seconds, true);
  if (!AnnullamentoRichiesto) return true;
  AnnullamentoRichiesto = false;
  return false;
}

void AvvisaRiprova(std::string_view titolo) {
  MostraBalloon(FormAttivo(), MessaggioRiprova, titolo, IconaAvviso, SecondiAvviso, false, false);
}

}  // namespace

bool ErroreRipetibileVb(std::uint8_t& Tentativo, std::int32_t Numero, std::string_view Routine,
                        std::string_view Dettaglio, std::int16_t Riga) {
  ScriviLog(RigaDiLog(Tentativo, Routine, Numero) + " Numero Riga = " + std::to_string(Riga), BloccoErrore);
  if (TentativiEsauriti(Tentativo)) {
    ErroreFatale(Numero, Routine, 1, 0, Dettaglio, "", Riga);
    return false;
  }
  // The title of the hidden state is never seen: the notice is one of the visible state.
  if (!schermo().BalloonAperto() || Tentativo == 1)
    AvvisaRiprova(ApplicazioneNascosta ? std::string_view(TitoloApplicazione) : "Attenzione");
  return AttendiERiprova();
}

bool ErroreRipetibileApi(std::uint8_t& Tentativo, std::int32_t Numero, std::string_view Routine,
                         std::string_view Dettaglio) {
  ScriviLog(RigaDiLog(Tentativo, Routine, Numero), BloccoErrore);
  if (TentativiEsauriti(Tentativo)) {
    ErroreFatale(Numero, Routine, 0, 0, Dettaglio, "", 0);
    return false;
  }
  AvvisaRiprova("Attenzione");
  return AttendiERiprova();
}

void NotificaRipristino(std::string_view NomeForm) {
  MostraBalloon(NomeForm, Messaggio(65), Messaggio(66), IconaAvviso, SecondiRipristino, false, false);
}

}  // namespace tandemize
