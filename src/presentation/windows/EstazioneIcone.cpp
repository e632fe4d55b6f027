#include "presentation/windows/EstazioneIcone.h"

#include <QApplication>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHash>
#include <QMimeDatabase>
#include <QStyle>

#include "platform/paths.h"
#include "presentation/windows/Testo.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr const char* ChiaveSenzaNome = "&&_._&&/ \\";

int chieste = 0;

QHash<QString, QIcon>& Elenco() {
  static QHash<QString, QIcon> elenco;
  return elenco;
}

std::string_view NomeDi(std::string_view percorso) {
  return percorso.substr(percorso.find_last_of("\\/") + 1);
}

QString EstensioneMaiuscola(std::string_view percorso) {
  const std::string_view nome = NomeDi(percorso);
  const std::size_t punto = nome.find_last_of('.');
  return punto == std::string_view::npos ? QString() : Testo(Maiuscolo(nome.substr(punto)));
}

bool HaIconaPropria(const QString& estensione) {
  return estensione == QLatin1String(".ICO") || estensione == QLatin1String(".EXE");
}

QIcon IconaDelTipo(std::string_view percorso) {
  const QMimeType tipo =
      QMimeDatabase().mimeTypeForFile(Testo(NomeDi(percorso)), QMimeDatabase::MatchExtension);
  return QIcon::fromTheme(tipo.iconName(), QIcon::fromTheme(tipo.genericIconName()));
}

QIcon ChiediIcona(std::string_view percorso) {
  ++chieste;
  QIcon icona = HaIconaPropria(EstensioneMaiuscola(percorso)) ? QIcon(Testo(platform::toHost(percorso)))
                                                              : IconaDelTipo(percorso);
  if (icona.isNull() || icona.availableSizes().isEmpty())
    icona = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
  return icona;
}

}  // namespace

QString ChiaveIcona(std::string_view Percorso) {
  if (NomeDi(Percorso).empty()) return QLatin1String(ChiaveSenzaNome);
  const QString estensione = EstensioneMaiuscola(Percorso);
  return HaIconaPropria(estensione) ? Testo(Percorso) : estensione;
}

QPixmap IconaFile(std::string_view Percorso, int Dimensione) {
  const QSize misura(Dimensione, Dimensione);
  // Of these each has its own, which may have changed.
  if (HaIconaPropria(EstensioneMaiuscola(Percorso)))
    return ChiediIcona(Percorso).pixmap(misura, qApp->devicePixelRatio());
  const QString chiave = ChiaveIcona(Percorso);
  auto trovata = Elenco().find(chiave);
  if (trovata == Elenco().end()) trovata = Elenco().insert(chiave, ChiediIcona(Percorso));
  return trovata->pixmap(misura, qApp->devicePixelRatio());
}

int IconeChieste() {
  return chieste;
}

}  // namespace tandemize
