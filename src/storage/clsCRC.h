// Running CRC-32 (polynomial EDB88320 reflected, as zlib and PNG use it) with a file front end.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "storage/File_System.h"

namespace tandemize {

class clsCRC {
 public:
  clsCRC() { Clear(); }

  // Checksum of a local or LAN file, read in pieces between which events run. No value for an empty file;
  // failed when it cannot be read.
  [[nodiscard]] RisultatoCRC CalculateFile(std::string_view path);

  // Checksum of a file on the FTP session, up to its end or to where its data stops coming; of a file that
  // gives no data, or that the server refuses, the checksum of one zero byte. Failed only without a session
  // or by a stop.
  [[nodiscard]] RisultatoCRC CalculateFile_FTP(std::string_view path);

  // Updates the register and gives `Value`; an empty span changes nothing and gives no value.
  std::optional<std::int32_t> AddBytes(std::span<const std::uint8_t> bytes);
  std::optional<std::int32_t> AddString(std::string_view text);
  // `Clear`, then AddBytes or AddString.
  std::optional<std::int32_t> CalculateBytes(std::span<const std::uint8_t> bytes);
  std::optional<std::int32_t> CalculateString(std::string_view text);

  [[nodiscard]] std::int32_t Value() const { return ~Crc; }
  void SetValue(std::int32_t numero) {
    Crc = numero;
  }  // stored as it is: writing back what was read does not restore the state
  void Clear() { Crc = -1; }

 private:
  std::int32_t Crc = -1;  // the running register, not complemented
};

}  // namespace tandemize
