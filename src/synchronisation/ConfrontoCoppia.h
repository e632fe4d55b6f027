// The comparison of one pair of paths: the rules that turn the steps of the merge into operations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "errors/ModuloGestioneErrori.h"
#include "synchronisation/AggiungiOperazione.h"
#include "synchronisation/Confronto.h"
#include "synchronisation/CrcAnticipati.h"
#include "synchronisation/Fusione.h"

namespace tandemize {

class ConfrontoCoppia {
 public:
  // Columns `a` and `b`, of which a is the source side. Counters of both are brought up to date.
  ConfrontoCoppia(Confronto& confronto, FinestraOperazione& proprietaria, Operazioni& operazioni,
                  std::vector<ContatoriUnita>& contatori, std::size_t a, std::size_t b)
      : confronto_(confronto),
        proprietaria_(proprietaria),
        operazioni_(operazioni),
        contatori_(contatori),
        a_(a),
        b_(b) {}

  // To be called with the steps that come next, in their order, before they are carried out.
  void Annuncia(const std::vector<PassoFusione>& passi);
  // Carries out one step.
  void Esegui(const PassoFusione& passo);

 private:
  // What is compared: the greater value wins, equal ones leave both files alone.
  struct Valori {
    double x = 0, y = 0;
    MotivoOperazione motivo = MotivoOperazione::Nessuno;
  };

  void ConfrontaArray_Per_File_Mancanti(const PassoFusione& passo);
  void ConfrontaArray_Per_Data_Dimensione_CRC32(const PassoFusione& passo);
  void SoloNellaSeconda(RecordFile& record);
  [[nodiscard]] bool CèGià(std::size_t colonna, const RecordFile& record) const;

  static Valori PerData(RecordFile& uno, RecordFile& altro);
  static Valori PerDimensione(const RecordFile& uno, const RecordFile& altro);
  Valori PerTutto(RecordFile& uno, RecordFile& altro);
  Valori PerCrcSeServe(RecordFile& uno, RecordFile& altro);
  Valori PerCrc(const PassoFusione& passo);
  static bool HaCrc(const PassoFusione& passo);
  [[nodiscard]] bool ChiederàCrc(const PassoFusione& passo) const;
  [[nodiscard]] RisultatoCRC CrcDi(const RecordFile& record);
  void Decidi(const Valori& valori, const RecordFile& uno, const RecordFile& altro);
  void SegnaCrcFallito(RecordFile& record);

  Confronto& confronto_;
  FinestraOperazione& proprietaria_;
  Operazioni& operazioni_;
  std::vector<ContatoriUnita>& contatori_;
  std::size_t a_, b_;
  CrcAnticipati crc_;
};

}  // namespace tandemize
