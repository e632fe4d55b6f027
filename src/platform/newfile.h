// Reading a source and making a file that appears whole or not at all.
//
// `NewFile` collects bytes in an unnamed file of the destination's folder, or, on a file system that has
// none, in a file of a reserved name. `commit` gives it the final name, in place of an older file of that
// name if there is one. Until then nothing is seen under the final name, and a NewFile destroyed without
// commit leaves nothing.
//
// Reserved names begin with ".~tandemize-" and end in ".part". A live one is locked (flock(2));
// `clearLeftovers` removes those that nobody holds, as a crash leaves them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/errors.h"
#include "platform/files.h"
#include "platform/newfilesupply.h"

namespace tandemize::platform {

// Permissions of a file that nobody may use at all: the bit that the host sets for a plain file stands beside
// them, so that they differ from 0.
inline constexpr std::uint32_t kNoPermissions = 0100000;

// A file open for reading, never for anything else; others may read and write it meanwhile.
class SourceFile {
 public:
  SourceFile() = default;
  ~SourceFile();
  SourceFile(SourceFile&&) noexcept;
  SourceFile& operator=(SourceFile&&) noexcept;

  // kFileNotFound, kPathNotFound, kAccessDenied; kInvalidFolder for what is not a plain file (a pipe is never
  // waited for).
  [[nodiscard]] ErrorCode open(std::string_view path);
  void close();
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

  [[nodiscard]] const FileStatus& status() const { return status_; }  // as of `open`
  // The host's permission bits, or kNoPermissions; never 0.
  [[nodiscard]] std::uint32_t permissions() const { return permissions_; }

  // Reads up to `size` bytes at the current position; `got` is 0 at the end of the file only.
  [[nodiscard]] ErrorCode read(void* buffer, std::size_t size, std::size_t& got);
  // Tells the host that the file will be read once from start to end.
  void willReadThrough();

 private:
  friend class NewFile;
  int descriptor_ = -1;
  std::uint32_t permissions_ = 0;
  FileStatus status_;
};

class NewFile {
 public:
  NewFile() = default;
  ~NewFile();  // discards
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  // Begins a file that will be `path`; its folder must exist. `permissions` are the host's bits that it shall
  // have (0 for a new plain file's usual ones); of them only reading, writing and executing count, so that no
  // file runs with another user's rights because it was copied. If `path` is a link to a file, that file is
  // what will be replaced and the link stays; a link to nothing is replaced itself. kPathNotFound,
  // kAccessDenied (also for a pipe, a socket or a device of that name), kWriteProtected, kDiskFull,
  // kNameTooLong ... kInvalidFolder if `path` is a folder, kInvalidName if it is a reserved name.
  // A `supply` may have the file ready.
  [[nodiscard]] ErrorCode create(std::string_view path, std::uint32_t permissions,
                                 NewFileSupply* supply = nullptr);

  // Asks the host to keep room for a file of `size` bytes, so that it need not look for some with each write.
  // Size and content stay. Nothing is kept where the disc would be nearly full with it, or where the host
  // cannot: whatever fits without this call fits with it. What is not needed goes back at `commit`.
  void reserve(std::uint64_t size);
  [[nodiscard]] ErrorCode write(const void* data, std::size_t size);

  // Moves up to `size` bytes from the source's position, inside the kernel where it can. `copied` is 0 at the
  // source's end. `readFailed` tells on which side a failure lies.
  [[nodiscard]] ErrorCode copyFrom(SourceFile& source, std::uint64_t size, std::uint64_t& copied,
                                   bool& readFailed);

  [[nodiscard]] ErrorCode setTime(FileTime moment);  // last access and last write
  [[nodiscard]] ErrorCode flush();                   // down to the disc

  // Takes the final name, even if an older read-only file has it. `replaced` tells that an older file of that
  // name was given up for it. Whatever the result, the file is closed afterwards; after a failure nothing of
  // it is left and the older file stands. kInvalidFolder if a folder has got the name meanwhile, kInvalidName
  // if the file system takes no such name.
  [[nodiscard]] ErrorCode commit(bool& replaced);
  void discard();

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] std::uint64_t bytesWritten() const { return written_; }

 private:
  friend ErrorCode replaceFile(std::string_view path, std::string_view content, std::uint32_t permissions);

  [[nodiscard]] ErrorCode settleTarget();
  [[nodiscard]] ErrorCode openFile(std::uint32_t permissions, NewFileSupply* supply);
  [[nodiscard]] ErrorCode createReserved(const std::string& folder, std::uint32_t mode);
  [[nodiscard]] std::string reservedPath(const std::string& folder);
  void releaseSpareRoom();
  [[nodiscard]] ErrorCode commitUnnamed(bool& replaced);
  [[nodiscard]] ErrorCode linkToReserved();
  [[nodiscard]] ErrorCode copyToReserved();
  [[nodiscard]] ErrorCode commitReserved(bool& replaced);
  [[nodiscard]] ErrorCode renameOver();
  [[nodiscard]] ErrorCode copyThroughBuffer(SourceFile& source, std::uint64_t size, std::uint64_t& copied,
                                            bool& readFailed);

  int descriptor_ = -1;
  int folder_ = -1;  // the target's folder, open only while a reserved path would be too long without it
  bool unnamed_ = false;
  bool copyInKernel_ = true;
  std::uint64_t written_ = 0;
  std::uint64_t reserved_ = 0;  // bytes from the file's start that the host keeps room for
  std::string target_;          // host path of the final name
  std::string temporary_;       // host path of the reserved name, if one is in use
  std::unique_ptr<char[]> buffer_;
};

// Removes reserved files of the folder that no live process holds. Gives their number; a folder that can't be
// read gives 0.
int clearLeftovers(std::string_view folder);

[[nodiscard]] bool isReservedName(std::string_view hostName);

// Replaces a file's content as a whole: a new file beside it, its count checked, flushed to the disc, renamed
// over the old one, the folder flushed. After a failure the old file stands as it was. A new file gets
// permissions 0644, or `permissions` if not 0; an existing one keeps its own, and its owner where the host
// lets this user give files away.
[[nodiscard]] ErrorCode replaceFile(std::string_view path, std::string_view content,
                                    std::uint32_t permissions = 0);

// Reads a file whole. kFileTooLarge above `limit` bytes (nothing is read then).
[[nodiscard]] ErrorCode readFile(std::string_view path, std::string& content,
                                 std::uint64_t limit = UINT64_MAX);

}  // namespace tandemize::platform
