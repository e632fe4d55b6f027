#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/newfile.h"
#include "platform/posix/lateclose.h"
#include "platform/posix/unnamedfiles.h"

namespace tandemize::platform {
namespace {

// Up to this length reading and writing costs less than setting up the kernel's own copy.
constexpr std::size_t kSmall = 64UL * 1024;
constexpr std::size_t kBuffer = 256UL * 1024;
// More than the kernel moves in one call.
constexpr std::uint64_t kGreatestMove = 1ULL << 30U;

// Bytes moved inside the kernel, or -1.
ssize_t moveInKernel(int from, int to, std::uint64_t size) {
  ssize_t count = 0;
  do {
    const auto most = static_cast<std::size_t>(std::min(size, kGreatestMove));
    count = withRoom([&] { return ::copy_file_range(from, nullptr, to, nullptr, most, 0); });
  } while (count < 0 && errno == EINTR);
  return count;
}

// A plain file gives less than it was asked for only at its end, so there is no need to ask once more.
ErrorCode move(SourceFile& source, NewFile& target, char* buffer, std::size_t bufferSize, std::uint64_t size,
               std::uint64_t& copied, bool& readFailed) {
  std::size_t asked = 0, got = 0;
  while (copied < size && got == asked) {
    asked = static_cast<std::size_t>(std::min<std::uint64_t>(bufferSize, size - copied));
    ErrorCode error = source.read(buffer, asked, got);
    readFailed = error != kNoError;
    if (error == kNoError) error = target.write(buffer, got);
    if (error != kNoError) return error;
    copied += got;
  }
  return kNoError;
}

}  // namespace

ErrorCode NewFile::copyFrom(SourceFile& source, std::uint64_t size, std::uint64_t& copied, bool& readFailed) {
  copied = 0;
  readFailed = false;
  if (source.status().size > kSmall && copyInKernel_ && fileWays().copyInKernel) {
    const ssize_t count = moveInKernel(source.descriptor_, descriptor_, size);
    if (count > 0) {
      copied = static_cast<std::uint64_t>(count);
      written_ += copied;
      return kNoError;
    }
    // The end of the source, but for files that the host makes up as they are read: those seem to end at
    // once.
    if (count == 0 && written_ > 0) return kNoError;
    // Refused between these two files, or a real failure. Reading and writing apart shows which, and of which
    // side.
    copyInKernel_ = false;
  }
  return copyThroughBuffer(source, size, copied, readFailed);
}

ErrorCode NewFile::copyThroughBuffer(SourceFile& source, std::uint64_t size, std::uint64_t& copied,
                                     bool& readFailed) {
  copied = 0;
  if (source.status().size <= kSmall) {
    std::array<char, kSmall> small;
    return move(source, *this, small.data(), small.size(), size, copied, readFailed);
  }
  if (!buffer_) buffer_ = std::make_unique_for_overwrite<char[]>(kBuffer);
  return move(source, *this, buffer_.get(), kBuffer, size, copied, readFailed);
}

}  // namespace tandemize::platform
