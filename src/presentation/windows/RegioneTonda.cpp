#include "presentation/windows/RegioneTonda.h"

#include <algorithm>
#include <cmath>

namespace tandemize {

QRegion RegioneTonda(const QRect& rettangolo, double raggio) {
  QRegion regione;
  for (int y = 0; y < rettangolo.height(); ++y) {
    // How far the row's middle lies beyond the centres of the corners' circles.
    const double fuori = std::max({raggio - (y + 0.5), y + 0.5 - (rettangolo.height() - raggio), 0.0});
    const double rientro = raggio - std::sqrt(std::max(0.0, raggio * raggio - fuori * fuori));
    const int da = static_cast<int>(std::ceil(rientro - 0.5));
    regione += QRect(rettangolo.left() + da, rettangolo.top() + y, rettangolo.width() - 2 * da, 1);
  }
  return regione;
}

}  // namespace tandemize
