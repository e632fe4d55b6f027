#include "synchronisation/FrmTandemize.h"

#include <utility>

#include "errors/ModuloLog.h"
#include "presentation/FrmProgressBar.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::uint8_t RapportoConBox = 0, RapportoNascosto = 2;
constexpr std::size_t ListaLunga = 1101;  // upper bound from which emptying the screen's lists takes time

std::uint8_t ModoDiRapporto() {
  return ApplicazioneNascosta ? RapportoNascosto : RapportoConBox;
}

EsitoOperazione EsitoDelTrasferimento(EsitoTrasferimento esito) {
  switch (esito) {
    case EsitoTrasferimento::Annullato:
      return EsitoOperazione::Annullato;
    case EsitoTrasferimento::ErroreSuperato:
      return EsitoOperazione::ErroreSuperato;
    case EsitoTrasferimento::FileFallito:
      return EsitoOperazione::FileFalliti;
    case EsitoTrasferimento::Nessuno:
      break;
  }
  return EsitoOperazione::Fatto;
}

}  // namespace

FrmTandemize::FrmTandemize() : FinestraOperazione("FrmTandemize") {
  profiloLetto_ = LeggiFileProfilo(FileProfilo);
  ResettaGliArray();
}

FrmTandemize::~FrmTandemize() {
  ErroreInCorso = ProcessoAnnullato = false;
  Libera_Tutta_La_Memoria(false);
}

std::vector<RigaPercorso> FrmTandemize::Percorsi() const {
  std::vector<RigaPercorso> percorsi;
  const auto numero = static_cast<std::size_t>(PathCount);
  percorsi.reserve(numero);
  for (std::size_t i = 0; i < numero; ++i) {
    const bool ftp = TipoPercorso(Backup_Path[i]) == PercorsoFtp;
    percorsi.push_back(
        {Backup_Path[i], ftp ? std::to_string(IndiceServerDaDescrizione(Backup_FTP[i])) : std::string()});
  }
  return percorsi;
}

bool FrmTandemize::ControllaPercorsi(std::uint8_t modo) {
  if (VerificaPercorsi(Percorsi(), 0, modo) == 0) return true;
  ScriviLog(Messaggio(283), BloccoErrore);
  return false;
}

bool FrmTandemize::CiSonoOperazioni() const {
  return !ArrayTrasferimento.Vuota();
}

void FrmTandemize::op_Scansione() {
  ErroreInCorso = false;
  if (!ControllaPercorsi(ModoDiRapporto())) return;
  Refresh_Completo_Griglie(false);
  if (schermo().BalloonAperto()) schermo().ChiudiBalloon();
  FaseDiScansione();
}

void FrmTandemize::EseguiSincronizzazione(bool senzaControlli) {
  esecuzione_ = EsitoOperazione::Rifiutato;
  if (FormCaricato("FrmFileTransfer")) return;
  if (!senzaControlli) {
    if (schermo().BalloonAperto()) schermo().ChiudiBalloon();
    if (VerificaPercorsi(Percorsi(), 0, ModoDiRapporto()) != 0) return;
  }
  const bool riscansione = Trasferisci();
  Libera_Tutta_La_Memoria(true);
  Refresh_Completo_Griglie(false);
  FineOperazione(ErroreInCorso, ErroreInCorso_Descrizione, ProcessoAnnullato);
  // Behind all else, so that the lists which the new scan fills stay.
  if (riscansione) FaseDiScansione();
}

// Runs the transfer engine over the list. True if a new scan is to follow.
bool FrmTandemize::Trasferisci() {
  FrmFileTransfer trasferimento;
  const bool eseguito = trasferimento.Init(1, false, false);
  esito_ = trasferimento.EsitoCopia;
  Falliti = std::move(trasferimento.Falliti);
  NumeroFalliti = trasferimento.NumeroFalliti;
  if (eseguito)
    esecuzione_ = EsitoDelTrasferimento(esito_);
  else if (trasferimento.ProcessoAnnullato)
    esecuzione_ = EsitoOperazione::Annullato;
  return eseguito && trasferimento.RiscansioneRichiesta();
}

// Checks, scans and compares. Fatto: there is something to do.
EsitoOperazione FrmTandemize::Pianifica() {
  ErroreInCorso = false;
  if (ProcessoAnnullato) return EsitoOperazione::Annullato;
  const bool raggiungibili = profiloLetto_ && ControllaPercorsi(RapportoNascosto);
  if (ProcessoAnnullato)
    return EsitoOperazione::Annullato;  // the scan would clear a stop that came this early
  if (!raggiungibili) return EsitoOperazione::Rifiutato;
  Refresh_Completo_Griglie(false);
  FaseDiScansione();
  if (scansione_ == EsitoScansione::Annullata || ProcessoAnnullato) return EsitoOperazione::Annullato;
  if (scansione_ == EsitoScansione::Fallita) return EsitoOperazione::Rifiutato;
  return CiSonoOperazioni() ? EsitoOperazione::Fatto : EsitoOperazione::NienteDaFare;
}

EsitoOperazione FrmTandemize::PartenzaAutomatica() {
  EsitoOperazione esito = Pianifica();
  if (esito == EsitoOperazione::Fatto) {
    EseguiSincronizzazione(true);
    esito = esecuzione_;
  } else {
    FineOperazione(ErroreInCorso, ErroreInCorso_Descrizione, ProcessoAnnullato);
  }
  const bool senzaFalla = esito == EsitoOperazione::Fatto || esito == EsitoOperazione::NienteDaFare;
  return senzaFalla && ErroreCrc ? EsitoOperazione::ErroreSuperato : esito;
}

EsitoOperazione FrmTandemize::Anteprima() {
  anteprima_ = true;
  const EsitoOperazione esito = Pianifica();
  anteprima_ = false;
  FineOperazione(ErroreInCorso, ErroreInCorso_Descrizione, ProcessoAnnullato);
  return esito;
}

void FrmTandemize::Libera_Tutta_La_Memoria(bool forza) {
  if (!schermo().MostraUnita()) return;
  if (!forza && ArrayTrasferimento.Numero() < ListaLunga) return;
  FrmProgressBar avanzamento(this, Messaggio(284), 100);
  schermo().SvuotaRigheUnita();
}

void FrmTandemize::Refresh_Completo_Griglie(bool /*forza*/) {
  if (!schermo().MostraUnita()) return;
  schermo().RifaiUnita();
  for (std::size_t i = 0; i < static_cast<std::size_t>(PathCount); ++i) schermo().AggiornaInfo(i);
}

}  // namespace tandemize
