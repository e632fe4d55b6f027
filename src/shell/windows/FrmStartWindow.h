// The main window: menus, toolbar, the icon in the notification area with its menu, and the timers that drive
// the scheduler. All other windows open inside or over it.
//
// The program is hidden when all its windows are; then only the icon shows, and only then do timed runs
// start. On a desktop without a notification area a button of the toolbar stands for the icon, and the hidden
// program keeps its main window minimised, so that the task bar can bring it back.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "presentation/windows/AdvSysTray.h"
#include "shell/FrmStart.h"

class QAction;
class QMenu;

namespace tandemize {

class BarraStrumenti;
class QtSchermo;

class FrmStartWindow : public QMainWindow {
 public:
  explicit FrmStartWindow(QtSchermo& schermo);
  ~FrmStartWindow() override;

  // Puts the icon into the notification area, has the scheduler look at the dates, and lets the timers tick.
  void Carica();
  // Shows the window, or, when the program starts hidden, what stands for it then.
  void Apri();

  // The tray menu's first entry: hides every window, or shows them again as they were.
  void Inverti();
  // Brings the window to the user, hidden or not.
  void Ripristina();
  // Ends the program without a question; what goes on is stopped as the user stops it.
  void Termina();

  [[nodiscard]] FrmStart& Motore() { return motore_; }
  [[nodiscard]] AdvSysTray& Tray() { return tray_; }
  [[nodiscard]] bool PrimaAttivazione() const { return primaAttivazione_; }

  // What ends the program once nothing more is asked: leaves the message loop. A test puts its own here.
  std::function<void()> FineProgramma;

  // What the menus open and the settings name, as windows that this program has or says that it lacks.
  void ApriBackup();
  void ApriSincronizzazione();
  void ApriDiagramma();

 protected:
  bool event(QEvent* evento) override;
  void changeEvent(QEvent* evento) override;
  // The user, or the program's end: asks, and ends the program.
  void closeEvent(QCloseEvent* evento) override;

 private:
  // --- menus (MenuPrincipale.cpp)
  struct Voci {
    QMenu* barra = nullptr;
    std::vector<QAction*> azioni;
  };
  void PreparaMenu();
  QAction* Azione(const QString& nome, std::function<void()> esegui);
  Voci AggiungiMenu(const char* nome, int voci, const std::function<void(int)>& esegui);
  void PreparaMenuPopUp();
  void Didascalie();
  void DidascaliePopUp();
  void AggiornaTitolo();
  void MenuAction_Click(int membro);
  void MenuConfigure_Click(int membro);
  void MenuProfilo_Click(int membro);
  void ToolBar2_Click(int membro);
  void MostraFileDiLog();
  void MostraInformazioni();

  // --- timers and runs (FrmStartWindow.cpp)
  void PreparaTimer();
  void ApplicaTimer();
  void TimerAnimazione_Timer();
  EsitoOperazione EseguiLavoro(std::uint8_t modo);
  void PrimaVolta();

  // --- the hidden state (ProgrammaNascosto.cpp)
  void PreparaTray();
  [[nodiscard]] static bool DomandaAperta();
  void Nascondi();
  void Mostra();
  void ApriMenuTray();
  void TrayCambiata();
  void DiciSenzaTray();

  // --- the end (ChiusuraPrincipale.cpp)
  [[nodiscard]] bool RunDelDialogo() const;
  [[nodiscard]] bool QueryUnload();
  [[nodiscard]] bool ChiudiAltreFinestre();
  void Scarica();

  QtSchermo& schermo_;
  FrmStart motore_;
  AdvSysTray tray_;
  QTimer TimerAutoPartenza_, TimerAnimazione_, timerArresto_, timerSenzaTray_;
  Voci action_, configure_, profilo_, aiuto_, popUp_;
  BarraStrumenti* barra_ = nullptr;
  bool caricata_ = false, primaAttivazione_ = false, chiusa_ = false;
  bool inDomanda_ = false;       // the questions before the end are being asked
  bool inLavoro_ = false;        // a timed run goes on
  bool lasciata_ = false;        // the hidden program's window has lost the focus since it was hidden
  bool senzaTrayDetto_ = false;  // the user knows that there is no notification area
};

}  // namespace tandemize
