#include "platform/machine.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/environment.h"
#include "platform/hosttree.h"

namespace tandemize::platform {
namespace {

using test::ScopedVariable;

TEST(Machine, Knows_itself) {
  EXPECT_FALSE(computerName().empty());
  EXPECT_GT(freePhysicalMemory(), 0);
  EXPECT_EQ(platformId(), 2);
  EXPECT_EQ(processNumber(), ::getpid());
}

TEST(Machine, Takes_the_word_of_the_variable_for_the_network) {
  {
    const ScopedVariable network("TANDEMIZE_NETWORK", "up");
    EXPECT_TRUE(networkUp());
  }
  {
    const ScopedVariable network("TANDEMIZE_NETWORK", "down");
    EXPECT_FALSE(networkUp());
  }
  const ScopedVariable none("TANDEMIZE_NETWORK", std::nullopt);
  const bool asked = networkUp();
  const ScopedVariable network("TANDEMIZE_NETWORK", "sideways");
  EXPECT_EQ(networkUp(), asked);
}

TEST(Machine, Reads_the_environment) {
  const ScopedVariable variable("TANDEMIZE_TEST_VARIABLE", "value");
  EXPECT_EQ(environment("TANDEMIZE_TEST_VARIABLE"), "value");
  const ScopedVariable unset("TANDEMIZE_TEST_VARIABLE", std::nullopt);
  EXPECT_EQ(environment("TANDEMIZE_TEST_VARIABLE"), "");
}

TEST(Machine, Takes_a_pipe_for_a_terminal_of_80_columns) {
  const int width = test::inChild([] {
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0 || ::dup2(ends[1], STDERR_FILENO) < 0) return 127;
    return errorOutputIsTerminal() ? 126 : terminalWidth();
  });
  EXPECT_EQ(width, 80);
}

class StopSignals : public testing::TestWithParam<int> {};

TEST_P(StopSignals, Raise_a_flag_instead_of_ending_the_program) {
  const int result = test::inChild([] {
    catchStopSignals();
    if (stopRequested()) return 1;
    ::raise(GetParam());
    if (!stopRequested()) return 2;
    clearStopRequest();
    return stopRequested() ? 3 : 0;
  });
  EXPECT_EQ(result, 0);
}

INSTANTIATE_TEST_SUITE_P(Both, StopSignals, testing::Values(SIGINT, SIGTERM));

TEST(Signals, Of_a_closed_pipe_come_back_as_an_error_number) {
  const int result = test::inChild([] {
    catchStopSignals();
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0) return 1;
    ::close(ends[0]);
    return ::write(ends[1], "x", 1) == -1 && errno == EPIPE ? 0 : 2;
  });
  EXPECT_EQ(result, 0);
}

TEST(Sleep, Ends_early_when_a_signal_comes) {
  const int result = test::inChild([] {
    catchStopSignals();
    ::ualarm(20000, 0);
    std::signal(SIGALRM, [](int) { ::raise(SIGTERM); });
    sleepMilliseconds(60000);
    return stopRequested() && monotonicMilliseconds() > 0 ? 0 : 1;
  });
  EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace tandemize::platform
