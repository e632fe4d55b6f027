// The checksum of a file on a server, which is read with the one command that sends it.
#include <array>
#include <memory>

#include "platform/ftp.h"
#include "shell/Schermo.h"
#include "storage/ModuloInternet.h"
#include "storage/clsCRC.h"

namespace tandemize {

namespace {

constexpr std::size_t Pezzo = 262'144;

}  // namespace

// A read that brings less than was asked for is the last: a connection that breaks ends the checksum as the
// end of the file does, and what came counts as the file. The list of bytes always has one element, so that
// of nothing is the checksum of one zero.
RisultatoCRC clsCRC::CalculateFile_FTP(std::string_view path) {
  Clear();
  platform::FtpData data;
  const platform::ErrorCode error = ChiamaFtp([&](platform::FtpSession& session) {
    return session.openCommand("RETR " + std::string(path), platform::FtpType::Binary, data);
  });
  if (HSessioneFtp == 0 || error == platform::kFtpStopped) return {true, {}};
  const auto buffer = std::make_unique_for_overwrite<std::uint8_t[]>(Pezzo);
  bool any = false;
  for (std::size_t got = Pezzo; data.isOpen() && got == Pezzo;) {
    DoEvents();
    if (RicordaErroreFtp(data.read(buffer.get(), Pezzo, got)) == platform::kFtpStopped) return {true, {}};
    any = AddBytes({buffer.get(), got}) || any;
  }
  if (data.isOpen()) static_cast<void>(RicordaErroreFtp(data.close()));
  if (!any) AddBytes(std::array<std::uint8_t, 1>{});
  return {false, Value()};
}

}  // namespace tandemize
