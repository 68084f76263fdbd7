// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "platform/Foundation/NSData.hpp"

namespace nimbo::detail {

/// The images of several TIFF files that libtiff wrote, one each, in one file. Nil when one of them is nil or
/// of another kind, or all are too large together.
NSData joinedTIFFs(std::span<const NSData> files);

}  // namespace nimbo::detail
