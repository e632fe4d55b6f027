// The one path by which a failure becomes something that the user or the log sees.
//
// Nothing here throws: a failure is a return value plus flags, and the caller decides how to go on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tandemize {

// What every long-running window carries. Windows stack: the last one made is the active one.
class FinestraOperazione {
 public:
  explicit FinestraOperazione(std::string nome);
  virtual ~FinestraOperazione();
  FinestraOperazione(const FinestraOperazione&) = delete;
  FinestraOperazione& operator=(const FinestraOperazione&) = delete;

  // The user's stop: the window's cancel button, its closing, or a stop signal. `confermato` tells that no
  // question is to be asked. The default asks through ChiediChiusuraForm and sets `ProcessoAnnullato`.
  // While its question is up a second one is not asked.
  virtual void Annulla(bool confermato);

  // False for a window that is loaded but has nothing to stop: a stop signal is for another one.
  [[nodiscard]] virtual bool InEsecuzione() const { return true; }

  [[nodiscard]] const std::string& Nome() const { return nome_; }

  bool ErroreInCorso = false;             // an error has occurred in this operation
  std::string ErroreInCorso_Descrizione;  // its text for the end-of-operation notice, optional
  bool ProcessoAnnullato = false;         // the user stopped this operation
  bool Visible = true;

 private:
  std::string nome_;
  bool chiede_ = false;  // the question whether to stop is up
};

extern bool AnnullamentoRichiesto;  // the user confirmed a stop; consumed by the retry routines
extern bool
    ConnessioneFallita;  // an FTP connection failed or was lost; FineOperazione turns it into ErroreInCorso

// Name of the active window, "FrmStart" when no operation window is loaded.
[[nodiscard]] std::string FormAttivo();
[[nodiscard]] bool FormCaricato(std::string_view nome);

// Whether the user has stopped the operation of one of the windows.
[[nodiscard]] bool OperazioneAnnullata();
// The stop button of the last window of that name, or its closing: asks. True if the operation is stopped;
// false if the user lets it go on, or no such window is loaded.
bool AnnullaFinestra(std::string_view nome);
// Stops the active operation without a question, as a stop signal does: that of the last window made which
// has something to stop. False if none has.
bool AnnullaOperazioneInCorso();

// After a failed call: logs, waits or gives up by the settings, and says whether to try again. `Tentativo` is
// the caller's count for this operation, starting at 0. `Numero` is the run-time's error number, or the
// system's.
[[nodiscard]] bool ErroreRipetibileVb(std::uint8_t& Tentativo, std::int32_t Numero, std::string_view Routine,
                                      std::string_view Dettaglio, std::int16_t Riga);
[[nodiscard]] bool ErroreRipetibileApi(std::uint8_t& Tentativo, std::int32_t Numero, std::string_view Routine,
                                       std::string_view Dettaglio);

// The final report. `Tipo`: 0 a system number, 1 a run-time number, any other no composed text. `Modo`: 0 and
// 2 log, 1 alert, 3 both. `TestoProprio`, if not empty, replaces the composed text.
void ErroreFatale(std::int32_t Numero, std::string_view Routine, std::int32_t Tipo, std::int32_t Modo,
                  std::string_view Dettaglio, std::string_view TestoProprio, std::int16_t Riga);

// The end of every operation: re-reads the settings, tells what went wrong, closes the FTP session after a
// fault, clears the flags. True if nothing went wrong and nobody stopped it.
bool FineOperazione(bool& ErroreInCorso, std::string_view Descrizione, bool& ProcessoAnnullato);

// For a window that closes while something runs. `Form` may be null. `Cancel` is set to 1 when the window is
// to stay. `confermato` takes the stop as agreed and asks nothing.
void ChiediChiusuraForm(std::int16_t& Cancel, FinestraOperazione* Form, bool& OperazioneInCorso, bool Errore,
                        bool& ModificheDaSalvare, std::string_view Descrizione, bool confermato = false);

// The notice that an operation which had failed went through.
void NotificaRipristino(std::string_view NomeForm);

// The run-time's text for its error number ("File not found" for 53), empty if it has none.
[[nodiscard]] std::string TestoErroreRuntime(std::int32_t Numero);
// The run-time's number for a system number of a file operation, e.g. 53 for 2, 70 for 32, 75 for 5, 61 for
// 112.
[[nodiscard]] std::int32_t ErroreRuntimeDaSistema(std::int32_t Numero);

// Flags and settings-independent state back to start, for tests.
void AzzeraGestioneErrori();

}  // namespace tandemize
