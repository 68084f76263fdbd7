// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// The names of the folder's entries whose path extension equals `matchingExtension` without regard to case, in
/// listing order. Empty when the folder cannot be read.
std::vector<NSString> directoryContentsAtPath(const NSString &path, const NSString &matchingExtension);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
