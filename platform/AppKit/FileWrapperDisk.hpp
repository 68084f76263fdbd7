// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/NSFileWrapper.hpp"

namespace nimbo {

/// What stands at the path; nil when it cannot be read or goes beyond the limits, `*error` says why.
NSFileWrapper fileWrapperOfPath(const NSString &path, NSError *error);
/// Writes a file, folder or link, as `NSFileWrapper::writeToFile` has it. `errno` says why it cannot.
bool writeFileWrapper(const NSFileWrapper &file, const NSString &path, Flag atomically);

}  // namespace nimbo
