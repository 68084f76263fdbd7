// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSException.hpp"

#include <utility>

namespace nimbo {

NSException::NSException(NSString name, NSString reason)
    : name_(std::move(name)),
      reason_(std::move(reason)),
      what_(name_.UTF8String() + ": " + reason_.UTF8String()) {}

NSException::~NSException() = default;

}  // namespace nimbo
