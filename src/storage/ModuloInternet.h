// The one FTP session of the process: opening it to a server of `FtpServers`, closing it, and what is said
// when that fails. The operations on paths use it without being handed it.
//
// There is one session and a list of names: a server connected earlier in the run stays on the list after a
// connect to another has replaced the session, and counts as connected.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ftp.h"

namespace tandemize {

struct ServerInElenco {
  std::string Descrizione;
  std::int32_t Handle = 0;  // the session that it got, 0 after a failure
};

extern std::int32_t HInternet, HSessioneFtp;  // 0 when closed; a session that the server ended keeps its own
extern std::vector<ServerInElenco> ServerConnessi;  // of this run; the last one is always spare

[[nodiscard]] bool InternetConnesso();
// Whether a session is open and, with a description, that server is on the list too.
[[nodiscard]] bool ServerConnesso(std::string_view descrizione);
// Closes the session, whatever the description: an empty one empties the list, another is taken off it.
void DisconnettiServer(std::string_view descrizione);

// Opens the session to a server of the table; -1 stands for the first. Gives 0 when it is open or the server
// counts as connected already, -1 with an empty table (after its box), else the failed connect's number:
// `message` then gets its text, `failed` and `ConnessioneFallita` are set, and the report has been made.
// `silent` keeps only the message box away. A connect that the user stopped gives 12017 without any report,
// and leaves `ConnessioneFallita` alone.
std::int32_t Connetti_Al_Server_FTP(std::int16_t serverIndex, std::string& message, bool& failed,
                                    bool silent);

// Text of a number from 12001 to 12174, empty for one without text.
[[nodiscard]] std::string TestoErroreInternet(std::int32_t codice);

// Reports a folder on FTP that could not be read, once a run.
void AvvisoConnessionePersa(bool failed, std::string_view message);

// --- for the operations on the session

// The session itself; use it only while `HSessioneFtp` is not 0. Its waits let events run, and end with
// kFtpStopped once the operation at hand is stopped.
[[nodiscard]] platform::FtpSession& SessioneFtp();

// While one lives, waits of the session do not end by a stop: for what cleans up after one.
class PuliziaFtp {
 public:
  PuliziaFtp();
  ~PuliziaFtp();
  PuliziaFtp(const PuliziaFtp&) = delete;
  PuliziaFtp& operator=(const PuliziaFtp&) = delete;
};

// The last call of the session that failed, as `ChiamaFtp` or `RicordaErroreFtp` noted it: its number, and
// the server's own words where the number is 12003.
struct ErroreFtp {
  platform::ErrorCode Numero = platform::kNoError;
  std::string Parole;
};
[[nodiscard]] const ErroreFtp& UltimoErroreFtp();
platform::ErrorCode RicordaErroreFtp(
    platform::ErrorCode errore);  // gives `errore` back; 0 and 18 change nothing

// A call of the session whose failure is noted. Without a session the answer is ErroreSessioneChiusa.
[[nodiscard]] platform::ErrorCode ChiamaFtp(
    const std::function<platform::ErrorCode(platform::FtpSession&)>& chiamata);

// The detail of a report, with the words of `UltimoErroreFtp` in a line of their own if `errore` is 12003.
[[nodiscard]] std::string ConParoleDelServer(std::string dettaglio, platform::ErrorCode errore);

// As ConRiprova, for a call of the session: the report carries the server's words. A stop ends it without a
// report, as it has a line of its own in the log.
[[nodiscard]] bool ConRiprovaFtp(const std::function<platform::ErrorCode(platform::FtpSession&)>& chiamata,
                                 std::string_view routine, const std::string& dettaglio);

// Closes the session and forgets everything, for tests.
void AzzeraInternet();

}  // namespace tandemize
