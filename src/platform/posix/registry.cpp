#include <cstddef>

#include "platform/machine.h"
#include "platform/posix/hostfile.h"
#include "platform/posix/hostlocale.h"
#include "platform/posix/names.h"
#include "platform/posix/registryfile.h"

namespace tandemize::platform {

namespace {

constexpr std::size_t kRegistryLimit = 1U << 20U;
constexpr std::string_view kInternational = "HKEY_CURRENT_USER\\Control Panel\\International";

RegistryFile& loaded() {
  static RegistryFile file;
  return file;
}

std::string_view asKey(std::string_view text) {
  text = trimmed(text);
  while (!text.empty() && text.back() == '\\') text.remove_suffix(1);
  return text;
}

std::string entryName(std::string_view key, std::string_view name) {
  return lowered(asKey(key)) + "\n" + lowered(name);
}

}  // namespace

RegistryFile::RegistryFile(std::string_view text) {
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  std::string_view key;
  while (!text.empty()) {
    const std::string_view line = trimmed(takeLine(text));
    if (line.size() > 2 && line.front() == '[' && line.back() == ']') {
      key = asKey(line.substr(1, line.size() - 2));
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || key.empty()) continue;
    const std::string_view name = trimmed(line.substr(0, equals));
    if (!name.empty()) values_.emplace(entryName(key, name), trimmed(line.substr(equals + 1)));
  }
}

std::optional<std::string> RegistryFile::value(std::string_view key, std::string_view name) const {
  const auto found = values_.find(entryName(key, name));
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void loadRegistry(const std::string& hostFolder) {
  std::string text;
  if (readHostFile(hostFolder + "/Registry.ini", kRegistryLimit, text) != kNoError) text.clear();
  loaded() = RegistryFile(text);
}

std::string registryValue(std::string_view key, std::string_view name) {
  if (const auto value = loaded().value(key, name)) return *value;
  if (!equalIgnoringCase(asKey(key), kInternational)) return {};
  if (equalIgnoringCase(name, "sShortDate")) return hostShortDateForm();
  if (equalIgnoringCase(name, "sTimeFormat")) return hostTimeForm();
  return {};
}

}  // namespace tandemize::platform
