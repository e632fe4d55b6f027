#include "shell/Impostazioni.h"

#include <algorithm>

namespace tandemize {

std::uint8_t StartUp_Pr_Mode = 0;
std::uint8_t StartUp_PC_Mode = 0;

std::uint8_t Log_Update_Mode = 0;
std::uint8_t Log_Show_Window = 0;
std::int32_t Log_Max_File_Size = 0;

std::uint8_t Errors_Alert_Mode = 0;
bool Errors_Try_Next = false;
std::uint8_t Errors_Correction = 0;
std::uint8_t Errors_Repeat = 0;
std::uint8_t Errors_Seconds = 0;

std::uint8_t Email_Action = 0;
std::string Email_Smtp, Email_Email;

std::uint8_t Timer_Start_Mode = 0;
std::uint8_t Timer_Backup_Type = 0;
std::string Timer_Interval_Type, Timer_Interval_Number, Timer_Start_Time, Timer_Start_Date;
std::uint8_t Timer_Start_Type = 0;

std::uint8_t Global_Advance_Buf_Mode = 0;
std::int32_t Advance_Buf_Local = 0, Advance_Buf_Lan = 0, Advance_Buf_FTP = 0;
std::int32_t Advance_Others = 0;
std::uint8_t Advance_ShutDownAll = 0, Advance_ShutDownLocal = 0;

std::uint8_t Language = 0;
std::uint8_t Help_ToolTip = 0, Help_Suggest = 0, Help_TipMessage = 0;

std::vector<ServerFtp> FtpServers(1);
std::vector<TimerAvanzato> TimerAdvList(1);

namespace {

std::int32_t BufferEffettivo(std::int32_t impostato, std::int32_t predefinito) {
  constexpr std::int32_t massimo = 1'048'576;
  return impostato <= 0 ? predefinito : std::min(impostato, massimo);
}

}  // namespace

std::int32_t BufferLocaleKB() {
  return BufferEffettivo(Advance_Buf_Local, 1024);
}
std::int32_t BufferLanKB() {
  return BufferEffettivo(Advance_Buf_Lan, 1024);
}
std::int32_t BufferFtpKB() {
  return BufferEffettivo(Advance_Buf_FTP, 64);
}

void AzzeraImpostazioni() {
  for (std::uint8_t* byte :
       {&StartUp_Pr_Mode, &StartUp_PC_Mode, &Log_Update_Mode, &Log_Show_Window, &Errors_Alert_Mode,
        &Errors_Correction, &Errors_Repeat, &Errors_Seconds, &Email_Action, &Timer_Start_Mode,
        &Timer_Backup_Type, &Timer_Start_Type, &Global_Advance_Buf_Mode, &Advance_ShutDownAll,
        &Advance_ShutDownLocal, &Language, &Help_ToolTip, &Help_Suggest, &Help_TipMessage})
    *byte = 0;
  for (std::int32_t* numero :
       {&Log_Max_File_Size, &Advance_Buf_Local, &Advance_Buf_Lan, &Advance_Buf_FTP, &Advance_Others})
    *numero = 0;
  Errors_Try_Next = false;
  for (std::string* testo : {&Email_Smtp, &Email_Email, &Timer_Interval_Type, &Timer_Interval_Number,
                             &Timer_Start_Time, &Timer_Start_Date})
    testo->clear();
  FtpServers.assign(1, {});
  TimerAdvList.assign(1, {});
}

}  // namespace tandemize
