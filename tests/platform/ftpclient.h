// A session of a test's own with a server of the fixture.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fixtures/FtpServer.h"
#include "platform/ftp.h"

namespace tandemize::platform {

// Long enough for a slow machine; a test of silence sets its own.
inline FtpLimits shortLimits() {
  FtpLimits limits;
  limits.connect = 5'000;
  limits.silence = 5'000;
  limits.closing = 200;
  return limits;
}

class FtpClient {
 public:
  explicit FtpClient(const test::FtpServer& server, bool passive = true) {
    login.host = server.host();
    login.port = server.port();
    login.user = server.user();
    login.password = test::FtpServer::Password;
    login.passive = passive;
    session.setLimits(shortLimits());
  }

  ErrorCode connect() { return session.connect(login); }
  // For tests that are about what comes after.
  FtpSession& connected() {
    EXPECT_EQ(connect(), kNoError) << session.lastReply();
    return session;
  }

  ErrorCode upload(const std::string& path, const std::string& content) {
    FtpData data;
    ErrorCode error = session.openWrite(path, data);
    if (error == kNoError) error = data.write(content.data(), content.size());
    return error != kNoError ? error : data.close();
  }

  // In blocks of `block` bytes, as the engines read.
  ErrorCode download(const std::string& path, std::string& content, std::size_t block = 4096) {
    FtpData data;
    ErrorCode error = session.openRead(path, data);
    content.clear();
    std::string buffer(block, '\0');
    for (std::size_t got = block; error == kNoError && got == block;) {
      error = data.read(buffer.data(), block, got);
      content.append(buffer, 0, got);
    }
    return error != kNoError ? error : data.close();
  }

  // The entries of a folder; `error` is kNoError for an empty one too.
  std::vector<FtpEntry> list(const std::string& folder, ErrorCode& error) {
    std::vector<FtpEntry> entries;
    FtpSearch search;
    FtpEntry entry;
    error = session.openSearch(folder, search, entry);
    for (ErrorCode step = error; step == kNoError; step = search.next(entry)) entries.push_back(entry);
    unknownLines = search.unknownLines();
    if (error == kNoMoreFiles) error = kNoError;
    return entries;
  }
  std::vector<FtpEntry> list(const std::string& folder) {
    ErrorCode error = kNoError;
    std::vector<FtpEntry> entries = list(folder, error);
    EXPECT_EQ(error, kNoError) << session.lastReply();
    return entries;
  }
  std::vector<std::string> names(const std::string& folder) {
    std::vector<std::string> result;
    for (const FtpEntry& entry : list(folder)) result.push_back(entry.name);
    return result;
  }

  FtpServer login;
  FtpSession session;
  std::size_t unknownLines = 0;
};

// Content that shows when a piece of it is lost or doubled.
inline std::string pattern(std::size_t size) {
  std::string content(size, '\0');
  std::uint32_t state = 12345;
  for (char& c : content) {
    state = state * 1664525U + 1013904223U;
    c = static_cast<char>(state >> 24U);
  }
  return content;
}

}  // namespace tandemize::platform
