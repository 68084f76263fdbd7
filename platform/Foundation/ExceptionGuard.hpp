// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <exception>

#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What an operation answers; nil, or false, for what it raises, and `*error` then says what that was.
template <class Operation>
auto guarded(NSError *error, Operation operation) -> decltype(operation()) {
  try {
    return operation();
  } catch (const std::exception &exception) {
    if (error) *error = NSError::errorWithException(exception);
    return {};
  }
}

}  // namespace nimbo
