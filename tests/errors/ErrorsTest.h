// What tests of the error paths share: retries without pauses, a fresh list of log lines, and questions to
// it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "errors/ModuloLog.h"
#include "fixtures/ProgramFolder.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize::test {

using Lines = std::vector<std::string>;

struct ErrorsTest : testing::Test {
  ErrorsTest() {
    Errors_Correction = 1;
    Errors_Repeat = 3;
    Errors_Seconds = 0;
    Errors_Alert_Mode = 1;
    Email_Action = 0;
    Log_Show_Window = 0;
    CreaListaLog();
  }

  // The log's lines without their dates; what an error block is made of.
  static bool logged(std::string_view text) {
    return std::ranges::any_of(ListaLog, [text](const std::string& line) { return line.ends_with(text); });
  }
  static int count(std::string_view text) {
    return static_cast<int>(std::ranges::count_if(
        ListaLog, [text](const std::string& line) { return line.find(text) != std::string::npos; }));
  }

  ProgramFolder program;
  ScriptedScreen& screen = program.screen;
};

}  // namespace tandemize::test
