// SPDX-License-Identifier: Apache-2.0
//
// Images of bundles, and those that were loaded from elsewhere. Any thread may call.
//
//     const NSImage logo = imageNamed(u"logo"_ns, u"png"_ns, NSBundle::mainBundle(), Deadline::after(2));
//     const NSImage badge = cachedImageNamed(u"badge"_ns, NSString(), NSBundle::mainBundle(),
//     Deadline::after(2)); if (!imageWithDownloadedData(data, Deadline::after(8), &error))
//     NSLog(error.localizedFailureReason);
#pragma once

#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/Foundation/NSBundle.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How many images `cachedImageNamed` keeps at most.
inline constexpr std::size_t kMaximumCachedImages = 256;

inline namespace NSImageNimboExtensions {

/// The image NAME.TYPE in the folder Contents/Resources of the bundle; without a type, of a name that has its
/// extension already, else the first of `ImageFileTypes` that is there. Nil when there is none, or it cannot be
/// read by the deadline, and for a name with "/"; `*error` says which.
NSImage imageNamed(const NSString &name, const NSString &ofType, const NSBundle &inBundle,
                   const Deadline &deadline = {}, NSError *error = nullptr);
/// The same as pixels, which are kept as long as the process lives, so that the file is read once.
NSImage cachedImageNamed(const NSString &name, const NSString &ofType, const NSBundle &inBundle,
                         const Deadline &deadline = {}, NSError *error = nullptr);

/// The image in data that a server sent; nil when there is none that has a size, `*error` says why.
NSImage imageWithDownloadedData(const NSData &data, const Deadline &deadline, NSError *error = nullptr);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
