// The transfer engine: carries ArrayTrasferimento out, for a backup and for a synchronisation.
//
// It checks the destinations, works through the list record by record, and ends the operation. A copy takes
// its final name only when it is whole: an older copy is given up for a new one that is complete, and neither
// a stop, a failure nor a crash leaves half a file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "backup/ElencoSalvati.h"
#include "backup/MisuratoreVelocita.h"
#include "errors/ModuloGestioneErrori.h"
#include "platform/files.h"
#include "platform/ftp.h"
#include "platform/newfile.h"
#include "platform/newfilesupply.h"
#include "shell/Schermo.h"
#include "storage/Unita.h"
#include "synchronisation/RecordFile.h"

namespace tandemize {

enum class EsitoTrasferimento : std::uint8_t {
  Nessuno = 0,
  Annullato = 1,
  ErroreSuperato = 2,
  FileFallito = 3
};

// What became of one file that failed, for a summary at the end.
struct FileFallito {
  std::string percorso, motivo;
};

class FrmFileTransfer : public FinestraOperazione {
 public:
  FrmFileTransfer();
  ~FrmFileTransfer() override;

  // Prepares a run of `modo` (0 backup, 1 synchronisation) over ArrayTrasferimento and carries it out.
  // `salvaLista` writes the list of saved files, `incrementale` adds to it. False if a check before the first
  // copy failed; it was reported.
  bool Init(std::uint8_t modo, bool salvaLista, bool incrementale);

  // The cancel button. `confermato`: a stop signal, which asks nothing.
  void Annulla(bool confermato) override;

  // Whether the paths are to be scanned again, to be asked behind Init: a synchronisation that went to the
  // end of its list, that nobody stopped, whose profile wishes it, and with somebody there to see the
  // outcome.
  [[nodiscard]] bool RiscansioneRichiesta() const;

  EsitoTrasferimento EsitoCopia = EsitoTrasferimento::Nessuno;
  std::vector<FileFallito> Falliti;  // at most a thousand are kept
  std::size_t NumeroFalliti = 0;

  // Milliseconds between two updates of the screen; a test sets 0 to see each one.
  static std::uint64_t IntervalloSchermo;

  // --- steps of a run, public for tests of their rules
  [[nodiscard]] std::int32_t ControllaDestinazioni(std::vector<RigaPercorso>& radici);
  [[nodiscard]] bool ControllaSpazio();
  void FaseDiTrasferimento();
  void TrasferisciFile();
  bool Copy_File(const std::string& sorgente, const std::string& destinazione, std::int64_t buffer);
  // Over the session, again as often as the retry rules say. False if the destination does not hold the
  // source's content: the user stopped it (EsitoCopia 1), it was given up (2), or this machine's own side
  // failed (3). Nothing of it is left then where that can be seen to; an older local copy stands.
  bool InviaFileAlServer(const std::string& sorgente, const std::string& destinazione, std::int64_t buffer);
  bool ScaricaFileDalServer(const std::string& destinazione, const std::string& sorgente,
                            std::int64_t buffer);
  void AggiornaProgressBar(double byte);
  void AggiornaProgressBarFileSingolo(double massimo, double valore);
  void FineTrasferimento();
  [[nodiscard]] const std::vector<std::string>& PcDaSpegnere() const { return NomiPcDaSpegnere; }
  [[nodiscard]] const StatoTrasferimento& Stato() const { return stato_; }

 private:
  struct Copia;
  enum class Direzione : std::uint8_t { Locale, DalServer, AlServer };

  bool Prepara();
  bool ConnettiServer();
  bool LogScrivibile();
  void AggiungiPc(const RecordOperazione& operazione);
  bool TrasferisciRecord(std::size_t i);
  bool PreparaCartella(std::size_t i);
  void PreparaScorta(std::size_t i);
  bool CopiaFile(const std::string& sorgente, const std::string& destinazione, Direzione direzione);
  void CopiaAttributi(const RecordOperazione& operazione, const std::string& destinazione);
  void AggiungiAListaFile(const RecordFile& sorgente);
  bool MemoriaInEsaurimento();
  void ScaricaSuUnitaRimovibili();
  void SpegniComputer();

  // A synchronisation's own steps.
  bool Confermato(const RecordOperazione& operazione, const std::string& sorgente,
                  const std::string& destinazione);
  bool ChiediSovrascrittura(const std::string& sorgente, const std::string& destinazione);
  [[nodiscard]] std::string OstacoloCopia(const RecordOperazione& operazione,
                                          const std::string& destinazione) const;
  [[nodiscard]] std::string OstacoloEliminazione(const RecordOperazione& operazione,
                                                 const std::string& sorgente,
                                                 const std::string& destinazione) const;
  [[nodiscard]] bool Cambiato(const RecordFile& previsto, const std::string& percorso) const;
  [[nodiscard]] bool Comparso(const RecordFile& previsto, const std::string& percorso) const;
  void EliminaRecord(const RecordOperazione& operazione, const std::string& sorgente,
                     const std::string& destinazione);
  void EliminaUnFile(const std::string& sorgente);
  void PulisciCartelleVuote(const RecordOperazione& operazione, const std::string& sorgente,
                            const std::string& destinazione);

  // Pieces of one local copy.
  bool EseguiCopia(Copia& copia);
  bool ApriSorgente(Copia& copia);
  bool ApriDestinazione(Copia& copia);
  bool CopiaBlocchi(Copia& copia);
  bool ConcludiCopia(Copia& copia);
  bool CopiaSenzaVecchia(Copia& copia);
  bool CopiaConSistema(Copia& copia);
  bool BloccoDiErrore(Copia& copia);

  // Pieces of one transfer over the session.
  struct CopiaFtp;
  bool CopiaFraServer(const std::string& sorgente, const std::string& destinazione, std::int64_t buffer);
  bool Invia(CopiaFtp& copia);
  platform::ErrorCode TentaInvio(platform::FtpSession& sessione, CopiaFtp& copia);
  platform::ErrorCode InviaBlocchi(platform::SourceFile& in, platform::FtpData& out, CopiaFtp& copia);
  bool Scarica(CopiaFtp& copia);
  platform::ErrorCode TentaScarico(platform::FtpSession& sessione, CopiaFtp& copia);
  platform::ErrorCode ScaricaBlocchi(platform::FtpData& in, platform::NewFile& out, CopiaFtp& copia,
                                     std::uint64_t lunghezza);
  platform::ErrorCode ConcludiScarico(platform::NewFile& out, CopiaFtp& copia,
                                      const std::optional<platform::FileTime>& momento);
  void PreparaBlocco(std::int64_t buffer);
  void RicominciaFtp(CopiaFtp& copia);
  void ContaFtp(CopiaFtp& copia, std::uint64_t lunghezza);
  void AvanzaFtp(CopiaFtp& copia, std::size_t byte, std::uint64_t lunghezza);
  static bool ConcludiFtp();
  bool AbbandonaFtp(const CopiaFtp& copia, std::string_view routine);
  void RiferisciFallito(const std::string& percorso, std::string_view routine, std::int32_t errore,
                        const std::string& testo);
  static void EliminaParziale(const CopiaFtp& copia);
  static bool VuotoSulServer(const std::string& percorso);
  static void NotaParziale(const std::string& percorso);

  void NotaFallito(const std::string& percorso, std::string_view motivo);
  // The first thing that goes wrong is the outcome, but for a failed copy, which always is.
  void PeggioraEsito(EsitoTrasferimento nuovo);

  void Mostra(bool subito);

  std::uint8_t ModoTrasferimento = 0;
  bool SalvaLista = false, Incrementale = false, MemoriaAvvisata = false;
  std::int32_t FileCopiati = 0, FileTotali = 0;
  double ByteCopiati = 0, ByteTotali = 0;
  std::vector<std::string> NomiPcDaSpegnere;
  std::vector<std::string> radiciRimovibili_;

  bool chiusuraConfermata_ = false, chiedeChiusura_ = false;
  bool logRotto_ = false;
  bool conclusa_ = false;  // the loop went to the end of the list
  MisuratoreVelocita misuratore_;
  ScrittoreElenco elenco_;
  std::unordered_set<const std::string*> cartelleRipulite_;
  platform::NewFileSupply scorta_;  // destination files made ready ahead
  const std::string* cartellaAllaMano_ = nullptr;
  const std::string* cartellaFatta_ = nullptr;  // the folder made last: nobody else has put a file into it
  // Hashes of the paths that this synchronisation has written or deleted itself.
  std::unordered_set<std::size_t> propri_;
  std::vector<char> blocco_;                 // what is on its way to or from a server
  std::int64_t dataElencata_ = DataAssente;  // of the source at hand, as its folder's listing told it
  std::int32_t attributiCopiati_ = -1;       // of the destination just written; -1 when they are not known
  std::uint64_t ultimoMostrato_ = 0, ultimaMemoria_ = 0;
  StatoTrasferimento stato_;
};

// The attributes of a file that is to be copied over: by exact value, read-only and hidden go; combinations
// that are not listed stay. `precedenti` gets the old value where something was cleared.
void RimuoviAttrPerLaCopia(std::string_view percorso, std::uint8_t& precedenti);

}  // namespace tandemize
