// The profile file: paths and options of one synchronisation, objects of one backup diagram, and the
// companion file with the filter.
//
// There is no image of the file in memory. Reading fills the variables below and ArrayOggetti; writing
// replaces the lines of one section and leaves the other's as they are. Files are replaced as a whole.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/errors.h"

namespace tandemize {

// Synchronisation section; written by LeggiFileProfilo and the configuration window. Booleans are on when not
// 0.
extern std::vector<std::string> Backup_Path, Backup_FTP;
extern std::int32_t PathCount;
extern std::int32_t FixFileOption, CompareMethod, TandemMode;
extern std::uint8_t FixScanAfterFix, FtpEnabled, SourceNotChange, EraseFile, AutoTandemize;

// The filter of a backup run; written by LeggiFileProfilo, the filter window and the run dialog.
extern std::string FilterBackup;
extern std::uint8_t FilterIgnoreInvalidPath;

struct ValoriSincronizzazione {
  std::vector<std::string> percorsi{""}, serverFtp{""};  // each with a spare last entry
  std::uint8_t FixFileOption = 2, FixScanAfterFix = 0, SourceNotChange = 0, EraseFile = 0, AutoTandemize = 0,
               FtpEnabled = 0;
  std::int32_t CompareMethod = 0, TandemMode = 1;
};

// Reads a profile and its companion file, if there is one. Keys are found anywhere in a line in any case of
// letters. False if it could not be read to its end: a file that cannot be opened or is larger than 64 MiB, a
// file that ends within a run of numbered lines, a number that does not fit its field. The log then tells the
// run-time's number and the line, and the place in words. ArrayOggetti and the lists are emptied first in any
// case and keep what was read up to the failure. PathCount never exceeds the lists.
bool LeggiFileProfilo(const std::string& path);

// `sezione`: -2 the companion file only, from the filter variables; -1 the synchronisation section; 0 removes
// the objects; n > 0 writes objects 1 to n, which must exist (kInvalidParameter otherwise). Writes
// FileProfilo and leaves no empty line in it. The file is read item by item, so a value with a comma that
// this call does not replace falls apart into two lines. An empty file stays empty. Gives the system's number
// if the file cannot be read or replaced, kFileTooLarge if the old or the new one is larger than 64 MiB; the
// old one then stands.
[[nodiscard]] platform::ErrorCode ScriviFileProfilo(const ValoriSincronizzazione& valori,
                                                    std::int16_t sezione);

// Writes the twelve lines of an empty profile; false if it cannot.
[[nodiscard]] bool CreaNuovoProfilo(const std::string& path);
[[nodiscard]] std::string ProfiloVuoto();

// True if the first line begins with "Backup_Path_" in this case. No more of the file is read.
[[nodiscard]] bool ProfiloValido(const std::string& path);
// Full path of the companion file: all before the first "." of the whole path, then "b.adv".
[[nodiscard]] std::string RestituisciNomeFiltro(std::string_view path);
// Value of an object's line: the text behind the first "=", left-trimmed. A decimal number (sign and fraction
// allowed, nothing behind it) comes back as its integer part, without leading zeros.
[[nodiscard]] std::string RestituisciValore(std::string_view riga);

// Index in FtpServers of the server that FileProfilo names for a path, or for a line's number; 0 if there is
// none or the file cannot be read. `sincronizzazione` chooses the section. A path matches the paths that
// contain it, that it contains, or that are equal in any case; the last match counts. The table's spare entry
// takes no part.
[[nodiscard]] std::uint8_t IndiceServerDaPercorso(bool sincronizzazione, std::string_view path);
[[nodiscard]] std::uint8_t IndiceServerDaNumero(bool sincronizzazione, std::int16_t numero);
[[nodiscard]] std::uint8_t IndiceServerDaDescrizione(std::string_view descrizione);

// Initial values of all variables, for tests.
void AzzeraModuloProfilo();

}  // namespace tandemize
