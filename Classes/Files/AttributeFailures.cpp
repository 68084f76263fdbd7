// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/AttributeFailures.hpp"

#include "platform/Foundation/NSLog.hpp"

namespace nimbo {

bool logAttributeFailure(const NSString &operation, const NSString &attribute, const NSString &path,
                         const NSError &error) {
  NSLog(u"%@ (%@):\n%@\n%@", operation, attribute, path, error.localizedFailureReason);
  return false;
}

}  // namespace nimbo
