// Folders and files of local discs and network shares, by program path (see paths.h).
//
// Failures are numbers of errors.h. A path that lies on no drive gives kPathNotFound; one longer than the
// host takes gives kNameTooLong. Reserved temporary names (see newfile.h) are invisible: no search lists
// them, `query` does not find them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize::platform {

inline constexpr std::uint32_t kReadOnly = 1;
inline constexpr std::uint32_t kHidden = 2;
inline constexpr std::uint32_t kDirectory = 16;
inline constexpr std::uint32_t kArchive = 32;

// A moment in UTC: seconds since 1970 and nanoseconds.
struct FileTime {
  std::int64_t seconds = 0;
  std::int32_t nanoseconds = 0;
  friend bool operator==(const FileTime&, const FileTime&) = default;
};

// What the host knows of one file or folder; links are followed.
struct FileStatus {
  std::uint32_t attributes = 0;  // sum of the bits above
  FileTime creation, lastAccess, lastWrite;
  std::uint64_t size = 0;  // bytes; 0 for a folder
};

struct FoundFile : FileStatus {
  std::string name;  // as the program writes it
};

// One search of a folder. `open` takes a folder plus mask ("C:\a\*.txt", "C:\a\*.*") or the full path of one
// entry;
// `*` and `?` stand for any text and any character, "*.*" for every name. The folder is read whole when the
// search opens, so a folder that cannot be read fails there and never ends early as if it were short.
//
// Listed are files, folders, "." and ".." (which come first, the latter with the status of the former). A
// link is what it leads to; a link to nothing, a link loop, and a folder that the searched path is inside of
// already are not listed, nor are sockets, pipes, devices and reserved names. An entry that is there but
// cannot be read about is listed with what its folder tells (size 0 at the worst), so that its copy fails by
// name rather than being skipped.
class FolderSearch {
 public:
  FolderSearch();
  ~FolderSearch();
  FolderSearch(FolderSearch&&) noexcept;
  FolderSearch& operator=(FolderSearch&&) noexcept;

  // Opens and gives the first entry. Masks compare with regard to letter case. kFileNotFound: nothing fits,
  // or the path of one entry ends with a separator; kPathNotFound: no such folder; kAccessDenied: its entries
  // may not be read about...
  [[nodiscard]] ErrorCode open(std::string_view pathWithMask, FoundFile& found);
  // The next entry; kNoMoreFiles at the end.
  [[nodiscard]] ErrorCode next(FoundFile& found);
  void close();
  [[nodiscard]] bool isOpen() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Status of one path; kFileNotFound or kPathNotFound if there is none. Sockets, pipes and devices count as
// none.
[[nodiscard]] ErrorCode query(std::string_view path, FileStatus& status);

// True if the path is a folder that exists. A folder that exists but may not be read counts.
[[nodiscard]] bool folderExists(std::string_view path);

// Number of entries of a folder, files and folders, "." and ".." apart; what a search would list.
[[nodiscard]] ErrorCode countEntries(std::string_view folder, std::int32_t& count);

// Of a link the link itself goes and what it leads to stays, with both calls. `removeFolder` takes leftovers
// that nobody holds (see newfile.h) away with the folder; kFolderNotEmpty if it, or what the link leads to,
// holds anything else.
[[nodiscard]] ErrorCode deleteFile(std::string_view path);  // kAccessDenied for a folder
[[nodiscard]] ErrorCode removeFolder(std::string_view path);
[[nodiscard]] ErrorCode createFolder(std::string_view path);  // one level; kAlreadyExists, kPathNotFound

// Sets the attributes. Only bit 1 has an effect here: set, the owner's, group's and others' write permission
// goes; clear, the owner's write permission comes. No call is made when nothing would change.
[[nodiscard]] ErrorCode setAttributes(std::string_view path, std::uint32_t attributes);

// Gives all times of a file the same moment (the change time apart, which no host lets a program set).
[[nodiscard]] ErrorCode setFileTime(std::string_view path, FileTime moment);

// Opens an existing file for reading, or for writing without changing it, and closes it at once.
// kAccessDenied for a folder.
[[nodiscard]] ErrorCode tryOpen(std::string_view path, bool forWriting);

struct SpaceOnDisc {
  std::uint64_t total = 0, free = 0, available = 0;  // bytes; `available` is what this user may still write
  std::uint64_t volume = 0;                          // tells one file system of the host from another
};
// Of the file system that an existing path lies on.
[[nodiscard]] ErrorCode freeSpace(std::string_view path, SpaceOnDisc& space);

// Brings everything that was written to the file system of an existing folder down to its medium, so that it
// can be pulled out (syncfs(2)). Waits until that is done.
[[nodiscard]] ErrorCode flushVolume(std::string_view folder);

}  // namespace tandemize::platform
