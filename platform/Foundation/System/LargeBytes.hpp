// SPDX-License-Identifier: Apache-2.0
//
// Memory of many megabytes. Any thread may ask for it.
//
//     void *const bytes = allocateBytes(2 * kLargeBytes);
//     if (!bytes) throw std::bad_alloc();
//     const NSData data = NSData::dataWithMallocedBytes(bytes, 2 * kLargeBytes);
#pragma once

#include <cstddef>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The size in bytes from which on the first touch of fresh memory, page by page, takes longer than filling it.
inline constexpr std::size_t kLargeBytes = 4u << 20;

/// Memory for bytes, to be freed with `free`. Where it is large the system is asked to back it with large
/// pages, which take a fifth of the time. Null when there is none.
void *allocateBytes(std::size_t length);

/// Lets the memory of large bytes go back to the system whenever they are freed, in this process from now on.
/// Else `malloc` keeps up to 64 MiB for later, which is a lot for a process that lives for ever.
void returnLargeBytesWhenFreed();

}  // namespace nimbo
