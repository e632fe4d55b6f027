#include "storage/File_System.h"
#include "storage/clsCRC.h"

namespace tandemize {

RisultatoCRC CalcolaCRC(std::string_view path, bool isFtp) {
  // Without a session nothing of a server's file can be read, which must not pass for an empty file's
  // checksum.
  if (isFtp) return {true, {}};
  std::int32_t error = 0;
  static_cast<void>(ProvaAperturaFile(path, false, error));
  if (error > 0) return {true, {}};
  clsCRC crc;
  return crc.CalculateFile(path);
}

}  // namespace tandemize
