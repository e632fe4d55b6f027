// One session with an FTP server: a control connection, and for each listing or file a data connection.
//
// Paths are the server's own ("/folder/file"), bytes as they are; a path or a word with a line end or a NUL
// in it is refused with kInvalidName before anything is sent. Folder paths may end with "/". Every call waits
// in steps between which it lets events run; the numbers by which calls fail are those of errors.h or one of
// these:
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/errors.h"
#include "platform/files.h"
#include "platform/sockets.h"

namespace tandemize::platform {

inline constexpr ErrorCode kFtpTimedOut = 12002;
inline constexpr ErrorCode kFtpRefused = 12003;  // the server said no; `lastReply` has its words
inline constexpr ErrorCode kFtpNameNotResolved = 12007;
inline constexpr ErrorCode kFtpWrongUser = 12013;
inline constexpr ErrorCode kFtpWrongPassword = 12014;
inline constexpr ErrorCode kFtpLoginFailed = 12015;
inline constexpr ErrorCode kFtpStopped = 12017;        // the callback ended the wait
inline constexpr ErrorCode kFtpWrongHandle = 12018;    // reading from an upload, writing to a download
inline constexpr ErrorCode kFtpCannotConnect = 12029;  // to the server, or to the port that it named for data
inline constexpr ErrorCode kFtpConnectionLost = 12030;  // ended by the server; every later call gives it too
inline constexpr ErrorCode kFtpConnectionReset = 12031;
inline constexpr ErrorCode kFtpBusy = 12110;  // another handle of the session is open
inline constexpr ErrorCode kFtpNoPassiveMode = 12112;
inline constexpr ErrorCode kFtpBadReply = 12152;  // what came is no FTP, or there is no end to it

struct FtpServer {
  std::string host;
  std::uint16_t port = 21;
  std::string user;  // empty: "anonymous"
  std::string password;
  bool passive = true;  // the server opens the port for data, not this side; neither falls back to the other
};

// In milliseconds, and in size.
struct FtpLimits {
  unsigned connect = 30'000;  // to be connected, name resolving included
  unsigned silence = 60'000;  // a reply may take, or data may pause, so long
  unsigned closing = 3'000;   // the same after a download or an upload was given up, before and after ABOR
  std::size_t listingEntries = 1'000'000;            // a longer listing is kFtpBadReply
  std::size_t listingBytes = std::size_t{1} << 28U;  // the same
};

// How exactly the server told a date.
enum class TimePrecision : std::uint8_t { None, Day, Minute, Second };

// An entry of a folder. `lastWrite` is in UTC: MLSD, MLST and MDTM tell it so. LIST tells the server's local
// time; it counts as UTC plus the offset that MDTM of one of the listed files shows, else as this machine's
// local time; where only a day is told it is midnight of that day by this machine's clock. What the server
// does not tell is as `lastWrite`. `attributes` is kDirectory or 128 (a plain file).
struct FtpEntry : FoundFile {
  TimePrecision precision = TimePrecision::None;  // with None all times are 0
  bool hasSize = false;
  bool isLink = false;  // attributes, size and time are those of what it leads to
};

namespace ftp {
class Session;
class Transfer;
class Search;
}  // namespace ftp

enum class FtpType : char { Ascii = 'A', Binary = 'I' };

// An open transfer, one at a time a session; while it is open every other call of the session gives kFtpBusy.
// Destroying an open one is `abandon`.
class FtpData {
 public:
  FtpData();
  ~FtpData();
  FtpData(FtpData&&) noexcept;
  FtpData& operator=(FtpData&&) noexcept;

  [[nodiscard]] bool isOpen() const { return transfer_ != nullptr; }
  // What `openRead` learnt about the file.
  [[nodiscard]] std::optional<std::uint64_t> size() const;
  [[nodiscard]] std::optional<FileTime> time() const;

  // Fills the buffer; fewer bytes mean the end of the data, which a server that dies or gives up causes as
  // well: only `close` can tell. After a failure `got` tells what came before it.
  [[nodiscard]] ErrorCode read(void* buffer, std::size_t size, std::size_t& got);
  // Writes all of it. kFtpRefused: the server has given up on the file.
  [[nodiscard]] ErrorCode write(const void* bytes, std::size_t size);

  // Ends the transfer; kFtpRefused if the server did not take or give the file whole. A download not read to
  // its end is abandoned, which is no failure. The handle is free afterwards, whatever the result.
  [[nodiscard]] ErrorCode close();
  // Drops the data connection, without a wait; of an upload a part stays with the server. The session lives
  // on: the next command first reads what the server says to it.
  void abandon();

 private:
  friend class FtpSession;
  std::unique_ptr<ftp::Transfer> transfer_;
};

// The entries of a folder, in the server's order, without "." and "..". The folder is read whole when the
// search opens, so one that cannot be read fails there. Entries whose name holds "/" or "\" are left out, so
// no name leads out of its folder; so are sockets, pipes, devices, links to nothing, and links to a folder
// that holds the link. An open search keeps the session from opening another one, and from nothing else.
class FtpSearch {
 public:
  FtpSearch();
  ~FtpSearch();
  FtpSearch(FtpSearch&&) noexcept;
  FtpSearch& operator=(FtpSearch&&) noexcept;

  [[nodiscard]] bool isOpen() const { return search_ != nullptr; }
  [[nodiscard]] ErrorCode next(FtpEntry& entry);  // kNoMoreFiles at the end
  void close();
  // Lines of the listing that have no known form. If nothing else came, opening gives kFtpBadReply.
  [[nodiscard]] std::size_t unknownLines() const;

 private:
  friend class FtpSession;
  std::unique_ptr<ftp::Search> search_;
};

class FtpSession {
 public:
  FtpSession();
  ~FtpSession();  // as `close`
  FtpSession(FtpSession&&) noexcept;
  FtpSession& operator=(FtpSession&&) noexcept;

  // Both hold for the session that is open and for the next.
  void setLimits(const FtpLimits& limits);
  // What lets events run. Called every 20 ms in a wait, and as often while data flows. It must not use the
  // session, whose calls then give kFtpBusy, but may close or destroy it; the call that waits gives
  // kFtpStopped. What cleans up after a stop (closing, deleting a part) needs a callback that says "go on".
  void setKeepGoing(KeepGoing keepGoing);

  // Connects and logs in. Another session of this object is closed first. 530 to the user name is
  // kFtpWrongUser, 530 to the password kFtpWrongPassword, any other refusal kFtpLoginFailed;
  // kFtpNameNotResolved, kFtpCannotConnect, kFtpTimedOut...
  [[nodiscard]] ErrorCode connect(const FtpServer& server);
  // Takes leave without waiting for an answer. Open handles only give kFtpConnectionLost from then on.
  void close();
  [[nodiscard]] bool isOpen() const;  // as far as is known; it takes a call to notice a dead server
  // Code and text of the last reply in one line, without control characters, at most 1,000 bytes. Never holds
  // the password.
  [[nodiscard]] std::string lastReply() const;

  // The current folder: "/" at the end only for the root. After `setCurrentFolder` with a full path it is
  // that path, which is not asked again.
  [[nodiscard]] ErrorCode currentFolder(std::string& path);
  [[nodiscard]] ErrorCode setCurrentFolder(std::string_view path);
  // Whether `path` can be made current, asked anew each time; the current folder stays as it was. `exists` is
  // false too when the way back failed. A refusal is an answer and no failure.
  [[nodiscard]] ErrorCode folderExists(std::string_view path, bool& exists);

  [[nodiscard]] ErrorCode createFolder(std::string_view path);
  [[nodiscard]] ErrorCode removeFolder(std::string_view path);
  [[nodiscard]] ErrorCode deleteFile(std::string_view path);
  [[nodiscard]] ErrorCode rename(std::string_view from, std::string_view to);
  // Size and date of a file: `precision` None and `hasSize` false tell what the server does not say. The name
  // is the path.
  [[nodiscard]] ErrorCode fileStatus(std::string_view path, FtpEntry& entry);
  // A command of the caller's own, for instance "SITE CHMOD 600 /a", without data.
  [[nodiscard]] ErrorCode command(std::string_view line);

  // What `openRead` asks beside the file, for the price of one command or two on the same way.
  struct Ask {
    bool size = false, time = false;
  };
  [[nodiscard]] ErrorCode openRead(std::string_view path, FtpData& data, Ask ask);
  [[nodiscard]] ErrorCode openRead(std::string_view path, FtpData& data) { return openRead(path, data, {}); }
  // Makes the file, or empties one that is there.
  [[nodiscard]] ErrorCode openWrite(std::string_view path, FtpData& data);
  // A command of the caller's own whose answer is data: "LIST", "RETR /a".
  [[nodiscard]] ErrorCode openCommand(std::string_view line, FtpType type, FtpData& data);

  // Lists the current folder. kNoMoreFiles, with the search not open: the folder is empty.
  [[nodiscard]] ErrorCode openSearch(FtpSearch& search, FtpEntry& first);
  // Makes `folder` current and lists it, all on one way to the server. If it cannot be made current, what is
  // listed is the folder that is.
  [[nodiscard]] ErrorCode openSearch(std::string_view folder, FtpSearch& search, FtpEntry& first);

 private:
  std::shared_ptr<ftp::Session> session_;
  FtpLimits limits_;
  KeepGoing keepGoing_;
};

}  // namespace tandemize::platform
