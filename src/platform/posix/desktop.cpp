#include "platform/desktop.h"

#include <array>
#include <vector>

#include "platform/files.h"
#include "platform/posix/launch.h"
#include "platform/posix/status.h"

namespace tandemize::platform {

namespace {

ErrorCode existingHostPath(std::string_view path, std::string& host) {
  FileStatus status;
  if (const ErrorCode error = query(path, status); error != kNoError) return error;
  return hostPathOf(path, host);
}

bool standsForItself(char c) {
  const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  return letter || (c >= '0' && c <= '9') || std::string_view("/-._~").find(c) != std::string_view::npos;
}

// Everything that the tools could take for part of their own notation, such as the comma between two
// elements of a list or a quote, is encoded too.
std::string fileUri(std::string_view host) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string uri = "file://";
  for (const char c : host) {
    if (standsForItself(c)) {
      uri += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    uri += '%';
    uri += kDigits[byte >> 4U];
    uri += kDigits[byte & 15U];
  }
  return uri;
}

// One that only tells before one that is a part of something larger.
struct InformationTool {
  const char *program, *argument;
};
constexpr std::array<InformationTool, 6> kInformationTools{{{"hardinfo2", nullptr},
                                                            {"hardinfo", nullptr},
                                                            {"kinfocenter", nullptr},
                                                            {"mate-system-monitor", "--show-system-tab"},
                                                            {"cinnamon-settings", "info"},
                                                            {"gnome-control-center", "info-overview"}}};

constexpr const char* kService = "org.freedesktop.FileManager1";
constexpr const char* kObject = "/org/freedesktop/FileManager1";
constexpr const char* kMethod = "org.freedesktop.FileManager1.ShowItemProperties";

}  // namespace

ErrorCode openWithDesktop(std::string_view path) {
  std::string host;
  if (const ErrorCode error = existingHostPath(path, host); error != kNoError) return error;
  const std::string opener = findProgram("xdg-open");
  // The host path is absolute, so it never looks like an option.
  return opener.empty() ? kFileNotFound : launchDetached(opener, {host});
}

// Both tools call the same method: a list of one URI, and an empty start-up notice.
ErrorCode showProperties(std::string_view path) {
  std::string host;
  if (const ErrorCode error = existingHostPath(path, host); error != kNoError) return error;
  const std::string uri = fileUri(host);
  if (const std::string gdbus = findProgram("gdbus"); !gdbus.empty()) {
    return launchDetached(gdbus, {"call", "--session", "--dest", kService, "--object-path", kObject,
                                  "--method", kMethod, "['" + uri + "']", "''"});
  }
  if (const std::string send = findProgram("dbus-send"); !send.empty()) {
    return launchDetached(send, {"--session", "--type=method_call", std::string("--dest=") + kService,
                                 kObject, kMethod, "array:string:" + uri, "string:"});
  }
  return kNotSupported;
}

ErrorCode openSystemInformation() {
  for (const auto& [program, argument] : kInformationTools) {
    const std::string tool = findProgram(program);
    if (tool.empty()) continue;
    const ErrorCode error = launchDetached(
        tool, argument == nullptr ? std::vector<std::string>() : std::vector<std::string>{argument});
    if (error == kNoError) return error;
  }
  return kFileNotFound;
}

}  // namespace tandemize::platform
