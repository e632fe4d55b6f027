#include "platform/posix/programfolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/machine.h"
#include "platform/posix/drivelines.h"
#include "platform/posix/errno.h"
#include "platform/posix/hostfile.h"
#include "platform/posix/userfolders.h"

namespace tandemize::platform {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSettings = "GlobalSetting.dat";
constexpr std::size_t kShippedFileLimit = 64U << 20U;
constexpr mode_t kFolderBits = 0755;

std::string executableFolder() {
  std::string path(PATH_MAX, '\0');
  const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
  if (length <= 0) return {};
  path.resize(static_cast<std::size_t>(length));
  return path.substr(0, path.rfind('/'));
}

std::string workingFolder() {
  std::error_code failed;
  const fs::path folder = fs::current_path(failed);
  return failed ? std::string("/") : folder.string();
}

std::string shippedDataFolder() {
  const std::array<std::string, 3> places = {executableFolder() + "/../share/tandemize-backup",
                                             TANDEMIZE_DATA_DIR, TANDEMIZE_SOURCE_DATA_DIR};
  for (const std::string& place : places) {
    if (!place.empty() && hostFileExists(place + "/" + kSettings)) return place;
  }
  return {};
}

// The user's passwords come into the settings, so no one else may read them.
unsigned bitsFor(const fs::path& name) {
  return name == kSettings ? 0600 : 0644;
}

// Adds one file whole or not at all; one that is there stays as it is.
ErrorCode addFile(const fs::path& from, const fs::path& to) {
  struct stat status {};
  if (::lstat(to.c_str(), &status) == 0) return kNoError;
  std::string content;
  if (const ErrorCode error = readHostFile(from.string(), kShippedFileLimit, content); error != kNoError)
    return error;
  const std::string beside =
      (to.parent_path() / (".~tandemize-" + std::to_string(processNumber()) + ".part")).string();
  const ErrorCode error = writeNewHostFile(beside, content, bitsFor(to.filename()));
  if (error != kNoError) return error;
  if (::rename(beside.c_str(), to.c_str()) == 0) return kNoError;
  const ErrorCode notRenamed = fromErrno(errno);
  ::unlink(beside.c_str());
  return notRenamed;
}

ErrorCode addFolder(const fs::path& folder) {
  if (::mkdir(folder.c_str(), kFolderBits) == 0 || errno == EEXIST) return kNoError;
  return fromErrno(errno);
}

ErrorCode addMissing(const fs::path& from, const fs::path& to) {
  std::error_code failed;
  fs::recursive_directory_iterator entry(from, failed);
  for (; !failed && entry != fs::recursive_directory_iterator(); entry.increment(failed)) {
    const fs::path target = to / entry->path().lexically_relative(from);
    std::error_code unknown;
    ErrorCode error = kNoError;
    if (entry->is_directory(unknown)) {
      error = addFolder(target);
    } else if (target != to / kSettings) {
      error = addFile(entry->path(), target);
    }
    if (error != kNoError) return error;
  }
  if (failed) return fromErrno(failed.value());
  return addFile(from / kSettings, to / kSettings);
}

ErrorCode makeWithParents(const fs::path& folder) {
  std::error_code failed;
  fs::create_directories(folder, failed);
  return failed ? fromErrno(failed.value()) : kNoError;
}

// Makes the folder beside its place and moves it there whole, so that no start meets a folder half filled.
ErrorCode makeFilled(const fs::path& from, const std::string& hostFolder) {
  const fs::path parent = fs::path(hostFolder).parent_path();
  if (const ErrorCode error = makeWithParents(parent); error != kNoError) return error;
  std::string beside = (parent / ".~tandemize-XXXXXX").string();
  if (::mkdtemp(beside.data()) == nullptr) return fromErrno(errno);
  static_cast<void>(::chmod(beside.c_str(), kFolderBits));
  ErrorCode error = addMissing(from, beside);
  if (error == kNoError && ::rename(beside.c_str(), hostFolder.c_str()) != 0) {
    // Another process that starts now has been faster.
    error = errno == ENOTEMPTY ? kAlreadyExists : fromErrno(errno);
  }
  std::error_code ignored;
  if (error != kNoError) fs::remove_all(beside, ignored);
  return error;
}

}  // namespace

std::string chooseProgramFolder(const std::string& executableFolder) {
  if (const std::string home = environment("TANDEMIZE_HOME"); !home.empty()) {
    return normalHostPath(home, workingFolder());
  }
  if (hostFileExists(executableFolder + "/" + kSettings) && ::access(executableFolder.c_str(), W_OK) == 0) {
    return normalHostPath(executableFolder, {});
  }
  return normalHostPath(userDataFolder() + "/tandemize-backup", {});
}

std::string findProgramFolder() {
  return chooseProgramFolder(executableFolder());
}

ErrorCode fillFolderFrom(const std::string& shipped, const std::string& hostFolder, bool evenIfItExists) {
  if (!hostFileExists(shipped + "/" + kSettings)) return kFileNotFound;
  const std::string folder = normalHostPath(hostFolder, workingFolder());
  if (!hostFolderExists(folder)) {
    return hostFileExists(folder) ? kInvalidFolder : makeFilled(shipped, folder);
  }
  return evenIfItExists ? addMissing(shipped, folder) : kAlreadyExists;
}

ErrorCode fillProgramFolder(const std::string& hostFolder, bool evenIfItExists) {
  if (!evenIfItExists && hostFolderExists(hostFolder)) return kAlreadyExists;
  const std::string shipped = shippedDataFolder();
  return shipped.empty() ? kFileNotFound : fillFolderFrom(shipped, hostFolder, evenIfItExists);
}

}  // namespace tandemize::platform
