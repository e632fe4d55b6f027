#include "presentation/windows/ModuloSortListView.h"

#include <gtest/gtest.h>

#include <QHeaderView>
#include <QTreeWidget>

#include "fixtures/windows/Desktop.h"

namespace tandemize {
namespace {

QString column(const QTreeWidget& list, int column) {
  QStringList cells;
  for (int i = 0; i < list.topLevelItemCount(); ++i) cells << list.topLevelItem(i)->text(column);
  return cells.join('|');
}

class SortedList : public testing::Test {
 protected:
  SortedList() {
    list.setHeaderLabels({"Name", "Size", "Date"});
    TagColonna(list, 1, "numeric");
    TagColonna(list, 2, "date");
    OrdinaAlClic(list);
    for (const QStringList& row :
         {QStringList{"b", "9", "02/01/2024 8.00.00"}, QStringList{"C", "100", "01/12/2023 8.00.00"},
          QStringList{"a", "9", "31/01/2024 8.00.00"}})
      list.addTopLevelItem(new QTreeWidgetItem(row));
  }
  void clickHeader(int section) { Q_EMIT list.header()->sectionClicked(section); }

  test::Desktop desktop;
  QTreeWidget list;
};

TEST_F(SortedList, A_click_on_a_header_sorts_by_the_column_s_kind_and_again_the_other_way) {
  clickHeader(0);
  EXPECT_EQ(column(list, 0), "a|b|C");
  clickHeader(0);
  EXPECT_EQ(column(list, 0), "C|b|a");
  clickHeader(1);
  EXPECT_EQ(column(list, 1), "9|9|100");
  clickHeader(2);
  EXPECT_EQ(column(list, 2), "01/12/2023 8.00.00|02/01/2024 8.00.00|31/01/2024 8.00.00");
}

TEST_F(SortedList, Each_column_remembers_its_own_direction_and_the_header_shows_it) {
  clickHeader(0);
  clickHeader(1);
  clickHeader(0);
  EXPECT_EQ(column(list, 0), "C|b|a");
  EXPECT_EQ(list.header()->sortIndicatorSection(), 0);
  EXPECT_EQ(list.header()->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(SortedList, Rows_that_are_equal_keep_their_order_and_the_selection_stays) {
  list.topLevelItem(2)->setSelected(true);
  clickHeader(1);
  EXPECT_EQ(column(list, 0), "b|a|C");
  ASSERT_EQ(list.selectedItems().size(), 1);
  EXPECT_EQ(list.selectedItems().first()->text(0), "a");
}

}  // namespace
}  // namespace tandemize
