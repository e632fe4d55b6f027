#include "backup/RapportoFalliti.h"

#include <gtest/gtest.h>

#include "shell/Impostazioni.h"

namespace tandemize {
namespace {

class RapportoFalliti : public testing::Test {
 protected:
  RapportoFalliti() { Language = 1; }
  ~RapportoFalliti() override { AzzeraImpostazioni(); }
};

TEST_F(RapportoFalliti, It_tells_how_many_files_failed_and_then_path_and_reason_of_each) {
  EXPECT_EQ(tandemize::RapportoFalliti({{"C:\\a", "no room"}, {"C:\\b", "in use"}}, 2),
            "2 files were not copied:\r\rC:\\a\r    no room\rC:\\b\r    in use\r");
  EXPECT_EQ(tandemize::RapportoFalliti({{"C:\\a", "no room"}}, 1),
            "One file was not copied:\r\rC:\\a\r    no room\r");
}

TEST_F(RapportoFalliti, A_reason_stays_on_one_line_and_an_empty_one_has_none) {
  EXPECT_EQ(tandemize::RapportoFalliti({{"C:\\a", "one\r\ntwo"}, {"C:\\b", ""}}, 2),
            "2 files were not copied:\r\rC:\\a\r    one  two\rC:\\b\r");
}

TEST_F(RapportoFalliti, Files_that_are_not_named_are_left_to_the_log) {
  EXPECT_EQ(tandemize::RapportoFalliti({{"C:\\a", ""}}, 1001),
            "1001 files were not copied:\r\rC:\\a\r\rThe log names the others.\r");
}

TEST_F(RapportoFalliti, It_is_told_in_the_language_of_the_settings) {
  Language = 0;
  EXPECT_TRUE(tandemize::RapportoFalliti({}, 3).starts_with("3 file non sono stati copiati:"));
}

}  // namespace
}  // namespace tandemize
