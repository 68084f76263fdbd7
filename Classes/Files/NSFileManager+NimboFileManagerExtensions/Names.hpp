// SPDX-License-Identifier: Apache-2.0
//
// Names that nothing has yet. Any thread may call.
//
//     nonExistingFilenameAtPath(u"/tmp/a.txt"_ns);  // "/tmp/a-1.txt", say
//     NSError error;
//     const NSString mine = claimNonExistingFilenameAtPath(path, ClaimedItem::file, &error);
//     if (mine) writeData(data, mine, false);
#pragma once

#include <cstdint>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// The path itself when nothing stands there, not even a link that leads nowhere; else the first of
/// "name-1.ext", "name-2.ext", ... in its folder. A name that would get too long for the file system loses
/// characters in front of the counter. Nil for nil. Others may take the name at any moment: who makes something
/// there claims it instead.
NSString nonExistingFilenameAtPath(const NSString &path);

/// What is made to claim a name.
enum class ClaimedItem : std::uint8_t { file, folder };

/// Makes an empty file or folder under the first of these names that can be had; of several that do so at once
/// each gets another one. Answers its path, nil when none can be made; `*error` says why. The claimed item is
/// the caller's to fill or to replace.
NSString claimNonExistingFilenameAtPath(const NSString &path, ClaimedItem item, NSError *error = nullptr);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
