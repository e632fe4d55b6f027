#include "synchronisation/FiltroBackup.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fixtures/ProgramFolder.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "synchronisation/FiltroAccetta.h"

namespace tandemize {
namespace {

using Voci = std::vector<std::string>;

TEST(FiltroBackup, A_stored_filter_is_taken_apart_into_its_sign_and_its_entries) {
  const struct {
    const char* stored;
    bool includes;
    Voci entries;
  } cases[] = {{"", false, {}},
               {"+", true, {}},
               {"-", false, {}},
               {"+|", true, {}},
               {"-|", false, {}},
               {"+|*.doc|*.xls|", true, {"*.doc", "*.xls"}},
               {"-|*.tmp|", false, {"*.tmp"}},
               {"*|*.tmp|", false, {"*.tmp"}},
               // Text behind the last bar is no entry, and the two first characters never belong to one.
               {"+|*.doc|*.xls", true, {"*.doc"}},
               {"+*.doc|", true, {".doc"}},
               {"+|*.a||*.b|", true, {"*.a", "", "*.b"}}};
  for (const auto& c : cases) {
    FiltroBackup filter;
    filter.Includi = !c.includes;
    filter.CaricaFiltro(c.stored);
    EXPECT_EQ(filter.Includi, c.includes) << c.stored;
    EXPECT_EQ(filter.Voci(), c.entries) << c.stored;
  }
}

TEST(FiltroBackup, The_stored_form_is_the_sign_a_bar_and_each_entry_with_its_bar) {
  for (const char* stored : {"+|", "-|", "+|*.doc|*.xls|", "-|*.tmp|*.tmp|"}) {
    FiltroBackup filter;
    filter.CaricaFiltro(stored);
    EXPECT_EQ(filter.ComponiFiltro(), stored);
  }
}

TEST(FiltroBackup, No_filter_becomes_a_sign_and_a_bar_which_keeps_all_files_too) {
  FiltroBackup filter;
  filter.CaricaFiltro("");
  EXPECT_EQ(filter.ComponiFiltro(), "-|");
  EXPECT_TRUE(FiltroAccetta(filter.ComponiFiltro(), "a.doc"));
}

TEST(FiltroBackup, Loading_replaces_the_entries_of_the_filter_before) {
  FiltroBackup filter;
  filter.CaricaFiltro("+|*.doc|");
  filter.CaricaFiltro("-|*.tmp|");
  EXPECT_EQ(filter.ComponiFiltro(), "-|*.tmp|");
}

TEST(FiltroBackup, An_entry_begins_with_a_star_and_a_dot_or_message_460_tells_so) {
  test::ProgramFolder program;
  for (const char* wrong : {"", "*", ".doc", "doc", "*doc", " *.doc", "a*.doc", "Word document (.doc)"}) {
    program.screen.boxes.clear();
    EXPECT_FALSE(FiltroBackup::ControllaEstensione(wrong)) << wrong;
    ASSERT_EQ(program.screen.boxes.size(), 1U) << wrong;
    EXPECT_EQ(program.screen.boxes[0].text, Messaggio(460));
    EXPECT_EQ(program.screen.boxes[0].style, StileInformazione);
  }
  program.screen.boxes.clear();
  for (const char* right : {"*.doc", "*.", "*.tar.gz", "*.*", "*. ", "*.perché", "*.\"x\""})
    EXPECT_TRUE(FiltroBackup::ControllaEstensione(right)) << right;
  EXPECT_TRUE(program.screen.boxes.empty());
}

TEST(FiltroBackup, What_the_file_of_the_profile_would_tear_apart_is_refused_in_words) {
  test::ProgramFolder program;
  for (const char* wrong : {"*.a|b", "*.a,b", "*.a\nb", "*.a\rb"}) {
    program.screen.boxes.clear();
    EXPECT_FALSE(FiltroBackup::ControllaEstensione(wrong)) << wrong;
    ASSERT_EQ(program.screen.boxes.size(), 1U) << wrong;
    EXPECT_NE(program.screen.boxes[0].text, Messaggio(460));
  }
}

TEST(FiltroBackup, Every_entry_that_is_accepted_comes_back_from_the_companion_file) {
  test::ProgramFolder program;
  FiltroBackup filter;
  filter.Includi = true;
  for (const char* entry :
       {"*.doc", "*.", "*. ", "*.perché", "*.\"x\"", "*.=", "*.a;b", "*.'", "*.%", "*.# "})
    ASSERT_TRUE(filter.Aggiungi(entry)) << entry;
  FilterBackup = filter.ComponiFiltro();
  ASSERT_EQ(ScriviFileProfilo({}, -2), platform::kNoError);
  ASSERT_TRUE(LeggiFileProfilo(FileProfilo));
  EXPECT_EQ(FilterBackup, filter.ComponiFiltro());
}

TEST(FiltroBackup, Repeats_are_not_refused) {
  FiltroBackup filter;
  EXPECT_TRUE(filter.Aggiungi("*.doc"));
  EXPECT_TRUE(filter.Aggiungi("*.doc"));
  EXPECT_EQ(filter.Voci(), (Voci{"*.doc", "*.doc"}));
}

TEST(FiltroBackup, A_refused_entry_is_not_added) {
  test::ProgramFolder program;
  FiltroBackup filter;
  EXPECT_FALSE(filter.Aggiungi("doc"));
  EXPECT_TRUE(filter.Voci().empty());
}

TEST(FiltroBackup, Removing_takes_the_one_entry_and_no_other) {
  FiltroBackup filter;
  filter.CaricaFiltro("+|*.a|*.b|*.c|");
  filter.Rimuovi(1);
  EXPECT_EQ(filter.Voci(), (Voci{"*.a", "*.c"}));
  filter.Rimuovi(2);
  EXPECT_EQ(filter.Voci().size(), 2U);
}

TEST(FiltroBackup, The_list_is_emptied_only_after_a_yes) {
  test::ProgramFolder program;
  FiltroBackup filter;
  filter.CaricaFiltro("+|*.a|");
  program.screen.answers = {Risposta::No};
  filter.Svuota();
  EXPECT_EQ(filter.Voci().size(), 1U);
  program.screen.answers = {Risposta::Sì};
  filter.Svuota();
  EXPECT_TRUE(filter.Voci().empty());
  ASSERT_EQ(program.screen.boxes.size(), 2U);
  EXPECT_EQ(program.screen.boxes[0].text, "Do you want clear the list ?");
  EXPECT_EQ(program.screen.boxes[0].style, StileSìNo);
}

TEST(FiltroBackup, What_it_does_is_told_in_both_languages_and_differs_by_mode_and_by_emptiness) {
  test::ProgramFolder program;
  std::vector<std::string> sentences;
  for (const std::uint8_t language : {std::uint8_t{0}, std::uint8_t{1}})
    for (const char* stored : {"+|", "-|", "+|*.a|", "-|*.a|"}) {
      Language = language;
      FiltroBackup filter;
      filter.CaricaFiltro(stored);
      for (const std::string& text : {filter.Effetto(), RiassuntoFiltro(stored)}) {
        EXPECT_EQ(std::ranges::count(sentences, text), 0) << text;
        sentences.push_back(text);
      }
    }
  EXPECT_EQ(RiassuntoFiltro("+|*.doc|*.xls|"), "only *.doc, *.xls");
  EXPECT_EQ(RiassuntoFiltro(""), "all files");
}

TEST(ElencoEstensioni, It_begins_with_the_four_fixed_ones_and_goes_on_with_the_known_ones_in_order) {
  const Voci fixed = {"*.dat", "*.doc", "*.xls", "*.txt"};
  EXPECT_EQ(ElencoEstensioni({}), fixed);
  EXPECT_EQ(ElencoEstensioni({"*.zip", "*.txt", "*.jpg", "*.DOC", "*.zip", "*.Zip"}),
            (Voci{"*.dat", "*.doc", "*.xls", "*.txt", "*.jpg", "*.zip"}));
}

TEST(ElencoEstensioni, It_offers_nothing_that_the_check_would_refuse_or_that_is_no_extension) {
  EXPECT_EQ(
      ElencoEstensioni({"makefile", "*", "*.", "*~", "README*", "*.a,b", "*.a|b", "*.[1-9]", "*.s*", "x.*"})
          .size(),
      4U);
}

}  // namespace
}  // namespace tandemize
