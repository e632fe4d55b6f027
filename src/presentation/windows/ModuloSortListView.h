// Sorting of a list with columns by a click on a header.
#pragma once

#include "presentation/OrdineLista.h"

class QTreeWidget;

namespace tandemize {

// Gives a column's kind: the tag "numeric" or "date", or none for text.
void TagColonna(QTreeWidget& ListView, int Colonna, const char* tag);

// Sorts by a column, up the first time and the other way each further time; the header shows it. Rows that
// are equal in that column keep their order, what is selected stays selected.
void OrdinaLista(QTreeWidget& ListView, int Colonna, TipoColonna Tipo);

// Lets each click on a header sort by that column, by the kind of its tag.
void OrdinaAlClic(QTreeWidget& ListView);

}  // namespace tandemize
