// The text of `Registry.ini`.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tandemize::platform {

class RegistryFile {
 public:
  RegistryFile() = default;
  // Sections `[HKEY_CURRENT_USER\Control Panel\International]` are keys, lines `sShortDate=dd/MM/yyyy` their
  // values; of two lines for the same value the first holds. Blanks around a name and a value go, quotes are
  // part of the text. Lines without "=", before the first section or without a name are passed over.
  explicit RegistryFile(std::string_view text);

  // Letter case counts in neither name. Nothing if the file has no such value; a value may be empty.
  [[nodiscard]] std::optional<std::string> value(std::string_view key, std::string_view name) const;

 private:
  std::map<std::string, std::string> values_;  // by key, line end and name in lower case
};

// Reads `Registry.ini` of a program folder (a host path) for `registryValue`; a missing file is an empty one.
void loadRegistry(const std::string& hostFolder);

}  // namespace tandemize::platform
