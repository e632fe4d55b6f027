// An environment variable that gets its old value back.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace tandemize::test {

class ScopedVariable {
 public:
  // Without a value the variable is unset.
  ScopedVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* const old = std::getenv(name)) old_ = old;
    set(value);
  }
  ~ScopedVariable() { set(old_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void set(const std::optional<std::string>& value) const {
    if (value) {
      ::setenv(name_, value->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }

  const char* name_;
  std::optional<std::string> old_;
};

}  // namespace tandemize::test
