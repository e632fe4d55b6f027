// The console program's words, its start check, and the commands that copy nothing.
#include <gtest/gtest.h>

#include <filesystem>

#include "fixtures/LogLines.h"
#include "fixtures/RunProgram.h"
#include "shell/console/CommandLine.h"
#include "shell/console/ConsoleScreen.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;
using test::ConsoleFolder;
using test::describeTree;
using test::Diagram;
using test::onDriveC;
using test::ProgramResult;
using test::RunProgram;
using test::TemporaryFolder;

using Words = std::vector<std::string>;
using Command = CommandLine::Command;

// --- words

std::optional<CommandLine> parsed(const Words& words) {
  std::string fault;
  return parseCommandLine(words, fault);
}

TEST(CommandLine, Every_command_is_known_by_its_word) {
  const std::vector<std::pair<Words, Command>> cases{
      {{"init"}, Command::Init},           {{"backup"}, Command::Backup},
      {{"sync"}, Command::Sync},           {{"sync", "--preview"}, Command::Sync},
      {{"check"}, Command::Check},         {{"crc", "a"}, Command::Crc},
      {{"path", "a", "b"}, Command::Path}, {{"watch"}, Command::Watch}};
  for (const auto& [words, command] : cases) {
    const std::optional<CommandLine> line = parsed(words);
    ASSERT_TRUE(line) << words[0];
    EXPECT_EQ(line->command, command) << words[0];
  }
}

TEST(CommandLine, A_backup_is_standard_in_mode_2_unless_told_otherwise) {
  const std::optional<CommandLine> line = parsed({"backup"});
  ASSERT_TRUE(line);
  EXPECT_EQ(line->type, TipoBackup::Standard);
  EXPECT_EQ(line->mode, ModoEsecuzione::TestVeloceEBackup);
  EXPECT_FALSE(line->subfolder || line->ignoreUnreachable || line->preview || line->answerYes);
  EXPECT_FALSE(line->folder || line->profile);
}

TEST(CommandLine, All_options_of_a_backup_are_taken) {
  const std::optional<CommandLine> line =
      parsed({"--folder", "/f", "--profile", "C:\\p.cfg", "--answer", "yes", "backup", "--type",
              "incremental", "--mode", "3", "--subfolder", "--ignore-unreachable", "--preview"});
  ASSERT_TRUE(line);
  EXPECT_EQ(line->folder, "/f");
  EXPECT_EQ(line->profile, "C:\\p.cfg");
  EXPECT_TRUE(line->answerYes);
  EXPECT_EQ(line->type, TipoBackup::Incrementale);
  EXPECT_EQ(line->mode, ModoEsecuzione::TestAccuratoEBackup);
  EXPECT_TRUE(line->subfolder && line->ignoreUnreachable && line->preview);
}

const std::vector<Words>& wrongWords() {
  static const std::vector<Words> cases{{},
                                        {"frobnicate"},
                                        {""},
                                        {"--frobnicate", "backup"},
                                        {"backup", "--frobnicate"},
                                        {"backup", "--type"},
                                        {"backup", "--type", "total"},
                                        {"backup", "--type", "1"},
                                        {"backup", "--mode"},
                                        {"backup", "--mode", "4"},
                                        {"backup", "--mode", "-1"},
                                        {"backup", "--mode", "22"},
                                        {"backup", "--mode", ""},
                                        {"backup", "--mode", "x"},
                                        {"backup", "extra"},
                                        {"--folder"},
                                        {"--profile"},
                                        {"--answer", "maybe", "backup"},
                                        {"--answer", "backup"},
                                        {"check", "extra"},
                                        {"check", "--preview"},
                                        {"sync", "--type", "full"},
                                        {"init", "extra"},
                                        {"crc"},
                                        {"path"}};
  return cases;
}

TEST(CommandLine, Wrong_words_are_told) {
  for (const Words& words : wrongWords()) {
    std::string fault;
    EXPECT_FALSE(parseCommandLine(words, fault)) << ::testing::PrintToString(words);
    EXPECT_FALSE(fault.empty()) << ::testing::PrintToString(words);
  }
}

TEST(Console, Wrong_words_end_with_64_and_touch_nothing) {
  const ConsoleFolder folder;
  const std::string before = const_cast<ConsoleFolder&>(folder).describeHome();
  for (const Words& words : wrongWords()) {
    Words all{"--folder", const_cast<ConsoleFolder&>(folder).home().host()};
    all.insert(all.end(), words.begin(), words.end());
    if (words == Words{"--folder"}) all = words;
    const ProgramResult result = RunProgram(all).run();
    EXPECT_EQ(result.status, 64) << ::testing::PrintToString(words);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
  EXPECT_EQ(folder.describeHome(), before);
}

TEST(ConsoleScreen, A_progress_line_is_no_wider_than_the_terminal) {
  StatoTrasferimento state;
  state.byteTotali = 200;
  state.byteCopiati = 50;
  state.trasferiti = "Totals: 1/2 KB (1/2 Files)";
  state.sorgente = std::string(300, 'x');
  for (const int width : {20, 40, 80, 200}) {
    const std::string line = progressLine(state, width);
    EXPECT_LE(line.size(), static_cast<std::size_t>(width) + 4) << width;
  }
  EXPECT_EQ(progressLine(state, 80).find("25 %  Totals: 1/2 KB (1/2 Files)"), 0U);
}

TEST(ConsoleScreen, A_long_text_loses_its_front) {
  EXPECT_EQ(lastColumns("abcdef", 6), "abcdef");
  EXPECT_EQ(lastColumns("abcdef", 4), "…def");
  EXPECT_EQ(lastColumns("àèìòùé", 3), "…ùé");
}

// --- the start check

struct NecessaryFile {
  const char* name;
  const char* onScreen;
};

const std::vector<NecessaryFile>& necessaryFiles() {
  static const std::vector<NecessaryFile> files{{"Config.cfg", "Config.cfg"},
                                                {"GlobalSetting.dat", "GlobalSetting.dat"},
                                                {"Lang_Ita.Dat", "Lang_Ita.Dat"},
                                                {"Lang_Eng.Dat", "Lang_Eng.Dat"},
                                                {"Gif/Scansione.Gif", "Gif\\Scansione.Gif"},
                                                {"Icon/Files.ico", "Icon\\Files.ico"},
                                                {"Icon/Folders.ico", "Icon\\Folders.ico"},
                                                {"Icon/Drive.ico", "Icon\\Drive.ico"}};
  return files;
}

std::string missingText(const ConsoleFolder& folder, const NecessaryFile& file) {
  return "Errore di Avvio: il file '" + folder.homeProgram(file.onScreen) + "' non è stato tovato.\n";
}

TEST(StartCheck, Each_required_file_that_is_missing_is_named_and_ends_the_program) {
  for (const NecessaryFile& file : necessaryFiles()) {
    ConsoleFolder folder;
    folder.work().write("source/a", "x");
    folder.copySourceToDestination();
    fs::remove(folder.home().host(file.name));
    const ProgramResult result = folder.run({"backup"});
    EXPECT_EQ(result.status, 4) << file.name;
    EXPECT_EQ(result.err, missingText(folder, file));
    EXPECT_EQ(result.out, "");
    EXPECT_FALSE(folder.work().exists("destination/a"));
    EXPECT_EQ(folder.log(), "");
  }
}

TEST(StartCheck, Of_several_missing_files_the_last_of_the_list_is_named) {
  for (std::size_t last = 1; last < necessaryFiles().size(); ++last) {
    ConsoleFolder folder;
    for (std::size_t i = 0; i <= last; ++i) fs::remove(folder.home().host(necessaryFiles()[i].name));
    const ProgramResult result = folder.run({"check"});
    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.err, missingText(folder, necessaryFiles()[last]));
  }
}

TEST(StartCheck, With_the_profile_and_the_drive_picture_missing_only_the_picture_is_named) {
  ConsoleFolder folder;
  fs::remove(folder.home().host("Config.cfg"));
  fs::remove(folder.home().host("Icon/Drive.ico"));
  const ProgramResult result = folder.run({"backup"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find("Drive.ico"), std::string::npos);
  EXPECT_EQ(result.err.find("Config.cfg"), std::string::npos);
}

TEST(StartCheck, The_usual_profile_must_be_there_also_when_another_one_is_named) {
  ConsoleFolder folder;
  fs::rename(folder.home().host("Config.cfg"), folder.home().host("Other.cfg"));
  RunProgram run({"--folder", folder.home().host(), "--profile", folder.home().host("Other.cfg"), "check"});
  EXPECT_EQ(run.run().status, 4);
}

TEST(StartCheck, The_letter_case_of_the_shipped_data_does_not_count) {
  ConsoleFolder folder;
  fs::rename(folder.home().host("Lang_Eng.Dat"), folder.home().host("lang_eng.dat"));
  fs::rename(folder.home().host("Gif"), folder.home().host("gif"));
  fs::rename(folder.home().host("Icon/Drive.ico"), folder.home().host("Icon/DRIVE.ICO"));
  EXPECT_EQ(folder.run({"check"}).status, 0);
}

// --- init and the program folder

TEST(Init, It_makes_a_program_folder_that_can_be_used_at_once) {
  const TemporaryFolder work;
  const std::string made = work.host("deep/new folder");
  const ProgramResult result = RunProgram({"--folder", made, "init"}).run();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "");
  for (const NecessaryFile& file : necessaryFiles())
    EXPECT_TRUE(fs::exists(made + "/" + file.name)) << file.name;
  EXPECT_EQ(RunProgram({"--folder", made, "check"}).run().status, 0);
}

TEST(Init, A_folder_that_has_settings_is_refused_and_left_alone) {
  const ConsoleFolder folder;
  const std::string before = folder.describeHome();
  const ProgramResult result = folder.run({"init"});
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find(const_cast<ConsoleFolder&>(folder).home().host()), std::string::npos);
  EXPECT_EQ(folder.describeHome(), before);
}

TEST(Init, A_folder_without_settings_gets_what_it_lacks_and_keeps_what_it_has) {
  const TemporaryFolder work;
  work.write("Config.cfg", "my own");
  work.write("letter.txt", "mine");
  EXPECT_EQ(RunProgram({"--folder", work.host(), "init"}).run().status, 0);
  EXPECT_EQ(work.read("Config.cfg"), "my own");
  EXPECT_EQ(work.read("letter.txt"), "mine");
  EXPECT_TRUE(work.exists("GlobalSetting.dat"));
}

TEST(Init, A_file_in_the_way_is_refused) {
  const TemporaryFolder work;
  work.write("home", "a file");
  EXPECT_EQ(RunProgram({"--folder", work.host("home"), "init"}).run().status, 4);
  EXPECT_EQ(work.read("home"), "a file");
}

TEST(ProgramFolderOption, A_folder_that_is_named_but_missing_is_refused_and_not_made) {
  const TemporaryFolder work;
  for (const char* command : {"backup", "check"}) {
    const ProgramResult result = RunProgram({"--folder", work.host("none"), command}).run();
    EXPECT_EQ(result.status, 4);
    EXPECT_NE(result.err.find(work.host("none")), std::string::npos);
  }
  EXPECT_FALSE(work.exists("none"));
}

TEST(ProgramFolderOption, A_file_missing_from_an_existing_folder_is_not_filled_in) {
  const TemporaryFolder work;
  work.makeFolder("home");
  EXPECT_EQ(RunProgram({"--folder", work.host("home"), "check"}).run().status, 4);
  EXPECT_TRUE(fs::is_empty(work.host("home")));
}

TEST(ProgramFolderOption, Without_the_option_the_environment_names_the_folder) {
  const ConsoleFolder folder;
  const std::string home = const_cast<ConsoleFolder&>(folder).home().host();
  fs::remove(home + "/Icon/Drive.ico");
  const ProgramResult result = RunProgram({"check"}).set("TANDEMIZE_HOME", home).run();
  EXPECT_EQ(result.err, missingText(folder, necessaryFiles().back()));
}

TEST(ProgramFolderOption, The_users_own_folder_is_made_and_filled_when_it_does_not_exist) {
  const TemporaryFolder work;
  const ProgramResult result = RunProgram({"check"}).set("XDG_DATA_HOME", work.host("data")).run();
  EXPECT_EQ(result.status, 0) << result.err;
  for (const NecessaryFile& file : necessaryFiles())
    EXPECT_TRUE(work.exists(std::string("data/tandemize-backup/") + file.name)) << file.name;
}

TEST(ProgramFolderOption, The_option_goes_before_the_environment) {
  const ConsoleFolder folder;
  const ProgramResult result =
      RunProgram(folder.words({"check"})).set("TANDEMIZE_HOME", "/nonexistent/folder").run();
  EXPECT_EQ(result.status, 0) << result.err;
}

// --- the profile

TEST(ProfileOption, It_is_taken_as_a_host_path_or_in_the_programs_notation) {
  ConsoleFolder folder;
  folder.work().makeFolder("a");
  folder.work().makeFolder("b");
  const Diagram diagram = Diagram::copying(folder.program("a"), folder.program("b"));
  diagram.write(folder.work().host("Other.cfg"));
  for (const std::string& path : {folder.work().host("Other.cfg"), folder.program("Other.cfg")}) {
    const ProgramResult result =
        RunProgram({"--folder", folder.home().host(), "--profile", path, "check"}).run();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "0\t" + folder.program("a") + "\n0\t" + folder.program("b") + "\n");
  }
}

TEST(ProfileOption, A_missing_profile_is_refused_by_name) {
  ConsoleFolder folder;
  const ProgramResult result =
      RunProgram({"--folder", folder.home().host(), "--profile", folder.work().host("none.cfg"), "backup"})
          .run();
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.err.find("none.cfg"), std::string::npos);
}

TEST(ProfileOption, A_file_whose_first_line_is_no_path_is_no_profile) {
  ConsoleFolder folder;
  for (const char* text :
       {"", "FixFileOption = 2\r\nBackup_Path_0 = \r\n", "backup_path_0 = \r\n", " Backup_Path_0 = \r\n"}) {
    folder.work().write("odd.cfg", text);
    const ProgramResult result =
        RunProgram({"--folder", folder.home().host(), "--profile", folder.work().host("odd.cfg"), "check"})
            .run();
    EXPECT_EQ(result.status, 4) << text;
    EXPECT_NE(result.err.find("odd.cfg"), std::string::npos) << text;
  }
}

// --- check

TEST(Check, One_line_for_each_path_of_the_diagram_and_then_of_the_synchronisation) {
  ConsoleFolder folder;
  folder.work().makeFolder("here");
  folder.work().makeFolder("stick");
  folder.home().write("Drives.dat", "D: = removable " + folder.work().host("stick") + "\nJ: = removable " +
                                        folder.work().host("gone") + "\nI: = cdrom " +
                                        folder.work().host("gone.iso") + "\n");
  const std::string here = folder.program("here"), none = folder.program("none");
  folder.diagram(Diagram()
                     .source("A", here)
                     .source("B", none)
                     .source("<!Erased!>", here)
                     .files("F", {here})
                     .destination("C", "D:\\", {"A"})
                     .destination("E", "J:\\x", {"A"})
                     .destination("G", "I:\\x", {"A"})
                     .destination("H", "\\\\nas\\photos", {"A"})
                     .synchronised({here, none}));
  const ProgramResult result = folder.run({"check"});
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.out, "0\t" + here + "\n5\t" + none +
                            "\n0\tD:\\\n2\tJ:\\x\n1\tI:\\x\n3\t\\\\nas\\photos\n0\t" + here + "\n5\t" + none +
                            "\n");
}

TEST(Check, When_every_path_is_usable_it_ends_with_0_and_still_lists_them) {
  ConsoleFolder folder;
  folder.copySourceToDestination();
  const ProgramResult result = folder.run({"check"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "0\t" + folder.program("source") + "\n0\t" + folder.program("destination") + "\n");
  EXPECT_EQ(result.err, "");
}

TEST(Check, A_server_is_not_reached_without_a_connection) {
  ConsoleFolder folder;
  folder.diagram(Diagram::copying(folder.program(), "/backup"));
  const ProgramResult result = RunProgram(folder.words({"check"})).set("TANDEMIZE_NETWORK", "down").run();
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.out, "0\t" + folder.program() + "\n6\t/backup\n");
}

TEST(Check, It_changes_nothing) {
  ConsoleFolder folder;
  folder.copySourceToDestination();
  const std::string home = describeTree(folder.home().path()), work = describeTree(folder.work().path());
  EXPECT_EQ(folder.run({"check"}).status, 0);
  EXPECT_EQ(describeTree(folder.home().path()), home);
  EXPECT_EQ(describeTree(folder.work().path()), work);
}

// --- crc

TEST(Crc, Eight_digits_a_tab_and_the_path_in_the_programs_notation) {
  ConsoleFolder folder;
  folder.work().write("a", "123456789");
  folder.work().write("b", "a");
  const ProgramResult result =
      folder.run({"crc", folder.work().host("a"), folder.program("b"), folder.work().host("a")});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "CBF43926\t" + folder.program("a") + "\nE8B7BE43\t" + folder.program("b") +
                            "\nCBF43926\t" + folder.program("a") + "\n");
  EXPECT_EQ(result.err, "");
}

TEST(Crc, Leading_zeros_are_kept) {
  ConsoleFolder folder;
  folder.work().write("a", std::string("\x9d\x0a\xd9\x6d", 4));
  EXPECT_EQ(folder.run({"crc", folder.work().host("a")}).out.find('\t'), 8U);
}

TEST(Crc, An_empty_file_has_none) {
  ConsoleFolder folder;
  folder.work().write("empty", "");
  const ProgramResult result = folder.run({"crc", folder.work().host("empty")});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "-\t" + folder.program("empty") + "\n");
}

TEST(Crc, A_file_that_cannot_be_read_is_told_on_the_error_side_and_the_others_go_on) {
  ConsoleFolder folder;
  folder.work().write("a", "123456789");
  folder.work().makeFolder("folder");
  const ProgramResult result =
      folder.run({"crc", folder.work().host("none"), folder.work().host("folder"), folder.work().host("a")});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "CBF43926\t" + folder.program("a") + "\n");
  EXPECT_NE(result.err.find(folder.program("none")), std::string::npos);
  EXPECT_NE(result.err.find(folder.program("folder")), std::string::npos);
}

TEST(Crc, A_file_without_read_permission_is_told) {
  ConsoleFolder folder;
  folder.work().write("a", "123456789");
  fs::permissions(folder.work().host("a"), fs::perms::none);
  const ProgramResult result = folder.runAsOrdinaryUser({"crc", folder.work().host("a")});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find(folder.program("a")), std::string::npos);
}

TEST(Crc, Words_behind_two_dashes_are_paths) {
  ConsoleFolder folder;
  folder.work().write("--mode", "123456789");
  RunProgram run(folder.words({"crc", "--", "--mode"}));
  run.in(folder.work().host());
  EXPECT_EQ(run.run().out, "CBF43926\t" + folder.program("--mode") + "\n");
}

TEST(Crc, It_writes_no_file) {
  ConsoleFolder folder;
  folder.work().write("a", "x");
  const std::string home = describeTree(folder.home().path());
  folder.run({"crc", folder.work().host("a"), folder.work().host("none")});
  EXPECT_EQ(describeTree(folder.home().path()), home);
}

// --- path

TEST(Path, Host_paths_come_out_in_the_programs_notation) {
  ConsoleFolder folder;
  folder.home().write("Drives.dat", "D: = removable /media/anna/STICK\n\\\\nas\\photos = /mnt/nas/photos\n");
  const ProgramResult result =
      folder.run({"path", "/", "/home/anna/a b,c.txt", "/media/anna/STICK/x", "/media/anna/STICK",
                  "/mnt/nas/photos/2026/x", "/media/anna/STICKY"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(
      result.out,
      "C:\\\nC:\\home\\anna\\a b,c.txt\nD:\\x\nD:\\\n\\\\nas\\photos\\2026\\x\nC:\\media\\anna\\STICKY\n");
  EXPECT_EQ(result.err, "");
}

TEST(Path, A_relative_path_counts_from_the_working_folder) {
  ConsoleFolder folder;
  RunProgram run(folder.words({"path", "x/../y", "."}));
  run.in(folder.work().host());
  EXPECT_EQ(run.run().out, folder.program("y") + "\n" + folder.program() + "\n");
}

TEST(Path, Characters_that_the_notation_cannot_hold_are_mapped) {
  ConsoleFolder folder;
  const ProgramResult result = folder.run({"path", "/a\\b:c*d?e\"f<g>h|i\nj"});
  EXPECT_EQ(result.out, "C:\\a\uF05Cb\uF03Ac\uF02Ad\uF03Fe\uF022f\uF03Cg\uF03Eh\uF07Ci\uF00Aj\n");
}

TEST(Path, Nothing_need_exist_not_even_the_program_folder) {
  EXPECT_EQ(RunProgram({"--folder", "/nonexistent/folder", "path", "/a"}).run().out, "C:\\a\n");
}

TEST(Console, Help_and_version_go_to_standard_output) {
  const ProgramResult help = RunProgram({"--help"}).run(), version = RunProgram({"--version"}).run();
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("tandemize-run"), std::string::npos);
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out.find("tandemize-run "), 0U);
}

}  // namespace
}  // namespace tandemize
