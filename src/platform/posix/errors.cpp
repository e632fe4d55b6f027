#include "platform/errors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "platform/posix/errno.h"

namespace tandemize::platform {

namespace {

struct ErrorText {
  ErrorCode code;
  std::string_view text;
};

// In ascending order of the numbers.
constexpr auto kTexts = std::to_array<ErrorText>({
    {0, "The operation completed successfully."},
    {1, "Incorrect function."},
    {2, "The system cannot find the file specified."},
    {3, "The system cannot find the path specified."},
    {4, "The system cannot open the file."},
    {5, "Access is denied."},
    {6, "The handle is invalid."},
    {8, "Not enough storage is available to process this command."},
    {9, "The storage control block address is invalid."},
    {11, "An attempt was made to load a program with an incorrect format."},
    {12, "The access code is invalid."},
    {13, "The data is invalid."},
    {14, "Not enough storage is available to complete this operation."},
    {15, "The system cannot find the drive specified."},
    {16, "The directory cannot be removed."},
    {17, "The system cannot move the file to a different disk drive."},
    {18, "There are no more files."},
    {19, "The media is write protected."},
    {20, "The system cannot find the device specified."},
    {21, "The device is not ready."},
    {22, "The device does not recognize the command."},
    {23, "Data error (cyclic redundancy check)."},
    {24, "The program issued a command but the command length is incorrect."},
    {25, "The drive cannot locate a specific area or track on the disk."},
    {26, "The specified disk or diskette cannot be accessed."},
    {27, "The drive cannot find the sector requested."},
    {28, "The printer is out of paper."},
    {29, "The system cannot write to the specified device."},
    {30, "The system cannot read from the specified device."},
    {31, "A device attached to the system is not functioning."},
    {32, "The process cannot access the file because it is being used by another process."},
    {33, "The process cannot access the file because another process has locked a portion of the file."},
    {36, "Too many files opened for sharing."},
    {38, "Reached the end of the file."},
    {39, "The disk is full."},
    {50, "The request is not supported."},
    {51, "The remote computer is not available."},
    {52, "A duplicate name exists on the network."},
    {53, "The network path was not found."},
    {54, "The network is busy."},
    {55, "The specified network resource or device is no longer available."},
    {56, "The network command limit has been reached."},
    {57, "A network adapter hardware error occurred."},
    {58, "The specified server cannot perform the requested operation."},
    {59, "An unexpected network error occurred."},
    {60, "The remote adapter is not compatible."},
    {64, "The specified network name is no longer available."},
    {65, "Network access is denied."},
    {66, "The network resource type is not correct."},
    {67, "The network name cannot be found."},
    {68, "The name limit for the local computer network adapter card was exceeded."},
    {70, "The remote server has been paused or is in the process of being started."},
    {71,
     "No more connections can be made to this remote computer at this time because there are already as many "
     "connections as the computer can accept."},
    {80, "The file exists."},
    {82, "The directory or file cannot be created."},
    {85, "The local device name is already in use."},
    {86, "The specified network password is not correct."},
    {87, "The parameter is incorrect."},
    {88, "A write fault occurred on the network."},
    {107, "The program stopped because an alternate diskette was not inserted."},
    {108, "The disk is in use or locked by another process."},
    {109, "The pipe has been ended."},
    {110, "The system cannot open the device or file specified."},
    {111, "The file name is too long."},
    {112, "There is not enough space on the disk."},
    {119, "The system does not support the command requested."},
    {120, "This function is not supported on this system."},
    {121, "The semaphore timeout period has expired."},
    {122, "The data area passed to a system call is too small."},
    {123, "The filename, directory name, or volume label syntax is incorrect."},
    {126, "The specified module could not be found."},
    {127, "The specified procedure could not be found."},
    {130, "Attempt to use a file handle to an open disk partition for an operation other than raw disk I/O."},
    {131, "An attempt was made to move the file pointer before the beginning of the file."},
    {132, "The file pointer cannot be set on the specified device or file."},
    {142, "The system cannot perform a join or substitution at this time."},
    {144, "The directory is not a subdirectory of the root directory."},
    {145, "The directory is not empty."},
    {148, "The path specified cannot be used at this time."},
    {154, "The volume label you entered exceeds the label character limit of the target file system."},
    {158, "The segment is already unlocked."},
    {161, "The specified path is invalid."},
    {167, "Unable to lock a region of a file."},
    {170, "The requested resource is in use."},
    {183, "Cannot create a file when that file already exists."},
    {206, "The filename or extension is too long."},
    {223, "The file size exceeds the limit allowed and cannot be saved."},
    {230, "The pipe state is invalid."},
    {231, "All pipe instances are busy."},
    {232, "The pipe is being closed."},
    {233, "No process is on the other end of the pipe."},
    {234, "More data is available."},
    {240, "The session was canceled."},
    {254, "The specified extended attribute name was invalid."},
    {255, "The extended attributes are inconsistent."},
    {258, "The wait operation timed out."},
    {259, "No more data is available."},
    {266, "The copy functions cannot be used."},
    {267, "The directory name is invalid."},
    {275, "The extended attributes did not fit in the buffer."},
    {282, "The mounted file system does not support extended attributes."},
    {487, "Attempt to access invalid address."},
    {534, "Arithmetic result exceeded 32 bits."},
    {995, "The I/O operation has been aborted because of either a thread exit or an application request."},
    {996, "Overlapped I/O event is not in a signaled state."},
    {997, "Overlapped I/O operation is in progress."},
    {998, "Invalid access to memory location."},
    {1005,
     "The volume does not contain a recognized file system. Please make sure that all required file system "
     "drivers are loaded and that the volume is not corrupted."},
    {1006, "The volume for a file has been externally altered so that the opened file is no longer valid."},
    {1008, "An attempt was made to reference a token that does not exist."},
    {1106, "When accessing a new tape of a multivolume partition, the current block size is incorrect."},
    {1110, "The media in the drive may have changed."},
    {1111, "The I/O bus was reset."},
    {1112, "No media in drive."},
    {1117, "The request could not be performed because of an I/O device error."},
    {1118, "No serial device was successfully initialized. The serial driver will unload."},
    {1131, "A potential deadlock condition has been detected."},
    {1142, "An attempt was made to create more links on a file than the file system supports."},
    {1150, "The specified program requires a newer version of the operating system."},
    {1164, "The indicated device requires reinitialization due to hardware errors."},
    {1165, "The device has indicated that cleaning is required before further operations are attempted."},
    {1166, "The device has indicated that its door is open."},
    {1167, "The device is not connected."},
    {1168, "Element not found."},
    {1200, "The specified device name is invalid."},
    {1203,
     "The network path was either typed incorrectly, does not exist, or the network provider is not "
     "currently available."},
    {1222, "The network is not present or not started."},
    {1223, "The operation was canceled by the user."},
    {1224, "The requested operation cannot be performed on a file with a user-mapped section open."},
    {1225, "The remote computer refused the network connection."},
    {1226, "The network connection was gracefully closed."},
    {1229, "An operation was attempted on a nonexistent network connection."},
    {1231, "The network location cannot be reached."},
    {1232, "The network location cannot be reached."},
    {1233, "The network location cannot be reached."},
    {1234, "No service is operating at the destination network endpoint on the remote system."},
    {1235, "The request was aborted."},
    {1236, "The network connection was aborted by the local system."},
    {1237, "The operation could not be completed. A retry should be performed."},
    {1244, "The operation being requested was not performed because the user has not been authenticated."},
    {1256, "The remote system is not available."},
    {1265, "The system cannot contact a domain controller to service the authentication request."},
    {1295, "The requested file operation failed because the storage quota was exceeded."},
    {1314, "A required privilege is not held by the client."},
    {1326, "The user name or password is incorrect."},
    {1392, "The file or directory is corrupted and unreadable."},
    {1393, "The disk structure is corrupted and unreadable."},
    {1400, "Invalid window handle."},
    {1450, "Insufficient system resources exist to complete the requested service."},
    {1453, "Insufficient quota to complete the requested service."},
    {1460, "This operation returned because the timeout period expired."},
    {1785, "The disk media is not recognized. It may not be formatted."},
    {1816, "Not enough quota is available to process this command."},
    {1920, "The file cannot be accessed by the system."},
    {1921, "The name of the file cannot be resolved by the system."},
});

constexpr bool ascending() {
  for (std::size_t i = 1; i < kTexts.size(); ++i) {
    if (kTexts[i - 1].code >= kTexts[i].code) return false;
  }
  return true;
}
static_assert(ascending());

}  // namespace

std::string systemErrorText(ErrorCode code) {
  const auto* const found =
      std::lower_bound(kTexts.begin(), kTexts.end(), code,
                       [](const ErrorText& entry, ErrorCode wanted) { return entry.code < wanted; });
  return found != kTexts.end() && found->code == code ? std::string(found->text) : std::string();
}

ErrorCode fromErrno(int number) {
  switch (number) {
    case 0:
      return kNoError;
    // A link that leads in a circle leads to nothing.
    case ENOENT:
    case ELOOP:
      return kFileNotFound;
    case ENOTDIR:
      return kPathNotFound;
    case EMFILE:
    case ENFILE:
      return kTooManyOpenFiles;
    // A file system that encrypts or asks for a ticket refuses with the three key numbers.
    case EACCES:
    case EPERM:
    case ENOKEY:
    case EKEYEXPIRED:
    case EKEYREVOKED:
      return kAccessDenied;
    case EBADF:
      return 6;
    case ENOMEM:
      return kNotEnoughMemory;
    case EXDEV:
      return kNotSameDevice;
    case EROFS:
      return kWriteProtected;
    case ENODEV:
    case ENXIO:
    case ENOMEDIUM:
      return kNotReady;
    case ETXTBSY:
      return kSharingViolation;
    case ENOLCK:
      return 36;
    case ENOSYS:
    case EOPNOTSUPP:
    case ENOTTY:
      return kNotSupported;
    case EHOSTUNREACH:
      return 53;
    case ESTALE:
    case EPROTO:
    case ECOMM:
      return kUnexpectedNetworkError;
    // ENOTCONN is what a FUSE mount answers whose server has died.
    case EHOSTDOWN:
    case ENOTCONN:
    case ECONNRESET:
    case ECONNABORTED:
    case ENETRESET:
    case ENOLINK:
    case ESHUTDOWN:
      return 64;
    case EINVAL:
      return kInvalidParameter;
    case EPIPE:
      return 109;
    case ENOSPC:
    case EDQUOT:
      return kDiskFull;
    case ETIMEDOUT:
      return 121;
    case EILSEQ:
      return kInvalidName;
    case ENOTEMPTY:
      return kFolderNotEmpty;
    case EBUSY:
    case EAGAIN:
      return kBusy;
    case EEXIST:
      return kAlreadyExists;
    case ENAMETOOLONG:
      return kNameTooLong;
    case EFBIG:
    case EOVERFLOW:
      return kFileTooLarge;
    case EISDIR:
      return kInvalidFolder;
    case ECANCELED:
      return kStopped;
    case EIO:
    case EREMOTEIO:
      return kIoDevice;
    case EDEADLK:
      return 1131;
    case EMLINK:
      return 1142;
    case ECONNREFUSED:
      return 1225;
    case ENETUNREACH:
    case ENETDOWN:
      return 1231;
    // What ext4, XFS and btrfs answer for a damaged structure.
    case EUCLEAN:
    case EBADMSG:
      return 1392;
    case ENOBUFS:
      return 1450;
    case EMEDIUMTYPE:
      return 1785;
    default:
      return kGeneralFailure;
  }
}

}  // namespace tandemize::platform
