// What others change in the settings file while the window is open: a timed run moves its date on, and a help
// message that is switched off notes that. A control that the user has not touched since then takes it over.
#include <algorithm>

#include "platform/newfile.h"
#include "shell/ChiaviGlobalSetting.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/LetturaGlobale.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

// What a control says to the file; whether it is enabled and what else it offers is no part of that.
std::string& Valore(CasellaTesto& casella) {
  return casella.Text;
}
std::string& Valore(CasellaCombo& combo) {
  return combo.Text;
}
std::uint8_t& Valore(CasellaSpunta& spunta) {
  return spunta.Value;
}
std::optional<int>& Valore(GruppoOpzioni& gruppo) {
  return gruppo.Attiva;
}

}  // namespace

void FrmGlobalSetting::AdottaDalFile() {
  FrmGlobalSetting attuale;
  LetturaGlobale lettura{PercorsoApplicazione + std::string(NomeFileGlobale), false, false};
  // The servers being edited are in the variable itself.
  std::vector<ServerFtp> modificati = FtpServers;
  const bool letto = attuale.LeggiFile(lettura);
  FtpServers = std::move(modificati);
  if (!letto) return;
  for (const ChiaveGlobale& chiave : ChiaviGlobali())
    std::visit(
        [&](auto controllo) {
          if constexpr (!std::is_same_v<decltype(controllo), std::monostate>) {
            auto& mostrato = Valore(this->*controllo);
            if (mostrato == Valore(letti_.*controllo)) mostrato = Valore(attuale.*controllo);
          }
        },
        chiave.Controllo);
  AdottaTimer(attuale.ListTimer);
  letti_ = attuale;
}

// Row by row, as those that the user has added or changed stay.
void FrmGlobalSetting::AdottaTimer(const std::vector<RigaTimer>& nelFile) {
  const std::vector<RigaTimer>& prima = letti_.ListTimer;
  if (nelFile.size() != prima.size()) return;
  std::vector<bool> usate(prima.size(), false);
  for (RigaTimer& riga : ListTimer)
    for (std::size_t i = 0; i < prima.size(); ++i) {
      if (usate[i] || riga != prima[i]) continue;
      usate[i] = true;
      riga = nelFile[i];
      break;
    }
}

}  // namespace tandemize
