#include "errors/ModuloLog.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/Guardia.h"
#include "storage/OperazioniFtp.h"
#include "storage/Percorsi.h"
#include "storage/Unita.h"

namespace tandemize {

namespace {

bool èFtp(std::string_view path) {
  return TipoPercorso(path) == PercorsoFtp;
}

// A file that is read-only goes too, so its attributes are cleared first; whether that worked shows in the
// deletion.
platform::ErrorCode eliminaUnaVolta(std::string_view path) {
  static_cast<void>(platform::setAttributes(path, 0));
  return platform::deleteFile(path);
}

// Without its medium a drive's folder on the host may be missing or an empty rest: what is made there would
// never reach the medium.
platform::ErrorCode creaUnaVolta(std::string_view path) {
  DoEvents();
  return DiscoAssente(path) ? platform::kPathNotFound : platform::createFolder(path);
}

std::string tra(std::string_view before, std::string_view path) {
  return std::string(before) + "'" + std::string(path) + "'";
}

// Where the third character begins: levels are looked for from there on.
std::size_t inizioTerzoCarattere(std::string_view path) {
  std::size_t position = 0;
  for (int characters = 0; characters < 2 && position < path.size(); ++characters) {
    ++position;
    while (position < path.size() && (static_cast<unsigned char>(path[position]) & 0xC0U) == 0x80U)
      ++position;
  }
  return position;
}

// Nothing is deleted that the log does not tell of first.
bool annunciata(std::string_view text, std::string_view path) {
  const platform::ErrorCode before = ErroreLog();
  ScriviLog(tra(text, path), RigaNormale);
  return before != platform::kNoError || ErroreLog() == platform::kNoError;
}

}  // namespace

bool EliminaFile(std::string_view path) {
  if (!annunciata("Deleting File ", path)) return false;
  if (!EsisteFile(path)) {
    ScriviLog("Error: File Not Found", BloccoErrore);
    return false;
  }
  const bool done = èFtp(path) ? EliminaFileFtp(path)
                               : ConRiprova([path] { return eliminaUnaVolta(path); }, "EliminaFile",
                                            DettaglioPercorso("File/Folder Name: ", path));
  if (!done) return false;
  ScriviLog("", RigaOk);
  return true;
}

bool EliminaCartella(std::string_view path) {
  if (!annunciata("Deleting Folder ", path)) return false;
  if (!EsisteCartella(path)) {
    ScriviLog("Error: Folder Not Found", BloccoErrore);
    return false;
  }
  const bool done = èFtp(path) ? EliminaCartellaFtp(path)
                               : ConRiprova([path] { return platform::removeFolder(path); },
                                            "EliminaCartella", DettaglioPercorso("Folder Name: ", path));
  if (!done) return false;
  ScriviLog("", RigaOk);
  return true;
}

bool CreaDirectory(std::string_view path) {
  if (èFtp(path)) return CreaDirectoryFtp(path);
  return ConRiprova([path] { return creaUnaVolta(path); }, "CreaDirectory",
                    DettaglioPercorso("File/Folder Name: ", path));
}

// A level that could not be made has been reported already, and the ones below it are tried all the same.
bool CreaSottoCartelle(std::string_view path) {
  const std::int32_t kind = TipoPercorso(path);
  const char separator = SeparatorePercorso(kind);
  bool result = false;
  for (std::size_t i = inizioTerzoCarattere(path); i < path.size(); ++i) {
    if (path[i] != separator && i + 1 != path.size()) continue;
    const std::string_view level = path.substr(0, i + 1);
    if (kind == PercorsoLan && !PercorsoOltreCondivisione(level)) continue;
    if (EsisteCartella(level)) continue;
    CreaDirectory(level);
    result = true;
  }
  return result;
}

}  // namespace tandemize
