// The one FTP session of the process. This version has no FTP transport: it answers as a machine that cannot
// reach any server, and says so.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tandemize {

[[nodiscard]] bool InternetConnesso();                            // false: no server can be reached
[[nodiscard]] bool ServerConnesso(std::string_view descrizione);  // false
void DisconnettiServer(std::string_view descrizione);

// Gives -1 with an empty server table (after its box), else a failed connect's number; `message` gets the
// text, `failed` is set.
std::int32_t Connetti_Al_Server_FTP(std::int16_t serverIndex, std::string& message, bool& failed,
                                    bool silent);

// Text of a number from 12001 to 12174, empty for one without text.
[[nodiscard]] std::string TestoErroreInternet(std::int32_t codice);

// Reports a folder on FTP that could not be read, once a run.
void AvvisoConnessionePersa(bool failed, std::string_view message);

}  // namespace tandemize
