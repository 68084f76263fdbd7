// SPDX-License-Identifier: Apache-2.0
//
// Files read, never mapped: whoever cuts a mapped file short ends the process that looks behind its new end.
// Any thread may read.
//
//     std::uint64_t size = 0;
//     NSError error;
//     if (const FileDescriptor file = openRegularFile(path, &size, &error))
//       return readData(file.get(), size, NSNotFound, &error);
#pragma once

#include <cmath>
#include <cstdint>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The regular file at `path`, open for reading; `*size` gets its size in bytes. What is none is never waited
/// for. Nothing when it cannot be opened; `*error` says why.
FileDescriptor openRegularFile(const NSString &path, std::uint64_t *size, NSError *error = nullptr);

/// What is read from the descriptor to its end, but no more than `maximumLength` bytes, which is at most
/// `NSNotFound`. `expectedLength` is a guess; a right one saves copying. Nil when reading fails, or when
/// nothing comes for `patienceSeconds`; `*error` says why. Throws std::bad_alloc.
NSData readData(int descriptor, std::uint64_t expectedLength, std::uint32_t maximumLength,
                NSError *error = nullptr, double patienceSeconds = HUGE_VAL);

}  // namespace nimbo
