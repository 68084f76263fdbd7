// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {

/// How long other programs may take: for each of their steps, and in all. It is a plain value.
struct Patience {
  double stepSeconds = 0;
  Deadline end;

  /// When a step that begins now has to be done.
  Deadline step() const { return earliest(Deadline::after(stepSeconds), end); }
};

}  // namespace nimbo
