#include <algorithm>

#include "synchronisation/FrmScan.h"

namespace tandemize {

namespace {

constexpr int DifferenzeAmmesse = 3;

// One character of UTF-8, or one byte that belongs to none.
std::string_view PrimoCarattere(std::string_view testo) {
  std::size_t lunghezza = 1;
  while (lunghezza < testo.size() && lunghezza < 4 &&
         (static_cast<unsigned char>(testo[lunghezza]) & 0xC0U) == 0x80U)
    ++lunghezza;
  return testo.substr(0, lunghezza);
}

// `uno` takes the names of `altro` if its own path does not end in its own name.
void Riconcilia(RecordFile& uno, const RecordFile& altro) {
  if (!uno.Percorso().ends_with(uno.Nome())) uno.PrendiNomi(altro);
}

void CorreggiRiga(RecordFile& uno, RecordFile& altro) {
  if (uno.Dimensione != altro.Dimensione) return;
  const std::string nome = uno.Nome(), altroNome = altro.Nome();
  if (nome == altroNome || !NomiSimili(nome, altroNome)) return;
  Riconcilia(uno, altro);
  Riconcilia(altro, uno);
}

}  // namespace

bool NomiSimili(std::string_view uno, std::string_view altro) {
  int differenze = 0;
  while (!uno.empty() && !altro.empty() && differenze <= DifferenzeAmmesse) {
    const std::string_view a = PrimoCarattere(uno), b = PrimoCarattere(altro);
    if (a != b) ++differenze;
    uno.remove_prefix(a.size());
    altro.remove_prefix(b.size());
  }
  return uno.empty() && altro.empty() && differenze <= DifferenzeAmmesse;
}

// A path straight from a folder ends in its name, so nothing changes for it: this is the place where names
// that a server reports differently are reconciled.
void CorreggiNomiSimili(TabellaScansione& tabella) {
  for (std::size_t c = 0; c + 1 < tabella.Colonne(); c += 2) {
    const std::size_t righe = std::min(tabella.Righe(c), tabella.Righe(c + 1));
    for (std::size_t r = 0; r < righe; ++r) CorreggiRiga(tabella.Riga(c, r), tabella.Riga(c + 1, r));
  }
}

}  // namespace tandemize
