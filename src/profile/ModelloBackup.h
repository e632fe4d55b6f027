// A backup as a small graph: sources and destinations, joined by links that name their partner.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

inline constexpr std::string_view OggettoEliminato =
    "<!Erased!>";  // description of a deleted object, which keeps its slot

inline constexpr std::uint8_t TipoSorgente = 0;
inline constexpr std::uint8_t TipoDestinazione = 1;

struct OggettoBackup {
  std::uint8_t BackIndice = 0;             // index of the object's figure in the diagram
  std::uint8_t BackTipoOggetto = 0;        // 0 a path object, 1 a custom path object
  std::uint8_t BackTipoTrasferimento = 0;  // 0 source, 1 destination
  std::vector<std::string> BackLinkTo{
      ""};                             // descriptions of the objects joined to this one; one entry at least
  std::string BackDescrizione;         // unique among live objects
  std::string BackPath;                // folder; empty for an object that lists single files
  std::vector<std::string> Files{""};  // single files, full paths; used only when BackPath is empty
  std::int32_t BackTop = 0;
  std::int16_t BackLeft = 0, BackHeight = 0, BackWidth = 0;
  std::int32_t BackFigura = 0;  // kind of BackPath when it was last edited; 2: it lies on an FTP server
  std::string BackFtpServerDescription;
  bool BackIgnorato = false;  // out of this run: it cannot be reached and that is to be ignored. Not stored

  [[nodiscard]] bool Vivo() const { return BackDescrizione != OggettoEliminato; }
};

// Entry 0 exists and is never used: objects are numbered from 1, the last index is the number of slots in
// use.
extern std::vector<OggettoBackup> ArrayOggetti;

// Back to the single entry 0.
void AzzeraArrayOggetti();

[[nodiscard]] inline std::size_t UltimoOggetto() {
  return ArrayOggetti.empty() ? 0 : ArrayOggetti.size() - 1;
}

// Number of the first object with that description from 1 up, 0 if there is none.
[[nodiscard]] std::uint8_t RestituisciIndicePerNome(std::string_view descrizione);

// All paths that the source of that description is to be copied to: those of the live destinations, not
// ignored, that name it in a link, in the order of their numbers, each path once.
[[nodiscard]] std::vector<std::string> RestituisciUnitàDiDestinazione(std::string_view descrizioneSorgente);

}  // namespace tandemize
