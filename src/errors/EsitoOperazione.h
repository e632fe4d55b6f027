// How a run of either job ended, for whoever started it.
#pragma once

namespace tandemize {

enum class EsitoOperazione {
  Fatto,           // all done, or a test found no fault
  NienteDaFare,    // nothing to copy or to delete
  Annullato,       // stopped by the user
  ErroreSuperato,  // an error was passed over
  FileFalliti,     // a file failed
  Rifiutato,       // refused before it started: a check or the scan failed
};

}  // namespace tandemize
