// Saving the settings of a synchronisation: every path is checked before anything is stored.
#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/machine.h"
#include "presentation/Avvisi.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "synchronisation/OccupataTandemizeConfig.h"

namespace tandemize {

namespace {

constexpr std::int16_t SezioneSincronizzazione = -1;
constexpr std::uint8_t ConRapporto = 0, SenzaRapporto = 32, ModoBox = 0;
constexpr int MessaggioNessunPercorso = 383, MessaggioPercorsoErrato = 384;
constexpr int IconaSalvato = 0;
constexpr std::string_view PercorsiRipetuti = "Alcuni persorsi inseriti sono ripetuti.Salvataggio annullato.";

std::string Elemento(const std::vector<std::string>& elenco, std::size_t i) {
  return i < elenco.size() ? elenco[i] : std::string();
}

RigaCoppia CoppiaDelProfilo(std::size_t i) {
  return {{Elemento(Backup_Path, i), Elemento(Backup_Path, i + 1)},
          {Elemento(Backup_FTP, i), Elemento(Backup_FTP, i + 1)}};
}

// Whether one of the first `controllati` paths stands a second time anywhere in the list, in any case of
// letters.
bool Ripetuti(const std::vector<std::string>& percorsi, std::size_t controllati) {
  std::unordered_set<std::string> visti;
  for (std::size_t i = 0; i < percorsi.size(); ++i) {
    if (percorsi[i].empty()) continue;
    const std::string maiuscolo = Maiuscolo(percorsi[i]);
    if (i < controllati ? !visti.insert(maiuscolo).second : visti.contains(maiuscolo)) return true;
  }
  return false;
}

std::uint8_t InUnByte(std::int32_t valore) {
  return static_cast<std::uint8_t>(std::clamp(valore, 0, UINT8_MAX));
}

void AggiornaVariabili(ValoriSincronizzazione& valori) {
  valori.percorsi.pop_back();
  valori.serverFtp.pop_back();
  PathCount = static_cast<std::int32_t>(valori.percorsi.size());
  Backup_Path = std::move(valori.percorsi);
  Backup_FTP = std::move(valori.serverFtp);
  FixFileOption = valori.FixFileOption;
  FixScanAfterFix = valori.FixScanAfterFix;
  SourceNotChange = valori.SourceNotChange;
  EraseFile = valori.EraseFile;
  AutoTandemize = valori.AutoTandemize;
  FtpEnabled = valori.FtpEnabled;
  CompareMethod = valori.CompareMethod;
  TandemMode = valori.TandemMode;
}

}  // namespace

std::vector<RigaPercorso> FrmTandemizeConfig::RigaDaControllare(const std::string& percorso,
                                                                const std::string& server) {
  return {{percorso, std::to_string(IndiceServerDaDescrizione(server))}};
}

bool FrmTandemizeConfig::ControllaPercorsi() const {
  std::vector<RigaPercorso> tabella;
  for (std::size_t i = 0; i < TxtPath.size(); ++i)
    tabella.push_back(RigaDaControllare(TxtPath[i].Text, ComboFtp[i].Text).front());
  return VerificaPercorsi(tabella, ConRapporto, ModoBox) == 0;
}

bool FrmTandemizeConfig::Salvataggio() {
  if (ListPath.empty()) {
    MsgBox(Messaggio(MessaggioNessunPercorso), StileInformazione);
    return false;
  }
  ValoriSincronizzazione valori;
  valori.percorsi.clear();
  valori.serverFtp.clear();
  for (const RigaCoppia& riga : ListPath) {
    valori.percorsi.insert(valori.percorsi.end(), riga.Percorsi.begin(), riga.Percorsi.end());
    valori.serverFtp.insert(valori.serverFtp.end(), riga.ServerFtp.begin(), riga.ServerFtp.end());
  }
  bool ripetuti = false;
  if (!VerificaElenco(valori, ripetuti)) {
    MsgBox(Messaggio(MessaggioPercorsoErrato), StileInformazione);
    return false;
  }
  if (ripetuti) {
    MsgBox(PercorsiRipetuti, StileInformazione);
    return false;
  }
  if (!VerificaDiNuovo(valori)) return false;
  LeggiOpzioni(valori);
  if (!Memorizza(valori)) return false;
  if (ServerConnesso("")) DisconnettiServer("");
  return true;
}

// Gives every path its separator and checks it, up to the first empty one.
bool FrmTandemizeConfig::VerificaElenco(ValoriSincronizzazione& valori, bool& ripetuti) {
  std::size_t i = 0;
  for (; i < valori.percorsi.size() && !valori.percorsi[i].empty(); ++i) {
    std::string& percorso = valori.percorsi[i];
    const std::string& server = valori.serverFtp[i];
    if (TipoPercorso(percorso) == PercorsoFtp && !server.empty()) {
      ChkAbilitàFtp.Value = 1;
      for (SpuntaAbilitabile& casella : ChkFtp) casella.Enabled = true;
    }
    percorso = ConSeparatore(percorso);
    if (VerificaPercorsi(RigaDaControllare(percorso, server), ConRapporto, ModoBox) != 0) return false;
  }
  ripetuti = Ripetuti(valori.percorsi, i);
  return true;
}

// A drive that is not ready, and only that, may have become so since the first check.
bool FrmTandemizeConfig::VerificaDiNuovo(const ValoriSincronizzazione& valori) {
  for (std::size_t i = 0; i < valori.percorsi.size(); ++i) {
    const std::int32_t esito =
        VerificaPercorsi(RigaDaControllare(valori.percorsi[i], valori.serverFtp[i]), SenzaRapporto, ModoBox);
    if (esito < 0 || esito > 2) return false;
  }
  return true;
}

void FrmTandemizeConfig::LeggiOpzioni(ValoriSincronizzazione& valori) const {
  valori.FixFileOption = InUnByte(Opt.Attiva.value_or(FixFileOption));
  valori.CompareMethod = OptCampareType.Attiva.value_or(CompareMethod);
  valori.TandemMode = Optmode.Attiva.value_or(TandemMode);
  valori.FixScanAfterFix = Chk.Value;
  valori.FtpEnabled = ChkAbilitàFtp.Value;
  valori.EraseFile = ChkSourceNotChange.Value != 0 ? ChkDeleteFile.Value : std::uint8_t{0};
  valori.SourceNotChange = ChkSourceNotChange.Value;
  valori.AutoTandemize = ChkAutoTandem.Value;
}

// The file first: the variables never hold what the profile does not.
bool FrmTandemizeConfig::Memorizza(ValoriSincronizzazione& valori) {
  valori.percorsi.emplace_back();
  valori.serverFtp.emplace_back();
  const platform::ErrorCode errore = ScriviFileProfilo(valori, SezioneSincronizzazione);
  if (errore != platform::kNoError) {
    MsgBox(InLingua("Il profilo non può essere salvato: ", "The profile cannot be saved: ") + FileProfilo +
               " (" + platform::systemErrorText(errore) + ")",
           StileInformazione);
    return false;
  }
  AggiornaVariabili(valori);
  return true;
}

bool FrmTandemizeConfig::ControllaSalvataggio() const {
  if (ListPath.empty()) return true;
  for (std::size_t i = 0; i < static_cast<std::size_t>(PathCount); i += 2)
    if (i / 2 >= ListPath.size() || ListPath[i / 2] != CoppiaDelProfilo(i)) return false;
  // A row that no stored pair stands for is a change too.
  return ListPath.size() * 2 <= static_cast<std::size_t>(PathCount) + 1;
}

bool FrmTandemizeConfig::CmdOK() {
  const Occupata occupata(*this);
  if (!occupata) return false;
  if (cmdListAbilitato[0]) AggiungiRiga();
  chiusaConOk_ = Salvataggio();
  if (chiusaConOk_ && FormCaricato("FrmTandemize"))
    MostraBalloon("FrmTandemize", Messaggio(381), Messaggio(380), IconaSalvato, 0, false, false);
  return chiusaConOk_;
}

void FrmTandemizeConfig::CmdCancel() {
  if (!occupata_ && ServerConnesso("")) DisconnettiServer("");
}

bool FrmTandemizeConfig::QueryUnload() {
  if (occupata_) {
    Annulla(false);
    return false;
  }
  if (chiusaConOk_ || ControllaSalvataggio()) return true;
  std::int16_t rimane = 0;
  bool inCorso = false, modifiche = true;
  ChiediChiusuraForm(rimane, this, inCorso, false, modifiche, "");
  return rimane == 0;
}

}  // namespace tandemize
