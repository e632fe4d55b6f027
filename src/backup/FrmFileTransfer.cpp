#include "backup/FrmFileTransfer.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "errors/ModuloLog.h"
#include "platform/machine.h"
#include "presentation/Avvisi.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/SpegniPC.h"
#include "shell/TestiPropri.h"
#include "storage/File_System.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"

namespace tandemize {

std::uint64_t FrmFileTransfer::IntervalloSchermo = 33;

namespace {

constexpr std::int64_t MemoriaMinima = 5485760;
constexpr std::uint64_t MillisecondiFraMemorie = 100;
constexpr std::size_t FallitiConservati = 1000;
constexpr std::size_t FilePerLaScorta = 4;  // fewer in one folder are not worth a thread's wake-up

const std::string& TestoDiChiusura(EsitoTrasferimento esito) {
  switch (esito) {
    case EsitoTrasferimento::Annullato:
      return Messaggio(190);
    case EsitoTrasferimento::ErroreSuperato:
      return Messaggio(191);
    case EsitoTrasferimento::FileFallito:
      return Messaggio(427);
    case EsitoTrasferimento::Nessuno:
      break;
  }
  return Messaggio(189);
}

}  // namespace

void FrmFileTransfer::PeggioraEsito(EsitoTrasferimento nuovo) {
  if (EsitoCopia == EsitoTrasferimento::Nessuno) EsitoCopia = nuovo;
}

FrmFileTransfer::FrmFileTransfer() : FinestraOperazione("FrmFileTransfer") {
  Visible = false;
}

FrmFileTransfer::~FrmFileTransfer() {
  stato_.visibile = false;
  schermo().Mostra(stato_);
  SvuotaListaAProgressione(2);
  SvuotaListaAProgressione(1);
  if (ServerConnesso("")) DisconnettiServer("");
}

void FrmFileTransfer::FaseDiTrasferimento() {
  FileTotali = static_cast<std::int32_t>(ArrayTrasferimento.Numero());
  ByteTotali = 0;
  for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i) {
    ByteTotali += ArrayTrasferimento[i].Sorgente.Dimensione;
    DoEvents();
  }
  TrasferimentoRiuscito = false;
  Mostra(true);
  TrasferisciFile();
  ScaricaSuUnitaRimovibili();
  if (ProcessoAnnullato) EsitoCopia = EsitoTrasferimento::Annullato;
  FineTrasferimento();
}

// What lies on a medium that can be pulled out is down on it when the program says that it has finished.
void FrmFileTransfer::ScaricaSuUnitaRimovibili() {
  for (const std::string& radice : radiciRimovibili_) static_cast<void>(platform::flushVolume(radice));
}

void FrmFileTransfer::TrasferisciFile() {
  if (SalvaLista) {
    if (const platform::ErrorCode errore = elenco_.Apri(!Incrementale); errore != platform::kNoError) {
      ErroreFatale(errore, "TrasferisciFile", 0, 3, "File Name: < " + PercorsoElencoSalvati() + " >", "", 0);
      EsitoCopia = EsitoTrasferimento::FileFallito;
      return;
    }
  }
  // The upper bound is read anew on each pass, so a list that shrinks meanwhile ends the loop cleanly.
  for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i) {
    if (MemoriaInEsaurimento() || ProcessoAnnullato) return;
    if (!TrasferisciRecord(i)) return;
  }
  conclusa_ = true;
}

// Asked once a run. Yes stops the run without any failure. Memory is looked at between files, but no more
// often than it can change much. The question is a box in the hidden state too: an unattended run then waits
// until somebody answers it.
bool FrmFileTransfer::MemoriaInEsaurimento() {
  if (PiattaformaOS <= 1 || MemoriaAvvisata) return false;
  const std::uint64_t adesso = platform::monotonicMilliseconds();
  if (ultimaMemoria_ != 0 && adesso - ultimaMemoria_ < MillisecondiFraMemorie) return false;
  ultimaMemoria_ = adesso;
  if (MemoriaFisicaLibera() >= MemoriaMinima) return false;
  MemoriaAvvisata = true;
  return MsgBox(
             "La memoria fisica del computer sta per terminare , si consiglia di sospendere il trasferimento "
             "dei file.Sospendere la "
             "copia dei file ?",
             StileSìNo) == Risposta::Sì;
}

// False ends the run.
bool FrmFileTransfer::TrasferisciRecord(std::size_t i) {
  const RecordOperazione operazione = ArrayTrasferimento[i];
  const std::string sorgente = operazione.Sorgente.Percorso(),
                    destinazione = operazione.Destinazione.Percorso();
  const Direzione direzione = operazione.Destinazione.TipoPercorso == PercorsoFtp ? Direzione::AlServer
                              : operazione.Sorgente.TipoPercorso == PercorsoFtp   ? Direzione::DalServer
                                                                                  : Direzione::Locale;
  if (!PreparaCartella(i)) return false;
  if (ModoTrasferimento == 1 && !Confermato(operazione, sorgente, destinazione)) return true;
  DoEvents();
  if (ProcessoAnnullato) return false;
  attributiCopiati_ = -1;
  dataElencata_ = operazione.Sorgente.Data;
  bool copiato = false;
  if (EraseFile != 0 && operazione.Sorgente.DaEliminare)
    EliminaRecord(operazione, sorgente, destinazione);
  else
    copiato = CopiaFile(sorgente, destinazione, direzione);
  if (copiato && ModoTrasferimento == 1) propri_.insert(std::hash<std::string>{}(destinazione));
  if (EsitoCopia == EsitoTrasferimento::Annullato || ProcessoAnnullato) return false;
  if (copiato && direzione != Direzione::AlServer) CopiaAttributi(operazione, destinazione);
  if (EsitoCopia == EsitoTrasferimento::ErroreSuperato && !Errors_Try_Next) return false;
  if (SalvaLista) AggiungiAListaFile(operazione.Sorgente);
  return LogScrivibile();
}

// Makes the destination's folder where it lacks, and clears what a crash left in it.
bool FrmFileTransfer::PreparaCartella(std::size_t i) {
  const RecordOperazione& operazione = ArrayTrasferimento[i];
  if (operazione.Sorgente.DaEliminare) return true;
  const std::string* conSeparatore = operazione.Destinazione.CartellaDelFile();
  if (conSeparatore == nullptr) return true;
  const std::string cartella = CartellaSuperiore(*conSeparatore + "x");
  const bool suServer = operazione.Destinazione.TipoPercorso == PercorsoFtp;
  // On a connection that is gone nothing can be made; the transfer says so, once for each file.
  if (suServer && !SessioneFtp().isOpen()) return !ProcessoAnnullato;
  if (!EsisteCartella(cartella)) {
    if (LunghezzaInCaratteri(cartella) > 2 && CreaSottoCartelle(cartella)) cartellaFatta_ = conSeparatore;
  } else if (!suServer && cartelleRipulite_.insert(conSeparatore).second) {
    platform::clearLeftovers(*conSeparatore);
  }
  if (!suServer && conSeparatore != cartellaAllaMano_) PreparaScorta(i);
  return !ProcessoAnnullato;
}

// Lets the machine make the files of a folder ready ahead, where several follow each other.
void FrmFileTransfer::PreparaScorta(std::size_t i) {
  cartellaAllaMano_ = ArrayTrasferimento[i].Destinazione.CartellaDelFile();
  std::size_t fine = i;
  while (fine < ArrayTrasferimento.Numero() &&
         ArrayTrasferimento[fine].Destinazione.CartellaDelFile() == cartellaAllaMano_)
    ++fine;
  const bool conviene = fine - i >= FilePerLaScorta;
  scorta_.expect(*cartellaAllaMano_, conviene ? fine - i : 0);
}

// False if the destination does not hold the source's content now.
bool FrmFileTransfer::CopiaFile(const std::string& sorgente, const std::string& destinazione,
                                Direzione direzione) {
  stato_.sorgente = Messaggio(188) + " => " + sorgente;
  stato_.destinazione = Messaggio(194) + "      => " + destinazione;
  ScriviLog(Messaggio(188) + "  '" + sorgente + "' to '" + destinazione + "'", RigaNormale);
  if (ProcessoAnnullato || !LogScrivibile()) return false;
  AggiornaProgressBarFileSingolo(100, 0);
  if (direzione == Direzione::Locale) {
    const bool inRete = TipoPercorso(sorgente) == PercorsoLan || TipoPercorso(destinazione) == PercorsoLan;
    return Copy_File(sorgente, destinazione,
                     std::int64_t{1024} * (inRete ? BufferLanKB() : BufferLocaleKB()));
  }
  const std::int64_t buffer = std::int64_t{1024} * BufferFtpKB();
  if (direzione == Direzione::DalServer) return ScaricaFileDalServer(destinazione, sorgente, buffer);
  return TipoPercorso(sorgente) == PercorsoFtp ? CopiaFraServer(sorgente, destinazione, buffer)
                                               : InviaFileAlServer(sorgente, destinazione, buffer);
}

// The copy kept the permission bits, so there is something to do only where they and the attributes seen by
// the scan disagree. A file marked by a CRC that failed has no attributes to give.
void FrmFileTransfer::CopiaAttributi(const RecordOperazione& operazione, const std::string& destinazione) {
  const std::int32_t voluti = operazione.Sorgente.Attributi;
  if (voluti <= 0) return;
  if (attributiCopiati_ != -1 &&
      ((voluti ^ attributiCopiati_) & static_cast<std::int32_t>(platform::kReadOnly)) == 0)
    return;
  static_cast<void>(platform::setAttributes(destinazione, static_cast<std::uint32_t>(voluti)));
}

void FrmFileTransfer::AggiungiAListaFile(const RecordFile& sorgente) {
  const std::string dimensione = std::to_string(static_cast<std::int64_t>(sorgente.Dimensione));
  const platform::ErrorCode errore = elenco_.Aggiungi(sorgente.Percorso(), sorgente.DataFile(), dimensione);
  if (errore == platform::kNoError) return;
  // A file that lacks its line is copied again by the next incremental run, so nothing is lost by going on.
  ErroreFatale(errore, "AggiungiAListaFile", 0, 0, "File Name: < " + PercorsoElencoSalvati() + " >", "", 0);
  PeggioraEsito(EsitoTrasferimento::ErroreSuperato);
}

// A run whose log cannot be written stops: nobody could tell later what became of the files.
bool FrmFileTransfer::LogScrivibile() {
  if (ErroreLog() == platform::kNoError) return true;
  const std::string testo = InLingua("Il file di log non può essere scritto, l'operazione si ferma: ",
                                     "The log file cannot be written, the operation stops: ") +
                            platform::systemErrorText(ErroreLog());
  if (ApplicazioneNascosta)
    MostraBalloon(Nome(), testo, TitoloApplicazione, 0, 0, false, true);
  else
    MsgBox(testo, StileCritico);
  PeggioraEsito(EsitoTrasferimento::FileFallito);
  AzzeraErroreLog();
  logRotto_ = true;
  return false;
}

void FrmFileTransfer::AggiornaProgressBar(double byte) {
  ByteCopiati += byte;
  const std::uint64_t adesso = platform::monotonicMilliseconds();
  if (byte != 0) misuratore_.Aggiorna(ByteCopiati, ByteTotali, adesso);
  Mostra(false);
}

void FrmFileTransfer::AggiornaProgressBarFileSingolo(double massimo, double valore) {
  stato_.massimoFile = massimo;
  DoEvents();
  if (!ProcessoAnnullato) stato_.valoreFile = std::min(massimo, valore);
}

void FrmFileTransfer::Mostra(bool subito) {
  const std::uint64_t adesso = platform::monotonicMilliseconds();
  if (!subito && adesso - ultimoMostrato_ < IntervalloSchermo) return;
  ultimoMostrato_ = adesso;
  stato_.byteCopiati = ByteCopiati;
  stato_.byteTotali = ByteTotali;
  stato_.fileCopiati = FileCopiati;
  stato_.fileTotali = FileTotali;
  stato_.tempo = misuratore_.Tempo();
  stato_.velocità = misuratore_.Velocità();
  stato_.byteAlSecondo = misuratore_.ByteAlSecondo();
  stato_.secondiRimanenti = misuratore_.SecondiRimanenti();
  stato_.trasferiti = TestoTrasferiti(ByteCopiati, ByteTotali, FileCopiati, FileTotali);
  schermo().Mostra(stato_);
}

void FrmFileTransfer::NotaFallito(const std::string& percorso, std::string_view motivo) {
  ++NumeroFalliti;
  if (Falliti.size() < FallitiConservati) Falliti.push_back({percorso, std::string(motivo)});
}

void FrmFileTransfer::Annulla(bool confermato) {
  if (chiusuraConfermata_ || (chiedeChiusura_ && !confermato)) return;
  std::int16_t annullaChiusura = 0;
  bool inCorso = true, modifiche = false;
  const bool chiedeva = std::exchange(chiedeChiusura_, true);
  ChiediChiusuraForm(annullaChiusura, this, inCorso, ErroreInCorso, modifiche, "", confermato);
  chiedeChiusura_ = chiedeva;
  // A stop signal came while the question was up, and its answer does not matter any more.
  if (chiusuraConfermata_) return;
  if (annullaChiusura != 0) {
    EsitoCopia = EsitoTrasferimento::Nessuno;
    return;
  }
  chiusuraConfermata_ = true;
  EsitoCopia = EsitoTrasferimento::Annullato;
  ScriviLog(Messaggio(190), RigaArresto);
}

void FrmFileTransfer::SpegniComputer() {
  constexpr int Secondi = 30;
  constexpr std::string_view Testo = "ShutDown By Tandemize Backup";
  if (Advance_ShutDownAll == 1)
    for (const std::string& nome : NomiPcDaSpegnere) SpegniPC(nome, false, Secondi, Testo);
  if (Advance_ShutDownLocal == 1) SpegniPC(NomeComputer(), true, Secondi, Testo);
}

void FrmFileTransfer::FineTrasferimento() {
  schermo().MousePointer(Puntatore::Normale);
  Mostra(true);
  SvuotaListaAProgressione(2);
  SvuotaListaAProgressione(1);
  SpegniComputer();
  const std::string testo = TestoDiChiusura(EsitoCopia);
  TrasferimentoRiuscito = EsitoCopia == EsitoTrasferimento::Nessuno;
  if (ServerConnesso("")) DisconnettiServer("");
  stato_.visibile = false;
  Visible = false;
  schermo().Mostra(stato_);
  if (ApplicazioneNascosta)
    MostraBalloon(Nome(), testo, TitoloApplicazione, 0, 0, false, true);
  else
    MsgBox(testo, StileInformazione);
}

}  // namespace tandemize
