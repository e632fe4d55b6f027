#include "shell/windows/TastiDiScelta.h"

#include <gtest/gtest.h>

namespace tandemize {
namespace {

TEST(TastiDiScelta, Take_the_first_letter_of_a_word_that_is_free_then_any_other) {
  const struct {
    std::vector<std::string> captions;
    QStringList expected;
  } cases[] = {{{"Run Backup", "Run Tandemize"}, {"&Run Backup", "Run &Tandemize"}},
               {{"Esegui", "Esci"}, {"&Esegui", "E&sci"}},
               {{"aa", "AA"}, {"&aa", "AA"}},
               {{"è", "7 b"}, {"&è", "7 &b"}},
               {{"", "a"}, {"", "&a"}}};
  for (const auto& menu : cases) EXPECT_EQ(ConTastiDiScelta(menu.captions), menu.expected);
}

TEST(TastiDiScelta, An_ampersand_of_a_caption_stands_for_itself) {
  EXPECT_EQ(ConTastiDiScelta({"A & B", "A & C"}), QStringList({"&A && B", "A && &C"}));
}

}  // namespace
}  // namespace tandemize
