// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {

/// An image, or the first page of a PDF, whose longer side is `side` pixels; images are not enlarged, and with
/// a side of 0 nothing is scaled. Nil when the file is none or cannot be read by the deadline; `*error` says
/// why.
CGImage pictureInFile(const NSString &path, std::uint32_t side, const Deadline &deadline, NSError *error);

/// The picture that comes with a sound or a movie, as above.
CGImage coverInFile(const NSString &path, std::uint32_t side, const Deadline &deadline, NSError *error);

}  // namespace nimbo
