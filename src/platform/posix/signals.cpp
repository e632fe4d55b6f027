#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>

#include "platform/machine.h"

namespace tandemize::platform {

namespace {

constexpr int kUsualWidth = 80;

std::atomic<bool> stopWanted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may touch nothing else");

void onStopSignal(int) {
  stopWanted.store(true, std::memory_order_relaxed);
}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  // Reads and writes under way go on; only sleeping is cut short.
  action.sa_flags = SA_RESTART;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

}  // namespace

void catchStopSignals() {
  handle(SIGINT, onStopSignal);
  handle(SIGTERM, onStopSignal);
  handle(SIGPIPE, SIG_IGN);
  handle(SIGXFSZ, SIG_IGN);
}

bool stopRequested() {
  return stopWanted.load(std::memory_order_relaxed);
}

void clearStopRequest() {
  stopWanted.store(false, std::memory_order_relaxed);
}

bool errorOutputIsTerminal() {
  return ::isatty(STDERR_FILENO) == 1;
}

int terminalWidth() {
  winsize size{};
  const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kUsualWidth;
}

}  // namespace tandemize::platform
