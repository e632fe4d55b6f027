#include "profile/ModelloBackup.h"

#include <gtest/gtest.h>

namespace tandemize {
namespace {

class ModelloBackup : public ::testing::Test {
 protected:
  ModelloBackup() { AzzeraArrayOggetti(); }
  ~ModelloBackup() override { AzzeraArrayOggetti(); }

  OggettoBackup& add(std::uint8_t kind, const std::string& name, const std::string& path,
                     const std::vector<std::string>& links) {
    OggettoBackup& made = ArrayOggetti.emplace_back();
    made.BackTipoTrasferimento = kind;
    made.BackDescrizione = name;
    made.BackPath = path;
    made.BackLinkTo = links;
    return made;
  }
  OggettoBackup& destination(const std::string& name, const std::string& path,
                             const std::vector<std::string>& links) {
    return add(TipoDestinazione, name, path, links);
  }
};

using Paths = std::vector<std::string>;

TEST_F(ModelloBackup, The_empty_array_holds_the_unused_entry_0_only) {
  EXPECT_EQ(ArrayOggetti.size(), 1U);
  EXPECT_EQ(UltimoOggetto(), 0U);
  EXPECT_EQ(ArrayOggetti[0].BackLinkTo, Paths{""});
  EXPECT_EQ(ArrayOggetti[0].Files, Paths{""});
}

TEST_F(ModelloBackup, Of_two_objects_with_one_description_the_first_answers) {
  add(TipoSorgente, "Other", "C:\\a", {""});
  add(TipoSorgente, "Twin", "C:\\b", {""});
  add(TipoSorgente, "Twin", "C:\\c", {""});
  EXPECT_EQ(RestituisciIndicePerNome("Twin"), 2);
}

TEST_F(ModelloBackup, A_description_is_found_exactly_and_never_in_entry_0) {
  ArrayOggetti[0].BackDescrizione = "Zero";
  add(TipoSorgente, "Name ", "C:\\a", {""});
  EXPECT_EQ(RestituisciIndicePerNome("Zero"), 0);
  EXPECT_EQ(RestituisciIndicePerNome("name "), 0);
  EXPECT_EQ(RestituisciIndicePerNome("Name"), 0);
  EXPECT_EQ(RestituisciIndicePerNome("Name "), 1);
}

TEST_F(ModelloBackup, An_object_number_that_no_byte_holds_is_not_found) {
  ArrayOggetti.resize(300);
  ArrayOggetti[256].BackDescrizione = "Far";
  ArrayOggetti[255].BackDescrizione = "Near";
  EXPECT_EQ(RestituisciIndicePerNome("Far"), 0);
  EXPECT_EQ(RestituisciIndicePerNome("Near"), 255);
}

TEST_F(ModelloBackup, Destinations_that_name_the_source_come_in_the_order_of_their_numbers) {
  destination("D1", "E:\\z", {"Docs"});
  add(TipoSorgente, "Docs", "C:\\docs", {"D1"});
  destination("D2", "E:\\other", {"Photos"});
  destination("D3", "E:\\a", {"Photos", "Docs"});
  EXPECT_EQ(RestituisciUnitàDiDestinazione("Docs"), (Paths{"E:\\z", "E:\\a"}));
}

TEST_F(ModelloBackup, The_links_of_the_source_do_not_count) {
  add(TipoSorgente, "Docs", "C:\\docs", {"D1"});
  destination("D1", "E:\\z", {""});
  EXPECT_EQ(RestituisciUnitàDiDestinazione("Docs"), Paths{});
}

TEST_F(ModelloBackup, A_source_that_names_the_source_is_no_destination) {
  add(TipoSorgente, "Twin", "C:\\x", {"Docs"});
  EXPECT_EQ(RestituisciUnitàDiDestinazione("Docs"), Paths{});
}

TEST_F(ModelloBackup, A_deleted_destination_takes_no_part_even_if_it_names_the_source) {
  destination(std::string(OggettoEliminato), "E:\\gone", {"Docs"});
  destination("D2", "E:\\here", {"Docs"});
  EXPECT_EQ(RestituisciUnitàDiDestinazione("Docs"), Paths{"E:\\here"});
}

TEST_F(ModelloBackup, An_ignored_destination_takes_no_part) {
  destination("D1", "E:\\away", {"Docs"}).BackIgnorato = true;
  EXPECT_EQ(RestituisciUnitàDiDestinazione("Docs"), Paths{});
}

TEST_F(ModelloBackup, Two_destinations_on_one_path_give_it_once_and_paths_are_compared_exactly) {
  destination("D1", "E:\\x", {"Docs"});
  destination("D2", "E:\\X", {"Docs"});
  destination("D3", "E:\\x", {"Docs"});
  destination("D4", "E:\\x\\", {"Docs"});
  EXPECT_EQ(RestituisciUnitàDiDestinazione("Docs"), (Paths{"E:\\x", "E:\\X", "E:\\x\\"}));
}

TEST_F(ModelloBackup, A_destination_that_names_the_source_twice_is_given_once) {
  destination("D1", "E:\\x", {"Docs", "Docs"});
  EXPECT_EQ(RestituisciUnitàDiDestinazione("Docs"), Paths{"E:\\x"});
}

TEST_F(ModelloBackup, A_link_that_names_a_deleted_object_or_nobody_matches_nothing) {
  add(TipoSorgente, std::string(OggettoEliminato), "C:\\old", {""});
  destination("D1", "E:\\x", {std::string(OggettoEliminato), "", "Never"});
  EXPECT_EQ(RestituisciUnitàDiDestinazione(OggettoEliminato), Paths{});
  EXPECT_EQ(RestituisciUnitàDiDestinazione(""), Paths{});
  EXPECT_EQ(RestituisciUnitàDiDestinazione("Docs"), Paths{});
}

}  // namespace
}  // namespace tandemize
