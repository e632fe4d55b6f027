// The number of entries of a folder on the server, told by the line ends of its listing.
#include <algorithm>
#include <memory>

#include "platform/ftp.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/Guardia.h"
#include "storage/ModuloInternet.h"
#include "storage/OperazioniFtp.h"

namespace tandemize {

namespace {

constexpr std::size_t Buffer = 1'048'576;
constexpr char RitornoCarrello = '\r';

// The steps of one count. Each is tried again on its own.
class Conteggio {
 public:
  explicit Conteggio(std::string_view path) : path_(path) {}

  // The listing is of the folder that was current before; the path becomes current only behind the count.
  std::int32_t conta() {
    const bool done =
        passo([this](platform::FtpSession& session) { return session.currentFolder(current_); }) &&
        passo([this](platform::FtpSession& session) { return session.setCurrentFolder(current_); }) &&
        passo([this](platform::FtpSession& session) { return apri(session); }) &&
        passo([this](platform::FtpSession& session) { return leggi(session); }) &&
        passo([this](platform::FtpSession& session) { return session.setCurrentFolder(path_); });
    return done ? count_ : RisultatoFallito;
  }

 private:
  bool passo(const std::function<platform::ErrorCode(platform::FtpSession&)>& call) {
    DoEvents();
    return ConRiprovaFtp(call, "Restituisci_NumeroFile_Cartella", DettaglioPercorso("Cartella: ", path_));
  }

  platform::ErrorCode apri(platform::FtpSession& session) {
    return session.openCommand("LIST", platform::FtpType::Ascii, data_);
  }

  // One read; what does not fit is not counted. A repeated one needs a listing of its own, as the failed one
  // has used up its data.
  platform::ErrorCode leggi(platform::FtpSession& session) {
    if (!data_.isOpen())
      if (const platform::ErrorCode error = apri(session); error != platform::kNoError) return error;
    const auto buffer = std::make_unique_for_overwrite<char[]>(Buffer);
    std::size_t got = 0;
    const platform::ErrorCode error = data_.read(buffer.get(), Buffer, got);
    if (error != platform::kNoError) {
      data_.abandon();
      return error;
    }
    static_cast<void>(RicordaErroreFtp(data_.close()));
    count_ = static_cast<std::int32_t>(std::count(buffer.get(), buffer.get() + got, RitornoCarrello));
    return error;
  }

  std::string path_, current_;
  platform::FtpData data_;
  std::int32_t count_ = 0;
};

}  // namespace

std::int32_t NumeroFileCartellaFtp(std::string_view path) {
  return Conteggio(path).conta();
}

}  // namespace tandemize
