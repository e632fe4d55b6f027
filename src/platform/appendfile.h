// A text file that grows by whole records, and the watch over the folder that it lies in.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize::platform {

// Open for appending; each `append` is one write call, seen by any reader when it returns.
class AppendFile {
 public:
  AppendFile() = default;
  ~AppendFile();
  AppendFile(const AppendFile&) = delete;
  AppendFile& operator=(const AppendFile&) = delete;

  // `truncate` empties the file first; a missing file is made in any case.
  [[nodiscard]] ErrorCode open(std::string_view path, bool truncate);
  // After a failure nothing of the record stays in the file.
  [[nodiscard]] ErrorCode append(std::string_view bytes);
  // Size in bytes of the open file, whoever wrote it.
  [[nodiscard]] ErrorCode size(std::uint64_t& bytes) const;
  void close();
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

// Tells whether names were made, removed or renamed in a folder since the last question (inotify(7)). One
// cheap call a question. Where the host cannot watch the folder, as on a network share, or once the folder
// itself is gone, `changed` is always true, and also before `start`. Reserved names (see newfile.h) don't
// count.
class FolderWatch {
 public:
  FolderWatch();
  ~FolderWatch();
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;

  void start(std::string_view folder);
  [[nodiscard]] bool changed();
  void stop();

 private:
  int descriptor_ = -1;
};

// Holds a program folder for one process. The lock goes with the process, however it ends; its file stays,
// empty after `release`, and a process number that a dead process left in it means nothing.
class FolderLock {
 public:
  FolderLock() = default;
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  // `folder` is a program path, or a host path, which begins with "/". kNoError: held by this process from
  // now on. kSharingViolation: another process holds it, `holder` is its number (0 if not known). Any other
  // number: the lock file "Tandemize.lock" cannot be made.
  [[nodiscard]] ErrorCode acquire(std::string_view folder, int& holder);
  void release();

 private:
  int descriptor_ = -1;
};

}  // namespace tandemize::platform
