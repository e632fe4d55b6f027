// Listings, and the dates in them.

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <optional>

#include "platform/environment.h"
#include "platform/ftpclient.h"
#include "platform/machine.h"

namespace tandemize::platform {
namespace {

using test::FtpServer;
using Faults = std::vector<std::string>;

constexpr std::int64_t kWinter = 1706704215;  // 2024-01-31 12:30:15 UTC

// A server of each form of listing that the machine has.
struct Form {
  std::string name;
  FtpServer::Kind kind = FtpServer::Kind::Scriptable;
  Faults faults;
};

std::vector<Form> forms() {
  std::vector<Form> all{{"MLSD", FtpServer::Kind::Scriptable, {}},
                        {"LIST", FtpServer::Kind::Scriptable, {"mlsd off"}},
                        {"LIST without FEAT", FtpServer::Kind::Scriptable, {"feat off"}},
                        {"DOS", FtpServer::Kind::Scriptable, {"mlsd off", "list dos"}},
                        {"LIST without -a", FtpServer::Kind::Scriptable, {"mlsd off", "option unknown"}}};
  if (FtpServer::hasVsftpd()) all.push_back({"vsftpd", FtpServer::Kind::Vsftpd, {}});
  return all;
}

class Zone {
 public:
  explicit Zone(const std::string& name) : variable_(std::in_place, "TZ", name) { ::tzset(); }
  ~Zone() {
    variable_.reset();
    ::tzset();
  }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;

 private:
  std::optional<test::ScopedVariable> variable_;
};

const FtpEntry* find(const std::vector<FtpEntry>& entries, const std::string& name) {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const FtpEntry& entry) { return entry.name == name; });
  return found == entries.end() ? nullptr : &*found;
}

TEST(FtpSearch, Lists_files_and_folders_by_every_form) {
  for (const Form& form : forms()) {
    const FtpServer server(form.kind, form.faults);
    server.write("in/file", "12345");
    server.write("in/.hidden", "");
    server.write("in/folder/inner", "x");
    FtpClient client(server);
    client.connected();
    const std::vector<FtpEntry> entries = client.list(server.path("in"));
    ASSERT_EQ(entries.size(), 3U) << form.name;
    const FtpEntry* const file = find(entries, "file");
    const FtpEntry* const hidden = find(entries, ".hidden");
    const FtpEntry* const folder = find(entries, "folder");
    ASSERT_TRUE(file && hidden && folder) << form.name;
    EXPECT_EQ(file->attributes, 128U);
    EXPECT_EQ(file->size, 5U);
    EXPECT_TRUE(file->hasSize);
    EXPECT_TRUE(hidden->hasSize);
    EXPECT_EQ(hidden->size, 0U);
    EXPECT_EQ(folder->attributes, kDirectory);
    EXPECT_EQ(folder->size, 0U);
    EXPECT_FALSE(file->isLink);
    std::string current;
    EXPECT_EQ(client.session.currentFolder(current), kNoError);
    EXPECT_EQ(current, server.path("in"));
  }
}

TEST(FtpSearch, An_empty_folder_has_no_more_files) {
  for (const Form& form : forms()) {
    const FtpServer server(form.kind, form.faults);
    server.folder().makeFolder("empty");
    FtpClient client(server);
    FtpSession& session = client.connected();
    FtpSearch search;
    FtpEntry entry;
    EXPECT_EQ(session.openSearch(server.path("empty"), search, entry), kNoMoreFiles) << form.name;
    EXPECT_FALSE(search.isOpen());
    EXPECT_EQ(search.next(entry), kNoMoreFiles);
  }
}

TEST(FtpSearch, A_folder_that_is_not_there_lists_the_current_one) {
  for (const Form& form : forms()) {
    const FtpServer server(form.kind, form.faults);
    server.write("in/a", "x");
    FtpClient client(server);
    FtpSession& session = client.connected();
    ASSERT_EQ(session.setCurrentFolder(server.path("in")), kNoError);
    EXPECT_EQ(client.names(server.path("nowhere")), std::vector<std::string>{"a"}) << form.name;
    std::string current;
    EXPECT_EQ(session.currentFolder(current), kNoError);
    EXPECT_EQ(current, server.path("in"));
  }
}

TEST(FtpSearch, Hidden_names_are_listed_where_the_server_hides_them) {
  const FtpServer server({"mlsd off", "dots hidden"});
  server.write("in/.hidden", "x");
  server.write("in/shown", "x");
  FtpClient client(server);
  client.connected();
  EXPECT_EQ(client.names("/in").size(), 2U);
}

TEST(FtpSearch, A_server_that_refuses_is_no_empty_folder) {
  for (const std::string fault : {"refuse LIST 550 Permission denied", "refuse LIST 450 Try later"}) {
    FtpServer server(Faults{"mlsd off"});
    server.write("a", "x");
    FtpClient client(server);
    FtpSession& session = client.connected();
    server.become({"mlsd off", fault});
    FtpSearch search;
    FtpEntry entry;
    const ErrorCode error = session.openSearch("/", search, entry);
    EXPECT_TRUE(error == kFtpRefused) << fault << error;
    server.become({"mlsd off"});
    EXPECT_EQ(client.names("/").size(), 1U);
  }
  const FtpServer server({"refuse MLSD 550 Permission denied"});
  FtpClient client(server);
  FtpSearch search;
  FtpEntry entry;
  EXPECT_EQ(client.connected().openSearch("/", search, entry), kFtpRefused);
}

TEST(FtpSearch, A_folder_that_vsftpd_cannot_open_is_no_empty_folder) {
  const FtpServer server(FtpServer::Kind::Script,
                         {"done '226 Transfer done (but failed to open directory).\\r\\n'"});
  FtpClient client(server);
  FtpSearch search;
  FtpEntry entry;
  EXPECT_EQ(client.connected().openSearch("/", search, entry), kFtpRefused);
}

TEST(FtpSearch, A_refusal_that_says_no_files_is_an_empty_folder) {
  const FtpServer server({"mlsd off", "refuse LIST 550 No files found"});
  FtpClient client(server);
  FtpSearch search;
  FtpEntry entry;
  EXPECT_EQ(client.connected().openSearch("/", search, entry), kNoMoreFiles);
}

TEST(FtpSearch, A_server_that_offers_mlsd_and_has_none_is_asked_by_list) {
  const FtpServer server({"refuse MLSD 502 Not here"});
  server.write("a", "x");
  FtpClient client(server);
  client.connected();
  EXPECT_EQ(client.names("/"), std::vector<std::string>{"a"});
  EXPECT_EQ(client.names("/"), std::vector<std::string>{"a"});
  EXPECT_EQ(server.count("MLSD"), 1);
}

TEST(FtpSearch, Ten_thousand_entries_come_whole_and_in_order) {
  for (const Faults& faults : {Faults{"entries 10000"}, Faults{"entries 10000", "mlsd off"}}) {
    const FtpServer server(faults);
    FtpClient client(server);
    client.connected();
    const std::vector<FtpEntry> entries = client.list("/");
    ASSERT_EQ(entries.size(), 10'000U);
    EXPECT_EQ(entries.front().name, "file-00001.txt");
    EXPECT_EQ(entries.back().name, "file-10000.txt");
    EXPECT_TRUE(std::all_of(entries.begin(), entries.end(), [](const FtpEntry& entry) {
      return entry.size == 10 && entry.precision != TimePrecision::None;
    }));
  }
}

TEST(FtpSearch, A_second_one_is_refused_as_busy_and_everything_else_goes_on) {
  const FtpServer server;
  server.write("a", "x");
  server.write("b", "x");
  FtpClient client(server);
  FtpSession& session = client.connected();
  FtpSearch search, second;
  FtpEntry entry;
  ASSERT_EQ(session.openSearch("/", search, entry), kNoError);
  EXPECT_EQ(session.openSearch("/", second, entry), kFtpBusy);
  const std::string first = entry.name;
  EXPECT_EQ(session.deleteFile("/a"), kNoError);
  EXPECT_EQ(session.deleteFile("/b"), kNoError);
  EXPECT_EQ(search.next(entry), kNoError);  // as it was when the search opened
  EXPECT_NE(entry.name, first);
  EXPECT_EQ(search.next(entry), kNoMoreFiles);
  search.close();
  EXPECT_EQ(session.openSearch("/", second, entry), kNoMoreFiles);
}

TEST(FtpSearch, Names_that_lead_out_of_the_folder_are_left_out) {
  const Faults lines = {"line type=file;size=1; ../../etc/passwd",
                        "line type=file;size=1; /etc/passwd",
                        "line type=dir;size=1; ..",
                        "line type=dir;size=1; .",
                        "line type=dir; ..\\\\..\\\\windows",
                        "line type=cdir; /",
                        "line type=file;size=1; good"};
  const FtpServer machine(lines);
  FtpClient first(machine);
  first.connected();
  EXPECT_EQ(first.names("/"), std::vector<std::string>{"good"});

  const std::string start = "line -rw-r--r-- 1 a b 1 Jan 31  2024 ";
  const FtpServer plain({"mlsd off", start + "../../etc/passwd", start + "/etc/passwd", start + "a\\\\b",
                         "line drwxr-xr-x 1 a b 1 Jan 31  2024 ..", start + "good"});
  FtpClient second(plain);
  second.connected();
  EXPECT_EQ(second.names("/"), std::vector<std::string>{"good"});
}

TEST(FtpSearch, Lines_of_no_known_form_are_counted_and_alone_they_are_no_listing) {
  FtpServer server({"mlsd off", "line what is this", "line -rw-r--r-- 1 a b 1 Jan 31  2024 good"});
  FtpClient client(server);
  FtpSession& session = client.connected();
  EXPECT_EQ(client.names("/"), std::vector<std::string>{"good"});
  EXPECT_EQ(client.unknownLines, 1U);
  server.become({"mlsd off", "line what is this"});
  FtpSearch search;
  FtpEntry entry;
  EXPECT_EQ(session.openSearch("/", search, entry), kFtpBadReply);
  EXPECT_TRUE(session.isOpen());
}

TEST(FtpSearch, Bytes_that_are_no_text_come_through) {
  const FtpServer server({"line type=file;size=1; a\\xff\\x01b"});
  FtpClient client(server);
  client.connected();
  EXPECT_EQ(client.names("/"), std::vector<std::string>{"a\xFF\x01\x62"});
}

TEST(FtpSearch, A_link_is_what_it_leads_to_and_no_way_back_up) {
  for (const Form& form : forms()) {
    if (form.name == "DOS" || form.name == "MLSD") continue;  // these servers tell nothing of links
    const FtpServer server(form.kind, form.faults);
    server.write("real/file", "12345");
    server.write("in/plain", "x");
    server.setTime("real/file", kWinter);
    namespace fs = std::filesystem;
    const fs::path in = server.folder().path() / "in";
    fs::create_symlink("../real/file", in / "to file");
    fs::create_symlink("../real", in / "to folder");
    fs::create_symlink("nothing", in / "to nothing");
    fs::create_symlink("..", in / "up");
    fs::create_symlink(".", in / "self");
    fs::create_symlink("up/in", in / "around");
    FtpClient client(server);
    client.connected();
    const std::vector<FtpEntry> entries = client.list(server.path("in"));
    const FtpEntry* const file = find(entries, "to file");
    const FtpEntry* const folder = find(entries, "to folder");
    ASSERT_TRUE(file && folder) << form.name;
    EXPECT_EQ(file->attributes, 128U);
    EXPECT_EQ(file->size, 5U);
    EXPECT_EQ(file->lastWrite.seconds, kWinter);
    EXPECT_TRUE(file->isLink && folder->isLink);
    EXPECT_EQ(folder->attributes, kDirectory);
    EXPECT_FALSE(find(entries, "to nothing") || find(entries, "up") || find(entries, "self")) << form.name;
    // A server that names folders by the way one came there does not show that this one leads around.
    EXPECT_FALSE(form.name == "vsftpd" && find(entries, "around"));
    std::string current;
    EXPECT_EQ(client.session.currentFolder(current), kNoError);
    EXPECT_EQ(current, server.path("in"));
  }
}

TEST(FtpDates, Machine_listings_tell_seconds_in_utc) {
  const Zone zone("Europe/Rome");
  const FtpServer server;
  server.write("a", "x");
  server.setTime("a", kWinter);
  FtpClient client(server);
  client.connected();
  const std::vector<FtpEntry> entries = client.list("/");
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].precision, TimePrecision::Second);
  EXPECT_EQ(entries[0].lastWrite, (FileTime{kWinter, 0}));
}

// Recent files, so that LIST tells the time of day.
TEST(FtpDates, Lists_of_a_server_in_any_zone_give_the_same_moment) {
  const Zone zone("Europe/Rome");
  const std::int64_t moment = now() - 40 * std::int64_t{86400} + 15;
  for (const std::int64_t offset : {0, 3600, -5 * 3600, 20700, 13 * 3600}) {
    for (const Faults& form : {Faults{"mlsd off"}, Faults{"mlsd off", "list dos"}}) {
      Faults faults = form;
      faults.push_back("zone " + std::to_string(offset));
      const FtpServer server(faults);
      server.write("a", "x");
      server.setTime("a", moment);
      FtpClient client(server);
      client.connected();
      for (int i = 0; i < 2; ++i) {
        const std::vector<FtpEntry> entries = client.list("/");
        ASSERT_EQ(entries.size(), 1U);
        EXPECT_EQ(entries[0].precision, TimePrecision::Minute);
        EXPECT_EQ(entries[0].lastWrite.seconds, moment - moment % 60) << offset;
      }
      EXPECT_EQ(server.count("MDTM"), 1);  // once a session
    }
  }
}

TEST(FtpDates, Without_mdtm_a_list_counts_as_this_machines_time) {
  const Zone zone("Europe/Rome");
  const std::int64_t moment = now() - 40 * std::int64_t{86400};
  const FtpServer server({"mlsd off", "zone 10800", "refuse MDTM 500 What?"});
  server.write("a", "x");
  server.setTime("a", moment);
  FtpClient client(server);
  client.connected();
  const std::vector<FtpEntry> entries = client.list("/");
  ASSERT_EQ(entries.size(), 1U);
  // What the server shows is what this machine shows.
  const CivilTime shown = localTime(entries[0].lastWrite.seconds);
  const CivilTime there = localTime(moment + 10800);
  EXPECT_EQ(shown.minute, there.minute);
  EXPECT_NE(entries[0].lastWrite.seconds, moment - moment % 60);
}

TEST(FtpDates, An_old_file_in_a_list_has_its_day) {
  const Zone zone("Europe/Rome");
  for (const Form& form : forms()) {
    if (form.name == "MLSD" || form.name == "DOS") continue;
    const FtpServer server(form.kind, form.faults);
    server.write("a", "x");
    server.setTime("a", 1600000000);  // 2020-09-13 12:26:40 UTC
    FtpClient client(server);
    client.connected();
    const std::vector<FtpEntry> entries = client.list(server.path());
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].precision, TimePrecision::Day);
    EXPECT_EQ(localTime(entries[0].lastWrite.seconds), (CivilTime{2020, 9, 13, 0, 0, 0}));
  }
}

TEST(FtpDates, A_server_whose_clock_is_wrong_is_believed_alike_by_every_form) {
  const Zone zone("Europe/Rome");
  const std::int64_t moment = now() - 40 * std::int64_t{86400};
  for (const std::string skew : {"90061", "-7322"}) {
    for (const Faults& form : {Faults{}, Faults{"mlsd off"}}) {
      Faults faults = form;
      faults.push_back("clock " + skew);
      const FtpServer server(faults);
      server.write("a", "x");
      server.setTime("a", moment);
      FtpClient client(server);
      FtpSession& session = client.connected();
      const std::vector<FtpEntry> entries = client.list("/");
      FtpEntry file;
      ASSERT_EQ(session.fileStatus("/a", file), kNoError);
      ASSERT_EQ(entries.size(), 1U);
      EXPECT_EQ(file.lastWrite.seconds, moment + std::stoi(skew));
      const std::int64_t unit = entries[0].precision == TimePrecision::Second ? 1 : 60;
      EXPECT_EQ(entries[0].lastWrite.seconds, file.lastWrite.seconds - file.lastWrite.seconds % unit);
    }
  }
}

TEST(FtpDates, Vsftpd_lists_and_tells_the_same_moment) {
  if (!FtpServer::hasVsftpd()) return;
  const Zone zone("Asia/Kathmandu");
  const std::int64_t moment = now() - 10 * std::int64_t{86400};
  const FtpServer server(FtpServer::Kind::Vsftpd);
  server.write("a", "x");
  server.setTime("a", moment);
  FtpClient client(server);
  client.connected();
  const std::vector<FtpEntry> entries = client.list(server.path());
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].lastWrite.seconds, moment - moment % 60);
}

}  // namespace
}  // namespace tandemize::platform
