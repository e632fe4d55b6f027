// The planning walk: from the diagram's sources to one record for each file and destination.

#include <algorithm>
#include <optional>
#include <utility>

#include "backup/FrmBackupChoice.h"
#include "errors/ModuloLog.h"
#include "platform/machine.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "storage/Unita.h"
#include "synchronisation/FrmScan.h"

namespace tandemize {

namespace {

constexpr std::uint8_t SenzaRapporto = 32;
constexpr double AvanzamentoIniziale = 0.015;

// Automatic retries are off while planning.
class SenzaRipetizioni {
 public:
  SenzaRipetizioni() : prima_(Errors_Correction) { Errors_Correction = 0; }
  ~SenzaRipetizioni() { Errors_Correction = prima_; }
  SenzaRipetizioni(const SenzaRipetizioni&) = delete;
  SenzaRipetizioni& operator=(const SenzaRipetizioni&) = delete;

 private:
  std::uint8_t prima_;
};

// Separators of the destination's kind throughout, never two in a row; the two in front of a LAN path stay.
std::string ConSeparatoriDi(std::int32_t tipo, std::string_view percorso) {
  const char separatore = SeparatorePercorso(tipo);
  const char altro = separatore == '/' ? '\\' : '/';
  const std::size_t primoControllato = separatore == '/' ? 0 : 2;
  std::string risultato;
  risultato.reserve(percorso.size());
  for (std::size_t i = 0; i < percorso.size(); ++i) {
    const char c = percorso[i] == altro ? separatore : percorso[i];
    const bool doppio =
        c == separatore && risultato.size() > primoControllato && risultato.back() == separatore;
    if (!doppio) risultato.push_back(c);
  }
  return risultato;
}

// A search on a server lists a whole folder, whatever the path, so the file is looked for among its entries.
RispostaDir CercaFile(const std::string& percorso, RecordRicerca& trovato) {
  HandleRicerca ricerca = 0;
  const bool suServer = TipoPercorso(percorso) == PercorsoFtp;
  RispostaDir risposta = DirFile(
      ricerca, trovato, suServer ? ConSeparatore(CartellaSuperiore(percorso)) + "*.*" : percorso, false);
  while (suServer && !risposta.fallita() && !risposta.fine() && risposta.nome() != NomeFinale(percorso))
    risposta = DirFile(ricerca, trovato, "", false);
  ChiudiRicerca(ricerca);
  return risposta;
}

}  // namespace

// Where the files of one source go: destination folders are worked out once for each source folder, and asked
// once whether they exist, since a file can only stand in a folder that does.
class FrmBackupChoice::Destinazioni {
 public:
  Destinazioni(const std::vector<std::string>& percorsi, const std::string& sottocartella) {
    for (const std::string& percorso : percorsi) {
      const std::int32_t tipo = TipoPercorso(percorso);
      const char separatore = SeparatorePercorso(tipo);
      std::string inizio = percorso + separatore;
      if (!sottocartella.empty()) inizio.append(sottocartella).push_back(separatore);
      mete_.push_back({std::move(inizio), tipo, nullptr, nullptr, false});
    }
  }

  [[nodiscard]] std::size_t Numero() const { return mete_.size(); }

  // The destination's record of a source record: same data, its own path and kind.
  RecordFile Record(std::size_t d, const RecordFile& sorgente) {
    Meta& meta = mete_[d];
    RecordFile record = sorgente;
    if (sorgente.CartellaDelFile() != meta.cartellaSorgente) CambiaCartella(meta, sorgente);
    const std::size_t lunghezza = meta.cartella->size() + sorgente.UltimoNome().size();
    record = RecordFile(meta.cartella, sorgente.UltimoNome(),
                        lunghezza - std::min(lunghezza, sorgente.LunghezzaNome()));
    record.Data = sorgente.Data;
    record.Attributi = sorgente.Attributi;
    record.TipoPercorso = static_cast<std::int8_t>(meta.tipo);
    record.Dimensione = Esiste(meta, record) ? sorgente.Dimensione : 0;
    return record;
  }

 private:
  struct Meta {
    std::string inizio;  // the destination's path with the subfolder and separators
    std::int32_t tipo;
    const std::string* cartellaSorgente;
    const std::string* cartella;
    bool cartellaEsiste;
    std::optional<bool> rispostaDelServer{};
  };

  static void CambiaCartella(Meta& meta, const RecordFile& sorgente) {
    std::string nome = sorgente.Nome();
    nome.resize(nome.size() - std::min(nome.size(), sorgente.UltimoNome().size()));
    const std::string cartella = ConSeparatoriDi(meta.tipo, meta.inizio + nome);
    meta.cartella = ArrayScansione.Deposito().Cartella(cartella);
    meta.cartellaSorgente = sorgente.CartellaDelFile();
    meta.cartellaEsiste = meta.tipo == PercorsoFtp || EsisteCartella(cartella);
    meta.rispostaDelServer.reset();
  }

  // On a server the answer is about the session's current folder and the same for each file, so it is asked
  // for once a folder.
  static bool Esiste(Meta& meta, const RecordFile& record) {
    if (!meta.cartellaEsiste) return false;
    if (meta.tipo != PercorsoFtp) return EsisteFile(record.Percorso());
    if (!meta.rispostaDelServer) meta.rispostaDelServer = EsisteFile(record.Percorso());
    return *meta.rispostaDelServer;
  }

  std::vector<Meta> mete_;
};

void FrmBackupChoice::PrelevaFilePerBackup(bool accurato) {
  ArrayTrasferimento.Svuota();
  ListaErrori.clear();
  erroreDiScansione_ = false;
  if (UltimoOggetto() < 2) {
    // A box in the hidden state too: an unattended run then waits until somebody closes it.
    MsgBox(Messaggio(122), StileInformazione);
    return;
  }
  if (!ControllaPercorsiOggetti()) return;
  const SenzaRipetizioni senzaRipetizioni;
  const std::string sottocartella = NomeSottocartella();
  FrmProgressBar avanzamento(this, "", 100);
  avanzamento.Valore(AvanzamentoIniziale);
  Enabled = false;
  const double quota = 100.0 / static_cast<double>(UltimoOggetto());
  for (std::size_t k = 1; k < ArrayOggetti.size() && !ProcessoAnnullato; ++k) {
    avanzamentoAttuale_ = quota * static_cast<double>(k - 1);
    avanzamento.Valore(avanzamentoAttuale_);
    const OggettoBackup& oggetto = ArrayOggetti[k];
    if (!oggetto.Vivo()) continue;
    avanzamento.Testo(oggetto.BackPath + " (" + Messaggio(140) + ")");
    if (oggetto.BackTipoTrasferimento == TipoSorgente && !oggetto.BackIgnorato)
      PrelevaOggetto(oggetto, sottocartella, accurato, avanzamento, quota);
  }
  ArrayScansione.Azzera(0);
}

std::string FrmBackupChoice::NomeSottocartella() {
  if (!ChkCreateFolder || cmbTipoBackup == TipoBackup::Standard) return {};
  if (cmbTipoBackup == TipoBackup::Incrementale) return LeggiUltimoBackup();
  std::string nome = NomeCartellaBackup(platform::now());
  // A test alone leaves the file alone.
  if (!SoloTest() && !anteprima_ && !ScriviUltimoBackup(nome))
    ErroreFatale(0, "PrelevaFilePerBackup", 2, 0, "", "==> Error While Writing File : LastBackup.dat", 0);
  return nome;
}

void FrmBackupChoice::PrelevaOggetto(const OggettoBackup& oggetto, const std::string& sottocartella,
                                     bool accurato, FrmProgressBar& avanzamento, double quota) {
  ArrayScansione.Azzera(1);
  const std::int32_t server = IndiceServerDaDescrizione(oggetto.BackFtpServerDescription);
  if (oggetto.BackPath.empty()) {
    if (!ConnettiPerFileSingoli(oggetto, server)) return;
    RiempiArrayFileSingolo(oggetto, avanzamento);
  } else {
    FrmScan scansione;
    scansione.Init({{oggetto.BackPath, std::to_string(server)}}, *this, true, true, false, FilterBackup);
    if (ErroreInCorso) GiudicaErroreDiScansione(oggetto, server);
  }
  DoEvents();
  if (ProcessoAnnullato) return;
  const double file = static_cast<double>(std::max<std::size_t>(1, ArrayScansione.Righe(0)));
  const double destinazioni = static_cast<double>(std::max<std::size_t>(1, oggetto.BackLinkTo.size()));
  AggiungiTrasferimenti(oggetto, sottocartella, accurato, avanzamento, quota / (file * destinazioni));
}

// The checks of the paths have closed the session. A folder's walk connects by itself, single files do not.
bool FrmBackupChoice::ConnettiPerFileSingoli(const OggettoBackup& oggetto, std::int32_t server) {
  const auto suServer = [](const std::string& file) { return TipoPercorso(file) == PercorsoFtp; };
  if (std::ranges::none_of(oggetto.Files, suServer)) return true;
  std::string messaggio;
  bool fallita = false;
  Connetti_Al_Server_FTP(static_cast<std::int16_t>(server), messaggio, fallita, false);
  if (!fallita) return !ProcessoAnnullato;
  AggiungiErrore(*std::ranges::find_if(oggetto.Files, suServer), CodiceErrore::Generico);
  return false;
}

// A source that can still be reached is not judged by the fault of a subfolder: the log has told of it.
void FrmBackupChoice::GiudicaErroreDiScansione(const OggettoBackup& oggetto, std::int32_t indiceServer) {
  const std::int32_t codice =
      VerificaPercorsi({{oggetto.BackPath, std::to_string(indiceServer)}}, SenzaRapporto, 0);
  if (codice != 0) {
    AggiungiErrore(oggetto.BackPath, codice == 6 ? CodiceErrore::SenzaInternet : CodiceErrore::Generico);
    return;
  }
  ErroreInCorso = false;
  erroreDiScansione_ = true;
  ScriviLog("", RigaOk);
}

void FrmBackupChoice::AggiungiTrasferimenti(const OggettoBackup& oggetto, const std::string& sottocartella,
                                            bool accurato, FrmProgressBar& avanzamento, double passo) {
  Destinazioni destinazioni(RestituisciUnitàDiDestinazione(oggetto.BackDescrizione), sottocartella);
  ArrayTrasferimento.Conserva(ArrayScansione.DepositoCondiviso());
  const std::size_t righe = ArrayScansione.Righe(0);
  for (std::size_t r = 0; r < righe; ++r) {
    for (std::size_t d = 0; d < destinazioni.Numero(); ++d) {
      bool daCopiare = cmbTipoBackup != TipoBackup::Incrementale;
      while (!daCopiare && r < righe) FileGiaSalvato(ArrayScansione.Riga(0, r), r, daCopiare);
      if (r >= righe) return;
      const RecordFile& sorgente = ArrayScansione.Riga(0, r);
      if (accurato) TestLettura(sorgente);
      DoEvents();
      if (ProcessoAnnullato) return;
      ArrayTrasferimento.Aggiungi({sorgente, destinazioni.Record(d, sorgente)});
      avanzamento.Valore(avanzamentoAttuale_ += passo);
    }
  }
}

// Reads a source whole, once for each destination; the destination is never read.
bool FrmBackupChoice::TestLettura(const RecordFile& sorgente) {
  const std::string percorso = sorgente.Percorso();
  if (!EsisteFile(percorso)) return false;
  if (CalcolaCRC(percorso, sorgente.TipoPercorso == PercorsoFtp).fallito) {
    ErroreInCorso = true;
    AggiungiErrore(percorso, CodiceErrore::Generico);
    return false;
  }
  ScriviLog(Messaggio(138) + " '" + percorso + "' ... OK.", RigaNormale);
  return true;
}

void FrmBackupChoice::FileGiaSalvato(const RecordFile& record, std::size_t& riga, bool& daCopiare) {
  daCopiare = !salvati_.Contiene(record.Percorso(), record.DataFile());
  if (!daCopiare) ++riga;
}

void FrmBackupChoice::RiempiArrayFileSingolo(const OggettoBackup& oggetto, FrmProgressBar& avanzamento) {
  for (const std::string& file : oggetto.Files) {
    if (file.empty()) continue;
    DoEvents();
    if (ProcessoAnnullato) return;
    avanzamento.Testo(CartellaSuperiore(file));
    AggiungiFileSingolo(file);
  }
}

// The file's `Nome` is its bare name behind a separator, so it lands directly under the destination.
void FrmBackupChoice::AggiungiFileSingolo(const std::string& percorso) {
  RecordRicerca trovato;
  const RispostaDir risposta = CercaFile(percorso, trovato);
  if (risposta.fallita()) {
    AggiungiErrore(percorso, CodiceErrore::Generico);
    return;
  }
  const bool cartella = (trovato.dwFileAttributes & platform::kDirectory) != 0;
  if (risposta.fine() || cartella) {
    ScriviLog(Messaggio(138) + " '" + percorso + "' ... " + Messaggio(137), RigaNormale);
    AggiungiErrore(percorso, CodiceErrore::NonTrovato);
    return;
  }
  ScriviLog(Messaggio(138) + " '" + percorso + "' ... OK", RigaNormale);
  const std::string inizio = ConSeparatore(CartellaSuperiore(percorso));
  DepositoNomi& deposito = ArrayScansione.Deposito();
  const std::string_view nome(deposito.Testo(risposta.nome()), risposta.nome().size());
  RecordFile record(deposito.Cartella(inizio), nome, inizio.size() - 1);
  record.Dimensione = DimensioneFile(trovato);
  record.Attributi = static_cast<std::int32_t>(trovato.dwFileAttributes);
  record.Data = trovato.ftLastWriteTime.seconds;
  record.TipoPercorso = static_cast<std::int8_t>(TipoPercorso(percorso));
  ArrayScansione.Aggiungi(0, record);
}

}  // namespace tandemize
