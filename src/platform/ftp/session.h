// What one FTP session knows and does; the handles of platform/ftp.h speak for it.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ftp.h"
#include "platform/ftp/control.h"
#include "platform/ftp/events.h"
#include "platform/ftp/listing.h"
#include "platform/ftp/listtime.h"

namespace tandemize::platform::ftp {

// Whether "LIST -a" is a listing with all names.
enum class ListOption : std::uint8_t { Unknown, Taken, Refused };

// What the server has said that it can, or has shown.
struct Abilities {
  bool machineListing = false;  // MLSD and MLST
  bool utf8 = false;
  std::string factsToAsk;   // not empty: the server has a date or a size and does not tell it unasked
  bool sizeCommand = true;  // until it says that it does not know SIZE, MDTM
  bool timeCommand = true;
  bool sizeInReply = false;  // the reply that begins a download tells its size
  ListOption listOption = ListOption::Unknown;
};

// A command of a series, and its reply.
struct Step {
  std::string line;
  Reply reply;
};

// A data connection and the command that it belongs to.
struct Opening {
  std::vector<Step> ahead;  // asked before, on the same way where the server takes that
  std::string command;
  FtpType type = FtpType::Binary;
  bool anyType = false;  // the command's data are the same whatever the type
  Reply beginning;       // the reply to the command
};

class Session : public std::enable_shared_from_this<Session> {
 public:
  Session() : control_(events, limits) {}

  Events events;
  FtpLimits limits;

  [[nodiscard]] ErrorCode connect(const FtpServer& server);
  void leave();
  [[nodiscard]] ControlLine& control() { return control_; }
  [[nodiscard]] const ControlLine& control() const { return control_; }
  [[nodiscard]] Abilities& abilities() { return abilities_; }
  [[nodiscard]] ServerClock& clock() { return clock_; }

  // One command; kFtpRefused unless the reply is 2xx.
  [[nodiscard]] ErrorCode ask(const std::string& line, Reply& reply);
  // Several, in one packet where the server takes that. A refused one is no failure of the series.
  [[nodiscard]] ErrorCode askAll(std::span<Step> steps);
  // The command that sets the type, if it has to be sent.
  [[nodiscard]] std::optional<Step> typeStep(FtpType type) const;
  void noteType(const Step& step);

  [[nodiscard]] ErrorCode currentFolder(std::string& path);
  [[nodiscard]] ErrorCode setCurrentFolder(std::string_view path);
  [[nodiscard]] ErrorCode folderExists(std::string_view path, bool& exists);
  void noteFolder(std::string_view path);  // a CWD to it has succeeded
  void forgetFolder() { folder_.reset(); }
  void forgetAll();  // after a command whose effects are not known

  [[nodiscard]] ErrorCode status(std::string_view path, FtpEntry& entry);
  // The commands that tell size and date of a file, and what their replies say.
  [[nodiscard]] std::vector<Step> statusSteps(std::string_view path, bool size, bool time) const;
  void takeStatus(std::span<const Step> steps, FtpEntry& entry);

  // Opens a data connection and begins the command. After a failure nothing is open; where the command was
  // on its way already its reply stays owed.
  [[nodiscard]] ErrorCode open(Opening& opening, TcpChannel& data);

  [[nodiscard]] ErrorCode list(std::vector<FtpEntry>& entries, std::size_t& unknownLines,
                               const std::string* folder);

  bool transferOpen = false, searchOpen = false;
  bool running = false;  // a call is in progress

 private:
  [[nodiscard]] ErrorCode logIn(const FtpServer& server);
  [[nodiscard]] ErrorCode greeted();
  [[nodiscard]] ErrorCode learnAbilities();
  [[nodiscard]] ErrorCode askTogether(std::span<Step> steps);
  [[nodiscard]] ErrorCode tellPreferences();

  friend class DataOpener;

  ControlLine control_;
  Abilities abilities_;
  ServerClock clock_;
  std::optional<std::string> folder_;  // the current one, if known
  char type_ = 0;                      // 'A', 'I', or 0 when not known
  bool passive_ = true;
  bool together_ = true;       // commands may go out before the reply to the one before
  bool dataTogether_ = false;  // a data connection and its command too: seen to work one after the other
  bool extended_ = true;       // EPSV, EPRT; else PASV, PORT
};

}  // namespace tandemize::platform::ftp
