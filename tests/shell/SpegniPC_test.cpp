#include "shell/SpegniPC.h"

#include <gtest/gtest.h>

#include "fixtures/ProgramFolder.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

TEST(SpegniPC, Other_computers_are_listed_and_nothing_is_asked_for) {
  test::ProgramFolder folder;
  EXPECT_TRUE(SpegniPC("server", false, 30, "message"));
  EXPECT_TRUE(folder.screen.boxes.empty());
  EXPECT_EQ(folder.log(), "");
}

TEST(SpegniPC, This_version_says_that_it_cannot_turn_this_one_off) {
  test::ProgramFolder folder;
  EXPECT_FALSE(SpegniPC(NomeComputer(), true, 30, "message"));
  EXPECT_EQ(folder.screen.boxes.size(), 1U);
  ApplicazioneNascosta = true;
  EXPECT_FALSE(SpegniPC(NomeComputer(), true, 30, "message"));
  EXPECT_EQ(folder.screen.balloons.size(), 1U);
  EXPECT_NE(folder.log(), "");
}

}  // namespace
}  // namespace tandemize
