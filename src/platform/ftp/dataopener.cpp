// Opening the data connection of a transfer: passive or active, in the extended form or the old one.

#include <algorithm>
#include <utility>

#include "platform/ftp/session.h"

namespace tandemize::platform::ftp {

class DataOpener {
 public:
  DataOpener(Session& session, Opening& opening, TcpChannel& data)
      : session_(session), control_(session.control()), opening_(opening), data_(data) {}

  ErrorCode run() {
    if (!opening_.anyType) {
      if (const auto type = session_.typeStep(opening_.type))
        opening_.ahead.insert(opening_.ahead.begin(), *type);
    }
    for (const Step& step : opening_.ahead) {
      if (!fitsInCommand(step.line)) return kInvalidName;
    }
    if (!fitsInCommand(opening_.command)) return kInvalidName;
    ErrorCode error = control_.settle();
    // In active mode a server may begin before it has answered the port command (pyftpdlib 1.5.7 connects
    // first), which brings the replies out of order.
    const bool together = session_.together_ && session_.dataTogether_ && session_.passive_;
    if (error == kNoError) error = attempt(together);
    listener_.close();
    if (error != kNoError) data_.close(true);
    if (error == kNoError) session_.dataTogether_ = true;
    return error;
  }

 private:
  ErrorCode attempt(bool together) {
    Reply port;
    ErrorCode error = session_.passive_ ? kNoError : listener_.listen(localIp());
    if (error != kNoError) return ftpError(error, true);
    error = together ? sendTogether() : kNoError;
    for (Step& step : opening_.ahead) {
      if (aheadDone_) break;
      if (error == kNoError && !together) error = control_.send({step.line});
      if (error == kNoError) error = control_.finalReply(step.reply);
      if (error == kNoError) session_.noteType(step);
    }
    aheadDone_ = error == kNoError;
    if (error == kNoError && !together) error = control_.send({portCommand()});
    if (error == kNoError) error = control_.finalReply(port);
    if (error != kNoError) return error;
    return port.good() ? begin(port, together) : refused(port, together);
  }

  ErrorCode sendTogether() {
    std::vector<std::string> lines;
    lines.reserve(opening_.ahead.size() + 2);
    for (const Step& step : opening_.ahead) lines.push_back(step.line);
    lines.push_back(portCommand());
    lines.push_back(opening_.command);
    return control_.send(lines);
  }

  [[nodiscard]] std::string localIp() const { return control_.channel().localAddress().ip; }

  [[nodiscard]] std::string portCommand() const {
    if (session_.passive_) return session_.extended_ ? "EPSV" : "PASV";
    NetworkAddress here = listener_.address();
    here.ip.resize(std::min(here.ip.find('%'), here.ip.size()));  // a zone is this host's affair
    if (session_.extended_ || here.isV6())
      return std::string("EPRT |") + (here.isV6() ? "2" : "1") + "|" + here.ip + "|" +
             std::to_string(here.port) + "|";
    for (char& c : here.ip) c = c == '.' ? ',' : c;
    return "PORT " + here.ip + "," + std::to_string(here.port / 256) + "," + std::to_string(here.port % 256);
  }

  // The server will not have the port command. The other form is tried, the other mode never.
  ErrorCode refused(const Reply& port, bool together) {
    if (together) {
      const std::string words = control_.words();
      Reply wasted;
      const ErrorCode error = control_.reply(wasted);
      if (error != kNoError) return error;
      control_.setWords(words);
      // The command has begun without data, and nobody knows which data it would take (pyftpdlib 1.5.7 takes
      // the next connection for it). Such a session is of no use any more.
      if (wasted.preliminary()) control_.close();
    }
    const bool unknown = port.code >= 500 && port.code != 530;
    if (!unknown) return kFtpRefused;
    if (session_.extended_ && control_.isOpen()) {
      session_.extended_ = false;
      return attempt(false);
    }
    return session_.passive_ ? kFtpNoPassiveMode : kFtpRefused;
  }

  ErrorCode begin(const Reply& port, bool together) {
    ErrorCode error = session_.passive_ ? connectTo(port) : kNoError;
    if (error == kFtpCannotConnect && together) error = afterNoData(error);
    if (error == kNoError && !together) error = control_.send({opening_.command});
    if (error != kNoError) return error;
    error = session_.passive_ ? control_.reply(opening_.beginning) : awaitServer();
    if (error != kNoError) return error;
    return opening_.beginning.preliminary() || opening_.beginning.good() ? kNoError : kFtpRefused;
  }

  // The command is on its way although its data has none. What the server says to it comes first: it may have
  // gone away altogether.
  ErrorCode afterNoData(ErrorCode error) {
    Reply reply;
    const ErrorCode spoken = control_.finalReply(reply, session_.limits.closing);
    return spoken == kNoError || spoken == kFtpTimedOut ? error : spoken;
  }

  // Whatever address a reply names, data comes from the server that this session talks to.
  ErrorCode connectTo(const Reply& reply) {
    const auto port = reply.code == 229 ? portOfExtendedPassive(reply.text) : portOfPassive(reply.text);
    if (!port) return kFtpBadReply;
    return ftpError(data_.connect(control_.channel().peerAddress().ip, *port, session_.limits.connect,
                                  session_.events.callback()),
                    true);
  }

  // The server connects before or after it says that it begins.
  ErrorCode awaitServer() {
    bool begun = false;
    while (!begun || !data_.isOpen()) {
      Awaited both[] = {{data_.isOpen() ? nullptr : &listener_, true}, {begun ? nullptr : &control_, true}};
      ErrorCode error = ftpError(session_.events.wait(both, session_.limits.silence), false);
      if (error == kNoError && both[0].readable) error = acceptServer();
      if (error == kNoError && both[1].readable) {
        error = control_.reply(opening_.beginning);
        begun = error == kNoError;
        if (begun && opening_.beginning.refused()) return kNoError;
      }
      if (error != kNoError) return error;
    }
    return kNoError;
  }

  ErrorCode acceptServer() {
    const ErrorCode error = listener_.accept(data_);
    if (error == kSocketWouldBlock) return kNoError;
    if (error != kNoError) return ftpError(error, true);
    // Anybody can connect to a port that is open.
    if (data_.peerAddress().ip != control_.channel().peerAddress().ip) data_.close(true);
    return kNoError;
  }

  Session& session_;
  ControlLine& control_;
  Opening& opening_;
  TcpChannel& data_;
  TcpListener listener_;
  bool aheadDone_ = false;
};

ErrorCode Session::open(Opening& opening, TcpChannel& data) {
  return DataOpener(*this, opening, data).run();
}

}  // namespace tandemize::platform::ftp
