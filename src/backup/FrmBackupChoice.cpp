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

EsitoBackup FrmBackupChoice::TastoOk_Annulla(int pulsante) {
  if (pulsante != 0) return EsitoBackup::NienteDaFare;
  ErroreInCorso = ProcessoAnnullato = false;
  if (FormCaricato("FrmFileTransfer")) return EsitoBackup::Rifiutato;
  FilterIgnoreInvalidPath = ChkIgnorePath ? 1 : 0;
  if (const platform::ErrorCode errore = ScriviFileProfilo({}, -2); errore != platform::kNoError)
    ErroreFatale(errore, "TastoOk_Annulla", 0, 0, "File Name: < " + RestituisciNomeFiltro(FileProfilo) + " >",
                 "", 0);
  if (!PreparaElencoSalvati()) return EsitoBackup::Rifiutato;

  const bool conDueOggetti = UltimoOggetto() >= 2;
  EsitoBackup esito = Esegui();
  if (!conDueOggetti) esito = EsitoBackup::Rifiutato;
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

EsitoBackup FrmBackupChoice::Esegui() {
  std::uint8_t indiceServer = 0;
  bool conFtp = false;
  ControllaEsistenza_FileFtp_Array_Oggetti(indiceServer, conFtp);
  if (conFtp) {
    std::string messaggio;
    bool fallita = false;
    Connetti_Al_Server_FTP(indiceServer, messaggio, fallita, false);
    ErroreInCorso |= fallita;
    if (ErroreInCorso || ProcessoAnnullato) {
      ErroreInCorso = false;
      return std::exchange(ProcessoAnnullato, false) ? EsitoBackup::Annullato : EsitoBackup::Rifiutato;
    }
  }
  PrelevaFilePerBackup(Accurato());
  if (SoloTest()) return EseguiTest(conFtp);
  if (ProcessoAnnullato) return EsitoBackup::Annullato;
  const bool errorePassato = erroreDiScansione_;
  const EsitoBackup esito = InizioTrasferimento(MostraRapporto(true));
  return errorePassato && (esito == EsitoBackup::Fatto || esito == EsitoBackup::NienteDaFare)
             ? EsitoBackup::ErroreSuperato
             : esito;
}

EsitoBackup FrmBackupChoice::EseguiTest(bool conFtp) {
  const EsitoBackup esito = ProcessoAnnullato ? EsitoBackup::Annullato
                            : MostraRapporto(false)
                                ? (erroreDiScansione_ ? EsitoBackup::ErroreSuperato : EsitoBackup::Fatto)
                                : EsitoBackup::Rifiutato;
  if (conFtp) DisconnettiServer("");
  SvuotaListaAProgressione(2);
  SvuotaListaAProgressione(1);
  return esito;
}

bool FrmBackupChoice::Anteprima() {
  anteprima_ = true;
  ErroreInCorso = ProcessoAnnullato = false;
  bool riuscita = PreparaElencoSalvati() && UltimoOggetto() >= 2;
  PrelevaFilePerBackup(Accurato());
  riuscita = riuscita && !ProcessoAnnullato && MostraRapporto(true);
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

EsitoBackup FrmBackupChoice::InizioTrasferimento(bool procedi) {
  Enabled = false;
  if (ArrayTrasferimento.Vuota()) {
    if (ApplicazioneNascosta)
      MostraBalloon(Nome(), Messaggio(121), TitoloApplicazione, 0, 0, false, true);
    else
      MsgBox(Messaggio(121), StileInformazione);
    return procedi ? EsitoBackup::NienteDaFare : EsitoBackup::Rifiutato;
  }
  if (!procedi) return EsitoBackup::Rifiutato;
  FrmFileTransfer trasferimento;
  const bool salvaLista = cmbTipoBackup != TipoBackup::Standard;
  const bool eseguito = trasferimento.Init(0, salvaLista, cmbTipoBackup == TipoBackup::Incrementale);
  Falliti = std::move(trasferimento.Falliti);
  NumeroFalliti = trasferimento.NumeroFalliti;
  if (!eseguito) return ProcessoAnnullato ? EsitoBackup::Annullato : EsitoBackup::Rifiutato;
  switch (trasferimento.EsitoCopia) {
    case EsitoTrasferimento::Annullato:
      return EsitoBackup::Annullato;
    case EsitoTrasferimento::ErroreSuperato:
      return EsitoBackup::ErroreSuperato;
    case EsitoTrasferimento::FileFallito:
      return EsitoBackup::FileFalliti;
    case EsitoTrasferimento::Nessuno:
      break;
  }
  return EsitoBackup::Fatto;
}

}  // namespace tandemize
