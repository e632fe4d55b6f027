#include "shell/windows/TastiDiScelta.h"

#include <QSet>

#include "presentation/windows/Testo.h"

namespace tandemize {

namespace {

// Where the key's letter stands; -1 if every letter is taken.
qsizetype PosizioneTasto(const QString& testo, const QSet<QChar>& presi) {
  const auto libero = [&](qsizetype i) { return testo[i].isLetter() && !presi.contains(testo[i].toUpper()); };
  for (qsizetype i = 0; i < testo.size(); ++i)
    if ((i == 0 || testo[i - 1] == u' ') && libero(i)) return i;
  for (qsizetype i = 0; i < testo.size(); ++i)
    if (libero(i)) return i;
  return -1;
}

}  // namespace

QStringList ConTastiDiScelta(const std::vector<std::string>& didascalie) {
  QSet<QChar> presi;
  QStringList risultato;
  for (const std::string& didascalia : didascalie) {
    const QString testo = Testo(didascalia);
    const qsizetype tasto = PosizioneTasto(testo, presi);
    if (tasto < 0) {
      risultato.append(Didascalia(didascalia));
      continue;
    }
    presi.insert(testo[tasto].toUpper());
    risultato.append(Didascalia(testo.left(tasto).toStdString()) + u'&' +
                     Didascalia(testo.mid(tasto).toStdString()));
  }
  return risultato;
}

}  // namespace tandemize
