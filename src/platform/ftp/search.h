// The entries of one folder, read and not yet handed out.
#pragma once

#include <memory>
#include <vector>

#include "platform/ftp/session.h"

namespace tandemize::platform::ftp {

class Search {
 public:
  explicit Search(std::shared_ptr<Session> session) : session_(std::move(session)) {
    session_->searchOpen = true;
  }
  ~Search() { session_->searchOpen = false; }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  std::vector<FtpEntry> entries;
  std::size_t next = 0, unknownLines = 0;

 private:
  std::shared_ptr<Session> session_;
};

}  // namespace tandemize::platform::ftp
