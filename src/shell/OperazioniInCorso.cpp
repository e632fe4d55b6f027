#include "shell/OperazioniInCorso.h"

#include <array>
#include <string_view>

#include "errors/ModuloGestioneErrori.h"

namespace tandemize {

namespace {

// In the order in which one is loaded above the other.
constexpr std::array<std::string_view, 4> FormDiOperazioni{"FrmFileTransfer", "FrmScan", "FrmProgressBar",
                                                           "FrmTandemize"};
constexpr std::string_view DialogoDiBackup = "FrmBackupChoice";

}  // namespace

std::string OperazioneDaFermare(bool runDelDialogo) {
  for (const std::string_view nome : FormDiOperazioni)
    if (FormCaricato(nome)) return std::string(nome);
  // What comes before the first of the others, such as the connection to a server.
  return runDelDialogo && FormCaricato(DialogoDiBackup) ? std::string(DialogoDiBackup) : std::string();
}

bool FermaOperazione(bool runDelDialogo) {
  const std::string nome = OperazioneDaFermare(runDelDialogo);
  // It may have ended by itself while the question was up.
  return nome.empty() || AnnullaFinestra(nome) || !FormCaricato(nome);
}

void FermaTutto(bool runDelDialogo) {
  if (!OperazioneDaFermare(runDelDialogo).empty() && !OperazioneAnnullata()) AnnullaOperazioneInCorso();
  AnnullamentoRichiesto = true;
}

}  // namespace tandemize
