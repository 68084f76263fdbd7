// SPDX-License-Identifier: Apache-2.0
//
// Bytes written to files. Any thread may write.
//
//     const NSData bytes = NSData::dataWithBytes("text", 4);
//     if (!writeDataToFile(bytes, path, true)) NSLog(u"%@ is as it was", path);
//     writeDataToFile(NSData(), path, true);  // false
#pragma once

#include <string_view>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Writes all bytes to an open file, whatever it is. False when it cannot; errno says why.
bool writeAll(int descriptor, std::string_view bytes);

/// Writes all bytes to the file at `path`. Atomically: to a new file beside it that then takes its place, with
/// the old file's permissions and extended attributes; on failure the old file is as it was. What a symbolic
/// link leads to is replaced, or made, not the link; a device or a pipe is never replaced but written to.
/// Otherwise: over the old content; on failure the file may have any part of the bytes. False when the data is
/// nil or the file cannot be written whole; errno says why.
bool writeDataToFile(const NSData &data, const NSString &path, Flag atomically);

/// Makes the file at `path`, where there must be nothing, not even a link. It shows there when all bytes are in
/// it; of several that make it at once one wins. False when the data is nil or the file is not made; errno says
/// why (EEXIST: something is there).
bool writeDataToNewFile(const NSData &data, const NSString &path);

}  // namespace nimbo
