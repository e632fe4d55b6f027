// The numbers by which the machine reports a failure, and their texts.
//
// Every call of this layer that can fail gives one of these numbers, 0 for success. They are the numbers that
// the program's reports, its log and its retry rules speak of, whatever the host calls the failure itself.
#pragma once

#include <string>

namespace tandemize::platform {

using ErrorCode = int;

inline constexpr ErrorCode kNoError = 0;
inline constexpr ErrorCode kFileNotFound = 2;
inline constexpr ErrorCode kPathNotFound = 3;
inline constexpr ErrorCode kTooManyOpenFiles = 4;
inline constexpr ErrorCode kAccessDenied = 5;
inline constexpr ErrorCode kNotEnoughMemory = 8;
inline constexpr ErrorCode kInvalidDrive = 15;
inline constexpr ErrorCode kNotSameDevice = 17;
inline constexpr ErrorCode kNoMoreFiles = 18;
inline constexpr ErrorCode kWriteProtected = 19;
inline constexpr ErrorCode kNotReady = 21;
inline constexpr ErrorCode kReadFault = 30;
inline constexpr ErrorCode kGeneralFailure = 31;
inline constexpr ErrorCode kSharingViolation = 32;
inline constexpr ErrorCode kEndOfFile = 38;
inline constexpr ErrorCode kNotSupported = 50;
inline constexpr ErrorCode kNetworkBusy = 54;
inline constexpr ErrorCode kUnexpectedNetworkError = 59;
inline constexpr ErrorCode kFileExists = 80;
inline constexpr ErrorCode kInvalidParameter = 87;
inline constexpr ErrorCode kDiskFull = 112;
inline constexpr ErrorCode kInvalidName = 123;
inline constexpr ErrorCode kFolderNotEmpty = 145;
inline constexpr ErrorCode kBusy = 170;
inline constexpr ErrorCode kAlreadyExists = 183;
inline constexpr ErrorCode kNameTooLong = 206;
inline constexpr ErrorCode kFileTooLarge = 223;
inline constexpr ErrorCode kInvalidFolder = 267;
inline constexpr ErrorCode kStopped = 995;
inline constexpr ErrorCode kIoDevice = 1117;

// The system's text for a number, one sentence, without a line end ("Access is denied."). Empty for a number
// that the table does not know. Known are all numbers above and those next to them that a network file
// system or a removable disc reports.
[[nodiscard]] std::string systemErrorText(ErrorCode code);

}  // namespace tandemize::platform
