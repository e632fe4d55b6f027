// Turning computers off after a run.
#pragma once

#include <string>
#include <string_view>

namespace tandemize {

// Asks that a computer be turned off in `Secondi` seconds, with a message for its users; programs that still
// run then are closed by force. Comes back with the answer, at the latest after some seconds, and keeps
// nothing: the run goes on and shows its end message meanwhile.
//
// `NomePC` may begin with "\\". It is this computer if it is empty or `NomeComputer()`, in whatever letter
// case. Without `Esegui` nothing is asked for, no call leaves the program and the answer is true: the other
// computers of a run are listed this way and left on. With it another computer is refused, also without any
// call.
//
// False if the request failed. It was then told in a box with the number of the failure (in a balloon while
// the program is hidden and nobody would close a box), and the log says why. With TANDEMIZE_POWER=log the
// request is a line of the log and nothing else, and the answer is true.
bool SpegniPC(std::string_view NomePC, bool Esegui = false, int Secondi = 0, std::string_view Messaggio = "");

// For its lifetime the machine's value `forceguest` is "0" if it was "1", and "1" again afterwards. Any other
// value is not touched, and neither is one that the machine does not obey: `scrivi`
// (`platform::setForcedGuest`) then refuses.
class ForceguestSospeso {
 public:
  using Scrittura = bool (*)(std::string_view valore);
  ForceguestSospeso(std::string_view valore, Scrittura scrivi);
  ~ForceguestSospeso();
  ForceguestSospeso(const ForceguestSospeso&) = delete;
  ForceguestSospeso& operator=(const ForceguestSospeso&) = delete;

 private:
  Scrittura scrivi_;
  bool sospeso_;
};

}  // namespace tandemize
