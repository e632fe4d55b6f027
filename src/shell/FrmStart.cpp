#include "shell/FrmStart.h"

#include <cstdlib>
#include <utility>

#include "backup/FrmBackupChoice.h"
#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "presentation/Avvisi.h"
#include "profile/ModuloProfilo.h"
#include "shell/DataIntervallo.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"
#include "synchronisation/FrmTandemize.h"

namespace tandemize {

namespace {

constexpr std::uint8_t Sincronizzazione = 1, Backup = 2;  // Timer_Start_Mode
constexpr unsigned TickVicino = 500, TickDopoPartenza = 60'000;
constexpr int MinutiVicini = 3;
constexpr double SecondiDelMinuto = 60;
constexpr std::string_view NomeForm = "FrmStart";
constexpr int IconaAvviso = 0;

// An entry's own profile is the current one for its run alone: whoever looks at the program while it waits
// for the minute to end finds the user's. The graph of objects is then read again, so that open windows and
// the current profile agree.
class ProfiloDellaVoce {
 public:
  explicit ProfiloDellaVoce(std::int16_t indice) {
    const auto voce = static_cast<std::size_t>(indice);
    if (indice > 0 && voce < TimerAdvList.size()) FileProfilo = TimerAdvList[voce].Profile2;
    eseguito_ = FileProfilo;
  }
  ~ProfiloDellaVoce() {
    FileProfilo = profilo_;
    if (eseguito_ != profilo_ && ProfiloValido(profilo_)) LeggiFileProfilo(profilo_);
  }
  ProfiloDellaVoce(const ProfiloDellaVoce&) = delete;
  ProfiloDellaVoce& operator=(const ProfiloDellaVoce&) = delete;

 private:
  std::string profilo_ = FileProfilo, eseguito_;
};

bool OperazioneInCorso() {
  return FormCaricato("FrmFileTransfer") || FormCaricato("FrmScan") || FormCaricato("FrmProgressBar");
}

// The job did not begin: told as the end of a failed operation is, and with the reason.
EsitoOperazione Rifiuta(std::string_view motivo) {
  ErroreFatale(
      0, "PartenzaAutomatica", 0, 3, "",
      InLingua("La partenza automatica non è stata eseguita: ", "The automatic run was not started: ") +
          std::string(motivo),
      0);
  return EsitoOperazione::Rifiutato;
}

EsitoOperazione RifiutaProfilo() {
  return Rifiuta(InLingua("il file non è un profilo leggibile: ", "the file is no readable profile: ") +
                 FileProfilo);
}

TipoBackup TipoImpostato() {
  return Timer_Backup_Type <= static_cast<std::uint8_t>(TipoBackup::Incrementale)
             ? static_cast<TipoBackup>(Timer_Backup_Type)
             : TipoBackup::Standard;
}

EsitoOperazione EseguiBackup() {
  MostraBalloon(NomeForm, Messaggio(58), TitoloApplicazione, IconaAvviso, 5, false, true);
  FrmBackupChoice finestra;
  if (!finestra.ProfiloLetto()) return RifiutaProfilo();
  // The run's start would clear a stop that came while the profile was read.
  if (finestra.ProcessoAnnullato) return EsitoOperazione::Annullato;
  finestra.cmbTipoBackup = TipoImpostato();
  return finestra.TastoOk_Annulla(0);
}

EsitoOperazione EseguiSincronizzazione() {
  MostraBalloon(NomeForm, Messaggio(57), TitoloApplicazione, IconaAvviso, 5, false, true);
  FrmTandemize finestra;
  if (!finestra.ProfiloLetto()) return RifiutaProfilo();
  return finestra.PartenzaAutomatica();
}

}  // namespace

bool PartenzaImpostata() {
  return Timer_Start_Mode == Sincronizzazione || Timer_Start_Mode == Backup;
}

FrmStart::FrmStart() : Lavoro([this](std::uint8_t modo) { return EseguiLavoro(modo); }) {}
FrmStart::~FrmStart() = default;

EsitoOperazione FrmStart::EseguiLavoro(std::uint8_t modo) {
  if (OperazioneInCorso() || (AltraOperazione && AltraOperazione()))
    return Rifiuta(InLingua("un'altra operazione è in corso.", "another operation is going on."));
  if (!ProfiloValido(FileProfilo)) return RifiutaProfilo();
  // A record that an earlier run could not write says nothing about this one.
  AzzeraErroreLog();
  return modo == Sincronizzazione ? EseguiSincronizzazione() : EseguiBackup();
}

void FrmStart::Imposta(Temporizzatore& timer, Temporizzatore stato) {
  if (timer.Enabled == stato.Enabled && timer.Interval == stato.Interval) return;
  timer = stato;
  if (TimerCambiati) TimerCambiati();
}

void FrmStart::TimerAutoPartenza_Timer() {
  if (!PartenzaImpostata()) return;
  if (PartenzaAutomaticaAttiva) SciogliGuardia();
  if (PartenzaAutomaticaAttiva || !ApplicazioneNascosta) return;
  if (Timer_Start_Type == 1) return EsaminaTimerAvanzati();
  PartenzaAutomatica(Timer_Start_Time, Timer_Start_Date, Timer_Interval_Number, Timer_Interval_Type, 0);
}

// By the time of day alone: a run that ends after midnight holds the next starts back until the clock has
// passed its own start time again.
void FrmStart::SciogliGuardia() {
  const std::string adesso = OraAttuale();
  bool passata = Timer_Start_Type != 1 && adesso > Timer_Start_Time;
  if (Timer_Start_Type == 1)
    for (std::size_t i = 1; i < TimerAdvList.size(); ++i) passata = passata || adesso > TimerAdvList[i].Time;
  if (passata) PartenzaAutomaticaAttiva = false;
}

void FrmStart::EsaminaTimerAvanzati() {
  for (std::size_t i = 1; i < TimerAdvList.size() && !DaFermare(); ++i) {
    // A copy: windows may read the settings anew while the entry runs.
    TimerAvanzato voce = TimerAdvList[i];
    if (!PartenzaAutomatica(voce.Time, voce.Date, std::to_string(voce.IntervalNumber), voce.IntervalKind,
                            static_cast<std::int16_t>(i)))
      continue;
    if (i >= TimerAdvList.size()) return;
    TimerAdvList[i].Time = voce.Time;
    TimerAdvList[i].Date = voce.Date;
  }
}

bool FrmStart::InPartenza(const std::string& Ora, const std::string& Data, std::int16_t Indice) {
  const auto minuti = MinutiDaOra(Ora);
  const auto data = DataDaTesto(Data);
  if (!minuti || !data) {
    Segnala(Indice, minuti ? InLingua("la data '", "the date '") + Data +
                                 InLingua("' non è del formato ", "' has not the form ") + FormatoData + "."
                           : InLingua("l'ora '", "the time '") + Ora +
                                 InLingua("' non è del formato hh.mm.", "' has not the form hh.mm."));
    return false;
  }
  const std::string adesso = OraAttuale();
  if (std::abs(*MinutiDaOra(adesso) - *minuti) < MinutiVicini)
    Imposta(TimerAutoPartenza, {TimerAutoPartenza.Enabled, TickVicino});
  return adesso == Ora && *data == DataOdierna();
}

bool FrmStart::PartenzaAutomatica(std::string& Ora, std::string& Data, const std::string& Numero,
                                  const std::string& Tipo, std::int16_t Indice) {
  if (!InPartenza(Ora, Data, Indice)) return false;
  const std::string oraPartenza = Ora;
  Imposta(TimerAnimazione, {true, TimerAnimazione.Interval});
  PartenzaAutomaticaAttiva = true;
  Imposta(TimerAutoPartenza, {false, TickDopoPartenza});
  {
    const ProfiloDellaVoce profilo(Indice);
    Lavoro(Timer_Start_Mode);
  }
  AggiornaProssimaPartenza(Tipo, Numero, Ora, Data, Indice);
  Imposta(TimerAnimazione, {false, TimerAnimazione.Interval});
  if (AggiornaTray) AggiornaTray();
  // The same minute cannot start the entry again.
  if (!DaFermare()) Attendi(SecondiDelMinuto, true);
  if (OraAttuale() > oraPartenza) PartenzaAutomaticaAttiva = false;
  Imposta(TimerAutoPartenza, {true, TimerAutoPartenza.Interval});
  return true;
}

void FrmStart::Segnala(std::int16_t indice, const std::string& testo) {
  std::string& ultimo = segnalati_[indice];
  if (ultimo == testo) return;
  ultimo = testo;
  const std::string quale =
      indice == 0 ? InLingua("La partenza automatica", "The automatic run")
                  : InLingua("La partenza automatica ", "The automatic run ") + std::to_string(indice);
  ErroreFatale(0, "PartenzaAutomatica", 0, 3, "",
               quale + InLingua(" non può essere eseguita: ", " cannot be started: ") + testo, 0);
}

}  // namespace tandemize
