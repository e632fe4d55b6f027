// The words of the toolkit's own, such as those of its file dialogs and of the menus of its text fields.
#pragma once

namespace tandemize {

// Puts them into the language of the settings, where the host has the toolkit's translation; else they stay
// English.
void TraduciToolkit();

}  // namespace tandemize
