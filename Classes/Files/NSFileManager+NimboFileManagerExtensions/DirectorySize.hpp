// SPDX-License-Identifier: Apache-2.0
//
// The size of a folder with all that is in it. Any thread may ask.
//
//     const std::uint64_t bytes = directorySize(u"/home/user/Documents"_ns);
//     if (bytes > std::uint64_t{1} << 30) NSLog(u"more than a gibibyte");
//     directorySize(u"/etc/hosts"_ns);  // 0: it has no entries.
#pragma once

#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// The sum of the sizes, in bytes, of what is in the folder and in the folders below it, hidden files included;
/// of a link to a file its own size, of a folder nothing for itself.
///
/// - A link to a folder counts as that folder: one that two ways lead to counts twice. Folders from each of
///   which a way leads to all the others, as by a link to a folder above, have one size, which is the same for
///   each of them: there, what is in each of them counts once.
/// - What cannot be read counts nothing; so does what lies behind more than 40 links to folders inside each
///   other. 0 for nil and for what is no folder.
/// - A sum that does not fit is the largest number.
std::uint64_t directorySize(const NSString &path);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
