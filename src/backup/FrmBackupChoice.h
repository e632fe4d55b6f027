// "Run Backup": the planner of every backup run. It checks that the paths of the diagram can be reached,
// walks the sources and turns the diagram into ArrayTrasferimento, which it hands to the transfer engine.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "backup/ElencoSalvati.h"
#include "backup/FrmFileTransfer.h"
#include "errors/EsitoOperazione.h"
#include "errors/ModuloGestioneErrori.h"
#include "presentation/FrmProgressBar.h"
#include "profile/ModelloBackup.h"
#include "synchronisation/RecordFile.h"

namespace tandemize {

// Entries of cmbTipoBackup.
enum class TipoBackup : std::uint8_t { Standard = 0, Completo = 1, Incrementale = 2 };

// Members of Opt.
enum class ModoEsecuzione : std::uint8_t {
  TestVeloce = 0,
  TestAccurato = 1,
  TestVeloceEBackup = 2,
  TestAccuratoEBackup = 3
};

// Codes of a fault that a check found.
enum class CodiceErrore : std::int32_t {
  Generico = 0,
  NonTrovato = 1,
  SenzaInternet = 2,
  ScritturaFallita = 3
};

struct ErrorePercorso {
  std::string Percorso;
  std::int32_t TipoPercorso = 0, TipoUnita = 0;
  CodiceErrore Codice = CodiceErrore::Generico;
};

class FrmBackupChoice : public FinestraOperazione {
 public:
  // Reads the profile; false if it could not be read to its end.
  FrmBackupChoice();
  ~FrmBackupChoice() override;
  [[nodiscard]] bool ProfiloLetto() const { return profiloLetto_; }

  // First activation: with fewer than two objects asks whether to open the diagram. False if the window is
  // not to stay.
  bool Attiva();

  // Button 0 runs, button 1 cancels.
  EsitoOperazione TastoOk_Annulla(int pulsante);

  // Plans as a run of the chosen type and mode would, fills ArrayTrasferimento and judges it, but writes no
  // file of any kind. False if a check failed or the user stopped it; the report was shown.
  bool Anteprima();

  void PrelevaFilePerBackup(bool accurato);
  [[nodiscard]] bool ControllaPercorsiOggetti();
  // Makes and removes a file of a fixed name in the folder; false if that fails.
  [[nodiscard]] static bool TestScrittura(std::string_view percorso);
  // Whether any object needs FTP, and the index of its server.
  static void ControllaEsistenza_FileFtp_Array_Oggetti(std::uint8_t& indiceServer, bool& trovato);
  void RiempiArrayFileSingolo(const OggettoBackup& oggetto, FrmProgressBar& avanzamento);
  // False if the list holds the file with the same date: `riga` has then moved to the next one.
  void FileGiaSalvato(const RecordFile& record, std::size_t& riga, bool& daCopiare);
  void CreaRapporto(std::string& testo, bool& tuttoBene) const;
  bool MostraRapporto(bool silenzioso);
  EsitoOperazione InizioTrasferimento(bool procedi);

  // The dialog's controls.
  TipoBackup cmbTipoBackup = TipoBackup::Standard;
  ModoEsecuzione Opt = ModoEsecuzione::TestVeloceEBackup;
  bool ChkCreateFolder = false;
  bool ChkIgnorePath = false;
  bool Enabled = true;

  std::vector<ErrorePercorso> ListaErrori;  // without a spare entry

  // Files of the last run that were not copied; at most a thousand are named.
  std::vector<FileFallito> Falliti;
  std::size_t NumeroFalliti = 0;

 private:
  class Destinazioni;

  [[nodiscard]] bool SoloTest() const {
    return Opt == ModoEsecuzione::TestVeloce || Opt == ModoEsecuzione::TestAccurato;
  }
  [[nodiscard]] bool Accurato() const { return static_cast<int>(Opt) % 2 == 1; }
  bool ConnettiServer(bool& conFtp);
  bool ConnettiPerFileSingoli(const OggettoBackup& oggetto, std::int32_t server);
  EsitoOperazione Esegui();
  EsitoOperazione EseguiTest(bool conFtp);
  bool PreparaElencoSalvati();
  void AggiungiErrore(std::string_view percorso, CodiceErrore codice);
  void ControllaOggetto(OggettoBackup& oggetto);
  std::string NomeSottocartella();
  void PrelevaOggetto(const OggettoBackup& oggetto, const std::string& sottocartella, bool accurato,
                      FrmProgressBar& avanzamento, double quota);
  void GiudicaErroreDiScansione(const OggettoBackup& oggetto, std::int32_t indiceServer);
  void AggiungiTrasferimenti(const OggettoBackup& oggetto, const std::string& sottocartella, bool accurato,
                             FrmProgressBar& avanzamento, double passo);
  bool TestLettura(const RecordFile& sorgente);
  void AggiungiFileSingolo(const std::string& percorso);

  ElencoSalvati salvati_;
  bool profiloLetto_ = false;
  bool anteprima_ = false;
  bool erroreDiScansione_ = false;  // a fault of a subfolder was passed over
  double avanzamentoAttuale_ = 0;
};

// Name of a full run's subfolder, from a moment on the clock: "Backup__2026_3_9__8_5".
[[nodiscard]] std::string NomeCartellaBackup(std::int64_t secondiUtc);
// `LastBackup.dat`: a name is written from the start of the file without cutting it, and read back as a block
// of 260 characters up to the first NUL; the tail of a longer name before it is read back too.
[[nodiscard]] bool ScriviUltimoBackup(std::string_view nome);
[[nodiscard]] std::string LeggiUltimoBackup();

// Adds a path unless it is there; true if it was added.
bool Aggiungi_Verfica_Arr_Destinazioni(std::vector<std::string>& elenco, std::string_view percorso);

}  // namespace tandemize
