// The one log writer. Each record goes to a list in memory (log window, error mail) and to a numbered text
// file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/errors.h"

namespace tandemize {

// Lines with their time prefix; the last element is always a spare empty one. Written here only.
extern std::vector<std::string> ListaLog;

enum TipoRecord : std::int32_t {
  RigaNormale = 0,
  Intestazione = 1,
  RigaOk = 2,
  RigaArresto = 3,
  BloccoErrore = 4
};

// Writes one record; `Testo` may hold several lines parted by CR. The record is complete in the file when
// this returns. A failure to write it leaves it in the list in memory and is kept for `ErroreLog`.
void ScriviLog(std::string_view Testo, std::int32_t Tipo);

// The system's number of the first record since the last `AzzeraErroreLog` that could not be written, 0 if
// all were.
[[nodiscard]] platform::ErrorCode ErroreLog();
void AzzeraErroreLog();

// Chooses the log file. Gives the bare name to append to, or empty; `NuovoFile` gets the bare name to create,
// or empty.
[[nodiscard]] std::string NomeLogFile(std::string& NuovoFile);

// A new, empty list in memory.
void CreaListaLog();

// While on, records go to the list alone and no file is touched: a preview writes nothing.
void SoloLogInMemoria(bool acceso);

// Closes the file and forgets everything, for tests and when the program folder changes.
void AzzeraLog();

}  // namespace tandemize
