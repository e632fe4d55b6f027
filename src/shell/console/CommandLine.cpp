#include "shell/console/CommandLine.h"

#include <array>
#include <utility>

namespace tandemize {

namespace {

using Command = CommandLine::Command;

constexpr std::array<std::pair<std::string_view, Command>, 7> Commands{{{"init", Command::Init},
                                                                        {"backup", Command::Backup},
                                                                        {"sync", Command::Sync},
                                                                        {"check", Command::Check},
                                                                        {"crc", Command::Crc},
                                                                        {"path", Command::Path},
                                                                        {"watch", Command::Watch}}};

constexpr std::array<std::pair<std::string_view, TipoBackup>, 3> Types{
    {{"standard", TipoBackup::Standard},
     {"full", TipoBackup::Completo},
     {"incremental", TipoBackup::Incrementale}}};

template <typename Table, typename Value>
bool lookUp(const Table& table, std::string_view word, Value& value) {
  for (const auto& [name, entry] : table)
    if (name == word) {
      value = entry;
      return true;
    }
  return false;
}

// Reads the words one by one; the first fault ends it.
class Parser {
 public:
  Parser(const std::vector<std::string>& words, std::string& fault) : words_(words), fault_(fault) {}

  std::optional<CommandLine> parse() {
    while (next_ < words_.size())
      if (!parseWord()) return std::nullopt;
    if (!commandGiven_) return failed("no command");
    const bool wantsPaths = line_.command == Command::Crc || line_.command == Command::Path;
    if (wantsPaths && line_.paths.empty()) return failed("no path given");
    return line_;
  }

 private:
  std::optional<CommandLine> failed(std::string text) {
    fault_ = std::move(text);
    return std::nullopt;
  }
  bool wrong(std::string text) {
    fault_ = std::move(text);
    return false;
  }

  bool parseWord() {
    const std::string word = words_[next_++];
    if (onlyPaths_) return addPath(word);
    if (word == "--" && commandGiven_) return onlyPaths_ = true;
    if (word.size() < 2 || word[0] != '-') return commandGiven_ ? addPath(word) : parseCommand(word);
    if (word == "--help" || word == "-h") return commandIs(Command::Help);
    if (word == "--version") return commandIs(Command::Version);
    return commandGiven_ ? parseBackupOption(word) : parseOption(word);
  }

  bool commandIs(Command command) {
    line_.command = command;
    commandGiven_ = true;
    next_ = words_.size();
    return true;
  }

  bool parseCommand(const std::string& word) {
    commandGiven_ = lookUp(Commands, word, line_.command);
    return commandGiven_ || wrong("unknown command '" + word + "'");
  }

  bool addPath(const std::string& word) {
    if (line_.command != Command::Crc && line_.command != Command::Path)
      return wrong("unexpected word '" + word + "'");
    line_.paths.push_back(word);
    return true;
  }

  bool parseOption(const std::string& word) {
    std::string value;
    if (word == "--folder") return takeValue(word, value) && (line_.folder = value, true);
    if (word == "--profile") return takeValue(word, value) && (line_.profile = value, true);
    if (word == "--answer") {
      if (!takeValue(word, value)) return false;
      line_.answerYes = value == "yes";
      return value == "yes" || value == "no" || wrong("--answer takes yes or no");
    }
    return wrong("unknown option '" + word + "'");
  }

  bool parseBackupOption(const std::string& word) {
    const bool backup = line_.command == Command::Backup;
    if (word == "--preview" && (backup || line_.command == Command::Sync)) return line_.preview = true;
    if (!backup) return wrong("unknown option '" + word + "'");
    if (word == "--subfolder") return line_.subfolder = true;
    if (word == "--ignore-unreachable") return line_.ignoreUnreachable = true;
    std::string value;
    if (word == "--type")
      return takeValue(word, value) &&
             (lookUp(Types, value, line_.type) || wrong("--type takes standard, full or incremental"));
    if (word == "--mode") return takeValue(word, value) && parseMode(value);
    return wrong("unknown option '" + word + "'");
  }

  bool parseMode(const std::string& value) {
    if (value.size() != 1 || value[0] < '0' || value[0] > '3') return wrong("--mode takes 0, 1, 2 or 3");
    line_.mode = static_cast<ModoEsecuzione>(value[0] - '0');
    return true;
  }

  bool takeValue(const std::string& word, std::string& value) {
    if (next_ >= words_.size()) return wrong(word + " needs a value");
    value = words_[next_++];
    return true;
  }

  const std::vector<std::string>& words_;
  std::string& fault_;
  std::size_t next_ = 0;
  CommandLine line_;
  bool commandGiven_ = false, onlyPaths_ = false;
};

}  // namespace

std::optional<CommandLine> parseCommandLine(const std::vector<std::string>& words, std::string& fault) {
  return Parser(words, fault).parse();
}

std::string usage() {
  return R"(Usage: tandemize-run [--folder DIR] [--profile FILE] [--answer yes|no] COMMAND

  --folder DIR    the program folder; otherwise $TANDEMIZE_HOME, or the usual place
  --profile FILE  the profile, as a host path or in the program's notation; otherwise Config.cfg
  --answer        how questions are answered; no if not given

Commands:
  init                     make the program folder from the shipped data
  backup                   run one backup
    --type standard|full|incremental
    --mode 0|1|2|3         0 quick test, 1 accurate test, 2 quick test and backup (default),
                           3 accurate test and backup
    --subfolder            copy into a subfolder named by date and time (full), or the last one (incremental)
    --ignore-unreachable   leave out paths that cannot be reached
    --preview              plan only; print source TAB destination for each transfer
  sync                     make the paths of the profile agree
    --preview              compare only; print missing, different or delete, TAB, date, size, crc or -, TAB,
                           source TAB destination for each operation
  check                    print code TAB path for each path of the profile
  crc PATH...              print the CRC-32 of files
  path HOSTPATH...         print host paths in the program's notation
  watch                    run backups or synchronisations at the times of the settings, until told to end

Exit status: 0 done, 1 stopped, 2 an error was passed over, 3 a file failed, 4 refused before it started,
64 the words are wrong.
)";
}

}  // namespace tandemize
