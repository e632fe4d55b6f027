#include "shell/Desktop.h"

#include <string>

#include "shell/Impostazioni.h"

namespace tandemize {

namespace {

constexpr int FinestraNormale = 1;

std::string_view NomeDi(std::string_view percorso) {
  return percorso.substr(percorso.find_last_of("\\/") + 1);
}

}  // namespace

platform::ErrorCode ApriFile(std::string_view percorso) {
  return platform::openWithDesktop(percorso);
}

platform::ErrorCode ProprietaFile(std::string_view percorso) {
  return platform::showProperties(percorso);
}

platform::ErrorCode CreaCollegamento(std::string_view nome, std::string_view destinazione,
                                     PostoCollegamento posto, std::string_view sottocartella,
                                     std::string_view /*tasti*/, int /*stileFinestra*/) {
  return platform::createShortcut({posto, std::string(sottocartella), std::string(nome)}, destinazione);
}

platform::ErrorCode EliminaCollegamentoAvvio(std::string_view nome) {
  return platform::removeShortcut({PostoCollegamento::startUp, {}, std::string(nome)});
}

platform::ErrorCode AggiornaCollegamentoAvvio(std::string_view programma) {
  const std::string_view nome = NomeDi(programma);
  if (StartUp_PC_Mode == 0) return EliminaCollegamentoAvvio(nome);
  return CreaCollegamento(nome, programma, PostoCollegamento::startUp, {}, {}, FinestraNormale);
}

}  // namespace tandemize
