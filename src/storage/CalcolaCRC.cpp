#include "storage/File_System.h"
#include "storage/clsCRC.h"

namespace tandemize {

RisultatoCRC CalcolaCRC(std::string_view path, bool isFtp) {
  clsCRC crc;
  if (isFtp) return crc.CalculateFile_FTP(path);
  std::int32_t error = 0;
  static_cast<void>(ProvaAperturaFile(path, false, error));
  if (error > 0) return {true, {}};
  return crc.CalculateFile(path);
}

}  // namespace tandemize
