// The program's icon in the notification area of the desktop, and the mouse on it.
//
// The notification area may appear after the program has started, as it does while a session begins, and go
// again: the icon shows whenever it is there.
#pragma once

#include <QIcon>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>
#include <functional>
#include <string>
#include <string_view>

class QMenu;
class QRect;
class QWidget;

namespace tandemize {

// What the mouse does on the icon; the numbers are those of the messages by which a shell tells it.
enum class EventoTray : int {
  SinistroPremuto = 513,
  SinistroRilasciato = 514,
  SinistroDoppio = 515,
  DestroPremuto = 516,
  DestroRilasciato = 517,
  DestroDoppio = 518
};

class AdvSysTray {
 public:
  static constexpr int ShellAttuale = 5;

  // The version of the shell decides how long a tool tip may be.
  explicit AdvSysTray(int versioneShell = ShellAttuale);
  ~AdvSysTray();
  AdvSysTray(const AdvSysTray&) = delete;
  AdvSysTray& operator=(const AdvSysTray&) = delete;

  // Whether the desktop has a notification area at this moment.
  [[nodiscard]] static bool Disponibile();

  [[nodiscard]] int ShellVersion() const { return versioneShell_; }

  [[nodiscard]] const QIcon& Icon() const { return icona_; }
  void Icon(const QIcon& icona);

  // Cut to 127 characters for a shell of version 5 or later, to 63 below that.
  [[nodiscard]] const std::string& ToolTip() const { return toolTip_; }
  void ToolTip(std::string_view testo);

  // Shows the icon, now or as soon as there is a notification area. A second call does nothing.
  void Create(QWidget* Owner);
  void Destroy();
  [[nodiscard]] bool Creata() const { return tray_ != nullptr; }

  // A menu for notification areas that open it by themselves on the right button; not owned, may be null. It
  // is opened by the toolkit then, so what has to be set in it is set on its `aboutToShow`.
  void Menu(QMenu* menu);

  // Where the icon of this process is on the screen; empty where that is not known.
  [[nodiscard]] static QRect Posizione();

  // The six events of the mouse. Any may be empty.
  std::function<void()> SinistroPremuto, SinistroRilasciato, SinistroDoppio;
  std::function<void()> DestroPremuto, DestroRilasciato, DestroDoppio;
  // Raises one of them. For a desktop without a notification area, and for whatever else stands for the icon.
  void Solleva(EventoTray evento) const;
  // What the toolkit tells, as those events: it does not tell pressing from releasing.
  void Attivata(QSystemTrayIcon::ActivationReason ragione) const;

  // The notification area has come or gone; `EDisponibile` tells which. From Create to Destroy only.
  std::function<void()> DisponibilitàCambiata;
  [[nodiscard]] bool EDisponibile() const { return disponibile_; }
  // Looks whether it has. Called by a timer, every second at first, seldom later.
  void VerificaDisponibilità();
  // Who answers; a test may answer itself.
  std::function<bool()> ChiediDisponibile = Disponibile;

 private:
  int versioneShell_;
  QIcon icona_;
  std::string toolTip_;
  QMenu* menu_ = nullptr;
  QPointer<QSystemTrayIcon> tray_;
  QTimer timer_;
  int verifiche_ = 0;
  bool disponibile_ = false;
};

}  // namespace tandemize
