// The notice: a small balloon near the notification area, drawn by the program itself. One is up at a time.
//
// It never takes the focus by itself, shows while the program is hidden too, and can be closed while a modal
// window waits.
#pragma once

#include <QWidget>
#include <memory>

#include "shell/Schermo.h"

namespace tandemize {

class frmTrayMessage : public QWidget {
 public:
  static constexpr int Larghezza = 312;  // 4680 twips

  frmTrayMessage();
  ~frmTrayMessage() override;  // BalloonCorrente is empty again

  // Fills the balloon and gives it its size, shape and place. `Secondi` of the notice 0: it stays until it is
  // closed. With neither title nor text nothing more than the texts is set, and it will not show. An error
  // here is not passed on: it is told to the log, and the balloon is closed.
  void SetBalloon(const Avviso& avviso);

  // Closes it. It is destroyed when control is back in the event loop; no longer loaded at once.
  void HideBalloon();

  void setVisible(bool visibile) override;

 protected:
  // What SetBalloon does when nothing goes wrong.
  virtual void Riempi(const Avviso& avviso);

  bool event(QEvent* evento) override;
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  bool eventFilter(QObject* oggetto, QEvent* evento) override;
  void keyPressEvent(QKeyEvent* evento) override;
  void hideEvent(QHideEvent* evento) override;
  void closeEvent(QCloseEvent*) override;

 private:
  struct Controlli;
  void Disponi();
  void MostraImmagine(int icona);
  void Dimensiona();
  void Colloca();
  void RoundCorners();
  void SopraIlModale();
  void VerificaForm();
  [[nodiscard]] bool SuChiusura(const QPoint& globale) const;
  bool EventoChiusura(QEvent& evento);
  bool EventoTitolo(QEvent& evento);

  std::unique_ptr<Controlli> controlli_;
  std::string nomeForm_;
  bool caricata_ = true, daMostrare_ = false;
};

}  // namespace tandemize
