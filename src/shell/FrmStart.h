// The automatic side of the main window: the scheduler's tick, the runs that it starts, and the load-time
// look at the dates. The window on a screen drives it by its timer, the console's `watch` by a loop.
//
// What is due is decided by texts of the settings: a start's time "hh.mm" must equal the clock's, and its
// date today's. There is no tolerance, and a start that was missed is not made up. Two advanced entries of
// the same minute share one: the first one's run lasts beyond it. Runs start only while the program is
// hidden.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "errors/EsitoOperazione.h"

namespace tandemize {

// State of a timer; whoever shows the window lets it tick.
struct Temporizzatore {
  bool Enabled;
  unsigned Interval;  // milliseconds
};

class FrmStart {
 public:
  FrmStart();
  ~FrmStart();
  FrmStart(const FrmStart&) = delete;
  FrmStart& operator=(const FrmStart&) = delete;

  // --- what the window's load contributes

  // Moves past dates forward, reads the settings anew if one was moved, and tells of it, or of what is going
  // to run if the program starts with the PC.
  void Carica();

  // --- timers

  Temporizzatore TimerAutoPartenza{true, 500};
  Temporizzatore TimerAnimazione{false, 400};  // flashes the tray icon while a timed run goes on

  // Hooks, all of which may be empty. `TimerCambiati`: the state of a timer has changed. `AggiornaTray`: the
  // icon is to be the window's own again. `InChiusura`: true when the program is about to end, so that
  // nothing more is begun or waited for. `AltraOperazione`: an operation goes on that no form of its own
  // shows, such as a dialog's run between two of its forms; a run that is due meanwhile is refused.
  std::function<void()> TimerCambiati, AggiornaTray;
  std::function<bool()> InChiusura, AltraOperazione;

  // Runs one job, 1 a synchronisation, 2 a backup, with FileProfilo. `EseguiLavoro` unless a window puts its
  // own in its place, such as one that also shows it.
  std::function<EsitoOperazione(std::uint8_t modo)> Lavoro;

  // The tick. An entry's profile is FileProfilo during its run alone; the tick itself leaves it as it is.
  void TimerAutoPartenza_Timer();

  // --- steps, public for tests of their rules

  // Runs one entry if it is due, moves it on whatever became of the run, and waits until its minute is over.
  // `Indice` is its number in TimerAdvList, 0 for the standard timer. A date or a time that cannot be
  // understood is told once, and the entry does not run. True if it ran.
  bool PartenzaAutomatica(std::string& Ora, std::string& Data, const std::string& Numero,
                          const std::string& Tipo, std::int16_t Indice);

  // Moves the entry's lines of the settings file on (see DatePartenza.h) and `Ora` and `Data` with them. The
  // file is replaced as a whole; if it cannot be, that is reported and the old one stands; if only the
  // writing failed, `Ora` and `Data` move on all the same.
  void AggiornaProssimaPartenza(const std::string& Tipo, const std::string& Numero, std::string& Ora,
                                std::string& Data, std::int16_t Indice);

  // Moves dates before today forward in the settings file. `Cambiato`: the file has changed; otherwise it is
  // not written.
  void AggiornaDateScadute(bool& Cambiato);

  // The job as such. Rifiutato if an operation is going on already, or the profile is none; both are
  // reported.
  EsitoOperazione EseguiLavoro(std::uint8_t modo);

 private:
  [[nodiscard]] bool DaFermare() const { return InChiusura && InChiusura(); }
  [[nodiscard]] bool InPartenza(const std::string& Ora, const std::string& Data, std::int16_t Indice);
  void SciogliGuardia();
  void EsaminaTimerAvanzati();
  void Imposta(Temporizzatore& timer, Temporizzatore stato);
  void Segnala(std::int16_t indice, const std::string& testo);

  std::map<std::int16_t, std::string> segnalati_;  // the fault of each entry that was told last
};

// "Timer_Start_Mode" names a job: 1 or 2.
[[nodiscard]] bool PartenzaImpostata();

}  // namespace tandemize
