#include "backup/FrmBackupChoice.h"

#include <utility>

#include "backup/FrmFileTransfer.h"
#include "errors/ModuloLog.h"
#include "presentation/Avvisi.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/File_System.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"

namespace tandemize {

FrmBackupChoice::FrmBackupChoice() : FinestraOperazione("FrmBackupChoice") {
  profiloLetto_ = LeggiFileProfilo(FileProfilo);
  ChkIgnorePath = FilterIgnoreInvalidPath != 0;
}

FrmBackupChoice::~FrmBackupChoice() {
  ErroreInCorso = ProcessoAnnullato = false;
  SvuotaListaAProgressione(2);
}

bool FrmBackupChoice::Attiva() {
  if (UltimoOggetto() >= 2) return true;
  Visible = false;
  if (MsgBox(Messaggio(120), StileSìNoInformazione) == Risposta::Sì) {
    schermo().ApriDiagramma();
    return false;
  }
  Visible = true;
  return true;
}

EsitoOperazione FrmBackupChoice::TastoOk_Annulla(int pulsante) {
  if (pulsante != 0) return EsitoOperazione::NienteDaFare;
  ErroreInCorso = ProcessoAnnullato = false;
  if (FormCaricato("FrmFileTransfer")) return EsitoOperazione::Rifiutato;
  // A stop of an earlier run that no retry has used up would end every CRC of this one.
  AnnullamentoRichiesto = false;
  FilterIgnoreInvalidPath = ChkIgnorePath ? 1 : 0;
  if (const platform::ErrorCode errore = ScriviFileProfilo({}, -2); errore != platform::kNoError)
    ErroreFatale(errore, "TastoOk_Annulla", 0, 0, "File Name: < " + RestituisciNomeFiltro(FileProfilo) + " >",
                 "", 0);
  if (!PreparaElencoSalvati()) return EsitoOperazione::Rifiutato;

  const bool conDueOggetti = UltimoOggetto() >= 2;
  EsitoOperazione esito = Esegui();
  if (!conDueOggetti) esito = EsitoOperazione::Rifiutato;
  FineOperazione(ErroreInCorso, ErroreInCorso_Descrizione, ProcessoAnnullato);
  Enabled = true;
  return esito;
}

// An incremental run builds on a list. Without one a person is told so; an unattended run copies everything.
// A list that is there but cannot be read is never taken for a missing one.
bool FrmBackupChoice::PreparaElencoSalvati() {
  salvati_ = {};
  if (cmbTipoBackup != TipoBackup::Incrementale) return true;
  const platform::ErrorCode errore = salvati_.Leggi();
  if (errore == platform::kNoError) return true;
  if (errore == platform::kFileNotFound) {
    if (ApplicazioneNascosta) return true;
    MsgBox("Impossibile eseguire il backup incrementale se non è stato prima eseguito il backup completo.",
           StileInformazione);
    return false;
  }
  ErroreFatale(errore, "FileGiaSalvato", 0, 3, "File Name: < " + PercorsoElencoSalvati() + " >", "", 0);
  return false;
}

// False if the server that the diagram needs cannot be reached, which was reported, or the user stopped it.
bool FrmBackupChoice::ConnettiServer(bool& conFtp) {
  std::uint8_t indiceServer = 0;
  conFtp = false;
  ControllaEsistenza_FileFtp_Array_Oggetti(indiceServer, conFtp);
  if (!conFtp) return true;
  std::string messaggio;
  bool fallita = false;
  // A table without any server counts as a failure too, which has been told.
  fallita = Connetti_Al_Server_FTP(indiceServer, messaggio, fallita, false) != 0;
  ErroreInCorso |= fallita;
  return !ErroreInCorso && !ProcessoAnnullato;
}

EsitoOperazione FrmBackupChoice::Esegui() {
  bool conFtp = false;
  if (!ConnettiServer(conFtp)) {
    ErroreInCorso = false;
    return std::exchange(ProcessoAnnullato, false) ? EsitoOperazione::Annullato : EsitoOperazione::Rifiutato;
  }
  PrelevaFilePerBackup(Accurato());
  if (SoloTest()) return EseguiTest(conFtp);
  if (ProcessoAnnullato) return EsitoOperazione::Annullato;
  const bool errorePassato = erroreDiScansione_;
  const EsitoOperazione esito = InizioTrasferimento(MostraRapporto(true));
  return errorePassato && (esito == EsitoOperazione::Fatto || esito == EsitoOperazione::NienteDaFare)
             ? EsitoOperazione::ErroreSuperato
             : esito;
}

EsitoOperazione FrmBackupChoice::EseguiTest(bool conFtp) {
  const EsitoOperazione esito =
      ProcessoAnnullato ? EsitoOperazione::Annullato
      : MostraRapporto(false)
          ? (erroreDiScansione_ ? EsitoOperazione::ErroreSuperato : EsitoOperazione::Fatto)
          : EsitoOperazione::Rifiutato;
  if (conFtp) DisconnettiServer("");
  SvuotaListaAProgressione(2);
  SvuotaListaAProgressione(1);
  return esito;
}

bool FrmBackupChoice::Anteprima() {
  anteprima_ = true;
  ErroreInCorso = ProcessoAnnullato = false;
  bool riuscita = PreparaElencoSalvati() && UltimoOggetto() >= 2, conFtp = false;
  if (ConnettiServer(conFtp))
    PrelevaFilePerBackup(Accurato());
  else
    riuscita = false;
  riuscita = riuscita && !ProcessoAnnullato && MostraRapporto(true);
  if (conFtp) DisconnettiServer("");
  anteprima_ = false;
  return riuscita;
}

void FrmBackupChoice::ControllaEsistenza_FileFtp_Array_Oggetti(std::uint8_t& indiceServer, bool& trovato) {
  for (std::size_t k = 1; k < ArrayOggetti.size(); ++k) {
    const OggettoBackup& oggetto = ArrayOggetti[k];
    trovato = oggetto.BackFigura == PercorsoFtp;
    if (oggetto.BackPath.empty())
      for (const std::string& file : oggetto.Files) trovato = trovato || TipoPercorso(file) == PercorsoFtp;
    if (!trovato) continue;
    indiceServer = IndiceServerDaDescrizione(oggetto.BackFtpServerDescription);
    return;
  }
}

EsitoOperazione FrmBackupChoice::InizioTrasferimento(bool procedi) {
  Enabled = false;
  if (ArrayTrasferimento.Vuota()) {
    if (ApplicazioneNascosta)
      MostraBalloon(Nome(), Messaggio(121), TitoloApplicazione, 0, 0, false, true);
    else
      MsgBox(Messaggio(121), StileInformazione);
    return procedi ? EsitoOperazione::NienteDaFare : EsitoOperazione::Rifiutato;
  }
  if (!procedi) return EsitoOperazione::Rifiutato;
  FrmFileTransfer trasferimento;
  const bool salvaLista = cmbTipoBackup != TipoBackup::Standard;
  const bool eseguito = trasferimento.Init(0, salvaLista, cmbTipoBackup == TipoBackup::Incrementale);
  Falliti = std::move(trasferimento.Falliti);
  NumeroFalliti = trasferimento.NumeroFalliti;
  if (!eseguito)
    return ProcessoAnnullato || trasferimento.EsitoCopia == EsitoTrasferimento::Annullato
               ? EsitoOperazione::Annullato
               : EsitoOperazione::Rifiutato;
  switch (trasferimento.EsitoCopia) {
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

}  // namespace tandemize
