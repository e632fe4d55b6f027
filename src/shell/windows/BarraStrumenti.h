// The toolbar of the main window: six buttons that act as menu entries, and, on a desktop without a
// notification area, one that stands for the icon there.
#pragma once

#include <QToolBar>
#include <array>
#include <functional>

class QAction;
class QMenu;
class QToolButton;

namespace tandemize {

class BarraStrumenti : public QToolBar {
 public:
  static constexpr int NumeroBottoni = 6;

  // `premuto` gets the number of the button.
  BarraStrumenti(QWidget* parent, const std::function<void(int)>& premuto, QMenu* menuTray);

  void Didascalie(const std::array<std::string, NumeroBottoni>& testi, const std::string& testoTray);
  void MostraTray(bool mostra);

 protected:
  void paintEvent(QPaintEvent* evento) override;

 private:
  std::array<QToolButton*, NumeroBottoni> bottoni_{};
  QToolButton* pulsanteTray_ = nullptr;
  QAction* azioneTray_ = nullptr;
};

}  // namespace tandemize
