// Access keys of menus.
#pragma once

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

namespace tandemize {

// The captions, each with an access key of its own as far as there are letters: the first letter of a word
// before any other. An "&" of a caption stands for itself.
[[nodiscard]] QStringList ConTastiDiScelta(const std::vector<std::string>& didascalie);

}  // namespace tandemize
