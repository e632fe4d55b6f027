// The words of the console program.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "backup/FrmBackupChoice.h"

namespace tandemize {

struct CommandLine {
  enum class Command { Help, Version, Init, Backup, Sync, Check, Crc, Path, Watch };

  Command command = Command::Help;
  std::optional<std::string> folder;   // host path
  std::optional<std::string> profile;  // host path, or a path in the program's notation
  bool answerYes = false;

  // backup, sync
  TipoBackup type = TipoBackup::Standard;
  ModoEsecuzione mode = ModoEsecuzione::TestVeloceEBackup;
  bool subfolder = false, ignoreUnreachable = false, preview = false;

  std::vector<std::string> paths;  // crc, path
};

// Empty if the words are wrong; `fault` then says what is.
[[nodiscard]] std::optional<CommandLine> parseCommandLine(const std::vector<std::string>& words,
                                                          std::string& fault);

[[nodiscard]] std::string usage();

}  // namespace tandemize
