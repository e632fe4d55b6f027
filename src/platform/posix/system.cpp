#include <ifaddrs.h>
#include <net/if.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdlib>

#include "platform/machine.h"
#include "platform/posix/hostfaults.h"
#include "platform/posix/hostfile.h"
#include "platform/posix/names.h"

namespace tandemize::platform {

namespace {

constexpr int kManyProcesses = 2;

// Bytes of a line "MemAvailable:   12345 kB" of /proc/meminfo, or -1.
std::int64_t memoryLine(std::string_view text, std::string_view name) {
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    if (line.substr(0, name.size()) != name) continue;
    line = trimmed(line.substr(name.size()));
    std::int64_t kibibytes = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), kibibytes);
    return error == std::errc() ? kibibytes * 1024 : -1;
  }
  return -1;
}

bool anyInterfaceIsUp() {
  ifaddrs* list = nullptr;
  if (::getifaddrs(&list) != 0) return false;
  bool up = false;
  for (const ifaddrs* entry = list; entry != nullptr && !up; entry = entry->ifa_next) {
    constexpr unsigned kNeeded = IFF_UP | IFF_RUNNING;
    up = (entry->ifa_flags & kNeeded) == kNeeded && (entry->ifa_flags & IFF_LOOPBACK) == 0;
  }
  ::freeifaddrs(list);
  return up;
}

}  // namespace

std::string computerName() {
  std::array<char, 256> name{};
  if (::gethostname(name.data(), name.size() - 1) != 0) return {};
  return name.data();
}

std::int64_t freePhysicalMemory() {
  if (hostFaults().freeMemory >= 0) return hostFaults().freeMemory;
  std::string text;
  if (readHostFile("/proc/meminfo", 1U << 16U, text) == kNoError) {
    const std::int64_t bytes = memoryLine(text, "MemAvailable:");
    if (bytes >= 0) return bytes;
  }
  return std::int64_t{::sysconf(_SC_AVPHYS_PAGES)} * ::sysconf(_SC_PAGESIZE);
}

int platformId() {
  return kManyProcesses;
}

int processNumber() {
  return ::getpid();
}

bool networkUp() {
  const std::string told = environment("TANDEMIZE_NETWORK");
  if (equalIgnoringCase(told, "up")) return true;
  if (equalIgnoringCase(told, "down")) return false;
  return anyInterfaceIsUp();
}

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace tandemize::platform
