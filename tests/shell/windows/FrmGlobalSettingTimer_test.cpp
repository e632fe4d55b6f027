// The timer tab of the settings window.
#include <QFileDialog>

#include "platform/machine.h"
#include "shell/windows/GlobalSettingTest.h"

namespace tandemize {
namespace {

using test::GlobalSettingTest;
using test::letEventsRun;

constexpr int TimerTab = 5;
const char* const StandardFields[] = {"comboTimer", "txtTimerInterval", "txtTimerStart", "TxtTimerStartDate"};
const char* const AdvancedFields[] = {"txtProfilo", "txtData", "TxtOra", "TxtIntervallo", "cmbintervallo"};

std::string today() {
  return FormattaDataOra(platform::now(), FormatoData);
}

class FrmGlobalSettingTimer : public GlobalSettingTest {
 protected:
  void openAdvanced() {
    file("Timer_Start_Mode", "2");
    profile = "C:\\My profiles\\Night.cfg";
    open(TimerTab);
    press("OptTipoTimer(1)");
  }
  void addTimer(const char* number = "2") {
    if (shown("txtProfilo").empty()) press("cmdPath");
    enter("txtData", "01/02/2030");
    enter("TxtOra", "07.15");
    enter("TxtIntervallo", number);
    get<QComboBox>("cmbintervallo").setCurrentIndex(1);
    press("cmdList(0)");
  }
  [[nodiscard]] std::vector<std::string> rows() {
    std::vector<std::string> result;
    auto& list = get<QTreeWidget>("ListTimer");
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
      std::string row;
      for (int column = 0; column < 4; ++column)
        row += (column > 0 ? "|" : "") + list.topLevelItem(i)->text(column).toStdString();
      result.push_back(row);
    }
    return result;
  }
  void expectButtons(bool remove, bool replace) {
    EXPECT_TRUE(enabled("cmdList(0)"));
    EXPECT_EQ(enabled("cmdList(1)"), remove);
    EXPECT_EQ(enabled("cmdList(2)"), replace);
  }
};

TEST_F(FrmGlobalSettingTimer, A_kind_of_run_fills_the_empty_fields_and_none_empties_and_locks_them) {
  open(TimerTab);
  for (const char* field : StandardFields) EXPECT_FALSE(enabled(field));
  for (const char* run : {"OptTimer(1)", "OptTimer(2)"}) {
    press(run);
    EXPECT_EQ(shown("comboTimer"), Messaggio(267));
    EXPECT_EQ(shown("txtTimerInterval"), "1");
    EXPECT_EQ(shown("txtTimerStart"), "13.30");
    EXPECT_EQ(shown("TxtTimerStartDate"), today());
    for (const char* field : StandardFields) EXPECT_TRUE(enabled(field));
  }
  press("OptTimer(0)");
  for (const char* field : StandardFields) {
    EXPECT_EQ(shown(field), "");
    EXPECT_FALSE(enabled(field));
  }
}

TEST_F(FrmGlobalSettingTimer, What_was_entered_stays_when_the_kind_of_run_changes) {
  file("Timer_Start_Mode", "1");
  open(TimerTab);
  enter("txtTimerStart", "06.00");
  press("OptTimer(2)");
  EXPECT_EQ(shown("txtTimerStart"), "06.00");
}

TEST_F(FrmGlobalSettingTimer, The_captions_are_those_of_the_language) {
  open(TimerTab);
  EXPECT_EQ(shown("OptTipoTimer(0)"), Messaggio(453));
  EXPECT_EQ(shown("OptTipoTimer(1)"), Messaggio(454));
  const QTreeWidgetItem& header = *get<QTreeWidget>("ListTimer").headerItem();
  const int messages[] = {441, 23, 451, 246};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(header.text(i).toStdString(), Messaggio(messages[i]));
}

TEST_F(FrmGlobalSettingTimer, Advanced_locks_the_standard_fields_asks_for_a_profile_and_proposes_the_rest) {
  openAdvanced();
  EXPECT_EQ(profilesAsked, 1);
  for (const char* field : StandardFields) {
    EXPECT_EQ(shown(field), "");
    EXPECT_FALSE(enabled(field));
  }
  for (const char* field : AdvancedFields) EXPECT_TRUE(enabled(field));
  EXPECT_EQ(shown("txtProfilo"), "Night.cfg");
  EXPECT_EQ(shown("txtData"), today());
  EXPECT_EQ(shown("TxtOra"), "13.30");
  EXPECT_EQ(shown("TxtIntervallo"), "1");
  expectButtons(false, false);
}

TEST_F(FrmGlobalSettingTimer, Standard_empties_the_list_and_brings_the_standard_fields_back) {
  openAdvanced();
  addTimer();
  ASSERT_EQ(rows().size(), 1U);
  press("OptTipoTimer(0)");
  EXPECT_TRUE(rows().empty());
  for (const char* field : AdvancedFields) EXPECT_FALSE(enabled(field));
  EXPECT_EQ(shown("txtTimerStart"), "13.30");
  EXPECT_TRUE(enabled("txtTimerStart"));
}

TEST_F(FrmGlobalSettingTimer, The_arrow_keys_open_no_dialog_and_a_click_does) {
  file("Timer_Start_Mode", "2");
  open(TimerTab);
  press("OptTipoTimer(0)");
  get<QWidget>("OptTipoTimer(0)").setFocus();
  key(Qt::Key_Down);
  EXPECT_TRUE(on("OptTipoTimer(1)"));
  EXPECT_EQ(profilesAsked, 0);
  EXPECT_EQ(shown("txtData"), today());
  key(Qt::Key_Up);
  EXPECT_TRUE(on("OptTipoTimer(0)"));
  press("OptTipoTimer(1)");
  EXPECT_EQ(profilesAsked, 1);
}

TEST_F(FrmGlobalSettingTimer, Cancel_brings_back_the_list_that_the_keys_went_over) {
  file("Timer_Start_Mode", "2");
  file("Timer_Start_Type", "1");
  timer(1, "a.cfg");
  const std::string before = settings();
  for (const bool escape : {false, true}) {
    open(TimerTab);
    get<QWidget>("OptTipoTimer(1)").setFocus();
    key(Qt::Key_Up);
    EXPECT_TRUE(rows().empty());
    key(Qt::Key_Down);
    desktop.answers = {Risposta::Sì};
    if (escape)
      key(Qt::Key_Escape);
    else
      press("cmd(1)");
    EXPECT_EQ(form, nullptr);
    EXPECT_EQ(settings(), before);
    EXPECT_EQ(TimerAdvList.size(), 2U);
    open(TimerTab);
    EXPECT_EQ(rows().size(), 1U);
    delete form;
    desktop.answers.clear();
  }
}

TEST_F(FrmGlobalSettingTimer, The_path_button_takes_the_name_and_keeps_what_is_there_if_the_user_gives_up) {
  openAdvanced();
  profile = "C:\\Other\\Day.cfg";
  press("cmdPath");
  EXPECT_EQ(shown("txtProfilo"), "Day.cfg");
  EXPECT_EQ(get<QLineEdit>("txtProfilo").toolTip(), "C:\\Other\\Day.cfg");
  profile.clear();
  press("cmdPath");
  EXPECT_EQ(shown("txtProfilo"), "Day.cfg");
}

TEST_F(FrmGlobalSettingTimer, The_dialog_offers_profiles_and_its_choice_is_taken) {
  file("Timer_Start_Mode", "2");
  file("Timer_Start_Type", "1");
  open(TimerTab);
  desktop.folder.work().write("Night.cfg", "profile");
  std::string filter;
  desktop.whenShown("ScegliFileApertura", [&](QWidget& dialog) {
    auto& files = dynamic_cast<QFileDialog&>(dialog);
    filter = files.nameFilters().join(u'|').toStdString();
    files.selectFile(QString::fromStdString(desktop.folder.work().host("Night.cfg")));
    static_cast<QDialog&>(files).accept();
  });
  chooseByDialog();
  press("cmdPath");
  EXPECT_NE(filter.find("*.cfg"), std::string::npos) << filter;
  EXPECT_EQ(shown("txtProfilo"), "Night.cfg");
  EXPECT_EQ(get<QLineEdit>("txtProfilo").toolTip().toStdString(), desktop.folder.program("Night.cfg"));
}

TEST_F(FrmGlobalSettingTimer, Add_makes_a_row_of_the_fields_clears_them_and_is_saved) {
  openAdvanced();
  addTimer();
  EXPECT_EQ(rows(), std::vector<std::string>{"Night.cfg|01/02/2030|07.15|2 " + Messaggio(267)});
  for (const char* field : AdvancedFields) EXPECT_EQ(shown(field), "") << field;
  expectButtons(false, false);
  press("cmd(0)");
  EXPECT_EQ(saved("Timer_Start_Type"), "1");
  EXPECT_EQ(saved("1Timer_Adv_Profile1"), "Night.cfg");
  EXPECT_EQ(saved("1Timer_Adv_Profile2"), "C:\\My profiles\\Night.cfg");
  EXPECT_EQ(saved("1Timer_Adv_Date"), "01/02/2030");
  EXPECT_EQ(saved("1Timer_Adv_Time"), "07.15");
  EXPECT_EQ(saved("1Timer_Adv_Interval"), "2 " + Messaggio(267));
}

TEST_F(FrmGlobalSettingTimer, A_field_that_is_missing_is_told_and_nothing_happens) {
  openAdvanced();
  press("cmdList(0)");
  EXPECT_EQ(box(), Messaggio(452)) << "the word of the interval is missing";
  EXPECT_TRUE(rows().empty());
  EXPECT_EQ(shown("txtProfilo"), "Night.cfg");
}

TEST_F(FrmGlobalSettingTimer, A_row_of_the_file_is_shown_selected_replaced_and_removed) {
  file("Timer_Start_Mode", "2");
  file("Timer_Start_Type", "1");
  timer(1, "a.cfg");
  timer(2, "b.cfg");
  open(TimerTab);
  const std::string weeks = Messaggio(268);
  EXPECT_EQ(rows(), (std::vector<std::string>{"a.cfg|01/02/2030|07.15|2 " + weeks,
                                              "b.cfg|01/02/2030|07.15|2 " + weeks}));
  EXPECT_EQ(profilesAsked, 0);
  select("ListTimer", 1);
  EXPECT_EQ(shown("txtProfilo"), "b.cfg");
  EXPECT_EQ(shown("txtData"), "01/02/2030");
  EXPECT_EQ(shown("TxtOra"), "07.15");
  EXPECT_EQ(shown("TxtIntervallo"), "2");
  EXPECT_EQ(shown("cmbintervallo"), weeks);
  expectButtons(true, true);
  enter("TxtOra", "23.59");
  press("cmdList(2)");
  EXPECT_EQ(rows()[1], "b.cfg|01/02/2030|23.59|2 " + weeks);
  expectButtons(false, false);
  select("ListTimer", 0);
  press("cmdList(1)");
  EXPECT_EQ(rows(), std::vector<std::string>{"b.cfg|01/02/2030|23.59|2 " + weeks});
  press("cmd(0)");
  EXPECT_EQ(saved("1Timer_Adv_Profile2"), "C:\\p\\b.cfg");
  EXPECT_EQ(saved("2Timer_Adv_Profile1"), "(none)");
}

TEST_F(FrmGlobalSettingTimer, A_tenth_advanced_timer_is_written_and_not_read_back) {
  openAdvanced();
  for (int i = 0; i < 10; ++i) addTimer();
  ASSERT_EQ(rows().size(), 10U);
  press("cmd(0)");
  EXPECT_EQ(saved("10Timer_Adv_Profile1"), "Night.cfg");
  open(TimerTab);
  EXPECT_EQ(rows().size(), 9U);
}

TEST_F(FrmGlobalSettingTimer, The_time_takes_digits_and_the_point_only) {
  file("Timer_Start_Mode", "2");
  open(TimerTab);
  enter("txtTimerStart", "x0:9.,3 0-1");
  EXPECT_EQ(shown("txtTimerStart"), "09.30");
}

TEST_F(FrmGlobalSettingTimer, The_interval_of_an_advanced_timer_is_not_filtered) {
  openAdvanced();
  enter("TxtIntervallo", "1x");
  EXPECT_EQ(shown("TxtIntervallo"), "1x");
}

TEST_F(FrmGlobalSettingTimer, A_time_that_is_none_is_told_on_leaving_and_gets_the_focus_back) {
  file("Timer_Start_Mode", "2");
  open(TimerTab);
  enter("txtTimerStart", "9.30");
  key(Qt::Key_Tab, "\t");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(box(), Messaggio(261));
  EXPECT_TRUE(focused("txtTimerStart"));
  enter("txtTimerStart", "09.30");
  key(Qt::Key_Tab, "\t");
  EXPECT_EQ(desktop.boxes.size(), 1U);
  EXPECT_TRUE(focused("TxtTimerStartDate"));
}

TEST_F(FrmGlobalSettingTimer, A_date_that_is_none_is_told_with_its_form_and_gets_the_focus_back) {
  file("Timer_Start_Mode", "2");
  open(TimerTab);
  enter("TxtTimerStartDate", "31/02/2030");
  get<QLineEdit>("txtTimerInterval").setFocus();
  letEventsRun();
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(box(), Messaggio(406) + " " + FormatoData);
  EXPECT_TRUE(focused("TxtTimerStartDate"));
}

TEST_F(FrmGlobalSettingTimer, Another_tab_is_no_way_around_the_check) {
  file("Timer_Start_Mode", "2");
  open(TimerTab);
  enter("txtTimerStart", "1");
  key(Qt::Key_PageDown, "", Qt::ControlModifier);
  EXPECT_EQ(box(), Messaggio(261));
  EXPECT_EQ(tab(), TimerTab);
  EXPECT_TRUE(focused("txtTimerStart"));
}

TEST_F(FrmGlobalSettingTimer, OK_from_within_a_wrong_field_saves_nothing) {
  file("Timer_Start_Mode", "2");
  open(TimerTab);
  const std::string before = settings();
  enter("txtTimerStart", "1");
  key(Qt::Key_Return, "\r");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  press("cmd(0)");
  EXPECT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(box(1), Messaggio(261));
  EXPECT_EQ(settings(), before);
  EXPECT_NE(form, nullptr);
}

TEST_F(FrmGlobalSettingTimer, Cancel_is_a_way_out_of_a_wrong_field) {
  file("Timer_Start_Mode", "2");
  open(TimerTab);
  enter("txtTimerStart", "1");
  get<QPushButton>("cmd(1)").setFocus();
  letEventsRun();
  press("cmd(1)");
  EXPECT_TRUE(desktop.boxes.empty()) << box();
  EXPECT_EQ(form, nullptr);
}

}  // namespace
}  // namespace tandemize
