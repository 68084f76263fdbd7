// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "platform/Foundation/NSData.hpp"

namespace nimbo {

/// The most that is read of a file that goes to the helper as data; a message leaves room for no more.
inline constexpr std::size_t kMaximumInputBytes = (512u << 20) - 4096;

/// An input that cannot be read; the text is "NAME: REASON".
class InputError : public std::runtime_error {
 public:
  InputError(const std::string &name, const std::string &reason) : runtime_error(name + ": " + reason) {}
};

/// What messages call an input: its path, or "standard input" for "-".
std::string nameOfInput(const std::string &path);

/// All bytes of a file, a pipe or a device, or of standard input when `path` is "-". Raises `InputError`, also
/// when there are more than `kMaximumInputBytes`.
NSData readInput(const std::string &path);

}  // namespace nimbo
