// The scheduler's dates in the settings file: moved on after a run and at the program's start.
#include "errors/ModuloGestioneErrori.h"
#include "platform/newfile.h"
#include "presentation/Avvisi.h"
#include "shell/DatePartenza.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/FrmStart.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr std::uint64_t LimiteFile = 4'194'304;  // bytes, as the reader of the settings has it

std::string FileImpostazioni() {
  return PercorsoApplicazione + std::string(NomeFileGlobale);
}

void Riferisci(std::string_view routine, const std::string& testo) {
  ErroreFatale(0, routine, 0, 3, "", testo, 0);
}

void RiferisciFile(std::string_view routine, platform::ErrorCode errore) {
  if (errore == platform::kNoError) return;
  Riferisci(routine, InLingua("Le date delle partenze automatiche non possono essere aggiornate nel file '",
                              "The dates of the automatic runs cannot be moved on in the file '") +
                         FileImpostazioni() + "': " + platform::systemErrorText(errore));
}

void RiferisciErrati(std::string_view routine, const std::vector<ValoreErrato>& errati) {
  for (const ValoreErrato& errato : errati)
    Riferisci(routine, InLingua("Il file delle impostazioni '", "The settings file '") + FileImpostazioni() +
                           InLingua("' non è corretto: chiave '", "' is not correct: key '") + errato.chiave +
                           InLingua("', il valore '", "', the value '") + errato.valore +
                           InLingua("' non è ammesso.", "' is not allowed."));
}

}  // namespace

void FrmStart::AggiornaProssimaPartenza(const std::string& Tipo, const std::string& Numero, std::string& Ora,
                                        std::string& Data, std::int16_t Indice) {
  constexpr std::string_view Routine = "AggiornaProssimaPartenza";
  std::string testo;
  platform::ErrorCode errore = platform::readFile(FileImpostazioni(), testo, LimiteFile);
  std::vector<ValoreErrato> errati;
  if (errore == platform::kNoError) {
    const std::string prima = testo;
    AvanzaPartenza(testo, Tipo, NumeroDiIntervallo(Numero), Ora, Data, Indice, errati);
    if (testo != prima) errore = platform::replaceFile(FileImpostazioni(), testo);
  }
  RiferisciFile(Routine, errore);
  RiferisciErrati(Routine, errati);
}

void FrmStart::AggiornaDateScadute(bool& Cambiato) {
  constexpr std::string_view Routine = "AggiornaDateScadute";
  Cambiato = false;
  std::string testo;
  platform::ErrorCode errore = platform::readFile(FileImpostazioni(), testo, LimiteFile);
  std::vector<ValoreErrato> errati;
  if (errore == platform::kNoError && AvanzaDateScadute(testo, DataOdierna(), errati)) {
    errore = platform::replaceFile(FileImpostazioni(), testo);
    Cambiato = errore == platform::kNoError;
  }
  RiferisciFile(Routine, errore);
  RiferisciErrati(Routine, errati);
}

void FrmStart::Carica() {
  bool cambiato = false;
  AggiornaDateScadute(cambiato);
  if (cambiato) {
    std::string errore;
    if (!CaricaImpostazioni(errore) && !errore.empty()) Riferisci("Form_Load", errore);
    // The program may start hidden or not; the notice is for both.
    MostraBalloon("FrmStart", Messaggio(461), TitoloApplicazione, 0, 10, false, ApplicazioneNascosta);
    return;
  }
  if (Timer_Start_Mode >= 1 && StartUp_PC_Mode > 0)
    MostraBalloon("FrmStart", Messaggio(Timer_Start_Mode == 1 ? 420 : 60), TitoloApplicazione, 0, 5, false,
                  ApplicazioneNascosta);
}

}  // namespace tandemize
