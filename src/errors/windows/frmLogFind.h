// The search dialog of the log window.
#pragma once

#include <QPointer>

#include "presentation/windows/Form.h"

class QCheckBox;
class QLineEdit;
class QListWidget;

namespace tandemize {

class frmLogFind : public Form {
 public:
  explicit frmLogFind(QWidget* proprietaria);

  // Names the list to search.
  void Init(QListWidget* Lista);

 private:
  void Cerca();

  QPointer<QListWidget> Lista_;
  QLineEdit* TxtFind_;
  QCheckBox* ChkExact_;
};

// Opens the dialog for a list, above the list's window, or activates it if it is open. It ends with that
// window.
void MostrafrmLogFind(QListWidget& Lista);

}  // namespace tandemize
