// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"

namespace nimbo {

/// The most that is read of a file that goes to the helper as data; a message leaves room for no more.
inline constexpr std::uint32_t kMaximumInputBytes = (512u << 20) - 4096;

/// An input that cannot be read, or of which nothing can be made; the text is "NAME: REASON".
class InputError : public std::runtime_error {
 public:
  InputError(const std::string &name, const std::string &reason) : runtime_error(name + ": " + reason) {}
  InputError(const std::string &name, const NSError &error)
      : InputError(name, error.localizedFailureReason.UTF8String()) {
    code_ = error.errorCode();
  }

  ErrorCode code() const noexcept { return code_; }

 private:
  ErrorCode code_ = ErrorCode::other;
};

/// What messages call an input: its path, or "standard input" for "-".
std::string nameOfInput(const std::string &path);

/// All bytes of a file, a pipe or a device, or of standard input when `path` is "-". Raises `InputError`, also
/// when there are more than `kMaximumInputBytes`, or when nothing comes for `patienceSeconds`; a terminal has
/// time.
NSData readInput(const std::string &path, double patienceSeconds);

}  // namespace nimbo
