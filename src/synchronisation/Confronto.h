// The comparison: turns the columns of ArrayScansione into ArrayTrasferimento, the list of things to do, and
// into the rows that the screen shows for each path. It is a merge of two sorted columns at a time, for each
// pair of paths that the mode asks for, and changes no file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "errors/ModuloGestioneErrori.h"
#include "presentation/FrmProgressBar.h"
#include "shell/Schermo.h"
#include "synchronisation/RecordFile.h"

namespace tandemize {

// Values of CompareMethod, TandemMode and FixFileOption.
inline constexpr std::int32_t ConfrontoIntelligente = 0, ConfrontoData = 1, ConfrontoDimensione = 2,
                              ConfrontoCrc = 3;
inline constexpr std::int32_t ModoSingolo = 0, ModoMultiplo = 1;
inline constexpr std::int32_t SoloMancanti = 0, ChiediPrima = 1, CopiaTutto = 2;

// A file of this size or larger is never read for a comparison of the intelligent method.
inline constexpr double DimensioneMassimaCrc = 50001024;

class ChiaviColonna;
class Operazioni;

class Confronto {
 public:
  // The flags ProcessoAnnullato and ErroreInCorso of `proprietaria` are read and set as the window's own.
  explicit Confronto(FinestraOperazione& proprietaria);
  ~Confronto();
  Confronto(const Confronto&) = delete;
  Confronto& operator=(const Confronto&) = delete;

  // Adds up the differences in number of files of columns 0 and 1, 2 and 3, and so on: 1001 to 6999 set
  // MoltiDifferenze, 7001 or more TroppeDifferenze alone, exactly 7000 neither.
  void ContaDifferenze();

  // Sorts each column that holds files by `NomeMaiuscolo`, compared by code value with "\" as separator for
  // every kind of path; names that differ only in case stand in the order of `Nome`. The bar, whose maximum
  // is 100, grows by an equal step for each column. Lets events run, and leaves when the operation is
  // stopped.
  void OrdinaTutteLeUnita(FrmProgressBar& avanzamento);

  // The whole comparison by the profile's variables; the path of a column is its Backup_Path, and a pair that
  // lacks one is passed over. ArrayTrasferimento gets its records behind those that it holds; they need the
  // table no longer. The bar's maximum is 100. Lets events run and tests for a stop after every file; what a
  // stopped comparison leaves in the list is not to be carried out.
  void VisualizzaRapporto(FrmProgressBar& avanzamento);

  // One element a path: where the merge of its last pair ended, and the files that are to be added to the
  // path and replaced in it.
  [[nodiscard]] const std::vector<ContatoriUnita>& Contatori() const { return contatori_; }

  bool ErroreCrc = false;         // a CRC failed
  bool TroppeDifferenze = false;  // no icons at all in the rows
  bool MoltiDifferenze = false;   // rows share the icon of their extension

 private:
  struct Coppia {
    std::size_t a, b;  // columns; a is the source side
  };

  void OrdinaUnita(std::size_t colonna);
  void PreparaChiavi();
  [[nodiscard]] std::vector<Coppia> Coppie() const;
  void ConfrontaCoppia(const Coppia& coppia, Operazioni& operazioni, FrmProgressBar& avanzamento,
                       double& base);
  [[nodiscard]] double TotaleAvanzamento() const;
  void ControllaSomme(const std::vector<Coppia>& coppie) const;

  FinestraOperazione& proprietaria_;
  std::vector<ContatoriUnita> contatori_;
  std::vector<std::unique_ptr<ChiaviColonna>> chiavi_;
};

// Whether two files count as of the same date: their texts are equal, or they are at most 2 seconds apart. A
// record without a date has it read again through its path, and keeps it.
[[nodiscard]] bool DateUguali(RecordFile& uno, RecordFile& altro);

}  // namespace tandemize
