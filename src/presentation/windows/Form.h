// What all windows have in common: their name, their closing by a question, their part in the hidden state.
//
// A window is loaded from its making to its end, and named by its `objectName`. While the program is hidden
// (ApplicazioneNascosta) no window shows; what is shown meanwhile appears when the program is shown again.
#pragma once

#include <QDialog>
#include <QString>
#include <string_view>

class QCloseEvent;

namespace tandemize {

class Form : public QDialog {
 public:
  // `nome` is the form's name. Modeless; a top-level window above `proprietaria`.
  explicit Form(const char* nome, QWidget* proprietaria = nullptr);
  ~Form() override;

  // The Escape key: as closing.
  void reject() override;

 protected:
  // The user, or the program's end, closes the window: true if it may close.
  virtual bool QueryUnload() { return true; }
  void closeEvent(QCloseEvent* evento) override;
};

// The main window, owner of all others; null before it is made.
[[nodiscard]] QWidget* FinestraPrincipale();
void ImpostaFinestraPrincipale(QWidget* finestra);

// The loaded top-level window, or window inside the main one, of that name, the newest if there are several;
// null if there is none.
[[nodiscard]] QWidget* FormDiNome(std::string_view nome);
// Whether a window of that name is loaded, or an engine's window that is not displayed.
[[nodiscard]] bool FormAperto(std::string_view nome);
// Closes each window of that name, without a question.
void ScaricaForm(std::string_view nome);

// Shows a window and activates it. While the program is hidden it waits for MostraForm, which centres it if
// it was never shown. Its maker sees to its end, e.g. by Qt::WA_DeleteOnClose; it may have gone when this is
// back.
void Presenta(QWidget& finestra);
// Shows a window modally, and comes back when it is closed.
void PresentaModale(QDialog& finestra);

// The toggle of the tray menu, without the flag: every window vanishes, and comes back as it was. A modal
// window stays, since somebody waits for its answer. `minimizza` leaves the main window to the task bar,
// where nothing else would bring it back. If the program is hidden again while MostraForm is at work, the
// windows that it has not shown yet go on waiting.
void NascondiForm(bool minimizza);
void MostraForm();

// In the middle of its owner, or of the screen. A window that has not set its own size gets that of its
// contents.
void CentraForm(QWidget& finestra);

}  // namespace tandemize
