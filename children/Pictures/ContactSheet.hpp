// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Pictures side by side, each with its name below. `sheet` has "Side", the longest side of a picture in
/// pixels, and "Cells", an array of dictionaries: "Name", "Thumbnail" (the data of an image file) when there is
/// one, and "Kind", which stands in its place when there is none. Nil when there are no cells or too many;
/// `*error` says which.
CGImage contactSheet(const NSDictionary &sheet, NSError *error);

}  // namespace nimbo
