// The numbered log file at hand. It stays open between records; a record costs a question to the watch, one
// for the size and one write, however many log files there are.
#pragma once

#include <cstdint>
#include <string_view>

#include "errors/IndiceLog.h"
#include "platform/appendfile.h"
#include "platform/errors.h"

namespace tandemize {

// Numbers of log files; 0 stands for none.
struct SceltaLog {
  std::int32_t attuale = 0;  // the highest one, to append to unless a new one is due
  std::int32_t nuovo = 0;    // the one to create
};

class FileDiLog {
 public:
  // Going up from 1: a number without a file is the new one; the last number before a gap is the one to
  // append to while its size is below `Log_Max_File_Size`. A gap in the numbers is thus filled first.
  [[nodiscard]] SceltaLog Scegli();

  // Writes one record, in one piece, to the file that `Scegli` gives at this moment. Gives the system's
  // number if it could not; nothing of the record is then in the file, and the next record begins afresh.
  [[nodiscard]] platform::ErrorCode Scrivi(std::string_view record);

  void Azzera();

 private:
  [[nodiscard]] bool Piena(std::int32_t numero) const;
  [[nodiscard]] platform::ErrorCode Apri(const SceltaLog& scelta);
  void Chiudi();

  IndiceLog indice_;
  platform::AppendFile file_;
  std::int32_t aperto_ = 0;  // number of the open file
};

}  // namespace tandemize
