#include "shell/Formati.h"

#include <cmath>
#include <cstdint>

#include "shell/Impostazioni.h"

namespace tandemize {

std::string FormattaMigliaia(double numero) {
  std::string cifre = std::to_string(static_cast<std::int64_t>(std::nearbyint(numero)));
  const std::size_t inizio = numero < 0 ? 1 : 0;
  for (std::size_t i = cifre.size(); i > inizio + 3;) {
    i -= 3;
    cifre.insert(i, 1, Language == 0 ? '.' : ',');
  }
  return cifre;
}

}  // namespace tandemize
