// Choosing and filling the program folder, with the folders around it given.
#pragma once

#include <string>

#include "platform/errors.h"

namespace tandemize::platform {

// `findProgramFolder` for a program file that lies in `executableFolder`.
[[nodiscard]] std::string chooseProgramFolder(const std::string& executableFolder);

// `fillProgramFolder` with the data of the host folder `shipped`. `GlobalSetting.dat`, which makes a folder a
// program folder, is the last file to come.
[[nodiscard]] ErrorCode fillFolderFrom(const std::string& shipped, const std::string& hostFolder,
                                       bool evenIfItExists);

}  // namespace tandemize::platform
