// The filter of a backup run as its dialog edits it: a list of entries, and whether they include or exclude
// files. Its stored form is FilterBackup; FiltroAccetta applies it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

class FiltroBackup {
 public:
  // Takes the stored form apart. One that does not begin with "+" excludes, an empty one too. Text behind the
  // last bar is no entry.
  void CaricaFiltro(std::string_view filtro);
  // The stored form: the sign, a bar, and each entry with its bar. Never empty.
  [[nodiscard]] std::string ComponiFiltro() const;

  // Whether a text may be an entry; tells the user if not. It must begin with "*.", and hold neither a bar
  // nor what ends an item of the profile's file, since it would come back from there as something else.
  [[nodiscard]] static bool ControllaEstensione(std::string_view voce);

  // Adds an entry that ControllaEstensione accepts, also one that is there already. False if it was refused.
  bool Aggiungi(std::string_view voce);
  // `indice` beyond the list does nothing.
  void Rimuovi(std::size_t indice);
  // Empties the list if the user agrees.
  void Svuota();

  [[nodiscard]] const std::vector<std::string>& Voci() const { return voci_; }
  // What a run with it does, in a sentence.
  [[nodiscard]] std::string Effetto() const;

  bool Includi = false;  // OptMode(0), otherwise OptMode(1)

 private:
  std::vector<std::string> voci_;
};

// In few words which files a stored filter keeps, with its entries: "only *.doc, *.xls".
[[nodiscard]] std::string RiassuntoFiltro(std::string_view filtro);

// The entries that the list of known extensions begins with.
inline constexpr const char* EstensioniFisse[] = {"*.dat", "*.doc", "*.xls", "*.txt"};

// The list of known extensions: the fixed ones, then those of `note` that may be an entry and are not there
// yet, in the order of the alphabet. Of two that differ in letter case only, one is kept.
[[nodiscard]] std::vector<std::string> ElencoEstensioni(const std::vector<std::string>& note);

}  // namespace tandemize
