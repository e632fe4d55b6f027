// The button that stops an engine's operation.
#pragma once

#include <QPushButton>

namespace tandemize {

class BottoneAnnulla : public QPushButton {
 public:
  // `form` is the name of the engine's window.
  BottoneAnnulla(const char* nome, const char* form, QWidget* parent);

  // A click, and what the window's closing comes to: asks whether to stop. While the question is up, and once
  // it was answered with yes, asking again does nothing. The question lets events run, in which this object
  // may go.
  void Chiedi();

 private:
  const char* form_;
  bool chiede_ = false;
};

}  // namespace tandemize
