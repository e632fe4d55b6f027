// Access keys of a window with pages.
#pragma once

#include <vector>

class QAbstractButton;
class QWidget;

namespace tandemize {

// Gives the headers, and whatever else shows beside each page, an access key each, and what each page holds,
// options, check boxes, buttons and labels with a buddy, keys other than those of the headers, as far as
// there are letters. Two pages may share a key: only one of them shows.
void DaiTastiDiScelta(const std::vector<QAbstractButton*>& intestazioni, const std::vector<QWidget*>& pagine);

}  // namespace tandemize
