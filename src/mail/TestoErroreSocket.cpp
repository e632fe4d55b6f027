#include <algorithm>
#include <array>

#include "mail/SocketSmtp.h"

namespace tandemize {

namespace {

struct RigaErrore {
  std::int32_t codice;
  std::string_view testo;
};

constexpr std::array Tabella{
    RigaErrore{10004, "Interrupted system call."},
    RigaErrore{10009, "Bad file number."},
    RigaErrore{10013, "Permission Denied."},
    RigaErrore{10014, "Bad Address."},
    RigaErrore{10022, "Invalid Argument."},
    RigaErrore{10024, "Too many open files."},
    RigaErrore{10035, "Operation would block."},
    RigaErrore{10036, "Operation now in progress."},
    RigaErrore{10037, "Operation already in progress."},
    RigaErrore{10038, "Socket operation on nonsocket."},
    RigaErrore{10039, "Destination address required."},
    RigaErrore{10040, "Message too long."},
    RigaErrore{10041, "Protocol wrong type for socket."},
    RigaErrore{10042, "Protocol not available."},
    RigaErrore{10043, "Protocol not supported."},
    RigaErrore{10044, "Socket type not supported."},
    RigaErrore{10045, "Operation not supported on socket."},
    RigaErrore{10046, "Protocol family not supported."},
    RigaErrore{10047, "Address family not supported by protocol family."},
    RigaErrore{10048, "Address already in use."},
    RigaErrore{10049, "Can't assign requested address."},
    RigaErrore{10050, "Network is down."},
    RigaErrore{10051, "Network is unreachable."},
    RigaErrore{10052, "Network dropped connection."},
    RigaErrore{10053, "Software caused connection abort."},
    RigaErrore{10054, "Connection reset by peer."},
    RigaErrore{10055, "No buffer space available."},
    RigaErrore{10056, "Socket is already connected."},
    RigaErrore{10057, "Socket is not connected."},
    RigaErrore{10058, "Can't send after socket shutdown."},
    RigaErrore{10059, "Too many references: can't splice."},
    RigaErrore{10060, "Connection timed out."},
    RigaErrore{10061, "Connection refused."},
    RigaErrore{10062, "Too many levels of symbolic links."},
    RigaErrore{10063, "File name too long."},
    RigaErrore{10064, "Host is down."},
    RigaErrore{10065, "No route to host."},
    RigaErrore{10066, "Directory not empty."},
    RigaErrore{10067, "Too many processes."},
    RigaErrore{10068, "Too many users."},
    RigaErrore{10069, "Disk quota exceeded."},
    RigaErrore{10070, "Stale NFS file handle."},
    RigaErrore{10071, "Too many levels of remote in path."},
    RigaErrore{10091, "Network subsystem is unusable."},
    RigaErrore{10092, "Winsock DLL cannot support this application."},
    RigaErrore{10093, "Winsock not initialized."},
    RigaErrore{10101, "Disconnect."},
    RigaErrore{11001, "Host not found."},
    RigaErrore{11002, "Nonauthoritative host not found."},
    RigaErrore{11003, "Nonrecoverable error."},
    RigaErrore{11004, "Valid name, no data record of requested type."},
};

}  // namespace

std::string_view TestoErroreSocket(std::int32_t codice) {
  const auto* const riga = std::ranges::lower_bound(Tabella, codice, {}, &RigaErrore::codice);
  return riga != Tabella.end() && riga->codice == codice ? riga->testo : std::string_view();
}

}  // namespace tandemize
