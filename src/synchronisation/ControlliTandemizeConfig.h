// What the window of the synchronisation's settings holds, as plain values: the window on a screen shows them
// and writes back what the user does. Names are those of the window's controls.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "shell/ControlliGlobalSetting.h"

namespace tandemize {

struct SpuntaAbilitabile : CasellaSpunta {
  bool Enabled = true;
};

// A row of ListPath is one pair: two paths, and the description of the FTP server of each, empty for a local
// path. Row r holds the paths 2r and 2r + 1 of the profile.
struct RigaCoppia {
  std::array<std::string, 2> Percorsi, ServerFtp;
  friend bool operator==(const RigaCoppia&, const RigaCoppia&) = default;
};

// Pop-up help of the two modes and of ChkAbilitàFtp.
inline constexpr std::array<std::string_view, 2> AiutoOptmode{
    "Questa modalità permette di sincronizzare gli stessi dati in percorsi diversi , come ad esempio un "
    "disco fisso , un disco rimovibile , un computer collegato in rete , ecc..",
    "Questa modalità permette di sincronizzare dati diversi in percorsi diversi.Le informazioni da inserire "
    "sono i percorsi di origine e i percorsi di destinazione"};
inline constexpr std::string_view AiutoAbilitàFtp = "Enable to Connect to FTP Server (Required a Web Host)";

// Captions that no language table overrides.
inline constexpr std::array<std::string_view, 3> TestoOpt{"View and Copy Only a Missing Files",
                                                          "Chiedi conferma prima di sovrascrivere un file",
                                                          "View and Copy all widthout confirm"};
inline constexpr std::array<std::string_view, 4> TestoOptCampareType{
    "Inteligent (Size , date and CRC if is necessari)", "Date Only (Fast but is not accurated)",
    "Size Only (Fast but is not accurated)", "CRC (very slow but it is the best accurated)"};
inline constexpr std::string_view TestoChkAutoTandem = "Sincronizizza automaticamente";
inline constexpr std::string_view TestoChk = "Exec Scan after Tandemize";
inline constexpr std::string_view TestoChkSourceNotChange = "Mantieni percorsi di origine inalterati";
inline constexpr std::string_view TestoChkDeleteFile = "Elimina file non presenti nei percorsi di origine";

struct ControlliTandemizeConfig {
  // Captions, as they stand until the language table overrides them.
  std::string Caption;  // of the window
  std::string TitoloModalità, TitoloPercorsi, TitoloOperazioni, TitoloConfronto;
  std::array<std::string, 2> TestoOptmode{"Single Mode", "Multiple Mode"};
  std::string TestoChkAbilitàFtp = "Abilità Modalità FTP";
  std::array<std::string, 2> LblPath{"Drive 1", "Drive 2"};
  std::array<std::string, 4> ColonneListPath;

  GruppoOpzioni Opt{3}, OptCampareType{4}, Optmode{2};
  SpuntaAbilitabile Chk, ChkSourceNotChange, ChkDeleteFile, ChkAutoTandem, ChkAbilitàFtp;

  std::vector<RigaCoppia> ListPath;
  int ListPathSelezione = -1;

  // The entry fields of one row.
  std::array<CasellaTesto, 2> TxtPath;
  std::array<SpuntaAbilitabile, 2> ChkFtp;
  std::array<CasellaCombo, 2> ComboFtp;
  std::array<bool, 3> cmdListAbilitato{false, false, false};  // add, remove, modify
};

}  // namespace tandemize
