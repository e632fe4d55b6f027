// What the program is, who it is registered to, and the way to the desktop's own view of the computer.
#pragma once

#include "presentation/windows/Form.h"

namespace tandemize {

class frmAbout : public Form {
 public:
  explicit frmAbout(QWidget* proprietaria);
};

}  // namespace tandemize
