// A help card: a title and a text, and a box that keeps such cards coming or turns them off for good.
//
// This is the card's model and its rules; a window shows it, modally.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize {

class FrmTipMessage {
 public:
  // Shows the model modally and comes back when it is closed, with `Chk` as the user left it.
  using Finestra = std::function<void(FrmTipMessage&)>;

  // Shows a card, if `Help_TipMessage` is 1; otherwise nothing happens. When it is closed, `Chiudi` runs.
  static void Init(std::string_view titolo, std::string_view testo, const Finestra& mostra);

  // Fills the texts from the language table.
  FrmTipMessage(std::string_view titolo, std::string_view testo);

  std::string Caption;            // of the window
  std::string LblTitolo, LblTip;  // the title, with " ..." behind it, and the text
  std::string ChkCaption;
  bool Chk = true;  // keep showing help messages
  std::string CmdCloseCaption;

  // The card was closed, by whatever way. Without `Chk`, `Help_TipMessage` becomes 0, here and in the
  // settings file, and a box says so. A file that cannot be read or written gets a box of its own instead;
  // the old file then stands and the cards come back with the next start.
  void Chiudi() const;
};

// Replaces each line of the text that begins with "Help_TipMessage" by "Help_TipMessage = 0". Every other
// byte stays, line ends and a byte order mark among them.
void SpegniTipMessage(std::string& testo);

}  // namespace tandemize
