#include "shell/windows/TraduzioneToolkit.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include "shell/Impostazioni.h"

namespace tandemize {

void TraduciToolkit() {
  auto* traduttore = qApp->findChild<QTranslator*>();
  if ((traduttore != nullptr) == (Language == 0)) return;
  if (traduttore != nullptr) {
    delete traduttore;
    return;
  }
  traduttore = new QTranslator(qApp);
  if (!traduttore->load(QStringLiteral("qtbase_it"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)) ||
      !QCoreApplication::installTranslator(traduttore))
    delete traduttore;
}

}  // namespace tandemize
