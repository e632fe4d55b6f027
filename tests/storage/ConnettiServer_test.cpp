#include <gtest/gtest.h>

#include "fixtures/PlainFtpServer.h"
#include "profile/ModuloProfilo.h"
#include "storage/FtpProgram.h"
#include "storage/ModuloArray.h"
#include "storage/Percorsi.h"
#include "synchronisation/ConfrontoTest.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::PlainFtpServer;
using test::scannedFile;

class ConnettiServerTest : public testing::Test {
 protected:
  ConnettiServerTest() {
    program.define({"Home", home.name(), "anna", "", 1});
    program.define({"Work", work.name(), "bob", "", 1});
    program.work().write(
        "sync.cfg",
        "Backup_Path_0 = C:\\local\\\r\nBackup_Path_1 = /home/\r\nBackup_Path_2 = /office/\r\n"
        "Backup_FTP_0 = \r\nBackup_FTP_1 = Home\r\nBackup_FTP_2 = Work\r\n"
        "BackPath = /home/\r\nBackFtpServerDescription = Work\r\n");
    FileProfilo = program.program("sync.cfg");
    ArrayScansione.Azzera(1);
    ArrayTrasferimento.Svuota();
  }
  ~ConnettiServerTest() override {
    ArrayTrasferimento.Svuota();
    ArrayScansione.Azzera(0);
  }

  static RecordFile file(const std::string& folder, const std::string& name) {
    RecordFile record = scannedFile(folder, name);
    record.TipoPercorso = static_cast<std::int8_t>(TipoPercorso(folder));
    return record;
  }
  static void add(const std::string& source, const std::string& destination, const std::string& name) {
    ArrayTrasferimento.Aggiungi({file(source, name), file(destination, name)});
  }

  PlainFtpServer home, work;
  test::FtpProgram program;
  bool failed = false;
};
using ConnettiServerOggettiTest = ConnettiServerTest;
using ConnettiServerListeTest = ConnettiServerTest;

TEST_F(ConnettiServerOggettiTest, A_list_without_files_on_ftp_connects_nothing) {
  add("C:\\a\\", "C:\\b\\", "one");
  EXPECT_FALSE(ConnettiServerOggetti(ArrayTrasferimento, true, failed));
  EXPECT_FALSE(failed);
  EXPECT_EQ(home.connections() + work.connections(), 0);
}

TEST_F(ConnettiServerOggettiTest, Source_and_destination_are_looked_at_and_each_server_is_connected_once) {
  add("C:\\local\\", "/home/", "one");
  add("C:\\local\\", "/home/", "two");
  add("/office/", "C:\\local\\", "three");
  EXPECT_TRUE(ConnettiServerOggetti(ArrayTrasferimento, true, failed));
  EXPECT_FALSE(failed);
  EXPECT_EQ(home.connections(), 1);
  EXPECT_EQ(work.connections(), 1);
  EXPECT_TRUE(ServerConnesso("Home"));
  EXPECT_TRUE(ServerConnesso("Work"));
}

TEST_F(ConnettiServerOggettiTest, A_backup_takes_the_servers_of_its_own_section) {
  add("C:\\local\\", "/home/", "one");
  EXPECT_TRUE(ConnettiServerOggetti(ArrayTrasferimento, false, failed));
  EXPECT_EQ(home.connections(), 0);
  EXPECT_TRUE(ServerConnesso("Work"));
}

TEST_F(ConnettiServerOggettiTest, A_failed_connect_is_told_and_tried_once) {
  home.answer([](const std::string& line) {
    return line.starts_with("USER") ? std::optional<std::string>("530 No.") : std::nullopt;
  });
  add("C:\\local\\", "/home/", "one");
  add("C:\\local\\", "/home/sub/", "two");
  add("C:\\local\\", "/office/", "three");
  EXPECT_TRUE(ConnettiServerOggetti(ArrayTrasferimento, true, failed));
  EXPECT_TRUE(failed);
  EXPECT_EQ(home.connections(), 1);
  EXPECT_TRUE(ServerConnesso("Work"));
}

TEST_F(ConnettiServerOggettiTest, After_a_stop_no_further_server_is_tried) {
  FinestraOperazione window("FrmFileTransfer");
  home.answer([](const std::string&) { return std::optional<std::string>(PlainFtpServer::Stall); });
  program.screen.onEvents = [this, &window] {
    if (home.connections() > 0) window.Annulla(true);
  };
  add("C:\\local\\", "/home/", "one");
  add("C:\\local\\", "/office/", "two");
  EXPECT_TRUE(ConnettiServerOggetti(ArrayTrasferimento, true, failed));
  EXPECT_TRUE(failed);
  EXPECT_EQ(work.connections(), 0);
}

TEST_F(ConnettiServerListeTest, The_files_of_a_scan_are_looked_at) {
  ArrayScansione.Aggiungi(0, file("C:\\local\\", "one"));
  ConnettiServerListe(ArrayScansione, true, failed);
  EXPECT_EQ(home.connections(), 0);
  ArrayScansione.Aggiungi(0, file("/home/", "one"));
  ConnettiServerListe(ArrayScansione, true, failed);
  EXPECT_FALSE(failed);
  EXPECT_TRUE(ServerConnesso("Home"));
}

}  // namespace
}  // namespace tandemize
