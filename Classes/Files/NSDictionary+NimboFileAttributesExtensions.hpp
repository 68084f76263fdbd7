// SPDX-License-Identifier: Apache-2.0
//
// Attributes of files. Any thread may ask.
//
//     fileTypeForWorkspace(fileAttributesAtPath(u"/tmp"_ns, true));  // "'fldr'"
#pragma once

#include "platform/Foundation/NSDictionary.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileAttributesExtensions {

/// The type in single quotes by which icons are found: that of folders, else the type code; "'????'" for a
/// regular file without one, and "''" for what is neither.
NSString fileTypeForWorkspace(const NSDictionary &attributes);

}  // namespace NimboFileAttributesExtensions
}  // namespace nimbo
