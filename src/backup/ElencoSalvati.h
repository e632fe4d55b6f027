// What former full and incremental runs have saved: the lines of `FilesList.Dat`, looked up by path.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/appendfile.h"
#include "platform/errors.h"

namespace tandemize {

inline constexpr std::string_view SeparatoreCampi = "#_#_#";  // between path, date and size

// Full program path of the list.
[[nodiscard]] std::string PercorsoElencoSalvati();

// The list in memory. A path may have several lines; looking one up costs the same however many lines there
// are.
class ElencoSalvati {
 public:
  // Reads the list once; a later call does nothing. kFileNotFound if there is none: nothing was saved then.
  [[nodiscard]] platform::ErrorCode Leggi();

  // True if a line has exactly this path and this date text.
  [[nodiscard]] bool Contiene(std::string_view percorso, std::string_view data) const;

 private:
  struct Riga {
    std::uint64_t posizione;       // of its path in the text
    std::uint32_t percorso, data;  // lengths in bytes
    std::uint32_t seguente;        // next line of the same slot, counted from 1; 0 ends
  };
  void AggiungiRiga(std::size_t posizione, std::string_view riga);
  void CostruisciIndice();
  [[nodiscard]] std::string_view Percorso(const Riga& riga) const;
  [[nodiscard]] std::string_view Data(const Riga& riga) const;

  bool letto_ = false;
  platform::ErrorCode esito_ = 0;
  std::string testo_;
  std::vector<Riga> righe_;
  std::vector<std::uint32_t> posti_;  // first line of each slot, counted from 1
};

// Adds lines to the list as files are copied. The file stays open for the run; each line is complete in it
// when `Aggiungi` returns.
class ScrittoreElenco {
 public:
  // `svuota` starts a new list.
  [[nodiscard]] platform::ErrorCode Apri(bool svuota);
  [[nodiscard]] platform::ErrorCode Aggiungi(std::string_view percorso, std::string_view data,
                                             std::string_view dimensione);

 private:
  platform::AppendFile file_;
};

}  // namespace tandemize
