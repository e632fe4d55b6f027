// The log window: a snapshot of ListaLog, taken when it is opened and each time it is activated, with a menu
// to copy lines, select all, and find a text.
#pragma once

#include <QWidget>

class QListWidget;
class QMenu;

namespace tandemize {

class ListaRighe;

class FrmLogView : public QWidget {
 public:
  explicit FrmLogView(QWidget* parent = nullptr);

  // The list's look.
  void AggiornaLavagna();
  // Fills the list from ListaLog, spare element included. Who was at its end sees the newest lines; who had
  // scrolled elsewhere stays there.
  void RiempiLista();
  [[nodiscard]] QListWidget* ListLog() const;

  // The window has become the active one.
  void Attiva();

 protected:
  bool event(QEvent* evento) override;
  void closeEvent(QCloseEvent* evento) override;

 private:
  void PreparaMenu();
  void SeguiFine();

  ListaRighe* ListLog_;
  QMenu* MenuLog_;
  bool allaFine_ = true, inRiempimento_ = false;
};

// Opens the log window inside the main one, or activates it if it is open.
void MostraFrmLogView();

}  // namespace tandemize
