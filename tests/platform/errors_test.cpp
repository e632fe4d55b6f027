#include "platform/errors.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <utility>
#include <vector>

#include "platform/posix/errno.h"

namespace tandemize::platform {
namespace {

TEST(SystemErrorText, Is_the_sentence_that_the_number_is_known_by) {
  const std::vector<std::pair<ErrorCode, const char*>> known = {
      {kFileNotFound, "The system cannot find the file specified."},
      {kPathNotFound, "The system cannot find the path specified."},
      {kAccessDenied, "Access is denied."},
      {kWriteProtected, "The media is write protected."},
      {kSharingViolation, "The process cannot access the file because it is being used by another process."},
      {kDiskFull, "There is not enough space on the disk."},
      {kAlreadyExists, "Cannot create a file when that file already exists."},
      {kNameTooLong, "The filename or extension is too long."},
      {kIoDevice, "The request could not be performed because of an I/O device error."},
      {1231, "The network location cannot be reached."},
  };
  for (const auto& [code, text] : known) EXPECT_EQ(systemErrorText(code), text) << code;
}

TEST(SystemErrorText, Knows_every_number_of_the_layer_and_its_neighbours) {
  for (const ErrorCode code : {kFileNotFound,
                               kPathNotFound,
                               kTooManyOpenFiles,
                               kAccessDenied,
                               kNotEnoughMemory,
                               kInvalidDrive,
                               kNotSameDevice,
                               kNoMoreFiles,
                               kWriteProtected,
                               kNotReady,
                               kReadFault,
                               kGeneralFailure,
                               kSharingViolation,
                               kEndOfFile,
                               kNotSupported,
                               kNetworkBusy,
                               kUnexpectedNetworkError,
                               kFileExists,
                               kInvalidParameter,
                               kDiskFull,
                               kInvalidName,
                               kFolderNotEmpty,
                               kBusy,
                               kAlreadyExists,
                               kNameTooLong,
                               kFileTooLarge,
                               kInvalidFolder,
                               kStopped,
                               kIoDevice,
                               1,
                               6,
                               13,
                               14,
                               20,
                               22,
                               23,
                               24,
                               25,
                               26,
                               27,
                               28,
                               29,
                               33,
                               36,
                               39,
                               51,
                               53,
                               55,
                               64,
                               65,
                               67,
                               82,
                               109,
                               110,
                               111,
                               121,
                               122,
                               161,
                               1008,
                               1131,
                               1142,
                               1225,
                               1392,
                               1400,
                               1450,
                               1785}) {
    const std::string text = systemErrorText(code);
    ASSERT_FALSE(text.empty()) << code;
    EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << code;
    EXPECT_EQ(text.substr(text.size() - 1), ".") << code;
  }
}

TEST(SystemErrorText, Is_empty_for_an_unknown_number) {
  for (const ErrorCode code : {-1, 7, 12002, 99999}) EXPECT_EQ(systemErrorText(code), "") << code;
}

TEST(FromErrno, Tells_the_hosts_failures_by_the_programs_numbers) {
  const std::vector<std::pair<int, ErrorCode>> table = {
      {0, kNoError},
      {ENOENT, kFileNotFound},
      {ELOOP, kFileNotFound},
      {ENOTDIR, kPathNotFound},
      {EMFILE, kTooManyOpenFiles},
      {ENFILE, kTooManyOpenFiles},
      {EACCES, kAccessDenied},
      {EPERM, kAccessDenied},
      {ENOMEM, kNotEnoughMemory},
      {EXDEV, kNotSameDevice},
      {EROFS, kWriteProtected},
      {ENODEV, kNotReady},
      {ENXIO, kNotReady},
      {ENOMEDIUM, kNotReady},
      {ETXTBSY, kSharingViolation},
      {EOPNOTSUPP, kNotSupported},
      {ESTALE, kUnexpectedNetworkError},
      {EHOSTDOWN, 64},
      {ENOTCONN, 64},
      {EINVAL, kInvalidParameter},
      {ENOSPC, kDiskFull},
      {EDQUOT, kDiskFull},
      {EILSEQ, kInvalidName},
      {ENOTEMPTY, kFolderNotEmpty},
      {EBUSY, kBusy},
      {EEXIST, kAlreadyExists},
      {ENAMETOOLONG, kNameTooLong},
      {EFBIG, kFileTooLarge},
      {EISDIR, kInvalidFolder},
      {EIO, kIoDevice},
  };
  for (const auto& [number, code] : table) EXPECT_EQ(fromErrno(number), code) << number;
}

TEST(FromErrno, Never_makes_a_failure_look_like_success) {
  for (int number = 1; number < 200; ++number) {
    EXPECT_NE(fromErrno(number), kNoError) << number;
    EXPECT_FALSE(systemErrorText(fromErrno(number)).empty()) << number;
  }
  EXPECT_EQ(fromErrno(4711), kGeneralFailure);
}

}  // namespace
}  // namespace tandemize::platform
