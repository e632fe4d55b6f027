#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>

#include "platform/machine.h"
#include "platform/posix/names.h"

namespace tandemize::platform {

namespace {

// The entry of a program folder whose name is `name` but for the letter case; `name` itself if it is there,
// or if nothing is. Of several the first in byte order, so that the answer does not hang on the order in
// which the host lists them.
std::string nameOnHost(const std::string& folder, std::string_view name) {
  struct stat status {};
  const std::string hostFolder = toHost(folder);
  std::string best(name);
  if (::lstat((hostFolder + "/" + nameToHost(name)).c_str(), &status) == 0) return best;
  DIR* const directory = ::opendir(hostFolder.c_str());
  if (directory == nullptr) return best;
  bool found = false;
  while (const dirent* entry = ::readdir(directory)) {
    std::string listed = nameToProgram(entry->d_name);
    if (!equalIgnoringCase(listed, name) || (found && best < listed)) continue;
    best = std::move(listed);
    found = true;
  }
  ::closedir(directory);
  return best;
}

}  // namespace

bool hostFileExists(const std::string& hostPath) {
  struct stat status {};
  return ::stat(hostPath.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool hostFolderExists(const std::string& hostPath) {
  struct stat status {};
  return ::stat(hostPath.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string findIgnoringCase(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && path.back() != '\\') path += '\\';
  while (!name.empty()) {
    const std::size_t end = std::min(name.find('\\'), name.size());
    path += nameOnHost(path, name.substr(0, end));
    if (end < name.size()) path += '\\';
    name.remove_prefix(std::min(end + 1, name.size()));
  }
  return path;
}

}  // namespace tandemize::platform
