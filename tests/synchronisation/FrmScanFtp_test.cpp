// The walk of a path on a server.
#include <gtest/gtest.h>

#include <set>

#include "fixtures/PlainFtpServer.h"
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
