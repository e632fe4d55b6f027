// The stack of the windows that run something.
#include <algorithm>
#include <utility>
#include <vector>

#include "errors/ModuloGestioneErrori.h"

namespace tandemize {

namespace {

std::vector<FinestraOperazione*>& FinestreCaricate() {
  static std::vector<FinestraOperazione*> finestre;
  return finestre;
}

}  // namespace

FinestraOperazione::FinestraOperazione(std::string nome) : nome_(std::move(nome)) {
  FinestreCaricate().push_back(this);
}

FinestraOperazione::~FinestraOperazione() {
  std::erase(FinestreCaricate(), this);
}

void FinestraOperazione::Annulla(bool confermato) {
  if (ProcessoAnnullato || (chiede_ && !confermato)) return;
  std::int16_t rimane = 0;
  bool inCorso = true, modifiche = false;
  const bool chiedeva = std::exchange(chiede_, true);
  ChiediChiusuraForm(rimane, this, inCorso, false, modifiche, "", confermato);
  // The question lets events run, in which the window may go.
  if (std::ranges::count(FinestreCaricate(), this) != 0) chiede_ = chiedeva;
}

std::string FormAttivo() {
  return FinestreCaricate().empty() ? "FrmStart" : FinestreCaricate().back()->Nome();
}

bool FormCaricato(std::string_view nome) {
  return std::ranges::any_of(FinestreCaricate(),
                             [nome](const FinestraOperazione* finestra) { return finestra->Nome() == nome; });
}

bool OperazioneAnnullata() {
  return std::ranges::any_of(FinestreCaricate(),
                             [](const FinestraOperazione* finestra) { return finestra->ProcessoAnnullato; });
}

bool AnnullaFinestra(std::string_view nome) {
  const auto& finestre = FinestreCaricate();
  const auto trovata =
      std::ranges::find_if(finestre.rbegin(), finestre.rend(),
                           [nome](const FinestraOperazione* finestra) { return finestra->Nome() == nome; });
  if (trovata == finestre.rend()) return false;
  // The question lets events run, in which the window may go.
  (*trovata)->Annulla(false);
  return OperazioneAnnullata();
}

bool AnnullaOperazioneInCorso() {
  const std::vector<FinestraOperazione*> finestre = FinestreCaricate();
  return std::any_of(finestre.rbegin(), finestre.rend(), [](FinestraOperazione* finestra) {
    if (!finestra->InEsecuzione()) return false;
    finestra->Annulla(true);
    return finestra->ProcessoAnnullato;
  });
}

}  // namespace tandemize
