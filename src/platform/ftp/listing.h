// Lines of a folder's listing, in the forms that servers give.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ftp/listtime.h"

namespace tandemize::platform::ftp {

enum class ListedKind : std::uint8_t { File, Folder, Link, Other };

struct ListedEntry {
  std::string name;
  std::string target;  // of a link, where the listing tells it
  ListedKind kind = ListedKind::File;
  bool hasSize = false;
  std::uint64_t size = 0;
  ListedTime time;
};

enum class ListedLine : std::uint8_t { Entry, Nothing, Unknown };  // Nothing: "total 8", an empty line...

// "type=file;size=4;modify=20240131235959; name". Nothing: the folder itself or the one above it.
[[nodiscard]] ListedLine parseMachineLine(std::string_view line, ListedEntry& entry);

// "-rw-r--r--   1 anna users   4 Jan 31 23:59 name", with a year in place of the time, or
// "01-31-24  11:59PM   4 name" and "01-31-24  11:59PM   <DIR>   name". What follows the one blank after the
// date is the name, its leading and trailing blanks included.
[[nodiscard]] ListedLine parseListLine(std::string_view line, ListedEntry& entry);

// A name that leads nowhere but into its own folder.
[[nodiscard]] bool staysInFolder(std::string_view name);

// Whether a link in `folder` (a full path) to `target` leads to that folder or to one above it, as far as the
// two texts tell.
[[nodiscard]] bool leadsUpwards(std::string_view folder, std::string_view target);
[[nodiscard]] bool holdsFolder(std::string_view folder, std::string_view inner);  // or is it

}  // namespace tandemize::platform::ftp
