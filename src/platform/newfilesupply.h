// New files made ready beforehand.
//
// Making a file costs the host most of the time that a small copy takes. A supply makes the next unnamed
// files of a folder on a thread of its own while the program works on this one; a NewFile takes them from it.
// They have no name, so what is not taken leaves nothing. A supply that cannot make any (another file system,
// no permission, a full disc) is empty, and the NewFile then makes its own and tells what is wrong.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace tandemize::platform {

class NewFileSupply {
 public:
  NewFileSupply();
  ~NewFileSupply();
  NewFileSupply(const NewFileSupply&) = delete;
  NewFileSupply& operator=(const NewFileSupply&) = delete;

  // The next `count` new files will lie in `folder` (program path), which exists. Those ready for another
  // folder go.
  void expect(std::string_view folder, std::size_t count);

 private:
  friend class NewFile;
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tandemize::platform
