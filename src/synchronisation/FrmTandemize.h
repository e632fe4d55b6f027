// A synchronisation, without its window: scan, comparison, report and execution, as the commands of the
// synchronisation window and an unattended start run them.
//
// Nothing is copied, overwritten or deleted unless the scan and the comparison went through to their end. A
// scan that failed or was stopped leaves both tables empty, whatever it had found by then.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "backup/FrmFileTransfer.h"
#include "errors/EsitoOperazione.h"
#include "errors/ModuloGestioneErrori.h"
#include "storage/Unita.h"
#include "synchronisation/Confronto.h"
#include "synchronisation/FrmScan.h"

namespace tandemize {

class FrmTandemize : public FinestraOperazione {
 public:
  // Reads the profile; see ProfiloLetto.
  FrmTandemize();
  ~FrmTandemize() override;
  // False if the profile could not be read to its end: nothing may be run with it.
  [[nodiscard]] bool ProfiloLetto() const { return profiloLetto_; }

  // The profile's paths with the index of their server, as the checks and the scan take them.
  [[nodiscard]] std::vector<RigaPercorso> Percorsi() const;
  // Checks all paths and reports a fault; writes the refusal to the log. `modo` as VerificaPercorsi has it.
  [[nodiscard]] bool ControllaPercorsi(std::uint8_t modo);

  // The whole pass: saves the profile (not in a preview), scans, sorts, compares, tells the result, and when
  // it is wanted and the program is not hidden, executes. A profile that cannot be saved is reported and ends
  // it before the scan. Does nothing while another operation works on the two tables.
  void FaseDiScansione();
  // Carries ArrayTrasferimento out. `senzaControlli`: the paths have been checked already. Scans again at the
  // end where the profile asks for it and a person is there to see it.
  void EseguiSincronizzazione(bool senzaControlli);

  // "Scan" of the menu: checks the paths, then FaseDiScansione.
  void op_Scansione();

  // A start that nobody watches, to be called while the program is hidden: checks, scans, compares and
  // executes without a question. Rifiutato: a check or the scan failed, and nothing was touched. A CRC that
  // failed keeps nothing else from being done, and makes the outcome ErroreSuperato at least.
  [[nodiscard]] EsitoOperazione PartenzaAutomatica();
  // The same up to the comparison, without writing any file, the log and the profile included.
  // ArrayTrasferimento then holds what would be done. Fatto, NienteDaFare, Annullato or Rifiutato.
  [[nodiscard]] EsitoOperazione Anteprima();

  // True when there is something to do.
  [[nodiscard]] bool CiSonoOperazioni() const;

  // Empties the lists that the screen shows, under a progress window: always with `forza`, otherwise only
  // when the list of things to do has more than 1100 elements. A screen without lists is asked for nothing.
  void Libera_Tutta_La_Memoria(bool forza);
  // The lists and status rows of the window made anew. `forza` is the window's own and has no effect here.
  void Refresh_Completo_Griglie(bool forza);

  // What the last execution left behind; at most a thousand files are named.
  [[nodiscard]] EsitoTrasferimento EsitoUltimaCopia() const { return esito_; }
  std::vector<FileFallito> Falliti;
  std::size_t NumeroFalliti = 0;

  bool ErroreCrc = false;         // a CRC of the comparison failed
  bool TroppeDifferenze = false;  // see Confronto
  bool MoltiDifferenze = false;

  // --- steps, public for tests of their rules
  // One empty column a path and an empty list of things to do.
  void ResettaGliArray();

 private:
  // How the last scan and comparison ended, whatever became of the flags since.
  enum class EsitoScansione : std::uint8_t { Completa, Fallita, Annullata };

  [[nodiscard]] bool SalvaProfilo();
  void PreparaUnita();
  void Scansiona();
  [[nodiscard]] bool SorgenteNellaDestinazione();
  void ControllaSaltati(const FrmScan& scansione);
  void OrdinaEConfronta();
  void Confronta(Confronto& confronto);
  void MostraConfrontoInCorso(bool inCorso);
  void GiudicaScansione();
  void RiferisciScansione();
  [[nodiscard]] bool DaEseguire() const;
  void Avvisa(std::string_view testo) const;
  [[nodiscard]] EsitoOperazione Pianifica();
  [[nodiscard]] bool Trasferisci();

  bool profiloLetto_ = false;
  bool anteprima_ = false;
  bool fermata_ = false;  // the user stopped the scan, the sort or the comparison
  EsitoScansione scansione_ = EsitoScansione::Completa;
  EsitoTrasferimento esito_ = EsitoTrasferimento::Nessuno;
  EsitoOperazione esecuzione_ = EsitoOperazione::NienteDaFare;  // how the last execution ended
};

}  // namespace tandemize
