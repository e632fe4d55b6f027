// Fields that are judged when the focus leaves them: one that does not pass gets the focus back.
#pragma once

#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <functional>
#include <vector>

namespace tandemize {

class UscitaCampi : public QObject {
 public:
  // `torna` brings a field that did not pass back into sight. `esente` is where the focus may go without a
  // check, the button that drops everything.
  UscitaCampi(QWidget* finestra, std::function<void(const QWidget&)> torna);
  void Esenta(QWidget* esente) { esente_ = esente; }

  // `verifica` shows what is wrong and gives false if the field may not be left.
  void Sorveglia(QLineEdit* campo, std::function<bool()> verifica);

  // Judges the field that was left just now, or that has the focus; true if it passes, or if there is none.
  // For what acts on the fields while the focus may still be in one of them.
  bool Verifica();

 protected:
  bool eventFilter(QObject* oggetto, QEvent* evento) override;

 private:
  struct Sorvegliato {
    QLineEdit* campo;
    std::function<bool()> verifica;
  };
  [[nodiscard]] const Sorvegliato* Cerca(const QObject* oggetto) const;
  void Lasciato(QLineEdit* campo);

  QWidget* finestra_;
  std::function<void(const QWidget&)> torna_;
  QPointer<QWidget> esente_;
  std::vector<Sorvegliato> campi_;
  QPointer<QLineEdit> lasciato_;
};

}  // namespace tandemize
