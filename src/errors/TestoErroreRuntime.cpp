// The numbers and texts by which failures of the program's own file access are told.
#include <algorithm>
#include <array>

#include "errors/ModuloGestioneErrori.h"
#include "platform/errors.h"

namespace tandemize {

namespace {

struct TestoRuntime {
  std::int32_t numero;
  std::string_view testo;
};

constexpr std::array<TestoRuntime, 29> Testi{{
    {5, "Invalid procedure call or argument"},
    {6, "Overflow"},
    {7, "Out of memory"},
    {9, "Subscript out of range"},
    {10, "This array is fixed or temporarily locked"},
    {11, "Division by zero"},
    {13, "Type mismatch"},
    {14, "Out of string space"},
    {28, "Out of stack space"},
    {51, "Internal error"},
    {52, "Bad file name or number"},
    {53, "File not found"},
    {54, "Bad file mode"},
    {55, "File already open"},
    {57, "Device I/O error"},
    {58, "File already exists"},
    {59, "Bad record length"},
    {61, "Disk full"},
    {62, "Input past end of file"},
    {63, "Bad record number"},
    {67, "Too many files"},
    {68, "Device unavailable"},
    {70, "Permission denied"},
    {71, "Disk not ready"},
    {74, "Can't rename with different drive"},
    {75, "Path/File access error"},
    {76, "Path not found"},
    {91, "Object variable not set"},
    {94, "Invalid use of Null"},
}};

struct Corrispondenza {
  platform::ErrorCode sistema;
  std::int32_t runtime;
};

constexpr std::array<Corrispondenza, 24> Corrispondenze{{
    {platform::kNoError, 0},
    {platform::kFileNotFound, 53},
    {platform::kPathNotFound, 76},
    {platform::kTooManyOpenFiles, 67},
    {platform::kAccessDenied, 75},
    {platform::kNotEnoughMemory, 7},
    {platform::kInvalidDrive, 68},
    {platform::kNotSameDevice, 74},
    {platform::kNoMoreFiles, 53},
    {platform::kWriteProtected, 70},
    {platform::kNotReady, 71},
    {platform::kSharingViolation, 70},
    {33, 70},  // a part of the file is locked
    {platform::kEndOfFile, 62},
    {platform::kFileExists, 58},
    {platform::kInvalidParameter, 5},
    {platform::kDiskFull, 61},
    {platform::kInvalidName, 52},
    {platform::kFolderNotEmpty, 75},
    {161, 76},  // the path is malformed
    {platform::kAlreadyExists, 58},
    {platform::kNameTooLong, 52},
    {platform::kInvalidFolder, 76},
    {platform::kIoDevice, 57},
}};

constexpr std::int32_t ErroreDelDispositivo = 57;

}  // namespace

std::string TestoErroreRuntime(std::int32_t Numero) {
  const auto* const trovato =
      std::ranges::find_if(Testi, [Numero](const TestoRuntime& voce) { return voce.numero == Numero; });
  return trovato == Testi.end() ? std::string() : std::string(trovato->testo);
}

std::int32_t ErroreRuntimeDaSistema(std::int32_t Numero) {
  const auto* const trovata = std::ranges::find_if(
      Corrispondenze, [Numero](const Corrispondenza& voce) { return voce.sistema == Numero; });
  return trovata == Corrispondenze.end() ? ErroreDelDispositivo : trovata->runtime;
}

}  // namespace tandemize
