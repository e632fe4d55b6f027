// One file, or other data, on its way.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "platform/ftp/session.h"

namespace tandemize::platform::ftp {

enum class Direction : std::uint8_t { FromServer, ToServer };

class Transfer {
 public:
  Transfer(std::shared_ptr<Session> session, Direction direction)
      : session_(std::move(session)), direction_(direction) {}
  ~Transfer();
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  // Begins; see Opening. Marks the session.
  [[nodiscard]] ErrorCode open(Opening& opening);
  [[nodiscard]] ErrorCode read(char* buffer, std::size_t room, std::size_t& got);
  [[nodiscard]] ErrorCode write(std::string_view bytes);
  [[nodiscard]] ErrorCode close();
  void abandon();

  // What is there, waiting for the first byte only; `got` 0 at the end.
  [[nodiscard]] ErrorCode readSome(char* buffer, std::size_t room, std::size_t& got);

  std::optional<std::uint64_t> size;
  std::optional<FileTime> time;
  [[nodiscard]] Session& session() { return *session_; }

 private:
  [[nodiscard]] ErrorCode awaitRoom();
  [[nodiscard]] ErrorCode writeFailed(ErrorCode error);
  [[nodiscard]] ErrorCode serverSpoke(unsigned milliseconds);
  [[nodiscard]] ErrorCode finish();
  void release();

  std::shared_ptr<Session> session_;
  Direction direction_;
  TcpChannel data_;
  bool open_ = false;
  bool atEnd_ = false;               // the server has ended the data
  std::optional<Reply> finalReply_;  // where it came before the end
};

}  // namespace tandemize::platform::ftp
