// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSError.hpp"

namespace nimbo {

/// Logs one line for what could not be done: the operation by its full selector, and in parentheses the
/// attribute; then, each behind a line feed, the path and the reason. Answers false.
///
///     return setFinderField(path, kFinderLabel, label << 1, &error) ||
///            logAttributeFailure(u"setFinderLabel:atPath:"_ns, u"label"_ns, path, error);
bool logAttributeFailure(const NSString &operation, const NSString &attribute, const NSString &path,
                         const NSError &error);

}  // namespace nimbo
