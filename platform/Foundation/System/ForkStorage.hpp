// SPDX-License-Identifier: Apache-2.0
//
// Where files keep what they have beside their content: in extended attributes, as file servers do, or in a
// companion "._name" beside the file. A symbolic link means what it leads to. Any thread may call.
//
//     NSError error;
//     const NSData fork = resourceForkData(path, &error);
//     const NSData info = metadataEntry(path, AppleDouble::kFinderInfo);
#pragma once

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/AppleDouble.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Forks that are longer are not read.
inline constexpr std::uint32_t kMaximumForkLength = 64u << 20;

/// The bytes of the resource fork. Nil when the file has none; `*error` is `noSuchFile` then, also when there
/// is no such file.
NSData resourceForkData(const NSString &path, NSError *error = nullptr);
/// Sets the bytes of the resource fork; nil removes it. They go to the extended attribute, or to the companion
/// where the file system has no room for that. False when neither can be, with the old fork as it was.
bool setResourceForkData(const NSString &path, const NSData &data, NSError *error = nullptr);

/// The Finder information, or what the file server says of the file. Nil when the file has none.
NSData metadataEntry(const NSString &path, AppleDouble::EntryID number);
/// Sets an entry in the extended attribute. False when that is not possible; `*error` says why.
bool setMetadataEntry(const NSString &path, AppleDouble::EntryID number, const NSData &data,
                      NSError *error = nullptr);

}  // namespace nimbo
