// Columns of a server's files, filled by hand: separators, names, no checksums.
#include <gtest/gtest.h>

#include "storage/Percorsi.h"
#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

using test::Comparison;
using test::scannedFile;
using test::SomeDate;
using test::Texts;

class Remote : public Comparison {
 public:
  explicit Remote(const Texts& paths) : Comparison(0) {
    Backup_Path = paths;
    ArrayScansione.Azzera(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) ArrayScansione.ImpostaTipo(i, TipoPercorso(paths[i]));
  }

  RecordFile& add(std::size_t column, const std::string& name, double size = 1, std::int64_t seconds = 0) {
    RecordFile record = scannedFile(Backup_Path[column], name);
    record.TipoPercorso = static_cast<std::int8_t>(ArrayScansione.Tipo(column));
    record.Dimensione = size;
    record.Data = SomeDate + seconds;
    return ArrayScansione.Aggiungi(column, record);
  }
  void run() {
    sort();
    compareOnly();
  }
  // The one operation is a copy of `from` to `to`, whose path goes by `name` in the table.
  void expectCopy(const std::string& from, const std::string& to, const std::string& name) {
    run();
    ASSERT_EQ(ArrayTrasferimento.Numero(), 1U);
    const auto& [source, destination] = ArrayTrasferimento[0];
    EXPECT_EQ(source.Percorso(), from);
    EXPECT_EQ(source.TipoPercorso, from.front() == '/' ? PercorsoFtp : PercorsoLocale);
    EXPECT_EQ(destination.Percorso(), to);
    EXPECT_EQ(destination.TipoPercorso, to.front() == '/' ? PercorsoFtp : PercorsoLocale);
    EXPECT_EQ(destination.Nome(), name);
  }
};

TEST(ConfrontoFtp, Local_and_remote_names_are_the_same_with_either_separator) {
  Remote comparison({"C:\\data\\", "/pub/data/"});
  for (const char* name : {"a", "ab", "a.b\\c", "a\\b", "a\\b\\c", "a-b"}) comparison.add(0, name);
  for (const char* name : {"a", "a/b", "a/b/c", "a-b", "ab", "a.b/c"}) comparison.add(1, name);
  comparison.run();
  EXPECT_EQ(comparison.operations(), Texts{});
}

TEST(ConfrontoFtp, A_deletion_never_follows_from_the_order_of_separators) {
  Remote comparison({"C:\\data\\", "/pub/data/"});
  SourceNotChange = EraseFile = 1;
  for (const char* name : {"0", "a", "A0", "a\\b", "a_b", "b"}) comparison.add(0, name);
  for (const char* name : {"0", "a", "A0", "a/b", "a_b", "b"}) comparison.add(1, name);
  comparison.run();
  EXPECT_EQ(ArrayTrasferimento.Numero(), 0U);
}

TEST(ConfrontoFtp, Names_of_the_table_get_the_local_separator_and_paths_keep_theirs) {
  Remote comparison({"C:\\data\\", "/pub/data/"});
  comparison.add(1, "sub/a");
  comparison.run();
  EXPECT_EQ(ArrayScansione.Riga(1, 0).Nome(), "sub\\a");
  EXPECT_EQ(ArrayScansione.Riga(1, 0).Percorso(), "/pub/data/sub/a");
}

TEST(ConfrontoFtp, A_file_that_goes_to_a_server_has_the_server_s_separator_throughout) {
  Remote comparison({"C:\\data\\", "/pub/data/"});
  comparison.add(0, "sub\\deep\\a");
  comparison.expectCopy("C:\\data\\sub\\deep\\a", "/pub/data/sub/deep/a", "sub/deep/a");
}

TEST(ConfrontoFtp, A_file_that_comes_from_a_server_has_the_local_separator_throughout) {
  Remote comparison({"C:\\data\\", "/pub/data/"});
  comparison.add(1, "sub/deep/a");
  comparison.expectCopy("/pub/data/sub/deep/a", "C:\\data\\sub\\deep\\a", "sub\\deep\\a");
}

TEST(ConfrontoFtp, Between_two_servers_the_separator_stays_theirs) {
  Remote comparison({"/one/", "/two/"});
  comparison.add(0, "sub/a");
  comparison.expectCopy("/one/sub/a", "/two/sub/a", "sub/a");
}

// A server may have a file whose name holds what is a separator here; it arrives as "/".
TEST(ConfrontoFtp, A_name_that_holds_a_separator_lies_in_a_folder_on_the_other_side) {
  Remote comparison({"C:\\data\\", "/pub/"});
  RecordFile record(ArrayScansione.Deposito().Cartella("/pub/sub/"), "a/b", std::string_view("/pub/").size());
  record.TipoPercorso = PercorsoFtp;
  ArrayScansione.Aggiungi(1, record);
  comparison.expectCopy("/pub/sub/a/b", "C:\\data\\sub\\a\\b", "sub\\a\\b");
  EXPECT_EQ(*ArrayTrasferimento[0].Destinazione.CartellaDelFile(), "C:\\data\\sub\\a\\");
}

TEST(ConfrontoFtp, A_remote_deletion_names_the_remote_file) {
  Remote comparison({"C:\\data\\", "/pub/"});
  comparison.screen.keepsRows = true;
  SourceNotChange = EraseFile = 1;
  comparison.add(1, "sub/a");
  comparison.run();
  ASSERT_EQ(ArrayTrasferimento.Numero(), 1U);
  EXPECT_EQ(ArrayTrasferimento[0].Sorgente.Percorso(), "/pub/sub/a");
  EXPECT_TRUE(ArrayTrasferimento[0].Sorgente.DaEliminare);
  EXPECT_EQ(comparison.screen.rows[1].Riga(0).chiave, "/pub/sub/a");
}

TEST(ConfrontoFtp, The_intelligent_method_reads_no_remote_file_and_takes_equal_sizes_as_equal) {
  for (const bool remoteFirst : {true, false}) {
    Remote comparison(remoteFirst ? Texts{"/pub/", "C:\\data\\"} : Texts{"C:\\data\\", "/pub/"});
    for (std::size_t column = 0; column < 2; ++column) {
      comparison.add(column, "date", 5, column == 0 ? 0 : 100);
      comparison.add(column, "size", column == 0 ? 5 : 6);
    }
    comparison.run();
    ASSERT_EQ(ArrayTrasferimento.Numero(), 1U);
    EXPECT_EQ(ArrayTrasferimento[0].Destinazione.Nome(), "size");
    EXPECT_FALSE(comparison.confronto.ErroreCrc);
  }
}

TEST(ConfrontoFtp, The_checksum_of_a_file_that_no_session_can_read_is_told_as_failed) {
  Remote comparison({"/one/", "/two/"});
  CompareMethod = ConfrontoCrc;
  comparison.add(0, "a");
  comparison.add(1, "a", 1, 100);
  comparison.run();
  EXPECT_EQ(ArrayTrasferimento.Numero(), 0U);
  EXPECT_TRUE(comparison.confronto.ErroreCrc);
}

TEST(ConfrontoFtp, A_surplus_name_goes_to_the_server_which_cannot_be_asked_for_one_name) {
  Remote comparison({"C:\\data\\", "/pub/"});
  for (const char* name : {"name", "NAME"}) comparison.add(0, name);
  comparison.add(1, "name");
  comparison.run();
  EXPECT_EQ(comparison.operations(), Texts{"missing NAME 0 > 1"});
}

}  // namespace
}  // namespace tandemize
