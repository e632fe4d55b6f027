// The settings file and the model of the window that edits it.
//
// Loading the window is what reads `GlobalSetting.dat`: into the variables of Impostazioni.h and into the
// controls of this model, which the window on a screen shows. Compare mode tells whether the controls differ
// from the file. The form of the file is told in docs/formats-settings.md.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/errors.h"
#include "shell/ControlliGlobalSetting.h"
#include "shell/Impostazioni.h"

namespace tandemize {

class FinestraOperazione;
class LettoreItem;
struct ChiaveGlobale;
struct LetturaGlobale;

inline constexpr std::string_view NomeFileGlobale = "GlobalSetting.dat";

// Reads `GlobalSetting.dat` and the language table, as loading and unloading the window does. False if the
// file could not be read or holds a value that does not convert; `errore` then gets one clear message naming
// file, line and key. Variables that were not reached, and the one that does not convert, keep their values.
// False with `errore` empty if the language table could not be read: the screen was told, and told to end the
// program.
[[nodiscard]] bool CaricaImpostazioni(std::string& errore);

// What the window has to do after a confirm button.
enum class EsitoConferma { RestaAperta, VaiAlTabFtp, Chiudi };

class FrmGlobalSetting : public ControlliGlobalSetting {
 public:
  // --- the file ---

  // Loads the window: the file, the words of the two combos, the mail server, the list of servers, the rules
  // of the timer options. False as OpenFileGlobal.
  [[nodiscard]] bool Carica();

  // Reads the file (a program path). `Cambiato`: its content differs from the controls, the servers or the
  // timer rows. `FermaAlPrimo` compares: the reading stops at the first difference, and the controls and
  // lists stay as they were from there on. `SoloVariabili` leaves the controls alone. While a timed run is
  // going on TimerAdvList stays as it is. False after a failure that `Errore` names; the language table was
  // loaded all the same.
  [[nodiscard]] bool OpenFileGlobal(const std::string& Percorso, bool& Cambiato, bool FermaAlPrimo,
                                    bool SoloVariabili);
  [[nodiscard]] const std::string& Errore() const { return errore_; }

  // Writes the controls, the servers and the timer rows as a whole new file, after the start with the PC has
  // been adapted to the timer. Gives the system's number; after a failure the old file stands.
  [[nodiscard]] platform::ErrorCode SaveFileGlobal(const std::string& Percorso);

  // Index of the option that is on in the array of that name, in any case; 255 if none is, or if there is no
  // such array.
  void Return_Opt_Value(std::string_view NomeControllo, std::uint8_t& Valore) const;

  // True if the controls differ from the file, for the question when the window is closed. Whoever drops the
  // changes then calls CaricaImpostazioni, as the server fields write through. What somebody else has changed
  // in the file meanwhile, as a timed run moves its date, is no difference: the controls take it over first.
  [[nodiscard]] bool Modificato();

  // The buttons `cmd`: OK (0) checks, saves and reads back, with a box for what went wrong; Cancel (1) just
  // closes, after the same check of the servers with its own box.
  [[nodiscard]] EsitoConferma Conferma(int membro);

  // Saves and reads back, with a box for what went wrong; true if both went well. After a failed save the old
  // file stands. Values that the file could not be read with, such as one that holds the name of a key, are
  // refused before anything is written. As Modificato, keeps what was changed in the file meanwhile. The
  // words of the intervals follow the language that was saved.
  [[nodiscard]] bool SalvaERileggi();

  // Fills an empty mail server with the system's own.
  void ParametriPostaPredefiniti();

  // --- option rules ---

  void ScegliTimer(int membro);   // a click on OptTimer
  void ScegliBuffer(int membro);  // a click on OptAdvBuffer
  // A click on OptTipoTimer. `ScegliFile` asks for a profile when advanced mode finds none entered; it gives
  // an empty text if the user gave up.
  void ScegliTipoTimer(int membro, const std::function<std::string()>& ScegliFile);

  // Leaving txtTimerStart and TxtTimerStartDate. False after a box if the text is no time "hh.mm", or no date
  // in the order of FormatoData: the focus then goes back.
  [[nodiscard]] bool LasciaOraTimer() const;
  [[nodiscard]] bool LasciaDataTimer() const;

  // --- advanced timers: the fields, `cmdList` 0 to 2, a click on a row ---

  void ImpostaProfilo(std::string_view percorso);  // the name is shown, the path kept
  void PulisciCampiTimer();
  void AggiungiTimer();
  void RimuoviTimer();
  void SostituisciTimer();
  void SelezionaTimer(int riga);

  // --- FTP servers ---

  void RiempiListFtp();
  void SelezionaServerFtp(int riga);  // -1 for none
  void ScriviCampiFtp();              // after each change of a field: into the selected record and row
  void NuovoServerFtp();
  void EliminaServerSelezionato();  // asks first
  // Connects to the selected server: a box tells that it went well, FineOperazione what went wrong, and the
  // session is closed either way. `finestra` is the operation that a stop ends. `collegato` is called when
  // the connecting has ended, before the boxes of this function. While another operation runs, to which the
  // session belongs, a box says so and nothing else happens. `runDelDialogo`: the loaded FrmBackupChoice
  // runs.
  void ProvaServerFtp(FinestraOperazione& finestra, const std::function<void()>& collegato,
                      bool runDelDialogo = false);
  // False if a selected server lacks a field, or if the newest description is there already (with its box).
  void VerificaDatiCorrettiFtp(bool& Esito) const;
  // Tells that no server has been entered. `Esito` is true in every case.
  void ControllaInserimentoDatiFtp(bool& Esito) const;
  // Removes a record; those behind it move down. The last element stays the spare one.
  static void EliminaServerFtp(std::vector<ServerFtp>& Array, std::size_t Indice);

 private:
  enum class EsitoRiga { Continua, Differenza, Errore };

  [[nodiscard]] bool LeggiFile(LetturaGlobale& lettura);
  [[nodiscard]] bool LeggiTesto(std::string_view testo, LetturaGlobale& lettura);
  [[nodiscard]] EsitoRiga LeggiItem(const std::string& item, LettoreItem& lettore, LetturaGlobale& lettura);
  [[nodiscard]] EsitoRiga LeggiRiga(std::string_view Riga, const ChiaveGlobale& chiave,
                                    LetturaGlobale& lettura);
  [[nodiscard]] EsitoRiga LeggiControllo(std::string_view valore, const ChiaveGlobale& chiave,
                                         LetturaGlobale& lettura);
  [[nodiscard]] EsitoRiga LeggiRigaFtp(std::string_view Riga, std::string_view valore,
                                       const ChiaveGlobale& chiave, LetturaGlobale& lettura);
  [[nodiscard]] EsitoRiga LeggiTimerAvanzato(std::string_view item, LettoreItem& lettore,
                                             LetturaGlobale& lettura);
  void FineLettura(LetturaGlobale& lettura);

  [[nodiscard]] std::string TestoControllo(const ChiaveGlobale& chiave) const;
  [[nodiscard]] std::string ComponiFile();
  [[nodiscard]] static std::string MotivoIllegibile(std::string_view testo);
  void AdottaDalFile();
  void AdottaTimer(const std::vector<RigaTimer>& nelFile);
  void RiempiIntervalli();
  void ScriviTimerAvanzati(std::string& testo) const;

  void ApplicaTimer();
  void ApplicaTipoTimer();
  void ApplicaBuffer();
  [[nodiscard]] bool RigaDaiCampi(RigaTimer& riga) const;
  void FineModificaTimer();
  void MostraCampiFtp();

  std::string errore_;
  ControlliGlobalSetting letti_;  // the controls as the last reading of the file left them
  bool timerCambiato_ = false;    // the choice of OptTimer was changed in this window
};

// --- checks of the fields; pure rules without a window ---

[[nodiscard]] int SoloCifreEPunto(int tasto);          // as SoloCifre, and the point
[[nodiscard]] bool OraValida(std::string_view testo);  // "hh.mm"

}  // namespace tandemize
