// One host folder read whole: its visible entries and what the host says of each.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/errors.h"
#include "platform/files.h"

namespace tandemize::platform {

// The identity of a folder on this host, whatever name it is reached by.
struct FolderIdentity {
  std::uint64_t device = 0, inode = 0;
  friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

// Identities of the folder and of all that its path leads through, up to "/".
[[nodiscard]] std::vector<FolderIdentity> identitiesAlong(const std::string& hostFolder);

class FolderScan {
 public:
  enum class Depth {
    names,  // status only where it decides whether an entry is listed
    full
  };

  // Reads the entries that fit `mask` ("." and ".." first), by the rules of FolderSearch. Costs an open, a
  // statx, the reads and a close, and with Depth::full one statx an entry. kPathNotFound, kAccessDenied (also
  // for a folder whose names may be read and whose entries may not), kReadFault ...
  [[nodiscard]] ErrorCode read(const std::string& hostFolder, std::string_view mask, Depth depth);

  [[nodiscard]] std::size_t size() const { return entries_.size(); }
  [[nodiscard]] std::string_view hostName(std::size_t index) const { return nameOf(entries_[index]); }
  [[nodiscard]] const FileStatus& status(std::size_t index) const { return entries_[index].status; }

 private:
  struct Entry {
    std::uint64_t inode;
    std::size_t nameStart;
    std::uint16_t nameLength;  // without the NUL that follows each name
    unsigned char type;        // as the folder tells it, DT_...
    bool listed;
    FileStatus status;
  };

  [[nodiscard]] std::string_view nameOf(const Entry& entry) const {
    return {names_.data() + entry.nameStart, entry.nameLength};
  }
  [[nodiscard]] ErrorCode readNames(int folder, std::string_view mask);
  void addNames(const char* records, std::size_t size, std::string_view mask);
  void add(std::uint64_t inode, std::string_view name, unsigned char type, std::string_view mask);
  void readStatuses(int folder, Depth depth);
  void lookAt(Entry& entry, int folder);
  void describeUnreadable(Entry& entry, int folder);
  [[nodiscard]] bool isInsideOf(const struct statx& entry);

  std::vector<Entry> entries_;
  std::string names_;
  const std::string* hostFolder_ = nullptr;  // while `read` runs
  bool throughLink_ = false;
  std::vector<FolderIdentity> along_;  // filled when first needed
};

}  // namespace tandemize::platform
