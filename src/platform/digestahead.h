// Digests of small files, worked out beforehand by a second thread.
//
// Opening a small file costs the host more than reading it. Here the next files of a known list are opened
// and read while the caller works on this one; the caller takes part whenever it would have to wait. The
// thread has no state of the program. Whatever is not as it was expected to be has no digest: the caller then
// reads that file in its own way, and meets and tells the fault as it would have without this.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tandemize::platform {

class DigestAhead {
 public:
  struct File {
    std::string path;    // program path
    std::uint64_t size;  // bytes that it is expected to hold
  };
  // Called in both threads, for different files at a time.
  using Digest = std::uint32_t (*)(const void* data, std::size_t size);
  // `pending`: not yet; the call has worked on another file meanwhile, or waited for a moment.
  enum class Answer { pending, known, unknown };

  // Larger files and empty ones are left to the caller.
  static constexpr std::uint64_t kLargest = std::uint64_t{256} * 1024;

  explicit DigestAhead(Digest digest);
  ~DigestAhead();  // waits for the file that the thread is reading
  DigestAhead(const DigestAhead&) = delete;
  DigestAhead& operator=(const DigestAhead&) = delete;

  // The files that will be asked for, in that order. Those expected before go.
  void expect(const std::vector<File>& files);

  // The digest of the file of that place in the list. `unknown`: the file could not be read, or does not hold
  // the bytes that were expected.
  [[nodiscard]] Answer ask(std::size_t place, std::uint32_t& digest);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tandemize::platform
