// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Foundation/System/Confinement.hpp"

namespace nimbo::detail {

/// What Landlock allows a process; made before a fork, and put in force behind it.
class LandlockRules {
 public:
  /// Without any rules where the kernel has no Landlock.
  explicit LandlockRules(const Confinement &confinement);

  /// Whether the kernel has it.
  bool isAvailable() const { return version_ > 0; }
  /// Whether signals to processes outside are refused, too.
  bool refusesSignals() const;
  /// Confines the calling thread, and what it starts. Makes system calls only. False when it cannot; errno says
  /// why.
  bool apply() const noexcept;

 private:
  struct Path {
    std::string name;
    std::uint64_t access;
  };

  int version_ = 0;
  std::uint64_t handled_ = 0;
  std::vector<Path> paths_;
};

}  // namespace nimbo::detail
