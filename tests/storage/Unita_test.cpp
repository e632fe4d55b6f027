#include "storage/Unita.h"

#include <gtest/gtest.h>

#include "shell/Lingua.h"
#include "storage/Drives.h"
#include "storage/File_System.h"

namespace tandemize {
namespace {

using test::ProgramFolderWithDrives;

struct DriveAnswer {
  std::string path;
  std::int32_t type;
  int message;  // of the description; 0: `text`
  std::string text;
};

TEST(TipoUnita, Every_kind_of_drive_has_its_code_and_its_words) {
  ProgramFolderWithDrives program;
  const std::vector<DriveAnswer> answers = {{"D:\\x", UnitaRimovibile, 68, ""},
                                            {"F:\\x", UnitaFissa, 69, ""},
                                            {"G:\\x", UnitaRemota, 70, ""},
                                            {"E:\\x", UnitaCdRom, 71, ""},
                                            {"H:\\x", UnitaRamDisk, 72, ""},
                                            {"Z:\\x", UnitaAssente, 67, ""},
                                            {"", UnitaAssente, 67, ""},
                                            {"abc", UnitaAssente, 67, ""},
                                            {"\\\\srv\\share", UnitaAssente, 0, "LAN"},
                                            {"/public", UnitaAssente, 0, "FTP"}};
  for (const DriveAnswer& answer : answers) {
    SCOPED_TRACE(answer.path);
    EXPECT_EQ(TipoUnita(answer.path), answer.type);
    EXPECT_EQ(DescrizioneUnita(answer.path), answer.message == 0 ? answer.text : Messaggio(answer.message));
  }
}

TEST(TipoUnita, A_lone_slash_is_no_drive) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(TipoUnita("/"), UnitaAssente);
}

TEST(TipoUnita, Lets_events_run) {
  ProgramFolderWithDrives program;
  const long before = program.screen.events;
  static_cast<void>(TipoUnita("C:\\"));
  EXPECT_GT(program.screen.events, before);
}

TEST(UnitaPronta, A_drive_is_ready_when_its_folder_or_its_disc_is_there) {
  ProgramFolderWithDrives program;
  EXPECT_TRUE(UnitaPronta("D:\\any\\folder"));
  EXPECT_TRUE(UnitaPronta("E:\\"));
  EXPECT_FALSE(UnitaPronta("I:\\"));
  EXPECT_FALSE(UnitaPronta("J:\\"));
  EXPECT_FALSE(UnitaPronta("Z:\\"));
}

TEST(VerificaCD, Is_true_for_a_disc_without_length_and_for_a_drive_that_does_not_answer) {
  ProgramFolderWithDrives program;
  bool present = true;
  EXPECT_FALSE(VerificaCD("E:\\", present));
  EXPECT_TRUE(present);
  EXPECT_FALSE(VerificaCD("I:\\", present));
  EXPECT_FALSE(present);
  EXPECT_TRUE(VerificaCD("K:\\", present));
  EXPECT_TRUE(present);
  EXPECT_TRUE(VerificaCD("Z:\\", present));
  EXPECT_FALSE(present);
}

TEST(EsisteCartella, The_root_of_an_optical_drive_exists_as_soon_as_the_drive_is_ready) {
  ProgramFolderWithDrives program;
  EXPECT_TRUE(EsisteCartella("E:\\"));
  EXPECT_TRUE(EsisteCartella("E:"));
  EXPECT_FALSE(EsisteCartella("E:\\a"));
  EXPECT_FALSE(EsisteCartella("I:\\"));
}

}  // namespace
}  // namespace tandemize
