#include "shell/console/Watch.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/machine.h"
#include "shell/DataIntervallo.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/FrmStart.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"
#include "shell/console/ConsoleScreen.h"

namespace tandemize {

namespace {

constexpr unsigned LongestSleep = 500;  // milliseconds; a signal between two looks at it waits no longer

// The entries in use, the standard timer as one without a profile.
std::vector<TimerAvanzato> entriesInUse() {
  if (Timer_Start_Type == 1) return {TimerAdvList.begin() + 1, TimerAdvList.end()};
  TimerAvanzato standard;
  standard.Date = Timer_Start_Date;
  standard.Time = Timer_Start_Time;
  standard.IntervalNumber = static_cast<std::int16_t>(NumeroDiIntervallo(Timer_Interval_Number));
  standard.IntervalKind = Timer_Interval_Type;
  return {standard};
}

std::string jobName() {
  if (Timer_Start_Mode == 1) return InLingua("sincronizzazione", "synchronisation");
  switch (Timer_Backup_Type) {
    case 1:
      return InLingua("backup completo", "full backup");
    case 2:
      return InLingua("backup incrementale", "incremental backup");
    default:
      return InLingua("backup standard", "standard backup");
  }
}

// What keeps an entry from starting, or from starting again.
std::string remarkOn(const TimerAvanzato& entry) {
  const auto date = DataDaTesto(entry.Date);
  if (!date || !MinutiDaOra(entry.Time))
    return InLingua(" (data o ora non valida: non parte)", " (date or time not valid: does not start)");
  const DataCivile today = DataOdierna();
  if (*date < today || (*date == today && entry.Time < OraAttuale()))
    return InLingua(" (già passata: non viene recuperata)", " (has passed: is not made up for)");
  if (!UnitaDiParola(entry.IntervalKind) || entry.IntervalNumber < 1)
    return InLingua(" (una sola volta: l'intervallo non è valido)",
                    " (once only: the interval is not valid)");
  return {};
}

std::string lineOf(const TimerAvanzato& entry) {
  std::string line = "\r  " + entry.Date + " " + entry.Time + "  " + jobName();
  line += InLingua(", ogni ", ", every ") + std::to_string(entry.IntervalNumber) + " " + entry.IntervalKind;
  if (!entry.Profile2.empty()) line += ", " + entry.Profile2;
  return line + remarkOn(entry);
}

std::string scheduleText() {
  const std::vector<TimerAvanzato> entries = entriesInUse();
  if (!PartenzaImpostata() || entries.empty())
    return InLingua(
        "Nessuna partenza automatica è impostata. Il programma attende che le impostazioni cambino.",
        "Nothing is scheduled. The program waits for the settings to change.");
  std::string text = InLingua("In attesa (date nel formato ", "Waiting for (dates as ") + FormatoData + "):";
  for (const TimerAvanzato& entry : entries) text += lineOf(entry);
  if (PartenzaAutomaticaAttiva)
    text += InLingua("\r  Nulla parte prima che l'ora dell'ultima partenza sia passata.",
                     "\r  Nothing starts before the time of the last start has passed.");
  return text;
}

std::string outcomeText(EsitoOperazione outcome) {
  switch (outcome) {
    case EsitoOperazione::Fatto:
      return InLingua("completata.", "done.");
    case EsitoOperazione::NienteDaFare:
      return InLingua("niente da fare.", "nothing to do.");
    case EsitoOperazione::Annullato:
      return InLingua("interrotta.", "stopped.");
    case EsitoOperazione::ErroreSuperato:
      return InLingua("completata con errori, vedere il log.", "done with errors, see the log.");
    case EsitoOperazione::FileFalliti:
      return InLingua("alcuni file non sono riusciti, vedere il log.", "files failed, see the log.");
    case EsitoOperazione::Rifiutato:
      break;
  }
  return InLingua("non eseguita, vedere il log.", "refused, see the log.");
}

// By what a change of the settings file shows. A writer may need several steps, all within one tick of the
// host's file clock, so the size counts as well.
struct FileState {
  platform::FileTime lastWrite;
  std::uint64_t size = 0;
  friend bool operator==(const FileState&, const FileState&) = default;
};

FileState settingsState() {
  platform::FileStatus status;
  if (platform::query(PercorsoApplicazione + std::string(NomeFileGlobale), status) != platform::kNoError)
    return {};
  return {status.lastWrite, status.size};
}

class Watch {
 public:
  explicit Watch(ConsoleScreen& screen) : screen_(screen) {
    form_.InChiusura = [this] { return ended(); };
    form_.Lavoro = [this](std::uint8_t mode) { return job(mode); };
  }

  void run() {
    form_.Carica();
    settings_ = settingsState();
    while (!ended()) {
      tellSchedule();
      if (form_.TimerAutoPartenza.Enabled) form_.TimerAutoPartenza_Timer();
      readChangedSettings();
      tellSchedule();
      waitForTick();
    }
    screen_.print(InLingua("Fine dell'attesa.", "The watch has ended."));
  }

 private:
  // A run takes the signal for its own stop, so the screen is asked as well.
  [[nodiscard]] bool ended() const { return platform::stopRequested() || screen_.stopSignalled(); }

  EsitoOperazione job(std::uint8_t mode) {
    const EsitoOperazione outcome = form_.EseguiLavoro(mode);
    screen_.print(InLingua("Partenza automatica: ", "Automatic run: ") + outcomeText(outcome));
    return outcome;
  }

  void tellSchedule() {
    const std::string text = scheduleText();
    if (text == told_) return;
    told_ = text;
    screen_.print(text);
  }

  // The dates that a run has moved on are in memory already, so reading them once more changes nothing.
  void readChangedSettings() {
    if (PartenzaAutomaticaAttiva) return;
    const FileState state = settingsState();
    if (state == settings_) return;
    settings_ = state;
    std::string error;
    if (!CaricaImpostazioni(error) && !error.empty()) screen_.print(error);
  }

  // Until the next tick; the start of a minute is one whatever the interval, so that none goes by unseen.
  void waitForTick() const {
    const auto second = static_cast<unsigned>(platform::localTime(platform::now()).second);
    const unsigned span = std::min(form_.TimerAutoPartenza.Interval, (60 - second) * 1000);
    const std::uint64_t start = platform::monotonicMilliseconds();
    for (std::uint64_t passed = 0; passed < span && !ended();
         passed = platform::monotonicMilliseconds() - start)
      platform::sleepMilliseconds(
          static_cast<unsigned>(std::min<std::uint64_t>(LongestSleep, span - passed)));
  }

  ConsoleScreen& screen_;
  FrmStart form_;
  FileState settings_;
  std::string told_;
};

}  // namespace

void watch(ConsoleScreen& screen) {
  Watch(screen).run();
}

}  // namespace tandemize
