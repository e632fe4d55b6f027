#include "presentation/windows/ModuloGrafica.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "fixtures/windows/Desktop.h"
#include "presentation/windows/Form.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

TEST(ModuloGrafica, The_text_before_the_hyphen_is_the_title_and_the_rest_its_note) {
  PicIntestazione strip("FTP - servers of this PC - all");
  EXPECT_EQ(strip.Titolo(), "FTP");
  EXPECT_EQ(strip.Nota(), "servers of this PC - all");
}

TEST(ModuloGrafica, A_header_without_a_hyphen_has_an_empty_note) {
  PicIntestazione strip("FTP");
  EXPECT_EQ(strip.Titolo(), "FTP");
  EXPECT_EQ(strip.Nota(), "");
}

TEST(ModuloGrafica, A_strip_runs_through_the_three_colours_of_the_gradient) {
  PicIntestazione strip;
  strip.resize(301, 20);
  const QImage drawn = strip.grab().toImage();
  const int y = drawn.height() - 2;  // below the sheen
  EXPECT_EQ(drawn.pixelColor(150, y), ColoreGradiente2);
  EXPECT_NEAR(drawn.pixelColor(12, y).red(), ColoreGradiente1.red(), 5);
  EXPECT_NEAR(drawn.pixelColor(288, y).red(), ColoreIntestazione.red(), 5);
}

TEST(ModuloGrafica, Buttons_are_bold_but_for_the_one_of_three_dots) {
  const test::Desktop desktop;
  QWidget window;
  QPushButton bold("Add", &window), dots("...", &window);
  ApplicaStile(window);
  EXPECT_TRUE(bold.font().bold());
  EXPECT_FALSE(dots.font().bold());
}

TEST(ModuloGrafica, A_button_with_the_tag_D_has_its_fixed_least_size) {
  const test::Desktop desktop;
  QWidget window;
  QPushButton button("X", &window);
  button.setProperty("tag", "d");
  ApplicaStile(window);
  EXPECT_EQ(button.minimumSize(), QSize(80, 23));
}

TEST(ModuloGrafica, A_window_of_controls_without_text_is_styled_without_an_error) {
  const test::Desktop desktop;
  QWidget window;
  QFrame frame(&window);
  QWidget plain(&window);
  ApplicaStile(window);
  EXPECT_TRUE(window.autoFillBackground());
}

TEST(ModuloGrafica, Every_window_has_the_colours_and_the_font_of_the_scheme) {
  const test::Desktop desktop;
  QWidget window;
  QLabel label("text", &window);
  EXPECT_EQ(window.palette().color(QPalette::Window), ColoreGradiente2);
  EXPECT_EQ(label.palette().color(QPalette::WindowText), ColoreBase);
  EXPECT_EQ(window.palette().color(QPalette::Base), ColoreSfondoChiaro);
  EXPECT_EQ(label.font().family(), "Arial");
  EXPECT_EQ(label.font().pointSize(), 8);
}

TEST(ModuloGrafica, A_frame_that_is_disabled_keeps_its_text_and_disables_what_it_holds) {
  const test::Desktop desktop;
  Riquadro frame(3, "Buffers - kilobytes");
  QCheckBox box;
  frame.Contenuto()->addWidget(&box);
  frame.Abilita(false);
  EXPECT_TRUE(frame.Intestazione()->Disabilitata());
  EXPECT_EQ(frame.Intestazione()->Nota(), "kilobytes");
  EXPECT_FALSE(box.isEnabled());
  frame.Abilita(true);
  EXPECT_TRUE(box.isEnabled());
  EXPECT_EQ(frame.objectName(), "PicFrame(3)");
  EXPECT_EQ(frame.Intestazione()->objectName(), "PicIntestazioneFrm(3)");
  box.setParent(nullptr);
}

TEST(ModuloGrafica, The_confirm_buttons_get_their_captions_and_the_first_is_the_default) {
  const test::Desktop desktop;
  QWidget window;
  auto *ok = new QPushButton, *cancel = new QPushButton, *third = new QPushButton("Test");
  window.setLayout(PreparaBottoni(ok, cancel, third));
  EXPECT_EQ(ok->text(), "&OK");
  EXPECT_EQ(cancel->text().toStdString(), Messaggio(395));
  EXPECT_EQ(third->text(), "Test");
  EXPECT_TRUE(ok->isDefault());
  EXPECT_TRUE(cancel->autoDefault()) << "Enter presses the button that has the focus";
}

class TabStrip : public testing::Test {
 protected:
  TabStrip() {
    for (const char* caption : {"Start", "Log", "Errors"}) tabs.Aggiungi(new QLabel(caption), caption);
  }
  QPushButton& header(int index) {
    return *test::control<QPushButton>(tabs, "PicColTabHeaders(" + std::to_string(index) + ")");
  }

  test::Desktop desktop;
  Schede tabs;
};

TEST_F(TabStrip, A_header_selects_its_tab_alone_is_bold_and_names_it_at_the_top) {
  test::click(header(2));
  EXPECT_EQ(tabs.Corrente(), 2);
  EXPECT_TRUE(header(2).font().bold());
  EXPECT_FALSE(header(0).font().bold());
  EXPECT_EQ(test::control<QAbstractButton>(tabs, "lblHeader")->text(), "Errors");
}

TEST_F(TabStrip, A_click_on_the_top_goes_to_the_next_tab_and_behind_the_last_to_the_first) {
  auto& top = *test::control<QAbstractButton>(tabs, "lblHeader");
  test::click(top);
  EXPECT_EQ(tabs.Corrente(), 1);
  test::click(top);
  test::click(top);
  EXPECT_EQ(tabs.Corrente(), 0);
}

TEST_F(TabStrip, Styling_the_window_leaves_the_chosen_header_the_only_bold_one) {
  ApplicaStile(tabs);
  EXPECT_TRUE(header(0).font().bold());
  EXPECT_FALSE(header(1).font().bold());
}

TEST(ModuloGrafica, Buttons_of_a_tool_bar_keep_the_system_s_colour) {
  const test::Desktop desktop;
  QWidget window;
  QPushButton tool("X", &window), other("Y", &window);
  tool.setObjectName("ToolBarOpen");
  ApplicaStile(window);
  EXPECT_FALSE(tool.styleSheet().isEmpty());
  EXPECT_TRUE(other.styleSheet().isEmpty());
}

TEST(Schede, The_Tab_key_goes_through_all_headers_and_then_through_the_page) {
  const test::Desktop desktop;
  Schede tabs;
  QLineEdit* fields[2] = {};
  for (QLineEdit*& field : fields) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(field = new QLineEdit);
    tabs.Aggiungi(page, "Tab");
  }
  QStringList order;
  QWidget* widget = test::control<QPushButton>(tabs, "PicColTabHeaders(0)");
  for (QWidget* w = widget; w != nullptr && order.size() < 4; w = w->nextInFocusChain()) {
    if ((w->focusPolicy() & Qt::TabFocus) == 0 || qobject_cast<QTabWidget*>(w) != nullptr) continue;
    order << (w == fields[0] ? "field 0" : w == fields[1] ? "field 1" : w->objectName());
  }
  EXPECT_EQ(order.join(' '), "PicColTabHeaders(0) PicColTabHeaders(1) field 0 field 1");
}

TEST_F(TabStrip, Keys_change_the_tab) {
  int shortcuts = 0;
  for (QShortcut* shortcut : tabs.findChildren<QShortcut*>()) {
    ++shortcuts;
    if (shortcut->key() == QKeySequence("Ctrl+PgUp")) Q_EMIT shortcut->activated();
  }
  EXPECT_EQ(shortcuts, 4);
  EXPECT_EQ(tabs.Corrente(), 2);
}

}  // namespace
}  // namespace tandemize
