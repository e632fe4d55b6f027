// The current folder, and what is known of single files.

#include <algorithm>
#include <utility>

#include "platform/ftp/session.h"

namespace tandemize::platform::ftp {

namespace {

// A full path without parts that the server would take out.
bool isPlainPath(std::string_view path) {
  if (path.empty() || path[0] != '/') return false;
  std::string closed(path);
  closed += '/';
  return closed == "//" ||
         (closed.find("//") == std::string::npos && closed.find("/./") == std::string::npos &&
          closed.find("/../") == std::string::npos);
}

}  // namespace

void Session::noteFolder(std::string_view path) {
  path = withoutTrailingSlash(path);
  if (isPlainPath(path))
    folder_ = std::string(path);
  else
    folder_.reset();
}

ErrorCode Session::currentFolder(std::string& path) {
  if (!folder_) {
    Reply reply;
    const ErrorCode error = ask("PWD", reply);
    if (error != kNoError) return error;
    folder_ = quotedPath(reply.text);
    if (!folder_) return kFtpBadReply;
  }
  // What is known of a server that has gone away is no answer.
  const ErrorCode error = control_.settle();
  if (error == kNoError) path = *folder_;
  return error;
}

ErrorCode Session::setCurrentFolder(std::string_view path) {
  Reply reply;
  const ErrorCode error = ask(commandLine("CWD", withoutTrailingSlash(path)), reply);
  if (error == kNoError) noteFolder(path);
  return error;
}

ErrorCode Session::folderExists(std::string_view path, bool& exists) {
  exists = false;
  if (!fitsInCommand(path)) return kInvalidName;
  std::string before;
  ErrorCode error = currentFolder(before);
  if (error != kNoError) return error;
  std::vector<Step> steps{{commandLine("CWD", withoutTrailingSlash(path)), {}},
                          {commandLine("CWD", before), {}}};
  // A server may name a folder by what no command can hold.
  if (!fitsInCommand(before)) return kFtpBadReply;
  folder_.reset();
  error = askAll(steps);
  if (error != kNoError) return error;
  if (steps[1].reply.good()) folder_ = before;
  exists = steps[0].reply.good() && steps[1].reply.good();
  return kNoError;
}

std::vector<Step> Session::statusSteps(std::string_view path, bool size, bool time) const {
  std::vector<Step> steps;
  if (abilities_.machineListing && (time || size)) {
    steps.push_back({commandLine("MLST", path), {}});
    return steps;
  }
  // Servers tell the size of what they would send, which in the other type is not that of the file.
  const auto type = typeStep(FtpType::Binary);
  if (size && abilities_.sizeCommand && type) steps.push_back(*type);
  if (size && abilities_.sizeCommand) steps.push_back({commandLine("SIZE", path), {}});
  if (time && abilities_.timeCommand) steps.push_back({commandLine("MDTM", path), {}});
  return steps;
}

namespace {

std::string_view factsLine(std::string_view text) {
  // The facts stand in the one line between the first and the last.
  const std::size_t first = text.find('\n');
  if (first == std::string_view::npos) return {};
  const std::string_view rest = text.substr(first + 1);
  return rest.substr(0, rest.find('\n'));
}

void setTime(FtpEntry& entry, FileTime moment, TimePrecision precision) {
  entry.precision = precision;
  entry.creation = entry.lastAccess = entry.lastWrite = moment;
}

void takeFacts(const Reply& reply, FtpEntry& entry) {
  ListedEntry listed;
  const ListedLine line =
      reply.good() ? parseMachineLine(factsLine(reply.text), listed) : ListedLine::Unknown;
  if (line == ListedLine::Unknown) return;
  // A folder asked for by name may be told as the folder itself.
  const bool isFolder = listed.kind == ListedKind::Folder || line == ListedLine::Nothing;
  if (isFolder) entry.attributes = kDirectory;
  entry.hasSize = listed.hasSize && !isFolder;
  entry.size = entry.hasSize ? listed.size : 0;
  if (listed.time.precision != TimePrecision::None) setTime(entry, listed.time.moment, listed.time.precision);
}

void takeSize(const Reply& reply, FtpEntry& entry) {
  std::uint64_t size = 0;
  if (reply.code != 213 || reply.text.empty()) return;
  for (const char c : reply.text.substr(0, 18)) {
    if (c < '0' || c > '9') break;
    size = size * 10 + static_cast<std::uint64_t>(c - '0');
  }
  entry.hasSize = reply.text[0] >= '0' && reply.text[0] <= '9';
  entry.size = size;
}

}  // namespace

void Session::takeStatus(std::span<const Step> steps, FtpEntry& entry) {
  for (const Step& step : steps) {
    noteType(step);
    if (step.line.starts_with("MLST ")) {
      takeFacts(step.reply, entry);
      if (step.reply.unknownCommand() && step.reply.code != 501) abilities_.machineListing = false;
    } else if (step.line.starts_with("SIZE ")) {
      takeSize(step.reply, entry);
      if (step.reply.code == 500 || step.reply.code == 502) abilities_.sizeCommand = false;
    } else if (step.line.starts_with("MDTM ")) {
      if (step.reply.code == 500 || step.reply.code == 502) abilities_.timeCommand = false;
      const auto moment = step.reply.code == 213 ? timeOfStamp(step.reply.text) : std::nullopt;
      if (moment) setTime(entry, *moment, TimePrecision::Second);
    }
  }
}

ErrorCode Session::status(std::string_view path, FtpEntry& entry) {
  entry = {};
  entry.name = std::string(path);
  entry.attributes = 128;
  if (!fitsInCommand(path)) return kInvalidName;
  std::vector<Step> steps = statusSteps(path, true, true);
  const ErrorCode error = askAll(steps);
  if (error != kNoError) return error;
  takeStatus(steps, entry);
  const bool told = entry.hasSize || entry.precision != TimePrecision::None;
  const bool refused = !steps.empty() && std::all_of(steps.begin(), steps.end(), [](const Step& step) {
    return step.line.starts_with("TYPE ") || (step.reply.refused() && !step.reply.unknownCommand());
  });
  return !told && refused ? kFtpRefused : kNoError;
}

}  // namespace tandemize::platform::ftp
