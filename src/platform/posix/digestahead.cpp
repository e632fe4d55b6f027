#include "platform/digestahead.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/posix/descriptor.h"
#include "platform/posix/status.h"

namespace tandemize::platform {

namespace {

enum class Stage : std::uint8_t { untouched, known, unknown };

struct Item {
  std::string host;  // empty: nothing to be read
  std::uint64_t size = 0;
  std::uint32_t digest = 0;
  std::atomic<Stage> stage{Stage::untouched};
};

// One byte more than the largest file, so that one that has grown shows.
class Buffer {
 public:
  Buffer() : data_(std::make_unique_for_overwrite<std::uint8_t[]>(DigestAhead::kLargest + 1)) {}

  // True if the file holds exactly `size` bytes.
  bool fill(const std::string& host, std::uint64_t size) {
    const Descriptor file(openWithoutWaiting(host.c_str(), O_RDONLY));
    if (!file.isOpen()) return false;
    const auto room = static_cast<std::size_t>(size) + 1;
    std::size_t got = 0;
    ssize_t count = 0;
    do {
      count = ::read(file.get(), data_.get() + got, room - got);
      if (count < 0 && errno != EINTR) return false;
      if (count > 0) got += static_cast<std::size_t>(count);
      // One call that gives all but the last byte has met the end.
    } while (count != 0 && got < room && static_cast<std::size_t>(count) != size);
    return got == size;
  }
  [[nodiscard]] const void* data() const { return data_.get(); }

 private:
  std::unique_ptr<std::uint8_t[]> data_;
};

}  // namespace

struct DigestAhead::State {
  explicit State(Digest function) : digest(function) {}

  // Takes the next file that nobody has taken yet; false if there is none.
  bool workOnNext(Buffer& buffer) {
    const std::size_t place = next.fetch_add(1);
    if (place >= count) return false;
    Item& item = items[place];
    const bool read = !item.host.empty() && buffer.fill(item.host, item.size);
    if (read) item.digest = digest(buffer.data(), static_cast<std::size_t>(item.size));
    item.stage.store(read ? Stage::known : Stage::unknown, std::memory_order_release);
    return true;
  }

  void run() {
    // Stop signals are for the program's own thread.
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
    Buffer buffer;
    std::unique_lock lock(mutex);
    for (std::uint64_t done = 0;;) {
      changed.wait(lock, [&] { return ended || (open && list != done); });
      if (ended) return;
      done = list;
      busy = true;
      lock.unlock();
      while (workOnNext(buffer)) {
      }
      lock.lock();
      busy = false;
      changed.notify_all();
    }
  }

  // After this the thread touches no item, and nothing that belongs to them, until the next list.
  void drop() {
    next = items.size();
    std::unique_lock lock(mutex);
    open = false;
    changed.wait(lock, [this] { return !busy; });
  }

  void start() {
    {
      const std::lock_guard lock(mutex);
      next = 0;
      open = true;
      ++list;
    }
    changed.notify_all();
    if (worker.joinable()) return;
    try {
      worker = std::thread([this] { run(); });
    } catch (const std::system_error&) {
      // A host that grants no second thread: the caller works on every file itself.
    }
  }

  Digest digest;
  std::vector<Item> items;
  std::size_t count = 0;  // items in use
  std::atomic<std::size_t> next = 0;
  Buffer own;  // the caller's

  std::mutex mutex;  // for what follows
  std::condition_variable changed;
  std::uint64_t list = 0;
  bool open = false, busy = false, ended = false;
  std::thread worker;
};

DigestAhead::DigestAhead(Digest digest) : state_(std::make_unique<State>(digest)) {}

DigestAhead::~DigestAhead() {
  state_->next = state_->items.size();
  {
    const std::lock_guard lock(state_->mutex);
    state_->ended = true;
  }
  state_->changed.notify_all();
  if (state_->worker.joinable()) state_->worker.join();
}

void DigestAhead::expect(const std::vector<File>& files) {
  state_->drop();
  if (state_->items.size() < files.size()) state_->items = std::vector<Item>(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    Item& item = state_->items[i];
    const bool fits = files[i].size > 0 && files[i].size <= kLargest;
    if (!fits || hostPathOf(files[i].path, item.host) != kNoError) item.host.clear();
    item.size = files[i].size;
    item.stage.store(Stage::untouched, std::memory_order_relaxed);
  }
  state_->count = files.size();
  state_->start();
}

DigestAhead::Answer DigestAhead::ask(std::size_t place, std::uint32_t& digest) {
  if (place >= state_->count) return Answer::unknown;
  const Item& item = state_->items[place];
  const Stage stage = item.stage.load(std::memory_order_acquire);
  if (stage == Stage::untouched) {
    // A file that the thread has in hand comes within microseconds.
    if (!state_->workOnNext(state_->own)) std::this_thread::yield();
    return Answer::pending;
  }
  digest = item.digest;
  return stage == Stage::known ? Answer::known : Answer::unknown;
}

}  // namespace tandemize::platform
