#include "Stage.h"

#include <time.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <string_view>

#include "Album.h"
#include "fixtures/Diagram.h"
#include "platform/posix/clockways.h"

namespace tandemize::screenshots {

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t StartOfTime = 1'777'887'000;  // 4 May 2026, 9:30
constexpr std::uintmax_t FilmSize = 96 << 20, PhotoSize = 3 << 20;

struct Setting {
  std::string_view key;
  const char *italian, *english;
};

// What differs from the data that the program ships.
constexpr std::array<Setting, 11> Settings{{
    {"Email_Action", "1", "1"},
    {"Email_Smtp", "smtp.example.org", "smtp.example.org"},
    {"Email_Email", "anna@example.org", "anna@example.org"},
    {"StartUp_PC_Mode", "2", "2"},
    {"Timer_Start_Mode", "2", "2"},
    {"Timer_Backup_Type", "2", "2"},
    {"Timer_Interval_Type", "giorni", "days"},
    {"Timer_Interval_Number", "1", "1"},
    {"Timer_Start_Time", "21.30", "21.30"},
    {"Timer_Start_Date", "04/05/2026", "04/05/2026"},
    {"Log_Show_Window", "2", "2"},
}};

}  // namespace

void Stage::startClock() {
  setenv("TZ", "UTC", 1);
  ::tzset();
  platform::simulatedClock().emplace();
  setClock(0);
}

void Stage::setClock(double milliseconds) {
  auto& clock = platform::simulatedClock().value();
  clock.milliseconds = StartOfTime * 1000 + static_cast<std::int64_t>(milliseconds);
  clock.monotonic = 1'000'000 + static_cast<std::uint64_t>(milliseconds);
}

Stage::Stage(Language language) : language_(language) {
  std::string name = (fs::temp_directory_path() / "tandemize-pictures-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) giveUp("no temporary folder");
  root_ = name;
  fs::create_directories(host("c"));
  fs::copy(TANDEMIZE_DATA, host("c/Tandemize"), fs::copy_options::recursive);
  write("c/Tandemize/Drives.dat", "C: = fixed " + host("c").string() + "\r\nD: = fixed " +
                                      host("d").string() + "\r\nE: = removable " + host("e").string() +
                                      "\r\n\\\\nas\\anna = " + host("nas").string() + "\r\n");
  write("c/Tandemize/Registry.ini",
        "[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion]\r\nRegisteredOwner=Anna\r\n"
        "RegisteredOrganization=" +
            text("Casa", "Home") + "\r\n");
  setting("Language", language == Language::Italian ? "0" : "1");
  makeFiles();
  makeProfile();
}

Stage::~Stage() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void Stage::write(const std::string& relative, const std::string& content) const {
  fs::create_directories(host(relative).parent_path());
  std::ofstream(host(relative), std::ios::binary) << content;
}

void Stage::makeFiles() const {
  const std::string documents = "d/" + text("Documenti/", "Documents/");
  write(documents + text("Casa/bilancio.txt", "Household/budget.txt"), "1240\n");
  write(documents + text("Lettere/anna.txt", "Letters/anna.txt"), "...\n");
  write(documents + text("Lettere/anna.tmp", "Letters/anna.tmp"), "...\n");
  const std::string photos = "d/" + text("Foto/", "Photos/");
  for (const char* photo : {"2026 Roma/fontana.jpg", "2026 Roma/piazza.jpg", "2026 Roma/terrazza.jpg"}) {
    write(photos + photo, "");
    fs::resize_file(host(photos + photo), PhotoSize);
  }
  write(photos + "2026 Roma/film.mp4", "");
  fs::resize_file(host(photos + "2026 Roma/film.mp4"), FilmSize);
  write("d/" + text("Scrivania/spesa.txt", "Desktop/shopping.txt"), "pane\n");
  fs::create_directories(host("e/" + text("copie", "copies")));
  fs::create_directories(host("nas/" + text("copie", "copies")));
}

void Stage::makeProfile() const {
  const std::string stick = text("Chiavetta USB", "USB stick");
  const std::string documents = text("Documenti", "Documents"), photos = text("Foto", "Photos");
  const std::string list = text("Lista della spesa", "Shopping list");
  const std::string copies = text("copie", "copies");
  test::Diagram diagram;
  diagram.source(documents, "D:\\" + documents)
      .source(photos, "D:\\" + photos)
      .files(list, {"D:\\" + text("Scrivania\\spesa.txt", "Desktop\\shopping.txt")})
      .destination(stick, "E:\\" + copies, {documents, list})
      .destination("NAS", "\\\\nas\\anna\\" + copies, {documents, photos});
  diagram.write(host("c/Tandemize/Config.cfg").string());
  write("c/Tandemize/Configb.adv", "FilterBackup = -|*.tmp|*.bak|\r\nFilterIgnoreInvalidPath = 0\r\n");
}

void Stage::setting(const std::string& key, const std::string& value) const {
  std::ifstream in(host("c/Tandemize/GlobalSetting.dat"));
  std::string line, result;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.rfind(key + " = ", 0) == 0) line = key + " = " + value;
    result += line + "\r\n";
  }
  in.close();
  write("c/Tandemize/GlobalSetting.dat", result);
}

void Stage::fillSettings() const {
  for (const Setting& entry : Settings) setting(std::string(entry.key), text(entry.italian, entry.english));
  setting("Email_Email", "anna@example.org\r\nFtp_Description0 = " + text("Casa", "Home") +
                             "\r\nFtp_Server_Name0 = ftp.example.org\r\nFtp_User0 = anna\r\n"
                             "Ftp_Password0 = secret\r\nFtp_PassiveMode0 = 1");
}

}  // namespace tandemize::screenshots
