// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace nimbo {

/// A variable of the environment has another value, or nil for none, as long as this lives; of `TZ` the
/// system's time zone knows.
class EnvironmentSetting {
 public:
  EnvironmentSetting(const char *name, const char *value) : name_(name) {
    if (const char *before = std::getenv(name)) before_ = before;
    set(value);
  }
  ~EnvironmentSetting() { set(before_ ? before_->c_str() : nullptr); }

  EnvironmentSetting(const EnvironmentSetting &) = delete;
  EnvironmentSetting &operator=(const EnvironmentSetting &) = delete;

 private:
  void set(const char *value) {
    value ? ::setenv(name_, value, 1) : ::unsetenv(name_);
    ::tzset();
  }

  const char *name_;
  std::optional<std::string> before_;
};

}  // namespace nimbo
