// What happens before the first copy: the destinations' roots and their free space.

#include <algorithm>

#include "backup/FrmBackupChoice.h"
#include "backup/FrmFileTransfer.h"
#include "errors/ModuloLog.h"
#include "platform/machine.h"
#include "presentation/Avvisi.h"
#include "presentation/FrmProgressBar.h"
#include "profile/ModuloProfilo.h"
#include "shell/Formati.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/File_System.h"
#include "storage/ModuloArray.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::size_t RecordFraEventi = 1024;

// Lets events run each so many records. False if they have stopped the operation.
bool ContinuaDopoEventi(const FinestraOperazione& finestra, std::size_t record) {
  if (record % RecordFraEventi == RecordFraEventi - 1) DoEvents();
  return !finestra.ProcessoAnnullato;
}

// One root, or one of several file systems that lie below it: a letter may stand for a whole host tree.
struct RigaSpazio {
  std::string radice;
  std::uint64_t volume = 0;
  double disponibili = 0, necessari = 0;
};

std::string PrimaCartellaEsistente(std::string cartella) {
  while (!EsisteCartella(cartella)) {
    std::string sopra = CartellaSuperiore(cartella);
    if (sopra.size() >= cartella.size()) break;
    cartella = std::move(sopra);
  }
  return cartella;
}

class TabellaSpazio {
 public:
  void Aggiungi(const RecordOperazione& operazione) {
    const RecordFile& destinazione = operazione.Destinazione;
    if (EraseFile != 0 && operazione.Sorgente.DaEliminare) return;  // a deletion writes nothing anywhere
    if (destinazione.TipoPercorso == PercorsoFtp || destinazione.Dimensione == operazione.Sorgente.Dimensione)
      return;
    if (destinazione.CartellaDelFile() != cartella_)
      riga_ = CercaRiga(*(cartella_ = destinazione.CartellaDelFile()));
    righe_[riga_].necessari += operazione.Sorgente.Dimensione - destinazione.Dimensione;
  }
  [[nodiscard]] const std::vector<RigaSpazio>& Righe() const { return righe_; }

 private:
  std::size_t CercaRiga(const std::string& cartella) {
    const std::string radice = RadicePercorso(cartella);
    platform::SpaceOnDisc spazio;
    const std::string esistente = PrimaCartellaEsistente(CartellaSuperiore(cartella + "x"));
    const bool noto = platform::freeSpace(esistente, spazio) == platform::kNoError;
    for (std::size_t i = 0; i < righe_.size(); ++i)
      if (righe_[i].radice == radice && righe_[i].volume == spazio.volume) return i;
    righe_.push_back({radice, spazio.volume, noto ? static_cast<double>(spazio.available) : 0, 0});
    return righe_.size() - 1;
  }

  std::vector<RigaSpazio> righe_;
  const std::string* cartella_ = nullptr;
  std::size_t riga_ = 0;
};

void AvvisaSpazioInsufficiente(const RigaSpazio& riga) {
  const std::string testo = Messaggio(176) + "\r\r" + Messaggio(177) + " '" + riga.radice + "' " +
                            Messaggio(178) + " " + FormattaMigliaia(riga.disponibili) + " " + Messaggio(179) +
                            " " + Messaggio(180) + " " + FormattaMigliaia(riga.necessari) + " " +
                            Messaggio(181);
  if (ApplicazioneNascosta)
    MostraBalloon("FrmFileTransfer", testo, TitoloApplicazione, 0, 0, false, true);
  else
    MsgBox(testo, StileInformazione);
}

}  // namespace

bool FrmFileTransfer::Init(std::uint8_t modo, bool salvaLista, bool incrementale) {
  ModoTrasferimento = modo;
  SalvaLista = salvaLista;
  Incrementale = incrementale;
  ScriviLog(Messaggio(175), Intestazione);
  stato_.titolo = Messaggio(388);
  schermo().MousePointer(Puntatore::FrecciaEClessidra);
  const bool pronto = Prepara();
  schermo().MousePointer(Puntatore::Normale);
  if (!pronto && ProcessoAnnullato) EsitoCopia = EsitoTrasferimento::Annullato;
  if (!pronto) return false;
  Visible = true;
  stato_.visibile = true;
  FaseDiTrasferimento();
  return !logRotto_ || FileCopiati > 1;
}

bool FrmFileTransfer::Prepara() {
  if (!LogScrivibile()) return false;
  FrmProgressBar avanzamento(this, Messaggio(284), 3);
  avanzamento.Valore(1);
  if (!ConnettiServer()) return false;
  std::vector<RigaPercorso> radici;
  if (ControllaDestinazioni(radici) != 0 || ProcessoAnnullato) return false;
  avanzamento.Valore(2);
  if (!ControllaSpazio()) return false;
  avanzamento.Valore(3);
  DoEvents();
  return true;
}

// A failure has been reported by the connect itself; what is told here is how the run ends.
bool FrmFileTransfer::ConnettiServer() {
  bool fallita = false;
  ConnettiServerOggetti(ArrayTrasferimento, ModoTrasferimento == 1, fallita);
  if (ProcessoAnnullato) EsitoCopia = EsitoTrasferimento::Annullato;
  if (!fallita || ProcessoAnnullato) return !ProcessoAnnullato;
  ErroreInCorso = true;
  FineOperazione(ErroreInCorso,
                 InLingua("La connessione al server FTP non è riuscita, nessun file è stato copiato.",
                          "The connection to the FTP server has failed, no file was copied."),
                 ProcessoAnnullato);
  return false;
}

std::int32_t FrmFileTransfer::ControllaDestinazioni(std::vector<RigaPercorso>& radici) {
  std::vector<std::string> trovate;
  const std::string* cartella = nullptr;
  for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i) {
    if (!ContinuaDopoEventi(*this, i)) return 0;
    const RecordOperazione& operazione = ArrayTrasferimento[i];
    if (Advance_ShutDownAll == 1) AggiungiPc(operazione);
    if (operazione.Destinazione.CartellaDelFile() == cartella) continue;
    cartella = operazione.Destinazione.CartellaDelFile();
    const std::string radice = RadicePercorso(*cartella);
    if (radice != "/") Aggiungi_Verfica_Arr_Destinazioni(trovate, radice);
  }
  for (const std::string& radice : trovate) {
    radici.push_back({radice, ""});
    if (TipoUnita(radice) == UnitaRimovibile) radiciRimovibili_.push_back(radice);
  }
  return radici.empty() ? 0 : VerificaPercorsi(radici, 0, ApplicazioneNascosta ? 2 : 0);
}

// Names of the other computers of the run, each once. On the destination's side the name keeps its trailing
// backslash: the two sides cut differently, and that is kept.
void FrmFileTransfer::AggiungiPc(const RecordOperazione& operazione) {
  const auto aggiungi = [this](const std::string& percorso, std::size_t meno) {
    const std::size_t barra = percorso.find('\\', 2);
    if (TipoPercorso(percorso) != PercorsoLan || barra == std::string::npos) return;
    Aggiungi_Verfica_Arr_Destinazioni(NomiPcDaSpegnere, percorso.substr(2, barra + 1 - meno));
  };
  aggiungi(operazione.Sorgente.Percorso(), 3);
  aggiungi(operazione.Destinazione.Percorso(), 2);
}

bool FrmFileTransfer::ControllaSpazio() {
  TabellaSpazio tabella;
  for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i) {
    if (!ContinuaDopoEventi(*this, i)) return false;
    tabella.Aggiungi(ArrayTrasferimento[i]);
  }
  bool basta = true;
  for (const RigaSpazio& riga : tabella.Righe()) {
    if (riga.disponibili >= riga.necessari) continue;
    basta = false;
    AvvisaSpazioInsufficiente(riga);
  }
  return basta;
}

}  // namespace tandemize
