#include "presentation/windows/EtichettaElisa.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

#include "fixtures/windows/Desktop.h"

namespace tandemize {
namespace {

const QString LongPath = "C:\\" + QString("a long folder name\\").repeated(20) + "file.txt";

class EtichettaElisaTest : public ::testing::Test {
 protected:
  EtichettaElisaTest() { label.resize(200, 20); }
  QString tipOf(const QString& text) {
    label.Mostra(text);
    label.show();
    QToolTip::hideText();
    EXPECT_TRUE(test::reached([] { return !QToolTip::isVisible(); }));
    QHelpEvent event(QEvent::ToolTip, {5, 5}, label.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&label, &event);
    return QToolTip::text();
  }
  EtichettaElisa label{"LblPath", Qt::ElideMiddle};
};

TEST_F(EtichettaElisaTest, Its_size_never_depends_on_its_text) {
  const QSize hint = label.sizeHint(), minimum = label.minimumSizeHint();
  label.Mostra(LongPath);
  EXPECT_EQ(label.sizeHint(), hint);
  EXPECT_EQ(label.minimumSizeHint(), minimum);
  label.Mostra("two\nlines");
  EXPECT_EQ(label.sizeHint(), hint);
}

TEST_F(EtichettaElisaTest, The_text_stays_whole_whatever_is_seen_of_it) {
  label.Mostra(LongPath);
  EXPECT_EQ(label.text(), LongPath);
  EXPECT_FALSE(label.Intera());
  label.Mostra("short");
  EXPECT_TRUE(label.Intera());
}

TEST_F(EtichettaElisaTest, What_is_cut_off_is_told_by_the_tool_tip_and_only_that) {
  EXPECT_EQ(tipOf(LongPath), LongPath);
  EXPECT_EQ(tipOf("short"), "");
}

TEST_F(EtichettaElisaTest, A_name_that_looks_like_mark_up_is_shown_as_it_is) {
  const QString name = "/ftp/" + QString("folder/").repeated(20) + "<b>bold</b>";
  EXPECT_EQ(tipOf(name), "<span>" + name.toHtmlEscaped() + "</span>");
  EXPECT_EQ(label.text(), name);
}

TEST_F(EtichettaElisaTest, Both_ends_of_a_path_are_seen) {
  // A text that differs only in its middle, where it is cut, looks the same; one with another end does not.
  QString otherMiddle = LongPath, otherEnd = LongPath;
  otherMiddle[LongPath.size() / 2] = 'W';
  otherEnd[LongPath.size() - 1] = 'W';
  const auto look = [this](const QString& text) {
    label.Mostra(text);
    return label.grab().toImage();
  };
  const QImage image = look(LongPath);
  EXPECT_EQ(look(otherMiddle), image);
  EXPECT_NE(look(otherEnd), image);
}

}  // namespace
}  // namespace tandemize
