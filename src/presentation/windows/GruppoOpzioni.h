// A group of option buttons and the keyboard.
#pragma once

#include <vector>

class QRadioButton;

namespace tandemize {

// The Tab key goes to the chosen option of the group, whichever that is; the arrow keys choose another one.
void PreparaOpzioni(const std::vector<QRadioButton*>& opzioni);

}  // namespace tandemize
