// The settings of a synchronisation, without their window: which paths are kept in step, and how.
//
// The controls are edited by the calls below; nothing of it reaches the profile until CmdOK, which writes all
// in one step after every path has passed its check. A failure leaves what was stored before. Every box has
// the information icon; questions are asked with Yes and No. The calls that check paths may connect to an FTP
// server and then let events run: while one of them is under way the others do nothing.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "errors/ModuloGestioneErrori.h"
#include "profile/ModuloProfilo.h"
#include "storage/Unita.h"
#include "synchronisation/ControlliTandemizeConfig.h"

namespace tandemize {

// What the window has to do after a browse button.
enum class EsitoSfoglia { Fatto, FuocoSuComboFtp };

class FrmTandemizeConfig : public FinestraOperazione, public ControlliTandemizeConfig {
 public:
  // Rows that can be added: the numbers of the profile's lines are read back up to 99.
  static constexpr std::size_t RigheMassime = 50;

  FrmTandemizeConfig();

  // What only a window can do; without one, nothing happens and nothing is chosen. The folder dialog gets the
  // text of the field and gives an empty text if the user gave up, as does the browser of the FTP server that
  // the session is open to. The last one opens the global settings at their FTP tab and returns when they are
  // closed.
  std::function<std::string(const std::string&percorso)> ScegliCartella, SfogliaServer;
  std::function<void()> ApriImpostazioniFtp;

  // Loads the window: reads the profile, fills the controls and captions, shows the suggestion. False if the
  // profile could not be read to its end, which the log tells; the controls then show what was read.
  [[nodiscard]] bool Carica();

  // --- steps of loading

  // The controls from the profile's variables, without any question. A pair without a first path is no row.
  // An option whose stored number no button has leaves its group without a choice, and is stored again as it
  // is.
  void CaricaImpostazioni();
  void TraduciTutto();

  // --- options

  void ScegliModalità(int membro);          // a click on Optmode
  void SpuntaSourceNotChange(bool accesa);  // a click on ChkSourceNotChange
  void SpuntaDeleteFile(bool accesa);       // a click on ChkDeleteFile: asks before it is on
  void SpuntaAbilitàFtp(bool accesa);       // a click on ChkAbilitàFtp: stays off without any server
  void SpuntaFtp(int indice, bool accesa);  // a click on ChkFtp
  void AggiornaComboFtp(int indice);        // the combo's list from the table of servers, nothing chosen

  // --- the entry fields and the list

  void ScriviPercorso(int indice, std::string_view testo);  // after each change of a TxtPath
  void AggiornaPulsanti();
  // The buttons `cmd`. A path that is chosen replaces the field's text; a failed connect has been reported.
  EsitoSfoglia Sfoglia(int indice);
  // The buttons `cmdList`: adds a row from the fields, removes the selected row, writes the fields into it.
  void cmdList(int membro);
  // A click on a row: it goes to the fields. -1, for a click beside the rows, drops a selection and empties
  // the fields, so that a row can be added again; without a selection nothing happens.
  void SelezionaRiga(int riga);
  void PulisciCampi();

  // True if the two paths of the fields can be used; what cannot was told.
  [[nodiscard]] bool ControllaPercorsi() const;

  // --- saving and closing

  // Checks all rows and stores the settings in the profile's variables and its file. False, with nothing
  // stored, after any refusal; each but one is told in a box: a path that passed its check and fails the
  // second one, or is empty, ends it silently.
  [[nodiscard]] bool Salvataggio();
  // True if the rows are those that are stored, to the letter, or if there is none. The options do not count.
  [[nodiscard]] bool ControllaSalvataggio() const;

  // True when all was saved: the window then closes. A row that is still in the fields is added first.
  [[nodiscard]] bool CmdOK();
  // Closes an open FTP session. The window then closes as by any other way, by QueryUnload.
  void CmdCancel();
  // True if the window may close. Asks about rows that were not saved, and stops what is under way.
  [[nodiscard]] bool QueryUnload();

 private:
  class Occupata;

  [[nodiscard]] static std::vector<RigaPercorso> RigaDaControllare(const std::string& percorso,
                                                                   const std::string& server);
  void ApplicaAbilitàFtp();
  void ApplicaSourceNotChange();
  void SpegniComboFtp(std::size_t i);
  void AggiungiRiga();
  void RimuoviRiga();
  void ModificaRiga();
  [[nodiscard]] RigaCoppia RigaDaiCampi() const;
  [[nodiscard]] bool RigaScelta() const;
  void FineModifica();
  void DimenticaRiga();
  [[nodiscard]] bool ConnettiServer(const std::string& descrizione);

  [[nodiscard]] bool VerificaElenco(ValoriSincronizzazione& valori, bool& ripetuti);
  [[nodiscard]] static bool VerificaDiNuovo(const ValoriSincronizzazione& valori);
  void LeggiOpzioni(ValoriSincronizzazione& valori) const;
  [[nodiscard]] static bool Memorizza(ValoriSincronizzazione& valori);

  bool occupata_ = false;
  bool chiusaConOk_ = false;
};

}  // namespace tandemize
