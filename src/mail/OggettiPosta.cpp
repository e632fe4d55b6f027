#include "mail/OggettiPosta.h"

#include <algorithm>

namespace tandemize {

namespace {

constexpr long long MassimoBarra = 100;

OggettiPosta* oggettiInUso = nullptr;

}  // namespace

void UsaOggettiPosta(OggettiPosta* oggetti) {
  oggettiInUso = oggetti;
}

void ScriviStato(std::string_view testo) {
  if (oggettiInUso != nullptr) oggettiInUso->lblStatus(testo);
}

void ScriviRisposte(std::string_view testo) {
  if (oggettiInUso != nullptr) oggettiInUso->TxtLog(testo);
}

void ScriviAvanzamento(long long valore) {
  if (oggettiInUso != nullptr) oggettiInUso->ProgBar(static_cast<int>(std::clamp(valore, 0LL, MassimoBarra)));
}

}  // namespace tandemize
