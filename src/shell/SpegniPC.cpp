#include "shell/SpegniPC.h"

#include <string>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "presentation/Avvisi.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"

namespace tandemize {

bool SpegniPC(std::string_view /*NomePC*/, bool Esegui, int /*Secondi*/, std::string_view /*Messaggio*/) {
  if (!Esegui) return true;
  const std::string testo = InLingua("Il PC non viene spento: questa versione non lo sa ancora fare.",
                                     "The PC is not turned off: this version cannot do that yet.");
  ScriviLog(testo, RigaNormale);
  if (ApplicazioneNascosta)
    MostraBalloon(FormAttivo(), testo, TitoloApplicazione, 4, 0, false, true);
  else
    MsgBox(testo, StileInformazione);
  return false;
}

}  // namespace tandemize
