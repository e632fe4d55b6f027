// The settings of `GlobalSetting.dat` as application-wide variables named as their keys. Written by the
// reader (FrmGlobalSetting.h); what each means is told in docs/formats-settings.md.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tandemize {

// Start.
extern std::uint8_t StartUp_Pr_Mode;  // 0 normally, 1 the synchronisation window, 2 the backup window
extern std::uint8_t StartUp_PC_Mode;  // 0 no, 1 with the PC, 2 with the PC and hidden in the tray

// Log.
extern std::uint8_t Log_Update_Mode;    // stored and edited, without effect on what is written
extern std::uint8_t Log_Show_Window;    // 0 never, 1 on each error, 2 at the end of the operation
extern std::int32_t Log_Max_File_Size;  // kilobytes of 1024 bytes

// Errors.
extern std::uint8_t Errors_Alert_Mode;  // 0 on every error, 1 at the end of the operation. Also written by
                                        // AvvisoConnessionePersa
extern bool Errors_Try_Next;            // go on with the next step
extern std::uint8_t
    Errors_Correction;               // 0 no retries, 1 retries. Also switched off while a backup is planned
extern std::uint8_t Errors_Repeat;   // attempts
extern std::uint8_t Errors_Seconds;  // pause between attempts

// Mail.
extern std::uint8_t Email_Action;  // 1: mail on errors
extern std::string Email_Smtp, Email_Email;

// Scheduler, standard mode. Words and dates in their stored text forms.
extern std::uint8_t Timer_Start_Mode;   // 0 nothing, 1 synchronisation, 2 backup
extern std::uint8_t Timer_Backup_Type;  // 0 standard, 1 full, 2 incremental
extern std::string Timer_Interval_Type, Timer_Interval_Number, Timer_Start_Time, Timer_Start_Date;
extern std::uint8_t Timer_Start_Type;  // 0 standard, 1 advanced

// Buffers (kilobytes) and shutdown. A buffer of 0 counts as its default: 1024, 1024 and 64.
extern std::uint8_t Global_Advance_Buf_Mode;
extern std::int32_t Advance_Buf_Local, Advance_Buf_Lan, Advance_Buf_FTP;
extern std::int32_t Advance_Others;  // kept for a control that does not exist; nothing reads it
extern std::uint8_t Advance_ShutDownAll, Advance_ShutDownLocal;

// The buffers in kilobytes as the transfers use them: the default where the setting is 0 or missing, and
// within 1 to 1,048,576, whatever the file says.
[[nodiscard]] std::int32_t BufferLocaleKB();
[[nodiscard]] std::int32_t BufferLanKB();
[[nodiscard]] std::int32_t BufferFtpKB();

// Language and help.
extern std::uint8_t Language;  // 0 Italian, 1 English
extern std::uint8_t Help_ToolTip, Help_Suggest, Help_TipMessage;

struct ServerFtp {
  std::string Ftp_Description, Ftp_Server_Name, Ftp_User, Ftp_Password;  // the password in clear
  std::uint8_t Ftp_PassiveMode = 0;
  friend bool operator==(const ServerFtp&, const ServerFtp&) = default;
};
// The last element is a spare, so the servers are 0 to size - 2.
extern std::vector<ServerFtp> FtpServers;

struct TimerAvanzato {
  std::string Profile1, Profile2, Date, Time;  // name shown, full path, date, time
  std::int16_t IntervalNumber = 0;
  std::string IntervalKind;
  friend bool operator==(const TimerAvanzato&, const TimerAvanzato&) = default;
};
// Element 0 is unused.
extern std::vector<TimerAvanzato> TimerAdvList;

// Everything to zero or empty, as before the first read.
void AzzeraImpostazioni();

}  // namespace tandemize
