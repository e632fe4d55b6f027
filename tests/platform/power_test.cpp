#include "platform/power.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "fixtures/LoginService.h"
#include "fixtures/TemporaryFolder.h"
#include "platform/environment.h"

namespace tandemize::platform {
namespace {

using test::LoginCall;
using test::LoginService;
using test::ScopedVariable;
using Words = std::vector<std::string>;

constexpr const char* kAccess = "org.freedesktop.DBus.Error.AccessDenied";

// Requests go to the address, truly.
class Asking {
 public:
  explicit Asking(const std::string& address)
      : power_("TANDEMIZE_POWER", std::nullopt), bus_("DBUS_SYSTEM_BUS_ADDRESS", address) {}

 private:
  ScopedVariable power_, bus_;
};

std::uint64_t nowMicroseconds() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(since).count());
}

TEST(PowerOff, The_login_service_is_asked_for_the_moment_with_the_message_shown_before) {
  LoginService service;
  const Asking asking(service.address());
  const std::uint64_t before = nowMicroseconds();
  const PowerOffAnswer answer = requestPowerOff(30, "a message");
  const std::uint64_t after = nowMicroseconds();
  EXPECT_TRUE(answer.asked);
  EXPECT_EQ(answer.error, kNoError) << answer.reason;
  const std::vector<LoginCall> calls = service.calls();
  ASSERT_EQ(service.members(), (Words{"SetWallMessage", "ScheduleShutdown"}));
  EXPECT_EQ(calls[0].arguments, (Words{"a message", "true"}));
  ASSERT_EQ(calls[1].arguments.size(), 2U);
  EXPECT_EQ(calls[1].arguments[0], "poweroff");
  const std::uint64_t moment = std::stoull(calls[1].arguments[1]);
  EXPECT_GE(moment, before + 30'000'000U);
  EXPECT_LE(moment, after + 30'000'000U);
}

TEST(PowerOff, Nobody_is_asked_for_a_password) {
  LoginService service;
  const Asking asking(service.address());
  static_cast<void>(requestPowerOff(30, "a message"));
  ASSERT_EQ(service.calls().size(), 2U);
  for (const LoginCall& call : service.calls()) EXPECT_FALSE(call.mayAskUser) << call.member;
}

TEST(PowerOff, A_refusal_comes_back_with_its_number_and_the_services_words) {
  const struct {
    const char* name;
    ErrorCode error;
  } refusals[] = {
      {kAccess, kAccessDenied},
      {"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", kAccessDenied},
      {"org.freedesktop.DBus.Error.UnknownMethod", kNotSupported},
      {"org.freedesktop.DBus.Error.Spawn.ChildExited", kNotSupported},
      {"org.freedesktop.DBus.Error.NoReply", kWaitTimedOut},
      {"org.freedesktop.login1.OperationInProgress", kBusy},
      {"org.example.Odd", kGeneralFailure},
  };
  LoginService service;
  const Asking asking(service.address());
  for (const auto& refusal : refusals) {
    service.refuse("ScheduleShutdown", refusal.name);
    const PowerOffAnswer answer = requestPowerOff(30, "a message");
    EXPECT_FALSE(answer.asked) << refusal.name;
    EXPECT_EQ(answer.error, refusal.error) << refusal.name;
    EXPECT_EQ(answer.reason, std::string(refusal.name) + ": the test's refusal");
  }
}

TEST(PowerOff, The_message_of_a_refused_request_is_taken_back) {
  LoginService service;
  const Asking asking(service.address());
  service.refuse("ScheduleShutdown", kAccess);
  static_cast<void>(requestPowerOff(30, "a message"));
  ASSERT_EQ(service.members(), (Words{"SetWallMessage", "ScheduleShutdown", "SetWallMessage"}));
  EXPECT_EQ(service.calls()[2].arguments, (Words{"", "false"}));
}

TEST(PowerOff, A_service_that_refuses_the_message_is_asked_all_the_same) {
  for (const char* const name : {kAccess, "org.freedesktop.DBus.Error.UnknownMethod"}) {
    LoginService service;
    const Asking asking(service.address());
    service.refuse("SetWallMessage", name);
    EXPECT_TRUE(requestPowerOff(30, "a message").asked);
    EXPECT_EQ(service.members(), (Words{"SetWallMessage", "ScheduleShutdown"}));
    service.refuse("ScheduleShutdown", kAccess);
    EXPECT_EQ(requestPowerOff(30, "a message").error, kAccessDenied);
    EXPECT_EQ(service.calls().size(), 4U) << "nothing is to be taken back";
  }
}

TEST(PowerOff, A_bus_without_the_service_counts_as_a_machine_that_cannot_be_asked) {
  const test::PrivateBus bus;
  const Asking asking(bus.address());
  const PowerOffAnswer answer = requestPowerOff(30, "a message");
  EXPECT_FALSE(answer.asked);
  EXPECT_EQ(answer.error, kNotSupported);
  EXPECT_EQ(answer.reason.rfind("org.freedesktop.DBus.Error.ServiceUnknown: ", 0), 0U) << answer.reason;
}

TEST(PowerOff, A_machine_without_a_bus_cannot_be_asked) {
  const test::TemporaryFolder folder;
  for (const std::string& address :
       {"unix:path=" + folder.host("nothing"), std::string("no address at all")}) {
    const Asking asking(address);
    const PowerOffAnswer answer = requestPowerOff(30, "a message");
    EXPECT_FALSE(answer.asked);
    EXPECT_EQ(answer.error, kNotSupported);
    EXPECT_EQ(answer.reason.rfind("system bus: ", 0), 0U) << answer.reason;
  }
}

TEST(PowerOff, A_bus_that_never_answers_is_waited_for_no_longer_than_told) {
  const test::SilentBus bus;
  const Asking asking(bus.address());
  const PowerOffAnswer answer = requestPowerOff(30, "a message", 50);
  EXPECT_FALSE(answer.asked);
  EXPECT_EQ(answer.error, kWaitTimedOut);
  EXPECT_NE(answer.reason, "");
  EXPECT_TRUE(bus.anyoneCame());
}

TEST(PowerOff, A_service_that_never_answers_the_request_is_waited_for_no_longer_than_told) {
  LoginService service;
  const Asking asking(service.address());
  service.keepSilent("ScheduleShutdown");
  EXPECT_EQ(requestPowerOff(30, "a message", 300).error, kWaitTimedOut);
}

TEST(PowerOff, A_request_whose_failure_has_been_told_is_not_sent_later) {
  LoginService service;
  const Asking asking(service.address());
  service.keepSilent("SetWallMessage");
  EXPECT_EQ(requestPowerOff(30, "a message", 300).error, kWaitTimedOut);
  service.refuse("SetWallMessage", kAccess);
  EXPECT_TRUE(requestPowerOff(1, "the next").asked);
  const Words members = service.members();
  EXPECT_EQ(std::count(members.begin(), members.end(), "ScheduleShutdown"), 1);
}

TEST(PowerOff, Only_a_request_to_log_asks_nobody) {
  for (const char* const word : {"log", "LOG"}) {
    const test::SilentBus bus;
    const Asking asking(bus.address());
    const ScopedVariable power("TANDEMIZE_POWER", word);
    const PowerOffAnswer answer = requestPowerOff(30, "a message");
    EXPECT_FALSE(answer.asked);
    EXPECT_EQ(answer.error, kNoError);
    EXPECT_FALSE(bus.anyoneCame());
  }
}

TEST(PowerOff, No_part_of_this_machine_obeys_the_rule_of_forced_guests) {
  EXPECT_FALSE(setForcedGuest("0"));
}

}  // namespace
}  // namespace tandemize::platform
