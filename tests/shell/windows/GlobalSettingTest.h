// The settings window over a program folder of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QWindow>
#include <string>
#include <string_view>

#include "fixtures/windows/Desktop.h"
#include "platform/environment.h"
#include "presentation/windows/Form.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/windows/FrmGlobalSettingWindow.h"

// The window system's way for keys, by which those of shortcuts work too; part of the toolkit's library, for
// its own tests.
extern Q_GUI_EXPORT bool qt_handleKeyEvent(QWindow* window, QEvent::Type kind, int key,
                                           Qt::KeyboardModifiers modifiers, const QString& text,
                                           bool repeated, ushort count);

namespace tandemize::test {

class GlobalSettingTest : public testing::Test {
 protected:
  GlobalSettingTest() {
    ScegliFileProfilo = [this] {
      ++profilesAsked;
      return profile;
    };
  }
  ~GlobalSettingTest() override {
    delete form;
    ScegliFileProfilo = dialog_;
    LinguaCambiata = nullptr;
  }

  void file(std::string_view key, std::string_view value) { desktop.folder.setting(key, value); }
  void server(int index, const std::string& description) {
    const std::string n = std::to_string(index);
    file("Ftp_Description" + n, description);
    file("Ftp_Server_Name" + n, "ftp.example.org");
    file("Ftp_User" + n, "anna");
    file("Ftp_Password" + n, "secret");
    file("Ftp_PassiveMode" + n, "1");
  }
  // Adds the five lines of an advanced timer to the file.
  void timer(int number, const std::string& name) {
    const std::string start = std::to_string(number) + "Timer_Adv_";
    append(start + "Profile1 = " + name + "\r\n" + start + "Profile2 = C:\\p\\" + name + "\r\n" + start +
           "Date = 01/02/2030\r\n" + start + "Time = 07.15\r\n" + start + "Interval = 2 " + Messaggio(268) +
           "\r\n");
  }
  void append(const std::string& lines) {
    desktop.folder.home().write("GlobalSetting.dat", settings() + lines);
  }
  [[nodiscard]] std::string settings() { return desktop.folder.home().read("GlobalSetting.dat"); }
  // The value of a key in the file; "(none)" if it has no such line.
  [[nodiscard]] std::string saved(const std::string& key) {
    const std::string text = "\n" + settings(), start = "\n" + key + " = ";
    const std::size_t at = text.find(start);
    if (at == std::string::npos) return "(none)";
    const std::size_t from = at + start.size();
    return text.substr(from, text.find("\r\n", from) - from);
  }

  void open(int tab = 0) {
    MostraFrmGlobalSetting();
    form = dynamic_cast<FrmGlobalSettingWindow*>(test::window("FrmGlobalSetting"));
    ASSERT_NE(form, nullptr);
    QApplication::setActiveWindow(form);
    form->SelezionaScheda(tab);
    letEventsRun();
  }
  template <class Control>
  [[nodiscard]] Control& get(std::string_view name) {
    return *control<Control>(*form, name);
  }
  // Clicks a button, on the tab that it lies on.
  void press(std::string_view name) {
    auto& button = get<QAbstractButton>(name);
    for (int i = 0; !button.isVisible() && i < 9; ++i) form->SelezionaScheda(i);
    letEventsRun();
    click(button);
    letEventsRun();
  }
  void enter(std::string_view name, std::string_view value) { type(get<QLineEdit>(name), value); }
  // A key of the keyboard, to whatever has the focus.
  void key(int code, const char* text = "", Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    for (const QEvent::Type kind : {QEvent::KeyPress, QEvent::KeyRelease})
      if (QWindow* window = form != nullptr ? form->windowHandle() : nullptr; window != nullptr)
        qt_handleKeyEvent(window, kind, code, modifiers, QLatin1String(text), false, 1);
    letEventsRun();
  }
  // Without the mark of an access key.
  [[nodiscard]] std::string shown(std::string_view name) {
    std::string shown = text(get<QWidget>(name));
    if (form->findChild<QAbstractButton*>(QString::fromUtf8(name.data(), int(name.size()))) != nullptr)
      for (std::size_t at = 0; (at = shown.find('&', at)) != std::string::npos; ++at) shown.erase(at, 1);
    return shown;
  }
  [[nodiscard]] bool on(std::string_view name) { return get<QAbstractButton>(name).isChecked(); }
  [[nodiscard]] bool enabled(std::string_view name) { return get<QWidget>(name).isEnabled(); }
  // Has the focus as soon as the window is the active one.
  [[nodiscard]] bool focused(std::string_view name) { return form->focusWidget() == &get<QWidget>(name); }
  [[nodiscard]] int tab() { return get<QTabWidget>("SSTab1").currentIndex(); }
  [[nodiscard]] std::string box(std::size_t index = 0) {
    return index < desktop.boxes.size() ? desktop.boxes[index].text : "(no box)";
  }
  // As a click into a list does it.
  void select(std::string_view list, int row) {
    if (auto* servers = form->findChild<QListWidget*>(QString::fromUtf8(list.data(), int(list.size()))))
      servers->setCurrentRow(row);
    else
      get<QTreeWidget>(list).setCurrentItem(get<QTreeWidget>(list).topLevelItem(row));
    letEventsRun();
  }

  // From now on the real dialog chooses the profile.
  void chooseByDialog() { ScegliFileProfilo = dialog_; }

  Desktop desktop;
  const ScopedVariable config{"XDG_CONFIG_HOME", desktop.folder.work().host("config")};
  QPointer<FrmGlobalSettingWindow> form;
  std::string profile;  // what the choice of a profile gives
  int profilesAsked = 0;

 private:
  std::function<std::string()> dialog_ = ScegliFileProfilo;
};

}  // namespace tandemize::test
