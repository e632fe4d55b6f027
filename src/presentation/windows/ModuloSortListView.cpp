#include "presentation/windows/ModuloSortListView.h"

#include <QHeaderView>
#include <QTreeWidget>
#include <algorithm>
#include <string>
#include <vector>

#include "presentation/windows/Testo.h"

namespace tandemize {

namespace {

constexpr int RuoloTag = Qt::UserRole, RuoloVerso = Qt::UserRole + 1;

struct Riga {
  std::string cella;
  QTreeWidgetItem* elemento;
  bool scelta;
};

std::vector<Riga> RigheDi(const QTreeWidget& lista, int colonna) {
  std::vector<Riga> righe;
  righe.reserve(static_cast<std::size_t>(lista.topLevelItemCount()));
  for (int i = 0; i < lista.topLevelItemCount(); ++i) {
    QTreeWidgetItem* elemento = lista.topLevelItem(i);
    righe.push_back({Testo(elemento->text(colonna)), elemento, elemento->isSelected()});
  }
  return righe;
}

}  // namespace

void TagColonna(QTreeWidget& ListView, int Colonna, const char* tag) {
  ListView.headerItem()->setData(Colonna, RuoloTag, QLatin1String(tag));
}

void OrdinaLista(QTreeWidget& ListView, int Colonna, TipoColonna Tipo) {
  QTreeWidgetItem* intestazione = ListView.headerItem();
  const Verso verso = VersoSuccessivo(static_cast<Verso>(intestazione->data(Colonna, RuoloVerso).toInt()));
  intestazione->setData(Colonna, RuoloVerso, static_cast<int>(verso));

  std::vector<Riga> righe = RigheDi(ListView, Colonna);
  std::stable_sort(righe.begin(), righe.end(), [Tipo, verso](const Riga& una, const Riga& altra) {
    const int ordine = ConfrontaCelle(Tipo, una.cella, altra.cella);
    return verso == Verso::Su ? ordine < 0 : ordine > 0;
  });
  QTreeWidgetItem* corrente = ListView.currentItem();
  QList<QTreeWidgetItem*> ordinate;
  for (const Riga& riga : righe) ordinate.append(riga.elemento);
  while (ListView.topLevelItemCount() > 0) ListView.takeTopLevelItem(ListView.topLevelItemCount() - 1);
  ListView.addTopLevelItems(ordinate);
  if (corrente != nullptr) ListView.setCurrentItem(corrente);
  for (const Riga& riga : righe) riga.elemento->setSelected(riga.scelta);

  ListView.header()->setSortIndicatorShown(true);
  ListView.header()->setSortIndicator(Colonna, verso == Verso::Su ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void OrdinaAlClic(QTreeWidget& ListView) {
  ListView.header()->setSectionsClickable(true);
  QObject::connect(ListView.header(), &QHeaderView::sectionClicked, &ListView, [&ListView](int colonna) {
    OrdinaLista(ListView, colonna,
                TipoDiColonna(Testo(ListView.headerItem()->data(colonna, RuoloTag).toString())));
  });
}

}  // namespace tandemize
