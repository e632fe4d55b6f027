#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/environment.h"
#include "platform/posix/hostlocale.h"
#include "platform/posix/localeform.h"

namespace tandemize::platform {
namespace {

using test::ScopedVariable;
using Cases = std::vector<std::pair<std::string, std::string>>;

TEST(ShortDateForm, Turns_the_patterns_of_the_locales) {
  const Cases cases = {
      {"%d/%m/%Y", "dd/MM/yyyy"},          // it_IT
      {"%m/%d/%Y", "MM/dd/yyyy"},          // en_US
      {"%d.%m.%Y", "dd.MM.yyyy"},          // de_DE
      {"%Y-%m-%d", "yyyy-MM-dd"},          // sv_SE
      {"%d/%m/%y", "dd/MM/yy"},            // en_GB
      {"%e.%-m.%Y", "d.M.yyyy"},           // cs_CZ, fi_FI
      {"%Y年%m月%d日", "yyyy年MM月dd日"},  // ja_JP
      {"%Y. %m. %d.", "yyyy. MM. dd."},    // hu_HU
      {"%D", "MM/dd/yy"},
      {"%F", "yyyy-MM-dd"},
      {"%_d/%0m/%Y", "d/MM/yyyy"},
  };
  for (const auto& [pattern, form] : cases) EXPECT_EQ(shortDateForm(pattern), form) << pattern;
}

TEST(ShortDateForm, Is_empty_for_a_pattern_that_cannot_be_turned) {
  for (const char* pattern :
       {"", "%", "%Oy/%Om/%Od", "%d %b %Y", "%A %d %m %Y", "%d/%m", "%m/%Y", "%d/%d/%m/%Y", "%x", "%d/%m/%Y%",
        "day %d/%m/%Y", "%d'%m'%Y", "%D %d", "%Ey/%m/%d", "plain"}) {
    EXPECT_EQ(shortDateForm(pattern), "") << pattern;
  }
}

TEST(TimeForm, Turns_the_patterns_of_the_locales) {
  const Cases cases = {
      {"%T", "HH:mm:ss"},    {"%H:%M:%S", "HH:mm:ss"},      {"%H.%M.%S", "HH.mm.ss"},
      {"%r", "hh:mm:ss tt"}, {"%l:%M:%S %P", "h:mm:ss tt"}, {"%k:%M", "H:mm"},
      {"%R", "HH:mm"},       {"%-H.%M.%S", "H.mm.ss"},      {"%H時%M分%S秒", "HH時mm分ss秒"},
  };
  for (const auto& [pattern, form] : cases) EXPECT_EQ(timeForm(pattern), form) << pattern;
}

TEST(TimeForm, Is_empty_for_a_pattern_that_cannot_be_turned) {
  for (const char* pattern : {"", "%OH:%OM:%OS", "%T %Z", "%I:%M:%S", "%H:%M %p", "%H:%I %p", "%M:%S", "%H",
                              "%H uur", "%H:%M:%S:%S"}) {
    EXPECT_EQ(timeForm(pattern), "") << pattern;
  }
}

TEST(HostForms, Are_empty_in_the_C_locales_and_in_one_that_is_not_installed) {
  const ScopedVariable time("LC_TIME", std::nullopt);
  const ScopedVariable lang("LANG", "xx_XX.UTF-8");
  for (const char* name : {"C", "POSIX", "C.UTF-8", "C.utf8", "xx_XX.UTF-8", ""}) {
    const ScopedVariable all("LC_ALL", name);
    EXPECT_EQ(hostShortDateForm(), "") << name;
    EXPECT_EQ(hostTimeForm(), "") << name;
  }
}

}  // namespace
}  // namespace tandemize::platform
