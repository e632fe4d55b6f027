#include "synchronisation/FrmScan.h"

#include <charconv>

#include "errors/ModuloLog.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "storage/Guardia.h"
#include "storage/ModuloInternet.h"
#include "storage/OperazioniFtp.h"
#include "storage/Percorsi.h"
#include "synchronisation/FiltroAccetta.h"

namespace tandemize {

std::string UltimoFileScandito;

namespace {

std::int16_t IndiceServer(const RigaPercorso& riga) {
  std::int16_t indice = 0;
  std::from_chars(riga.indiceServer.data(), riga.indiceServer.data() + riga.indiceServer.size(), indice);
  return indice;
}

std::string Titolo(const std::string& percorso, std::size_t numero, std::size_t totale) {
  return Messaggio(273) + (totale > 1 ? " " + std::to_string(numero + 1) : "") + " '" + percorso + "'";
}

}  // namespace

bool FrmScan::Fermato() {
  ProcessoAnnullato = ProcessoAnnullato || OperazioneAnnullata();
  return ProcessoAnnullato;
}

void FrmScan::Init(const std::vector<RigaPercorso>& percorsi, FinestraOperazione& proprietaria, bool backup,
                   bool secondo, bool /*terzo*/, std::string_view filtro) {
  filtro_ = filtro;
  stato_.visibile = true;
  stato_.backup = backup;
  if (!percorsi.empty()) stato_.titolo = Titolo(percorsi.front().percorso, 0, percorsi.size());
  // Before the servers are connected, so that its button is there while one of them is slow.
  schermo().Mostra(stato_);
  bool conFtp = false;
  ConnettiUnitaFtp(percorsi, conFtp);
  fermata_ = Fermato();
  const bool senzaConnessione = conFtp && !secondo && (ConnessioneFallita || ProcessoAnnullato);
  if (senzaConnessione) {
    // The failed connection has been reported already; the owner goes on with empty columns.
    ErroreInCorso = ProcessoAnnullato = false;
  } else if (!ProcessoAnnullato) {
    ScansionaPercorsi(percorsi);
    CorreggiNomiSimili(ArrayScansione);
    Concludi(percorsi, backup);
    if (conFtp && !secondo && ServerConnesso("")) DisconnettiServer("");
  }
  fermata_ = fermata_ || ProcessoAnnullato;
  stato_.visibile = false;
  schermo().Mostra(stato_);
  proprietaria.ErroreInCorso |= ErroreInCorso;
  proprietaria.ProcessoAnnullato |= ProcessoAnnullato;
}

// The report of a failure, and the connections anew: one that was lost on the way is there again for the
// owner.
void FrmScan::Concludi(const std::vector<RigaPercorso>& percorsi, bool backup) {
  if (ErroreInCorso && !backup)
    ErroreFatale(0, "FrmScan", 2, 0, "", Messaggio(274) + " '" + percorsoFallito_ + "'", 0);
  if (Fermato()) return;
  bool conFtp = false;
  ConnettiUnitaFtp(percorsi, conFtp);
}

void FrmScan::ConnettiUnitaFtp(const std::vector<RigaPercorso>& percorsi, bool& qualcuno) {
  for (const RigaPercorso& riga : percorsi) {
    if (TipoPercorso(riga.percorso) != PercorsoFtp) continue;
    qualcuno = true;
    if (Fermato()) return;
    std::string messaggio;
    bool fallita = false;
    Connetti_Al_Server_FTP(IndiceServer(riga), messaggio, fallita, false);
  }
}

void FrmScan::ScansionaPercorsi(const std::vector<RigaPercorso>& percorsi) {
  for (std::size_t i = 0; i < percorsi.size(); ++i) {
    ArrayScansione.ImpostaTipo(i, TipoPercorso(percorsi[i].percorso));
    const bool raggiunto = ScansionaUnPercorso(percorsi[i].percorso, i, percorsi.size());
    if (ErroreInCorso && percorsoFallito_.empty()) percorsoFallito_ = percorsi[i].percorso;
    if (!raggiunto || Fermato() || (ErroreInCorso && !Errors_Try_Next)) return;
  }
}

// False: the path can't be reached, and no further one is looked at.
bool FrmScan::ScansionaUnPercorso(const std::string& percorso, std::size_t numero, std::size_t totale) {
  stato_.titolo = Titolo(percorso, numero, totale);
  ScriviLog(stato_.titolo, RigaNormale);
  schermo().Mostra(stato_);
  if (!EsisteCartella(percorso)) {
    ErroreInCorso = true;
    return false;
  }
  bool conDisco = false;
  const bool discoOttico = TipoPercorso(percorso) != PercorsoFtp && TipoUnita(percorso) == UnitaCdRom;
  if (discoOttico && VerificaCD(percorso, conDisco)) {
    saltati_.push_back(numero);
    return true;
  }
  ScansionaVolume(percorso, numero);
  return true;
}

// A medium that is pulled out during the walk can leave the folder that it was mounted on, which then looks
// empty from there on. So the path must lie on the same volume behind the walk as before it.
void FrmScan::ScansionaVolume(const std::string& percorso, std::size_t numero) {
  platform::SpaceOnDisc prima, dopo;
  const bool noto =
      TipoPercorso(percorso) != PercorsoFtp && platform::freeSpace(percorso, prima) == platform::kNoError;
  ScansionaCartella(numero, percorso, percorso.size());
  if (!noto || Fermato()) return;
  platform::ErrorCode errore = platform::freeSpace(percorso, dopo);
  if (errore == platform::kNoError && dopo.volume != prima.volume) errore = platform::kNotReady;
  if (errore == platform::kNoError) return;
  ErroreInCorso = true;
  ErroreFatale(errore, "ScansionaCartella", 0, 0, DettaglioPercorso("File/Folder Name: ", percorso), "", 0);
}

void FrmScan::ScansionaCartella(std::size_t colonna, std::string percorso, std::size_t inizio) {
  percorso = ConSeparatore(percorso);
  if (Fermato()) return;
  // The search is closed before any subfolder is entered: an FTP session has one search at a time.
  const std::vector<std::string> sottocartelle = LeggiCartella(colonna, percorso, inizio);
  for (const std::string& nome : sottocartelle) {
    DoEvents();
    if (Fermato() || (ErroreInCorso && !Errors_Try_Next)) return;
    stato_.cartella = percorso + nome;
    schermo().Mostra(stato_);
    ScansionaCartella(colonna, stato_.cartella, inizio);
  }
}

// A search on a server takes no notice of a folder that cannot be entered and lists the one that was current
// before. Its files are not those of this folder, and its subfolders would be walked without end.
bool FrmScan::AltraCartellaFtp(const std::string& percorso, std::int32_t tipo) {
  if (tipo != PercorsoFtp || CartellaFtpCorrente(percorso)) return false;
  ErroreInCorso = true;
  const std::string testo = Messaggio(274) + " '" + percorso + "'";
  ErroreFatale(0, "ScansionaCartella", 2, 0, "", testo, 0);
  AvvisoConnessionePersa(true, testo);
  return true;
}

// The files of one folder go to the column; its subfolders are given back.
std::vector<std::string> FrmScan::LeggiCartella(std::size_t colonna, const std::string& percorso,
                                                std::size_t inizio) {
  std::vector<std::string> sottocartelle;
  const std::int32_t tipo = TipoPercorso(percorso);
  const std::string* cartella = ArrayScansione.Deposito().Cartella(percorso);
  HandleRicerca ricerca = 0;
  RecordRicerca trovato;
  RispostaDir risposta = DirFile(ricerca, trovato, percorso + "*.*", false);
  if (!risposta.fallita() && AltraCartellaFtp(percorso, tipo)) {
    ChiudiRicerca(ricerca);
    return sottocartelle;
  }
  while (risposta.fallita() || !risposta.fine()) {
    if (risposta.fallita()) {
      ErroreInCorso = true;
      if (tipo == PercorsoFtp) AvvisoConnessionePersa(true, Messaggio(274) + " " + percorso);
      if (!Errors_Try_Next || Fermato()) break;
    } else if (const std::string& nome = risposta.nome(); nome != "." && nome != "..") {
      if ((trovato.dwFileAttributes & platform::kDirectory) != 0)
        sottocartelle.push_back(nome);
      else if (filtro_.empty() || FiltroAccetta(filtro_, nome))
        AggiungiFile(colonna, cartella, nome, inizio, trovato, tipo);
    }
    if (Fermato()) break;
    risposta = DirFile(ricerca, trovato, "", false);
  }
  ChiudiRicerca(ricerca);
  return sottocartelle;
}

void FrmScan::AggiungiFile(std::size_t colonna, const std::string* cartella, std::string_view nome,
                           std::size_t inizio, const RecordRicerca& trovato, std::int32_t tipo) {
  const std::string_view testo(ArrayScansione.Deposito().Testo(nome), nome.size());
  RecordFile record(cartella, testo, inizio);
  record.Dimensione = DimensioneFile(trovato);
  record.Attributi = static_cast<std::int32_t>(trovato.dwFileAttributes);
  record.Data = trovato.ftLastWriteTime.seconds;
  record.TipoPercorso = static_cast<std::int8_t>(tipo);
  ArrayScansione.Aggiungi(colonna, record);
  UltimoFileScandito.assign(*cartella).append(nome);
}

}  // namespace tandemize
