#include "shell/SpegniPC.h"

#include <algorithm>
#include <string>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "platform/machine.h"
#include "platform/power.h"
#include "presentation/Avvisi.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr int IconaAvviso = 4;
constexpr std::string_view ChiaveLsa = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Lsa";

bool QuestoPC(std::string_view nome) {
  return nome.empty() || Maiuscolo(nome) == Maiuscolo(NomeComputer());
}

// The text of the box has no number in the language table and is the same in all languages.
bool Fallito(platform::ErrorCode numero, std::string_view motivo) {
  const std::string testo = "ShoutDown Fallito Errore " + std::to_string(numero);
  std::string riga = testo;
  riga.append(" (").append(motivo).append(")");
  ScriviLog(riga, RigaNormale);
  if (ApplicazioneNascosta)
    MostraBalloon(FormAttivo(), testo, TitoloApplicazione, IconaAvviso, 0, false, true);
  else
    MsgBox(testo, StileSemplice);
  return false;
}

void AnnotaRichiesta(unsigned secondi, std::string_view messaggio) {
  const std::string numero = std::to_string(secondi);
  std::string riga = InLingua("Spegnimento di questo PC dopo " + numero + " secondi solo annotato",
                              "Shutdown of this PC after " + numero + " seconds only noted down");
  riga.append(" (TANDEMIZE_POWER=log): '").append(messaggio).append("'");
  ScriviLog(riga, RigaNormale);
}

}  // namespace

bool SpegniPC(std::string_view NomePC, bool Esegui, int Secondi, std::string_view Messaggio) {
  if (NomePC.substr(0, 2) == "\\\\") NomePC.remove_prefix(2);
  if (!Esegui) return true;
  if (!QuestoPC(NomePC))
    return Fallito(platform::kNotSupported, platform::systemErrorText(platform::kNotSupported));
  const auto secondi = static_cast<unsigned>(std::max(Secondi, 0));
  const ForceguestSospeso sospeso(platform::registryValue(ChiaveLsa, "forceguest"), platform::setForcedGuest);
  const platform::PowerOffAnswer risposta = platform::requestPowerOff(secondi, Messaggio);
  if (risposta.error != platform::kNoError) return Fallito(risposta.error, risposta.reason);
  if (!risposta.asked) AnnotaRichiesta(secondi, Messaggio);
  return true;
}

ForceguestSospeso::ForceguestSospeso(std::string_view valore, Scrittura scrivi)
    : scrivi_(scrivi), sospeso_(valore == "1" && scrivi("0")) {}

// A value that cannot be put back stays 0 until the user sets it; nothing of the run hangs on it.
ForceguestSospeso::~ForceguestSospeso() {
  if (sospeso_) static_cast<void>(scrivi_("1"));
}

}  // namespace tandemize
