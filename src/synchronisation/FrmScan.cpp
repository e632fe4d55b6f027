#include "synchronisation/FrmScan.h"

#include <charconv>

#include "errors/ModuloLog.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "storage/ModuloInternet.h"
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

}  // namespace

void FrmScan::Init(const std::vector<RigaPercorso>& percorsi, FinestraOperazione& proprietaria, bool backup,
                   bool secondo, bool /*terzo*/, std::string_view filtro) {
  filtro_ = filtro;
  stato_.visibile = true;
  bool conFtp = false;
  ConnettiUnitaFtp(percorsi, conFtp);
  const bool senzaConnessione = conFtp && !secondo && (ConnessioneFallita || ProcessoAnnullato);
  if (senzaConnessione) {
    // The failed connection has been reported already; the owner goes on with empty columns.
    ErroreInCorso = ProcessoAnnullato = false;
  } else if (!ProcessoAnnullato) {
    ScansionaPercorsi(percorsi);
    CorreggiNomiSimili(ArrayScansione);
    if (ErroreInCorso && !backup)
      ErroreFatale(0, "FrmScan", 2, 0, "", Messaggio(274) + " '" + percorsoAllaMano_ + "'", 0);
    if (conFtp && !secondo && ServerConnesso("")) DisconnettiServer("");
  }
  stato_.visibile = false;
  schermo().Mostra(stato_);
  proprietaria.ErroreInCorso |= ErroreInCorso;
  proprietaria.ProcessoAnnullato |= ProcessoAnnullato;
}

void FrmScan::ConnettiUnitaFtp(const std::vector<RigaPercorso>& percorsi, bool& qualcuno) {
  for (const RigaPercorso& riga : percorsi) {
    if (TipoPercorso(riga.percorso) != PercorsoFtp) continue;
    qualcuno = true;
    std::string messaggio;
    bool fallita = false;
    Connetti_Al_Server_FTP(IndiceServer(riga), messaggio, fallita, false);
  }
}

void FrmScan::ScansionaPercorsi(const std::vector<RigaPercorso>& percorsi) {
  for (std::size_t i = 0; i < percorsi.size(); ++i) {
    ArrayScansione.ImpostaTipo(i, TipoPercorso(percorsi[i].percorso));
    if (!ScansionaUnPercorso(percorsi[i].percorso, i, percorsi.size())) return;
    if (ProcessoAnnullato || (ErroreInCorso && !Errors_Try_Next)) return;
  }
}

// False: the path can't be reached, and no further one is looked at.
bool FrmScan::ScansionaUnPercorso(const std::string& percorso, std::size_t numero, std::size_t totale) {
  stato_.titolo =
      Messaggio(273) + (totale > 1 ? " " + std::to_string(numero + 1) : "") + " '" + percorso + "'";
  percorsoAllaMano_ = percorso;
  ScriviLog(stato_.titolo, RigaNormale);
  schermo().Mostra(stato_);
  if (!EsisteCartella(percorso)) {
    ErroreInCorso = true;
    return false;
  }
  bool conDisco = false;
  const bool discoOttico = TipoPercorso(percorso) != PercorsoFtp && TipoUnita(percorso) == UnitaCdRom;
  if (discoOttico && VerificaCD(percorso, conDisco)) return true;
  ScansionaCartella(numero, percorso, percorso.size());
  return true;
}

void FrmScan::ScansionaCartella(std::size_t colonna, std::string percorso, std::size_t inizio) {
  percorso = ConSeparatore(percorso);
  if (ProcessoAnnullato) return;
  // The search is closed before any subfolder is entered: an FTP session has one search at a time.
  const std::vector<std::string> sottocartelle = LeggiCartella(colonna, percorso, inizio);
  for (const std::string& nome : sottocartelle) {
    DoEvents();
    if (ProcessoAnnullato || (ErroreInCorso && !Errors_Try_Next)) return;
    stato_.cartella = percorso + nome;
    schermo().Mostra(stato_);
    ScansionaCartella(colonna, stato_.cartella, inizio);
  }
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
  while (risposta.fallita() || !risposta.fine()) {
    if (risposta.fallita()) {
      ErroreInCorso = true;
      if (!Errors_Try_Next || ProcessoAnnullato) break;
    } else if (const std::string& nome = risposta.nome(); nome != "." && nome != "..") {
      if ((trovato.dwFileAttributes & platform::kDirectory) != 0)
        sottocartelle.push_back(nome);
      else if (filtro_.empty() || FiltroAccetta(filtro_, nome))
        AggiungiFile(colonna, cartella, nome, inizio, trovato, tipo);
    }
    if (ProcessoAnnullato) break;
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
