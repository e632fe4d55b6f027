// A list of text lines for the log windows: several can be selected and copied, long ones are reached by
// scrolling, and tens of thousands are shown without a pause.
#pragma once

#include <QListWidget>
#include <QStringList>
#include <array>

namespace tandemize {

class ListaRighe : public QListWidget {
 public:
  // Named "ListLog".
  explicit ListaRighe(QWidget* parent);

  // Arial 8, and the scheme's colours of a log.
  void ImpostaAspetto();

  // Makes the list hold these lines. Those that it holds already, counted from the top, stay as they are,
  // selection included.
  void Riempi(const QStringList& righe);

  // Puts the selected lines in their order, each followed by CR, on the clipboard: under the name of rich
  // text, though they are plain, and as plain text. Without a selection the clipboard is emptied.
  void CopiaSelezione() const;

 protected:
  void changeEvent(QEvent* evento) override;
  // The right button, which asks for the menu, leaves the selection alone.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& riga,
                                                       const QEvent* evento) const override;

 private:
  [[nodiscard]] double Larghezza(const QString& riga);
  void Misura();

  std::array<double, 256> larghezze_{};  // of the first characters; 0: not measured yet
  double massima_ = 0;                   // of the widest line
};

// The margins between a log window and its list: 200 twips at the right, and 500 of the window's height.
void MettiLista(QWidget& finestra, ListaRighe& lista);

}  // namespace tandemize
