// What tests of guarded operations share: retry settings without pauses, a look into the log, and a process
// without rights.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

#include "errors/ModuloLog.h"
#include "fixtures/ProgramFolder.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"

namespace tandemize::test {

// A started program whose failures are final at once, with no pause.
class ProgramWithoutRetries : public ProgramFolder {
 public:
  ProgramWithoutRetries() { Errors_Correction = 0; }
};

inline void retryWithoutPause(std::uint8_t attempts) {
  Errors_Correction = 1;
  Errors_Repeat = attempts;
  Errors_Seconds = 0;
}

inline int countInLog(std::string_view text) {
  int count = 0;
  for (const std::string& line : ListaLog) count += line.find(text) != std::string::npos ? 1 : 0;
  return count;
}

inline std::string retryLine(int attempt, std::string_view routine, int number) {
  return "Tetativo N° " + std::to_string(attempt) + " relativo alla routine '" + std::string(routine) +
         "' errore numero " + std::to_string(number);
}

// Runs `action` once, at the first event after a failure has been logged: the moment at which a user mends
// what was wrong.
inline void mendAfterFailure(ScriptedScreen& screen, std::function<void()> action) {
  screen.onEvents = [action = std::move(action), done = false]() mutable {
    if (done || countInLog("Tetativo") == 0) return;
    done = true;
    action();
  };
}

inline int countRecoveryNotices(const ScriptedScreen& screen) {
  int count = 0;
  for (const Avviso& notice : screen.balloons) count += notice.testo == Messaggio(65) ? 1 : 0;
  return count;
}

// What `question` answers in a process that has no more rights than any user; the test's own may be the
// superuser, whom no permission stops.
inline bool asAnyUser(const ProgramFolder& program, const std::function<bool()>& question) {
  if (::geteuid() != 0) return question();
  for (std::string folder : {program.host(""), const_cast<ProgramFolder&>(program).work().host()})
    std::filesystem::permissions(folder, std::filesystem::perms::all);
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr unsigned nobody = 65534;
    const bool lowered = ::setgid(nobody) == 0 && ::setuid(nobody) == 0;
    ::_exit(lowered && question() ? 0 : 1);
  }
  int status = -1;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace tandemize::test
