// Runs of the console program that turn the PC off when they end, or leave it on.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

#include "fixtures/LogLines.h"
#include "fixtures/LoginService.h"
#include "fixtures/RunProgram.h"

namespace tandemize {
namespace {

using test::ConsoleFolder;
using test::LoginService;
using test::ProgramResult;
using test::RunProgram;
using test::SilentBus;
using Words = std::vector<std::string>;

constexpr const char* Access = "org.freedesktop.DBus.Error.AccessDenied";

std::uint64_t nowMicroseconds() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(since).count());
}

// A backup of one file; its requests go to a bus of the test's own.
class Backup : public ConsoleFolder {
 public:
  Backup() {
    copySourceToDestination();
    work().write("source/a", "content");
  }

  // Both folders on shares of other computers.
  void onShares() {
    home().write("Drives.dat", "\\\\srv\\data = " + work().host("source") +
                                   "\n\\\\nas\\photos = " + work().host("destination") + "\n");
    diagram(test::Diagram::copying("\\\\srv\\data", "\\\\nas\\photos"));
  }

  [[nodiscard]] ProgramResult runOn(const std::string& address, const Words& command = {"backup"},
                                    const std::string& power = "") const {
    RunProgram run(words(command));
    run.set("TANDEMIZE_POWER", power).set("DBUS_SYSTEM_BUS_ADDRESS", address).set("TANDEMIZE_NETWORK", "up");
    return run.run();
  }

  [[nodiscard]] bool copied() { return work().read("destination/a") == "content"; }
};

TEST(PowerRun, A_backup_that_is_to_turn_this_PC_off_asks_for_it_when_it_has_ended) {
  Backup backup;
  LoginService service;
  backup.setting("Advance_ShutDownLocal", "1");
  const std::uint64_t before = nowMicroseconds();
  const ProgramResult result = backup.runOn(service.address());
  const std::uint64_t after = nowMicroseconds();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, backup.message(189) + "\n");
  EXPECT_TRUE(backup.copied());
  ASSERT_EQ(service.members(), (Words{"SetWallMessage", "ScheduleShutdown"}));
  EXPECT_EQ(service.calls()[0].arguments, (Words{"ShutDown By Tandemize Backup", "true"}));
  EXPECT_EQ(service.calls()[1].arguments[0], "poweroff");
  const std::uint64_t moment = std::stoull(service.calls()[1].arguments[1]);
  EXPECT_GE(moment, before + 30'000'000U);
  EXPECT_LE(moment, after + 30'000'000U);
}

TEST(PowerRun, The_log_still_ends_with_the_last_file) {
  Backup backup;
  LoginService service;
  backup.setting("Advance_ShutDownLocal", "1");
  EXPECT_EQ(backup.runOn(service.address()).status, 0);
  EXPECT_EQ(backup.logLines().at(backup.logLines().size() - 2), "| - OK -");
}

TEST(PowerRun, The_PCs_of_a_run_over_the_network_are_left_on) {
  Backup backup;
  backup.onShares();
  const SilentBus bus;
  backup.setting("Advance_ShutDownAll", "1");
  const ProgramResult result = backup.runOn(bus.address());
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(backup.copied());
  EXPECT_FALSE(bus.anyoneCame());
  EXPECT_EQ(result.err, backup.message(189) + "\n");
}

TEST(PowerRun, With_both_settings_only_this_PC_is_asked_and_once) {
  Backup backup;
  backup.onShares();
  LoginService service;
  backup.setting("Advance_ShutDownAll", "1");
  backup.setting("Advance_ShutDownLocal", "1");
  EXPECT_EQ(backup.runOn(service.address()).status, 0);
  EXPECT_TRUE(backup.copied());
  EXPECT_EQ(service.members(), (Words{"SetWallMessage", "ScheduleShutdown"}));
}

TEST(PowerRun, Local_paths_and_the_setting_for_the_other_PCs_ask_for_nothing) {
  Backup backup;
  const SilentBus bus;
  backup.setting("Advance_ShutDownAll", "1");
  EXPECT_EQ(backup.runOn(bus.address()).status, 0);
  EXPECT_TRUE(backup.copied());
  EXPECT_FALSE(bus.anyoneCame());
}

TEST(PowerRun, Without_the_settings_nothing_is_asked_for) {
  Backup backup;
  const SilentBus bus;
  EXPECT_EQ(backup.runOn(bus.address()).status, 0);
  EXPECT_TRUE(backup.copied());
  EXPECT_FALSE(bus.anyoneCame());
}

TEST(PowerRun, A_preview_asks_for_nothing) {
  Backup backup;
  const SilentBus bus;
  backup.setting("Advance_ShutDownLocal", "1");
  EXPECT_EQ(backup.runOn(bus.address(), {"backup", "--preview"}).status, 0);
  EXPECT_FALSE(bus.anyoneCame());
}

TEST(PowerRun, A_refusal_is_told_and_the_run_ends_as_it_would_have_ended) {
  Backup backup;
  LoginService service;
  service.refuse("ScheduleShutdown", Access);
  backup.setting("Advance_ShutDownLocal", "1");
  const ProgramResult result = backup.runOn(service.address());
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "ShoutDown Fallito Errore 5\n" + backup.message(189) + "\n");
  EXPECT_TRUE(backup.copied());
  EXPECT_EQ(test::countLinesWith(backup.logLines(), "ShoutDown Fallito Errore 5 (" + std::string(Access)), 1);
}

TEST(PowerRun, A_machine_without_a_bus_ends_the_run_as_it_would_have_ended) {
  Backup backup;
  backup.setting("Advance_ShutDownLocal", "1");
  const ProgramResult result = backup.runOn("unix:path=" + backup.work().host("nothing"));
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "ShoutDown Fallito Errore 50\n" + backup.message(189) + "\n");
  EXPECT_TRUE(backup.copied());
}

TEST(PowerRun, A_request_that_is_only_to_be_logged_reaches_the_log_and_nobody_else) {
  Backup backup;
  const SilentBus bus;
  backup.setting("Advance_ShutDownLocal", "1");
  EXPECT_EQ(backup.runOn(bus.address(), {"backup"}, "log").status, 0);
  EXPECT_FALSE(bus.anyoneCame());
  EXPECT_EQ(
      test::countLinesWith(backup.logLines(),
                           "| Shutdown of this PC after 30 seconds only noted down (TANDEMIZE_POWER=log): "
                           "'ShutDown By Tandemize Backup'"),
      1);
}

}  // namespace
}  // namespace tandemize
