// A scheduler over a simulated clock: the settings of a test, and the runs that it starts.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "fixtures/ProgramFolder.h"
#include "fixtures/SimulatedTime.h"
#include "platform/paths.h"
#include "shell/DataIntervallo.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/FrmStart.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"
#include "storage/Percorsi.h"

namespace tandemize::test {

// An entry as its lines hold it: "1Timer_Adv_Date = ..." and so on.
struct AdvancedEntry {
  std::string date, time, interval, profile = "C:\\p\\Night.cfg";
};

class Scheduler {
 public:
  explicit Scheduler(const platform::CivilTime& start, const std::string& zone = "UTC") : time(start, zone) {
    folder.setting("Language", "1");
    FormatoData = "dd/mm/yyyy";
    ApplicazioneNascosta = true;
    form.Lavoro = [this](std::uint8_t mode) { return run(mode); };
  }

  void standard(const std::string& date, const std::string& hour, const std::string& number,
                const std::string& word, const std::string& mode = "2") {
    folder.setting("Timer_Start_Mode", mode);
    folder.setting("Timer_Start_Type", "0");
    folder.setting("Timer_Start_Date", date);
    folder.setting("Timer_Start_Time", hour);
    folder.setting("Timer_Interval_Number", number);
    folder.setting("Timer_Interval_Type", word);
  }
  void advanced(const std::vector<AdvancedEntry>& entries, const std::string& mode = "2") {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const std::string start = std::to_string(i + 1) + "Timer_Adv_";
      std::string lines = start + "Profile1 = " + NomeFinale(entries[i].profile) + "\r\n";
      lines += start + "Profile2 = " + entries[i].profile + "\r\n" + start + "Date = " + entries[i].date +
               "\r\n" + start + "Time = " + entries[i].time + "\r\n" + start +
               "Interval = " + entries[i].interval + "\r\n";
      folder.home().write("GlobalSetting.dat", settings() + lines);
    }
    folder.setting("Timer_Start_Mode", mode);
    folder.setting("Timer_Start_Type", "1");
  }

  [[nodiscard]] std::string settings() { return folder.home().read("GlobalSetting.dat"); }
  [[nodiscard]] std::string value(const std::string& key) {
    const std::string text = settings(), start = "\n" + key + " = ";
    const std::size_t at = text.find(start);
    if (at == std::string::npos) return "<none>";
    return text.substr(at + start.size(), text.find('\r', at) - at - start.size());
  }

  // One tick at a local time.
  void tickAt(const platform::CivilTime& local) {
    time.set(local);
    form.TimerAutoPartenza_Timer();
  }

  // Lets the time pass and the timer tick, three times a minute near a start and rarely far from one.
  void passUntil(const platform::CivilTime& local) {
    const std::int64_t end = platform::utcFromLocal(local).value();
    while (platform::now() < end) {
      if (form.TimerAutoPartenza.Enabled) form.TimerAutoPartenza_Timer();
      test::SimulatedTime::pass(step() * 1000);
    }
  }

  static platform::CivilTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return {year, month, day, hour, minute, second};
  }

  ProgramFolder folder;
  SimulatedTime time;
  FrmStart form;
  std::vector<std::string> runs;  // "2026-11-22 13.30" and, for an advanced entry, its profile
  std::uint64_t runLasts = 0;     // milliseconds
  std::function<void()> duringRun;
  EsitoOperazione outcome = EsitoOperazione::Fatto;

 private:
  EsitoOperazione run(std::uint8_t mode) {
    std::string line = FormattaDataOra(platform::now(), "yyyy-MM-dd hh.nn");
    if (Timer_Start_Type == 1) line += " " + NomeFinale(FileProfilo);
    runs.push_back(line + (mode == 1 ? " sync" : ""));
    if (duringRun) duringRun();
    SimulatedTime::pass(runLasts);
    return outcome;
  }

  [[nodiscard]] std::uint64_t step() const {
    std::vector<std::string> times{Timer_Start_Time};
    for (std::size_t i = 1; i < TimerAdvList.size(); ++i) times.push_back(TimerAdvList[i].Time);
    int nearest = 24 * 60;
    for (const std::string& start : times) {
      if (!MinutiDaOra(start)) continue;
      const int ahead = (*MinutiDaOra(start) - *MinutiDaOra(OraAttuale()) + 24 * 60) % (24 * 60);
      nearest = std::min({nearest, ahead, 24 * 60 - ahead});
    }
    // A change of summer time moves the clock by an hour at most.
    return nearest <= 2 ? 20 : nearest > 75 ? 600 : 60;
  }
};

}  // namespace tandemize::test
