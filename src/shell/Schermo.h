// The screen: the one way by which the engines ask the user, show what goes on, and let events run.
//
// One implementation draws Qt windows, one writes to a console, one is scripted for tests. The engines hold
// every rule; a screen only shows and answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tandemize {

enum class Risposta { Ok, Sì, No, Annulla };

// Styles of message boxes.
inline constexpr int StileSemplice = 0;
inline constexpr int StileCritico = 16;
inline constexpr int StileSìNoAnnulla = 35;  // question icon
inline constexpr int StileSìNo = 36;         // question icon
inline constexpr int StileInformazione = 64;
inline constexpr int StileSìNoInformazione = 68;

enum class Puntatore { Normale, Clessidra, FrecciaEClessidra };

// A notice that closes by itself after `secondi`, or stays until it is closed when that is 0.
struct Avviso {
  std::string nomeForm, testo, titolo;
  int icona = 0;
  int secondi = 0;
};

// What a scan shows (FrmScan).
struct StatoScansione {
  bool visibile = false;
  std::string titolo;    // "scan of path 1 'C:\data\'"
  std::string cartella;  // the folder at hand
  bool backup = false;   // for the planner of a backup, whose own window stands already
};

// What long internal work shows (FrmProgressBar).
struct StatoAvanzamento {
  bool visibile = false;
  std::string testo;
  double massimo = 100, valore = 0;
  bool annullabile = true;  // there is something that its button can stop
};

// What a transfer shows (FrmFileTransfer). Texts are ready to be shown, numbers are for bars and for a
// console's own form.
struct StatoTrasferimento {
  bool visibile = false;
  std::string titolo, sorgente, destinazione;  // LblFileSource, lblFileDestination
  std::string tempo, velocità, trasferiti;     // remaining time, speed, amounts
  double byteTotali = 0, byteCopiati = 0;
  double byteAlSecondo = 0;      // 0 until it is known
  double secondiRimanenti = -1;  // below 0 until it is known
  std::int32_t fileTotali = 0, fileCopiati = 0;
  double massimoFile = 100, valoreFile = 0;  // the bar of the file at hand
};

// Where the comparison stands for one path: the position in its column, the files that are to be added to the
// path because they are missing there, and the files that are to be replaced in it.
struct ContatoriUnita {
  std::int32_t Posizione = 0, Mancanti = 0, Sostituire = 0;
  friend bool operator==(const ContatoriUnita&, const ContatoriUnita&) = default;
};

// A row of the list of one path (ListUnità): what will change there. Texts are ready to be shown.
struct RigaUnita {
  std::string chiave;  // full path of the file that will change; a list has one row a key
  std::string nome, data, dimensione, attributi, stato;
  int etichettaStato = 0;  // tag of the status: 1 for a file that will be replaced, 0 for all others
  // Where the icon comes from: the file itself (the first of the two that has one), or the one shared by all
  // files of the extension, or none.
  enum class Icona { Nessuna, DelTipo, DelFile } icona = Icona::Nessuna;
  std::string estensione;  // upper-cased, with its dot
  std::string sorgente, destinazione;
  friend bool operator==(const RigaUnita&, const RigaUnita&) = default;
};

class Schermo {
 public:
  Schermo() = default;
  virtual ~Schermo() = default;
  Schermo(const Schermo&) = delete;
  Schermo& operator=(const Schermo&) = delete;

  // A message box of one of the styles above; waits for the answer. Styles without buttons of choice give Ok.
  virtual Risposta MsgBox(std::string_view testo, int stile, std::string_view titolo) = 0;

  // Lets clicks, timers and stop requests in. To be called often: it returns at once when nothing waits.
  virtual void DoEvents() = 0;

  // A notice; the rules on when one is shown are MostraBalloon's. `BalloonAperto` tells whether one is still
  // up.
  virtual void ApriBalloon(const Avviso& avviso) = 0;
  virtual void ChiudiBalloon() = 0;
  [[nodiscard]] virtual bool BalloonAperto() const = 0;

  virtual void MousePointer(Puntatore) {}
  virtual void Mostra(const StatoScansione&) {}
  virtual void Mostra(const StatoAvanzamento&) {}
  virtual void Mostra(const StatoTrasferimento&) {}

  // The lists of the synchronisation window. A screen that shows none is asked for nothing else of these.
  [[nodiscard]] virtual bool MostraUnita() const { return false; }
  virtual void AggiungiRigaUnita(std::size_t, const RigaUnita&) {}
  virtual void SvuotaRigheUnita() {}                         // the rows of all lists, and their icons
  virtual void RifaiUnita() {}                               // panels made anew for the profile's paths
  virtual void AggiornaInfo(std::size_t) {}                  // status row of a path, from its drive
  virtual void AggiornaInfo(std::size_t, ContatoriUnita) {}  // only the counters of the status row
  virtual void IntestazioneUnita(std::size_t, std::string_view) {
  }                                       // header of a path's panel; empty: its path
  virtual void MostraRigheUnita(bool) {}  // lists are hidden while they fill

  // FrmBackupErrorLog, shown modally: the lines of `testo` (parted by CR) under a title.
  virtual void MostraElencoErrori(std::string_view testo, std::string_view titolo) = 0;

  // FrmLogView. `RicaricaLog` closes it if it is open and shows it afresh.
  [[nodiscard]] virtual bool LogCaricato() const { return false; }
  virtual void MostraLog() {}
  virtual void RicaricaLog() {}

  // The window that the diagram is drawn in (FrmBackupConfigure).
  virtual void ApriDiagramma() {}

  // Ends the process at once: a required file is missing, a language file is missing, an error with no way
  // on. A screen for tests may return; callers then give up what they were doing.
  virtual void FineProgramma(int stato) = 0;
};

// The screen in use. Set once by the program, or by a test; never null: without one, a silent screen answers
// "no".
[[nodiscard]] Schermo& schermo();
void UsaSchermo(Schermo* nuovo);

// Message box with the application's title.
Risposta MsgBox(std::string_view testo, int stile);
void DoEvents();

}  // namespace tandemize
