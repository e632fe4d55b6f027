// Quick information: a small balloon on a control.
#pragma once

#include <QColor>
#include <string_view>

class QWidget;

namespace tandemize {

struct OpzioniToolTip {
  bool forza = false;    // also when the settings want no quick information
  int icona = 1;         // 0 none, 1 information, 2 warning
  int ritardo = 500;     // milliseconds that the mouse rests before it shows
  int secondi = 10;      // how long it shows; 0: until the mouse leaves the control
  int larghezza = 300;   // pixels at most
  QColor sfondo, testo;  // an invalid colour: the scheme's own
};

// Gives a control its quick information: shown while the mouse rests on it, and by Shift+F1 while the control
// has the focus; told to assistive programs too. A second call replaces the first one's. Does nothing when
// the settings want none (Help_ToolTip 0) and `forza` is not set. Without a title: "Informazioni Rapide".
void MostraToolTip(QWidget& Controllo, std::string_view Testo, std::string_view Titolo = {},
                   const OpzioniToolTip& opzioni = {});

}  // namespace tandemize
