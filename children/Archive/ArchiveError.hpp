// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>
#include <system_error>

namespace nimbo {

/// Why there is no archive: a line for people.
class ArchiveError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  /// What the system's error number says about a file.
  ArchiveError(const std::string &name, int number)
      : runtime_error(name + ": " + std::generic_category().message(number)) {}
};

}  // namespace nimbo
