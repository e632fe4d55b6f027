#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "fixtures/TemporaryFolder.h"
#include "platform/hosttree.h"
#include "platform/machine.h"
#include "platform/posix/drivelines.h"
#include "platform/posix/drivetable.h"
#include "platform/posix/mounts.h"

namespace tandemize::platform {
namespace {

std::string described(const std::vector<Drive>& drives) {
  std::string text;
  for (const Drive& drive : drives) {
    text += drive.root + " " + std::to_string(static_cast<int>(drive.kind)) + " " + drive.hostPath + "\n";
  }
  return text;
}

class ScriptedFacts : public MountFacts {
 public:
  [[nodiscard]] bool isRemovable(const std::string& device) const override {
    return removable.count(device) != 0;
  }
  [[nodiscard]] std::vector<std::string> namesIn(const std::string& folder) const override {
    const auto found = names.find(folder);
    return found == names.end() ? std::vector<std::string>() : found->second;
  }
  std::set<std::string> removable;
  std::map<std::string, std::vector<std::string>> names;
};

// --- Drives.dat
// --------------------------------------------------------------------------------------------------

TEST(DriveLines, Tell_letter_kind_and_host_path) {
  const DriveLines lines = parseDriveLines(
      "D: = removable /media/anna/STICK\n"
      "E: = cdrom /dev/sr0\n"
      "F: = fixed /srv/data\n"
      "G: = remote /mnt/g\n"
      "H: = ramdisk /dev/shm\n"
      "I: = /srv/plain\n"
      "\\\\nas\\photos = /mnt/nas/photos\n");
  EXPECT_EQ(
      described(lines.drives),
      "D: 2 /media/anna/STICK\nE: 5 /dev/sr0\nF: 3 /srv/data\nG: 4 /mnt/g\nH: 6 /dev/shm\nI: 3 /srv/plain\n"
      "\\\\nas\\photos 4 /mnt/nas/photos\n");
  EXPECT_TRUE(lines.badLines.empty());
}

TEST(DriveLines, Bear_blanks_carriage_returns_case_and_empty_lines) {
  const DriveLines lines = parseDriveLines(
      "\xEF\xBB\xBF\r\n  d:=REMOVABLE\t /media/My Stick/ \r\n\r\n   \r\nE:\\ =/srv//a/./b/\r\n\\\\nas\\my "
      "photos\\ =  /mnt/p");
  EXPECT_EQ(described(lines.drives), "D: 2 /media/My Stick\nE: 3 /srv/a/b\n\\\\nas\\my photos 4 /mnt/p\n");
  EXPECT_TRUE(lines.badLines.empty());
}

TEST(DriveLines, That_make_no_sense_are_passed_over_and_named) {
  const std::vector<std::string> bad = {
      "hello",        "D:",        "D: =",          "D: = removable", "D: = relative/x",
      "DD: = /x",     "1: = /x",   "= /x",          "\\\\nas = /x",   "\\\\nas\\a\\b = /x",
      "\\\\\\a = /x", "\\\\ = /x", "D: = floppy /x"};
  std::string text;
  for (const std::string& line : bad) text += line + "\n";
  const DriveLines lines = parseDriveLines(text + "E: = /srv\n");
  EXPECT_EQ(described(lines.drives), "E: 3 /srv\n");
  EXPECT_EQ(lines.badLines, bad);
}

TEST(DriveLines, Of_a_name_that_is_taken_do_not_replace_the_first) {
  const DriveLines lines = parseDriveLines("D: = /one\nd: = /two\n\\\\NAS\\p = /three\n\\\\nas\\P = /four\n");
  EXPECT_EQ(described(lines.drives), "D: 3 /one\n\\\\NAS\\p 4 /three\n");
  EXPECT_EQ(lines.badLines.size(), 2U);
}

TEST(DriveLines, Of_a_damaged_file_leave_a_short_list_of_bad_ones) {
  std::string text;
  for (int i = 0; i < 50000; ++i) text += std::string("\0\x01=\xFF/", 5) + std::string(300, 'x') + "\n";
  const DriveLines lines = parseDriveLines(text + "D: = /srv\n");
  EXPECT_EQ(described(lines.drives), "D: 3 /srv\n");
  EXPECT_EQ(lines.badLines.size(), 100U);
  for (const std::string& line : lines.badLines) EXPECT_LE(line.size(), 200U);
}

// --- mount table
// -------------------------------------------------------------------------------------------------

TEST(Mounts, Are_read_with_their_escapes_undone) {
  const std::vector<Mount> mounts = parseMounts(
      "26 1 8:17 / /media/anna/My\\040Stick\\134 rw,noatime shared:1 master:2 - vfat /dev/sdb1 rw,uid=1000\n"
      "damaged\n"
      "27 1 0:40 /sub /mnt/x rw - cifs //nas/my\\040photos rw\n");
  ASSERT_EQ(mounts.size(), 2U);
  EXPECT_EQ(mounts[0].device, "8:17");
  EXPECT_EQ(mounts[0].root, "/");
  EXPECT_EQ(mounts[0].folder, "/media/anna/My Stick\\");
  EXPECT_EQ(mounts[0].type, "vfat");
  EXPECT_EQ(mounts[0].source, "/dev/sdb1");
  EXPECT_EQ(mounts[1].source, "//nas/my photos");
  EXPECT_EQ(mounts[1].root, "/sub");
}

TEST(Mounts, Of_media_and_network_folders_are_drives) {
  ScriptedFacts facts;
  facts.removable = {"8:33", "8:1"};
  const std::vector<Mount> mounts = parseMounts(
      "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
      "2 1 8:1 / /boot/efi rw - vfat /dev/sda1 rw\n"
      "3 1 0:5 / /proc rw - proc proc rw\n"
      "4 1 8:17 / /home rw - ext4 /dev/sdb1 rw\n"
      "5 1 8:33 / /mnt/card rw - vfat /dev/sdc1 rw\n"
      "6 1 8:33 / /mnt/again rw - vfat /dev/sdc1 rw\n"
      "7 1 8:49 / /media/anna/DISC rw - ext4 /dev/sdd1 rw\n"
      "8 1 8:65 / /run/media/anna/B rw - exfat /dev/sde1 rw\n"
      "9 1 11:0 / /mnt/cd ro - iso9660 /dev/sr0 ro\n"
      "10 1 11:1 / /mnt/dvd ro - udf /dev/sr1 ro\n"
      "11 1 0:50 / /media/tmp rw - tmpfs tmpfs rw\n"
      "12 1 0:51 / /mnt/p rw - cifs //nas/photos rw\n"
      "13 1 0:52 / /mnt/q rw - smb3 //nas/data/deep/er rw\n"
      "14 1 0:53 /in /mnt/r rw - cifs //nas/more rw\n"
      "15 1 0:54 / /mnt/n rw - nfs4 server:/srv/export rw\n"
      "16 1 0:55 / /mnt/o rw - nfs [fe80::1]:/ rw\n");
  EXPECT_EQ(described(mountedDrives(mounts, facts)),
            " 2 /mnt/card\n 2 /media/anna/DISC\n 2 /run/media/anna/B\n 5 /mnt/cd\n 5 /mnt/dvd\n"
            "\\\\nas\\photos 4 /mnt/p\n\\\\nas\\data\\deep\\er 4 /mnt/q\n\\\\nas\\more\\in 4 /mnt/r\n"
            "\\\\server\\srv_export 4 /mnt/n\n\\\\fe80\xEF\x80\xBA\xEF\x80\xBA\x31\\root 4 /mnt/o\n");
}

TEST(Mounts, Of_the_desktop_tell_shares_by_their_folder_names) {
  ScriptedFacts facts;
  facts.names["/run/user/1000/gvfs"] = {".",
                                        "..",
                                        "smb-share:server=nas,share=photos",
                                        "smb-share:domain=WORK,server=my%20nas,share=a%2cb,user=anna",
                                        "smb-share:server=nas",
                                        "ftp:host=x",
                                        "smb-share:share=y"};
  const std::vector<Mount> mounts =
      parseMounts("1 0 0:60 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n");
  EXPECT_EQ(
      described(mountedDrives(mounts, facts)),
      "\\\\my nas\\a,b 4 /run/user/1000/gvfs/smb-share:domain=WORK,server=my%20nas,share=a%2cb,user=anna\n"
      "\\\\nas\\photos 4 /run/user/1000/gvfs/smb-share:server=nas,share=photos\n");
}

TEST(Mounts, Of_this_host_can_be_read) {
  const std::vector<Mount> mounts = readMounts();
  ASSERT_FALSE(mounts.empty());
  for (const Mount& mount : mounts) EXPECT_EQ(mount.folder.front(), '/');
  EXPECT_FALSE(hostMountFacts().isRemovable("0:0"));
  EXPECT_TRUE(hostMountFacts().namesIn("/nowhere").empty());
}

// --- table
// -------------------------------------------------------------------------------------------------------

const Drive kStick{"", DriveKind::removable, "/media/anna/A"};
const Drive kSecondStick{"", DriveKind::removable, "/media/anna/B"};

TEST(DriveTable, Gives_media_the_next_free_letters_in_mount_order) {
  const DriveTable table({{"E:", DriveKind::fixed, "/srv"}}, {},
                         {kSecondStick, {"\\\\nas\\p", DriveKind::remote, "/mnt/p"}, kStick}, nullptr);
  EXPECT_EQ(described(table.drives()),
            "C: 3 /\nD: 2 /media/anna/B\nE: 3 /srv\nF: 2 /media/anna/A\n\\\\nas\\p 4 /mnt/p\n");
}

TEST(DriveTable, Lets_the_file_overrule_what_is_mounted) {
  const DriveTable table(
      {{"S:", DriveKind::removable, "/media/anna/A"}, {"\\\\NAS\\P", DriveKind::remote, "/srv/p"}}, {},
      {kStick, {"\\\\nas\\p", DriveKind::remote, "/mnt/p"}}, nullptr);
  EXPECT_EQ(described(table.drives()), "C: 3 /\nS: 2 /media/anna/A\n\\\\NAS\\P 4 /srv/p\n");
}

TEST(DriveTable, Never_gives_a_letter_to_another_medium_while_the_program_runs) {
  const DriveTable first({}, {}, {kStick}, nullptr);
  const DriveTable second({}, {}, {kSecondStick}, &first);
  EXPECT_EQ(described(second.drives()), "C: 3 /\nD: 2 /media/anna/A\nE: 2 /media/anna/B\n");
  const DriveTable third({}, {}, {kSecondStick, kStick}, &second);
  EXPECT_TRUE(third == second);
}

TEST(DriveTable, Finds_the_files_of_an_optical_device_where_it_is_mounted) {
  const std::vector<Mount> mounts = {{"11:0", "/", "/media/anna/DISC", "iso9660", "/dev/sr0"}};
  const DriveTable table({{"E:", DriveKind::cdrom, "/dev/sr0"}}, mounts,
                         {{"", DriveKind::cdrom, "/media/anna/DISC"}}, nullptr);
  EXPECT_EQ(described(table.drives()), "C: 3 /\nE: 5 /dev/sr0\n");
  EXPECT_EQ(table.entry(table.find("E:\\x")).folder, "/media/anna/DISC");
}

TEST(DriveTable, Finds_the_inner_of_two_nested_shares) {
  const DriveTable table({{"\\\\nas\\p", DriveKind::remote, "/mnt/p"}}, {},
                         {{"\\\\nas\\p\\sub", DriveKind::remote, "/mnt/sub"}}, nullptr);
  EXPECT_EQ(table.drives()[table.find("\\\\NAS\\P\\SUB\\x")].hostPath, "/mnt/sub");
  EXPECT_EQ(table.drives()[table.find("\\\\nas\\p\\subway")].hostPath, "/mnt/p");
  EXPECT_EQ(table.find("\\\\nas\\pp\\x"), DriveTable::kNone);
}

TEST(DriveTable, Leaves_out_media_beyond_the_last_letter) {
  std::vector<Drive> media;
  for (int i = 0; i < 40; ++i) media.push_back({"", DriveKind::removable, "/media/m" + std::to_string(i)});
  const DriveTable table({}, {}, media, nullptr);
  EXPECT_EQ(table.drives().size(), 24U);
  EXPECT_EQ(table.drives().back().root, "Z:");
}

// --- drives of a program folder
// ------------------------------------------------------------------------------------

class Drives : public testing::Test {
 protected:
  ~Drives() override { setProgramFolder({}); }
  void useDrives(std::string_view text) {
    home_.write("Drives.dat", text);
    setProgramFolder(home_.host());
  }
  test::TemporaryFolder home_;
};

TEST_F(Drives, Have_the_kind_of_their_letter) {
  useDrives(
      "D: = removable /gone/d\nE: = cdrom /gone/e\nF: = /gone/f\nG: = remote /gone/g\nH: = ramdisk "
      "/gone/h\n");
  EXPECT_EQ(driveKind("D:\\x"), DriveKind::removable);
  EXPECT_EQ(driveKind("e:\\"), DriveKind::cdrom);
  EXPECT_EQ(driveKind("F:"), DriveKind::fixed);
  EXPECT_EQ(driveKind("G:\\"), DriveKind::remote);
  EXPECT_EQ(driveKind("H:\\"), DriveKind::ramDisk);
  EXPECT_EQ(driveKind("C:\\"), DriveKind::fixed);
}

TEST_F(Drives, Without_a_known_letter_have_no_root) {
  useDrives("\\\\nas\\p = /srv\n");
  for (const char* path : {"", "a", "abc", "\\\\nas\\p\\x", "\\\\", "/a", "Q:\\", "Q:"}) {
    EXPECT_EQ(driveKind(path), DriveKind::noRoot) << path;
  }
}

TEST_F(Drives, Are_ready_while_their_host_folder_is_there) {
  home_.makeFolder("stick");
  home_.write("file", "x");
  useDrives("D: = removable " + home_.host("stick") + "\nE: = removable " + home_.host("none") +
            "\nF: = removable " + home_.host("file") + "\n");
  EXPECT_TRUE(driveReady("C:\\"));
  EXPECT_TRUE(driveReady("D:\\any\\thing"));
  EXPECT_FALSE(driveReady("E:\\"));
  EXPECT_FALSE(driveReady("F:\\"));
  EXPECT_FALSE(driveReady("Q:\\"));
  EXPECT_FALSE(driveReady("abc"));
  EXPECT_EQ(driveKind("E:\\"), DriveKind::removable);
  std::filesystem::remove(home_.host("stick"));
  EXPECT_FALSE(driveReady("D:\\"));
}

void expectDisc(std::string_view path, bool opened, bool present, bool hasLength) {
  const DiscState state = discState(path);
  EXPECT_EQ(state.opened, opened) << path;
  EXPECT_EQ(state.present, present) << path;
  EXPECT_EQ(state.hasLength, hasLength) << path;
  EXPECT_EQ(driveReady(path), present) << path;
}

TEST_F(Drives, For_discs_may_be_images_folders_and_devices) {
  home_.write("disc.iso", "data");
  home_.write("empty.iso", "");
  home_.makeFolder("mounted");
  useDrives("D: = cdrom " + home_.host("disc.iso") + "\nE: = cdrom " + home_.host("empty.iso") +
            "\nF: = cdrom " + home_.host("mounted") + "\nG: = cdrom " + home_.host("none.iso") +
            "\nH: = cdrom /dev/tandemize-no-such-drive\n");
  expectDisc("D:\\x", true, true, true);
  expectDisc("E:\\", true, true, false);
  expectDisc("F:\\", true, true, true);
  expectDisc("G:\\", true, false, false);
  expectDisc("H:\\", false, false, false);
}

TEST_F(Drives, Of_other_kinds_hold_no_disc) {
  useDrives("D: = removable " + home_.host() + "\n");
  for (const char* path : {"C:\\", "D:\\", "Q:\\", "abc", ""}) EXPECT_FALSE(discState(path).opened) << path;
}

TEST_F(Drives, Stay_valid_in_a_callers_hand) {
  useDrives("D: = /srv/one\n");
  const Drive* const drive = driveOf("D:\\x");
  ASSERT_NE(drive, nullptr);
  refreshDrives();
  EXPECT_EQ(drive, driveOf("D:\\y"));
  EXPECT_EQ(drive->hostPath, "/srv/one");
}

// A medium that comes and goes while the program runs, on a mount table of the child's own.
int plugAndPull(const std::string& programFolder) {
  if (::unshare(CLONE_NEWNS) != 0) return test::kNoSmallDisc;
  if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return test::kNoSmallDisc;
  if (::mount("none", "/media", "tmpfs", 0, nullptr) != 0) return test::kNoSmallDisc;
  setProgramFolder(programFolder);
  if (driveKind("D:\\") != DriveKind::noRoot || !toHost("D:\\x").empty()) return 1;
  ::mkdir("/media/STICK", 0755);
  if (::mount("/dev/stick", "/media/STICK", "tmpfs", 0, nullptr) != 0) return test::kNoSmallDisc;
  if (toHost("D:\\x") != "/media/STICK/x" || toProgram("/media/STICK/x") != "D:\\x") return 2;
  if (driveKind("D:\\") != DriveKind::removable || !driveReady("D:\\")) return 3;
  if (::umount("/media/STICK") != 0) return 4;
  return driveReady("D:\\") || driveKind("D:\\") != DriveKind::removable ? 5 : 0;
}

TEST_F(Drives, Appear_when_a_medium_comes_and_are_not_ready_when_it_has_gone) {
  const int result = test::inChild([&] { return plugAndPull(home_.host()); });
  EXPECT_TRUE(result == 0 || result == test::kNoSmallDisc) << result;
}

TEST_F(Drives, Come_from_the_whole_lines_of_the_first_mebibyte_of_a_huge_file) {
  std::string text = "D: = /srv/first\n";
  text += std::string((1U << 20U) - text.size() - 6, 'x') + "\nE: = /srv/cut\nF: = /srv/late\n";
  useDrives(text);
  EXPECT_EQ(toHost("D:"), "/srv/first");
  EXPECT_NE(toHost("E:").substr(0, 4), "/srv");
  EXPECT_NE(toHost("F:").substr(0, 4), "/srv");
  EXPECT_EQ(badDriveLines().size(), 1U);
}

TEST_F(Drives, Do_not_wait_for_a_pipe_in_the_place_of_the_file) {
  ASSERT_EQ(::mkfifo(home_.host("Drives.dat").c_str(), 0600), 0);
  setProgramFolder(home_.host());
  EXPECT_EQ(toHost("C:\\x"), "/x");
}

}  // namespace
}  // namespace tandemize::platform
