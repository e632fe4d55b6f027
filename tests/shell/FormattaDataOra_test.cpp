#include <gtest/gtest.h>

#include "platform/machine.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

std::int64_t moment(int year, int month, int day, int hour, int minute, int second) {
  return platform::utcFromLocal({year, month, day, hour, minute, second}).value();
}

TEST(FormattaDataOra, Follows_the_format) {
  const std::int64_t when = moment(2004, 3, 9, 7, 5, 2);
  const std::pair<const char*, const char*> cases[] = {
      {"dd/mm/yyyy", "09/03/2004"},
      {"dd/MM/yyyy", "09/03/2004"},
      {"d-m-yy", "9-3-04"},
      {"yyyy.MM.d", "2004.03.9"},
      {"H.mm.ss", "7.05.02"},
      {"HH:m:s", "07:5:2"},
      {"hh.mm", "07.05"},
      {"hh.nn", "07.05"},
      {"n", "5"},
      {"mm/dd/yyyy hh.mm", "03/09/2004 07.05"},
      {"hh.mm dd/mm/yyyy", "07.05 09/03/2004"},
      {"hh.mm.ss mm", "07.05.02 03"},
      {"", ""},
      {"(dd)", "(09)"},
      {"dd à MM", "09 à 03"},
      {"hh:mm:ss tt", "07:05:02 AM"},
  };
  for (const auto& [format, text] : cases) EXPECT_EQ(FormattaDataOra(when, format), text) << format;
}

TEST(FormattaDataOra, With_the_half_of_the_day_a_small_hour_counts_to_twelve) {
  const std::pair<int, const char*> cases[] = {{0, "12 AM 0"},   {1, "1 AM 1"},   {11, "11 AM 11"},
                                               {12, "12 PM 12"}, {13, "1 PM 13"}, {23, "11 PM 23"}};
  for (const auto& [hour, text] : cases) {
    const std::int64_t when = moment(2020, 1, 15, hour, 0, 0);
    EXPECT_EQ(FormattaDataOra(when, "h tt") + " " + FormattaDataOra(when, "H"), text);
  }
}

TEST(FormattaDataOra, A_format_gives_the_same_after_many_others) {
  const std::int64_t when = moment(1999, 12, 31, 23, 59, 58);
  for (int round = 0; round < 3; ++round) {
    for (const char* other : {"d", "m", "yy", "h", "n", "s"})
      EXPECT_FALSE(FormattaDataOra(when, other).empty());
    EXPECT_EQ(FormattaDataOra(when, "dd/mm/yyyy"), "31/12/1999");
  }
}

TEST(DataOraGenerale, Is_the_date_a_blank_and_the_time) {
  AzzeraModuloPrincipale();
  const std::int64_t when = moment(2004, 3, 9, 7, 5, 2);
  EXPECT_EQ(DataOraGenerale(when), "09/03/2004 7.05.02");
  FormatoData = "yyyy-MM-dd";
  FormatoOra = "HH:mm:ss";
  EXPECT_EQ(DataOraGenerale(when), "2004-03-09 07:05:02");
  AzzeraModuloPrincipale();
}

}  // namespace
}  // namespace tandemize
