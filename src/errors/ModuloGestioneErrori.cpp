// The flags of the running operation and its end.
#include "errors/ModuloGestioneErrori.h"

#include "errors/ModuloLog.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "storage/ModuloInternet.h"

namespace tandemize {

bool AnnullamentoRichiesto = false;
bool ConnessioneFallita = false;

namespace {

// Settings changed while the operation ran rule its report. Settings that cannot be read must not hide how it
// ended: the log tells of them, and the variables keep what they held.
void RileggiImpostazioni() {
  if (FormCaricato("FrmGlobalSetting")) return;
  std::string errore;
  if (!CaricaImpostazioni(errore) && !errore.empty()) ScriviLog(errore, BloccoErrore);
}

std::string TestoDellAvviso(bool errore, std::string_view descrizione, bool annullato) {
  if (annullato) return Messaggio(329);
  return errore && descrizione.empty() ? Messaggio(328) : std::string(descrizione);
}

}  // namespace

bool FineOperazione(bool& ErroreInCorso, std::string_view Descrizione, bool& ProcessoAnnullato) {
  RileggiImpostazioni();
  schermo().MousePointer(Puntatore::Normale);
  if (ConnessioneFallita) ErroreInCorso = true;
  const std::string testo = TestoDellAvviso(ErroreInCorso, Descrizione, ProcessoAnnullato);
  if (ErroreInCorso && !ApplicazioneNascosta) {
    if (Errors_Alert_Mode == 1) MsgBox(testo, StileInformazione);
    if (Log_Show_Window == 2) schermo().RicaricaLog();
  }
  const bool riuscita = !ErroreInCorso && !ProcessoAnnullato;
  if (!riuscita && ServerConnesso("")) DisconnettiServer("");
  ErroreInCorso = ProcessoAnnullato = ConnessioneFallita = false;
  return riuscita;
}

void AzzeraGestioneErrori() {
  AnnullamentoRichiesto = ConnessioneFallita = false;
}

}  // namespace tandemize
