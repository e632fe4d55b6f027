#include "errors/windows/ListaRighe.h"

#include <QClipboard>
#include <QEvent>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

#include "presentation/windows/ModuloGrafica.h"

namespace tandemize {

namespace {

constexpr int MargineDestro = 200 / PixelPerTwip;
constexpr int SpazioVerticale = 500 / PixelPerTwip;
constexpr int SpazioRiga = 4;

// All lines have one size, that of the widest: so the list need not ask each of them.
class RigheUguali : public QStyledItemDelegate {
 public:
  RigheUguali(QObject* parent, std::function<QSize()> dimensione)
      : QStyledItemDelegate(parent), dimensione_(std::move(dimensione)) {}
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return dimensione_();
  }

 private:
  std::function<QSize()> dimensione_;
};

}  // namespace

ListaRighe::ListaRighe(QWidget* parent) : QListWidget(parent) {
  setObjectName(QStringLiteral("ListLog"));
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setUniformItemSizes(true);
  setTextElideMode(Qt::ElideNone);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setItemDelegate(new RigheUguali(this, [this] {
    return QSize(static_cast<int>(std::ceil(massima_)) + 4 * SpazioRiga, fontMetrics().height() + SpazioRiga);
  }));
}

void ListaRighe::ImpostaAspetto() {
  setFont(QFont(QStringLiteral("Arial"), DimensioneCarattere));
  QPalette tavolozza = palette();
  tavolozza.setColor(QPalette::Base, ColoreBianco);
  tavolozza.setColor(QPalette::Text, ColoreBase);
  setPalette(tavolozza);
}

void ListaRighe::Riempi(const QStringList& righe) {
  int uguali = 0;
  const auto comuni = static_cast<int>(std::min<qsizetype>(count(), righe.size()));
  while (uguali < comuni && item(uguali)->text() == righe[uguali]) ++uguali;
  if (uguali == count() && uguali == righe.size()) return;
  if (uguali == 0) {
    clear();
    massima_ = 0;
  } else {
    model()->removeRows(uguali, count() - uguali);
  }
  const QStringList nuove = righe.mid(uguali);
  for (const QString& riga : nuove) massima_ = std::max(massima_, Larghezza(riga));
  addItems(nuove);
  doItemsLayout();
}

void ListaRighe::CopiaSelezione() const {
  QModelIndexList scelte = selectionModel()->selectedRows();
  if (scelte.isEmpty()) return QGuiApplication::clipboard()->clear();
  std::ranges::sort(scelte, {}, [](const QModelIndex& riga) { return riga.row(); });
  QString testo;
  for (const QModelIndex& riga : std::as_const(scelte)) testo += riga.data().toString() + u'\r';
  auto* dati = new QMimeData;
  dati->setData(QStringLiteral("text/rtf"), testo.toUtf8());
  dati->setText(testo);
  QGuiApplication::clipboard()->setMimeData(dati);
}

void ListaRighe::changeEvent(QEvent* evento) {
  QListWidget::changeEvent(evento);
  if (evento->type() == QEvent::FontChange) Misura();
}

QItemSelectionModel::SelectionFlags ListaRighe::selectionCommand(const QModelIndex& riga,
                                                                 const QEvent* evento) const {
  const bool delMouse = evento != nullptr && (evento->type() == QEvent::MouseButtonPress ||
                                              evento->type() == QEvent::MouseButtonRelease);
  if (delMouse && static_cast<const QMouseEvent*>(evento)->button() == Qt::RightButton)
    return QItemSelectionModel::NoUpdate;
  return QListWidget::selectionCommand(riga, evento);
}

// The sum of the characters' widths is near enough, and costs a small part of what setting the line would.
double ListaRighe::Larghezza(const QString& riga) {
  const QFontMetricsF misure(font());
  double larghezza = 0;
  for (const QChar carattere : riga) {
    if (carattere.unicode() >= larghezze_.size()) {
      larghezza += misure.horizontalAdvance(carattere);
      continue;
    }
    double& nota = larghezze_[carattere.unicode()];
    if (nota == 0) nota = misure.horizontalAdvance(carattere);
    larghezza += nota;
  }
  return larghezza;
}

void ListaRighe::Misura() {
  larghezze_.fill(0);
  massima_ = 0;
  for (int i = 0; i < count(); ++i) massima_ = std::max(massima_, Larghezza(item(i)->text()));
  scheduleDelayedItemsLayout();
}

void MettiLista(QWidget& finestra, ListaRighe& lista) {
  auto* esterno = new QVBoxLayout(&finestra);
  esterno->setContentsMargins(MargineDestro, MargineDestro, MargineDestro, SpazioVerticale - MargineDestro);
  esterno->addWidget(&lista);
}

}  // namespace tandemize
