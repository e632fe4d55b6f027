// Shown while a server is tested: what is going on, and the button that stops it. Nothing else can be used
// meanwhile, as the program has one session for all.
#pragma once

#include <string>

#include "presentation/windows/Form.h"

namespace tandemize {

class AttesaServer : public Form {
 public:
  AttesaServer(const std::string& descrizione, QWidget* proprietaria);

 protected:
  // Asks whether to stop. The window goes when the test ends, so the answer is false in any case.
  bool QueryUnload() override;
};

}  // namespace tandemize
