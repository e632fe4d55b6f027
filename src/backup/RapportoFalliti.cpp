#include "backup/RapportoFalliti.h"

#include <algorithm>

#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

// A reason of several lines is one of the list's.
std::string InUnaRiga(std::string testo) {
  const auto fineRiga = [](char carattere) { return carattere == '\r' || carattere == '\n'; };
  std::ranges::replace_if(testo, fineRiga, ' ');
  return testo;
}

}  // namespace

std::string RapportoFalliti(const std::vector<FileFallito>& falliti, std::size_t numero) {
  std::string testo = (numero == 1 ? InLingua("Un file non è stato copiato:", "One file was not copied:")
                                   : std::to_string(numero) + InLingua(" file non sono stati copiati:",
                                                                       " files were not copied:")) +
                      "\r\r";
  for (const FileFallito& file : falliti) {
    testo.append(InUnaRiga(file.percorso)).append("\r");
    if (!file.motivo.empty()) testo.append("    ").append(InUnaRiga(file.motivo)).append("\r");
  }
  if (numero > falliti.size())
    testo.append("\r").append(InLingua("Gli altri sono nel log.", "The log names the others.")).append("\r");
  return testo;
}

}  // namespace tandemize
