#include "storage/Guardia.h"

#include "errors/ModuloGestioneErrori.h"

namespace tandemize {

bool ConRiprova(const std::function<platform::ErrorCode()>& chiamata, std::string_view routine,
                const std::string& dettaglio) {
  std::uint8_t attempts = 0;
  for (;;) {
    platform::ErrorCode error = chiamata();
    if (error == platform::kNoError) break;
    if (!ErroreRipetibileApi(attempts, error, routine, dettaglio)) return false;
  }
  if (attempts > 0) NotificaRipristino(FormAttivo());
  return true;
}

std::string DettaglioPercorso(std::string_view etichetta, std::string_view path) {
  return std::string(etichetta) + "< " + std::string(path) + " >";
}

}  // namespace tandemize
