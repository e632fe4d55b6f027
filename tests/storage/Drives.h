// A program folder with one drive of every kind, each on a folder of the test's own.
#pragma once

#include "platform/paths.h"
#include "storage/Retries.h"

namespace tandemize::test {

class ProgramFolderWithDrives : public ProgramWithoutRetries {
 public:
  ProgramFolderWithDrives() {
    work().write("image.iso", "a disc");
    work().write("silent.iso", "");
    for (const char* folder : {"stick", "fixed", "net", "ram", "share"}) work().makeFolder(folder);
    home().write("Drives.dat",
                 "D: = removable " + work().host("stick") + "\nE: = cdrom " + work().host("image.iso") +
                     "\nF: = fixed " + work().host("fixed") + "\nG: = remote " + work().host("net") +
                     "\nH: = ramdisk " + work().host("ram") + "\nI: = cdrom " + work().host("gone.iso") +
                     "\nJ: = removable " + work().host("gone") + "\nK: = cdrom " + work().host("silent.iso") +
                     "\n\\\\srv\\share = " + work().host("share") + "\n");
    platform::setProgramFolder(home().host());
  }
};

}  // namespace tandemize::test
