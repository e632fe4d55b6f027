// Which server the profile names for a path.
#include "profile/ProfiloDiProva.h"

namespace tandemize::test {
namespace {

class ServerDelProfilo : public ProfileTest {
 protected:
  // Servers named "A", "B" ... with the spare entry behind them.
  static void servers(const std::vector<std::string>& names) {
    FtpServers.clear();
    for (const std::string& name : names) FtpServers.push_back({name, "host", "", "", 0});
    FtpServers.emplace_back();
  }
  ServerDelProfilo() { servers({"A", "B", "C"}); }
};

TEST_F(ServerDelProfilo, The_last_server_of_an_equal_description_answers) {
  servers({"A", "B", "B", "b"});
  EXPECT_EQ(IndiceServerDaDescrizione("B"), 2);
  EXPECT_EQ(IndiceServerDaDescrizione("a"), 0);
  EXPECT_EQ(IndiceServerDaDescrizione("none"), 0);
}

TEST_F(ServerDelProfilo, The_spare_entry_and_an_empty_table_take_no_part) {
  servers({"A", "B"});
  FtpServers.back().Ftp_Description = "Spare";
  EXPECT_EQ(IndiceServerDaDescrizione("Spare"), 0);
  FtpServers.clear();
  EXPECT_EQ(IndiceServerDaDescrizione("A"), 0);
}

TEST_F(ServerDelProfilo, A_server_beyond_what_a_byte_holds_is_not_found) {
  FtpServers.assign(400, {"A", "host", "", "", 0});
  EXPECT_EQ(IndiceServerDaDescrizione("A"), 255);
}

TEST_F(ServerDelProfilo, A_synchronisation_path_has_the_server_of_its_number) {
  write({"Backup_Path_0 = C:\\x", "Backup_Path_1 = /pub", "Backup_FTP_0 = B", "Backup_FTP_1 = C"});
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 2);
  EXPECT_EQ(IndiceServerDaPercorso(true, "C:\\x"), 1);
  EXPECT_EQ(IndiceServerDaPercorso(true, "/other"), 0);
}

TEST_F(ServerDelProfilo, A_path_matches_those_below_and_above_it_and_equal_ones_in_any_case) {
  write({"Backup_Path_0 = /pub/è", "Backup_FTP_0 = C"});
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 2);
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub/è/deep"), 2);
  EXPECT_EQ(IndiceServerDaPercorso(true, "/PUB/È"), 2);
  EXPECT_EQ(IndiceServerDaPercorso(true, "/PUB/È/deep"), 0);
}

TEST_F(ServerDelProfilo, A_later_match_replaces_an_earlier_one) {
  write({"Backup_Path_0 = /pub", "Backup_Path_1 = /pub/sub", "Backup_FTP_0 = B", "Backup_FTP_1 = C"});
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub/sub"), 2);
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 2);
}

TEST_F(ServerDelProfilo, An_empty_path_in_the_profile_lies_in_every_path) {
  write({"Backup_Path_0 = /pub", "Backup_Path_1 = ", "Backup_FTP_0 = C", "Backup_FTP_1 = B"});
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 1);
}

TEST_F(ServerDelProfilo, The_servers_line_is_the_first_one_behind_the_match_that_holds_its_number) {
  write({"Backup_FTP_1 = A", "Backup_Path_1 = /pub", "Backup_FTP_10 = B", "Backup_FTP_1 = C"});
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 1);
}

TEST_F(ServerDelProfilo, The_lines_of_a_new_profile_name_no_server) {
  servers({"A", "B", ""});
  writeText(ProfiloVuoto());
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 0);
}

TEST_F(ServerDelProfilo, An_objects_path_has_the_next_objects_server_description) {
  write({"Backup_Path_0 = /other", "Backup_FTP_0 = A", "1BackPath = /pub",
         "1Files0 = ", "1BackFtpServerDescription = B", "2BackPath = /www", "2BackFtpServerDescription = C"});
  EXPECT_EQ(IndiceServerDaPercorso(false, "/pub"), 1);
  EXPECT_EQ(IndiceServerDaPercorso(false, "/www"), 2);
  EXPECT_EQ(IndiceServerDaPercorso(false, "/other"), 0);
}

TEST_F(ServerDelProfilo, A_match_without_a_servers_line_gives_the_first_server) {
  write({"Backup_Path_0 = /pub", "1BackPath = /pub"});
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 0);
  EXPECT_EQ(IndiceServerDaPercorso(false, "/pub"), 0);
}

TEST_F(ServerDelProfilo, A_line_is_found_by_its_number) {
  write({"Backup_Path_0 = x", "Backup_FTP_0 = B", "Backup_FTP_1 = C", "1BackFtpServerDescription = C",
         "2BackFtpServerDescription = B"});
  EXPECT_EQ(IndiceServerDaNumero(true, 0), 1);
  EXPECT_EQ(IndiceServerDaNumero(true, 1), 2);
  EXPECT_EQ(IndiceServerDaNumero(true, 7), 0);
  EXPECT_EQ(IndiceServerDaNumero(false, 1), 2);
  EXPECT_EQ(IndiceServerDaNumero(false, 2), 1);
}

TEST_F(ServerDelProfilo, A_number_is_also_found_in_longer_numbers_and_the_last_line_wins) {
  write({"Backup_FTP_1 = B", "Backup_FTP_10 = C", "1BackFtpServerDescription = B",
         "11BackFtpServerDescription = C"});
  EXPECT_EQ(IndiceServerDaNumero(true, 1), 2);
  EXPECT_EQ(IndiceServerDaNumero(false, 1), 2);
}

TEST_F(ServerDelProfilo, A_profile_that_cannot_be_read_names_no_server) {
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 0);
  EXPECT_EQ(IndiceServerDaPercorso(false, "/pub"), 0);
  EXPECT_EQ(IndiceServerDaNumero(true, 1), 0);
}

TEST_F(ServerDelProfilo, A_huge_number_behind_the_key_is_no_harm) {
  write({"Backup_Path_99999999999999999999999999999999 = /pub", "Backup_FTP_9 = B"});
  EXPECT_EQ(IndiceServerDaPercorso(true, "/pub"), 0);
}

}  // namespace
}  // namespace tandemize::test
