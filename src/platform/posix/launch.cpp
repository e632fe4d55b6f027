#include "platform/posix/launch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

#include "platform/machine.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/errno.h"

namespace tandemize::platform {

namespace {

constexpr std::string_view kUsualPath = "/usr/local/bin:/usr/bin:/bin";
constexpr int kReport = STDERR_FILENO + 1;  // where the new process has the pipe to its starter
constexpr int kNotRun = 127;

bool isProgram(const std::string& host) {
  struct stat status {};
  return ::stat(host.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(host.c_str(), X_OK) == 0;
}

// From here to `runProgram` the code runs in a copy of this process in which other threads may have stopped
// in the middle of anything, so it makes system calls only.

[[noreturn]] void giveUp(int report) {
  const int number = errno;
  static_cast<void>(::write(report, &number, sizeof number) == 0);
  ::_exit(kNotRun);
}

// Signals that this program ignores would stay ignored in the new one.
void resetSignals() {
  static_cast<void>(::signal(SIGPIPE, SIG_DFL));
  static_cast<void>(::signal(SIGXFSZ, SIG_DFL));
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Leaves /dev/null as 0 to 2 and the report as kReport, which closes when the program runs. The report is
// copied out of the way first: it may itself be one of 0 to 2 if these were closed.
void keepOnlyReport(int report) {
  const int copy = ::fcntl(report, F_DUPFD_CLOEXEC, kReport);
  if (copy < 0) giveUp(report);
  const int nothing = ::open("/dev/null", O_RDWR);
  if (nothing < 0) giveUp(copy);
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (::dup2(nothing, stream) < 0) giveUp(copy);
  }
  if (copy != kReport && ::dup3(copy, kReport, O_CLOEXEC) < 0) giveUp(copy);
  ::closefrom(kReport + 1);
}

// The process in between ends at once, so that the program's parent is the system, which takes its result.
[[noreturn]] void runProgram(char* const* words, int report) {
  ::setsid();
  const pid_t program = ::_Fork();
  if (program < 0) giveUp(report);
  if (program > 0) ::_exit(0);
  resetSignals();
  keepOnlyReport(report);
  ::execv(words[0], words);
  giveUp(kReport);
}

void waitFor(pid_t process) {
  while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

// The report ends without a word when the program runs.
ErrorCode readReport(int report) {
  int number = 0;
  ssize_t got = 0;
  do {
    got = ::read(report, &number, sizeof number);
  } while (got < 0 && errno == EINTR);
  if (got < 0) return fromErrno(errno);
  return got == 0 ? kNoError : fromErrno(number);
}

}  // namespace

std::string findProgram(std::string_view name) {
  const std::string set = environment("PATH");
  std::string_view folders = set.empty() ? kUsualPath : std::string_view(set);
  while (!folders.empty()) {
    const std::size_t end = std::min(folders.find(':'), folders.size());
    std::string host(folders.substr(0, end));
    folders.remove_prefix(std::min(end + 1, folders.size()));
    if (!host.starts_with('/')) continue;
    host += '/';
    host += name;
    if (isProgram(host)) return host;
  }
  return {};
}

ErrorCode launchDetached(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> texts = {program};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> words;
  words.reserve(texts.size() + 1);
  for (std::string& text : texts) words.push_back(text.data());
  words.push_back(nullptr);

  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return fromErrno(errno);
  const Descriptor result(ends[0]);
  Descriptor report(ends[1]);
  const pid_t between = ::fork();
  if (between < 0) return fromErrno(errno);
  if (between == 0) runProgram(words.data(), report.get());
  report.reset();
  waitFor(between);
  return readReport(result.get());
}

}  // namespace tandemize::platform
