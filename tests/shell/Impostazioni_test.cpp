#include "shell/Impostazioni.h"

#include <gtest/gtest.h>

namespace tandemize {
namespace {

class ImpostazioniTest : public ::testing::Test {
 protected:
  ImpostazioniTest() { AzzeraImpostazioni(); }
  ~ImpostazioniTest() override { AzzeraImpostazioni(); }
};

TEST_F(ImpostazioniTest, A_buffer_of_zero_counts_as_its_default_and_stays_zero) {
  EXPECT_EQ(BufferLocaleKB(), 1024);
  EXPECT_EQ(BufferLanKB(), 1024);
  EXPECT_EQ(BufferFtpKB(), 64);
  EXPECT_EQ(Advance_Buf_Local, 0);
}

TEST_F(ImpostazioniTest, A_buffer_is_used_as_it_is_set_within_sane_bounds) {
  Advance_Buf_Local = 1;
  Advance_Buf_Lan = 2'000'000'000;
  Advance_Buf_FTP = -7;
  EXPECT_EQ(BufferLocaleKB(), 1);
  EXPECT_EQ(BufferLanKB(), 1'048'576);
  EXPECT_EQ(BufferFtpKB(), 64);
}

TEST_F(ImpostazioniTest, The_lists_begin_with_their_one_unused_element) {
  EXPECT_EQ(FtpServers.size(), 1U);
  EXPECT_EQ(TimerAdvList.size(), 1U);
}

}  // namespace
}  // namespace tandemize
