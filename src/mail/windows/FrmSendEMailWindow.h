// The mail window: how far the sending is, what the server answers, and the button that asks to abort.
#pragma once

#include <QTimer>
#include <string>

#include "mail/FrmSendEMail.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/Ridisegno.h"

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace tandemize {

class FrmSendEMailWindow final : public Form, private VistaPosta {
 public:
  explicit FrmSendEMailWindow(QWidget* proprietaria);

 protected:
  bool QueryUnload() override;
  // The first time it shows, sending starts.
  void showEvent(QShowEvent* evento) override;

 private:
  void Mostra(const StatoPosta& stato) override;
  void Chiudi() override;
  void Disegna();

  FrmSendEMail form_{this};
  StatoPosta stato_;
  Ridisegno ridisegno_;
  QTimer avvio_;
  QLabel* lblStatus_;
  QPlainTextEdit* TxtLog_;
  QProgressBar* ProgBar_;
  QPushButton *CmdInvia_, *CmdAnnulla_;
  std::string disegnate_;   // the replies that TxtLog shows
  bool scaricata_ = false;  // the engine's work is done
};

// From now on the program's mails show this window, modally; while the program is hidden they go without one.
void InstallaFinestraPosta();

}  // namespace tandemize
