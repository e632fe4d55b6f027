// One set of file operations for local, LAN and FTP paths. Each asks the path's kind and takes the calls of
// that kind; operations that change something go through the retry rules and write their own log lines.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tandemize {

inline constexpr std::int32_t RisultatoFallito = -253;

// One search's record, owned by the caller and kept between the calls. `cAlternate` is the search's memory:
// the kind of the path, written by DirFile, which tells the next call how to go on. A short name is not
// available.
struct RecordRicerca {
  std::uint32_t dwFileAttributes = 0;
  platform::FileTime ftCreationTime, ftLastAccessTime, ftLastWriteTime;
  std::uint32_t nFileSizeHigh = 0, nFileSizeLow = 0;
  std::string cFileName;
  std::string cAlternate;
};

// A search handle kept by the caller; 0 when no search is open.
using HandleRicerca = std::int32_t;

// The answer of DirFile: a name, the empty string at the end, or a failure (-253).
class RispostaDir {
 public:
  RispostaDir(std::string nome) : nome_(std::move(nome)) {}  // NOLINT(google-explicit-constructor)
  static RispostaDir Fallita() { return RispostaDir{std::nullopt}; }
  [[nodiscard]] bool fallita() const { return !nome_; }                // -253
  [[nodiscard]] bool fine() const { return nome_ && nome_->empty(); }  // nothing found, or no more
  [[nodiscard]] const std::string& nome() const { return *nome_; }     // only if not fallita()

 private:
  explicit RispostaDir(std::nullopt_t) {}
  std::optional<std::string> nome_;
};

// With a path a search starts, with an empty path it steps on. `quiet` turns every error into -253 without a
// report; otherwise the codes 2, 1008 and 1400 are harmless and all others go to the retry rules. "." and
// ".." come through; names come in the host's order, blanks at their ends included. A missing folder answers
// as a missing file does, 2; a drive that is not ready does not. The folder is read whole at the start, so a
// step cannot fail; one without an open search ends it.
[[nodiscard]] RispostaDir DirFile(HandleRicerca& handle, RecordRicerca& record, std::string_view path,
                                  bool quiet);
void ChiudiRicerca(HandleRicerca& handle);  // sets the handle to 0; closing twice does no harm

[[nodiscard]] bool EsisteFile(std::string_view path);  // a folder counts too, as in any search
[[nodiscard]] bool EsisteCartella(std::string_view path, bool quiet = false);
[[nodiscard]] std::int32_t Restituisci_NumeroFile_Cartella(std::string_view path);  // or -253

bool EliminaFile(std::string_view path);
bool EliminaCartella(std::string_view path);  // an empty folder only
bool CreaDirectory(std::string_view path);
// Makes all missing levels, top down. The result of the last creation; false if nothing had to be made.
bool CreaSottoCartelle(std::string_view path);

// The system's message if the file cannot be opened, empty if it can; `errore` gets the number.
[[nodiscard]] std::string ProvaAperturaFile(std::string_view path, bool write, std::int32_t& errore);

[[nodiscard]] double DimensioneFile(const RecordRicerca& record);  // bytes; a negative 64-bit value gives 0

// The last write date as text: FormatoData, a blank, "hh.mm.ss", by the offset that held at that date. The
// other two dates are seconds in UTC.
[[nodiscard]] std::string DateFile(const RecordRicerca& record, std::int64_t& creazione,
                                   std::int64_t& ultimoAccesso, std::string_view path);
[[nodiscard]] std::string TestoDataFile(std::int64_t secondiUtc);
// The same date, read anew; empty if nothing is found.
[[nodiscard]] std::string DataFileDaRicerca(std::string_view path);
[[nodiscard]] bool IsDataValida(std::string_view testo);
// Seconds in UTC of a date text in the form above (with or without its time); empty if it is no date.
[[nodiscard]] std::optional<std::int64_t> SecondiDaTesto(std::string_view testo);
void ImpostaDataFile(std::string_view path, std::string_view testo);  // local files; no result is looked at

[[nodiscard]] std::string DescrizioneAttributi(std::int32_t attributi, bool& isFolder);

// Sorts between two bounds, both included, by code value.
void OrdinaStringhe(std::vector<std::string>& stringhe, std::int32_t inferiore, std::int32_t superiore);

// CRC-32 of a file. Absent for an empty local file, -253 in `fallito` for one that cannot be read.
struct RisultatoCRC {
  bool fallito = false;                // -253
  std::optional<std::int32_t> valore;  // absent: no value
};
[[nodiscard]] RisultatoCRC CalcolaCRC(std::string_view path, bool isFtp);

}  // namespace tandemize
