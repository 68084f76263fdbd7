// SPDX-License-Identifier: Apache-2.0
//
// Data of pasteboard types in the desktop's forms, and back. What comes from the desktop may be anything. Any
// thread may convert.
#pragma once

#include "platform/AppKit/Pasteboard/PasteboardTargets.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"

namespace nimbo::detail {

/// What others are offered; nil when nothing can be made of the data. A `URLLine` comes of `URLLines`.
NSData dataForTarget(const PasteboardTarget &target, const NSData &data);
/// What has been read of a target as data of the pasteboard type; nil when nothing comes of it: `*error` says
/// why.
NSData dataFromTarget(const PasteboardTarget &target, const NSData &bytes, NSError *error);
/// A URL and its title, which may be nil, in UTF-16; both come in UTF-8. Nil for an empty URL.
NSData URLLines(const NSData &url, const NSData &title);

}  // namespace nimbo::detail
