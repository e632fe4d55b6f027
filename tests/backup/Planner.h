// A diagram that is planned, and what came of it.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "backup/BackupRun.h"

namespace tandemize::test {

using Plan = std::set<std::string>;

class Planner : public BackupFolder {
 public:
  ~Planner() { forgetHooks(); }

  // Plans a run over the profile of now; what the dialog holds can be set before.
  FrmBackupChoice& plan(bool accurate = false, const std::function<void(FrmBackupChoice&)>& prepare = {}) {
    dialog_ = std::make_unique<FrmBackupChoice>();
    if (prepare) prepare(*dialog_);
    dialog_->PrelevaFilePerBackup(accurate);
    return *dialog_;
  }
  [[nodiscard]] Plan planned() const {
    const std::vector<std::string> all = plannedTransfers();
    return {all.begin(), all.end()};
  }
  [[nodiscard]] std::string to(const std::string& source, const std::string& destination) const {
    return program(source) + " -> " + program(destination);
  }
  void folders(const std::vector<std::string>& names) {
    for (const std::string& name : names) work().makeFolder(name);
  }

 private:
  std::unique_ptr<FrmBackupChoice> dialog_;
};

// A work file's date as records hold it.
[[nodiscard]] inline std::string dateOf(const BackupFolder& p, const std::string& file) {
  struct stat status = {};
  ::stat(const_cast<BackupFolder&>(p).work().host(file).c_str(), &status);
  return test::dateText(status.st_mtime);
}

}  // namespace tandemize::test
