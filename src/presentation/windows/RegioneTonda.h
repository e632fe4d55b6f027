// The shape of windows with round corners.
#pragma once

#include <QRect>
#include <QRegion>

namespace tandemize {

// A rectangle with corners of that radius: the pixels whose middle the shape covers. Where the screen does
// not blend windows, what is drawn in them but in part is black for the rest.
[[nodiscard]] QRegion RegioneTonda(const QRect& rettangolo, double raggio);

}  // namespace tandemize
