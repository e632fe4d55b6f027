#include "platform/ftp/session.h"

#include <algorithm>
#include <utility>

namespace tandemize::platform::ftp {

namespace {

constexpr int kUserOrPasswordWrong = 530;
constexpr unsigned kProbe = 5'000;  // milliseconds within which a reply follows the one before it

// A line of FEAT's reply, upper case, without its leading blank.
std::string featureOf(std::string_view line) {
  while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
  while (!line.empty() && line.back() == ' ') line.remove_suffix(1);
  std::string upper(line);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

// The facts to ask for, of "MLST TYPE*;SIZE;MODIFY*;": a star marks those that come unasked.
std::string factsToAsk(std::string_view feature) {
  std::string wanted;
  bool missing = false;
  for (const std::string_view fact : {"TYPE", "SIZE", "MODIFY"}) {
    const std::size_t at = feature.find(fact);
    if (at == std::string_view::npos) continue;
    missing = missing || at + fact.size() >= feature.size() || feature[at + fact.size()] != '*';
    wanted += fact;
    wanted += ';';
  }
  return missing ? wanted : std::string();
}

void takeFeature(const std::string& feature, Abilities& abilities) {
  if (feature.starts_with("MLST")) {
    abilities.machineListing = true;
    abilities.factsToAsk = factsToAsk(feature);
  }
  if (feature == "UTF8") abilities.utf8 = true;
}

}  // namespace

ErrorCode Session::connect(const FtpServer& server) {
  if (!fitsInCommand(server.user)) return kFtpWrongUser;
  if (!fitsInCommand(server.password)) return kFtpWrongPassword;
  passive_ = server.passive;
  control_.hide(server.password);
  ErrorCode error = control_.open(server.host, server.port);
  if (error == kNoError) error = logIn(server);
  if (error == kNoError) error = learnAbilities();
  if (error == kFtpTimedOut && !together_) {
    error = control_.open(server.host, server.port);
    if (error == kNoError) error = logIn(server);
    if (error == kNoError) error = learnAbilities();
  }
  if (error != kNoError) control_.close();
  return error;
}

ErrorCode Session::greeted() {
  Reply greeting;
  const ErrorCode error = control_.finalReply(greeting);
  if (error != kNoError) return error;
  return greeting.good() ? kNoError : kFtpLoginFailed;
}

ErrorCode Session::logIn(const FtpServer& server) {
  const std::string user = server.user.empty() ? "anonymous" : server.user;
  const std::string password =
      server.user.empty() && server.password.empty() ? "anonymous@" : server.password;
  ErrorCode error = greeted();
  Reply reply;
  if (error == kNoError) error = control_.ask(commandLine("USER", user), reply);
  if (error != kNoError || reply.good()) return error;
  if (reply.code == kUserOrPasswordWrong) return kFtpWrongUser;
  if (reply.code != 331) return kFtpLoginFailed;
  error = control_.ask(commandLine("PASS", password), reply);
  if (error != kNoError || reply.good()) return error;
  return reply.code == kUserOrPasswordWrong ? kFtpWrongPassword : kFtpLoginFailed;
}

// The first commands go out together, which shows whether the server takes that.
ErrorCode Session::learnAbilities() {
  abilities_ = {};
  type_ = 0;
  folder_.reset();
  std::vector<Step> steps{{"FEAT", {}}, {"TYPE I", {}}, {"PWD", {}}};
  const ErrorCode error = together_ ? askTogether(steps) : askAll(steps);
  if (error != kNoError) return error;
  if (steps[0].reply.good()) {
    std::string_view text = steps[0].reply.text;
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      takeFeature(featureOf(text.substr(0, end)), abilities_);
      text.remove_prefix(std::min(end + 1, text.size()));
    }
  }
  noteType(steps[1]);
  if (steps[2].reply.code == 257) folder_ = quotedPath(steps[2].reply.text);
  return tellPreferences();
}

// The first reply may take its time; those behind it are as good as there, or dropped.
ErrorCode Session::askTogether(std::span<Step> steps) {
  std::vector<std::string> lines;
  lines.reserve(steps.size());
  for (const Step& step : steps) lines.push_back(step.line);
  ErrorCode error = control_.settle();
  if (error == kNoError) error = control_.send(lines);
  if (error == kNoError) error = control_.finalReply(steps[0].reply);
  if (error != kNoError) return error;
  for (Step& step : steps.subspan(1)) {
    if (error == kNoError) error = control_.finalReply(step.reply, std::min(limits.silence, kProbe));
  }
  // A server that reads one command at a time and drops what came with it. It is asked one by one from now
  // on.
  if (error == kFtpTimedOut) together_ = false;
  return error;
}

ErrorCode Session::tellPreferences() {
  std::vector<Step> steps;
  if (abilities_.utf8) steps.push_back({"OPTS UTF8 ON", {}});
  if (!abilities_.factsToAsk.empty()) steps.push_back({"OPTS MLST " + abilities_.factsToAsk, {}});
  const ErrorCode error = askAll(steps);
  control_.setWords({});
  return error;
}

void Session::leave() {
  if (transferOpen)
    control_.close();
  else
    control_.leave();
}

ErrorCode Session::ask(const std::string& line, Reply& reply) {
  const ErrorCode error = control_.ask(line, reply);
  return error != kNoError ? error : reply.good() ? kNoError : kFtpRefused;
}

ErrorCode Session::askAll(std::span<Step> steps) {
  if (steps.empty()) return kNoError;
  ErrorCode error = kNoError;
  if (!together_) {
    for (Step& step : steps) {
      if (error == kNoError) error = control_.ask(step.line, step.reply);
    }
    return error;
  }
  std::vector<std::string> lines;
  lines.reserve(steps.size());
  for (const Step& step : steps) lines.push_back(step.line);
  error = control_.settle();
  if (error == kNoError) error = control_.send(lines);
  for (Step& step : steps) {
    if (error == kNoError) error = control_.finalReply(step.reply);
  }
  return error;
}

std::optional<Step> Session::typeStep(FtpType type) const {
  const char letter = static_cast<char>(type);
  if (letter == type_) return std::nullopt;
  return Step{std::string("TYPE ") + letter, {}};
}

void Session::noteType(const Step& step) {
  if (step.line.starts_with("TYPE ")) type_ = step.reply.good() ? step.line[5] : '\0';
}

void Session::forgetAll() {
  folder_.reset();
  type_ = 0;
}

}  // namespace tandemize::platform::ftp
