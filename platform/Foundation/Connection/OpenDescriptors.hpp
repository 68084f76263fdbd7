// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/resource.h>

#include <cstddef>
#include <optional>

#include "platform/Foundation/System/FolderListing.hpp"

namespace nimbo {

/// Watches how many descriptors operations leave open in a process that serves connections. It holds one of its
/// own, so that it can count when nothing more can be opened.
///
///     OpenDescriptors descriptors;
///     descriptors.countOwn();
///     serve();
///     if (descriptors.areTooManyLeft(connections.size())) end();
class OpenDescriptors {
 public:
  OpenDescriptors();

  /// Takes what is open now for the process's own: nobody has been served yet.
  void countOwn() { own_ = count().value_or(0); }
  /// How many files the process could open in the beginning, whatever an operation has made of its limit.
  rlim_t limit() const { return limit_; }
  /// Whether another process has to take over from this one, which has so many connections.
  bool areTooManyLeft(std::size_t connections) const;

 private:
  std::optional<rlim_t> count() const;

  FolderListing list_;
  rlim_t limit_;
  rlim_t own_ = 0;
};

}  // namespace nimbo
