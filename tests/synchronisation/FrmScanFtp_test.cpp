// The walk of a path on a server.
#include <gtest/gtest.h>

#include <set>

#include "fixtures/PlainFtpServer.h"
#include "presentation/FrmProgressBar.h"
#include "shell/Impostazioni.h"
#include "storage/FtpProgram.h"
#include "synchronisation/FrmScan.h"

namespace tandemize {
namespace {

using Names = std::set<std::string>;

class FrmScanFtp : public testing::Test {
 protected:
  FrmScanFtp() { program_.define({"Home", server.name(), "anna", "secret", 1}); }

  Names scan(const std::string& path) {
    ArrayScansione.Azzera(1);
    FrmScan window;
    window.Init({{path, "0"}}, owner, false, false, false, "");
    Names names;
    for (std::size_t r = 0; r < ArrayScansione.Righe(0); ++r)
      names.insert(ArrayScansione.Riga(0, r).Percorso());
    return names;
  }
  void refuse(const std::string& command) {
    server.answer([command](const std::string& line) {
      return line.starts_with(command) ? std::optional<std::string>("550 No entry.") : std::nullopt;
    });
  }

  test::PlainFtpServer server;
  void stall(const std::string& command) {
    server.answer([command](const std::string& line) {
      return line.starts_with(command) ? std::optional<std::string>(test::PlainFtpServer::Stall)
                                       : std::nullopt;
    });
  }
  test::ScriptedScreen& screen() { return program_.screen; }

  FinestraOperazione owner{"owner"};

 private:
  test::FtpProgram program_;
};

TEST_F(FrmScanFtp, A_tree_is_walked_whole_and_its_session_closed) {
  server.root().write("data/a", "1");
  server.root().write("data/sub/deep/b", "2");
  EXPECT_EQ(scan("/data/"), (Names{"/data/a", "/data/sub/deep/b"}));
  EXPECT_FALSE(owner.ErroreInCorso);
  EXPECT_FALSE(ServerConnesso(""));
}

TEST_F(FrmScanFtp, Its_window_stands_while_a_slow_server_is_connected_and_can_stop_that) {
  server.root().write("data/a", "1");
  stall("USER");
  bool shown = false;
  screen().onEvents = [&] {
    shown = screen().lastScan.visibile && screen().lastScan.titolo.find("/data/") != std::string::npos;
    AnnullaOperazioneInCorso();
  };
  EXPECT_EQ(scan("/data/"), Names{});
  EXPECT_TRUE(shown);
  EXPECT_FALSE(screen().lastScan.visibile);
  EXPECT_FALSE(owner.ProcessoAnnullato) << "such a stop leaves empty columns and no flag";
}

TEST_F(FrmScanFtp, A_stop_of_the_owner_s_progress_bar_while_a_server_is_connected_walks_nothing) {
  server.root().write("data/a", "1");
  stall("USER");
  FrmProgressBar bar(&owner, "", 100);
  screen().onEvents = [&] { bar.Annulla(true); };
  ArrayScansione.Azzera(1);
  FrmScan window;
  window.Init({{"/data/", "0"}, {"/data/", "0"}}, owner, true, true, false, "");
  EXPECT_EQ(ArrayScansione.Righe(0), 0U);
  EXPECT_TRUE(owner.ProcessoAnnullato);
  EXPECT_TRUE(window.Fermata());
  EXPECT_EQ(server.connections(), 1) << "the second path's server is not tried";
}

// The search itself takes no notice of it and would list the folder above, again and again.
TEST_F(FrmScanFtp, A_folder_that_cannot_be_entered_is_a_failure_and_never_the_one_above) {
  server.root().write("data/a", "1");
  server.root().write("data/closed/b", "2");
  server.root().write("data/open/c", "3");
  refuse("CWD /data/closed");
  for (const bool goOn : {true, false}) {
    Errors_Try_Next = goOn;
    owner.ErroreInCorso = ConnessioneFallita = false;
    const Names found = scan("/data/");
    EXPECT_TRUE(owner.ErroreInCorso) << goOn;
    EXPECT_FALSE(found.contains("/data/closed/a"));
    EXPECT_FALSE(found.contains("/data/closed/b"));
    if (goOn) {
      EXPECT_EQ(found, (Names{"/data/a", "/data/open/c"}));
    }
  }
}

}  // namespace
}  // namespace tandemize
