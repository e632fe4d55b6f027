// The scan: walks paths into ArrayScansione, one column a path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "errors/ModuloGestioneErrori.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/Unita.h"
#include "synchronisation/RecordFile.h"

namespace tandemize {

// Full path of the file that a scan looked at last, for error reports. Written by the walk.
extern std::string UltimoFileScandito;

class FrmScan : public FinestraOperazione {
 public:
  FrmScan() : FinestraOperazione("FrmScan") {}

  // Walks every path into its column of ArrayScansione, whose columns must stand. `proprietaria` gets the
  // flags ErroreInCorso and ProcessoAnnullato. `backup`: the planner of a backup calls. `secondo` keeps the
  // walk going, and the session open, after a failed connection; `terzo` is kept for the owner and not read.
  // An empty filter keeps every file.
  void Init(const std::vector<RigaPercorso>& percorsi, FinestraOperazione& proprietaria, bool backup,
            bool secondo, bool terzo, std::string_view filtro);

  // What the last Init met. The user stopped it, also where the owner is not told so: a stop while a server
  // is being connected leaves empty columns and no flag.
  [[nodiscard]] bool Fermata() const { return fermata_; }
  // Columns of paths that were passed over: optical drives whose disc reports no length.
  [[nodiscard]] const std::vector<std::size_t>& Saltati() const { return saltati_; }

  // Connects the server of each FTP path; `qualcuno` tells whether there was one.
  void ConnettiUnitaFtp(const std::vector<RigaPercorso>& percorsi, bool& qualcuno);

  // Walks one folder and all below it: the files of a folder first, then its subfolders in the order found.
  // `inizio` is the byte at which `Nome` starts in a full path.
  void ScansionaCartella(std::size_t colonna, std::string percorso, std::size_t inizio);

  void ImpostaFiltro(std::string_view filtro) { filtro_ = filtro; }

 private:
  // Whether the operation has been stopped, in this window or in another one of it, such as the planner's
  // progress bar; the stop is then this window's too.
  bool Fermato();
  void ScansionaPercorsi(const std::vector<RigaPercorso>& percorsi);
  bool ScansionaUnPercorso(const std::string& percorso, std::size_t numero, std::size_t totale);
  void ScansionaVolume(const std::string& percorso, std::size_t numero);
  void Concludi(const std::vector<RigaPercorso>& percorsi, bool backup);
  bool AltraCartellaFtp(const std::string& percorso, std::int32_t tipo);
  std::vector<std::string> LeggiCartella(std::size_t colonna, const std::string& percorso,
                                         std::size_t inizio);
  void AggiungiFile(std::size_t colonna, const std::string* cartella, std::string_view nome,
                    std::size_t inizio, const RecordRicerca& trovato, std::int32_t tipo);

  StatoScansione stato_;
  std::string filtro_;
  std::string percorsoFallito_;  // the first path that could not be read whole
  std::vector<std::size_t> saltati_;
  bool fermata_ = false;
};

// Reconciles names that two columns report differently: 0 with 1, 2 with 3, and so on, row by row.
void CorreggiNomiSimili(TabellaScansione& tabella);
// At most 3 characters differ, letter case included. Texts of different length are never similar.
[[nodiscard]] bool NomiSimili(std::string_view uno, std::string_view altro);

}  // namespace tandemize
