// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreGraphics/CGContext.hpp"
#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// One line of text in the system's sans-serif font, a point being a pixel, shortened in the middle when it is
/// wider than `maximumWidth` pixels. Lines of a size are of one height and have one baseline, unless there are
/// letters in them that are higher or lower than Latin ones. Nil when there is nothing to see or no font;
/// `*error` says which.
///
///     const CGImage label = imageWithText(lastPathComponent(path), 11, 256, {.alpha = 0.8}, &error);
CGImage imageWithText(const NSString &text, double pointSize, std::uint32_t maximumWidth, const CGColor &color,
                      NSError *error = nullptr);

}  // namespace nimbo
