#include "shell/Lingua.h"
#include "storage/File_System.h"

namespace tandemize {

namespace {

const std::string& testoDi(std::int32_t attributes) {
  switch (attributes) {
    case -1:
      return Messaggio(425);
    case 0:
      return Messaggio(77);
    case 1:
    case 33:
      return Messaggio(78);
    case 2:
      return Messaggio(79);
    case 32:
      return Messaggio(80);
    case 3:
    case 35:
      return Messaggio(81);
    case 34:
      return Messaggio(82);
    case 4:
    case 36:
      return Messaggio(83);
    case 6:
    case 38:
      return Messaggio(84);
    case 39:
      return Messaggio(85);
    case 128:
      return Messaggio(86);
    case 16:
    case 48:
      return Messaggio(316);
    case 17:
    case 18:
    case 20:
    case 21:
    case 22:
      return Messaggio(317);
    default:
      return Messaggio(67);
  }
}

// Only these values; 19 is a folder's too and none of them.
bool èCartella(std::int32_t attributes) {
  switch (attributes) {
    case 16:
    case 17:
    case 18:
    case 20:
    case 21:
    case 22:
    case 48:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::string DescrizioneAttributi(std::int32_t attributi, bool& isFolder) {
  isFolder = èCartella(attributi);
  return testoDi(attributi);
}

}  // namespace tandemize
