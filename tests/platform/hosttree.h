// A temporary folder seen from both sides, and child processes for what a test must not do to itself.
#pragma once

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fixtures/TemporaryFolder.h"
#include "platform/paths.h"

namespace tandemize::test {

class HostTree : public TemporaryFolder {
 public:
  HostTree() {
    platform::setProgramFolder(host());
    ::chmod(host().c_str(), 0755);
  }
  // Path of an entry in the program's notation.
  [[nodiscard]] std::string program(std::string_view relative = {}) const {
    return platform::toProgram(host(relative));
  }
  void link(std::string_view target, std::string_view relative) const {
    if (::symlink(std::string(target).c_str(), host(relative).c_str()) != 0) std::abort();
  }
  void setMode(std::string_view relative, mode_t mode) const {
    if (::chmod(host(relative).c_str(), mode) != 0) std::abort();
  }
  [[nodiscard]] mode_t mode(std::string_view relative) const {
    struct stat entry = {};
    return ::stat(host(relative).c_str(), &entry) == 0 ? entry.st_mode & 07777U : 0;
  }
};

// What `work` gives in a child process (0 to 127), or 128 plus the signal that ended it.
template <typename Work>
int inChild(Work work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// The same as a user for whom permission bits count. `path` comes to belong to that user.
template <typename Work>
int asOrdinaryUser(const std::string& path, Work work) {
  constexpr uid_t nobody = 65534;
  if (::geteuid() != 0) return inChild(work);
  if (::chown(path.c_str(), nobody, nobody) != 0) return -1;
  return inChild([&] {
    const bool dropped = ::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, nobody) == 0 &&
                         ::setresuid(nobody, nobody, nobody) == 0;
    return dropped ? work() : 127;
  });
}

// The same where no file can grow beyond `limit` bytes.
template <typename Work>
int withFileSizeLimit(rlim_t limit, Work work) {
  return inChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit both = {limit, limit};
    return ::setrlimit(RLIMIT_FSIZE, &both) == 0 ? work() : 127;
  });
}

inline bool writeLine(const char* path, const std::string& text) {
  const int file = ::open(path, O_WRONLY | O_CLOEXEC);
  const bool written =
      file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  ::close(file);
  return written;
}

// From now on this process mounts for itself alone. An ordinary user may do so only as the root of a world of
// its own.
inline bool enterOwnMounts() {
  const std::string user = std::to_string(::geteuid()), group = std::to_string(::getegid());
  const bool root = ::geteuid() == 0;
  if (::unshare(CLONE_NEWNS | (root ? 0 : CLONE_NEWUSER)) != 0) return false;
  if (!root) {
    const bool mapped = writeLine("/proc/self/uid_map", "0 " + user + " 1\n") &&
                        writeLine("/proc/self/setgroups", "deny") &&
                        writeLine("/proc/self/gid_map", "0 " + group + " 1\n");
    if (!mapped) return false;
  }
  return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

inline constexpr int kNoSmallDisc = 126;

// The same with a disc of 64 KiB on `folder`; kNoSmallDisc where this host lets nobody mount one.
template <typename Work>
int withSmallDisc(const std::string& folder, Work work) {
  return inChild([&] {
    if (!enterOwnMounts()) return kNoSmallDisc;
    if (::mount("none", folder.c_str(), "tmpfs", 0, "size=64k") != 0) return kNoSmallDisc;
    return work();
  });
}

}  // namespace tandemize::test
