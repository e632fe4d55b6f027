#include "backup/FrmFileTransfer.h"
#include "errors/ModuloLog.h"

namespace tandemize {

namespace {

// What is left of an attribute value; the table of exact values is the rule, a value that it lacks stays as
// it is.
std::uint32_t SenzaProtezione(std::uint32_t attributi) {
  switch (attributi) {
    case 1:
    case 5:
    case 7:
    case 33:
      return attributi - platform::kReadOnly;
    case 2:
    case 34:
      return attributi - platform::kHidden;
    case 3:
    case 35:
    case 38:
      return 0;
    default:
      return attributi;
  }
}

}  // namespace

void RimuoviAttrPerLaCopia(std::string_view percorso, std::uint8_t& precedenti) {
  platform::FileStatus stato;
  platform::ErrorCode errore = platform::query(percorso, stato);
  const std::uint32_t nuovi = SenzaProtezione(stato.attributes);
  if (errore == platform::kNoError && nuovi != stato.attributes) {
    precedenti = static_cast<std::uint8_t>(stato.attributes);
    errore = platform::setAttributes(percorso, nuovi);
  }
  if (errore == platform::kNoError) return;
  const std::int32_t numero = ErroreRuntimeDaSistema(errore);
  ScriviLog("Errore nella routine 'RimuoviAttrPerLaCopia' riga 0 errore numero " + std::to_string(numero) +
                " (" + TestoErroreRuntime(numero) + ")",
            RigaNormale);
}

}  // namespace tandemize
