// A list of what went wrong, shown at the end of a check.
#pragma once

#include <string_view>

#include "presentation/windows/Form.h"

namespace tandemize {

class ListaRighe;

class FrmBackupErrorLog : public Form {
 public:
  explicit FrmBackupErrorLog(QWidget* proprietaria);

  // Cuts the text at CR into the list's lines (RigheErrore), and sets the caption.
  void Init(std::string_view Testo, std::string_view Titolo);

 private:
  ListaRighe* ListLog_;
};

}  // namespace tandemize
