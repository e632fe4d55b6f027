#include "storage/DirFileFtp.h"

#include <limits>
#include <string>
#include <utility>

#include "storage/ModuloInternet.h"

namespace tandemize {

namespace {

// Handles of these searches lie behind those of local ones, and each has a number of its own, so that one
// kept beyond its search does not reach into the next.
constexpr HandleRicerca PrimoHandle = HandleRicerca{1} << 30U;

platform::FtpSearch ricerca;
HandleRicerca handleAperto = 0;
HandleRicerca prossimo = PrimoHandle;

HandleRicerca nuovoHandle() {
  if (prossimo == std::numeric_limits<HandleRicerca>::max()) prossimo = PrimoHandle;
  return prossimo++;
}

// A mask other than "*.*" stays in the path, which then is no folder.
std::string senzaMaschera(std::string_view path) {
  constexpr std::string_view tutti = "*.*";
  std::string folder(path);
  for (std::size_t at = folder.find(tutti); at != std::string::npos; at = folder.find(tutti, at))
    folder.erase(at, tutti.size());
  return folder;
}

}  // namespace

platform::ErrorCode ApriRicercaFtp(HandleRicerca& handle, platform::FtpEntry& trovato,
                                   std::string_view path) {
  platform::FtpSearch nuova;
  const std::string folder = senzaMaschera(path);
  const platform::ErrorCode error =
      ChiamaFtp([&](platform::FtpSession& session) { return session.openSearch(folder, nuova, trovato); });
  if (error != platform::kNoError) return error;
  ricerca = std::move(nuova);
  handle = handleAperto = nuovoHandle();
  return error;
}

platform::ErrorCode ProseguiRicercaFtp(HandleRicerca handle, platform::FtpEntry& trovato) {
  if (handle == 0) return platform::kNoMoreFiles;
  return handle == handleAperto ? ricerca.next(trovato) : platform::kFtpConnectionLost;
}

void ChiudiRicercaFtp(HandleRicerca handle) {
  if (handle == 0 || handle != handleAperto) return;
  ricerca.close();
  handleAperto = 0;
}

}  // namespace tandemize
