#include "errors/windows/frmLogFind.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "errors/windows/LogWindows.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

using test::Lines;

struct frmLogFindTest : test::LogWindows {
  frmLogFindTest() { log({"Alpha", "beta alpha", "PERCHÉ", "alpha"}); }

  QWidget& openFind() {
    test::letEventsRun();
    if (FormDiNome("FrmLogView") == nullptr) openList();
    test::action(view(), "MenuWindow(2)")->trigger();
    test::letEventsRun();
    return *test::window("frmLogFind");
  }
  void find(const char* text, bool exact) {
    QWidget& dialog = openFind();
    test::type(*test::control<QLineEdit>(dialog, "TxtFind"), text);
    test::control<QCheckBox>(dialog, "ChkExact")->setChecked(exact);
    test::click(*test::control<QPushButton>(dialog, "Cmd(0)"));
  }
  [[nodiscard]] Lines boxTexts() const {
    Lines texts;
    for (const test::ShownBox& box : desktop.boxes) texts.push_back(box.text);
    return texts;
  }
};

TEST_F(frmLogFindTest, Find_Text_shows_one_dialog_that_does_not_block) {
  QWidget& dialog = openFind();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_FALSE(dialog.isModal());
  EXPECT_EQ(&openFind(), &dialog);
  EXPECT_EQ(test::text(*test::control<QCheckBox>(dialog, "ChkExact")), "Exact Match");
  EXPECT_EQ(test::text(*test::control<QPushButton>(dialog, "Cmd(0)")), "&OK");
  EXPECT_TRUE(test::control<QPushButton>(dialog, "Cmd(0)")->isDefault());
}

TEST_F(frmLogFindTest, Its_labels_and_its_second_button_speak_the_language_of_the_settings) {
  for (const char* language : {"0", "1"}) {
    desktop.folder.setting("Language", language);
    QWidget& dialog = openFind();
    EXPECT_EQ(test::text(*test::control<QLabel>(dialog, "lbl(0)")), Messaggio(270));
    EXPECT_EQ(test::text(*test::control<QLabel>(dialog, "lbl(1)")), Messaggio(271));
    EXPECT_EQ(test::text(*test::control<QPushButton>(dialog, "Cmd(1)")), Messaggio(395));
    dialog.close();
    test::letEventsRun();
  }
}

TEST_F(frmLogFindTest, The_second_button_and_the_Escape_key_close_it) {
  test::click(*test::control<QPushButton>(openFind(), "Cmd(1)"));
  EXPECT_EQ(FormDiNome("frmLogFind"), nullptr);
  test::press(openFind(), Qt::Key_Escape);
  EXPECT_EQ(FormDiNome("frmLogFind"), nullptr);
}

TEST_F(frmLogFindTest, The_first_line_with_the_text_becomes_the_selected_current_one) {
  find("alpha", false);
  EXPECT_EQ(test::selected(list()), Lines{"Alpha"});
  EXPECT_EQ(list().currentRow(), 0);
  find("perché", false);
  EXPECT_EQ(test::selected(list()), Lines{"PERCHÉ"});
  EXPECT_EQ(list().currentRow(), 2);
  EXPECT_TRUE(test::window("frmLogFind")->isVisible()) << "OK does not close it";
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(frmLogFindTest, An_exact_match_tells_capital_from_small_letters) {
  find("alpha", true);
  EXPECT_EQ(test::selected(list()), Lines{"beta alpha"});
  find("perché", true);
  EXPECT_EQ(boxTexts(), Lines{"No Match Found"});
}

TEST_F(frmLogFindTest, Searching_again_finds_the_same_line) {
  find("beta", false);
  for (int i = 0; i < 2; ++i) {
    test::click(*test::control<QPushButton>(*test::window("frmLogFind"), "Cmd(0)"));
    EXPECT_EQ(test::selected(list()), Lines{"beta alpha"});
  }
}

TEST_F(frmLogFindTest, Lines_up_to_the_hit_lose_their_selection_and_those_behind_it_keep_theirs) {
  openList();
  for (const int row : {0, 2, 3}) list().item(row)->setSelected(true);
  find("beta", false);
  EXPECT_EQ(test::selected(list()), (Lines{"beta alpha", "PERCHÉ", "alpha"}));
}

TEST_F(frmLogFindTest, Without_a_hit_nothing_is_selected_and_a_box_says_so) {
  openList().selectAll();
  find("gamma", false);
  EXPECT_EQ(boxTexts(), Lines{"No Match Found"});
  EXPECT_EQ(test::selected(list()), Lines{});
}

TEST_F(frmLogFindTest, An_empty_text_hits_the_first_line) {
  openList().item(2)->setSelected(true);
  find("", true);
  EXPECT_EQ(test::selected(list()), (Lines{"Alpha", "PERCHÉ"}));
  EXPECT_EQ(list().currentRow(), 0);
}

TEST_F(frmLogFindTest, A_hit_far_away_comes_into_sight_and_stays_selected_when_the_log_is_active_again) {
  Lines many(1000, "filler");
  many[200] = "needle";
  log(many);
  find("needle", true);
  const QRect seen = list().visualItemRect(list().item(200));
  EXPECT_TRUE(list().viewport()->rect().intersects(seen));
  ScriviLog("newer", RigaNormale);
  test::window("frmLogFind")->close();
  MostraFrmLogView();
  EXPECT_EQ(test::selected(list()), Lines{"needle"});
  EXPECT_TRUE(list().viewport()->rect().intersects(list().visualItemRect(list().item(200))));
}

TEST_F(frmLogFindTest, It_goes_with_the_log_window) {
  openFind();
  ScaricaForm("FrmLogView");
  test::letEventsRun();
  EXPECT_EQ(FormDiNome("frmLogFind"), nullptr);
}

}  // namespace
}  // namespace tandemize
