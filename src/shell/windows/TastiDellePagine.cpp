#include "shell/windows/TastiDellePagine.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPushButton>
#include <functional>

#include "presentation/windows/Testo.h"
#include "shell/windows/TastiDiScelta.h"

namespace tandemize {

namespace {

// Without the mark of a key that it has already.
std::string SenzaTasto(const QString& didascalia) {
  QString testo;
  for (qsizetype i = 0; i < didascalia.size(); ++i) {
    if (didascalia[i] == u'&' && i + 1 < didascalia.size()) ++i;
    testo += didascalia[i];
  }
  return Testo(testo);
}

struct Didascalie {
  std::vector<std::string> testi;
  std::vector<std::function<void(const QString&)>> imposta;

  template <class Controllo>
  void Aggiungi(Controllo* controllo) {
    testi.push_back(SenzaTasto(controllo->text()));
    imposta.emplace_back([controllo](const QString& testo) { controllo->setText(testo); });
  }
};

// Fields and buttons first, where letters run short: options can be reached by the arrow keys too.
void AggiungiPagina(Didascalie& didascalie, const QWidget& pagina) {
  const auto etichette = pagina.findChildren<QLabel*>();
  for (QLabel* etichetta : etichette)
    if (etichetta->buddy() != nullptr) didascalie.Aggiungi(etichetta);
  const auto bottoni = pagina.findChildren<QAbstractButton*>();
  for (const bool opzioni : {false, true})
    for (QAbstractButton* bottone : bottoni)
      if (!bottone->text().isEmpty() && opzioni == (qobject_cast<QPushButton*>(bottone) == nullptr))
        didascalie.Aggiungi(bottone);
}

}  // namespace

void DaiTastiDiScelta(const std::vector<QAbstractButton*>& intestazioni,
                      const std::vector<QWidget*>& pagine) {
  Didascalie comuni;
  for (QAbstractButton* intestazione : intestazioni) comuni.Aggiungi(intestazione);
  for (const QWidget* pagina : pagine) {
    Didascalie tutte = comuni;
    AggiungiPagina(tutte, *pagina);
    // The headers come first, so that theirs are the same for each page.
    const QStringList conTasti = ConTastiDiScelta(tutte.testi);
    for (std::size_t i = 0; i < tutte.imposta.size(); ++i)
      tutte.imposta[i](conTasti[static_cast<qsizetype>(i)]);
  }
}

}  // namespace tandemize
