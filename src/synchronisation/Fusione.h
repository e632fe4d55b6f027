// The merge of two sorted columns, step by step. It only looks at names; what a step means is the caller's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "synchronisation/ChiaviColonna.h"
#include "synchronisation/RecordFile.h"

namespace tandemize {

struct PassoFusione {
  enum class Tipo : std::uint8_t { SoloNellaPrima, SoloNellaSeconda, InEntrambe } tipo;
  // Only one column has a name of this case, but the other has had others that differ from it in case alone.
  bool soloPerMaiuscole;
  std::uint32_t prima, seconda;  // rows; one means nothing when the step has no row of its column
};

struct ColonnaOrdinata {
  const TabellaScansione& tabella;
  std::size_t colonna;
  const ChiaviColonna& chiavi;
};

// Names are the same file for the merge when they are equal in upper case. A host that tells letter case
// apart can hold several such names; where a column does, equal names pair first, then what is left pairs one
// by one in its order, and the surplus of one column is in that column only.
class Fusione {
 public:
  Fusione(ColonnaOrdinata prima, ColonnaOrdinata seconda) : prima_(prima), seconda_(seconda) {}

  // The next step; false when both columns are at their end.
  [[nodiscard]] bool Prossimo(PassoFusione& passo);

 private:
  using Righe = std::vector<std::uint32_t>;

  [[nodiscard]] PassoFusione PassoSemplice();
  void PreparaGruppo();
  static Righe RigheDelGruppo(const ColonnaOrdinata& colonna, std::uint32_t& posizione);
  void AccoppiaUguali(Righe& prime, Righe& seconde);

  ColonnaOrdinata prima_, seconda_;
  std::uint32_t posizionePrima_ = 0, posizioneSeconda_ = 0;
  std::vector<PassoFusione> gruppo_;  // steps that were worked out together
  std::size_t prossimoDelGruppo_ = 0;
};

}  // namespace tandemize
