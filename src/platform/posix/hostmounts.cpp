#include <dirent.h>
#include <fcntl.h>
#include <poll.h>

#include <cstddef>

#include "platform/posix/descriptor.h"
#include "platform/posix/hostfile.h"
#include "platform/posix/mounts.h"

namespace tandemize::platform {

namespace {

constexpr const char* kMountTable = "/proc/self/mountinfo";
constexpr std::size_t kMountTableLimit = 16U << 20U;

class HostMountFacts : public MountFacts {
 public:
  // The number leads to the disc itself or to a partition, whose disc is the folder above (".." of the folder
  // that the link leads to).
  [[nodiscard]] bool isRemovable(const std::string& device) const override {
    const std::string folder = "/sys/dev/block/" + device;
    std::string answer;
    if (readHostFile(folder + "/removable", 8, answer) != kNoError &&
        readHostFile(folder + "/../removable", 8, answer) != kNoError) {
      return false;
    }
    return !answer.empty() && answer.front() == '1';
  }

  [[nodiscard]] std::vector<std::string> namesIn(const std::string& folder) const override {
    std::vector<std::string> names;
    DIR* const directory = ::opendir(folder.c_str());
    if (directory == nullptr) return names;
    while (const dirent* entry = ::readdir(directory)) names.emplace_back(entry->d_name);
    ::closedir(directory);
    return names;
  }
};

// The table held open: poll(2) tells of a change since the last look through the same descriptor.
Descriptor& mountWatch() {
  static Descriptor watch;
  return watch;
}

}  // namespace

std::vector<Mount> readMounts() {
  std::string text;
  if (readHostFile(kMountTable, kMountTableLimit, text) != kNoError) return {};
  return parseMounts(text);
}

const MountFacts& hostMountFacts() {
  static const HostMountFacts facts;
  return facts;
}

void watchMountTable() {
  mountWatch().reset(::open(kMountTable, O_RDONLY | O_CLOEXEC));
}

bool mountTableChanged() {
  pollfd question{mountWatch().get(), POLLPRI, 0};
  return mountWatch().isOpen() && ::poll(&question, 1, 0) == 1 && (question.revents & POLLPRI) != 0;
}

}  // namespace tandemize::platform
