#include <algorithm>

#include "platform/files.h"
#include "platform/newfile.h"
#include "platform/paths.h"
#include "platform/posix/folderscan.h"
#include "platform/posix/namemask.h"
#include "platform/posix/status.h"

namespace tandemize::platform {

struct FolderSearch::State {
  FolderScan scan;  // empty in the search for one entry
  std::size_t next = 0;
};

namespace {

bool isSeparator(char character) {
  return character == '\\' || character == '/';
}

ErrorCode findOne(std::string_view path, FoundFile& found) {
  // On the program's own terms a path that ends with a separator names a folder's inside, not an entry.
  if (!path.empty() && isSeparator(path.back())) return kFileNotFound;
  std::string host;
  if (const ErrorCode error = hostPathOf(path, host); error != kNoError) return error;
  if (isReservedName(lastName(host))) return kFileNotFound;
  struct statx entry;
  if (const int reason = statusAt(AT_FDCWD, host.c_str(), 0, entry); reason != 0) {
    return pathError(reason, host);
  }
  if (kindOf(entry) == EntryKind::other) return kFileNotFound;
  if (kindOf(entry) == EntryKind::folder) {
    const std::vector<FolderIdentity> along = identitiesAlong(host);
    if (!along.empty() && std::count(along.begin(), along.end(), along.front()) > 1) return kFileNotFound;
  }
  static_cast<FileStatus&>(found) = statusOf(entry, lastName(host));
  found.name = nameToProgram(lastName(host));
  return kNoError;
}

}  // namespace

FolderSearch::FolderSearch() = default;
FolderSearch::~FolderSearch() = default;
FolderSearch::FolderSearch(FolderSearch&&) noexcept = default;
FolderSearch& FolderSearch::operator=(FolderSearch&&) noexcept = default;

ErrorCode FolderSearch::open(std::string_view pathWithMask, FoundFile& found) {
  close();
  auto state = std::make_unique<State>();
  const std::size_t folderLength = pathWithMask.rfind('\\') + 1;
  const std::string_view mask = pathWithMask.substr(folderLength);
  if (!isMask(mask)) {
    if (const ErrorCode error = findOne(pathWithMask, found); error != kNoError) return error;
    state_ = std::move(state);
    return kNoError;
  }
  std::string host;
  ErrorCode error = hostPathOf(pathWithMask.substr(0, folderLength), host);
  if (error == kNoError) error = state->scan.read(host, mask, FolderScan::Depth::full);
  if (error != kNoError) return error;
  if (state->scan.size() == 0) return kFileNotFound;
  state_ = std::move(state);
  return next(found);
}

ErrorCode FolderSearch::next(FoundFile& found) {
  if (!state_ || state_->next == state_->scan.size()) return kNoMoreFiles;
  const std::size_t index = state_->next++;
  static_cast<FileStatus&>(found) = state_->scan.status(index);
  found.name = nameToProgram(state_->scan.hostName(index));
  return kNoError;
}

void FolderSearch::close() {
  state_.reset();
}

bool FolderSearch::isOpen() const {
  return state_ != nullptr;
}

ErrorCode countEntries(std::string_view folder, std::int32_t& count) {
  count = 0;
  std::string host;
  if (const ErrorCode error = hostPathOf(folder, host); error != kNoError) return error;
  FolderScan scan;
  const ErrorCode error = scan.read(host, "*", FolderScan::Depth::names);
  if (error == kNoError) count = static_cast<std::int32_t>(scan.size()) - 2;
  return error;
}

}  // namespace tandemize::platform
