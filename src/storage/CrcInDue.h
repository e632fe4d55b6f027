// The checksum of a big file by two threads that take turns: while one reads a piece, the other works on the
// one that it has read.
//
// With the file in the host's cache a single thread spends more time on the checksum than on the reading. The
// helper thread does nothing but read and compute; events run in the calling thread only, also while the
// helper waits for a slow disc.
#pragma once

#include <cstdint>

#include "platform/errors.h"
#include "platform/newfile.h"

namespace tandemize {

struct EsitoCrc {
  platform::ErrorCode errore =
      platform::kNoError;   // kStopped after a stop, kEndOfFile if the file has become shorter
  std::uint32_t crc = 0;    // the finished checksum
  std::uint64_t letti = 0;  // bytes that were read before a failure, rounded down to pieces
};

// True where a second thread pays for a file of this length.
[[nodiscard]] bool ConvieneInDue(std::uint64_t length);

// Reads `length` bytes, at least one, from the file's position on.
[[nodiscard]] EsitoCrc CrcInDue(platform::SourceFile& file, std::uint64_t length);

// The checksum of two texts in a row from the checksum of each.
[[nodiscard]] std::uint32_t UnisciCrc(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength);

}  // namespace tandemize
