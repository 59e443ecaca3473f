#pragma once

// Sets or clears an environment variable for one test and puts it back after.

#include <cstdlib>
#include <optional>
#include <string>

namespace zol::testing {

class EnvGuard {
 public:
  EnvGuard(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
    if (const char* old = std::getenv(name_.c_str())) old_ = old;
    Set(value);
  }
  EnvGuard(const EnvGuard&) = delete;
  EnvGuard& operator=(const EnvGuard&) = delete;
  ~EnvGuard() { Set(old_); }

 private:
  void Set(const std::optional<std::string>& value) {
    if (value) {
      ::setenv(name_.c_str(), value->c_str(), 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }

  std::string name_;
  std::optional<std::string> old_;
};

}  // namespace zol::testing
