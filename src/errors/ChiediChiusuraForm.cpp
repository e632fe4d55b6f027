// The questions before a window closes while something runs in it, or with changes that were not saved.
#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "shell/Lingua.h"
#include "shell/Schermo.h"

namespace tandemize {

namespace {

// True if the operation is to stop.
bool ChiediArresto(FinestraOperazione* form, bool confermato) {
  if (!confermato && MsgBox(Messaggio(326), StileSìNo) != Risposta::Sì) return false;
  AnnullamentoRichiesto = true;
  if (form != nullptr) form->ProcessoAnnullato = true;
  ScriviLog("", RigaArresto);
  return true;
}

}  // namespace

void ChiediChiusuraForm(std::int16_t& Cancel, FinestraOperazione* Form, bool& OperazioneInCorso, bool Errore,
                        bool& ModificheDaSalvare, std::string_view Descrizione, bool confermato) {
  if (Errore && Form != nullptr) {
    Form->ErroreInCorso = true;
    if (!Descrizione.empty()) Form->ErroreInCorso_Descrizione = Descrizione;
  }
  if (OperazioneInCorso) {
    // The caller's variable tells of the answer: false once the user wants the operation to go on.
    OperazioneInCorso = ChiediArresto(Form, confermato);
    if (!OperazioneInCorso) {
      Cancel = 1;
      return;
    }
  }
  if (confermato || (Form != nullptr && !Form->Visible)) return;
  if (ModificheDaSalvare && MsgBox(Messaggio(327), StileSìNo) == Risposta::No) {
    ModificheDaSalvare = false;
    Cancel = 1;
  }
}

}  // namespace tandemize
