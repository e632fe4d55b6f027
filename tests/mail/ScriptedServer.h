// A mail server in memory: it answers by a script, and notes every send. What a test needs of a dialogue that
// no network may disturb.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "errors/ErrorsTest.h"
#include "errors/ModuloGestioneErrori.h"
#include "mail/ModuloEmail.h"
#include "mail/OggettiPosta.h"
#include "platform/environment.h"
#include "platform/paths.h"

namespace tandemize::test {

// Replies of one connection: the greeting, then one for each line or finished message. An empty one is
// silence, `ConnectionEnd` the end of the connection.
using Replies = std::vector<std::string>;
inline const std::string ConnectionEnd = "<end>";

inline const Replies GoodReplies = {"220 ready\r\n", "250 hello\r\n", "250 sender\r\n", "250 recipient\r\n",
                                    "354 go on\r\n", "250 taken\r\n", "221 bye\r\n"};

// The good replies up to `step` (0 is the greeting), then another one.
inline Replies goodUpTo(std::size_t step, const std::string& then) {
  Replies replies(GoodReplies.begin(), GoodReplies.begin() + static_cast<std::ptrdiff_t>(step));
  replies.push_back(then);
  return replies;
}

struct ScriptedServer {
  std::deque<Replies> scripts;                 // one a connection; the last one serves all that follow
  std::vector<std::string> hosts;              // asked for, with ":" and the port
  std::vector<std::vector<std::string>> sent;  // by connection, one text a send
  std::deque<int> sendResults;                 // in place of taking the text, while there are any
  int sendError = 0;                           // the number after a result of -1
  int connectError = 0;                        // not 0: no connection comes about
  int sendTries = 0, open = 0, waits = 0;
  bool writable = true;
  std::size_t lastLimit = 0;
  std::string late;  // comes at the next look

  [[nodiscard]] std::string allSent() const {
    std::string text;
    for (const auto& connection : sent)
      for (const std::string& piece : connection) text += piece;
    return text;
  }
};

class ScriptedConnection : public ConnessioneSmtp {
 public:
  ScriptedConnection(ScriptedServer& server, Replies replies)
      : server_(server), replies_(std::move(replies)) {
    ++server_.open;
    server_.sent.emplace_back();
    reply();
  }
  ~ScriptedConnection() override { --server_.open; }
  ScriptedConnection(const ScriptedConnection&) = delete;
  ScriptedConnection& operator=(const ScriptedConnection&) = delete;

  bool PuoScrivere() override { return server_.writable; }
  int Invia(std::string_view bytes) override {
    ++server_.sendTries;
    if (!server_.sendResults.empty()) {
      const int result = server_.sendResults.front();
      server_.sendResults.pop_front();
      return result;
    }
    server_.sent.back().emplace_back(bytes);
    if (!inMessage_ || bytes == "\r\n.\r\n") reply();
    inMessage_ = bytes == "DATA\r\n" || (inMessage_ && bytes != "\r\n.\r\n");
    return static_cast<int>(bytes.size());
  }
  int Ricevi(std::string& piece, std::size_t limit) override {
    server_.lastLimit = limit;
    waiting_ += std::exchange(server_.late, {});
    if (waiting_.empty()) return -1;
    if (waiting_ == ConnectionEnd) return 0;
    piece = waiting_.substr(0, limit);
    waiting_.erase(0, limit);
    return static_cast<int>(piece.size());
  }
  void Attendi(unsigned) override {
    if (++server_.waits < 1'000'000) return;
    ADD_FAILURE() << "the dialogue waits for ever";
    InterrompiPosta();
  }
  [[nodiscard]] int Errore() const override { return server_.sendError; }

 private:
  void reply() {
    if (next_ < replies_.size()) waiting_ += replies_[next_++];
  }

  ScriptedServer& server_;
  Replies replies_;
  std::size_t next_ = 0;
  std::string waiting_;
  bool inMessage_ = false;
};

// What a window would show.
struct ShownObjects : OggettiPosta {
  void lblStatus(std::string_view text) override { labels.emplace_back(text); }
  void TxtLog(std::string_view text) override { replies.emplace_back(text); }
  void ProgBar(int value) override { bar.push_back(value); }

  [[nodiscard]] bool labelled(std::string_view text) const { return timesLabelled(text) > 0; }
  [[nodiscard]] int timesLabelled(std::string_view text) const {
    return static_cast<int>(std::ranges::count(labels, text));
  }

  std::vector<std::string> labels, replies;
  std::vector<int> bar;
};

// A started program in English with a network, whose connections lead to `server`.
struct MailTest : ErrorsTest {
  MailTest() {
    program.setting("Language", "1");
    Errors_Correction = Email_Action = 0;
    CreaListaLog();
    AzzeraModuloEmail();
    UsaOggettiPosta(&shown);
    UsaConnessioni([this](const std::string& host, std::uint16_t port, const std::function<bool()>& goOn,
                          int& error) -> std::unique_ptr<ConnessioneSmtp> {
      server.hosts.push_back(host + ":" + std::to_string(port));
      error = server.connectError;
      if (error != 0 || !goOn()) return nullptr;
      const Replies replies = server.scripts.empty() ? GoodReplies : server.scripts.front();
      if (server.scripts.size() > 1) server.scripts.pop_front();
      return std::make_unique<ScriptedConnection>(server, replies);
    });
    SorvegliaArresto();
  }
  ~MailTest() override { AzzeraModuloEmail(); }
  MailTest(const MailTest&) = delete;
  MailTest& operator=(const MailTest&) = delete;

  // Sends `message` and gives the status.
  std::int32_t send(const std::string& name = "mail.example") {
    std::int32_t status = -1;
    SpedisciEmail(name, message, status);
    return status;
  }
  std::int32_t sendWith(std::deque<Replies> scripts) {
    server.scripts = std::move(scripts);
    return send();
  }
  // Ends the waiting dialogue once events have been let in that many times from now.
  void stopAfter(int rounds) {
    screen.onEvents = [left = rounds]() mutable {
      if (--left == 0) InterrompiPosta();
    };
  }

  ScopedVariable network{"TANDEMIZE_NETWORK", "up"};
  ScriptedServer server;
  ShownObjects shown;
  MessaggioPosta message{"anna@home.example", "anna@mail.example", "subject", "body", {}};
};

}  // namespace tandemize::test
