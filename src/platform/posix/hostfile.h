// Small files of the host, by host path: settings, pseudo files of /proc and /sys, shipped data.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize::platform {

// Reads at most `limit` bytes from the start of a plain file; a longer file gives its first `limit` bytes.
// The size that the host tells is not asked, since the files of /proc and /sys tell none. A pipe or a device
// is never waited for: it gives kInvalidFolder, like a folder.
[[nodiscard]] ErrorCode readHostFile(const std::string& hostPath, std::size_t limit, std::string& content);

// Makes a new file with these permission bits, whatever the umask says. kAlreadyExists if the name is taken;
// after any other failure there is no file.
[[nodiscard]] ErrorCode writeNewHostFile(const std::string& hostPath, std::string_view content,
                                         unsigned permissions);

}  // namespace tandemize::platform
