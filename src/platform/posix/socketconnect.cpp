// Finding the addresses of a name, and connecting to the first of them that answers.

#include <netdb.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/posix/descriptor.h"
#include "platform/posix/socketaddress.h"
#include "platform/sockets.h"

namespace tandemize::platform {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kStep{20};        // between two looks at the events
constexpr Milliseconds kHeadStart{250};  // of one address over the next

// The answer of a name service that may come after nobody waits for it any more; whoever is last frees it.
struct Resolution {
  std::mutex mutex;
  std::condition_variable arrived;
  bool done = false;
  ErrorCode error = kNoError;
  std::vector<SocketAddress> addresses;
};

ErrorCode resolverError(int status, int number) {
  switch (status) {
    case 0:
      return kNoError;
    case EAI_AGAIN:
      return kHostTryAgain;
    case EAI_FAIL:
      return 11003;
    case EAI_MEMORY:
      return 10055;
    case EAI_SYSTEM:
      return socketError(number);
    default:
      return kHostNotFound;
  }
}

ErrorCode resolve(const std::string& host, std::uint16_t port, std::vector<SocketAddress>& addresses) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV;
  addrinfo* found = nullptr;
  const int status = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
  if (status != 0) return resolverError(status, errno);
  for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
    SocketAddress address;
    std::memcpy(&address.storage, entry->ai_addr, entry->ai_addrlen);
    address.length = entry->ai_addrlen;
    addresses.push_back(address);
  }
  ::freeaddrinfo(found);
  return addresses.empty() ? kHostNotFound : kNoError;
}

// The host's resolver cannot be told to give up, so a thread that nobody waits for at the end asks it.
ErrorCode resolveElsewhere(const std::string& host, std::uint16_t port, Clock::time_point end,
                           const KeepGoing& keepGoing, std::vector<SocketAddress>& addresses) {
  const auto shared = std::make_shared<Resolution>();
  try {
    std::thread([shared, host, port] {
      std::vector<SocketAddress> found;
      const ErrorCode error = resolve(host, port, found);
      const std::lock_guard lock(shared->mutex);
      shared->addresses = std::move(found);
      shared->error = error;
      shared->done = true;
      shared->arrived.notify_one();
    }).detach();
  } catch (const std::system_error&) {
    return resolve(host, port, addresses);  // no thread to be had
  }
  std::unique_lock lock(shared->mutex);
  while (!shared->arrived.wait_for(lock, kStep, [&] { return shared->done; })) {
    lock.unlock();
    if (keepGoing && !keepGoing()) return kStopped;
    if (Clock::now() >= end) return kSocketTimedOut;
    lock.lock();
  }
  addresses = shared->addresses;
  return shared->error;
}

ErrorCode addressesOf(const std::string& host, std::uint16_t port, Clock::time_point end,
                      const KeepGoing& keepGoing, std::vector<SocketAddress>& addresses) {
  // A name with a NUL inside would be looked up without its end.
  if (host.empty() || host.find('\0') != std::string::npos) return kHostNotFound;
  SocketAddress number;
  if (!toSocketAddress(host, port, number)) return resolveElsewhere(host, port, end, keepGoing, addresses);
  addresses.push_back(number);
  return kNoError;
}

class Attempt : public Waitable {
 public:
  // kNoError if it is connected, kSocketWouldBlock if it is under way.
  ErrorCode start(const SocketAddress& address) {
    socket_.reset(::socket(address.family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!socket_.isOpen()) return socketError(errno);
    if (::connect(socket_.get(), address.get(), address.length) == 0) return kNoError;
    return errno == EINPROGRESS || errno == EINTR ? kSocketWouldBlock : failed(errno);
  }
  // For one that a wait found ready.
  ErrorCode finish() {
    int number = 0;
    socklen_t length = sizeof number;
    if (::getsockopt(socket_.get(), SOL_SOCKET, SO_ERROR, &number, &length) != 0) number = errno;
    return number == 0 ? kNoError : failed(number);
  }
  [[nodiscard]] int handle() const override { return socket_.get(); }
  [[nodiscard]] int release() { return socket_.release(); }

 private:
  ErrorCode failed(int number) {
    socket_.reset();
    return socketError(number);
  }

  Descriptor socket_;
};

// Attempts that run side by side, each beginning when the one before has failed or had its head start.
class Race {
 public:
  Race(const std::vector<SocketAddress>& addresses, Clock::time_point end, const KeepGoing& keepGoing)
      : addresses_(addresses), end_(end), keepGoing_(keepGoing), attempts_(addresses.size()) {}

  // Gives the first that connected; else the failure of the last that failed.
  ErrorCode run(int& socket) {
    for (;;) {
      if (running_ == 0 && next_ == attempts_.size()) return error_;
      if (next_ < attempts_.size() && (running_ == 0 || Clock::now() >= nextStart_)) {
        if (startNext(socket)) return kNoError;
        continue;
      }
      if (wait(socket)) return kNoError;
      if (error_ == kStopped || error_ == kSocketTimedOut) return error_;
    }
  }

 private:
  bool startNext(int& socket) {
    Attempt& attempt = attempts_[next_];
    const ErrorCode error = attempt.start(addresses_[next_++]);
    nextStart_ = Clock::now() + kHeadStart;
    return settled(attempt, error, socket);
  }

  // Takes in how an attempt stands. True if it has won.
  bool settled(Attempt& attempt, ErrorCode error, int& socket) {
    if (error == kNoError) socket = attempt.release();
    if (error == kSocketWouldBlock) ++running_;
    // The host's own time limit is one address's failure, not the end of the race.
    if (error != kSocketWouldBlock) error_ = error == kSocketTimedOut ? kSocketUnreachable : error;
    return error == kNoError;
  }

  // Until one is ready, or the next shall begin.
  bool wait(int& socket) {
    std::vector<Awaited> all;
    all.reserve(attempts_.size());
    for (const Attempt& attempt : attempts_) all.push_back({&attempt, false, true});
    const ErrorCode error = waitForAny(all, timeToWait(), keepGoing_);
    if (error == kStopped || (error == kSocketTimedOut && Clock::now() >= end_)) error_ = error;
    for (std::size_t i = 0; error == kNoError && i < all.size(); ++i) {
      if (!all[i].writable) continue;
      --running_;
      if (settled(attempts_[i], attempts_[i].finish(), socket)) return true;
    }
    return false;
  }

  [[nodiscard]] unsigned timeToWait() const {
    const Clock::time_point until = next_ < attempts_.size() ? std::min(nextStart_, end_) : end_;
    const auto rest = std::chrono::ceil<Milliseconds>(until - Clock::now()).count();
    return rest > 0 ? static_cast<unsigned>(rest) : 0;
  }

  const std::vector<SocketAddress>& addresses_;
  Clock::time_point end_, nextStart_;
  const KeepGoing& keepGoing_;
  std::vector<Attempt> attempts_;
  std::size_t next_ = 0, running_ = 0;
  ErrorCode error_ = kHostNotFound;
};

}  // namespace

ErrorCode TcpChannel::connect(const std::string& host, std::uint16_t port, unsigned milliseconds,
                              const KeepGoing& keepGoing) {
  close(false);
  const Clock::time_point end = Clock::now() + Milliseconds(milliseconds);
  std::vector<SocketAddress> addresses;
  ErrorCode error = addressesOf(host, port, end, keepGoing, addresses);
  if (error != kNoError) return error;
  int socket = -1;
  error = Race(addresses, end, keepGoing).run(socket);
  if (error == kNoError) adopt(socket);
  return error;
}

}  // namespace tandemize::platform
