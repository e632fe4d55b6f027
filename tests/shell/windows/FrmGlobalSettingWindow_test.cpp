#include "shell/windows/FrmGlobalSettingWindow.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QSet>
#include <filesystem>

#include "errors/ModuloGestioneErrori.h"
#include "fixtures/windows/CutText.h"
#include "mail/FrmSendEMail.h"
#include "presentation/windows/Form.h"
#include "shell/windows/GlobalSettingTest.h"

namespace tandemize {
namespace {

using test::GlobalSettingTest;
using test::letEventsRun;

constexpr const char* Name = "FrmGlobalSetting";

struct Options {
  const char *key, *array;
  int members;
};
// The start with the PC is loaded like the others, but overruled by each save.
const Options AllOptions[] = {{"StartUp_Pr_Mode", "OptStartPg", 3},
                              {"StartUp_PC_Mode", "OptStartPC", 3},
                              {"Log_Update_Mode", "OptLogUpdate", 2},
                              {"Log_Show_Window", "OptLogWindow", 3},
                              {"Errors_Alert_Mode", "OptErrors", 2},
                              {"Errors_Correction", "OptErrorCorrection", 2},
                              {"Email_Action", "OptEmail", 2},
                              {"Timer_Start_Mode", "OptTimer", 3},
                              {"Timer_Backup_Type", "OptTimerBackup", 3},
                              {"Timer_Start_Type", "OptTipoTimer", 2},
                              {"Global_Advance_Buf_Mode", "OptAdvBuffer", 2},
                              {"Language", "OptLanguage", 2}};

struct Value {
  const char *key, *control, *value;
};
const Value AllTexts[] = {
    {"Log_Max_File_Size", "TxtLog", "4321"},          {"Errors_Repeat", "txtErrorRepeat", "17"},
    {"Errors_Seconds", "TxtErrorSeconds", "29"},      {"Email_Smtp", "txtEmailSmtp", "mail.example.org:2525"},
    {"Email_Email", "txtEmail", "anna@example.org"},  {"Timer_Interval_Number", "txtTimerInterval", "7"},
    {"Timer_Start_Time", "txtTimerStart", "06.45"},   {"Timer_Start_Date", "TxtTimerStartDate", "28/02/2031"},
    {"Advance_Buf_Local", "txtBufferLocal", "12345"}, {"Advance_Buf_Lan", "txtBufferLan", "23456"},
    {"Advance_Buf_FTP", "txtBufferFtp", "345"}};
const Value AllChecks[] = {{"Errors_Try_Next", "ChkErrors", ""},
                           {"Advance_ShutDownAll", "ChkShutdownAll", ""},
                           {"Advance_ShutDownLocal", "ChkShutdownLocal", ""},
                           {"Help_ToolTip", "ChkHelpToolTip", ""},
                           {"Help_Suggest", "ChkHelpSuggest", ""},
                           {"Help_TipMessage", "ChkHelpTipMessage", ""}};

std::string member(const char* array, int index) {
  return std::string(array) + "(" + std::to_string(index) + ")";
}

class FrmGlobalSettingWindowTest : public GlobalSettingTest {
 protected:
  // Modes in which no field is locked.
  void unlock() {
    file("Timer_Start_Mode", "2");
    file("Global_Advance_Buf_Mode", "1");
  }
  [[nodiscard]] std::string shortcut() const {
    return "config/autostart/" +
           std::filesystem::path(QCoreApplication::applicationFilePath().toStdString()).filename().string() +
           ".desktop";
  }
};

TEST_F(FrmGlobalSettingWindowTest, Shows_each_option_of_the_file_as_the_member_that_is_on) {
  for (const auto& [key, array, members] : AllOptions)
    for (int choice = 0; choice < members; ++choice) {
      file(key, std::to_string(choice));
      open();
      for (int i = 0; i < members; ++i) EXPECT_EQ(on(member(array, i)), i == choice) << key << choice << i;
      EXPECT_EQ(form->findChild<QWidget*>(QString::fromStdString(member(array, members))), nullptr);
      delete form;
    }
}

TEST_F(FrmGlobalSettingWindowTest, Saves_each_option_that_is_clicked) {
  for (const auto& [key, array, members] : AllOptions) {
    if (std::string_view(array) == "OptStartPC") continue;
    for (int choice = members - 1; choice >= 0; --choice) {
      open();
      press(member(array, choice));
      EXPECT_TRUE(on(member(array, choice))) << key << choice;
      press("cmd(0)");
      EXPECT_EQ(form, nullptr);
      EXPECT_EQ(saved(key), std::to_string(choice)) << key;
    }
  }
}

TEST_F(FrmGlobalSettingWindowTest, Shows_and_saves_each_text) {
  unlock();
  for (const auto& [key, control, value] : AllTexts) {
    open();
    enter(control, value);
    EXPECT_EQ(shown(control), value);
    press("cmd(0)");
    EXPECT_EQ(saved(key), value) << key;
    open();
    EXPECT_EQ(shown(control), value) << key;
    delete form;
  }
  EXPECT_TRUE(desktop.boxes.empty()) << box();
}

TEST_F(FrmGlobalSettingWindowTest, Shows_and_saves_each_check_box) {
  for (const auto& [key, control, unused] : AllChecks) {
    file(key, "0");
    for (const bool checked : {true, false}) {
      open();
      EXPECT_EQ(on(control), !checked) << key;
      press(control);
      press("cmd(0)");
      EXPECT_EQ(saved(key), checked ? "1" : "0");
    }
  }
}

TEST_F(FrmGlobalSettingWindowTest, Shows_and_saves_the_word_of_the_interval) {
  unlock();
  for (const int message : {184, 267, 268, 269}) {
    open();
    auto& combo = get<QComboBox>("comboTimer");
    EXPECT_EQ(combo.count(), 4);
    combo.setCurrentText(QString::fromStdString(Messaggio(message)));
    press("cmd(0)");
    EXPECT_EQ(saved("Timer_Interval_Type"), Messaggio(message));
    open();
    EXPECT_EQ(shown("comboTimer"), Messaggio(message));
    delete form;
  }
}

TEST_F(FrmGlobalSettingWindowTest, A_word_of_another_language_is_shown_and_saved_again) {
  unlock();
  file("Timer_Interval_Type", "fortnights");
  open();
  EXPECT_EQ(shown("comboTimer"), "fortnights");
  press("cmd(0)");
  EXPECT_EQ(saved("Timer_Interval_Type"), "fortnights");
}

TEST_F(FrmGlobalSettingWindowTest, A_missing_key_leaves_what_the_window_proposes) {
  desktop.folder.home().write("GlobalSetting.dat", "Language = 0\r\n");
  open();
  EXPECT_EQ(shown("TxtLog"), "100");
  EXPECT_EQ(shown("txtErrorRepeat"), "10");
  EXPECT_EQ(shown("TxtErrorSeconds"), "5");
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(on(member("OptErrors", i)));
}

TEST_F(FrmGlobalSettingWindowTest, An_option_array_without_a_choice_is_saved_as_255) {
  std::string text = settings();
  text.replace(text.find("Email_Action"), 12, "Email_Nothing");
  desktop.folder.home().write("GlobalSetting.dat", text);
  open();
  press("cmd(0)");
  EXPECT_EQ(saved("Email_Action"), "255");
  EXPECT_EQ(saved("Advance_Others"), "255");
  open();
  EXPECT_FALSE(on("OptEmail(0)"));
  EXPECT_FALSE(on("OptEmail(1)"));
}

TEST_F(FrmGlobalSettingWindowTest, Saving_adapts_the_start_with_the_PC_to_the_timer) {
  file("Timer_Start_Mode", "1");
  open();
  press("OptStartPC(0)");
  press("cmd(0)");
  EXPECT_EQ(saved("StartUp_PC_Mode"), "2");
  open(5);
  press("OptTimer(0)");
  press("OptStartPC(1)");
  press("cmd(0)");
  EXPECT_EQ(saved("StartUp_PC_Mode"), "0");
}

TEST_F(FrmGlobalSettingWindowTest, OK_keeps_the_shortcut_that_starts_the_program_in_line) {
  file("Timer_Start_Mode", "2");
  open();
  press("cmd(0)");
  const std::string entry = desktop.folder.work().read(shortcut());
  EXPECT_NE(entry.find("Exec=\"" + QCoreApplication::applicationFilePath().toStdString() + "\""),
            std::string::npos)
      << entry;
  open(5);
  press("OptTimer(0)");
  press("cmd(0)");
  EXPECT_FALSE(desktop.folder.work().exists(shortcut()));
}

TEST_F(FrmGlobalSettingWindowTest, A_shortcut_that_cannot_be_written_is_told_and_the_settings_are_saved) {
  desktop.folder.work().write("config", "a file where the folder should be");
  file("Timer_Start_Mode", "2");
  open();
  enter("TxtLog", "77");
  press("cmd(0)");
  EXPECT_NE(box().find("collegamento"), std::string::npos) << box();
  EXPECT_EQ(form, nullptr);
  EXPECT_EQ(saved("Log_Max_File_Size"), "77");
}

TEST_F(FrmGlobalSettingWindowTest, A_changed_timer_is_told_once_by_OK) {
  open(5);
  press("OptTimer(2)");
  press("cmd(0)");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(box(), Messaggio(408));
  open();
  press("cmd(0)");
  EXPECT_EQ(desktop.boxes.size(), 1U);
}

TEST_F(FrmGlobalSettingWindowTest, Cancel_drops_every_change_without_a_question) {
  file("Ftp_Description0", "Home");
  const std::string before = settings();
  open(4);
  select("ListFtp", 0);
  enter("txtFtpDescription", "Elsewhere");
  enter("TxtLog", "77");
  press("OptLanguage(1)");
  press("cmd(1)");
  EXPECT_EQ(form, nullptr);
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_EQ(settings(), before);
  EXPECT_EQ(FtpServers.at(0).Ftp_Description, "Home");
  EXPECT_EQ(Log_Max_File_Size, 1000);
  EXPECT_EQ(Language, 0);
}

TEST_F(FrmGlobalSettingWindowTest, Closing_without_a_change_asks_nothing) {
  file("Timer_Start_Mode", "1");
  open();
  press("cmd(0)");
  open();
  form->close();
  letEventsRun();
  EXPECT_EQ(form, nullptr);
  EXPECT_TRUE(desktop.boxes.empty()) << box();
}

TEST_F(FrmGlobalSettingWindowTest, Closing_with_changes_asks_and_stays_on_no) {
  desktop.answers = {Risposta::No};
  open();
  enter("TxtLog", "77");
  key(Qt::Key_Escape);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(box(), Messaggio(327));
  EXPECT_EQ(desktop.boxes[0].style, StileSìNo);
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(shown("TxtLog"), "77");
  press("cmd(0)");
  EXPECT_EQ(saved("Log_Max_File_Size"), "77");
}

TEST_F(FrmGlobalSettingWindowTest, Closing_with_changes_drops_them_on_yes) {
  server(0, "Home");
  const std::string before = settings();
  desktop.answers = {Risposta::Sì};
  open(4);
  select("ListFtp", 0);
  enter("txtFtpUser", "somebody");
  form->close();
  letEventsRun();
  EXPECT_EQ(form, nullptr);
  EXPECT_EQ(box(), Messaggio(327));
  EXPECT_EQ(FtpServers.at(0).Ftp_User, "anna");
  EXPECT_EQ(settings(), before);
}

TEST_F(FrmGlobalSettingWindowTest, Every_kind_of_change_counts_as_unsaved) {
  unlock();
  open();
  press("cmd(0)");
  const auto changed = [this](const std::function<void()>& change) {
    desktop.boxes.clear();
    desktop.answers = {Risposta::Sì};
    open();
    change();
    form->close();
    letEventsRun();
    return box() == Messaggio(327);
  };
  EXPECT_FALSE(changed([] {}));
  desktop.answers.clear();
  EXPECT_TRUE(changed([this] { press("OptLogWindow(2)"); }));
  EXPECT_TRUE(changed([this] { press("ChkHelpToolTip"); }));
  EXPECT_TRUE(changed([this] { enter("txtBufferLan", "9"); }));
  EXPECT_TRUE(changed([this] { get<QComboBox>("comboTimer").setCurrentIndex(3); }));
  EXPECT_TRUE(changed([this] { press("cmdFtp(0)"); }));
}

TEST_F(FrmGlobalSettingWindowTest, A_save_that_fails_is_told_the_window_stays_and_the_old_file_stands) {
  const std::string before = settings();
  open();
  enter("TxtLog", "77");
  std::filesystem::remove(desktop.folder.host("GlobalSetting.dat"));
  std::filesystem::create_directories(desktop.folder.host("GlobalSetting.dat/in the way"));
  press("cmd(0)");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].style, StileCritico);
  EXPECT_NE(box().find("GlobalSetting.dat"), std::string::npos);
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(shown("TxtLog"), "77");
  std::filesystem::remove_all(desktop.folder.host("GlobalSetting.dat"));
  desktop.folder.home().write("GlobalSetting.dat", before);
}

TEST_F(FrmGlobalSettingWindowTest, Settings_that_cannot_be_read_are_told_and_the_window_stays_open) {
  desktop.folder.home().write("GlobalSetting.dat", "Errors_Repeat = many\r\n");
  open();
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].style, StileCritico);
  EXPECT_NE(box().find("Errors_Repeat"), std::string::npos);
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(form->isVisible());
}

TEST_F(FrmGlobalSettingWindowTest, An_operation_that_ends_meanwhile_leaves_the_edited_servers_alone) {
  open(4);
  press("cmdFtp(0)");
  bool error = false, stopped = false;
  EXPECT_TRUE(FineOperazione(error, "", stopped));
  EXPECT_EQ(FtpServers.size(), 2U);
  EXPECT_EQ(get<QListWidget>("ListFtp").count(), 1);
}

TEST_F(FrmGlobalSettingWindowTest, The_trial_of_the_mail_saves_reads_back_and_shows_its_window) {
  std::string smtp;
  UsaFinestraPosta([&] { smtp = Email_Smtp; });
  open(3);
  enter("txtEmailSmtp", "mail.example.org");
  press("cmdTest");
  UsaFinestraPosta(nullptr);
  EXPECT_EQ(smtp, "mail.example.org");
  EXPECT_EQ(saved("Email_Smtp"), "mail.example.org");
  EXPECT_TRUE(form->isVisible());
}

TEST_F(FrmGlobalSettingWindowTest, Another_language_is_told_after_it_was_saved_and_rules_the_next_window) {
  std::string title;
  LinguaCambiata = [&] { title = Messaggio(8); };
  open(7);
  const QString before = form->windowTitle();
  press("OptLanguage(1)");
  EXPECT_EQ(title, "");
  press("cmd(0)");
  EXPECT_EQ(title, "Global Settings");
  title.clear();
  open();
  EXPECT_NE(form->windowTitle(), before);
  EXPECT_EQ(form->windowTitle(), "Global Settings");
  press("cmd(0)");
  EXPECT_EQ(title, "");
}

TEST_F(FrmGlobalSettingWindowTest, A_second_showing_brings_the_loaded_window_back) {
  open();
  enter("TxtLog", "77");
  MostraFrmGlobalSetting();
  MostraFrmGlobalSettingModale(SchedaFtpGlobale);
  EXPECT_EQ(shown("TxtLog"), "77");
  EXPECT_EQ(tab(), SchedaFtpGlobale);
  EXPECT_EQ(form->findChild<QListWidget*>("ListFtp"), test::window(Name)->findChild<QListWidget*>("ListFtp"));
}

TEST_F(FrmGlobalSettingWindowTest, Modally_it_opens_at_the_tab_and_returns_when_it_is_closed) {
  int tab = -1;
  desktop.whenShown(Name, [&](QWidget& window) {
    tab = test::control<QTabWidget>(window, "SSTab1")->currentIndex();
    EXPECT_TRUE(window.isModal());
    test::click(*test::control<QPushButton>(window, "cmd(1)"));
  });
  MostraFrmGlobalSettingModale(SchedaFtpGlobale);
  EXPECT_EQ(tab, SchedaFtpGlobale);
  EXPECT_FALSE(FormAperto(Name));
}

TEST_F(FrmGlobalSettingWindowTest, A_date_that_was_moved_meanwhile_shows_and_is_no_reason_to_ask) {
  unlock();
  file("StartUp_PC_Mode", "2");
  open();
  press("cmd(0)");
  open();
  file("Timer_Start_Date", "28/02/2031");
  form->close();
  letEventsRun();
  EXPECT_TRUE(desktop.boxes.empty()) << box();
  EXPECT_EQ(form, nullptr);
}

TEST_F(FrmGlobalSettingWindowTest, The_captions_of_the_start_are_literal_in_English) {
  file("Language", "1");
  open();
  EXPECT_EQ(shown("OptStartPg(0)"), "Start Normally");
  EXPECT_EQ(shown("OptStartPg(1)"), "Run Tandemize");
  EXPECT_EQ(shown("OptStartPg(2)"), "Run Backup");
  EXPECT_EQ(shown("OptStartPC(2)"), "Run at Startup Tray");
}

TEST_F(FrmGlobalSettingWindowTest, Headers_buttons_and_fields_have_access_keys_that_differ_on_each_page) {
  for (const char* language : {"0", "1"}) {
    file("Language", language);
    open();
    QSet<QString> common;
    const auto take = [](QSet<QString>& keys, const QString& caption) {
      const QString key = QKeySequence::mnemonic(caption).toString();
      if (key.isEmpty()) return false;
      EXPECT_FALSE(keys.contains(key)) << caption.toStdString();
      keys.insert(key);
      return true;
    };
    for (const char* button : {"cmd(0)", "cmd(1)"})
      EXPECT_TRUE(take(common, get<QAbstractButton>(button).text()));
    for (int i = 0; i < 9; ++i)
      EXPECT_TRUE(take(common, get<QAbstractButton>(member("PicColTabHeaders", i)).text())) << i;
    for (int i = 0; i < 9; ++i) {
      QSet<QString> keys = common;
      int without = 0, all = 0;
      const QWidget& page = *get<QTabWidget>("SSTab1").widget(i);
      for (const QAbstractButton* button : page.findChildren<QAbstractButton*>())
        if (++all; !take(keys, button->text())) ++without;
      for (const QLabel* label : page.findChildren<QLabel*>())
        if (label->buddy() != nullptr)
          if (++all; !take(keys, label->text())) ++without;
      // Short captions side by side run out of letters.
      EXPECT_LE(without * 5, all * 3) << language << i;
    }
    EXPECT_EQ(shown("lblHeader").find('&'), std::string::npos);
    EXPECT_EQ(test::text(get<QWidget>("lblHeader")).find('&'), std::string::npos);
    delete form;
  }
}

TEST_F(FrmGlobalSettingWindowTest, The_nine_tabs_have_their_captions_and_are_changed_by_mouse_and_keys) {
  open();
  const std::string captions[] = {Messaggio(195), "Log",          Messaggio(196), "E-Mail",      "FTP",
                                  "Timer",        Messaggio(197), Messaggio(198), Messaggio(199)};
  EXPECT_EQ(get<QTabWidget>("SSTab1").count(), 9);
  for (int i = 0; i < 9; ++i) {
    const std::string header = member("PicColTabHeaders", i);
    press(header);
    EXPECT_EQ(tab(), i);
    EXPECT_EQ(shown(header), captions[i]);
    EXPECT_EQ(shown("lblHeader"), captions[i]);
  }
  key(Qt::Key_Tab, "\t", Qt::ControlModifier);
  EXPECT_EQ(tab(), 0);
  key(Qt::Key_PageUp, "", Qt::ControlModifier);
  EXPECT_EQ(tab(), 8);
  press("lblHeader");
  EXPECT_EQ(tab(), 0);
}

TEST_F(FrmGlobalSettingWindowTest, The_buffers_open_for_manual_and_close_for_auto_and_keep_their_numbers) {
  open(6);
  press("OptAdvBuffer(1)");
  enter("txtBufferFtp", "99");
  press("OptAdvBuffer(0)");
  for (const char* field : {"txtBufferLocal", "txtBufferLan", "txtBufferFtp"}) {
    EXPECT_FALSE(enabled(field));
    for (const QLabel* label : form->findChildren<QLabel*>())
      EXPECT_FALSE(label->buddy() == &get<QWidget>(field) && label->isEnabled()) << field;
  }
  press("cmd(0)");
  EXPECT_EQ(saved("Advance_Buf_FTP"), "99");
  EXPECT_EQ(saved("Global_Advance_Buf_Mode"), "0");
}

TEST_F(FrmGlobalSettingWindowTest, Number_fields_take_digits_and_backspace_and_no_more_than_their_length) {
  unlock();
  open();
  const Value fields[] = {{"", "TxtLog", "1234"},          {"", "txtErrorRepeat", "12"},
                          {"", "TxtErrorSeconds", "12"},   {"", "txtTimerInterval", "1"},
                          {"", "txtBufferLocal", "12345"}, {"", "txtBufferLan", "12345"},
                          {"", "txtBufferFtp", "123"}};
  for (const auto& [unused, field, kept] : fields) {
    enter(field, "a1-b2.,c3 4x56789");
    EXPECT_EQ(shown(field), kept) << field;
    auto& edit = get<QLineEdit>(field);
    QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier, QStringLiteral("\b"));
    QApplication::sendEvent(&edit, &backspace);
    EXPECT_EQ(shown(field), std::string(kept).substr(0, std::string_view(kept).size() - 1)) << field;
    edit.clear();
    edit.insert(QStringLiteral("x9"));
    EXPECT_EQ(shown(field), "") << field;
  }
}

TEST_F(FrmGlobalSettingWindowTest, A_letter_is_refused_even_where_the_file_put_one) {
  unlock();
  file("Timer_Interval_Number", "xyz");
  open();
  EXPECT_EQ(shown("txtTimerInterval"), "xyz");
  auto& edit = get<QLineEdit>("txtTimerInterval");
  edit.end(false);
  QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
  QApplication::sendEvent(&edit, &backspace);
  QKeyEvent letter(QEvent::KeyPress, Qt::Key_Q, Qt::NoModifier, QStringLiteral("q"));
  QApplication::sendEvent(&edit, &letter);
  EXPECT_EQ(shown("txtTimerInterval"), "xy");
}

TEST_F(FrmGlobalSettingWindowTest, A_number_longer_than_its_field_is_shown_whole_and_saved_again) {
  file("Log_Max_File_Size", "123456");
  open();
  EXPECT_EQ(shown("TxtLog"), "123456");
  press("cmd(0)");
  EXPECT_EQ(saved("Log_Max_File_Size"), "123456");
}

TEST_F(FrmGlobalSettingWindowTest, A_number_field_that_was_emptied_is_saved_as_zero) {
  open();
  enter("TxtLog", "");
  press("cmd(0)");
  EXPECT_EQ(saved("Log_Max_File_Size"), "0");
}

TEST_F(FrmGlobalSettingWindowTest, Enter_is_OK_and_Escape_closes) {
  open();
  get<QLineEdit>("TxtLog").setFocus();
  enter("TxtLog", "77");
  key(Qt::Key_Return, "\r");
  EXPECT_EQ(form, nullptr);
  EXPECT_EQ(saved("Log_Max_File_Size"), "77");
  open();
  key(Qt::Key_Escape);
  EXPECT_EQ(form, nullptr);
}

TEST_F(FrmGlobalSettingWindowTest, Every_text_has_its_room_on_all_tabs_in_both_languages) {
  for (const char* language : {"0", "1"}) {
    file("Language", language);
    for (const char* mode : {"0", "2"}) {
      file("Timer_Start_Mode", mode);
      open();
      for (int i = 0; i < 9; ++i) {
        form->SelezionaScheda(i);
        letEventsRun();
        EXPECT_EQ(test::cutTexts(*form), std::vector<std::string>()) << language << i;
      }
      delete form;
    }
  }
}

TEST_F(FrmGlobalSettingWindowTest, Each_field_has_a_name_for_those_who_cannot_see_it) {
  open();
  for (const QWidget* control : form->findChildren<QWidget*>()) {
    const bool field = qobject_cast<const QLineEdit*>(control) != nullptr ||
                       qobject_cast<const QComboBox*>(control) != nullptr ||
                       qobject_cast<const QListWidget*>(control) != nullptr ||
                       qobject_cast<const QTreeWidget*>(control) != nullptr;
    if (!field || control->objectName().startsWith("qt_")) continue;
    bool named = !control->accessibleName().isEmpty();
    for (const QLabel* label : form->findChildren<QLabel*>()) named = named || label->buddy() == control;
    EXPECT_TRUE(named) << control->objectName().toStdString();
  }
}

}  // namespace
}  // namespace tandemize
