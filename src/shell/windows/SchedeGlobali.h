// The nine tabs of the settings window, one function each; the caller takes the page.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

class QBoxLayout;
class QLabel;
class QRadioButton;
class QVBoxLayout;
class QWidget;

namespace tandemize {

class LegameGlobale;
class Riquadro;
class UscitaCampi;

[[nodiscard]] QWidget* SchedaAvvio(LegameGlobale& legame);
[[nodiscard]] QWidget* SchedaLog(LegameGlobale& legame);
[[nodiscard]] QWidget* SchedaErrori(LegameGlobale& legame);
[[nodiscard]] QWidget* SchedaPosta(LegameGlobale& legame, const std::function<void()>& prova);
[[nodiscard]] QWidget* SchedaFtp(LegameGlobale& legame, UscitaCampi& uscita,
                                 const std::function<void()>& prova);
[[nodiscard]] QWidget* SchedaTimer(LegameGlobale& legame, UscitaCampi& uscita);
[[nodiscard]] QWidget* SchedaAvanzate(LegameGlobale& legame);
[[nodiscard]] QWidget* SchedaLingua(LegameGlobale& legame);
[[nodiscard]] QWidget* SchedaAiuto(LegameGlobale& legame);

// --- what the pages are made of

// An empty page, and the column of its frames.
struct PaginaGlobale {
  PaginaGlobale();
  QWidget* pagina;
  QVBoxLayout* colonna;
};
// A frame at the end of a layout.
Riquadro* AggiungiRiquadro(QBoxLayout& dove, int indice, std::string_view titolo);
void AggiungiOpzioni(Riquadro& riquadro, const std::vector<QRadioButton*>& opzioni);
// An option or a check box at the end of a frame.
void AggiungiASinistra(Riquadro& riquadro, QWidget* controllo);
// A remark in lines of their own.
[[nodiscard]] QLabel* Nota(std::string_view testo);
// A row of fields at its left end.
[[nodiscard]] QBoxLayout* RigaDi(const std::vector<QWidget*>& controlli);
// As wide as that many digits.
void LarghezzaInCifre(QWidget& campo, int cifre);

}  // namespace tandemize
