// The dialog "Run Backup": type and mode of a run, its options, and the button that starts it. It holds the
// engine FrmBackupChoice, which does the work, until it is closed.
#pragma once

#include <memory>
#include <string>

#include "presentation/windows/Form.h"

namespace tandemize {

class FrmBackupChoice;

class FrmBackupChoiceWindow : public Form {
 public:
  // `motore` has just read the current profile.
  FrmBackupChoiceWindow(QWidget* proprietaria, std::shared_ptr<FrmBackupChoice> motore);
  ~FrmBackupChoiceWindow() override;

  // Whether the engine is at work: a run goes on, and the window is disabled meanwhile; or the question about
  // the diagram is up, or another profile is read.
  [[nodiscard]] bool Occupata() const { return occupata_ || impegnata_; }

  // Ends the engine at once, though the window itself may go later: an engine's end empties the lists that
  // the next one fills.
  void LasciaMotore();

  // The first time, with fewer than two objects, the question about the diagram comes instead; the window
  // closes if it is answered by Yes.
  void setVisible(bool visibile) override;

 protected:
  // While a run goes on: asks whether to stop it. The window stays until the engine is back, and closes then
  // if the run was stopped.
  bool QueryUnload() override;
  void closeEvent(QCloseEvent* evento) override;
  void showEvent(QShowEvent* evento) override;

 private:
  struct Controlli;
  void Collega();
  void AggiornaControlli();
  void PremutoOk();
  void Esegui();
  bool PuoPartire();
  void RileggiProfilo();
  void MostraFiltro();
  void Riabilita();

  // Null once the window is closed. A run holds the engine too, in case that its window is taken away
  // meanwhile.
  std::shared_ptr<FrmBackupChoice> motore_;
  std::unique_ptr<Controlli> controlli_;
  std::string profilo_;  // the file that the engine has read
  bool attivata_ = false, daChiudere_ = false;
  bool occupata_ = false;   // by a run
  bool impegnata_ = false;  // by anything else that lets events run
};

// Opens the dialog, or activates it if it is open. While another operation runs, or an engine that has no
// dialog is loaded, it says so instead: the profile is not to be read anew meanwhile. A profile that cannot
// be read is told, and no dialog opens. The banner of the log is the caller's.
void MostraFrmBackupChoice();

// Whether the dialog is open and its engine is at work (Occupata).
[[nodiscard]] bool FrmBackupChoiceOccupata();

// Unloads the dialog, without a question, if it is open and only waits for its user: to be called when the
// profile has changed, since the dialog would show and run what it has read before.
void ScaricaFrmBackupChoiceInattiva();

}  // namespace tandemize
