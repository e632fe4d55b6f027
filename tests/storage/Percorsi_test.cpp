#include "storage/Percorsi.h"

#include <gtest/gtest.h>

namespace tandemize {
namespace {

struct PathForm {
  std::string path;
  std::int32_t kind;
  char separator;
  std::string root;
};

TEST(TipoPercorso, The_first_characters_tell_kind_separator_and_root) {
  const std::vector<PathForm> forms = {
      {"", NessunPercorso, '\\', ""},
      {"C:\\Backup", PercorsoLocale, '\\', "C:"},
      {"C:", PercorsoLocale, '\\', "C:"},
      {"abc", PercorsoLocale, '\\', "ab"},
      {"a", PercorsoLocale, '\\', "a"},
      {"èàx", PercorsoLocale, '\\', "èà"},
      {"\\one", PercorsoLocale, '\\', "\\o"},
      {"\\\\server\\share\\folder", PercorsoLan, '\\', "\\\\server\\share\\"},
      {"/public/backup", PercorsoFtp, '/', "/"},
  };
  for (const PathForm& form : forms) {
    SCOPED_TRACE(form.path);
    EXPECT_EQ(TipoPercorso(form.path), form.kind);
    EXPECT_EQ(SeparatorePercorso(form.kind), form.separator);
    EXPECT_EQ(RadicePercorso(form.path), form.root);
  }
}

TEST(TipoPercorso, The_empty_string_is_no_path) {
  EXPECT_EQ(TipoPercorso(""), -1);
}

TEST(TipoPercorso, Three_letters_in_any_case_or_a_lone_slash_make_an_ftp_path) {
  for (const char* path : {"ftp", "Ftpfolder\\x", "FTP/Site", "fTp:", "/"})
    EXPECT_EQ(TipoPercorso(path), 2) << path;
  for (const char* path : {"ft", "xftp", "f:p"}) EXPECT_EQ(TipoPercorso(path), 0) << path;
}

TEST(RadicePercorso, A_share_without_a_separator_behind_it_is_its_own_root) {
  EXPECT_EQ(RadicePercorso("\\\\srv\\share"), "\\\\srv\\share");
  EXPECT_EQ(RadicePercorso("\\\\srv\\share\\x"), "\\\\srv\\share\\");
}

TEST(RadicePercorso, A_lone_server_has_a_single_separator_as_root) {
  EXPECT_EQ(RadicePercorso("\\\\srv"), "\\");
}

TEST(CartellaSuperiore, Gives_what_stands_before_the_last_separator_or_the_separator_itself) {
  EXPECT_EQ(CartellaSuperiore("/a"), "/");
  EXPECT_EQ(CartellaSuperiore("/"), "/");
  EXPECT_EQ(CartellaSuperiore("/a/b"), "/a");
  EXPECT_EQ(CartellaSuperiore("C:\\a"), "C:");
  EXPECT_EQ(CartellaSuperiore("C:\\a\\b"), "C:\\a");
  EXPECT_EQ(CartellaSuperiore("C:\\a\\"), "C:\\a");
  EXPECT_EQ(CartellaSuperiore("a"), "\\");
  EXPECT_EQ(CartellaSuperiore("\\\\srv\\share"), "\\\\srv");
}

TEST(NomeFinale, Is_what_stands_behind_the_last_separator_of_the_kind) {
  EXPECT_EQ(NomeFinale("C:\\a\\b.txt"), "b.txt");
  EXPECT_EQ(NomeFinale("C:\\a\\"), "");
  EXPECT_EQ(NomeFinale("/a/b\\c"), "b\\c");
  EXPECT_EQ(NomeFinale("C:\\a\\b/c"), "b/c");
  EXPECT_EQ(NomeFinale("bare"), "bare");
}

TEST(EstensioneFile, Starts_at_the_last_dot_and_a_name_without_one_comes_back_whole) {
  EXPECT_EQ(EstensioneFile("README"), "README");
  EXPECT_EQ(EstensioneFile(".profile"), ".profile");
  EXPECT_EQ(EstensioneFile("a.tar.gz"), ".gz");
  EXPECT_EQ(EstensioneFile("a."), ".");
}

TEST(PercorsoOltreCondivisione, Needs_a_separator_behind_the_share) {
  EXPECT_FALSE(PercorsoOltreCondivisione("\\\\server"));
  EXPECT_FALSE(PercorsoOltreCondivisione("\\\\server\\share"));
  EXPECT_TRUE(PercorsoOltreCondivisione("\\\\server\\share\\"));
  EXPECT_TRUE(PercorsoOltreCondivisione("\\\\server\\share\\x"));
  EXPECT_FALSE(PercorsoOltreCondivisione("C"));
}

TEST(ConSeparatore, Adds_the_separator_of_the_kind_once) {
  EXPECT_EQ(ConSeparatore("C:\\a"), "C:\\a\\");
  EXPECT_EQ(ConSeparatore("C:\\a\\"), "C:\\a\\");
  EXPECT_EQ(ConSeparatore("/a"), "/a/");
  EXPECT_EQ(ConSeparatore("/"), "/");
  EXPECT_EQ(ConSeparatore("C:\\a\\\\"), "C:\\a\\\\");
}

}  // namespace
}  // namespace tandemize
