#include "shell/ChiaviGlobalSetting.h"

#include <array>
#include <charconv>
#include <limits>

namespace tandemize {

namespace {

using C = ControlliGlobalSetting;

constexpr std::array<ChiaveGlobale, 36> chiavi{{
    {"StartUp_Pr_Mode", &StartUp_Pr_Mode, "OptStartPg", &C::OptStartPg},
    {"StartUp_PC_Mode", &StartUp_PC_Mode, "OptStartPC", &C::OptStartPC},
    {"Log_Update_Mode", &Log_Update_Mode, "OptLogUpdate", &C::OptLogUpdate},
    {"Log_Show_Window", &Log_Show_Window, "OptLogWindow", &C::OptLogWindow},
    {"Log_Max_File_Size", &Log_Max_File_Size, "TxtLog", &C::TxtLog},
    {"Errors_Alert_Mode", &Errors_Alert_Mode, "OptErrors", &C::OptErrors},
    {"Errors_Try_Next", &Errors_Try_Next, "ChkErrors", &C::ChkErrors},
    {"Errors_Correction", &Errors_Correction, "OptErrorCorrection", &C::OptErrorCorrection},
    {"Errors_Repeat", &Errors_Repeat, "txtErrorRepeat", &C::txtErrorRepeat},
    {"Errors_Seconds", &Errors_Seconds, "TxtErrorSeconds", &C::TxtErrorSeconds},
    {"Email_Action", &Email_Action, "OptEmail", &C::OptEmail},
    {"Email_Smtp", &Email_Smtp, "txtEmailSmtp", &C::txtEmailSmtp},
    {"Email_Email", &Email_Email, "txtEmail", &C::txtEmail},
    {"Ftp_Description", &ServerFtp::Ftp_Description, "", {}},
    {"Ftp_Server_Name", &ServerFtp::Ftp_Server_Name, "", {}},
    {"Ftp_User", &ServerFtp::Ftp_User, "", {}},
    {"Ftp_Password", &ServerFtp::Ftp_Password, "", {}},
    {"Ftp_PassiveMode", &ServerFtp::Ftp_PassiveMode, "", {}},
    {"Timer_Start_Mode", &Timer_Start_Mode, "OptTimer", &C::OptTimer},
    {"Timer_Backup_Type", &Timer_Backup_Type, "OptTimerBackup", &C::OptTimerBackup},
    {"Timer_Interval_Type", &Timer_Interval_Type, "comboTimer", &C::comboTimer},
    {"Timer_Interval_Number", &Timer_Interval_Number, "txtTimerInterval", &C::txtTimerInterval},
    {"Timer_Start_Time", &Timer_Start_Time, "txtTimerStart", &C::txtTimerStart},
    {"Timer_Start_Date", &Timer_Start_Date, "TxtTimerStartDate", &C::TxtTimerStartDate},
    {"Timer_Start_Type", &Timer_Start_Type, "OptTipoTimer", &C::OptTipoTimer},
    {"Global_Advance_Buf_Mode", &Global_Advance_Buf_Mode, "OptAdvBuffer", &C::OptAdvBuffer},
    {"Advance_Buf_Local", &Advance_Buf_Local, "txtBufferLocal", &C::txtBufferLocal},
    {"Advance_Buf_Lan", &Advance_Buf_Lan, "txtBufferLan", &C::txtBufferLan},
    {"Advance_Buf_FTP", &Advance_Buf_FTP, "txtBufferFtp", &C::txtBufferFtp},
    {"Advance_Others", &Advance_Others, "OptAdvOthers", {}},
    {"Advance_ShutDownAll", &Advance_ShutDownAll, "ChkShutdownAll", &C::ChkShutdownAll},
    {"Advance_ShutDownLocal", &Advance_ShutDownLocal, "ChkShutdownLocal", &C::ChkShutdownLocal},
    {"Language", &Language, "OptLanguage", &C::OptLanguage},
    {"Help_ToolTip", &Help_ToolTip, "ChkHelpToolTip", &C::ChkHelpToolTip},
    {"Help_Suggest", &Help_Suggest, "ChkHelpSuggest", &C::ChkHelpSuggest},
    {"Help_TipMessage", &Help_TipMessage, "ChkHelpTipMessage", &C::ChkHelpTipMessage},
}};

constexpr bool NessunaPiùCorta() {
  for (const ChiaveGlobale& chiave : chiavi)
    if (chiave.Chiave.size() < ChiavePiùCorta) return false;
  return true;
}
static_assert(NessunaPiùCorta());

std::string_view SenzaBlank(std::string_view testo) {
  while (!testo.empty() && (testo.front() == ' ' || testo.front() == '\t')) testo.remove_prefix(1);
  while (!testo.empty() && (testo.back() == ' ' || testo.back() == '\t')) testo.remove_suffix(1);
  return testo;
}

template <class Numero>
bool ConvertiNumero(std::string_view testo, Numero& variabile) {
  testo = SenzaBlank(testo);
  if (testo.size() > 1 && testo[0] == '+' && testo[1] != '-') testo.remove_prefix(1);
  std::int32_t letto = 0;
  const auto [fine, errore] = std::from_chars(testo.data(), testo.data() + testo.size(), letto);
  if (errore != std::errc{} || fine != testo.data() + testo.size()) return false;
  if (letto < std::numeric_limits<Numero>::min() || letto > std::numeric_limits<Numero>::max()) return false;
  variabile = static_cast<Numero>(letto);
  return true;
}

}  // namespace

std::span<const ChiaveGlobale> ChiaviGlobali() {
  return chiavi;
}

bool DelServer(const ChiaveGlobale& chiave) {
  return std::holds_alternative<std::string ServerFtp::*>(chiave.Destinazione) ||
         std::holds_alternative<std::uint8_t ServerFtp::*>(chiave.Destinazione);
}

bool Converti(std::string_view testo, std::uint8_t& variabile) {
  return ConvertiNumero(testo, variabile);
}
bool Converti(std::string_view testo, std::int16_t& variabile) {
  return ConvertiNumero(testo, variabile);
}
bool Converti(std::string_view testo, std::int32_t& variabile) {
  return ConvertiNumero(testo, variabile);
}

bool Converti(std::string_view testo, bool& variabile) {
  std::int32_t numero = 0;
  if (!ConvertiNumero(testo, numero)) return false;
  variabile = numero != 0;
  return true;
}

bool Converti(std::string_view testo, std::string& variabile) {
  variabile = testo;
  return true;
}

}  // namespace tandemize
