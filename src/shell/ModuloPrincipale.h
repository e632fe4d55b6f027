// Start routine, application-wide state, and the small helpers that all subsystems use.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tandemize {

// Folders and files, in the program's notation. Written by the start routine; `FileProfilo` also by the
// profile menu, the console's --profile, and a timed run for as long as it lasts.
extern std::string PercorsoApplicazione;  // the program's folder with a trailing "\"
extern std::string PercorsoGif;           // pictures of animations, with a trailing "\"
extern std::string PercorsoIcone;         // icons, with a trailing "\"
extern std::string FileProfilo;           // the current profile

// Forms of dates and times as text: the user's short date and time formats. Written by the start routine.
extern std::string FormatoData;  // e.g. "dd/mm/yyyy"; used for every date shown, stored or compared as text
extern std::string FormatoOra;   // e.g. "H.mm.ss"

extern std::string TitoloApplicazione;  // title of the boxes, and of the balloons of automatic runs
extern std::int16_t PiattaformaOS;  // 2 where files may pass 2 GB and memory is asked for; set last at start

// State. Written by the start routine, the tray menu, the scheduler and each end of a transfer.
extern bool ApplicazioneNascosta;  // all windows are hidden; the console program runs like this throughout
extern bool PartenzaAutomaticaAttiva;  // a timed run is going on
extern bool TrasferimentoRiuscito;     // the last transfer ended without error

inline constexpr std::string_view NomeProfiloPredefinito = "Config.cfg";

enum class EsitoAvvio { Pronto, FileMancante, ImpostazioniErrate };

// `Sub Main` for the part that all programs share: paths, required files, locale, title, settings with the
// language table, the hidden state, the log list, the graph of objects, the platform number. `cartella` is
// the program folder in the program's notation. Failures were told on the screen when it returns.
[[nodiscard]] EsitoAvvio Sub_Main(std::string_view cartella);

// Looks for every file that a program folder must hold. Gives the full path of the last one missing, empty if
// all are there.
[[nodiscard]] std::string FileNecessarioMancante();
// The same with its message; false if a file is missing (the screen was told to end the program).
[[nodiscard]] bool ControllaFileNecessari();

[[nodiscard]] std::int64_t MemoriaFisicaLibera();  // bytes
[[nodiscard]] std::int32_t VersioneWindows();      // the platform's number, 2 here
[[nodiscard]] std::string NomeComputer();
[[nodiscard]] std::string TagliaAlNul(std::string_view testo);  // the text before the first NUL
[[nodiscard]] int SoloCifre(int tasto);  // keeps key codes 48 to 57 and 8, gives 0 for any other

// Date and time as text by a format such as "dd/mm/yyyy", "H.mm.ss" or "hh.mm". Letters: d dd (day), m mm or
// M MM (month), yy yyyy, h hh H HH (hour, 24), n nn (minute; also m and mm directly behind an hour), s ss, tt
// (AM or PM; a small h then counts to 12). Everything else stands for itself.
[[nodiscard]] std::string FormattaDataOra(std::int64_t secondiUtc, std::string_view formato);
// The system's general text form of a moment, as log lines begin with: FormatoData, a blank, FormatoOra.
[[nodiscard]] std::string DataOraGenerale(std::int64_t secondiUtc);

// Back to the state before start, for tests.
void AzzeraModuloPrincipale();

}  // namespace tandemize
