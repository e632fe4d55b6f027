#include <gtest/gtest.h>

#include "errors/ModuloGestioneErrori.h"
#include "platform/environment.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "storage/Drives.h"
#include "storage/ModuloInternet.h"
#include "storage/Unita.h"

namespace tandemize {
namespace {

using test::ProgramFolderWithDrives;
using test::ScopedVariable;

std::string quoted(const std::string& path) {
  return " '" + path + "' ";
}

// One fault a row: a path, its code, its text with mode 0, and the flags that silence it.
struct Fault {
  std::string path;
  std::int32_t code;
  std::string text;
  unsigned silencing;
};

std::vector<Fault> faults() {
  return {{"I:\\x", 1, Messaggio(305) + " CD-ROM " + Messaggio(306), 2 + 8},
          {"J:\\x", 2, Messaggio(305) + " Floppy Disk " + Messaggio(306), 2 + 8},
          {"\\\\srv\\share\\none", 3, Messaggio(308) + quoted("\\\\srv\\share\\none") + Messaggio(387), 0},
          {"F:\\none", 5, Messaggio(310) + quoted("F:\\none") + Messaggio(311), 0},
          {"/public", 6, Messaggio(102) + quoted("/public") + Messaggio(309), 4 + 8},
          {"", 7, Messaggio(313), 2 + 4 + 8}};
}

void defineServer() {
  FtpServers = {{"Home", "localhost", "anna", "", 0}, {}};
}

TEST(VerificaPercorso, Folders_that_exist_on_any_drive_are_usable) {
  ProgramFolderWithDrives program;
  for (const char* path : {"D:\\", "E:\\", "F:\\", "\\\\srv\\share", "\\\\srv\\share\\", "C:\\"})
    EXPECT_EQ(VerificaPercorso(path, 0), 0) << path;
}

TEST(VerificaPercorso, Every_fault_has_its_code) {
  const ScopedVariable network("TANDEMIZE_NETWORK", "down");
  ProgramFolderWithDrives program;
  defineServer();
  for (const Fault& fault : faults()) EXPECT_EQ(VerificaPercorso(fault.path, 0), fault.code) << fault.path;
}

TEST(VerificaPercorso, The_empty_path_gives_7) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorso("", 0), 7);
}

TEST(VerificaPercorso, A_relative_name_without_a_drive_gives_5) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorso("abc", 0), 5);
}

TEST(VerificaPercorso, A_mapped_network_drive_passes_even_if_the_folder_is_gone) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorso("G:\\gone", 0), 0);
  EXPECT_EQ(VerificaPercorso("H:\\gone", 0), 0);
}

TEST(VerificaPercorso, A_missing_folder_on_a_ready_removable_drive_or_an_unknown_drive_gives_5) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorso("D:\\gone", 0), 5);
  EXPECT_EQ(VerificaPercorso("Z:\\gone", 0), 5);
}

TEST(VerificaPercorso, An_ftp_path_with_a_server_and_no_connection_gives_6) {
  const ScopedVariable network("TANDEMIZE_NETWORK", "down");
  ProgramFolderWithDrives program;
  defineServer();
  ASSERT_FALSE(InternetConnesso());
  EXPECT_EQ(VerificaPercorso("/public", 0), 6);
  EXPECT_EQ(VerificaPercorsi({{"ftp/site", "0"}}, 32, 0), 6);
}

TEST(VerificaPercorsi, Each_fault_has_its_text_and_is_silenced_by_its_flags) {
  const ScopedVariable network("TANDEMIZE_NETWORK", "down");
  ProgramFolderWithDrives program;
  for (const Fault& fault : faults()) {
    for (unsigned bit : {0U, 1U, 2U, 4U, 8U, 16U, 64U}) {
      SCOPED_TRACE(fault.path + " with flags " + std::to_string(bit));
      const bool silent = (fault.silencing & bit) != 0;
      program.screen.boxes.clear();
      EXPECT_EQ(VerificaPercorsi({{fault.path, "0"}}, static_cast<std::uint8_t>(bit), 0),
                silent ? 0 : fault.code);
      ASSERT_EQ(program.screen.boxes.size(), silent ? 0U : 1U);
      if (!silent) {
        EXPECT_EQ(program.screen.boxes[0].text, fault.text);
      }
    }
  }
}

TEST(VerificaPercorsi, Flag_32_gives_the_outcome_without_any_report) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({{"F:\\none", ""}}, 32, 0), 5);
  EXPECT_EQ(VerificaPercorsi({{"F:\\none", ""}}, 32, 1), 5);
  EXPECT_TRUE(program.screen.boxes.empty());
  EXPECT_TRUE(program.screen.balloons.empty());
}

TEST(VerificaPercorsi, Usable_paths_and_an_empty_table_give_0_without_a_report) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({}, 0, 0), 0);
  EXPECT_EQ(VerificaPercorsi({{"F:\\", ""}, {"D:\\", ""}}, 0, 0), 0);
  EXPECT_TRUE(program.screen.boxes.empty());
}

TEST(VerificaPercorsi, Only_the_last_text_and_the_last_outcome_survive) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({{"F:\\none", ""}, {"", ""}, {"F:\\", ""}}, 0, 0), 7);
  ASSERT_EQ(program.screen.boxes.size(), 1U);
  EXPECT_EQ(program.screen.boxes[0].text, Messaggio(313));
}

TEST(VerificaPercorsi, A_silenced_row_overwrites_neither_the_outcome_nor_the_text) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({{"F:\\none", ""}, {"", ""}}, 2, 0), 5);
  ASSERT_EQ(program.screen.boxes.size(), 1U);
  EXPECT_EQ(program.screen.boxes[0].text, Messaggio(310) + quoted("F:\\none") + Messaggio(311));
}

TEST(VerificaPercorsi, Yes_on_a_drive_that_is_not_ready_runs_the_whole_check_again) {
  ProgramFolderWithDrives program;
  program.screen.answers = {Risposta::Sì, Risposta::No};
  EXPECT_EQ(VerificaPercorsi({{"I:\\", ""}}, 0, 0), 1);
  ASSERT_EQ(program.screen.boxes.size(), 2U);
  EXPECT_EQ(program.screen.boxes[0].style, StileSìNoInformazione);
}

TEST(VerificaPercorsi, A_disc_put_in_before_the_answer_yes_gives_0) {
  ProgramFolderWithDrives program;
  program.screen.answers = {Risposta::Sì};
  program.screen.onEvents = [&program] {
    if (!program.screen.boxes.empty()) program.work().write("gone.iso", "a disc");
  };
  EXPECT_EQ(VerificaPercorsi({{"I:\\", ""}}, 0, 0), 0);
  EXPECT_EQ(program.screen.boxes.size(), 1U);
}

TEST(VerificaPercorsi, The_question_belongs_to_the_last_row_alone_though_the_text_stays) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({{"I:\\", ""}, {"F:\\", ""}}, 0, 0), 1);
  ASSERT_EQ(program.screen.boxes.size(), 1U);
  EXPECT_EQ(program.screen.boxes[0].text, Messaggio(305) + " CD-ROM " + Messaggio(306));
  EXPECT_EQ(program.screen.boxes[0].style, StileInformazione);
}

TEST(VerificaPercorsi, A_silenced_drive_in_the_last_row_still_makes_the_report_a_question) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({{"F:\\none", ""}, {"I:\\", ""}}, 2, 0), 5);
  ASSERT_EQ(program.screen.boxes.size(), 1U);
  EXPECT_EQ(program.screen.boxes[0].text, Messaggio(310) + quoted("F:\\none") + Messaggio(311));
  EXPECT_EQ(program.screen.boxes[0].style, StileSìNoInformazione);
}

TEST(VerificaPercorsi, Mode_1_shows_a_balloon_for_15_seconds_while_the_program_is_visible) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({{"I:\\", ""}}, 0, 1), 1);
  ASSERT_EQ(program.screen.balloons.size(), 1U);
  const Avviso& notice = program.screen.balloons[0];
  EXPECT_EQ(notice.testo, Messaggio(305) + " CD-ROM " + Messaggio(307));
  EXPECT_EQ(notice.titolo, "Avviso");
  EXPECT_EQ(notice.nomeForm, FormAttivo());
  EXPECT_EQ(notice.secondi, 15);
  EXPECT_EQ(notice.icona, 0);
  ApplicazioneNascosta = true;
  EXPECT_EQ(VerificaPercorsi({{"I:\\", ""}}, 0, 1), 1);
  EXPECT_EQ(program.screen.balloons.size(), 1U);
}

TEST(VerificaPercorsi, Mode_2_shows_a_balloon_only_while_the_program_is_hidden) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({{"F:\\none", ""}}, 0, 2), 5);
  EXPECT_TRUE(program.screen.balloons.empty());
  ApplicazioneNascosta = true;
  EXPECT_EQ(VerificaPercorsi({{"F:\\none", ""}}, 0, 2), 5);
  ASSERT_EQ(program.screen.balloons.size(), 1U);
  EXPECT_EQ(program.screen.balloons[0].titolo, TitoloApplicazione);
  EXPECT_EQ(program.screen.balloons[0].secondi, 0);
}

TEST(VerificaPercorsi, Any_other_mode_reports_nothing) {
  ProgramFolderWithDrives program;
  EXPECT_EQ(VerificaPercorsi({{"F:\\none", ""}}, 0, 3), 5);
  EXPECT_TRUE(program.screen.boxes.empty());
  EXPECT_TRUE(program.screen.balloons.empty());
}

}  // namespace
}  // namespace tandemize
