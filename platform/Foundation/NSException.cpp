// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSException.hpp"

#include <utility>

#include "platform/Foundation/NSLog.hpp"

namespace nimbo {

NSException::NSException(NSString name, NSString reason)
    : name_(std::move(name)),
      reason_(std::move(reason)),
      what_(name_.UTF8String() + ": " + reason_.UTF8String()) {}

NSException::~NSException() = default;

void logException(std::string_view method, std::string_view className, const NSException &exception) {
  NSLog(u"%@ (%@):\n%@\n%@", method, className, exception.name(), exception.reason());
}

}  // namespace nimbo
