// The screen in windows.
#pragma once

#include <QPointer>
#include <functional>
#include <memory>

#include "shell/Schermo.h"

class QWidget;

namespace tandemize {

class FrmFileTransferWindow;
class FrmProgressBarWindow;
class FrmScanWindow;
class frmTrayMessage;

class QtSchermo : public Schermo {
 public:
  QtSchermo();  // becomes the screen in use
  ~QtSchermo() override;

  Risposta MsgBox(std::string_view testo, int stile, std::string_view titolo) override;
  void DoEvents() override;  // a stop signal stops the operation that runs
  void ApriBalloon(const Avviso& avviso) override;
  void ChiudiBalloon() override;
  [[nodiscard]] bool BalloonAperto() const override;
  void MousePointer(Puntatore puntatore) override;
  void Mostra(const StatoScansione& stato) override;
  void Mostra(const StatoAvanzamento& stato) override;
  void Mostra(const StatoTrasferimento& stato) override;
  // While the program is hidden nobody would close it: it then waits, modeless, until the program is shown.
  void MostraElencoErrori(std::string_view testo, std::string_view titolo) override;
  [[nodiscard]] bool LogCaricato() const override;
  void MostraLog() override;
  void RicaricaLog() override;
  void ApriDiagramma() override;
  void FineProgramma(int stato) override;

  // The program is about to end: boxes are answered at once as nobody would, nothing new is shown.
  void InChiusura(bool inChiusura) { inChiusura_ = inChiusura; }
  [[nodiscard]] bool InChiusura() const { return inChiusura_; }

  // What ApriDiagramma does; a box that says so as long as the program has no such window.
  std::function<void()> Diagramma;

 private:
  template <class Finestra, class Stato>
  void MostraFinestra(std::unique_ptr<Finestra>& finestra, const Stato& stato);

  std::unique_ptr<FrmScanWindow> scansione_;
  std::unique_ptr<FrmProgressBarWindow> avanzamento_;
  std::unique_ptr<FrmFileTransferWindow> trasferimento_;
  QPointer<QWidget> balloon_;
  bool puntatoreCambiato_ = false, inChiusura_ = false, arrestoDetto_ = false;
};

}  // namespace tandemize
