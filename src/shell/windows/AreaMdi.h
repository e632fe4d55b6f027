// The middle of the main window: the area of the windows that open inside it, on the program's gradient.
#pragma once

#include <QMdiArea>

namespace tandemize {

class AreaMdi : public QMdiArea {
 public:
  explicit AreaMdi(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* evento) override;
};

}  // namespace tandemize
