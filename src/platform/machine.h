// The machine around the program: its folder, drives, clock, locale, registry, memory, network, terminal,
// signals.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/errors.h"
#include "platform/files.h"
#include "platform/paths.h"

namespace tandemize::platform {

// --- program folder
// --------------------------------------------------------------------------------------------

// Where the program's files lie, as a host path without a trailing "/": `$TANDEMIZE_HOME` if set; else the
// folder of the program file if it holds "GlobalSetting.dat" and can be written; else
// `$XDG_DATA_HOME/tandemize-backup` (default ~/.local/share/tandemize-backup).
[[nodiscard]] std::string findProgramFolder();

// Makes `hostFolder` with its parents and copies the shipped data into it; the folder appears whole or not at
// all. Does nothing and gives kAlreadyExists if the folder exists, unless `evenIfItExists`, which then adds
// only what is missing, file by file, `GlobalSetting.dat` last. kFileNotFound: no shipped data found;
// kInvalidFolder: a file has that name.
[[nodiscard]] ErrorCode fillProgramFolder(const std::string& hostFolder, bool evenIfItExists);

// Links are followed; anything but a folder counts as a file.
[[nodiscard]] bool hostFileExists(const std::string& hostPath);
[[nodiscard]] bool hostFolderExists(const std::string& hostPath);

// Full program path of a data file whose letter case on the host may differ from `name`, or `folder` + `name`
// if there is none. `folder` may end in "\" or not; `name` may have folders of its own ("Gif\Scansione.Gif").
// Only A to Z have a case here.
[[nodiscard]] std::string findIgnoringCase(std::string_view folder, std::string_view name);

// --- drives
// ----------------------------------------------------------------------------------------------------

// Kind of the drive whose letter and ":" the path begins with. noRoot for any other path, a share's too, and
// for a letter that the table lacks; whether the drive is ready doesn't matter.
[[nodiscard]] DriveKind driveKind(std::string_view path);

// The drive's host folder is there, and still mounted if a mount made the drive; for an optical drive of
// `Drives.dat`: a disc is in it. False for a path on no drive.
[[nodiscard]] bool driveReady(std::string_view path);

struct DiscState {
  bool opened = false;     // the drive answered
  bool present = false;    // a disc is in it
  bool hasLength = false;  // the disc reports a length
};
// State of an optical drive; all false for a drive of another kind, and for a device that is not there. An
// image file is a disc with its size as length, a folder a disc with a length; a missing image or folder is a
// drive that answers and is empty.
[[nodiscard]] DiscState discState(std::string_view path);

// --- clock
// -----------------------------------------------------------------------------------------------------

struct CivilTime {
  int year = 1970, month = 1, day = 1, hour = 0, minute = 0, second = 0;
  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};
[[nodiscard]] std::int64_t now();                            // seconds since 1970, UTC
[[nodiscard]] std::uint64_t monotonicMilliseconds();         // for intervals
[[nodiscard]] CivilTime localTime(std::int64_t utcSeconds);  // by the offset that held at that moment
// Empty if the date or the time of day does not exist (years 1 to 9999). Of two moments with the same local
// time the first; a time that the change of summer time skips counts as the first moment after the change.
[[nodiscard]] std::optional<std::int64_t> utcFromLocal(const CivilTime& local);
void sleepMilliseconds(unsigned milliseconds);  // ends early when a signal comes

// --- locale and registry
// ---------------------------------------------------------------------------------------

// Registry root and key as written in `Registry.ini`, e.g. "HKEY_CURRENT_USER\Control Panel\International";
// the letter case of key and name does not count, quotes are part of a value. A value that the file lacks
// comes from the host where the host knows it (sShortDate, sTimeFormat from LC_TIME, turned into the
// program's form: "dd/MM/yyyy", "H.mm.ss"; in the C, C.UTF-8 and POSIX locales none), else it is empty.
[[nodiscard]] std::string registryValue(std::string_view key, std::string_view name);

// --- this computer
// ---------------------------------------------------------------------------------------------

[[nodiscard]] std::string computerName();
[[nodiscard]] std::int64_t freePhysicalMemory();  // bytes that programs can still have without swapping
[[nodiscard]] int platformId();                   // 2 on every host: files over 2 GB, many processes
[[nodiscard]] int processNumber();
[[nodiscard]] bool networkUp();  // any interface but loopback; TANDEMIZE_NETWORK overrules
[[nodiscard]] std::string environment(const char* name);  // empty if not set

// --- terminal and signals
// --------------------------------------------------------------------------------------

[[nodiscard]] bool errorOutputIsTerminal();
[[nodiscard]] int terminalWidth();  // columns of standard error's terminal, 80 if not known

// From now on SIGINT and SIGTERM raise a flag instead of ending the program; SIGPIPE and SIGXFSZ are ignored,
// so that a closed pipe or a file size limit comes back as an error number.
void catchStopSignals();
[[nodiscard]] bool stopRequested();  // no system call
void clearStopRequest();

}  // namespace tandemize::platform
