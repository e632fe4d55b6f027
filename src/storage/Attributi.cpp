#include "shell/Lingua.h"
#include "storage/File_System.h"

namespace tandemize {

namespace {

constexpr int MessaggioCartella = 316, MessaggioCartellaSpeciale = 317;

int messaggioDi(std::int32_t attributes) {
  switch (attributes) {
    case -1:
      return 425;
    case 0:
      return 77;
    case 1:
    case 33:
      return 78;
    case 2:
      return 79;
    case 32:
      return 80;
    case 3:
    case 35:
      return 81;
    case 34:
      return 82;
    case 4:
    case 36:
      return 83;
    case 6:
    case 38:
      return 84;
    case 39:
      return 85;
    case 128:
      return 86;
    case 16:
    case 48:
      return MessaggioCartella;
    case 17:
    case 18:
    case 20:
    case 21:
    case 22:
      return MessaggioCartellaSpeciale;
    default:
      return 67;
  }
}

}  // namespace

std::string DescrizioneAttributi(std::int32_t attributi, bool& isFolder) {
  const int message = messaggioDi(attributi);
  isFolder = message == MessaggioCartella || message == MessaggioCartellaSpeciale;
  return Messaggio(message);
}

}  // namespace tandemize
