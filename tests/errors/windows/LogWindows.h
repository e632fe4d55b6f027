// What tests of the log windows share: a main window with an area for others, a fresh log, and questions to a
// list.
#pragma once

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QWindow>
#include <string>
#include <string_view>
#include <vector>

#include "errors/ModuloLog.h"
#include "errors/windows/FrmLogView.h"
#include "fixtures/windows/Desktop.h"
#include "presentation/windows/Form.h"

// The window system's way for keys, by which those of actions work too; part of the toolkit's library, for
// its own tests.
extern Q_GUI_EXPORT bool qt_handleKeyEvent(QWindow* window, QEvent::Type kind, int key,
                                           Qt::KeyboardModifiers modifiers, const QString& text,
                                           bool repeated, ushort count);

namespace tandemize::test {

using Lines = std::vector<std::string>;

// A key, as the keyboard sends it to the window that a control lies in.
inline void press(const QWidget& control, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  for (const QEvent::Type kind : {QEvent::KeyPress, QEvent::KeyRelease})
    if (QWindow* window = control.window()->windowHandle(); window != nullptr)
      qt_handleKeyEvent(window, kind, key, modifiers, {}, false, 1);
  letEventsRun();
}

inline Lines lines(const QListWidget& list, bool selectedOnly = false) {
  Lines all;
  for (int i = 0; i < list.count(); ++i)
    if (!selectedOnly || list.item(i)->isSelected()) all.push_back(list.item(i)->text().toStdString());
  return all;
}
inline Lines selected(const QListWidget& list) {
  return lines(list, true);
}

// What the clipboard holds under a format's name.
inline std::string clipboard(const char* format) {
  const QMimeData* held = QGuiApplication::clipboard()->mimeData();
  return held == nullptr ? "" : held->data(QLatin1String(format)).toStdString();
}

struct LogWindows : testing::Test {
  LogWindows() : area(new QMdiArea(&main)) {
    main.setCentralWidget(area);
    main.resize(1024, 600);
    ImpostaFinestraPrincipale(&main);
    main.show();
    CreaListaLog();
    QGuiApplication::clipboard()->setText("older");
  }
  ~LogWindows() override {
    ScaricaForm("FrmLogView");
    letEventsRun();
    ImpostaFinestraPrincipale(nullptr);
  }
  LogWindows(const LogWindows&) = delete;
  LogWindows& operator=(const LogWindows&) = delete;

  // Lines without a date.
  static void log(const Lines& texts) {
    ListaLog = texts;
    ListaLog.emplace_back();
  }
  // The open log window and its list.
  static FrmLogView& view() { return *static_cast<FrmLogView*>(window("FrmLogView")); }
  static QListWidget& list() { return *control<QListWidget>(view(), "ListLog"); }
  static QListWidget& openList() {
    MostraFrmLogView();
    letEventsRun();
    return list();
  }

  Desktop desktop;
  QMainWindow main;
  QMdiArea* area;
};

}  // namespace tandemize::test
