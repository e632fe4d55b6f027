#include <gtest/gtest.h>

#include "fixtures/ProgramFolder.h"
#include "platform/machine.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

std::string entry(const std::string& number, const std::string& name,
                  const std::string& interval = "2 days") {
  const std::string start = number + "Timer_Adv_";
  return start + "Profile1 = " + name + "\r\n" + start + "Profile2 = C:\\p\\" + name + "\r\n" + start +
         "Date = 01/02/2030\r\n" + start + "Time = 13.30\r\n" + start + "Interval = " + interval + "\r\n";
}

class TimerTest : public ::testing::Test {
 protected:
  std::string load(const std::string& content) {
    folder.home().write("GlobalSetting.dat", content);
    std::string error;
    const bool read = CaricaImpostazioni(error);
    EXPECT_EQ(read, error.empty());
    return error;
  }
  [[nodiscard]] static std::string path() { return PercorsoApplicazione + "GlobalSetting.dat"; }
  // A window in advanced mode with one complete set of fields.
  void openAdvanced() {
    folder.setting("Timer_Start_Mode", "2");
    ASSERT_TRUE(form.Carica());
    form.ScegliTipoTimer(1, [] { return std::string("C:\\p\\Night.cfg"); });
    form.cmbintervallo.Text = "days";
  }
  [[nodiscard]] static std::string today() { return FormattaDataOra(platform::now(), FormatoData); }
  static std::string nothing() { return {}; }
  test::ProgramFolder folder;
  FrmGlobalSetting form;
};

using LeggiTimerAvanzato = TimerTest;
using OptTimer = TimerTest;
using OptTipoTimer = TimerTest;
using ListTimer = TimerTest;

TEST_F(LeggiTimerAvanzato, An_entry_of_five_lines_fills_one_record_and_one_row) {
  folder.home().write("GlobalSetting.dat",
                      "Timer_Start_Type = 1\r\n" + entry("1", "Night.cfg", "12  settimane"));
  ASSERT_TRUE(form.Carica());
  ASSERT_EQ(TimerAdvList.size(), 2U);
  EXPECT_EQ(TimerAdvList[1],
            (TimerAvanzato{"Night.cfg", "C:\\p\\Night.cfg", "01/02/2030", "13.30", 12, "settimane"}));
  ASSERT_EQ(form.ListTimer.size(), 1U);
  EXPECT_EQ(form.ListTimer[0],
            (RigaTimer{"Night.cfg", "C:\\p\\Night.cfg", "01/02/2030", "13.30", "12 settimane"}));
}

TEST_F(LeggiTimerAvanzato, A_second_read_does_not_add_to_the_first) {
  EXPECT_EQ(load(entry("1", "a") + entry("2", "b")), "");
  EXPECT_EQ(load(entry("1", "a") + entry("2", "b")), "");
  EXPECT_EQ(TimerAdvList.size(), 3U);
}

TEST_F(LeggiTimerAvanzato, A_tenth_timer_is_written_but_not_read_back) {
  openAdvanced();
  for (int i = 0; i < 10; ++i) {
    form.ImpostaProfilo("C:\\p\\x.cfg");
    form.txtData.Text = "01/02/2030";
    form.TxtOra.Text = "13.30";
    form.TxtIntervallo.Text = "1";
    form.cmbintervallo.Text = "days";
    form.AggiungiTimer();
  }
  ASSERT_EQ(form.ListTimer.size(), 10U);
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_NE(folder.home().read("GlobalSetting.dat").find("10Timer_Adv_Profile1 = x.cfg\r\n"),
            std::string::npos);
  std::string error;
  ASSERT_TRUE(CaricaImpostazioni(error)) << error;
  EXPECT_EQ(TimerAdvList.size(), 10U);
}

TEST_F(LeggiTimerAvanzato, Only_the_first_two_characters_of_the_interval_are_its_number) {
  EXPECT_EQ(load(entry("1", "a", "1 m") + entry("2", "b", "100 days")), "");
  EXPECT_EQ(TimerAdvList.at(1).IntervalNumber, 1);
  EXPECT_EQ(TimerAdvList.at(1).IntervalKind, "m");
  EXPECT_EQ(TimerAdvList.at(2).IntervalNumber, 10);
  EXPECT_EQ(TimerAdvList.at(2).IntervalKind, "0 days");
}

TEST_F(LeggiTimerAvanzato, An_interval_without_a_number_is_told_with_its_line_and_key) {
  const std::string error = load("Email_Action = 0\r\n" + entry("3", "a", "days"));
  EXPECT_NE(error.find("riga 6,"), std::string::npos) << error;
  EXPECT_NE(error.find("'3Timer_Adv_Interval'"), std::string::npos) << error;
}

TEST_F(LeggiTimerAvanzato, A_comma_cuts_a_value_and_the_rest_of_the_entry_is_still_read) {
  EXPECT_EQ(load(entry("1", "a,b.cfg") + entry("2", "c")), "");
  ASSERT_EQ(TimerAdvList.size(), 3U);
  EXPECT_EQ(TimerAdvList[1], (TimerAvanzato{"a", "C:\\p\\a", "01/02/2030", "13.30", 2, "days"}));
  EXPECT_EQ(TimerAdvList[2].Profile1, "c");
}

TEST_F(LeggiTimerAvanzato, An_entry_that_ends_with_the_file_is_told) {
  EXPECT_NE(load("1Timer_Adv_Profile1 = a"), "");
}

TEST_F(LeggiTimerAvanzato, During_a_timed_run_the_list_in_use_stays_and_no_row_is_lost) {
  ASSERT_EQ(load(entry("1", "a")), "");
  PartenzaAutomaticaAttiva = true;
  folder.home().write("GlobalSetting.dat", "Timer_Start_Type = 1\r\n" + entry("1", "b") + entry("2", "c"));
  ASSERT_TRUE(form.Carica());
  EXPECT_EQ(TimerAdvList.size(), 2U);
  EXPECT_EQ(TimerAdvList.at(1).Profile1, "a");
  EXPECT_EQ(form.ListTimer.size(), 2U);
}

TEST_F(OptTimer, A_run_fills_the_empty_standard_fields) {
  for (const int member : {1, 2}) {
    FrmGlobalSetting window;
    ASSERT_TRUE(window.Carica());
    window.ScegliTimer(member);
    EXPECT_EQ(window.comboTimer.Text, Messaggio(267));
    EXPECT_EQ(window.txtTimerInterval.Text, "1");
    EXPECT_EQ(window.txtTimerStart.Text, "13.30");
    EXPECT_EQ(window.TxtTimerStartDate.Text, today());
    EXPECT_TRUE(window.txtTimerStart.Enabled);
  }
}

TEST_F(OptTimer, A_run_keeps_standard_fields_that_are_filled) {
  ASSERT_TRUE(form.Carica());
  form.txtTimerStart.Text = "07.00";
  form.ScegliTimer(1);
  EXPECT_EQ(form.txtTimerStart.Text, "07.00");
}

TEST_F(OptTimer, No_run_empties_and_disables_the_standard_fields) {
  ASSERT_TRUE(form.Carica());
  form.ScegliTimer(1);
  form.ScegliTimer(0);
  EXPECT_EQ(form.comboTimer.Text, "");
  EXPECT_FALSE(form.comboTimer.Enabled);
  for (const CasellaTesto* box : {&form.txtTimerInterval, &form.txtTimerStart, &form.TxtTimerStartDate}) {
    EXPECT_EQ(box->Text, "");
    EXPECT_FALSE(box->Enabled);
  }
}

TEST_F(OptTimer, The_combos_offer_hours_days_weeks_and_months) {
  ASSERT_TRUE(form.Carica());
  EXPECT_EQ(form.comboTimer.Elementi,
            (std::vector<std::string>{Messaggio(184), Messaggio(267), Messaggio(268), Messaggio(269)}));
  EXPECT_EQ(form.cmbintervallo.Elementi, form.comboTimer.Elementi);
}

TEST_F(OptTipoTimer, Advanced_disables_the_standard_fields_asks_for_a_profile_and_proposes_the_rest) {
  folder.setting("Timer_Start_Mode", "2");
  ASSERT_TRUE(form.Carica());
  form.ScegliTipoTimer(1, [] { return std::string("C:\\My profiles\\Night.cfg"); });
  EXPECT_FALSE(form.txtTimerStart.Enabled);
  EXPECT_EQ(form.txtTimerStart.Text, "");
  EXPECT_EQ(form.txtProfilo.Text, "Night.cfg");
  EXPECT_EQ(form.txtProfiloTag, "C:\\My profiles\\Night.cfg");
  EXPECT_EQ(form.txtData.Text, today());
  EXPECT_EQ(form.TxtOra.Text, "13.30");
  EXPECT_EQ(form.TxtIntervallo.Text, "1");
}

TEST_F(OptTipoTimer, Advanced_with_a_profile_entered_asks_nothing) {
  form.ImpostaProfilo("C:\\a.cfg");
  bool asked = false;
  form.ScegliTipoTimer(1, [&] {
    asked = true;
    return std::string();
  });
  EXPECT_FALSE(asked);
  EXPECT_EQ(form.txtProfilo.Text, "a.cfg");
}

TEST_F(OptTipoTimer, Standard_empties_the_list_and_brings_the_standard_fields_back) {
  openAdvanced();
  form.AggiungiTimer();
  form.ScegliTipoTimer(0, nothing);
  EXPECT_TRUE(form.ListTimer.empty());
  EXPECT_EQ(form.txtProfilo.Text, "");
  EXPECT_EQ(form.txtTimerStart.Text, "13.30");
  EXPECT_TRUE(form.txtTimerStart.Enabled);
}

TEST_F(OptTipoTimer, Loading_an_advanced_window_asks_for_no_profile_and_keeps_the_list) {
  folder.home().write("GlobalSetting.dat",
                      "Timer_Start_Mode = 2\r\nTimer_Start_Type = 1\r\n" + entry("1", "a"));
  ASSERT_TRUE(form.Carica());
  EXPECT_EQ(form.ListTimer.size(), 1U);
  EXPECT_EQ(form.txtTimerStart.Text, "");
  EXPECT_FALSE(form.txtTimerStart.Enabled);
  EXPECT_FALSE(form.Modificato());
}

TEST_F(ListTimer, Adding_makes_a_row_of_the_fields_and_clears_them) {
  openAdvanced();
  form.AggiungiTimer();
  ASSERT_EQ(form.ListTimer.size(), 1U);
  EXPECT_EQ(form.ListTimer[0], (RigaTimer{"Night.cfg", "C:\\p\\Night.cfg", today(), "13.30", "1 days"}));
  EXPECT_EQ(form.txtProfilo.Text, "");
  EXPECT_EQ(form.cmdListAbilitato, (std::array<bool, 3>{true, false, false}));
}

TEST_F(ListTimer, A_field_that_is_missing_is_told_and_nothing_happens) {
  const std::function<void(FrmGlobalSetting&)> gaps[] = {
      [](FrmGlobalSetting& f) { f.txtProfilo.Text.clear(); },
      [](FrmGlobalSetting& f) { f.txtData.Text.clear(); },
      [](FrmGlobalSetting& f) { f.TxtOra.Text.clear(); },
      [](FrmGlobalSetting& f) { f.cmbintervallo.Text.clear(); },
      [](FrmGlobalSetting& f) { f.TxtIntervallo.Text = "x"; },
      [](FrmGlobalSetting& f) { f.TxtIntervallo.Text = "100"; },
  };
  openAdvanced();
  for (const auto& gap : gaps) {
    FrmGlobalSetting window = form;
    folder.screen.boxes.clear();
    gap(window);
    window.AggiungiTimer();
    EXPECT_TRUE(window.ListTimer.empty());
    ASSERT_EQ(folder.screen.boxes.size(), 1U);
    EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(452));
  }
}

TEST_F(ListTimer, A_click_on_a_row_copies_it_into_the_fields) {
  openAdvanced();
  form.TxtIntervallo.Text = "12";
  form.AggiungiTimer();
  form.SelezionaTimer(0);
  EXPECT_EQ(form.txtProfilo.Text, "Night.cfg");
  EXPECT_EQ(form.txtProfiloTag, "C:\\p\\Night.cfg");
  EXPECT_EQ(form.TxtIntervallo.Text, "12");
  EXPECT_EQ(form.cmbintervallo.Text, "days");
  EXPECT_EQ(form.cmdListAbilitato, (std::array<bool, 3>{true, true, true}));
}

TEST_F(ListTimer, The_selected_row_is_replaced_or_removed_and_without_one_nothing_happens) {
  openAdvanced();
  form.AggiungiTimer();
  form.RimuoviTimer();
  form.SostituisciTimer();
  form.SelezionaTimer(5);
  ASSERT_EQ(form.ListTimer.size(), 1U);
  form.SelezionaTimer(0);
  form.TxtOra.Text = "09.00";
  form.SostituisciTimer();
  EXPECT_EQ(form.ListTimer.at(0).Ora, "09.00");
  form.SelezionaTimer(0);
  form.RimuoviTimer();
  EXPECT_TRUE(form.ListTimer.empty());
}

TEST_F(ListTimer, A_row_that_is_not_saved_counts_as_a_change_and_outlives_the_comparison) {
  openAdvanced();
  ASSERT_EQ(form.SaveFileGlobal(path()), platform::kNoError);
  EXPECT_FALSE(form.Modificato());
  form.ImpostaProfilo("C:\\p\\x.cfg");
  form.txtData.Text = form.TxtOra.Text = "x";
  form.TxtIntervallo.Text = "1";
  form.cmbintervallo.Text = "days";
  form.AggiungiTimer();
  EXPECT_TRUE(form.Modificato());
  EXPECT_EQ(form.ListTimer.size(), 1U);
}

TEST_F(OptTimer, The_time_is_not_left_before_it_is_one_and_the_box_says_so) {
  folder.setting("Timer_Start_Mode", "2");
  ASSERT_TRUE(form.Carica());
  for (const char* text : {"", "9.05", "13.3", "24.00", "aa.bb", "13:30"}) {
    folder.screen.boxes.clear();
    form.txtTimerStart.Text = text;
    EXPECT_FALSE(form.LasciaOraTimer()) << text;
    ASSERT_EQ(folder.screen.boxes.size(), 1U);
    EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(261));
  }
  folder.screen.boxes.clear();
  form.txtTimerStart.Text = "09.05";
  EXPECT_TRUE(form.LasciaOraTimer());
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(OptTimer, The_date_is_not_left_before_it_is_one_and_the_box_tells_the_form) {
  folder.setting("Timer_Start_Mode", "2");
  ASSERT_TRUE(form.Carica());
  FormatoData = "dd/mm/yyyy";
  for (const char* text : {"", "31/02/2030", "tomorrow", "12/25/2030"}) {
    folder.screen.boxes.clear();
    form.TxtTimerStartDate.Text = text;
    EXPECT_FALSE(form.LasciaDataTimer()) << text;
    ASSERT_EQ(folder.screen.boxes.size(), 1U);
    EXPECT_EQ(folder.screen.boxes[0].text, Messaggio(406) + " dd/mm/yyyy");
  }
  folder.screen.boxes.clear();
  form.TxtTimerStartDate.Text = "28/2/2030";
  EXPECT_TRUE(form.LasciaDataTimer());
  EXPECT_TRUE(folder.screen.boxes.empty());
}

TEST_F(OptTimer, Fields_that_are_disabled_are_not_judged) {
  ASSERT_TRUE(form.Carica());
  form.ScegliTimer(0);
  EXPECT_TRUE(form.LasciaOraTimer());
  EXPECT_TRUE(form.LasciaDataTimer());
}

TEST_F(OptTimer, The_interval_takes_one_digit_and_that_of_an_advanced_entry_anything) {
  EXPECT_EQ(form.txtTimerInterval.MaxLength, 1);
  EXPECT_TRUE(form.txtTimerInterval.SoloNumeri);
  EXPECT_EQ(form.TxtIntervallo.MaxLength, 0);
  EXPECT_FALSE(form.TxtIntervallo.SoloNumeri);
}

TEST(OraValida, Takes_two_digits_a_point_and_two_digits_of_a_time) {
  for (const char* good : {"00.00", "13.30", "23.59", "09.05"}) EXPECT_TRUE(OraValida(good)) << good;
  for (const char* bad : {"", "9.05", "24.00", "12.60", "12:30", "1a.30", "12.3", "012.30"})
    EXPECT_FALSE(OraValida(bad)) << bad;
}

}  // namespace
}  // namespace tandemize
