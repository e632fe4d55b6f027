// What the settings window holds, as plain values: the window on a screen shows them and writes back what the
// user does. Names are those of the window's controls.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tandemize {

// Option buttons of one array: one of them is on, or none.
struct GruppoOpzioni {
  int Membri;
  std::optional<int> Attiva = std::nullopt;

  [[nodiscard]] bool Accesa(int membro) const { return Attiva == membro; }
};

struct CasellaTesto {
  std::string Text;
  int MaxLength = 0;  // characters, 0 for no limit
  bool SoloNumeri = false;
  bool Enabled = true;
};

struct CasellaSpunta {
  std::uint8_t Value = 0;  // 0 or 1
};

struct CasellaCombo {
  std::vector<std::string> Elementi;
  std::string Text;  // may be a word that `Elementi` does not hold, as after a change of language
  bool Enabled = true;
};

// A row of ListTimer: the name shown, the full path in its tag, date, time, and "number word".
struct RigaTimer {
  std::string Profilo, Percorso, Data, Ora, Intervallo;
  friend bool operator==(const RigaTimer&, const RigaTimer&) = default;
};

// The values are those that the window has before the file is read, which is what a missing key leaves in it.
struct ControlliGlobalSetting {
  GruppoOpzioni OptStartPg{3}, OptStartPC{3};

  GruppoOpzioni OptLogUpdate{2}, OptLogWindow{3};
  CasellaTesto TxtLog{"100", 4, true};

  GruppoOpzioni OptErrors{2}, OptErrorCorrection{2};
  CasellaSpunta ChkErrors;
  CasellaTesto txtErrorRepeat{"10", 2, true}, TxtErrorSeconds{"5", 2, true};

  GruppoOpzioni OptEmail{2};
  CasellaTesto txtEmailSmtp, txtEmail;

  std::vector<std::string> ListFtp;  // descriptions; row i is FtpServers[i]
  int ListFtpSelezione = -1;
  CasellaTesto txtFtpDescription, txtFtpServer, txtFtpUser, txtFtpPassword;
  CasellaSpunta ChkFtpPassive;

  GruppoOpzioni OptTimer{3}, OptTimerBackup{3}, OptTipoTimer{2};
  CasellaCombo comboTimer;
  CasellaTesto txtTimerInterval{"", 1, true}, txtTimerStart{"", 5}, TxtTimerStartDate;
  std::vector<RigaTimer> ListTimer;
  int ListTimerSelezione = -1;
  CasellaTesto txtProfilo, txtData, TxtOra, TxtIntervallo;
  std::string txtProfiloTag;  // full path of the profile whose name `txtProfilo` shows
  CasellaCombo cmbintervallo;
  std::array<bool, 3> cmdListAbilitato{true, false, false};  // add, remove, replace

  GruppoOpzioni OptAdvBuffer{2};
  CasellaTesto txtBufferLocal{"", 5, true}, txtBufferLan{"", 5, true}, txtBufferFtp{"", 3, true};
  CasellaSpunta ChkShutdownAll, ChkShutdownLocal;

  GruppoOpzioni OptLanguage{2};
  CasellaSpunta ChkHelpToolTip, ChkHelpSuggest, ChkHelpTipMessage;
};

}  // namespace tandemize
