#include "errors/ModuloGestioneErrori.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/Guardia.h"
#include "storage/OperazioniFtp.h"
#include "storage/Percorsi.h"
#include "storage/Unita.h"

namespace tandemize {

namespace {

// Where the routine stands when its folder cannot be read.
constexpr std::int16_t RigaConteggio = 2;

bool trovaConRicerca(std::string_view path) {
  HandleRicerca handle = 0;
  RecordRicerca record;
  const RispostaDir answer = DirFile(handle, record, path, true);
  ChiudiRicerca(handle);
  return !answer.fallita() && !answer.fine();
}

bool èNomeDiFile(std::string_view path) {
  return TipoPercorso(path) != PercorsoFtp && path.find_first_of("*?") == std::string_view::npos &&
         !path.ends_with('\\') && !path.ends_with('/');
}

// The root of an optical drive exists as soon as the drive is ready.
bool èRadiceDiCdPronto(std::string_view path) {
  return LunghezzaInCaratteri(path) < 4 && TipoUnita(path) == UnitaCdRom && UnitaPronta(path);
}

std::int32_t contaLocale(std::string_view path) {
  std::uint8_t attempts = 0;
  for (;;) {
    std::int32_t count = 0;
    const platform::ErrorCode error = platform::countEntries(path, count);
    if (error == platform::kNoError) {
      if (attempts > 0) NotificaRipristino(FormAttivo());
      return count;
    }
    if (!ErroreRipetibileVb(attempts, ErroreRuntimeDaSistema(error), "Restituisci_NumeroFile_Cartella",
                            DettaglioPercorso("Cartella: ", path), RigaConteggio))
      return RisultatoFallito;
  }
}

}  // namespace

// On a server this says whether the folder that the session ends up in lists anything, and nothing about the
// file's name.
// A plain local file needs no search to be found: asking for its status answers the same in one call. A
// folder goes the long way, since a search does not find one that the path is inside of already.
bool EsisteFile(std::string_view path) {
  if (path.empty()) return false;
  if (!èNomeDiFile(path)) return trovaConRicerca(path);
  DoEvents();
  platform::FileStatus status;
  if (platform::query(path, status) != platform::kNoError) return false;
  return (status.attributes & platform::kDirectory) == 0 || trovaConRicerca(path);
}

bool EsisteCartella(std::string_view path, bool quiet) {
  if (path.empty()) return false;
  if (TipoPercorso(path) == PercorsoFtp) return EsisteCartellaFtp(path, quiet);
  DoEvents();
  return platform::folderExists(path) || èRadiceDiCdPronto(path);
}

std::int32_t Restituisci_NumeroFile_Cartella(std::string_view path) {
  return TipoPercorso(path) == PercorsoFtp ? NumeroFileCartellaFtp(path) : contaLocale(path);
}

}  // namespace tandemize
