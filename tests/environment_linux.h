// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace tallow {

/// Within its scope an environment variable has another value, or none.
class EnvironmentVariable {
 public:
  EnvironmentVariable(std::string name, const std::optional<std::string>& value)
      : name_(std::move(name)) {
    if (const char* const was = std::getenv(name_.c_str())) was_ = was;
    Set(value);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { Set(was_); }

 private:
  void Set(const std::optional<std::string>& value) const {
    if (value)
      setenv(name_.c_str(), value->c_str(), 1);
    else
      unsetenv(name_.c_str());
  }

  std::string name_;
  std::optional<std::string> was_;
};

}  // namespace tallow
