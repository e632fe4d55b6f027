#include "mail/DomandaAllegato.h"

#include <cmath>
#include <string>

#include "platform/machine.h"
#include "platform/newfile.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"

namespace tandemize {

namespace {

constexpr int StileSìNoAnnullaSenzaIcona = 3;
constexpr double ByteDelMega = 1'048'576;
constexpr std::uint64_t RegistroMassimo = 1'048'576;

bool nonChiedere = false;

std::string ChiaveProgramma() {
  return "HKEY_CURRENT_USER\\Software\\" + TitoloApplicazione + "\\Settings";
}

bool DomandaSpenta() {
  return nonChiedere || platform::registryValue(ChiaveProgramma(), "Too big") == "True";
}

// Of two lines for one value the first holds, so the new one goes to the head of its section. A file that
// cannot be read is left as it is.
void SpegniDomanda() {
  nonChiedere = true;
  const std::string file = PercorsoApplicazione + "Registry.ini";
  std::string testo;
  const platform::ErrorCode errore = platform::readFile(file, testo, RegistroMassimo);
  if (errore != platform::kNoError && errore != platform::kFileNotFound) return;
  const std::string sezione = "[" + ChiaveProgramma() + "]", riga = "Too big=True\r\n";
  const std::size_t inizio = testo.find(sezione);
  const std::size_t fine = inizio == std::string::npos ? inizio : testo.find('\n', inizio);
  if (fine == std::string::npos) {
    if (!testo.empty() && testo.back() != '\n') testo += "\r\n";
    testo += sezione + "\r\n" + riga;
  } else {
    testo.insert(fine + 1, riga);
  }
  static_cast<void>(platform::replaceFile(file, testo));
}

}  // namespace

bool AllegatoAccettato(std::uint64_t byte) {
  if (byte <= AllegatoGrande || DomandaSpenta()) return true;
  const std::string mega = std::to_string(std::lrint(static_cast<double>(byte) / ByteDelMega));
  const Risposta risposta =
      MsgBox("The current file is " + mega +
                 " MB of size, extracting from it could take a few minutes, Click Yes to go ahead, No to "
                 "skip it or Cancel if you don't want to get this message again",
             StileSìNoAnnullaSenzaIcona);
  if (risposta == Risposta::Annulla) SpegniDomanda();
  return risposta != Risposta::No;
}

void AzzeraDomandaAllegato() {
  nonChiedere = false;
}

}  // namespace tandemize
