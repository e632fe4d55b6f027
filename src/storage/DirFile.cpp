#include <limits>

#include "errors/ModuloGestioneErrori.h"
#include "shell/Schermo.h"
#include "storage/DirFileFtp.h"
#include "storage/File_System.h"
#include "storage/Guardia.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "storage/Unita.h"

namespace tandemize {

namespace {

// Open searches, found by handle minus 1. A closed one leaves its place to the next.
class TabellaRicerche {
 public:
  HandleRicerca aggiungi(platform::FolderSearch&& search) {
    if (free_.empty()) {
      searches_.push_back(std::move(search));
      return static_cast<HandleRicerca>(searches_.size());
    }
    HandleRicerca handle = free_.back();
    free_.pop_back();
    searches_[static_cast<std::size_t>(handle) - 1] = std::move(search);
    return handle;
  }

  // Null for a handle that stands for no open search.
  platform::FolderSearch* trova(HandleRicerca handle) {
    if (handle <= 0 || static_cast<std::size_t>(handle) > searches_.size()) return nullptr;
    platform::FolderSearch& search = searches_[static_cast<std::size_t>(handle) - 1];
    return search.isOpen() ? &search : nullptr;
  }

  void chiudi(HandleRicerca handle) {
    platform::FolderSearch* search = trova(handle);
    if (search == nullptr) return;
    search->close();
    free_.push_back(handle);
  }

 private:
  std::vector<platform::FolderSearch> searches_;
  std::vector<HandleRicerca> free_;
};

TabellaRicerche ricerche;

void riempi(RecordRicerca& record, platform::FoundFile&& found) {
  record.dwFileAttributes = found.attributes;
  record.ftCreationTime = found.creation;
  record.ftLastAccessTime = found.lastAccess;
  record.ftLastWriteTime = found.lastWrite;
  record.nFileSizeHigh = static_cast<std::uint32_t>(found.size >> 32U);
  record.nFileSizeLow = static_cast<std::uint32_t>(found.size);
  record.cFileName = std::move(found.name);
}

// A missing folder answers as a missing file does: nothing is there. That says nothing about a disc that has
// gone, whose files may all still exist, so its number stays.
platform::ErrorCode apriLocale(HandleRicerca& handle, RecordRicerca& record, std::string_view path) {
  platform::FolderSearch search;
  platform::FoundFile found;
  platform::ErrorCode error = search.open(path, found);
  if (error == platform::kPathNotFound && !DiscoAssente(path)) error = platform::kFileNotFound;
  if (error != platform::kNoError) return error;
  handle = ricerche.aggiungi(std::move(search));
  riempi(record, std::move(found));
  return platform::kNoError;
}

platform::ErrorCode apriSulServer(HandleRicerca& handle, RecordRicerca& record, std::string_view path) {
  platform::FtpEntry found;
  const platform::ErrorCode error = ApriRicercaFtp(handle, found, path);
  if (error == platform::kNoError) riempi(record, std::move(found));
  return error;
}

platform::ErrorCode apri(HandleRicerca& handle, RecordRicerca& record, std::string_view path,
                         std::int32_t kind) {
  return kind == PercorsoFtp ? apriSulServer(handle, record, path) : apriLocale(handle, record, path);
}

// False at the end, which any failure of a step counts as, a step without an open search too. The folder was
// read whole at the start, so none hides an entry.
bool prosegui(HandleRicerca& handle, RecordRicerca& record) {
  platform::FoundFile found;
  found.name = std::move(record.cFileName);
  if (platform::FolderSearch* search = ricerche.trova(handle);
      search != nullptr && search->next(found) == platform::kNoError) {
    riempi(record, std::move(found));
    return true;
  }
  record.cFileName = std::move(found.name);
  ChiudiRicerca(handle);
  return false;
}

// Nothing found, a stopped call, a handle that was closed.
bool innocuo(platform::ErrorCode error) {
  return error == platform::kFileNotFound || error == 1008 || error == 1400;
}

// A stop has a line of its own in the log, so no report follows.
bool riprova(std::uint8_t& attempts, platform::ErrorCode error, std::string_view path) {
  const std::string detail = DettaglioPercorso("File/Folder Name: ", path);
  return error != platform::kFtpStopped &&
         ErroreRipetibileApi(attempts, error, "DirFile", ConParoleDelServer(detail, error));
}

RispostaDir inizia(HandleRicerca& handle, RecordRicerca& record, std::string_view path, bool quiet) {
  ChiudiRicerca(handle);
  record.cFileName.clear();
  const std::int32_t kind = TipoPercorso(path);
  std::uint8_t attempts = 0;
  for (;;) {
    DoEvents();
    const platform::ErrorCode error = apri(handle, record, path, kind);
    if (attempts > 0 && handle > 0) {
      attempts = 0;
      NotificaRipristino(FormAttivo());
    }
    record.cAlternate.assign(1, static_cast<char>('0' + kind));
    if (error == platform::kNoError || error == platform::kNoMoreFiles) return {record.cFileName};
    if (quiet) return RispostaDir::Fallita();
    if (innocuo(error)) return {record.cFileName};
    if (!riprova(attempts, error, path)) return RispostaDir::Fallita();
  }
}

RispostaDir passoLocale(HandleRicerca& handle, RecordRicerca& record) {
  DoEvents();
  return {prosegui(handle, record) ? record.cFileName : std::string()};
}

// Unlike a local folder's, a search on the server can be lost half way, when events let in a new connect:
// what follows is not known then, which must not pass for the end. A search that is given up is closed, so
// that its next step ends it.
RispostaDir passoSulServer(HandleRicerca& handle, RecordRicerca& record, bool quiet) {
  std::uint8_t attempts = 0;
  for (;;) {
    DoEvents();
    platform::FtpEntry found;
    const platform::ErrorCode error = RicordaErroreFtp(ProseguiRicercaFtp(handle, found));
    if (error == platform::kNoError) {
      if (attempts > 0) NotificaRipristino(FormAttivo());
      riempi(record, std::move(found));
      return {record.cFileName};
    }
    const bool ended = error == platform::kNoMoreFiles;
    if (!ended && !quiet && riprova(attempts, error, "")) continue;
    ChiudiRicerca(handle);
    return ended ? RispostaDir(std::string()) : RispostaDir::Fallita();
  }
}

bool ricordaServer(const RecordRicerca& record) {
  return record.cAlternate.starts_with(static_cast<char>('0' + PercorsoFtp));
}

}  // namespace

RispostaDir DirFile(HandleRicerca& handle, RecordRicerca& record, std::string_view path, bool quiet) {
  if (!path.empty()) return inizia(handle, record, path, quiet);
  return ricordaServer(record) ? passoSulServer(handle, record, quiet) : passoLocale(handle, record);
}

void ChiudiRicerca(HandleRicerca& handle) {
  ricerche.chiudi(handle);
  ChiudiRicercaFtp(handle);
  handle = 0;
}

double DimensioneFile(const RecordRicerca& record) {
  const std::uint64_t size = (std::uint64_t{record.nFileSizeHigh} << 32U) | record.nFileSizeLow;
  return size > std::uint64_t{std::numeric_limits<std::int64_t>::max()} ? 0 : static_cast<double>(size);
}

}  // namespace tandemize
