// One open descriptor of the host, closed with its owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace tandemize::platform {

class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { reset(); }
  Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    reset(other.release());
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  [[nodiscard]] int release() { return std::exchange(number_, -1); }
  void reset(int number = -1) {
    if (number_ >= 0) ::close(number_);
    number_ = number;
  }

 private:
  int number_;
};

}  // namespace tandemize::platform
