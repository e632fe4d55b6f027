#include "storage/OperazioniFtp.h"

#include "errors/ModuloGestioneErrori.h"
#include "platform/ftp.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/Guardia.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"

namespace tandemize {

bool EsisteCartellaFtp(std::string_view path, bool quiet) {
  if (HSessioneFtp == 0) return quiet;
  DoEvents();
  bool exists = false;
  const platform::ErrorCode error =
      ChiamaFtp([&](platform::FtpSession& session) { return session.folderExists(path, exists); });
  return error == platform::kNoError && exists;
}

namespace {

// Without doubled separators and without one at the end, as servers tell their folders.
std::string ripulito(std::string_view path) {
  std::string clean;
  for (const char c : path)
    if (c != '/' || !clean.ends_with('/')) clean += c;
  if (clean.size() > 1 && clean.ends_with('/')) clean.pop_back();
  return clean;
}

}  // namespace

bool CartellaFtpCorrente(std::string_view path) {
  std::string current;
  const platform::ErrorCode error =
      ChiamaFtp([&current](platform::FtpSession& session) { return session.currentFolder(current); });
  if (error != platform::kNoError) return false;
  const std::string wanted = ripulito(path);
  current = ripulito(current);
  // A path that does not begin at the root is known only by its end.
  return wanted.starts_with('/') ? current == wanted : current.ends_with("/" + wanted);
}

bool EliminaFileFtp(std::string_view path) {
  return ConRiprovaFtp([path](platform::FtpSession& session) { return session.deleteFile(path); },
                       "EliminaFile", DettaglioPercorso("File/Folder Name: ", path));
}

// Only a result of -1 would count as done, which the call never gives: its success is 1. So a folder that was
// removed is tried again as the settings say, and told as failed. The count is not cleared by a success, or a
// server that says yes every time would be asked for ever.
bool EliminaCartellaFtp(std::string_view path) {
  const std::string detail = DettaglioPercorso("Folder Name: ", path);
  std::uint8_t attempts = 0;
  for (;;) {
    const platform::ErrorCode error =
        ChiamaFtp([path](platform::FtpSession& session) { return session.removeFolder(path); });
    if (error == platform::kFtpStopped) return false;
    if (error == platform::kNoError && attempts > 0) NotificaRipristino(FormAttivo());
    if (!ErroreRipetibileApi(attempts, error, "EliminaCartella", ConParoleDelServer(detail, error)))
      return false;
  }
}

bool CreaDirectoryFtp(std::string_view path) {
  return ConRiprovaFtp(
      [path](platform::FtpSession& session) {
        DoEvents();
        return session.createFolder(path);
      },
      "CreaDirectory", DettaglioPercorso("File/Folder Name: ", path));
}

namespace {

// The file's line in its folder's listing.
platform::ErrorCode cercaNellaCartella(platform::FtpSession& session, const std::string& folder,
                                       std::string_view name, platform::FtpEntry& entry) {
  platform::FtpSearch search;
  platform::ErrorCode error = session.setCurrentFolder(folder);
  if (error == platform::kNoError) error = session.openSearch(search, entry);
  while (error == platform::kNoError && entry.name != name) error = search.next(entry);
  return error;
}

platform::ErrorCode voceDelFile(platform::FtpSession& session, std::string_view path,
                                platform::FtpEntry& entry) {
  platform::ErrorCode error = session.fileStatus(path, entry);
  const bool told = error == platform::kNoError && entry.precision != platform::TimePrecision::None;
  if (told || (error != platform::kNoError && error != platform::kFtpRefused)) return error;
  std::string current;
  if (error = session.currentFolder(current); error != platform::kNoError) return error;
  error = cercaNellaCartella(session, CartellaSuperiore(path), NomeFinale(path), entry);
  const platform::ErrorCode back = session.setCurrentFolder(current);
  return error == platform::kNoError ? back : error;
}

}  // namespace

std::string DataFileFtp(std::string_view path) {
  DoEvents();
  platform::FtpEntry entry;
  const platform::ErrorCode error =
      ChiamaFtp([&](platform::FtpSession& session) { return voceDelFile(session, path, entry); });
  const bool told = error == platform::kNoError && entry.precision != platform::TimePrecision::None;
  return told ? TestoDataFile(entry.lastWrite.seconds) : std::string();
}

}  // namespace tandemize
