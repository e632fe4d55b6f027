// Reading a folder's listing.

#include "platform/ftp/search.h"

#include <algorithm>
#include <utility>

#include "platform/ftp/transfer.h"

namespace tandemize::platform::ftp {

namespace {

constexpr std::size_t kBlock = std::size_t{64} << 10U;
constexpr std::size_t kLongestLine = std::size_t{64} << 10U;
constexpr std::uint32_t kPlainFile = 128;

// Entries and lines of one listing, as they come.
class Lines {
 public:
  Lines(const FtpLimits& limits, bool machine) : limits_(limits), machine_(machine) {}

  // False when there is no end to it.
  bool add(std::string_view bytes) {
    received_ += bytes.size();
    rest_ += bytes;
    std::size_t at = 0;
    for (std::size_t end = rest_.find('\n'); end != std::string::npos; end = rest_.find('\n', at)) {
      takeLine(std::string_view(rest_).substr(at, end - at));
      at = end + 1;
    }
    rest_.erase(0, at);
    return received_ <= limits_.listingBytes && rest_.size() <= kLongestLine &&
           entries_.size() <= limits_.listingEntries;
  }
  void end() {
    if (!rest_.empty()) takeLine(rest_);
    rest_.clear();
  }

  [[nodiscard]] std::vector<ListedEntry>& entries() { return entries_; }
  [[nodiscard]] std::size_t unknown() const { return unknown_; }
  [[nodiscard]] bool anyKnown() const { return known_ > 0; }

 private:
  void takeLine(std::string_view line) {
    while (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    ListedEntry entry;
    const ListedLine kind = machine_ ? parseMachineLine(line, entry) : parseListLine(line, entry);
    if (kind == ListedLine::Unknown) ++unknown_;
    if (kind != ListedLine::Entry) return;
    ++known_;
    if (entry.kind != ListedKind::Other && staysInFolder(entry.name)) entries_.push_back(std::move(entry));
  }

  const FtpLimits& limits_;
  bool machine_;
  std::string rest_;
  std::vector<ListedEntry> entries_;
  std::size_t received_ = 0, unknown_ = 0, known_ = 0;
};

// Some servers answer a listing of nothing with a refusal.
bool saysNoFiles(const std::string& words) {
  std::string lower(words);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower.starts_with("450 no files") || lower.starts_with("550 no files");
}

// vsftpd 3.0.3 answers 226 to the listing of a folder that it cannot read:
// "226 Transfer done (but failed to open directory)."
bool saysUnreadable(const std::string& words) {
  return words.find("failed to open directory") != std::string::npos;
}

}  // namespace

// One listing of the current folder, by the way that the server offers.
class Lister {
 public:
  explicit Lister(Session& session) : session_(session) {}

  ErrorCode run(std::vector<FtpEntry>& entries, std::size_t& unknown, const std::string* folder) {
    ErrorCode error = session_.abilities().machineListing ? list("MLSD", folder) : kFtpRefused;
    if (!session_.abilities().machineListing) error = listPlainly(folder);
    if (error != kNoError) return error;
    unknown = unknown_;
    if (entries_.empty() && unknown_ > 0 && !anyKnown_) return kFtpBadReply;
    if (!session_.clock().known()) learnClock();
    return convert(entries);
  }

 private:
  ErrorCode list(const std::string& command, const std::string* folder) {
    Transfer transfer(session_.shared_from_this(), Direction::FromServer);
    Opening opening;
    opening.anyType = true;
    opening.command = command;
    if (folder != nullptr) opening.ahead.push_back({commandLine("CWD", withoutTrailingSlash(*folder)), {}});
    ErrorCode error = transfer.open(opening);
    noteFolder(opening, folder);
    if (error == kFtpRefused) return refused(command, opening.beginning.code);
    Lines lines(session_.limits, command == "MLSD");
    if (error == kNoError) error = receive(transfer, lines);
    if (error != kNoError) return error;
    error = transfer.close();
    const std::string& words = session_.control().words();
    if (error == kFtpRefused && saysNoFiles(words)) error = kNoError;
    if (error == kNoError && saysUnreadable(words)) error = kFtpRefused;
    entries_ = std::move(lines.entries());
    unknown_ = lines.unknown();
    anyKnown_ = lines.anyKnown();
    return error;
  }

  void noteFolder(const Opening& opening, const std::string* folder) {
    if (folder == nullptr) return;
    for (const Step& step : opening.ahead) {
      if (step.line.starts_with("CWD ") && step.reply.good()) session_.noteFolder(*folder);
    }
  }

  ErrorCode refused(const std::string& command, int code) {
    if (command == "MLSD") {
      // Only these speak of the command itself: pyftpdlib 1.5.7 answers 501 to MLSD of what is no folder.
      if (code == 500 || code == 502) session_.abilities().machineListing = false;
      return kFtpRefused;
    }
    if (!saysNoFiles(session_.control().words())) return kFtpRefused;
    entries_.clear();
    unknown_ = 0;
    anyKnown_ = false;
    return kNoError;
  }

  static ErrorCode receive(Transfer& transfer, Lines& lines) {
    std::string block(kBlock, '\0');
    for (;;) {
      std::size_t got = 0;
      const ErrorCode error = transfer.readSome(block.data(), block.size(), got);
      if (error != kNoError) return error;
      if (got == 0) break;
      if (!lines.add(std::string_view(block).substr(0, got))) return kFtpBadReply;
    }
    lines.end();
    return kNoError;
  }

  // Without "-a" many servers leave out names that begin with "."; some take "-a" for a name. As long as no
  // listing with "-a" has shown anything, an empty or refused one has to be borne out by the plain command.
  ErrorCode listPlainly(const std::string* folder) {
    Abilities& abilities = session_.abilities();
    if (abilities.listOption == ListOption::Refused) return list("LIST", folder);
    ErrorCode error = list("LIST -a", folder);
    if (error == kNoError && (anyKnown_ || unknown_ > 0)) abilities.listOption = ListOption::Taken;
    if (abilities.listOption == ListOption::Taken || (error != kNoError && error != kFtpRefused))
      return error;
    error = list("LIST", folder);
    if (error == kNoError && (anyKnown_ || unknown_ > 0)) abilities.listOption = ListOption::Refused;
    return error;
  }

  // A file whose date is told to the minute shows, by its date in UTC, in which zone the server lists.
  void learnClock() {
    int tries = 3;
    for (const ListedEntry& entry : entries_) {
      if (entry.time.utc || entry.time.precision != TimePrecision::Minute || entry.kind != ListedKind::File)
        continue;
      if (!session_.abilities().timeCommand || session_.clock().known() || tries-- == 0) return;
      if (!fitsInCommand(entry.name)) continue;
      std::vector<Step> steps{{commandLine("MDTM", entry.name), {}}};
      if (session_.askAll(steps) != kNoError) return;
      FtpEntry status;
      session_.takeStatus(steps, status);
      if (status.precision == TimePrecision::Second)
        session_.clock().learn(entry.time, status.lastWrite.seconds);
    }
  }

  ErrorCode convert(std::vector<FtpEntry>& entries) {
    entries.clear();
    entries.reserve(entries_.size());
    for (ListedEntry& listed : entries_) {
      FtpEntry entry;
      entry.attributes = listed.kind == ListedKind::Folder ? kDirectory : kPlainFile;
      entry.hasSize = listed.hasSize && listed.kind == ListedKind::File;
      entry.size = entry.hasSize ? listed.size : 0;
      if (const auto moment = session_.clock().utcOf(listed.time)) {
        entry.precision = listed.time.precision;
        entry.creation = entry.lastAccess = entry.lastWrite = *moment;
      }
      entry.name = std::move(listed.name);
      bool there = true;
      if (listed.kind == ListedKind::Link) {
        const ErrorCode error = follow(entry, listed.target, there);
        if (error != kNoError) return error;
      }
      if (there) entries.push_back(std::move(entry));
    }
    entries_.clear();
    return kNoError;
  }

  // What a link leads to shows when one goes there.
  ErrorCode follow(FtpEntry& entry, const std::string& target, bool& there) {
    there = false;
    std::string here;
    ErrorCode error = session_.currentFolder(here);
    if (error != kNoError) return error;
    if (!fitsInCommand(entry.name) || (!target.empty() && leadsUpwards(here, target))) return kNoError;
    std::vector<Step> steps{
        {commandLine("CWD", entry.name), {}}, {"PWD", {}}, {commandLine("CWD", here), {}}};
    const std::size_t ofStatus = steps.size();
    for (Step& step : session_.statusSteps(entry.name, true, true)) steps.push_back(std::move(step));
    session_.forgetFolder();
    error = session_.askAll(steps);
    if (error != kNoError) return error;
    if (!steps[2].reply.good()) return kFtpRefused;
    session_.noteFolder(here);
    entry.isLink = true;
    if (steps[0].reply.good()) {
      const auto inside = quotedPath(steps[1].reply.text);
      entry.attributes = kDirectory;
      there = inside && !holdsFolder(*inside, here);
      return kNoError;
    }
    entry.attributes = kPlainFile;
    FtpEntry status;
    session_.takeStatus(std::span(steps).subspan(ofStatus), status);
    there = status.hasSize || status.precision != TimePrecision::None;
    entry.hasSize = status.hasSize;
    entry.size = status.size;
    if (status.precision == TimePrecision::None) return kNoError;
    entry.precision = status.precision;
    entry.creation = entry.lastAccess = entry.lastWrite = status.lastWrite;
    return kNoError;
  }

  Session& session_;
  std::vector<ListedEntry> entries_;
  std::size_t unknown_ = 0;
  bool anyKnown_ = false;
};

ErrorCode Session::list(std::vector<FtpEntry>& entries, std::size_t& unknownLines,
                        const std::string* folder) {
  return Lister(*this).run(entries, unknownLines, folder);
}

}  // namespace tandemize::platform::ftp
