#include "shell/console/Commands.h"

#include <cstdio>

#include "backup/FrmBackupChoice.h"
#include "errors/ModuloLog.h"
#include "platform/appendfile.h"
#include "platform/machine.h"
#include "platform/paths.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"
#include "shell/console/CommandLine.h"
#include "shell/console/ConsoleScreen.h"
#include "shell/console/Watch.h"
#include "storage/File_System.h"
#include "storage/Unita.h"
#include "synchronisation/FrmTandemize.h"

namespace tandemize {

namespace {

enum ExitStatus : int {
  Done = 0,
  Stopped = 1,
  ErrorPassedOver = 2,
  FileFailed = 3,
  Refused = 4,
  WrongWords = 64
};

void printOut(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

bool inProgramNotation(std::string_view path) {
  return path.starts_with("\\\\") ||
         (path.size() >= 2 && path[1] == ':' && (path.size() == 2 || path[2] == '\\'));
}

std::string programPath(const std::string& path) {
  return inProgramNotation(path) ? path : platform::toProgram(path);
}

std::string_view reasonOf(MotivoOperazione reason) {
  switch (reason) {
    case MotivoOperazione::Data:
      return "date";
    case MotivoOperazione::Dimensione:
      return "size";
    case MotivoOperazione::Crc:
      return "crc";
    case MotivoOperazione::Nessuno:
      break;
  }
  return "-";
}

// One line of a preview. Names hold neither tabs nor line ends: the program's notation has other characters
// for them.
std::string operationLine(const RecordOperazione& operation) {
  const bool deleted = operation.Sorgente.DaEliminare, missing = operation.Destinazione.FileNuovo;
  std::string line = deleted ? "delete" : missing ? "missing" : "different";
  line.append("\t").append(deleted || missing ? "-" : reasonOf(operation.Destinazione.Motivo));
  line.append("\t").append(operation.Sorgente.Percorso());
  return line.append("\t").append(operation.Destinazione.Percorso()).append("\n");
}

class Console {
 public:
  explicit Console(const CommandLine& line) : line_(line), screen_(line.answerYes) {}

  int run() {
    ApplicazioneNascosta = true;
    platform::catchStopSignals();
    switch (line_.command) {
      case CommandLine::Command::Init:
        return init();
      case CommandLine::Command::Backup:
        return start(!line_.preview) ? backup() : Refused;
      case CommandLine::Command::Sync:
        return start(!line_.preview) ? sync() : Refused;
      case CommandLine::Command::Check:
        return start(false) ? check() : Refused;
      case CommandLine::Command::Crc:
        return crc();
      case CommandLine::Command::Path:
        return path();
      case CommandLine::Command::Watch:
        return start(true) ? watchSchedule() : Refused;
      case CommandLine::Command::Help:
      case CommandLine::Command::Version:
        break;  // neither comes here: they need no screen
    }
    return WrongWords;
  }

 private:
  [[nodiscard]] std::string folder() const {
    return line_.folder ? *line_.folder : platform::findProgramFolder();
  }

  int init() {
    const std::string target = folder();
    if (platform::hostFileExists(target + "/GlobalSetting.dat")) {
      screen_.print("'" + target +
                    "' is a program folder already: it has a GlobalSetting.dat. Nothing was changed.");
      return Refused;
    }
    if (const platform::ErrorCode error = platform::fillProgramFolder(target, true);
        error != platform::kNoError) {
      screen_.print("'" + target + "' cannot be made a program folder: " + platform::systemErrorText(error));
      return Refused;
    }
    return Done;
  }

  // Only a folder that nobody named by word is made when it does not exist.
  bool prepareFolder() {
    const std::string target = folder();
    if (!platform::hostFolderExists(target)) {
      if (line_.folder) {
        screen_.print("There is no program folder '" + target +
                      "'. 'tandemize-run --folder DIR init' makes one.");
        return false;
      }
      if (const platform::ErrorCode error = platform::fillProgramFolder(target, false);
          error != platform::kNoError) {
        screen_.print("The program folder '" + target +
                      "' cannot be made: " + platform::systemErrorText(error));
        return false;
      }
    }
    platform::setProgramFolder(target);
    for (const std::string& bad : platform::badDriveLines())
      screen_.print("Drives.dat: this line makes no sense: " + bad);
    return true;
  }

  // Reads settings and language, takes the folder for this process if the command will write, and looks at
  // the profile.
  bool start(bool writes) {
    if (!prepareFolder()) return false;
    const std::string home = platform::toProgram(platform::programFolderOnHost()) + "\\";
    if (writes && !lock(home)) return false;
    SoloLogInMemoria(!writes);
    if (Sub_Main(home) != EsitoAvvio::Pronto) return false;
    ApplicazioneNascosta = true;
    if (line_.profile) FileProfilo = programPath(*line_.profile);
    if (ProfiloValido(FileProfilo)) return true;
    screen_.print(InLingua("Il file non è un profilo: ", "This file is no profile: ") + FileProfilo);
    return false;
  }

  bool lock(const std::string& home) {
    int holder = 0;
    const platform::ErrorCode error = lock_.acquire(home, holder);
    if (error == platform::kNoError) return true;
    if (error == platform::kSharingViolation)
      screen_.print(
          "Another process" + (holder != 0 ? " (number " + std::to_string(holder) + ")" : std::string()) +
          " works on the program folder '" + platform::programFolderOnHost() + "'. Nothing was done.");
    else
      screen_.print("The program folder '" + platform::programFolderOnHost() +
                    "' cannot be written: " + platform::systemErrorText(error));
    return false;
  }

  // `read`: the window that was made read the profile to its end.
  bool readProfile(bool read) {
    if (read) return true;
    screen_.print(InLingua("Il profilo non può essere letto fino in fondo: ",
                           "The profile cannot be read to its end: ") +
                  FileProfilo);
    const std::size_t lines = ListaLog.size();
    for (std::size_t i = lines > 3 ? lines - 3 : 0; i < lines; ++i)
      if (!ListaLog[i].empty()) screen_.print(ListaLog[i]);
    return false;
  }

  // The first record of a run tells whether there is a log; nothing is done without one.
  bool openLog(const std::string& banner) {
    if (!line_.preview) ScriviLog(banner, Intestazione);
    if (ErroreLog() == platform::kNoError) return true;
    screen_.print(InLingua("Il file di log non può essere scritto: ", "The log file cannot be written: ") +
                  platform::systemErrorText(ErroreLog()));
    return false;
  }

  int backup() {
    if (!openLog(Messaggio(3))) return Refused;
    FrmBackupChoice dialog;
    if (!readProfile(dialog.ProfiloLetto())) return Refused;
    if (dialog.ProcessoAnnullato) return Stopped;  // the run's start would clear a stop that came this early
    dialog.cmbTipoBackup = line_.type;
    dialog.Opt = line_.mode;
    dialog.ChkCreateFolder = line_.subfolder;
    dialog.ChkIgnorePath = dialog.ChkIgnorePath || line_.ignoreUnreachable;
    if (line_.preview) return preview(dialog);
    const int status = statusOf(dialog.TastoOk_Annulla(0));
    tellFailures(dialog.Falliti, dialog.NumeroFalliti);
    return status;
  }

  int preview(FrmBackupChoice& dialog) {
    if (!dialog.Anteprima()) return dialog.ProcessoAnnullato ? Stopped : Refused;
    for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i)
      printOut(ArrayTrasferimento[i].Sorgente.Percorso() + "\t" +
               ArrayTrasferimento[i].Destinazione.Percorso() + "\n");
    return Done;
  }

  static int statusOf(EsitoOperazione esito) {
    switch (esito) {
      case EsitoOperazione::Fatto:
      case EsitoOperazione::NienteDaFare:
        return Done;
      case EsitoOperazione::Annullato:
        return Stopped;
      case EsitoOperazione::ErroreSuperato:
        return ErrorPassedOver;
      case EsitoOperazione::FileFalliti:
        return FileFailed;
      case EsitoOperazione::Rifiutato:
        break;
    }
    return Refused;
  }

  void tellFailures(const std::vector<FileFallito>& failed, std::size_t number) {
    constexpr std::size_t Shown = 20;
    if (number == 0) return;
    screen_.print(std::to_string(number) + InLingua(" file non copiati:", " files failed:"));
    for (std::size_t i = 0; i < failed.size() && i < Shown; ++i) screen_.print("  " + failed[i].percorso);
    if (number > Shown)
      screen_.print(InLingua("  ... gli altri sono nel log", "  ... the log names the others"));
  }

  int sync() {
    if (!openLog(Messaggio(4))) return Refused;
    FrmTandemize window;
    if (!readProfile(window.ProfiloLetto())) return Refused;
    if (line_.preview) return syncPreview(window);
    const int status = statusOf(window.PartenzaAutomatica());
    tellFailures(window.Falliti, window.NumeroFalliti);
    return status;
  }

  static int syncPreview(FrmTandemize& window) {
    const int status = statusOf(window.Anteprima());
    for (std::size_t i = 0; status == Done && i < ArrayTrasferimento.Numero(); ++i)
      printOut(operationLine(ArrayTrasferimento[i]));
    return status;
  }

  int check() {
    FrmBackupChoice dialog;
    if (!readProfile(dialog.ProfiloLetto())) return Refused;
    bool allUsable = true;
    const auto checkOne = [&](const std::string& target, std::uint8_t server) {
      if (target.empty()) return;
      const std::int32_t code = VerificaPercorso(target, server);
      allUsable = allUsable && code == 0;
      printOut(std::to_string(code) + "\t" + target + "\n");
    };
    for (std::size_t k = 1; k < ArrayOggetti.size(); ++k)
      if (ArrayOggetti[k].Vivo())
        checkOne(ArrayOggetti[k].BackPath,
                 IndiceServerDaDescrizione(ArrayOggetti[k].BackFtpServerDescription));
    for (std::size_t i = 0; i < Backup_Path.size(); ++i)
      checkOne(Backup_Path[i], IndiceServerDaDescrizione(i < Backup_FTP.size() ? Backup_FTP[i] : ""));
    return allUsable ? Done : Refused;
  }

  void useDrivesOnly() {
    SoloLogInMemoria(true);
    platform::setProgramFolder(folder());
  }

  int watchSchedule() {
    watch(screen_);
    return Done;
  }

  int crc() {
    useDrivesOnly();
    FinestraOperazione operation("crc");
    int status = Done;
    for (const std::string& word : line_.paths) {
      const std::string target = programPath(word);
      const RisultatoCRC result = CalcolaCRC(target, false);
      if (operation.ProcessoAnnullato) return Stopped;
      if (result.fallito) {
        std::int32_t error = 0;
        const std::string reason = ProvaAperturaFile(target, false, error);
        screen_.print(target + ": " +
                      (reason.empty() ? platform::systemErrorText(platform::kReadFault) : reason));
        status = FileFailed;
        continue;
      }
      char digits[16] = "-";
      if (result.valore) std::snprintf(digits, sizeof digits, "%08X", static_cast<unsigned>(*result.valore));
      printOut(std::string(digits) + "\t" + target + "\n");
    }
    return status;
  }

  int path() {
    useDrivesOnly();
    for (const std::string& word : line_.paths) printOut(platform::toProgram(word) + "\n");
    return Done;
  }

  const CommandLine& line_;
  ConsoleScreen screen_;
  platform::FolderLock lock_;
};

}  // namespace

int runConsole(const std::vector<std::string>& words) {
  std::string fault;
  const std::optional<CommandLine> line = parseCommandLine(words, fault);
  if (!line) {
    std::fprintf(stderr, "tandemize-run: %s\n%s", fault.c_str(), usage().c_str());
    return WrongWords;
  }
  if (line->command == CommandLine::Command::Help) {
    printOut(usage());
    return Done;
  }
  if (line->command == CommandLine::Command::Version) {
    printOut("tandemize-run " TANDEMIZE_VERSION "\n");
    return Done;
  }
  return Console(*line).run();
}

}  // namespace tandemize
