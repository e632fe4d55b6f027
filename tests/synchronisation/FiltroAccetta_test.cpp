#include "synchronisation/FiltroAccetta.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tandemize {
namespace {

struct Case {
  const char* filter;
  const char* name;
  bool kept;
};

void expectAll(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(FiltroAccetta(c.filter, c.name), c.kept) << c.filter << " " << c.name;
}

TEST(FiltroAccetta, An_include_filter_keeps_the_named_extensions_and_nothing_else) {
  expectAll({{"+|*.doc|*.xls|", "letter.doc", true},
             {"+|*.doc|*.xls|", "table.xls", true},
             {"+|*.doc|*.xls|", "note.txt", false},
             {"+|*.doc|*.xls|", "letter.docx", false},
             {"+|*.doc|*.xls|", "letter.do", false}});
}

TEST(FiltroAccetta, An_exclude_filter_drops_the_named_extensions_and_nothing_else) {
  expectAll({{"-|*.doc|*.xls|", "letter.doc", false},
             {"-|*.doc|*.xls|", "table.xls", false},
             {"-|*.doc|*.xls|", "note.txt", true},
             {"-|*.doc|*.xls|", "letter.docx", true}});
}

TEST(FiltroAccetta, Any_first_character_but_plus_excludes) {
  expectAll({{"x|*.doc|", "letter.doc", false}, {"x|*.doc|", "note.txt", true}});
}

TEST(FiltroAccetta, Letter_case_does_not_count_in_filter_or_name) {
  expectAll({{"+|*.doc|", "LETTER.DOC", true},
             {"+|*.DOC|", "letter.doc", true},
             {"+|*.Doc|", "letter.dOC", true},
             {"+|*.perù|", "GITA.PERÙ", true},
             {"-|*.doc|", "LETTER.DOC", false}});
}

TEST(FiltroAccetta, Only_the_text_from_the_last_dot_on_is_the_extension) {
  expectAll({{"+|*.gz|", "a.tar.gz", true},
             {"+|*.tar|", "a.tar.gz", false},
             {"+|*.profile|", ".profile", true},
             {"+|*.doc|", "a.doc.", false}});
}

TEST(FiltroAccetta, A_name_without_a_dot_matches_only_entries_that_end_in_the_whole_name) {
  expectAll({{"+|*.doc|", "doc", true},
             {"+|*.doc|", "c", true},
             {"+|*.doc|", "README", false},
             {"+|*.README|", "readme", true},
             {"-|*.doc|", "doc", false},
             {"-|*.doc|", "README", true}});
}

TEST(FiltroAccetta, An_extension_longer_than_an_entry_never_matches_it) {
  expectAll({{"+|*.c|", "a.conf", false}, {"+|.c|", "a.conf", false}, {"-|*.c|", "a.conf", true}});
}

TEST(FiltroAccetta, The_star_is_never_interpreted) {
  expectAll({{"+|*.*|", "letter.doc", false},
             {"+|*|", "README", false},
             {"+|*.*|", "odd.*", true},
             {"+|work.doc|", "private.doc", true}});
}

TEST(FiltroAccetta, An_include_filter_without_entries_keeps_no_file_and_an_exclude_filter_all) {
  expectAll({{"+|", "letter.doc", false},
             {"+|", "README", false},
             {"-|", "letter.doc", true},
             {"-|", "README", true}});
}

TEST(FiltroAccetta, The_first_match_ends_the_search_wherever_its_entry_stands) {
  expectAll({{"+|*.a|*.b|*.c|", "x.c", true}, {"-|*.a|*.b|*.c|*.c|", "x.c", false}});
}

}  // namespace
}  // namespace tandemize
