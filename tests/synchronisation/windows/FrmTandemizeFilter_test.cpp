#include "synchronisation/windows/FrmTandemizeFilter.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include "fixtures/windows/CutText.h"
#include "fixtures/windows/Desktop.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

using test::control;

// The dialog over a stored filter, with its controls by their names.
class Dialog {
 public:
  explicit Dialog(const std::string& stored = "") {
    FilterBackup = stored;
    window = std::make_unique<FrmTandemizeFilter>(nullptr);
    Presenta(*window);
    test::letEventsRun();
  }

  template <class Control>
  [[nodiscard]] Control& get(const char* name) const {
    return *control<Control>(*window, name);
  }
  [[nodiscard]] QPushButton& button(const char* name) const { return get<QPushButton>(name); }
  [[nodiscard]] QComboBox& combo() const { return get<QComboBox>("ComboEstensioni"); }
  [[nodiscard]] QListWidget& list() const { return get<QListWidget>("ListFilters"); }
  [[nodiscard]] std::string number() const { return test::text(get<QLabel>("lblnumbers")); }
  [[nodiscard]] std::vector<std::string> entries() const {
    std::vector<std::string> all;
    for (int i = 0; i < list().count(); ++i) all.push_back(list().item(i)->text().toStdString());
    return all;
  }
  void add(const char* entry) const {
    combo().setEditText(entry);
    test::click(button("cmdOp(0)"));
  }
  // To the control with the focus, else to the window.
  void key(int key) const {
    QWidget* focused = window->focusWidget() != nullptr ? window->focusWidget() : window.get();
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(focused, &press);
  }

  std::unique_ptr<FrmTandemizeFilter> window;
};

using Entries = std::vector<std::string>;

TEST(FrmTandemizeFilterWindow, It_shows_what_is_stored) {
  test::Desktop desktop;
  const struct {
    const char* stored;
    bool includes;
    Entries entries;
  } cases[] = {{"", false, {}},
               {"+|", true, {}},
               {"-|*.tmp|", false, {"*.tmp"}},
               {"+|*.doc|*.xls|", true, {"*.doc", "*.xls"}}};
  for (const auto& c : cases) {
    const Dialog dialog(c.stored);
    EXPECT_EQ(dialog.get<QRadioButton>("OptMode(0)").isChecked(), c.includes) << c.stored;
    EXPECT_EQ(dialog.get<QRadioButton>("OptMode(1)").isChecked(), !c.includes) << c.stored;
    EXPECT_EQ(dialog.entries(), c.entries) << c.stored;
    EXPECT_EQ(dialog.number(), std::to_string(c.entries.size()));
    EXPECT_EQ(dialog.button("cmdOp(2)").isEnabled(), !c.entries.empty()) << c.stored;
    EXPECT_FALSE(dialog.button("cmdOp(1)").isEnabled()) << c.stored;
    EXPECT_EQ(test::text(dialog.combo()), "");
  }
}

TEST(FrmTandemizeFilterWindow, Its_captions_are_the_numbered_messages_of_the_language) {
  for (const char* language : {"0", "1"}) {
    test::Desktop desktop;
    desktop.folder.setting("Language", language);
    ASSERT_EQ(CaricaLingua(), EsitoLingua::Caricata);
    const Dialog dialog;
    EXPECT_EQ(dialog.window->windowTitle().toStdString(), Messaggio(455));
    EXPECT_EQ(test::text(dialog.get<QRadioButton>("OptMode(0)")), Messaggio(456));
    EXPECT_EQ(test::text(dialog.get<QRadioButton>("OptMode(1)")), Messaggio(457));
    EXPECT_EQ(test::text(dialog.get<QLabel>("LblFiles")), Messaggio(458));
    EXPECT_EQ(test::text(dialog.get<QLabel>("Label1")), Messaggio(459));
    EXPECT_EQ(test::text(dialog.button("cmd(1)")), Messaggio(395));
  }
}

TEST(FrmTandemizeFilterWindow, Adding_takes_the_text_of_the_box_repeats_included) {
  test::Desktop desktop;
  const Dialog dialog;
  dialog.add("*.doc");
  EXPECT_EQ(dialog.number(), "1");
  EXPECT_TRUE(dialog.button("cmdOp(2)").isEnabled());
  test::click(dialog.button("cmdOp(0)"));
  EXPECT_EQ(dialog.entries(), (Entries{"*.doc", "*.doc"}));
  EXPECT_EQ(dialog.number(), "2");
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST(FrmTandemizeFilterWindow, A_refused_entry_gets_message_460_and_the_focus_goes_back_to_its_text) {
  test::Desktop desktop;
  const Dialog dialog("+|*.a|");
  dialog.button("cmdOp(0)").setFocus();
  dialog.add("doc");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].text, Messaggio(460));
  EXPECT_EQ(dialog.entries(), Entries{"*.a"});
  EXPECT_EQ(test::text(dialog.combo()), "doc");
  EXPECT_EQ(dialog.window->focusWidget(), &dialog.combo());
}

TEST(FrmTandemizeFilterWindow, An_empty_entry_is_refused_and_leaves_the_focus_where_it_is) {
  test::Desktop desktop;
  const Dialog dialog;
  dialog.button("cmdOp(0)").setFocus();
  dialog.add("");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].text, Messaggio(460));
  EXPECT_EQ(dialog.window->focusWidget(), &dialog.button("cmdOp(0)"));
}

TEST(FrmTandemizeFilterWindow, Selecting_an_entry_enables_its_removal) {
  test::Desktop desktop;
  const Dialog dialog("+|*.a|*.b|*.c|");
  EXPECT_FALSE(dialog.button("cmdOp(1)").isEnabled());
  dialog.list().setCurrentRow(1);
  EXPECT_TRUE(dialog.button("cmdOp(1)").isEnabled());
  test::click(dialog.button("cmdOp(1)"));
  EXPECT_EQ(dialog.entries(), (Entries{"*.a", "*.c"}));
  EXPECT_EQ(dialog.number(), "2");
}

TEST(FrmTandemizeFilterWindow, One_entry_after_the_other_can_be_removed_until_none_is_left) {
  test::Desktop desktop;
  const Dialog dialog("+|*.a|*.b|*.c|");
  dialog.list().setCurrentRow(1);
  for (int i = 0; i < 5; ++i) test::click(dialog.button("cmdOp(1)"));
  EXPECT_TRUE(dialog.entries().empty());
  EXPECT_FALSE(dialog.button("cmdOp(1)").isEnabled());
  EXPECT_FALSE(dialog.button("cmdOp(2)").isEnabled());
  EXPECT_EQ(dialog.number(), "0");
}

TEST(FrmTandemizeFilterWindow, The_Delete_key_removes_the_selected_entry) {
  test::Desktop desktop;
  const Dialog dialog("+|*.a|*.b|");
  dialog.list().setFocus();
  dialog.list().setCurrentRow(0);
  dialog.key(Qt::Key_Delete);
  EXPECT_EQ(dialog.entries(), Entries{"*.b"});
}

TEST(FrmTandemizeFilterWindow, Clearing_asks_and_only_a_yes_clears) {
  test::Desktop desktop;
  const Dialog dialog("+|*.a|*.b|");
  for (const Risposta answer : {Risposta::No, Risposta::Sì}) {
    desktop.answers = {answer};
    test::click(dialog.button("cmdOp(2)"));
    EXPECT_EQ(dialog.entries().empty(), answer == Risposta::Sì);
  }
  EXPECT_EQ(desktop.boxes[0].text, "Do you want clear the list ?");
  EXPECT_EQ(desktop.boxes[0].style, StileSìNo);
  EXPECT_FALSE(dialog.button("cmdOp(2)").isEnabled());
  EXPECT_EQ(dialog.number(), "0");
}

TEST(FrmTandemizeFilterWindow, OK_stores_the_filter_and_closes_Cancel_only_closes) {
  test::Desktop desktop;
  for (const bool ok : {true, false}) {
    const Dialog dialog("-|*.a|");
    dialog.get<QRadioButton>("OptMode(0)").click();
    dialog.add("*.b");
    EXPECT_EQ(FilterBackup, "-|*.a|");
    test::click(dialog.button(ok ? "cmd(0)" : "cmd(1)"));
    EXPECT_FALSE(dialog.window->isVisible());
    EXPECT_EQ(FilterBackup, ok ? "+|*.a|*.b|" : "-|*.a|");
  }
}

TEST(FrmTandemizeFilterWindow, An_empty_list_is_stored_as_a_sign_and_a_bar) {
  test::Desktop desktop;
  const Dialog dialog;
  test::click(dialog.button("cmd(0)"));
  EXPECT_EQ(FilterBackup, "-|");
  const Dialog including;
  including.get<QRadioButton>("OptMode(0)").click();
  test::click(including.button("cmd(0)"));
  EXPECT_EQ(FilterBackup, "+|");
}

TEST(FrmTandemizeFilterWindow, The_Escape_key_is_Cancel_and_Enter_is_OK) {
  test::Desktop desktop;
  const Dialog escaped("+|*.a|");
  escaped.add("*.b");
  escaped.key(Qt::Key_Escape);
  EXPECT_FALSE(escaped.window->isVisible());
  EXPECT_EQ(FilterBackup, "+|*.a|");
  const Dialog entered("+|*.a|");
  entered.list().setFocus();
  entered.key(Qt::Key_Return);
  EXPECT_FALSE(entered.window->isVisible());
  const Dialog cancelled("+|*.a|");
  cancelled.add("*.b");
  cancelled.button("cmd(1)").setFocus();
  cancelled.key(Qt::Key_Return);
  EXPECT_FALSE(cancelled.window->isVisible());
  EXPECT_EQ(FilterBackup, "+|*.a|");
}

TEST(FrmTandemizeFilterWindow, Enter_adds_what_was_just_typed_and_is_OK_after_that) {
  test::Desktop desktop;
  const Dialog dialog;
  dialog.combo().setFocus();
  test::type(*dialog.combo().lineEdit(), "*.doc");
  dialog.key(Qt::Key_Return);
  EXPECT_EQ(dialog.entries(), Entries{"*.doc"});
  EXPECT_TRUE(dialog.window->isVisible());
  dialog.key(Qt::Key_Return);
  EXPECT_FALSE(dialog.window->isVisible());
  EXPECT_EQ(FilterBackup, "-|*.doc|");
}

TEST(FrmTandemizeFilterWindow, What_is_typed_is_not_completed_to_another_extension) {
  test::Desktop desktop;
  const Dialog dialog;
  dialog.combo().setFocus();
  test::type(*dialog.combo().lineEdit(), "*.tx");
  EXPECT_EQ(test::text(dialog.combo()), "*.tx");
}

TEST(FrmTandemizeFilterWindow, The_known_extensions_begin_with_the_fixed_ones_and_each_can_be_added) {
  test::Desktop desktop;
  const Dialog dialog;
  ASSERT_GE(dialog.combo().count(), 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(dialog.combo().itemText(i).toStdString(), EstensioniFisse[i]);
  for (int i = 0; i < dialog.combo().count(); ++i)
    EXPECT_TRUE(FiltroBackup::ControllaEstensione(dialog.combo().itemText(i).toStdString()));
  EXPECT_TRUE(desktop.boxes.empty());
  dialog.combo().setCurrentIndex(1);
  test::click(dialog.button("cmdOp(0)"));
  EXPECT_EQ(dialog.entries(), Entries{"*.doc"});
}

TEST(FrmTandemizeFilterWindow, It_says_what_the_filter_does_as_it_changes) {
  test::Desktop desktop;
  const Dialog dialog;
  QLabel& effect = dialog.get<QLabel>("LblEffetto");
  std::vector<std::string> told = {test::text(effect)};
  const auto changed = [&] {
    told.push_back(test::text(effect));
    return told.back() != told[told.size() - 2];
  };
  dialog.get<QRadioButton>("OptMode(0)").click();
  EXPECT_TRUE(changed());
  dialog.add("*.doc");
  EXPECT_TRUE(changed());
  dialog.get<QRadioButton>("OptMode(1)").click();
  EXPECT_TRUE(changed());
}

TEST(FrmTandemizeFilterWindow, The_Tab_key_goes_through_the_controls_in_the_order_of_reading) {
  test::Desktop desktop;
  const Dialog dialog("+|*.a|");
  dialog.list().setCurrentRow(0);
  dialog.get<QRadioButton>("OptMode(0)").setFocus();
  std::vector<std::string> order;
  for (int i = 0; i < 8; ++i) {
    order.push_back(dialog.window->focusWidget()->objectName().toStdString());
    dialog.key(Qt::Key_Tab);
  }
  EXPECT_EQ(order, (std::vector<std::string>{"OptMode(0)", "ComboEstensioni", "cmdOp(0)", "ListFilters",
                                             "cmdOp(1)", "cmdOp(2)", "cmd(0)", "cmd(1)"}));
}

TEST(FrmTandemizeFilterWindow, No_text_is_cut_off_in_either_language) {
  for (const char* language : {"0", "1"})
    for (const char* stored : {"", "+|", "-|*.doc|", "+|*.doc|"}) {
      test::Desktop desktop;
      desktop.folder.setting("Language", language);
      ASSERT_EQ(CaricaLingua(), EsitoLingua::Caricata);
      const Dialog dialog(stored);
      EXPECT_EQ(test::cutTexts(*dialog.window), std::vector<std::string>{}) << language << stored;
    }
}

}  // namespace
}  // namespace tandemize
