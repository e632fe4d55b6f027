#include "platform/newfilesupply.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <utility>

#include "platform/posix/status.h"
#include "platform/posix/supplystate.h"
#include "platform/posix/unnamedfiles.h"

namespace tandemize::platform {
namespace {

// Files kept ready, and how few of them wake the thread: a wake-up costs as much as half a file, so it makes
// many at a time.
constexpr std::size_t kReady = 32;
constexpr std::size_t kFew = 8;

// Stop signals are for the program's own thread, whose waits they end.
void blockSignals() {
  sigset_t all;
  sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

void closeAll(std::vector<SuppliedFile>& files) {
  for (const SuppliedFile& file : files) ::close(file.descriptor);
  files.clear();
}

}  // namespace

NewFileSupply::State::~State() {
  {
    const std::lock_guard lock(mutex);
    ended = true;
  }
  changed.notify_all();
  if (worker.joinable()) worker.join();
  closeAll(ready);
}

void NewFileSupply::State::run() {
  blockSignals();
  std::unique_lock lock(mutex);
  for (;;) {
    changed.wait(lock, [this] { return ended || (wanted > 0 && ready.size() <= kFew); });
    while (!ended && wanted > 0 && ready.size() < kReady) {
      --wanted;
      makeOne(lock);
    }
    if (ended) return;
  }
}

void NewFileSupply::State::makeOne(std::unique_lock<std::mutex>& lock) {
  const std::string where = folder;
  const mode_t permissions = mode;
  lock.unlock();
  const int descriptor = ::open(where.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, permissions);
  lock.lock();
  if (descriptor < 0) {
    if (where == folder) wanted = 0;
  } else if (where == folder && !ended) {
    ready.push_back({descriptor, permissions});
  } else {
    ::close(descriptor);
  }
}

SuppliedFile NewFileSupply::State::take(const std::string& hostFolder, mode_t permissions) {
  SuppliedFile file;
  bool few = false;
  {
    const std::lock_guard lock(mutex);
    if (folder != hostFolder) return file;
    mode = permissions;
    if (!ready.empty()) {
      file = ready.back();
      ready.pop_back();
    } else if (wanted > 0) {
      --wanted;  // the caller makes this one itself
    }
    few = wanted > 0 && ready.size() == kFew;
  }
  if (few) changed.notify_one();
  return file;
}

NewFileSupply::NewFileSupply() : state_(std::make_unique<State>()) {}
NewFileSupply::~NewFileSupply() = default;

void NewFileSupply::expect(std::string_view folder, std::size_t count) {
  std::string host;
  if (hostPathOf(folder, host) != kNoError || !mayHaveUnnamedFiles(host)) count = 0;
  std::vector<SuppliedFile> unused;
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->folder != host) unused.swap(state_->ready);
    state_->folder = std::move(host);
    state_->wanted = count;
  }
  closeAll(unused);
  if (count > 0 && !state_->worker.joinable())
    state_->worker = std::thread([state = state_.get()] { state->run(); });
  state_->changed.notify_one();
}

}  // namespace tandemize::platform
