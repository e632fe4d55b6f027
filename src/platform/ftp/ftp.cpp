// The calls of platform/ftp.h: each looks whether the session is free, and keeps it alive while it runs.

#include "platform/ftp.h"

#include <utility>

#include "platform/ftp/search.h"
#include "platform/ftp/session.h"
#include "platform/ftp/transfer.h"

namespace tandemize::platform {

namespace {

using ftp::commandLine;
using ftp::withoutTrailingSlash;

// One call of a session. The session outlives it even if events that run meanwhile close it.
class Call {
 public:
  explicit Call(const std::shared_ptr<ftp::Session>& session) : session_(session) {
    if (session_ == nullptr || session_->events.ended())
      error_ = kFtpConnectionLost;
    else if (session_->running || session_->transferOpen)
      error_ = kFtpBusy;
    else
      session_->running = true;
  }
  ~Call() {
    if (error_ == kNoError) session_->running = false;
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  [[nodiscard]] ErrorCode error() const { return error_; }
  [[nodiscard]] ftp::Session* operator->() const { return session_.get(); }
  [[nodiscard]] const std::shared_ptr<ftp::Session>& session() const { return session_; }

  [[nodiscard]] ErrorCode ask(const std::string& line) const {
    ftp::Reply reply;
    return error_ != kNoError ? error_ : session_->ask(line, reply);
  }

 private:
  std::shared_ptr<ftp::Session> session_;
  ErrorCode error_ = kNoError;
};

// While data moves, other calls are shut out by the open transfer; this shuts out those on the same handle.
class Moving {
 public:
  explicit Moving(ftp::Session& session) : session_(session), free_(!session.running) {
    if (free_) session_.running = true;
  }
  ~Moving() {
    if (free_) session_.running = false;
  }
  Moving(const Moving&) = delete;
  Moving& operator=(const Moving&) = delete;
  [[nodiscard]] bool free() const { return free_; }

 private:
  ftp::Session& session_;
  bool free_;
};

}  // namespace

// --- data

FtpData::FtpData() = default;
FtpData::~FtpData() = default;
FtpData::FtpData(FtpData&&) noexcept = default;
FtpData& FtpData::operator=(FtpData&&) noexcept = default;

std::optional<std::uint64_t> FtpData::size() const {
  return transfer_ ? transfer_->size : std::nullopt;
}

std::optional<FileTime> FtpData::time() const {
  return transfer_ ? transfer_->time : std::nullopt;
}

ErrorCode FtpData::read(void* buffer, std::size_t size, std::size_t& got) {
  got = 0;
  if (!transfer_) return kFtpConnectionLost;
  const Moving moving(transfer_->session());
  return moving.free() ? transfer_->read(static_cast<char*>(buffer), size, got) : kFtpBusy;
}

ErrorCode FtpData::write(const void* bytes, std::size_t size) {
  if (!transfer_) return kFtpConnectionLost;
  const Moving moving(transfer_->session());
  return moving.free() ? transfer_->write({static_cast<const char*>(bytes), size}) : kFtpBusy;
}

ErrorCode FtpData::close() {
  if (!transfer_) return kFtpConnectionLost;
  if (transfer_->session().running) return kFtpBusy;
  const std::shared_ptr<ftp::Session> session = transfer_->session().shared_from_this();
  const Moving moving(*session);
  const std::unique_ptr<ftp::Transfer> transfer = std::move(transfer_);
  return session->events.ended() ? kFtpConnectionLost : transfer->close();
}

void FtpData::abandon() {
  if (transfer_ && !transfer_->session().running) transfer_.reset();
}

// --- search

FtpSearch::FtpSearch() = default;
FtpSearch::~FtpSearch() = default;
FtpSearch::FtpSearch(FtpSearch&&) noexcept = default;
FtpSearch& FtpSearch::operator=(FtpSearch&&) noexcept = default;

ErrorCode FtpSearch::next(FtpEntry& entry) {
  if (!search_ || search_->next == search_->entries.size()) return kNoMoreFiles;
  entry = std::move(search_->entries[search_->next++]);
  return kNoError;
}

void FtpSearch::close() {
  search_.reset();
}

std::size_t FtpSearch::unknownLines() const {
  return search_ ? search_->unknownLines : 0;
}

// --- session

FtpSession::FtpSession() = default;
FtpSession::~FtpSession() {
  close();
}
FtpSession::FtpSession(FtpSession&&) noexcept = default;
FtpSession& FtpSession::operator=(FtpSession&& other) noexcept {
  if (this != &other) {
    close();
    session_ = std::move(other.session_);
    limits_ = other.limits_;
    keepGoing_ = std::move(other.keepGoing_);
  }
  return *this;
}

void FtpSession::setLimits(const FtpLimits& limits) {
  limits_ = limits;
  if (session_) session_->limits = limits;
}

void FtpSession::setKeepGoing(KeepGoing keepGoing) {
  keepGoing_ = std::move(keepGoing);
  if (session_) session_->events.set(keepGoing_);
}

ErrorCode FtpSession::connect(const FtpServer& server) {
  if (session_ && session_->running) return kFtpBusy;
  close();
  session_ = std::make_shared<ftp::Session>();
  session_->limits = limits_;
  session_->events.set(keepGoing_);
  const Call call(session_);
  return call->connect(server);
}

void FtpSession::close() {
  if (!session_) return;
  session_->events.end();
  // A call that is in the middle of something finds out by itself and lets go.
  if (!session_->running) session_->leave();
  session_.reset();
}

bool FtpSession::isOpen() const {
  return session_ && session_->control().isOpen();
}

std::string FtpSession::lastReply() const {
  return session_ ? session_->control().words() : std::string();
}

ErrorCode FtpSession::currentFolder(std::string& path) {
  const Call call(session_);
  return call.error() != kNoError ? call.error() : call->currentFolder(path);
}

ErrorCode FtpSession::setCurrentFolder(std::string_view path) {
  const Call call(session_);
  return call.error() != kNoError ? call.error() : call->setCurrentFolder(path);
}

ErrorCode FtpSession::folderExists(std::string_view path, bool& exists) {
  exists = false;
  const Call call(session_);
  return call.error() != kNoError ? call.error() : call->folderExists(path, exists);
}

ErrorCode FtpSession::createFolder(std::string_view path) {
  return Call(session_).ask(commandLine("MKD", withoutTrailingSlash(path)));
}

ErrorCode FtpSession::removeFolder(std::string_view path) {
  const Call call(session_);
  const ErrorCode error = call.ask(commandLine("RMD", withoutTrailingSlash(path)));
  // It may be the current folder, or one above it, that has gone.
  if (error == kNoError) call->forgetFolder();
  return error;
}

ErrorCode FtpSession::deleteFile(std::string_view path) {
  return Call(session_).ask(commandLine("DELE", path));
}

ErrorCode FtpSession::rename(std::string_view from, std::string_view to) {
  const Call call(session_);
  if (call.error() != kNoError) return call.error();
  if (!ftp::fitsInCommand(to)) return kInvalidName;
  ftp::Reply reply;
  const ErrorCode error = call->control().ask(commandLine("RNFR", from), reply);
  if (error != kNoError) return error;
  if (!reply.good() && !reply.wantsMore()) return kFtpRefused;
  call->forgetFolder();
  return call->ask(commandLine("RNTO", to), reply);
}

ErrorCode FtpSession::fileStatus(std::string_view path, FtpEntry& entry) {
  const Call call(session_);
  return call.error() != kNoError ? call.error() : call->status(path, entry);
}

ErrorCode FtpSession::command(std::string_view line) {
  const Call call(session_);
  const ErrorCode error = call.ask(std::string(line));
  if (call.error() == kNoError && error != kInvalidName) call->forgetAll();
  return error;
}

namespace {

// Begins a transfer; `learn` takes what the replies before it told.
template <typename Learn>
ErrorCode begin(const Call& call, ftp::Direction direction, ftp::Opening& opening,
                std::unique_ptr<ftp::Transfer>& transfer, Learn learn) {
  auto begun = std::make_unique<ftp::Transfer>(call.session(), direction);
  const ErrorCode error = begun->open(opening);
  if (error != kNoError) return error;
  learn(*begun);
  transfer = std::move(begun);
  return kNoError;
}

}  // namespace

ErrorCode FtpSession::openRead(std::string_view path, FtpData& data, Ask ask) {
  const Call call(session_);
  if (call.error() != kNoError) return call.error();
  ftp::Opening opening;
  opening.command = commandLine("RETR", path);
  opening.ahead = call->statusSteps(path, ask.size && !call->abilities().sizeInReply, ask.time);
  return begin(call, ftp::Direction::FromServer, opening, data.transfer_, [&](ftp::Transfer& transfer) {
    FtpEntry entry;
    call->takeStatus(opening.ahead, entry);
    if (entry.hasSize) transfer.size = entry.size;
    if (entry.precision != TimePrecision::None) transfer.time = entry.lastWrite;
    const auto told = ftp::sizeInReply(opening.beginning.text);
    if (!told) return;
    call->abilities().sizeInReply = true;
    transfer.size = told;
  });
}

ErrorCode FtpSession::openWrite(std::string_view path, FtpData& data) {
  const Call call(session_);
  if (call.error() != kNoError) return call.error();
  ftp::Opening opening;
  opening.command = commandLine("STOR", path);
  return begin(call, ftp::Direction::ToServer, opening, data.transfer_, [](ftp::Transfer&) {});
}

ErrorCode FtpSession::openCommand(std::string_view line, FtpType type, FtpData& data) {
  const Call call(session_);
  if (call.error() != kNoError) return call.error();
  ftp::Opening opening;
  opening.command = std::string(line);
  opening.type = type;
  return begin(call, ftp::Direction::FromServer, opening, data.transfer_, [](ftp::Transfer&) {});
}

namespace {

ErrorCode search(const Call& call, const std::string* folder, std::unique_ptr<ftp::Search>& open,
                 FtpEntry& first) {
  if (call.error() != kNoError) return call.error();
  if (call->searchOpen) return kFtpBusy;
  auto found = std::make_unique<ftp::Search>(call.session());
  const ErrorCode error = call->list(found->entries, found->unknownLines, folder);
  if (error != kNoError) return error;
  if (found->entries.empty()) return kNoMoreFiles;
  first = std::move(found->entries[found->next++]);
  open = std::move(found);
  return kNoError;
}

}  // namespace

ErrorCode FtpSession::openSearch(FtpSearch& found, FtpEntry& first) {
  return search(Call(session_), nullptr, found.search_, first);
}

ErrorCode FtpSession::openSearch(std::string_view folder, FtpSearch& found, FtpEntry& first) {
  const std::string path(folder);
  return search(Call(session_), &path, found.search_, first);
}

}  // namespace tandemize::platform
