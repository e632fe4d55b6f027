#include "platform/power.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <memory>

#include "platform/machine.h"
#include "platform/posix/names.h"

namespace tandemize::platform {

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;

constexpr const char* kService = "org.freedesktop.login1";
constexpr const char* kObject = "/org/freedesktop/login1";
constexpr const char* kInterface = "org.freedesktop.login1.Manager";

struct NamedError {
  std::string_view name;
  ErrorCode code;
};
constexpr auto kNamedErrors = std::to_array<NamedError>({
    {"org.freedesktop.DBus.Error.AccessDenied", kAccessDenied},
    {"org.freedesktop.DBus.Error.AuthFailed", kAccessDenied},
    {"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", kAccessDenied},
    {"org.freedesktop.DBus.Error.InvalidArgs", kInvalidParameter},
    {"org.freedesktop.DBus.Error.NameHasNoOwner", kNotSupported},
    {"org.freedesktop.DBus.Error.NoReply", kWaitTimedOut},
    {"org.freedesktop.DBus.Error.NotSupported", kNotSupported},
    {"org.freedesktop.DBus.Error.ServiceUnknown", kNotSupported},
    {"org.freedesktop.DBus.Error.Timeout", kWaitTimedOut},
    {"org.freedesktop.DBus.Error.UnknownInterface", kNotSupported},
    {"org.freedesktop.DBus.Error.UnknownMethod", kNotSupported},
    {"org.freedesktop.DBus.Error.UnknownObject", kNotSupported},
    {"org.freedesktop.login1.OperationInProgress", kBusy},
});

// A service that the bus could not start is as good as none, whatever the start failed by.
ErrorCode codeOfName(std::string_view name) {
  if (name.substr(0, 33) == "org.freedesktop.DBus.Error.Spawn.") return kNotSupported;
  const auto* const found = std::find_if(kNamedErrors.begin(), kNamedErrors.end(),
                                         [name](const NamedError& e) { return e.name == name; });
  return found == kNamedErrors.end() ? kGeneralFailure : found->code;
}

struct BusCloser {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }  // without a flush, which could wait
};
struct MessageCloser {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
struct SlotCloser {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
using Message = std::unique_ptr<sd_bus_message, MessageCloser>;

struct Reply {
  bool came = false;  // from the service, or from the bus in its place
  ErrorCode error = kNoError;
  std::string reason;
};

// `number` as the bus library gives it: below 0. A bus that is not there, or that hangs up, is as good as
// none.
Reply failedConnection(int number) {
  Reply reply;
  reply.error = kNotSupported;
  if (number == -EACCES || number == -EPERM) reply.error = kAccessDenied;
  if (number == -ETIMEDOUT) reply.error = kWaitTimedOut;
  if (number == -ENOMEM) reply.error = kNotEnoughMemory;
  reply.reason = "system bus: ";
  reply.reason += std::strerror(-number);
  return reply;
}

int takeReply(sd_bus_message* message, void* to, sd_bus_error* /*unused*/) {
  Reply& reply = *static_cast<Reply*>(to);
  reply.came = true;
  const sd_bus_error* const error = sd_bus_message_get_error(message);
  if (error == nullptr) return 0;
  reply.error = codeOfName(error->name);
  reply.reason = error->name;
  if (error->message != nullptr) reply.reason.append(": ").append(error->message);
  return 0;
}

// The system bus, and the moment by which everything asked through it is over. The library's own calls would
// wait for a bus that takes connections and says nothing much longer than a user does.
class LoginService {
 public:
  LoginService(const LoginService&) = delete;
  LoginService& operator=(const LoginService&) = delete;
  explicit LoginService(unsigned waitMilliseconds)
      : deadline_(Clock::now() + std::chrono::milliseconds(waitMilliseconds)) {
    sd_bus* bus = nullptr;
    opened_ = sd_bus_open_system(&bus);
    bus_.reset(bus);
  }

  // `types` and the arguments behind it as the bus library takes them.
  template <typename... Arguments>
  [[nodiscard]] Reply call(const char* member, const char* types, Arguments... arguments) {
    if (opened_ < 0) return failedConnection(opened_);
    sd_bus_message* made = nullptr;
    int result = sd_bus_message_new_method_call(bus_.get(), &made, kService, kObject, kInterface, member);
    const Message message(made);
    if (result >= 0) result = sd_bus_message_append(made, types, arguments...);
    return result < 0 ? failedConnection(result) : send(made);
  }

 private:
  [[nodiscard]] Reply send(sd_bus_message* message) {
    Reply reply;
    sd_bus_slot* made = nullptr;
    const int sent = sd_bus_call_async(bus_.get(), &made, message, takeReply, &reply, UINT64_MAX);
    const std::unique_ptr<sd_bus_slot, SlotCloser> slot(made);
    if (sent < 0) return failedConnection(sent);
    while (!reply.came) {
      if (const int result = step(); result < 0 && !reply.came) return failedConnection(result);
    }
    return reply;
  }

  // Handles one message, or waits for one; below 0 when the connection is lost or the time is over.
  [[nodiscard]] int step() {
    if (const int result = sd_bus_process(bus_.get(), nullptr); result != 0) return result;
    const auto left = std::chrono::duration_cast<Microseconds>(deadline_ - Clock::now());
    if (left <= Microseconds::zero()) return -ETIMEDOUT;
    const int result = sd_bus_wait(bus_.get(), static_cast<std::uint64_t>(left.count()));
    return result == -EINTR ? 0 : result;
  }

  std::unique_ptr<sd_bus, BusCloser> bus_;
  int opened_ = -ENOTCONN;
  Clock::time_point deadline_;
};

std::uint64_t microsecondsFromNow(unsigned seconds) {
  const auto moment = std::chrono::system_clock::now() + std::chrono::seconds(seconds);
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<Microseconds>(moment.time_since_epoch()).count());
}

PowerOffAnswer failed(Reply&& reply) {
  return {false, reply.error, std::move(reply.reason)};
}

}  // namespace

// The service shows its message at the moment it takes the request, so the message goes first. A request that
// nobody would wait for any more is not sent at all: its failure has been told by then. A message whose
// request was refused is taken back, or it would go out with the next shutdown that somebody else asks for.
PowerOffAnswer requestPowerOff(unsigned seconds, std::string_view message, unsigned waitMilliseconds) {
  if (equalIgnoringCase(environment("TANDEMIZE_POWER"), "log")) return {};
  LoginService service(waitMilliseconds);
  const std::string text(message);
  Reply told = service.call("SetWallMessage", "sb", text.c_str(), 1);
  if (!told.came || told.error == kWaitTimedOut) return failed(std::move(told));
  Reply reply = service.call("ScheduleShutdown", "st", "poweroff", microsecondsFromNow(seconds));
  if (reply.error == kNoError) return {true, kNoError, {}};
  if (reply.came && told.error == kNoError) static_cast<void>(service.call("SetWallMessage", "sb", "", 0));
  return failed(std::move(reply));
}

bool setForcedGuest(std::string_view /*value*/) {
  return false;
}

}  // namespace tandemize::platform
