// What a supply of new files and its thread share.
#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/newfilesupply.h"

namespace tandemize::platform {

struct SuppliedFile {
  int descriptor = -1;
  mode_t permissions = 0;  // that it was opened with, before the umask
};

struct NewFileSupply::State {
  State() = default;
  ~State();
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  // A file of that host folder, or none (-1). The caller closes it. Those made from now on get these
  // permissions.
  [[nodiscard]] SuppliedFile take(const std::string& hostFolder, mode_t permissions);

  void run();  // the thread
  void makeOne(std::unique_lock<std::mutex>& lock);

  std::mutex mutex;
  std::condition_variable changed;
  std::string folder;  // on the host
  std::size_t wanted = 0;
  mode_t mode = 0666;
  bool ended = false;
  std::vector<SuppliedFile> ready;
  std::thread worker;
};

}  // namespace tandemize::platform
