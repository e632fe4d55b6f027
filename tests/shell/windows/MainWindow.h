// The desktop program's main window in a test: made when the test has set what it reads at its start.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QMessageBox>
#include <memory>
#include <string>

#include "fixtures/windows/Desktop.h"
#include "presentation/Avvisi.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/windows/FrmStartWindow.h"

namespace tandemize::test {

class MainWindow : public testing::Test {
 protected:
  MainWindow() {
    desktop.folder.setting("Language", "1");
    // No first window: neither a question at the first activation nor a dialog.
    desktop.folder.setting("StartUp_Pr_Mode", "2");
    make();
  }
  ~MainWindow() override {
    ApplicazioneNascosta = false;
    main.reset();
    letEventsRun();
  }

  void make() {
    main = std::make_unique<FrmStartWindow>(desktop.screen);
    main->Tray().ChiediDisponibile = [this] { return tray; };
    main->FineProgramma = [this] { ++ends; };
  }
  void open() {
    main->Carica();
    main->Apri();
    letEventsRun();
  }
  // As the desktop tells that a window has got the focus.
  void activate() {
    QEvent activated(QEvent::WindowActivate);
    QCoreApplication::sendEvent(main.get(), &activated);
    letEventsRun();
  }
  void deactivate() {
    QEvent deactivated(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(main.get(), &deactivated);
  }

  void choose(const std::string& entry) {
    action(*main, entry)->trigger();
    letEventsRun();
  }
  [[nodiscard]] std::string caption(const std::string& entry) {
    return Testo(action(*main, entry)->text().remove(u'&'));
  }
  [[nodiscard]] const ShownBox& box() const {
    static const ShownBox none{"<no box>", -1};
    return desktop.boxes.empty() ? none : desktop.boxes.back();
  }
  [[nodiscard]] std::size_t boxes() const { return desktop.boxes.size(); }

  Desktop desktop;
  std::unique_ptr<FrmStartWindow> main;
  bool tray = true;  // the desktop has a notification area
  int ends = 0;      // how often the program was to end
};

}  // namespace tandemize::test
