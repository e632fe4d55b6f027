// A label of one line whose width never depends on its text: what does not fit is left out, and told by the
// tool tip. So a window does not change its size while names go by.
#pragma once

#include <QLabel>

namespace tandemize {

class EtichettaElisa : public QLabel {
 public:
  // `dove`: where the text is cut, in the middle for paths, so that drive and file name stay.
  EtichettaElisa(const char* nome, Qt::TextElideMode dove, QWidget* parent = nullptr);

  // `text` stays the whole text, whatever of it is seen.
  void Mostra(const QString& testo);
  [[nodiscard]] bool Intera() const;  // the whole text is seen

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* evento) override;
  bool event(QEvent* evento) override;

 private:
  Qt::TextElideMode dove_;
};

}  // namespace tandemize
