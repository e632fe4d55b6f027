// What a synchronisation does besides copying: it asks before it overwrites, looks again before it does harm,
// deletes, and clears the folders that its deletions have emptied.

#include <algorithm>
#include <functional>

#include "backup/FrmFileTransfer.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"
#include "storage/File_System.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "storage/Unita.h"

namespace tandemize {

namespace {

constexpr std::int32_t FixChiedi = 1, FixTutti = 2;

std::size_t Impronta(const std::string& percorso) {
  return std::hash<std::string>{}(percorso);
}

// The path of the profile that a record's file was found below, with its separator.
std::string RadiceDellaScansione(const RecordFile& record, const std::string& percorso) {
  return ConSeparatore(percorso.substr(0, percorso.size() - record.LunghezzaNome()));
}

bool Sotto(const std::string& radice, const std::string& cartella) {
  return ConSeparatore(cartella).size() > radice.size();
}

bool DelProfilo(const std::string& cartella) {
  const std::string cercata = Maiuscolo(ConSeparatore(cartella));
  return std::ranges::any_of(Backup_Path, [&](const std::string& percorso) {
    return !percorso.empty() && Maiuscolo(ConSeparatore(percorso)) == cercata;
  });
}

// A path of the profile that cannot be looked at says nothing about the folders below it.
bool Raggiungibile(const std::string& radice) {
  if (TipoPercorso(radice) == PercorsoFtp && !ServerConnesso("")) return false;
  return !DiscoAssente(radice) && EsisteCartella(radice);
}

// Only a clear "there is none" counts: a folder that may not be looked at, or cannot be, is not gone.
bool Sparita(const std::string& cartella) {
  if (TipoPercorso(cartella) == PercorsoFtp) return ServerConnesso("") && !EsisteCartella(cartella);
  platform::FileStatus stato;
  const platform::ErrorCode errore = platform::query(cartella, stato);
  if (errore == platform::kNoError) return (stato.attributes & platform::kDirectory) == 0;
  return errore == platform::kFileNotFound || errore == platform::kPathNotFound;
}

}  // namespace

bool FrmFileTransfer::RiscansioneRichiesta() const {
  return ModoTrasferimento == 1 && FixScanAfterFix != 0 && conclusa_ && !ProcessoAnnullato &&
         EsitoCopia != EsitoTrasferimento::Annullato && !ApplicazioneNascosta;
}

// False: the record is not to be worked. What the user has agreed to is not looked at again.
bool FrmFileTransfer::Confermato(const RecordOperazione& operazione, const std::string& sorgente,
                                 const std::string& destinazione) {
  const bool eliminazione = EraseFile != 0 && operazione.Sorgente.DaEliminare;
  const bool chiesto = FixFileOption == FixChiedi && EsisteFile(destinazione);
  if (chiesto && !ChiediSovrascrittura(sorgente, destinazione)) return false;
  std::string ostacolo;
  if (eliminazione)
    ostacolo = OstacoloEliminazione(operazione, sorgente, destinazione);
  else if (!chiesto)
    ostacolo = OstacoloCopia(operazione, destinazione);
  if (ostacolo.empty()) return true;
  ErroreFatale(0, "TrasferisciFile", 2, Errors_Alert_Mode == 0 ? 3 : 2, "", ostacolo, 0);
  PeggioraEsito(EsitoTrasferimento::FileFallito);
  NotaFallito(eliminazione ? sorgente : destinazione, ostacolo);
  return false;
}

// Cancel answers this and all later questions of the run with yes.
bool FrmFileTransfer::ChiediSovrascrittura(const std::string& sorgente, const std::string& destinazione) {
  const Risposta risposta =
      MsgBox(Messaggio(192) + " '" + destinazione + "'\r\r" + Messaggio(193) + " '" + sorgente + "' ?",
             StileSìNoAnnulla);
  if (risposta == Risposta::Annulla) FixFileOption = FixTutti;
  return risposta != Risposta::No;
}

// Why a copy would take a version of the file away that nobody has compared; empty if it would not.
std::string FrmFileTransfer::OstacoloCopia(const RecordOperazione& operazione,
                                           const std::string& destinazione) const {
  const RecordFile& prevista = operazione.Destinazione;
  if (prevista.FileNuovo && prevista.CartellaDelFile() != cartellaFatta_ && Comparso(prevista, destinazione))
    return InLingua("==> Il file è comparso dopo la scansione e non viene sovrascritto : ",
                    "==> The file has appeared since the scan and is not overwritten : ") +
           destinazione;
  if (!prevista.FileNuovo && Cambiato(prevista, destinazione))
    return InLingua("==> Il file è cambiato dopo la scansione e non viene sovrascritto : ",
                    "==> The file has changed since the scan and is not overwritten : ") +
           destinazione;
  return {};
}

// Why a file is no longer the one that the other path lacks; empty if it is.
std::string FrmFileTransfer::OstacoloEliminazione(const RecordOperazione& operazione,
                                                  const std::string& sorgente,
                                                  const std::string& destinazione) const {
  const RecordFile& altrove = operazione.Destinazione;
  if (!Raggiungibile(RadiceDellaScansione(altrove, destinazione)))
    return InLingua("==> L'altro percorso non è più raggiungibile, il file non viene eliminato : ",
                    "==> The other path cannot be reached any more, the file is not deleted : ") +
           sorgente;
  if (altrove.FileNuovo && Comparso(altrove, destinazione))
    return InLingua("==> Il file è comparso nell'altro percorso dopo la scansione e non viene eliminato : ",
                    "==> The file has appeared at the other path since the scan and is not deleted : ") +
           sorgente;
  if (Cambiato(operazione.Sorgente, sorgente))
    return InLingua("==> Il file è cambiato dopo la scansione e non viene eliminato : ",
                    "==> The file has changed since the scan and is not deleted : ") +
           sorgente;
  return {};
}

// A file that has another date or size than the scan saw. One that is gone, that a server holds, or that this
// run itself has worked on, has not changed.
bool FrmFileTransfer::Cambiato(const RecordFile& previsto, const std::string& percorso) const {
  if (previsto.TipoPercorso == PercorsoFtp || previsto.Data == DataAssente) return false;
  platform::FileStatus stato;
  if (platform::query(percorso, stato) != platform::kNoError) return false;
  const bool uguale =
      stato.lastWrite.seconds == previsto.Data && static_cast<double>(stato.size) == previsto.Dimensione;
  return !uguale && !propri_.contains(Impronta(percorso));
}

// With three paths or more a file may be due at the same place twice; what this run put there is no surprise.
bool FrmFileTransfer::Comparso(const RecordFile& previsto, const std::string& percorso) const {
  if (previsto.TipoPercorso == PercorsoFtp) return false;
  platform::FileStatus stato;
  if (platform::query(percorso, stato) != platform::kNoError) return false;
  return (stato.attributes & platform::kDirectory) == 0 && !propri_.contains(Impronta(percorso));
}

void FrmFileTransfer::EliminaRecord(const RecordOperazione& operazione, const std::string& sorgente,
                                    const std::string& destinazione) {
  stato_.sorgente.clear();
  stato_.destinazione = "Eliminazione File => " + sorgente;
  EliminaUnFile(sorgente);
  ++FileCopiati;
  AggiornaProgressBarFileSingolo(100, 100);
  AggiornaProgressBar(operazione.Sorgente.Dimensione);
  PulisciCartelleVuote(operazione, sorgente, destinazione);
}

// A file that two paths lack stands in the list once for each of them. It is gone after the first, and the
// second has nothing to fail at.
void FrmFileTransfer::EliminaUnFile(const std::string& sorgente) {
  if (propri_.contains(Impronta(sorgente)) && !EsisteFile(sorgente)) return;
  if (EliminaFile(sorgente)) {
    propri_.insert(Impronta(sorgente));
    return;
  }
  PeggioraEsito(EsitoTrasferimento::FileFallito);
  NotaFallito(sorgente, InLingua("Eliminazione non riuscita", "The deletion failed"));
}

// A folder goes only if it is empty and its counterpart on the other side has gone; both sides then move one
// level up. The paths of the profile themselves stay, and nothing goes while the other one cannot be reached.
void FrmFileTransfer::PulisciCartelleVuote(const RecordOperazione& operazione, const std::string& sorgente,
                                           const std::string& destinazione) {
  const std::string radice = RadiceDellaScansione(operazione.Sorgente, sorgente),
                    altraRadice = RadiceDellaScansione(operazione.Destinazione, destinazione);
  std::string cartella = CartellaSuperiore(sorgente), corrispondente = CartellaSuperiore(destinazione);
  while (Sotto(radice, cartella) && Sotto(altraRadice, corrispondente) && !ProcessoAnnullato) {
    if (!Sparita(corrispondente) || !Raggiungibile(altraRadice) || !EsisteCartella(cartella)) return;
    if (Restituisci_NumeroFile_Cartella(cartella) != 0 || DelProfilo(cartella)) return;
    if (!EliminaCartella(cartella)) {
      PeggioraEsito(EsitoTrasferimento::FileFallito);
      NotaFallito(cartella, InLingua("Eliminazione non riuscita", "The deletion failed"));
      return;
    }
    cartella = CartellaSuperiore(cartella);
    corrispondente = CartellaSuperiore(corrispondente);
  }
}

}  // namespace tandemize
