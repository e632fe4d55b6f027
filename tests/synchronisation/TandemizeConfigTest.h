// What tests of the synchronisation's settings share: folders to choose from, a profile, the window's engine.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "fixtures/PlainFtpServer.h"
#include "fixtures/SyncProfile.h"
#include "shell/Lingua.h"
#include "storage/FtpProgram.h"
#include "synchronisation/FrmTandemizeConfig.h"

namespace tandemize::test {

using Texts = std::vector<std::string>;

class TandemizeConfigTest : public testing::Test {
 protected:
  TandemizeConfigTest() {
    for (const char* name : {"one", "two", "three", "four"}) program.work().makeFolder(name);
    profile.paths = {path("one"), path("two")};
    Help_Suggest = 0;
  }
  // A folder of the work folder in the program's notation, with its separator.
  [[nodiscard]] std::string path(const std::string& name) { return program.program(name) + "\\"; }

  void load() {
    profile.write(program.host("Config.cfg"));
    ASSERT_TRUE(form.Carica());
  }
  void loadNew() {
    writeHostFile(program.host("Config.cfg"), ProfiloVuoto());
    ASSERT_TRUE(form.Carica());
  }
  void enter(const std::string& first, const std::string& second) {
    form.ScriviPercorso(0, first);
    form.ScriviPercorso(1, second);
  }
  void addRow(const std::string& first, const std::string& second) {
    form.ListPath.push_back({{first, second}, {"", ""}});
  }
  void answer(Risposta answer) { screen.answers.push_back(answer); }
  [[nodiscard]] std::string file() { return readHostFile(program.host("Config.cfg")); }
  [[nodiscard]] bool stored(const std::string& line) {
    return ("\n" + file()).find("\n" + line + "\r\n") != std::string::npos;
  }
  // Texts of the boxes since the last call; each of them must have the style.
  Texts boxes(int style = StileInformazione) {
    Texts texts;
    for (const ShownBox& box : screen.boxes) {
      texts.push_back(box.text);
      EXPECT_EQ(box.style, style);
    }
    screen.boxes.clear();
    return texts;
  }
  [[nodiscard]] std::string noFolder(const std::string& where) {
    return Messaggio(310) + " '" + where + "' " + Messaggio(311);
  }

  FtpProgram program;
  ScriptedScreen& screen = program.screen;
  SyncProfile profile;
  FrmTandemizeConfig form;
};

class TandemizeConfigFtp : public TandemizeConfigTest {
 protected:
  TandemizeConfigFtp() {
    server.root().makeFolder("public");
    server.root().makeFolder("other");
    program.define({"Home", server.name(), "anna", "secret", 1});
    program.define({"Work", server.name(), "bob", "", 1});
  }
  PlainFtpServer server;
};

}  // namespace tandemize::test
