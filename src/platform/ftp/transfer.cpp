#include "platform/ftp/transfer.h"

#include <utility>

namespace tandemize::platform::ftp {

Transfer::~Transfer() {
  if (open_) abandon();
}

ErrorCode Transfer::open(Opening& opening) {
  const ErrorCode error = session_->open(opening, data_);
  if (error != kNoError) return error;
  open_ = session_->transferOpen = true;
  if (!opening.beginning.preliminary()) finalReply_ = opening.beginning;
  return kNoError;
}

void Transfer::release() {
  open_ = session_->transferOpen = false;
  data_.close(false);
}

ErrorCode Transfer::readSome(char* buffer, std::size_t room, std::size_t& got) {
  got = 0;
  if (atEnd_) return kNoError;
  for (;;) {
    ErrorCode error = data_.read(buffer, room, got);
    if (error == kNoError) atEnd_ = got == 0;
    if (error == kSocketWouldBlock) {
      error = session_->events.waitToRead(data_, session_->limits.silence);
      if (error == kNoError) continue;
    }
    if (error == kNoError) error = session_->events.look();
    return ftpError(error, false);
  }
}

ErrorCode Transfer::read(char* buffer, std::size_t room, std::size_t& got) {
  got = 0;
  if (!open_) return kFtpConnectionLost;
  if (direction_ != Direction::FromServer) return kFtpWrongHandle;
  if (session_->events.ended()) return kFtpConnectionLost;
  while (got < room && !atEnd_) {
    std::size_t some = 0;
    const ErrorCode error = readSome(buffer + got, room - got, some);
    got += some;
    if (error != kNoError) return error;
  }
  return kNoError;
}

ErrorCode Transfer::write(std::string_view bytes) {
  if (!open_) return kFtpConnectionLost;
  if (direction_ != Direction::ToServer) return kFtpWrongHandle;
  while (!bytes.empty()) {
    if (!session_->control().isOpen()) return kFtpConnectionLost;
    std::size_t taken = 0;
    ErrorCode error = data_.write(bytes.data(), bytes.size(), taken);
    bytes.remove_prefix(taken);
    if (error == kSocketWouldBlock)
      error = awaitRoom();
    else if (error != kNoError)
      error = writeFailed(ftpError(error, false));
    else
      error = ftpError(session_->events.look(), false);
    if (error != kNoError) return error;
  }
  return kNoError;
}

// A reply while data still goes out means that the server has given up on it.
ErrorCode Transfer::awaitRoom() {
  Awaited both[] = {{&data_, false, true}, {&session_->control(), true}};
  const ErrorCode error = ftpError(session_->events.wait(both, session_->limits.silence), false);
  if (error != kNoError) return error;
  return both[1].readable ? serverSpoke(session_->limits.silence) : kNoError;
}

ErrorCode Transfer::serverSpoke(unsigned milliseconds) {
  Reply reply;
  const ErrorCode error = session_->control().reply(reply, milliseconds);
  if (error != kNoError || reply.preliminary()) return error;
  finalReply_ = reply;
  return kFtpRefused;
}

// The server's own words, where it has some, tell more than a connection that broke.
ErrorCode Transfer::writeFailed(ErrorCode error) {
  if (finalReply_) return kFtpRefused;
  const ErrorCode spoken = serverSpoke(session_->limits.closing);
  return spoken == kFtpRefused ? kFtpRefused : error;
}

// The reply that ends the transfer.
ErrorCode Transfer::finish() {
  data_.close(false);
  Reply reply;
  if (!finalReply_) {
    const ErrorCode error = session_->control().finalReply(reply);
    if (error != kNoError) return error;
    finalReply_ = reply;
  }
  return finalReply_->good() ? kNoError : kFtpRefused;
}

ErrorCode Transfer::close() {
  if (!open_) return kFtpConnectionLost;
  const bool early = direction_ == Direction::FromServer && !atEnd_;
  if (early) {
    abandon();
    return kNoError;
  }
  const ErrorCode error = finish();
  release();
  return error;
}

void Transfer::abandon() {
  if (!open_) return;
  data_.close(true);
  if (!finalReply_) session_->control().abandonReply();
  release();
}

}  // namespace tandemize::platform::ftp
